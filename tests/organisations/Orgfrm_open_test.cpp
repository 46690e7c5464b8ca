#include <sys/wait.h>
#include <unistd.h>

#include <QDir>

#include "OrgfrmTest.h"

namespace kestrix {
namespace {

const Message kNameNeeded =
    Tell(Icon::kInformation, "BELTROVAN: Data required", "Please enter/select Organization name.");
const Message kTemplateMissing =
    Tell(Icon::kInformation, "BELTROVAN: File missing.", "Installed files missing.");
const Message kCopyFailed =
    Tell(Icon::kInformation, "BELTROVAN",
         "Failed to create files. Seek Administrator approval for File installation.");

class OrgfrmOpenTest : public OrgfrmTest {
 protected:
  void OpenByList(const QString& name) {
    OpenAndPick(name);
    Click("clsd");
  }
  void AddAnother(const QString& name) {
    OpenOrganisations();
    Add(name);
    ASSERT_TRUE(IsGone());
  }
};

TEST_F(OrgfrmOpenTest, KnownOrganisationIsMadeTheActiveOne) {
  installation.GivenOrganisation("Assembly", 2);
  installation.GivenOrganisation("Press shop", 7);
  OpenByList("Press shop");
  EXPECT_TRUE(IsGone());
  EXPECT_EQ(session.ActiveOrgName, "Press shop");
  EXPECT_EQ(session.SelectedOrgName, "Press shop");
  EXPECT_EQ(session.ActiveStudyNo, 7);
  EXPECT_EQ(session.OrgCount, 2);
  EXPECT_EQ(session.OtherUserMark, 0);
  EXPECT_EQ(session.OrgOpenDone, 1);
  EXPECT_EQ(session.OrgEntryMode, 0);
  EXPECT_EQ(frame.status_texts, QStringList({"Active Organization - Press shop"}));
  EXPECT_EQ(LastOpened(), QStringList({"7"}));
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "2"}, {"Press shop", "7"}}));
}

TEST_F(OrgfrmOpenTest, MnemonicTellsTheProjectFormBehindTheSessionAndBeforeTheUnload) {
  installation.GivenOrganisation("Press shop", 7);
  OpenAndPick("Press shop");
  QObject::connect(form, &Orgfrm::OrganisationOpened, form, [&](const QString& caption) {
    EXPECT_EQ(caption, " Press shop");
    EXPECT_EQ(session.ActiveStudyNo, 7);
    EXPECT_EQ(LastOpened(), QStringList({"7"}));
    EXPECT_EQ(session.OrgOpenDone, 0);
    EXPECT_FALSE(form->IsUnloading());
  });
  QObject::connect(form, &Orgfrm::Closing, form, [&] {
    EXPECT_EQ(session.OrgOpenDone, 1);
    EXPECT_EQ(session.OrgEntryMode, 2);
  });
  PressKey(Qt::Key_O, Qt::AltModifier);
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
}

TEST_F(OrgfrmOpenTest, ProjectFormMayUnloadThisOneInBetween) {
  installation.GivenOrganisation("Press shop", 7);
  OpenAndPick("Press shop");
  QObject::connect(form, &Orgfrm::OrganisationOpened, form, [&] { form->UnloadForm(); });
  Click("clsd");
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
  EXPECT_EQ(session.OrgEntryMode, 0);
  EXPECT_EQ(session.OrgOpenDone, 1);
}

TEST_F(OrgfrmOpenTest, WithoutANameTheFormStaysAndNothingIsWritten) {
  installation.GivenOrganisation("Press shop", 7);
  LoadOrganisations();
  form->ShowFormModal();
  Settle();
  LookAt(*form);
  session.ActiveOrgName = "before";
  for (const char* name : {"Select organization", ""}) {
    Control<QComboBox>("orgnmecbo").setEditText(name);
    desk.messages.Expect(kNameNeeded);
    Click("clsd");
    EXPECT_FALSE(IsGone());
    EXPECT_EQ(form->windowModality(), Qt::ApplicationModal);
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(FocusName(), "orgnmecbotxt");
    EXPECT_EQ(session.ActiveOrgName, "before");
    EXPECT_EQ(LastOpened(), QStringList({"0"}));
    EXPECT_TRUE(frame.status_texts.isEmpty());
    EXPECT_TRUE(told.isEmpty());
  }
}

TEST_F(OrgfrmOpenTest, MissingTemplateUnloadsBothFormsWithAndWithoutANameAndWritesNothing) {
  installation.GivenOrganisation("Press shop", 7);
  ASSERT_TRUE(QFile::remove(installation.Template()));
  for (const bool named : {true, false}) {
    OpenOrganisations();
    if (named) PickOrganisation("Press shop");
    desk.messages.Expect(kTemplateMissing);
    Click("clsd");
    EXPECT_TRUE(IsGone());
    EXPECT_EQ(told, QStringList({"closing", "project form away"}));
    EXPECT_EQ(session.ActiveStudyNo, 0);
    EXPECT_EQ(LastOpened(), QStringList({"0"}));
  }
}

