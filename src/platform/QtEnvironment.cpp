#include "platform/QtPlatform.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>
#include <algorithm>
#include <array>

namespace kestrix {
namespace {

/// What a Linux kernel mounts that no person stores files on.
constexpr std::array kPseudoFileSystems = {
    "autofs", "binfmt_misc", "bpf",         "cgroup",          "cgroup2",    "configfs", "debugfs",
    "devpts", "devtmpfs",    "efivarfs",    "fusectl",         "hugetlbfs",  "mqueue",   "nsfs",
    "proc",   "pstore",      "ramfs",       "rpc_pipefs",      "securityfs", "squashfs", "sysfs",
    "tmpfs",  "tracefs",     "fuse.portal", "fuse.gvfsd-fuse",
};

/// Mounted for the system itself.
constexpr std::array kSystemFolders = {"/boot", "/dev", "/etc", "/proc", "/snap", "/sys"};

bool IsPseudo(const QStorageInfo& volume) {
  const QByteArray type = volume.fileSystemType();
  return std::any_of(kPseudoFileSystems.begin(), kPseudoFileSystems.end(),
                     [&](const char* pseudo) { return type == pseudo; });
}

bool IsOfTheSystem(const QString& root) {
  return std::any_of(kSystemFolders.begin(), kSystemFolders.end(), [&](const char* folder) {
    const QString name = QString::fromLatin1(folder);
    return root == name || root.startsWith(name + u'/');
  });
}

/// An overlay of folders that a system starts from or works in may be none that a person writes to.
bool IsClosedOverlay(const QStorageInfo& volume) {
  return volume.fileSystemType() == "overlay" && !QFileInfo(volume.rootPath()).isWritable();
}

/// Network folders that the desktop itself has connected lie side by side in one mount, which is
/// none to write to.
QStringList ConnectedShares() {
  const QDir shares(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/gvfs"));
  QStringList roots;
  const auto all = shares.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
  for (const QFileInfo& share : all)
    if (share.isWritable()) roots.append(share.filePath());
  return roots;
}

/// The temporary folder that somebody chose, or else one of this user's own: what another user has
/// left in the shared one can be neither replaced nor removed.
QString TemporaryFolder() {
  if (!qEnvironmentVariableIsEmpty("TMPDIR")) return QDir::tempPath();
  const QString own = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  return own.isEmpty() ? QDir::tempPath() : own;
}

}  // namespace

QString QtEnvironment::ApplicationFolder() const {
  return QCoreApplication::applicationDirPath();
}

QString QtEnvironment::ApplicationTitle() const {
  return QStringLiteral("KestrixStudy");
}

QString QtEnvironment::Variable(const QString& name) const {
  QString value = qEnvironmentVariable(name.toLocal8Bit().constData());
  if (!value.isEmpty()) return value;
  if (name == QStringLiteral("TEMP")) return TemporaryFolder();
  for (const char* root : {"SYSTEMROOT", "SYSTEMDRIVE", "PROGRAMFILES"})
    if (name == QString::fromLatin1(root)) return QStringLiteral("/");
  return {};
}

QString QtEnvironment::DocumentsFolder() const {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

QStringList QtEnvironment::Drives() const {
  QStringList drives = ConnectedShares();
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
    const QString root = volume.rootPath();
    if (root == QStringLiteral("/") || !volume.isValid() || !volume.isReady()) continue;
    // A container mounts single files as well.
    if (IsPseudo(volume) || IsClosedOverlay(volume) || IsOfTheSystem(root)) continue;
    if (!QFileInfo(root).isDir()) continue;
    drives.append(root);
  }
  drives.sort();
  drives.removeDuplicates();
  drives.prepend(QStringLiteral("/"));
  return drives;
}

}  // namespace kestrix
