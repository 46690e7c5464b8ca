// How tasks are shown, saved, added, copied and deleted, and how the form moves between them.
#include <limits>

#include "evaluation/RiskEvalFrm_1.h"
#include "evaluation/TaskFields.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {
namespace {

/// Fields that a copied task doesn't take over: its key, and when it was taken down and is due.
constexpr bool IsCopied(int field) {
  return field != task_field::kKey && field != task_field::kDate &&
         field != task_field::kActionDate;
}

bool FitsInt16(int number) {
  return number >= std::numeric_limits<qint16>::min() &&
         number <= std::numeric_limits<qint16>::max();
}

}  // namespace

int RiskEvalFrm_1::TaskCount() const {
  return dtsorce2_.HasRecordset() ? dtsorce2_.Recordset().RecordCount() : 0;
}

void RiskEvalFrm_1::ShowTask() {
  controls_.Show(Tasks());
  controls_.ShowBeginnings();
}

void RiskEvalFrm_1::SaveTask() {
  if (ui_->ESINoLBLCp->text().isEmpty()) return;
  // What was written before a failing field stays; nobody is told, and the caller goes on.
  PassOver([this] { controls_.Save(Tasks()); });
}

void RiskEvalFrm_1::ShowPosition() {
  ui_->TotAcdRCDDsply->setText(QStringLiteral(" Recorded task %1 of %2 ")
                                   .arg(Tasks().AbsolutePosition())
                                   .arg(Tasks().RecordCount()));
}

void RiskEvalFrm_1::RememberPosition(int position) {
  // A place that the remembered one can't hold isn't remembered; the task is shown all the same.
  if (FitsInt16(position)) session().TaskPosition = static_cast<qint16>(position);
}

void RiskEvalFrm_1::DB1_GotFocus() {
  ui_->DB1->SetAllowUpdate(false);
}

void RiskEvalFrm_1::DB1_RowColChange() {
  if (loading_) return;
  try {
    RememberPosition(Tasks().AbsolutePosition());
    if (TaskCount() < 1 || find_active_) return;
    SaveTask();
    SyncReducedCheck();
    ShowRiskSummary();
    ShowPosition();
  } catch (const Failure&) {
    // A row that can't be read shows nothing; the next one will.
  }
}

void RiskEvalFrm_1::NewTaskDefaults() {
  const QString number = context().project.ESI_No();
  ui_->ESINoLBLCp->setText(number);
  Tasks().Set(task_field::kProjectNumber, number);
  ui_->PrjDesptn->setText(context().project.ProjectDescription());
  controls_.ShowUnset(Today());
  ui_->RIBRtxt->setText(QStringLiteral("0"));
  ui_->RIARtxt->setText(QStringLiteral("0"));
}

void RiskEvalFrm_1::SettleNewTask() {
  lists_.EnableCombos(true);
  {
    // Told once, where the cursor ends: on the new task, which has the highest number but for those
    // that others have added since. Standing on theirs, a person would write into it.
    const Recordset::Walk walk(Tasks());
    Tasks().Update();
    Tasks().Requery();
    Tasks().SetAbsolutePosition(Tasks().AddedPosition());
  }
  ShowPosition();
  FocusLater(ui_->FuntnTaskMachry, [this] { ui_->FuntnTaskMachry->selectAll(); });
}

void RiskEvalFrm_1::addNewRcd_Click() {
  if (TaskCount() != 0) SaveTask();
  Tasks().AddNew();
  NewTaskDefaults();
  SettleNewTask();
}

void RiskEvalFrm_1::CpyTaskCmd_Click() {
  if (TaskCount() == 0) {
    Tell(Icon::kInformation, title::kProgram,
         QStringLiteral("No records to copy and Add as new task. Add new records first."));
    return;
  }
  SaveTask();
  CopyTaskOut();
  Tasks().AddNew();
  CopyTaskIn();
  SettleNewTask();
}

void RiskEvalFrm_1::CopyTaskOut() {
  session().TaskCopyBuffer.fill(QString());
  for (int field = 0; field < task_field::kCount; ++field) {
    if (!IsCopied(field)) continue;
    session().TaskCopyBuffer[static_cast<std::size_t>(field)] = Tasks().Value(field);
  }
}

void RiskEvalFrm_1::CopyTaskIn() {
  for (int field = 0; field < task_field::kCount; ++field) {
    if (!IsCopied(field)) continue;
    Tasks().Set(field, session().TaskCopyBuffer[static_cast<std::size_t>(field)]);
  }
}

void RiskEvalFrm_1::DleteRcd_Click() {
  if (TaskCount() == 0) {
    Tell(Icon::kInformation, title::kProgram, QStringLiteral("No records to delete."));
  } else {
    session().MsgAnswer = Ask(Icon::kInformation, title::kProgram,
                              QStringLiteral("Wish to delete task %1 Dated : %2")
                                  .arg(ui_->FuntnTaskMachry->text(), ui_->dateOfRcd->text()));
    if (session().MsgAnswer == Button::kYes) DeleteTask();
  }
  if (TaskCount() != 0) return;
  ClearTaskForm();
  lists_.Disable();
}

void RiskEvalFrm_1::DeleteTask() {
  {
    const Recordset::Walk walk(Tasks());
    Tasks().Delete();
    Tasks().Requery();
    if (TaskCount() != 0) Tasks().SetAbsolutePosition(TaskCount());
  }
  if (TaskCount() == 0) return;
  ShowPosition();
  ShowTask();
}

void RiskEvalFrm_1::nxtfrmbtn_Click() {
  try {
    const int position = Tasks().AbsolutePosition();
    if (!FitsInt16(position)) throw Failure(failure::kOverflow, QStringLiteral("Overflow"));
    if (TaskCount() != 0) {
      SaveTask();
      ShowTask();
      ShowPosition();
    } else {
      Tell(Icon::kInformation, title::kProgram, QStringLiteral("No records."));
    }
    if (TaskCount() == position) {
      Tell(Icon::kInformation, title::kProgram, QStringLiteral("You are on last record."));
    }
  } catch (const Failure&) {
    Tell(Icon::kInformation, title::kProgram, QStringLiteral("You are on last record."));
    Tasks().SetAbsolutePosition(Recordset::kPositionPastLast);
  }
}

void RiskEvalFrm_1::prvsfrmbtn_Click() {
  try {
    if (TaskCount() == 0) {
      Tell(Icon::kInformation, title::kProgram, QStringLiteral("No records."));
      return;
    }
    SaveTask();
    if (Tasks().AbsolutePosition() == 0) {
      Tell(Icon::kInformation, title::kProgram, QStringLiteral("You are on First record."));
      return;
    }
    // Commits the task, and stays on it.
    Tasks().SetAbsolutePosition(Tasks().AbsolutePosition());
    ShowTask();
    ShowPosition();
  } catch (const Failure&) {
    Tell(Icon::kInformation, title::kProgram, QStringLiteral("You are on first record."));
    Tasks().SetAbsolutePosition(Recordset::kPositionBeforeFirst);
  }
}

}  // namespace kestrix
