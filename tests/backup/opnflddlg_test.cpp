#include "backup/opnflddlg.h"

#include <QComboBox>
#include <QPushButton>
#include <QTextDocumentFragment>

#include "backup/BackupTest.h"
#include "backup/FolderList.h"

namespace kestrix {
namespace {

class opnflddlgTest : public BackupFormTest {
 protected:
  opnflddlgTest() {
    documents_ = QDir::cleanPath(installation.Outside("documents"));
    QDir().mkpath(documents_);
    desk.environment.SetDocumentsFolder(documents_);
    session.BackupFolder.clear();
  }

  void OpenForBackup() {
    ForBackup();
    OpenDialog();
  }
  void OpenForRestore() {
    ForRestore();
    OpenDialog();
  }
  void OpenDialog() {
    folders.Get().ShowForm();
    Settle();
    LookAt(*folders.IfLoaded());
  }
  QString OpenFolder() { return Control<FolderList>("ktxDir").Path(); }
  QListWidgetItem* Row(const QString& name) {
    auto& list = Control<FolderList>("ktxDir");
    const auto found = list.findItems(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (found.isEmpty()) throw std::runtime_error("no folder " + name.toStdString());
    list.scrollToItem(found.last());
    Settle();
    return found.last();
  }
  void ClickFolder(const QString& name) {
    auto& list = Control<FolderList>("ktxDir");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(Row(name)).center());
    Settle();
  }
  void OpenRow(const QString& name) {
    ClickFolder(name);
    auto& list = Control<FolderList>("ktxDir");
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {},
                       list.visualItemRect(Row(name)).center());
    Settle();
  }
  void ExpectIsIn(const QString& path) {
    EXPECT_EQ(OpenFolder(), path);
    EXPECT_EQ(TextOf("curntpathlbl"), path);
    EXPECT_EQ(session.BackupFolder, path);
  }
  void ExpectCreateQuestion(const QString& name, Button answer) {
    desk.messages.ExpectAsk(Icon::kQuestion, "BELTROVAN", "Wish to create Folder [" + name + "]?",
                            answer);
  }
  void ExpectCreateFailure() {
    desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN : ERROR",
                             "Failed to create folder/Access denied.");
  }
  void ExpectNoSet() {
    desk.messages.ExpectTell(
        Icon::kCritical, "KESTRIX",
        "1. Folder does not have backup files to restore, select different folder.");
  }
  /// Asks for a new folder and types its name.
  void TypeNewFolder(const QString& name) {
    Click("crtfldbtn");
    TypeInto("crtfldnme", name);
  }

  QString documents_;
};

TEST_F(opnflddlgTest, OpensAtTheDocumentsOnTheSystemsDrive) {
  desk.environment.SetDrives({"/", documents_});
  OpenForBackup();
  EXPECT_EQ(Window().windowTitle(), "BELTROVAN : Select directory ");
  EXPECT_EQ(TextOf("dirlbl"), "Select Dirve");
  EXPECT_EQ(TextOf("slctfld"), "&Select");
  EXPECT_EQ(TextOf("cls1"), "&Cancel");
  EXPECT_EQ(ItemsOf("ktxdrv"), (QStringList{"/", documents_}));
  EXPECT_EQ(TextOf("ktxdrv"), "/");
  EXPECT_EQ(TextOf("crtfldnme"), "");
  EXPECT_FALSE(IsEnabled("crtfldnme"));
  EXPECT_TRUE(IsVisible("crtfldbtn"));
  ExpectIsIn(documents_);
}

TEST_F(opnflddlgTest, DriveOfTheSystemIsTheOneThatItsPathLiesOn) {
  desk.environment.SetDrives({"/", documents_});
  desk.environment.SetVariable("SYSTEMDRIVE", documents_ + "/below");
  OpenForBackup();
  EXPECT_EQ(TextOf("ktxdrv"), documents_);
}

