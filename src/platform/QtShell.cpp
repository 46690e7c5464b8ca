#include "platform/QtShell.h"

#include <QDesktopServices>
#include <QDir>
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

}  // namespace

void QtShell::StartCompanion(const QString& name) {
  const QString program = InCurrentFolder(name);
  const QFileInfo file(program);
  if (name.isEmpty() || !file.isFile() || !file.isExecutable() ||
      !QProcess::startDetached(program, {}, QDir::currentPath()))
    throw Failure(failure::kFileNotFound,
                  QStringLiteral("Failed to start \"%1\": there is no such program.").arg(program));
}

void QtShell::OpenDocument(const QString& path) {
  const QString document = InCurrentFolder(path);
  const QFileInfo file(document);
  if (path.isEmpty() || !file.exists())
    throw Failure(failure::kFileNotFound,
                  QStringLiteral("Failed to open \"%1\": there is no such file.").arg(document));
  if (IsLauncher(file)) FailToOpen(document, QStringLiteral("it is no document"));

  const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
  const bool opened = opener.isEmpty()
                          ? QDesktopServices::openUrl(QUrl::fromLocalFile(document))
                          : QProcess::startDetached(opener, {document}, QDir::currentPath());
  if (!opened) FailToOpen(document, QStringLiteral("the desktop has no opener"));
}

}  // namespace kestrix
