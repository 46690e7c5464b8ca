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

  /// What the second one of two who changed a field of the first task is told.
  void ExpectLost(const QString& field) {
    ExpectTell(
        QStringLiteral("Somebody else has changed %1 of this record meanwhile. Their text stands; "
                       "please look at it and change it again if need be.\n\n%1\nTheirs: Theirs\n"
                       "Yours: Mine")
            .arg(field),
        Icon::kCritical);
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

TEST_F(RiskEvalFrm_1OthersTest, OnTheSameFieldTheFirstOneStandsAndBothTextsAreTold) {
  SetText("HazrdLoctn", "Mine");
  SetText("ReccdtnTxt", "Mine too");
  ChangeTask(first_, "HazrdLoctn='Theirs'");
  ExpectLost("HazrdLoctn");
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("HazrdLoctn").first(), "Theirs");
  EXPECT_EQ(Stored("ReccdtnTxt").first(), "Mine too");
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  ClickRow("DB1", 0);
  EXPECT_EQ(TextOf("HazrdLoctn"), "Theirs");
}

TEST_F(RiskEvalFrm_1OthersTest, LeavingThePrimaryHazardOverTheSameFieldShowsWhoseTextStands) {
  SetText("PrimaryHazard", "Mine");
  ChangeTask(first_, "Primary_Hazard='Theirs'");
  ExpectLost("Primary_Hazard");
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
  ExpectLost("HazrdLoctn");
  PressTab();
  EXPECT_EQ(Stored("HazrdLoctn").first(), "Theirs");
  EXPECT_EQ(TextOf("HazrdLoctn"), "Theirs");
  EXPECT_EQ(Stored("Primary_Hazard").first(), "Mine too");
  EXPECT_EQ(TextOf("PrimaryHazard"), "Mine too");
}

TEST_F(RiskEvalFrm_1OthersTest, LeavingThePrimaryHazardOfATaskThatIsGoneTellsWhatWasTyped) {
  SetText("PrimaryHazard", "Mine");
  Exec(Study(), "DELETE FROM Risk_records WHERE nunberauto=1");
  ExpectTell("Somebody else has deleted this record.\n\nPrimary_Hazard\nYours: Mine",
             Icon::kCritical);
  PressTab();
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList{"Clean"});
  EXPECT_EQ(Stored("Primary_Hazard"), QStringList{"None."});
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
}

TEST_F(RiskEvalFrm_1OthersTest, LeavingTheHazardTypeOverTheSameFieldShowsWhoseTextStands) {
  SetText("HazardType", "Mine");
  ChangeTask(first_, "Hazard_type='Theirs'");
  ExpectLost("Hazard_type");
  PressTab();
  EXPECT_EQ(TextOf("HazardType"), "Theirs");
  CloseForm();
  EXPECT_EQ(Stored("Hazard_type").first(), "Theirs");
}

TEST_F(RiskEvalFrm_1OthersTest, ClosingWhileTheStudyIsLockedSaysSoAndStaysOpenWithTheText) {
  SetText("HazrdLoctn", "Mine");
  auto other = std::make_unique<WriterAtWork>(Study());
  ExpectTell(Study() + ": database is locked.", Icon::kCritical);
  Click("ClsedDg");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(TextOf("HazrdLoctn"), "Mine");
  EXPECT_EQ(steps, QStringList());
  other.reset();
  Click("ClsedDg");
  EXPECT_EQ(steps, (QStringList{"unloaded", "closed"}));
  EXPECT_EQ(Stored("HazrdLoctn").first(), "Mine");
}

/// A field that takes no text twice.
class RiskEvalFrm_1RefusedTest : public RiskEvalFrm_1OthersTest {
 protected:
  void Refuse(const QString& field, const QString& text) {
    GivenTask({{field, text}});
    Exec(Study(), QStringLiteral("CREATE UNIQUE INDEX one ON Risk_records(%1) WHERE %1='%2'")
                      .arg(field, text));
    told_ = QStringLiteral("%1: UNIQUE constraint failed: Risk_records.%2.").arg(Study(), field);
  }
  void ExpectRefused(const QString& texts = QString()) {
    ExpectTell(told_ + texts, Icon::kCritical);
  }
  QString told_;
};

TEST_F(RiskEvalFrm_1RefusedTest, ATaskWhoseAddingWasRefusedIsNotStoredLater) {
  Refuse("FuntnTaskMachry", "None.");
  ExpectRefused();
  Click("addNewRcd");
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Feed");
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ");
  Exec(Study(), "DROP INDEX one");
  CloseForm();
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Clean", "None."}));
}

TEST_F(RiskEvalFrm_1RefusedTest, ACopyThatWasRefusedIsNotStoredLater) {
  Exec(Study(), "CREATE UNIQUE INDEX one ON Risk_records(FuntnTaskMachry)");
  told_ = Study() + ": UNIQUE constraint failed: Risk_records.FuntnTaskMachry.";
  ExpectRefused();
  Click("CpyTaskCmd");
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ");
  CloseForm();
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Clean"}));
}

