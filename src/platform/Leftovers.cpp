#include "platform/Leftovers.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <cstdio>

#include "platform/Descriptor.h"

namespace kestrix {

QString PartIn(const QString& folder) {
  return folder + u'/' + kPartName;
}

bool LiesAt(const QString& path, int fd) {
  struct stat named = {};
  struct stat opened = {};
  return ::fstat(fd, &opened) == 0 && ::lstat(QFile::encodeName(path).constData(), &named) == 0 &&
         named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

bool HoldPart(int fd) {
  // On a disk without locks nobody is seen.
  return ::flock(fd, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

void RemoveLeftover(const QString& folder) {
  const QByteArray name = QFile::encodeName(PartIn(folder));
  struct stat status = {};
  if (::lstat(name.constData(), &status) != 0) return;
  // What is no file was never a copy.
  if (!S_ISREG(status.st_mode)) {
    (void)std::remove(name.constData());
    return;
  }
  // For writing: some network disks lock no other files.
  const Descriptor file(::open(name.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (file.valid() && HoldPart(file.get()) && LiesAt(PartIn(folder), file.get()))
    ::unlink(name.constData());
}

}  // namespace kestrix
