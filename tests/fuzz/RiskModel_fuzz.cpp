// Any texts and numbers given to the risk model, and any names to what is lit on the graph.
#include <algorithm>

#include "LevelTexts.h"
#include "estimation/RiskGraphState.h"

namespace kestrix::fuzz {
namespace {

using model::Parameter;

struct Path {
  QString severity;
  QString exposure;
  QString occurrence;
  QString avoidance;
};

template <class Table>
bool IsOf(const Table& table, const typename Table::value_type* row) {
  return row >= table.data() && row < table.data() + table.size();
}

// Each rule is a row of its table, names what it was asked for, lights lines and labels that the
// graph has, and ends at the index of its label.

void CheckLine(QStringView name) {
  const risk_graph::GraphLine* line = risk_graph::LineNamed(name);
  Hold(line != nullptr && line->groups != risk_graph::kNoGroup,
       "a rule lights lines that the graph has", name.toString());
}

void CheckEnd(QStringView label, std::optional<int> index) {
  Hold(label.isEmpty() != index.has_value(), "a path ends with a label and an index, or neither");
  if (!index) return;
  const risk_graph::IndexLabel* piece = risk_graph::IndexLabelNamed(label);
  Hold(piece != nullptr && piece->index == *index, "a label stands for its index",
       label.toString());
  Hold(model::BandOfIndex(*index).has_value(), "an index lies between 0 and 6", label.toString());
}

void CheckRules(const Path& path) {
  if (const auto* rule = model::SeverityRuleFor(path.severity)) {
    Hold(IsOf(model::kSeverityRules, rule), "a rule is a row of its table", path.severity);
    Hold(rule->severity == path.severity, "a rule fits its severity", path.severity);
    for (const QStringView line : rule->lines) CheckLine(line);
    CheckEnd(rule->index_label, rule->index);
  }
  if (const auto* rule = model::ExposureRuleFor(path.exposure, path.severity)) {
    Hold(IsOf(model::kExposureRules, rule), "a rule is a row of its table", path.exposure);
    Hold(rule->exposure == path.exposure && rule->severity == path.severity,
         "a rule fits its exposure", path.exposure);
    for (const QStringView line : rule->lines) CheckLine(line);
  }
  if (const auto* rule = model::OccurrenceRuleFor(path.occurrence, path.exposure)) {
    Hold(IsOf(model::kOccurrenceRules, rule), "a rule is a row of its table", path.occurrence);
    Hold(rule->occurrence == path.occurrence && rule->exposure == path.exposure,
         "a rule fits its occurrence", path.occurrence);
    for (const QStringView line : rule->lines) CheckLine(line);
    CheckEnd(rule->index_label, rule->index);
  }
  if (const auto* rule = model::AvoidanceRuleFor(path.avoidance, path.occurrence, path.exposure)) {
    Hold(IsOf(model::kAvoidanceRules, rule), "a rule is a row of its table", path.avoidance);
    Hold(rule->avoidance == path.avoidance && rule->occurrence == path.occurrence &&
             rule->exposure == path.exposure,
         "a rule fits its avoidance", path.avoidance);
    CheckLine(rule->line);
    CheckEnd(rule->index_label, rule->index);
  }
}

/// The index is that of the last rule on the path, read off the tables row by row.
std::optional<int> SlowIndexOf(const Path& path) {
  for (const auto& rule : model::kAvoidanceRules) {
    if (rule.avoidance == path.avoidance && rule.occurrence == path.occurrence &&
        rule.exposure == path.exposure) {
      return rule.index;
    }
  }
  if (!model::IsUnsetLevel(path.avoidance)) return std::nullopt;
  for (const auto& rule : model::kOccurrenceRules) {
    if (rule.occurrence == path.occurrence && rule.exposure == path.exposure) return rule.index;
  }
  if (!model::IsUnsetLevel(path.occurrence) || !model::IsUnsetLevel(path.exposure)) return {};
  for (const auto& rule : model::kSeverityRules) {
    if (rule.severity == path.severity) return rule.index;
  }
  return {};
}

void CheckIndex(const Path& path) {
  const auto index =
      model::RiskIndexOf(path.severity, path.exposure, path.occurrence, path.avoidance);
  Hold(index == SlowIndexOf(path), "the index is that of the last rule on the path",
       path.occurrence + u' ' + path.avoidance);
  if (index) Note(QStringLiteral("index %1").arg(*index));
}

void CheckMatrix(int severity, int class_score) {
  const model::MatrixResult result = model::CellOf(severity, class_score);
  const bool is_cell = result.kind == model::MatrixResult::Kind::kCell;
  Hold(is_cell == (result.cell != nullptr), "a result that is a cell names it");
  if (!is_cell) return;
  Hold(IsOf(model::kMatrixCells, result.cell), "a cell is one of the matrix");
  Hold(result.cell->severity == severity && result.cell->least_class <= class_score &&
           class_score <= result.cell->greatest_class,
       "a cell lies in the row and the column of its scores", result.cell->name.toString());
  Hold(risk_graph::CellNamed(result.cell->name) != nullptr, "every cell has its place",
       result.cell->name.toString());
  const auto band = model::ClassBandOf(severity, class_score);
  Hold(band && band->word.contains(result.band), "label and cell say the same",
       result.cell->name.toString());
}

qint16 TakeNumber(Input& input) {
  return static_cast<qint16>(input.Byte() | (input.Byte() << 8));
}

void CheckNumbers(Input& input) {
  const int kind = input.Upto(1);
  const qint16 a = kind == 0 ? static_cast<qint16>(input.Upto(6)) : TakeNumber(input);
  const qint16 b = kind == 0 ? static_cast<qint16>(input.Upto(6)) : TakeNumber(input);
  const qint16 c = kind == 0 ? static_cast<qint16>(input.Upto(6)) : TakeNumber(input);
  const auto sum = model::ClassOf(a, b, c);
  const int first = int{a} + int{b};
  const auto fits = [](int number) { return number >= -32768 && number <= 32767; };
  Hold(sum.has_value() == (fits(first) && fits(first + c)), "a class is refused only if too large");
  if (sum) Hold(*sum == first + c, "a class is the sum of its scores");
  CheckMatrix(a, sum.value_or(b));
  CheckMatrix(a, b);
  Hold(!model::Verdict(a, b).isEmpty(), "there is a verdict for any two indexes");
}

/// What is lit is always a piece of the graph, whatever it was asked to light.
void CheckState(Input& input) {
  RiskGraphState state;
  for (int step = 0; step < 16 && !input.IsUsedUp(); ++step) {
    const int what = input.Upto(9);
    const auto& line = risk_graph::kLines[static_cast<std::size_t>(input.Upto(32))];
    const QString name = what > 7 ? input.Line() : line.name.toString();
    const auto& label = risk_graph::kIndexLabels[static_cast<std::size_t>(input.Upto(6))];
    const auto& cell = risk_graph::kCells[static_cast<std::size_t>(input.Upto(19))];
    switch (what) {
      case 0:
        state.PutOut(risk_graph::kSeverityGroup);
        break;
      case 1:
        state.PutOut(risk_graph::kExposureGroup);
        break;
      case 2:
        state.PutOut(risk_graph::kOccurrenceGroup);
        break;
      case 3:
        state.PutOut(risk_graph::kAvoidanceGroup);
        break;
      case 4:
        state.LightIndexLabel(label.name);
        break;
      case 5:
        state.SetStage(state.marks().stage == model::Stage::kBefore ? model::Stage::kAfter
                                                                    : model::Stage::kBefore);
        break;
      case 6:
        state.MarkCell(cell.name);
        break;
      case 7:
        state.HideMarker();
        break;
      default:
        state.LightIndexLabel(name);
        state.MarkCell(name);
    }
    state.Light(QStringView(name));
    const bool can_be_lit = risk_graph::LineNamed(name) != nullptr &&
                            risk_graph::LineNamed(name)->groups != risk_graph::kNoGroup;
    Hold(state.marks().LitLines().contains(name) == can_be_lit, "a line that can be lit is lit",
         name);
    if (can_be_lit)
      Hold(state.marks().LitStageOf(name) == state.marks().stage, "in the colour in hand", name);
    for (const QString& lit : state.marks().LitLines()) CheckLine(lit);
    for (const QString& lit : state.marks().LitIndexLabels()) {
      Hold(risk_graph::IndexLabelNamed(lit) != nullptr, "a lit label is one of the graph", lit);
    }
    const QString marked = state.markedCell();
    Hold(marked.isEmpty() || risk_graph::CellNamed(marked) != nullptr, "the marker lies on a cell",
         marked);
  }
}

}  // namespace
}  // namespace kestrix::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace kestrix;
  using model::Parameter;
  fuzz::Input input(data, size);
  const fuzz::Path path{fuzz::TakeLevelOf(Parameter::kSeverity, input),
                        fuzz::TakeLevelOf(Parameter::kExposure, input),
                        fuzz::TakeLevelOf(Parameter::kOccurrence, input),
                        fuzz::TakeLevelOf(Parameter::kAvoidance, input)};
  fuzz::CheckRules(path);
  fuzz::CheckIndex(path);
  fuzz::CheckNumbers(input);
  fuzz::CheckState(input);
  return 0;
}
