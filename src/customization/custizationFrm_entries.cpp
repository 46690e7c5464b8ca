// What is done to the entries of the list that is shown: adding, changing, deleting one, deleting
// all.

#include "customization/custizationFrm.h"
#include "formkit/Controls.h"
#include "store/LookupList.h"
#include "store/RecordSources.h"
#include "ui_custizationFrm.h"

namespace kestrix {

void custizationFrm::adddt_Click() {
  ui_->AddrcdTxt->clear();
  FocusLater(ui_->AddrcdTxt);
  session().AddPending = true;
}

void custizationFrm::AddrcdTxt_LostFocus() {
  if (!session().AddPending) return;
  if (ui_->AddrcdTxt->text().startsWith(u' ')) {
    Tell(Icon::kCritical, title::kProgram, QStringLiteral("Can not begin with a space."));
    SetBackColour(ui_->AddrcdTxt, colour::kWarning);
    FocusLater(ui_->AddrcdTxt);
    return;
  }
  SetSystemBack(ui_->AddrcdTxt);
  AddListRecord();
}

void custizationFrm::AddListRecord() {
  session().AddDupFound = 0;
  QString selected = SelectedEntry();
  ui_->ActnByCbo->setEditText(selected);
  const QString text = ui_->AddrcdTxt->text();
  if (text.isEmpty()) return FocusLater(ui_->AddrcdTxt);
  PassOver([&] { ReopenPrimaryHazards(); },
           [&] {
             if (lookup::Knows(Rows(), text)) session().AddDupFound = 1;
           });
  if (session().AddDupFound == 1) {
    // What is there already is only selected.
    SelectEntry(text);
    session().AddPending = false;
    return;
  }
  PassOver(
      [&] {
        const QString hazard = ui_->HazardType->currentText();
        const bool below = IsPrimaryHazardChosen() && HazardListShowing_;
        lookup::Add(Rows(), text, below ? &hazard : nullptr);
        selected = text;  // what the list refuses isn't shown as an entry of it
      },
      [&] { FillBoth(); });
  session().AddPending = false;
  ui_->ActnByCbo->setEditText(selected);
  SelectEntry(selected);
}

/// Deleting the types of a hazard leaves their rows open while the form still shows the level of
/// the hazards; the next command is meant for these.
void custizationFrm::ReopenPrimaryHazards() {
  const bool shown = IsPrimaryHazardChosen() && !HazardListShowing_;
  if (shown && nameDB_.RecordSource() != sources::kPrimaryHazard.text)
    OpenPlain(sources::kPrimaryHazard);
}

void custizationFrm::SavRcd_Click() {
  const QString old = SelectedEntry();
  if (ui_->AddrcdTxt->text().isEmpty()) return FocusLater(ui_->AddrcdTxt);
  PassOver(
      [&] {
        ReopenPrimaryHazards();
        if (!lookup::WalkTo(Rows(), old)) return;
        if (lookup::IsReserved(Rows().Text(0))) return ui_->AddrcdTxt->setText(old);
        const Recordset::Attempt attempt(Rows());
        Rows().Edit();
        Rows().Set(0, ui_->AddrcdTxt->text());
        Rows().Update();
      },
      [&] { FillBoth(); }, [&] { SelectEntry(ui_->AddrcdTxt->text()); });
}

void custizationFrm::dletedt_Click() {
  try {
    if (IsPrimaryHazardChosen()) {
      DeleteHazardTypes();
    } else {
      DeleteEntry();
    }
  } catch (const Failure&) {
    // The list stays as the database left it.
  }
}

void custizationFrm::DeleteEntry() {
  ui_->ActnByCbo->setEditText(SelectedEntry());
  if (ui_->AddrcdTxt->text().isEmpty())
    return Tell(Icon::kInformation, title::kProgram,
                QStringLiteral("No record selected to deleted."));
  const QString entry = ui_->ActnByCbo->currentText();
  if (RefusesReserved(entry) || LacksText(ui_->ActnByCbo, entry, entry)) return;
  if (!IsDeletionWished(QStringLiteral("Wish to delete Record : ") + entry)) return;
  lookup::DeleteFirst(Rows(), entry);
  PassOver([&] { FillBoth(); });
  ui_->ActnByCbo->setEditText(lookup::kNone);
  ui_->AddrcdTxt->setText(lookup::kNone);
  SelectEntry(lookup::kNone);
}

/// Removes the hazard types below the selected entry; the primary hazard itself stays.
void custizationFrm::DeleteHazardTypes() {
  const QString text = SelectedEntry();
  if (!IsDeletionWished(QStringLiteral("Deleting all records in ") + text +
                        QStringLiteral(" WISH to delete all records?"))) {
    return;
  }
  const WaitCursor wait;
  OpenPlain(sources::HazardTypesForTask(text));
  Rows().MoveFirst();
  lookup::DeleteBelow(Rows(), text);
  nameDB_.Refresh();
  ui_->ActnByLst->clear();
  ui_->HazardType->setEditText(text);
}

void custizationFrm::DeltAll_Click() {
  const bool primary = ui_->ActnFrmLbl->text() == QStringLiteral("Customize : Primary Hazard");
  const QString question =
      primary ? QStringLiteral(
                    "By deleting record from Primary Hazard will also delete all related "
                    "records in Hazard Type list box. WISH to delete all records?")
              : QStringLiteral("Wish to delete all Records.");
  if (!IsDeletionWished(question)) return;
  if (primary) {
    DeletePrimaryHazards();
  } else {
    DeleteAllEntries();
  }
}

void custizationFrm::DeleteAllEntries() {
  const WaitCursor wait;
  const auto stays = [this](const Recordset& row) {
    return lookup::IsReserved(row.Text(0)) || (HazardListShowing_ && !IsShownHazard(row.Text(1)));
  };
  PassOver([&] { lookup::DeleteAllBut(Rows(), stays); }, [&] { FillBoth(); });
  ui_->ActnByCbo->setEditText(lookup::kNone);
  ui_->AddrcdTxt->setText(lookup::kNone);
}

/// Only the types of the one primary hazard in the combo go with the primary hazards; those of all
/// others stay in their table without a parent.
void custizationFrm::DeletePrimaryHazards() {
  const WaitCursor wait;
  const QString hazard = ui_->HazardType->currentText();
  PassOver([&] { ReopenPrimaryHazards(); },
           [&] {
             lookup::DeleteAllBut(
                 Rows(), [](const Recordset& row) { return lookup::IsReserved(row.Text(0)); });
           },
           [&] {
             session().ListSql = sources::HazardTypesOf(hazard);
             OpenPlain(session().ListSql);
           },
           [&] { lookup::DeleteBelow(Rows(), hazard); },
           [&] {
             session().ListSql = sources::kPrimaryHazard;
             OpenPlain(session().ListSql);
           },
           [&] { ClearLists(); }, [&] { Rows().MoveFirst(); }, [&] { FillListChoices(); },
           [&] { ui_->ForCustmnCbo->setEditText(QStringLiteral("Project stage")); });
}

}  // namespace kestrix
