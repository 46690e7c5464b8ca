#include "platform/FileCopy.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QThread>
#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <optional>
#include <system_error>
#include <vector>

#include "platform/Descriptor.h"
#include "platform/Leftovers.h"

namespace kestrix {
namespace {

struct Reason {
  int error;
  int number;
  const char* text;
};

constexpr Reason kReasons[] = {
    {ENOSPC, failure::kDiskFull, "the disk is full"},
    {EDQUOT, failure::kDiskFull, "the space you may use on this disk is full"},
    {EFBIG, failure::kDiskFull, "the file would grow larger than the disk allows"},
    {EACCES, failure::kPermissionDenied, "access is denied"},
    {EPERM, failure::kPermissionDenied, "access is denied"},
    {EROFS, failure::kPermissionDenied, "the disk is write-protected"},
    {EBUSY, failure::kPermissionDenied, "it is in use"},
    {ETXTBSY, failure::kPermissionDenied, "it is in use"},
    {EISDIR, failure::kPermissionDenied, "it is a folder"},
    {EEXIST, failure::kFileExists, "it exists already"},
    {ENOTEMPTY, failure::kFileExists, "the folder is not empty"},
    {ENOTDIR, failure::kPathNotFound, "a part of its path is no folder"},
    {ENAMETOOLONG, failure::kPathNotFound, "the name is too long"},
    {ELOOP, failure::kPathNotFound, "it is a link, or its links lead in a circle"},
    {ENODEV, failure::kDiskNotReady, "the disk is not ready"},
    {ENXIO, failure::kDiskNotReady, "the disk is not ready"},
    {ENOMEDIUM, failure::kDiskNotReady, "there is no disk in the drive"},
    {EIO, failure::kDeviceError, "the disk failed to read or write"},
};

Failure MakeFailure(int number, const QString& action, const QString& path, const QString& why) {
  return {number, QStringLiteral("Failed to %1 \"%2\": %3.").arg(action, path, why)};
}

const QString kCopy = QStringLiteral("copy");

QByteArray Encoded(const QString& path) {
  return QFile::encodeName(path);
}

QString ParentOf(const QString& path) {
  return QFileInfo(path).path();
}

QString WithoutTrailingSeparators(QString path) {
  while (path.size() > 1 && path.endsWith(u'/')) path.chop(1);
  return path;
}

void SyncOpen(int fd, const QString& path, const QString& action) {
  // Some network and memory file systems have nothing to sync and say so.
  if (::fsync(fd) != 0 && errno != EINVAL && errno != EROFS && errno != ENOTSUP)
    throw FailureFromErrno(errno, path, action);
}

/// One file that comes into being beside its target and takes the target's place when it is whole.
/// It never shows under the target's name before Replace, and leaves nothing behind when it is
/// given up: where the file system can, the file has no name at all until it is complete.
class Replacement {
 public:
  Replacement(QString target, mode_t mode, QString action)
      : target_(std::move(target)), folder_(ParentOf(target_)), action_(std::move(action)) {
    KeepRightsOfTarget(mode);
    RemoveLeftover(folder_);
    file_ =
        Descriptor(::open(Encoded(folder_).constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode_));
    if (!file_.valid()) OpenNamed();
    if (target_exists_) ApplyRightsOfTarget();
  }
  Q_DISABLE_COPY_MOVE(Replacement)
  ~Replacement() {
    if (has_name_) ::unlink(Encoded(PartIn(folder_)).constData());
  }

  [[nodiscard]] int fd() const { return file_.get(); }
  [[nodiscard]] const QString& target() const { return target_; }
  [[nodiscard]] const QString& folder() const { return folder_; }
  [[nodiscard]] bool Replaces(const struct stat& source) const {
    return target_exists_ && source.st_dev == old_.st_dev && source.st_ino == old_.st_ino;
  }

