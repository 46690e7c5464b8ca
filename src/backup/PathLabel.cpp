#include "backup/PathLabel.h"

#include <QPainter>
#include <QTextDocument>

namespace kestrix {

QString PathTip(const QString& path) {
  if (!Qt::mightBeRichText(path)) return path;
  return QStringLiteral("<p style='white-space:pre'>") + path.toHtmlEscaped() +
         QStringLiteral("</p>");
}

PathLabel::PathLabel(QWidget* parent) : QLabel(parent) {}

void PathLabel::ShowPath(const QString& path) {
  setText(path);
  setToolTip(PathTip(path));
}

void PathLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawFrame(&painter);
  const QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
  constexpr int kFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWrapAnywhere;
  const QFontMetrics metrics = fontMetrics();
  QString shown = text();
  // The ends of a path tell more than its middle.
  const int lines = qMax(1, room.height() / metrics.lineSpacing());
  for (int width = room.width() * lines;
       width > 0 && metrics.boundingRect(room, kFlags, shown).height() > room.height();
       width -= metrics.averageCharWidth())
    shown = metrics.elidedText(text(), Qt::ElideMiddle, width);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(room, kFlags, shown);
}

}  // namespace kestrix
