#include "customization/custizationFrm.h"

#include <QAccessible>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QListWidget>

#include "formkit/Controls.h"
#include "support/FormTest.h"

namespace kestrix {
namespace {

const QString kTitle = QStringLiteral("BELTROVAN");
const QStringList kStages{"None.", "N.A.", "Design", "Build"};

class custizationFrmTest : public FormTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the wait cursor was not put back";
  }

  custizationFrmTest() {
    installation.EmptyLists();
    installation.GivenListRows("Prjstage", kStages);
    installation.GivenListRows("PhaseMachLife", {"Setting", "Operation"});
    installation.GivenListRows("primaryhazard", {"None.", "Mechanical", "Noise", "Dust"});
    installation.GivenListRows("RecommTyp", {"Guard"});
    installation.GivenListRows("ActionBy", {"Anna"});
    installation.GivenHazardTypes("Mechanical", {"Crushing", "Shearing"});
    installation.GivenHazardTypes("Noise", {"Engines"});
  }

  QStringList Stored(const QString& table, const QString& field) {
    return Column(installation.Lists(), "SELECT " + field + " FROM " + table);
  }
  QStringList Stages() { return Stored("Prjstage", "hazopstage"); }
  QStringList Hazards() { return Stored("primaryhazard", "hazardType"); }
  QStringList People() { return Stored("ActionBy", "ActnBy"); }
  QStringList Types() {
    return Column(installation.Lists(),
                  "SELECT HazardTyp||'/'||hazardoccurrence FROM HazardType ORDER BY SrNo");
  }
  void PickEntry(const QString& text) {
    auto& list = Control<QListWidget>("ActnByLst");
    const auto found = list.findItems(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    ASSERT_EQ(found.size(), 1) << text.toStdString();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      (list.visualItemRect(found.first()) & list.viewport()->rect()).center());
    Settle();
  }
  /// What is marked in the list.
  QString Selected() {
    QStringList marked;
    const auto items = Control<QListWidget>("ActnByLst").selectedItems();
    for (const QListWidgetItem* item : items) marked += item->text();
    return marked.join(u'|');
  }
  /// Goes on by Tab to a control.
  void TabTo(const QString& name) {
    for (int i = 0; i < 12 && !HasFocus(name); ++i) PressTab();
    ASSERT_TRUE(HasFocus(name));
  }
  void ChooseList(const QString& choice) { Pick("ForCustmnCbo", choice); }
  void Add(const QString& text) {
    Click("adddt");
    Type(text);
    PressTab();
  }
  QString TipUnderMouse(const QString& button) {
    PointAt(button);
    return Control<QWidget>(button).toolTip();
  }
  void OpenList(const QString& choice) {
    Open<custizationFrm>();
    ChooseList(choice);
  }
  void OpenTypes() {
    OpenList("Primary Hazard");
    Pick("HazardType", "Mechanical");
  }
  void Save(const QString& text) {
    TypeInto("AddrcdTxt", text);
    Click("SavRcd");
  }
  void Press(const QString& button, const QString& question, Button answer) {
    desk.messages.ExpectAsk(Icon::kInformation, "BELTROVAN: Delete record", question, answer);
    Click(button);
  }
  void Delete(const QString& text, Button answer = Button::kYes) {
    Press("dletedt", "Wish to delete Record : " + text, answer);
  }
  void DeleteTypes(const QString& hazard, Button answer = Button::kYes) {
    Press("dletedt", "Deleting all records in " + hazard + " WISH to delete all records?", answer);
  }
  void DeleteAll(Button answer = Button::kYes) {
    Press("DeltAll", "Wish to delete all Records.", answer);
  }
  void DeleteAllHazards(Button answer = Button::kYes) {
    Press("DeltAll",
          "By deleting record from Primary Hazard will also delete all related records in Hazard "
          "Type list box. WISH to delete all records?",
          answer);
  }
};

TEST_F(custizationFrmTest, WearsItsCaptions) {
  const auto& form = Open<custizationFrm>();
  EXPECT_EQ(form.windowTitle(), "KESTRIX : customization form");
  EXPECT_EQ(TextOf("Label1"), "customize :");
  EXPECT_EQ(TextOf("Label8"), "Hazard type");
  EXPECT_EQ(TextOf("AddrcdTxt"), "Add record");
  const QList<QStringList> buttons = {
      {"adddt", "&Add record", "Click to add Name / Designation / Department"},
      {"SavRcd", "Save edited record", ""},
      {"dletedt", "Delete selected record", "Click to delete Name , Designation, Department"},
      {"DeltAll", "Delete all", "Click to delete Name , Designation, Department"},
      {"ext", "&Exit", "Exit "}};
  for (const QStringList& button : buttons) {
    EXPECT_EQ(TextOf(button[0]), button[1]);
    EXPECT_EQ(Control<QWidget>(button[0]).toolTip(), button[2]);
    EXPECT_TRUE(IsEnabled(button[0])) << button[0].toStdString();
  }
  EXPECT_TRUE(HasFocus("ForCustmnCbo"));
}

