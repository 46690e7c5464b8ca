#include "platform/Leftovers.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QRegularExpression>
#include <atomic>
#include <cerrno>
#include <ctime>
#include <memory>

#include "platform/Descriptor.h"

namespace kestrix {
namespace {

const QString& UnknownRun() {
  static const QString unknown = QStringLiteral("00000000");
  return unknown;
}

/// Which run of which machine this is.
const QString& ThisRun() {
  static const QString run = [] {
    QFile file(QStringLiteral("/proc/sys/kernel/random/boot_id"));
    const bool open = file.open(QIODevice::ReadOnly);
    const QString id = open ? QString::fromLatin1(file.readAll()).section(u'-', 0, 0) : QString();
    return id.size() == UnknownRun().size() ? id : UnknownRun();
  }();
  return run;
}

const QRegularExpression& UnfinishedName() {
  static const QRegularExpression name(
      QStringLiteral("\\A\\.kestrix-([0-9a-f]{8})-[0-9]+-[0-9]+\\.tmp\\z"));
  return name;
}

/// A lock of a process of this run is always seen; one of another machine only if the disk tells.
bool IsOfThisRun(const QString& name) {
  const QString run = UnfinishedName().match(name).captured(1);
  return run == ThisRun() && run != UnknownRun();
}

bool WasLeftAlone(const struct stat& status, std::chrono::seconds quiet_time) {
  // The time of the last change of bytes is that of the source; this one nobody can set.
  return std::time(nullptr) - status.st_ctim.tv_sec >= quiet_time.count();
}

/// Whether nobody holds the open file. What can't be locked may be held.
bool IsFree(int fd) {
  return ::flock(fd, LOCK_EX | LOCK_NB) == 0;
}

void RemoveLeftover(int folder, const QString& name, std::chrono::seconds quiet_time) {
  const QByteArray encoded = QFile::encodeName(name);
  // For writing: some network disks lock no other files.
  const Descriptor file(
      ::openat(folder, encoded.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status = {};
  if (!file.valid() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return;
  if (!IsOfThisRun(name) && !WasLeftAlone(status, quiet_time)) return;
  if (!IsFree(file.get())) return;
  // Whoever removed it meanwhile may have made room for another's copy under its name.
  if (::fstat(file.get(), &status) != 0 || status.st_nlink == 0) return;
  (void)::unlinkat(folder, encoded.constData(), 0);
}

}  // namespace

QString NextUnfinishedName(const QString& folder) {
  static std::atomic<unsigned> counter{0};
  return QStringLiteral("%1/.kestrix-%2-%3-%4.tmp")
      .arg(folder, ThisRun())
      .arg(::getpid())
      .arg(counter++);
}

bool IsUnfinishedName(const QString& name) {
  return UnfinishedName().match(name).hasMatch();
}

bool HoldUnfinished(int fd) {
  return ::flock(fd, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

void RemoveLeftovers(const QString& folder, std::chrono::seconds quiet_time) {
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(
      ::opendir(QFile::encodeName(folder).constData()), [](DIR* dir) { return ::closedir(dir); });
  if (!entries) return;
  while (const dirent* entry = ::readdir(entries.get())) {
    // Most names are told apart without a look at their letters.
    if (entry->d_name[0] != '.' || entry->d_name[1] != 'k') continue;
    const QString name = QFile::decodeName(entry->d_name);
    if (IsUnfinishedName(name)) RemoveLeftover(::dirfd(entries.get()), name, quiet_time);
  }
}

}  // namespace kestrix