TEST_F(opnflddlgTest, OpensWhereItWasLeft) {
  const QString place = Place("sets/deep");
  session.BackupFolder = place;
  OpenForBackup();
  ExpectIsIn(place);
  OpenRow("sets");
  Click("cls1");
  LookAtFront();
  OpenForBackup();
  ExpectIsIn(QDir::cleanPath(installation.Outside("sets")));
}

TEST_F(opnflddlgTest, FolderThatIsGoneIsShownUntilTheDialogIsInFront) {
  session.BackupFolder = installation.Outside("gone");
  ForBackup();
  opnflddlg& form = folders.Get();
  LookAt(form);
  EXPECT_EQ(TextOf("curntpathlbl"), installation.Outside("gone"));
  EXPECT_EQ(OpenFolder(), documents_);
  form.ShowForm();
  Settle();
  ExpectIsIn(documents_);
}

TEST_F(opnflddlgTest, UnreadableDocumentsLeadToTheDrive) {
  desk.files.FailNext(FileAction::kFoldersIn, "documents", failure::kPermissionDenied);
  desk.files.FailNext(FileAction::kFoldersIn, "documents", failure::kPermissionDenied);
  OpenForBackup();
  ExpectIsIn("/");
}

TEST_F(opnflddlgTest, ListShowsTheWayDownAndTheFoldersBelow) {
  Place("documents/Zeta");
  Place("documents/alpha");
  Place("documents/.hidden");
  OpenForBackup();
  const QStringList way = documents_.split('/', Qt::SkipEmptyParts);
  EXPECT_EQ(ItemsOf("ktxDir"), QStringList{"/"} + way + (QStringList{"alpha", "Zeta"}));
  EXPECT_EQ(Control<FolderList>("ktxDir").currentItem()->text(), "documents");
}

TEST_F(opnflddlgTest, OpenFolderStandsOutAndSelectNamesIt) {
  Place("documents/<b>below");
  OpenForBackup();
  const auto picture = [&](const QString& name) { return Row(name)->icon().cacheKey(); };
  const auto bold_rows = [&] {
    QStringList rows;
    for (auto* row : Control<FolderList>("ktxDir").findItems("*", Qt::MatchWildcard))
      if (row->font().bold()) rows.append(row->text());
    return rows;
  };
  ClickFolder("<b>below");
  EXPECT_EQ(bold_rows(), QStringList{"documents"});
  EXPECT_NE(picture("documents"), picture("<b>below"));
  EXPECT_NE(picture("documents"), picture("/"));
  EXPECT_EQ(TipOf("slctfld"), "Select " + documents_);
  OpenRow("<b>below");
  EXPECT_EQ(bold_rows(), QStringList{"<b>below"});
  EXPECT_EQ(picture("documents"), picture("/"));
  EXPECT_EQ(QTextDocumentFragment::fromHtml(TipOf("slctfld")).toPlainText(),
            "Select " + documents_ + "/<b>below");
}

TEST_F(opnflddlgTest, DoubleClickWalksDownAndUpAndASingleOneOpensNothing) {
  Place("documents/it's/Цех №4");
  OpenForBackup();
  session.BackupFolder = "stale";
  ClickFolder("it's");
  ExpectIsIn(documents_);
  OpenRow("it's");
  ExpectIsIn(documents_ + "/it's");
  OpenRow("Цех №4");
  ExpectIsIn(documents_ + "/it's/Цех №4");
  OpenRow("documents");
  ExpectIsIn(documents_);
  OpenRow("/");
  ExpectIsIn("/");
}

TEST_F(opnflddlgTest, KeysWalkReturnSelectsAndEscapeCancels) {
  Place("documents/below");
  OpenForBackup();
  Control<QWidget>("ktxDir").setFocus();
  PressKey(Qt::Key_Down);
  PressKey(Qt::Key_Return);
  ExpectIsIn(documents_ + "/below");
  // Return presses the button that has the focus, else it selects the open folder.
  EXPECT_TRUE(Control<QPushButton>("slctfld").isDefault());
  PressKey(Qt::Key_Return);
  EXPECT_FALSE(folders.IsLoaded());
  EXPECT_EQ(session.BackupFolder, documents_ + "/below");
  backup.Unload();
  OpenForRestore();
  Control<QWidget>("cls1").setFocus();
  PressKey(Qt::Key_Return);
  EXPECT_FALSE(folders.IsLoaded());
  OpenForBackup();
  LookAtFront();
  PressKey(Qt::Key_Escape);
  EXPECT_FALSE(folders.IsLoaded());
  EXPECT_EQ(TextOf("clsd"), "&Select folder");
}