TEST_F(custizationFrmTest, OpensOnTheProjectStages) {
  Open<custizationFrm>();
  EXPECT_EQ(TextOf("ForCustmnCbo"), "Project stage");
  EXPECT_EQ(TextOf("ActnFrmLbl"), "Customize : Project stage");
  EXPECT_EQ(ItemsOf("ActnByLst"), kStages);
  EXPECT_EQ(ItemsOf("ActnByCbo"), ItemsOf("ActnByLst"));
  EXPECT_EQ(Selected(), "None.");
  EXPECT_EQ(ItemsOf("ForCustmnCbo"),
            (QStringList{"Project stage", "phase of the machine life cycle", "Primary Hazard",
                         "Recommendation type", "Action by"}));
  EXPECT_FALSE(IsEnabled("HazardType"));
}

class custizationFrmMissingTest : public custizationFrmTest,
                                  public ::testing::WithParamInterface<const char*> {};

TEST_P(custizationFrmMissingTest, AMissingFileIsToldAndTheFormCloses) {
  ASSERT_TRUE(QFile::remove(installation.Path(GetParam())));
  desk.messages.ExpectTell(Icon::kCritical, "KESTRIX : Files missing",
                           "1c. Files missing. contact M/s. BELTROVAN");
  auto& form = Make<custizationFrm>();
  EXPECT_TRUE(form.IsUnloading());
  EXPECT_EQ(desk.messages.Beeps(), 1);
  EXPECT_FALSE(form.isVisible());
}

INSTANTIATE_TEST_SUITE_P(EachFile, custizationFrmMissingTest,
                         ::testing::Values("RskAsmtFld/RskAsmt_BkSup.mdb", "RskAsmtFld/orgtn.mdb",
                                           "risk_esmatn.mdb"),
                         [](const auto& file) { return "File" + std::to_string(file.index); });

struct ListCase {
  const char* choice;
  const char* table;
  const char* field;
  QStringList rows;
};
class custizationFrmListTest : public custizationFrmTest,
                               public ::testing::WithParamInterface<ListCase> {};

TEST_P(custizationFrmListTest, EveryListIsShownAndTakesANewEntry) {
  OpenList(GetParam().choice);
  EXPECT_EQ(TextOf("ActnFrmLbl"), QStringLiteral("Customize : ") + GetParam().choice);
  EXPECT_EQ(ItemsOf("ActnByLst"), GetParam().rows);
  Add("A new one");
  EXPECT_EQ(Stored(GetParam().table, GetParam().field), GetParam().rows + QStringList{"A new one"});
  EXPECT_EQ(Selected(), "A new one");
  EXPECT_EQ(TextOf("ActnByCbo"), "A new one");
}

INSTANTIATE_TEST_SUITE_P(
    EachList, custizationFrmListTest,
    ::testing::Values(
        ListCase{"Project stage", "Prjstage", "hazopstage", {"None.", "N.A.", "Design", "Build"}},
        ListCase{"phase of the machine life cycle",
                 "PhaseMachLife",
                 "PhaseMachLife",
                 {"Setting", "Operation"}},
        ListCase{"Primary Hazard",
                 "primaryhazard",
                 "hazardType",
                 {"None.", "Mechanical", "Noise", "Dust"}},
        ListCase{"Recommendation type", "RecommTyp", "RecommendationTyp", {"Guard"}},
        ListCase{"Action by", "ActionBy", "ActnBy", {"Anna"}}),
    [](const auto& list) { return "List" + std::to_string(list.index); });

TEST_F(custizationFrmTest, OnlyThePrimaryHazardsOpenTheSecondLevel) {
  OpenList("Primary Hazard");
  EXPECT_TRUE(IsEnabled("HazardType"));
  EXPECT_EQ(ItemsOf("HazardType"), (QStringList{"None.", "Mechanical", "Noise", "Dust"}));
  EXPECT_EQ(TextOf("HazardType"), "None.");
  EXPECT_TRUE(ItemsOf("ActnByCbo").isEmpty());
  ChooseList("Action by");
  EXPECT_FALSE(IsEnabled("HazardType"));
  EXPECT_TRUE(ItemsOf("HazardType").isEmpty());
}

