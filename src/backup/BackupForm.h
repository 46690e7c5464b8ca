#pragma once

#include "shell/SessionForm.h"

class QAbstractButton;

namespace kestrix {

/// What both forms of the backup have in common: they hold the front, Return presses the button
/// that comes first and Escape the one that leads out, as far as these are enabled. Return presses
/// another button when that has the focus, and in a line of text it ends the line.
class BackupForm : public SessionForm {
  Q_OBJECT

 public:
  explicit BackupForm(Context& context);

 protected:
  /// The register of a set isn't where it can be read, or not for long.
  static inline const QString kSetMissing =
      QStringLiteral("1. Restored Files missing. contact M/s. BELTROVAN");

  /// Called once, when the buttons are there.
  void SetKeys(QAbstractButton* first, QAbstractButton* way_out) {
    first_ = first;
    way_out_ = way_out;
  }
  /// Beeps and says why something can't be done.
  void Refuse(const QString& title, const QString& text);
  void Deactivate() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QAbstractButton* first_ = nullptr;
  QAbstractButton* way_out_ = nullptr;
};

}  // namespace kestrix
