// How the form goes from task to task.
#include <QLineEdit>

#include "evaluation/EvaluationTest.h"
#include "store/Recordset.h"

namespace kestrix {
namespace {

class TaskNavigationTest : public EvaluationTest {};

TEST_F(TaskNavigationTest, PickingARowShowsItsTaskAndItsPlace) {
  OpenOn({"Feed", "Clean", "Set"});
  ClickRow("DB1", 2);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Set");
  EXPECT_EQ(Position(), " Recorded task 3 of 3 ");
  EXPECT_EQ(session.TaskPosition, 3);
  PressKey(Qt::Key_Up);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  EXPECT_EQ(Position(), " Recorded task 2 of 3 ");
}

TEST_F(TaskNavigationTest, AChangeOfRowSavesWhatIsShownOfTheRowThatComes) {
  OpenOn({"Feed", "Clean"});
  // A text that comes without a signal, and so without its binding.
  QObject::connect(form_->findChild<DataControl*>("dtsorce2"), &DataControl::Shown, [this] {
    auto& box = Control<QLineEdit>("HazrdLoctn");
    const QSignalBlocker silent(box);
    box.setText("Die");
  });
  ClickRow("DB1", 1);
  EXPECT_EQ(form_->Tasks().Text("HazrdLoctn"), "Die");
}

TEST_F(TaskNavigationTest, APlaceTooFarToRememberIsShownAllTheSame) {
  constexpr int kTasks = 32'768;
  installation.GivenTasks(kStudy, "P-1", kTasks);
  ChangeTask(kTasks, "RiskIndex=6");
  OpenForm();
  ClickRow("DB1", kTasks - 2);
  EXPECT_EQ(session.TaskPosition, 32'767);
  ClickRow("DB1", kTasks - 1);
  EXPECT_EQ(session.TaskPosition, 32'767);
  EXPECT_EQ(Position(), " Recorded task 32768 of 32768 ");
  EXPECT_EQ(TextOf("RIBRtxt"), "6 (High Risk)");
  ExpectTell("You are on last record.");
  ClickHidden("nxtfrmbtn");
}

TEST_F(TaskNavigationTest, ComingToATaskWhoseIndexIsNoNumberSaysNothing) {
  GivenTask({{"FuntnTaskMachry", "Feed"}, {"RiskIndex", 5}});
  const qint64 second = GivenTask({{"FuntnTaskMachry", "Clean"}});
  ChangeTask(second, "RiskIndex='a lot'");
  OpenForm();
  ClickRow("DB1", 1);
  EXPECT_EQ(session.TaskPosition, 2);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  EXPECT_EQ(TextOf("RIBRtxt"), "5 (High Risk)") << "the summary keeps what it shows";
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ");
  ClickRow("DB1", 0);
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ");
}

TEST_F(TaskNavigationTest, NextAndPreviousSaveAndStayOnTheTask) {
  OpenOn({"Feed", "Clean"});
  SetText("HazrdLoctn", "Die");
  ClickHidden("nxtfrmbtn");
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ");
  EXPECT_EQ(form_->Tasks().Text("HazrdLoctn"), "Die");
  ClickRow("DB1", 1);
  ExpectTell("You are on last record.");
  ClickHidden("nxtfrmbtn");
  EXPECT_EQ(Position(), " Recorded task 2 of 2 ");
  SetText("HazrdLoctn", "Table");
  ClickHidden("prvsfrmbtn");
  EXPECT_EQ(Position(), " Recorded task 2 of 2 ");
  EXPECT_EQ(Stored("HazrdLoctn"), (QStringList{"Die", "Table"}));
}

TEST_F(TaskNavigationTest, WithoutTasksNextAndPreviousSaySoAndAFindFindsNothing) {
  OpenForm();
  ExpectTell("No records.");
  ClickHidden("nxtfrmbtn");
  ExpectTell("No records.");
  ClickHidden("prvsfrmbtn");
  Search("F");
  PressTab();
  EXPECT_EQ(TextOf("FndESINo"), "");
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
  EXPECT_EQ(AllTasks().size(), 0);
}

TEST_F(TaskNavigationTest, PastTheLastTaskNextStaysThereAndPreviousGoesBeforeTheFirst) {
  OpenOn({"Feed"});
  Search("x");
  ExpectTell("You are on last record.");
  ClickHidden("nxtfrmbtn");
  EXPECT_EQ(form_->Tasks().AbsolutePosition(), Recordset::kPositionPastLast);
  ExpectTell("You are on first record.");
  ClickHidden("prvsfrmbtn");
  EXPECT_EQ(form_->Tasks().AbsolutePosition(), Recordset::kPositionBeforeFirst);
}

TEST_F(TaskNavigationTest, FindStopsAtTheFirstTitleThatBeginsSo) {
  OpenOn({"Feed pump", "pump 1", "Pump 2", "Pump 3"});
  Search("Pump");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Pump 2");
  EXPECT_EQ(Control<Grid>("DB1").Row(), 2);
  EXPECT_EQ(session.TaskPosition, 3);
  SetText("FndESINo", "pump");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "pump 1");
}

TEST_F(TaskNavigationTest, AFindBarsTheListsOnceATitleDoesNotFit) {
  OpenOn({"Feed", "Clean"});
  Search("F");
  EXPECT_EQ(EnabledOf(kCombos), kCombos) << "the first title fits";
  SetText("FndESINo", "C");
  EXPECT_EQ(EnabledOf(kCombos), QStringList());
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  PressTab();
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
  EXPECT_FALSE(Control<QLineEdit>("FndESINo").isUndoAvailable());
  // A find that is taken back by hand.
  Search("C");
  PressKey(Qt::Key_Backspace);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Feed");
  EXPECT_TRUE(Control<QLineEdit>("FndESINo").isUndoAvailable());
  EXPECT_EQ(EnabledOf(kCombos), QStringList());
  PressTab();
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
  EXPECT_FALSE(Control<QLineEdit>("FndESINo").isUndoAvailable());
  EXPECT_EQ(TextOf("FndESINo"), "");
  ClickRow("DB1", 1);
  EXPECT_EQ(Position(), " Recorded task 2 of 2 ") << "the find is over";
}

TEST_F(TaskNavigationTest, AFindWithoutAMatchStandsPastTheLastTaskAndSaysNothing) {
  OpenOn({"Feed", "Clean", "Set"});
  Search("x");
  EXPECT_TRUE(form_->Tasks().Eof());
  EXPECT_EQ(session.TaskPosition, 3);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "");
  EXPECT_EQ(EnabledOf(kCombos), QStringList());
  EXPECT_EQ(BackOf("FndESINo"), colour::kWarning & 0xFFFFFF);
  EXPECT_EQ(TextOf("ESINoLBLCp"), "P-1");
  PressTab();
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Feed") << "leaving the box goes to the first task";
  EXPECT_EQ(BackOf("FndESINo"), BackOf("FuntnTaskMachry"));
  EXPECT_EQ(TextOf("FndESINo"), "");
}

TEST_F(TaskNavigationTest, AfterAFindRowChangesTakeTheirPlaceAndNothingElse) {
  GivenTask({{"FuntnTaskMachry", "Feed"}, {"RiskIndex", 5}});
  GivenTask({{"FuntnTaskMachry", "Clean"}, {"RiskIndex", 1}});
  GivenTask({{"FuntnTaskMachry", "Set"}, {"RiskIndex", 3}});
  OpenForm();
  Search("C");
  PressTab();
  ASSERT_EQ(TextOf("FuntnTaskMachry"), "Feed");
  ClickRow("DB1", 2);
  EXPECT_EQ(session.TaskPosition, 3);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Set") << "the fields follow all the same";
  EXPECT_EQ(Position(), " Recorded task 1 of 3 ");
  EXPECT_EQ(TextOf("RIBRtxt"), "5 (High Risk)");
  EXPECT_FALSE(IsChecked("RskRdsdtnY_N"));

  CloseForm();
  OpenForm();
  EXPECT_EQ(Position(), " Recorded task 3 of 3 ") << "until the form is loaded anew";
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("RIBRtxt"), "1 (Low Risk)");
}

TEST_F(TaskNavigationTest, AfterAFindTheTitleReachesTheFileByTheRowAlone) {
  OpenOn({"Feed", "Clean"});
  SetText("HazrdLoctn", "Die");
  Search("C");
  EXPECT_EQ(Stored("HazrdLoctn"), (QStringList{"Die", "None."})) << "of the task that it leaves";
  PressTab();
  SetText("FuntnTaskMachry", "Feed blanks");
  PressTab();
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed blanks", "Clean"}));
}

TEST_F(TaskNavigationTest, ALeftFindBoxThatIsEmptyKeepsTheTask) {
  OpenOn({"Feed", "Clean"});
  ClickRow("DB1", 1);
  Click("FndESINo");
  PressTab();
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  ClickRow("DB1", 0);
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ") << "there was no find";
}

}  // namespace
}  // namespace kestrix
