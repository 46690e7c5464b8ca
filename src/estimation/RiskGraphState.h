#pragma once

#include <QObject>
#include <span>

#include "estimation/drawing/RiskMarks.h"

namespace kestrix {

/// What is lit on the risk graph and where the marker of the risk matrix lies, for all views of one
/// estimation. A lit line keeps the stage in which it was lit, and so its colour, until it is put
/// out or lit again. It knows no rule: it never decides what is to be lit, and it stores nothing.
class RiskGraphState : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// What is lit and marked now.
  [[nodiscard]] const RiskMarks& marks() const { return marks_; }
  /// The cell that shows the marker; empty while the marker is hidden.
  [[nodiscard]] QString markedCell() const;

  /// Puts out the lines of these groups (LineGroup values joined by "or"). Labels stay.
  void PutOut(unsigned groups);
  void PutOutIndexLabels();
  /// Puts out the lines of this parameter and of all behind it, and the index labels.
  void PutOutFrom(model::Parameter first);

  /// Lights these lines in the colour of the stage in hand; others stay as they are. A name that
  /// stands for no line that can be lit lights nothing.
  void Light(std::span<const QStringView> lines);
  void Light(QStringView line) { Light({&line, 1}); }
  /// Paints this index label; others stay as they are. An unknown name paints nothing.
  void LightIndexLabel(QStringView label);

  /// The stage in whose colour the start line and its arrow stand, and in which lines are lit from
  /// now on. What is lit already keeps its colour.
  void SetStage(model::Stage stage);

  /// Shows the marker on this cell. An unknown name changes nothing.
  void MarkCell(QStringView cell);
  void HideMarker();

 Q_SIGNALS:
  void LitLinesChanged();
  void LitIndexLabelsChanged();
  void MarkedCellChanged();
  void StageChanged();

 private:
  RiskMarks marks_;
};

}  // namespace kestrix
