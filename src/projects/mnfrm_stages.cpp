// The project stage, and the list of stages that all organisations share. The list isn't kept: it
// is read anew each time that the box gets the focus.

#include "formkit/Controls.h"
#include "platform/Failure.h"
#include "projects/mnfrm.h"
#include "store/DataControl.h"
#include "store/LookupList.h"
#include "store/RecordSources.h"
#include "ui_mnfrm.h"

namespace kestrix {
void mnfrm::PrjStgCbo_GotFocus() {
  LastComboText_ = ui_->PrjStgCbo->currentText();
  CboBxLstDB_.SetRecordSource(sources::kPrjstage);
  CboBxLstDB_.Refresh();
  Recordset& stages = CboBxLstDB_.Recordset();
  stages.MoveFirst();
  stages.MoveNext();
  stages.MoveFirst();
  FillStages();
  ui_->PrjStgCbo->setCurrentText(LastComboText_);
  EnableStageCommands();
  SelectWhole(ui_->PrjStgCbo->lineEdit());
}

void mnfrm::PrjStgCbo_LostFocus() {
  try {
    if (ui_->PrjStgCbo->currentText().isEmpty()) {
      ui_->PrjStgCbo->setCurrentText(lookup::kNotApplicable);
    }
    StoreProject();
  } catch (const Failure&) {
    // The row shows again what it holds.
  }
}

void mnfrm::adddt0_Click() {
  try {
    session().ListTextKnown = 0;
    LastComboText_ = ui_->PrjStgCbo->currentText();
    Recordset& stages = CboBxLstDB_.Recordset();
    stages.Requery();  // others add to the same list
    if (lookup::Knows(stages, LastComboText_)) session().ListTextKnown = 1;
    session().LoopIndex = Narrow(stages.RecordCount() + 1);
    EnableStageCommands();
    if (session().ListTextKnown == 1) return;
    if (LacksText(ui_->PrjStgCbo, LastComboText_, LastComboText_)) return;
    AddStage(stages);
    ui_->PrjStgCbo->setCurrentText(LastComboText_);
    LastComboText_ = ui_->PrjStgCbo->currentText();
    FillStages();
    ui_->PrjStgCbo->setCurrentText(LastComboText_);
  } catch (const Failure&) {
    // Nothing was added, and the list stays as it is.
  }
}

void mnfrm::AddStage(Recordset& stages) {
  stages.AddNew();
  const Recordset::Attempt attempt(stages);
  stages.Set(0, LastComboText_);
  stages.Update();
}

void mnfrm::dletedt0_Click() {
  try {
    const QString text = ui_->PrjStgCbo->currentText();
    // What goes is the text that was kept, so a reserved one is refused wherever it stands.
    if (RefusesReserved(lookup::IsReserved(text) ? text : LastComboText_)) return;
    if (LacksText(ui_->PrjStgCbo, text, LastComboText_)) return;
    if (!IsDeletionWished(QStringLiteral("Wish to delete Record : ") + LastComboText_)) return;
    lookup::DeleteFirst(CboBxLstDB_.Recordset(), LastComboText_);
    FillStages();
    ui_->PrjStgCbo->setCurrentText(lookup::kNone);
  } catch (const Failure&) {
    // Nothing was deleted: the box and the list stay as they are.
  }
}

void mnfrm::FillStages() {
  ComboListBox box(ui_->PrjStgCbo);
  lookup::Fill(CboBxLstDB_.Recordset(), box);
}

void mnfrm::EnableStageCommands() {
  ui_->adddt0->setEnabled(true);
  ui_->dletedt0->setEnabled(true);
}

}  // namespace kestrix
