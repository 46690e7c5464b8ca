#pragma once

#include <QObject>

class QComboBox;
class QKeyEvent;
class QMouseEvent;

namespace kestrix {

/// Makes a combo box with an edit one that is picked from and never typed into. The edit remains
/// because a box of levels shows any stored text, an item or not.
///
/// A press anywhere on the box opens its list, and another closes it; Space opens it, a letter
/// picks the next item that begins with it. Whatever is picked is told by QComboBox::activated.
class PickOnlyCombo : public QObject {
  Q_OBJECT

 public:
  /// Lives as long as `box`, which has an edit.
  explicit PickOnlyCombo(QComboBox* box);

  /// Shows `text` without picking it: nobody is told.
  static void Show(QComboBox* box, const QString& text);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool TakesPress(QObject* watched, const QMouseEvent& press);
  [[nodiscard]] bool TakesKey(const QKeyEvent& key);
  void PickByLetter(const QString& letter);

  QComboBox* box_;
  bool pressed_ = false;  ///< on the text, and not yet let go
};

}  // namespace kestrix
