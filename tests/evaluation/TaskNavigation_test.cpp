// How the form goes from task to task.
#include <QLineEdit>

#include "evaluation/EvaluationTest.h"
#include "store/Recordset.h"

namespace kestrix {
namespace {

class TaskNavigationTest : public EvaluationTest {};

TEST_F(TaskNavigationTest, PickingARowShowsItsTaskAndItsPlace) {
  GivenTasks({"Feed", "Clean", "Set"});
  OpenForm();
  ClickRow("DB1", 2);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Set");
  EXPECT_EQ(Position(), " Recorded task 3 of 3 ");
  EXPECT_EQ(session.TaskPosition, 3);
  PressKey(Qt::Key_Up);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  EXPECT_EQ(Position(), " Recorded task 2 of 3 ");
}

TEST_F(TaskNavigationTest, AChangeOfRowSavesWhatIsShownOfTheRowThatComes) {
  GivenTasks({"Feed", "Clean"});
  OpenForm();
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

TEST_F(TaskNavigationTest, TheThirdOfSevenReadsSoWithABlankAtEachEnd) {
  GivenTasks({"1", "2", "3", "4", "5", "6", "7"});
  OpenForm();
  ClickRow("DB1", 2);
  EXPECT_EQ(Position(), " Recorded task 3 of 7 ");
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

TEST_F(TaskNavigationTest, NextSavesAndStaysOnTheTask) {
  GivenTasks({"Feed", "Clean"});
  OpenForm();
  SetText("HazrdLoctn", "Die");
  ClickHidden("nxtfrmbtn");
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ");
  EXPECT_EQ(form_->Tasks().Text("HazrdLoctn"), "Die");
}

TEST_F(TaskNavigationTest, NextOnTheLastTaskSaysSo) {
  GivenTasks({"Feed", "Clean"});
  OpenForm();
  ClickRow("DB1", 1);
  ExpectTell("You are on last record.");
  ClickHidden("nxtfrmbtn");
  EXPECT_EQ(Position(), " Recorded task 2 of 2 ");
}

TEST_F(TaskNavigationTest, NextAndPreviousWithoutTasksSaySo) {
  OpenForm();
  ExpectTell("No records.");
  ClickHidden("nxtfrmbtn");
  ExpectTell("No records.");
  ClickHidden("prvsfrmbtn");
}

TEST_F(TaskNavigationTest, NextPastTheLastTaskEndsThere) {
  GivenTasks({"Feed"});
  OpenForm();
  Click("FndESINo");
  Type("x");
  ExpectTell("You are on last record.");
  ClickHidden("nxtfrmbtn");
  EXPECT_EQ(form_->Tasks().AbsolutePosition(), Recordset::kPositionPastLast);
}

TEST_F(TaskNavigationTest, PreviousStoresTheTaskAndStaysOnIt) {
  GivenTasks({"Feed", "Clean"});
  OpenForm();
  ClickRow("DB1", 1);
  SetText("HazrdLoctn", "Die");
  ClickHidden("prvsfrmbtn");
  EXPECT_EQ(Position(), " Recorded task 2 of 2 ");
  EXPECT_EQ(Stored("HazrdLoctn"), (QStringList{"None.", "Die"}));
}

TEST_F(TaskNavigationTest, PreviousPastTheLastTaskGoesBeforeTheFirst) {
  GivenTasks({"Feed"});
  OpenForm();
  Click("FndESINo");
  Type("x");
  ExpectTell("You are on first record.");
  ClickHidden("prvsfrmbtn");
  EXPECT_EQ(form_->Tasks().AbsolutePosition(), Recordset::kPositionBeforeFirst);
}

TEST_F(TaskNavigationTest, FindStopsAtTheFirstTitleThatBeginsSo) {
  GivenTasks({"Feed pump", "pump 1", "Pump 2", "Pump 3"});
  OpenForm();
  Click("FndESINo");
  Type("Pump");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Pump 2");
  EXPECT_EQ(Control<Grid>("DB1").Row(), 2);
  EXPECT_EQ(session.TaskPosition, 3);
  SetText("FndESINo", "pump");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "pump 1");
}

TEST_F(TaskNavigationTest, AFindBarsTheListsOnceATitleDoesNotFit) {
  GivenTasks({"Feed", "Clean"});
  OpenForm();
  Click("FndESINo");
  Type("F");
  EXPECT_EQ(EnabledOf(kCombos), kCombos) << "the first title fits";
  SetText("FndESINo", "C");
  EXPECT_EQ(EnabledOf(kCombos), QStringList());
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  PressTab();
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
}

TEST_F(TaskNavigationTest, AFindWithoutAMatchStandsPastTheLastTaskAndSaysNothing) {
  GivenTasks({"Feed", "Clean", "Set"});
  OpenForm();
  Click("FndESINo");
  Type("x");
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

TEST_F(TaskNavigationTest, AFindStoresTheTaskThatItLeaves) {
  GivenTasks({"Feed", "Clean"});
  OpenForm();
  SetText("HazrdLoctn", "Die");
  Click("FndESINo");
  Type("C");
  EXPECT_EQ(Stored("HazrdLoctn"), (QStringList{"Die", "None."}));
}

TEST_F(TaskNavigationTest, AfterAFindRowChangesTakeTheirPlaceAndNothingElse) {
  GivenTask({{"FuntnTaskMachry", "Feed"}, {"RiskIndex", 5}});
  GivenTask({{"FuntnTaskMachry", "Clean"}, {"RiskIndex", 1}});
  GivenTask({{"FuntnTaskMachry", "Set"}, {"RiskIndex", 3}});
  OpenForm();
  Click("FndESINo");
  Type("C");
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
  GivenTasks({"Feed", "Clean"});
  OpenForm();
  Click("FndESINo");
  Type("C");
  PressTab();
  SetText("FuntnTaskMachry", "Feed blanks");
  PressTab();
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed blanks", "Clean"}));
}

TEST_F(TaskNavigationTest, ALeftFindBoxThatIsEmptyKeepsTheTask) {
  GivenTasks({"Feed", "Clean"});
  OpenForm();
  ClickRow("DB1", 1);
  Click("FndESINo");
  PressTab();
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  ClickRow("DB1", 0);
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ") << "there was no find";
}

TEST_F(TaskNavigationTest, AFindThatIsTakenBackByHandBarsTheListsUntilTheBoxIsLeftAndEnds) {
  GivenTasks({"Feed", "Clean"});
  OpenForm();
  Click("FndESINo");
  Type("C");
  PressKey(Qt::Key_Backspace);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Feed");
  EXPECT_EQ(EnabledOf(kCombos), QStringList());
  PressTab();
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
  ClickRow("DB1", 1);
  EXPECT_EQ(Position(), " Recorded task 2 of 2 ") << "the find is over";
}

TEST_F(TaskNavigationTest, TheFindBoxForgetsWhatWasTypedOnceItIsLeft) {
  GivenTasks({"Feed"});
  OpenForm();
  Click("FndESINo");
  Type("x");
  PressKey(Qt::Key_Backspace);
  EXPECT_TRUE(Control<QLineEdit>("FndESINo").isUndoAvailable());
  PressTab();
  EXPECT_FALSE(Control<QLineEdit>("FndESINo").isUndoAvailable());
  EXPECT_EQ(TextOf("FndESINo"), "");
}

TEST_F(TaskNavigationTest, AFindInAnEmptyProjectFindsNothing) {
  OpenForm();
  Click("FndESINo");
  Type("F");
  PressTab();
  EXPECT_EQ(TextOf("FndESINo"), "");
  EXPECT_EQ(EnabledOf(kCombos), kCombos);
  EXPECT_EQ(AllTasks().size(), 0);
}

}  // namespace
}  // namespace kestrix
