// What the form shows of the estimation.
#include <QLabel>
#include <array>
#include <map>

#include "evaluation/EvaluationTest.h"

namespace kestrix {
namespace {

constexpr QRgb kLow = 0x80FF80;
constexpr QRgb kMedium = 0xFFC080;
constexpr QRgb kHigh = 0xFF0000;
constexpr QRgb kNone = 0x00C000;

class RiskSummaryTest : public EvaluationTest {
 protected:
  void GivenIndexes(int before, int after) {
    GivenTask({{"FuntnTaskMachry", "Feed"}, {"RiskIndex", before}, {"RiskIndexAftr", after}});
  }
  void GivenScores(int severity, int exposure, int occurrence, int avoidance) {
    GivenTask({{"FuntnTaskMachry", "Feed"},
               {"1Chk_OptnSltd", severity},
               {"2Chk_OptnSltd", exposure},
               {"3Chk_OptnSltd", occurrence},
               {"4Chk_OptnSltd", avoidance}});
  }
};

struct Indexes {
  int before;
  int after;
  const char* text_before;
  QRgb back_before;
  const char* text_after;
  QRgb back_after;
  const char* verdict;
};

TEST_F(RiskSummaryTest, IndexesReadWithTheirWordsTheirColoursAndTheVerdict) {
  const char* const equal = "May require further risk reduction.";
  // One after the other: an index without a band keeps the colour that was there.
  const Indexes rows[] = {
      {0, 0, "0 (No Risk)", kLow, "0 (No Risk)", kLow, "No Risk"},
      {1, 1, "1 (Low Risk)", kLow, "1 (Low Risk)", kLow, equal},
      {2, 2, "2 (Low Risk)", kLow, "2 (Low Risk)", kLow, equal},
      {3, 3, "3 (Medium Risk)", kMedium, "3 (Medium Risk)", kMedium, equal},
      {4, 4, "4 (Medium Risk)", kMedium, "4 (Medium Risk)", kMedium, equal},
      {5, 5, "5 (High Risk)", kHigh, "5 (High Risk)", kHigh, equal},
      {6, 6, "6 (High Risk)", kHigh, "6 (High Risk)", kHigh, equal},
      {7, 9, "7", kHigh, "9", kHigh, "No"},
      {0, 7, "0 (No Risk)", kLow, "0 (No Risk)", kHigh, "No"},
      {5, 2, "5 (High Risk)", kHigh, "2 (Low Risk)", kLow, "Yes"},
      {1, 3, "1 (Low Risk)", kLow, "3 (Medium Risk)", kMedium, "No"},
  };
  for (const Indexes& row : rows) GivenIndexes(row.before, row.after);
  OpenForm();
  for (int i = 0; const Indexes& row : rows) {
    SCOPED_TRACE(i);
    ClickRow("DB1", i++);
    EXPECT_EQ(TextOf("RIBRtxt"), row.text_before);
    EXPECT_EQ(BackOf("RIBRtxt"), row.back_before);
    EXPECT_EQ(TextOf("RIARtxt"), row.text_after);
    EXPECT_EQ(BackOf("RIARtxt"), row.back_after);
    EXPECT_EQ(TextOf("RskRdsdtnY_N"), row.verdict);
    EXPECT_EQ(Control<QWidget>("RskRdsdtnY_N").accessibleDescription(), row.verdict)
        << "the label beside the box only asks";
    EXPECT_EQ(session.RiskIndexBefore, row.before);
    EXPECT_EQ(session.RiskIndexAfter, row.after);
  }
}

TEST_F(RiskSummaryTest, ALabelSaysWhyItReadsNoRisk) {
  GivenTask({{"SevertyCboAftr", "S1, Slight"}, {"2Chk_OptnSltdAftr", 3}, {"RiskIndexAftr", 1}});
  GivenTask({{"SevertyCbo", "S1, Slight"}});
  OpenForm();
  const auto tips = [this] {
    QStringList shown;
    for (const char* label : {"RIBRtxt", "ClassScorLBL", "RIARtxt", "ClassScorLBLA"}) {
      shown += Control<QLabel>(label).toolTip();
    }
    return shown;
  };
  const QString unset = "Not estimated yet";
  const QString missing = "A statement is missing";
  EXPECT_EQ(tips(), (QStringList{unset, unset, "", missing}));
  ClickRow("DB1", 1);
  EXPECT_EQ(tips(), (QStringList{"", missing, unset, unset}));
  ChangeTask(2, "\"1Chk_OptnSltd\"=1,\"2Chk_OptnSltd\"=1,\"3Chk_OptnSltd\"=1,\"4Chk_OptnSltd\"=1");
  ClickRow("DB1", 0);
  ClickRow("DB1", 1);
  EXPECT_EQ(tips(), (QStringList{"", "", unset, unset}));
}

TEST_F(RiskSummaryTest, AClassReadsWithItsWordAndColour) {
  struct Row {
    int severity;
    std::array<int, 3> scores;
    const char* text;
    QRgb back;
  };
  const Row rows[] = {{4, {2, 0, 0}, "2 (Medium Risk)", kMedium},
                      {4, {0, 0, 0}, "0 (No Risk)", kNone},
                      {0, {5, 5, 5}, "15 (No Risk)", kNone},
                      // The matrix itself paints this cell red.
                      {4, {2, 2, 2}, "6 (Medium Risk)", kMedium},
                      {1, {2, 1, 1}, "4 (Low Risk)", kLow},
                      // Outside the matrix, what is there stays.
                      {5, {2, 1, 1}, "4 (Low Risk)", kLow},
                      {1, {9, 9, 9}, "4 (Low Risk)", kLow}};
  for (const auto& [severity, scores, text, back] : rows)
    GivenScores(severity, scores[0], scores[1], scores[2]);
  OpenForm();
  for (int i = 0; const auto& [severity, scores, text, back] : rows) {
    SCOPED_TRACE(i);
    ClickRow("DB1", i++);
    EXPECT_EQ(TextOf("ClassScorLBL"), text);
    EXPECT_EQ(BackOf("ClassScorLBL"), back);
    EXPECT_EQ(session.SeverityBefore, severity);
    EXPECT_EQ(session.ClassBefore, scores[0] + scores[1] + scores[2]);
  }
}

TEST_F(RiskSummaryTest, TheClassAfterHasItsOwnScores) {
  GivenTask({{"FuntnTaskMachry", "Feed"},
             {"1Chk_OptnSltdAftr", 2},
             {"2Chk_OptnSltdAftr", 5},
             {"3Chk_OptnSltdAftr", 5},
             {"4Chk_OptnSltdAftr", 1}});
  OpenForm();
  EXPECT_EQ(TextOf("ClassScorLBL"), "0 (No Risk)");
  EXPECT_EQ(TextOf("ClassScorLBLA"), "11 (High Risk)");
  EXPECT_EQ(BackOf("ClassScorLBLA"), kHigh);
  EXPECT_EQ(session.SeverityAfter, 2);
  EXPECT_EQ(session.ClassAfter, 11);
}

/// The words of the matrix as the form shows them, by severity and class.
TEST_F(RiskSummaryTest, EveryCellOfTheMatrixReadsAsItsWord) {
  constexpr std::array<std::array<const char*, 5>, 4> kWords{{
      {"Low", "Low", "Low", "Medium", "High"},
      {"Low", "Low", "Medium", "High", "High"},
      {"Low", "Medium", "High", "High", "High"},
      {"Medium", "Medium", "High", "High", "High"},
  }};
  const std::map<std::string, QRgb> kBacks{{"Low", kLow}, {"Medium", kMedium}, {"High", kHigh}};
  for (int severity = 1; severity <= 4; ++severity) {
    for (int cl = 1; cl <= 15; ++cl) GivenScores(severity, cl, 0, 0);
  }
  OpenForm();
  int row = 0;
  for (std::size_t severity = 0; severity < 4; ++severity) {
    for (int cl = 1; cl <= 15; ++cl, ++row) {
      const std::size_t column = cl <= 4 ? 0 : cl <= 7 ? 1 : cl <= 10 ? 2 : cl <= 13 ? 3 : 4;
      ClickRow("DB1", row);
      EXPECT_EQ(TextOf("ClassScorLBL"),
                QStringLiteral("%1 (%2 Risk)").arg(cl).arg(kWords[severity][column]));
      EXPECT_EQ(BackOf("ClassScorLBL"), kBacks.at(kWords[severity][column])) << row;
    }
  }
}

TEST_F(RiskSummaryTest, DisabledLabelsCanBeReadOnTheirColour) {
  GivenIndexes(6, 1);
  OpenForm();
  for (const char* name : {"RIBRtxt", "RIARtxt", "ClassScorLBL", "ClassScorLBLA"}) {
    const QPalette palette = Control<QWidget>(name).palette();
    const QColor back = palette.color(QPalette::Disabled, QPalette::Window);
    const QColor text = palette.color(QPalette::Disabled, QPalette::WindowText);
    EXPECT_EQ(back.rgb() & 0xFFFFFF, BackOf(name)) << name;
    EXPECT_GT(std::abs(qGray(back.rgb()) - qGray(text.rgb())), 70) << name;
  }
}

// Bringing the tick in line

TEST_F(RiskSummaryTest, ComingToATaskTicksItWhenItsIndexFell) {
  GivenTasks({"Feed"});
  GivenIndexes(5, 2);
  OpenForm();
  ClickRow("DB1", 1);
  EXPECT_TRUE(IsChecked("RskRdsdtnY_N"));
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "Yes");
  EXPECT_EQ(Stored("RskRdsdtnY_N"), (QStringList{"0", "0"})) << "stored with the next save only";
  ClickRow("DB1", 0);
  EXPECT_EQ(Stored("RskRdsdtnY_N"), (QStringList{"0", "1"}));
}

TEST_F(RiskSummaryTest, ATickByHandIsTakenBackOnTheNextVisit) {
  GivenIndexes(2, 2);
  OpenOn({"Clean"});
  SetCheck("RskRdsdtnY_N", true);
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "Yes");
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("RskRdsdtnY_N").first(), "1");
  ClickRow("DB1", 0);
  EXPECT_FALSE(IsChecked("RskRdsdtnY_N"));
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "May require further risk reduction.");
  CloseForm();
  EXPECT_EQ(Stored("RskRdsdtnY_N").first(), "0");
}

