#include "backup/BkUpfrm.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

#include "backup/BackupTest.h"
#include "backup/OtherClient.h"

namespace kestrix {
namespace {

class BkUpfrmTest : public BackupFormTest {
 protected:
  void ExpectMissing(const QString& text) {
    desk.messages.ExpectTell(Icon::kCritical, "KESTRIX : Files missing", text);
  }
  void ExpectFailedLoad() {
    desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN: Files missing",
                             "More files required run setup/Installed Files missing");
  }
  /// A set of two organisations, and an installation that has a third one only.
  QString GivenSetOfOthers() {
    GivenFullOrganisation("Press shop", 1);
    GivenFullOrganisation("Foundry", 2);
    ForBackup();
    Run();
    Exec(installation.Register(), "DELETE FROM orgtn");
    GivenFullOrganisation("Paint shop", 3);
    return InSet(kToday);
  }
  int BarWidth() { return Control<QWidget>("progPic2").width(); }
  int WholeBarWidth() { return Control<QWidget>("progPic1").width(); }
};

TEST_F(BkUpfrmTest, OpensForABackupWithTheOrganisationsOfTheRegister) {
  GivenFullOrganisation("Press shop", 1);
  GivenFullOrganisation("Цех №4", 2);
  ForBackup();
  QWidget& form = Open<BkUpfrm>();
  EXPECT_EQ(form.windowTitle(), " BELTROVAN : HAZOP study files ");
  EXPECT_EQ(TextOf("orgmnelbl"), "LIST of Names of Organization / Section");
  EXPECT_EQ(ItemsOf("BKList1"), (QStringList{"Press shop", "Цех №4"}));
  EXPECT_TRUE(IsVisible("BKList1"));
  EXPECT_FALSE(IsVisible("ListBk_2"));
  EXPECT_EQ(TextOf("clsd"), "&Select folder");
  EXPECT_EQ(TipOf("clsd"), "Select folder");
  EXPECT_EQ(TextOf("clsed"), "&Exit");
  EXPECT_EQ(TextOf("pctdsp"), "0 % complete");
  EXPECT_EQ(BarWidth(), 1);
  EXPECT_EQ(desk.files.CurrentFolder(), installation.Folder());
  form.close();
  Settle();
  ChooseBackup();
  EXPECT_EQ(Window().windowTitle(), " BELTROVAN: Backup Risk Assessment files");
  EXPECT_EQ(TextOf("orgmnelbl"), "LIST of Name of Organization / Section to Backup:");
  EXPECT_EQ(TextOf("clsd"), "&Select folder");
  Click("clsed");
  EXPECT_FALSE(backup.IsLoaded());
  EXPECT_FALSE(folders.IsLoaded());
}

TEST_F(BkUpfrmTest, MissingRegisterIsToldAndTheFormStays) {
  ASSERT_TRUE(QFile::remove(installation.Register()));
  ExpectMissing("2. Backup Files missing. contact M/s. BELTROVAN");
  ChooseBackup();
  EXPECT_EQ(desk.messages.Beeps(), 1);
  EXPECT_TRUE(backup.IfLoaded()->isVisible());
  EXPECT_EQ(ItemsOf("BKList1"), QStringList());
  EXPECT_EQ(notices, 0);
}

TEST_F(BkUpfrmTest, DamagedRegisterOrAnApplicationFolderThatIsGoneEndsTheLoadWithTheNotice) {
  const auto expect_failed_load = [this](int so_far) {
    ExpectFailedLoad();
    backup.Get().ShowForm();
    Settle();
    EXPECT_FALSE(backup.IsLoaded());
    EXPECT_EQ(notices, so_far);
  };
  ForBackup();
  desk.files.FailNext(FileAction::kChangeFolder, "", failure::kPathNotFound);
  expect_failed_load(1);
  WriteFile(installation.Register(), "no database");
  expect_failed_load(2);
  WriteFile(InSet("ktx_RskSmt.kbp"), "no database");
  ForRestore();
  expect_failed_load(3);
}

TEST_F(BkUpfrmTest, BackupGoesFromCaptionToCaption) {
  GivenFullOrganisation("Press shop", 1);
  ChooseBackup();
  Click("clsd");
  EXPECT_FALSE(backup.IsLoaded());
  ASSERT_TRUE(folders.IsLoaded());
  EXPECT_EQ(session.OrgRowCount, 1);

  Click("slctfld");
  EXPECT_FALSE(folders.IsLoaded());
  EXPECT_EQ(TextOf("clsd"), "&Backup Study files");
  EXPECT_EQ(TipOf("clsd"), "Backup Study files");
  EXPECT_EQ(ItemsOf("BKList1"), QStringList{"Press shop"});

  Click("clsd");
  EXPECT_EQ(TextOf("clsd"), "&Backup complete");
  EXPECT_EQ(TipOf("clsd"), "Backup complete");
  EXPECT_EQ(TextOf("pctdsp"), "100 % complete");
  EXPECT_EQ(BarWidth(), WholeBarWidth());
  EXPECT_EQ(ReadFile(InDated("ktx_RskSmt1.kbp")), ReadFile(installation.Study(1)));
  EXPECT_EQ(ReadFile(InDated("Prj1/b.jpg")), "after of Press shop");

  Click("clsd");
  EXPECT_FALSE(backup.IsLoaded());
}

TEST_F(BkUpfrmTest, RefusedReplacementLeadsBackToTheFolder) {
  WriteFile(InSet("ktx_RskSmt_A.kbp"), "an older set");
  ChooseBackupInto(Place("sets"));
  ExpectOverwriteQuestion(Button::kNo);
  Click("clsd");
  EXPECT_EQ(TextOf("clsd"), "&Select folder");
  EXPECT_EQ(TextOf("pctdsp"), "0 % complete");
  Click("clsd");
  EXPECT_TRUE(folders.IsLoaded());
  EXPECT_FALSE(backup.IsLoaded());
}

TEST_F(BkUpfrmTest, AllowedReplacementIsCarriedOut) {
  GivenFullOrganisation("Press shop", 1);
  WriteFile(InSet("ktx_RskSmt.kbp"), "an older set");
  ChooseBackupInto(Place("sets"));
  ExpectOverwriteQuestion(Button::kYes);
  Click("clsd");
  EXPECT_EQ(TextOf("clsd"), "&Backup complete");
  EXPECT_EQ(ReadFile(InSet("ktx_RskSmt.kbp")), ReadFile(installation.Register()));
  EXPECT_EQ(ReadFile(InDated("Prj1/a.jpg")), "before of Press shop");
}

TEST_F(BkUpfrmTest, BackupStoppedByItsMessageIsCalledComplete) {
  GivenFullOrganisation("Press shop", 1);
  ChooseBackupInto(Place("sets"));
  desk.files.PretendMissing("ktx_RskSmt_A.kbp");
  ExpectTrouble("Backup");
  Click("clsd");
  EXPECT_EQ(TextOf("clsd"), "&Backup complete");
  EXPECT_EQ(TextOf("pctdsp"), "33 % complete");
  Window().resize(Window().width() + 200, Window().height());
  Settle();
  EXPECT_NEAR(BarWidth(), WholeBarWidth() / 3.0, 1) << "the bar keeps its share";
  EXPECT_FALSE(QFile::exists(InDated("ktx_RskSmt1.kbp")));
}

TEST_F(BkUpfrmTest, FailedBackupClosesBothFormsWithoutAMessage) {
  GivenFullOrganisation("Press shop", 1);
  ASSERT_TRUE(QFile::remove(installation.Study(1)));
  ChooseBackupInto(Place("sets"));
  folders.Get();
  Click("clsd");
  EXPECT_FALSE(backup.IsLoaded());
  EXPECT_FALSE(folders.IsLoaded());
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
  EXPECT_TRUE(QFile::exists(InDated("ktx_RskSmt_A.kbp")));
}

TEST_F(BkUpfrmTest, BackupWithoutARegisterFailsAsAnyOther) {
  ASSERT_TRUE(QFile::remove(installation.Register()));
  ExpectMissing("2. Backup Files missing. contact M/s. BELTROVAN");
  ExpectMissing("2. Backup Files missing. contact M/s. BELTROVAN");
  ChooseBackupInto(Place("sets"));
  EXPECT_EQ(session.OrgRowCount, 0);
  Click("clsd");
  EXPECT_FALSE(backup.IsLoaded());
}

TEST_F(BkUpfrmTest,
       RestoreShowsTheOrganisationsOfTheSetBeforeItTouchesAnythingAndGoesFromCaptionToCaption) {
  const QString set = GivenSetOfOthers();
  // A link in place of the temporary copy is replaced and not followed.
  WriteFile(installation.Outside("mine"), "must stay");
  ASSERT_TRUE(QFile::link(installation.Outside("mine"), installation.Outside("orgtn.mdb")));
  const Tree before = TreeOf(Data());
  ChooseRestoreOf(set);
  EXPECT_EQ(ItemsOf("BKList1"), (QStringList{"Press shop", "Foundry"}));
  EXPECT_EQ(TextOf("clsd"), "&Restore Study files");
  EXPECT_EQ(TipOf("clsd"), "Restore Study files");
  EXPECT_EQ(TreeOf(Data()), before);
  EXPECT_EQ(ReadFile(installation.Outside("mine")), "must stay");
  EXPECT_EQ(ReadFile(installation.Outside("orgtn.mdb")), ReadFile(set + "/ktx_RskSmt.kbp"));

  Click("clsd");
  EXPECT_EQ(TextOf("clsd"), "&Study files Restored complete");
  EXPECT_EQ(TipOf("clsd"), "Study files Restored complete");
  EXPECT_EQ(TextOf("pctdsp"), "100 % complete");
  EXPECT_EQ(BarWidth(), WholeBarWidth());
  EXPECT_EQ(Organisations(installation.Register()), (QStringList{"Press shop", "Foundry"}));
  EXPECT_EQ(ReadFile(Picture(2, "a.jpg")), "before of Foundry");
  EXPECT_FALSE(QFile::exists(installation.PictureFolder(3)));
  Click("clsd");
  EXPECT_FALSE(backup.IsLoaded());
  EXPECT_FALSE(QFile::exists(installation.Outside("orgtn.ldb")));
}

TEST_F(BkUpfrmTest, RestoreStoppedByItsMessageIsCalledComplete) {
  const QString set = GivenSetOfOthers();
  ASSERT_TRUE(QFile::remove(set + "/ktx_RskSmt_A.kbp"));
  ChooseRestoreOf(set);
  ExpectTrouble("Restore");
  Click("clsd");
  EXPECT_EQ(TextOf("clsd"), "&Study files Restored complete");
  EXPECT_EQ(TextOf("pctdsp"), "25 % complete");
}

TEST_F(BkUpfrmTest, FailedRestoreClosesBothFormsAndLeavesTheFormLoadedBehindTheScreen) {
  const QString set = GivenSetOfOthers();
  ASSERT_TRUE(QDir(set + "/Prj1").removeRecursively());
  ChooseRestoreOf(set);
  folders.Get();
  QPointer<BkUpfrm> first = backup.IfLoaded();
  Click("clsd");
  EXPECT_TRUE(first.isNull());
  EXPECT_FALSE(folders.IsLoaded());
  ASSERT_TRUE(backup.IsLoaded());
  EXPECT_FALSE(backup.IfLoaded()->isVisible());
  LookAt(*backup.IfLoaded());
  EXPECT_EQ(TextOf("clsd"), "&Study files Restored complete");
  EXPECT_EQ(TipOf("clsd"), "Study files Restored complete");
  EXPECT_EQ(ItemsOf("BKList1"), (QStringList{"Press shop", "Foundry"}));
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(BkUpfrmTest, MissingSetIsToldAtTheLoadOfARestore) {
  ForRestore();
  ExpectMissing("1. Restored Files missing. contact M/s. BELTROVAN");
  auto& form = Open<BkUpfrm>();
  EXPECT_EQ(desk.messages.Beeps(), 1);
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(ItemsOf("BKList1"), QStringList());
}

TEST_F(BkUpfrmTest, CopyRunsBesideTheEventsAndTheFormCannotBeClosedMeanwhile) {
  GivenFullOrganisation("Press shop", 1);
  ChooseBackupInto(Place("sets"));
  auto writer = std::make_unique<WriterAtWork>(installation.Study(1));
  QTimer watch;
  QString text_while_copying;
  int width_while_copying = 0;
  // The copy waits for the writer, who ends only when the form's events go on.
  QObject::connect(&watch, &QTimer::timeout, backup.IfLoaded(), [&] {
    if (TextOf("pctdsp") != "67 % complete") return;
    watch.stop();
    text_while_copying = TextOf("clsd");
    width_while_copying = BarWidth();
    EXPECT_FALSE(IsEnabled("clsd"));
    EXPECT_FALSE(IsEnabled("clsed"));
    backup.IfLoaded()->close();
    Control<QPushButton>("clsd").click();
    Control<QPushButton>("clsed").click();
    QTest::keyClick(backup.IfLoaded(), Qt::Key_Escape);
    writer.reset();
  });
  watch.start(1);
  const int whole = WholeBarWidth();
  Click("clsd");
  EXPECT_EQ(text_while_copying, "&Backup Study files");
  EXPECT_NEAR(width_while_copying, whole * 2 / 3.0, 1);
  EXPECT_EQ(TextOf("clsd"), "&Backup complete");
  EXPECT_TRUE(IsEnabled("clsed"));
  EXPECT_TRUE(HasFocus("clsd"));
}

/// Runs once more, on a display, with the tests of what waits there.
class BkUpfrmOnDisplayTest : public BkUpfrmTest {};

TEST_F(BkUpfrmOnDisplayTest, KeyThatWaitedForTheEndOfTheCopyingPressesNothing) {
  if (QGuiApplication::platformName() != "xcb") GTEST_SKIP() << "Runs on a display of its own.";
  constexpr xcb_keycode_t kSpace = 65;
  GivenFullOrganisation("Press shop", 1);
  ChooseBackupInto(Place("sets"));
  auto writer = std::make_unique<WriterAtWork>(installation.Study(1));
  OtherClient other;
  QTimer watch;
  bool struck = false;
  const QPoint before = Window().pos();
  QObject::connect(&watch, &QTimer::timeout, backup.IfLoaded(), [&] {
    if (TextOf("pctdsp") != "67 % complete") return;
    if (!std::exchange(struck, true)) {
      other.Strike(Window().winId(), kSpace);
      other.Move(Window().winId(), before + QPoint(40, 30));
    }
    // The key came before the move.
    if (Window().pos() == before) return;
    watch.stop();
    writer.reset();
  });
  watch.start(1);
  Click("clsd");
  ASSERT_TRUE(backup.IsLoaded());
  EXPECT_EQ(TextOf("clsd"), "&Backup complete");
  EXPECT_TRUE(HasFocus("clsd"));
}

class BkUpfrmReservedTest : public BkUpfrmTest, public ::testing::WithParamInterface<qint16> {};

TEST_P(BkUpfrmReservedTest, ReservedModeShowsItsTwoLinesAndDoesNothing) {
  session.BackupMode = session.BackupSubMode = GetParam();
  GivenFullOrganisation("Press shop", 1);
  Open<BkUpfrm>();
  EXPECT_FALSE(IsVisible("BKList1"));
  EXPECT_TRUE(IsVisible("ListBk_2"));
  EXPECT_EQ(TextOf("ListBk_2"), "1. Presets\r\n2. Zero nodes");
  const Tree before = TreeOf(session.BackupFolder);
  Click("clsd");
  EXPECT_TRUE(IsVisible("clsd"));
  EXPECT_EQ(TreeOf(session.BackupFolder), before);
  EXPECT_EQ(TextOf("clsd"), "&Select folder");
}

INSTANTIATE_TEST_SUITE_P(EachMode, BkUpfrmReservedTest, ::testing::Values(2, 3));

TEST_F(BkUpfrmTest, ToolTipFollowsTheCaptionWhenTheFormComesToTheFront) {
  auto& form = Open<BkUpfrm>();
  for (const QString tip :
       {"Select folder", "Backup Study files", "Backup complete", "Restore Study files"}) {
    Control<QPushButton>("clsd").setText('&' + tip);
    Control<QPushButton>("clsd").setToolTip("stale");
    form.hide();
    Settle();
    form.ShowForm();
    Settle();
    EXPECT_EQ(TipOf("clsd"), tip);
  }
}

TEST_F(BkUpfrmTest, ExitLeadsToTheFolderWhenBothModesAreOne) {
  ForRestore();
  WriteFile(InSet("ktx_RskSmt.kbp"), ReadFile(installation.Register()));
  backup.Get().ShowForm();
  Settle();
  session.BackupSubMode = 1;
  Click("clsed");
  EXPECT_FALSE(backup.IsLoaded());
  EXPECT_TRUE(folders.IsLoaded());
}

TEST_F(BkUpfrmTest, FormTakesTheFrontBackFromAnotherButNotFromItsFolderDialog) {
  ChooseBackup();
  const auto& other = Open<SessionForm>();
  EXPECT_TRUE(other.isVisible());
  EXPECT_TRUE(backup.IfLoaded()->isActiveWindow());
  folders.Get().ShowForm();
  Settle();
  EXPECT_TRUE(folders.IfLoaded()->isActiveWindow());
  backup.Get().ShowForm();
  Settle();
  EXPECT_TRUE(backup.IfLoaded()->isActiveWindow());
}

TEST_F(BkUpfrmTest, WorksByKeysAlone) {
  GivenFullOrganisation("Press shop", 1);
  ChooseBackup();
  PressKey(Qt::Key_S, Qt::AltModifier);
  ASSERT_TRUE(folders.IsLoaded());
  PressKey(Qt::Key_S, Qt::AltModifier);
  ASSERT_TRUE(backup.IsLoaded());
  PressKey(Qt::Key_B, Qt::AltModifier);
  EXPECT_EQ(TextOf("clsd"), "&Backup complete");
  PressKey(Qt::Key_E, Qt::AltModifier);
  EXPECT_FALSE(backup.IsLoaded());
}

TEST_F(BkUpfrmTest, ReturnPressesTheButtonOfTheStateAndEscapeLeadsOut) {
  ChooseBackup();
  EXPECT_EQ(ItemsOf("BKList1"), QStringList()) << "an empty register is backed up all the same";
  EXPECT_TRUE(Control<QPushButton>("clsd").isDefault());
  PressKey(Qt::Key_Return);
  ASSERT_TRUE(folders.IsLoaded());
  PressKey(Qt::Key_Return);
  ASSERT_EQ(TextOf("clsd"), "&Backup Study files");
  PressKey(Qt::Key_Return);
  EXPECT_EQ(TextOf("clsd"), "&Backup complete");
  EXPECT_EQ(BarWidth(), WholeBarWidth());
  EXPECT_TRUE(QFile::exists(InDated("ktx_RskSmt_A.kbp")));
  PressKey(Qt::Key_Escape);
  EXPECT_FALSE(backup.IsLoaded());
}

}  // namespace
}  // namespace kestrix
