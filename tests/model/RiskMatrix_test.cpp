#include "estimation/model/RiskMatrix.h"

#include <gtest/gtest.h>

#include <QString>

namespace kestrix::model {
namespace {

using Kind = MatrixResult::Kind;

TEST(RiskMatrixTest, CellsAreNamedInRowsFromTheBottom) {
  ASSERT_EQ(kMatrixCells.size(), 20U);
  for (std::size_t place = 0; place < kMatrixCells.size(); ++place) {
    EXPECT_EQ(kMatrixCells[place].name, QString("Rsk%1").arg(place + 1));
  }
}

TEST(RiskMatrixTest, ScoresThatNoStatementGivesNameNoCell) {
  const std::pair<int, int> scores[] = {{1, 16},        {4, 16},         {5, 1},  {5, 15},
                                        {5, 16},        {-1, 4},         {1, -1}, {-1, -1},
                                        {32767, 32767}, {-32768, -32768}};
  for (const auto& [severity, cl] : scores) {
    const MatrixResult result = CellOf(severity, cl);
    EXPECT_EQ(result.kind, Kind::kUnchanged) << severity << ", " << cl;
    EXPECT_EQ(result.cell, nullptr);
  }
}

TEST(RiskMatrixTest, ClassIsTheSumOfThreeScoresWithinSixteenBits) {
  EXPECT_EQ(ClassOf(2, 1, 1), 4);
  EXPECT_EQ(ClassOf(5, 5, 5), 15);
  EXPECT_EQ(ClassOf(0, 0, 0), 0);
  EXPECT_EQ(ClassOf(2, 0, 0), 2);
  EXPECT_EQ(ClassOf(32767, 0, 0), 32767);
  EXPECT_EQ(ClassOf(32766, 0, 1), 32767);
  EXPECT_EQ(ClassOf(-32768, 0, 0), -32768);
  EXPECT_EQ(ClassOf(32767, 1, 0), std::nullopt);
  EXPECT_EQ(ClassOf(32766, 1, 1), std::nullopt);
  EXPECT_EQ(ClassOf(-32768, -1, 0), std::nullopt);
  // The sum is taken step by step, so a way through too large a number fails as well.
  EXPECT_EQ(ClassOf(30000, 10000, -20000), std::nullopt);
}

TEST(RiskMatrixTest, ScoreTextsAreCutToTheirWholePart) {
  EXPECT_EQ(WholePartOf(u"0"), 0);
  EXPECT_EQ(WholePartOf(u"5"), 5);
  EXPECT_EQ(WholePartOf(u"3.9"), 3);
  EXPECT_EQ(WholePartOf(u"-3.9"), -3);
  EXPECT_EQ(WholePartOf(u" 4 "), 4);
  EXPECT_EQ(WholePartOf(u"32767.9"), 32767);
  EXPECT_EQ(WholePartOf(u"-32768"), -32768);
}

TEST(RiskMatrixTest, TextWithoutANumberOrOfOneOutsideSixteenBitsIsNone) {
  for (const QStringView text :
       {u"", u" ", u"N.A.", u"three", u"1 2", u"3,5x", u"nan", u"inf", u"32768", u"-32769", u"1e9"})
    EXPECT_EQ(WholePartOf(text), std::nullopt) << text.toString().toStdString();
}

}  // namespace
}  // namespace kestrix::model
