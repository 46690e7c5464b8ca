#include "estimation/drawing/RiskMarks.h"

#include <algorithm>

#include "estimation/model/RiskGraphRules.h"
#include "estimation/model/RiskMatrix.h"

namespace kestrix {

using model::Stage;
using namespace risk_graph;

namespace {

// The tables are arrays, so the place of a piece in its table is the place of its mark.
template <typename Table>
std::size_t PlaceIn(const Table& table, const typename Table::value_type* piece) {
  return static_cast<std::size_t>(piece - table.data());
}

template <typename Table, typename Marks>
QStringList NamesOf(const Table& table, const Marks& marks) {
  QStringList names;
  for (std::size_t place = 0; place < table.size(); ++place) {
    if (marks[place]) names.append(table[place].name.toString());
  }
  return names;
}

}  // namespace

std::optional<Stage> RiskMarks::LitStageOf(QStringView line) const {
  const GraphLine* piece = LineNamed(line);
  return piece == nullptr ? std::nullopt : lines[PlaceIn(kLines, piece)];
}

bool RiskMarks::IsIndexLabelLit(QStringView label) const {
  const IndexLabel* piece = IndexLabelNamed(label);
  return piece != nullptr && labels[PlaceIn(kIndexLabels, piece)];
}

QStringList RiskMarks::LitLines() const {
  return NamesOf(kLines, lines);
}

QStringList RiskMarks::LitIndexLabels() const {
  return NamesOf(kIndexLabels, labels);
}

bool RiskMarks::Light(QStringView line) {
  const GraphLine* piece = LineNamed(line);
  if (piece == nullptr || piece->groups == kNoGroup) return false;
  return std::exchange(lines[PlaceIn(kLines, piece)], stage) != stage;
}

bool RiskMarks::LightIndexLabel(QStringView label) {
  const IndexLabel* piece = IndexLabelNamed(label);
  return piece != nullptr && !std::exchange(labels[PlaceIn(kIndexLabels, piece)], true);
}

bool RiskMarks::PutOut(unsigned groups) {
  bool changed = false;
  for (std::size_t place = 0; place < kLines.size(); ++place) {
    if ((kLines[place].groups & groups) == 0 || !lines[place]) continue;
    lines[place].reset();
    changed = true;
  }
  return changed;
}

bool RiskMarks::PutOutIndexLabels() {
  return std::exchange(labels, {}) != decltype(labels){};
}

RiskMarks MarksOf(Stage stage, const LevelTexts& levels, int severity_score, int class_score) {
  RiskMarks marks;
  marks.stage = stage;
  const model::LitPath path = model::PathOf(levels[0], levels[1], levels[2], levels[3]);
  for (const QStringView line : path.lines) marks.Light(line);
  marks.LightIndexLabel(path.index_label);
  const model::MatrixResult result = model::CellOf(severity_score, class_score);
  if (result.cell != nullptr) marks.cell = CellNamed(result.cell->name);
  return marks;
}

}  // namespace kestrix
