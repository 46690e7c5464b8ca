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

Recordset::Recordset(std::shared_ptr<Database> database, const Select& select, QObject* parent)
    : QObject(parent), rows_(std::move(database), select) {}

Recordset::~Recordset() {
  // A listener would look for the rows of an owner that is letting go of them.
  const QSignalBlocker quiet(this);
  try {
    CommitPending();
  } catch (const Failure&) {
    // Whoever wants to hear of it calls Close.
  }
}

void Recordset::Close() {
  try {
    CommitPending();
  } catch (const Failure& failure) {
    if (!HasPendingEdit()) throw;
    adding_ = false;
    const RowSet::Edit lost = std::exchange(pending_, {});
    Lose({failure.number(), failure.description() + Texts(lost)});
  }
}

int Recordset::AbsolutePosition() const {
  if (adding_ || on_deleted_row_ || IsEmpty()) return kPositionUnknown;
  if (index_ < 0) return kPositionBeforeFirst;
  if (index_ >= RecordCount()) return kPositionPastLast;
  return index_ + 1;
}

int Recordset::AddedPosition() const {
  int row = added_key_ ? RecordCount() - 1 : -1;
  while (row >= 0 && rows_.Key(row) != *added_key_) --row;
  return row < 0 ? RecordCount() : row + 1;
}

void Recordset::SetAbsolutePosition(int position) {
  CommitPending();
  if (IsEmpty()) throw NoCurrentRow();
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
  return !adding_ && !on_deleted_row_ && (index_ < 0 || IsEmpty());
}

bool Recordset::HasCurrentRow() const {
  return adding_ || (!on_deleted_row_ && index_ >= 0 && index_ < RecordCount());
}

void Recordset::MoveFirst() {
  CommitPending();
  MoveTo(0);
  if (IsEmpty()) throw NoCurrentRow();
}

void Recordset::MoveLast() {
  MoveFirst();
  MoveTo(RecordCount() - 1);
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
  // Whoever comes to a row sees what it holds now.
  if (HasCurrentRow()) rows_.Forget(index_);
  Tell();
}

bool Recordset::Find(int field, const std::function<bool(const QString&)>& matches) {
  const Walk walk(*this);
  MoveFirst();
  const QStringList texts = Texts(field);
  const auto found = std::find_if(texts.begin(), texts.end(), matches);
  MoveTo(static_cast<int>(found - texts.begin()));
  return found != texts.end();
}

QStringList Recordset::Texts(int field) const {
  CheckField(field);
  QStringList texts;
  for (const QVariant& value : rows_.Column(field)) texts += value.toString();
  return texts;
}

int Recordset::FieldIndex(const QString& name) const {
  const auto& fields = rows_.fields();
  const auto found = std::find_if(fields.begin(), fields.end(), [&](const RowSet::Field& field) {
    return field.name.compare(name, Qt::CaseInsensitive) == 0;
  });
  if (found == fields.end()) {
    throw Failure(failure::kNoSuchField, QStringLiteral("There is no field %1.").arg(name));
  }
  return static_cast<int>(found - fields.begin());
}

QString Recordset::FieldName(int field) const {
  CheckField(field);
  return rows_.fields()[static_cast<std::size_t>(field)].name;
}

int Recordset::FieldLimit(int field) const {
  CheckField(field);
  return rows_.fields()[static_cast<std::size_t>(field)].limit;
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
  const RowSet::Row* row = rows_.At(index_);
  // So that a walk goes on past a row that somebody else has deleted.
  if (row == nullptr && walks_ > 0) return QString();
  if (row == nullptr) throw DeletedRow();
  return row->at(field);
}

qint64 Recordset::Number(int field) const {
  return WholePart(Value(field).toDouble());
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
  if (!adding_ && pending_.isEmpty()) {
    const RowSet::Row* row = rows_.At(index_);
    if (row == nullptr) throw DeletedRow();
    before_edit_ = *row;
  }
  if (!adding_ && IsSame(before_edit_[field], plain)) {
    pending_.remove(field);
  } else {
    pending_.insert(field, plain);
  }
  Q_EMIT FieldChanged(field);
}

