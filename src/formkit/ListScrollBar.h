#pragma once

#include <QRect>
#include <QScrollBar>

namespace kestrix {

/// A scroll bar that looks and works like any other, and when its value changes paints only what
/// the slider has passed over. Styles fill the whole groove with a shade of colours; the toolkit
/// deals such a fill out to threads when it is high, and waits for all of them. In a list that is
/// stepped through that would be the dearest part of each step, above all on a busy machine.
class ListScrollBar : public QScrollBar {
  Q_OBJECT

 public:
  using QScrollBar::QScrollBar;

 protected:
  void sliderChange(SliderChange change) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  /// What the look of a bar without the slider depends on: at an end an arrow may be greyed.
  struct Painted {
    QRect slider;
    bool at_minimum = false;
    bool at_maximum = false;
  };
  [[nodiscard]] Painted Look() const;

  Painted painted_;  ///< as it was painted last; without a slider before that
};

}  // namespace kestrix
