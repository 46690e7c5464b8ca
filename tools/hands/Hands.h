#pragma once

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QWidget>
#include <functional>
#include <stdexcept>

class QAction;
class QComboBox;

namespace kestrix {

class ActiveForms;
class Grid;

/// From now on leaves out what the toolkit tells of each window that the offscreen platform can't
/// raise or give a size, and of a session without a folder for the run.
void LeaveOutComplaints();

/// Works the forms of this process as a person would, with real presses of mouse and keys on what
/// can be seen and is enabled, and reads what they show. Controls are named by their objectName and
/// looked for in the form in front, or in the window given to LookAt.
///
/// A name that isn't there ends the work with an exception that tells the names that are; so does
/// what can't be reached.
class Hands {
 public:
  explicit Hands(ActiveForms& forms) : forms_(forms) {}

  /// From now on names mean controls of `window`; until it is gone, or LookAtFront is called.
  void LookAt(QWidget& window) { window_ = &window; }
  void LookAtFront() { window_ = nullptr; }
  [[nodiscard]] QWidget& Window() const;

  template <class T = QWidget>
  [[nodiscard]] T& Control(const QString& name) const {
    auto* control = qobject_cast<T*>(Window().findChild<QObject*>(name));
    if (control) return *control;
    Missing(name, T::staticMetaObject.className());
  }
  /// Null when there is none of that name.
  [[nodiscard]] QObject* Find(const QString& name) const;

  // What a person does. Each ends when everything that follows from it has been done.
  void Click(const QString& name);
  void DoubleClick(const QString& name);
  void ClickRow(const QString& grid, int row);
  void DoubleClickRow(const QString& grid, int row);
  /// Moves the pointer onto the control, from elsewhere in its window.
  void PointAt(const QString& name);
  /// Clicks into the box, empties it and types.
  void TypeInto(const QString& name, const QString& text);
  /// Clicks into the box and types behind what it holds.
  void AppendTo(const QString& name, const QString& text);
  /// Types where the focus is.
  void Type(const QString& text);
  void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void PressTab() { PressKey(Qt::Key_Tab); }
  void PressShiftTab() { PressKey(Qt::Key_Backtab, Qt::ShiftModifier); }
  /// Opens the list of a combo box and takes the entry `text`, the one that is shown included.
  void Pick(const QString& combo, const QString& text);
  /// Clicks a check box if it doesn't stand so already.
  void SetCheck(const QString& name, bool checked);
  /// Takes a menu entry or a tool button of that name.
  void Choose(const QString& action);
  /// The close button of a window's title bar.
  void CloseBox(QWidget& window);

  // What a person sees.
  /// The text of any box, label, button, menu entry or of the title of a group.
  [[nodiscard]] QString TextOf(const QString& name) const;
  [[nodiscard]] QString SelectedTextOf(const QString& name) const;
  [[nodiscard]] QStringList ItemsOf(const QString& name) const;
  [[nodiscard]] QList<QStringList> RowsShownIn(const QString& grid) const;
  [[nodiscard]] bool IsEnabled(const QString& name) const;
  [[nodiscard]] bool IsVisible(const QString& name) const;
  [[nodiscard]] bool IsChecked(const QString& name) const;
  [[nodiscard]] bool HasFocus(const QString& name) const;
  /// Of the control that has the focus; empty when none has it.
  [[nodiscard]] QString FocusName() const;

  /// Lets everything run that is queued. A program that doesn't come to rest is ended.
  static void Settle();
  /// Lets events run until `holds`, for what another program has a part in. False after 10 seconds.
  [[nodiscard]] static bool WaitUntil(const std::function<bool()>& holds);

 private:
  [[noreturn]] void Missing(const QString& name, const char* kind) const;
  [[noreturn]] static void End(const QString& why);
  void Reach(QWidget& control);
  void PressAndRelease(QWidget& control, const QPoint& position, bool twice);
  [[nodiscard]] QPoint RowCentre(Grid& grid, int row) const;

  ActiveForms& forms_;
  QPointer<QWidget> window_;
};

}  // namespace kestrix
