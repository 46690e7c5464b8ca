#include "formkit/PaintedIcon.h"

#include <QPainter>
#include <QPixmap>

namespace kestrix {

QPixmap PaintedIcon::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
  QPixmap picture(size);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  paint(&painter, QRect(QPoint(), size), mode, state);
  return picture;
}

}  // namespace kestrix
