#include "evaluation/MatrixIcon.h"

#include <QPainter>

#include "estimation/model/RiskMatrix.h"
#include "formkit/PaintedIcon.h"

namespace kestrix {
namespace {

constexpr qreal kGap = 1;

void PaintMatrix(QPainter& painter, const QRect& room, QIcon::Mode mode) {
  painter.setPen(Qt::NoPen);
  if (mode == QIcon::Disabled) painter.setOpacity(0.4);
  const qreal width = (room.width() - kGap * (model::kMatrixColumns - 1)) / model::kMatrixColumns;
  const qreal height = (room.height() - kGap * (model::kMatrixRows - 1)) / model::kMatrixRows;
  for (std::size_t i = 0; i < model::kMatrixCells.size(); ++i) {
    const auto& cell = model::kMatrixCells[i];
    const int column = static_cast<int>(i) % model::kMatrixColumns;
    const int row = model::kMatrixRows - cell.severity;  // severity 1 lies at the bottom
    painter.setBrush(QColor::fromRgb(cell.colour));
    painter.drawRect(QRectF(room.left() + column * (width + kGap),
                            room.top() + row * (height + kGap), width, height));
  }
}

}  // namespace

QIcon MatrixIcon() {
  return PaintedIcon(PaintMatrix);
}

}  // namespace kestrix
