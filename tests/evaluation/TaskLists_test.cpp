// The five combos with their lookup lists.
#include <QComboBox>

#include "evaluation/EvaluationTest.h"

namespace kestrix {
namespace {

const char* const kDelete = "BELTROVAN: Delete record";

QString Question(const QString& text) {
  return "Wish to delete Record : " + text;
}

QString CascadeQuestion(const QString& text) {
  return "By deleting record from '" + text +
         "' will also delete all related records in Hazard Type list box. WISH to delete all "
         "records?";
}

class TaskListsTest : public EvaluationTest {
 protected:
  void SetUp() override {
    EvaluationTest::SetUp();
    GivenTask({{"FuntnTaskMachry", "Feed"}});
    installation.EmptyLists();
    for (const char* table : {"PhaseMachLife", "primaryhazard", "RecommTyp", "ActionBy"}) {
      installation.GivenListRows(table, {"None.", "N.A.", "Alpha", "Beta"});
    }
    installation.GivenHazardTypes("Alpha", {"Crushing", "Shearing"});
    installation.GivenHazardTypes("None.", {"None."});
  }

  [[nodiscard]] QStringList ListRows(const QString& table) const {
    return Column(Lists(), "SELECT * FROM " + table + " ORDER BY _rowid_");
  }
  [[nodiscard]] QStringList HazardTypes() const {
    return Column(Lists(),
                  "SELECT HazardTyp || '/' || hazardoccurrence FROM HazardType ORDER BY "
                  "_rowid_");
  }
  /// Puts a text into a combo without moving the focus.
  void Put(const QString& combo, const QString& text) {
    Control<QComboBox>(combo).setCurrentText(text);
    Settle();
  }
};

/// The four lists that don't hang below another.
struct List {
  const char* combo;
  const char* table;
  const char* add;
  const char* remove;
};

void PrintTo(const List& list, std::ostream* out) {
  *out << list.combo;
}

class RiskEvalFrm_1PlainListTest : public TaskListsTest,
                                   public ::testing::WithParamInterface<List> {};

TEST_P(RiskEvalFrm_1PlainListTest, GettingTheFocusReadsTheListAfreshAndKeepsTheText) {
  OpenForm();
  Put(GetParam().combo, "Not in the list");
  Exec(Lists(), QStringLiteral("DELETE FROM %1 WHERE _rowid_=(SELECT max(_rowid_) FROM %1)")
                    .arg(GetParam().table));
  Focus(GetParam().combo);
  EXPECT_EQ(ItemsOf(GetParam().combo), (QStringList{"None.", "N.A.", "Alpha"}));
  EXPECT_EQ(TextOf(GetParam().combo), "Not in the list");
  EXPECT_EQ(SelectedTextOf(GetParam().combo), "Not in the list");
  EXPECT_EQ(session.ListText, "Not in the list");
}

TEST_P(RiskEvalFrm_1PlainListTest, OnlyThePairOfTheComboInUseIsEnabledAndStaysSo) {
  OpenForm();
  Focus(GetParam().combo);
  EXPECT_EQ(EnabledOf(kListButtons), (QStringList{GetParam().add, GetParam().remove}));
  Focus("FuntnTaskMachry");
  EXPECT_EQ(EnabledOf(kListButtons), (QStringList{GetParam().add, GetParam().remove}));
}

TEST_P(RiskEvalFrm_1PlainListTest, ANewTextIsAddedAndStaysInTheBox) {
  OpenForm();
  SetText(GetParam().combo, "Gamma");
  Click(GetParam().add);
  const QStringList rows{"None.", "N.A.", "Alpha", "Beta", "Gamma"};
  EXPECT_EQ(ListRows(GetParam().table), rows);
  EXPECT_EQ(ItemsOf(GetParam().combo), rows);
  EXPECT_EQ(TextOf(GetParam().combo), "Gamma");
  EXPECT_EQ(session.ListText, "Gamma");
  EXPECT_EQ(session.LoopIndex, 5) << "the walk went through all four entries";
  EXPECT_EQ(EnabledOf(kListButtons), (QStringList{GetParam().add, GetParam().remove}));
}

TEST_P(RiskEvalFrm_1PlainListTest, ATextThatIsThereIsPassedOverSilently) {
  OpenForm();
  SetText(GetParam().combo, "Alpha");
  Click(GetParam().add);
  EXPECT_EQ(ListRows(GetParam().table).size(), 4);
  EXPECT_EQ(session.ListTextKnown, 1);
}

TEST_P(RiskEvalFrm_1PlainListTest, TextsThatDifferInCapitalsAreTwoEntries) {
  OpenForm();
  SetText(GetParam().combo, "alpha");
  Click(GetParam().add);
  EXPECT_EQ(ListRows(GetParam().table).last(), "alpha");
  EXPECT_EQ(session.ListTextKnown, 0);
}

TEST_P(RiskEvalFrm_1PlainListTest, AnEntryOfAnotherUserIsKnownToo) {
  OpenForm();
  SetText(GetParam().combo, "Gamma");
  const QString field =
      Column(Lists(),
             QStringLiteral("SELECT name FROM pragma_table_info('%1')").arg(GetParam().table))
          .first();
  Exec(Lists(), QStringLiteral("INSERT INTO %1(%2) VALUES('Gamma')").arg(GetParam().table, field));
  Click(GetParam().add);
  EXPECT_EQ(ListRows(GetParam().table).count("Gamma"), 1);
}

TEST_P(RiskEvalFrm_1PlainListTest, AnEntryDeletedFromItsListStaysInTheTask) {
  OpenForm();
  Put(GetParam().combo, "Beta");
  Focus(GetParam().combo);
  Focus("FuntnTaskMachry");
  CloseForm();
  Exec(Lists(), QStringLiteral("DELETE FROM %1").arg(GetParam().table));
  OpenForm();
  EXPECT_EQ(TextOf(GetParam().combo), "Beta");
  Focus(GetParam().combo);
  EXPECT_EQ(ItemsOf(GetParam().combo), QStringList());
  EXPECT_EQ(TextOf(GetParam().combo), "Beta");
}

const auto kAllPlain =
    ::testing::Values(List{"PhaseMachn", "PhaseMachLife", "adddt", "dletedt"},
                      List{"PrimaryHazard", "primaryhazard", "adddt1", "dletedt1"},
                      List{"ReccdtnTypTxt", "RecommTyp", "adddt_2", "dletedt_2"},
                      List{"ActnByCbo", "ActionBy", "adddt_3", "dletedt_3"});

INSTANTIATE_TEST_SUITE_P(Lists, RiskEvalFrm_1PlainListTest, kAllPlain);

class RiskEvalFrm_1PlainDeleteTest : public TaskListsTest,
                                     public ::testing::WithParamInterface<List> {
 protected:
  void FocusOn(const QString& text) {
    Put(GetParam().combo, text);
    Focus(GetParam().combo);
  }
};

TEST_P(RiskEvalFrm_1PlainDeleteTest, ReservedEntriesStayEvenWhenTheBoxWasEditedSince) {
  OpenForm();
  for (const char* reserved : {"None.", "N.A."}) {
    Focus("FuntnTaskMachry");
    FocusOn(reserved);
    Put(GetParam().combo, "Alpha");
    ExpectTell("Cannot be deleted, reserved text.");
    Click(GetParam().remove);
  }
  EXPECT_EQ(ListRows(GetParam().table).size(), 4);
}

TEST_P(RiskEvalFrm_1PlainDeleteTest, ANoKeepsTheEntry) {
  OpenForm();
  FocusOn("Alpha");
  session.MsgAnswer = Button::kYes;
  ExpectAsk(kDelete, Question("Alpha"), Button::kNo);
  Click(GetParam().remove);
  EXPECT_EQ(session.MsgAnswer, Button::kNo);
  EXPECT_EQ(ListRows(GetParam().table).size(), 4);
  EXPECT_EQ(TextOf(GetParam().combo), "Alpha");
}

TEST_P(RiskEvalFrm_1PlainDeleteTest, AYesDeletesTheTextThatTheBoxHadOnEntry) {
  OpenForm();
  FocusOn("Alpha");
  Put(GetParam().combo, "Beta");
  ExpectAsk(kDelete, Question("Alpha"), Button::kYes);
  Click(GetParam().remove);
  const QStringList rows{"None.", "N.A.", "Beta"};
  EXPECT_EQ(ListRows(GetParam().table), rows);
  EXPECT_EQ(ItemsOf(GetParam().combo), rows);
  EXPECT_EQ(TextOf(GetParam().combo), "None.");
}

TEST_P(RiskEvalFrm_1PlainDeleteTest, ATextThatIsInNoRowEndsSilently) {
  OpenForm();
  FocusOn("Unknown");
  ExpectAsk(kDelete, Question("Unknown"), Button::kYes);
  Click(GetParam().remove);
  EXPECT_EQ(ListRows(GetParam().table).size(), 4);
  EXPECT_EQ(TextOf(GetParam().combo), "Unknown");
}

TEST_P(RiskEvalFrm_1PlainDeleteTest, AnEntryThatSomebodyElseDeletedEndsSilently) {
  OpenForm();
  FocusOn("Alpha");
  Exec(Lists(), QStringLiteral("DELETE FROM %1 WHERE _rowid_=3").arg(GetParam().table));
  ExpectAsk(kDelete, Question("Alpha"), Button::kYes);
  Click(GetParam().remove);
  EXPECT_EQ(ListRows(GetParam().table), (QStringList{"None.", "N.A.", "Beta"}));
}

TEST_P(RiskEvalFrm_1PlainDeleteTest, AnEmptyBoxStaysEmptyAndIsNoNewEntry) {
  OpenForm();
  SetText(GetParam().combo, "");
  Click(GetParam().add);
  EXPECT_EQ(ListRows(GetParam().table).size(), 4) << "the list refuses an empty text";
  Focus("FuntnTaskMachry");
  EXPECT_EQ(TextOf(GetParam().combo), "");
  // The refused row isn't tried again.
  SetText(GetParam().combo, "Gamma");
  Click(GetParam().add);
  EXPECT_EQ(ListRows(GetParam().table).last(), "Gamma");
}

INSTANTIATE_TEST_SUITE_P(Lists, RiskEvalFrm_1PlainDeleteTest,
                         ::testing::Values(List{"PhaseMachn", "PhaseMachLife", "adddt", "dletedt"},
                                           List{"ReccdtnTypTxt", "RecommTyp", "adddt_2",
                                                "dletedt_2"},
                                           List{"ActnByCbo", "ActionBy", "adddt_3", "dletedt_3"}));

// Hazard types

TEST_F(TaskListsTest, HazardTypesAreThoseBelowThePrimaryHazard) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  Focus("HazardType");
  EXPECT_EQ(ItemsOf("HazardType"), (QStringList{"Crushing", "Shearing"}));
  EXPECT_EQ(TextOf("HazardType"), "None.");
  EXPECT_EQ(EnabledOf(kListButtons), (QStringList{"adddt2", "dletedt2"}));
  EXPECT_EQ(session.ListText, "None.");
}

TEST_F(TaskListsTest, HazardTypesOfNoneAreThoseThatNameIt) {
  OpenForm();
  Focus("HazardType");
  EXPECT_EQ(ItemsOf("HazardType"), QStringList{"None."});
}

TEST_F(TaskListsTest, AHazardTypeStaysInTheBoxUnderAnotherPrimaryHazard) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  Put("HazardType", "Crushing");
  Put("PrimaryHazard", "Beta");
  Focus("HazardType");
  EXPECT_EQ(ItemsOf("HazardType"), QStringList());
  EXPECT_EQ(TextOf("HazardType"), "Crushing");
}

