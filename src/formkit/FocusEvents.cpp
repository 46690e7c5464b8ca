#include "formkit/FocusEvents.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QShortcutEvent>
#include <QTableView>

#include "formkit/Controls.h"
#include "formkit/Form.h"

namespace kestrix {
namespace {

/// Handlers that send the focus to each other must not keep the program busy for ever.
constexpr int kMostMoves = 16;

Form* FormOf(const QWidget* widget) {
  return widget ? qobject_cast<Form*>(widget->window()) : nullptr;
}

bool IsMadeOfParts(const QWidget* widget) {
  return qobject_cast<const QComboBox*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
         qobject_cast<const QTableView*>(widget);
}

bool IsDialogOfDesktop(QObject* object) {
  const auto* widget = qobject_cast<QWidget*>(object);
  return widget && widget->isWindow() && widget->isModal() && !qobject_cast<const Form*>(widget);
}

}  // namespace

FocusEvents::FocusEvents(QObject* parent) : QObject(parent) {
  qApp->installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, &FocusEvents::FocusMoved);
}

FocusEvents::Handlers& FocusEvents::HandlersOf(QWidget* control) {
  if (!handlers_.contains(control))
    connect(control, &QObject::destroyed, this, [this, control] { handlers_.remove(control); });
  return handlers_[control];
}

void FocusEvents::OnGotFocus(QWidget* control, Handler handler) {
  HandlersOf(control).got = std::move(handler);
}

void FocusEvents::OnLostFocus(QWidget* control, Handler handler) {
  HandlersOf(control).lost = std::move(handler);
}

void FocusEvents::FocusLater(QWidget* control, Handler then) {
  if (leaving_) telling_ = leaving_ == control ? Telling::kHeld : Telling::kLost;
  later_ = control;
  then_ = std::move(then);
  QueueFocus();
}

void FocusEvents::QueueFocus() {
  if (sending_ != Sending::kNothing) return;
  sending_ = Sending::kQueued;
  QMetaObject::invokeMethod(this, &FocusEvents::FocusNow, Qt::QueuedConnection);
}

void FocusEvents::FocusNow() {
  // A button that is pressed would lose its click with the focus. The release calls again.
  const bool is_down = button_ == Button::kDown && QGuiApplication::mouseButtons() != Qt::NoButton;
  sending_ = is_down && !returning_ ? Sending::kUntilRelease : Sending::kNothing;
  if (sending_ == Sending::kUntilRelease) return;
  returning_ = false;
  const QPointer<QWidget> control = std::exchange(later_, nullptr);
  arriving_ = control;
  arrived_ = std::exchange(then_, {});
  if (control && control->isVisible() && control->isEnabled()) {
    QWidget* window = control->window();
    const QWidget* modal = QApplication::activeModalWidget();
    const bool barred = modal && modal != window;
    if (!window->isActiveWindow() && !barred && FormOf(control)) {
      window->raise();
      window->activateWindow();
    }
    control->setFocus(Qt::OtherFocusReason);
  }
  // A focus that was held back and then found its control gone stays where it went.
  FollowFocus();
}

void FocusEvents::LeaveControl() {
  if (telling_ == Telling::kNothing) returning_ = Leave();
}

void FocusEvents::Forget(const QWidget* control) {
  const auto is_within = [control](const QWidget* widget) {
    return widget && (widget == control || control->isAncestorOf(widget));
  };
  if (is_within(control_)) control_ = nullptr;
  if (is_within(later_)) {
    later_ = nullptr;
    then_ = {};
  }
  if (is_within(arriving_)) arrived_ = {};
}

QWidget* FocusEvents::ControlOf(QWidget* widget) const {
  if (!FormOf(widget) || qobject_cast<QMenuBar*>(widget)) return nullptr;
  for (QWidget* at = widget; at && !at->isWindow(); at = at->parentWidget())
    if (handlers_.contains(at) || IsMadeOfParts(at)) return at;
  return widget;
}

void FocusEvents::FocusMoved() {
  const bool by_press = coming_ == Coming::kMovedFocus;
  if (by_press) coming_ = Coming::kNothing;
  if (telling_ != Telling::kNothing)
    return;  // the handler that runs is followed by a look at the focus
  dialog_shown_ = false;
  FollowFocus();
  if (by_press && (returning_ || dialog_shown_)) SwallowPress();
}

void FocusEvents::SwallowPress() {
  coming_ = Coming::kUnwanted;
  // The press comes before the event loop does. When it doesn't, the next one isn't meant.
  QMetaObject::invokeMethod(
      this, [this] { coming_ = Coming::kNothing; }, Qt::QueuedConnection);
}

