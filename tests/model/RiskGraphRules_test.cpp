#include "estimation/model/RiskGraphRules.h"

#include <gmock/gmock.h>

#include <QString>
#include <QStringList>
#include <map>
#include <tuple>

namespace kestrix::model {
namespace {

using ::testing::ElementsAreArray;

// Every text that a level box or a level field may hold, and some that it never should.
const std::vector<QString> kSeverityTexts{"None.", "S1, Slight",  "S2, Serious", "Reset",
                                          "",      "N.A.",        "none.",       "S1, slight",
                                          "S1",    "S2, Serious "};
const std::vector<QString> kExposureTexts{"F1, F2", "F1, Seldom", "F2, Frequent", "",       "N.A.",
                                          "Reset",  "F1",         "f1, f2",       "F1, F2 "};
const std::vector<QString> kOccurrenceTexts{"O1, Low", "O2, Midium", "O3, High",   "",
                                            "N.A.",    "O1, O2",     "O2, Medium", "o1, low"};
const std::vector<QString> kAvoidanceTexts{"A1, Possible", "A2, Impossible", "", "N.A.",
                                           "A1",           "a1, possible"};

std::vector<QString> TextsOf(const LineNames& lines) {
  std::vector<QString> texts;
  for (const QStringView line : lines) texts.push_back(line.toString());
  return texts;
}

struct AvoidanceRow {
  QString avoidance, occurrence, exposure, line, label;
  int index;
};

const std::vector<AvoidanceRow> kAvoidanceRows{
    {"A1, Possible", "O2, Midium", "F1, F2", "AAng0", "RILbl0", 0},
    {"A2, Impossible", "O2, Midium", "F1, F2", "AH1", "RILb1", 1},
    {"A1, Possible", "O3, High", "F1, F2", "AAng1", "RILb1", 1},
    {"A2, Impossible", "O3, High", "F1, F2", "AH2", "RILb2", 2},
    {"A1, Possible", "O3, High", "F1, F2", "AAng1", "RILb1", 1},
    {"A2, Impossible", "O1, Low", "F1, F2", "AH2", "RILb2", 2},
    {"A1, Possible", "O1, Low", "F1, Seldom", "AAng1", "RILb1", 1},
    {"A2, Impossible", "O1, Low", "F1, Seldom", "AH2", "RILb2", 2},
    {"A1, Possible", "O2, Midium", "F1, Seldom", "AAng2", "RILb2", 2},
    {"A2, Impossible", "O2, Midium", "F1, Seldom", "AH3", "RILbl3", 3},
    {"A1, Possible", "O3, High", "F1, Seldom", "AAng3", "RILbl3", 3},
    {"A2, Impossible", "O3, High", "F1, Seldom", "AH4", "RILbl4", 4},
    {"A1, Possible", "O1, Low", "F2, Frequent", "AAng3", "RILbl3", 3},
    {"A2, Impossible", "O1, Low", "F2, Frequent", "AH4", "RILbl4", 4},
    {"A1, Possible", "O2, Midium", "F2, Frequent", "AAng4", "RILbl4", 4},
    {"A2, Impossible", "O2, Midium", "F2, Frequent", "AH5", "RILbl5", 5},
    {"A1, Possible", "O3, High", "F2, Frequent", "AAng5", "RILbl5", 5},
    {"A2, Impossible", "O3, High", "F2, Frequent", "AH6", "RILbl6", 6}};

TEST(RiskGraphRulesTest, EveryCombinationOfTextsHasTheIndexOfItsPathOrNone) {
  const auto unset = [](const QString& text) { return text.isEmpty() || text == "N.A."; };
  std::map<std::tuple<QString, QString, QString>, int> ends;
  for (const AvoidanceRow& row : kAvoidanceRows)
    ends[{row.exposure, row.occurrence, row.avoidance}] = row.index;
  int with_index = 0;
  int combinations = 0;
  for (const QString& severity : kSeverityTexts) {
    for (const QString& exposure : kExposureTexts) {
      for (const QString& occurrence : kOccurrenceTexts) {
        for (const QString& avoidance : kAvoidanceTexts) {
          std::optional<int> expected;
          if (const auto end = ends.find({exposure, occurrence, avoidance}); end != ends.end()) {
            expected = end->second;
          } else if (exposure == "F1, F2" && occurrence == "O1, Low" && unset(avoidance)) {
            expected = 0;
          } else if (severity == "None." && unset(exposure) && unset(occurrence) &&
                     unset(avoidance)) {
            expected = 0;
          }
          EXPECT_EQ(RiskIndexOf(severity, exposure, occurrence, avoidance), expected)
              << QStringList{severity, exposure, occurrence, avoidance}.join(" | ").toStdString();
          ++combinations;
          if (expected) ++with_index;
        }
      }
    }
  }
  EXPECT_EQ(combinations, 10 * 9 * 8 * 6);
  // 17 ends and 2 unset words of the short path under each of 10 severities, 8 ways to leave
  // "None.".
  EXPECT_EQ(with_index, 10 * (17 + 2) + 2 * 2 * 2);
}

TEST(RiskGraphRulesTest, EverySeverityLightsItsLines) {
  const auto lines = [](QStringView severity) { return TextsOf(SeverityRuleFor(severity)->lines); };
  EXPECT_THAT(lines(u"None."), ElementsAreArray({"SV2", "SV3", "NoneLn", "NoneLn2"}));
  EXPECT_THAT(lines(u"S1, Slight"), ElementsAreArray({"SV2", "SEH1_2"}));
  EXPECT_THAT(lines(u"S2, Serious"), ElementsAreArray({"SV1", "SH3"}));
  EXPECT_EQ(kSeverityRules.size(), 3U);
}

TEST(RiskGraphRulesTest, OnlyNoneEndsThePathAtTheSeverity) {
  EXPECT_EQ(SeverityRuleFor(u"None.")->index, 0);
  EXPECT_EQ(SeverityRuleFor(u"None.")->index_label, u"RILbl0");
  for (const QStringView severity : {u"S1, Slight", u"S2, Serious"}) {
    EXPECT_EQ(SeverityRuleFor(severity)->index, std::nullopt);
    EXPECT_TRUE(SeverityRuleFor(severity)->index_label.isEmpty());
  }
}

TEST(RiskGraphRulesTest, OtherSeveritiesHaveNoRule) {
  for (const QString& severity : kSeverityTexts) {
    const bool known = severity == "None." || severity == "S1, Slight" || severity == "S2, Serious";
    EXPECT_EQ(SeverityRuleFor(severity) != nullptr, known) << severity.toStdString();
  }
}

TEST(RiskGraphRulesTest, ExposureCountsBehindItsOwnSeverityOnly) {
  const std::map<std::pair<QString, QString>, std::vector<QString>> rules{
      {{"F1, F2", "S1, Slight"}, {"SEH1_2"}},
      {{"F1, Seldom", "S2, Serious"}, {"FV1", "FH3"}},
      {{"F2, Frequent", "S2, Serious"}, {"FV2", "FH4"}}};
  std::size_t found = 0;
  for (const QString& exposure : kExposureTexts) {
    for (const QString& severity : kSeverityTexts) {
      const ExposureRule* rule = ExposureRuleFor(exposure, severity);
      const auto expected = rules.find({exposure, severity});
      ASSERT_EQ(rule != nullptr, expected != rules.end())
          << exposure.toStdString() << " | " << severity.toStdString();
      if (rule == nullptr) continue;
      EXPECT_EQ(TextsOf(rule->lines), expected->second);
      ++found;
    }
  }
  EXPECT_EQ(found, rules.size());
  EXPECT_EQ(kExposureRules.size(), rules.size());
}

TEST(RiskGraphRulesTest, OccurrenceHasNineRules) {
  const std::map<std::pair<QString, QString>, std::vector<QString>> rules{
      {{"O1, Low", "F1, F2"}, {"OAng0", "NoneLn2"}}, {{"O2, Midium", "F1, F2"}, {"OH2"}},
      {{"O3, High", "F1, F2"}, {"OAng1"}},           {{"O1, Low", "F1, Seldom"}, {"OAng2"}},
      {{"O2, Midium", "F1, Seldom"}, {"OH3"}},       {{"O3, High", "F1, Seldom"}, {"OAng3"}},
      {{"O1, Low", "F2, Frequent"}, {"OAng4"}},      {{"O2, Midium", "F2, Frequent"}, {"OH4"}},
      {{"O3, High", "F2, Frequent"}, {"OAng5"}}};
  std::size_t found = 0;
  for (const QString& occurrence : kOccurrenceTexts) {
    for (const QString& exposure : kExposureTexts) {
      const OccurrenceRule* rule = OccurrenceRuleFor(occurrence, exposure);
      const auto expected = rules.find({occurrence, exposure});
      ASSERT_EQ(rule != nullptr, expected != rules.end())
          << occurrence.toStdString() << " | " << exposure.toStdString();
      if (rule == nullptr) continue;
      EXPECT_EQ(TextsOf(rule->lines), expected->second);
      const bool ends = occurrence == "O1, Low" && exposure == "F1, F2";
      EXPECT_EQ(rule->index.has_value(), ends);
      EXPECT_EQ(rule->index, ends ? std::optional<int>(0) : std::nullopt);
      EXPECT_EQ(rule->index_label.toString(), ends ? QString("RILbl0") : QString());
      ++found;
    }
  }
  EXPECT_EQ(found, rules.size());
  EXPECT_EQ(kOccurrenceRules.size(), rules.size());
}

TEST(RiskGraphRulesTest, AvoidanceRulesStandInTheirOrder) {
  ASSERT_EQ(kAvoidanceRules.size(), kAvoidanceRows.size());
  for (std::size_t row = 0; row < kAvoidanceRows.size(); ++row) {
    const AvoidanceRule& rule = kAvoidanceRules[row];
    const AvoidanceRow& expected = kAvoidanceRows[row];
    EXPECT_EQ(rule.avoidance, expected.avoidance) << row + 1;
    EXPECT_EQ(rule.occurrence, expected.occurrence) << row + 1;
    EXPECT_EQ(rule.exposure, expected.exposure) << row + 1;
    EXPECT_EQ(rule.line, expected.line) << row + 1;
    EXPECT_EQ(rule.index_label, expected.label) << row + 1;
    EXPECT_EQ(rule.index, expected.index) << row + 1;
  }
}

TEST(RiskGraphRulesTest, FirstFittingAvoidanceRuleCounts) {
  int found = 0;
  for (const QString& avoidance : kAvoidanceTexts) {
    for (const QString& occurrence : kOccurrenceTexts) {
      for (const QString& exposure : kExposureTexts) {
        const auto first = std::ranges::find_if(kAvoidanceRules, [&](const AvoidanceRule& rule) {
          return rule.avoidance == avoidance && rule.occurrence == occurrence &&
                 rule.exposure == exposure;
        });
        const AvoidanceRule* expected = first == kAvoidanceRules.end() ? nullptr : &*first;
        EXPECT_EQ(AvoidanceRuleFor(avoidance, occurrence, exposure), expected)
            << QStringList{avoidance, occurrence, exposure}.join(" | ").toStdString();
        if (expected != nullptr) ++found;
      }
    }
  }
  EXPECT_EQ(found, 17) << "eighteen rows, one of them told twice";
}

}  // namespace
}  // namespace kestrix::model
