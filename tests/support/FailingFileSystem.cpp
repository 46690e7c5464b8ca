#include "support/FailingFileSystem.h"

#include <QDir>
#include <algorithm>

#include "platform/Failure.h"

namespace kestrix {

FailingFileSystem::FailingFileSystem() : current_(QDir::currentPath()) {}

void FailingFileSystem::FailNext(FileAction action, const QString& part, int number) {
  faults_.push_back({action, part, number, false});
}

void FailingFileSystem::FailAlways(FileAction action, const QString& part, int number) {
  faults_.push_back({action, part, number, true});
}

void FailingFileSystem::BeforeNext(FileAction action, const QString& part,
                                   std::function<void()> act) {
  faults_.push_back({action, part, 0, false, std::move(act)});
}

void FailingFileSystem::Heal() {
  faults_.clear();
  missing_.clear();
}

QString FailingFileSystem::Full(const QString& path) const {
  if (path.isEmpty() || path.startsWith(u'/')) return path;
  return current_ + u'/' + path;
}

bool FailingFileSystem::IsPretendedMissing(const QString& path) const {
  return std::any_of(missing_.begin(), missing_.end(),
                     [&](const QString& part) { return path.contains(part); });
}

void FailingFileSystem::FailIfPlanned(FileAction action, const QString& path,
                                      const QString& other) const {
  const auto fault = std::find_if(faults_.begin(), faults_.end(), [&](const Fault& planned) {
    return planned.action == action &&
           (path.contains(planned.part) || other.contains(planned.part));
  });
  if (fault == faults_.end()) return;
  const Fault planned = *fault;
  if (!planned.lasting) faults_.erase(fault);
  if (planned.act) return planned.act();
  throw Failure(planned.number, QStringLiteral("A planned failure on \"%1\".").arg(path));
}

bool FailingFileSystem::FileExists(const QString& path) const {
  return !IsPretendedMissing(path) && real_.FileExists(Full(path));
}

bool FailingFileSystem::FolderExists(const QString& path) const {
  return !IsPretendedMissing(path) && real_.FolderExists(Full(path));
}

bool FailingFileSystem::IsSameFile(const QString& one, const QString& other) const {
  return real_.IsSameFile(Full(one), Full(other));
}

void FailingFileSystem::CreateFolder(const QString& path) {
  log_.append(QStringLiteral("CreateFolder ") + path);
  FailIfPlanned(FileAction::kCreateFolder, path);
  real_.CreateFolder(Full(path));
}

void FailingFileSystem::CopyFile(const QString& source, const QString& target) {
  log_.append(QStringLiteral("CopyFile %1 -> %2").arg(source, target));
  FailIfPlanned(FileAction::kCopyFile, source, target);
  real_.CopyFile(Full(source), Full(target));
}

QStringList FailingFileSystem::CopyFolder(const QString& source, const QString& target) {
  log_.append(QStringLiteral("CopyFolder %1 -> %2").arg(source, target));
  FailIfPlanned(FileAction::kCopyFolder, source, target);
  return real_.CopyFolder(Full(source), Full(target));
}

void FailingFileSystem::DeleteFile(const QString& path) {
  log_.append(QStringLiteral("DeleteFile ") + path);
  FailIfPlanned(FileAction::kDeleteFile, path);
  real_.DeleteFile(Full(path));
}

void FailingFileSystem::DeleteFolder(const QString& path) {
  log_.append(QStringLiteral("DeleteFolder ") + path);
  FailIfPlanned(FileAction::kDeleteFolder, path);
  real_.DeleteFolder(Full(path));
}

void FailingFileSystem::ReplaceText(const QString& path, const QString& text) {
  log_.append(QStringLiteral("ReplaceText ") + path);
  FailIfPlanned(FileAction::kReplaceText, path);
  real_.ReplaceText(Full(path), text);
}

QStringList FailingFileSystem::FoldersIn(const QString& path) const {
  FailIfPlanned(FileAction::kFoldersIn, path);
  return real_.FoldersIn(Full(path));
}

void FailingFileSystem::ChangeFolder(const QString& path) {
  log_.append(QStringLiteral("ChangeFolder ") + path);
  FailIfPlanned(FileAction::kChangeFolder, path);
  const QString full = QDir::cleanPath(Full(path));
  if (path.isEmpty() || !real_.FolderExists(full))
    throw Failure(failure::kPathNotFound, QStringLiteral("There is no folder \"%1\".").arg(path));
  current_ = full;
}

void FailingFileSystem::BeginBatch(const QString& folder) {
  real_.BeginBatch(Full(folder));
}

void FailingFileSystem::EndBatch(const QString& folder) {
  real_.EndBatch(Full(folder));
  FailIfPlanned(FileAction::kEndBatch, folder);
}

}  // namespace kestrix
