// The chain of level boxes: what each choice opens, lights and stores.
#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QRegularExpression>

#include "estimation/EstimationTest.h"

namespace kestrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RiskEstimtnLevelsTest : public EstimationTest {};

TEST_F(RiskEstimtnLevelsTest, ChainBeginsWithSeverityAlone) {
  OpenOn({});
  EXPECT_EQ(LevelTexts(), QStringList({"Reset", "", "", ""}));
  EXPECT_EQ(OpenBoxes(), QStringList{"SevertyCbo"});
  EXPECT_EQ(ItemsOf("SevertyCbo"), QStringList({"None.", "S1, Slight", "S2, Serious", "Reset"}));
  EXPECT_EQ(ItemsOf("ExposureCbo"), QStringList());
  EXPECT_EQ(ItemsOf("occurrenceCbo"), QStringList{"O1, O2"});
  EXPECT_EQ(ItemsOf("avoidanceCbo"), QStringList());
  EXPECT_THAT(LitLines(), IsEmpty());
  EXPECT_EQ(SavedLevels(), kNoLevels);
}

TEST_F(RiskEstimtnLevelsTest, SlightGivesItsOneExposureWhichItsClickStoresAndOpensOccurrence) {
  OpenOn({});
  Pick("SevertyCbo", "S1, Slight");
  EXPECT_EQ(LevelTexts(), QStringList({"S1, Slight", "F1, F2", "", ""}));
  EXPECT_EQ(OpenBoxes(), QStringList({"SevertyCbo", "ExposureCbo", "occurrenceCbo"}));
  EXPECT_EQ(ItemsOf("ExposureCbo"), QStringList{"F1, F2"});
  EXPECT_EQ(ItemsOf("occurrenceCbo"), QStringList({"O1, Low", "O2, Midium", "O3, High"}));
  EXPECT_THAT(LitLines(), ElementsAre("SV2", "SEH1_2"));
  EXPECT_THAT(LitLabels(), IsEmpty());
  EXPECT_EQ(SavedLevels(), QStringList({"S1, Slight", "N.A.", "N.A.", "N.A."}))
      << "the exposure is stored when it is clicked or the form closes";
  PickLevels({"", "", "O2, Midium", "A1, Possible"});
  Pick("ExposureCbo", "F1, F2");
  EXPECT_THAT(LitLines(), ElementsAre("SV2", "SEH1_2"));
  EXPECT_THAT(LitLabels(), IsEmpty());
  EXPECT_EQ(LevelTexts(), QStringList({"S1, Slight", "F1, F2", "", ""}));
  EXPECT_EQ(OpenBoxes(), QStringList({"SevertyCbo", "ExposureCbo", "occurrenceCbo"}));
  EXPECT_EQ(SavedLevels(), QStringList({"S1, Slight", "F1, F2", "O2, Midium", "A1, Possible"}))
      << "boxes behind are emptied, their fields stay";
}

TEST_F(RiskEstimtnLevelsTest, ExposureOpensOccurrenceAndClosesAvoidance) {
  OpenAndPick(kPathToFour);
  EXPECT_EQ(OpenBoxes(), kBoxes);
  Pick("ExposureCbo", "F2, Frequent");
  EXPECT_EQ(LevelTexts(), QStringList({"S2, Serious", "F2, Frequent", "", ""}));
  EXPECT_EQ(OpenBoxes(), QStringList({"SevertyCbo", "ExposureCbo", "occurrenceCbo"}));
  EXPECT_EQ(ItemsOf("avoidanceCbo"), QStringList());
  EXPECT_THAT(LitLines(), ElementsAre("SV1", "SH3", "FV2", "FH4"));
  EXPECT_EQ(SavedLevels(), kPathToSix);
  EXPECT_EQ(Saved("RiskIndex"), "4") << "the index of the last finished path";
}

