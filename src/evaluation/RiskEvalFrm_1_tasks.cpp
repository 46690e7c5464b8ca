// How tasks are saved, added, copied and deleted.
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

}  // namespace

void RiskEvalFrm_1::SaveTask() {
  PassOver([this] { controls_.SaveTask(Tasks()); });
}

void RiskEvalFrm_1::NewTaskDefaults() {
  const QString number = context().project.ESI_No();
  ui_->ESINoLBLCp->setText(number);
  Tasks().Set(task_field::kProjectNumber, number);
  ui_->PrjDesptn->setText(context().project.ProjectDescription());
  controls_.ShowUnset(Today());
  summary_.Clear();
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
  navigation_.ShowPosition();
  FocusLater(ui_->FuntnTaskMachry, [this] { ui_->FuntnTaskMachry->selectAll(); });
}

void RiskEvalFrm_1::addNewRcd_Click() {
  if (TaskCount() != 0) SaveTask();
  AddTask([this] { NewTaskDefaults(); });
}

void RiskEvalFrm_1::AddTask(const std::function<void()>& fill) {
  Tasks().AddNew();
  try {
    // A task that is refused is not to be stored by a later step.
    const Recordset::Attempt attempt(Tasks());
    fill();
    SettleNewTask();
  } catch (const Failure&) {
    ShowNoTask();
    throw;
  }
}

void RiskEvalFrm_1::CpyTaskCmd_Click() {
  if (TaskCount() == 0) {
    return Tell(Icon::kInformation, title::kProgram,
                QStringLiteral("No records to copy and Add as new task. Add new records first."));
  }
  SaveTask();
  CopyTaskOut();
  AddTask([this] { CopyTaskIn(); });
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
  ShowNoTask();
}

void RiskEvalFrm_1::ShowNoTask() {
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
  navigation_.ShowPosition();
  controls_.ShowTask(Tasks());
}

}  // namespace kestrix
