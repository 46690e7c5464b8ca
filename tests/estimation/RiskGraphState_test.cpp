#include "estimation/RiskGraphState.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

#include "estimation/model/RiskGraphRules.h"

namespace kestrix {
namespace {

using model::Stage;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RiskGraphStateTest : public ::testing::Test {
 protected:
  void LightEverything() {
    for (const auto& line : risk_graph::kLines) state_.Light(line.name);
    for (const auto& label : risk_graph::kIndexLabels) state_.LightIndexLabel(label.name);
  }

  RiskGraphState state_;
};

TEST_F(RiskGraphStateTest, NothingIsLitAtFirst) {
  EXPECT_EQ(state_.marks().stage, Stage::kBefore);
  EXPECT_THAT(state_.marks().LitLines(), IsEmpty());
  EXPECT_THAT(state_.marks().LitIndexLabels(), IsEmpty());
  EXPECT_EQ(state_.markedCell(), QString());
}

TEST_F(RiskGraphStateTest, LitLinesAreToldInTheOrderOfTheTable) {
  state_.Light(model::OccurrenceRuleFor(u"O1, Low", u"F1, F2")->lines);
  state_.Light(model::SeverityRuleFor(u"S1, Slight")->lines);
  EXPECT_THAT(state_.marks().LitLines(), ElementsAre("SV2", "SEH1_2", "NoneLn2", "OAng0"));
}

TEST_F(RiskGraphStateTest, EachStepPutsOutItsOwnLines) {
  for (const auto group : {risk_graph::kSeverityGroup, risk_graph::kExposureGroup,
                           risk_graph::kOccurrenceGroup, risk_graph::kAvoidanceGroup}) {
    LightEverything();
    ASSERT_EQ(state_.marks().LitLines().size(), 32);
    state_.PutOut(group);
    for (const auto& line : risk_graph::kLines) {
      const bool expected = line.groups != 0 && !line.IsIn(group);
      EXPECT_EQ(state_.marks().LitStageOf(line.name).has_value(), expected)
          << line.name.toString().toStdString();
    }
    EXPECT_EQ(state_.marks().LitIndexLabels().size(), 7) << "lines and labels are put out apart";
  }
}

TEST_F(RiskGraphStateTest, SharedStretchGoesDarkWithEitherOfItsGroups) {
  state_.Light(u"NoneLn2");
  state_.PutOut(risk_graph::kSeverityGroup);
  EXPECT_THAT(state_.marks().LitLines(), IsEmpty());
  state_.Light(u"NoneLn2");
  state_.PutOut(risk_graph::kOccurrenceGroup);
  EXPECT_THAT(state_.marks().LitLines(), IsEmpty());
}

TEST_F(RiskGraphStateTest, UnknownNamesChangeNothing) {
  QSignalSpy lines(&state_, &RiskGraphState::LitLinesChanged);
  QSignalSpy labels(&state_, &RiskGraphState::LitIndexLabelsChanged);
  QSignalSpy marker(&state_, &RiskGraphState::MarkedCellChanged);
  state_.Light(u"sv1");
  state_.Light(u"strtLin1");  // the start is never lit
  state_.LightIndexLabel(u"RILbl1");
  state_.MarkCell(u"Rsk21");
  EXPECT_EQ(lines.size() + labels.size() + marker.size(), 0);
  EXPECT_THAT(state_.marks().LitLines(), IsEmpty());
  EXPECT_THAT(state_.marks().LitIndexLabels(), IsEmpty());
  EXPECT_EQ(state_.markedCell(), QString());
}

TEST_F(RiskGraphStateTest, LineKeepsTheColourInWhichItWasLit) {
  state_.Light(u"SV1");
  state_.SetStage(Stage::kAfter);
  state_.Light(u"SH3");
  EXPECT_EQ(state_.marks().LitStageOf(u"SV1"), Stage::kBefore);
  EXPECT_EQ(state_.marks().LitStageOf(u"SH3"), Stage::kAfter);
  state_.Light(u"SV1");
  EXPECT_EQ(state_.marks().LitStageOf(u"SV1"), Stage::kAfter);
  EXPECT_EQ(state_.marks().LitStageOf(u"SV2"), std::nullopt);
}

TEST_F(RiskGraphStateTest, IndexLabelsGoWhiteTogether) {
  state_.LightIndexLabel(u"RILbl6");
  state_.LightIndexLabel(u"RILb2");
  EXPECT_THAT(state_.marks().LitIndexLabels(), ElementsAre("RILb2", "RILbl6"));
  EXPECT_TRUE(state_.marks().IsIndexLabelLit(u"RILb2"));
  state_.PutOutIndexLabels();
  EXPECT_THAT(state_.marks().LitIndexLabels(), IsEmpty());
  EXPECT_FALSE(state_.marks().IsIndexLabelLit(u"RILb2"));
}

TEST_F(RiskGraphStateTest, MarkerMovesToItsCellAndComesBackThereWhenHidden) {
  state_.MarkCell(u"Rsk17");
  EXPECT_EQ(state_.markedCell(), "Rsk17");
  EXPECT_EQ(risk_graph::MarkerPlaceOn(*state_.marks().cell),
            QRect(9165 + 270, 3090 + 140, 375, 300));
  state_.HideMarker();
  EXPECT_EQ(state_.markedCell(), QString());
  state_.MarkCell(u"Rsk17");
  EXPECT_EQ(state_.markedCell(), "Rsk17");
}

TEST_F(RiskGraphStateTest, EveryChangeIsToldOnceAndNoChangeIsNot) {
  QSignalSpy lines(&state_, &RiskGraphState::LitLinesChanged);
  QSignalSpy labels(&state_, &RiskGraphState::LitIndexLabelsChanged);
  QSignalSpy marker(&state_, &RiskGraphState::MarkedCellChanged);
  QSignalSpy stage(&state_, &RiskGraphState::StageChanged);
  state_.PutOut(risk_graph::kSeverityGroup);
  state_.PutOutIndexLabels();
  state_.HideMarker();
  state_.SetStage(Stage::kBefore);
  EXPECT_EQ(lines.size() + labels.size() + marker.size() + stage.size(), 0);

  const auto twice = [this] {
    state_.Light(model::SeverityRuleFor(u"None.")->lines);
    state_.LightIndexLabel(u"RILbl0");
    state_.MarkCell(u"Rsk1");
  };
  twice();
  twice();
  EXPECT_EQ(lines.size(), 1);
  EXPECT_EQ(labels.size(), 1);
  EXPECT_EQ(marker.size(), 1);

  state_.SetStage(Stage::kAfter);
  EXPECT_EQ(stage.size(), 1);
  state_.Light(u"SV2");
  EXPECT_EQ(lines.size(), 2) << "the colour of a lit line is news";
}

}  // namespace
}  // namespace kestrix
