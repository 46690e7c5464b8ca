#include "formkit/ActiveForms.h"

#include <QApplication>
#include <utility>

#include "formkit/FocusEvents.h"
#include "formkit/Form.h"

namespace kestrix {
namespace {

// A window manager that learns late of a window that went gives the front to one of its own choice,
// though the form that asked for it has it by then. Nobody clicks on another form so soon.
constexpr int kUntilGapIsFilled = 150;  // milliseconds

bool CanTakeFront(const Form& form) {
  return form.isVisible() && !form.isMinimized() && !form.IsUnloading();
}

}  // namespace

ActiveForms::ActiveForms(FocusEvents& focus, QObject* parent) : QObject(parent), focus_(focus) {
  connect(&focus, &FocusEvents::DialogHidden, this, &ActiveForms::BringForwardLater);
  gap_.setSingleShot(true);
  gap_.setInterval(kUntilGapIsFilled);
  connect(&gap_, &QTimer::timeout, this, [this] {
    if (auto* now = qobject_cast<Form*>(QApplication::activeWindow())) TakeOver(now);
  });
}

Form* ActiveForms::active() const {
  return active_;
}

Form* ActiveForms::frame() const {
  return frame_;
}

void ActiveForms::Enter(Form* form) {
  if (!frame_) frame_ = form;
  if (!order_.contains(form)) order_.append(form);
}

void ActiveForms::PutFirst(Form* form) {
  order_.removeAll(form);
  order_.prepend(form);
}

void ActiveForms::Appear(Form* form) {
  if (form != active_) coming_ = form;
  wanted_ = form;
  PutFirst(form);
  form->raise();
  form->activateWindow();
  // A window that was hidden for a moment only never lost the keys, for the desktop.
  if (QApplication::activeWindow() != form && form->windowHandle() &&
      QGuiApplication::focusWindow() == form->windowHandle())
    QApplication::setActiveWindow(form);
}

void ActiveForms::Disappear(Form* form) {
  order_.removeAll(form);
  if (told_ == form) told_ = nullptr;
  if (coming_ == form) coming_ = nullptr;
  if (active_ != form) return;
  active_ = nullptr;
  heir_ = Next();
  wanted_ = nullptr;
  if (QGuiApplication::platformName() == u"xcb") gap_.start();
  // A form that hides itself usually shows another one in the same breath, which needs no help.
  BringForwardLater();
}

void ActiveForms::GiveAwayFront() {
  ++given_away_;
  gap_.stop();
}

void ActiveForms::BringForwardLater() {
  const auto bring = [this, given_away = given_away_] {
    if (given_away == given_away_) BringForward();
  };
  QMetaObject::invokeMethod(this, bring, Qt::QueuedConnection);
}

void ActiveForms::BringForward() {
  const QPointer<Form> heir = std::exchange(heir_, nullptr);
  if (coming_ && coming_->isVisible()) return;
  if (!active_) {
    if (Form* next = Next()) Appear(next);
    return;
  }
  // A window manager has its own idea of who is next, and may have been faster.
  if (heir && heir != active_ && CanTakeFront(*heir)) return Appear(heir);
  // A dialog that closes leaves no window active where there is no window manager.
  const QWidget* now = QApplication::activeWindow();
  if ((!now || !now->isVisible()) && active_->isVisible()) Appear(active_);
}

Form* ActiveForms::Next() const {
  if (QWidget* modal = QApplication::activeModalWidget()) return qobject_cast<Form*>(modal);
  for (const QPointer<Form>& form : order_)
    if (form && CanTakeFront(*form)) return form;
  return nullptr;
}

void ActiveForms::TakeOver(Form* form) {
  if (form == active_ || form->IsUnloading()) return;
  if (gap_.isActive() && wanted_ && wanted_ != form && CanTakeFront(*wanted_)) {
    // Once; a form that isn't let to the front then is told at the end of the gap.
    const auto ask_again = [this, wanted = std::exchange(wanted_, nullptr)] {
      if (!wanted || !CanTakeFront(*wanted)) return;
      Appear(wanted);
      wanted_ = nullptr;
    };
    QMetaObject::invokeMethod(this, ask_again, Qt::QueuedConnection);
    return;
  }
  const QPointer<Form> taking = form;
  active_ = form;
  if (coming_ == form) heir_ = nullptr;
  coming_ = nullptr;
  PutFirst(form);
  // Each step runs handlers, and they may bring yet another form to the front: then that one took
  // over, and here is nothing left to tell.
  const auto superseded = [&] { return !taking || active_ != taking; };

  focus_.LeaveControl();
  if (superseded() || told_ == form) return;
  const QPointer<Form> before = std::exchange(told_, nullptr);
  if (before && before->isVisible() && !before->IsUnloading())
    before->Guarded([&] { before->Deactivate(); });
  if (superseded()) return;
  told_ = form;
  form->Guarded([form] { form->Activate(); });
}

}  // namespace kestrix