TEST_F(RiskEstimtnLevelsTest, OccurrenceOpensAvoidanceAnew) {
  OpenAndPick(kPathToFour);
  Pick("occurrenceCbo", "O2, Midium");
  EXPECT_EQ(LevelTexts(), QStringList({"S2, Serious", "F1, Seldom", "O2, Midium", ""}));
  EXPECT_EQ(OpenBoxes(), kBoxes);
  EXPECT_EQ(ItemsOf("avoidanceCbo"), QStringList({"A1, Possible", "A2, Impossible"}));
  EXPECT_THAT(LitLines(), ElementsAre("SV1", "SH3", "FV1", "FH3", "OH3"));
  EXPECT_THAT(LitLabels(), IsEmpty());
}

TEST_F(RiskEstimtnLevelsTest, LowOccurrenceOfSlightEndsThePathAtZero) {
  OpenOn({{"RiskIndex", 5}});
  PickLevels({"S1, Slight", "", "O1, Low"});
  EXPECT_THAT(LitLines(), ElementsAre("SV2", "SEH1_2", "NoneLn2", "OAng0"));
  EXPECT_THAT(LitLabels(), ElementsAre("RILbl0"));
  EXPECT_EQ(OpenBoxes(), QStringList({"SevertyCbo", "ExposureCbo", "occurrenceCbo"}));
  EXPECT_EQ(TextOf("avoidanceCbo"), "");
  EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), "0");
  EXPECT_EQ(TextOf("RskTxtLbl"), "No Risk");
  EXPECT_EQ(Saved("RiskIndex"), "0");
  EXPECT_EQ(SavedLevels(), QStringList({"S1, Slight", "N.A.", "O1, Low", "N.A."}));
}

TEST_F(RiskEstimtnLevelsTest, LowOccurrenceClosesAnOpenAvoidance) {
  OpenAndPick({"S1, Slight", "", "O3, High", "A2, Impossible"});
  EXPECT_EQ(Saved("RiskIndex"), "2");
  Pick("occurrenceCbo", "O1, Low");
  EXPECT_FALSE(IsEnabled("avoidanceCbo"));
  EXPECT_EQ(TextOf("avoidanceCbo"), "");
  EXPECT_EQ(ItemsOf("avoidanceCbo"), QStringList());
  EXPECT_EQ(Saved("RiskIndex"), "0");
  EXPECT_EQ(Saved("avoidanceCbo"), "A2, Impossible") << "its field is left alone";
}

TEST_F(RiskEstimtnLevelsTest, NoHazardEndsThePathAtOnceAndSeriousBehindItPutsItsLinesOut) {
  OpenAndPick(kPathToSix);
  EXPECT_EQ(Saved("RiskIndex"), "6");
  Pick("SevertyCbo", "None.");
  EXPECT_EQ(LevelTexts(), QStringList({"None.", "", "", ""}));
  EXPECT_EQ(OpenBoxes(), QStringList{"SevertyCbo"});
  EXPECT_THAT(LitLines(), ElementsAre("SV2", "SV3", "NoneLn", "NoneLn2"));
  EXPECT_THAT(LitLabels(), ElementsAre("RILbl0"));
  EXPECT_EQ(SavedLevels(), QStringList({"None.", "N.A.", "N.A.", "N.A."}));
  EXPECT_EQ(Saved("RiskIndex"), "0");
  EXPECT_EQ(TextOf("RskTxtLbl"), "No Risk");
  Pick("SevertyCbo", "S2, Serious");
  EXPECT_EQ(LevelTexts(), QStringList({"S2, Serious", "", "", ""}));
  EXPECT_EQ(OpenBoxes(), QStringList({"SevertyCbo", "ExposureCbo"}));
  EXPECT_EQ(ItemsOf("ExposureCbo"), QStringList({"F1, Seldom", "F2, Frequent"}));
  EXPECT_THAT(LitLines(), ElementsAre("SV1", "SH3"));
  EXPECT_THAT(LitLabels(), IsEmpty());
  EXPECT_EQ(SavedLevels(), QStringList({"S2, Serious", "N.A.", "N.A.", "N.A."}));
  EXPECT_EQ(Saved("RiskIndex"), "0");
}