  void BringToDisk() const { SyncOpen(fd(), target_, action_); }
  [[nodiscard]] bool ReplacesFile() const { return target_exists_; }
  /// Whether its place may be given later: nobody else can use the one name of its folder till
  /// then.
  [[nodiscard]] bool CanWait() const { return target_exists_ && !has_name_; }
  /// Brings all to the disk that was written to the file system of this file.
  void BringAllToDisk() const {
    if (::syncfs(fd()) != 0) throw FailureFromErrno(errno, target_, action_);
  }
  /// Gives the finished file its place. The folder is for the caller to sync.
  void Replace() {
    if (!has_name_ && !target_exists_ && LinkTo(target_) == 0) return;
    // Nobody else can have a file in hand that has no name yet.
    if (!has_name_) TakeName([this] { return HoldPart(fd()) ? LinkTo(PartIn(folder_)) : EEXIST; });
    if (!LiesAt(PartIn(folder_), fd())) Fail(EBUSY);
    if (::rename(Encoded(PartIn(folder_)).constData(), Encoded(target_).constData()) != 0)
      Fail(errno);
    has_name_ = false;
  }

 private:
  void KeepRightsOfTarget(mode_t mode) {
    // The owner may always change his copy: a copy from a write-protected disk is there to be used.
    mode_ = (mode & 0777) | S_IRUSR | S_IWUSR;
    // A link makes way for the file as a name that leads nowhere does.
    target_exists_ = ::lstat(Encoded(target_).constData(), &old_) == 0 && !S_ISLNK(old_.st_mode);
    if (!target_exists_) return;
    if (S_ISDIR(old_.st_mode)) throw FailureFromErrno(EISDIR, target_, action_);
    // A device is nobody's to replace.
    if (!S_ISREG(old_.st_mode))
      throw MakeFailure(failure::kPermissionDenied, action_, target_,
                        QStringLiteral("it is no file"));
    // Renaming asks for the rights of the folder only, but a write-protected file says no for
    // itself.
    if (::access(Encoded(target_).constData(), W_OK) != 0)
      throw FailureFromErrno(errno, target_, action_);
    mode_ = old_.st_mode & 0777;
  }

  void ApplyRightsOfTarget() const {
    // The group of a shared folder's file stays if we may give it; the rights follow it.
    const bool group_kept = ::fchown(fd(), static_cast<uid_t>(-1), old_.st_gid) == 0;
    (void)group_kept;
    (void)::fchmod(fd(), mode_);
  }

  [[noreturn]] void Fail(int error) const {
    throw FailureFromErrno(error, target_, action_, failure::kPathNotFound);
  }

  void OpenNamed() {
    TakeName([this] {
      file_ = Descriptor(::open(Encoded(PartIn(folder_)).constData(),
                                O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC | O_NOFOLLOW, mode_));
      if (!file_.valid()) return errno;
      // It may be taken for a leftover before it is held.
      return HoldPart(fd()) && LiesAt(PartIn(folder_), fd()) ? 0 : EEXIST;
    });
  }

  /// Takes the name that one copy in a folder can have; `take` gives back an errno value. Whoever
  /// else has it is waited for.
  void TakeName(const std::function<int()>& take) {
    constexpr int kTries = 2'000;
    constexpr unsigned long kPauseMilliseconds = 5;
    int error = EEXIST;
    for (int tries = 0; error == EEXIST && tries < kTries; ++tries) {
      if (tries > 0) QThread::msleep(kPauseMilliseconds);
      error = take();
      if (error == EEXIST) RemoveLeftover(folder_);
    }
    if (error != 0) Fail(error == EEXIST ? EBUSY : error);
    has_name_ = true;
  }

  /// Gives the unnamed file a name that nobody has; the error where that can't be.
  [[nodiscard]] int LinkTo(const QString& name) const {
    const QByteArray open_file = "/proc/self/fd/" + QByteArray::number(fd());
    const int linked = ::linkat(AT_FDCWD, open_file.constData(), AT_FDCWD,
                                Encoded(name).constData(), AT_SYMLINK_FOLLOW);
    return linked == 0 ? 0 : errno;
  }

