#include "estimation/model/RiskLevels.h"

#include <gmock/gmock.h>

#include <QString>
#include <set>

namespace kestrix::model {
namespace {

using ::testing::ElementsAre;

std::vector<QString> TextsOf(std::span<const QStringView> views) {
  std::vector<QString> texts;
  for (const QStringView view : views) texts.push_back(view.toString());
  return texts;
}

TEST(RiskLevelsTest, EveryBoxOffersItsItemsInOrder) {
  EXPECT_THAT(TextsOf(kSeverityItems), ElementsAre("None.", "S1, Slight", "S2, Serious", "Reset"));
  EXPECT_THAT(TextsOf(kOccurrenceItems), ElementsAre("O1, Low", "O2, Midium", "O3, High"));
  EXPECT_THAT(TextsOf(kAvoidanceItems), ElementsAre("A1, Possible", "A2, Impossible"));
}

TEST(RiskLevelsTest, ExposureItemsFollowTheSeverity) {
  EXPECT_THAT(TextsOf(ExposureItemsOf(u"S1, Slight")), ElementsAre("F1, F2"));
  EXPECT_THAT(TextsOf(ExposureItemsOf(u"S2, Serious")), ElementsAre("F1, Seldom", "F2, Frequent"));
}

TEST(RiskLevelsTest, NoOtherSeverityOffersAnExposure) {
  for (const QStringView severity : {u"None.", u"Reset", u"", u"N.A.", u"s1, slight",
                                     u"S1, Slight ", u" S2, Serious", u"S3, Fatal"}) {
    EXPECT_TRUE(ExposureItemsOf(severity).empty()) << severity.toString().toStdString();
  }
}

TEST(RiskLevelsTest, ResetIsTheUnsetWordOfSeverityAndNAOfTheOthers) {
  EXPECT_EQ(UnsetWordOf(Parameter::kSeverity), u"Reset");
  EXPECT_EQ(UnsetWordOf(Parameter::kExposure), u"N.A.");
  EXPECT_EQ(UnsetWordOf(Parameter::kOccurrence), u"N.A.");
  EXPECT_EQ(UnsetWordOf(Parameter::kAvoidance), u"N.A.");
}

TEST(RiskLevelsTest, OnlyTheEmptyTextAndNAAreUnsetLevels) {
  EXPECT_TRUE(IsUnsetLevel(u""));
  EXPECT_TRUE(IsUnsetLevel(QString()));
  EXPECT_TRUE(IsUnsetLevel(u"N.A."));
  EXPECT_FALSE(IsUnsetLevel(u"n.a."));
  EXPECT_FALSE(IsUnsetLevel(u" "));
  EXPECT_FALSE(IsUnsetLevel(u"Reset"));
  EXPECT_FALSE(IsUnsetLevel(u"O1, Low"));
}

TEST(RiskLevelsTest, TextsAreTheSameOnlyWhenEveryCharacterIs) {
  EXPECT_TRUE(SameText(u"O2, Midium", QString("O2, Midium")));
  EXPECT_TRUE(SameText(QString(), u""));
  EXPECT_FALSE(SameText(u"O2, Midium", u"O2, Medium"));
  EXPECT_FALSE(SameText(u"O2, Midium", u"o2, midium"));
  EXPECT_FALSE(SameText(u"O2, Midium", u"O2, Midium "));
}

TEST(RiskLevelsTest, BeforeStageHasItsFields) {
  const StageFields& fields = FieldsOf(Stage::kBefore);
  EXPECT_THAT(TextsOf(fields.level),
              ElementsAre("SevertyCbo", "ExposureCbo", "occurrenceCbo", "avoidanceCbo"));
  EXPECT_EQ(fields.risk_index, u"RiskIndex");
  EXPECT_THAT(TextsOf(fields.statement),
              ElementsAre("Chk_OptnSe", "Chk_OptnEx", "Chk_OptnOc", "Chk_OptnAv"));
  EXPECT_THAT(TextsOf(fields.score),
              ElementsAre("1Chk_OptnSltd", "2Chk_OptnSltd", "3Chk_OptnSltd", "4Chk_OptnSltd"));
  EXPECT_EQ(fields.spare_score, u"5Chk_OptnSltd");
  EXPECT_EQ(fields.picture, u"PicBfrRcmdtn");
}

TEST(RiskLevelsTest, AfterStageHasTheTwinFields) {
  const StageFields& before = FieldsOf(Stage::kBefore);
  const StageFields& after = FieldsOf(Stage::kAfter);
  const QString aftr = "Aftr";
  for (const Parameter parameter : kParameters) {
    EXPECT_EQ(after.LevelOf(parameter), before.LevelOf(parameter).toString() + aftr);
    EXPECT_EQ(after.StatementOf(parameter), before.StatementOf(parameter).toString() + aftr);
    EXPECT_EQ(after.ScoreOf(parameter), before.ScoreOf(parameter).toString() + aftr);
  }
  EXPECT_EQ(after.risk_index, u"RiskIndexAftr");
  EXPECT_EQ(after.spare_score, u"5Chk_OptnSltdAftr");
  EXPECT_EQ(after.picture, u"PicAftrRcmdtn");
}

TEST(RiskLevelsTest, NoFieldServesTwoMeanings) {
  std::set<QString> names;
  for (const StageFields& fields : kStageFields) {
    for (const auto* group : {&fields.level, &fields.statement, &fields.score}) {
      for (const QStringView name : *group) names.insert(name.toString());
    }
    for (const QStringView name : {fields.risk_index, fields.spare_score, fields.picture}) {
      names.insert(name.toString());
    }
  }
  EXPECT_EQ(names.size(), 2U * 15U);
}

}  // namespace
}  // namespace kestrix::model
