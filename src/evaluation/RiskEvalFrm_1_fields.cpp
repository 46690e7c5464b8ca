// The rules of the single fields: dates, reference number, check boxes, task title, find box.
#include "evaluation/DateMask.h"
#include "evaluation/RiskEvalFrm_1.h"
#include "formkit/Controls.h"
#include "store/LookupList.h"
#include "store/ReferenceNumber.h"
#include "store/StoredDate.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {
namespace {

const QString kYes = QStringLiteral("Yes");
const QString kNo = QStringLiteral("No");

}  // namespace

QString RiskEvalFrm_1::Today() const {
  return WriteDate(platform().clock.Today());
}

void RiskEvalFrm_1::DateChanged(QLineEdit* box) {
  const auto outcome = DateMask::Settle(box->text());
  if (!outcome) return;
  session().LoopIndex =
      static_cast<qint16>(outcome->selected_length > 0 ? outcome->place : DateMask::kPlaces);
  // Runs this rule again, which selects the place.
  if (outcome->text != box->text()) return box->setText(outcome->text);
  box->setCursorPosition(outcome->place);
  // A date that nobody is typing shows no place to type at.
  if (!box->hasFocus()) return;
  if (outcome->selected_length > 0) box->setSelection(outcome->place, outcome->selected_length);
}

void RiskEvalFrm_1::DateLeft(QLineEdit* box) {
  if (box->text() == DateMask::kEmpty) box->clear();
  // Clearing has laid the mask again: a date can't be left blank.
  if (box->text() == DateMask::kEmpty || box->text().isEmpty()) box->setText(Today());
  if (const auto date = ReadDate(box->text())) {
    box->setText(WriteDate(*date));
    SaveTask();
    return;
  }
  Tell(Icon::kInformation, title::kProgram, QStringLiteral("Enter data. (dd/mm/yyyy)"));
  FocusLater(box);
}

void RiskEvalFrm_1::dateOfRcd_GotFocus() {
  if (ui_->dateOfRcd->text().isEmpty()) ui_->dateOfRcd->setText(DateMask::kEmpty);
  SelectWhole(ui_->dateOfRcd);
}

/// A date that is due is corrected place by place: the Tab key doesn't select it as a whole.
void RiskEvalFrm_1::actnDt_GotFocus() {
  ui_->actnDt->deselect();
  DateChanged(ui_->actnDt);
}

void RiskEvalFrm_1::RefNo_LostFocus() {
  if (ui_->RefNo->text().isEmpty()) return;
  if (const auto number = ReferenceNumber(ui_->RefNo->text())) return ui_->RefNo->setText(*number);
  Tell(Icon::kInformation, title::kProgram, QStringLiteral("Enter number."));
  FocusLater(ui_->RefNo);
}

void RiskEvalFrm_1::ActntkenOptnY_N_Click() {
  ui_->ActntkenOptnY_N->setText(ui_->ActntkenOptnY_N->isChecked() ? kYes : kNo);
}

void RiskEvalFrm_1::RskRdsdtnY_N_Click() {
  summary_.ShowVerdict(ui_->RskRdsdtnY_N->isChecked() ? kYes : kNo);
}

void RiskEvalFrm_1::FuntnTaskMachry_LostFocus() {
  if (TaskCount() >= 1 && !navigation_.IsFindActive()) SaveTask();
}

void RiskEvalFrm_1::PrimaryHazard_LostFocus() {
  PassOver([this] {
    if (ui_->PrimaryHazard->currentText().isEmpty()) {
      ui_->PrimaryHazard->setCurrentText(lookup::kNotApplicable);
      FocusLater(ui_->PrimaryHazard);
    }
    Commit(dtsorce2_);
  });
}

void RiskEvalFrm_1::HazardType_LostFocus() {
  try {
    if (ui_->HazardType->currentText().isEmpty()) ui_->HazardType->setCurrentText(lookup::kNone);
    Commit(dtsorce2_);
  } catch (const Failure& failure) {
    // Of what was told, their text or the one to be copied is on the screen.
    if (failure.IsTold()) return;
    TellFailure(failure.description() + QStringLiteral("\n\nHazard_type\nYours: ") +
                ui_->HazardType->currentText());
    ui_->HazardType->setCurrentText(lookup::kNone);
  }
}

}  // namespace kestrix
