#include "store/LookupList.h"

#include "platform/Failure.h"
#include "store/Recordset.h"

namespace kestrix::lookup {

bool IsReserved(const QString& text) {
  return text == kNone || text == kNotApplicable;
}

void Fill(Recordset& rows, ListBox& box) {
  const Recordset::Walk walk(rows);
  box.Clear();
  rows.MoveFirst();
  const int count = rows.RecordCount();
  for (int i = 1; i <= count; ++i) {
    const QString text = rows.Text(0);
    // No entry is empty: this is one that somebody else has deleted.
    if (!text.isEmpty()) box.AddItem(text);
    rows.MoveNext();
  }
  rows.MoveFirst();
}

void FillToEnd(Recordset& rows, ListBox& box) {
  const Recordset::Walk walk(rows);
  box.Clear();
  if (rows.RecordCount() == 0) return;
  for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) box.AddItem(rows.Text(0));
}

bool Knows(Recordset& rows, const QString& text) {
  if (rows.RecordCount() == 0) return false;
  const Recordset::Walk walk(rows);
  bool known = false;
  for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
    if (rows.Text(0) == text) known = true;
  }
  return known;
}

bool KnowsPair(Recordset& rows, const QString& text, const QString& parent) {
  if (rows.RecordCount() == 0) return false;
  const Recordset::Walk walk(rows);
  bool known = false;
  for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
    if (rows.Text(0) == text && rows.Text(1) == parent) known = true;
  }
  return known;
}

bool WalkTo(Recordset& rows, const QString& text, int field) {
  const Recordset::Walk walk(rows);
  for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
    if (rows.Text(field) == text) return true;
  }
  return false;
}

void DeleteFirst(Recordset& rows, const QString& text) {
  WalkTo(rows, text);
  rows.Delete();
}

void DeleteAllBut(Recordset& rows, const std::function<bool(const Recordset&)>& spared) {
  if (rows.RecordCount() == 0) return;
  const Recordset::Walk walk(rows);
  Recordset::Transaction all(rows);
  // From the last one on, so that no row has to move up into the place of a deleted one.
  for (rows.MoveLast(); !rows.Bof(); rows.MovePrevious()) {
    if (spared(rows)) continue;
    try {
      rows.Delete();
    } catch (const Failure& failure) {
      if (failure.number() != failure::kRowDeleted) throw;  // gone is what it was to be
    }
  }
  all.Commit();
}

void DeleteBelow(Recordset& types, const QString& parent) {
  DeleteAllBut(types, [&](const Recordset& type) { return type.Text(1) != parent; });
}

}  // namespace kestrix::lookup
