#include "app/Workbench.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QSignalSpy>

#include "support/FakePlatform.h"
#include "support/Files.h"
#include "support/FormHands.h"
#include "support/TestInstallation.h"

namespace kestrix {
namespace {

/// The whole program on a desktop of fakes, worked through its forms.
class WorkbenchTest : public ::testing::Test, public TestInstallation {
 protected:
  WorkbenchTest() {
    desk.environment.SetApplicationFolder(Folder());
    desk.files.ChangeFolder(Folder());
  }

  void Start() {
    bench = std::make_unique<Workbench>(desk.platform());
    ended = std::make_unique<QSignalSpy>(bench.get(), &Workbench::Ended);
    hands = std::make_unique<FormHands>(bench->forms());
    bench->Start();
    FormHands::Settle();
  }
  /// The name of the form in front.
  QString Front() {
    FormHands::Settle();
    return bench->forms().active() == nullptr ? QString() : bench->forms().active()->objectName();
  }
  static QWidget* Shown(const QString& name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == name && window->isVisible()) return window;
    }
    return nullptr;
  }
  void OpenOrganisation(const QString& name) {
    hands->Choose("mnuDatamnfrm");
    ASSERT_EQ(Front(), "Orgfrm");
    hands->Pick("orgnmecbo", name);
    hands->Click("clsd");
    ASSERT_EQ(Front(), "mnfrm");
  }
  void GivenPressShop() {
    GivenOrganisation("Press shop", 1);
    GivenProject(1, "P-1", "Press shop");
    GivenTask(1, {{"Project_Number", "P-1"}, {"FuntnTaskMachry", "Load"}});
    GivenTask(1, {{"Project_Number", "P-1"}, {"FuntnTaskMachry", "Set"}});
  }
  void StartWithPressShop() {
    GivenPressShop();
    Start();
  }
  /// On the form of the organisations.
  void PickPressShop() {
    hands->Choose("mnuDatamnfrm");
    hands->Pick("orgnmecbo", "Press shop");
  }
  /// The next box tells that files are missing.
  void ExpectMissing(const QString& more = {}) {
    desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN: Files missing",
                             "More files required run setup/Installed Files missing" + more);
  }
  void OpenTasks() {
    OpenOrganisation("Press shop");
    hands->Click("simultn1");
    ASSERT_EQ(Front(), "RiskEvalFrm_1");
  }

  FakePlatform desk;
  std::unique_ptr<Workbench> bench;
  std::unique_ptr<QSignalSpy> ended;
  std::unique_ptr<FormHands> hands;
};

TEST_F(WorkbenchTest, TheFrameIsTheFirstUsableScreen) {
  Start();
  EXPECT_EQ(Front(), "frmMain");
  EXPECT_EQ(bench->session().DocumentCount, 1);
  EXPECT_TRUE(hands->Control<QAction>("mnuDatamnfrm").isEnabled());
}

TEST_F(WorkbenchTest, AFrameThatCannotBeLoadedEndsTheRun) {
  desk.settings.Save("Settings", "MainWidth", "wide");
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN", "5. Installed files missing.");
  Start();
  EXPECT_EQ(ended->count(), 1);
  EXPECT_EQ(Shown("frmMain"), nullptr);
  EXPECT_EQ(Shown("mnfrm"), nullptr);
}

TEST_F(WorkbenchTest, YesToTheHomePageEndsTheRunAndNoDoesnt) {
  WriteFile(Folder() + "/../kestrixmodule.exe", "program");
  const Message question =
      Ask(Icon::kInformation, "BELTROVAN", "Wish to close Risk Assessment Module?", Button::kYes);
  Start();
  desk.messages.Expect(question).Answer(Button::kNo);
  hands->Choose("homepage");
  EXPECT_EQ(Front(), "frmMain");
  EXPECT_EQ(ended->count(), 0);
  desk.messages.Expect(question).Answer(Button::kYes);
  hands->Choose("homepage");
  EXPECT_EQ(ended->count(), 1);
  EXPECT_EQ(desk.shell.Companions().size(), 2);
}

