#include "platform/FileCopy.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <cerrno>
#include <limits>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "platform/Descriptor.h"
#include "platform/EarlyWriter.h"
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

const QString& Copying() {
  static const QString action = QStringLiteral("copy");
  return action;
}

QByteArray Encoded(const QString& path) {
  return QFile::encodeName(path);
}

QString ParentOf(const QString& path) {
  const qsizetype slash = path.lastIndexOf(u'/');
  if (slash < 0) return QStringLiteral(".");
  return slash == 0 ? QStringLiteral("/") : path.first(slash);
}

QString WithoutTrailingSeparators(QString path) {
  while (path.size() > 1 && path.endsWith(u'/')) path.chop(1);
  return path;
}

bool SameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
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
    file_ =
        Descriptor(::open(Encoded(folder_).constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode_));
    if (!file_.valid()) OpenNamed();
    if (target_exists_) ApplyRightsOfTarget();
  }
  Replacement(Replacement&& other) noexcept
      : target_(std::move(other.target_)),
        folder_(std::move(other.folder_)),
        action_(std::move(other.action_)),
        temporary_(std::exchange(other.temporary_, {})),
        old_(other.old_),
        mode_(other.mode_),
        target_exists_(other.target_exists_),
        file_(std::move(other.file_)) {}
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  Replacement& operator=(Replacement&&) = delete;
  ~Replacement() {
    if (!temporary_.isEmpty()) ::unlink(Encoded(temporary_).constData());
  }

  [[nodiscard]] int fd() const { return file_.get(); }
  [[nodiscard]] const QString& target() const { return target_; }
  [[nodiscard]] const QString& folder() const { return folder_; }
  [[nodiscard]] bool Replaces(const struct stat& source) const {
    return target_exists_ && SameFile(source, old_);
  }

  void BringToDisk() const { SyncOpen(fd(), target_, action_); }

  /// Begins the writing to the disk without waiting for it.
  void StartSync() const { ::sync_file_range(fd(), 0, 0, SYNC_FILE_RANGE_WRITE); }
  [[nodiscard]] bool ReplacesFile() const { return target_exists_; }
  /// Brings all to the disk that was written to the file system of this file.
  void BringAllToDisk() const {
    if (::syncfs(fd()) != 0) throw FailureFromErrno(errno, target_, action_);
  }
  [[nodiscard]] dev_t Device() const {
    struct stat status = {};
    return ::fstat(fd(), &status) == 0 ? status.st_dev : 0;
  }

  /// Gives the finished file its place. The folder is for the caller to sync.
  void Replace() {
    if (temporary_.isEmpty() && !target_exists_ && LinkTo(target_) == 0) return;
    if (temporary_.isEmpty()) GiveTemporaryName();
    if (::rename(Encoded(temporary_).constData(), Encoded(target_).constData()) != 0)
      throw FailureFromErrno(errno, target_, action_, failure::kPathNotFound);
    temporary_.clear();
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

  void OpenNamed() {
    int error = EEXIST;
    while (error == EEXIST) {
      const QString name = NextUnfinishedName(folder_);
      file_ = Descriptor(::open(Encoded(name).constData(),
                                O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC | O_NOFOLLOW, mode_));
      error = errno;
      if (!file_.valid()) continue;
      temporary_ = name;
      if (HoldUnfinished(file_.get()) && HasName()) return;
      // It was taken for a leftover before it could be held.
      ::unlink(Encoded(std::exchange(temporary_, {})).constData());
      error = EEXIST;
    }
    throw FailureFromErrno(error, target_, action_, failure::kPathNotFound);
  }

  [[nodiscard]] bool HasName() const {
    struct stat status = {};
    return ::fstat(fd(), &status) == 0 && status.st_nlink > 0;
  }

  /// Gives the unnamed file a name that nobody has; the error where that can't be.
  [[nodiscard]] int LinkTo(const QString& name) const {
    const QByteArray open_file = "/proc/self/fd/" + QByteArray::number(fd());
    const int linked = ::linkat(AT_FDCWD, open_file.constData(), AT_FDCWD,
                                Encoded(name).constData(), AT_SYMLINK_FOLLOW);
    return linked == 0 ? 0 : errno;
  }

  void GiveTemporaryName() {
    // Nobody else can have a file in hand that has no name yet.
    (void)HoldUnfinished(fd());
    int error = EEXIST;
    while (error == EEXIST) {
      const QString name = NextUnfinishedName(folder_);
      error = LinkTo(name);
      if (error == 0) temporary_ = name;
    }
    if (error != 0) throw FailureFromErrno(error, target_, action_, failure::kPathNotFound);
  }

  QString target_;
  QString folder_;
  QString action_;
  QString temporary_;
  struct stat old_ = {};
  mode_t mode_ = 0;
  bool target_exists_ = false;
  Descriptor file_;
};