TEST_F(TaskListsTest, AnApostropheInThePrimaryHazardLeavesTheListAndSaysNothing) {
  OpenForm();
  Put("PrimaryHazard", "Worker's");
  Focus("HazardType");
  EXPECT_EQ(TextOf("HazardType"), "None.");
  EXPECT_EQ(EnabledOf(kListButtons), (QStringList{"adddt2", "dletedt2"}));
}

TEST_F(TaskListsTest, AHazardTypeIsAddedBelowThePrimaryHazard) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  SetText("HazardType", "Impact");
  Click("adddt2");
  EXPECT_EQ(HazardTypes(),
            (QStringList{"Alpha/Crushing", "Alpha/Shearing", "None./None.", "Alpha/Impact"}));
  EXPECT_EQ(ItemsOf("HazardType"), (QStringList{"Crushing", "Shearing", "Impact"}));
  EXPECT_EQ(TextOf("HazardType"), "Impact");
  EXPECT_EQ(session.ParentHazardText, "Alpha");
}

TEST_F(TaskListsTest, TheFirstHazardTypeOfAPrimaryHazardIsAdded) {
  OpenForm();
  Put("PrimaryHazard", "Beta");
  SetText("HazardType", "Shock");
  Click("adddt2");
  EXPECT_EQ(HazardTypes().last(), "Beta/Shock");
  EXPECT_EQ(TextOf("HazardType"), "Shock");
  EXPECT_EQ(ItemsOf("HazardType"), QStringList()) << "shown with the next focus";
}

