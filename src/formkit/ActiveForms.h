#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include "formkit/FormRooms.h"

namespace kestrix {

class FocusEvents;
class Form;

/// Knows which form of this program is the active one, and tells forms when they take over from
/// another form or lose to one. Message boxes, file dialogs, popups and other programs don't count.
/// The control that has the focus is told that it loses it, then its form that it lost, then the
/// other form that it is active.
///
/// When the active form is hidden or unloaded, the visible form that was in front, or asked to be,
/// last before it and that no modal form bars is brought to the front, behind the event in hand and
/// unless another one got it by then. A form that goes isn't told that it lost: it knows.
class ActiveForms : public QObject {
  Q_OBJECT

 public:
  explicit ActiveForms(FocusEvents& focus, QObject* parent = nullptr);

  [[nodiscard]] Form* active() const;
  /// The first form that was shown. All others stay above it.
  [[nodiscard]] Form* frame() const;

  /// How large forms open, for this run.
  [[nodiscard]] FormRooms& rooms() { return rooms_; }

  /// Called by Form: it comes up; it wants the front; it has it; it is hidden or gone.
  void Enter(Form* form);
  void Appear(Form* form);
  void TakeOver(Form* form);
  void Disappear(Form* form);
  /// Another program was given the front: no form takes it for the dialog or the form that went
  /// right before.
  void GiveAwayFront();

 private:
  void PutFirst(Form* form);
  void BringForwardLater();
  void BringForward();
  [[nodiscard]] Form* Next() const;

  FocusEvents& focus_;
  FormRooms rooms_;
  QPointer<Form> frame_;
  QPointer<Form> active_;
  QPointer<Form> coming_;  ///< a form that asked for the front and hasn't got it yet
  QPointer<Form> heir_;    ///< who gets the front of the form that went, unless one asks for it
  QPointer<Form> wanted_;  ///< the form that asked for the front last
  QTimer gap_;             ///< runs for a while after the active form went
  QPointer<Form> told_;    ///< the form that was told last that it is active
  QList<QPointer<Form>> order_;  ///< the visible forms, first who was or asked to be in front last
  int given_away_ = 0;           ///< how often the front was given to another program
};

}  // namespace kestrix
