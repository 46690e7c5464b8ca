#pragma once

#include <QPointer>
#include <QRectF>
#include <QStringView>
#include <QWidget>
#include <optional>

#include "estimation/RiskGraphState.h"
#include "estimation/drawing/RiskDrawing.h"

class QHelpEvent;

namespace kestrix {

/// Shows one part of an estimation, the risk graph or the risk matrix, as its state stands, in the
/// colours of the theme and with letters that follow the font; with tool tips, and with words for
/// assistive tools. It takes no input and never changes the state.
class RiskGraphView : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QStringList litLines READ litLines NOTIFY LitLinesChanged)
  Q_PROPERTY(QStringList litIndexLabels READ litIndexLabels NOTIFY LitIndexLabelsChanged)
  Q_PROPERTY(QString markedCell READ markedCell NOTIFY MarkedCellChanged)

 public:
  using Part = RiskDrawing::Part;

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
  struct Tip {
    QString text;
    QRect place;
  };

  [[nodiscard]] RiskDrawing Drawing() const;
  [[nodiscard]] std::optional<Tip> TipAt(QPoint place) const;
  void Describe(const QString& words);
  bool ShowTip(const QHelpEvent& event);

  QPointer<const RiskGraphState> state_;
  Part part_ = Part::kGraph;
};

}  // namespace kestrix