TEST_F(RiskSummaryTest, OnlyTheWholePartOfAnIndexCounts) {
  ChangeTask(GivenTask({{"FuntnTaskMachry", "Feed"}}), "RiskIndex=4.9, RiskIndexAftr=4.2");
  OpenForm();
  EXPECT_EQ(TextOf("RIBRtxt"), "4 (Medium Risk)");
  EXPECT_EQ(TextOf("RIARtxt"), "4 (Medium Risk)");
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "May require further risk reduction.");
}

TEST_F(RiskSummaryTest, AnIndexThatIsNoNumberIsToldWhenTheFormComesUp) {
  GivenTask({{"FuntnTaskMachry", "Feed"}, {"RiskIndex", "a lot"}});
  ExpectTell("RiskIndex holds \"a lot\" in place of a number.", Icon::kCritical);
  OpenForm();
  EXPECT_EQ(TextOf("FuntnTaskMachry"), "Feed");
  EXPECT_EQ(TextOf("RIBRtxt"), "0");
}

TEST_F(RiskSummaryTest, WithoutTasksActivationShowsNothingNew) {
  session.RiskIndexBefore = 3;
  OpenForm();
  EXPECT_EQ(TextOf("RIBRtxt"), "0");
  EXPECT_EQ(TextOf("ClassScorLBL"), "0");
  EXPECT_EQ(session.RiskIndexBefore, 3);
}

}  // namespace
}  // namespace kestrix