TEST_F(WorkbenchTest, ANewOrganisationIsStoredAndOpenedWithItsStudy) {
  Start();
  hands->Choose("mnuDatamnfrm");
  hands->Click("addorncmd");
  hands->Type("Press shop");
  hands->PressTab();
  EXPECT_EQ(Front(), "mnfrm");
  EXPECT_EQ(hands->TextOf("Orglbltxt"), " Press shop");
  EXPECT_EQ(Sql(Register(), "SELECT OrgName, sclenotxt FROM orgtn"),
            (QList<QStringList>{{"Press shop", "1"}}));
  EXPECT_EQ(Column(Register(), "SELECT OrgNameTMP FROM Orgtmp"), QStringList{"1"});
  EXPECT_TRUE(QFile::exists(Study(1)));
  EXPECT_TRUE(QFile::exists(StudySign(1)));
  EXPECT_EQ(Shown("Orgfrm"), nullptr);
  EXPECT_EQ(bench->session().StudyConnected, 0);
}

TEST_F(WorkbenchTest, FromProjectToTasksToEstimationAndBack) {
  StartWithPressShop();
  OpenTasks();
  EXPECT_EQ(Shown("mnfrm"), nullptr);
  EXPECT_EQ(hands->TextOf("ESINoLBLCp"), "P-1");
  hands->Click("RiskEsmtBtn");
  EXPECT_EQ(Front(), "RiskEstimtn");
  EXPECT_EQ(Shown("RiskEvalFrm_1"), nullptr);
  hands->Pick("SevertyCbo", "S1, Slight");
  hands->Pick("occurrenceCbo", "O3, High");
  hands->Pick("avoidanceCbo", "A2, Impossible");
  hands->Click("clsfrm");
  EXPECT_EQ(Front(), "RiskEvalFrm_1");
  EXPECT_EQ(hands->TextOf("RIBRtxt"), "2 (Low Risk)");
  hands->Click("ClsedDg");
  EXPECT_EQ(Front(), "mnfrm");
  EXPECT_EQ(Sql(Study(1),
                "SELECT RiskIndex,SevertyCbo,ExposureCbo,occurrenceCbo,avoidanceCbo "
                "FROM Risk_records ORDER BY nunberauto"),
            (QList<QStringList>{{"2", "S1, Slight", "F1, F2", "O3, High", "A2, Impossible"},
                                {"0", "Reset", "N.A.", "N.A.", "N.A."}}));
}

TEST_F(WorkbenchTest, ClosingTheProjectFormReturnsToTheFrameAlone) {
  StartWithPressShop();
  OpenOrganisation("Press shop");
  hands->Click("clsdfrm");
  EXPECT_EQ(Front(), "frmMain");
  EXPECT_EQ(bench->session().ActiveOrgName, "");
  EXPECT_FALSE(QFile::exists(StudySign(1)));
  EXPECT_EQ(ended->count(), 0);
}

TEST_F(WorkbenchTest, LeavingTheOrganisationsBringsUpTheProjectFormWithoutAProject) {
  StartWithPressShop();
  hands->Choose("mnuDatamnfrm");
  hands->Click("clsed");
  EXPECT_EQ(Front(), "mnfrm");
  EXPECT_FALSE(hands->IsEnabled("simultn1"));
  EXPECT_FALSE(hands->IsEnabled("LnkDwgs"));
}

TEST_F(WorkbenchTest, TheHistoryOpensTheOrganisationOpenedLast) {
  GivenPressShop();
  GivenOrganisation("Paint shop", 2);
  GivenProject(2, "Q-9", "Paint shop");
  Start();
  OpenOrganisation("Paint shop");
  hands->Click("clsdfrm");
  hands->Choose("mnuDatamnfrm");
  auto& menu = hands->Control<QMenu>("fle");
  menu.popup(QPoint());
  FormHands::Settle();
  EXPECT_EQ(hands->TextOf("hstry"), "Paint shop");
  menu.hide();
  hands->Choose("hstry");
  EXPECT_EQ(Front(), "mnfrm");
  EXPECT_EQ(hands->TextOf("Orglbltxt"), " Paint shop");
  EXPECT_EQ(hands->TextOf("ESI_No"), "Q-9");
  EXPECT_EQ(Column(Register(), "SELECT OrgNameTMP FROM Orgtmp"), QStringList{"2"});
}

