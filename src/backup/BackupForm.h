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
  /// Called once, when the buttons are there.
  void SetKeys(QAbstractButton* first, QAbstractButton* way_out);
  void Deactivate() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QAbstractButton* first_ = nullptr;
  QAbstractButton* way_out_ = nullptr;
};

}  // namespace kestrix
