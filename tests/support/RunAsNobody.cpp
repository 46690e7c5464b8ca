#include "support/RunAsNobody.h"

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDirIterator>
#include <QFile>
#include <QThreadPool>
#include <exception>

#include "platform/Descriptor.h"
#include "platform/Failure.h"

namespace kestrix {
namespace {

constexpr uid_t kNobody = 65534;
constexpr unsigned kTimeLimitSeconds = 30;

bool DropRights() {
  if (::geteuid() != 0) return true;
  return ::setgroups(0, nullptr) == 0 && ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0;
}

QString ReportOf(const std::function<QString()>& work) {
  try {
    return work();
  } catch (const Failure& failure) {
    return QStringLiteral("Failure %1: %2").arg(failure.number()).arg(failure.description());
  } catch (const std::exception& error) {
    return QStringLiteral("Exception: ") + QString::fromUtf8(error.what());
  }
}

[[noreturn]] void RunChild(int report_fd, bool drop_rights, const std::function<QString()>& work) {
  ::alarm(kTimeLimitSeconds);
  if (drop_rights && !DropRights()) ::_exit(1);
  const QByteArray report = ReportOf(work).toUtf8();
  const bool written = ::write(report_fd, report.constData(), static_cast<size_t>(report.size())) ==
                       static_cast<ssize_t>(report.size());
  // Without the ends of the parent's objects, which aren't ours to end.
  ::_exit(written ? 0 : 1);
}

QByteArray ReadToEnd(int fd) {
  QByteArray all;
  char block[4096];
  for (;;) {
    const ssize_t got = ::read(fd, block, sizeof block);
    if (got <= 0) return all;
    all.append(block, got);
  }
}

std::optional<QString> Run(bool drop_rights, const std::function<QString()>& work) {
  int ends[2];
  if (::pipe(ends) != 0) return std::nullopt;
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  // A child has no threads but its first. It would wait for ever for those of the pool, on which
  // the toolkit scales pictures.
  QThreadPool::globalInstance()->waitForDone();
  const pid_t child = ::fork();
  if (child < 0) return std::nullopt;
  if (child == 0) RunChild(writing.get(), drop_rights, work);
  writing = Descriptor();
  const QByteArray report = ReadToEnd(reading.get());
  int status = 0;
  ::waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
  return QString::fromUtf8(report);
}

}  // namespace

bool CanRunAsNobody() {
  return Run(true, [] { return QStringLiteral("yes"); }).has_value();
}

void GiveToNobody(const QString& folder) {
  if (::geteuid() != 0) return;
  const auto give = [](const QString& path) {
    return ::lchown(QFile::encodeName(path).constData(), kNobody, kNobody) == 0;
  };
  bool given = give(folder);
  QDirIterator all(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDirIterator::Subdirectories);
  while (all.hasNext()) given = give(all.next()) && given;
  if (!given)
    throw Failure(failure::kPermissionDenied,
                  QStringLiteral("\"%1\" can't be given away.").arg(folder));
}

std::optional<QString> RunAsNobody(const std::function<QString()>& work) {
  return Run(true, work);
}

std::optional<QString> RunInChild(const std::function<QString()>& work) {
  return Run(false, work);
}

}  // namespace kestrix
