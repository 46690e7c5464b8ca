#pragma once

#include <QStringView>
#include <array>
#include <optional>

#include "estimation/model/RiskBands.h"
#include "estimation/model/Text.h"

/// The risk matrix: the severity score picks the row, the class Cl = F + O + A the column.
/// ISO/TR 14121-2:2012, 6.5 (hybrid tool).
namespace kestrix::model {

/// A cell has its own text and its own colour; neither follows from the other. `Rsk17` is a red
/// cell that says "Medium Risk".
struct MatrixCell {
  QStringView name;
  int severity;     ///< the row, 1 to 4
  int least_class;  ///< the column, both bounds included
  int greatest_class;
  QStringView band;
  Rgb colour;
};

inline constexpr Rgb kCellBrightGreen = 0x00FF00;
inline constexpr Rgb kCellGreen = 0x00C000;
inline constexpr Rgb kCellOrange = 0xFFC080;
inline constexpr Rgb kCellRed = 0xFF0000;
inline constexpr Rgb kCellPurple = 0xC000C0;

inline constexpr int kMatrixRows = 4;
inline constexpr int kMatrixColumns = 5;
inline constexpr int kGreatestClass = 15;

// The first column is headed " 4" but takes the classes of a half-done estimation as well.
inline constexpr std::array<MatrixCell, 20> kMatrixCells{{
    {u"Rsk1", 1, 1, 4, kLowRiskText, kCellBrightGreen},
    {u"Rsk2", 1, 5, 7, kLowRiskText, kCellGreen},
    {u"Rsk3", 1, 8, 10, kLowRiskText, kCellGreen},
    {u"Rsk4", 1, 11, 13, kMediumRiskText, kCellOrange},
    {u"Rsk5", 1, 14, 15, kHighRiskText, kCellRed},
    {u"Rsk6", 2, 1, 4, kLowRiskText, kCellGreen},
    {u"Rsk7", 2, 5, 7, kLowRiskText, kCellGreen},
    {u"Rsk8", 2, 8, 10, kMediumRiskText, kCellOrange},
    {u"Rsk9", 2, 11, 13, kHighRiskText, kCellRed},
    {u"Rsk10", 2, 14, 15, kHighRiskText, kCellRed},
    {u"Rsk11", 3, 1, 4, kLowRiskText, kCellGreen},
    {u"Rsk12", 3, 5, 7, kMediumRiskText, kCellOrange},
    {u"Rsk13", 3, 8, 10, kHighRiskText, kCellRed},
    {u"Rsk14", 3, 11, 13, kHighRiskText, kCellRed},
    {u"Rsk15", 3, 14, 15, kHighRiskText, kCellPurple},
    {u"Rsk16", 4, 1, 4, kMediumRiskText, kCellOrange},
    {u"Rsk17", 4, 5, 7, kMediumRiskText, kCellRed},
    {u"Rsk18", 4, 8, 10, kHighRiskText, kCellRed},
    {u"Rsk19", 4, 11, 13, kHighRiskText, kCellPurple},
    {u"Rsk20", 4, 14, 15, kHighRiskText, kCellPurple},
}};

/// What the matrix says.
struct MatrixResult {
  enum class Kind {
    kNoRisk,    ///< a score is still missing: "No Risk" in the colour of `Rsk1`, no cell marked
    kCell,      ///< a cell: its text, its colour, the marker on it
    kUnchanged  ///< scores that no statement gives: whatever was shown last stands
  };
  Kind kind = Kind::kUnchanged;
  const MatrixCell* cell = nullptr;  ///< of kCell only
  QStringView band;                  ///< empty where unchanged
  Rgb colour = 0;                    ///< no meaning where unchanged
};

/// The matrix' answer to a severity score (1 to 4 in a finished estimation) and a class (4 to 15).
/// 0 in either is no risk; any number outside names no cell. Never fails.
/// ISO/TR 14121-2:2012, 6.5 (hybrid tool).
[[nodiscard]] constexpr MatrixResult CellOf(int severity, int class_score) noexcept {
  if (severity == 0 || class_score == 0) {
    return {MatrixResult::Kind::kNoRisk, nullptr, kNoRiskText, kMatrixCells.front().colour};
  }
  for (const MatrixCell& cell : kMatrixCells) {
    if (cell.severity == severity && class_score >= cell.least_class &&
        class_score <= cell.greatest_class) {
      return {MatrixResult::Kind::kCell, &cell, cell.band, cell.colour};
    }
  }
  return {};
}

/// The number that a field or a score label shows, cut to its whole part: "3" and "3.9" are 3.
/// Nothing for a text that is no number (the empty one included) and for one outside -32768 to
/// 32767.
[[nodiscard]] std::optional<qint16> WholePartOf(QStringView text);

/// The class Cl = F + O + A of the exposure, occurrence and avoidance scores, added in this order.
/// Nothing as soon as a sum leaves -32768 to 32767.
/// ISO/TR 14121-2:2012, 6.5 (hybrid tool).
[[nodiscard]] std::optional<qint16> ClassOf(qint16 exposure, qint16 occurrence, qint16 avoidance);

}  // namespace kestrix::model
