#include "estimation/RiskGraphState.h"

namespace kestrix {

using model::Stage;
using namespace risk_graph;

QString RiskGraphState::markedCell() const {
  return marks_.cell == nullptr ? QString() : marks_.cell->name.toString();
}

void RiskGraphState::PutOut(unsigned groups) {
  if (marks_.PutOut(groups)) Q_EMIT LitLinesChanged();
}

void RiskGraphState::PutOutIndexLabels() {
  if (marks_.PutOutIndexLabels()) Q_EMIT LitIndexLabelsChanged();
}

void RiskGraphState::PutOutFrom(model::Parameter first) {
  // The groups lie in the order of the parameters, each a bit of its own.
  PutOut(~0U << model::IndexOf(first));
  PutOutIndexLabels();
}

void RiskGraphState::Light(std::span<const QStringView> lines) {
  bool changed = false;
  for (const QStringView line : lines) changed |= marks_.Light(line);
  if (changed) Q_EMIT LitLinesChanged();
}

void RiskGraphState::LightIndexLabel(QStringView label) {
  if (marks_.LightIndexLabel(label)) Q_EMIT LitIndexLabelsChanged();
}

void RiskGraphState::SetStage(Stage stage) {
  if (marks_.stage == stage) return;
  marks_.stage = stage;
  Q_EMIT StageChanged();
}

void RiskGraphState::MarkCell(QStringView cell) {
  const CellPlace* place = CellNamed(cell);
  if (place == nullptr || marks_.cell == place) return;
  marks_.cell = place;
  Q_EMIT MarkedCellChanged();
}

void RiskGraphState::HideMarker() {
  if (marks_.cell == nullptr) return;
  marks_.cell = nullptr;
  Q_EMIT MarkedCellChanged();
}

}  // namespace kestrix
