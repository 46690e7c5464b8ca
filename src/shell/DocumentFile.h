#pragma once

#include <QString>

namespace kestrix {

/// More bytes than any text that a person reads on a screen, and few enough to be laid out in
/// seconds.
inline constexpr qint64 kMostDocumentBytes = 16LL * 1024 * 1024;

/// The text of the file at the full path `path`, whatever bytes it has: UTF-8, or what its byte
/// order mark says, else Latin-1. Fails with kFileNotFound (also for an empty path),
/// kPermissionDenied, kInvalidCall for what is no plain file or has more bytes, kDeviceError.
[[nodiscard]] QString ReadDocument(const QString& path);

/// Replaces the content of the file, or makes it, whole and on the disk on return, in UTF-8. Fails
/// with kPathNotFound (also for an empty path), kPermissionDenied, kDiskFull, kDeviceError; the
/// file is then what it was.
void WriteDocument(const QString& path, const QString& text);

}  // namespace kestrix
