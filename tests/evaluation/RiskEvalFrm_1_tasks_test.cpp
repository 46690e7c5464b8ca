// Showing, saving, adding, copying and deleting tasks.
#include <QComboBox>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "evaluation/EvaluationTest.h"
#include "store/Recordset.h"

namespace kestrix {
namespace {

class RiskEvalFrm_1TasksTest : public EvaluationTest {};

// Showing

TEST_F(RiskEvalFrm_1TasksTest, ATaskIsShownFieldByField) {
  GivenTask({{"dateOfRcd", "10/01/2013"},
             {"FuntnTaskMachry", "Feed"},
             {"HazrdLoctn", "Die"},
             {"PhaseMachn", "Gone from its list"},
             {"Primary_Hazard", "Mechanical hazards"},
             {"Hazard_type", "Crushing"},
             {"RefNo", "03.50"},
             {"HzrdDscptnTXT", "Hand\nin the die"},
             {"ReccdtnTxt", "Guard"},
             {"ReccdtnTypTxt", "Fixed"},
             {"RskRdsdtnY_N", 1},
             {"RiskIndex", 1},
             {"ActnByCbo", "Kim"},
             {"actnDt", "11/02/2013"},
             {"ActntkenOptnY_N", 1}});
  LookAt(LoadForm());
  EXPECT_EQ(TextOf("dateOfRcd"), "10/01/2013");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Feed");
  EXPECT_EQ(TextOf("HazrdLoctn"), "Die");
  EXPECT_EQ(TextOf("PhaseMachn"), "Gone from its list");
  EXPECT_EQ(TextOf("PrimaryHazard"), "Mechanical hazards");
  EXPECT_EQ(TextOf("HazardType"), "Crushing");
  EXPECT_EQ(TextOf("RefNo"), "03.50");
  EXPECT_EQ(TextOf("HzrdDscptnTXT"), "Hand\nin the die");
  EXPECT_EQ(TextOf("ReccdtnTxt"), "Guard");
  EXPECT_EQ(TextOf("ReccdtnTypTxt"), "Fixed");
  EXPECT_TRUE(IsChecked("RskRdsdtnY_N"));
  EXPECT_EQ(TextOf("ActnByCbo"), "Kim");
  EXPECT_EQ(TextOf("actnDt"), "11/02/2013");
  EXPECT_TRUE(IsChecked("ActntkenOptnY_N"));
}

TEST_F(RiskEvalFrm_1TasksTest, LongTextsAreShownFromTheirBeginning) {
  const QString text = QString("Safeguarding: ").repeated(10);
  GivenTask({{"FuntnTaskMachry", text}, {"ReccdtnTypTxt", text}});
  GivenTask({{"FuntnTaskMachry", text}, {"ReccdtnTypTxt", text}});
  OpenForm();
  for (const int row : {0, 1, 0}) {
    ClickRow("DB1", row);
    EXPECT_EQ(Control<QLineEdit>("FuntnTaskMachry").cursorPosition(), 0);
    EXPECT_EQ(Control<QComboBox>("ReccdtnTypTxt").lineEdit()->cursorPosition(), 0);
  }
}

TEST_F(RiskEvalFrm_1TasksTest, TheListIsToPickFromWalkAndCopyAndNotToTypeInto) {
  OpenOn({"Feed", "Clean", "Set"});
  auto& grid = Control<Grid>("DB1");
  ClickRow("DB1", 1);
  EXPECT_FALSE(grid.AllowUpdate());
  EXPECT_EQ(grid.selectionModel()->selectedRows().size(), 1) << "the whole row is marked";
  Type("x");
  PressKey(Qt::Key_End);
  EXPECT_EQ(Position(), " Recorded task 3 of 3 ");
  PressKey(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(desk.clipboard.Text(), RowsShownIn("DB1").last().join(u'\t'));
  PressKey(Qt::Key_Home);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Feed");
  CloseForm();
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Clean", "Set"}));
}

// Saving

TEST_F(RiskEvalFrm_1TasksTest, ATaskOfTheListTellsItsWholeTitleAndBothRisks) {
  const QString title = QString(200, u'w') + "<b>";
  GivenTasks({"Feed"});
  GivenTask({{"FuntnTaskMachry", title}, {"RiskIndex", 5}, {"RiskIndexAftr", 9}});
  OpenForm();
  const auto tip = [this](int row) {
    return Control<Grid>("DB1").model()->index(row, 1).data(Qt::ToolTipRole).toString();
  };
  EXPECT_EQ(tip(1),
            "<p>" + title.toHtmlEscaped() +
                "</p><p>Before recommendations: 5 (High Risk)<br>After recommendations: 9</p>");
  EXPECT_TRUE(tip(0).contains("Before recommendations: 0 (No Risk)"));
}

TEST_F(RiskEvalFrm_1TasksTest, TheTitleTakesTheRoomThatTheNumbersLeave) {
  OpenOn({"Feed"});
  EXPECT_EQ(Position(), " Recorded task 1 of 1 ");
  const QHeaderView& header = *Control<Grid>("DB1").horizontalHeader();
  EXPECT_EQ(header.sectionSize(2), header.sectionSizeHint(2));
  EXPECT_EQ(header.length(), Control<Grid>("DB1").viewport()->width());
  EXPECT_EQ(header.sectionResizeMode(1), QHeaderView::Stretch);
}

TEST_F(RiskEvalFrm_1TasksTest, AnEmptyListSaysWhatToDoFirst) {
  OpenForm();
  auto& grid = Control<Grid>("DB1");
  EXPECT_TRUE(grid.placeholderText().contains("Add New Task"));
  const QImage said = grid.viewport()->grab().toImage();
  grid.setPlaceholderText(QString());
  EXPECT_NE(grid.viewport()->grab().toImage(), said);
}

TEST_F(RiskEvalFrm_1TasksTest, LeavingARowStoresWhatWasTypedAndTicked) {
  OpenOn({"Feed", "Clean"});
  const QList<QStringList> fields{{"HazrdLoctn", "", ""},
                                  {"RefNo", "7", "07.00"},
                                  {"HzrdDscptnTXT", "Hand", "Hand"},
                                  {"ReccdtnTxt", "Guard", "Guard"},
                                  {"ActnByCbo", "Kim", "Kim"},
                                  {"PhaseMachn", "Setting", "Setting"},
                                  {"ReccdtnTypTxt", "Fixed", "Fixed"}};
  for (const QStringList& field : fields) SetText(field[0], field[1]);
  SetCheck("ActntkenOptnY_N", true);
  EXPECT_EQ(Stored("HzrdDscptnTXT").first(), "None.") << "nothing is stored before the row is left";
  ClickRow("DB1", 1);
  for (const QStringList& field : fields)
    EXPECT_EQ(Stored(field[0]), (QStringList{field[2], field[0] == "RefNo" ? "0" : "None."}));
  EXPECT_EQ(Stored("ActntkenOptnY_N"), (QStringList{"1", "0"}));
}

TEST_F(RiskEvalFrm_1TasksTest, LeavingTheTitleTakesItIntoTheRowWithoutStoringIt) {
  OpenOn({"Feed"});
  SetText("FuntnTaskMachry", "Feed blanks");
  PressTab();
  EXPECT_EQ(form_->Tasks().Text(2), "Feed blanks");
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList{"Feed"});
  EXPECT_EQ(RowsShownIn("DB1").first().at(1), "Feed blanks") << "the list shows it already";
  CloseForm();
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList{"Feed blanks"});
}

TEST_F(RiskEvalFrm_1TasksTest, BrowsingChangesNoTaskAndKeepsTheLineEndsOfAnotherProgram) {
  const QString text = QString("one\r\ntwo") + QChar(QChar::Nbsp) + "three";
  GivenTask({{"FuntnTaskMachry", "Feed"},
             {"HzrdDscptnTXT", text},
             {"ReccdtnTxt", text},
             {"RskRdsdtnY_N", 1},
             {"RiskIndex", 4}});
  GivenTasks({"Clean"});
  const auto before = AllTasks();
  OpenForm();
  EXPECT_EQ(TextOf("HzrdDscptnTXT"), "one\ntwo three");
  for (const int row : {1, 0, 1, 0}) ClickRow("DB1", row);
  CloseForm();
  EXPECT_EQ(AllTasks(), before);
  OpenForm();
  AppendTo("HzrdDscptnTXT", "!");
  CloseForm();
  EXPECT_EQ(Stored("HzrdDscptnTXT").first(), "one\ntwo three!");
  EXPECT_EQ(Stored("ReccdtnTxt").first(), text);
}

TEST_F(RiskEvalFrm_1TasksTest, BrowsingKeepsTextsThatAreLongerThanTheirBoxes) {
  GivenTasks({"Feed", "Clean"});
  // Another program may look past what the columns hold.
  Exec(Study(),
       "PRAGMA ignore_check_constraints=ON; UPDATE Risk_records SET HazrdLoctn=printf('%.300c', "
       "'x'), PhaseMachn=printf('%.300c', 'y'), HzrdDscptnTXT=printf('%.70000c', 'z')");
  const auto before = AllTasks();
  OpenForm();
  EXPECT_EQ(TextOf("HazrdLoctn"), QString(255, u'x'));
  EXPECT_EQ(TextOf("HzrdDscptnTXT"), QString(65'535, u'z'));
  for (const int row : {1, 0, 1, 0}) ClickRow("DB1", row);
  CloseForm();
  EXPECT_EQ(AllTasks(), before);
}

TEST_F(RiskEvalFrm_1TasksTest, SavingLeavesTheEstimationAndThePicturesAlone) {
  const Fields kept{
      {"RiskIndex", "4"},        {"RiskIndexAftr", "2"},     {"SevertyCbo", "S2, Serious"},
      {"PicBfrRcmdtn", "a.jpg"}, {"PicAftrRcmdtn", "b.jpg"}, {"preparedBytxt", "Lee"},
      {"RIARtxt", "x"},          {"RskRdsdtnY_N", "1"}};
  GivenTask(kept);
  OpenForm();
  SetText("HazrdLoctn", "Die");
  CloseForm();
  for (auto field = kept.keyValueBegin(); field != kept.keyValueEnd(); ++field)
    EXPECT_EQ(Stored(field->first), QStringList{field->second.toString()});
}

TEST_F(RiskEvalFrm_1TasksTest, ATextTooLongForItsColumnIsLeftOutWithoutAMessage) {
  OpenOn({"Feed", "Clean"});
  SetText("HzrdDscptnTXT", "Hand");
  Control<QComboBox>("ActnByCbo").lineEdit()->setMaxLength(1000);
  Control<QComboBox>("ActnByCbo").setCurrentText(QString(300, u'x'));
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("HzrdDscptnTXT").first(), "Hand");
  EXPECT_EQ(Stored("ActnByCbo").first(), "None.");
}

TEST_F(RiskEvalFrm_1TasksTest, ABoxTakesNoMoreThanItsColumn) {
  OpenOn({"Feed", "Clean"});
  const QString line(300, u'x');
  for (const char* name : {"FuntnTaskMachry", "HazrdLoctn", "PhaseMachn", "PrimaryHazard",
                           "HazardType", "ReccdtnTypTxt", "ActnByCbo"}) {
    SetText(name, line);
  }
  const QString text = QString(70'000, u'y');
  for (const char* name : {"HzrdDscptnTXT", "ReccdtnTxt"}) {
    SetText(name, "");
    Control<QPlainTextEdit>(name).insertPlainText(text);
  }
  ClickRow("DB1", 1);
  for (const char* field : {"FuntnTaskMachry", "HazrdLoctn", "PhaseMachn", "Primary_Hazard",
                            "Hazard_type", "ReccdtnTypTxt", "ActnByCbo"}) {
    EXPECT_EQ(Stored(field).first(), line.first(255)) << field;
  }
  for (const char* field : {"HzrdDscptnTXT", "ReccdtnTxt"}) {
    EXPECT_EQ(Stored(field).first(), text.first(65'535)) << field;
  }
}

TEST_F(RiskEvalFrm_1TasksTest, TwoSavesInARowChangeNothing) {
  GivenTask({{"FuntnTaskMachry", "Feed"}, {"HzrdDscptnTXT", "a\nb"}, {"RefNo", "03.50"}});
  OpenForm();
  SetText("HazrdLoctn", "Die");
  ClickHidden("prvsfrmbtn");
  const auto after_one = AllTasks();
  ClickHidden("prvsfrmbtn");
  EXPECT_EQ(AllTasks(), after_one);
}

// Adding

TEST_F(RiskEvalFrm_1TasksTest, ANewTaskIsLastAndHoldsTheDefaults) {
  OpenOn({"Feed", "Clean"});
  Click("addNewRcd");
  EXPECT_EQ(Position(), " Recorded task 3 of 3 ");
  EXPECT_EQ(session.TaskPosition, 3);
  EXPECT_EQ(FocusName(), "FuntnTaskMachry");
  EXPECT_EQ(SelectedTextOf("FuntnTaskMachry"), "None.");
  EXPECT_EQ(TextOf("RIBRtxt"), "0 (No Risk)");
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "No Risk");

  EXPECT_EQ(Stored("Project_Number").last(), "P-1");
  EXPECT_EQ(Stored("dateOfRcd").last(), "15/02/2013");
  EXPECT_EQ(Stored("actnDt").last(), "15/02/2013");
  for (const char* field :
       {"FuntnTaskMachry", "HazrdLoctn", "PhaseMachn", "Primary_Hazard", "Hazard_type",
        "HzrdDscptnTXT", "ReccdtnTxt", "ReccdtnTypTxt", "ActnByCbo"}) {
    EXPECT_EQ(Stored(field).last(), "None.") << field;
  }
  EXPECT_EQ(Stored("RefNo").last(), "0");
  EXPECT_EQ(Stored("RskRdsdtnY_N").last(), "0");
  EXPECT_EQ(Stored("ActntkenOptnY_N").last(), "0");
  EXPECT_EQ(Stored("SevertyCbo").last(), "Reset");
  EXPECT_EQ(Stored("preparedBytxt").last(), "");
  EXPECT_EQ(Stored("PicBfrRcmdtn").last(), "NoPicSlted.jpg");
}

TEST_F(RiskEvalFrm_1TasksTest, AddingStoresTheTaskThatIsLeftAndTypingReplacesTheNoneOfTheNewOne) {
  GivenTask({{"FuntnTaskMachry", "Feed"}, {"RskRdsdtnY_N", 1}});
  GivenTasks({"Clean"});
  session.TaskPosition = 2;
  OpenForm();
  SetText("HazrdLoctn", "Die");
  const auto before = AllTasks();
  Click("addNewRcd");
  EXPECT_EQ(AllTasks().first(1), before.first(1)) << "no other task is touched";
  EXPECT_EQ(Stored("HazrdLoctn"), (QStringList{"None.", "Die", "None."}));
  Type("Set");
  ClickRow("DB1", 0);
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Clean", "Set"}));
}

TEST_F(RiskEvalFrm_1TasksTest, TheFirstTaskOfAProjectOpensTheListsButNotTheirButtons) {
  OpenForm();
  Click("addNewRcd");
  EXPECT_EQ(Position(), " Recorded task 1 of 1 ");
  EXPECT_EQ(TextOf("PrjDesptn"), "Press line 4");
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
  EXPECT_EQ(EnabledOf(kListButtons), QStringList());
  EXPECT_EQ(Stored("Project_Number"), QStringList{"P-1"});
  EXPECT_EQ(AllTasks().size(), 1);
  Click("PhaseMachn");
  EXPECT_EQ(EnabledOf(kListButtons), (QStringList{"adddt", "dletedt"}));
}

TEST_F(RiskEvalFrm_1TasksTest, AddingThatTheStudyRefusesIsToldAndLeavesNothingHalfWritten) {
  GivenTasks({"Feed"});
  const auto before = AllTasks();
  OpenForm();
  Exec(Study(), "CREATE UNIQUE INDEX only_one ON Risk_records(Project_Number)");
  ExpectTell(Study() + ": UNIQUE constraint failed: Risk_records.Project_Number.", Icon::kCritical);
  Click("addNewRcd");
  EXPECT_EQ(AllTasks(), before);
}

// Copying

TEST_F(RiskEvalFrm_1TasksTest, ThereIsNothingToCopyOrDeleteInAnEmptyProject) {
  OpenForm();
  ExpectTell("No records to copy and Add as new task. Add new records first.");
  Click("CpyTaskCmd");
  EXPECT_EQ(AllTasks().size(), 0);
  ExpectTell("No records to delete.");
  Click("DleteRcd");
  EXPECT_EQ(Position(), " Recorded task 0 ");
}

TEST_F(RiskEvalFrm_1TasksTest, ACopyTakesOverAllButItsKeyAndItsDates) {
  GivenTask({{"FuntnTaskMachry", "Feed"},
             {"HazrdLoctn", "Die"},
             {"RefNo", "03.50"},
             {"HzrdDscptnTXT", "Hand\nin it"},
             {"preparedBytxt", "Lee"},
             {"RIARtxt", "x"},
             {"RskRdsdtnY_N", 1},
             {"ActntkenOptnY_N", 1},
             {"SevertyCbo", "S2, Serious"},
             {"ExposureCbo", "F2, Frequent"},
             {"RiskIndex", 5},
             {"RiskIndexAftr", 2},
             {"1Chk_OptnSltd", 4},
             {"5Chk_OptnSltdAftr", 3},
             {"Chk_OptnSe", " text"},
             {"PicBfrRcmdtn", "a.jpg"},
             {"PicAftrRcmdtn", "b.jpg"}});
  OpenOn({"Clean"});
  Click("CpyTaskCmd");
  EXPECT_EQ(Position(), " Recorded task 3 of 3 ");
  EXPECT_EQ(FocusName(), "FuntnTaskMachry");
  EXPECT_EQ(SelectedTextOf("FuntnTaskMachry"), "Feed");
  EXPECT_EQ(TextOf("RIBRtxt"), "5 (High Risk)");

  const QList<QStringList> tasks = Sql(
      Study(), session.RiskSql.text.replace("Where (((Risk_records.Project_Number)='P-1'))", ""));
  ASSERT_EQ(tasks.size(), 3);
  for (int field = 0; field < 48; ++field) {
    if (field == 1 || field == 15 || field == 45) continue;
    EXPECT_EQ(tasks[2][field], tasks[0][field]) << field;
  }
  EXPECT_EQ(tasks[2][45], "3");
  for (const int date : {1, 15}) {
    EXPECT_NE(tasks[2][date], tasks[0][date]);
    EXPECT_NE(tasks[2][date], "15/02/2013") << "a copy isn't dated by itself";
  }
  EXPECT_EQ(TextOf("dateOfRcd"), "__/__/____");
  EXPECT_EQ(TextOf("actnDt"), "__/__/____");
}

TEST_F(RiskEvalFrm_1TasksTest, CopyingStoresTheTaskThatIsLeftAndCopiesWhatItShows) {
  OpenOn({"Feed"});
  SetText("HazrdLoctn", "Die");
  Click("CpyTaskCmd");
  EXPECT_EQ(Stored("HazrdLoctn"), (QStringList{"Die", "Die"}));
  EXPECT_EQ(session.TaskCopyBuffer[2].toString(), "Feed");
  for (const std::size_t field : {1U, 15U, 45U})
    EXPECT_EQ(session.TaskCopyBuffer[field], QVariant(QString())) << field;
  // Leaving its date dates it.
  Click("dateOfRcd");
  PressTab();
  EXPECT_EQ(TextOf("dateOfRcd"), "15/02/2013");
  CloseForm();
  EXPECT_EQ(Stored("dateOfRcd"), (QStringList{"01/02/2013", "15/02/2013"}));
}

// Deleting

TEST_F(RiskEvalFrm_1TasksTest, ANoKeepsTheTaskAndDeletingOneOfTwoMakesTheOtherCurrent) {
  OpenOn({"Feed", "Clean"});
  ClickRow("DB1", 1);
  session.MsgAnswer = Button::kYes;
  Delete("Clean", Button::kNo);
  EXPECT_EQ(session.MsgAnswer, Button::kNo);
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Clean"}));
  EXPECT_EQ(Position(), " Recorded task 2 of 2 ");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  Delete("Clean");
  EXPECT_EQ(Position(), " Recorded task 1 of 1 ");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Feed");
}

TEST_F(RiskEvalFrm_1TasksTest, DeletingTheFifthOfSevenMakesTheLastOneCurrent) {
  OpenOn({"1", "2", "3", "4", "5", "6", "7"});
  ClickRow("DB1", 4);
  Delete("5");
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
  EXPECT_EQ(Position(), " Recorded task 6 of 6 ");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "7");
  EXPECT_EQ(session.TaskPosition, 6);
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"1", "2", "3", "4", "6", "7"}));
  EXPECT_EQ(RowsShownIn("DB1").size(), 6);
}