void WriteAll(int fd, const char* bytes, size_t size, const QString& path, const QString& action) {
  while (size > 0) {
    const ssize_t written = ::write(fd, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw FailureFromErrno(errno, path, action);
    bytes += written;
    size -= static_cast<size_t>(written);
  }
}

constexpr off_t kEndOfFile = std::numeric_limits<off_t>::max();

void CopyByBlocks(int from, off_t offset, off_t end, int to, const QString& path) {
  constexpr off_t kBlock = off_t{256} * 1024;
  const auto block = std::make_unique<char[]>(kBlock);
  while (offset < end) {
    const auto most = static_cast<size_t>(std::min(kBlock, end - offset));
    const ssize_t got = ::pread(from, block.get(), most, offset);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw FailureFromErrno(errno, path, Copying());
    if (got == 0) return;
    WriteAll(to, block.get(), static_cast<size_t>(got), path, Copying());
    offset += got;
  }
}

bool KernelCannotCopy(int error) {
  return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP ||
         error == EBADF || error == EPERM;
}

/// The bytes of `from` between `offset` and `end` to where `to` stands: inside the kernel, else
/// through a buffer of ours.
void CopyStretch(int from, loff_t offset, off_t end, int to, const QString& path) {
  constexpr off_t kMost = off_t{1} << 30;
  while (offset < end) {
    const auto most = static_cast<size_t>(std::min(kMost, end - offset));
    const ssize_t copied = ::copy_file_range(from, &offset, to, nullptr, most, 0);
    if (copied > 0) continue;
    if (copied < 0 && errno == EINTR) continue;
    if (copied < 0 && !KernelCannotCopy(errno)) throw FailureFromErrno(errno, path, Copying());
    // At the end of the file the blocks find nothing left; some file systems claim an early end.
    return CopyByBlocks(from, offset, end, to, path);
  }
}

bool HasGaps(const struct stat& file) {
  constexpr off_t kBlock = 512;
  return file.st_blocks * kBlock < file.st_size;
}

/// A gap of a file is one in its copy too: a giant file may be nothing else.
void CopyBetweenGaps(int from, off_t size, int to, const QString& path) {
  off_t at = 0;
  while (at < kEndOfFile) {
    off_t begin = ::lseek(from, at, SEEK_DATA);
    if (begin < 0 && errno == ENXIO) break;
    // Not every file system knows where its gaps are.
    if (begin < 0) begin = at;
    const off_t end = ::lseek(from, begin, SEEK_HOLE);
    at = end > begin ? end : kEndOfFile;
    if (::lseek(to, begin, SEEK_SET) < 0) throw FailureFromErrno(errno, path, Copying());
    CopyStretch(from, begin, at, to, path);
  }
  if (at < size && ::ftruncate(to, size) != 0) throw FailureFromErrno(errno, path, Copying());
}

/// The bytes of `from` into the empty file `to`: shared blocks where the file system can.
void CopyBytes(int from, const struct stat& source, int to, const QString& path) {
  if (::ioctl(to, FICLONE, from) == 0) return;
  if (HasGaps(source)) return CopyBetweenGaps(from, source.st_size, to, path);
  CopyStretch(from, 0, kEndOfFile, to, path);
}

void KeepTimes(int fd, const struct stat& source) {
  const struct timespec times[2] = {source.st_atim, source.st_mtim};
  // A file system without times still holds the bytes.
  (void)::futimens(fd, times);
}

struct stat RegularFile(int fd, const QString& path) {
  struct stat status = {};
  if (::fstat(fd, &status) != 0) throw FailureFromErrno(errno, path, Copying());
  if (S_ISDIR(status.st_mode))
    throw MakeFailure(failure::kFileNotFound, Copying(), path, QStringLiteral("it is a folder"));
  if (!S_ISREG(status.st_mode))
    throw MakeFailure(failure::kPermissionDenied, Copying(), path, QStringLiteral("it is no file"));
  return status;
}

Replacement FilledReplacement(int source_fd, const QString& source, const QString& target) {
  const struct stat status = RegularFile(source_fd, source);
  Replacement replacement(target, status.st_mode, Copying());
  if (replacement.Replaces(status))
    throw MakeFailure(failure::kPermissionDenied, Copying(), source,
                      QStringLiteral("it can't be copied onto itself"));
  CopyBytes(source_fd, status, replacement.fd(), replacement.target());
  KeepTimes(replacement.fd(), status);
  return replacement;
}

Descriptor OpenForReading(const QString& source, int flags = 0) {
  // Without O_NONBLOCK a pipe in place of a file would hold us up for ever.
  Descriptor file(::open(Encoded(source).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | flags));
  if (!file.valid()) throw FailureFromErrno(errno, source, Copying());
  return file;
}

/// A folder that was filled, and whose times are to be those of the folder it was copied from.
struct FilledFolder {
  QString path;
  struct stat source;

  [[nodiscard]] Descriptor WithItsTimes() const {
    Descriptor open(::open(Encoded(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!open.valid()) throw FailureFromErrno(errno, path, Copying());
    KeepTimes(open.get(), source);
    return open;
  }
};

}  // namespace

/// What a group has still to do: copies that are written and have no place yet, and folders whose
/// times each new place in them would change.
class CopyGroup::Waiting {
 public:
  explicit Waiting(const QString& folder) : disk_(DiskOf(folder)) {}

  void Add(Replacement file) {
    // Each of them is an open file.
    constexpr size_t kMost = 200;
    files_.push_back(std::move(file));
    if (files_.size() >= kMost) Place();
  }
  void Add(FilledFolder folder) { folders_.push_back(std::move(folder)); }
  void BeginToWrite(const Replacement& file) { early_.Begin(file.fd()); }
  /// Whether this is the first look at `folder`.
  [[nodiscard]] bool IsNew(const QString& folder) const { return !folders_seen_.contains(folder); }
  /// Whether what is copied into `folder` goes to the group's disk.
  [[nodiscard]] bool Covers(const QString& folder) {
    if (IsNew(folder)) folders_seen_[folder] = disk_ && DiskOf(folder) == disk_;
    return folders_seen_[folder];
  }

  void Finish() {
    Place();
    for (const FilledFolder& folder : std::exchange(folders_, {})) (void)folder.WithItsTimes();
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
    std::vector<Replacement> files = std::exchange(files_, {});
    if (!files.empty()) files.front().BringAllToDisk();
    for (Replacement& file : files) file.Replace();
  }

  std::vector<Replacement> files_;
  std::vector<FilledFolder> folders_;
  EarlyWriter early_;
  std::optional<dev_t> disk_;
  QHash<QString, bool> folders_seen_;  ///< and whether they lie on the group's disk
};

namespace {

/// Makes `folder` ready for a copy, and says how that is to come onto the disk: what a killed
/// process left there takes room that the copy may need.
Sync ReadyFor(const QString& folder, Sync when) {
  if (!when.group() || when.group()->waiting().IsNew(folder)) RemoveLeftovers(folder);
  return when.group() && !when.group()->waiting().Covers(folder) ? Sync::kNow : when;
}

void Finish(Replacement replacement, Sync when) {
  if (when.group())
    when.group()->waiting().BeginToWrite(replacement);
  else
    replacement.BringToDisk();
  if (when.group() && replacement.ReplacesFile())
    return when.group()->waiting().Add(std::move(replacement));
  replacement.Replace();
  if (when.name_now()) SyncFolder(replacement.folder());
}

/// Copies one folder tree. Unless it has a group to go with, files are staged in groups of its own:
/// their writing is started together and waited for together. Folders are synced once, at the end,
/// each before the one that holds it.
class FolderCopy {
 public:
  explicit FolderCopy(Sync when) : when_(when) {}

  /// The links that were left out.
  QStringList Run(const QString& source, const QString& target) {
    when_ = ReadyFor(QFileInfo(target).isDir() ? target : ParentOf(target), when_);
    CopyTree(source, target);
    if (when_.group()) {
      LeaveToGroup();
      return links_;
    }
    Flush();
    for (const FilledFolder& folder : folders_)
      SyncOpen(folder.WithItsTimes().get(), folder.path, Copying());
    SyncFolder(ParentOf(target));
    return links_;
  }

 private:
  void LeaveToGroup() {
    for (FilledFolder& folder : folders_) when_.group()->waiting().Add(std::move(folder));
  }

  void CopyTree(const QString& source, const QString& target) {
    struct stat status = {};
    if (::stat(Encoded(source).constData(), &status) != 0)
      throw FailureFromErrno(errno, source, Copying(), failure::kPathNotFound);
    if (!S_ISDIR(status.st_mode)) throw FailureFromErrno(ENOTDIR, source, Copying());
    MakeFolder(target, status.st_mode);
    RemoveLeftovers(target);
    for (const QString& name : NamesIn(source))
      CopyEntry(source + u'/' + name, target + u'/' + name);
    folders_.push_back({target, status});
  }

  static QStringList NamesIn(const QString& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(Encoded(folder).constData()),
                                                      [](DIR* dir) { return ::closedir(dir); });
    if (!entries) throw FailureFromErrno(errno, folder, Copying(), failure::kPathNotFound);
    QStringList names;
    while (const dirent* entry = ::readdir(entries.get())) {
      const QByteArray name(entry->d_name);
      if (name != "." && name != "..") names.append(QFile::decodeName(name));
    }
    return names;
  }

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
      throw FailureFromErrno(errno, source, Copying());
    if (S_ISDIR(status.st_mode)) return CopyTree(source, target);
    if (IsUnfinishedName(source.section(u'/', -1))) return;
    if (S_ISREG(status.st_mode)) return Stage(source, target);
    if (S_ISLNK(status.st_mode)) links_.append(source);
  }

  void Stage(const QString& source, const QString& target) {
    constexpr size_t kGroup = 64;
    const Descriptor file = OpenForReading(source, O_NOFOLLOW);
    Replacement copy = FilledReplacement(file.get(), source, target);
    if (when_.group()) return Finish(std::move(copy), when_);
    copy.StartSync();
    staged_.push_back(std::move(copy));
    if (staged_.size() >= kGroup) Flush();
  }

  void Flush() {
    for (const Replacement& file : staged_) file.BringToDisk();
    for (Replacement& file : staged_) file.Replace();
    staged_.clear();
  }

  Sync when_;
  std::vector<Replacement> staged_;
  std::vector<FilledFolder> folders_;
  QStringList links_;
};

void RefuseFolderIntoItself(const QString& source, const QString& target) {
  struct stat from = {};
  if (::stat(Encoded(source).constData(), &from) != 0)
    throw FailureFromErrno(errno, source, Copying(), failure::kPathNotFound);
  QString real = QFileInfo(target).canonicalFilePath();
  if (real.isEmpty()) real = QFileInfo(ParentOf(target)).canonicalFilePath();
  while (!real.isEmpty()) {
    struct stat above = {};
    if (::stat(Encoded(real).constData(), &above) == 0 && SameFile(from, above))
      throw MakeFailure(failure::kPermissionDenied, Copying(), source,
                        QStringLiteral("a folder can't be copied into itself"));
    if (real == QStringLiteral("/")) return;
    real = ParentOf(real);
  }
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
  const QString real = BehindLinks(target);
  when = ReadyFor(ParentOf(real), when);
  Finish(FilledReplacement(file.get(), source, real), when);
}

void CopyOpenFileDurably(int source_fd, const QString& target, Sync when) {
  when = ReadyFor(ParentOf(target), when);
  Finish(FilledReplacement(source_fd, target, target), when);
}

QStringList CopyFolderDurably(const QString& source, const QString& target, Sync when) {
  if (IsLink(source)) return {source};
  const QString from = WithoutTrailingSeparators(source);
  const QString to = WithoutTrailingSeparators(target);
  RefuseFolderIntoItself(from, to);
  return FolderCopy(when).Run(from, to);
}

void WriteFileDurably(const QString& path, const QByteArray& bytes) {
  const QString action = QStringLiteral("write");
  const QString real = BehindLinks(path);
  RemoveLeftovers(ParentOf(real));
  Replacement replacement(real, 0666, action);
  WriteAll(replacement.fd(), bytes.constData(), static_cast<size_t>(bytes.size()), path, action);
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
