// The five combos with their lookup lists.
#include <QComboBox>

#include "evaluation/EvaluationTest.h"

namespace kestrix {
namespace {

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
  void FocusOn(const QString& combo, const QString& text) {
    Put(combo, text);
    Focus(combo);
  }
  void AddType(const QString& text) {
    SetText("HazardType", text);
    Click("adddt2");
  }
  void Remove(const QString& button, const QString& text, Button answer = Button::kYes) {
    ExpectAsk("BELTROVAN: Delete record", "Wish to delete Record : " + text, answer);
    Click(button);
  }
  void RemoveCascade(const QString& hazard, Button answer = Button::kYes) {
    ExpectAsk("BELTROVAN: Delete record",
              "By deleting record from '" + hazard +
                  "' will also delete all related records in Hazard Type list box. WISH to delete "
                  "all records?",
              answer);
    Click("dletedt1");
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
                                   public ::testing::WithParamInterface<List> {
 protected:
  using TaskListsTest::Remove;
  void Add(const QString& text) {
    SetText(GetParam().combo, text);
    Click(GetParam().add);
  }
  void Remove(const QString& text, Button answer = Button::kYes) {
    Remove(GetParam().remove, text, answer);
  }
  [[nodiscard]] QStringList Rows() const { return ListRows(GetParam().table); }
};

TEST_P(RiskEvalFrm_1PlainListTest,
       GettingTheFocusReadsTheListAfreshKeepsTheTextAndEnablesItsPairOfButtons) {
  OpenForm();
  Put(GetParam().combo, "Not in the list");
  Exec(Lists(), QStringLiteral("DELETE FROM %1 WHERE _rowid_=(SELECT max(_rowid_) FROM %1)")
                    .arg(GetParam().table));
  Focus(GetParam().combo);
  EXPECT_EQ(ItemsOf(GetParam().combo), (QStringList{"None.", "N.A.", "Alpha"}));
  EXPECT_EQ(TextOf(GetParam().combo), "Not in the list");
  EXPECT_EQ(SelectedTextOf(GetParam().combo), "Not in the list");
  EXPECT_EQ(session.ListText, "Not in the list");
  EXPECT_EQ(EnabledOf(kListButtons), (QStringList{GetParam().add, GetParam().remove}));
  Focus("FuntnTaskMachry");
  EXPECT_EQ(EnabledOf(kListButtons), (QStringList{GetParam().add, GetParam().remove}));
}

TEST_P(RiskEvalFrm_1PlainListTest, ANewTextIsAddedOnceAndStaysInTheBox) {
  OpenForm();
  Add("Gamma");
  QStringList rows{"None.", "N.A.", "Alpha", "Beta", "Gamma"};
  EXPECT_EQ(Rows(), rows);
  EXPECT_EQ(ItemsOf(GetParam().combo), rows);
  EXPECT_EQ(TextOf(GetParam().combo), "Gamma");
  EXPECT_EQ(session.ListText, "Gamma");
  EXPECT_EQ(session.LoopIndex, 5) << "the walk went through all four entries";
  EXPECT_EQ(EnabledOf(kListButtons), (QStringList{GetParam().add, GetParam().remove}));
  Add("Alpha");
  EXPECT_EQ(Rows(), rows) << "a text that is there is passed over";
  EXPECT_EQ(session.ListTextKnown, 1);
  Add("alpha");
  EXPECT_EQ(Rows(), rows += "alpha") << "capitals make another entry";
  EXPECT_EQ(session.ListTextKnown, 0);
  SetText(GetParam().combo, "Delta");
  const QString field =
      Column(Lists(),
             QStringLiteral("SELECT name FROM pragma_table_info('%1')").arg(GetParam().table))
          .first();
  Exec(Lists(), QStringLiteral("INSERT INTO %1(%2) VALUES('Delta')").arg(GetParam().table, field));
  Click(GetParam().add);
  EXPECT_EQ(Rows(), rows += "Delta") << "an entry of another user is known too";
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

/// Those of them whose entries are deleted by themselves.
class RiskEvalFrm_1PlainDeleteTest : public RiskEvalFrm_1PlainListTest {};

TEST_P(RiskEvalFrm_1PlainDeleteTest, ReservedEntriesStayEvenWhenTheBoxWasEditedSince) {
  OpenForm();
  for (const char* reserved : {"None.", "N.A."}) {
    Focus("FuntnTaskMachry");
    FocusOn(GetParam().combo, reserved);
    Put(GetParam().combo, "Alpha");
    ExpectTell("Cannot be deleted, reserved text.");
    Click(GetParam().remove);
  }
  EXPECT_EQ(Rows().size(), 4);
}

TEST_P(RiskEvalFrm_1PlainDeleteTest, ANoKeepsTheEntryAndAYesDeletesTheTextThatTheBoxHadOnEntry) {
  OpenForm();
  FocusOn(GetParam().combo, "Alpha");
  session.MsgAnswer = Button::kYes;
  Remove("Alpha", Button::kNo);
  EXPECT_EQ(session.MsgAnswer, Button::kNo);
  EXPECT_EQ(Rows().size(), 4);
  EXPECT_EQ(TextOf(GetParam().combo), "Alpha");
  Put(GetParam().combo, "Beta");
  Remove("Alpha");
  const QStringList rows{"None.", "N.A.", "Beta"};
  EXPECT_EQ(Rows(), rows);
  EXPECT_EQ(ItemsOf(GetParam().combo), rows);
  EXPECT_EQ(TextOf(GetParam().combo), "None.");
}

TEST_P(RiskEvalFrm_1PlainDeleteTest, ATextThatIsInNoRowOrThatSomebodyElseDeletedEndsSilently) {
  OpenForm();
  FocusOn(GetParam().combo, "Unknown");
  Remove("Unknown");
  EXPECT_EQ(Rows().size(), 4);
  EXPECT_EQ(TextOf(GetParam().combo), "Unknown");
  Focus("FuntnTaskMachry");
  FocusOn(GetParam().combo, "Alpha");
  Exec(Lists(), QStringLiteral("DELETE FROM %1 WHERE _rowid_=3").arg(GetParam().table));
  Remove("Alpha");
  EXPECT_EQ(Rows(), (QStringList{"None.", "N.A.", "Beta"})) << "somebody else has deleted it";
}

TEST_P(RiskEvalFrm_1PlainDeleteTest, AnEmptyBoxStaysEmptyAndIsNoNewEntry) {
  OpenForm();
  Add("");
  EXPECT_EQ(Rows().size(), 4) << "the list refuses an empty text";
  Focus("FuntnTaskMachry");
  EXPECT_EQ(TextOf(GetParam().combo), "");
  // The refused row isn't tried again.
  Add("Gamma");
  EXPECT_EQ(Rows().last(), "Gamma");
}

INSTANTIATE_TEST_SUITE_P(Lists, RiskEvalFrm_1PlainDeleteTest,
                         ::testing::Values(List{"PhaseMachn", "PhaseMachLife", "adddt", "dletedt"},
                                           List{"ReccdtnTypTxt", "RecommTyp", "adddt_2",
                                                "dletedt_2"},
                                           List{"ActnByCbo", "ActionBy", "adddt_3", "dletedt_3"}));

// Hazard types

TEST_F(TaskListsTest, HazardTypesAreThoseBelowThePrimaryHazard) {
  OpenForm();
  const auto types_below = [this](const char* hazard) {
    Focus("FuntnTaskMachry");
    Put("PrimaryHazard", hazard);
    Focus("HazardType");
    EXPECT_EQ(EnabledOf(kListButtons), (QStringList{"adddt2", "dletedt2"}));
    return ItemsOf("HazardType");
  };
  EXPECT_EQ(types_below("Alpha"), (QStringList{"Crushing", "Shearing"}));
  EXPECT_EQ(TextOf("HazardType"), "None.");
  EXPECT_EQ(session.ListText, "None.");
  EXPECT_EQ(types_below("None."), QStringList{"None."});
  types_below("Worker's");
  EXPECT_EQ(TextOf("HazardType"), "None.") << "an apostrophe says nothing";
  Put("HazardType", "Crushing");
  EXPECT_EQ(types_below("Beta"), QStringList());
  EXPECT_EQ(TextOf("HazardType"), "Crushing") << "it stays in the box";
}

TEST_F(TaskListsTest, AHazardTypeIsAddedBelowThePrimaryHazard) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  AddType("Crushing");
  EXPECT_EQ(HazardTypes().size(), 3) << "a known one is passed over";
  EXPECT_EQ(session.ListTextKnown, 1);
  AddType("Impact");
  EXPECT_EQ(HazardTypes(),
            (QStringList{"Alpha/Crushing", "Alpha/Shearing", "None./None.", "Alpha/Impact"}));
  EXPECT_EQ(ItemsOf("HazardType"), (QStringList{"Crushing", "Shearing", "Impact"}));
  EXPECT_EQ(TextOf("HazardType"), "Impact");
  EXPECT_EQ(session.ParentHazardText, "Alpha");
  // The first one of another hazard, which may be known below the first.
  Focus("FuntnTaskMachry");
  Put("PrimaryHazard", "Beta");
  AddType("Crushing");
  EXPECT_EQ(HazardTypes().last(), "Beta/Crushing");
  EXPECT_EQ(TextOf("HazardType"), "Crushing");
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

TEST_F(TaskListsTest, AHazardTypeIsDeletedBelowItsPrimaryHazardOnlyAndJudgedByWhatTheBoxShows) {
  installation.GivenHazardTypes("Beta", {"Shearing"});
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  FocusOn("HazardType", "Shearing");
  Put("HazardType", "N.A.");
  ExpectTell("Cannot be deleted, reserved text.");
  Click("dletedt2");
  Put("HazardType", "Shearing");
  Remove("dletedt2", "Shearing", Button::kNo);
  EXPECT_EQ(HazardTypes().size(), 4);
  Remove("dletedt2", "Shearing");
  EXPECT_EQ(HazardTypes(), (QStringList{"Alpha/Crushing", "None./None.", "Beta/Shearing"}));
  EXPECT_EQ(ItemsOf("HazardType"), QStringList{"Crushing"});
  EXPECT_EQ(TextOf("HazardType"), "None.");
}

// Primary hazards

TEST_F(TaskListsTest, PickingAPrimaryHazardCountsItsTypesAndChangesNothingElse) {
  OpenForm();
  Put("HazardType", "Crushing");
  Pick("PrimaryHazard", "Alpha");
  EXPECT_TRUE(session.PrimaryHazardClicked);
  EXPECT_EQ(session.HazardTypeRows, 2);
  EXPECT_EQ(TextOf("HazardType"), "Crushing");
  Click("adddt1");
  EXPECT_EQ(ListRows("primaryhazard").size(), 4) << "it is no new entry of any list";
  EXPECT_EQ(HazardTypes().size(), 3);
  EXPECT_EQ(session.ListTextKnown, 1);
  Pick("PrimaryHazard", "Beta");
  EXPECT_EQ(session.HazardTypeRows, 0);
}

TEST_F(TaskListsTest, RightAfterLoadTheHazardGoesWithItsTypesAndTheFirstRowOfTheList) {
  OpenForm();
  Put("PrimaryHazard", "Alpha");
  Put("HazardType", "Crushing");
  Focus("PrimaryHazard");
  RemoveCascade("Alpha");
  EXPECT_EQ(HazardTypes(), QStringList{"None./None."});
  EXPECT_EQ(ListRows("primaryhazard"), (QStringList{"N.A.", "Alpha", "Beta"}));
  EXPECT_EQ(ItemsOf("PrimaryHazard"), (QStringList{"N.A.", "Alpha", "Beta"}));
  EXPECT_EQ(TextOf("PrimaryHazard"), "None.");
  EXPECT_EQ(TextOf("HazardType"), "None.");
}

TEST_F(TaskListsTest, ANoOrAHazardWithoutTypesKeepsTheHazardAndAllTypes) {
  OpenForm();
  FocusOn("PrimaryHazard", "Alpha");
  RemoveCascade("Alpha", Button::kNo);
  EXPECT_EQ(TextOf("PrimaryHazard"), "Alpha");
  FocusOn("PrimaryHazard", "Beta");
  RemoveCascade("Beta");
  EXPECT_EQ(TextOf("PrimaryHazard"), "Beta") << "it ends silently before the hazard goes";
  EXPECT_EQ(ListRows("primaryhazard").size(), 4);
  // One that reads as a condition takes no types of others with it.
  OpenForm();
  FocusOn("PrimaryHazard", "x' OR '1'='1");
  RemoveCascade("x' OR '1'='1");
  EXPECT_EQ(HazardTypes().size(), 3);
}

TEST_F(TaskListsTest, APickedHazardWithoutTypesIsAskedForPlainlyAndGoesOnceTheBoxWasEnteredAgain) {
  OpenForm();
  Pick("PrimaryHazard", "N.A.");
  ExpectTell("Cannot be deleted, reserved text.");
  Click("dletedt1");
  Pick("PrimaryHazard", "Beta");
  Remove("dletedt1", "Beta", Button::kNo);
  // The list in hand is that of its types, which has no such row.
  Remove("dletedt1", "Beta");
  EXPECT_EQ(ListRows("primaryhazard").size(), 4);

  Put("HazardType", "Crushing");
  Focus("FuntnTaskMachry");
  Focus("PrimaryHazard");
  Remove("dletedt1", "Beta");
  EXPECT_EQ(ListRows("primaryhazard"), (QStringList{"None.", "N.A.", "Alpha"}));
  EXPECT_EQ(TextOf("PrimaryHazard"), "None.");
  EXPECT_EQ(TextOf("HazardType"), "Crushing");
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