TEST_F(opnflddlgTest, FolderThatWasDeletedMeanwhileLeavesTheListQuietly) {
  const QString below = Place("documents/below");
  const QString open = Place("documents/open");
  OpenForBackup();
  ASSERT_TRUE(QDir().rmdir(below));
  OpenRow("below");
  EXPECT_FALSE(ItemsOf("ktxDir").contains("below"));
  ExpectIsIn(documents_);
  OpenRow("open");
  Place("documents/open/deep");
  Control<FolderList>("ktxDir").SetPath(Control<FolderList>("ktxDir").Path());
  ASSERT_TRUE(QDir(open).removeRecursively());
  OpenRow("deep");
  EXPECT_FALSE(ItemsOf("ktxDir").contains("open"));
  ExpectIsIn(documents_);
}

TEST_F(opnflddlgTest, FolderThatCannotBeReadIsToldAndTheListStays) {
  Place("documents/closed");
  OpenForBackup();
  desk.files.FailNext(FileAction::kFoldersIn, "closed", failure::kPermissionDenied);
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN",
                           "A planned failure on \"" + documents_ + "/closed\".");
  OpenRow("closed");
  ExpectIsIn(documents_);
}

TEST_F(opnflddlgTest, DriveTakesTheListToItsRoot) {
  const QString stick = QDir::cleanPath(Place("stick"));
  desk.environment.SetDrives({"/", stick});
  OpenForBackup();
  Pick("ktxdrv", stick);
  ExpectIsIn(stick);
  OpenRow("/");
  Pick("ktxdrv", stick);
  ExpectIsIn(stick);
}

TEST_F(opnflddlgTest, DriveThatIsNotReadyIsToldAndTheProgramsDriveComesBack) {
  desk.environment.SetDrives({"/", installation.Outside("pulled")});
  OpenForBackup();
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN: Drive not ready", "Drive not ready.");
  Pick("ktxdrv", installation.Outside("pulled"));
  EXPECT_EQ(TextOf("ktxdrv"), "/");
  ExpectIsIn("/");
}

TEST_F(opnflddlgTest, NewFolderIsMadeAndOpened) {
  OpenForBackup();
  Click("crtfldbtn");
  EXPECT_TRUE(IsEnabled("crtfldnme"));
  EXPECT_TRUE(HasFocus("crtfldnme"));
  EXPECT_EQ(TextOf("crtfldnme"), "New Folder");
  EXPECT_EQ(SelectedTextOf("crtfldnme"), "New Folder");
  ExpectCreateQuestion("New Folder", Button::kNo);
  PressTab();
  EXPECT_TRUE(IsEnabled("crtfldnme"));
  EXPECT_TRUE(Window().isActiveWindow());
  EXPECT_FALSE(QFileInfo::exists(documents_ + "/New Folder"));
  ExpectIsIn(documents_);
  TypeInto("crtfldnme", "O'Brien 工場");
  ExpectCreateQuestion("O'Brien 工場", Button::kYes);
  PressTab();
  EXPECT_TRUE(QFileInfo(documents_ + "/O'Brien 工場").isDir());
  ExpectIsIn(documents_ + "/O'Brien 工場");
  EXPECT_FALSE(IsEnabled("crtfldnme"));
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
  // One that is there is opened, and Return ends the line as well.
  Place("documents/O'Brien 工場/there");
  TypeNewFolder("there");
  ExpectCreateQuestion("there", Button::kYes);
  PressKey(Qt::Key_Return);
  ASSERT_TRUE(folders.IsLoaded());
  ExpectIsIn(documents_ + "/O'Brien 工場/there");
  EXPECT_FALSE(IsEnabled("crtfldnme"));
}

