#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <memory>
#include <optional>

#include "store/RowSet.h"

namespace kestrix {

class Database;
class Failure;

/// A cursor over the rows of one SELECT on a single table.
///
/// The keys of the rows are read at opening and at Requery, what a row holds when it is asked for
/// (see RowSet). So rows that others add are seen after Requery, and a row that others deleted
/// fails when it is used.
///
/// There is at most one pending edit, of the current row or of a row being added. Setting a field
/// starts one. Leaving the row commits it; so do Update, Requery and closing. Only the fields whose
/// value changed are written, and only if they still hold what was read. Where somebody else
/// changed one of them meanwhile the others are written, theirs stands, the row is read again and
/// the commit fails. Whatever is lost of an edit is told by EditLost, however the row was left.
///
/// Null reads as an empty text, as 0 and as false.
class Recordset : public QObject {
  Q_OBJECT

 public:
  /// AbsolutePosition without a row.
  static constexpr int kPositionUnknown = -1;
  static constexpr int kPositionBeforeFirst = -2;
  static constexpr int kPositionPastLast = -3;

  /// Opens the rows and stands on the first. Fails with kSyntax for what isn't a SELECT on one
  /// table, and as reading a file can.
  Recordset(std::shared_ptr<Database> database, const Select& select, QObject* parent = nullptr);
  /// Commits the pending edit and tells nobody. One that can't be committed any more is lost; call
  /// Close first to hear of it.
  ~Recordset() override;

  /// Commits the pending edit. Fails as Update does; the edit is then gone.
  void Close();

  [[nodiscard]] int RecordCount() const { return rows_.Count(); }
  /// From 1; kPositionUnknown on an empty set, on a deleted row and while a row is being added.
  [[nodiscard]] int AbsolutePosition() const;
  /// From 1, of the row that was added last through these rows: the last one, unless somebody else
  /// has added another behind it since. RecordCount when there is none.
  [[nodiscard]] int AddedPosition() const;
  /// Goes to the row at `position`, 1 to RecordCount, or to kPositionBeforeFirst or
  /// kPositionPastLast. Fails with kInvalidPosition, and with kNoCurrentRow on an empty set.
  void SetAbsolutePosition(int position);
  /// True past the last row, and on an empty set. Named so because EOF is a macro of the C library.
  [[nodiscard]] bool Eof() const;
  [[nodiscard]] bool Bof() const;
  /// True while there is a row to read: an existing one or one being added.
  [[nodiscard]] bool HasCurrentRow() const;

  /// Fails with kNoCurrentRow on an empty set.
  void MoveFirst();
  void MoveLast();
  /// Moving past the last row leads to Eof; from there it fails with kNoCurrentRow.
  void MoveNext();
  void MovePrevious();
  /// Stands on the first row whose `field` holds what `matches`; past the last row when there is
  /// none. True when it was found. Fails with kNoCurrentRow on an empty set.
  bool Find(int field, const std::function<bool(const QString&)>& matches);
  /// `field` of all rows as they are stored; empty for a row that somebody else has deleted. The
  /// cursor stays.
  [[nodiscard]] QStringList Texts(int field) const;

  [[nodiscard]] int FieldCount() const { return static_cast<int>(rows_.fields().size()); }
  /// The position of the field named `name` (any case), from 0. Fails with kNoSuchField.
  [[nodiscard]] int FieldIndex(const QString& name) const;
  [[nodiscard]] QString FieldName(int field) const;
  /// The characters that the column of `field` holds; -1 for no limit.
  [[nodiscard]] int FieldLimit(int field) const;

  /// What the current row holds, its pending edit included. Fail with kNoCurrentRow when there is
  /// no row, kRowDeleted when somebody else deleted it, kNoSuchField. A number that 64 bits do not
  /// hold is the nearest one that they do.
  [[nodiscard]] QVariant Value(int field) const;
  [[nodiscard]] QString Text(int field) const { return Value(field).toString(); }
  [[nodiscard]] qint64 Number(int field) const;
  [[nodiscard]] bool Truth(int field) const { return Number(field) != 0; }
  [[nodiscard]] QString Text(const QString& name) const { return Text(FieldIndex(name)); }
  [[nodiscard]] qint64 Number(const QString& name) const { return Number(FieldIndex(name)); }

  /// Takes `value` into the pending edit. Fails with kNoCurrentRow, kReadOnly, and with kTooLong
  /// for a text longer than its column; the edit then keeps what it had.
  void Set(int field, const QVariant& value);
  void Set(const QString& name, const QVariant& value) { Set(FieldIndex(name), value); }

