#include "formkit/Form.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "formkit/ActiveForms.h"
#include "formkit/Controls.h"
#include "formkit/Grid.h"
#include "store/DataControl.h"

namespace kestrix {

Form::Form(FormKit& kit) : kit_(kit) {}

Form::~Form() {
  kit_.focus.Forget(this);
  kit_.forms.Disappear(this);
}

void Form::LoadForm() {
  SettleControls();
  const auto sources = findChildren<DataControl*>();
  for (DataControl* source : sources) {
    connect(source, &DataControl::EditLost, this, [this](Failure& failure) {
      TellFailure(failure.description());
      failure.SetTold();
    });
  }
  Guarded([this] { Load(); });
}

void Form::SettleControls() {
  const auto combos = findChildren<QComboBox*>();
  for (QComboBox* combo : combos) SettleCombo(combo);
  const auto buttons = findChildren<QPushButton*>();
  for (QPushButton* button : buttons) button->setAutoDefault(false);
  const auto grids = findChildren<Grid*>();
  for (const Grid* grid : grids) {
    connect(grid, &Grid::CopyRequested, this,
            [this](const QString& row) { platform().clipboard.SetText(row); });
    connect(grid, &Grid::Trouble, this, &Form::TellFailure);
  }
}

void Form::ShowForm() {
  if (IsUnloading()) return;
  if (!isVisible()) setWindowModality(Qt::NonModal);
  ComeUp();
}

void Form::ShowFormModal() {
  if (IsUnloading()) return;
  if (windowModality() != Qt::ApplicationModal) {
    // The desktop takes note of the modality only when a window comes up.
    const QScopedValueRollback<bool> again(coming_up_again_, isVisible());
    hide();
    setWindowModality(Qt::ApplicationModal);
    TakePlace();
    show();
  }
  ComeUp();
}

void Form::ComeUp() {
  Restore();
  TakePlace();
  show();
  if (isWindow()) kit_.forms.Appear(this);
}

void Form::Restore() {
  if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
}

/// A form that nobody has given a place comes up in the middle of the frame's screen, so that it is
/// seen whole and the frame shows behind it.
void Form::TakePlace() {
  if (!isWindow() || testAttribute(Qt::WA_Moved)) return;
  const QWidget* frame = kit_.forms.frame() ? kit_.forms.frame() : this;
  // What a window manager puts around the frame it will put around this form too.
  const QSize border = frame->frameGeometry().size() - frame->size();
  const QRect screen = frame->screen()->availableGeometry();
  kit_.forms.rooms().Open(*this, screen.size() - border);
  QRect place(QPoint(), size() + border);
  place.moveCenter(screen.center());
  move(std::max(place.left(), screen.left()), std::max(place.top(), screen.top()));
}

void Form::UnloadForm() {
  if (IsUnloading()) return;
  life_ = Life::kUnloading;
  GuardedAlways([this] { QueryUnload(); });
  if (life_ == Life::kStaying) {
    life_ = Life::kLoaded;
    return;
  }
  GuardedAlways([this] { Unload(); });
  life_ = Life::kGone;
  const auto sources = findChildren<DataControl*>();
  for (DataControl* source : sources) GuardedAlways([source] { source->Close(); });
  if (testAttribute(Qt::WA_Moved)) kit_.forms.rooms().Leave(*this);
  hide();
  kit_.focus.Forget(this);
  kit_.forms.Disappear(this);
  Q_EMIT Unloaded();
  life_ = Life::kAway;
  DeleteWhenDone();
}

/// A handler of this form may stand below a message box whose loop runs now; it has to end first.
void Form::DeleteWhenDone() {
  if (life_ == Life::kAway && running_ == 0) deleteLater();
}

bool Form::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate && isWindow() && QApplication::activeWindow() == this)
    kit_.forms.TakeOver(this);
  return QMainWindow::event(event);
}

void Form::closeEvent(QCloseEvent* event) {
  UnloadForm();
  event->setAccepted(IsUnloading());
}

void Form::showEvent(QShowEvent* event) {
  if (!event->spontaneous() && isWindow()) {
    kit_.forms.Enter(this);
    KeepAboveFrame();
  }
  QMainWindow::showEvent(event);
}

void Form::KeepAboveFrame() {
  const Form* frame = kit_.forms.frame();
  if (frame && frame != this && windowHandle() && frame->windowHandle())
    windowHandle()->setTransientParent(frame->windowHandle());
}

void Form::hideEvent(QHideEvent* event) {
  QMainWindow::hideEvent(event);
  if (!event->spontaneous() && !coming_up_again_) kit_.forms.Disappear(this);
}

void Form::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  // A minimised form that bars the others would leave nothing on the screen that answers.
  if (event->type() == QEvent::WindowStateChange && isModal()) Restore();
}

void Form::Guarded(const std::function<void()>& work) {
  if (life_ >= Life::kGone) return;
  GuardedAlways(work);
}

void Form::GuardedAlways(const std::function<void()>& work) {
  const QPointer<Form> form = this;
  ++running_;
  try {
    work();
  } catch (const Failure& failure) {
    if (!failure.IsTold()) TellFailure(failure.description());
  } catch (const std::exception& error) {
    TellFailure(QString::fromUtf8(error.what()));
  }
  if (!form) return;
  --running_;
  DeleteWhenDone();
}

void Form::TellFailure(const QString& why) {
  Tell(Icon::kCritical, title::kProgram, why);
}

void Form::Commit(DataControl& source) {
  try {
    source.Recordset().Update();
  } catch (Failure& failure) {
    if (!failure.IsTold() && failure.number() == failure::kReadOnly) {
      TellFailure(failure.description());
      failure.SetTold();
    }
    throw;
  }
}

void Form::FocusLater(QWidget* control, std::function<void()> then) {
  kit_.focus.FocusLater(control, [form = QPointer<Form>(this), then = std::move(then)] {
    if (form && then) form->Guarded(then);
  });
}

void Form::TakeFrontBack() {
  const auto take = [this] {
    const QWidget* modal = QApplication::activeModalWidget();
    if (IsUnloading() || !isVisible() || (modal && modal != this)) return;
    const Form* rival = kit_.forms.active();
    if (rival && rival != this && rival->holds_front_) return;
    Restore();
    kit_.forms.Appear(this);
  };
  QMetaObject::invokeMethod(this, take, Qt::QueuedConnection);
}

void Form::Tell(Icon icon, const QString& title, const QString& text) const {
  messages().Show(kestrix::Tell(icon, title, text));
}

Button Form::Ask(Icon icon, const QString& title, const QString& text) const {
  return messages().Show(kestrix::Ask(icon, title, text));
}

}  // namespace kestrix
