#pragma once

#include <QList>
#include <QPointer>
#include <QRectF>
#include <QStringView>
#include <QWidget>
#include <algorithm>
#include <optional>

#include "estimation/RiskGraphState.h"

class QHelpEvent;

namespace kestrix {

/// Paints one part of an estimation, the risk graph or the risk matrix, as its state stands, in the
/// room that it is given: the picture fills the room as far as its shape stays familiar, and lies
/// in the middle of what is left. It takes no input and never changes the state.
///
/// What is chosen shows by colour and by form: the lit path is thick and outlined, the lit index
/// label has a heavy frame and bold digits, the marked cell a thick frame around its circle.
class RiskGraphView : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QStringList litLines READ litLines NOTIFY LitLinesChanged)
  Q_PROPERTY(QStringList litIndexLabels READ litIndexLabels NOTIFY LitIndexLabelsChanged)
  Q_PROPERTY(QString markedCell READ markedCell NOTIFY MarkedCellChanged)

 public:
  enum class Part { kGraph, kMatrix };

  /// An empty view until Show() gives it a state and a part.
  explicit RiskGraphView(QWidget* parent = nullptr);

  /// Shows this part of this state from now on. The state may go first; the view is empty then.
  void Show(const RiskGraphState& state, Part part);

  [[nodiscard]] QStringList litLines() const;
  [[nodiscard]] QStringList litIndexLabels() const;
  [[nodiscard]] QString markedCell() const;

  /// Tells assistive tools the path in words, from the texts of the four levels: unset ones are
  /// left out, and so is an index that isn't known.
  void SetPathTexts(QStringView severity, QStringView exposure, QStringView occurrence,
                    QStringView avoidance, std::optional<int> index);
  /// Tells assistive tools the result of the matrix in words: severity score, class and band.
  void SetMatrixTexts(int severity, int class_score, QStringView band);

  /// Where a place of the graph or of the matrix, given in twips, lies in this widget.
  [[nodiscard]] QPointF WidgetPointOf(QPointF twips) const;
  [[nodiscard]] QRectF WidgetRectOf(const QRectF& twips) const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void LitLinesChanged();
  void LitIndexLabelsChanged();
  void MarkedCellChanged();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  class Brush;
  struct Tip {
    QString text;
    QRect place;
  };
  struct Stroke {
    QPoint from;
    QPoint to;
    QColor colour;
  };

  void PaintGraph(Brush& brush) const;
  void PaintFrame(Brush& brush) const;
  void PaintColumns(Brush& brush) const;
  void PaintLeaders(Brush& brush) const;
  void PaintLinesAtRest(Brush& brush) const;
  void PaintLitPath(Brush& brush) const;
  void PaintNodes(Brush& brush) const;
  void PaintStart(Brush& brush) const;
  void PaintIndexLabels(Brush& brush) const;
  void PaintTexts(Brush& brush) const;

  void PaintMatrix(Brush& brush) const;
  void PaintCells(Brush& brush) const;
  void PaintHeads(Brush& brush) const;
  void PaintMarker(Brush& brush) const;

  [[nodiscard]] QList<Stroke> LitStrokes() const;
  [[nodiscard]] Stroke LitLeaderOf(const risk_graph::IndexLabel& label) const;
  [[nodiscard]] QRect Frame() const;
  struct Scales {
    qreal x;
    qreal y;
    [[nodiscard]] qreal least() const { return std::min(x, y); }
  };
  [[nodiscard]] Scales ScalesInForce() const;
  [[nodiscard]] std::optional<Tip> TipAt(QPoint place) const;
  void Describe(const QString& words);
  bool ShowTip(const QHelpEvent& event);

  QPointer<const RiskGraphState> state_;
  Part part_ = Part::kGraph;
};

}  // namespace kestrix
