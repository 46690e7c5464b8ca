#pragma once

#include <QScopedValueRollback>
#include <QString>

namespace kestrix {

namespace Ui {
class RiskEvalFrm_1;
}
class DataControl;
class RiskSummary;
class SessionForm;
class TaskControls;
class TaskLists;

/// How the evaluation form goes from task to task: by its list, by its find box, and by two buttons
/// that are never shown. It saves the task that comes into the list and shows its place and its
/// risk; the session remembers the place.
class TaskNavigation {
 public:
  TaskNavigation(SessionForm& form, const Ui::RiskEvalFrm_1& ui, DataControl& tasks,
                 const TaskControls& controls, const TaskLists& lists, RiskSummary& summary)
      : form_(form),
        ui_(ui),
        tasks_(tasks),
        controls_(controls),
        lists_(lists),
        summary_(summary) {}

  [[nodiscard]] int Count() const;
  /// From the first use of the find box on: changes of row save nothing.
  [[nodiscard]] bool IsFindActive() const { return find_active_; }
  /// While it lives the rows are being opened: their moves are none of the user's.
  [[nodiscard]] QScopedValueRollback<bool> Opening() {
    return QScopedValueRollback<bool>(is_opening_, true);
  }

  void ShowPosition();
  void RowChanged();
  void Next();
  void Previous();
  void Find();
  void LeaveFind();

 private:
  void Tell(const QString& text);
  void RememberPosition(int position);

  SessionForm& form_;
  const Ui::RiskEvalFrm_1& ui_;
  DataControl& tasks_;
  const TaskControls& controls_;
  const TaskLists& lists_;
  RiskSummary& summary_;
  bool is_opening_ = false;
  bool find_active_ = false;
};

}  // namespace kestrix
