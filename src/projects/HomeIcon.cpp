#include "projects/HomeIcon.h"

#include <QPainter>
#include <QPixmap>
#include <QPolygonF>

namespace kestrix {
namespace {

constexpr QRgb kHouseBlue = 0xFF3D7EBF;
constexpr int kGrid = 20;  ///< the drawing below is 20 by 20

QPixmap House(int side) {
  QPixmap picture(side, side);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(side / static_cast<double>(kGrid), side / static_cast<double>(kGrid));
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgb(kHouseBlue));
  painter.drawPolygon(
      QPolygonF({{10, 1.5}, {19, 10}, {17.5, 11.5}, {10, 4.5}, {2.5, 11.5}, {1, 10}}));
  painter.drawRect(QRectF(14, 2.5, 2, 4));
  painter.drawPolygon(QPolygonF({{10, 6.5},
                                 {16, 12},
                                 {16, 18.5},
                                 {12, 18.5},
                                 {12, 13},
                                 {8, 13},
                                 {8, 18.5},
                                 {4, 18.5},
                                 {4, 12}}));
  return picture;
}

}  // namespace

QIcon HomeIcon() {
  QIcon icon;
  for (const int side : {20, 32, 40, 64}) icon.addPixmap(House(side));
  return icon;
}

}  // namespace kestrix
