#pragma once

#include <QLabel>

namespace kestrix {

/// A label that takes the width it is given: a text of one line that is wider ends in "…". One that
/// wraps is broken anywhere, as a path is, and its middle is left out when the lines are too few.
/// Its text is always the whole one, and stands in the tool tip.
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
