#pragma once

#include "platform/FileCopy.h"
#include "platform/FileSystem.h"

namespace kestrix {

/// The files and folders of this machine. It holds no state of its own: the current folder is that
/// of the process, which the programs it starts inherit. It never follows a link out of a folder
/// that it deletes.
class QtFileSystem : public FileSystem {
 public:
  [[nodiscard]] bool FileExists(const QString& path) const override;
  [[nodiscard]] bool FolderExists(const QString& path) const override;
  [[nodiscard]] bool IsSameFile(const QString& one, const QString& other) const override;
  void CreateFolder(const QString& path) override;
  void CopyFile(const QString& source, const QString& target) override;
  QStringList CopyFolder(const QString& source, const QString& target) override;
  void DeleteFile(const QString& path) override;
  void DeleteFolder(const QString& path) override;
  void ReplaceText(const QString& path, const QString& text) override;
  [[nodiscard]] QStringList FoldersIn(const QString& path) const override;
  [[nodiscard]] QString CurrentFolder() const override;
  void ChangeFolder(const QString& path) override;
  void BeginBatch(const QString& folder) override;
  void EndBatch(const QString& folder) override;

 private:
  void SyncUnlessInBatch(const QString& folder) const;

  [[nodiscard]] Sync When() { return batch_ ? Sync::With(*batch_) : Sync::kNow; }

  std::unique_ptr<CopyGroup> batch_;
};

}  // namespace kestrix
