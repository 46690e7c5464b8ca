// The project stage and the list of stages.

#include <QComboBox>
#include <QLineEdit>

#include "projects/MnfrmTest.h"
#include "store/Database.h"

namespace kestrix {
namespace {

const QString kTitle = "BELTROVAN";

class MnfrmStagesTest : public MnfrmTest {
 protected:
  void SetUp() override {
    installation.GivenStudy(1);
    installation.GivenListRows("Prjstage", {"N.A.", "None.", "Design", "Commissioning"});
    installation.GivenProject(1, "P1", "ACME", {{"Project_phase", "Design"}});
    installation.GivenProject(1, "P2", "ACME", {{"Project_phase", "Commissioning"}});
  }
  [[nodiscard]] QStringList Stages() {
    return Column(installation.Lists(), "SELECT hazopstage FROM Prjstage ORDER BY _rowid_");
  }
  void ExpectQuestion(const QString& text, Button answer) {
    desk.messages.ExpectAsk(Icon::kInformation, "BELTROVAN: Delete record",
                            "Wish to delete Record : " + text, answer);
  }
};

// ---------------------------------------------------------------- the box

TEST_F(MnfrmStagesTest, TheListIsFilledWhenTheBoxGetsTheFocus) {
  OpenOrganisation("ACME", 1);
  EXPECT_TRUE(ItemsOf("PrjStgCbo").isEmpty());
  Control<QWidget>("adddt0").setEnabled(false);
  Control<QWidget>("dletedt0").setEnabled(false);
  Click("PrjStgCbo");
  EXPECT_EQ(ItemsOf("PrjStgCbo"), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
  EXPECT_TRUE(IsEnabled("adddt0"));
  EXPECT_TRUE(IsEnabled("dletedt0"));
}

TEST_F(MnfrmStagesTest, TheWholeTextIsSelectedWhenTheBoxIsReachedByTab) {
  OpenOrganisation("ACME", 1);
  Click("FndESINo");
  for (int i = 0; i < 8 && !HasFocus("PrjStgCbo"); ++i) PressTab();
  ASSERT_TRUE(HasFocus("PrjStgCbo"));
  EXPECT_EQ(SelectedTextOf("PrjStgCbo"), "Design");
}

TEST_F(MnfrmStagesTest, TheWholeTextIsSelectedByThePressThatBringsTheFocus) {
  OpenOrganisation("ACME", 1);
  Click("PrjStgCbo");
  EXPECT_EQ(SelectedTextOf("PrjStgCbo"), "Design");
  Type("Pilot run");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "Pilot run");
}

TEST_F(MnfrmStagesTest, OnTheSameStageTheFirstUsersStandsAndBothTextsAreTold) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "mine");
  Exec(installation.Study(1),
       "UPDATE Project_details SET Project_phase='theirs' WHERE Project_Number='P1'");
  ExpectLost("Project_phase");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "theirs");
  EXPECT_EQ(TextOf("PrjStgCbo"), "theirs");
  TypeInto("PrjStgCbo", "mine after all");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "mine after all");
}

TEST_F(MnfrmStagesTest, FillingTheListLeavesTheProjectAsItIs) {
  OpenOrganisation("ACME", 1);
  Exec(installation.Study(1), "UPDATE Project_details SET Project_phase='theirs'");
  Click("PrjStgCbo");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "theirs");
}

TEST_F(MnfrmStagesTest, AStageOfTheListIsStoredWhenTheBoxIsLeft) {
  OpenOrganisation("ACME", 1);
  Pick("PrjStgCbo", "Commissioning");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "Commissioning");
}

TEST_F(MnfrmStagesTest, ATypedStageIsStoredWithoutEnteringTheList) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "Pilot run");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "Pilot run");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
}

TEST_F(MnfrmStagesTest, AStageThatDiffersInCapitalsFromOneOfTheListStaysAsTyped) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "design");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "design");
}

TEST_F(MnfrmStagesTest, ABlankedStageBecomesNotApplicable) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "");
  PressTab();
  EXPECT_EQ(TextOf("PrjStgCbo"), "N.A.");
  EXPECT_EQ(Stored("P1", "Project_phase"), "N.A.");
}