  /// Begins a new row: all its fields are unset, and those that stay so take their column's
  /// default. Commits the edit of the row that is left. Fails with kReadOnly.
  void AddNew();
  /// Begins an edit of the current row. Setting a field does so by itself. Fails with
  /// kNoCurrentRow and kReadOnly.
  void Edit();
  /// Commits the pending edit; does nothing when there is none. After adding, the new row is the
  /// current one and the last. Fails with kDuplicate, kRefused, kRowChanged, kRowDeleted,
  /// kDiskFull, kReadOnly, kLocked; after kRowChanged and kRowDeleted the edit is gone, else it is
  /// still pending.
  void Update() { CommitPending(); }
  /// Forgets the pending edit; does nothing when there is none.
  void CancelUpdate();
  /// Deletes the current row and drops its pending edit. The cursor keeps its place, without a row,
  /// until the next move. Fails with kNoCurrentRow; with kRowDeleted when somebody else had deleted
  /// it, the row being gone then too; and as Update does, the row and its edit staying then.
  void Delete();
  /// Commits the pending edit, reads the keys again and stands on the first row.
  void Requery();

  [[nodiscard]] bool IsAdding() const { return adding_; }
  [[nodiscard]] bool HasPendingEdit() const { return adding_ || !pending_.isEmpty(); }

  /// What a list shows of the row at `position` (from 1), the pending edit of the current row
  /// included; an empty text for a row that is gone. Never moves the cursor.
  [[nodiscard]] QString ShownText(int position, int field) const;

  /// While one lives, moves are told to nobody; when the last one goes, listeners are told once
  /// where the cursor came to stand. So a walk over n rows costs one repaint. The rows must outlive
  /// it: nothing may refresh their data control meanwhile.
  class Walk {
   public:
    explicit Walk(Recordset& recordset);
    ~Walk();
    Q_DISABLE_COPY_MOVE(Walk)

   private:
    Recordset& recordset_;
  };

  /// An edit that is tried: when this goes, what wasn't committed is forgotten, so that a refused
  /// row isn't tried again by every later step.
  class Attempt {
   public:
    explicit Attempt(Recordset& recordset) : recordset_(recordset) {}
    ~Attempt() { recordset_.CancelUpdate(); }
    Q_DISABLE_COPY_MOVE(Attempt)

   private:
    Recordset& recordset_;
  };

  /// What is written while one lives reaches the file together, with Commit. Without it nothing
  /// does, and the rows are read again. Fails as Update does.
  class Transaction {
   public:
    explicit Transaction(Recordset& recordset);
    ~Transaction();
    Q_DISABLE_COPY_MOVE(Transaction)
    void Commit();

   private:
    Recordset& recordset_;
    bool committed_ = false;
  };

 Q_SIGNALS:
  /// The rows are other ones: a list of them has to be made anew.
  void RowsReset();
  /// The row at `position` (from 1) has been taken out of the rows, or has been put in.
  void RowRemoved(int position);
  void RowInserted(int position);
  /// What bound fields show may have changed: another row, none, or other values.
  void Shown();
  /// The cursor came to stand on another row, or on none.
  void RowChanged();
  /// One field of the current row was set, or the whole row was read anew (field -1).
  void FieldChanged(int field);
  /// What was typed couldn't be stored and is given up; `failure` says why and holds the texts, and
  /// is thrown next. A listener that shows it marks it as told.
  void EditLost(Failure& failure);

 private:
  void CommitPending();
  void Insert();
  void Write();
  [[nodiscard]] RowSet::Edit WriteWhatHolds();
  [[nodiscard]] QString Names(const RowSet::Edit& edit) const;
  [[nodiscard]] QString Texts(const RowSet::Edit& edit, const RowSet::Row* theirs = nullptr) const;
  [[noreturn]] void Lose(Failure failure);
  void CheckWritable() const;
  [[nodiscard]] bool IsEmpty() const { return rows_.Count() == 0; }
  void MoveTo(int index);
  void Tell();
  void CheckField(int field) const;

  RowSet rows_;
  int index_ = 0;  ///< of the current row; -1 before the first, RecordCount past the last
  bool on_deleted_row_ = false;
  bool adding_ = false;
  std::optional<qint64> added_key_;
  RowSet::Edit pending_;
  RowSet::Row before_edit_;  ///< the current row as it was read when its pending edit began

  int walks_ = 0;
  std::optional<qint64> told_key_;
  bool told_adding_ = false;
};

}  // namespace kestrix
