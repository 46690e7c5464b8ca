#pragma once

#include <QCache>
#include <QMap>
#include <QString>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

#include "store/RecordSources.h"

namespace kestrix {

class Database;
class Statement;

/// The rows of one SELECT on a single table: their keys, read once in the order of the SELECT, and
/// what a row holds, read when it is asked for. A row that is added stays one of them until the
/// next ReadKeys, also when the SELECT doesn't hold it. Rows count from 0.
///
/// It knows no cursor, and it writes what it is told to write at once.
class RowSet {
 public:
  using Row = QVariantList;
  using Edit = QMap<int, QVariant>;  ///< values by field
  struct Field {
    QString name;
    int limit = -1;  ///< characters that the column holds; -1 for no limit
  };

  /// Fails with kSyntax for what isn't a SELECT on one table, and as reading a file can.
  RowSet(std::shared_ptr<Database> database, const Select& select);
  ~RowSet();

  [[nodiscard]] Database& database() const { return *database_; }
  [[nodiscard]] const std::vector<Field>& fields() const { return fields_; }
  [[nodiscard]] int Count() const { return static_cast<int>(keys_.size()); }
  [[nodiscard]] qint64 Key(int row) const { return keys_[static_cast<std::size_t>(row)]; }
  void ReadKeys();

  /// Null when somebody else has deleted it. Valid until the next call.
  [[nodiscard]] const Row* At(int row) const;
  /// What is asked of it next comes from the file.
  void Forget(int row) const { cache_.remove(Key(row)); }
  /// A field of all rows, which one statement is stepped for; nothing in place of a row that
  /// somebody else has deleted.
  [[nodiscard]] QVariantList Column(int field) const;

  /// Adds a row, the last one; fields that aren't named take their column's default.
  void Insert(const Edit& values);
  /// Writes `edit` if all its fields still hold what they held in `before`, and the row is the one
  /// that it was. False when not, or when it is gone.
  [[nodiscard]] bool Write(int row, const Edit& edit, const Row& before);
  /// Deletes a row; false when somebody else had done so. It is none of the rows any more then.
  [[nodiscard]] bool Delete(int row);
  /// Whether `now` is the row that `before` was, and not another one that took over its key. Fields
  /// of `edit` may have changed.
  [[nodiscard]] bool IsSame(const Row& now, const Row& before, const Edit& edit) const;

 private:
  void Open(const Select& select);
  [[nodiscard]] QString AsRead(int field) const;
  [[nodiscard]] QList<int> Identity() const;
  [[nodiscard]] bool Change(const QString& sql, qint64 key, const QVariantList& values,
                            const Edit& held);
  [[nodiscard]] std::optional<Row> Read(qint64 key) const;

  std::shared_ptr<Database> database_;
  QString table_;
  QString tail_;  ///< the SELECT from its FROM on
  std::vector<Field> fields_;
  bool keys_return_ = true;  ///< a key may come back for another row after its row was deleted
  std::vector<qint64> keys_;
  mutable QCache<qint64, Row> cache_;
  mutable std::unique_ptr<Statement> read_;
};

}  // namespace kestrix