TEST_F(OrgfrmOpenTest, ErrorBeforeTheNameIsTakenUpEndsTheCommandSilently) {
  installation.GivenOrganisation("Press shop", 7);
  DeafFiles deaf("risk_esmatn.mdb");
  OtherDesktop desktop(desk, deaf, desk.shell, context);
  OpenOrganisations(desktop.context);
  PickOrganisation("Press shop");
  Click("clsd");
  EXPECT_FALSE(IsGone());
  EXPECT_EQ(session.ActiveStudyNo, 0);
  EXPECT_EQ(LastOpened(), QStringList({"0"}));
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  delete form.data();
}

TEST_F(OrgfrmOpenTest, FirstOrganisationGetsNumberOneAndTakesUpAnOldStudyAsItStands) {
  AddAnother("Press shop");
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Press shop", "1"}}));
  EXPECT_EQ(session.ActiveStudyNo, 1);
  EXPECT_EQ(ReadFile(installation.Study(1)), ReadFile(installation.Template()));
  EXPECT_FALSE(QDir(installation.PictureFolder(1)).exists());
  Exec(installation.Register(), "DELETE FROM orgtn");
  installation.GivenProject(1, "P-1", "Old");
  AddAnother("Press shop");
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Press shop", "1"}}));
  EXPECT_EQ(Column(installation.Study(1), "SELECT Project_Number FROM Project_details"),
            QStringList({"P-1"}));
}

TEST_F(OrgfrmOpenTest, SmallestFreeNumberIsGiven) {
  const std::pair<const char*, qint16> registers[] = {
      {"1),('B',2),('C',4", 3}, {"2", 1}, {"0),('B',NULL", 1}, {"1),('B',2),('C',3),('E',4", 5}};
  for (const auto& [rows, number] : registers) {
    Exec(installation.Register(),
         QStringLiteral("DELETE FROM orgtn; INSERT INTO orgtn VALUES('A',%1)").arg(rows));
    const auto before = Organisations();
    AddAnother("D");
    EXPECT_EQ(Organisations(), before + QList<QStringList>({{"D", QString::number(number)}}));
    EXPECT_EQ(session.ActiveStudyNo, number);
    EXPECT_EQ(session.LoopIndex, number);
    EXPECT_TRUE(QFile::exists(installation.Study(number)));
  }
}

TEST_F(OrgfrmOpenTest, KnownOrganisationWithoutANumberGetsItAndItsStudyAtItsNextOpening) {
  for (const char* none : {"NULL", "0"}) {
    Exec(installation.Register(), QStringLiteral("DELETE FROM orgtn; INSERT INTO orgtn "
                                                 "VALUES('A',1),('B',%1),('C',3)")
                                      .arg(none));
    session.ActiveStudyNo = 3;
    OpenByList("B");
    EXPECT_EQ(session.ActiveStudyNo, 2);
    EXPECT_EQ(LastOpened(), QStringList({"2"}));
    EXPECT_EQ(Organisations(), QList<QStringList>({{"A", "1"}, {"B", "2"}, {"C", "3"}}));
    EXPECT_TRUE(QFile::remove(installation.Study(2)));
    EXPECT_EQ(told, QStringList({"opened [ B]", "closing"}));
  }
}

TEST_F(OrgfrmOpenTest, ANumberThatSomebodyElseGaveMeanwhileStands) {
  Exec(installation.Register(), "INSERT INTO orgtn VALUES('A',1),('B',NULL)");
  OpenAndPick("B");
  OtherProcess(installation.Register()).Run("UPDATE orgtn SET sclenotxt=7 WHERE OrgName='B';");
  Click("clsd");
  EXPECT_EQ(session.ActiveStudyNo, 7);
  EXPECT_EQ(Organisations().last(), QStringList({"B", "7"}));
  EXPECT_FALSE(QFile::exists(installation.Study(2)));
}

TEST_F(OrgfrmOpenTest, TenThousandOrganisationsStayUsable) {
  constexpr int kCount = 10'000;
  Exec(installation.Register(),
       QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "
                      "INSERT INTO orgtn SELECT 'Organisation '||i, i FROM n WHERE i<>9000")
           .arg(kCount));
  // As a walk for each number on the disk it would be a hundred million reads and never end.
  OpenOrganisations();
  Add("The last one");
  EXPECT_EQ(Organisations().last(), QStringList({"The last one", "9000"}));
  EXPECT_EQ(session.OrgCount, kCount);
}

TEST_F(OrgfrmOpenTest, MoreOrganisationsThanACountHoldsEndsTheCommandSilently) {
  Exec(installation.Register(),
       "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<32768) "
       "INSERT INTO orgtn SELECT 'Organisation '||i, i FROM n");
  OpenOrganisations();
  session.OrgCount = 4;
  Control<QComboBox>("orgnmecbo").setEditText("Organisation 7");
  Click("clsd");
  EXPECT_FALSE(IsGone());
  EXPECT_EQ(session.OrgCount, 4);
  EXPECT_EQ(session.ActiveStudyNo, 0);
  EXPECT_EQ(LastOpened(), QStringList({"0"}));
}

