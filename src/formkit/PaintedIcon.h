#pragma once

#include <QIconEngine>

namespace kestrix {

/// What icons share that no file holds: each picture of one is painted anew, at the size that is
/// asked for, on nothing. What is painted, and how a copy is made, is the subclass's.
class PaintedIcon : public QIconEngine {
 public:
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
};

}  // namespace kestrix