TEST_F(RiskEstimtnLevelsTest, ResetClearsTheLevelsAndTheIndexOfItsStageOnly) {
  OpenOn({{"RiskIndexAftr", 5}});
  PickLevels(kPathToSix);
  Pick("SevertyCbo", "Reset");
  EXPECT_EQ(LevelTexts(), QStringList({"Reset", "", "", ""}));
  EXPECT_EQ(OpenBoxes(), QStringList{"SevertyCbo"});
  EXPECT_THAT(LitLines(), IsEmpty());
  EXPECT_THAT(LitLabels(), IsEmpty());
  EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), "0");
  EXPECT_EQ(TextOf("RskTxtLbl"), "No Risk");
  EXPECT_EQ(BackOf("RiskShape1"), 0x80FF80U);
  EXPECT_EQ(TextOf("RiskIdxARsltDsp"), "5");
  EXPECT_EQ(SavedLevels(), kNoLevels);
  EXPECT_EQ(SavedIndexes(), QStringList({"0", "5"}));
}

TEST_F(RiskEstimtnLevelsTest, ResetInTheAfterStageLeavesTheBeforeStage) {
  OpenAndPick(kPathToSix);
  ToAfterStage();
  PickLevels({"S1, Slight", "", "O3, High", "A2, Impossible"});
  Pick("SevertyCbo", "Reset");
  EXPECT_EQ(TextOf("RiskIdxARsltDsp"), "0");
  EXPECT_EQ(TextOf("RskTxtLbl2"), "No Risk");
  EXPECT_EQ(BackOf("RiskShape2"), 0x80FF80U);
  EXPECT_EQ(BackOf("RiskShape1"), 0xFF0000U);
  EXPECT_EQ(SavedLevels(true), kNoLevels);
  EXPECT_EQ(SavedLevels(), kPathToSix);
  EXPECT_EQ(SavedIndexes(), QStringList({"6", "0"}));
}

TEST_F(RiskEstimtnLevelsTest, ResetKeepsTheChosenStatements) {
  OpenOn({});
  for (const bool after : {false, true}) {
    if (after) ToAfterStage();
    ChooseStatement("SevertyCbo", 3);
    Pick("SevertyCbo", "S2, Serious");
    ChooseStatement("ExposureCbo", 4);
    Pick("SevertyCbo", "Reset");
    EXPECT_EQ(SavedScores(after), QStringList({"3", "4", "0", "0"}));
    EXPECT_EQ(ScoreLabels(), QStringList({"3", "4", "0", "0"}));
    EXPECT_EQ(MarkedCell(), "Rsk11");
    Pick("SevertyCbo", "None.");
    EXPECT_EQ(SavedScores(after), QStringList({"3", "4", "0", "0"}));
  }
}

TEST_F(RiskEstimtnLevelsTest, AnotherSeverityLeavesTheOldIndexBesideADarkGraph) {
  OpenAndPick(kPathToFour);
  Pick("SevertyCbo", "S1, Slight");
  EXPECT_THAT(LitLines(), ElementsAre("SV2", "SEH1_2"));
  EXPECT_THAT(LitLabels(), IsEmpty());
  EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), "4");
  EXPECT_EQ(TextOf("RskTxtLbl"), "Medium Risk");
  EXPECT_EQ(SavedLevels(), QStringList({"S1, Slight", "F1, Seldom", "O3, High", "A2, Impossible"}));
  EXPECT_EQ(Saved("RiskIndex"), "4");
  PickLevels({"", "", "O3, High", "A2, Impossible"});
  Pick("SevertyCbo", "S1, Slight");
  EXPECT_EQ(LevelTexts(), QStringList({"S1, Slight", "F1, F2", "", ""}))
      << "the same item again is a click";
  EXPECT_THAT(LitLines(), ElementsAre("SV2", "SEH1_2"));
}

