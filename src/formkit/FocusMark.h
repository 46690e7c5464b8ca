#pragma once

#include <QProxyStyle>

namespace kestrix {

/// The desktop's style with a focus mark that covers nothing: a frame of two pixels. A mark that
/// tints what it surrounds would change the colours of a picture, and colours mean something here.
/// The grey hints of empty boxes follow the theme's text, which not every desktop sees to.
class FocusMark : public QProxyStyle {
  Q_OBJECT

 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  using QProxyStyle::polish;
  void polish(QPalette& palette) override;
};

}  // namespace kestrix
