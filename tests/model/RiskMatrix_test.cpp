#include "estimation/model/RiskMatrix.h"

#include <gtest/gtest.h>

#include <QString>
#include <set>

#include "estimation/model/Statements.h"

namespace kestrix::model {
namespace {

using Kind = MatrixResult::Kind;

struct Cell {
  int severity, least, greatest;
  QString name, band;
  Rgb colour;
};

const std::vector<Cell> kCells{
    {4, 1, 4, "Rsk16", "Medium Risk", 0xFFC080},  {4, 5, 7, "Rsk17", "Medium Risk", 0xFF0000},
    {4, 8, 10, "Rsk18", "High Risk", 0xFF0000},   {4, 11, 13, "Rsk19", "High Risk", 0xC000C0},
    {4, 14, 15, "Rsk20", "High Risk", 0xC000C0},  {3, 1, 4, "Rsk11", "Low Risk", 0x00C000},
    {3, 5, 7, "Rsk12", "Medium Risk", 0xFFC080},  {3, 8, 10, "Rsk13", "High Risk", 0xFF0000},
    {3, 11, 13, "Rsk14", "High Risk", 0xFF0000},  {3, 14, 15, "Rsk15", "High Risk", 0xC000C0},
    {2, 1, 4, "Rsk6", "Low Risk", 0x00C000},      {2, 5, 7, "Rsk7", "Low Risk", 0x00C000},
    {2, 8, 10, "Rsk8", "Medium Risk", 0xFFC080},  {2, 11, 13, "Rsk9", "High Risk", 0xFF0000},
    {2, 14, 15, "Rsk10", "High Risk", 0xFF0000},  {1, 1, 4, "Rsk1", "Low Risk", 0x00FF00},
    {1, 5, 7, "Rsk2", "Low Risk", 0x00C000},      {1, 8, 10, "Rsk3", "Low Risk", 0x00C000},
    {1, 11, 13, "Rsk4", "Medium Risk", 0xFFC080}, {1, 14, 15, "Rsk5", "High Risk", 0xFF0000}};

TEST(RiskMatrixTest, EveryClassOfEverySeverityHasItsCell) {
  int asked = 0;
  for (const Cell& cell : kCells) {
    for (int cl = cell.least; cl <= cell.greatest; ++cl) {
      const MatrixResult result = CellOf(cell.severity, cl);
      ASSERT_EQ(result.kind, Kind::kCell) << cell.severity << ", " << cl;
      EXPECT_EQ(result.cell->name, cell.name) << cell.severity << ", " << cl;
      EXPECT_EQ(result.cell->severity, cell.severity);
      EXPECT_EQ(result.cell->least_class, cell.least);
      EXPECT_EQ(result.cell->greatest_class, cell.greatest);
      EXPECT_EQ(result.band, cell.band) << cell.severity << ", " << cl;
      EXPECT_EQ(result.colour, cell.colour) << cell.severity << ", " << cl;
      ++asked;
    }
  }
  EXPECT_EQ(asked, 4 * 15);
}

TEST(RiskMatrixTest, CellsAreNamedInRowsFromTheBottom) {
  ASSERT_EQ(kMatrixCells.size(), 20U);
  for (std::size_t place = 0; place < kMatrixCells.size(); ++place) {
    EXPECT_EQ(kMatrixCells[place].name, QString("Rsk%1").arg(place + 1));
  }
}

TEST(RiskMatrixTest, MissingScoreIsNoRiskInTheColourOfTheFirstCell) {
  for (int other = -2; other <= 20; ++other) {
    for (const MatrixResult& result : {CellOf(0, other), CellOf(other, 0)}) {
      EXPECT_EQ(result.kind, Kind::kNoRisk);
      EXPECT_EQ(result.cell, nullptr);
      EXPECT_EQ(result.band, u"No Risk");
      EXPECT_EQ(result.colour, 0x00FF00U);
    }
  }
}

TEST(RiskMatrixTest, ScoresThatNoStatementGivesNameNoCell) {
  for (const auto& [severity, cl] : std::vector<std::pair<int, int>>{{1, 16},
                                                                     {4, 16},
                                                                     {5, 1},
                                                                     {5, 15},
                                                                     {5, 16},
                                                                     {-1, 4},
                                                                     {1, -1},
                                                                     {-1, -1},
                                                                     {32767, 32767},
                                                                     {-32768, -32768}}) {
    const MatrixResult result = CellOf(severity, cl);
    EXPECT_EQ(result.kind, Kind::kUnchanged) << severity << ", " << cl;
    EXPECT_EQ(result.cell, nullptr);
  }
}

TEST(RiskMatrixTest, RedCellMaySayMediumRisk) {
  const MatrixResult result = CellOf(4, 6);
  EXPECT_EQ(result.cell->name, u"Rsk17");
  EXPECT_EQ(result.band, u"Medium Risk");
  EXPECT_EQ(result.colour, 0xFF0000U);
}

TEST(RiskMatrixTest, HalfDoneClassFallsIntoTheFirstColumn) {
  EXPECT_EQ(CellOf(2, 3).cell->name, u"Rsk6");
  EXPECT_EQ(CellOf(2, 3).band, u"Low Risk");
  EXPECT_EQ(CellOf(2, 1).cell->name, u"Rsk6");
}

TEST(RiskMatrixTest, ClassIsTheSumOfThreeScores) {
  EXPECT_EQ(ClassOf(2, 1, 1), 4);
  EXPECT_EQ(ClassOf(5, 5, 5), 15);
  EXPECT_EQ(ClassOf(0, 0, 0), 0);
  EXPECT_EQ(ClassOf(2, 0, 0), 2);
}

TEST(RiskMatrixTest, EverySetOfStatementsLandsInACell) {
  int sets = 0;
  const auto scores = [](Parameter parameter) {
    std::vector<qint16> numbers;
    for (qint16 box = kFirstStatementBox; box <= kLastStatementBox; ++box) {
      if (StatementsOf(parameter)[static_cast<std::size_t>(box - 1)].enabled)
        numbers.push_back(box);
    }
    return numbers;
  };
  for (const qint16 severity : scores(Parameter::kSeverity)) {
    for (const qint16 exposure : scores(Parameter::kExposure)) {
      for (const qint16 occurrence : scores(Parameter::kOccurrence)) {
        for (const qint16 avoidance : scores(Parameter::kAvoidance)) {
          const qint16 cl = ClassOf(exposure, occurrence, avoidance).value();
          EXPECT_GE(cl, 4);
          EXPECT_LE(cl, 15);
          EXPECT_EQ(CellOf(severity, cl).kind, Kind::kCell);
          ++sets;
        }
      }
    }
  }
  EXPECT_EQ(sets, 4 * 4 * 5 * 3);
}

TEST(RiskMatrixTest, ClassKeepsWithinSixteenBits) {
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

TEST(RiskMatrixTest, TextWithoutANumberIsNone) {
  for (const QStringView text : {u"", u" ", u"N.A.", u"three", u"1 2", u"3,5x", u"nan", u"inf"}) {
    EXPECT_EQ(WholePartOf(text), std::nullopt) << text.toString().toStdString();
  }
}

TEST(RiskMatrixTest, NumberOutsideSixteenBitsIsNone) {
  for (const QStringView text : {u"32768", u"-32769", u"1e9"}) {
    EXPECT_EQ(WholePartOf(text), std::nullopt) << text.toString().toStdString();
  }
}

}  // namespace
}  // namespace kestrix::model
