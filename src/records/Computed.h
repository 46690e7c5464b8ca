#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "estimation/model/RiskMatrix.h"
#include "records/Task.h"

namespace kestrix::records {

/// Bands from the lowest to the highest, for comparing and counting. "Not estimated" is none of
/// them: it isn't safe.
enum class Band { kNotEstimated = -1, kNoRisk = 0, kLow, kMedium, kHigh };
/// "No Risk" to "High Risk", and "Not estimated".
[[nodiscard]] QString TextOf(Band band);

/// What the risk model makes of one stored stage.
struct ComputedStage {
  std::optional<int> index;  ///< of the four stored levels; nothing without a rule
  QString index_band;        ///< empty without an index
  qint64 class_score = 0;    ///< Cl = F + O + A of the stored scores
  QString class_band;        ///< empty while all four scores are 0
  const model::MatrixCell* cell = nullptr;
  QStringList lit;         ///< the lit lines of the graph, without the start line
  bool estimated = false;  ///< it has an index, and its severity isn't "Reset"
};

[[nodiscard]] ComputedStage Compute(const Stage& stage);

/// The band of the graph: of the computed index, "Not estimated" where the stage isn't.
[[nodiscard]] Band IndexBandOf(const ComputedStage& stage);
/// The band of the matrix; "Not estimated" while all four scores are 0.
[[nodiscard]] Band ClassBandOf(const ComputedStage& stage);
/// The higher of the two.
[[nodiscard]] Band HigherBandOf(const ComputedStage& stage);

/// What the model makes of a whole task.
struct Computed {
  ComputedStage before;
  ComputedStage after;
  bool reduced = false;  ///< the stored index before is higher than the stored one after
  QString verdict;       ///< from the stored indexes

  /// The stage that counts for what remains: after, or before where after isn't estimated.
  [[nodiscard]] const ComputedStage& Final() const { return after.estimated ? after : before; }
  /// The verdict as pages tell it: with " (not estimated)" where it rests on a stage that isn't.
  [[nodiscard]] QString VerdictText() const;
};

[[nodiscard]] Computed Compute(const Task& task);

}  // namespace kestrix::records
