#include "store/Recordset.h"

#include <QSignalBlocker>
#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/Failure.h"
#include "store/Database.h"
#include "store/Statement.h"

namespace kestrix {
namespace {

// Enough for what a list shows at once, several times over.
constexpr std::size_t kCachedRows = 256;
// What tells a row from another one that took over its key: the first fields of every table here.
constexpr int kIdentityFields = 2;

QString Named(const QString& name) {
  QString quoted = name;
  return u'"' + quoted.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

bool IsBareName(const QString& sql) {
  return std::all_of(sql.begin(), sql.end(),
                     [](QChar c) { return c.isLetterOrNumber() || c == u'_'; });
}

/// Where the FROM of a SELECT begins; names in brackets or quotes may hold the word.
qsizetype FromOf(const QString& sql) {
  QChar closing;
  for (qsizetype i = 0; i < sql.size(); ++i) {
    const QChar c = sql[i];
    if (!closing.isNull()) {
      if (c == closing) closing = QChar();
    } else if (c == u'[') {
      closing = u']';
    } else if (c == u'\'' || c == u'"' || c == u'`') {
      closing = c;
    } else if (c.isSpace() &&
               QStringView(sql).sliced(i + 1).startsWith(u"from", Qt::CaseInsensitive) &&
               i + 5 < sql.size() && sql[i + 5].isSpace()) {
      return i + 1;
    }
  }
  return -1;
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

bool IsLonger(const QString& text, int limit) {
  if (text.size() <= limit) return false;
  return text.toUcs4().size() > limit;
}

QVariant Plain(const QVariant& value) {
  if (value.typeId() == QMetaType::Bool) return value.toBool() ? 1 : 0;
  return value;
}

/// Null is an empty text, 0 and false: it differs from none of them.
bool IsSame(const QVariant& a, const QVariant& b) {
  if (a.isNull() && b.isNull()) return true;
  if (a.isNull() || b.isNull()) {
    const QVariant& value = a.isNull() ? b : a;
    return value.toString().isEmpty() || (value.typeId() != QMetaType::QString && !value.toBool());
  }
  return a.toString() == b.toString();
}

/// A number that another program wrote, or a damaged file holds, may be beyond all whole numbers.
qint64 WholePart(double number) {
  constexpr double kEnd = 9223372036854775808.0;  // the first one that no whole number reaches
  if (std::isnan(number)) return 0;
  if (number >= kEnd) return std::numeric_limits<qint64>::max();
  if (number < -kEnd) return std::numeric_limits<qint64>::min();
  return static_cast<qint64>(number);
}

Failure NoCurrentRow() {
  return {failure::kNoCurrentRow, QStringLiteral("No current record.")};
}

Failure DeletedRow(const QString& texts = {}) {
  return {failure::kRowDeleted, QStringLiteral("Somebody else has deleted this record.") + texts};
}

Failure ChangedRow(const QString& fields, const QString& texts) {
  return {
      failure::kRowChanged,
      QStringLiteral("Somebody else has changed %1 of this record meanwhile. Their text stands; "
                     "please look at it and change it again if need be.")
              .arg(fields) +
          texts};
}

}  // namespace

Recordset::Recordset(std::shared_ptr<Database> database, const QString& sql, QObject* parent)
    : QObject(parent), database_(std::move(database)) {
  Open(sql.trimmed());
  ReadKeys();
  index_ = 0;
}

Recordset::~Recordset() {
  // A listener would look for the rows of an owner that is letting go of them.
  const QSignalBlocker quiet(this);
  try {
    CommitPending();
  } catch (const Failure&) {
    // Whoever wants to hear of it calls Close.
  }
}

void Recordset::Open(const QString& sql) {
  const QString select = IsBareName(sql) ? QStringLiteral("SELECT * FROM %1").arg(Named(sql)) : sql;
  const Statement statement(*database_, select);
  const qsizetype from = FromOf(select);
  if (from < 0 || !statement.IsReadOnly()) {
    throw Failure(failure::kSyntax, QStringLiteral("Not a SELECT on one table: %1").arg(sql));
  }
  tail_ = select.mid(from);
  for (int column = 0; column < statement.ColumnCount(); ++column) {
    const QString table = statement.TableOf(column);
    if (table.isEmpty() || (!table_.isEmpty() && table != table_)) {
      throw Failure(failure::kSyntax, QStringLiteral("Not a SELECT on one table: %1").arg(sql));
    }
    table_ = table;
    fields_.push_back({statement.FieldOf(column), LimitOf(statement.DeclaredTypeOf(column))});
  }
  Statement schema(*database_, QStringLiteral("SELECT sql FROM sqlite_schema WHERE name=?1"));
  schema.Bind(1, table_);
  keys_return_ = !schema.Step() || !schema.Column(0).toString().contains(
                                       QStringLiteral("AUTOINCREMENT"), Qt::CaseInsensitive);
}

void Recordset::ReadKeys() {
  std::vector<qint64> read;
  Statement keys(*database_, QStringLiteral("SELECT _rowid_ ") + tail_);
  while (keys.Step()) read.push_back(keys.Integer(0));
  keys_ = std::move(read);
  ForgetRows();
}

void Recordset::Close() {
  try {
    CommitPending();
  } catch (const Failure& failure) {
    if (!HasPendingEdit()) throw;
    adding_ = false;
    const QMap<int, QVariant> lost = std::exchange(pending_, {});
    Lose({failure.number(), failure.description() + Texts(lost)});
  }
}

int Recordset::RecordCount() const {
  return static_cast<int>(keys_.size());
}

int Recordset::AbsolutePosition() const {
  if (adding_ || on_deleted_row_ || keys_.empty()) return kPositionUnknown;
  if (index_ < 0) return kPositionBeforeFirst;
  if (index_ >= RecordCount()) return kPositionPastLast;
  return index_ + 1;
}

int Recordset::AddedPosition() const {
  if (!added_key_) return RecordCount();
  const auto found = std::find(keys_.rbegin(), keys_.rend(), *added_key_);
  return found == keys_.rend() ? RecordCount() : static_cast<int>(keys_.rend() - found);
}

void Recordset::SetAbsolutePosition(int position) {
  CommitPending();
  if (keys_.empty()) throw NoCurrentRow();
  if (position == kPositionBeforeFirst) return MoveTo(-1);
  if (position == kPositionPastLast) return MoveTo(RecordCount());
  if (position < 1 || position > RecordCount()) {
    throw Failure(failure::kInvalidPosition,
                  QStringLiteral("There is no record %1 of %2.").arg(position).arg(RecordCount()));
  }
  MoveTo(position - 1);
}

bool Recordset::Eof() const {
  return !adding_ && !on_deleted_row_ && index_ >= RecordCount();
}

bool Recordset::Bof() const {
  return !adding_ && !on_deleted_row_ && (index_ < 0 || keys_.empty());
}

bool Recordset::HasCurrentRow() const {
  return adding_ || (!on_deleted_row_ && index_ >= 0 && index_ < RecordCount());
}

void Recordset::MoveFirst() {
  CommitPending();
  MoveTo(0);
  if (keys_.empty()) throw NoCurrentRow();
}

void Recordset::MoveLast() {
  CommitPending();
  MoveTo(std::max(RecordCount() - 1, 0));
  if (keys_.empty()) throw NoCurrentRow();
}

void Recordset::MoveNext() {
  CommitPending();
  if (on_deleted_row_) return MoveTo(index_);
  if (Eof()) throw NoCurrentRow();
  MoveTo(index_ + 1);
}

void Recordset::MovePrevious() {
  CommitPending();
  if (Bof()) throw NoCurrentRow();
  MoveTo(index_ - 1);
}

void Recordset::MoveTo(int index) {
  on_deleted_row_ = false;
  index_ = index;
  // Whoever comes to a row sees what it holds now; a walk reads its column anew when the file
  // changed.
  if (walks_ == 0 && HasCurrentRow()) ForgetRow(keys_[static_cast<std::size_t>(index_)]);
  Tell();
}

int Recordset::FieldCount() const {
  return static_cast<int>(fields_.size());
}

int Recordset::FieldIndex(const QString& name) const {
  const auto found = std::find_if(fields_.begin(), fields_.end(), [&](const Field& field) {
    return field.name.compare(name, Qt::CaseInsensitive) == 0;
  });
  if (found == fields_.end()) {
    throw Failure(failure::kNoSuchField, QStringLiteral("There is no field %1.").arg(name));
  }
  return static_cast<int>(found - fields_.begin());
}

QString Recordset::FieldName(int field) const {
  CheckField(field);
  return fields_[static_cast<std::size_t>(field)].name;
}

int Recordset::FieldLimit(int field) const {
  CheckField(field);
  return fields_[static_cast<std::size_t>(field)].limit;
}

void Recordset::CheckField(int field) const {
  if (field < 0 || field >= FieldCount()) {
    throw Failure(failure::kNoSuchField, QStringLiteral("There is no field %1.").arg(field));
  }
}

QVariant Recordset::Value(int field) const {
  CheckField(field);
  if (!HasCurrentRow()) throw NoCurrentRow();
  const auto edited = pending_.constFind(field);
  if (edited != pending_.constEnd()) return *edited;
  if (adding_) return {};
  if (walks_ > 0) return ColumnValue(field);
  return CurrentRow()[static_cast<std::size_t>(field)];
}

QString Recordset::Text(int field) const {
  return Value(field).toString();
}

qint64 Recordset::Number(int field) const {
  return WholePart(Value(field).toDouble());
}

bool Recordset::Truth(int field) const {
  return Number(field) != 0;
}

void Recordset::Set(int field, const QVariant& value) {
  CheckField(field);
  Edit();
  const int limit = FieldLimit(field);
  const QVariant plain = Plain(value);
  if (limit >= 0 && IsLonger(plain.toString(), limit)) {
    throw Failure(failure::kTooLong, QStringLiteral("The text is too long: %1 holds %2 characters.")
                                         .arg(FieldName(field))
                                         .arg(limit));
  }
  if (!adding_ && pending_.isEmpty()) before_edit_ = CurrentRow();
  if (!adding_ && IsSame(before_edit_[static_cast<std::size_t>(field)], plain)) {
    pending_.remove(field);
  } else {
    pending_.insert(field, plain);
  }
  Q_EMIT FieldChanged(field);
}

void Recordset::CheckWritable() const {
  if (!database_->IsReadOnly()) return;
  throw Failure(failure::kReadOnly,
                QStringLiteral("%1 can't be written to.").arg(database_->path()));
}

void Recordset::AddNew() {
  CommitPending();
  CheckWritable();
  adding_ = true;
  on_deleted_row_ = false;
  Tell();
}

void Recordset::Edit() {
  if (!HasCurrentRow()) throw NoCurrentRow();
  CheckWritable();
}

void Recordset::Update() {
  CommitPending();
}

void Recordset::CancelUpdate() {
  if (!HasPendingEdit()) return;
  pending_.clear();
  const bool was_adding = adding_;
  adding_ = false;
  if (was_adding) return Tell();
  Q_EMIT FieldChanged(-1);
}

void Recordset::CommitPending() {
  if (adding_) return Insert();
  if (!pending_.isEmpty()) Write();
}

void Recordset::Insert() {
  QStringList names;
  QStringList places;
  const QList<int> written = pending_.keys();
  for (const int field : written) {
    names += Named(FieldName(field));
    places += QStringLiteral("?%1").arg(places.size() + 1);
  }
  const QString what =
      written.isEmpty()
          ? QStringLiteral("DEFAULT VALUES")
          : QStringLiteral("(%1) VALUES (%2)").arg(names.join(u','), places.join(u','));
  Statement insert(*database_,
                   QStringLiteral("INSERT INTO %1 %2 RETURNING _rowid_").arg(Named(table_), what));
  for (int i = 0; i < written.size(); ++i) insert.Bind(i + 1, pending_.value(written[i]));
  insert.Step();
  const qint64 key = insert.Integer(0);
  insert.Step();
  keys_.push_back(key);
  added_key_ = key;
  ForgetRows();
  pending_.clear();
  adding_ = false;
  index_ = RecordCount() - 1;
  Q_EMIT RowInserted(RecordCount());
  Tell();
}

/// A field as it is read and compared: a text that is longer than its column, as another program
/// can leave it, ends where the column does.
QString Recordset::AsRead(int field) const {
  const Field& of = fields_[static_cast<std::size_t>(field)];
  if (of.limit < 0) return Named(of.name);
  return QStringLiteral("substr(%1,1,%2)").arg(Named(of.name)).arg(of.limit);
}

QList<int> Recordset::IdentityFields() const {
  QList<int> fields;
  if (!keys_return_) return fields;
  for (int field = 0; field < std::min(kIdentityFields, FieldCount()); ++field) fields += field;
  return fields;
}

void Recordset::Write() {
  const qint64 key = keys_[static_cast<std::size_t>(index_)];
  const QList<int> written = WriteWhatHolds(key);
  ForgetRow(key);
  columns_.clear();
  QMap<int, QVariant> lost = std::exchange(pending_, {});
  for (const int field : written) lost.remove(field);
  if (lost.isEmpty()) return;
  const std::optional<Row> now = ReadRow(key);
  Q_EMIT FieldChanged(-1);  // what stands there now is shown
  if (now && IsTheRow(*now, lost.keys())) Lose(ChangedRow(Names(lost), Texts(lost, &*now)));
  Lose(DeletedRow(Texts(lost)));
}

/// Writes the pending fields that still hold what was read, and gives them.
QList<int> Recordset::WriteWhatHolds(qint64 key) {
  QList<int> fields = pending_.keys();
  while (!fields.isEmpty() && !WriteFields(key, fields)) {
    const std::optional<Row> now = ReadRow(key);
    QList<int> held;
    for (const int field : fields) {
      const auto at = static_cast<std::size_t>(field);
      if (now && IsTheRow(*now, fields) && now->at(at) == before_edit_[at]) held += field;
    }
    // Where nothing is seen to differ, the engine compares more strictly than we do.
    if (held == fields) held.clear();
    fields = held;
  }
  return fields;
}

/// Whether a row is still the one that the edit began on, and not another one with its key.
bool Recordset::IsTheRow(const Row& row, const QList<int>& edited) const {
  const QList<int> identity = IdentityFields();
  return std::all_of(identity.begin(), identity.end(), [&](int field) {
    const auto at = static_cast<std::size_t>(field);
    return edited.contains(field) || row[at] == before_edit_[at];
  });
}

bool Recordset::WriteFields(qint64 key, const QList<int>& fields) {
  QList<int> held = fields;
  for (const int field : IdentityFields()) {
    if (!held.contains(field)) held += field;
  }
  int parameter = 1;
  QStringList sets;
  for (const int field : fields) {
    sets += QStringLiteral("%1=?%2").arg(Named(FieldName(field))).arg(++parameter);
  }
  QStringList holds = {QStringLiteral("_rowid_=?1")};
  for (const int field : held) {
    holds += QStringLiteral("%1 IS ?%2").arg(AsRead(field)).arg(++parameter);
  }
  Statement update(*database_,
                   QStringLiteral("UPDATE %1 SET %2 WHERE %3 RETURNING 1")
                       .arg(Named(table_), sets.join(u','), holds.join(QStringLiteral(" AND "))));
  parameter = 1;
  update.Bind(1, key);
  for (const int field : fields) update.Bind(++parameter, pending_.value(field));
  for (const int field : held) {
    update.Bind(++parameter, before_edit_[static_cast<std::size_t>(field)]);
  }
  const bool done = update.Step();
  if (done) update.Step();
  return done;
}

QString Recordset::Names(const QMap<int, QVariant>& edit) const {
  QStringList names;
  for (const int field : edit.keys()) names += FieldName(field);
  return names.join(QStringLiteral(", "));
}

/// A paragraph for each field with what was typed there, and with theirs where it stands.
QString Recordset::Texts(const QMap<int, QVariant>& edit, const Row* theirs) const {
  QString texts;
  for (auto field = edit.keyValueBegin(); field != edit.keyValueEnd(); ++field) {
    texts += QStringLiteral("\n\n") + FieldName(field->first);
    if (theirs != nullptr) {
      const QVariant& now = theirs->at(static_cast<std::size_t>(field->first));
      texts += QStringLiteral("\nTheirs: ") + now.toString();
    }
    texts += QStringLiteral("\nYours: ") + field->second.toString();
  }
  return texts;
}

void Recordset::Lose(Failure failure) {
  Q_EMIT EditLost(failure);
  throw failure;
}

void Recordset::Delete() {
  if (adding_) return CancelUpdate();
  if (!HasCurrentRow()) throw NoCurrentRow();
  CheckWritable();
  const qint64 key = keys_[static_cast<std::size_t>(index_)];
  const Row* row = CachedRow(key);
  const bool done = row != nullptr && DeleteStored(key, *row);
  pending_.clear();
  ForgetRow(key);
  for (auto& [field, values] : columns_) values.erase(values.begin() + index_);
  // The columns know of our own change already; that of somebody else still tells itself.
  if (done) ++columns_mark_;
  keys_.erase(keys_.begin() + index_);
  on_deleted_row_ = true;
  Q_EMIT RowRemoved(index_ + 1);
  Tell();
  if (!done) throw DeletedRow();
}

bool Recordset::DeleteStored(qint64 key, const Row& row) {
  QString sql = QStringLiteral("DELETE FROM %1 WHERE _rowid_=?1").arg(Named(table_));
  const QList<int> identity = IdentityFields();
  int parameter = 1;
  for (const int field : identity) {
    sql += QStringLiteral(" AND %1 IS ?%2").arg(AsRead(field)).arg(++parameter);
  }
  Statement remove(*database_, sql + QStringLiteral(" RETURNING 1"));
  parameter = 1;
  remove.Bind(1, key);
  for (const int field : identity) remove.Bind(++parameter, row[static_cast<std::size_t>(field)]);
  const bool done = remove.Step();
  if (done) remove.Step();
  return done;
}

void Recordset::Requery() {
  CommitPending();
  ReadKeys();
  on_deleted_row_ = false;
  index_ = 0;
  Q_EMIT RowsReset();
  told_key_.reset();
  Tell();
}

QString Recordset::ShownText(int position, int field) const {
  if (position < 1 || position > RecordCount() || field < 0 || field >= FieldCount()) return {};
  if (HasCurrentRow() && !adding_ && position == index_ + 1 && pending_.contains(field)) {
    return pending_.value(field).toString();
  }
  try {
    const Row* row = CachedRow(keys_[static_cast<std::size_t>(position - 1)]);
    return row == nullptr ? QString() : (*row)[static_cast<std::size_t>(field)].toString();
  } catch (const Failure&) {
    return {};  // A list shows an empty line for what it can't read.
  }
}

const Recordset::Row& Recordset::CurrentRow() const {
  const Row* row = CachedRow(keys_[static_cast<std::size_t>(index_)]);
  if (row == nullptr) throw DeletedRow();
  return *row;
}

const Recordset::Row* Recordset::CachedRow(qint64 key) const {
  const auto found = rows_by_key_.find(key);
  if (found != rows_by_key_.end()) {
    rows_.splice(rows_.begin(), rows_, found->second);
    return &rows_.front().row;
  }
  std::optional<Row> row = ReadRow(key);
  if (!row) return nullptr;
  if (rows_.size() >= kCachedRows) {
    rows_by_key_.erase(rows_.back().key);
    rows_.pop_back();
  }
  rows_.push_front({key, std::move(*row)});
  rows_by_key_[key] = rows_.begin();
  return &rows_.front().row;
}

std::optional<Recordset::Row> Recordset::ReadRow(qint64 key) const {
  if (!read_row_) {
    QStringList names;
    for (int field = 0; field < FieldCount(); ++field) names += AsRead(field);
    read_row_ = std::make_unique<Statement>(
        *database_,
        QStringLiteral("SELECT %1 FROM %2 WHERE _rowid_=?1").arg(names.join(u','), Named(table_)));
  }
  read_row_->Bind(1, key);
  if (!read_row_->Step()) return std::nullopt;
  Row row;
  row.reserve(fields_.size());
  for (int column = 0; column < FieldCount(); ++column) row.push_back(read_row_->Column(column));
  read_row_->Reset();
  return row;
}

QVariant Recordset::ColumnValue(int field) const {
  // Once a pass is enough: others' changes are seen by the next walk.
  if (index_ == 0 || !columns_checked_) {
    const qint64 mark = database_->ChangeMark();
    if (mark != columns_mark_) columns_.clear();
    columns_mark_ = mark;
    columns_checked_ = true;
  }
  auto column = columns_.find(field);
  if (column == columns_.end()) column = columns_.emplace(field, ReadColumn(field)).first;
  return Known(column->second[static_cast<std::size_t>(index_)]);
}

std::vector<QVariant> Recordset::ReadColumn(int field) const {
  std::vector<QVariant> values(keys_.size());
  Statement column(*database_, QStringLiteral("SELECT _rowid_,%1 %2").arg(AsRead(field), tail_));
  std::size_t at = 0;
  std::unordered_map<qint64, std::size_t> places;
  while (column.Step()) {
    const qint64 key = column.Integer(0);
    if (at < keys_.size() && keys_[at] == key) {
      values[at++] = Known(column.Column(1));
      continue;
    }
    // The rows are no longer those that the keys were read from: place each by its key.
    if (places.empty()) {
      for (std::size_t i = 0; i < keys_.size(); ++i) places.emplace(keys_[i], i);
    }
    const auto place = places.find(key);
    if (place == places.end()) continue;
    values[place->second] = Known(column.Column(1));
    at = place->second + 1;
  }
  // A row that was added here and that the SELECT doesn't hold stays readable until the next
  // requery. One that somebody else has deleted reads as empty.
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    if (values[i].isValid()) continue;
    if (const auto row = ReadRow(keys_[i])) values[i] = row->at(static_cast<std::size_t>(field));
  }
  return values;
}

QVariant Recordset::Known(const QVariant& value) {
  return value.isNull() ? QString() : value;
}

void Recordset::ForgetRow(qint64 key) const {
  const auto found = rows_by_key_.find(key);
  if (found == rows_by_key_.end()) return;
  rows_.erase(found->second);
  rows_by_key_.erase(found);
}

void Recordset::ForgetRows() const {
  rows_.clear();
  rows_by_key_.clear();
  columns_.clear();
}

void Recordset::Tell() {
  if (walks_ > 0) return;
  std::optional<qint64> key;
  if (HasCurrentRow() && !adding_) key = keys_[static_cast<std::size_t>(index_)];
  const bool same = key == told_key_ && adding_ == told_adding_;
  told_key_ = key;
  told_adding_ = adding_;
  Q_EMIT Shown();
  if (!same) Q_EMIT RowChanged();
}

Recordset::Walk::Walk(Recordset& recordset) : recordset_(recordset) {
  if (++recordset_.walks_ == 1) recordset_.columns_checked_ = false;
}

Recordset::Walk::~Walk() {
  if (--recordset_.walks_ > 0) return;
  if (recordset_.HasCurrentRow() && !recordset_.adding_) {
    recordset_.ForgetRow(recordset_.keys_[static_cast<std::size_t>(recordset_.index_)]);
  }
  recordset_.Tell();
}

Recordset::Transaction::Transaction(Recordset& recordset) : recordset_(recordset) {
  recordset.CommitPending();
  Statement(*recordset.database_, QStringLiteral("BEGIN IMMEDIATE")).Step();
}

Recordset::Transaction::~Transaction() {
  if (committed_) return;
  try {
    recordset_.CancelUpdate();
    Statement(*recordset_.database_, QStringLiteral("ROLLBACK")).Step();
    recordset_.Requery();
  } catch (const Failure&) {
    // The engine has rolled back by itself, or the file can't be read: the next use tells.
  }
}

void Recordset::Transaction::Commit() {
  Statement(*recordset_.database_, QStringLiteral("COMMIT")).Step();
  committed_ = true;
}

}  // namespace kestrix
