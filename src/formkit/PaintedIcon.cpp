#include "formkit/PaintedIcon.h"

#include <QIconEngine>
#include <QPainter>

namespace kestrix {
namespace {

using Paint = std::function<void(QPainter&, const QRect&, QIcon::Mode)>;

class PaintedEngine : public QIconEngine {
 public:
  explicit PaintedEngine(Paint paint) : paint_(std::move(paint)) {}

  [[nodiscard]] QIconEngine* clone() const override { return new PaintedEngine(paint_); }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paint_(*painter, rect, mode);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }

 private:
  Paint paint_;
};

}  // namespace

QIcon PaintedIcon(const Paint& paint) {
  return QIcon(new PaintedEngine(paint));
}

}  // namespace kestrix
