// The five statements, their scores, Restart, and every result that is shown.
#include <gmock/gmock.h>

#include <QAccessible>

#include "estimation/EstimationTest.h"

namespace kestrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QStringList kSeverity{
    " Scratches, bruises that are cured by first aid or similar",
    " More severe scratches, bruises, stabbing, which require medical attention from professionals",
    " Normally irreversible injury; it will be slightly difficult to continue work after healing",
    " Irreversible injury in such a way that it will be very difficult to continue work after "
    "healing, if possible at all",
    ""};
const QStringList kExposure{
    "", " Interval between exposure is more than a year",
    " Interval between exposure is more than two weeks but less than or equal to a year",
    " Interval between exposure is more than a day but less than or equal to two weeks",
    " Interval between exposure is more than a hour but less than or equal to a day / interval "
    "less than or equal to an hour"};
const QStringList kOccurrence{
    " Negligible: for example, this kind of component never fails so that a hazardous event "
    "occurs. No possibility of human error",
    " Rarely: for example, it is unlikely this kind of component will fail so that a hazardous "
    "event occurs. Human error is unlikely.",
    " Possible: for example, this kind of component can fail so that a hazardous event occurs. "
    "Human error is possible.",
    " Likely: for example, this kind of component will probably fail so that a hazardous event "
    "occurs. Human error is likely.",
    " Very high: for example, this kind of component is not made for this application. It will "
    "fail so that a hazardous event occurs. Human behaviour is such that the likelihood of error "
    "is very high."};
const QStringList kAvoidance{
    " Likely: for example, it is likely that contact with moving parts behind an interlocked "
    "guard will be avoided in most cases should the interlocking fail and the movements continue.",
    " ",
    " Possible: for example, it is possible to avoid an entanglement hazard where the speed is "
    "slow and there is sufficient space or otherwise it is easy to avoid moving parts of "
    "machinery.",
    "",
    " Impossible: for example, it is impossible to avoid a sudden appearance of a powerful laser "
    "beam, or in case of an explosion."};

struct ParameterRow {
  QString box;
  QString caption;
  QStringList statements;
  QList<int> enabled;
  QString statement_label;
  QString score_label;
  QString prefix;
  QString unset;
};
const QList<ParameterRow> kParameters{
    {"SevertyCbo",
     "Hazard description : Severity",
     kSeverity,
     {1, 2, 3, 4},
     "SerChkStd",
     "SerScrStd",
     "Severty :",
     "Reset"},
    {"ExposureCbo",
     "Hazard description : Frequency of exposure",
     kExposure,
     {2, 3, 4, 5},
     "ExChkStdStd",
     "ExScrStd",
     "Exposure :",
     "N.A."},
    {"occurrenceCbo",
     "Hazard description : Probability of occurrence hazard event",
     kOccurrence,
     {1, 2, 3, 4, 5},
     "OcrChkStd",
     "OCrScrStd",
     "Occurrence :",
     "N.A."},
    {"avoidanceCbo",
     "Hazard description : Possibility of avoidance",
     kAvoidance,
     {1, 3, 5},
     "AvrChkStd",
     "AvrScrStd",
     "Avoidance :",
     "N.A."}};

const char* const kRestartQuestion = "Wish to clear all selections and restart.";

class RiskEstimtnStatementsTest : public EstimationTest {
 protected:
  /// All four level boxes open, on the path to index 4.
  void OpenAll(const Fields& fields = {}) {
    OpenOn(fields);
    PickLevels(kPathToFour);
  }
  [[nodiscard]] QCheckBox& Chk(int number) const {
    return Control<QCheckBox>(QStringLiteral("Chk_%1").arg(number));
  }
  void ExpectRestart(Button answer) {
    desk.messages.ExpectAsk(Icon::kInformation, "BELTROVAN", kRestartQuestion, answer);
  }
  /// Shows these scores in the before stage, as if they had been chosen in both.
  void ShowScores(const QList<int>& scores) {
    Fields fields;
    for (int i = 0; i < 4; ++i) {
      for (const char* stage : {"", "Aftr"}) {
        fields[QStringLiteral("%1Chk_OptnSltd%2").arg(i + 1).arg(stage)] = scores[i];
      }
    }
    SetFields(fields);
    Control<QPushButton>("RskBfrAftrChk").setChecked(true);
    Control<QPushButton>("RskBfrAftrChk").setChecked(false);
  }
};

