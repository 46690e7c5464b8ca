#pragma once

#include <QLabel>

namespace kestrix {

/// A label of one line that takes the width it is given: a text that is wider ends in "…". Its text
/// is always the whole one, and stands in the tool tip.
class CutLabel : public QLabel {
  Q_OBJECT

 public:
  using QLabel::QLabel;

  void ShowText(const QString& text);
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kestrix