TEST_F(custizationFrmTest, FreeTextInTheChoiceIsUndoneOnLeaving) {
  Open<custizationFrm>();
  TypeInto("ForCustmnCbo", "Something else");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Please select from list.");
  PressTab();
  EXPECT_EQ(TextOf("ForCustmnCbo"), "Project stage");
  EXPECT_TRUE(HasFocus("ForCustmnCbo"));
  EXPECT_EQ(ItemsOf("ActnByLst").size(), 4);
}

TEST_F(custizationFrmTest, AnEntryThatIsPickedByAClickOrAnArrowKeyStandsInTheBox) {
  Open<custizationFrm>();
  PickEntry("N.A.");
  EXPECT_EQ(TextOf("AddrcdTxt"), "N.A.");
  PressKey(Qt::Key_Down);
  EXPECT_EQ(Selected(), "Design");
  EXPECT_EQ(TextOf("AddrcdTxt"), "Design");
  AppendTo("AddrcdTxt", "s");
  Click("SavRcd");
  EXPECT_EQ(Stages(), (QStringList{"None.", "N.A.", "Designs", "Build"}));
}

TEST_F(custizationFrmTest, WhatTheProgramSelectsIsNotCopied) {
  Open<custizationFrm>();
  EXPECT_EQ(Selected(), "None.");
  EXPECT_EQ(TextOf("AddrcdTxt"), "Add record");
  ChooseList("Action by");
  EXPECT_EQ(Selected(), "Anna");
  EXPECT_EQ(TextOf("AddrcdTxt"), "Add record");
}

TEST_F(custizationFrmTest, AListThatOnlyHasTheFocusHasNothingSelected) {
  installation.GivenListRows("ActionBy", {"Anna", "Bert"});
  OpenList("Action by");
  PickEntry("Bert");
  Delete("Bert");
  EXPECT_EQ(TextOf("AddrcdTxt"), "None.") << "though this list has no such entry";
  EXPECT_EQ(People(), QStringList{"Anna"});
  EXPECT_EQ(Selected(), "");
  Click("ForCustmnCbo");
  TabTo("ActnByLst");
  EXPECT_EQ(Selected(), "");
  EXPECT_EQ(TextOf("AddrcdTxt"), "None.");
  EXPECT_EQ(TipUnderMouse("dletedt"), "Delete selected record - 'NOT SELECTED'");
  // Without an entry the question has none, and nothing is deleted.
  Delete("");
  EXPECT_EQ(People(), QStringList{"Anna"});
}

TEST_F(custizationFrmTest, AnExistingTextIsOnlySelectedAndCaseMakesAnotherEntry) {
  Open<custizationFrm>();
  Add("Design");
  EXPECT_EQ(Stages(), kStages);
  EXPECT_EQ(Selected(), "Design");
  EXPECT_EQ(session.AddDupFound, 1);
  EXPECT_FALSE(session.AddPending);
  Add("design");
  EXPECT_EQ(Stages().last(), "design");
}

TEST_F(custizationFrmTest, AnEmptyTextGoesNowhere) {
  Open<custizationFrm>();
  Click("adddt");
  PressTab();
  EXPECT_TRUE(HasFocus("AddrcdTxt"));
  EXPECT_TRUE(session.AddPending);
  EXPECT_EQ(Stages().size(), 4);
}

TEST_F(custizationFrmTest, ALeadingSpaceIsRefusedAndTheBoxPaintedUntilMended) {
  Open<custizationFrm>();
  Click("adddt");
  Type(" Use");
  desk.messages.Expect(kestrix::Tell(Icon::kCritical, kTitle, "Can not begin with a space."))
      .WhileOpen([&] { EXPECT_NE(BackColour(&Control<QWidget>("AddrcdTxt")), colour::kWarning); });
  PressTab();
  EXPECT_EQ(BackColour(&Control<QWidget>("AddrcdTxt")), colour::kWarning);
  EXPECT_TRUE(HasFocus("AddrcdTxt"));
  TypeInto("AddrcdTxt", "Use");
  PressTab();
  EXPECT_NE(BackColour(&Control<QWidget>("AddrcdTxt")), colour::kWarning);
  EXPECT_EQ(Stages().last(), "Use");
}

