#include "Footprint.h"

#include <malloc.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#ifdef KESTRIX_SANITIZED
#include <sanitizer/allocator_interface.h>
#endif

namespace kestrix::holds {
namespace {

qint64 HeapInUse() {
#ifdef KESTRIX_SANITIZED
  // The sanitizer has an allocator of its own, of which the C library knows nothing.
  return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
#else
  const struct mallinfo2 info = mallinfo2();
  return static_cast<qint64>(info.uordblks + info.hblkhd);
#endif
}

QByteArray ContentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A line "Name:   1234 kB" of the process's status, in bytes.
qint64 StatusBytes(const QByteArray& status, const QByteArray& name) {
  for (const QByteArray& line : status.split('\n')) {
    if (!line.startsWith(name + ':')) continue;
    return line.mid(name.size() + 1).simplified().split(' ').first().toLongLong() * 1024;
  }
  return 0;
}

}  // namespace

Footprint Footprint::Now() {
  malloc_trim(0);
  const QByteArray status = ContentOf(QStringLiteral("/proc/self/status"));
  const QByteArrayList pages = ContentOf(QStringLiteral("/proc/self/statm")).split(' ');
  return {.heap = HeapInUse(),
          .own = StatusBytes(status, "RssAnon") + StatusBytes(status, "VmSwap"),
          .resident = pages.value(1).toLongLong() * sysconf(_SC_PAGESIZE)};
}

double GrowthPercent(qint64 before, qint64 now) {
  return 100.0 * static_cast<double>(now - before) / static_cast<double>(before);
}

QStringList OpenHandles() {
  // The handle by which the folder itself is read is closed before the names are looked at.
  const QDir folder(QStringLiteral("/proc/self/fd"));
  const QStringList names = folder.entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot);
  QStringList handles;
  for (const QString& name : names) {
    const QByteArray path = QFile::encodeName(folder.filePath(name));
    char target[4096];
    const ssize_t length = readlink(path.constData(), target, sizeof target);
    if (length > 0) handles += QString::fromLocal8Bit(target, length);
  }
  handles.sort();
  return handles;
}

}  // namespace kestrix::holds
