#include "estimation/drawing/RiskGraphGeometry.h"

#include <algorithm>

#include "estimation/model/RiskGraphRules.h"

namespace kestrix::risk_graph {
namespace {

template <typename Table>
constexpr const typename Table::value_type* Named(const Table& table, QStringView name) noexcept {
  for (const auto& row : table) {
    if (SameText(row.name, name)) return &row;
  }
  return nullptr;
}

constexpr bool IsLine(QStringView name) {
  return Named(kLines, name) != nullptr;
}

// A rule that names a line or a label that isn't drawn doesn't compile.
consteval bool EveryRuleIsDrawn() {
  const auto drawn = [](const auto& rule) {
    return std::all_of(rule.lines.begin(), rule.lines.end(), IsLine);
  };
  const auto labelled = [](QStringView name) { return Named(kIndexLabels, name) != nullptr; };
  for (const auto& rule : model::kSeverityRules) {
    if (!drawn(rule) || (rule.index && !labelled(rule.index_label))) return false;
  }
  for (const auto& rule : model::kExposureRules) {
    if (!drawn(rule)) return false;
  }
  for (const auto& rule : model::kOccurrenceRules) {
    if (!drawn(rule) || (rule.index && !labelled(rule.index_label))) return false;
  }
  for (const auto& rule : model::kAvoidanceRules) {
    if (!IsLine(rule.line) || !labelled(rule.index_label)) return false;
  }
  return true;
}
static_assert(EveryRuleIsDrawn());

consteval bool EveryCellIsDrawn() {
  for (std::size_t place = 0; place < kCells.size(); ++place) {
    if (!SameText(kCells[place].name, model::kMatrixCells[place].name)) return false;
  }
  return kCells.size() == model::kMatrixCells.size();
}
static_assert(EveryCellIsDrawn());

}  // namespace

const GraphLine* LineNamed(QStringView name) noexcept {
  return Named(kLines, name);
}

const IndexLabel* IndexLabelNamed(QStringView name) noexcept {
  return Named(kIndexLabels, name);
}

const CellPlace* CellNamed(QStringView name) noexcept {
  return Named(kCells, name);
}

}  // namespace kestrix::risk_graph