TEST_F(TaskListsTest, AHazardTypeBelowAHazardThatWasChangedSinceIsAddedOnce) {
  OpenForm();
  for (const char* opened : {"Alpha", "Beta"}) {  // a list with types, and one without
    Focus("FuntnTaskMachry");
    Put("PrimaryHazard", opened);
    Focus("HazardType");
    Put("PrimaryHazard", "Gamma");
    Put("HazardType", opened);
    for (int press = 0; press < 3; ++press) Click("adddt2");
    EXPECT_EQ(HazardTypes().count("Gamma/" + QString(opened)), 1);
    EXPECT_EQ(session.ListTextKnown, 1);
  }
}

TEST_F(TaskListsTest, AKnownHazardTypeIsPassedOverSilently) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  SetText("HazardType", "Crushing");
  Click("adddt2");
  EXPECT_EQ(HazardTypes().size(), 3);
  EXPECT_EQ(session.ListTextKnown, 1);
}

TEST_F(TaskListsTest, TheSameHazardTypeMayStandBelowTwoPrimaryHazards) {
  OpenForm();
  Put("PrimaryHazard", "Beta");
  SetText("HazardType", "Crushing");
  Click("adddt2");
  EXPECT_EQ(HazardTypes().last(), "Beta/Crushing");
}

