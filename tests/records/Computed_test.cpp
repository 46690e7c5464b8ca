#include "records/Computed.h"

#include <gtest/gtest.h>

#include "support/Printers.h"

namespace kestrix::testing {
namespace {

using records::Band;
using records::Stage;

Stage StageWith(const char* severity, const char* exposure, const char* occurrence,
                const char* avoidance) {
  Stage stage;
  const char* const levels[] = {severity, exposure, occurrence, avoidance};
  for (std::size_t i = 0; i < 4; ++i) stage.levels[i] = QString::fromUtf8(levels[i]);
  return stage;
}

TEST(ComputedTest, AFinishedPathHasItsIndexBandAndLines) {
  const auto computed =
      Compute(StageWith("S2, Serious", "F2, Frequent", "O3, High", "A2, Impossible"));
  EXPECT_EQ(computed.index, 6);
  EXPECT_EQ(computed.index_band, QStringLiteral("High Risk"));
  EXPECT_TRUE(computed.estimated);
  EXPECT_EQ(computed.lit.join(u' '), QStringLiteral("SV1 SH3 FV2 FH4 OAng5 AH6"));
}

TEST(ComputedTest, ResetIsNotEstimatedEvenWithAPathBehindIt) {
  const auto computed = Compute(StageWith("Reset", "F2, Frequent", "O3, High", "A2, Impossible"));
  EXPECT_FALSE(computed.estimated);
  EXPECT_EQ(IndexBandOf(computed), Band::kNotEstimated);
  EXPECT_EQ(TextOf(IndexBandOf(computed)), QStringLiteral("Not estimated"));
}

TEST(ComputedTest, NoHazardIsAnEstimation) {
  const auto computed = Compute(StageWith("None.", "N.A.", "N.A.", "N.A."));
  EXPECT_EQ(computed.index, 0);
  EXPECT_TRUE(computed.estimated);
  EXPECT_EQ(computed.lit.join(u' '), QStringLiteral("SV2 SV3 NoneLn NoneLn2"));
}

TEST(ComputedTest, ScoresGiveClassCellAndBand) {
  Stage stage = StageWith("Reset", "N.A.", "N.A.", "N.A.");
  EXPECT_TRUE(Compute(stage).class_band.isEmpty());
  stage.scores = {4, 2, 1, 3, 0};
  const auto computed = Compute(stage);
  EXPECT_EQ(computed.class_score, 6);
  ASSERT_NE(computed.cell, nullptr);
  EXPECT_EQ(computed.cell->name, u"Rsk17");
  EXPECT_EQ(computed.class_band, QStringLiteral("Medium Risk"));
  EXPECT_EQ(HigherBandOf(computed), Band::kMedium);
}

TEST(ComputedTest, ScoresBeyondAllStatementsHaveNoCell) {
  Stage stage = StageWith("Reset", "N.A.", "N.A.", "N.A.");
  stage.scores = {9, Q_INT64_C(9223372036854775807), Q_INT64_C(9223372036854775807), 3, 0};
  const auto computed = Compute(stage);
  EXPECT_EQ(computed.cell, nullptr);
  EXPECT_TRUE(computed.class_band.isEmpty());
}

TEST(ComputedTest, TheVerdictComparesTheStoredIndexes) {
  records::Task task;
  task.before = StageWith("S2, Serious", "F2, Frequent", "O3, High", "A2, Impossible");
  task.after = StageWith("Reset", "N.A.", "N.A.", "N.A.");
  task.before.index = 6;
  const auto computed = Compute(task);
  EXPECT_TRUE(computed.reduced);
  EXPECT_EQ(computed.verdict, QStringLiteral("Yes"));
  EXPECT_EQ(computed.VerdictText(), QStringLiteral("Yes (not estimated)"));
  EXPECT_EQ(&computed.Final(), &computed.before);
}

struct Path {
  const char* severity;
  const char* exposure;
  const char* occurrence;
  const char* avoidance;
  const char* lit;
};

class LitPathTest : public ::testing::TestWithParam<Path> {};

TEST_P(LitPathTest, IsWhatChoosingTheLevelsLeavesLit) {
  const Path& path = GetParam();
  const records::Stage stage =
      StageWith(path.severity, path.exposure, path.occurrence, path.avoidance);
  EXPECT_EQ(Compute(stage).lit.join(u' '), QString::fromUtf8(path.lit));
}

INSTANTIATE_TEST_SUITE_P(
    Stored, LitPathTest,
    ::testing::Values(
        Path{"Reset", "N.A.", "N.A.", "N.A.", ""},
        Path{"S1, Slight", "N.A.", "N.A.", "N.A.", "SV2 SEH1_2"},
        Path{"S1, Slight", "F1, F2", "O1, Low", "N.A.", "SV2 SEH1_2 OAng0 NoneLn2"},
        // The severity has filled in the exposure, which was never stored.
        Path{"S1, Slight", "N.A.", "O3, High", "A2, Impossible", "SV2 SEH1_2 OAng1 AH2"},
        // An avoidance that outlived its path.
        Path{"S1, Slight", "F1, F2", "O1, Low", "A2, Impossible", "SV2 SEH1_2 OAng0 NoneLn2 AH2"},
        // Nothing goes on behind "None.".
        Path{"None.", "N.A.", "O9", "N.A.", "SV2 SV3 NoneLn NoneLn2"},
        Path{"S2, Serious", "F1, F2", "N.A.", "N.A.", "SV1 SH3"}));

}  // namespace
}  // namespace kestrix::testing
