#include "formkit/FocusMark.h"

#include <QPainter>
#include <QStyleOption>

namespace kestrix {

void FocusMark::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  if (element != PE_FrameFocusRect) {
    return QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
  if (!option->state.testFlag(State_KeyboardFocusChange)) return;
  constexpr int kWidth = 2;
  const QColor highlight = option->palette.color(QPalette::Highlight);
  // On a selected row the highlight is the ground.
  const bool selected = option->state.testFlag(State_Selected);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing, false);
  painter->setBrush(Qt::NoBrush);
  painter->setPen(QPen(selected ? highlight.darker(150) : highlight, kWidth, Qt::SolidLine,
                       Qt::FlatCap, Qt::MiterJoin));
  painter->drawRect(option->rect.adjusted(kWidth / 2, kWidth / 2, -kWidth / 2, -kWidth / 2));
  painter->restore();
}

}  // namespace kestrix
