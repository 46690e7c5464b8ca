#include "evaluation/TaskControls.h"

#include "evaluation/TaskFields.h"
#include "formkit/Controls.h"
#include "formkit/FieldBinding.h"
#include "formkit/Form.h"
#include "store/DataControl.h"
#include "store/LookupList.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {

TaskControls::TaskControls(const Ui::RiskEvalFrm_1& ui, DataControl& source)
    : project_(ui.ESINoLBLCp) {
  struct Row {
    const char16_t* field;
    QWidget* control;
    QString unset;
  };
  const QString none = lookup::kNone;
  const QString no_tick = QStringLiteral("");
  const Row rows[] = {{u"dateOfRcd", ui.dateOfRcd, {}},
                      {u"FuntnTaskMachry", ui.FuntnTaskMachry, none},
                      {u"HazrdLoctn", ui.HazrdLoctn, none},
                      {u"PhaseMachn", ui.PhaseMachn, none},
                      {u"Primary_Hazard", ui.PrimaryHazard, none},
                      {u"Hazard_type", ui.HazardType, none},
                      {u"RefNo", ui.RefNo, QStringLiteral("0")},
                      {u"HzrdDscptnTXT", ui.HzrdDscptnTXT, none},
                      {u"ReccdtnTxt", ui.ReccdtnTxt, none},
                      {u"ReccdtnTypTxt", ui.ReccdtnTypTxt, none},
                      {u"RskRdsdtnY_N", ui.RskRdsdtnY_N, no_tick},
                      {u"ActnByCbo", ui.ActnByCbo, none},
                      {u"actnDt", ui.actnDt, {}},
                      {u"ActntkenOptnY_N", ui.ActntkenOptnY_N, no_tick}};
  for (const auto& [field, control, unset] : rows) {
    const QString name = QString::fromUtf16(field);
    fields_.push_back({control, new FieldBinding(source, name, control), unset});
  }
}

void TaskControls::ShowTask(const Recordset& rows) const {
  project_->setText(rows.Text(task_field::kProjectNumber));
  for (const Bound& field : fields_) field.binding->Load();
  ShowBeginnings();
}

void TaskControls::SaveTask(Recordset& rows) const {
  if (project_->text().isEmpty()) return;
  PassOver([&] {
    rows.Set(task_field::kProjectNumber, project_->text());
    for (const Bound& field : fields_) field.binding->Save();
  });
}

void TaskControls::ShowUnset(const QString& today) const {
  for (const Bound& field : fields_) {
    field.binding->Put(field.unset.isNull() ? today : field.unset);
  }
}

void TaskControls::AllowTyping(bool allow) const {
  for (const auto& [control, binding, unset] : fields_) {
    if (unset.isNull()) continue;
    SetLocked(control, !allow);
  }
}

void TaskControls::ShowBeginnings() const {
  for (const auto& [control, binding, unset] : fields_) {
    // In a date box the cursor stands where the next digit belongs.
    if (unset.isNull()) continue;
    if (QLineEdit* box = LineOf(control)) ShowBeginning(box);
  }
}

}  // namespace kestrix