TEST_F(TaskListsTest, AHazardTypeIsDeletedBelowItsPrimaryHazardOnly) {
  installation.GivenHazardTypes("Beta", {"Shearing"});
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  Put("HazardType", "Shearing");
  Focus("HazardType");
  ExpectAsk(kDelete, Question("Shearing"), Button::kYes);
  Click("dletedt2");
  EXPECT_EQ(HazardTypes(), (QStringList{"Alpha/Crushing", "None./None.", "Beta/Shearing"}));
  EXPECT_EQ(ItemsOf("HazardType"), QStringList{"Crushing"});
  EXPECT_EQ(TextOf("HazardType"), "None.");
}

TEST_F(TaskListsTest, AReservedHazardTypeIsJudgedByWhatTheBoxShows) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  Put("HazardType", "Shearing");
  Focus("HazardType");
  Put("HazardType", "N.A.");
  ExpectTell("Cannot be deleted, reserved text.");
  Click("dletedt2");
  EXPECT_EQ(HazardTypes().size(), 3);
}

TEST_F(TaskListsTest, ANoKeepsTheHazardType) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  Put("HazardType", "Shearing");
  Focus("HazardType");
  ExpectAsk(kDelete, Question("Shearing"), Button::kNo);
  Click("dletedt2");
  EXPECT_EQ(HazardTypes().size(), 3);
}

