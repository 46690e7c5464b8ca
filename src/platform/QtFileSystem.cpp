#include "platform/QtFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>

#include "platform/Descriptor.h"
#include "platform/FileCopy.h"

namespace kestrix {
namespace {

QString WithoutTrailingSeparators(QString path) {
  while (path.size() > 1 && path.endsWith(u'/')) path.chop(1);
  return path;
}

QString ParentOf(const QString& path) {
  return QFileInfo(WithoutTrailingSeparators(path)).path();
}

/// `target` as the name of the copy itself: a trailing separator says "into this folder".
QString NameOfCopy(const QString& source, const QString& target) {
  if (!target.endsWith(u'/')) return target;
  if (!QFileInfo(target).isDir())
    throw FailureFromErrno(ENOENT, target, QStringLiteral("copy to"), failure::kPathNotFound);
  return WithoutTrailingSeparators(target) + u'/' +
         QFileInfo(WithoutTrailingSeparators(source)).fileName();
}

/// Empties folders through their descriptors, so that nobody can put a link in the way between the
/// look and the deletion.
class FolderRemoval {
 public:
  explicit FolderRemoval(QString path) : path_(std::move(path)) {}

  void Run() {
    struct stat status = {};
    const QByteArray name = QFile::encodeName(path_);
    if (::lstat(name.constData(), &status) != 0) Fail(errno);
    if (!S_ISDIR(status.st_mode)) Fail(ENOTDIR);
    Empty(AT_FDCWD, name);
    if (::rmdir(name.constData()) != 0) Fail(errno);
  }

 private:
  [[noreturn]] void Fail(int error) const {
    throw FailureFromErrno(error, path_, QStringLiteral("delete"), failure::kPathNotFound);
  }

  void Empty(int parent, const QByteArray& name) {
    // A folder of ours that is write-protected goes with all it holds; another's says no below.
    Descriptor folder = Open(parent, name);
    (void)::fchmod(folder.get(), S_IRWXU);
    const int number = folder.get();
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(folder.release()),
                                                      [](DIR* dir) { return ::closedir(dir); });
    if (!entries) {
      const int error = errno;
      ::close(number);
      Fail(error);
    }
    while (const dirent* entry = ::readdir(entries.get())) {
      const QByteArray child(entry->d_name);
      if (child != "." && child != "..") Remove(::dirfd(entries.get()), child);
    }
  }

  [[nodiscard]] Descriptor Open(int parent, const QByteArray& name) const {
    constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    Descriptor folder(::openat(parent, name.constData(), kFlags));
    if (!folder.valid() && errno == EACCES && ::fchmodat(parent, name.constData(), S_IRWXU, 0) == 0)
      folder = Descriptor(::openat(parent, name.constData(), kFlags));
    if (!folder.valid()) Fail(errno);
    return folder;
  }

  void Remove(int parent, const QByteArray& name) {
    struct stat status = {};
    if (::fstatat(parent, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
      if (errno == ENOENT) return;
      Fail(errno);
    }
    const bool is_folder = S_ISDIR(status.st_mode);
    if (is_folder) Empty(parent, name);
    // Whoever was quicker has done our work.
    if (::unlinkat(parent, name.constData(), is_folder ? AT_REMOVEDIR : 0) != 0 && errno != ENOENT)
      Fail(errno);
  }

  QString path_;
};

}  // namespace

bool QtFileSystem::FileExists(const QString& path) const {
  return QFileInfo(path).isFile();
}

bool QtFileSystem::FolderExists(const QString& path) const {
  return QFileInfo(path).isDir();
}

bool QtFileSystem::IsSameFile(const QString& one, const QString& other) const {
  std::error_code error;
  return std::filesystem::equivalent(QFile::encodeName(one).toStdString(),
                                     QFile::encodeName(other).toStdString(), error);
}

void QtFileSystem::CreateFolder(const QString& path) {
  if (::mkdir(QFile::encodeName(path).constData(), 0777) != 0)
    throw FailureFromErrno(errno, path, QStringLiteral("make the folder"), failure::kPathNotFound);
  SyncUnlessInBatch(ParentOf(path));
}

void QtFileSystem::CopyFile(const QString& source, const QString& target) {
  CopyFileDurably(source, NameOfCopy(source, target), When());
}

QStringList QtFileSystem::CopyFolder(const QString& source, const QString& target) {
  return CopyFolderDurably(source, NameOfCopy(source, target), When());
}

void QtFileSystem::DeleteFile(const QString& path) {
  const QString action = QStringLiteral("delete");
  const QByteArray name = QFile::encodeName(path);
  struct stat status = {};
  if (::lstat(name.constData(), &status) != 0) throw FailureFromErrno(errno, path, action);
  if (S_ISDIR(status.st_mode)) throw FailureFromErrno(ENOENT, path, action);
  if (::unlink(name.constData()) != 0) throw FailureFromErrno(errno, path, action);
  SyncUnlessInBatch(ParentOf(path));
}

void QtFileSystem::DeleteFolder(const QString& path) {
  const QString folder = WithoutTrailingSeparators(path);
  // Of a link in place of the folder, the link goes and what it leads to stays.
  if (QFileInfo(folder).isSymLink()) return DeleteFile(folder);
  FolderRemoval(folder).Run();
  SyncUnlessInBatch(ParentOf(folder));
}

void QtFileSystem::ReplaceText(const QString& path, const QString& text) {
  if (!FileExists(path)) throw FailureFromErrno(ENOENT, path, QStringLiteral("write"));
  WriteFileDurably(path, text.toUtf8());
}

QStringList QtFileSystem::FoldersIn(const QString& path) const {
  const QString action = QStringLiteral("list");
  if (!FolderExists(path)) throw FailureFromErrno(ENOENT, path, action, failure::kPathNotFound);
  if (::access(QFile::encodeName(path).constData(), R_OK | X_OK) != 0)
    throw FailureFromErrno(errno, path, action);
  return QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
}

QString QtFileSystem::CurrentFolder() const {
  return QDir::currentPath();
}

void QtFileSystem::ChangeFolder(const QString& path) {
  if (::chdir(QFile::encodeName(path).constData()) != 0)
    throw FailureFromErrno(errno, path, QStringLiteral("change to"), failure::kPathNotFound);
}

void QtFileSystem::BeginBatch(const QString& folder) {
  batch_ = std::make_unique<CopyGroup>(folder);
}

void QtFileSystem::EndBatch(const QString& folder) {
  const std::unique_ptr<CopyGroup> ended = std::move(batch_);
  if (ended) ended->Finish();
  SyncDisk(folder);
}

void QtFileSystem::SyncUnlessInBatch(const QString& folder) const {
  if (!batch_) SyncFolder(folder);
}

}  // namespace kestrix