TEST_F(RiskEstimtnLevelsTest, UnknownStoredLevelsAreShownAndOpenNothing) {
  OpenOn(Levels({"S3, Fatal", "N.A.", "N.A.", "N.A."}));
  EXPECT_EQ(LevelTexts(), QStringList({"S3, Fatal", "", "", ""}));
  EXPECT_EQ(OpenBoxes(), QStringList{"SevertyCbo"});
  EXPECT_THAT(LitLines(), IsEmpty());
  EXPECT_EQ(SavedLevels(), QStringList({"S3, Fatal", "N.A.", "N.A.", "N.A."}));
  // They are compared letter for letter.
  Exec(Study(), "DELETE FROM Risk_records");
  OpenOn(Levels({"s2, serious", "F1, Seldom", "N.A.", "N.A."}));
  EXPECT_THAT(LitLines(), IsEmpty());
  EXPECT_EQ(OpenBoxes(), QStringList{"SevertyCbo"});
  EXPECT_EQ(LevelTexts(), QStringList({"s2, serious", "F1, Seldom", "", ""}));
}

TEST_F(RiskEstimtnLevelsTest, NothingIsTypedIntoALevelBox) {
  OpenOn({});
  Focus("SevertyCbo");
  PressKey(Qt::Key_Delete);
  PressKey(Qt::Key_Backspace);
  Type("xyz,");
  EXPECT_EQ(TextOf("SevertyCbo"), "Reset");
  EXPECT_EQ(SavedLevels(), kNoLevels);
}

TEST_F(RiskEstimtnLevelsTest, WholePathIsChosenByKeyboardAlone) {
  OpenOn({});
  EXPECT_TRUE(HasFocus("SevertyCbo"));
  Type("s");
  EXPECT_EQ(TextOf("SevertyCbo"), "S1, Slight");
  Type("S");
  EXPECT_EQ(TextOf("SevertyCbo"), "S2, Serious");
  PressTab();
  EXPECT_TRUE(HasFocus("ExposureCbo"));
  PressKey(Qt::Key_Down);
  EXPECT_EQ(TextOf("ExposureCbo"), "F1, Seldom");
  PressTab();
  EXPECT_TRUE(HasFocus("occurrenceCbo"));
  PressKey(Qt::Key_Space);
  PressKey(Qt::Key_Down);
  PressKey(Qt::Key_Return);
  EXPECT_EQ(TextOf("occurrenceCbo"), "O2, Midium");
  PressTab();
  EXPECT_TRUE(HasFocus("avoidanceCbo"));
  Type("a");
  Type("a");
  EXPECT_EQ(TextOf("avoidanceCbo"), "A2, Impossible");
  EXPECT_EQ(SavedLevels(),
            QStringList({"S2, Serious", "F1, Seldom", "O2, Midium", "A2, Impossible"}));
  EXPECT_EQ(Saved("RiskIndex"), "3");
}

TEST_F(RiskEstimtnLevelsTest, ArrowsGoOnFromTheLevelThatIsShown) {
  OpenOn(Levels({"None.", "N.A.", "N.A.", "N.A."}));
  Focus("SevertyCbo");
  PressKey(Qt::Key_Down);
  EXPECT_EQ(TextOf("SevertyCbo"), "S1, Slight");
  PressKey(Qt::Key_Up);
  EXPECT_EQ(TextOf("SevertyCbo"), "None.");
  PressKey(Qt::Key_Up);
  EXPECT_EQ(TextOf("SevertyCbo"), "None.");
}

TEST_F(RiskEstimtnLevelsTest, PressOnTheTextOpensTheListAndAnotherClosesIt) {
  OpenOn({});
  QAbstractItemView& list = *Control<QComboBox>("SevertyCbo").view();
  Click("SevertyCbo");
  EXPECT_TRUE(list.isVisible());
  EXPECT_EQ(list.currentIndex().data().toString(), "Reset");
  QTest::mouseClick(
      list.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
      list.window()->mapFromGlobal(Control<QComboBox>("SevertyCbo").mapToGlobal(QPoint(10, 10))));
  Settle();
  EXPECT_FALSE(list.isVisible());
  EXPECT_EQ(TextOf("SevertyCbo"), "Reset");
}