  QString target_;
  QString folder_;
  QString action_;
  struct stat old_ = {};
  mode_t mode_ = 0;
  bool target_exists_ = false;
  bool has_name_ = false;  ///< that of its folder's part file
  Descriptor file_;
};

void WriteAll(int fd, QByteArrayView bytes, const QString& path, const QString& action) {
  while (!bytes.isEmpty()) {
    const ssize_t written = ::write(fd, bytes.data(), static_cast<size_t>(bytes.size()));
    if (written < 0 && errno != EINTR) throw FailureFromErrno(errno, path, action);
    bytes = bytes.sliced(std::max<ssize_t>(written, 0));
  }
}

/// The bytes of `from` into the empty file `to`: the kernel shares blocks where the file system
/// can, and copies what is left, between two file systems all of it.
void CopyBytes(int from, int to, const QString& path) {
  constexpr size_t kMost = size_t{1} << 30;
  loff_t offset = 0;
  while (::copy_file_range(from, &offset, to, nullptr, kMost, 0) > 0) continue;
  for (ssize_t copied = 1; copied != 0;) {
    copied = ::sendfile(to, from, &offset, kMost);
    if (copied < 0 && errno != EINTR) throw FailureFromErrno(errno, path, kCopy);
  }
}

std::array<timespec, 2> TimesOf(const struct stat& file) {
  return {file.st_atim, file.st_mtim};
}

struct stat RegularFile(int fd, const QString& path) {
  struct stat status = {};
  if (::fstat(fd, &status) != 0) throw FailureFromErrno(errno, path, kCopy);
  if (S_ISDIR(status.st_mode))
    throw MakeFailure(failure::kFileNotFound, kCopy, path, QStringLiteral("it is a folder"));
  if (!S_ISREG(status.st_mode))
    throw MakeFailure(failure::kPermissionDenied, kCopy, path, QStringLiteral("it is no file"));
  return status;
}

std::unique_ptr<Replacement> FilledReplacement(int source_fd, const QString& source,
                                               const QString& target) {
  const struct stat status = RegularFile(source_fd, source);
  auto replacement = std::make_unique<Replacement>(target, status.st_mode, kCopy);
  if (replacement->Replaces(status))
    throw MakeFailure(failure::kPermissionDenied, kCopy, source,
                      QStringLiteral("it can't be copied onto itself"));
  CopyBytes(source_fd, replacement->fd(), replacement->target());
  // A file system without times still holds the bytes.
  (void)::futimens(replacement->fd(), TimesOf(status).data());
  return replacement;
}

Descriptor OpenForReading(const QString& source, int flags = 0) {
  // Without O_NONBLOCK a pipe in place of a file would hold us up for ever.
  Descriptor file(::open(Encoded(source).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | flags));
  if (!file.valid()) throw FailureFromErrno(errno, source, kCopy);
  return file;
}

}  // namespace

/// What a group has still to do: copies that are written and have no place yet, and folders whose
/// times each new place in them would change.
class CopyGroup::Waiting {
 public:
  explicit Waiting(const QString& folder) : disk_(DiskOf(folder)) {}

  void Add(std::unique_ptr<Replacement> file) {
    // Each of them is an open file.
    constexpr size_t kMost = 200;
    files_.push_back(std::move(file));
    if (files_.size() >= kMost) Place();
  }
  void Add(const QString& folder, const struct stat& source) {
    folders_.insert(folder, TimesOf(source));
  }
  /// Whether what is copied into `folder` goes to the group's disk.
  [[nodiscard]] bool Covers(const QString& folder) {
    if (!folders_seen_.contains(folder)) folders_seen_[folder] = disk_ && DiskOf(folder) == disk_;
    return folders_seen_[folder];
  }

  void Finish() {
    Place();
    const auto folders = std::exchange(folders_, {});
    for (auto folder = folders.keyValueBegin(); folder != folders.keyValueEnd(); ++folder)
      (void)::utimensat(AT_FDCWD, Encoded(folder->first).constData(), folder->second.data(), 0);
  }

