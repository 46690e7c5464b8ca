#include "formkit/CutLabel.h"

#include <QPainter>
#include <QStyle>

#include "formkit/Controls.h"

namespace kestrix {

void CutLabel::ShowText(const QString& text) {
  setText(text);
  setToolTip(PlainTip(text));
}

QSize CutLabel::minimumSizeHint() const {
  return {0, QLabel::minimumSizeHint().height()};
}

void CutLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawFrame(&painter);
  const QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
  int flags = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment()));
  QString shown = text();
  if (!wordWrap()) {
    shown = fontMetrics().elidedText(text(), Qt::ElideRight, room.width());
  } else {
    flags |= Qt::TextWrapAnywhere;
    // The ends of a path tell more than its middle.
    const int lines = qMax(1, room.height() / fontMetrics().lineSpacing());
    for (int width = room.width() * lines;
         width > 0 && fontMetrics().boundingRect(room, flags, shown).height() > room.height();
         width -= fontMetrics().averageCharWidth())
      shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width);
  }
  style()->drawItemText(&painter, room, flags, palette(), isEnabled(), shown, foregroundRole());
}

}  // namespace kestrix
