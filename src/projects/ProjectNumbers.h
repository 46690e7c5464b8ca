#pragma once

#include <QString>

namespace kestrix {

namespace Ui {
class mnfrm;
}
class DataControl;
class SessionForm;

/// The numbers of projects: how a project comes into being by the entry of one, is found by it, and
/// goes away.
class ProjectNumbers {
 public:
  ProjectNumbers(SessionForm& form, const Ui::mnfrm& ui, DataControl& projects);

  /// Shows the entry box in place of the number in hand.
  void Begin();
  /// The entry box lost the focus.
  void LeaveEntry();
  /// What follows the entry of a number. True when the focus was sent back to the entry box.
  bool Enter();
  /// Stands on the first project whose number begins as the find box says; past the last one when
  /// there is none.
  void Find();
  void Delete();

 private:
  void AskAgain();
  /// Stands on the project of that number; past the last one when there is none.
  [[nodiscard]] bool GoTo(const QString& number);
  /// Goes to the project that exists already, if the person wishes; true when not.
  [[nodiscard]] bool RefuseDuplicate(const QString& number);
  void AddOrTell(const QString& number);
  void Add(const QString& number);
  void FillNewProject(const QString& number);
  /// The number of the project in hand in place of the entry box.
  void ShowNumber();
  void DeleteRow();

  SessionForm& form_;
  const Ui::mnfrm& ui_;
  DataControl& source_;
};

}  // namespace kestrix
