#include "backup/BackupForm.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLineEdit>

namespace kestrix {

BackupForm::BackupForm(Context& context) : SessionForm(context) {
  HoldFront();
}

void BackupForm::Refuse(const QString& title, const QString& text) {
  messages().Beep();
  Tell(Icon::kCritical, title, text);
}

void BackupForm::Deactivate() {
  TakeFrontBack();
}

void BackupForm::keyPressEvent(QKeyEvent* event) {
  const bool is_return = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool is_escape = event->matches(QKeySequence::Cancel);
  // A key that is held down presses once.
  if ((!is_return && !is_escape) || event->isAutoRepeat()) return SessionForm::keyPressEvent(event);
  if (is_escape) return way_out_->click();
  if (qobject_cast<QLineEdit*>(focusWidget())) {
    focusNextChild();
    return;
  }
  auto* focused = qobject_cast<QAbstractButton*>(focusWidget());
  (focused ? focused : first_)->click();
}

}  // namespace kestrix
