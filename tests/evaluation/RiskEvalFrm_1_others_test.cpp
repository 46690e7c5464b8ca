// Other users who work on the same study and lists at the same time.
#include <QFileInfo>
#include <cstdio>

#include "evaluation/EvaluationTest.h"
#include "support/Files.h"
#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

class RiskEvalFrm_1OthersTest : public EvaluationTest {
 protected:
  void SetUp() override {
    EvaluationTest::SetUp();
    first_ = GivenTask({{"FuntnTaskMachry", "Feed"}});
    second_ = GivenTask({{"FuntnTaskMachry", "Clean"}});
    OpenForm();
  }

  qint64 first_ = 0;
  qint64 second_ = 0;
};

TEST_F(RiskEvalFrm_1OthersTest, TwoUsersWhoChangeDifferentFieldsBothKeepTheirWork) {
  OtherProcess other(Study());
  SetText("HazrdLoctn", "Mine");
  other.Run("UPDATE Risk_records SET ReccdtnTxt='Theirs' WHERE nunberauto=1;");
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("HazrdLoctn").first(), "Mine");
  EXPECT_EQ(Stored("ReccdtnTxt").first(), "Theirs");
  ClickRow("DB1", 0);
  EXPECT_EQ(TextOf("ReccdtnTxt"), "Theirs");
}

TEST_F(RiskEvalFrm_1OthersTest, OnTheSameFieldTheFirstOneStandsAndIsShown) {
  SetText("HazrdLoctn", "Mine");
  ChangeTask(first_, "HazrdLoctn='Theirs'");
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("HazrdLoctn").first(), "Theirs");
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  ClickRow("DB1", 0);
  EXPECT_EQ(TextOf("HazrdLoctn"), "Theirs");
}

TEST_F(RiskEvalFrm_1OthersTest, LeavingThePrimaryHazardOverTheSameFieldShowsWhoseTextStands) {
  SetText("PrimaryHazard", "Mine");
  ChangeTask(first_, "Primary_Hazard='Theirs'");
  PressTab();
  EXPECT_EQ(Stored("Primary_Hazard").first(), "Theirs");
  EXPECT_EQ(TextOf("PrimaryHazard"), "Theirs");
  EXPECT_FALSE(form_->Tasks().HasPendingEdit()) << "nothing is left to be tried again";
  EXPECT_NE(FocusName(), "PrimaryHazard");
  SetText("PrimaryHazard", "Mine after all");
  PressTab();
  EXPECT_EQ(Stored("Primary_Hazard").first(), "Mine after all");
}

TEST_F(RiskEvalFrm_1OthersTest, LeavingThePrimaryHazardOverAnotherFieldShowsWhoseTextStands) {
  SetText("HazrdLoctn", "Mine");
  SetText("PrimaryHazard", "Mine too");
  ChangeTask(first_, "HazrdLoctn='Theirs'");
  PressTab();
  EXPECT_EQ(Stored("HazrdLoctn").first(), "Theirs");
  EXPECT_EQ(TextOf("HazrdLoctn"), "Theirs");
  EXPECT_EQ(Stored("Primary_Hazard").first(), TextOf("PrimaryHazard"))
      << "what is shown is what is stored";
}

TEST_F(RiskEvalFrm_1OthersTest, LeavingThePrimaryHazardOfATaskThatIsGoneSaysNothing) {
  SetText("PrimaryHazard", "Mine");
  Exec(Study(), "DELETE FROM Risk_records WHERE nunberauto=1");
  PressTab();
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList{"Clean"});
  EXPECT_EQ(Stored("Primary_Hazard"), QStringList{"None."});
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
}

TEST_F(RiskEvalFrm_1OthersTest, LeavingTheHazardTypeOverTheSameFieldReadsNoneAndTheirsStands) {
  SetText("HazardType", "Mine");
  ChangeTask(first_, "Hazard_type='Theirs'");
  PressTab();
  EXPECT_EQ(Stored("Hazard_type").first(), "Theirs");
  EXPECT_EQ(TextOf("HazardType"), "None.");
}

TEST_F(RiskEvalFrm_1OthersTest, AddingOverTheSameFieldSaysWhoseTextStands) {
  SetText("HazrdLoctn", "Mine");
  ChangeTask(first_, "HazrdLoctn='Theirs'");
  ExpectTell(
      "Somebody else has changed HazrdLoctn of this record meanwhile. Their text stands; please "
      "look at it and change it again if need be.",
      Icon::kCritical);
  Click("addNewRcd");
  EXPECT_EQ(Stored("HazrdLoctn"), (QStringList{"Theirs", "None."}));
  EXPECT_EQ(TextOf("HazrdLoctn"), "Theirs");
  Click("addNewRcd");
  EXPECT_EQ(AllTasks().size(), 3) << "the form works on";
}

TEST_F(RiskEvalFrm_1OthersTest, ClosingOverTheSameFieldSaysWhoseTextStands) {
  SetText("HazrdLoctn", "Mine");
  ChangeTask(first_, "HazrdLoctn='Theirs'");
  ExpectTell(
      "Somebody else has changed HazrdLoctn of this record meanwhile. Their text stands; please "
      "look at it and change it again if need be.",
      Icon::kCritical);
  CloseForm();
  EXPECT_EQ(Stored("HazrdLoctn").first(), "Theirs");
}

TEST_F(RiskEvalFrm_1OthersTest, DeletingATaskThatSomebodyElseDeletedSaysSo) {
  Exec(Study(), "DELETE FROM Risk_records WHERE nunberauto=1");
  ExpectAsk("BELTROVAN", "Wish to delete task Feed Dated : 01/02/2013", Button::kYes);
  ExpectTell("Somebody else has deleted this record.", Icon::kCritical);
  Click("DleteRcd");
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList{"Clean"});
  EXPECT_EQ(RowsShownIn("DB1").size(), 1);
  ClickRow("DB1", 0);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
}

