#pragma once

#include <QString>
#include <QStringList>
#include <utility>

#include "platform/Failure.h"

namespace kestrix {

/// Files and folders, as the rules of the program need them. Paths are full paths of this platform
/// unless a function says otherwise. Every change is on the disk when its function returns.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  [[nodiscard]] virtual bool FileExists(const QString& path) const = 0;
  [[nodiscard]] virtual bool FolderExists(const QString& path) const = 0;
  /// Whether both paths lead to one file, by whatever names.
  [[nodiscard]] virtual bool IsSameFile(const QString& one, const QString& other) const = 0;

  /// Makes one folder; its parent must exist. Fails with kFileExists, kPathNotFound or
  /// kPermissionDenied.
  virtual void CreateFolder(const QString& path) = 0;
  /// Copies as CopyFileDurably does. A `target` that ends in a separator is a folder and the file
  /// keeps its name.
  virtual void CopyFile(const QString& source, const QString& target) = 0;
  /// Copies as CopyFolderDurably does. A `target` that ends in a separator is the parent of the
  /// copy.
  virtual QStringList CopyFolder(const QString& source, const QString& target) = 0;
  /// Deletes a file, write-protected or not. Fails with kFileNotFound or kPermissionDenied.
  virtual void DeleteFile(const QString& path) = 0;
  /// Deletes a folder with all below it; a link inside is removed, never followed. Fails with
  /// kPathNotFound or kPermissionDenied.
  virtual void DeleteFolder(const QString& path) = 0;
  /// Replaces the text of a file that exists, UTF-8, with no line end added.
  virtual void ReplaceText(const QString& path, const QString& text) = 0;
  /// Names of the folders in `path`, sorted, hidden ones left out. Fails with kPathNotFound, or
  /// with kPermissionDenied when they may not be read.
  [[nodiscard]] virtual QStringList FoldersIn(const QString& path) const = 0;

  /// The current folder, which programs that are started inherit.
  [[nodiscard]] virtual QString CurrentFolder() const = 0;
  /// `path` may be relative (".."). Fails with kPathNotFound.
  virtual void ChangeFolder(const QString& path) = 0;

  /// For FileBatch.
  virtual void BeginBatch(const QString& /*folder*/) {}
  virtual void EndBatch(const QString& /*folder*/) {}
};

/// Changes that need not be on the disk when their function returns, but come onto it together,
/// with all else that was changed there. Without an End, as when a Failure passes, that goes as far
/// as it goes and nothing is reported.
class FileBatch {
 public:
  /// `folder` exists and lies on the disk that changes.
  FileBatch(FileSystem& files, QString folder) : files_(files), folder_(std::move(folder)) {
    files_.BeginBatch(folder_);
  }
  Q_DISABLE_COPY_MOVE(FileBatch)
  ~FileBatch() {
    try {
      End();
    } catch (const Failure&) {
      // The failure that brought us here is the one to report.
    }
  }

  /// On return all is on the disk. Fails with kDiskFull or kDeviceError.
  void End() {
    if (std::exchange(ended_, true)) return;
    files_.EndBatch(folder_);
  }

 private:
  FileSystem& files_;
  QString folder_;
  bool ended_ = false;
};

}  // namespace kestrix