TEST_F(RiskEstimtnStatementsTest, FocusOfALevelBoxDecidesWhatTheStatementsServe) {
  OpenAll();
  for (const ParameterRow& row : kParameters) {
    Focus(row.box);
    EXPECT_EQ(session.ActiveParameterBox, row.box);
    EXPECT_EQ(TextOf("HzrdDscptnLbl"), row.caption);
    for (int n = 1; n <= 5; ++n) {
      EXPECT_EQ(Chk(n).text(), row.statements[n - 1]) << row.box.toStdString() << n;
      EXPECT_EQ(Chk(n).isEnabled(), row.enabled.contains(n)) << row.box.toStdString() << n;
      EXPECT_FALSE(Chk(n).isChecked()) << row.box.toStdString() << n;
    }
    for (const ParameterRow& other : kParameters) {
      const bool marked = other.box == row.box;
      EXPECT_EQ(BackOf(other.statement_label) == 0xFFFF80U, marked)
          << other.box.toStdString() << row.box.toStdString();
      EXPECT_EQ(BackOf(other.score_label) == 0xFFFF80U, marked)
          << other.box.toStdString() << row.box.toStdString();
      if (!marked) {
        EXPECT_EQ(BackOf(other.statement_label),
                  QApplication::palette().color(QPalette::Window).rgb() & 0xFFFFFF);
      }
    }
  }
}

TEST_F(RiskEstimtnStatementsTest, SelectionOfALevelDoesNotMoveTheStatements) {
  OpenOn({});
  Focus("SevertyCbo");
  Pick("SevertyCbo", "S2, Serious");
  EXPECT_EQ(TextOf("HzrdDscptnLbl"), "Hazard description : Severity");
  EXPECT_EQ(session.ActiveParameterBox, "SevertyCbo");
}

TEST_F(RiskEstimtnStatementsTest, StatementsStayWhereTheyAreWhenTheFocusLeavesTheLevelBoxes) {
  OpenAll();
  Focus("SevertyCbo");
  Focus("Chk_2");
  for (const char* score : {"2", "0"}) {
    PressKey(Qt::Key_Space);
    EXPECT_EQ(SavedScores()[0], score) << "by keyboard";
  }
  Focus("occurrenceCbo");
  Focus("RestartBtn");
  EXPECT_EQ(session.ActiveParameterBox, "occurrenceCbo");
  Click("Chk_4");
  EXPECT_EQ(SavedScores(), QStringList({"0", "0", "4", "0"}));
}

TEST_F(RiskEstimtnStatementsTest,
       EveryStatementIsStoredWithItsTextAndNumberInBothStagesAndClearedByUnchecking) {
  OpenAll();
  for (const bool after : {false, true}) {
    if (after) {
      ToAfterStage();
      PickLevels(kPathToFour);
    }
    for (int parameter = 0; parameter < 4; ++parameter) {
      const ParameterRow& row = kParameters[parameter];
      Focus(row.box);
      for (const int n : row.enabled) {
        Click(QStringLiteral("Chk_%1").arg(n));
        const std::string what = QString("%1 %2").arg(row.box).arg(n).toStdString();
        EXPECT_EQ(CheckedStatements(), QList<int>{n}) << what;
        EXPECT_EQ(SavedStatements(after)[parameter], row.statements[n - 1]) << what;
        EXPECT_EQ(SavedScores(after)[parameter], QString::number(n)) << what;
        EXPECT_EQ(TextOf(row.statement_label), row.prefix + row.statements[n - 1]) << what;
        EXPECT_EQ(TextOf(row.score_label), QString::number(n)) << what;
        if (n != 3) continue;
        Click("Chk_3");
        EXPECT_THAT(CheckedStatements(), IsEmpty()) << what;
        EXPECT_EQ(SavedScores(after)[parameter], "0") << what;
        EXPECT_EQ(SavedStatements(after)[parameter], row.unset) << what;
        EXPECT_EQ(TextOf(row.statement_label), row.prefix + row.unset) << what;
        EXPECT_EQ(TextOf(row.score_label), "0") << what;
      }
    }
  }
  EXPECT_EQ(SavedScores(), QStringList({"4", "5", "5", "5"})) << "the before stage kept its own";
  EXPECT_EQ(SavedScores(true), QStringList({"4", "5", "5", "5"}));
}

