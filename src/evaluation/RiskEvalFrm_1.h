#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "evaluation/RiskSummary.h"
#include "evaluation/TaskControls.h"
#include "evaluation/TaskLists.h"
#include "evaluation/TaskNavigation.h"
#include "shell/SessionForm.h"
#include "store/DataControl.h"

class QLineEdit;

namespace kestrix {

namespace Ui {
class RiskEvalFrm_1;
}

/// The tasks of the project in hand: shows them, takes them down, and shows the risk that the
/// estimation found for each. It holds the rows of the project's tasks for as long as it is loaded;
/// the estimation works on their current row.
///
/// A task is saved without a command: what is typed stands in the pending edit of the current row,
/// and leaving the row, leaving one of the two hazard boxes, adding, deleting and closing commit
/// it. The form computes no risk, and it never asks whether to save. It stays open over a task that
/// can't be stored just now.
class RiskEvalFrm_1 : public SessionForm, public TaskInHand {
  Q_OBJECT

 public:
  explicit RiskEvalFrm_1(Context& context);
  ~RiskEvalFrm_1() override;

  /// The tasks of the project, on the task in hand. Fails with kObjectNotSet when the load failed
  /// before they were opened.
  [[nodiscard]] Recordset& Tasks() override { return dtsorce2_.Recordset(); }

 Q_SIGNALS:
  /// This form has hidden itself, until the estimation is done.
  void EstimationRequested();
  /// The form was unloaded by its Exit button.
  void Closed();
  /// The load failed. A message and FrameUnloadRequested follow.
  void ProjectAndOrganisationUnloadRequested();
  void FrameUnloadRequested();

 protected:
  void Load() override;
  void Activate() override;
  void QueryUnload() override;

 private:
  // Life: RiskEvalFrm_1.cpp
  void SettleLooks();
  void ConnectTasks();
  void ConnectLists();
  void ConnectFields();
  void OpenTasks();
  void OpenLists();
  void LoadFailed();
  void ClearTaskForm();
  void ShowProjectNumber();
  void SettleTyping();
  void RiskEsmtBtn_Click();
  void ClsedDg_Click();

  // Tasks: RiskEvalFrm_1_tasks.cpp
  [[nodiscard]] int TaskCount() const { return navigation_.Count(); }
  void SaveTask();
  void NewTaskDefaults();
  void CopyTaskOut();
  void CopyTaskIn();
  void AddTask(const std::function<void()>& fill);
  void SettleNewTask();
  /// Does nothing while there is a task.
  void ShowNoTask();
  void DeleteTask();
  void addNewRcd_Click();
  void CpyTaskCmd_Click();
  void DleteRcd_Click();

  // Fields: RiskEvalFrm_1_fields.cpp
  void DateChanged(QLineEdit* box);
  void DateLeft(QLineEdit* box);
  [[nodiscard]] QString Today() const;
  void dateOfRcd_GotFocus();
  void actnDt_GotFocus();
  void RefNo_LostFocus();
  void ActntkenOptnY_N_Click();
  void RskRdsdtnY_N_Click();
  void FuntnTaskMachry_LostFocus();
  void PrimaryHazard_LostFocus();
  void HazardType_LostFocus();

  std::unique_ptr<Ui::RiskEvalFrm_1> ui_;
  DataControl dtsorce2_{QStringLiteral("dtsorce2"), this};
  DataControl CboBxLstDB_{QStringLiteral("CboBxLstDB"), this};
  DataControl dta1_{QStringLiteral("dta1"), this};  ///< holds nothing, as dta3_
  DataControl dta3_{QStringLiteral("dta3"), this};
  TaskControls controls_;
  TaskLists lists_;
  RiskSummary summary_;
  TaskNavigation navigation_;
  bool kept_to_copy_ = false;  ///< a closing was stopped over what can't be stored any more
};

}  // namespace kestrix
