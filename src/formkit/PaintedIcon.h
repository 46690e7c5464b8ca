#pragma once

#include <QIcon>
#include <functional>

class QPainter;

namespace kestrix {

/// An icon that no file holds: each picture of it is painted by `paint`, smoothly and at the size
/// that is asked for, on nothing.
[[nodiscard]] QIcon PaintedIcon(
    const std::function<void(QPainter& painter, const QRect& room, QIcon::Mode mode)>& paint);

}  // namespace kestrix