 private:
  /// Nothing where syncing a file system doesn't bring its files to the disk: behind a program that
  /// serves it.
  static std::optional<dev_t> DiskOf(const QString& folder) {
    struct stat status = {};
    struct statfs system = {};
    const QByteArray name = Encoded(folder);
    if (::stat(name.constData(), &status) != 0 || ::statfs(name.constData(), &system) != 0 ||
        system.f_type == FUSE_SUPER_MAGIC)
      return {};
    return status.st_dev;
  }

  void Place() {
    const auto files = std::exchange(files_, {});
    if (!files.empty()) files.front()->BringAllToDisk();
    for (const auto& file : files) file->Replace();
  }

  std::vector<std::unique_ptr<Replacement>> files_;
  QHash<QString, std::array<timespec, 2>> folders_;  ///< with the times that they are to have
  std::optional<dev_t> disk_;
  QHash<QString, bool> folders_seen_;  ///< and whether they lie on the group's disk
};

namespace {

void Finish(std::unique_ptr<Replacement> file, Sync when) {
  const bool in_group = when.group && when.group->waiting().Covers(file->folder());
  if (in_group && file->CanWait()) return when.group->waiting().Add(std::move(file));
  if (!in_group || file->ReplacesFile()) file->BringToDisk();
  file->Replace();
  if (!in_group && when.name_now) SyncFolder(file->folder());
}

/// Copies one folder tree, all of it in one group.
class FolderCopy {
 public:
  explicit FolderCopy(CopyGroup& group) : group_(group) {}

  void CopyTree(const QString& source, const QString& target) {
    struct stat status = {};
    if (::stat(Encoded(source).constData(), &status) != 0)
      throw FailureFromErrno(errno, source, kCopy, failure::kPathNotFound);
    if (!S_ISDIR(status.st_mode)) throw FailureFromErrno(ENOTDIR, source, kCopy);
    MakeFolder(target, status.st_mode);
    using Entries = std::filesystem::directory_iterator;
    std::error_code error;
    for (Entries entry(Encoded(source).toStdString(), error); !error && entry != Entries();
         entry.increment(error)) {
      const QString name = u'/' + QFile::decodeName(entry->path().filename().c_str());
      CopyEntry(source + name, target + name);
    }
    if (error) throw FailureFromErrno(error.value(), source, kCopy, failure::kPathNotFound);
    group_.waiting().Add(target, status);
    if (!group_.waiting().Covers(target)) SyncFolder(ParentOf(target));
  }

  /// The links that were left out.
  [[nodiscard]] const QStringList& links() const { return links_; }

 private:
  static void MakeFolder(const QString& path, mode_t mode) {
    const mode_t rights = (mode & 0777) | S_IRWXU;
    if (::mkdir(Encoded(path).constData(), rights) == 0) return;
    const int error = errno;
    // What is copied stays below the target, wherever a link would lead.
    if (IsLink(path) && ::unlink(Encoded(path).constData()) == 0) return MakeFolder(path, mode);
    if (error == EEXIST && QFileInfo(path).isDir() && !IsLink(path)) return;
    throw FailureFromErrno(error, path, QStringLiteral("make"), failure::kPathNotFound);
  }

  void CopyEntry(const QString& source, const QString& target) {
    struct stat status = {};
    if (::lstat(Encoded(source).constData(), &status) != 0)
      throw FailureFromErrno(errno, source, kCopy);
    if (S_ISDIR(status.st_mode)) return CopyTree(source, target);
    if (source.endsWith(kPartName)) return;
    if (S_ISREG(status.st_mode)) return CopyFile(source, target);
    if (S_ISLNK(status.st_mode)) links_.append(source);
  }

  void CopyFile(const QString& source, const QString& target) {
    const Descriptor file = OpenForReading(source, O_NOFOLLOW);
    Finish(FilledReplacement(file.get(), source, target), Sync::With(group_));
  }

