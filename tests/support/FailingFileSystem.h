#pragma once

#include <QStringList>
#include <functional>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/QtFileSystem.h"

namespace kestrix {

enum class FileAction {
  kCreateFolder,
  kCopyFile,
  kCopyFolder,
  kDeleteFile,
  kDeleteFolder,
  kReplaceText,
  kFoldersIn,
  kChangeFolder,
  kEndBatch,
};

/// The real files, with faults that a test plans. The current folder is kept in here, so that the
/// process stays where it is; relative paths are taken from it.
class FailingFileSystem : public FileSystem {
 public:
  FailingFileSystem();

  /// The next `action` on a path that contains `part` fails with `number`; a copy looks at its
  /// source and its target. An empty part is any path. Faults are used up one by one.
  void FailNext(FileAction action, const QString& part, int number);
  /// As FailNext, for every such action from now on.
  void FailAlways(FileAction action, const QString& part, int number);
  /// What somebody else does right before the next `action` on a path that contains `part`.
  void BeforeNext(FileAction action, const QString& part, std::function<void()> act);
  /// Files and folders whose path contains `part` are said not to exist.
  void PretendMissing(const QString& part) { missing_.append(part); }
  /// Forgets all planned faults.
  void Heal();
  /// How many planned faults haven't happened.
  [[nodiscard]] int FaultsLeft() const { return static_cast<int>(faults_.size()); }
  /// Every change that was asked for, in order: "CopyFile <source> -> <target>",
  /// "DeleteFolder <path>", …
  [[nodiscard]] const QStringList& Log() const { return log_; }

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
  [[nodiscard]] QString CurrentFolder() const override { return current_; }
  void ChangeFolder(const QString& path) override;
  void BeginBatch(const QString& folder) override;
  void EndBatch(const QString& folder) override;

 private:
  struct Fault {
    FileAction action;
    QString part;
    int number;
    bool lasting;
    std::function<void()> act = {};  ///< instead of failing
  };
  [[nodiscard]] QString Full(const QString& path) const;
  [[nodiscard]] bool IsPretendedMissing(const QString& path) const;
  void FailIfPlanned(FileAction action, const QString& path, const QString& other = {}) const;

  QtFileSystem real_;
  QString current_;
  // Looking into a folder is const, and uses a planned fault up all the same.
  mutable std::vector<Fault> faults_;
  QStringList missing_;
  QStringList log_;
};

}  // namespace kestrix
