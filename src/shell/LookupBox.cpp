#include "shell/LookupBox.h"

#include <QComboBox>

#include "formkit/Controls.h"
#include "shell/SessionForm.h"
#include "store/DataControl.h"
#include "store/LookupList.h"

namespace kestrix {

LookupBox::LookupBox(SessionForm& form, DataControl& source, QComboBox* box, const Select* sql,
                     QString& kept)
    : form_(form), source_(source), box_(box), sql_(sql), kept_(kept) {}

void LookupBox::Fill(const QString& text) const {
  FillCombo(box_, lookup::Texts(source_.Recordset()));
  box_->setCurrentText(text);
}

void LookupBox::ReadAgain() {
  const QString open = source_.RecordSource();
  // The rows of another box may be open; before any were, there is no list to add to.
  if (open.isEmpty() || open == sql_->text) return source_.Recordset().Requery();
  source_.SetRecordSource(*sql_);
  source_.Refresh();
}

void LookupBox::Add(const QString* parent) {
  PassOver([&] {
    kept_ = box_->currentText();
    form_.session().ListTextKnown = 0;
    if (sql_ != nullptr) ReadAgain();
    const bool was_empty = source_.Recordset().RecordCount() == 0;
    if (!AddEntry(parent)) return;
    box_->setCurrentText(kept_);
    kept_ = box_->currentText();
    if (sql_ != nullptr || !was_empty) Fill(kept_);
  });
}

bool LookupBox::AddEntry(const QString* parent) {
  Recordset& rows = source_.Recordset();
  SessionState& state = form_.session();
  if (lookup::Knows(rows, kept_, parent)) state.ListTextKnown = 1;
  if (sql_ != nullptr) state.LoopIndex = Capped(rows.RecordCount() + 1);
  if (state.ListTextKnown == 1 || form_.LacksText(box_, kept_, kept_)) return false;
  lookup::Add(rows, kept_, parent);
  return true;
}

void LookupBox::Delete(const QString& judged, const QString& asked) {
  if (form_.RefusesReserved(judged) || form_.LacksText(box_, box_->currentText(), kept_)) return;
  if (!form_.IsDeletionWished(QStringLiteral("Wish to delete Record : ") + asked)) return;
  PassOver([&] {
    lookup::DeleteFirst(source_.Recordset(), kept_);
    Fill(lookup::kNone);
  });
}

}  // namespace kestrix