TEST_F(custizationFrmTest, AnAddThatWasLeftOpenGoesWithTheForm) {
  auto& first = OpenModal<custizationFrm>();
  Click("adddt");
  CloseBox(first);
  EXPECT_FALSE(session.AddPending);
  OpenModal<custizationFrm>();
  Click("AddrcdTxt");
  PressTab();
  EXPECT_EQ(Stages().size(), 4);
}

TEST_F(custizationFrmTest, ExitAddsTheOpenEntryAndLetsGoOfTheLists) {
  const QPointer<Form> form = &OpenModal<custizationFrm>();
  Click("adddt");
  Type("Use");
  Click("ext");
  EXPECT_TRUE(form.isNull());
  EXPECT_FALSE(QFile::exists(installation.Path("RskAsmtFld/RskAsmt_BkSup.ldb")));
  EXPECT_EQ(Stages().last(), "Use");
}

class custizationFrmTextTest : public custizationFrmTest,
                               public ::testing::WithParamInterface<const char*> {};

TEST_P(custizationFrmTextTest, EveryTextIsAnEntryToAddChangeAndDelete) {
  const QString text =
      QString::fromUtf8(GetParam()) == "255" ? QString(255, u'n') : QString::fromUtf8(GetParam());
  Open<custizationFrm>();
  Add(text);
  EXPECT_EQ(Stages().last(), text);
  EXPECT_EQ(Selected(), text);
  PickEntry(text);
  PressKey(Qt::Key_Up);
  EXPECT_EQ(TextOf("AddrcdTxt"), "Build");
  Save(text.mid(1));
  EXPECT_EQ(Selected(), text.mid(1));
  EXPECT_EQ(Stages(), (QStringList{"None.", "N.A.", "Design", text.mid(1), text}));
  PickEntry(text);
  Delete(text);
  EXPECT_EQ(Stages(), (QStringList{"None.", "N.A.", "Design", text.mid(1)}));
}

INSTANTIATE_TEST_SUITE_P(Texts, custizationFrmTextTest,
                         ::testing::Values("Operator's \"check\"", "<b>bold</b> & more",
                                           "除去 Наладка", "100%1 ; DROP TABLE Prjstage", "255"),
                         [](const auto& text) { return "Text" + std::to_string(text.index); });

TEST_F(custizationFrmTest, OfTwoEntriesWithOneTextTheFirstIsChangedAndDeleted) {
  installation.GivenListRows("Prjstage", {"None.", "Build", "Use", "Build"});
  Open<custizationFrm>();
  auto& list = Control<QListWidget>("ActnByLst");
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                    list.visualItemRect(list.item(3)).center());
  Save("Built");
  EXPECT_EQ(Stages(), (QStringList{"None.", "Built", "Use", "Build"}));
  PickEntry("Build");
  Save("Use");
  EXPECT_EQ(Stages(), (QStringList{"None.", "Built", "Use", "Use"}));
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                    list.visualItemRect(list.item(3)).center());
  Delete("Use");
  EXPECT_EQ(Column(installation.Lists(), "SELECT hazopstage FROM Prjstage ORDER BY rowid"),
            (QStringList{"None.", "Built", "Use"}));
}

TEST_F(custizationFrmTest, LeavingTheBoxWithoutAnAddDoesNothing) {
  Open<custizationFrm>();
  TypeInto("AddrcdTxt", "Not added");
  PressTab();
  EXPECT_EQ(Stages().size(), 4);
}

TEST_F(custizationFrmTest, AnEntryThatSomebodyElseDeletedIsNeitherSavedNorAnotherOneDeleted) {
  Open<custizationFrm>();
  PickEntry("Design");
  TypeInto("AddrcdTxt", "Detail design");
  Exec(installation.Lists(), "DELETE FROM Prjstage WHERE hazopstage='Design'");
  Click("SavRcd");
  EXPECT_EQ(Stages(), (QStringList{"None.", "N.A.", "Build"}));
  EXPECT_EQ(ItemsOf("ActnByLst"), Stages());
  EXPECT_EQ(TextOf("AddrcdTxt"), "Detail design");
  EXPECT_EQ(Selected(), "");
  PickEntry("Build");
  Exec(installation.Lists(), "DELETE FROM Prjstage WHERE hazopstage='Build'");
  Delete("Build");
  EXPECT_EQ(Stages(), (QStringList{"None.", "N.A."}));
}

