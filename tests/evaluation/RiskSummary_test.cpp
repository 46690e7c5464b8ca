// What the form shows of the estimation.
#include <QLabel>

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

struct Index {
  int index;
  const char* caption;
  QRgb colour;
};

class RiskEvalFrm_1IndexTest : public RiskSummaryTest,
                               public ::testing::WithParamInterface<Index> {};

TEST_P(RiskEvalFrm_1IndexTest, ReadsWithItsWordAndColourBeforeAndAfter) {
  GivenIndexes(GetParam().index, GetParam().index);
  OpenForm();
  EXPECT_EQ(TextOf("RIBRtxt"), GetParam().caption);
  EXPECT_EQ(BackOf("RIBRtxt"), GetParam().colour);
  EXPECT_EQ(TextOf("RIARtxt"), GetParam().caption);
  EXPECT_EQ(BackOf("RIARtxt"), GetParam().colour);
}

INSTANTIATE_TEST_SUITE_P(
    Indexes, RiskEvalFrm_1IndexTest,
    ::testing::Values(Index{0, "0 (No Risk)", kLow}, Index{1, "1 (Low Risk)", kLow},
                      Index{2, "2 (Low Risk)", kLow}, Index{3, "3 (Medium Risk)", kMedium},
                      Index{4, "4 (Medium Risk)", kMedium}, Index{5, "5 (High Risk)", kHigh},
                      Index{6, "6 (High Risk)", kHigh}));

TEST_F(RiskSummaryTest, AFallenIndexReadsYes) {
  GivenIndexes(5, 2);
  OpenForm();
  EXPECT_EQ(TextOf("RIBRtxt"), "5 (High Risk)");
  EXPECT_EQ(BackOf("RIBRtxt"), kHigh);
  EXPECT_EQ(TextOf("RIARtxt"), "2 (Low Risk)");
  EXPECT_EQ(BackOf("RIARtxt"), kLow);
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "Yes");
  EXPECT_EQ(session.RiskIndexBefore, 5);
  EXPECT_EQ(session.RiskIndexAfter, 2);
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

TEST_F(RiskSummaryTest, EqualIndexesMayRequireFurtherReduction) {
  GivenIndexes(4, 4);
  OpenForm();
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "May require further risk reduction.");
  EXPECT_EQ(Control<QWidget>("RskRdsdtnY_N").accessibleDescription(), TextOf("RskRdsdtnY_N"))
      << "the label beside the box only asks";
}

TEST_F(RiskSummaryTest, TwoZeroesReadNoRisk) {
  GivenIndexes(0, 0);
  OpenForm();
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "No Risk");
}

TEST_F(RiskSummaryTest, ARisenIndexReadsNo) {
  GivenIndexes(1, 3);
  OpenForm();
  EXPECT_EQ(TextOf("RskRdsdtnY_N"), "No");
}

TEST_F(RiskSummaryTest, AnIndexWithoutABandKeepsTheColourThatWasThere) {
  GivenIndexes(5, 5);
  GivenIndexes(7, 9);
  OpenForm();
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("RIBRtxt"), "7");
  EXPECT_EQ(BackOf("RIBRtxt"), kHigh);
  EXPECT_EQ(TextOf("RIARtxt"), "9");
  EXPECT_EQ(BackOf("RIARtxt"), kHigh);
}

TEST_F(RiskSummaryTest, AZeroBeforeStaysInTheAfterLabelBesideAnIndexWithoutABand) {
  GivenIndexes(0, 7);
  OpenForm();
  EXPECT_EQ(TextOf("RIBRtxt"), "0 (No Risk)");
  EXPECT_EQ(TextOf("RIARtxt"), "0 (No Risk)");
}

TEST_F(RiskSummaryTest, AnUnfinishedClassOfTwoIsMediumAtSeverityFour) {
  GivenScores(4, 2, 0, 0);
  OpenForm();
  EXPECT_EQ(TextOf("ClassScorLBL"), "2 (Medium Risk)");
  EXPECT_EQ(BackOf("ClassScorLBL"), kMedium);
  EXPECT_EQ(session.SeverityBefore, 4);
  EXPECT_EQ(session.ClassBefore, 2);
}

TEST_F(RiskSummaryTest, AClassOfZeroIsNoRisk) {
  GivenScores(4, 0, 0, 0);
  OpenForm();
  EXPECT_EQ(TextOf("ClassScorLBL"), "0 (No Risk)");
  EXPECT_EQ(BackOf("ClassScorLBL"), kNone);
}

TEST_F(RiskSummaryTest, AClassWithoutASeverityIsNoRisk) {
  GivenScores(0, 5, 5, 5);
  OpenForm();
  EXPECT_EQ(TextOf("ClassScorLBL"), "15 (No Risk)");
  EXPECT_EQ(BackOf("ClassScorLBL"), kNone);
}

TEST_F(RiskSummaryTest, ACellThatTheMatrixPaintsRedIsOrangeHereWhenItSaysMedium) {
  GivenScores(4, 2, 2, 2);
  OpenForm();
  EXPECT_EQ(TextOf("ClassScorLBL"), "6 (Medium Risk)");
  EXPECT_EQ(BackOf("ClassScorLBL"), kMedium);
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

TEST_F(RiskSummaryTest, ScoresOutsideTheMatrixKeepTheLabel) {
  GivenScores(1, 2, 1, 1);
  GivenScores(5, 2, 1, 1);
  GivenScores(1, 9, 9, 9);
  OpenForm();
  ASSERT_EQ(TextOf("ClassScorLBL"), "4 (Low Risk)");
  for (const int row : {1, 2}) {
    ClickRow("DB1", row);
    EXPECT_EQ(TextOf("ClassScorLBL"), "4 (Low Risk)");
    EXPECT_EQ(BackOf("ClassScorLBL"), kLow);
  }
}

/// The words of the matrix as the form shows them, by severity and class.
TEST_F(RiskSummaryTest, EveryCellOfTheMatrixReadsAsItsWord) {
  constexpr std::array<std::array<const char*, 5>, 4> kWords{{
      {"Low", "Low", "Low", "Medium", "High"},
      {"Low", "Low", "Medium", "High", "High"},
      {"Low", "Medium", "High", "High", "High"},
      {"Medium", "Medium", "High", "High", "High"},
  }};
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
  GivenTasks({"Clean"});
  OpenForm();
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