TEST_F(MnfrmStagesTest, ARefusedStageStaysToBeMended) {
  OpenOrganisation("ACME", 1);
  RefuseEqual("Project_phase");
  TypeInto("PrjStgCbo", "Commissioning");
  PressTab();
  EXPECT_EQ(TextOf("PrjStgCbo"), "Commissioning");
  EXPECT_EQ(Stored("P1", "Project_phase"), "Design");
  TypeInto("PrjStgCbo", "Use");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "Use");
}

TEST_F(MnfrmStagesTest, AStageIsNoLongerThanItsColumn) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", QString(300, u's'));
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), QString(255, u's'));
}

TEST_F(MnfrmStagesTest, AnotherUsersStageAppearsWhenTheBoxGetsTheFocusAgain) {
  OpenOrganisation("ACME", 1);
  Click("PrjStgCbo");
  Exec(installation.Lists(), "INSERT INTO Prjstage VALUES('Theirs')");
  EXPECT_FALSE(ItemsOf("PrjStgCbo").contains("Theirs"));
  PressTab();
  Click("PrjStgCbo");
  EXPECT_EQ(ItemsOf("PrjStgCbo").last(), "Theirs");
}

TEST_F(MnfrmStagesTest, AListThatCannotBeReadShowsTheFailure) {
  OpenOrganisation("ACME", 1);
  ASSERT_TRUE(QFile::remove(installation.Lists()));
  QString why;
  try {
    const Database database(installation.Lists());
  } catch (const Failure& failure) {
    why = failure.description();
  }
  desk.messages.ExpectTell(Icon::kCritical, kTitle, why);
  Click("PrjStgCbo");
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
}

TEST_F(MnfrmStagesTest, AnEmptyListShowsTheFailure) {
  installation.GivenListRows("Prjstage", {});
  OpenOrganisation("ACME", 1);
  desk.messages.ExpectTell(Icon::kCritical, kTitle, "No current record.");
  Click("PrjStgCbo");
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
}

// ---------------------------------------------------------------- add

TEST_F(MnfrmStagesTest, ANewStageGoesIntoTheListAndStaysInTheBox) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "Pilot run");
  Click("adddt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning", "Pilot run"}));
  EXPECT_EQ(ItemsOf("PrjStgCbo"), Stages());
  EXPECT_EQ(TextOf("PrjStgCbo"), "Pilot run");
  EXPECT_EQ(Stored("P1", "Project_phase"), "Pilot run");
  EXPECT_EQ(session.ListTextKnown, 0);
  EXPECT_EQ(session.LoopIndex, 4 + 1);
}

TEST_F(MnfrmStagesTest, AKnownStageIsNotAddedAgainAndNothingIsSaid) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "Commissioning");
  Click("adddt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
  EXPECT_EQ(session.ListTextKnown, 1);
}

TEST_F(MnfrmStagesTest, AStageThatDiffersInCapitalsIsANewOne) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "design");
  Click("adddt0");
  EXPECT_EQ(Stages().last(), "design");
}

TEST_F(MnfrmStagesTest, AnEmptyStageIsLeftToTheListWhichRefusesIt) {
  OpenOrganisation("ACME", 1);
  Click("PrjStgCbo");
  TypeInto("FndESINo", "no such project");
  ASSERT_EQ(TextOf("PrjStgCbo"), "");
  Click("adddt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
  EXPECT_EQ(TextOf("PrjStgCbo"), "");
  Click("PrjStgCbo");
  EXPECT_EQ(ItemsOf("PrjStgCbo").size(), 4);
}

TEST_F(MnfrmStagesTest, AddingBeforeTheListWasReadDoesNothing) {
  OpenOrganisation("ACME", 1);
  Click("adddt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
}

TEST_F(MnfrmStagesTest, AnotherUsersNewStagesDoNotDisturbAnAdd) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "Mine");
  Exec(installation.Lists(), "INSERT INTO Prjstage VALUES('Theirs')");
  Click("adddt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning", "Theirs", "Mine"}));
  EXPECT_EQ(TextOf("PrjStgCbo"), "Mine");
  PressTab();
  Click("PrjStgCbo");
  EXPECT_EQ(ItemsOf("PrjStgCbo"), Stages());
}

TEST_F(MnfrmStagesTest, AStageThatAnotherUserHasAddedMeanwhileIsKnown) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "Pilot run");
  Exec(installation.Lists(), "INSERT INTO Prjstage VALUES('Pilot run')");
  Click("adddt0");
  EXPECT_EQ(Stages().count("Pilot run"), 1);
  EXPECT_EQ(session.ListTextKnown, 1);
  EXPECT_EQ(TextOf("PrjStgCbo"), "Pilot run");
}

