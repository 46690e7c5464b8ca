#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <functional>

class QAbstractButton;
class QWidget;

namespace kestrix {

/// Tells controls of forms when the focus comes and goes between controls of this program. A popup,
/// a menu, a message box, a file dialog or another program in between does not count.
///
/// Losing the focus is told before the press that took it does anything, and before the click of a
/// button that was called by its mnemonic. When a handler of a lost focus holds the focus back, or
/// shows a message, that press is not delivered any more: a person who is told to mend a field has
/// not clicked the button behind the message. A control that the focus only passed through is told
/// nothing, and a focus that moves while a handler runs is told only where it came to stand.
class FocusEvents : public QObject {
  Q_OBJECT

 public:
  explicit FocusEvents(QObject* parent = nullptr);

  using Handler = std::function<void()>;
  /// One handler a control and event; a later one replaces it. Forgotten when the control goes.
  /// A handler lets no exception out.
  void OnGotFocus(QWidget* control, Handler handler);
  void OnLostFocus(QWidget* control, Handler handler);

  /// Sends the focus to `control` behind the event in hand, and behind the click when a mouse
  /// button is down; behind its got-focus handler runs `then` (a selection, say). The form of the
  /// control comes to the front with it, unless a modal one bars it. Nothing happens when the
  /// control is gone, hidden or disabled by then. The last call wins.
  void FocusLater(QWidget* control, Handler then = {});

  /// Tells the control that has the focus that it loses it, once: its form is about to lose the
  /// front to another form.
  void LeaveControl();
  /// Forgets that `control`, or a control within it, had the focus, without telling it.
  void Forget(const QWidget* control);

 Q_SIGNALS:
  /// A message box or a dialog of the desktop went.
  void DialogHidden();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Handlers {
    Handler got;
    Handler lost;
  };

  Handlers& HandlersOf(QWidget* control);
  [[nodiscard]] QWidget* ControlOf(QWidget* widget) const;
  void FocusMoved();
  void FollowFocus();
  [[nodiscard]] bool Leave();
  void TellGot(QWidget* control);
  void Arrive();
  void QueueFocus();
  void FocusNow();
  void SwallowPress();
  [[nodiscard]] bool TakesPress(QEvent* event);
  [[nodiscard]] bool TakesRelease(QEvent* event);
  [[nodiscard]] bool TakesMnemonic(QAbstractButton* button, QEvent* event);

  QHash<QWidget*, Handlers> handlers_;
  QPointer<QWidget> control_;  ///< that has the focus, for the rules
  QPointer<QWidget> later_;
  Handler then_;
  QPointer<QWidget> arriving_;  ///< was given the focus; `arrived_` follows when it has been told
  Handler arrived_;
  QPointer<QWidget> leaving_;  ///< the control whose lost-focus handler is running
  /// Which handler is running; the one of a lost focus may have sent it back to its own control.
  enum class Telling { kNothing, kGot, kLost, kHeld } telling_ = Telling::kNothing;
  /// The focus of `later_`: asked for, or to be asked for by the release of a button.
  enum class Sending { kNothing, kQueued, kUntilRelease } sending_ = Sending::kNothing;
  /// A press that is yet to be delivered: it has moved the focus, or isn't meant any more.
  enum class Coming { kNothing, kMovedFocus, kUnwanted } coming_ = Coming::kNothing;
  /// A mouse button: down for the control below it, or for nobody until its release.
  enum class Button { kUp, kDown, kSwallowed } button_ = Button::kUp;
  bool returning_ = false;     ///< a focus that was held back is on its way
  bool dialog_shown_ = false;  ///< the handler of a lost focus showed a message or a dialog
};

}  // namespace kestrix