TEST_F(RiskEstimtnStatementsTest, AltAndANumberTicksItsStatementAndTheFocusStays) {
  OpenAndPick({"S2, Serious", "F2, Frequent"});
  for (const char* box : {"SevertyCbo", "ExposureCbo"}) {
    Focus(box);
    for (int number = 1; number <= 5; ++number) {
      PressKey(static_cast<Qt::Key>(Qt::Key_0 + number), Qt::AltModifier);
      EXPECT_EQ(FocusName(), box);
    }
  }
  EXPECT_EQ(SavedScores(), QStringList({"4", "5", "0", "0"}))
      << "a box without a text scores nothing";
  PressKey(Qt::Key_5, Qt::AltModifier);
  EXPECT_EQ(SavedScores(), QStringList({"4", "0", "0", "0"}));
}

TEST_F(RiskEstimtnStatementsTest, PressOnAResultBringsItsStatementsUpWhileItsBoxIsOpen) {
  OpenAndPick({"S2, Serious", "F2, Frequent"});
  for (const QStringList& labels : {kStatementLabels, kScoreLabels}) {
    for (int parameter = 0; parameter < 4; ++parameter) {
      Focus("SevertyCbo");
      Click(labels[parameter]);
      const bool open = parameter < 3;
      EXPECT_EQ(FocusName(), open ? kBoxes[parameter] : kBoxes[0]);
      EXPECT_EQ(session.ActiveParameterBox, open ? kBoxes[parameter] : kBoxes[0]);
    }
  }
}

TEST_F(RiskEstimtnStatementsTest, BoxWithoutATextIsNotDrawnAndPassedOver) {
  OpenOn({});
  for (const auto& [name, blank] : {std::pair{"Chk_5", true}, {"Chk_4", false}}) {
    auto& box = Control<QCheckBox>(name);
    const QImage image = box.grab().toImage();
    bool drawn = false;
    for (int y = 0; y < image.height() && !drawn; ++y) {
      for (int x = 0; x < image.width(); ++x) drawn |= image.pixel(x, y) != image.pixel(0, 0);
    }
    EXPECT_EQ(drawn, !blank) << name;
    const QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&box);
    EXPECT_EQ(access->state().invisible, blank) << name;
    EXPECT_EQ(access->role(), blank ? QAccessible::NoRole : QAccessible::CheckBox) << name;
    EXPECT_TRUE(box.isVisible());
  }
  QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&Control<QWidget>("Chk_4"));
  EXPECT_EQ(access->text(QAccessible::Name), Control<QCheckBox>("Chk_4").text().trimmed());
  access->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_TRUE(access->state().checked);
  EXPECT_EQ(SavedScores()[0], "4");
}

TEST_F(RiskEstimtnStatementsTest, WithoutAParameterNothingIsStoredAndTheLabelsRefresh) {
  OpenOn({});
  for (const char* active : {"", "NoSuchBox"}) {
    session.ActiveParameterBox = active;
    SetFields({{"Chk_OptnEx", " something"}, {"2Chk_OptnSltd", 4}});
    Click("Chk_2");
    EXPECT_EQ(SavedScores(), QStringList({"0", "4", "0", "0"}));
    EXPECT_EQ(SavedStatements(), QStringList({"Reset", " something", "N.A.", "N.A."}));
    EXPECT_EQ(TextOf("ExChkStdStd"), "Exposure : something");
    EXPECT_EQ(TextOf("HzrdScrLbl"), "Class scored (Cl.) : 4");
    Click("Chk_2");
    EXPECT_EQ(SavedScores(), QStringList({"0", "4", "0", "0"})) << "nor is anything cleared";
  }
}