TEST_F(opnflddlgTest, ForbiddenNamesAreRefused) {
  OpenForBackup();
  Click("crtfldbtn");
  for (const char* name : {"a/b", "a\\b", "what?", "a:b", "*", "<set>", "a|b", "\"set\""}) {
    TypeInto("crtfldnme", name);
    ExpectCreateQuestion(name, Button::kYes);
    ExpectCreateFailure();
    PressTab();
    EXPECT_TRUE(IsEnabled("crtfldnme")) << name;
    EXPECT_TRUE(Window().isActiveWindow());
    EXPECT_TRUE(QDir(documents_).isEmpty()) << name;
    ExpectIsIn(documents_);
  }
}

TEST_F(opnflddlgTest, NewFolderAtTheRootLiesRightBelowItAndOneThatMayNotBeMadeIsTold) {
  OpenForBackup();
  OpenRow("/");
  TypeNewFolder("kestrix set");
  desk.files.FailNext(FileAction::kCreateFolder, "", failure::kPermissionDenied);
  ExpectCreateQuestion("kestrix set", Button::kYes);
  ExpectCreateFailure();
  PressTab();
  EXPECT_EQ(desk.files.Log().last(), "CreateFolder /kestrix set");
  EXPECT_TRUE(IsEnabled("crtfldnme"));
  ExpectIsIn("/");
}

TEST_F(opnflddlgTest, SelectForABackupLoadsTheFormWithItsNextCaption) {
  OpenForBackup();
  LookAtFront();
  Click("slctfld");
  EXPECT_EQ(session.BackupFolder, documents_);
  EXPECT_FALSE(folders.IsLoaded());
  ASSERT_TRUE(backup.IsLoaded());
  EXPECT_TRUE(backup.IfLoaded()->isVisible());
  EXPECT_EQ(TextOf("clsd"), "&Backup Study files");
}

TEST_F(opnflddlgTest, ParentOfADatedFolderHoldsNoSet) {
  GivenFullOrganisation("Press shop", 1);
  session.BackupFolder = Place("sets");
  ForBackup();
  Run();
  OpenForRestore();
  LookAtFront();
  ExpectNoSet();
  Click("slctfld");
  EXPECT_EQ(desk.messages.Beeps(), 1);
  ASSERT_TRUE(folders.IsLoaded());
  EXPECT_FALSE(backup.IsLoaded());

  OpenRow(kToday);
  Click("slctfld");
  EXPECT_FALSE(folders.IsLoaded());
  ASSERT_TRUE(backup.IsLoaded());
  EXPECT_EQ(ItemsOf("BKList1"), QStringList{"Press shop"});
  EXPECT_EQ(TextOf("clsd"), "&Restore Study files");
}

class opnflddlgPicturesTest : public opnflddlgTest,
                              public ::testing::WithParamInterface<const char*> {};

TEST_P(opnflddlgPicturesTest, SetThatARestoreWouldDeleteBeforeItReadsItIsRefused) {
  GivenFullOrganisation("Press shop", 1);
  session.BackupFolder = installation.Path(GetParam());
  QDir().mkpath(session.BackupFolder);
  WriteFile(InSet("ktx_RskSmt.kbp"), ReadFile(installation.Register()));
  // The same folder by another way.
  ASSERT_TRUE(QFile::link(session.BackupFolder, installation.Outside("way")));
  const Tree before = TreeOf(Data());
  for (const QString& folder : {session.BackupFolder, installation.Outside("way")}) {
    session.BackupFolder = folder;
    OpenForRestore();
    desk.messages.ExpectTell(Icon::kCritical, "KESTRIX : Files missing",
                             "1. Restored Files missing. contact M/s. BELTROVAN");
    Click("slctfld");
    EXPECT_TRUE(folders.IsLoaded());
    EXPECT_FALSE(backup.IsLoaded());
    folders.Unload();
  }
  EXPECT_EQ(desk.messages.Beeps(), 2);
  EXPECT_EQ(TreeOf(Data()), before);
}

