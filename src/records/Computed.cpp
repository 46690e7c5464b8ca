#include "records/Computed.h"

#include <algorithm>
#include <array>
#include <limits>

#include "estimation/model/RiskGraphRules.h"
#include "estimation/model/RiskModel.h"
#include "store/StoredDate.h"

namespace kestrix::records {
namespace {

using model::Parameter;

constexpr std::array kBandTexts{model::kNoRiskText, model::kLowRiskText, model::kMediumRiskText,
                                model::kHighRiskText};

Band BandNamed(QStringView text) {
  const auto found = std::ranges::find(kBandTexts, text);
  return found == kBandTexts.end() ? Band::kNotEstimated
                                   : static_cast<Band>(found - kBandTexts.begin());
}

/// A number that the model takes; what lies beyond it has no band and no cell.
int Narrow(qint64 number) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<qint64>(number, Limits::min(), Limits::max()));
}

bool HasScore(const Stage& stage) {
  return std::any_of(stage.scores.begin(), stage.scores.begin() + 4,
                     [](qint64 score) { return score != 0; });
}

}  // namespace

bool IsNoText(QStringView text) {
  return text.isEmpty() || text == u"None." || text == u"N.A.";
}

bool IsOverdue(const Task& task, QDate today) {
  const std::optional<QDate> due = ReadDate(task.action_date);
  return IsOpen(task) && due && *due < today;
}

QString TextOf(Band band) {
  if (band == Band::kNotEstimated) return QStringLiteral("Not estimated");
  return kBandTexts[static_cast<std::size_t>(band)].toString();
}

ComputedStage Compute(const Stage& stage) {
  ComputedStage computed;
  const auto& [severity, exposure, occurrence, avoidance] = stage.levels;
  computed.index = model::RiskIndexOf(severity, exposure, occurrence, avoidance);
  if (computed.index) computed.index_band = model::BandOfIndex(*computed.index)->text.toString();
  computed.estimated = computed.index && severity != model::kSeverityReset;
  for (const QStringView line : model::PathOf(severity, exposure, occurrence, avoidance).lines) {
    computed.lit += line.toString();
  }
  // Scores that no statement gives are kept within a range in which their sum can't overflow.
  const auto score = [&stage](Parameter parameter) {
    return qint64{Narrow(stage.scores[model::IndexOf(parameter)])};
  };
  computed.class_score =
      score(Parameter::kExposure) + score(Parameter::kOccurrence) + score(Parameter::kAvoidance);
  if (HasScore(stage)) {
    const model::MatrixResult result =
        model::CellOf(Narrow(stage.scores[0]), Narrow(computed.class_score));
    computed.cell = result.cell;
    computed.class_band = result.band.toString();
  }
  return computed;
}

Band IndexBandOf(const ComputedStage& stage) {
  return stage.estimated ? BandNamed(stage.index_band) : Band::kNotEstimated;
}

Band ClassBandOf(const ComputedStage& stage) {
  return BandNamed(stage.class_band);
}

Band HigherBandOf(const ComputedStage& stage) {
  return std::max(IndexBandOf(stage), ClassBandOf(stage));
}

Computed Compute(const Task& task) {
  Computed computed{Compute(task.before), Compute(task.after), false, {}};
  const int before = Narrow(task.before.index);
  const int after = Narrow(task.after.index);
  computed.reduced = model::IsReduced(before, after);
  computed.verdict = model::Verdict(before, after).toString();
  return computed;
}

QString Computed::VerdictText() const {
  const bool rests_on_estimations = before.estimated && after.estimated;
  return rests_on_estimations ? verdict : verdict + QStringLiteral(" (not estimated)");
}

}  // namespace kestrix::records