TEST_F(RiskEstimtnStatementsTest, FocusBringsTheStoredStatementBack) {
  OpenAll({{"1Chk_OptnSltd", 4},
           {"Chk_OptnSe", kSeverity[3]},
           {"2Chk_OptnSltd", 2},
           {"Chk_OptnEx", kExposure[1]},
           {"4Chk_OptnSltd", 5},
           {"Chk_OptnAv", kAvoidance[4]}});
  const QStringList scores{"4", "2", "0", "5"};
  const QList<QList<int>> checked{{4}, {2}, {}, {5}};
  for (int round = 0; round < 2; ++round) {
    for (int parameter = 0; parameter < 4; ++parameter) {
      Focus(kBoxes[parameter]);
      EXPECT_EQ(CheckedStatements(), checked[parameter]) << kBoxes[parameter].toStdString();
    }
  }
  EXPECT_EQ(SavedScores(), scores) << "looking changes nothing";
  EXPECT_EQ(SavedStatements(), QStringList({kSeverity[3], kExposure[1], "N.A.", kAvoidance[4]}));
}

TEST_F(RiskEstimtnStatementsTest, ScoreThatIsNoBoxLeavesTheBoxesAsTheyAre) {
  OpenAll({{"1Chk_OptnSltd", 2}, {"Chk_OptnSe", kSeverity[1]}, {"2Chk_OptnSltd", 7}});
  Focus("SevertyCbo");
  EXPECT_EQ(CheckedStatements(), QList<int>{2});
  Focus("ExposureCbo");
  EXPECT_EQ(CheckedStatements(), QList<int>{2});
  EXPECT_EQ(SavedScores(), QStringList({"2", "7", "0", "0"}));
  // That of a box without a statement is shown on the disabled box.
  SetFields({{"2Chk_OptnSltd", 1}});
  Focus("SevertyCbo");
  Focus("ExposureCbo");
  EXPECT_EQ(CheckedStatements(), QList<int>{1});
  EXPECT_FALSE(Chk(1).isEnabled());
  EXPECT_EQ(SavedScores()[1], "1");
}

TEST_F(RiskEstimtnStatementsTest, StatementOfAnotherWordingIsWrittenAnewWhenItsBoxIsChecked) {
  OpenOn({{"3Chk_OptnSltd", 5}, {"Chk_OptnOc", "an older wording"}});
  EXPECT_EQ(TextOf("OcrChkStd"), "Occurrence :an older wording");
  PickLevels({"S1, Slight"});
  Focus("occurrenceCbo");
  EXPECT_EQ(SavedStatements()[2], kOccurrence[4]) << "a box checked by the program clicks as well";
  EXPECT_EQ(SavedScores()[2], "5");
}

TEST_F(RiskEstimtnStatementsTest, ClassGrowsAsTheStatementsAreChosen) {
  OpenAll();
  EXPECT_EQ(TextOf("HzrdScrLbl"), "Class scored (Cl.) : 0");
  EXPECT_EQ(TextOf("svertyScorLbl"), "Se. :0");
  ChooseStatement("ExposureCbo", 2);
  EXPECT_EQ(TextOf("HzrdScrLbl"), "Class scored (Cl.) : 2");
  EXPECT_EQ(MarkedCell(), "");
  EXPECT_EQ(TextOf("RBIMatrixLbl"), "No Risk");
  ChooseStatement("SevertyCbo", 2);
  EXPECT_EQ(MarkedCell(), "Rsk6");
  EXPECT_EQ(TextOf("RBIMatrixLbl"), "Low Risk");
  EXPECT_EQ(TextOf("svertyScorLbl"), "Se. :2");
  ChooseStatement("occurrenceCbo", 5);
  EXPECT_EQ(TextOf("HzrdScrLbl"), "Class scored (Cl.) : 7");
  EXPECT_EQ(MarkedCell(), "Rsk7");
  ChooseStatement("avoidanceCbo", 5);
  EXPECT_EQ(TextOf("HzrdScrLbl"), "Class scored (Cl.) : 12");
  EXPECT_EQ(MarkedCell(), "Rsk9");
  EXPECT_EQ(session.SeverityBefore, 2);
  EXPECT_EQ(session.ClassBefore, 12);
}

