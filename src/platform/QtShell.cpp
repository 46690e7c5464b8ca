#include "platform/QtPlatform.h"

#include <unistd.h>

#include <QDesktopServices>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include "platform/Failure.h"

namespace kestrix {
namespace {

QString InCurrentFolder(const QString& name) {
  return QDir::current().absoluteFilePath(name);
}

/// A launcher names a command to run; some openers run it.
bool IsLauncher(const QFileInfo& file) {
  const auto is_launcher = [](const QString& name) {
    return name.endsWith(QStringLiteral(".desktop"), Qt::CaseInsensitive);
  };
  return is_launcher(file.fileName()) || is_launcher(file.canonicalFilePath());
}

[[noreturn]] void FailToOpen(const QString& path, const QString& why) {
  throw Failure(failure::kInvalidCall, QStringLiteral("Failed to open \"%1\": %2.").arg(path, why));
}

/// Hands `target` to `opener`; false when that can't be started. An opener may go on as long as
/// the application that it started, and longer than this program: nothing ends its process.
bool StartOpener(const QString& opener, const QString& target,
                 const std::function<void()>& failed) {
  auto* process = new QProcess;
  process->setInputChannelMode(QProcess::ForwardedInputChannel);
  process->setProcessChannelMode(QProcess::ForwardedChannels);
  process->setChildProcessModifier([] { ::setsid(); });
  QElapsedTimer started;
  started.start();
  QObject::connect(process, &QProcess::finished, process,
                   [process, failed, started](int code, QProcess::ExitStatus status) {
                     process->deleteLater();
                     // After this the document was open, and its application has ended badly.
                     constexpr qint64 kOpening = 30'000;
                     const bool ended_well = status == QProcess::NormalExit && code == 0;
                     if (failed && !ended_well && !started.hasExpired(kOpening)) failed();
                   });
  process->start(opener, {target});
  if (process->waitForStarted()) return true;
  delete process;
  return false;
}

void Open(const QString& path, const QString& place, const std::function<void()>& failed) {
  const QString document = InCurrentFolder(path);
  const QFileInfo file(document);
  if (path.isEmpty() || !file.exists())
    throw Failure(failure::kFileNotFound,
                  QStringLiteral("Failed to open \"%1\": there is no such file.").arg(document));
  if (IsLauncher(file)) FailToOpen(document, QStringLiteral("it is no document"));

  const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
  QUrl url = QUrl::fromLocalFile(document);
  if (!place.isEmpty()) url.setFragment(place);
  const QString target = place.isEmpty() ? document : url.toString(QUrl::FullyEncoded);
  const bool opened =
      opener.isEmpty() ? QDesktopServices::openUrl(url) : StartOpener(opener, target, failed);
  if (!opened) FailToOpen(document, QStringLiteral("the desktop has no opener"));
}

}  // namespace

void QtShell::StartCompanion(const QString& name) {
  const QString program = InCurrentFolder(name);
  const QFileInfo file(program);
  if (name.isEmpty() || !file.isFile() || !file.isExecutable() ||
      !QProcess::startDetached(program, {}, QDir::currentPath()))
    throw Failure(failure::kFileNotFound,
                  QStringLiteral("Failed to start \"%1\": there is no such program.").arg(program));
}

void QtShell::OpenDocument(const QString& path, const std::function<void()>& failed) {
  Open(path, {}, failed);
}

void QtShell::OpenPage(const QString& path, const QString& place) {
  Open(path, place, {});
}

}  // namespace kestrix