TEST_F(WorkbenchTest, TheOrganisationFormKeepsTheFrontUntilItGoes) {
  StartWithPressShop();
  QWidget* frame = Shown("frmMain");
  hands->Choose("mnuDatamnfrm");
  ASSERT_EQ(Front(), "Orgfrm");
  frame->activateWindow();
  QApplication::setActiveWindow(frame);
  EXPECT_TRUE(FormHands::WaitUntil([&] { return Front() == "Orgfrm"; }));
}

TEST_F(WorkbenchTest, AnotherOrganisationIsOpenedFromTheProjectForm) {
  GivenPressShop();
  GivenOrganisation("Paint shop", 2);
  GivenProject(2, "Q-9", "Paint shop");
  Start();
  OpenOrganisation("Press shop");
  EXPECT_EQ(hands->TextOf("ESI_No"), "P-1");
  hands->Click("nworg");
  ASSERT_EQ(Front(), "Orgfrm");
  EXPECT_EQ(Shown("Orgfrm")->windowModality(), Qt::ApplicationModal);
  hands->Pick("orgnmecbo", "Paint shop");
  hands->Click("clsd");
  EXPECT_EQ(Front(), "mnfrm");
  EXPECT_EQ(hands->TextOf("ESI_No"), "Q-9");
  EXPECT_FALSE(QFile::exists(StudySign(1)));
  EXPECT_TRUE(QFile::exists(StudySign(2)));
}

TEST_F(WorkbenchTest, LeavingTheOrganisationsWithoutAChoiceKeepsTheOneInWork) {
  StartWithPressShop();
  OpenOrganisation("Press shop");
  hands->Click("nworg");
  desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN: Data required",
                           "Please enter/select Organization name.");
  hands->Click("clsd");
  hands->Click("clsed");
  ASSERT_EQ(Front(), "mnfrm");
  EXPECT_EQ(hands->TextOf("ESI_No"), "P-1");
  hands->Click("NwESINo");
  hands->Type("P-2");
  hands->PressTab();
  EXPECT_EQ(Column(Study(1), "SELECT DISTINCT Factory_Name FROM Project_details"),
            QStringList{"Press shop"});
}

TEST_F(WorkbenchTest, LinkedFilesComeUpOverTheProjectForm) {
  StartWithPressShop();
  OpenOrganisation("Press shop");
  hands->Click("LnkDwgs");
  EXPECT_EQ(Front(), "tagdwgsfrm");
  EXPECT_NE(Shown("mnfrm"), nullptr);
  EXPECT_EQ(hands->TextOf("EsiNoLBL"), "P-1");
  hands->Click("cls_1");
  EXPECT_EQ(Front(), "mnfrm");
  EXPECT_EQ(bench->session().ProjectFormHolds, 1);
}

TEST_F(WorkbenchTest, TheListsAreEditedWithNoOrganisationOpen) {
  Start();
  hands->Choose("custmztnFrm");
  EXPECT_EQ(Front(), "custizationFrm");
  hands->Click("ext");
  EXPECT_EQ(Front(), "frmMain");
}

TEST_F(WorkbenchTest, AFormClosedByItsTitleBarLeavesTheFrameAloneUntilThatIsPressed) {
  StartWithPressShop();
  OpenTasks();
  hands->Click("RiskEsmtBtn");
  ASSERT_EQ(Front(), "RiskEstimtn");
  hands->Pick("SevertyCbo", "None.");
  hands->CloseBox(*Shown("RiskEstimtn"));
  ASSERT_EQ(Front(), "frmMain");
  EXPECT_EQ(Shown("RiskEvalFrm_1"), nullptr);
  const auto press_frame = [] {
    QTest::mouseClick(Shown("frmMain")->findChild<QWidget*>("rtfText"), Qt::LeftButton);
  };
  press_frame();
  ASSERT_EQ(Front(), "RiskEvalFrm_1");
  hands->CloseBox(*Shown("RiskEvalFrm_1"));
  ASSERT_EQ(Front(), "frmMain");
  EXPECT_EQ(Shown("mnfrm"), nullptr);
  EXPECT_EQ(Column(Study(1), "SELECT SevertyCbo FROM Risk_records ORDER BY nunberauto").first(),
            "None.");
  // By keyboard too, which the frame's document has; the first key only changes the next one.
  QWidget* document = Shown("frmMain")->findChild<QWidget*>("rtfText");
  QTest::keyPress(document, Qt::Key_Control);
  ASSERT_EQ(Front(), "frmMain");
  QTest::keyClick(document, Qt::Key_H, Qt::ControlModifier);
  EXPECT_TRUE(FormHands::WaitUntil([&] { return Front() == "mnfrm"; }));
}