void FocusEvents::FollowFocus() {
  if (telling_ != Telling::kNothing || returning_) return;
  for (int move = 0; move < kMostMoves; ++move) {
    QWidget* now = ControlOf(QApplication::focusWidget());
    if (!now) return;
    if (now == control_) return Arrive();
    if (control_) {
      returning_ = Leave();
      if (returning_) return;
      continue;  // the handler may have moved the focus on
    }
    control_ = now;
    TellGot(now);
  }
}

/// A window that comes back to the front has the focus later than it was asked for; until then what
/// follows a queued focus waits. It is dropped when the focus came to stand elsewhere.
void FocusEvents::Arrive() {
  const Handler arrived = std::exchange(arrived_, {});
  if (arrived && arriving_ && ControlOf(arriving_) == control_) arrived();
}

/// Tells `control_` that it lost the focus; true when its handler holds the focus back.
bool FocusEvents::Leave() {
  const QPointer<QWidget> control = control_;
  control_ = nullptr;
  if (!control) return false;
  // As in a box of one line, no selection stays where nobody types.
  if (auto* lines = qobject_cast<QPlainTextEdit*>(control.data())) {
    QTextCursor cursor = lines->textCursor();
    cursor.clearSelection();
    lines->setTextCursor(cursor);
  }
  const Form* form = FormOf(control);
  if (form && form->IsUnloading()) return false;
  const Handler lost = handlers_.value(control).lost;
  if (!lost) return false;

  const QScopedValueRollback<Telling> telling(telling_, Telling::kLost);
  leaving_ = control;
  lost();
  leaving_ = nullptr;
  // A message in the handler lets the event loop run, and a focus that was asked for before it
  // has come back already; then there is nothing to wait for.
  return telling_ == Telling::kHeld && sending_ != Sending::kNothing;
}

void FocusEvents::TellGot(QWidget* control) {
  const Form* form = FormOf(control);
  if (form && form->IsUnloading()) return;
  const QScopedValueRollback<Telling> telling(telling_, Telling::kGot);
  const QPointer<QWidget> told = control;
  if (const Handler got = handlers_.value(control).got) got();
  if (told) SelectPlaceholder(told);
}

bool FocusEvents::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::FocusIn:
      if (watched->isWidgetType() && telling_ == Telling::kNothing && coming_ != Coming::kUnwanted)
        coming_ = static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason
                      ? Coming::kMovedFocus
                      : Coming::kNothing;
      break;
    case QEvent::Show:
      if (leaving_ && IsDialogOfDesktop(watched)) dialog_shown_ = true;
      break;
    case QEvent::Hide:
      if (IsDialogOfDesktop(watched)) Q_EMIT DialogHidden();
      break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      if (watched->isWidgetType() && TakesPress(event)) return true;
      break;
    case QEvent::MouseMove:
      if (watched->isWidgetType() && button_ == Button::kSwallowed) return true;
      break;
    case QEvent::MouseButtonRelease:
      if (watched->isWidgetType() && TakesRelease(event)) return true;
      break;
    case QEvent::Shortcut:
      if (auto* button = qobject_cast<QAbstractButton*>(watched))
        if (TakesMnemonic(button, event)) return true;
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

bool FocusEvents::TakesPress(QEvent* event) {
  // The second press of a double click may come before a focus that was held is back.
  const bool unwanted = coming_ == Coming::kUnwanted || returning_;
  if (coming_ == Coming::kUnwanted) coming_ = Coming::kNothing;
  button_ = unwanted ? Button::kSwallowed : Button::kDown;
  if (unwanted) event->accept();  // so that no parent is given it instead
  return unwanted;
}

bool FocusEvents::TakesRelease(QEvent* event) {
  const bool swallowed = std::exchange(button_, Button::kUp) == Button::kSwallowed;
  if (sending_ == Sending::kUntilRelease) {
    sending_ = Sending::kNothing;
    QueueFocus();
  }
  if (swallowed) event->accept();
  return swallowed;
}

bool FocusEvents::TakesMnemonic(QAbstractButton* button, QEvent* event) {
  if (!FormOf(button) || static_cast<QShortcutEvent*>(event)->isAmbiguous()) return false;
  if (!button->isEnabled() || button->focusPolicy() == Qt::NoFocus) return false;
  const QPointer<QAbstractButton> called = button;
  dialog_shown_ = false;
  button->setFocus(Qt::ShortcutFocusReason);
  const bool held = returning_ || dialog_shown_;
  if (!held && called && called->isEnabled() && called->isVisible()) called->click();
  return true;
}

}  // namespace kestrix