struct Cell {
  QString band;
  QRgb colour;
};
// Row 1 first, columns from class 1 up.
const Cell kGreen{"Low Risk", 0x00FF00};
const Cell kDarkGreen{"Low Risk", 0x00C000};
const Cell kOrange{"Medium Risk", 0xFFC080};
const Cell kRedMedium{"Medium Risk", 0xFF0000};
const Cell kRed{"High Risk", 0xFF0000};
const Cell kViolet{"High Risk", 0xC000C0};
const QList<QList<Cell>> kCells{{kGreen, kDarkGreen, kDarkGreen, kOrange, kRed},
                                {kDarkGreen, kDarkGreen, kOrange, kRed, kRed},
                                {kDarkGreen, kOrange, kRed, kRed, kViolet},
                                {kOrange, kRedMedium, kRed, kViolet, kViolet}};

TEST_F(RiskEstimtnStatementsTest, EverySeverityAndClassMarksItsCell) {
  OpenOn({});
  for (int severity = 0; severity <= 4; ++severity) {
    for (int cl = 0; cl <= 15; ++cl) {
      ShowScores({severity, std::min(cl, 5), std::clamp(cl - 5, 0, 5), std::max(cl - 10, 0)});
      const std::string what = QString("Se %1, Cl %2").arg(severity).arg(cl).toStdString();
      EXPECT_EQ(TextOf("svertyScorLbl"), QStringLiteral("Se. :%1").arg(severity)) << what;
      EXPECT_EQ(TextOf("HzrdScrLbl"), QStringLiteral("Class scored (Cl.) : %1").arg(cl)) << what;
      if (severity == 0 || cl == 0) {
        EXPECT_EQ(MarkedCell(), "") << what;
        EXPECT_EQ(TextOf("RBIMatrixLbl"), "No Risk") << what;
        EXPECT_EQ(BackOf("RbiMatxShape"), 0x00FF00U) << what;
        continue;
      }
      const int column = cl <= 4 ? 0 : cl <= 7 ? 1 : cl <= 10 ? 2 : cl <= 13 ? 3 : 4;
      const Cell& cell = kCells[severity - 1][column];
      EXPECT_EQ(MarkedCell(), QStringLiteral("Rsk%1").arg((severity - 1) * 5 + column + 1)) << what;
      EXPECT_EQ(TextOf("RBIMatrixLbl"), cell.band) << what;
      EXPECT_EQ(BackOf("RbiMatxShape"), cell.colour) << what;
      EXPECT_EQ(Control<QWidget>("RiskMatrix").accessibleDescription(),
                QStringLiteral("Class %1, severity %2: %3").arg(cl).arg(severity).arg(cell.band))
          << what;
    }
  }
}

TEST_F(RiskEstimtnStatementsTest, ScoresOutsideTheMatrixLeaveTheLastResult) {
  OpenOn({});
  ShowScores({4, 5, 1, 0});
  EXPECT_EQ(MarkedCell(), "Rsk17");
  ShowScores({7, 5, 1, 0});
  EXPECT_EQ(TextOf("svertyScorLbl"), "Se. :7");
  EXPECT_EQ(MarkedCell(), "Rsk17");
  EXPECT_EQ(TextOf("RBIMatrixLbl"), "Medium Risk");
  EXPECT_EQ(BackOf("RbiMatxShape"), 0xFF0000U);
  ShowScores({4, 6, 5, 5});
  EXPECT_EQ(TextOf("HzrdScrLbl"), "Class scored (Cl.) : 16");
  EXPECT_EQ(MarkedCell(), "Rsk17");
}

TEST_F(RiskEstimtnStatementsTest, EveryPairOfIndexesShowsItsBandsAndVerdict) {
  OpenOn({});
  for (int before = 0; before <= 6; ++before) {
    for (int after = 0; after <= 6; ++after) {
      SetFields({{"RiskIndex", before}, {"RiskIndexAftr", after}});
      ShowScores({0, 0, 0, 0});
      SCOPED_TRACE(QString("%1, %2").arg(before).arg(after).toStdString());
      ExpectBandsAndVerdict(before, after);
    }
  }
}

