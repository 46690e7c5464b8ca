#pragma once

#include <QString>

namespace kestrix {

namespace Ui {
class RiskEvalFrm_1;
}
class Recordset;
struct SessionState;

/// What the estimation found for a task: both risk indexes, both classes and the verdict, in five
/// controls. It reads the task and the session alone, and computes nothing to be stored.
class RiskSummary {
 public:
  RiskSummary(const Ui::RiskEvalFrm_1& ui, SessionState& session) : ui_(ui), session_(session) {}

  /// Of the current row of `task`. Fails as its fields do, and on one that holds no number.
  void Show(const Recordset& task);
  /// Ticks the box if the index fell; nobody is told of a failure.
  void SyncReducedCheck(const Recordset& task);
  void ShowVerdict(const QString& verdict);
  /// Shows both indexes as those of no task; the classes stay.
  void Clear();

  /// The whole title and both risks of the task at `position` (from 1), as marked-up text.
  [[nodiscard]] static QString TipOf(const Recordset& tasks, int position);

 private:
  void ReadIndexes(const Recordset& task);
  void ShowIndexes();
  void ShowHints(const Recordset& task);

  const Ui::RiskEvalFrm_1& ui_;
  SessionState& session_;
};

}  // namespace kestrix