TEST_F(custizationFrmTest, AChangeThatTheListRefusesIsForgotten) {
  Open<custizationFrm>();
  Exec(installation.Lists(), "CREATE UNIQUE INDEX one ON Prjstage(hazopstage COLLATE NOCASE)");
  PickEntry("Design");
  Save("build");
  EXPECT_EQ(Stages(), kStages);
  EXPECT_EQ(ItemsOf("ActnByLst"), Stages());
  PickEntry("None.");
  EXPECT_EQ(Stages(), kStages);
}

TEST_F(custizationFrmTest, ANewEntryThatTheListRefusesIsForgottenAndPendsNoLonger) {
  Open<custizationFrm>();
  Exec(installation.Lists(), "CREATE UNIQUE INDEX one ON Prjstage(hazopstage COLLATE NOCASE)");
  Add("design");
  EXPECT_EQ(Stages(), kStages);
  EXPECT_EQ(ItemsOf("ActnByLst"), Stages());
  EXPECT_FALSE(session.AddPending);
  EXPECT_EQ(session.AddDupFound, 0);
  EXPECT_EQ(TextOf("ActnByCbo"), "None.");
  EXPECT_EQ(Selected(), "None.");
  EXPECT_EQ(TextOf("AddrcdTxt"), "design") << "what was typed is still there";
}

TEST_F(custizationFrmTest, DamagedListsOpenAsEmptyOnesAndSayNothing) {
  QFile file(installation.Lists());
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no database");
  file.close();
  Open<custizationFrm>();
  EXPECT_TRUE(ItemsOf("ActnByLst").isEmpty());
  EXPECT_EQ(TextOf("ActnFrmLbl"), "Customize : Project stage");
  Add("Design");
  EXPECT_TRUE(ItemsOf("ActnByLst").isEmpty());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(custizationFrmTest, AReservedEntryAndAnEmptyBoxAreNeitherSavedNorDeleted) {
  Open<custizationFrm>();
  PickEntry("None.");
  Save("Nothing");
  EXPECT_EQ(TextOf("AddrcdTxt"), "None.");
  PickEntry("Design");
  Save("");
  EXPECT_TRUE(HasFocus("AddrcdTxt"));
  PickEntry("N.A.");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Cannot be deleted, reserved text.");
  Click("dletedt");
  PickEntry("Design");
  TypeInto("AddrcdTxt", "");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "No record selected to deleted.");
  Click("dletedt");
  EXPECT_EQ(Stages(), kStages);
}

TEST_F(custizationFrmTest, DeletingAsksAndTakesTheEntry) {
  Open<custizationFrm>();
  PickEntry("Design");
  Delete("Design", Button::kNo);
  EXPECT_EQ(Stages().size(), 4);
  Delete("Design");
  EXPECT_EQ(Stages(), (QStringList{"None.", "N.A.", "Build"}));
  EXPECT_EQ(TextOf("AddrcdTxt"), "None.");
  EXPECT_EQ(TextOf("ActnByCbo"), "None.");
  EXPECT_EQ(Selected(), "None.");
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
}

TEST_F(custizationFrmTest, DeletingAllSparesTheReservedWords) {
  Open<custizationFrm>();
  DeleteAll(Button::kNo);
  EXPECT_EQ(Stages().size(), 4);
  DeleteAll();
  EXPECT_EQ(Stages(), (QStringList{"None.", "N.A."}));
  EXPECT_EQ(ItemsOf("ActnByLst"), Stages());
  EXPECT_EQ(TextOf("AddrcdTxt"), "None.");
  EXPECT_EQ(TextOf("ActnByCbo"), "None.");
}

TEST_F(custizationFrmTest, AListWithoutReservedWordsEndsUpEmptyAndCanBeFilled) {
  OpenList("phase of the machine life cycle");
  DeleteAll();
  EXPECT_TRUE(Stored("PhaseMachLife", "PhaseMachLife").isEmpty());
  EXPECT_TRUE(ItemsOf("ActnByLst").isEmpty());
  ChooseList("Project stage");
  ChooseList("phase of the machine life cycle");
  EXPECT_TRUE(ItemsOf("ActnByLst").isEmpty());
  Add("Setting");
  EXPECT_EQ(Stored("PhaseMachLife", "PhaseMachLife"), QStringList{"Setting"});
}