void Recordset::CheckWritable() const {
  if (!rows_.database().IsReadOnly()) return;
  throw Failure(failure::kReadOnly,
                QStringLiteral("%1 can't be written to.").arg(rows_.database().path()));
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
  rows_.Insert(pending_);
  index_ = RecordCount() - 1;
  added_key_ = rows_.Key(index_);
  pending_.clear();
  adding_ = false;
  Q_EMIT RowInserted(RecordCount());
  Tell();
}

void Recordset::Write() {
  const RowSet::Edit lost = WriteWhatHolds();
  pending_.clear();
  if (lost.isEmpty()) return;
  const RowSet::Row* row = rows_.At(index_);
  const bool stands = row != nullptr && rows_.IsSame(*row, before_edit_, lost);
  Failure failure = stands ? ChangedRow(Names(lost), Texts(lost, row)) : DeletedRow(Texts(lost));
  Q_EMIT FieldChanged(-1);  // what stands there now is shown
  Lose(std::move(failure));
}

/// Writes the pending fields that still hold what was read. Gives the others.
RowSet::Edit Recordset::WriteWhatHolds() {
  RowSet::Edit edit = pending_;
  RowSet::Edit lost;
  while (!edit.isEmpty() && !rows_.Write(index_, edit, before_edit_)) {
    const RowSet::Row* now = rows_.At(index_);
    RowSet::Edit held;
    if (now != nullptr && rows_.IsSame(*now, before_edit_, edit)) {
      for (const int field : edit.keys()) {
        if (now->at(field) == before_edit_[field]) held.insert(field, edit.take(field));
      }
    }
    // Where nothing is seen to differ, the engine compares more strictly than we do.
    if (edit.isEmpty()) held.swap(edit);
    lost.insert(edit);
    edit = held;
  }
  return lost;
}

QString Recordset::Names(const RowSet::Edit& edit) const {
  QStringList names;
  for (const int field : edit.keys()) names += FieldName(field);
  return names.join(QStringLiteral(", "));
}

/// A paragraph for each field with what was typed there, and with theirs where it stands.
QString Recordset::Texts(const RowSet::Edit& edit, const RowSet::Row* theirs) const {
  QString texts;
  for (auto field = edit.keyValueBegin(); field != edit.keyValueEnd(); ++field) {
    texts += QStringLiteral("\n\n") + FieldName(field->first);
    if (theirs != nullptr) {
      texts += QStringLiteral("\nTheirs: ") + theirs->at(field->first).toString();
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
  const bool done = rows_.Delete(index_);
  pending_.clear();
  on_deleted_row_ = true;
  Q_EMIT RowRemoved(index_ + 1);
  Tell();
  if (!done) throw DeletedRow();
}

void Recordset::Requery() {
  CommitPending();
  rows_.ReadKeys();
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
    const RowSet::Row* row = rows_.At(position - 1);
    return row == nullptr ? QString() : row->at(field).toString();
  } catch (const Failure&) {
    return {};  // A list shows an empty line for what it can't read.
  }
}

void Recordset::Tell() {
  if (walks_ > 0) return;
  std::optional<qint64> key;
  if (HasCurrentRow() && !adding_) key = rows_.Key(index_);
  const bool same = key == told_key_ && adding_ == told_adding_;
  told_key_ = key;
  told_adding_ = adding_;
  Q_EMIT Shown();
  if (!same) Q_EMIT RowChanged();
}

Recordset::Walk::Walk(Recordset& recordset) : recordset_(recordset) {
  ++recordset_.walks_;
}

Recordset::Walk::~Walk() {
  if (--recordset_.walks_ == 0) recordset_.Tell();
}

Recordset::Transaction::Transaction(Recordset& recordset) : recordset_(recordset) {
  recordset.CommitPending();
  Statement(recordset.rows_.database(), QStringLiteral("BEGIN IMMEDIATE")).Step();
}

Recordset::Transaction::~Transaction() {
  if (committed_) return;
  try {
    recordset_.CancelUpdate();
    Statement(recordset_.rows_.database(), QStringLiteral("ROLLBACK")).Step();
    recordset_.Requery();
  } catch (const Failure&) {
    // The engine has rolled back by itself, or the file can't be read: the next use tells.
  }
}

void Recordset::Transaction::Commit() {
  Statement(recordset_.rows_.database(), QStringLiteral("COMMIT")).Step();
  committed_ = true;
}

}  // namespace kestrix
