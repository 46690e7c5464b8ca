#include "estimation/RiskGraphState.h"

#include <algorithm>

namespace kestrix {

using model::Stage;
using namespace risk_graph;

namespace {

// The tables are arrays, so the place of a piece in its table is the place of its state.
template <typename Table>
std::size_t PlaceIn(const Table& table, const typename Table::value_type* piece) {
  return static_cast<std::size_t>(piece - table.data());
}

}  // namespace

RiskGraphState::RiskGraphState(QObject* parent) : QObject(parent) {}

QStringList RiskGraphState::litLines() const {
  QStringList names;
  for (std::size_t place = 0; place < kLines.size(); ++place) {
    if (lit_lines_[place]) names.append(kLines[place].name.toString());
  }
  return names;
}

QStringList RiskGraphState::litIndexLabels() const {
  QStringList names;
  for (std::size_t place = 0; place < kIndexLabels.size(); ++place) {
    if (lit_labels_[place]) names.append(kIndexLabels[place].name.toString());
  }
  return names;
}

QString RiskGraphState::markedCell() const {
  return marker_shown_ ? marker_cell_->name.toString() : QString();
}

std::optional<Stage> RiskGraphState::LitStageOf(QStringView line) const {
  const GraphLine* piece = LineNamed(line);
  return piece == nullptr ? std::nullopt : lit_lines_[PlaceIn(kLines, piece)];
}

bool RiskGraphState::IsIndexLabelLit(QStringView label) const {
  const IndexLabel* piece = IndexLabelNamed(label);
  return piece != nullptr && lit_labels_[PlaceIn(kIndexLabels, piece)];
}

QRect RiskGraphState::MarkerPlace() const {
  return marker_cell_ == nullptr ? QRect() : MarkerPlaceOn(*marker_cell_);
}

void RiskGraphState::ResetSeverityLines() {
  PutOut(kSeverityGroup);
}

void RiskGraphState::ResetExposureLines() {
  PutOut(kExposureGroup);
}

void RiskGraphState::ResetOccurrenceLines() {
  PutOut(kOccurrenceGroup);
}

void RiskGraphState::ResetAvoidanceLines() {
  PutOut(kAvoidanceGroup);
}

void RiskGraphState::ResetIndexLabels() {
  if (std::ranges::find(lit_labels_, true) == lit_labels_.end()) return;
  lit_labels_.fill(false);
  Q_EMIT LitIndexLabelsChanged();
}

void RiskGraphState::PutOut(LineGroup group) {
  bool changed = false;
  for (std::size_t place = 0; place < kLines.size(); ++place) {
    if (!kLines[place].IsIn(group) || !lit_lines_[place]) continue;
    lit_lines_[place].reset();
    changed = true;
  }
  if (changed) Q_EMIT LitLinesChanged();
}

void RiskGraphState::Light(std::span<const QStringView> lines) {
  bool changed = false;
  for (const QStringView name : lines) {
    const GraphLine* line = LineNamed(name);
    if (line == nullptr || line->groups == kNoGroup) continue;
    auto& lit = lit_lines_[PlaceIn(kLines, line)];
    changed = changed || lit != stage_;
    lit = stage_;
  }
  if (changed) Q_EMIT LitLinesChanged();
}

void RiskGraphState::LightIndexLabel(QStringView label) {
  const IndexLabel* piece = IndexLabelNamed(label);
  if (piece == nullptr) return;
  bool& lit = lit_labels_[PlaceIn(kIndexLabels, piece)];
  if (lit) return;
  lit = true;
  Q_EMIT LitIndexLabelsChanged();
}

void RiskGraphState::SetStage(Stage stage) {
  if (stage_ == stage) return;
  stage_ = stage;
  Q_EMIT StageChanged();
}

void RiskGraphState::MarkCell(QStringView cell) {
  const CellPlace* place = CellNamed(cell);
  if (place == nullptr || (marker_shown_ && marker_cell_ == place)) return;
  marker_cell_ = place;
  marker_shown_ = true;
  Q_EMIT MarkedCellChanged();
}

void RiskGraphState::HideMarker() {
  if (!marker_shown_) return;
  marker_shown_ = false;
  Q_EMIT MarkedCellChanged();
}

}  // namespace kestrix
