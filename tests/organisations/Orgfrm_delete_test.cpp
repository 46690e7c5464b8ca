#include <sys/stat.h>
#include <unistd.h>

#include <QDir>

#include "OrgfrmTest.h"

namespace kestrix {
namespace {

const Message kInUse =
    Tell(Icon::kInformation, "BELTROVAN",
         "All users need to logout/Close/Exit Risk Assessment module and needs to be reopened by "
         "only one user to delete records.");
const Message kNoneSelected = Tell(Icon::kInformation, "BELTROVAN", "No records selceted");
const Message kNoneToDelete = Tell(Icon::kInformation, "BELTROVAN", "No records to delete.");
const Message kStillOpen =
    Tell(Icon::kCritical, "BELTROVAN",
         "Failed to delete records as more than one user has opened this file.");

Message Question(const QString& name) {
  return Ask(Icon::kCritical, "BELTROVAN: Delete record",
             "Wish to delete Organization [" + name + "] from records?");
}

class OrgfrmDeleteTest : public OrgfrmTest {
 protected:
  void GivenShopAndAssembly() {
    installation.GivenOrganisation("Press shop", 3);
    installation.GivenOrganisation("Assembly", 5);
    WriteFile(installation.PictureFolder(3) + "/a.jpg", "picture");
  }
  void Delete(const QString& name) {
    desk.messages.Expect(Question(name)).Answer(Button::kYes);
    Click("delte");
  }
  /// The form on the press shop of two organisations.
  void OpenShop() {
    GivenShopAndAssembly();
    OpenAndPick("Press shop");
  }
  [[nodiscard]] bool HasFiles(int number) {
    return QFile::exists(installation.Study(number)) &&
           QDir(installation.PictureFolder(number)).exists();
  }
  [[nodiscard]] bool HasNoFiles(int number) {
    return !QFile::exists(installation.Study(number)) &&
           !QDir(installation.PictureFolder(number)).exists();
  }
};

TEST_F(OrgfrmDeleteTest, OrganisationGoesWithItsStudyAndItsPictures) {
  OpenShop();
  desk.messages.Expect(Question("Press shop")).Answer(Button::kYes).WhileOpen([&] {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(HasFiles(3));
  });
  Click("delte");
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "5"}}));
  EXPECT_TRUE(HasNoFiles(3));
  EXPECT_TRUE(HasFiles(5));
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
  EXPECT_EQ(session.DeleteStudyNo, 3);
  EXPECT_EQ(session.LoopIndex, 1);
  EXPECT_EQ(session.SelectedOrgName, "Press shop");
  EXPECT_EQ(session.ActiveOrgName, "Press shop");
  EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
  EXPECT_EQ(TextOf("orgnmecbotxt"), "Select organization");
  EXPECT_EQ(ItemsOf("orgnmecbo"), QStringList({"Assembly"}));
  EXPECT_EQ(Enabled(), QStringList({"addorncmd", "delte", "clsed"}));
  EXPECT_EQ(session.OrgEntryMode, 0);
  EXPECT_TRUE(told.isEmpty());
}

TEST_F(OrgfrmDeleteTest, NoIsTheDefaultAndKeepsEverything) {
  OpenShop();
  const QByteArray before = ReadFile(installation.Register());
  desk.messages.Expect(Question("Press shop"));
  Click("delte");
  EXPECT_EQ(session.MsgAnswer, Button::kNo);
  EXPECT_EQ(ReadFile(installation.Register()), before);
  EXPECT_TRUE(HasFiles(3));
  EXPECT_EQ(TextOf("orgnmecbo"), "Press shop");
}

TEST_F(OrgfrmDeleteTest, LastOrganisationLeavesTheFormAsOnAnEmptyRegister) {
  installation.GivenOrganisation("Press shop", 1);
  Exec(installation.Register(), "UPDATE Orgtmp SET OrgNameTMP=1");
  OpenAndPick("Press shop");
  Delete("Press shop");
  EXPECT_TRUE(Organisations().isEmpty());
  EXPECT_TRUE(ItemsOf("orgnmecbo").isEmpty());
  EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
  EXPECT_EQ(Enabled(), QStringList({"addorncmd", "delte", "clsed"}));
  EXPECT_EQ(LastOpened(), QStringList({"1"})) << "the history keeps its number";
  OpenHistory();
  EXPECT_EQ(TextOf("hstry"), "No history");
}

