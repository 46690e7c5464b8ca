#include "estimation/model/RiskBands.h"

#include <gtest/gtest.h>

#include <QString>

namespace kestrix::model {
namespace {

TEST(RiskBandsTest, NumbersOutsideZeroToSixHaveNoBand) {
  for (const int index : {-32768, -1, 7, 8, 15, 32767}) {
    EXPECT_FALSE(BandOfIndex(index)) << index;
    EXPECT_FALSE(IndexLabelOf(index)) << index;
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

TEST(RiskBandsTest, SeverityAboveFourOrClassAboveFifteenChangesNothing) {
  EXPECT_FALSE(ClassBandOf(5, 4));
  EXPECT_FALSE(ClassBandOf(4, 16));
  EXPECT_FALSE(ClassBandOf(5, 16));
  EXPECT_FALSE(ClassBandOf(-1, 4));
  EXPECT_FALSE(ClassBandOf(4, -1));
}

}  // namespace
}  // namespace kestrix::model
