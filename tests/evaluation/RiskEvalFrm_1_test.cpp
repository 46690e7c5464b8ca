// Opening and closing of the evaluation form.
#include "evaluation/RiskEvalFrm_1.h"

#include <QFile>
#include <QLabel>

#include "evaluation/EvaluationTest.h"
#include "support/Files.h"

namespace kestrix {
namespace {

class RiskEvalFrm_1Test : public EvaluationTest {
 protected:
  void ExpectFailedLoad() {
    desk.messages
        .ExpectTell(Icon::kCritical, "BELTROVAN: Files missing",
                    "More files required run setup/Installed Files missing/Requires MS Office "
                    "installed")
        .WhileOpen([this] {
          EXPECT_EQ(desk.messages.Beeps(), 1) << "the beep comes before the message";
          steps.append("message");
        });
    LoadForm();
    EXPECT_EQ(steps, (QStringList{"unload forms", "message", "unload frame"}));
  }
};

TEST_F(RiskEvalFrm_1Test, ShowsTheTasksOfItsProjectAndStandsOnTheFirst) {
  GivenTasks({"Feed", "Clean"});
  installation.GivenTask(kStudy, {{"Project_Number", "P-2"}, {"FuntnTaskMachry", "Elsewhere"}});
  const QWidget& form = OpenForm();

  EXPECT_EQ(form.windowTitle(), "KESTRIX : Risk evaluation form");
  EXPECT_EQ(TextOf("ESINoLBLCp"), "P-1");
  EXPECT_EQ(TextOf("PrjDesptn"), "Press line 4");
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Feed");
  EXPECT_EQ(RowsShownIn("DB1"), (QList<QStringList>{{"0", "Feed", "1"}, {"0", "Clean", "2"}}));
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
  EXPECT_EQ(EnabledOf(kListButtons), QStringList());
}

TEST_F(RiskEvalFrm_1Test, KeepsItsRecordSourcesInTheSession) {
  OpenOn({"Feed"});
  EXPECT_TRUE(
      session.RiskSql.text.endsWith("Where (((Risk_records.Project_Number)='P-1')) ORDER BY "
                                    "Risk_records.nunberauto"));
  EXPECT_EQ(session.SupportDbPath, Lists());
  EXPECT_EQ(session.HazardTypeRows, 1);
  EXPECT_FALSE(session.PrimaryHazardClicked);
  EXPECT_EQ(Control<DataControl>("dtsorce2").ConnectionString(),
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + Study());
  EXPECT_EQ(Control<DataControl>("CboBxLstDB").DatabaseName(), Lists());
}

TEST_F(RiskEvalFrm_1Test, HasAllItsControlsUnderTheirNames) {
  OpenForm();
  for (const char* name : {"dtsorce2",        "CboBxLstDB",      "dta1",          "dta3",
                           "ESINoLBLCp",      "PrjDesptn",       "dateOfRcd",     "RefNo",
                           "FuntnTaskMachry", "HazrdLoctn",      "HzrdDscptnTXT", "ReccdtnTxt",
                           "actnDt",          "ActntkenOptnY_N", "RskRdsdtnY_N",  "RIBRtxt",
                           "RIARtxt",         "ClassScorLBL",    "ClassScorLBLA", "TotAcdRCDDsply",
                           "HzrdTyp",         "Label2",          "DB1",           "FndESINo",
                           "addNewRcd",       "CpyTaskCmd",      "DleteRcd",      "nxtfrmbtn",
                           "prvsfrmbtn",      "RiskEsmtBtn",     "ClsedDg",       "Label9",
                           "Label15",         "RiskMrtxLbl",     "Label16",       "Label6",
                           "Label7"}) {
    EXPECT_NE(Find(name), nullptr) << name;
  }
  for (const char* hidden : {"nxtfrmbtn", "prvsfrmbtn", "HzrdTyp", "Label2"}) {
    EXPECT_FALSE(IsVisible(hidden)) << hidden;
  }
  for (const char* label : {"RIBRtxt", "RIARtxt", "ClassScorLBL", "ClassScorLBLA"}) {
    EXPECT_FALSE(IsEnabled(label)) << label;
  }
}

TEST_F(RiskEvalFrm_1Test, StartsWithItsTextsAndToolTips) {
  OpenForm();
  struct Face {
    const char* name;
    const char* text;
    const char* tip;
  };
  constexpr Face kFaces[] = {{"addNewRcd", "&Add New Task", ""},
                             {"CpyTaskCmd", "&Copy and Add this as new Task", ""},
                             {"DleteRcd", "&Delete current task", ""},
                             {"nxtfrmbtn", "&Next Task", ""},
                             {"prvsfrmbtn", "< &Previous Task", ""},
                             {"ClsedDg", "&Exit", ""},
                             {"RskRdsdtnY_N", "No", ""},
                             {"ActntkenOptnY_N", "No", ""},
                             {"FndESINo", "", "Find Project Number (case sensitive)"},
                             {"adddt", "+", "Click to add phase of the machine life cycle"},
                             {"dletedt", "-", "Click to delete phase of the machine life cycle"},
                             {"adddt1", "+", "Click to add to Primary Hazard"},
                             {"dletedt1", "-", "Click to delete from Primary Hazard"},
                             {"adddt2", "+", "Click to add to Hazard type"},
                             {"dletedt2", "-", "Click to delete from Hazard type"},
                             {"adddt_2", "+", "Click to add Recommendation type"},
                             {"dletedt_2", "-", "Click to delete Recommendation type"},
                             {"adddt_3", "+", "Click to add Name , Designation, Department"},
                             {"dletedt_3", "-", "Click to delete Name , Designation, Department"},
                             {"Label9", "HAZARDS", ""},
                             {"Label15", "Risk Estimation", ""},
                             {"Label2", "Hazard type", ""},
                             {"RiskMrtxLbl", "Class (Cl) : Before", ""},
                             {"Label16", "Class (Cl) : After", ""},
                             {"DB1_caption", "Functions and Task of the machinery list", ""}};
  for (const Face& face : kFaces) {
    EXPECT_EQ(TextOf(face.name), face.text) << face.name;
    EXPECT_EQ(Control<QWidget>(face.name).toolTip(), face.tip) << face.name;
  }
  const QAbstractItemModel& list = *Control<Grid>("DB1").model();
  for (int column = 0; column < 3; ++column) {
    EXPECT_EQ(list.headerData(column, Qt::Horizontal).toString(),
              (QStringList{"Ref.No.", "Functions and Task ", "nunberauto"})[column]);
  }
}

TEST_F(RiskEvalFrm_1Test, EveryFieldHasItsLabel) {
  OpenForm();
  const QMap<QString, QString> labels = {
      {"ESINoLBLCp", "Project number"},
      {"PrjDesptnArea", "Project Description"},
      {"dateOfRcd", "Date "},
      {"RefNo", "Reference number"},
      {"FuntnTaskMachry", "Functions and Task of the machinery/device "},
      {"HazrdLoctn", "Hazard location"},
      {"PhaseMachn", "phase of the machine/device  life cycle"},
      {"PrimaryHazard", "Primary Hazard"},
      {"HazardType", "Hazard type"},
      {"HzrdDscptnTXT", "Hazard Description:"},
      {"ReccdtnTxt", "Recommendation"},
      {"ReccdtnTypTxt", "Recommendation type"},
      {"ActnByCbo", "Action by: Name, Designation, Department"},
      {"actnDt", "Action Date: (dd/mm/yyyy)"},
      {"ActntkenOptnY_N", "Action taken"},
      {"RskRdsdtnY_N", "Has the Risk been adequately reduced?"},
      {"RIBRtxt", "Risk Index before recommendations"},
      {"RIARtxt", "Risk Index after recommendations"},
      {"ClassScorLBL", "Class (Cl) : Before"},
      {"ClassScorLBLA", "Class (Cl) : After"},
      {"HzrdTyp", "Hazard type"},
      {"FndESINo", "Find"},
      {"RiskEsmtBtn", "Risk estimation form"}};
  QMap<QString, QString> found;
  for (const QLabel* label : form_->findChildren<QLabel*>()) {
    if (label->buddy() && labels.contains(label->buddy()->objectName())) {
      found.insert(label->buddy()->objectName(), label->text());
    }
  }
  EXPECT_EQ(found, labels);
}

TEST_F(RiskEvalFrm_1Test, AProjectWithoutTasksOpensEmptyWithItsListsBarred) {
  OpenForm();
  EXPECT_EQ(TextOf("ESINoLBLCp"), "P-1");
  EXPECT_EQ(TextOf("PrjDesptn"), "No task recorded. Click 'Add New Task' to record task");
  EXPECT_EQ(TextOf("HzrdTyp"), "No task recorded");
  EXPECT_EQ(Position(), " Total recorded task 0 ");
  EXPECT_EQ(TextOf("dateOfRcd"), "15/02/2013");
  EXPECT_EQ(TextOf("actnDt"), "15/02/2013");
  for (const char* name :
       {"FuntnTaskMachry", "HazrdLoctn", "PhaseMachn", "PrimaryHazard", "HazardType",
        "HzrdDscptnTXT", "ReccdtnTxt", "ReccdtnTypTxt", "ActnByCbo"}) {
    EXPECT_EQ(TextOf(name), "None.") << name;
  }
  EXPECT_EQ(TextOf("RefNo"), "0");
  EXPECT_EQ(TextOf("RIBRtxt"), "0");
  EXPECT_EQ(TextOf("RIARtxt"), "0");
  EXPECT_FALSE(IsChecked("RskRdsdtnY_N"));
  EXPECT_FALSE(IsChecked("ActntkenOptnY_N"));
  EXPECT_EQ(EnabledOf(kCombos), QStringList());
  EXPECT_EQ(EnabledOf(kListButtons), QStringList());
  EXPECT_EQ(RowsShownIn("DB1").size(), 0);
}

TEST_F(RiskEvalFrm_1Test, OpeningAndClosingChangesNoTask) {
  GivenTask({{"FuntnTaskMachry", "Feed"}, {"RefNo", "03.50"}, {"HzrdDscptnTXT", "a\nb"}});
  GivenTask({{"FuntnTaskMachry", "Clean"}, {"RskRdsdtnY_N", 1}, {"RiskIndex", 5}});
  const auto before = AllTasks();
  OpenForm();
  CloseForm();
  EXPECT_EQ(AllTasks(), before);
}

TEST_F(RiskEvalFrm_1Test, TheTickFollowsTheIndexesWhateverTaskTheFormOpensOn) {
  for (const int before : {5, 2}) {  // a task with too little of a tick, and one with too much
    GivenTask({{"FuntnTaskMachry", "Feed"},
               {"RiskIndex", before},
               {"RiskIndexAftr", 2},
               {"RskRdsdtnY_N", before == 5 ? 0 : 1}});
  }
  for (const qint16 place : {qint16{1}, qint16{2}}) {
    session.TaskPosition = place;
    OpenForm();
    EXPECT_EQ(session.TaskPosition, place);
    EXPECT_EQ(IsChecked("RskRdsdtnY_N"), place == 1);
    EXPECT_EQ(TextOf("RskRdsdtnY_N"), place == 1 ? "Yes" : "May require further risk reduction.");
    CloseForm();
  }
  EXPECT_EQ(Stored("RskRdsdtnY_N"), (QStringList{"1", "0"}));
}

TEST_F(RiskEvalFrm_1Test, ATickThatStandsInTheTaskIsShownAsItStands) {
  for (const int ticked : {1, 0}) {
    Exec(Study(), "DELETE FROM Risk_records");
    GivenTask({{"RskRdsdtnY_N", ticked}, {"RiskIndex", ticked}, {"ActntkenOptnY_N", ticked}});
    LookAt(LoadForm());
    for (const char* name : {"RskRdsdtnY_N", "ActntkenOptnY_N"}) {
      EXPECT_EQ(IsChecked(name), ticked == 1) << name;
      EXPECT_EQ(TextOf(name), ticked == 1 ? "Yes" : "No") << name;
    }
    CloseForm();
  }
}

TEST_F(RiskEvalFrm_1Test, OpensOnTheTaskThatWasInHandLastTime) {
  ASSERT_EQ(session.TaskPosition, 0);
  OpenOn({"Feed", "Clean", "Set"});
  EXPECT_EQ(session.TaskPosition, 1) << "the first opening stands on the first task";
  ClickRow("DB1", 2);
  EXPECT_EQ(session.TaskPosition, 3);
  CloseForm();
  EXPECT_EQ(session.TaskPosition, 3) << "closing is no move of the user's";
  // A project without tasks in between keeps the place.
  project.number = "P-2";
  OpenForm();
  CloseForm();
  project.number = "P-1";
  OpenForm();
  EXPECT_EQ(Position(), " Recorded task 3 of 3 ");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Set");
}

TEST_F(RiskEvalFrm_1Test, AMissingStudyEndsTheSession) {
  QFile::remove(Study());
  ExpectFailedLoad();
  EXPECT_EQ(FailureOf([this] { (void)form_->Tasks(); }), failure::kObjectNotSet);
  installation.GivenStudy(kStudy);
}

TEST_F(RiskEvalFrm_1Test, ADamagedStudyEndsTheSession) {
  WriteFile(Study(), "no study");
  ExpectFailedLoad();
  EXPECT_EQ(ReadFile(Study()), "no study") << "it isn't changed";
  QFile::remove(Study());
  installation.GivenStudy(kStudy);
}

TEST_F(RiskEvalFrm_1Test, MissingListsEndTheSession) {
  GivenTasks({"Feed"});
  QFile::remove(Lists());
  ExpectFailedLoad();
}

TEST_F(RiskEvalFrm_1Test, AnApostropheInTheProjectNumberEndsTheSession) {
  project.number = "P'1";
  ExpectFailedLoad();
}

TEST_F(RiskEvalFrm_1Test, APlaceBehindTheLastTaskEndsTheSessionAndTheFormUnloadsQuietly) {
  GivenTasks({"Feed"});
  const auto before = AllTasks();
  session.TaskPosition = 2;
  ExpectFailedLoad();
  CloseForm();
  EXPECT_EQ(AllTasks(), before);
}

TEST_F(RiskEvalFrm_1Test, ExitStoresWhatIsShownUnloadsAndThenCallsForTheProjectForm) {
  OpenOn({"Feed"});
  EXPECT_TRUE(QFile::exists(installation.StudySign(kStudy)));
  SetText("HazrdLoctn", "Die area");
  Click("ClsedDg");
  EXPECT_EQ(steps, (QStringList{"unloaded", "closed"}));
  EXPECT_EQ(Stored("HazrdLoctn"), QStringList{"Die area"});
  EXPECT_TRUE(form_.isNull());
  EXPECT_FALSE(QFile::exists(installation.StudySign(kStudy)));
}

TEST_F(RiskEvalFrm_1Test, TheCloseBoxStoresToo) {
  GivenTasks({"Feed"});
  RiskEvalFrm_1& form = OpenForm();
  SetText("ReccdtnTxt", "Guard it");
  CloseBox(form);
  EXPECT_EQ(steps, QStringList{"unloaded"});
  EXPECT_EQ(Stored("ReccdtnTxt"), QStringList{"Guard it"});
}

TEST_F(RiskEvalFrm_1Test, WithoutATaskTheEstimationIsNotShownAndClosingWritesNothing) {
  OpenForm();
  ExpectTell("No task entered. Please add task.");
  Click("RiskEsmtBtn");
  EXPECT_EQ(steps, QStringList());
  EXPECT_TRUE(form_->isVisible());
  SetText("FuntnTaskMachry", "Nowhere");
  Click("ClsedDg");
  EXPECT_EQ(AllTasks().size(), 0);
}

TEST_F(RiskEvalFrm_1Test, TheEstimationWorksOnTheTaskInHandOfTheHiddenForm) {
  GivenTasks({"Feed", "Clean"});
  RiskEvalFrm_1& form = OpenForm();
  ClickRow("DB1", 1);
  Click("RiskEsmtBtn");
  EXPECT_EQ(steps, QStringList{"estimation"});
  EXPECT_FALSE(form.isVisible());

  TaskInHand& in_hand = form;
  EXPECT_EQ(in_hand.Tasks().AbsolutePosition(), 2);
  in_hand.Tasks().Set("RiskIndex", 5);
  in_hand.Tasks().Set("RiskIndexAftr", 2);
  form.ShowFormModal();
  Settle();
  EXPECT_EQ(TextOf("RIBRtxt"), "5 (High Risk)");
  EXPECT_EQ(TextOf("RIARtxt"), "2 (Low Risk)");
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "Yes");
  CloseForm();
  EXPECT_EQ(Stored("RiskIndex"), (QStringList{"0", "5"}));
}

TEST_F(RiskEvalFrm_1Test, FitsASmallScreenWithAFrameAroundItWhateverItsSummarySays) {
  GivenTask({{"FuntnTaskMachry", "Feed"},
             {"RiskIndex", 3},
             {"RiskIndexAftr", 3},
             {"1Chk_OptnSltd", 1},
             {"2Chk_OptnSltd", 13},
             {"1Chk_OptnSltdAftr", 1},
             {"2Chk_OptnSltdAftr", 13}});
  OpenForm();
  ASSERT_EQ(TextOf("ClassScorLBL"), "13 (Medium Risk)");
  EXPECT_LE(form_->width(), 1024 - 8);
  EXPECT_LE(form_->height(), 768 - 40);
  EXPECT_LE(Control<QWidget>("Page").minimumSizeHint().width(), 1024 - 8);
}

TEST_F(RiskEvalFrm_1Test, ALongProjectNumberLeavesTheFieldsTheirPlace) {
  OpenOn({"Feed"});
  const QRect short_number = Control<QWidget>("FuntnTaskMachry").geometry();
  CloseForm();
  project.number = QString(255, u'W');
  GivenTask({{"Project_Number", project.number}});
  OpenForm();
  EXPECT_EQ(TextOf("ESINoLBLCp"), project.number);
  EXPECT_EQ(Control<QWidget>("FuntnTaskMachry").geometry(), short_number);
}

TEST_F(RiskEvalFrm_1Test, ABoxWithoutATickIsSeenInADarkTheme) {
  GivenTasks({"Feed"});
  QPalette dark = OpenForm().palette();
  const QColor paper(0x23, 0x26, 0x29);
  dark.setColor(QPalette::Window, QColor(0x31, 0x36, 0x3B));
  dark.setColor(QPalette::Base, paper);
  for (const auto role : {QPalette::Text, QPalette::WindowText}) {
    dark.setColor(role, QColor(0xEF, 0xF0, 0xF1));
  }
  form_->setPalette(dark);
  for (const char* name : {"ActntkenOptnY_N", "RskRdsdtnY_N"}) {
    const QImage picture = Control<QWidget>(name).grab().toImage();
    int edge = 0;
    for (int x = 0; x < 6; ++x) {
      edge = std::max(edge, qGray(picture.pixel(x, picture.height() / 2)) - qGray(paper.rgb()));
    }
    EXPECT_GT(edge, 70) << name << ", of 255 shades";
  }
}

TEST_F(RiskEvalFrm_1Test, LabelsNameTheirFieldsForAssistiveTools) {
  OpenForm();
  for (const char* name :
       {"dateOfRcd", "RefNo", "FuntnTaskMachry", "HazrdLoctn", "PhaseMachn", "PrimaryHazard",
        "HazardType", "HzrdDscptnTXT", "ReccdtnTxt", "ReccdtnTypTxt", "ActnByCbo", "actnDt",
        "ActntkenOptnY_N", "RskRdsdtnY_N", "FndESINo", "DB1", "RiskEsmtBtn"}) {
    EXPECT_FALSE(Control<QWidget>(name).accessibleName().isEmpty()) << name;
  }
}

}  // namespace
}  // namespace kestrix