TEST_F(RiskEvalFrm_1OthersTest, WhatIsTypedIntoATaskThatIsGoneIsNotWrittenElsewhere) {
  Exec(Study(), "DELETE FROM Risk_records WHERE nunberauto=1");
  SetText("HazrdLoctn", "Mine");
  ClickRow("DB1", 1);
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList{"Clean"});
  EXPECT_EQ(Stored("HazrdLoctn"), QStringList{"None."});
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
}

TEST_F(RiskEvalFrm_1OthersTest, AddingToAStudyThatARestoreReplacedSaysSoAndLeavesTheNewOneAlone) {
  const QString restored = Study() + ".restored";
  ASSERT_TRUE(QFile::copy(Study(), restored));
  ASSERT_EQ(std::rename(QFile::encodeName(restored), QFile::encodeName(Study())), 0);
  const auto before = AllTasks();
  const QString told = Study() +
                       " has been replaced or deleted since it was opened, as a restore does. "
                       "Leave the form and open it again.";
  ExpectTell(told, Icon::kCritical);
  Click("addNewRcd");
  ExpectTell(told, Icon::kCritical);  // the new task is still waiting to be stored
  CloseForm();
  EXPECT_EQ(AllTasks(), before);
  OpenForm();
  Click("addNewRcd");
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Clean", "None."}));
}

TEST_F(RiskEvalFrm_1OthersTest, TasksOfOthersAreSeenAfterTheNextAddition) {
  GivenTask({{"FuntnTaskMachry", "Theirs"}});
  EXPECT_EQ(RowsShownIn("DB1").size(), 2);
  Click("addNewRcd");
  EXPECT_EQ(Position(), " Recorded task 4 of 4 ");
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Clean", "Theirs", "None."}));
}

/// Right behind each new task of ours stands one of somebody else's.
class RiskEvalFrm_1RaceTest : public EvaluationTest {
 protected:
  void SetUp() override {
    EvaluationTest::SetUp();
    GivenTasks({"Feed"});
    OpenForm();
    QObject::connect(&Control<DataControl>("dtsorce2"), &DataControl::RowInserted, form_, [this] {
      GivenTask({{"ActnByCbo", "Them"}});
    });
  }
};

TEST_F(RiskEvalFrm_1RaceTest, ANewTaskIsInHandThoughSomebodyElseAddedOneInTheSameMoment) {
  Click("addNewRcd");
  EXPECT_EQ(Position(), " Recorded task 2 of 3 ");
  Type("Mine");
  CloseForm();
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Mine", "None."}));
  EXPECT_EQ(Stored("ActnByCbo"), (QStringList{"None.", "None.", "Them"}));
}

TEST_F(RiskEvalFrm_1RaceTest, ACopyIsInHandThoughSomebodyElseAddedATaskInTheSameMoment) {
  Click("CpyTaskCmd");
  EXPECT_EQ(Position(), " Recorded task 2 of 3 ");
  Type("Mine");
  CloseForm();
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Mine", "None."}));
}

TEST_F(RiskEvalFrm_1OthersTest, TwoFormsOnOneStudyAddWithoutLosingATask) {
  OtherProcess other(Study());
  for (int i = 0; i < 5; ++i) {
    Click("addNewRcd");
    other.Run("INSERT INTO Risk_records(Project_Number,FuntnTaskMachry) VALUES('P-1','Theirs');");
  }
  EXPECT_EQ(Stored("FuntnTaskMachry").count("None."), 5);
  EXPECT_EQ(Stored("FuntnTaskMachry").count("Theirs"), 5);
}

TEST_F(RiskEvalFrm_1OthersTest, ComingToATaskShowsWhatItHoldsNow) {
  ClickRow("DB1", 1);
  ChangeTask(first_, "RiskIndex=6, HazrdLoctn='Theirs'");
  ClickRow("DB1", 0);
  EXPECT_EQ(TextOf("HazrdLoctn"), "Theirs");
  EXPECT_EQ(TextOf("RIBRtxt"), "6 (High Risk)");
}

/// A study that this user may only read.
class RiskEvalFrm_1ProtectedTest : public EvaluationTest {};

TEST_F(RiskEvalFrm_1ProtectedTest, AWriteProtectedStudyIsShownAndTakesNothing) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GivenTasks({"Feed", "Clean"});
  GiveToNobody(QFileInfo(installation.Folder()).path());
  const QByteArray before = ReadFile(Study());
  const auto seen = RunAsNobody([this] {
    QFile::setPermissions(Study(), QFile::ReadOwner);
    OpenForm();
    SetText("HazrdLoctn", "Die");
    SetCheck("ActntkenOptnY_N", true);
    QStringList shown = {TextOf("HazrdLoctn"), TextOf("ActntkenOptnY_N")};
    ExpectTell(Study() + " can't be written to.", Icon::kCritical);
    Click("addNewRcd");
    ExpectAsk("BELTROVAN", "Wish to delete task Feed Dated : 01/02/2013", Button::kYes);
    ExpectTell(Study() + " can't be written to.", Icon::kCritical);
    Click("DleteRcd");
    ClickRow("DB1", 1);
    shown += {TextOf("FuntnTaskMachry"), Position()};
    CloseForm();
    return shown.join(u'|');
  });
  EXPECT_EQ(seen.value_or("died"), "None.|No|Clean| Recorded task 2 of 2 ");
  EXPECT_EQ(ReadFile(Study()), before);
}

}  // namespace
}  // namespace kestrix
