#include "evaluation/MatrixIcon.h"

#include <QPainter>

#include "estimation/model/RiskMatrix.h"
#include "formkit/PaintedIcon.h"

namespace kestrix {
namespace {

constexpr qreal kGap = 1;

class MatrixPicture : public PaintedIcon {
 public:
  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    if (mode == QIcon::Disabled) painter->setOpacity(0.4);
    const qreal width = (rect.width() - kGap * (model::kMatrixColumns - 1)) / model::kMatrixColumns;
    const qreal height = (rect.height() - kGap * (model::kMatrixRows - 1)) / model::kMatrixRows;
    for (std::size_t i = 0; i < model::kMatrixCells.size(); ++i) {
      const auto& cell = model::kMatrixCells[i];
      const int column = static_cast<int>(i) % model::kMatrixColumns;
      const int row = model::kMatrixRows - cell.severity;  // severity 1 lies at the bottom
      painter->setBrush(QColor::fromRgb(cell.colour));
      painter->drawRect(QRectF(rect.left() + column * (width + kGap),
                               rect.top() + row * (height + kGap), width, height));
    }
    painter->restore();
  }

  [[nodiscard]] QIconEngine* clone() const override { return new MatrixPicture(*this); }
};

}  // namespace

QIcon MatrixIcon() {
  return QIcon(new MatrixPicture);
}

}  // namespace kestrix