// Primary hazards

TEST_F(TaskListsTest, PickingAPrimaryHazardCountsItsTypesAndChangesNothingElse) {
  OpenForm();
  Put("HazardType", "Crushing");
  Pick("PrimaryHazard", "Alpha");
  EXPECT_TRUE(session.PrimaryHazardClicked);
  EXPECT_EQ(session.HazardTypeRows, 2);
  EXPECT_EQ(TextOf("HazardType"), "Crushing");
  Pick("PrimaryHazard", "Beta");
  EXPECT_EQ(session.HazardTypeRows, 0);
}

TEST_F(TaskListsTest, APickedPrimaryHazardIsNoNewEntryOfAnyList) {
  OpenForm();
  Pick("PrimaryHazard", "Alpha");
  Click("adddt1");
  EXPECT_EQ(ListRows("primaryhazard").size(), 4);
  EXPECT_EQ(HazardTypes().size(), 3);
  EXPECT_EQ(session.ListTextKnown, 1);
}

TEST_F(TaskListsTest, RightAfterLoadTheHazardGoesWithItsTypesAndTheFirstRowOfTheList) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  Put("HazardType", "Crushing");
  Focus("PrimaryHazard");
  ExpectAsk(kDelete, CascadeQuestion("Alpha"), Button::kYes);
  Click("dletedt1");
  EXPECT_EQ(HazardTypes(), QStringList{"None./None."});
  EXPECT_EQ(ListRows("primaryhazard"), (QStringList{"N.A.", "Alpha", "Beta"}));
  EXPECT_EQ(ItemsOf("PrimaryHazard"), (QStringList{"N.A.", "Alpha", "Beta"}));
  EXPECT_EQ(TextOf("PrimaryHazard"), "None.");
  EXPECT_EQ(TextOf("HazardType"), "None.");
}

TEST_F(TaskListsTest, AHazardThatReadsAsAConditionTakesNoTypesOfOthersWithIt) {
  OpenForm();
  Put("PrimaryHazard", "x' OR '1'='1");
  Focus("PrimaryHazard");
  ExpectAsk(kDelete, CascadeQuestion("x' OR '1'='1"), Button::kYes);
  Click("dletedt1");
  EXPECT_EQ(HazardTypes().size(), 3);
}

TEST_F(TaskListsTest, ANoKeepsTheHazardAndItsTypes) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  Focus("PrimaryHazard");
  ExpectAsk(kDelete, CascadeQuestion("Alpha"), Button::kNo);
  Click("dletedt1");
  EXPECT_EQ(HazardTypes().size(), 3);
  EXPECT_EQ(ListRows("primaryhazard").size(), 4);
  EXPECT_EQ(TextOf("PrimaryHazard"), "Alpha");
}

TEST_F(TaskListsTest, ACascadeWithoutTypesEndsSilentlyBeforeTheHazardGoes) {
  OpenForm();
  Put("PrimaryHazard", "Beta");
  Focus("PrimaryHazard");
  ExpectAsk(kDelete, CascadeQuestion("Beta"), Button::kYes);
  Click("dletedt1");
  EXPECT_EQ(ListRows("primaryhazard").size(), 4);
  EXPECT_EQ(TextOf("PrimaryHazard"), "Beta");
}

TEST_F(TaskListsTest, APickedHazardWithoutTypesIsAskedForPlainly) {
  OpenForm();
  Pick("PrimaryHazard", "Beta");
  ExpectAsk(kDelete, Question("Beta"), Button::kNo);
  Click("dletedt1");
  EXPECT_EQ(ListRows("primaryhazard").size(), 4);
}