INSTANTIATE_TEST_SUITE_P(EachPlace, opnflddlgPicturesTest,
                         ::testing::Values("RskAsmtFld/Picfolder", "RskAsmtFld/Picfolder/Prj1",
                                           "RskAsmtFld/Picfolder/Prj7/sets/today"),
                         [](const auto& row) { return "Place" + std::to_string(row.index + 1); });

TEST_F(opnflddlgTest, SetInTheInstallationBesideItsPicturesIsRestored) {
  GivenFullOrganisation("Press shop", 1);
  session.BackupFolder = installation.Path("RskAsmtFld/Picfolder sets");
  ASSERT_TRUE(QDir().mkpath(session.BackupFolder));
  ForBackup();
  Run();
  ChooseRestoreOf(InSet(kToday));
  Click("clsd");
  EXPECT_EQ(TextOf("clsd"), "&Study files Restored complete");
  EXPECT_EQ(ReadFile(Picture(1, "a.jpg")), "before of Press shop");
}

TEST_F(opnflddlgTest, ReservedModeAsksForBothOfItsFiles) {
  session.BackupMode = session.BackupSubMode = 3;
  folders.Get().ShowForm();
  Settle();
  WriteFile(documents_ + "/ktx_Prets.kbp", "x");
  ExpectNoSet();
  Click("slctfld");
  ASSERT_TRUE(folders.IsLoaded());
  WriteFile(documents_ + "/ktx_ZoNds.kbp", "x");
  Click("slctfld");
  EXPECT_FALSE(folders.IsLoaded());
  ASSERT_TRUE(backup.IsLoaded());
  EXPECT_EQ(TextOf("clsd"), "&Restore Study files");
  EXPECT_EQ(TipOf("clsd"), "Restore Study files");
  EXPECT_EQ(TextOf("ListBk_2"), "1. Presets\r\n2. Zero nodes");
}

TEST_F(opnflddlgTest, CancelledBackupLeadsBackToItsForm) {
  OpenForBackup();
  LookAtFront();
  Click("cls1");
  EXPECT_FALSE(folders.IsLoaded());
  ASSERT_TRUE(backup.IsLoaded());
  EXPECT_TRUE(backup.IfLoaded()->isVisible());
  EXPECT_EQ(TextOf("clsd"), "&Select folder");
  Click("clsd");
  CloseBox(*folders.IfLoaded());
  EXPECT_FALSE(folders.IsLoaded());
  EXPECT_EQ(TextOf("clsd"), "&Select folder");
}

TEST_F(opnflddlgTest, CancelledRestoreLeavesNothingOpen) {
  OpenForRestore();
  EXPECT_FALSE(IsVisible("crtfldbtn")) << "it makes no folders";
  EXPECT_FALSE(IsVisible("crtfldnme"));
  session.BackupSubMode = 1;
  Click("cls1");
  EXPECT_FALSE(folders.IsLoaded());
  EXPECT_FALSE(backup.IsLoaded());
  EXPECT_EQ(session.BackupSubMode, 0);
  OpenForRestore();
  CloseBox(*folders.IfLoaded());
  EXPECT_FALSE(folders.IsLoaded());
  EXPECT_FALSE(backup.IsLoaded());
}

TEST_F(opnflddlgTest, OtherSubModesStayWhenTheDialogIsCancelled) {
  session.BackupMode = session.BackupSubMode = 3;
  folders.Get().ShowForm();
  Settle();
  Click("cls1");
  EXPECT_EQ(session.BackupSubMode, 3);
  EXPECT_FALSE(backup.IsLoaded());
  session.BackupMode = 2;
  OpenDialog();
  Click("cls1");
  EXPECT_TRUE(backup.IsLoaded()) << "a list mode shows the form again";
}

TEST_F(opnflddlgTest, DialogTakesTheFrontBackFromAnother) {
  OpenForRestore();
  const auto& other = Open<SessionForm>();
  EXPECT_TRUE(other.isVisible());
  EXPECT_TRUE(folders.IfLoaded()->isActiveWindow());
}

}  // namespace
}  // namespace kestrix