// ---------------------------------------------------------------- delete

TEST_F(MnfrmStagesTest, ReservedTextsAreNotDeleted) {
  OpenOrganisation("ACME", 1);
  for (const char* reserved : {"N.A.", "None."}) {
    TypeInto("PrjStgCbo", reserved);
    desk.messages.ExpectTell(Icon::kInformation, kTitle, "Cannot be deleted, reserved text.");
    Click("dletedt0");
  }
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
}

TEST_F(MnfrmStagesTest, AReservedTextThatTheDescriptionHeldIsNotDeletedEither) {
  Exec(installation.Study(1), "UPDATE Project_details SET Project_Description='N.A.'");
  OpenOrganisation("ACME", 1);
  Click("PrjStgCbo");
  Click("ProjectDescription");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Cannot be deleted, reserved text.");
  Click("dletedt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
}

TEST_F(MnfrmStagesTest, NoneWithoutAFullStopIsAnOrdinaryStage) {
  installation.GivenListRows("Prjstage", {"None.", "None"});
  OpenOrganisation("ACME", 1);
  Pick("PrjStgCbo", "None");
  PressTab();
  Click("PrjStgCbo");
  ExpectQuestion("None", Button::kYes);
  Click("dletedt0");
  EXPECT_EQ(Stages(), QStringList{"None."});
}

TEST_F(MnfrmStagesTest, YesDeletesTheStageAndTheBoxShowsNone) {
  OpenOrganisation("ACME", 1);
  Click("PrjStgCbo");
  ExpectQuestion("Design", Button::kYes);
  Click("dletedt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Commissioning"}));
  EXPECT_EQ(ItemsOf("PrjStgCbo"), Stages());
  EXPECT_EQ(TextOf("PrjStgCbo"), "None.");
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
}

TEST_F(MnfrmStagesTest, AfterADeleteTheProjectTakesNoneWithItsNextUpdate) {
  OpenOrganisation("ACME", 1);
  Click("PrjStgCbo");
  ExpectQuestion("Design", Button::kYes);
  Click("dletedt0");
  EXPECT_EQ(Stored("P1", "Project_phase"), "Design");
  Click("ProjectDescription");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "None.");
}

TEST_F(MnfrmStagesTest, ProjectsThatUseADeletedStageKeepIt) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "Commissioning");
  PressTab();
  Click("PrjStgCbo");
  ExpectQuestion("Commissioning", Button::kYes);
  Click("dletedt0");
  EXPECT_EQ(Stored("P2", "Project_phase"), "Commissioning");
}

TEST_F(MnfrmStagesTest, NoKeepsTheStage) {
  OpenOrganisation("ACME", 1);
  Click("PrjStgCbo");
  ExpectQuestion("Design", Button::kNo);
  Click("dletedt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
}

TEST_F(MnfrmStagesTest, TheQuestionNamesTheTextThatTheBoxHadWhenItGotTheFocus) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "Commissioning");
  ExpectQuestion("Design", Button::kYes);
  Click("dletedt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Commissioning"}));
}

TEST_F(MnfrmStagesTest, TheQuestionNamesTheTextThatWasAddedLast) {
  OpenOrganisation("ACME", 1);
  TypeInto("PrjStgCbo", "Pilot run");
  Click("adddt0");
  ExpectQuestion("Pilot run", Button::kYes);
  Click("dletedt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
}

TEST_F(MnfrmStagesTest, AfterTheDescriptionTheQuestionNamesItAndNothingIsDeleted) {
  OpenOrganisation("ACME", 1);
  Click("PrjStgCbo");
  TypeInto("ProjectDescription", "Press line");
  ExpectQuestion("Press line", Button::kYes);
  Click("dletedt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Design", "Commissioning"}));
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
}

TEST_F(MnfrmStagesTest, OfTwoEqualStagesTheFirstIsDeleted) {
  Exec(installation.Lists(), "INSERT INTO Prjstage VALUES('Design')");
  OpenOrganisation("ACME", 1);
  Click("PrjStgCbo");
  ExpectQuestion("Design", Button::kYes);
  Click("dletedt0");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Commissioning", "Design"}));
}

}  // namespace
}  // namespace kestrix