TEST_F(OrgfrmDeleteTest, NumberOfADeletedOrganisationIsUsedAgain) {
  installation.GivenOrganisation("A", 1);
  installation.GivenOrganisation("B", 2);
  installation.GivenOrganisation("C", 3);
  installation.GivenProject(2, "P-1", "B");
  OpenAndPick("B");
  Delete("B");
  Add("D");
  EXPECT_EQ(Organisations(), QList<QStringList>({{"A", "1"}, {"C", "3"}, {"D", "2"}}));
  EXPECT_TRUE(RowsOf(installation.Study(2), "Project_details").isEmpty());
}

TEST_F(OrgfrmDeleteTest, SeveralAreDeletedOneAfterTheOther) {
  GivenShopAndAssembly();
  installation.GivenOrganisation("Paint shop", 8);
  OpenOrganisations();
  QList<int> counts;
  for (const char* name : {"Assembly", "Press shop", "Paint shop"}) {
    PickOrganisation(name);
    desk.messages.Expect(Question(name)).Answer(Button::kYes).WhileOpen([&] {
      EXPECT_EQ(session.LoopIndex, 1001);
    });
    Click("delte");
    counts += session.LoopIndex;
  }
  EXPECT_TRUE(Organisations().isEmpty());
  EXPECT_TRUE(HasNoFiles(3) && HasNoFiles(5) && HasNoFiles(8));
  // The search goes in steps of two through the register as it was when the form was loaded.
  EXPECT_EQ(counts, (QList<int>{3, 1, 5}));
}

TEST_F(OrgfrmDeleteTest, WithoutANameNothingIsSelected) {
  GivenShopAndAssembly();
  OpenOrganisations();
  for (const char* name : {"Select organization", ""}) {
    Control<QComboBox>("orgnmecbo").setEditText(name);
    desk.messages.Expect(kNoneSelected);
    Click("delte");
    EXPECT_EQ(session.ActiveOrgName, name);
    EXPECT_EQ(Organisations().size(), 2);
    EXPECT_TRUE(HasFiles(3));
  }
}

TEST_F(OrgfrmDeleteTest, EmptyRegisterWithATextInTheComboAsksNothing) {
  OpenOrganisations();
  Control<QComboBox>("orgnmecbo").setEditText("Ghost");
  session.SelectedOrgName = "Ghost";
  Click("delte");
  EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
  EXPECT_EQ(session.SelectedOrgName, "");
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(OrgfrmDeleteTest, SignOfAnyStudyUpToAThousandBarsEveryDelete) {
  OpenShop();
  session.ActiveOrgName = "before";
  for (const int number : {777, 1000}) {
    WriteFile(installation.StudySign(number), QByteArray());
    desk.messages.Expect(kInUse);
    Click("delte");
    EXPECT_EQ(session.AnyStudyLocked, 1);
    EXPECT_EQ(session.LoopIndex, number);
    EXPECT_TRUE(session.FileFoundA);
    EXPECT_EQ(session.ActiveOrgName, "before");
    EXPECT_EQ(Organisations().size(), 2);
    EXPECT_TRUE(HasFiles(3));
    ASSERT_TRUE(QFile::remove(installation.StudySign(number)));
  }
  {
    const SignHolder other(installation.StudySign(5));
    desk.messages.Expect(kInUse);
    Click("delte");
    EXPECT_EQ(Organisations().size(), 2) << "another process holds one";
  }
  ASSERT_TRUE(QFile::remove(installation.StudySign(5)));
  WriteFile(installation.StudySign(1001), QByteArray());
  Delete("Press shop");
  EXPECT_EQ(session.AnyStudyLocked, 0);
  EXPECT_TRUE(HasFiles(5));
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "5"}}));
}

TEST_F(OrgfrmDeleteTest, MarkOfAnotherUserBarsTheDeleteForTheRestOfTheRun) {
  GivenShopAndAssembly();
  session.OtherUserMark = 2;
  OpenAndPick("Press shop");
  desk.messages.Expect(kInUse);
  Click("delte");
  EXPECT_EQ(session.AnyStudyLocked, 0);
  EXPECT_EQ(session.OtherUserMark, 2);
  EXPECT_EQ(Organisations().size(), 2);
}

TEST_F(OrgfrmDeleteTest, UserWhoCameInBetweenKeepsTheStudyAndTheRowGoes) {
  OpenShop();
  std::unique_ptr<SignHolder> other;
  desk.messages.Expect(Question("Press shop")).Answer(Button::kYes).WhileOpen([&] {
    other = std::make_unique<SignHolder>(installation.StudySign(3));
  });
  desk.messages.Expect(kStillOpen);
  Click("delte");
  EXPECT_EQ(told, QStringList({"let go of the study"}));
  EXPECT_TRUE(QFile::exists(installation.Study(3)));
  EXPECT_FALSE(QDir(installation.PictureFolder(3)).exists());
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "5"}}));
  EXPECT_EQ(session.ActiveOrgName, "");
}

