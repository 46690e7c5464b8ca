#include "formkit/ListScrollBar.h"

#include <QStyle>
#include <QStyleOptionSlider>

namespace kestrix {
namespace {

constexpr int kSliderEdge = 4;  ///< what a style may draw beyond the slider's own place

}  // namespace

ListScrollBar::Painted ListScrollBar::Look() const {
  QStyleOptionSlider option;
  initStyleOption(&option);
  return {style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this),
          value() == minimum(), value() == maximum()};
}

void ListScrollBar::sliderChange(SliderChange change) {
  const Painted now = Look();
  const bool only_moved = change == SliderValueChange && !painted_.slider.isEmpty() &&
                          painted_.slider.size() == now.slider.size() &&
                          painted_.at_minimum == now.at_minimum &&
                          painted_.at_maximum == now.at_maximum;
  // A bar that comes and goes by itself starts to come with the change.
  const bool comes_and_goes =
      style()->styleHint(QStyle::SH_ScrollBar_Transient, nullptr, this) != 0;
  if (!only_moved || comes_and_goes) return QScrollBar::sliderChange(change);
  if (painted_.slider == now.slider) return;
  const QRect passed = painted_.slider.united(now.slider);
  update(orientation() == Qt::Vertical ? passed.adjusted(0, -kSliderEdge, 0, kSliderEdge)
                                       : passed.adjusted(-kSliderEdge, 0, kSliderEdge, 0));
}

void ListScrollBar::paintEvent(QPaintEvent* event) {
  QScrollBar::paintEvent(event);
  painted_ = Look();
}

}  // namespace kestrix
