#pragma once

#include <QStringList>
#include <array>
#include <optional>

#include "estimation/drawing/RiskGraphGeometry.h"
#include "estimation/model/RiskLevels.h"

namespace kestrix {

/// The four level texts of a stage, by parameter, as they are stored.
using LevelTexts = std::array<QString, 4>;

/// What is lit on the risk graph and which cell of the risk matrix is marked: a plain value. A lit
/// line keeps the stage in which it was lit, and so its colour. It knows no rule by itself.
struct RiskMarks {
  model::Stage stage = model::Stage::kBefore;  ///< of the start line and its arrow
  std::array<std::optional<model::Stage>, risk_graph::kLines.size()> lines{};
  std::array<bool, risk_graph::kIndexLabels.size()> labels{};
  const risk_graph::CellPlace* cell = nullptr;  ///< null while the marker is hidden

  /// The stage in which this line was lit, or nothing when it is at rest.
  [[nodiscard]] std::optional<model::Stage> LitStageOf(QStringView line) const;
  [[nodiscard]] bool IsIndexLabelLit(QStringView label) const;
  /// Names of what is lit, in the order of the tables.
  [[nodiscard]] QStringList LitLines() const;
  [[nodiscard]] QStringList LitIndexLabels() const;

  /// Lights a line in the colour of the stage in hand. False when that changes nothing: a line that
  /// is lit so already, the start line, a name that stands for none.
  bool Light(QStringView line);
  bool LightIndexLabel(QStringView label);
  /// Puts out the lines of these groups (LineGroup values joined by "or"); false when none was lit.
  bool PutOut(unsigned groups);
  bool PutOutIndexLabels();

  bool operator==(const RiskMarks&) const = default;
};

/// The marks of a stage that is stored: the path of its levels as far as the rules lead, with the
/// index where it has come to its end, and the cell of a severity score and a class, if they have
/// one.
[[nodiscard]] RiskMarks MarksOf(model::Stage stage, const LevelTexts& levels, int severity_score,
                                int class_score);

}  // namespace kestrix