TEST_F(OrgfrmDeleteTest, StudyAboveTheScanThatThisRunHoldsIsLetGoOf) {
  installation.GivenOrganisation("Press shop", 1001);
  auto held = std::make_unique<Database>(installation.Study(1001));
  OpenAndPick("Press shop");
  QObject::connect(form, &Orgfrm::StudyReleaseRequested, form, [&] { held.reset(); });
  Delete("Press shop");
  EXPECT_EQ(told, QStringList({"let go of the study"}));
  EXPECT_TRUE(HasNoFiles(1001));
  EXPECT_TRUE(Organisations().isEmpty());
  EXPECT_EQ(session.ActiveOrgName, "");
}

TEST_F(OrgfrmDeleteTest, RowGoesAlsoWhenItsFilesCantBeDeleted) {
  OpenShop();
  desk.files.FailNext(FileAction::kDeleteFile, "risk_esmatn3.mdb", failure::kPermissionDenied);
  desk.files.FailNext(FileAction::kDeleteFolder, "Prj3", failure::kPermissionDenied);
  Delete("Press shop");
  EXPECT_EQ(desk.files.FaultsLeft(), 0);
  EXPECT_TRUE(HasFiles(3));
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "5"}}));
}

TEST_F(OrgfrmDeleteTest, FilesOfAnotherUserThatThisOneMayNotDeleteStayAndTheRowGoes) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give files to two users";
  GivenShopAndAssembly();
  // A shared folder in which everybody may make files and delete only their own.
  const QString shared = QFileInfo(installation.Register()).path();
  GiveToNobody(QFileInfo(installation.Folder()).path());
  for (const QString& theirs :
       {shared, installation.Study(3), QFileInfo(installation.PictureFolder(3)).path(),
        installation.PictureFolder(3), installation.PictureFolder(3) + "/a.jpg"})
    ASSERT_EQ(::chown(QFile::encodeName(theirs).constData(), 0, 0), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(shared).constData(), 01777), 0);
  const auto seen = RunAsNobody([&] {
    OpenAndPick("Press shop");
    Delete("Press shop");
    return QStringLiteral("%1 boxes, %2, waits: %3")
        .arg(desk.messages.Shown().size())
        .arg(TextOf("orgnmecbo"))
        .arg(QApplication::overrideCursor() != nullptr);
  });
  EXPECT_EQ(seen.value_or("died"), "1 boxes, Select organization, waits: 0");
  EXPECT_TRUE(HasFiles(3));
  EXPECT_TRUE(QFile::exists(installation.PictureFolder(3) + "/a.jpg"));
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "5"}}));
}

TEST_F(OrgfrmDeleteTest, OrganisationWhoseFilesAreGoneAlreadyGoesWithWhatIsLeft) {
  for (const auto& [study, pictures] :
       {std::pair(true, false), std::pair(false, true), std::pair(true, true)}) {
    Exec(installation.Register(), "DELETE FROM orgtn");
    QFile::remove(installation.Study(5));
    GivenShopAndAssembly();
    if (study) QFile::remove(installation.Study(3));
    if (pictures) QDir(installation.PictureFolder(3)).removeRecursively();
    const auto deletions = desk.files.Log().filter("Delete").size();
    OpenAndPick("Press shop");
    Delete("Press shop");
    EXPECT_TRUE(HasNoFiles(3));
    EXPECT_EQ(desk.files.Log().filter("Delete").size() - deletions, 2 - study - pictures);
    EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "5"}}));
    EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
  }
}

TEST_F(OrgfrmDeleteTest, RegisterThatIsGoneBehindTheQuestionIsPassedOver) {
  OpenShop();
  ASSERT_TRUE(QFile::remove(installation.Register()));
  Delete("Press shop");
  EXPECT_TRUE(HasNoFiles(3));
  EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
  EXPECT_EQ(Enabled(), QStringList({"addorncmd", "delte", "clsed"}));
}

TEST_F(OrgfrmDeleteTest, FilesGoBeforeTheRow) {
  installation.GivenOrganisation("Press shop", 1001);
  WriteFile(installation.StudySign(1001), QByteArray());
  OpenAndPick("Press shop");
  desk.messages.Expect(Question("Press shop")).Answer(Button::kYes);
  desk.messages.Expect(kStillOpen).WhileOpen([&] {
    EXPECT_EQ(Organisations().size(), 1);
    EXPECT_TRUE(HasFiles(1001));
  });
  Click("delte");
  EXPECT_TRUE(HasNoFiles(1001));
  EXPECT_TRUE(Organisations().isEmpty());
}

