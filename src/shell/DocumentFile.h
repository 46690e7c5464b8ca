#pragma once

#include <QString>

namespace kestrix {

/// A file that a document child is read from or written to. It holds nothing but its path. It never
/// leaves half a file behind, and never reads what isn't a plain file or is too large to be shown.
class DocumentFile {
 public:
  /// More bytes than any text that a person reads on a screen, and few enough to be laid out in
  /// seconds.
  static constexpr qint64 kMostBytes = 16LL * 1024 * 1024;

  /// `path` is a full path.
  explicit DocumentFile(QString path);

  /// The text of the file, whatever bytes it has: UTF-8, or what its byte order mark says, else
  /// Latin-1. Fails with kFileNotFound (also for an empty path), kPermissionDenied, kInvalidCall
  /// for what is no plain file or has more than kMostBytes, kDeviceError.
  [[nodiscard]] QString Read() const;

  /// Replaces the content of the file, or makes it, whole and on the disk on return, in UTF-8.
  /// Fails with kPathNotFound (also for an empty path), kPermissionDenied, kDiskFull,
  /// kDeviceError; the file is then what it was.
  void Write(const QString& text) const;

 private:
  QString path_;
};

}  // namespace kestrix