TEST_F(RiskEstimtnLevelsTest, GraphTellsItsPathInWords) {
  OpenOn({});
  const auto words = [this] { return Control<QWidget>("RiskGraph").accessibleDescription(); };
  EXPECT_EQ(words(), "Nothing chosen");
  PickLevels({"S2, Serious", "F1, Seldom"});
  EXPECT_EQ(words(), "S2, Serious; F1, Seldom");
  PickLevels({"", "", "O3, High", "A2, Impossible"});
  EXPECT_EQ(words(), "S2, Serious; F1, Seldom; O3, High; A2, Impossible: risk index 4");
  Pick("SevertyCbo", "None.");
  EXPECT_EQ(words(), "None.: risk index 0");
}

// Every path of the graph, as a person walks it, in both stages.

struct Path {
  QStringList levels;  ///< severity, exposure, occurrence, avoidance; empty where none is picked
  QStringList lit;     ///< in the order of the table of lines
  QString label;
  int index;
};

const QList<Path> kPaths{
    {{"None.", "", "", ""}, {"SV2", "SV3", "NoneLn", "NoneLn2"}, "RILbl0", 0},
    {{"S1, Slight", "F1, F2", "O1, Low", ""}, {"SV2", "SEH1_2", "NoneLn2", "OAng0"}, "RILbl0", 0},
    {{"S1, Slight", "F1, F2", "O2, Midium", "A1, Possible"},
     {"SV2", "SEH1_2", "OH2", "AAng0"},
     "RILbl0",
     0},
    {{"S1, Slight", "F1, F2", "O2, Midium", "A2, Impossible"},
     {"SV2", "SEH1_2", "OH2", "AH1"},
     "RILb1",
     1},
    {{"S1, Slight", "F1, F2", "O3, High", "A1, Possible"},
     {"SV2", "SEH1_2", "OAng1", "AAng1"},
     "RILb1",
     1},
    {{"S1, Slight", "F1, F2", "O3, High", "A2, Impossible"},
     {"SV2", "SEH1_2", "OAng1", "AH2"},
     "RILb2",
     2},
    {{"S2, Serious", "F1, Seldom", "O1, Low", "A1, Possible"},
     {"SV1", "SH3", "FV1", "FH3", "OAng2", "AAng1"},
     "RILb1",
     1},
    {{"S2, Serious", "F1, Seldom", "O1, Low", "A2, Impossible"},
     {"SV1", "SH3", "FV1", "FH3", "OAng2", "AH2"},
     "RILb2",
     2},
    {{"S2, Serious", "F1, Seldom", "O2, Midium", "A1, Possible"},
     {"SV1", "SH3", "FV1", "FH3", "OH3", "AAng2"},
     "RILb2",
     2},
    {{"S2, Serious", "F1, Seldom", "O2, Midium", "A2, Impossible"},
     {"SV1", "SH3", "FV1", "FH3", "OH3", "AH3"},
     "RILbl3",
     3},
    {{"S2, Serious", "F1, Seldom", "O3, High", "A1, Possible"},
     {"SV1", "SH3", "FV1", "FH3", "OAng3", "AAng3"},
     "RILbl3",
     3},
    {{"S2, Serious", "F1, Seldom", "O3, High", "A2, Impossible"},
     {"SV1", "SH3", "FV1", "FH3", "OAng3", "AH4"},
     "RILbl4",
     4},
    {{"S2, Serious", "F2, Frequent", "O1, Low", "A1, Possible"},
     {"SV1", "SH3", "FV2", "FH4", "OAng4", "AAng3"},
     "RILbl3",
     3},
    {{"S2, Serious", "F2, Frequent", "O1, Low", "A2, Impossible"},
     {"SV1", "SH3", "FV2", "FH4", "OAng4", "AH4"},
     "RILbl4",
     4},
    {{"S2, Serious", "F2, Frequent", "O2, Midium", "A1, Possible"},
     {"SV1", "SH3", "FV2", "FH4", "OH4", "AAng4"},
     "RILbl4",
     4},
    {{"S2, Serious", "F2, Frequent", "O2, Midium", "A2, Impossible"},
     {"SV1", "SH3", "FV2", "FH4", "OH4", "AH5"},
     "RILbl5",
     5},
    {{"S2, Serious", "F2, Frequent", "O3, High", "A1, Possible"},
     {"SV1", "SH3", "FV2", "FH4", "OAng5", "AAng5"},
     "RILbl5",
     5},
    {{"S2, Serious", "F2, Frequent", "O3, High", "A2, Impossible"},
     {"SV1", "SH3", "FV2", "FH4", "OAng5", "AH6"},
     "RILbl6",
     6},
};

