#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QSize>
#include <QTemporaryDir>
#include <functional>
#include <memory>

#include "support/XServer.h"

namespace kestrix {

/// The shipped program on a display of its own, and a person before it: eyes that find a control by
/// its name and read it, and a hand on mouse and keyboard that goes through the display. Each act
/// first waits until what it acts on is there. Nothing of the program's code is linked.
class Person {
 public:
  /// Why nobody can sit here; empty when somebody can.
  [[nodiscard]] static QString WhyNot(XServer::Manager manager);

  /// `family` is a laid-out installation's folder, of which nothing is kept open here. Further
  /// variables of the environment are given as NAME=value.
  Person(const QString& family, const QStringList& variables = {},
         const QStringList& arguments = {});
  ~Person();
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;

  /// Whether the program came up.
  [[nodiscard]] bool Start();
  void Kill();
  /// Waits until the program has ended by itself; true when it did, and well.
  [[nodiscard]] bool Ended();

  // Eyes.
  [[nodiscard]] QJsonObject Look() const;
  /// A window that shows; empty when there is none of that name.
  [[nodiscard]] QJsonObject Window(const QString& name) const;
  /// A control, menu entry or window part: of the active window before others, of those that show
  /// before the hidden ones.
  [[nodiscard]] QJsonObject Control(const QString& name) const;
  [[nodiscard]] QString Text(const QString& name) const;
  [[nodiscard]] QString Active() const;
  [[nodiscard]] QString Focus() const;
  /// The text of the message box that is open, behind its title and a bar.
  [[nodiscard]] QString Box() const;
  /// Waits until a look is as wanted.
  [[nodiscard]] bool Sees(const std::function<bool()>& wanted) const;
  [[nodiscard]] bool SeesActive(const QString& window) const;
  [[nodiscard]] bool SeesFocus(const QString& control) const;
  [[nodiscard]] bool SeesBox(const QString& title_and_text) const;
  [[nodiscard]] bool SeesText(const QString& control, const QString& text) const;

  // Hand.
  /// False when the control isn't there to be clicked, in the window that has the front.
  [[nodiscard]] bool Click(const QString& control);
  void ClickAt(const QPoint& place);
  /// Keys as the display names them, "Tab" or "alt+a", one after the other, once a window of the
  /// program has the keyboard: the message box if one is open.
  void Press(const QStringList& keys);
  void Type(const QString& text);
  /// Brings this person's window to the front of those of other programs.
  [[nodiscard]] bool BringUp(const QString& window);
  /// The same for the message box that is open.
  [[nodiscard]] bool BringUpBox();
  /// Asks the window manager to minimise a window; whether it could be asked.
  [[nodiscard]] bool Minimise(const QString& window);

  /// Of a file of the installation.
  [[nodiscard]] QString Path(const QString& tail) const;
  [[nodiscard]] QString Setting(const QString& key) const;

 private:
  [[nodiscard]] QJsonObject BoxWindow() const;
  void AwaitKeyboard() const;
  /// What the tool does with a window of this program; false when it finds none of that title.
  bool Do(const QString& command, const QJsonObject& window);

  QTemporaryDir place_;
  QString family_;
  QStringList variables_;
  QStringList arguments_;
  int starts_ = 0;
  std::unique_ptr<QProcess> program_;
};

}  // namespace kestrix
