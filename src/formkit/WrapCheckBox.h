#pragma once

#include <QCheckBox>

namespace kestrix {

/// A check box whose text wraps within the width it has, and whose empty box stands out in light
/// and in dark themes. A press anywhere on it counts. Without a text it draws nothing, and
/// assistive tools pass it over.
class WrapCheckBox : public QCheckBox {
  Q_OBJECT

 public:
  explicit WrapCheckBox(QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override;

 private:
  [[nodiscard]] int TextLeft() const;
  [[nodiscard]] int TextHeight(int width) const;
};

}  // namespace kestrix