TEST_F(WorkbenchTest, ABackupAndARestoreGoThroughTheirForms) {
  GivenPressShop();
  desk.environment.SetDocumentsFolder(Outside("documents"));
  ASSERT_TRUE(QDir().mkpath(Outside("documents")));
  Start();
  hands->Choose("Bkup");
  ASSERT_EQ(Front(), "BkUpfrm");
  EXPECT_EQ(hands->Window().windowTitle(), " BELTROVAN: Backup Risk Assessment files");
  EXPECT_EQ(hands->TextOf("orgmnelbl"), "LIST of Name of Organization / Section to Backup:");
  hands->Click("clsd");
  ASSERT_EQ(Front(), "opnflddlg");
  hands->Click("slctfld");
  ASSERT_EQ(Front(), "BkUpfrm");
  EXPECT_EQ(hands->TextOf("clsd"), "&Backup Study files");
  hands->Click("clsd");
  EXPECT_TRUE(FormHands::WaitUntil([&] { return hands->TextOf("clsd") == "&Backup complete"; }));
  hands->Click("clsd");
  ASSERT_EQ(Front(), "frmMain");

  const QString set = Outside("documents/") + bench->session().BackupDateName;
  EXPECT_TRUE(QFile::exists(set + "/ktx_RskSmt1.kbp"));
  Exec(Study(1), "DELETE FROM Risk_records");
  bench->session().BackupFolder = set;
  hands->Choose("RtrBkUp");
  ASSERT_EQ(Front(), "opnflddlg");
  hands->Click("slctfld");
  ASSERT_EQ(Front(), "BkUpfrm");
  hands->Click("clsd");
  EXPECT_TRUE(FormHands::WaitUntil(
      [&] { return hands->TextOf("clsd") == "&Study files Restored complete"; }));
  EXPECT_EQ(RowsOf(Study(1), "Risk_records").size(), 2);
  hands->Click("clsd");
  EXPECT_EQ(Front(), "frmMain");
}

class RestoreAfterTest : public WorkbenchTest {
 protected:
  RestoreAfterTest() {
    GivenPressShop();
    QDir().mkpath(Outside("documents"));
    desk.environment.SetDocumentsFolder(Outside("documents"));
    Start();
  }
  /// From the menu to the button that begins the backup.
  void ChooseBackup() {
    hands->Choose("Bkup");
    hands->Click("clsd");
    hands->Click("slctfld");
  }
  void ChooseRestore() {
    hands->LookAt(*Shown("frmMain"));
    hands->Choose("RtrBkUp");
    hands->LookAtFront();
  }
  void GivenSet() {
    ChooseBackup();
    hands->Click("clsd");
    ASSERT_EQ(hands->TextOf("clsd"), "&Backup complete");
    set_ = Outside("documents/") + bench->session().BackupDateName;
    Exec(Study(1), "DELETE FROM Risk_records");
  }
  void ExpectRestores() {
    bench->session().BackupFolder = set_;
    ChooseRestore();
    ASSERT_EQ(Front(), "opnflddlg");
    EXPECT_EQ(Shown("BkUpfrm"), nullptr);
    hands->Click("slctfld");
    ASSERT_EQ(Front(), "BkUpfrm");
    EXPECT_EQ(hands->Window().windowTitle(), " BELTROVAN : HAZOP study files ");
    EXPECT_EQ(hands->TextOf("clsd"), "&Restore Study files");
    EXPECT_EQ(hands->TextOf("pctdsp"), "0 % complete");
    EXPECT_EQ(hands->ItemsOf("BKList1"), QStringList{"Press shop"});
    hands->Click("clsd");
    EXPECT_EQ(hands->TextOf("clsd"), "&Study files Restored complete");
    EXPECT_EQ(RowsOf(Study(1), "Risk_records").size(), 2);
  }

  QString set_;
};

TEST_F(RestoreAfterTest, AFinishedBackupThatIsStillOpen) {
  GivenSet();
  ExpectRestores();
}

TEST_F(RestoreAfterTest, ABackupThatHasNotBegun) {
  GivenSet();
  hands->Click("clsd");
  ChooseBackup();
  ASSERT_EQ(hands->TextOf("clsd"), "&Backup Study files");
  ExpectRestores();
}

