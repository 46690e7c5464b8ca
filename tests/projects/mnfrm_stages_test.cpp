// The project stage and the list of stages.

#include <QComboBox>
#include <QLineEdit>

#include "projects/MnfrmTest.h"
#include "store/Database.h"

namespace kestrix {
namespace {

const QString kTitle = "BELTROVAN";
const QStringList kStages{"N.A.", "None.", "Design", "Commissioning"};

class MnfrmStagesTest : public MnfrmTest {
 protected:
  void SetUp() override {
    installation.GivenStudy(1);
    installation.GivenListRows("Prjstage", kStages);
    installation.GivenProject(1, "P1", "ACME", {{"Project_phase", "Design"}});
    installation.GivenProject(1, "P2", "ACME", {{"Project_phase", "Commissioning"}});
  }
  [[nodiscard]] QStringList Stages() {
    return Column(installation.Lists(), "SELECT hazopstage FROM Prjstage ORDER BY _rowid_");
  }
  void Leave(const QString& typed) {
    TypeInto("PrjStgCbo", typed);
    PressTab();
  }
  void Add(const QString& text) {
    TypeInto("PrjStgCbo", text);
    Click("adddt0");
  }
  void Delete(const QString& text, Button answer = Button::kYes) {
    desk.messages.ExpectAsk(Icon::kInformation, "BELTROVAN: Delete record",
                            "Wish to delete Record : " + text, answer);
    Click("dletedt0");
  }
};

TEST_F(MnfrmStagesTest, TheListIsFilledAndTheTextSelectedWhenTheBoxGetsTheFocus) {
  OpenAcme();
  EXPECT_TRUE(ItemsOf("PrjStgCbo").isEmpty());
  Control<QWidget>("adddt0").setEnabled(false);
  Control<QWidget>("dletedt0").setEnabled(false);
  Click("PrjStgCbo");
  EXPECT_EQ(ItemsOf("PrjStgCbo"), kStages);
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
  EXPECT_TRUE(IsEnabled("adddt0"));
  EXPECT_TRUE(IsEnabled("dletedt0"));
  EXPECT_EQ(SelectedTextOf("PrjStgCbo"), "Design") << "by a press";
  Click("FndESINo");
  for (int i = 0; i < 8 && !HasFocus("PrjStgCbo"); ++i) PressTab();
  ASSERT_TRUE(HasFocus("PrjStgCbo"));
  EXPECT_EQ(SelectedTextOf("PrjStgCbo"), "Design") << "by Tab";
  // Another user's stage appears when the box gets the focus again.
  Exec(installation.Lists(), "INSERT INTO Prjstage VALUES('Theirs')");
  EXPECT_FALSE(ItemsOf("PrjStgCbo").contains("Theirs"));
  PressTab();
  Click("PrjStgCbo");
  EXPECT_EQ(ItemsOf("PrjStgCbo").last(), "Theirs");
}

TEST_F(MnfrmStagesTest, OnTheSameStageTheFirstUsersStandsAndBothTextsAreTold) {
  OpenAcme();
  TypeInto("PrjStgCbo", "mine");
  Exec(installation.Study(1),
       "UPDATE Project_details SET Project_phase='theirs' WHERE Project_Number='P1'");
  ExpectLost("Project_phase");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "theirs");
  EXPECT_EQ(TextOf("PrjStgCbo"), "theirs");
  Leave("mine after all");
  EXPECT_EQ(Stored("P1", "Project_phase"), "mine after all");
}

TEST_F(MnfrmStagesTest, FillingTheListLeavesTheProjectAsItIs) {
  OpenAcme();
  Exec(installation.Study(1), "UPDATE Project_details SET Project_phase='theirs'");
  Click("PrjStgCbo");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "theirs");
}

TEST_F(MnfrmStagesTest, AStageOfTheListAndATypedOneAreStoredWhenTheBoxIsLeft) {
  OpenAcme();
  Pick("PrjStgCbo", "Commissioning");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "Commissioning");
  const QString longest(255, u's');
  for (const auto& [typed, stored] : {std::pair<QString, QString>("Pilot run", "Pilot run"),
                                      {"design", "design"},
                                      {"", "N.A."},
                                      {longest + "s", longest}}) {
    Leave(typed);
    EXPECT_EQ(Stored("P1", "Project_phase"), stored);
    EXPECT_EQ(TextOf("PrjStgCbo"), stored);
    EXPECT_EQ(Stages(), kStages) << "a typed one doesn't enter the list";
  }
}

TEST_F(MnfrmStagesTest, ARefusedStageStaysToBeMended) {
  OpenAcme();
  RefuseEqual("Project_phase");
  Leave("Commissioning");
  EXPECT_EQ(TextOf("PrjStgCbo"), "Commissioning");
  EXPECT_EQ(Stored("P1", "Project_phase"), "Design");
  Leave("Use");
  EXPECT_EQ(Stored("P1", "Project_phase"), "Use");
}

TEST_F(MnfrmStagesTest, AListThatCannotBeReadShowsTheFailure) {
  OpenAcme();
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
  OpenAcme();
  desk.messages.ExpectTell(Icon::kCritical, kTitle, "No current record.");
  Click("PrjStgCbo");
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
}

