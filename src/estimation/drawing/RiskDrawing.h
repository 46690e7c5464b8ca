#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QRectF>

#include "estimation/drawing/RiskMarks.h"

class QPainter;

namespace kestrix {

/// How the risk graph and the risk matrix look: the colours of the theme or of the page.
struct RiskLook {
  QFont font;
  QColor ink = Qt::black;
  QColor paper = Qt::white;
  /// False for print in black and white: bands become shades of grey, the path stays thick.
  bool coloured = true;
  /// True for a page that may be printed or copied without colours: words stay readable then.
  bool printed = false;
  /// The part of a cell's width that its word leaves free at the right.
  qreal cell_room = 0;
  /// Letters never get smaller than this, in units of the painter; on a common screen no smaller
  /// ones can be read.
  int least_letters = 9;
};

/// Paints one part of an estimation, the risk graph or the risk matrix, on any painter: of a
/// widget, a picture, a page. The picture fills its room as far as its shape stays familiar, and
/// lies in the middle of what is left. A unit of the painter is about a pixel or a point.
///
/// What is chosen shows by colour and by form: the lit path is thick and outlined, the lit index
/// label has a heavy frame and bold digits, the marked cell a thick frame around its circle.
class RiskDrawing {
 public:
  enum class Part { kGraph, kMatrix };

  RiskDrawing(Part part, const QRectF& room, const RiskLook& look);

  void Paint(QPainter& painter, const RiskMarks& marks) const;

  /// Where a place of the graph or of the matrix, given in twips, lies in the room.
  [[nodiscard]] QPointF PointOf(QPointF twips) const;
  [[nodiscard]] QRectF RectOf(const QRectF& twips) const;

  /// The size that the part was drawn for.
  [[nodiscard]] static QSizeF UsualSize(Part part);
  /// How much larger than the usual letters those of this font are; at least 1.
  [[nodiscard]] static qreal ScaleOf(const QFont& font);

 private:
  class Steps;

  Part part_;
  QRectF room_;
  RiskLook look_;
  qreal scale_x_;
  qreal scale_y_;
};

/// What the model says of a cell of the drawing.
[[nodiscard]] const model::MatrixCell& ModelCellOf(const risk_graph::CellPlace& place);

}  // namespace kestrix