class EveryPathTest : public EstimationTest, public ::testing::WithParamInterface<bool> {};

TEST_P(EveryPathTest, EndsAtItsIndexLineLabelFieldsBandAndVerdict) {
  const bool after = GetParam();
  constexpr int kOther = 3;
  OpenOn({{after ? "RiskIndex" : "RiskIndexAftr", kOther}});
  if (after) ToAfterStage();
  for (const Path& path : kPaths) {
    const std::string what = path.levels.join("; ").toStdString();
    SCOPED_TRACE(what);
    PickLevels(path.levels);
    EXPECT_EQ(LitLines(), path.lit) << what;
    EXPECT_EQ(LitLabels(), QStringList{path.label}) << what;
    EXPECT_EQ(LevelTexts(), path.levels) << what;
    QStringList stored = path.levels;
    if (stored[0] == "None.") stored = {"None.", "N.A.", "N.A.", "N.A."};
    // A path that ends early leaves the field of its avoidance as it was: here still unset.
    if (stored[3].isEmpty()) stored[3] = "N.A.";
    EXPECT_EQ(SavedLevels(after), stored) << what;
    EXPECT_EQ(SavedLevels(!after), kNoLevels) << what;

    const int before_index = after ? kOther : path.index;
    const int after_index = after ? path.index : kOther;
    EXPECT_EQ(SavedIndexes(),
              QStringList({QString::number(before_index), QString::number(after_index)}))
        << what;
    ExpectBandsAndVerdict(before_index, after_index);
    EXPECT_EQ(session.RiskIndexBefore, before_index) << what;
    EXPECT_EQ(session.RiskIndexAfter, after_index) << what;
    EXPECT_TRUE(Control<QWidget>("RiskGraph")
                    .accessibleDescription()
                    .endsWith(": risk index " + QString::number(path.index)))
        << what;
    Pick("SevertyCbo", "Reset");
  }
  EXPECT_EQ(kPaths.size(), 18);
}

TEST_P(EveryPathTest, ComesBackAsItWasWhenTheFormOpensAgain) {
  const bool after = GetParam();
  GivenTask();
  for (const Path& path : kPaths) {
    const std::string what = path.levels.join("; ").toStdString();
    OpenForm();
    if (after) ToAfterStage();
    Pick("SevertyCbo", "Reset");
    PickLevels(path.levels);
    Click("clsfrm");
    QStringList stored = path.levels;
    stored.replaceInStrings(QRegularExpression("^$"), "N.A.");
    EXPECT_EQ(SavedLevels(after), stored) << what;

    OpenForm();
    if (after) {
      EXPECT_THAT(LitLines(), IsEmpty()) << what << ": nothing of the after stage at first";
      ToAfterStage();
    }
    EXPECT_EQ(LitLines(), path.lit) << what;
    EXPECT_EQ(LitLabels(), QStringList{path.label}) << what;
    EXPECT_EQ(LevelTexts(), path.levels) << what;
    EXPECT_EQ(Saved(after ? "RiskIndexAftr" : "RiskIndex"), QString::number(path.index)) << what;
    Close();
  }
}

INSTANTIATE_TEST_SUITE_P(BothStages, EveryPathTest, ::testing::Bool(), [](const auto& stage) {
  return std::string(stage.param ? "After" : "Before");
});

}  // namespace
}  // namespace kestrix