TEST_F(MnfrmStagesTest, ANewStageGoesIntoTheListOnceAndStaysInTheBox) {
  OpenAcme();
  Click("adddt0");
  EXPECT_EQ(Stages(), kStages) << "the list wasn't read before";
  Add("Commissioning");
  EXPECT_EQ(Stages(), kStages) << "a known one isn't added again";
  EXPECT_EQ(session.ListTextKnown, 1);
  Add("Pilot run");
  QStringList rows = kStages + QStringList{"Pilot run"};
  EXPECT_EQ(Stages(), rows);
  EXPECT_EQ(ItemsOf("PrjStgCbo"), rows);
  EXPECT_EQ(TextOf("PrjStgCbo"), "Pilot run");
  EXPECT_EQ(Stored("P1", "Project_phase"), "Pilot run");
  EXPECT_EQ(session.ListTextKnown, 0);
  EXPECT_EQ(session.LoopIndex, 4 + 1);
  Delete("Pilot run");
  EXPECT_EQ(Stages(), kStages) << "the question names what was added last";
  Add("design");
  EXPECT_EQ(Stages().last(), "design") << "capitals make another stage";
}

TEST_F(MnfrmStagesTest, AnEmptyStageIsLeftToTheListWhichRefusesIt) {
  OpenAcme();
  Click("PrjStgCbo");
  TypeInto("FndESINo", "no such project");
  ASSERT_EQ(TextOf("PrjStgCbo"), "");
  Click("adddt0");
  EXPECT_EQ(Stages(), kStages);
  EXPECT_EQ(TextOf("PrjStgCbo"), "");
  Click("PrjStgCbo");
  EXPECT_EQ(ItemsOf("PrjStgCbo").size(), 4);
}

TEST_F(MnfrmStagesTest, AnotherUsersNewStagesDoNotDisturbAnAdd) {
  OpenAcme();
  TypeInto("PrjStgCbo", "Mine");
  Exec(installation.Lists(), "INSERT INTO Prjstage VALUES('Theirs')");
  Click("adddt0");
  const QStringList rows = kStages + QStringList{"Theirs", "Mine"};
  EXPECT_EQ(Stages(), rows);
  EXPECT_EQ(TextOf("PrjStgCbo"), "Mine");
  PressTab();
  TypeInto("PrjStgCbo", "Pilot run");
  EXPECT_EQ(ItemsOf("PrjStgCbo"), rows);
  Exec(installation.Lists(), "INSERT INTO Prjstage VALUES('Pilot run')");
  Click("adddt0");
  EXPECT_EQ(Stages().count("Pilot run"), 1) << "one that another user has added is known";
  EXPECT_EQ(session.ListTextKnown, 1);
  EXPECT_EQ(TextOf("PrjStgCbo"), "Pilot run");
}

TEST_F(MnfrmStagesTest, ReservedTextsAreNotDeleted) {
  OpenAcme();
  for (const char* reserved : {"N.A.", "None."}) {
    TypeInto("PrjStgCbo", reserved);
    desk.messages.ExpectTell(Icon::kInformation, kTitle, "Cannot be deleted, reserved text.");
    Click("dletedt0");
  }
  EXPECT_EQ(Stages(), kStages);
}

TEST_F(MnfrmStagesTest, AReservedTextThatTheDescriptionHeldIsNotDeletedEither) {
  Exec(installation.Study(1), "UPDATE Project_details SET Project_Description='N.A.'");
  OpenAcme();
  Click("PrjStgCbo");
  Click("ProjectDescription");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Cannot be deleted, reserved text.");
  Click("dletedt0");
  EXPECT_EQ(Stages(), kStages);
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
}

TEST_F(MnfrmStagesTest, NoneInOtherLettersIsAnOrdinaryStage) {
  installation.GivenListRows("Prjstage", {"None.", "None", "none."});
  OpenAcme();
  for (const char* ordinary : {"None", "none."}) {
    Pick("PrjStgCbo", ordinary);
    PressTab();
    Click("PrjStgCbo");
    Delete(ordinary);
  }
  EXPECT_EQ(Stages(), QStringList{"None."});
}

TEST_F(MnfrmStagesTest, ProjectsThatUseADeletedStageKeepIt) {
  OpenAcme();
  Leave("Commissioning");
  Click("PrjStgCbo");
  Delete("Commissioning");
  EXPECT_EQ(Stored("P2", "Project_phase"), "Commissioning");
}

TEST_F(MnfrmStagesTest, NoKeepsTheStageAndYesDeletesItAndTheBoxShowsNone) {
  Exec(installation.Lists(), "INSERT INTO Prjstage VALUES('Design')");
  OpenAcme();
  Click("PrjStgCbo");
  Delete("Design", Button::kNo);
  EXPECT_EQ(Stages(), kStages + QStringList{"Design"});
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
  // The question names the text that the box had when it got the focus.
  TypeInto("PrjStgCbo", "Commissioning");
  Delete("Design");
  EXPECT_EQ(Stages(), (QStringList{"N.A.", "None.", "Commissioning", "Design"}))
      << "of two equal ones the first is deleted";
  EXPECT_EQ(ItemsOf("PrjStgCbo"), Stages());
  EXPECT_EQ(TextOf("PrjStgCbo"), "None.");
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
  EXPECT_EQ(Stored("P1", "Project_phase"), "Commissioning");
  Click("ProjectDescription");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_phase"), "None.") << "with the next update";
}

TEST_F(MnfrmStagesTest, AfterTheDescriptionTheQuestionNamesItAndNothingIsDeleted) {
  OpenAcme();
  Click("PrjStgCbo");
  TypeInto("ProjectDescription", "Press line");
  Delete("Press line");
  EXPECT_EQ(Stages(), kStages);
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
}

}  // namespace
}  // namespace kestrix
