#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QFile>
#include <QThread>
#include <cerrno>

#include "platform/Leftovers.h"
#include "store/Database.h"

namespace kestrix {
namespace {

// Somebody who closes last holds the sign alone for a moment, while removing it.
constexpr int kTries = 200;
constexpr unsigned long kPauseMilliseconds = 5;

/// A sign that another user made may be read only; that is enough to hold it. A pipe in its place
/// isn't waited for.
int OpenSign(const char* path) {
  constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const int descriptor = open(path, O_RDWR | O_CREAT | kFlags, 0666);
  if (descriptor >= 0 || errno != EACCES) return descriptor;
  return open(path, O_RDONLY | kFlags);
}

}  // namespace

QString LockSign::PathFor(const QString& database_path) {
  const qsizetype dot = database_path.lastIndexOf(u'.');
  const qsizetype separator = database_path.lastIndexOf(u'/');
  const QString stem = dot > separator ? database_path.left(dot) : database_path;
  return stem + QStringLiteral(".ldb");
}

LockSign::LockSign(const QString& database_path) : path_(PathFor(database_path)) {
  const QByteArray path = QFile::encodeName(path_);
  for (int tries = 0; tries < kTries; ++tries) {
    file_ = Descriptor(OpenSign(path.constData()));
    if (!file_.valid()) return;
    // The sign may have been removed between opening and locking it; then it is the wrong one.
    if (flock(file_.get(), LOCK_SH | LOCK_NB) == 0 && LiesAt(path_, file_.get())) return;
    file_ = Descriptor();
    QThread::msleep(kPauseMilliseconds);
  }
}

LockSign::~LockSign() {
  if (file_.valid() && flock(file_.get(), LOCK_EX | LOCK_NB) == 0 && LiesAt(path_, file_.get()))
    unlink(QFile::encodeName(path_).constData());
}

}  // namespace kestrix
