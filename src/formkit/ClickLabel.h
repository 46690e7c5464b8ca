#pragma once

#include <QLabel>

namespace kestrix {

/// A label that acts: a click, or Space or Enter while it has the focus, raises Click; a double
/// click raises DblClick, and so does Ctrl+Enter. It shows the focus by a frame. To an assistive
/// tool it is a button that can be pressed.
class ClickLabel : public QLabel {
  Q_OBJECT

 public:
  explicit ClickLabel(QWidget* parent = nullptr);

 Q_SIGNALS:
  void Click();
  void DblClick();
  /// The pointer moved onto the label or off it.
  void Hovered(bool over);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool pressed_ = false;  ///< and not yet told as a click or a double click
};

}  // namespace kestrix
