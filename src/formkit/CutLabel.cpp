#include "formkit/CutLabel.h"

#include <QPainter>
#include <QStyle>

namespace kestrix {

void CutLabel::ShowText(const QString& text) {
  setText(text);
  // A name with angle brackets is no markup.
  setToolTip(Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text.trimmed());
}

QSize CutLabel::minimumSizeHint() const {
  return {0, QLabel::minimumSizeHint().height()};
}

void CutLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawFrame(&painter);
  const QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
  style()->drawItemText(
      &painter, room, static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())),
      palette(), isEnabled(), fontMetrics().elidedText(text(), Qt::ElideRight, room.width()),
      foregroundRole());
}

}  // namespace kestrix
