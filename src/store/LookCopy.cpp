#include "store/LookCopy.h"

#include <fcntl.h>

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include "platform/Descriptor.h"
#include "platform/Failure.h"

namespace kestrix {
namespace {

// Where the engine puts its locks in a database: the bytes that readers share, and the one before
// them through which each reader goes.
constexpr off_t kPendingByte = 0x40000000;
constexpr off_t kSharedFirst = kPendingByte + 2;
constexpr off_t kSharedSize = 510;

constexpr int kTries = 500;
constexpr unsigned long kPauseMilliseconds = 10;

bool SetLock(int file, short kind, off_t first, off_t size) {
  struct flock lock = {};
  lock.l_type = kind;
  lock.l_whence = SEEK_SET;
  lock.l_start = first;
  lock.l_len = size;
  // A lock of this open file alone: other connections of this process neither share nor end it.
  return ::fcntl(file, F_OFD_SETLK, &lock) == 0;
}

/// Locks as a reader of the engine does; the lock ends with the file.
bool LockAsReader(int file) {
  if (!SetLock(file, F_RDLCK, kPendingByte, 1)) return false;
  const bool locked = SetLock(file, F_RDLCK, kSharedFirst, kSharedSize);
  SetLock(file, F_UNLCK, kPendingByte, 1);
  return locked;
}

void CopyBytes(QFile& source, const QString& target) {
  QFile copy(target);
  if (!copy.open(QIODevice::WriteOnly)) {
    throw Failure(failure::kCannotOpen,
                  QStringLiteral("%1 can't be written: %2.").arg(target, copy.errorString()));
  }
  constexpr qint64 kBlock = 1 << 20;
  while (!source.atEnd()) {
    const QByteArray block = source.read(kBlock);
    if (block.isEmpty() || copy.write(block) != block.size()) {
      throw Failure(
          failure::kDeviceError,
          QStringLiteral("%1 can't be copied: %2.").arg(source.fileName(), copy.errorString()));
    }
  }
}

}  // namespace

void CopyWithJournal(const QString& source, const QString& target) {
  const QString suffix = QStringLiteral("-journal");
  QFile database(source);
  if (!database.open(QIODevice::ReadOnly)) {
    throw Failure(failure::kCannotOpen,
                  QStringLiteral("%1 can't be read: %2.").arg(source, database.errorString()));
  }
  int tries = 0;
  while (!LockAsReader(database.handle())) {
    if (++tries == kTries) {
      throw Failure(failure::kLocked,
                    QStringLiteral("%1 is being written to by somebody else.").arg(source));
    }
    QThread::msleep(kPauseMilliseconds);
  }
  CopyBytes(database, target);
  // Ordinary files only: a pipe under this name would be waited for.
  const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW;
  const Descriptor journal(::open(QFile::encodeName(source + suffix).constData(), flags));
  QFile bytes;
  // Somebody else may have rolled it back before the lock was taken.
  if (!journal.valid() || !bytes.open(journal.get(), QIODevice::ReadOnly)) return;
  if (QFileInfo(source + suffix).isFile()) CopyBytes(bytes, target + suffix);
}

bool IsInWriteAheadMode(const QString& path) {
  constexpr qint64 kReadVersion = 19;  // a byte of the header
  constexpr char kWriteAhead = 2;
  QFile file(path);
  char version = 0;
  return file.open(QIODevice::ReadOnly) && file.seek(kReadVersion) && file.getChar(&version) &&
         version == kWriteAhead;
}

bool IsWrittenAhead(const QString& path) {
  return QFileInfo(path + QStringLiteral("-wal")).size() > 0;
}

}  // namespace kestrix