TEST_F(custizationFrmTest, TheToolTipsNameWhatAClickActsOn) {
  Open<custizationFrm>();
  PickEntry("Design");
  EXPECT_EQ(TipUnderMouse("adddt"), "Click to add records under - Project stage");
  EXPECT_EQ(TipUnderMouse("DeltAll"), "Click to delete all records from - Project stage");
  EXPECT_EQ(TipUnderMouse("dletedt"), "Delete selected record - Design");
  EXPECT_EQ(TipUnderMouse("SavRcd"), "Save edited record - Design");
  ChooseList("Primary Hazard");
  EXPECT_EQ(TipUnderMouse("dletedt"), "Delete selected record - 'NOT SELECTED'");
  EXPECT_EQ(TipUnderMouse("SavRcd"), "Save edited record - 'NOT SELECTED'");
  Pick("HazardType", "Mechanical");
  EXPECT_EQ(TipUnderMouse("adddt"), "Click to add records under - Primary Hazard");
  EXPECT_EQ(TipUnderMouse("DeltAll"), "Click to delete all records from - Primary Hazard");
  EXPECT_EQ(TipUnderMouse("dletedt"), "Delete selected record - Crushing");
  EXPECT_EQ(TipUnderMouse("SavRcd"), "Save edited record - Crushing");
}

// The two levels of the hazards.

TEST_F(custizationFrmTest, AClickOnAPrimaryHazardShowsItsTypesToRename) {
  OpenTypes();
  EXPECT_EQ(TextOf("ActnFrmLbl"), "Customize : Mechanical");
  EXPECT_EQ(ItemsOf("ActnByLst"), (QStringList{"Crushing", "Shearing"}));
  EXPECT_EQ(Selected(), "Crushing");
  Pick("HazardType", "Dust");
  EXPECT_EQ(TextOf("ActnFrmLbl"), "Customize : Dust");
  EXPECT_TRUE(ItemsOf("ActnByLst").isEmpty());
  Pick("HazardType", "Mechanical");
  PickEntry("Crushing");
  Save("Crush");
  EXPECT_TRUE(Types().contains("Mechanical/Crush"));
}

TEST_F(custizationFrmTest, AnAddGoesToTheLevelThatIsShown) {
  OpenList("Primary Hazard");
  Add("Heat");
  EXPECT_EQ(Hazards().last(), "Heat");
  EXPECT_EQ(ItemsOf("HazardType"), Hazards());
  EXPECT_EQ(TextOf("HazardType"), "None.");
  Pick("HazardType", "Dust");
  Add("Explosion");
  EXPECT_EQ(Types().last(), "Dust/Explosion");
}

TEST_F(custizationFrmTest, ARenamedPrimaryHazardLeavesItsTypesBehind) {
  OpenList("Primary Hazard");
  PickEntry("Mechanical");
  Save("Mechanics");
  EXPECT_TRUE(Hazards().contains("Mechanics"));
  EXPECT_EQ(ItemsOf("HazardType"), Hazards());
  EXPECT_TRUE(Types().contains("Mechanical/Crushing"));
}

TEST_F(custizationFrmTest, DeleteInThePrimaryViewTakesTheTypesAndLeavesTheHazard) {
  OpenList("Primary Hazard");
  PickEntry("Mechanical");
  DeleteTypes("Mechanical");
  EXPECT_EQ(Types(), QStringList{"Noise/Engines"});
  EXPECT_TRUE(Hazards().contains("Mechanical"));
  EXPECT_TRUE(ItemsOf("ActnByLst").isEmpty());
  EXPECT_EQ(TextOf("HazardType"), "Mechanical");
  EXPECT_EQ(TextOf("ActnFrmLbl"), "Customize : Primary Hazard");
  // Their empty list stays in hand.
  Pick("HazardType", "Mechanical");
  EXPECT_EQ(TextOf("ActnFrmLbl"), "Customize : Mechanical");
  EXPECT_TRUE(ItemsOf("ActnByLst").isEmpty());
  Add("Impact");
  EXPECT_EQ(Types(), (QStringList{"Noise/Engines", "Mechanical/Impact"}));
}

TEST_F(custizationFrmTest, DeleteOfTypesThatAreNotThereOrAnsweredByNoRemovesNothing) {
  OpenList("Primary Hazard");
  PickEntry("Mechanical");
  DeleteTypes("Mechanical", Button::kNo);
  PickEntry("Dust");
  DeleteTypes("Dust");
  EXPECT_EQ(Hazards().size(), 4);
  // In the view of the types the entry is taken for a hazard.
  Pick("HazardType", "Mechanical");
  PickEntry("Crushing");
  DeleteTypes("Crushing");
  EXPECT_EQ(Types().size(), 3);
}

