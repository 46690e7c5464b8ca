#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <memory>

#include "platform/Failure.h"

namespace kestrix {

/// The Failure for a system call that ended with `error` (an errno value) on `path`. `action` is
/// the verb of the sentence that a person reads ("copy", "delete"), `missing` the number for a path
/// that isn't there: kFileNotFound, or kPathNotFound where a folder was expected.
[[nodiscard]] Failure FailureFromErrno(int error, const QString& path,
                                       const QString& action = QStringLiteral("use"),
                                       int missing = failure::kFileNotFound);

/// Copies to the disk of one folder that come onto it together, which is far faster than one at a
/// time; copies to other disks come onto theirs at once. A file that is replaced is old or new,
/// whole; one that is new may be lost or torn if the machine stops before SyncDisk. Without a
/// Finish what was copied comes to its place as far as it goes.
class CopyGroup {
 public:
  /// `folder` lies on the disk that is synced at the end.
  explicit CopyGroup(const QString& folder);
  Q_DISABLE_COPY_MOVE(CopyGroup)
  ~CopyGroup();

  /// Gives every copy its place. Fails with kDiskFull or kDeviceError; files that have no place by
  /// then are as they were. What stands in its place is on the disk with the next SyncDisk.
  void Finish();

  class Waiting;
  [[nodiscard]] Waiting& waiting() { return *waiting_; }

 private:
  std::unique_ptr<Waiting> waiting_;
};

/// When a copy is on the disk: at once, or with its group, or, for the bytes, before it takes its
/// place at once and, for the name, with the next SyncDisk.
struct Sync {
  CopyGroup* group;  ///< null for one that waits for no other
  bool name_now;

  static const Sync kNow;
  static const Sync kBytesNow;
  [[nodiscard]] static Sync With(CopyGroup& group) { return {&group, true}; }
};
inline constexpr Sync Sync::kNow{nullptr, true};
inline constexpr Sync Sync::kBytesNow{nullptr, false};

/// Copies the file `source` over `target`, a full path with a file name. At every moment `target`
/// is the old file or the new one, whole; both file and name are on the disk on return. The time of
/// the last change is kept. A target that is a link to a file stays a link and the file behind it
/// is replaced; one that exists keeps its access rights. Fails with kFileNotFound, kPathNotFound,
/// kPermissionDenied (also for a file onto itself, by whatever names, and for a write-protected
/// target), kDiskFull, kDeviceError.
void CopyFileDurably(const QString& source, const QString& target, Sync when = Sync::kNow);

/// As CopyFileDurably, for a file that the caller has opened for reading and maybe locked. The
/// whole file is copied, whatever its offset, and `source_fd` stays open. A target that is a link
/// is replaced itself, and what it leads to stays.
void CopyOpenFileDurably(int source_fd, const QString& target, Sync when = Sync::kNow);

/// Copies the folder `source` with all below it over the folder `target`, which is made if it isn't
/// there; its parent must exist. All of it is on the disk on return. No link is followed: those of
/// the source are left out and returned (`source` itself, unless it ends in a separator, which
/// names the folder behind it), and one in the place of a copy makes way for it. What is neither
/// file nor folder is left out too, and so are unfinished copies. Fails as CopyFileDurably does,
/// with kPathNotFound for a missing source and with kPermissionDenied for a folder into itself.
QStringList CopyFolderDurably(const QString& source, const QString& target, Sync when = Sync::kNow);

/// Replaces the content of `path` by `bytes`, or makes the file, with the same care as a copy.
void WriteFileDurably(const QString& path, const QByteArray& bytes);

/// Whether a link stands at `path`, wherever it leads.
[[nodiscard]] bool IsLink(const QString& path);
/// The file that a link at `path` leads to, so that a copy over it leaves the link in place; `path`
/// itself where there is no link, or one that leads nowhere.
[[nodiscard]] QString BehindLinks(const QString& path);

/// Puts the names in `folder` on the disk: after a file in it was made, renamed or deleted.
void SyncFolder(const QString& folder);

/// Puts on the disk all that was changed on the file system that `path` lies on.
void SyncDisk(const QString& path);

}  // namespace kestrix