TEST_F(RestoreAfterTest, AnotherRestoreThatIsStillOpen) {
  GivenSet();
  ExpectRestores();
  Exec(Study(1), "DELETE FROM Risk_records");
  ExpectRestores();
}

TEST_F(RestoreAfterTest, ARestoreThatFailed) {
  GivenSet();
  hands->Click("clsd");
  ASSERT_TRUE(QFile::rename(set_ + "/Prj1", set_ + "/aside"));
  bench->session().BackupFolder = set_;
  ChooseRestore();
  hands->Click("slctfld");
  hands->Click("clsd");
  ASSERT_EQ(Front(), "frmMain");
  ASSERT_TRUE(QFile::rename(set_ + "/aside", set_ + "/Prj1"));
  Exec(Study(1), "DELETE FROM Risk_records");
  ExpectRestores();
}

TEST_F(RestoreAfterTest, ACancelledFolderLeavesNoFormThatNoButtonWorksOn) {
  ChooseBackup();
  ChooseRestore();
  hands->Click("cls1");
  EXPECT_EQ(Front(), "frmMain");
  EXPECT_EQ(Shown("BkUpfrm"), nullptr);
}

TEST_F(WorkbenchTest, ACancelledFolderLeadsBackToTheBackupAndOutOfARestore) {
  Start();
  hands->Choose("Bkup");
  hands->Click("clsd");
  ASSERT_EQ(Front(), "opnflddlg");
  hands->Click("cls1");
  EXPECT_EQ(Front(), "BkUpfrm");
  hands->Click("clsed");
  EXPECT_EQ(Front(), "frmMain");
  hands->Choose("RtrBkUp");
  ASSERT_EQ(Front(), "opnflddlg");
  hands->Click("cls1");
  EXPECT_EQ(Front(), "frmMain");
  EXPECT_EQ(Shown("BkUpfrm"), nullptr);
}

TEST_F(WorkbenchTest, ClosingTheFrameEndsTheRunWhateverIsOpen) {
  StartWithPressShop();
  OpenOrganisation("Press shop");
  hands->Click("nworg");
  ASSERT_EQ(Front(), "Orgfrm");
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->objectName() == "frmMain") window->close();
  }
  FormHands::Settle();
  EXPECT_EQ(ended->count(), 1);
  for (const char* form : {"frmMain", "Orgfrm", "mnfrm", "RiskEvalFrm_1"}) {
    EXPECT_EQ(Shown(form), nullptr) << form;
  }
  EXPECT_FALSE(QFile::exists(StudySign(1)));
  EXPECT_FALSE(QFile::exists(Path("RskAsmtFld/orgtn.ldb")));
}

TEST_F(WorkbenchTest, ADamagedRegisterEndsInTheNotice) {
  Start();
  WriteFile(Register(), "no database");
  ExpectMissing();
  hands->Choose("mnuDatamnfrm");
  ASSERT_EQ(Front(), "reqfrm");
  EXPECT_EQ(Shown("mnfrm"), nullptr);
  EXPECT_EQ(Shown("reqfrm")->windowModality(), Qt::ApplicationModal);
  hands->CloseBox(*Shown("reqfrm"));
  EXPECT_EQ(Front(), "frmMain") << "closed by its title bar it leaves the frame";
  EXPECT_EQ(ended->count(), 0);
  ExpectMissing();
  hands->Choose("mnuDatamnfrm");
  hands->Click("runsetp");
  FormHands::Settle();
  EXPECT_EQ(ended->count(), 1);
}

TEST_F(WorkbenchTest, DamagedListsEndInTheNoticeWithoutTheFrame) {
  GivenPressShop();
  WriteFile(Lists(), "no database");
  Start();
  PickPressShop();
  ExpectMissing("/Requires MS Office installed");
  hands->Click("clsd");
  EXPECT_EQ(Front(), "reqfrm");
  EXPECT_EQ(Shown("frmMain"), nullptr);
  EXPECT_EQ(ended->count(), 0);
  hands->Click("runsetp");
  FormHands::Settle();
  EXPECT_EQ(ended->count(), 1);
}