TEST_F(RiskEstimtnStatementsTest, IndexWithoutABandKeepsTheLastBand) {
  OpenOn({{"RiskIndex", 5}, {"RiskIndexAftr", 3}});
  SetFields({{"RiskIndex", 7}, {"RiskIndexAftr", -1}});
  ShowScores({0, 0, 0, 0});
  EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), "7");
  EXPECT_EQ(TextOf("RskTxtLbl"), "High Risk");
  EXPECT_EQ(BackOf("RiskShape1"), 0xFF0000U);
  EXPECT_EQ(TextOf("RiskIdxARsltDsp"), "-1");
  EXPECT_EQ(TextOf("RskTxtLbl2"), "Medium Risk");
  EXPECT_EQ(BackOf("RiskShape2"), 0xFFC080U);
  EXPECT_EQ(TextOf("HasRiskRdsLbl"), "Yes");
  SetFields({{"RiskIndex", 0}, {"RiskIndexAftr", 9}});
  ShowScores({0, 0, 0, 0});
  EXPECT_EQ(BackOf("RiskShape2"), 0x80FF80U) << "a before index of 0 paints it";
  EXPECT_EQ(TextOf("RskTxtLbl2"), "Medium Risk");
}

TEST_F(RiskEstimtnStatementsTest, GraphAndMatrixMayDisagree) {
  OpenAndPick(kPathToSix);
  ChooseStatement("SevertyCbo", 1);
  ChooseStatement("ExposureCbo", 2);
  ChooseStatement("occurrenceCbo", 1);
  ChooseStatement("avoidanceCbo", 1);
  EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), "6");
  EXPECT_EQ(TextOf("RskTxtLbl"), "High Risk");
  EXPECT_EQ(TextOf("RBIMatrixLbl"), "Low Risk");
  EXPECT_EQ(MarkedCell(), "Rsk1");
  EXPECT_THAT(desk.messages.Shown(), IsEmpty());
}

TEST_F(RiskEstimtnStatementsTest, ScoreThatIsNoNumberIsToldAndChangesNoResult) {
  OpenOn({{"2Chk_OptnSltd", 2}});
  session.ActiveParameterBox.clear();
  SetFields({{"2Chk_OptnSltd", "two"}});
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN",
                           "\"two\" stands where a number is expected.");
  Click("Chk_1");
  EXPECT_EQ(TextOf("ExScrStd"), "two");
  EXPECT_EQ(TextOf("HzrdScrLbl"), "Class scored (Cl.) : 2");
}

TEST_F(RiskEstimtnStatementsTest, RestartAsksFirstAndNoChangesNothing) {
  OpenAll();
  ChooseStatement("SevertyCbo", 3);
  const auto row = SavedRow();
  ExpectRestart(Button::kNo);
  Click("RestartBtn");
  EXPECT_EQ(session.MsgAnswer, Button::kNo);
  EXPECT_EQ(SavedRow(), row);
  EXPECT_EQ(CheckedStatements(), QList<int>{3});
}

class RestartTest : public RiskEstimtnStatementsTest, public ::testing::WithParamInterface<bool> {};

