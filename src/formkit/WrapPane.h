#pragma once

#include <QLayout>
#include <QResizeEvent>
#include <QWidget>
#include <algorithm>

namespace kestrix {

/// A pane of a splitter or a scrolled page that is never lower than what its texts need when they
/// wrap at its width. A splitter asks its parts for no height of a width, and would squeeze their
/// rows onto each other; a scroll area asks for the height that they would like, and would scroll
/// where they still fit.
class WrapPane : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  QSize minimumSizeHint() const override {
    const QSize least = QWidget::minimumSizeHint();
    return {least.width(), std::max(least.height(), heightForWidth(width()))};
  }
  int heightForWidth(int width) const override {
    return hasHeightForWidth() ? layout()->totalMinimumHeightForWidth(width) : -1;
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QWidget::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) updateGeometry();
  }
};

}  // namespace kestrix
