#include "evaluation/TaskNavigation.h"

#include "evaluation/RiskSummary.h"
#include "evaluation/TaskControls.h"
#include "evaluation/TaskFields.h"
#include "evaluation/TaskLists.h"
#include "formkit/Controls.h"
#include "shell/SessionForm.h"
#include "store/DataControl.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {

int TaskNavigation::Count() const {
  return tasks_.HasRecordset() ? tasks_.Recordset().RecordCount() : 0;
}

void TaskNavigation::Tell(const QString& text) {
  form_.Tell(Icon::kInformation, title::kProgram, text);
}

void TaskNavigation::ShowPosition() {
  const Recordset& tasks = tasks_.Recordset();
  ui_.TotAcdRCDDsply->setText(QStringLiteral(" Recorded task %1 of %2 ")
                                  .arg(tasks.AbsolutePosition())
                                  .arg(tasks.RecordCount()));
}

void TaskNavigation::RememberPosition(int position) {
  // A place that the remembered one can't hold isn't remembered; the task is shown all the same.
  PassOver([&] { form_.session().TaskPosition = Narrow(position); });
}

void TaskNavigation::RowChanged() {
  if (is_opening_) return;
  try {
    Recordset& tasks = tasks_.Recordset();
    RememberPosition(tasks.AbsolutePosition());
    if (Count() < 1 || find_active_) return;
    controls_.SaveTask(tasks);
    summary_.SyncReducedCheck(tasks);
    summary_.Show(tasks);
    ShowPosition();
  } catch (const Failure&) {
    // A row that can't be read shows nothing; the next one will.
  }
}

void TaskNavigation::Next() {
  Recordset& tasks = tasks_.Recordset();
  try {
    const int position = Narrow(tasks.AbsolutePosition());
    if (Count() != 0) {
      controls_.SaveTask(tasks);
      controls_.ShowTask(tasks);
      ShowPosition();
    } else {
      Tell(QStringLiteral("No records."));
    }
    if (Count() == position) Tell(QStringLiteral("You are on last record."));
  } catch (const Failure&) {
    Tell(QStringLiteral("You are on last record."));
    tasks.SetAbsolutePosition(Recordset::kPositionPastLast);
  }
}

void TaskNavigation::Previous() {
  Recordset& tasks = tasks_.Recordset();
  try {
    if (Count() == 0) return Tell(QStringLiteral("No records."));
    controls_.SaveTask(tasks);
    if (tasks.AbsolutePosition() == 0) return Tell(QStringLiteral("You are on First record."));
    // Commits the task, and stays on it.
    tasks.SetAbsolutePosition(tasks.AbsolutePosition());
    controls_.ShowTask(tasks);
    ShowPosition();
  } catch (const Failure&) {
    Tell(QStringLiteral("You are on first record."));
    tasks.SetAbsolutePosition(Recordset::kPositionBeforeFirst);
  }
}

void TaskNavigation::Find() {
  find_active_ = true;
  const QString wanted = ui_.FndESINo->text();
  SetSystemBack(ui_.FndESINo);
  if (Count() == 0) return;
  Recordset& tasks = tasks_.Recordset();
  {
    const Recordset::Walk walk(tasks);
    tasks.Find(task_field::kTitle, [&](const QString& title) { return title.startsWith(wanted); });
    if (tasks.AbsolutePosition() != 1) lists_.EnableCombos(false);
  }
  // The list stood on each row in turn, on the last one at the end.
  if (!tasks.Eof()) return;
  RememberPosition(Count());
  SetBackColour(ui_.FndESINo, colour::kWarning);
}

void TaskNavigation::LeaveFind() {
  find_active_ = false;
  const bool goes_on = !ui_.FndESINo->text().isEmpty();
  // Set, not cleared, so that the box doesn't keep all that is ever looked for, to undo it. Where
  // there is a text, this finds the first task, and with that the form stays in the find until it
  // is loaded again.
  ui_.FndESINo->setText(QString());
  // A find that missed and was taken back by hand has barred the lists too.
  if (goes_on || Count() != 0) lists_.EnableCombos(true);
}

}  // namespace kestrix
