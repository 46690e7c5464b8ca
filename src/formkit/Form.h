#pragma once

#include <QMainWindow>
#include <functional>

#include "formkit/FocusEvents.h"
#include "platform/Failure.h"
#include "platform/Messages.h"
#include "platform/Services.h"

namespace kestrix {

class ActiveForms;
class DataControl;

/// What every form needs to live: the desktop, and the two that watch focus and front.
struct FormKit {
  Platform& platform;
  FocusEvents& focus;
  ActiveForms& forms;
};

/// A window of the program with the life that the rules speak of: load on the first reference,
/// activate and deactivate against other forms, query-unload and unload. It is made and forgotten
/// by a FormSlot, and exists once.
///
/// Handlers are connected through On, OnGotFocus and OnLostFocus, so that a failure that no handler
/// caught ends in one critical box with its description, and the program goes on.
class Form : public QMainWindow {
  Q_OBJECT

 public:
  explicit Form(FormKit& kit);
  ~Form() override;

  /// Runs the load rule. Called once, by the slot, right after the form was made.
  void LoadForm();

  /// Shows the form, or brings it to the front; a modal form stays modal then. ShowFormModal bars
  /// all other windows of the program until this form is hidden or unloaded, and doesn't stay
  /// minimised meanwhile; it returns at once.
  /// An unloaded form isn't shown any more.
  void ShowForm();
  void ShowFormModal();

  /// Query-unload, unload, and away: the form is hidden, the data controls that are its children
  /// commit their pending edits and let go of their files, and the next reference makes a new one.
  /// The object lives on until its handlers have ended, but no further one runs. Does nothing while
  /// an unload is under way. A form whose query-unload calls Stay goes on as before.
  void UnloadForm();
  [[nodiscard]] bool IsUnloading() const { return life_ != Life::kLoaded; }

 Q_SIGNALS:
  /// The form is no longer the one that a reference means.
  void Unloaded();

 protected:
  virtual void Load() {}
  virtual void Activate() {}
  virtual void Deactivate() {}
  virtual void QueryUnload() {}
  /// Ends the unload that is being asked for.
  void Stay() { life_ = Life::kStaying; }
  virtual void Unload() {}
  friend class ActiveForms;

  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

  /// Runs `work`; a failure that comes out of it is shown in a critical box. Nothing runs once the
  /// form has been unloaded.
  void Guarded(const std::function<void()>& work);

  /// Connects a signal to a handler of this form, guarded: a method, or anything else that can be
  /// called. An argument of the signal is passed on to a method that takes it.
  template <class Sender, class Signal, class Handler>
  void On(Sender* sender, Signal signal, Handler handler) {
    connect(sender, signal, this, Guard(std::move(handler)));
  }
  template <class Sender, class Signal, class Me, class Argument>
  void On(Sender* sender, Signal signal, void (Me::*handler)(Argument)) {
    connect(sender, signal, this, [this, handler](std::decay_t<Argument> argument) {
      Guarded([&] { (static_cast<Me*>(this)->*handler)(argument); });
    });
  }
  template <class Handler>
  void OnGotFocus(QWidget* control, Handler handler) {
    kit_.focus.OnGotFocus(control, Guard(std::move(handler)));
  }
  template <class Handler>
  void OnLostFocus(QWidget* control, Handler handler) {
    kit_.focus.OnLostFocus(control, Guard(std::move(handler)));
  }

  /// Sends the focus to a control of this form behind the event in hand, then runs `then`.
  void FocusLater(QWidget* control, std::function<void()> then = {});
  /// Takes the front back, behind the event in hand, if the form is still loaded and visible then,
  /// and unless it lost to a form that holds the front: two such would fight for it for ever.
  void TakeFrontBack();
  /// Says that this form takes the front back whenever it loses it.
  void HoldFront() { holds_front_ = true; }

  [[nodiscard]] FormKit& kit() const { return kit_; }
  [[nodiscard]] Platform& platform() const { return kit_.platform; }
  [[nodiscard]] Messages& messages() const { return kit_.platform.messages; }
  [[nodiscard]] FileSystem& files() const { return kit_.platform.files; }
  void Tell(Icon icon, const QString& title, const QString& text) const;
  [[nodiscard]] Button Ask(Icon icon, const QString& title, const QString& text) const;
  /// Shows the description of a failure.
  void TellFailure(const QString& why);
  /// Commits the pending edit of `source`, and tells when its file takes none any more, as one that
  /// was replaced: no handler keeps that to itself. Fails as Recordset::Update does.
  void Commit(DataControl& source);

 private:
  std::function<void()> Guard(std::function<void()> handler) {
    return [this, handler = std::move(handler)] { Guarded(handler); };
  }
  template <class Me>
  std::function<void()> Guard(void (Me::*handler)()) {
    return Guard([this, handler] { (static_cast<Me*>(this)->*handler)(); });
  }
  void SettleControls();
  void ComeUp();
  void Restore();
  void TakePlace();
  void KeepAboveFrame();
  void GuardedAlways(const std::function<void()>& work);
  void DeleteWhenDone();

  FormKit& kit_;
  /// Staying: the query-unload that is running has called Stay. Gone: the unload rules have run.
  enum class Life { kLoaded, kUnloading, kStaying, kGone, kAway };
  Life life_ = Life::kLoaded;
  int running_ = 0;  ///< handlers that haven't ended
  bool holds_front_ = false;
  bool coming_up_again_ = false;  ///< hidden for a moment only, to change how it is shown
};

/// Runs the steps one after the other; a failing step is passed over and the next one runs.
template <class... Steps>
void PassOver(Steps&&... steps) {
  const auto run = [](auto&& step) {
    try {
      step();
    } catch (const Failure&) {
      // The regime of the handler: the next step runs whatever became of this one.
    }
  };
  (run(steps), ...);
}

}  // namespace kestrix