TEST_F(OrgfrmDeleteTest, OrganisationWithoutAStudyGoesTooAndTheQuestionShowsItsNameAsItIs) {
  const QString name = QString::fromUtf8("O''Brien & <b>%1</b> 機械");
  Exec(installation.Register(), "INSERT INTO orgtn VALUES('" + name + "',0)");
  OpenAndPick(QString(name).replace("''", "'"));
  Delete(QString(name).replace("''", "'"));
  EXPECT_EQ(session.DeleteStudyNo, 0);
  EXPECT_TRUE(Organisations().isEmpty());
}

TEST_F(OrgfrmDeleteTest, NumberOfTheActiveStudyStays) {
  // The name equals the number that was opened last, and still no row of the history matches it.
  installation.GivenOrganisation("3", 3);
  Exec(installation.Register(), "UPDATE Orgtmp SET OrgNameTMP=3");
  session.ActiveStudyNo = 12;
  OpenAndPick("3");
  Delete("3");
  EXPECT_EQ(session.ActiveStudyNo, 12);
  EXPECT_EQ(session.DeleteStudyNo, 3);
}

TEST_F(OrgfrmDeleteTest, RowBeyondTheFirstFiveThousandKeepsTheNumberOfTheDeleteBefore) {
  Exec(installation.Register(),
       "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<5001) "
       "INSERT INTO orgtn SELECT 'Organisation '||i, i+2000 FROM n");
  OpenAndPick("Organisation 5000");
  Delete("Organisation 5000");
  EXPECT_EQ(session.DeleteStudyNo, 7000);
  OpenOrganisations();
  Exec(installation.Register(), "INSERT INTO orgtn VALUES('One more',7100)");
  OpenAndPick("One more");
  Delete("One more");
  EXPECT_EQ(session.DeleteStudyNo, 7000);
  EXPECT_EQ(Organisations().size(), 5000);
}

TEST_F(OrgfrmDeleteTest, RowThatSomebodyElseDeletedMeanwhileIsPassedOver) {
  OpenShop();
  desk.messages.Expect(Question("Press shop")).Answer(Button::kYes).WhileOpen([&] {
    OtherProcess(installation.Register()).Run("DELETE FROM orgtn WHERE OrgName='Press shop';");
  });
  Click("delte");
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "5"}}));
  EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
}

/// A disk that takes note of the cursor while it deletes.
class WatchedFiles : public FailingFileSystem {
 public:
  void DeleteFile(const QString& path) override {
    Look();
    FailingFileSystem::DeleteFile(path);
  }
  void DeleteFolder(const QString& path) override {
    Look();
    FailingFileSystem::DeleteFolder(path);
  }
  QList<bool> waits;

 private:
  void Look() {
    const QCursor* cursor = QApplication::overrideCursor();
    waits += cursor != nullptr && cursor->shape() == Qt::WaitCursor;
  }
};

/// The form on a desktop with other files.
class OrgfrmDeleteOnFilesTest : public OrgfrmDeleteTest {
 protected:
  void OpenOn(FileSystem& files) {
    desktop_ = std::make_unique<OtherDesktop>(desk, files, desk.shell, context);
    OpenOrganisations(desktop_->context);
  }
  void CloseDesktop() {
    delete form.data();
    desktop_.reset();
  }

 private:
  std::unique_ptr<OtherDesktop> desktop_;
};

TEST_F(OrgfrmDeleteOnFilesTest, ErrorBeforeTheNameIsTakenUpFindsNothingToDelete) {
  GivenShopAndAssembly();
  DeafFiles deaf(".ldb");
  OpenOn(deaf);
  PickOrganisation("Press shop");
  desk.messages.Expect(kNoneToDelete);
  Click("delte");
  EXPECT_EQ(Organisations().size(), 2);
  EXPECT_TRUE(HasFiles(3));
  CloseDesktop();
}

TEST_F(OrgfrmDeleteOnFilesTest, CursorWaitsWhileFilesAreDeletedAndIsPutBackOnEveryWayOut) {
  GivenShopAndAssembly();
  WatchedFiles files;
  OpenOn(files);
  PickOrganisation("Press shop");
  Delete("Press shop");
  EXPECT_EQ(files.waits, (QList<bool>{true, true}));
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  PickOrganisation("Assembly");
  desk.messages.Expect(Question("Assembly")).Answer(Button::kYes);
  files.FailNext(FileAction::kDeleteFile, "risk_esmatn5.mdb", failure::kPermissionDenied);
  files.FailNext(FileAction::kDeleteFolder, "Prj5", failure::kPermissionDenied);
  Click("delte");
  EXPECT_EQ(files.waits, (QList<bool>{true, true, true, true}));
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  CloseDesktop();
}

}  // namespace
}  // namespace kestrix
