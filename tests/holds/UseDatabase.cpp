#include "UseDatabase.h"

#include "store/DataControl.h"

namespace kestrix::holds {
namespace {

void ReadAll(Recordset& rows, const Hear& hear) {
  const int count = rows.RecordCount();
  for (int row = 1; row <= count; ++row) {
    static_cast<void>(Succeeds(
        [&] {
          rows.SetAbsolutePosition(row);
          for (int field = 0; field < rows.FieldCount(); ++field) {
            static_cast<void>(rows.Value(field));
            static_cast<void>(rows.Number(field));
            static_cast<void>(rows.ShownText(row, field));
          }
        },
        hear));
  }
  static_cast<void>(Succeeds(
      [&] {
        const Recordset::Walk walk(rows);
        for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) static_cast<void>(rows.Text(0));
      },
      hear));
}

void WriteSome(Recordset& rows, const Hear& hear) {
  static_cast<void>(Succeeds(
      [&] {
        rows.MoveFirst();
        rows.Set(rows.FieldCount() - 1, QStringLiteral("7"));
        rows.Update();
      },
      hear));
  static_cast<void>(Succeeds(
      [&] {
        rows.CancelUpdate();
        rows.AddNew();
        rows.Set(0, QStringLiteral("new"));
        rows.Update();
      },
      hear));
  static_cast<void>(Succeeds(
      [&] {
        rows.CancelUpdate();
        rows.MoveFirst();
        rows.Delete();
        rows.Requery();
      },
      hear));
}

}  // namespace

int UseDatabase(const QString& file, const QList<Select>& record_sources, bool writes,
                const Hear& hear) {
  int opened = 0;
  for (const Select& select : record_sources) {
    opened += Succeeds(
        [&] {
          DataControl source(QStringLiteral("source"));
          source.SetDatabaseName(file);
          source.SetRecordSource(select);
          source.Refresh();
          ReadAll(source.Recordset(), hear);
          if (writes) WriteSome(source.Recordset(), hear);
          source.Close();
        },
        hear);
  }
  return opened;
}

}  // namespace kestrix::holds
