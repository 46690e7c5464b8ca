// The five combos that are fed from the lookup lists, and their "+" and "-" buttons. All five share
// one data control, which holds the rows of the list that was last in use.
#include <algorithm>
#include <limits>

#include "evaluation/RiskEvalFrm_1.h"
#include "evaluation/TaskLists.h"
#include "formkit/Controls.h"
#include "store/LookupList.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {
namespace {

/// Where a count from 1 over so many rows ends.
qint16 PastLast(int rows) {
  constexpr int kMost = std::numeric_limits<qint16>::max();
  return static_cast<qint16>(std::min(rows + 1, kMost));
}

}  // namespace

void RiskEvalFrm_1::EnableButtonsOf(const TaskList& list) {
  for (const TaskList& other : kTaskLists) {
    const bool mine = other.combo == list.combo;
    (ui_.get()->*other.add)->setEnabled(mine);
    (ui_.get()->*other.remove)->setEnabled(mine);
  }
}

void RiskEvalFrm_1::OpenListOf(const TaskList& list) {
  CboBxLstDB_.SetRecordSource(list.sql != nullptr
                                  ? *list.sql
                                  : sources::HazardTypesForTask(ui_->PrimaryHazard->currentText()));
  CboBxLstDB_.Refresh();
}

void RiskEvalFrm_1::RefillCombo(QComboBox* combo) {
  ComboListBox box(combo);
  lookup::FillToEnd(CboBxLstDB_.Recordset(), box);
}

void RiskEvalFrm_1::ListGotFocus(const TaskList& list) {
  QComboBox* combo = ui_.get()->*list.combo;
  PassOver([&] {
    EnableButtonsOf(list);
    session().ListText = combo->currentText();
    if (list.keeps_focus_text) session().ListFocusText = combo->currentText();
    OpenListOf(list);
    RefillCombo(combo);
    combo->setCurrentText(session().ListText);
    SelectWhole(combo->lineEdit());
  });
}

void RiskEvalFrm_1::AddToList(const TaskList& list) {
  QComboBox* combo = ui_.get()->*list.combo;
  const bool below_hazard = list.sql == nullptr;
  try {
    session().ListText = combo->currentText();
    if (below_hazard) session().ParentHazardText = ui_->PrimaryHazard->currentText();
    session().ListTextKnown = 0;
    // A hazard type is looked for in the rows that are open: one that was just added below another
    // hazard is among them, and a requery would drop it.
    if (!below_hazard) {
      if (CboBxLstDB_.RecordSource() != *list.sql) {
        OpenListOf(list);  // a click on a primary hazard has put its hazard types here
      } else {
        CboBxLstDB_.Recordset().Requery();  // others add to the same lists
      }
    }
    Recordset& rows = CboBxLstDB_.Recordset();
    const bool was_empty = rows.RecordCount() == 0;
    const bool known = below_hazard
                           ? lookup::KnowsPair(rows, session().ListText, session().ParentHazardText)
                           : lookup::Knows(rows, session().ListText);
    if (known) session().ListTextKnown = 1;
    if (!below_hazard) session().LoopIndex = PastLast(rows.RecordCount());
    if (session().ListTextKnown == 1) return;
    if (LacksText(combo, session().ListText, session().ListText)) return;
    AddEntry(rows, below_hazard);
    combo->setCurrentText(session().ListText);
    session().ListText = combo->currentText();
    if (below_hazard && was_empty) return;
    RefillCombo(combo);
    combo->setCurrentText(session().ListText);
  } catch (const Failure&) {
    // The list stays as it was.
  }
}

void RiskEvalFrm_1::AddEntry(Recordset& rows, bool below_hazard) {
  rows.AddNew();
  const Recordset::Attempt attempt(rows);
  rows.Set(0, session().ListText);
  if (below_hazard) rows.Set(1, session().ParentHazardText);
  rows.Update();
}

void RiskEvalFrm_1::DeleteFromList(const TaskList& list, const QString& judged,
                                   const QString& asked) {
  QComboBox* combo = ui_.get()->*list.combo;
  if (RefusesReserved(judged) || LacksText(combo, combo->currentText(), session().ListText)) return;
  if (!IsDeletionWished(QStringLiteral("Wish to delete Record : ") + asked)) return;
  PassOver([&] {
    lookup::DeleteFirst(CboBxLstDB_.Recordset(), session().ListText);
    RefillCombo(combo);
    combo->setCurrentText(lookup::kNone);
  });
}

