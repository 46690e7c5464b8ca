#include "platform/QtFileSystem.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace kestrix {
namespace {

namespace fs = std::filesystem;

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

/// A write-protected folder of ours goes with all that it holds; another's says no later.
void Unprotect(const fs::path& folder) {
  std::error_code none_of_ours;
  fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add | fs::perm_options::nofollow,
                  none_of_ours);
  for (fs::directory_iterator entry(folder, none_of_ours); entry != fs::directory_iterator();
       entry.increment(none_of_ours)) {
    if (fs::is_directory(entry->symlink_status(none_of_ours))) Unprotect(entry->path());
  }
}

}  // namespace

bool QtFileSystem::FileExists(const QString& path) const {
  return QFileInfo(path).isFile();
}

bool QtFileSystem::FolderExists(const QString& path) const {
  return QFileInfo(path).isDir();
}

bool QtFileSystem::IsSameFile(const QString& one, const QString& other) const {
  std::error_code error;
  return fs::equivalent(QFile::encodeName(one).toStdString(),
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
  const fs::path name = QFile::encodeName(folder).toStdString();
  std::error_code error;
  if (fs::is_directory(fs::symlink_status(name, error))) {
    Unprotect(name);
    fs::remove_all(name, error);
  } else if (!error) {
    error = std::make_error_code(std::errc::not_a_directory);
  }
  if (error)
    throw FailureFromErrno(error.value(), folder, QStringLiteral("delete"), failure::kPathNotFound);
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