TEST_P(RestartTest, ClearsTheStatementsOfItsStageAndBothIndexesAtOnce) {
  const bool after = GetParam();
  OpenAll();
  const QList<int> numbers{3, 4, 2, 5};
  for (const bool stage : {false, true}) {
    if (stage) {
      ToAfterStage();
      PickLevels({"S1, Slight", "", "O3, High", "A2, Impossible"});
    }
    for (int i = 0; i < 4; ++i) ChooseStatement(kBoxes[i], numbers[i]);
  }
  if (!after) {
    ToBeforeStage();
    Focus("avoidanceCbo");
  }
  EXPECT_EQ(SavedIndexes(), QStringList({"4", "2"}));
  const QStringList lit = LitLines();
  const QStringList labels = LitLabels();
  const QStringList levels = LevelTexts();

  ExpectRestart(Button::kYes);
  Click("RestartBtn");
  EXPECT_FALSE(task.source.Recordset().HasPendingEdit()) << "committed by itself";
  const QMap<QString, QString> row = RowInFile();
  const QString in_hand = after ? "Aftr" : "";
  const QString other = after ? "" : "Aftr";
  EXPECT_EQ(row["Chk_OptnSe" + in_hand], "Reset");
  EXPECT_EQ(row["Chk_OptnEx" + in_hand], "N.A.");
  EXPECT_EQ(row["Chk_OptnOc" + in_hand], "N.A.");
  EXPECT_EQ(row["Chk_OptnAv" + in_hand], "N.A.");
  EXPECT_EQ(row["Chk_OptnSe" + other], kSeverity[2]);
  EXPECT_EQ(row["Chk_OptnEx" + other], kExposure[3]);
  EXPECT_EQ(row["Chk_OptnOc" + other], kOccurrence[1]);
  EXPECT_EQ(row["Chk_OptnAv" + other], kAvoidance[4]);
  EXPECT_EQ(SavedScores(after), QStringList({"0", "0", "0", "0"}));
  EXPECT_EQ(SavedScores(!after), QStringList({"3", "4", "2", "5"}));
  EXPECT_EQ(SavedIndexes(), QStringList({"0", "0"}));
  EXPECT_EQ(SavedLevels(), kPathToFour) << "the levels of both stages stay";
  EXPECT_EQ(SavedLevels(true), QStringList({"S1, Slight", "N.A.", "O3, High", "A2, Impossible"}));

  EXPECT_THAT(CheckedStatements(), IsEmpty());
  EXPECT_EQ(StatementLabels(), QStringList({"Severty :Reset", "Exposure :N.A.", "Occurrence :N.A.",
                                            "Avoidance :N.A."}));
  EXPECT_EQ(ScoreLabels(), QStringList({"0", "0", "0", "0"}));
  EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), "0");
  EXPECT_EQ(TextOf("RiskIdxARsltDsp"), "0");
  EXPECT_EQ(TextOf("HasRiskRdsLbl"), "No Risk");
  EXPECT_EQ(TextOf("HzrdScrLbl"), "Class scored (Cl.) : 0");
  EXPECT_EQ(MarkedCell(), "");
  EXPECT_EQ(LitLines(), lit) << "the path stays lit";
  EXPECT_EQ(LitLabels(), labels);
  EXPECT_EQ(LevelTexts(), levels);
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
}

INSTANTIATE_TEST_SUITE_P(BothStages, RestartTest, ::testing::Bool(), [](const auto& stage) {
  return std::string(stage.param ? "After" : "Before");
});

TEST_F(RiskEstimtnStatementsTest, RestartOfATaskThatSomebodyElseEstimatedTellsItAndKeepsTheirs) {
  OpenAll();
  ChangeTask("RiskIndex=1, SevertyCbo='S1, Slight'");
  ExpectRestart(Button::kYes);
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN",
                           "Somebody else has changed SevertyCbo of this record meanwhile. Their "
                           "text stands; please look at it and change it again if need be.\n\n"
                           "SevertyCbo\nTheirs: S1, Slight\nYours: S2, Serious");
  Click("RestartBtn");
  EXPECT_EQ(RowInFile()["RiskIndex"], "1");
  EXPECT_EQ(RowInFile()["SevertyCbo"], "S1, Slight");
}

TEST_F(RiskEstimtnStatementsTest, NothingButRestartCommitsTheRow) {
  OpenAll();
  ChooseStatement("SevertyCbo", 3);
  ToAfterStage();
  PickLevels({"S2, Serious", "F1, Seldom"});
  Click("clsfrm");
  EXPECT_TRUE(task.source.Recordset().HasPendingEdit());
  EXPECT_EQ(RowInFile()["SevertyCbo"], "Reset");
  EXPECT_EQ(Saved("SevertyCbo"), "S2, Serious");
}

}  // namespace
}  // namespace kestrix
