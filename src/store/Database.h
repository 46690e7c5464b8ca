#pragma once

#include <QString>
#include <QTemporaryDir>
#include <memory>

#include "platform/Descriptor.h"
#include "platform/FileCopy.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kestrix {

/// Ends what the engine keeps: a connection with its locks, or a prepared statement.
struct EngineCloser {
  void operator()(sqlite3* handle) const;
  void operator()(sqlite3_stmt* statement) const;
};

class Failure;

/// The sign beside an open database: while anyone has `X.mdb` open, `X.ldb` lies beside it, held by
/// a shared advisory lock, and whoever closes last removes it. A killed process leaves its sign
/// until the next close of that file. In a folder that can't be written there is no sign.
class LockSign {
 public:
  explicit LockSign(const QString& database_path);
  ~LockSign();
  Q_DISABLE_COPY_MOVE(LockSign)

  /// The path of the sign that stands beside the database at `database_path`.
  [[nodiscard]] static QString PathFor(const QString& database_path);

 private:
  QString path_;
  Descriptor file_;
};

/// An open database file of this system. It refuses a file that isn't one (missing, empty,
/// truncated, with other tables, columns or indexes than ours) and never changes such a file. It
/// never creates a database.
///
/// A file of an older version is brought up to the newest one in one transaction, after a copy of
/// it was laid beside it (CopyOfVersion); one that can't be written is read as it is. A file in
/// write-ahead mode goes back to the journal, unless somebody else has it open.
///
/// A change waits up to five seconds for somebody else's to end, and is durable when its call
/// returns.
class Database {
 public:
  enum class Use {
    kWork,  ///< to read and write, with the sign beside it
    kLook   ///< to read only: nothing is written or left beside the file, no sign either
  };
  /// Opens the file at the full path `path`. A file or folder that can't be written is opened for
  /// reading. What a killed writer left half done is rolled back; for a look that is done in a
  /// private copy. Fails with kFileNotFound, kNotADatabase or kCannotOpen, and says why; with
  /// kDeviceError or kLocked where reading it does, and as a copy or a change can where it is to be
  /// brought up.
  explicit Database(const QString& path, Use use = Use::kWork);
  Q_DISABLE_COPY_MOVE(Database)

  [[nodiscard]] const QString& path() const { return path_; }
  [[nodiscard]] bool IsReadOnly() const { return read_only_; }
  /// False when the file was deleted, or another one was put in its place, since it was opened.
  [[nodiscard]] bool IsTheFileAtItsPath() const;
  /// What is said of such a file.
  [[nodiscard]] Failure Replaced() const;

  /// Tells that a statement begins. One that would never end, as only a damaged file makes it, is
  /// stopped; it fails with kNotADatabase.
  void BeginWork() { work_ = 0; }

  [[nodiscard]] sqlite3* handle() const { return handle_.get(); }
  /// The failure of the last call on this connection, in words for a person.
  [[nodiscard]] Failure LastFailure() const;

 protected:
  /// A test of the rows has tables of its own.
  enum class Made { kByThisSystem, kByATest };
  Database(const QString& path, Made by, Use use = Use::kWork);

 private:
  static int StopEndlessWork(void* database);
  void OpenHandle(const QString& path);
  void OpenForLook();
  void Harden();
  void Run(const QByteArray& sql);
  void BringUp();

  QString path_;
  std::unique_ptr<LockSign> sign_;
  std::unique_ptr<QTemporaryDir> private_;  ///< holds the copy that a look reads
  std::unique_ptr<sqlite3, EngineCloser> handle_;
  bool read_only_ = false;
  qint64 work_ = 0;  ///< steps of the engine since the statement in hand began
  quint64 device_ = 0;
  quint64 inode_ = 0;
  qint64 size_ = 0;  ///< in bytes, when it was opened
};

/// Whether this user has the right to write the file or into the folder at `path`.
[[nodiscard]] bool CanWrite(const QString& path);

/// Copies the database at `source` over `target` while nobody can change the source, so that the
/// copy is never torn and holds all that was committed; readers go on. A link in its place makes
/// way for it. Fails as CopyFileDurably does, and with kLocked when a writer holds the source for
/// longer than five seconds. A source that is no database is copied as the plain file that it is.
void CopyDatabase(const QString& source, const QString& target, Sync when = Sync::kNow);

/// Copies the database at `source`, a plain file that nobody works on, into the place of the one at
/// `target`, if there is one, while nobody is in the middle of changing it. What a killed writer
/// left beside the old database goes with it; what lies beside the source has no part in the copy.
/// A source that is a link fails. `when` is never with a group. Fails as CopyFileDurably does, and
/// with kLocked when a writer holds the target for longer than five seconds; the target is then as
/// it was.
void ReplaceDatabase(const QString& source, const QString& target, Sync when = Sync::kNow);

}  // namespace kestrix