TEST_F(TaskListsTest, APickedHazardWithoutTypesGoesOnceTheBoxWasEnteredAnew) {
  OpenForm();
  Pick("PrimaryHazard", "Beta");
  // The list in hand is that of its types, which has no such row.
  ExpectAsk(kDelete, Question("Beta"), Button::kYes);
  Click("dletedt1");
  EXPECT_EQ(ListRows("primaryhazard").size(), 4);

  Put("HazardType", "Crushing");
  Focus("FuntnTaskMachry");
  Focus("PrimaryHazard");
  ExpectAsk(kDelete, Question("Beta"), Button::kYes);
  Click("dletedt1");
  EXPECT_EQ(ListRows("primaryhazard"), (QStringList{"None.", "N.A.", "Alpha"}));
  EXPECT_EQ(TextOf("PrimaryHazard"), "None.");
  EXPECT_EQ(TextOf("HazardType"), "Crushing");
}

TEST_F(TaskListsTest, APickedReservedHazardWithoutTypesStays) {
  OpenForm();
  Pick("PrimaryHazard", "N.A.");
  ExpectTell("Cannot be deleted, reserved text.");
  Click("dletedt1");
  EXPECT_EQ(ListRows("primaryhazard").size(), 4);
}

TEST_F(TaskListsTest, WithoutAPickAndWithoutRowsThereIsNothingToDelete) {
  OpenForm();
  Focus("PrimaryHazard");
  session.HazardTypeRows = 0;
  ExpectTell("No record selected to delete ");
  Click("dletedt1");
  EXPECT_EQ(ListRows("primaryhazard").size(), 4);
}

// Leaving the two hazard boxes

TEST_F(TaskListsTest, AnEmptyPrimaryHazardHoldsTheFocusAndBecomesNotApplicable) {
  OpenForm();
  SetText("PrimaryHazard", "");
  PressTab();
  EXPECT_EQ(FocusName(), "PrimaryHazard");
  EXPECT_EQ(TextOf("PrimaryHazard"), "N.A.");
  PressTab();
  EXPECT_NE(FocusName(), "PrimaryHazard");
  EXPECT_EQ(Stored("Primary_Hazard"), QStringList{"N.A."});
}

TEST_F(TaskListsTest, AnEmptyHazardTypeBecomesNoneAndTheFocusMovesOn) {
  OpenForm();
  SetText("HazardType", "");
  PressTab();
  EXPECT_NE(FocusName(), "HazardType");
  EXPECT_EQ(TextOf("HazardType"), "None.");
}

TEST_F(TaskListsTest, LeavingAHazardBoxStoresTheTask) {
  OpenForm();
  for (const char* combo : {"PrimaryHazard", "HazardType"}) {
    SetText("HazrdLoctn", QString::fromLatin1(combo));
    EXPECT_NE(Stored("HazrdLoctn"), QStringList{combo});
    Focus(combo);
    Focus("ReccdtnTxt");
    EXPECT_EQ(Stored("HazrdLoctn"), QStringList{combo});
  }
}

TEST_F(TaskListsTest, AHazardTypeThatCannotBeStoredIsToldAndReadsNone) {
  GivenTask({{"FuntnTaskMachry", "Clean"}, {"Hazard_type", "Crushing"}});
  OpenForm();
  Exec(Study(), "CREATE UNIQUE INDEX one_each ON Risk_records(Hazard_type)");
  SetText("HazardType", "Crushing");
  ExpectTell(Study() +
                 ": UNIQUE constraint failed: Risk_records.Hazard_type.\n\nHazard_type\n"
                 "Yours: Crushing",
             Icon::kCritical);
  PressTab();
  EXPECT_EQ(TextOf("HazardType"), "None.");
  EXPECT_EQ(Stored("Hazard_type"), (QStringList{"None.", "Crushing"}));
}

TEST_F(TaskListsTest, AFailingListLeavesTheTextAndSaysNothing) {
  OpenForm();
  Exec(Lists(), "DROP TABLE RecommTyp");
  Put("ReccdtnTypTxt", "Fixed guard");
  Focus("ReccdtnTypTxt");
  EXPECT_EQ(TextOf("ReccdtnTypTxt"), "Fixed guard");
  Click("adddt_2");
  EXPECT_EQ(TextOf("ReccdtnTypTxt"), "Fixed guard");
}

}  // namespace
}  // namespace kestrix
