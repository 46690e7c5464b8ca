#include "evaluation/TaskLists.h"

#include "formkit/Controls.h"
#include "shell/SessionForm.h"
#include "store/DataControl.h"
#include "store/LookupList.h"
#include "store/RecordSources.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {

TaskLists::TaskLists(SessionForm& form, const Ui::RiskEvalFrm_1& ui, DataControl& source)
    : form_(form),
      source_(source),
      primary_{ui.PrimaryHazard, ui.adddt1, ui.dletedt1, &sources::kPrimaryHazard, false},
      types_{ui.HazardType, ui.adddt2, ui.dletedt2, nullptr, false},
      lists_{{ui.PhaseMachn, ui.adddt, ui.dletedt, &sources::kPhaseMachLife, true},
             primary_,
             types_,
             {ui.ReccdtnTypTxt, ui.adddt_2, ui.dletedt_2, &sources::kRecommTyp, true},
             {ui.ActnByCbo, ui.adddt_3, ui.dletedt_3, &sources::kActionBy, true}} {}

LookupBox TaskLists::BoxOf(const List& list) const {
  return {form_, source_, list.combo, list.sql, form_.session().ListText};
}

void TaskLists::EnableCombos(bool enable) const {
  for (const List& list : lists_) list.combo->setEnabled(enable);
}

void TaskLists::Disable() const {
  EnableCombos(false);
  for (const List& list : lists_) {
    list.add->setEnabled(false);
    list.remove->setEnabled(false);
  }
}

void TaskLists::Open(const Select& sql) {
  source_.SetRecordSource(sql);
  source_.Refresh();
}

void TaskLists::Enter(const List& list) {
  const WaitCursor wait;
  PassOver([&] {
    for (const List& other : lists_) {
      other.add->setEnabled(other.combo == list.combo);
      other.remove->setEnabled(other.combo == list.combo);
    }
    SessionState& state = form_.session();
    state.ListText = list.combo->currentText();
    if (list.keeps_focus_text) state.ListFocusText = state.ListText;
    Open(list.sql != nullptr ? *list.sql : sources::HazardTypesForTask(Hazard()));
    BoxOf(list).Fill(state.ListText);
    SelectWhole(list.combo->lineEdit());
  });
}

void TaskLists::Add(const List& list) {
  if (list.sql != nullptr) return BoxOf(list).Add();
  QString& hazard = form_.session().ParentHazardText;
  hazard = Hazard();
  BoxOf(list).Add(&hazard);
}

void TaskLists::Delete(const List& list) {
  const SessionState& state = form_.session();
  if (list.combo == primary_.combo) return DeletePrimaryHazard();
  BoxOf(list).Delete(list.keeps_focus_text ? state.ListFocusText : list.combo->currentText(),
                     state.ListText);
}

void TaskLists::CountHazardTypes() {
  PassOver([this] {
    SessionState& state = form_.session();
    state.HazardTypeRows = 1;
    state.PrimaryHazardClicked = true;
    Open(sources::HazardTypesForClick(Hazard()));
    state.HazardTypeRows = source_.Recordset().RecordCount();
  });
}

void TaskLists::DeletePrimaryHazard() {
  if (form_.session().HazardTypeRows > 0) return DeletePrimaryHazardWithTypes();
  if (form_.session().PrimaryHazardClicked) return BoxOf(primary_).Delete(Hazard(), Hazard());
  form_.Tell(Icon::kInformation, title::kProgram, QStringLiteral("No record selected to delete "));
}

void TaskLists::DeletePrimaryHazardWithTypes() {
  const QString hazard = Hazard();
  const QString question =
      QStringLiteral(
          "By deleting record from '%1' will also delete all related records in Hazard "
          "Type list box. WISH to delete all records?")
          .arg(hazard);
  if (!form_.IsDeletionWished(question)) return;
  const WaitCursor wait;
  PassOver([&] {
    Open(sources::HazardTypesForTask(hazard));
    source_.Recordset().MoveFirst();
    lookup::DeleteBelow(source_.Recordset(), hazard);
    primary_.combo->setCurrentText(hazard);
    Open(sources::kPrimaryHazard);
    // Without a walk: the first row of the list goes, whichever hazard was chosen.
    source_.Recordset().Delete();
    BoxOf(primary_).Fill(lookup::kNone);
    types_.combo->setCurrentText(lookup::kNone);
  });
}

}  // namespace kestrix
