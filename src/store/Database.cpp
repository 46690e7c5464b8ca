#include "store/Database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <algorithm>

#include "platform/Failure.h"
#include "store/EngineFiles.h"
#include "store/Schema.h"
#include "store/Statement.h"

namespace kestrix {
namespace {

// How long a change waits for somebody else's: in short steps, so that it finds the gaps between
// the changes of a busy writer.
constexpr int kBusyMilliseconds = 5000;
constexpr int kBusyStepMilliseconds = 2;

int WaitForOthers(void* /*unused*/, int tries) {
  if (tries * kBusyStepMilliseconds >= kBusyMilliseconds) return 0;
  QThread::msleep(kBusyStepMilliseconds);
  return 1;
}

// No statement here needs more of the engine's steps, a great many for each byte of the file. A
// damaged file can hold a tree that leads to the same rows again and again, without an end.
constexpr int kStepsAtOnce = 100'000;
constexpr qint64 kMostStepsOfAnyFile = 2'000'000;
constexpr qint64 kMostStepsOfAByte = 64;

// Far beyond the longest row that a form writes. A file of somebody else's can describe columns
// that are computed, and computed to any length.
constexpr int kLongestRow = 4 * 1024 * 1024;
constexpr int kLongestPattern = 100;

constexpr QByteArrayView kMagic("SQLite format 3\0", 16);

// Where the head of a file says that a log belongs to it.
constexpr int kWriteVersion = 18;
constexpr int kReadVersion = 19;

/// The head of a plain file, up to its versions; empty for anything else.
QByteArray HeadOf(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  return file.read(kReadVersion + 1);
}

bool BeginsLikeADatabase(const QString& path) {
  return HeadOf(path).startsWith(kMagic);
}

/// What a file holds on its disk: a giant one may be nothing but a gap. Some network disks don't
/// tell.
qint64 BytesOf(const struct stat& file) {
  constexpr qint64 kBlock = 512;
  const qint64 size = file.st_size;
  return file.st_blocks == 0 ? size : std::min<qint64>(size, file.st_blocks * kBlock);
}

/// What the engine fails with, and what that is called here.
constexpr std::pair<int, int> kNumbers[] = {
    {SQLITE_CONSTRAINT_UNIQUE, failure::kDuplicate},
    {SQLITE_CONSTRAINT_PRIMARYKEY, failure::kDuplicate},
    {SQLITE_CONSTRAINT, failure::kRefused},
    {SQLITE_FULL, failure::kDiskFull},
    {SQLITE_READONLY, failure::kReadOnly},
    {SQLITE_BUSY, failure::kLocked},
    {SQLITE_LOCKED, failure::kLocked},
    {SQLITE_IOERR, failure::kDeviceError},
    {SQLITE_NOMEM, failure::kDeviceError},
    {SQLITE_CORRUPT, failure::kNotADatabase},
    {SQLITE_NOTADB, failure::kNotADatabase},
    {SQLITE_FORMAT, failure::kNotADatabase},
    {SQLITE_INTERRUPT, failure::kNotADatabase},
    {SQLITE_CANTOPEN, failure::kCannotOpen},
    {SQLITE_PERM, failure::kPermissionDenied},
    {SQLITE_AUTH, failure::kPermissionDenied},
    {SQLITE_TOOBIG, failure::kTooLong},
};

int NumberFor(int code) {
  for (const auto& [engine, ours] : kNumbers)
    if (code == engine || (code & 0xFF) == engine) return ours;
  return failure::kSyntax;
}

using Connection = std::unique_ptr<sqlite3, EngineCloser>;

/// A connection to hold a lock with and for nothing else. Fails with kCannotOpen.
Connection OpenForLock(const QString& path) {
  const bool can_write = CanWrite(path);
  sqlite3* handle = nullptr;
  const int code =
      OpenByEngine(path, can_write ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY, &handle);
  Connection connection(handle);
  if (code != SQLITE_OK) {
    throw Failure(failure::kCannotOpen, QStringLiteral("%1 can't be opened.").arg(path));
  }
  sqlite3_busy_handler(handle, WaitForOthers, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  return connection;
}

/// A pipe in place of the file isn't waited for.
Descriptor OpenToCopy(const QString& path, int flags) {
  Descriptor file(
      open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | flags));
  if (!file.valid()) throw FailureFromErrno(errno, path, QStringLiteral("copy"));
  return file;
}

bool WritesAhead(sqlite3* handle) {
  sqlite3_stmt* asked = nullptr;
  sqlite3_prepare_v2(handle, "PRAGMA journal_mode", -1, &asked, nullptr);
  const std::unique_ptr<sqlite3_stmt, EngineCloser> mode(asked);
  if (sqlite3_step(asked) != SQLITE_ROW) return false;
  return QByteArrayView(reinterpret_cast<const char*>(sqlite3_column_text(asked, 0))) == "wal";
}

/// Brings what stands in the log beside a database into its file, and goes back to the journal.
/// Does nothing while somebody else has it open.
void LeaveWriteAhead(sqlite3* handle) {
  if (!WritesAhead(handle)) return;
  sqlite3_exec(handle, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
}

/// The file that the database would be without its log, held in memory.
Descriptor WithoutLog(sqlite3* handle, const QString& path) {
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, void (*)(void*)> bytes(
      sqlite3_serialize(handle, "main", &size, 0), sqlite3_free);
  Descriptor file(memfd_create("database", MFD_CLOEXEC));
  QFile memory;
  if (bytes && file.valid() && memory.open(file.get(), QIODevice::WriteOnly)) {
    bytes.get()[kWriteVersion] = bytes.get()[kReadVersion] = 1;
    if (memory.write(reinterpret_cast<const char*>(bytes.get()), size) == size && memory.flush())
      return file;
  }
  throw Failure(failure::kDeviceError, QStringLiteral("%1 is too large to be copied.").arg(path));
}

Failure BeingWritten(const QString& path) {
  return {failure::kLocked, QStringLiteral("%1 is being written to by somebody else.").arg(path)};
}

/// Copies a database with the journal that a killed writer left, while nobody can change either:
/// opening the copy rolls it back there.
void CopyWithJournal(const QString& source, const QString& target) {
  const QString journal = QStringLiteral("-journal");
  const Descriptor database = OpenToCopy(source, 0);
  // The bytes that readers of the engine lock. This lock is of the open file alone: connections of
  // this process neither share nor end it.
  struct flock readers {};
  readers.l_type = F_RDLCK;
  readers.l_start = 0x40000002;
  readers.l_len = 510;
  for (int tries = 0; fcntl(database.get(), F_OFD_SETLK, &readers) != 0; ++tries) {
    if (WaitForOthers(nullptr, tries) == 0) throw BeingWritten(source);
  }
  CopyOpenFileDurably(database.get(), target);
  // A pipe under this name would be waited for.
  if (QFileInfo(source + journal).isFile() && !IsLink(source + journal))
    CopyFileDurably(source + journal, target + journal);
}

}  // namespace

bool CanWrite(const QString& path) {
  return access(QFile::encodeName(path).constData(), W_OK) == 0;
}

void EngineCloser::operator()(sqlite3* handle) const {
  sqlite3_close(handle);
}

void EngineCloser::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

Database::Database(const QString& path, Use use) : Database(path, Made::kByThisSystem, use) {}

Database::Database(const QString& path, Made by, Use use) : path_(path) {
  if (!QFileInfo::exists(path)) {
    throw Failure(failure::kFileNotFound, QStringLiteral("The file %1 does not exist.").arg(path));
  }
  if (!QFileInfo(path).isFile() || !QFileInfo(path).isReadable()) {
    throw Failure(failure::kCannotOpen, QStringLiteral("The file %1 can't be read.").arg(path));
  }
  // Looked at before the engine opens the file: an empty file would pass for a new database.
  if (!BeginsLikeADatabase(path)) {
    throw NotOfThisProgram(path);
  }
  read_only_ = use == Use::kLook || !CanWrite(path) || !CanWrite(QFileInfo(path).absolutePath());
  if (!read_only_) sign_ = std::make_unique<LockSign>(path);
  if (use == Use::kLook) {
    OpenForLook();
  } else {
    OpenHandle(path);
  }
  try {
    Harden();
    const bool older = by == Made::kByThisSystem && !BehindNewest(*this).steps.isEmpty();
    if (!read_only_) LeaveWriteAhead(handle());
    // One that can't be written is read as it is.
    if (older && !read_only_) BringUp();
  } catch (const Failure& failure) {
    // These statements are short and well formed: what the engine can't make sense of is the file.
    const int number = failure.number();
    if (number == failure::kSyntax || number == failure::kTooLong) throw NotOfThisProgram(path);
    throw;
  }
}

/// Reads the file where it lies, unless reading it would write there: what a killed writer left has
/// to be rolled back, and write-ahead mode has files of its own. Then a copy is read, which nobody
/// else sees.
void Database::OpenForLook() {
  if (QFileInfo(path_ + QStringLiteral("-wal")).size() > 0) {
    throw Failure(
        failure::kLocked,
        QStringLiteral("%1 is being written to by another program, ahead of the file.").arg(path_));
  }
  if (!HeadOf(path_).endsWith('\2')) {
    OpenHandle(path_);
    const int code = sqlite3_exec(handle(), "PRAGMA schema_version", nullptr, nullptr, nullptr);
    if (code != SQLITE_READONLY_ROLLBACK) return;
    handle_.reset();
  }
  private_ = std::make_unique<QTemporaryDir>();
  const QString copy = private_->filePath(QStringLiteral("study.mdb"));
  CopyWithJournal(path_, copy);
  read_only_ = false;
  OpenHandle(copy);
  read_only_ = true;
}

void Database::OpenHandle(const QString& path) {
  const int flags = (read_only_ ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) |
                    SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_PRIVATECACHE;
  sqlite3* opened = nullptr;
  const int code = OpenByEngine(path, flags, &opened);
  handle_.reset(opened);
  if (code != SQLITE_OK) throw LastFailure();
  sqlite3_busy_handler(opened, WaitForOthers, nullptr);
  sqlite3_progress_handler(opened, kStepsAtOnce, StopEndlessWork, this);
  struct stat named {};
  if (stat(QFile::encodeName(path_).constData(), &named) == 0) {
    device_ = static_cast<quint64>(named.st_dev);
    inode_ = static_cast<quint64>(named.st_ino);
    size_ = BytesOf(named);
  }
}

int Database::StopEndlessWork(void* database) {
  auto& self = *static_cast<Database*>(database);
  self.work_ += kStepsAtOnce;
  if (self.work_ <= kMostStepsOfAnyFile) return 0;
  // It may have grown since, or be there no more.
  struct stat named {};
  const bool there = stat(QFile::encodeName(self.path_).constData(), &named) == 0;
  const qint64 bytes = std::max(self.size_, there ? BytesOf(named) : 0);
  return self.work_ > kMostStepsOfAnyFile + bytes * kMostStepsOfAByte ? 1 : 0;
}

void Database::Harden() {
  sqlite3_limit(handle(), SQLITE_LIMIT_LENGTH, kLongestRow);
  sqlite3_limit(handle(), SQLITE_LIMIT_LIKE_PATTERN_LENGTH, kLongestPattern);
  sqlite3_db_config(handle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(handle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(handle(), SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  for (const char* pragma : {"PRAGMA cell_size_check=ON", "PRAGMA synchronous=FULL"}) {
    if (sqlite3_exec(handle(), pragma, nullptr, nullptr, nullptr) != SQLITE_OK) throw LastFailure();
  }
}

void Database::Run(const QByteArray& sql) {
  BeginWork();
  if (sqlite3_exec(handle(), sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw LastFailure();
  }
}

void Database::BringUp() {
  // Closed behind the change: closing it would give up the engine's lock with it.
  const Descriptor plain = OpenToCopy(path_, 0);
  try {
    Run("BEGIN IMMEDIATE");
    // Somebody else may have been faster.
    const Behind behind = BehindNewest(*this);
    if (!behind.steps.isEmpty()) {
      const Descriptor log = WritesAhead(handle()) ? WithoutLog(handle(), path_) : Descriptor();
      CopyOpenFileDurably(log.valid() ? log.get() : plain.get(),
                          CopyOfVersion(path_, behind.version));
      Run(behind.steps);
      if (!BehindNewest(*this).steps.isEmpty()) throw NotOfThisProgram(path_);
    }
    Run("COMMIT");
  } catch (const Failure& failure) {
    sqlite3_exec(handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    throw Failure(failure.number(), QStringLiteral("%1 is of an older version of this program and "
                                                   "can't be brought up to this one. %2")
                                        .arg(path_, failure.description()));
  }
}

bool Database::IsTheFileAtItsPath() const {
  struct stat named {};
  if (stat(QFile::encodeName(path_).constData(), &named) != 0) return false;
  return static_cast<quint64>(named.st_dev) == device_ &&
         static_cast<quint64>(named.st_ino) == inode_;
}

Failure Database::Replaced() const {
  return {failure::kReadOnly, QStringLiteral("%1 has been replaced or deleted since it was opened, "
                                             "as a restore does. Leave the form and open it again.")
                                  .arg(path_)};
}

Failure Database::LastFailure() const {
  const int code = handle_ ? sqlite3_extended_errcode(handle()) : SQLITE_NOMEM;
  const int number = NumberFor(code);
  if (code == SQLITE_READONLY_DBMOVED) return Replaced();
  QString why = QString::fromUtf8(sqlite3_errmsg(handle()));
  if (number == failure::kNotADatabase) {
    why = QStringLiteral("it is damaged or not a database of this program");
  }
  return {number, QStringLiteral("%1: %2.").arg(path_, why)};
}

void CopyDatabase(const QString& source, const QString& target, Sync when) {
  // Closed behind the connection: closing it would give up the engine's lock with it.
  const Descriptor plain = OpenToCopy(source, 0);
  if (!BeginsLikeADatabase(source)) return CopyOpenFileDurably(plain.get(), target, when);
  const Connection connection = OpenForLock(source);
  // A read transaction keeps writers from committing, and rolls a killed writer's change back
  // first.
  constexpr auto kHold = "BEGIN; PRAGMA schema_version";
  int code = sqlite3_exec(connection.get(), kHold, nullptr, nullptr, nullptr);
  if (NumberFor(code) == failure::kLocked) throw BeingWritten(source);
  if (WritesAhead(connection.get())) {
    sqlite3_exec(connection.get(), "COMMIT", nullptr, nullptr, nullptr);
    LeaveWriteAhead(connection.get());
    code = sqlite3_exec(connection.get(), kHold, nullptr, nullptr, nullptr);
    if (NumberFor(code) == failure::kLocked) throw BeingWritten(source);
    if (code == SQLITE_OK && WritesAhead(connection.get()))
      return CopyOpenFileDurably(WithoutLog(connection.get(), source).get(), target, when);
  }
  // A damaged file is copied as it is: the copy is no better and no worse than what it stands for.
  CopyOpenFileDurably(plain.get(), target, when);
}

void ReplaceDatabase(const QString& source, const QString& target, Sync when) {
  if (QFileInfo::exists(target) && !CanWrite(target)) {
    throw FailureFromErrno(EACCES, target, QStringLiteral("replace"));
  }
  Connection old;
  if (BeginsLikeADatabase(target)) {
    old = OpenForLock(target);
    // What others have in a log would be taken for a part of the new file.
    LeaveWriteAhead(old.get());
    if (WritesAhead(old.get())) throw BeingWritten(target);
    // Rolls a killed writer's change back, and keeps everybody out until the new file is in place.
    const int code = sqlite3_exec(old.get(), "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
    if (NumberFor(code) == failure::kLocked) throw BeingWritten(target);
  }
  // Beside a file that is missing or damaged nobody rolls back, and what lies there would be rolled
  // back into its successor.
  if (QFileInfo::exists(source) || !QFileInfo::exists(target)) {
    for (const char* beside : {"-journal", "-wal", "-shm"})
      QFile::remove(target + QString::fromLatin1(beside));
  }
  CopyOpenFileDurably(OpenToCopy(source, O_NOFOLLOW).get(), BehindLinks(target), when);
}

}  // namespace kestrix