void RiskEvalFrm_1::DeletePrimaryHazardWithTypes() {
  const QString hazard = ui_->PrimaryHazard->currentText();
  const QString question =
      QStringLiteral(
          "By deleting record from '%1' will also delete all related records in Hazard "
          "Type list box. WISH to delete all records?")
          .arg(hazard);
  if (!IsDeletionWished(question)) return;
  const WaitCursor wait;
  PassOver([&] {
    OpenListOf(kHazardTypeList);
    CboBxLstDB_.Recordset().MoveFirst();
    lookup::DeleteBelow(CboBxLstDB_.Recordset(), hazard);
    ui_->PrimaryHazard->setCurrentText(hazard);
    OpenListOf(kPrimaryHazardList);
    // Without a walk: the first row of the list goes, whichever hazard was chosen.
    CboBxLstDB_.Recordset().Delete();
    RefillCombo(ui_->PrimaryHazard);
    ui_->PrimaryHazard->setCurrentText(lookup::kNone);
    ui_->HazardType->setCurrentText(lookup::kNone);
  });
}

void RiskEvalFrm_1::PhaseMachn_GotFocus() {
  ListGotFocus(kPhaseList);
}

void RiskEvalFrm_1::PrimaryHazard_GotFocus() {
  ListGotFocus(kPrimaryHazardList);
}

void RiskEvalFrm_1::HazardType_GotFocus() {
  const WaitCursor wait;
  ListGotFocus(kHazardTypeList);
}

void RiskEvalFrm_1::ReccdtnTypTxt_GotFocus() {
  ListGotFocus(kRecommendationTypeList);
}

void RiskEvalFrm_1::ActnByCbo_GotFocus() {
  ListGotFocus(kActionByList);
}

void RiskEvalFrm_1::PrimaryHazard_Click() {
  PassOver([this] {
    session().HazardTypeRows = 1;
    session().PrimaryHazardClicked = true;
    CboBxLstDB_.SetRecordSource(sources::HazardTypesForClick(ui_->PrimaryHazard->currentText()));
    CboBxLstDB_.Refresh();
    session().HazardTypeRows = CboBxLstDB_.Recordset().RecordCount();
  });
}

void RiskEvalFrm_1::PrimaryHazard_LostFocus() {
  PassOver([this] {
    if (ui_->PrimaryHazard->currentText().isEmpty()) {
      ui_->PrimaryHazard->setCurrentText(lookup::kNotApplicable);
      FocusLater(ui_->PrimaryHazard);
    }
    Tasks().Update();
    Tasks().CancelUpdate();
  });
}

void RiskEvalFrm_1::HazardType_LostFocus() {
  try {
    if (ui_->HazardType->currentText().isEmpty()) ui_->HazardType->setCurrentText(lookup::kNone);
    Tasks().Update();
    Tasks().CancelUpdate();
  } catch (const Failure&) {
    ui_->HazardType->setCurrentText(lookup::kNone);
  }
}

void RiskEvalFrm_1::adddt_Click() {
  AddToList(kPhaseList);
}

void RiskEvalFrm_1::adddt1_Click() {
  AddToList(kPrimaryHazardList);
}

void RiskEvalFrm_1::adddt2_Click() {
  AddToList(kHazardTypeList);
}

void RiskEvalFrm_1::adddt_2_Click() {
  AddToList(kRecommendationTypeList);
}

void RiskEvalFrm_1::adddt_3_Click() {
  AddToList(kActionByList);
}

void RiskEvalFrm_1::dletedt_Click() {
  DeleteFromList(kPhaseList, session().ListFocusText, session().ListText);
}

void RiskEvalFrm_1::dletedt1_Click() {
  if (session().HazardTypeRows > 0) return DeletePrimaryHazardWithTypes();
  if (!session().PrimaryHazardClicked) {
    Tell(Icon::kInformation, title::kProgram, QStringLiteral("No record selected to delete "));
    return;
  }
  const QString hazard = ui_->PrimaryHazard->currentText();
  DeleteFromList(kPrimaryHazardList, hazard, hazard);
}

void RiskEvalFrm_1::dletedt2_Click() {
  DeleteFromList(kHazardTypeList, ui_->HazardType->currentText(), session().ListText);
}

void RiskEvalFrm_1::dletedt_2_Click() {
  DeleteFromList(kRecommendationTypeList, session().ListFocusText, session().ListText);
}

void RiskEvalFrm_1::dletedt_3_Click() {
  DeleteFromList(kActionByList, session().ListFocusText, session().ListText);
}

}  // namespace kestrix