TEST_F(RiskEvalFrm_1RefusedTest, ARefusedFirstTaskLeavesTheFormWithoutATask) {
  Delete("Feed");
  Delete("Clean");
  Exec(Study(),
       "INSERT INTO Risk_records(Project_Number) VALUES('other');"
       "CREATE UNIQUE INDEX one ON Risk_records(HazrdLoctn)");
  told_ = Study() + ": UNIQUE constraint failed: Risk_records.HazrdLoctn.";
  ExpectRefused();
  Click("addNewRcd");
  EXPECT_EQ(Position(), " Recorded task 0 ");
  EXPECT_EQ(EnabledOf(kCombos), QStringList());
  CloseForm();
  EXPECT_EQ(Stored("nunberauto"), QStringList());
}

TEST_F(RiskEvalFrm_1RefusedTest, APickThatCannotLeaveItsTaskSaysWhy) {
  Refuse("HazrdLoctn", "Mine");
  SetText("HazrdLoctn", "Mine");
  ExpectRefused();
  ClickRow("DB1", 1);
  EXPECT_EQ(Position(), " Recorded task 1 of 2 ");
  EXPECT_EQ(TextOf("HazrdLoctn"), "Mine");
  SetText("HazrdLoctn", "Mine after all");
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("HazrdLoctn").first(), "Mine after all");
}

TEST_F(RiskEvalFrm_1OthersTest, AddingOverTheSameFieldSaysWhoseTextStands) {
  SetText("HazrdLoctn", "Mine");
  ChangeTask(first_, "HazrdLoctn='Theirs'");
  ExpectLost("HazrdLoctn");
  Click("addNewRcd");
  EXPECT_EQ(Stored("HazrdLoctn"), (QStringList{"Theirs", "None."}));
  EXPECT_EQ(TextOf("HazrdLoctn"), "Theirs");
  Click("addNewRcd");
  EXPECT_EQ(AllTasks().size(), 3) << "the form works on";
}

TEST_F(RiskEvalFrm_1OthersTest, ClosingOverTheSameFieldSaysWhoseTextStands) {
  SetText("HazrdLoctn", "Mine");
  ChangeTask(first_, "HazrdLoctn='Theirs'");
  ExpectLost("HazrdLoctn");
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
  ExpectTell("Somebody else has deleted this record.\n\nHazrdLoctn\nYours: Mine", Icon::kCritical);
  ClickRow("DB1", 1);
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList{"Clean"});
  EXPECT_EQ(Stored("HazrdLoctn"), QStringList{"None."});
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
}

/// A study in whose place a restore lays another file.
class RiskEvalFrm_1ReplacedTest : public RiskEvalFrm_1OthersTest {
 protected:
  void Replace() {
    const QString restored = Study() + ".restored";
    ASSERT_TRUE(QFile::copy(Study(), restored));
    ASSERT_EQ(std::rename(QFile::encodeName(restored), QFile::encodeName(Study())), 0);
    before_ = AllTasks();
  }
  void ExpectReplaced(const QString& texts = QString()) {
    ExpectTell(Study() +
                   " has been replaced or deleted since it was opened, as a restore does. "
                   "Leave the form and open it again." +
                   texts,
               Icon::kCritical);
  }
  QList<QStringList> before_;
};

TEST_F(RiskEvalFrm_1ReplacedTest, AddingSaysSoAndLeavesTheNewStudyAlone) {
  Replace();
  ExpectReplaced();
  Click("addNewRcd");
  CloseForm();
  EXPECT_EQ(AllTasks(), before_);
  OpenForm();
  Click("addNewRcd");
  EXPECT_EQ(Stored("FuntnTaskMachry"), (QStringList{"Feed", "Clean", "None."}));
}

TEST_F(RiskEvalFrm_1ReplacedTest, TheNextRowChangeSaysSoOnce) {
  Replace();
  ExpectReplaced();
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Clean");
  ClickRow("DB1", 0);
  CloseForm();
  EXPECT_EQ(AllTasks(), before_);
}

TEST_F(RiskEvalFrm_1ReplacedTest, WhatWasTypedStaysOnTheScreenUntilTheFormIsLeft) {
  SetText("PrimaryHazard", "Mine");
  Replace();
  ExpectReplaced();
  PressTab();
  EXPECT_EQ(TextOf("PrimaryHazard"), "Mine");
  ExpectReplaced();
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("PrimaryHazard"), "Mine");
  ExpectReplaced();
  Click("ClsedDg");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(TextOf("PrimaryHazard"), "Mine");
  ExpectReplaced("\n\nPrimary_Hazard\nYours: Mine");
  Click("ClsedDg");
  EXPECT_EQ(steps, (QStringList{"unloaded", "closed"}));
  EXPECT_EQ(AllTasks(), before_);
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