TEST_F(custizationFrmTest, AHazardThatReadsAsAConditionLosesItsOwnTypesOnly) {
  const QString hazard = "x' OR '1'='1";
  Exec(installation.Lists(), "INSERT INTO primaryhazard(hazardType) VALUES('x'' OR ''1''=''1')");
  Exec(installation.Lists(),
       "INSERT INTO HazardType(HazardTyp,hazardoccurrence) VALUES('x'' OR ''1''=''1','Own')");
  const QStringList others{"Mechanical/Crushing", "Mechanical/Shearing", "Noise/Engines"};
  const auto own = [&](const QString& type) { return others + QStringList{hazard + u'/' + type}; };
  OpenList("Primary Hazard");
  ASSERT_EQ(Types(), own("Own"));
  PickEntry(hazard);
  DeleteTypes(hazard);
  EXPECT_EQ(Types(), others);

  Pick("HazardType", hazard);
  Add("Second");
  ASSERT_EQ(Types(), own("Second"));
  DeleteAll();
  EXPECT_EQ(Types(), others);

  Add("Third");
  ASSERT_EQ(Types(), own("Third"));
  ChooseList("Primary Hazard");
  Control<QComboBox>("HazardType").setEditText(hazard);
  DeleteAllHazards();
  EXPECT_EQ(Types(), others);
}

TEST_F(custizationFrmTest, DeletingWaitsWithTheWaitCursor) {
  const auto& form = Open<custizationFrm>();
  int waited = 0;
  QObject::connect(form.findChild<DataControl*>("nameDB"), &DataControl::RowRemoved,
                   [&] { waited += QApplication::overrideCursor() != nullptr ? 1 : 0; });
  DeleteAll();
  EXPECT_EQ(waited, 2);
}

TEST_F(custizationFrmTest, TheCopyOfTheEntriesHasALabelForScreenReaders) {
  OpenList("Primary Hazard");
  auto& combo = Control<QComboBox>("ActnByCbo");
  const auto labels = QAccessible::queryAccessibleInterface(&combo)->relations(QAccessible::Label);
  ASSERT_EQ(labels.size(), 1);
  EXPECT_EQ(labels.first().first->text(QAccessible::Name), "Customize : Primary Hazard");
}

TEST_F(custizationFrmTest, DeleteAllOfThePrimaryHazardsTakesOneHazardsTypes) {
  OpenList("Primary Hazard");
  Control<QComboBox>("HazardType").setEditText("Mechanical");
  DeleteAllHazards(Button::kNo);
  EXPECT_EQ(Types().size(), 3);
  EXPECT_EQ(Hazards().size(), 4);
  DeleteAllHazards();
  EXPECT_EQ(Hazards(), QStringList{"None."});
  EXPECT_EQ(Types(), QStringList{"Noise/Engines"});
  EXPECT_EQ(TextOf("ForCustmnCbo"), "Project stage");
  EXPECT_EQ(ItemsOf("ForCustmnCbo").size(), 5);
  for (const char* list : {"ActnByLst", "ActnByCbo", "HazardType"}) {
    EXPECT_TRUE(ItemsOf(list).isEmpty()) << list;
  }
  EXPECT_EQ(TextOf("HazardType"), "");
  ChooseList("Project stage");
  EXPECT_EQ(ItemsOf("ActnByLst").size(), 4);
}

TEST_F(custizationFrmTest,
       AfterDeletingAllPrimaryHazardsTheirListIsInHandAndTheirTypesComeBackWithTheirNames) {
  OpenList("Primary Hazard");
  DeleteAllHazards();
  EXPECT_EQ(TextOf("ForCustmnCbo"), "Project stage");
  Add("Radiation");
  EXPECT_EQ(Hazards(), (QStringList{"None.", "Radiation"}));
  EXPECT_EQ(Stages().size(), 4);
  ChooseList("Primary Hazard");
  Add("Noise");
  ChooseList("Primary Hazard");
  Pick("HazardType", "Noise");
  EXPECT_EQ(ItemsOf("ActnByLst"), QStringList{"Engines"});
}

TEST_F(custizationFrmTest, PrimaryHazardsWithoutAReservedWordAllGo) {
  installation.GivenListRows("primaryhazard", {"Noise"});
  OpenList("Primary Hazard");
  DeleteAllHazards();
  EXPECT_TRUE(Hazards().isEmpty());
  EXPECT_EQ(Types(), (QStringList{"Mechanical/Crushing", "Mechanical/Shearing"}));
  EXPECT_EQ(TextOf("ForCustmnCbo"), "Project stage");
  EXPECT_EQ(ItemsOf("ForCustmnCbo").size(), 5);
}

