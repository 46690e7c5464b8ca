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
  /// Copies over what stands at `target`. The copy is written beside the target and renamed over
  /// it, so that an interrupted copy leaves the old file whole; times are kept. A `target` that
  /// ends in a separator is a folder and the file keeps its name. Fails with kPermissionDenied for
  /// a file onto itself, kFileNotFound, kPathNotFound, kDiskFull.
  virtual void CopyFile(const QString& source, const QString& target) = 0;
  /// Copies a folder with all below it, over what stands there. A `target` that ends in a separator
  /// is the parent of the copy. No link is followed: returned are those that were left out,
  /// `source` among them unless it ends in a separator. Fails as CopyFile does.
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

  /// Between these two, changes need not be on the disk when their function returns; EndBatch puts
  /// them there, with all else that was changed on the disk of `folder`, the same in both. Use
  /// FileBatch.
  virtual void BeginBatch(const QString& /*folder*/) {}
  virtual void EndBatch(const QString& /*folder*/) {}
};

/// Many changes in a row that come onto the disk together, which is far faster than one at a time.
/// A file that is replaced is old or new, whole, at every moment all the same. Without an End, as
/// when a Failure passes, what was done is brought onto the disk as far as it goes and nothing is
/// reported.
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
