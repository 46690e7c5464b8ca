#include "store/RowSet.h"

#include <QHash>
#include <algorithm>

#include "platform/Failure.h"
#include "store/Database.h"
#include "store/Statement.h"

namespace kestrix {
namespace {

// Enough for what a list shows at once, several times over.
constexpr int kCachedRows = 256;
// What tells a row from another one that took over its key: the first fields of every table here.
constexpr int kIdentityFields = 2;

QString Named(const QString& name) {
  QString quoted = name;
  return u'"' + quoted.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

/// The characters that a column of the declared type holds: 255 for VARCHAR(255), -1 for no limit.
int LimitOf(const QString& declared_type) {
  const qsizetype open = declared_type.indexOf(u'(');
  const qsizetype close = declared_type.indexOf(u')', open + 1);
  if (open < 0 || close < 0) return -1;
  bool ok = false;
  const int limit = declared_type.mid(open + 1, close - open - 1).toInt(&ok);
  return ok ? limit : -1;
}

}  // namespace

RowSet::RowSet(std::shared_ptr<Database> database, const Select& select)
    : database_(std::move(database)), tail_(select.tail), cache_(kCachedRows) {
  Open(select);
  ReadKeys();
}

RowSet::~RowSet() = default;

void RowSet::Open(const Select& select) {
  const Statement statement(*database_, QStringLiteral("SELECT ") + select.columns + u' ' + tail_);
  for (int column = 0; column < statement.ColumnCount(); ++column) {
    const QString table = statement.TableOf(column);
    if (table.isEmpty() || (!table_.isEmpty() && table != table_)) {
      throw Failure(failure::kSyntax,
                    QStringLiteral("Not a SELECT on one table: %1").arg(select.text));
    }
    table_ = table;
    fields_.push_back({statement.FieldOf(column), LimitOf(statement.DeclaredTypeOf(column))});
  }
  Statement schema(*database_, QStringLiteral("SELECT sql FROM sqlite_schema WHERE name=?1"));
  schema.Bind(1, table_);
  keys_return_ = !schema.Step() || !schema.Column(0).toString().contains(
                                       QStringLiteral("AUTOINCREMENT"), Qt::CaseInsensitive);
}

void RowSet::ReadKeys() {
  std::vector<qint64> read;
  Statement keys(*database_, QStringLiteral("SELECT _rowid_ ") + tail_);
  while (keys.Step()) read.push_back(keys.Integer(0));
  keys_ = std::move(read);
  cache_.clear();
}

const RowSet::Row* RowSet::At(int row) const {
  if (const Row* cached = cache_.object(Key(row))) return cached;
  std::optional<Row> read = Read(Key(row));
  if (!read) return nullptr;
  cache_.insert(Key(row), new Row(*std::move(read)));
  return cache_.object(Key(row));
}

std::optional<RowSet::Row> RowSet::Read(qint64 key) const {
  if (!read_) {
    QStringList names;
    for (int field = 0; field < static_cast<int>(fields_.size()); ++field) names += AsRead(field);
    read_ = std::make_unique<Statement>(
        *database_,
        QStringLiteral("SELECT %1 FROM %2 WHERE _rowid_=?1").arg(names.join(u','), Named(table_)));
  }
  read_->Bind(1, key);
  if (!read_->Step()) return std::nullopt;
  Row row;
  row.reserve(static_cast<qsizetype>(fields_.size()));
  for (int column = 0; column < read_->ColumnCount(); ++column) row += read_->Column(column);
  read_->Reset();
  return row;
}

QVariantList RowSet::Column(int field) const {
  Statement select(*database_, QStringLiteral("SELECT _rowid_,%1 %2").arg(AsRead(field), tail_));
  QVariantList values;
  values.reserve(static_cast<qsizetype>(keys_.size()));
  // As a rule the rows come as the keys did; the others wait for their place.
  QHash<qint64, QVariant> others;
  while (select.Step()) {
    const auto row = static_cast<std::size_t>(values.size());
    const qint64 key = select.Integer(0);
    if (row < keys_.size() && keys_[row] == key) {
      values += select.Column(1);
    } else {
      others.insert(key, select.Column(1));
    }
  }
  for (auto row = static_cast<std::size_t>(values.size()); row < keys_.size(); ++row) {
    const auto found = others.constFind(keys_[row]);
    // The SELECT doesn't hold a row that was changed, or added here, against its WHERE.
    values += found != others.constEnd() ? *found : Read(keys_[row]).value_or(Row()).value(field);
  }
  return values;
}

void RowSet::Insert(const Edit& values) {
  QStringList names;
  QStringList places;
  for (const int field : values.keys()) {
    names += Named(fields_[static_cast<std::size_t>(field)].name);
    places += QStringLiteral("?%1").arg(names.size());
  }
  const QString what =
      values.isEmpty()
          ? QStringLiteral("DEFAULT VALUES")
          : QStringLiteral("(%1) VALUES (%2)").arg(names.join(u','), places.join(u','));
  Statement insert(*database_,
                   QStringLiteral("INSERT INTO %1 %2 RETURNING _rowid_").arg(Named(table_), what));
  int parameter = 0;
  for (const QVariant& value : values) insert.Bind(++parameter, value);
  insert.Step();
  keys_.push_back(insert.Integer(0));
  insert.Step();
  Forget(Count() - 1);
}

bool RowSet::Write(int row, const Edit& edit, const Row& before) {
  QStringList sets;
  Edit held;
  for (const int field : edit.keys() + Identity()) held.insert(field, before[field]);
  for (const int field : edit.keys()) {
    sets += QStringLiteral("%1=?%2")
                .arg(Named(fields_[static_cast<std::size_t>(field)].name))
                .arg(sets.size() + 2);
  }
  const QString sql = QStringLiteral("UPDATE %1 SET %2").arg(Named(table_), sets.join(u','));
  const bool done = Change(sql, Key(row), edit.values(), held);
  Forget(row);
  return done;
}

bool RowSet::Delete(int row) {
  Edit held;
  const Row* before = At(row);
  if (before != nullptr) {
    for (const int field : Identity()) held.insert(field, before->at(field));
  }
  const QString sql = QStringLiteral("DELETE FROM %1").arg(Named(table_));
  const bool done = before != nullptr && Change(sql, Key(row), {}, held);
  Forget(row);
  keys_.erase(keys_.begin() + row);
  return done;
}

/// Runs `sql` on the row of this key, with `values` as its parameters from the second on, where the
/// row holds `held`. False when there is no such row.
bool RowSet::Change(const QString& sql, qint64 key, const QVariantList& values, const Edit& held) {
  QString where = QStringLiteral(" WHERE _rowid_=?1");
  qsizetype parameter = values.size() + 1;
  for (const int field : held.keys()) {
    where += QStringLiteral(" AND %1 IS ?%2").arg(AsRead(field)).arg(++parameter);
  }
  Statement change(*database_, sql + where + QStringLiteral(" RETURNING 1"));
  int place = 0;
  change.Bind(++place, key);
  for (const QVariant& value : values) change.Bind(++place, value);
  for (const QVariant& value : held) change.Bind(++place, value);
  const bool done = change.Step();
  if (done) change.Step();
  return done;
}

bool RowSet::IsSame(const Row& now, const Row& before, const Edit& edit) const {
  const QList<int> identity = Identity();
  return std::all_of(identity.begin(), identity.end(), [&](int field) {
    return edit.contains(field) || now[field] == before[field];
  });
}

/// A field as it is read and compared: a text that is longer than its column, as another program
/// can leave it, ends where the column does.
QString RowSet::AsRead(int field) const {
  const Field& of = fields_[static_cast<std::size_t>(field)];
  if (of.limit < 0) return Named(of.name);
  return QStringLiteral("substr(%1,1,%2)").arg(Named(of.name)).arg(of.limit);
}

QList<int> RowSet::Identity() const {
  QList<int> fields;
  const int most = keys_return_ ? std::min(kIdentityFields, static_cast<int>(fields_.size())) : 0;
  for (int field = 0; field < most; ++field) fields += field;
  return fields;
}

}  // namespace kestrix