  CopyGroup& group_;
  QStringList links_;
};

void RefuseFolderIntoItself(const QString& source, const QString& target) {
  const QString from = QFileInfo(source).canonicalFilePath();
  QString to = QFileInfo(target).canonicalFilePath();
  if (to.isEmpty()) to = QFileInfo(ParentOf(target)).canonicalFilePath();
  if (!from.isEmpty() && (to + u'/').startsWith(from + u'/'))
    throw MakeFailure(failure::kPermissionDenied, kCopy, source,
                      QStringLiteral("a folder can't be copied into itself"));
}

}  // namespace

CopyGroup::CopyGroup(const QString& folder) : waiting_(std::make_unique<Waiting>(folder)) {}

CopyGroup::~CopyGroup() {
  try {
    Finish();
  } catch (const Failure&) {
    // The failure that kept the group from its end is the one to report.
  }
}

void CopyGroup::Finish() {
  waiting_->Finish();
}

Failure FailureFromErrno(int error, const QString& path, const QString& action, int missing) {
  if (error == ENOENT) {
    const QString why = missing == failure::kFileNotFound
                            ? QStringLiteral("there is no such file")
                            : QStringLiteral("there is no such folder");
    return MakeFailure(missing, action, path, why);
  }
  for (const Reason& reason : kReasons)
    if (reason.error == error)
      return MakeFailure(reason.number, action, path, QString::fromLatin1(reason.text));
  return MakeFailure(failure::kDeviceError, action, path,
                     QString::fromStdString(std::generic_category().message(error)));
}

bool IsLink(const QString& path) {
  struct stat status = {};
  return ::lstat(Encoded(path).constData(), &status) == 0 && S_ISLNK(status.st_mode);
}

QString BehindLinks(const QString& path) {
  if (!IsLink(path)) return path;
  const QString real = QFileInfo(path).canonicalFilePath();
  return real.isEmpty() ? path : real;
}

void CopyFileDurably(const QString& source, const QString& target, Sync when) {
  const Descriptor file = OpenForReading(source);
  Finish(FilledReplacement(file.get(), source, BehindLinks(target)), when);
}

void CopyOpenFileDurably(int source_fd, const QString& target, Sync when) {
  Finish(FilledReplacement(source_fd, target, target), when);
}

QStringList CopyFolderDurably(const QString& source, const QString& target, Sync when) {
  if (IsLink(source)) return {source};
  const QString from = WithoutTrailingSeparators(source);
  const QString to = WithoutTrailingSeparators(target);
  RefuseFolderIntoItself(from, to);
  std::optional<CopyGroup> own;
  FolderCopy copy(when.group ? *when.group : own.emplace(ParentOf(to)));
  copy.CopyTree(from, to);
  if (own) {
    own->Finish();
    SyncDisk(ParentOf(to));
  }
  return copy.links();
}

void WriteFileDurably(const QString& path, const QByteArray& bytes) {
  const QString action = QStringLiteral("write");
  auto replacement = std::make_unique<Replacement>(BehindLinks(path), 0666, action);
  WriteAll(replacement->fd(), bytes, path, action);
  Finish(std::move(replacement), Sync::kNow);
}

void SyncFolder(const QString& folder) {
  const Descriptor open(::open(Encoded(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const QString action = QStringLiteral("save");
  if (!open.valid()) {
    // A folder that may be written but not listed can't be opened for its sync; the names in it are
    // right all the same.
    if (errno == EACCES) return;
    throw FailureFromErrno(errno, folder, action, failure::kPathNotFound);
  }
  SyncOpen(open.get(), folder, action);
}

void SyncDisk(const QString& path) {
  const QString action = QStringLiteral("save");
  const Descriptor open(::open(Encoded(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!open.valid()) throw FailureFromErrno(errno, path, action, failure::kPathNotFound);
  if (::syncfs(open.get()) != 0) throw FailureFromErrno(errno, path, action);
}

}  // namespace kestrix