TEST_F(custizationFrmTest, AHazardWithAnApostropheShowsNoTypesAndTakesNone) {
  installation.GivenListRows("primaryhazard", {"Operator's errors"});
  installation.GivenHazardTypes("Operator's errors", {"Slips"});
  OpenList("Primary Hazard");
  EXPECT_EQ(ItemsOf("ActnByLst"), QStringList{"Operator's errors"});
  Pick("HazardType", "Operator's errors");
  EXPECT_EQ(TextOf("ActnFrmLbl"), "Customize : Operator's errors");
  EXPECT_TRUE(ItemsOf("ActnByLst").isEmpty());
  const QStringList before = Types();
  Add("Lapses");
  EXPECT_EQ(Types(), before);
  // The list is left by any other choice.
  ChooseList("Project stage");
  EXPECT_EQ(ItemsOf("ActnByLst").size(), 4);
}

TEST_F(custizationFrmTest, AfterDeleteOfTheTypesTheNextCommandMeansThePrimaryHazards) {
  OpenList("Primary Hazard");
  PickEntry("Mechanical");
  DeleteTypes("Mechanical");
  Add("Heat");
  EXPECT_EQ(Hazards(), (QStringList{"None.", "Mechanical", "Noise", "Dust", "Heat"}));
  EXPECT_EQ(Types(), QStringList{"Noise/Engines"});
  PickEntry("Noise");
  DeleteTypes("Noise");
  DeleteAllHazards();
  EXPECT_EQ(Hazards(), QStringList{"None."});
}

TEST_F(custizationFrmTest, DeleteOfTheTypesTestsNoReservedWord) {
  installation.GivenHazardTypes("None.", {"N.A.", "None."});
  OpenList("Primary Hazard");
  PickEntry("None.");
  DeleteTypes("None.");
  EXPECT_EQ(Types().size(), 3);
}

TEST_F(custizationFrmTest, ATypeIsAddedOnceBelowItsHazardAndSelectedWhenItIsKnown) {
  OpenTypes();
  Add("Shearing");
  EXPECT_EQ(Types().size(), 3);
  EXPECT_EQ(Selected(), "Shearing");
  // What is known below another hazard is new here.
  Add("Engines");
  EXPECT_EQ(Types().last(), "Mechanical/Engines");
  EXPECT_EQ(ItemsOf("ActnByLst"), (QStringList{"Crushing", "Shearing", "Engines"}));
  TypeInto("HazardType", "Dust");
  for (int press = 0; press < 3; ++press) Add("Explosion");
  EXPECT_EQ(Types().count("Dust/Explosion"), 1);
  EXPECT_EQ(ItemsOf("ActnByLst"), (QStringList{"Crushing", "Shearing", "Engines", "Explosion"}));
  EXPECT_EQ(Selected(), "Explosion");
}

TEST_F(custizationFrmTest, TheTypeViewSparesTheReservedWords) {
  installation.GivenHazardTypes("Mechanical", {"None.", "N.A."});
  OpenTypes();
  PickEntry("N.A.");
  Save("Nothing");
  EXPECT_EQ(TextOf("AddrcdTxt"), "N.A.") << "silently put back";
  DeleteAll(Button::kNo);
  EXPECT_EQ(Types().size(), 5);
  DeleteAll();
  EXPECT_EQ(Types(), (QStringList{"Noise/Engines", "Mechanical/None.", "Mechanical/N.A."}));
  EXPECT_EQ(ItemsOf("ActnByLst"), (QStringList{"None.", "N.A."}));
  EXPECT_EQ(TextOf("ActnFrmLbl"), "Customize : Mechanical");
  EXPECT_EQ(Hazards().size(), 4);
}

TEST_F(custizationFrmTest, AnotherUsersEntryShowsWhenTheListIsOpenedAgain) {
  Open<custizationFrm>();
  Exec(installation.Lists(), "INSERT INTO Prjstage(hazopstage) VALUES('Theirs')");
  EXPECT_EQ(ItemsOf("ActnByLst").size(), 4);
  Add("Mine");
  ChooseList("Project stage");
  EXPECT_EQ(ItemsOf("ActnByLst"),
            (QStringList{"None.", "N.A.", "Design", "Build", "Theirs", "Mine"}));
}

}  // namespace
}  // namespace kestrix