TEST_F(WorkbenchTest, TasksThatCannotBeOpenedEndTheSessionWithTheirMessage) {
  StartWithPressShop();
  OpenOrganisation("Press shop");
  bench->session().TaskPosition = 5;
  ExpectMissing("/Requires MS Office installed");
  hands->Click("simultn1");
  FormHands::Settle();
  EXPECT_EQ(desk.messages.Beeps(), 1);
  EXPECT_EQ(ended->count(), 1);
}

TEST_F(WorkbenchTest, AStudyThatWasInUseWhenItWasOpenedBarsTheDeleteForTheRun) {
  GivenPressShop();
  OtherProcess other(Study(1));
  WriteFile(StudySign(1), {});
  Start();
  OpenOrganisation("Press shop");
  EXPECT_EQ(bench->session().OtherUserMark, 2);
  hands->Click("clsdfrm");
  EXPECT_FALSE(QFile::exists(StudySign(1)));
  PickPressShop();
  desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN",
                           "All users need to logout/Close/Exit Risk Assessment module and needs "
                           "to be reopened by only one user to delete records.");
  hands->Click("delte");
  EXPECT_TRUE(QFile::exists(Study(1)));
}

TEST_F(WorkbenchTest, WhoCameIntoTheStudyBehindTheQuestionDoesntStopTheRow) {
  StartWithPressShop();
  PickPressShop();
  desk.messages
      .Expect(Ask(Icon::kCritical, "BELTROVAN: Delete record",
                  "Wish to delete Organization [Press shop] from records?"))
      .Answer(Button::kYes)
      .WhileOpen([&] { WriteFile(StudySign(1), {}); });
  // To let go of the study the project form is loaded, which shows itself and unloads this form;
  // the message gives it the time to.
  desk.messages
      .Expect(Tell(Icon::kCritical, "BELTROVAN",
                   "Failed to delete records as more than one user has opened this file."))
      .WhileOpen([&] {
        FormHands::Settle();
        EXPECT_NE(Shown("mnfrm"), nullptr);
        EXPECT_EQ(Column(Register(), "SELECT OrgName FROM orgtn"), QStringList{"Press shop"});
      });
  hands->Click("delte");
  EXPECT_TRUE(Column(Register(), "SELECT OrgName FROM orgtn").isEmpty());
  EXPECT_FALSE(QDir(PictureFolder(1)).exists());
  EXPECT_EQ(Front(), "mnfrm");
  EXPECT_EQ(Shown("Orgfrm"), nullptr);
  EXPECT_EQ(hands->TextOf("Orglbltxt"), "");
  EXPECT_FALSE(hands->IsEnabled("simultn1"));
  EXPECT_EQ(bench->session().ActiveOrgName, "");
  EXPECT_FALSE(QFile::exists(Path("RskAsmtFld/orgtn.ldb")));
  hands->Click("clsdfrm");
  EXPECT_EQ(Front(), "frmMain");
}

TEST_F(WorkbenchTest, ARegisterThatGotLostEndsAProjectsWayToItInTheNotice) {
  StartWithPressShop();
  OpenOrganisation("Press shop");
  ASSERT_TRUE(QFile::remove(Register()));
  ExpectMissing();
  hands->Click("nworg");
  EXPECT_EQ(Front(), "reqfrm");
  EXPECT_EQ(Shown("Orgfrm"), nullptr);
  EXPECT_EQ(Shown("mnfrm"), nullptr);
  EXPECT_FALSE(QFile::exists(StudySign(1)));
}

TEST_F(WorkbenchTest, ADeletedOrganisationIsGoneWithItsStudyAndItsNumberIsUsedAgain) {
  StartWithPressShop();
  PickPressShop();
  desk.messages.ExpectAsk(Icon::kCritical, "BELTROVAN: Delete record",
                          "Wish to delete Organization [Press shop] from records?", Button::kYes);
  hands->Click("delte");
  EXPECT_TRUE(Column(Register(), "SELECT OrgName FROM orgtn").isEmpty());
  EXPECT_FALSE(QFile::exists(Study(1)));
  hands->Click("addorncmd");
  hands->Type("Paint shop");
  hands->PressTab();
  EXPECT_EQ(Front(), "mnfrm");
  EXPECT_EQ(Sql(Register(), "SELECT OrgName, sclenotxt FROM orgtn"),
            (QList<QStringList>{{"Paint shop", "1"}}));
}

}  // namespace
}  // namespace kestrix
