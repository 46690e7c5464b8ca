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

void FocusMark::polish(QPalette& palette) {
  QProxyStyle::polish(palette);
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    QColor hint = palette.color(group, QPalette::Text);
    hint.setAlphaF(0.6F);
    palette.setColor(group, QPalette::PlaceholderText, hint);
  }
}

}  // namespace kestrix
