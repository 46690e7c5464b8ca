#include "evaluation/TaskControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "evaluation/TaskFields.h"
#include "formkit/Controls.h"
#include "formkit/FieldBinding.h"
#include "formkit/Form.h"
#include "store/DataControl.h"
#include "store/LookupList.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {
namespace {

const QString kNoReference = QStringLiteral("0");

QString TextOf(const QWidget* control) {
  if (const auto* label = qobject_cast<const QLabel*>(control)) return label->text();
  if (const auto* box = qobject_cast<const QLineEdit*>(control)) return box->text();
  if (const auto* combo = qobject_cast<const QComboBox*>(control)) return combo->currentText();
  return static_cast<const QPlainTextEdit*>(control)->toPlainText();
}

/// Whether `control` shows `text` as well as it can.
bool Shows(const QWidget* control, const QString& text) {
  QString shown = text;
  if (const auto* box = qobject_cast<const QLineEdit*>(control)) shown = ShownIn(box, text);
  if (const auto* box = qobject_cast<const QPlainTextEdit*>(control)) shown = ShownIn(box, text);
  if (const auto* combo = qobject_cast<const QComboBox*>(control))
    shown = ShownIn(combo->lineEdit(), text);
  return TextOf(control) == shown;
}

void SetText(QWidget* control, const QString& text) {
  if (auto* label = qobject_cast<QLabel*>(control)) return label->setText(text);
  if (auto* box = qobject_cast<QLineEdit*>(control)) return box->setText(text);
  if (auto* combo = qobject_cast<QComboBox*>(control)) return combo->setCurrentText(text);
  static_cast<QPlainTextEdit*>(control)->setPlainText(text);
}

bool IsDate(int field) {
  return field == task_field::kDate || field == task_field::kActionDate;
}

template <class Control>
bool Tie(DataControl& source, const QString& field, QWidget* widget) {
  auto* control = qobject_cast<Control*>(widget);
  if (control == nullptr) return false;
  new FieldBinding(source, field, control);  // owned by the control
  return true;
}

}  // namespace

TaskControls::TaskControls(const Ui::RiskEvalFrm_1& ui)
    : controls_{{
          {task_field::kProjectNumber, QStringLiteral("Project_Number"), ui.ESINoLBLCp},
          {task_field::kDate, QStringLiteral("dateOfRcd"), ui.dateOfRcd},
          {task_field::kTitle, QStringLiteral("FuntnTaskMachry"), ui.FuntnTaskMachry},
          {task_field::kLocation, QStringLiteral("HazrdLoctn"), ui.HazrdLoctn},
          {task_field::kPhase, QStringLiteral("PhaseMachn"), ui.PhaseMachn},
          {task_field::kPrimaryHazard, QStringLiteral("Primary_Hazard"), ui.PrimaryHazard},
          {task_field::kHazardType, QStringLiteral("Hazard_type"), ui.HazardType},
          {task_field::kReference, QStringLiteral("RefNo"), ui.RefNo},
          {task_field::kDescription, QStringLiteral("HzrdDscptnTXT"), ui.HzrdDscptnTXT},
          {task_field::kRecommendation, QStringLiteral("ReccdtnTxt"), ui.ReccdtnTxt},
          {task_field::kRecommendationType, QStringLiteral("ReccdtnTypTxt"), ui.ReccdtnTypTxt},
          {task_field::kReduced, QStringLiteral("RskRdsdtnY_N"), ui.RskRdsdtnY_N},
          {task_field::kActionBy, QStringLiteral("ActnByCbo"), ui.ActnByCbo},
          {task_field::kActionDate, QStringLiteral("actnDt"), ui.actnDt},
          {task_field::kActionTaken, QStringLiteral("ActntkenOptnY_N"), ui.ActntkenOptnY_N},
      }} {}

void TaskControls::Bind(DataControl& source) const {
  for (const auto& [field, name, control] : controls_) {
    [[maybe_unused]] const bool tied =
        Tie<QLineEdit>(source, name, control) || Tie<QPlainTextEdit>(source, name, control) ||
        Tie<QComboBox>(source, name, control) || Tie<QCheckBox>(source, name, control);
  }
}

void TaskControls::Show(Recordset& rows) const {
  for (const auto& [field, name, control] : controls_) {
    if (auto* box = qobject_cast<QCheckBox*>(control)) {
      box->setChecked(rows.Truth(field));
    } else {
      SetText(control, rows.Text(field));
    }
  }
}

void TaskControls::Save(Recordset& rows) const {
  for (const auto& [field, name, control] : controls_) {
    if (const auto* box = qobject_cast<const QCheckBox*>(control)) {
      rows.Set(field, box->isChecked());
    } else if (!Shows(control, rows.Text(field))) {
      rows.Set(field, TextOf(control));
    }
  }
}

void TaskControls::ShowTask(Recordset& rows) const {
  Show(rows);
  ShowBeginnings();
}

void TaskControls::SaveTask(Recordset& rows) const {
  const auto& [field, name, project] = controls_.front();
  if (TextOf(project).isEmpty()) return;
  PassOver([&] { Save(rows); });
}

void TaskControls::ShowUnset(const QString& today) const {
  for (const auto& [field, name, control] : controls_) {
    if (field == task_field::kProjectNumber) continue;
    if (auto* box = qobject_cast<QCheckBox*>(control)) {
      box->setChecked(false);
    } else if (IsDate(field)) {
      SetText(control, today);
    } else if (field == task_field::kReference) {
      SetText(control, kNoReference);
    } else {
      SetText(control, lookup::kNone);
    }
  }
}

void TaskControls::AllowTyping(bool allow) const {
  for (const auto& [field, name, control] : controls_) {
    if (IsDate(field)) continue;
    if (auto* box = qobject_cast<QLineEdit*>(control)) SetLocked(box, !allow);
    if (auto* box = qobject_cast<QPlainTextEdit*>(control)) SetLocked(box, !allow);
  }
}

void TaskControls::ShowBeginnings() const {
  for (const auto& [field, name, control] : controls_) {
    // In a date box the cursor stands where the next digit belongs.
    if (IsDate(field)) continue;
    auto* box = qobject_cast<QLineEdit*>(control);
    if (const auto* combo = qobject_cast<const QComboBox*>(control)) box = combo->lineEdit();
    if (box != nullptr) ShowBeginning(box);
  }
}

}  // namespace kestrix
