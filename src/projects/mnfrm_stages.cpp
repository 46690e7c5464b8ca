// The project stage, and the list of stages that all organisations share. The list isn't kept: it
// is read anew each time that the box gets the focus.

#include "formkit/Controls.h"
#include "platform/Failure.h"
#include "projects/mnfrm.h"
#include "shell/LookupBox.h"
#include "store/DataControl.h"
#include "store/LookupList.h"
#include "store/RecordSources.h"
#include "ui_mnfrm.h"

namespace kestrix {
void mnfrm::PrjStgCbo_GotFocus() {
  LastComboText_ = ui_->PrjStgCbo->currentText();
  CboBxLstDB_.SetRecordSource(sources::kPrjstage);
  CboBxLstDB_.Refresh();
  CboBxLstDB_.Recordset().MoveFirst();  // which an empty list refuses
  Stages().Fill(LastComboText_);
  EnableStageCommands();
  SelectWhole(ui_->PrjStgCbo->lineEdit());
}

void mnfrm::PrjStgCbo_LostFocus() {
  try {
    if (ui_->PrjStgCbo->currentText().isEmpty()) {
      ui_->PrjStgCbo->setCurrentText(lookup::kNotApplicable);
    }
    Commit(dtsorce1_);
  } catch (const Failure&) {
    // The row shows again what it holds.
  }
}

void mnfrm::adddt0_Click() {
  EnableStageCommands();
  Stages().Add();
}

void mnfrm::dletedt0_Click() {
  const QString text = ui_->PrjStgCbo->currentText();
  // What goes is the text that was kept, so a reserved one is refused wherever it stands.
  Stages().Delete(lookup::IsReserved(text) ? text : LastComboText_, LastComboText_);
}

LookupBox mnfrm::Stages() {
  return {*this, CboBxLstDB_, ui_->PrjStgCbo, &sources::kPrjstage, LastComboText_};
}

void mnfrm::EnableStageCommands() {
  ui_->adddt0->setEnabled(true);
  ui_->dletedt0->setEnabled(true);
}

}  // namespace kestrix
