#include "estimation/model/RiskBands.h"

#include <gtest/gtest.h>

#include <QString>
#include <vector>

#include "estimation/model/RiskGraphRules.h"
#include "estimation/model/RiskMatrix.h"

namespace kestrix::model {
namespace {

constexpr Rgb kGreenOfLow = 0x80FF80;
constexpr Rgb kOrangeOfMedium = 0xFFC080;
constexpr Rgb kRedOfHigh = 0xFF0000;
constexpr Rgb kGreenOfNone = 0x00C000;

struct Row {
  int index;
  QString text, word;
  Rgb colour;
};

const std::vector<Row> kRows{{0, "No Risk", " (No Risk)", kGreenOfLow},
                             {1, "Low Risk", " (Low Risk)", kGreenOfLow},
                             {2, "Low Risk", " (Low Risk)", kGreenOfLow},
                             {3, "Medium Risk", " (Medium Risk)", kOrangeOfMedium},
                             {4, "Medium Risk", " (Medium Risk)", kOrangeOfMedium},
                             {5, "High Risk", " (High Risk)", kRedOfHigh},
                             {6, "High Risk", " (High Risk)", kRedOfHigh}};

TEST(RiskBandsTest, EveryIndexHasItsBand) {
  for (const Row& row : kRows) {
    const auto band = BandOfIndex(row.index);
    ASSERT_TRUE(band) << row.index;
    EXPECT_EQ(band->text, row.text) << row.index;
    EXPECT_EQ(band->colour, row.colour) << row.index;
  }
}

TEST(RiskBandsTest, EveryIndexHasItsLabel) {
  for (const Row& row : kRows) {
    const auto label = IndexLabelOf(row.index);
    ASSERT_TRUE(label) << row.index;
    EXPECT_EQ(label->word, row.word) << row.index;
    EXPECT_EQ(label->colour, row.colour) << row.index;
    EXPECT_EQ(IndexCaption(row.index), QString::number(row.index) + row.word);
  }
}

TEST(RiskBandsTest, NumbersOutsideZeroToSixHaveNoBand) {
  for (const int index : {-32768, -1, 7, 8, 15, 32767}) {
    EXPECT_FALSE(BandOfIndex(index)) << index;
    EXPECT_FALSE(IndexLabelOf(index)) << index;
    EXPECT_EQ(IndexCaption(index), QString::number(index));
  }
}

TEST(RiskBandsTest, VerdictComparesTheTwoIndexes) {
  for (int before = 0; before <= 6; ++before) {
    for (int after = 0; after <= 6; ++after) {
      const QString expected = before > after   ? "Yes"
                               : before < after ? "No"
                               : before != 0    ? "May require further risk reduction."
                                                : "No Risk";
      EXPECT_EQ(Verdict(before, after).toString(), expected) << before << " and " << after;
      EXPECT_EQ(IsReduced(before, after), before > after);
    }
  }
}

TEST(RiskBandsTest, UnfinishedAfterStageCountsAsReduced) {
  EXPECT_EQ(Verdict(4, 0), u"Yes");
  EXPECT_EQ(Verdict(0, 4), u"No");
}

TEST(RiskBandsTest, EqualIndexesMayRequireFurtherReduction) {
  EXPECT_EQ(Verdict(4, 4), u"May require further risk reduction.");
  EXPECT_EQ(Verdict(0, 0), u"No Risk");
}

// Columns 1 to 4, 5 to 7, 8 to 10, 11 to 13, 14 and 15; L, M and H for the three words.
const std::vector<QString> kWordsOfSeverity{"LLLMH", "LLMHH", "LMHHH", "MMHHH"};

int ColumnOf(int cl) {
  return cl <= 4 ? 0 : cl <= 7 ? 1 : cl <= 10 ? 2 : cl <= 13 ? 3 : 4;
}

TEST(RiskBandsTest, EveryClassHasTheWordOfItsCellInTheColourOfTheWord) {
  for (int severity = 1; severity <= 4; ++severity) {
    for (int cl = 1; cl <= 15; ++cl) {
      const QChar letter = kWordsOfSeverity[static_cast<std::size_t>(severity - 1)][ColumnOf(cl)];
      const auto band = ClassBandOf(severity, cl);
      ASSERT_TRUE(band) << severity << ", " << cl;
      EXPECT_EQ(band->word, letter == 'L'   ? u" (Low Risk)"
                            : letter == 'M' ? u" (Medium Risk)"
                                            : u" (High Risk)");
      EXPECT_EQ(band->colour, letter == 'L'   ? kGreenOfLow
                              : letter == 'M' ? kOrangeOfMedium
                                              : kRedOfHigh);
    }
  }
}

TEST(RiskBandsTest, ClassWithoutSeverityOrPointsIsNoRiskOnDarkerGreen) {
  for (int other = 0; other <= 16; ++other) {
    for (const auto& band : {ClassBandOf(0, other), ClassBandOf(other, 0)}) {
      ASSERT_TRUE(band) << other;
      EXPECT_EQ(band->word, u" (No Risk)");
      EXPECT_EQ(band->colour, kGreenOfNone);
    }
  }
}

TEST(RiskBandsTest, SeverityAboveFourOrClassAboveFifteenChangesNothing) {
  EXPECT_FALSE(ClassBandOf(5, 4));
  EXPECT_FALSE(ClassBandOf(4, 16));
  EXPECT_FALSE(ClassBandOf(5, 16));
  EXPECT_FALSE(ClassBandOf(-1, 4));
  EXPECT_FALSE(ClassBandOf(4, -1));
}

TEST(RiskBandsTest, CaptionIsTheNumberAndTheWord) {
  EXPECT_EQ(CaptionOf(2, *ClassBandOf(4, 2)), "2 (Medium Risk)");
  EXPECT_EQ(CaptionOf(0, *ClassBandOf(4, 0)), "0 (No Risk)");
  EXPECT_EQ(CaptionOf(15, *ClassBandOf(1, 15)), "15 (High Risk)");
}

TEST(RiskBandsTest, IndexAndMatrixOfOneTaskMayDisagree) {
  EXPECT_EQ(RiskIndexOf(u"S2, Serious", u"F2, Frequent", u"O3, High", u"A2, Impossible"), 6);
  EXPECT_EQ(BandOfIndex(6)->text, u"High Risk");
  EXPECT_EQ(CellOf(1, 4).band, u"Low Risk");
}

}  // namespace
}  // namespace kestrix::model
