#pragma once

#include <QString>
#include <QWidget>
#include <stdexcept>

class QComboBox;

namespace kestrix {

/// What stopped the hand: a control that isn't there, or can't be used.
class HandStopped : public std::runtime_error {
 public:
  explicit HandStopped(const QString& why) : std::runtime_error(why.toStdString()) {}
};

/// Works the real forms as a person does, by the names of their controls: clicks, types, picks. It
/// uses only what can be seen and is enabled, and stops at the first thing that can't.
class Hand {
 public:
  /// Waits until the form named `name` is in front, and works on it from then on.
  void On(const QString& name);
  [[nodiscard]] QWidget* form() const { return form_; }

  void Click(const QString& control);
  /// Clicks and leaves: the form may be gone behind it.
  void Trigger(const QString& action);
  /// Puts the focus into a field, replaces its text and leaves it there.
  void Type(const QString& control, const QString& text);
  /// Picks an item of a combo box from its list.
  void Pick(const QString& combo, const QString& item);
  /// Picks the row of a list, counted from 0.
  void ClickRow(const QString& grid, int row);
  void Tab();
  [[nodiscard]] QString TextOf(const QString& control) const;
  [[nodiscard]] bool IsShown(const QString& control) const;

  /// Saves what the form looks like as `folder`/`file`.png.
  void Picture(const QString& folder, const QString& file);

 private:
  [[nodiscard]] QWidget* Usable(const QString& control) const;
  template <class W>
  [[nodiscard]] W* Find(const QString& name) const;

  QWidget* form_ = nullptr;
};

}  // namespace kestrix