TEST_F(OrgfrmOpenTest, FailedCopyIsToldAndTheRowKeepsItsNumber) {
  desk.files.FailNext(FileAction::kCopyFile, "risk_esmatn1.mdb", failure::kDiskFull);
  OpenOrganisations();
  desk.messages.Expect(kCopyFailed);
  Add("Press shop");
  EXPECT_TRUE(IsGone());
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Press shop", "1"}}));
  EXPECT_EQ(session.ActiveStudyNo, 1);
  EXPECT_FALSE(QFile::exists(installation.Study(1)));
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
}

TEST_F(OrgfrmOpenTest, StudyThatAnotherProcessHoldsIsMarkedAndOpensAllTheSame) {
  installation.GivenOrganisation("Press shop", 7);
  const SignHolder other(installation.StudySign(7));
  OpenByList("Press shop");
  EXPECT_EQ(session.OtherUserMark, 2);
  EXPECT_EQ(session.ActiveStudyNo, 7);
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
}

TEST_F(OrgfrmOpenTest, MarkOfAnotherUserIsNeitherTakenBackNorMadeByAnotherStudysSign) {
  installation.GivenOrganisation("Press shop", 7);
  WriteFile(installation.StudySign(8), QByteArray());
  for (const int mark : {0, 2}) {
    session.OtherUserMark = static_cast<qint16>(mark);
    OpenByList("Press shop");
    EXPECT_EQ(session.OtherUserMark, mark);
  }
}

TEST_F(OrgfrmOpenTest, NumberOutOfRangeLeavesTheFormerOneWhoseSignIsLookedAt) {
  Exec(installation.Register(), "INSERT INTO orgtn VALUES('A',40000)");
  WriteFile(installation.StudySign(7), QByteArray());
  session.ActiveStudyNo = 7;
  OpenByList("A");
  EXPECT_EQ(session.ActiveStudyNo, 7);
  EXPECT_EQ(session.OtherUserMark, 2);
}

TEST_F(OrgfrmOpenTest, OrganisationDeletedMeanwhileLeavesTheNumberAsItWas) {
  installation.GivenOrganisation("Press shop", 7);
  session.ActiveStudyNo = 4;
  OpenAndPick("Press shop");
  OtherProcess(installation.Register()).Run("DELETE FROM orgtn;");
  Click("clsd");
  EXPECT_EQ(session.ActiveStudyNo, 4);
  EXPECT_EQ(LastOpened(), QStringList({"4"}));
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
}

TEST_F(OrgfrmOpenTest, HistoryThatCantBeWrittenIsPassedOver) {
  installation.GivenOrganisation("Press shop", 7);
  OpenAndPick("Press shop");
  {
    const WriterAtWork other(installation.Register());
    Click("clsd");
  }
  EXPECT_TRUE(IsGone());
  EXPECT_EQ(LastOpened(), QStringList({"0"}));
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(OrgfrmOpenTest, HistoryOfTheLastOneToOpenStands) {
  installation.GivenOrganisation("Press shop", 7);
  OpenOrganisations();
  OpenHistory();
  PickOrganisation("Press shop");
  OtherProcess(installation.Register()).Run("UPDATE Orgtmp SET OrgNameTMP=3;");
  Click("clsd");
  EXPECT_EQ(LastOpened(), QStringList({"7"}));
  Exec(installation.Register(), "DELETE FROM Orgtmp");
  session.ActiveStudyNo = 0;
  OpenByList("Press shop");
  EXPECT_EQ(session.ActiveStudyNo, 7) << "without its row it is passed over";
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
}

TEST_F(OrgfrmOpenTest, OrganisationThatSomebodyElseAddsInBetweenIsKept) {
  OpenOrganisations();
  Click("addorncmd");
  Type("Press shop");
  OtherProcess(installation.Register()).Run("INSERT INTO orgtn VALUES('Assembly',1);");
  PressTab();
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "1"}, {"Press shop", "2"}}));
}

TEST_F(OrgfrmOpenTest, TwoProcessesThatAddLoseNoOrganisation) {
  constexpr int kEach = 20;
  const auto add_all = [&](const QString& who) {
    for (int i = 1; i <= kEach; ++i) AddAnother(who + QString::number(i));
  };
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    add_all("theirs ");
    _exit(HasFailure() ? 1 : 0);
  }
  add_all("ours ");
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);

  QStringList names;
  for (const QStringList& row : Organisations()) {
    names += row.at(0);
    EXPECT_GE(row.at(1).toInt(), 1) << row.at(0).toStdString();
    EXPECT_TRUE(QFile::exists(installation.Study(row.at(1).toInt())));
  }
  QStringList expected;
  for (const char* who : {"ours ", "theirs "}) {
    for (int i = 1; i <= kEach; ++i) expected += who + QString::number(i);
  }
  names.sort();
  expected.sort();
  EXPECT_EQ(names, expected);
  EXPECT_EQ(Column(installation.Register(), "PRAGMA integrity_check"), QStringList({"ok"}));
}

}  // namespace
}  // namespace kestrix
