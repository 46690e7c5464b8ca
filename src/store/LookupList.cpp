#include "store/LookupList.h"

#include "platform/Failure.h"
#include "store/Recordset.h"

namespace kestrix::lookup {

bool IsReserved(const QString& text) {
  return text == kNone || text == kNotApplicable;
}

QStringList Texts(Recordset& rows) {
  if (rows.RecordCount() > 0) rows.SetAbsolutePosition(Recordset::kPositionPastLast);
  QStringList texts = rows.Texts(0);
  // No entry is empty: this is one that somebody else has deleted.
  texts.removeAll(QString());
  return texts;
}

bool Knows(Recordset& rows, const QString& text, const QString* parent) {
  if (rows.RecordCount() == 0) return false;
  rows.SetAbsolutePosition(Recordset::kPositionPastLast);
  const QStringList texts = rows.Texts(0);
  const QStringList parents = parent != nullptr ? rows.Texts(1) : QStringList();
  for (qsizetype row = texts.indexOf(text); row >= 0; row = texts.indexOf(text, row + 1)) {
    if (parent == nullptr || parents[row] == *parent) return true;
  }
  return false;
}

void Add(Recordset& rows, const QString& text, const QString* parent) {
  rows.AddNew();
  const Recordset::Attempt attempt(rows);
  rows.Set(0, text);
  if (parent != nullptr) rows.Set(1, *parent);
  rows.Update();
}

bool WalkTo(Recordset& rows, const QString& text, int field) {
  return rows.Find(field, [&](const QString& stored) { return stored == text; });
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