TEST_F(RiskEvalFrm_1TasksTest,
       DeletingTheOnlyTaskEmptiesTheFormButKeepsTheClassShownAndThePicture) {
  GivenTask({{"FuntnTaskMachry", "Feed"},
             {"PicBfrRcmdtn", "a.jpg"},
             {"RiskIndex", 5},
             {"1Chk_OptnSltd", 4},
             {"2Chk_OptnSltd", 5},
             {"3Chk_OptnSltd", 5},
             {"4Chk_OptnSltd", 5}});
  QFile picture(installation.PictureFolder(kStudy) + "/a.jpg");
  ASSERT_TRUE(picture.open(QIODevice::WriteOnly));
  OpenForm();
  ASSERT_EQ(TextOf("ClassScorLBL"), "15 (High Risk)");
  Delete("Feed");
  EXPECT_EQ(AllTasks().size(), 0);
  EXPECT_EQ(Position(), " Recorded task 0 ");
  EXPECT_EQ(TextOf("PrjDesptn"), "No task recorded. Click 'Add New Task' to record task");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "None.");
  EXPECT_EQ(TextOf("dateOfRcd"), "15/02/2013");
  EXPECT_EQ(TextOf("RIBRtxt"), "0");
  EXPECT_EQ(BackOf("RIBRtxt"), 0xFF0000U) << "the colour stays";
  EXPECT_EQ(TextOf("ClassScorLBL"), "15 (High Risk)");
  EXPECT_EQ(EnabledOf(kCombos), QStringList());
  EXPECT_EQ(EnabledOf(kListButtons), QStringList());
  EXPECT_TRUE(QFile::exists(picture.fileName()));
  Click("addNewRcd");
  EXPECT_EQ(Position(), " Recorded task 1 of 1 ");
  EXPECT_EQ(Stored("Project_Number"), QStringList{"P-1"});
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
}

TEST_F(RiskEvalFrm_1TasksTest, DeletingDropsWhatWasTypedIntoTheTask) {
  OpenOn({"Feed", "Clean"});
  SetText("FuntnTaskMachry", "Changed");
  Delete("Changed");
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList{"Clean"});
}

}  // namespace
}  // namespace kestrix
