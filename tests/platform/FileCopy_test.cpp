#include "platform/FileCopy.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <csignal>

#include "platform/Descriptor.h"
#include "support/Files.h"
#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

class FileCopyTest : public ::testing::Test {
 protected:
  [[nodiscard]] QString At(const QString& name) const { return folder_.filePath(name); }
  [[nodiscard]] QStringList AllNames() const {
    return QDir(folder_.path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  }

  QTemporaryDir folder_;
};

QByteArray Bytes(qsizetype size, char seed) {
  QByteArray bytes(size, '\0');
  for (qsizetype i = 0; i < size; ++i) bytes[i] = static_cast<char>(seed + i % 61);
  return bytes;
}

TEST_F(FileCopyTest, CopyHoldsTheBytesAndTheTime) {
  const QByteArray bytes = Bytes(3'000'001, 'a');
  WriteFile(At("source"), bytes);
  QFile source(At("source"));
  ASSERT_TRUE(source.open(QIODevice::ReadWrite));
  const QDateTime time(QDate(2011, 3, 4), QTime(5, 6, 7));
  ASSERT_TRUE(source.setFileTime(time, QFileDevice::FileModificationTime));
  source.close();

  CopyFileDurably(At("source"), At("target"));

  EXPECT_EQ(ReadFile(At("target")), bytes);
  EXPECT_EQ(QFileInfo(At("target")).lastModified(), time);
  EXPECT_EQ(AllNames(), QStringList({"source", "target"}));
  WriteFile(At("source"), "");
  CopyFileDurably(At("source"), At("target"));
  EXPECT_EQ(ReadFile(At("target")), "") << "an empty one is copied too";
  // Files of /proc have no size, so that nothing but reading tells what is in them.
  CopyFileDurably("/proc/version", At("target"));
  EXPECT_EQ(ReadFile(At("target")), ReadFile("/proc/version"));
}

TEST_F(FileCopyTest, CopyAcrossFileSystemsHoldsTheBytes) {
  QTemporaryDir other("/dev/shm/kestrix-XXXXXX");
  if (!other.isValid()) GTEST_SKIP() << "there is no memory disk here";
  const QByteArray bytes = Bytes(700'001, 'b');
  WriteFile(other.filePath("source"), bytes);
  CopyFileDurably(other.filePath("source"), At("target"));
  EXPECT_EQ(ReadFile(At("target")), bytes);
  CopyFileDurably(At("target"), other.filePath("back"));
  EXPECT_EQ(ReadFile(other.filePath("back")), bytes);
}

TEST_F(FileCopyTest, OpenFileIsCopiedWholeWhateverItsOffsetAndStaysOpen) {
  WriteFile(At("source"), "0123456789");
  const Descriptor file(::open(At("source").toUtf8().constData(), O_RDONLY));
  ASSERT_EQ(::lseek(file.get(), 7, SEEK_SET), 7);
  CopyOpenFileDurably(file.get(), At("target"));
  EXPECT_EQ(ReadFile(At("target")), "0123456789");
  EXPECT_EQ(::lseek(file.get(), 0, SEEK_CUR), 7);
}

TEST_F(FileCopyTest, OpenFileIsCopiedOverALinkAndNotThroughIt) {
  WriteFile(At("source"), "new");
  WriteFile(At("far"), "stays");
  ASSERT_TRUE(QFile::link(At("far"), At("link")));
  const Descriptor file(::open(At("source").toUtf8().constData(), O_RDONLY));
  CopyOpenFileDurably(file.get(), At("link"));
  EXPECT_FALSE(IsLink(At("link")));
  EXPECT_EQ(ReadFile(At("link")), "new");
  EXPECT_EQ(ReadFile(At("far")), "stays");
}

TEST_F(FileCopyTest, FileOntoItselfIsRefusedByEveryName) {
  WriteFile(At("file"), "kept");
  ASSERT_EQ(::symlink("file", At("soft").toUtf8().constData()), 0);
  ASSERT_EQ(::link(At("file").toUtf8().constData(), At("hard").toUtf8().constData()), 0);
  for (const char* name : {"file", "soft", "hard", "./file"}) {
    EXPECT_EQ(FailureOf([&] { CopyFileDurably(At("file"), At(name)); }), failure::kPermissionDenied)
        << name;
  }
  EXPECT_EQ(ReadFile(At("file")), "kept");
  EXPECT_EQ(AllNames().size(), 3);
}

TEST_F(FileCopyTest, CopyOverALinkReplacesTheFileBehindIt) {
  ASSERT_TRUE(QDir(folder_.path()).mkdir("far"));
  WriteFile(At("far/file"), "old");
  WriteFile(At("source"), "new");
  ASSERT_EQ(::symlink("far/file", At("link").toUtf8().constData()), 0);
  CopyFileDurably(At("source"), At("link"));
  EXPECT_TRUE(QFileInfo(At("link")).isSymLink());
  EXPECT_EQ(ReadFile(At("far/file")), "new");
}

TEST_F(FileCopyTest, MissingSourceAndMissingFolderAreToldApart) {
  WriteFile(At("source"), "x");
  EXPECT_EQ(FailureOf([&] { CopyFileDurably(At("none"), At("target")); }), failure::kFileNotFound);
  EXPECT_EQ(FailureOf([&] { CopyFileDurably(At("source"), At("none/target")); }),
            failure::kPathNotFound);
  EXPECT_EQ(FailureOf([&] { CopyFileDurably(At("source"), folder_.path()); }),
            failure::kPermissionDenied);
  EXPECT_EQ(FailureOf([&] { CopyFileDurably(folder_.path(), At("target")); }),
            failure::kFileNotFound);
}

TEST_F(FileCopyTest, PipeInPlaceOfTheSourceIsRefusedAtOnce) {
  ASSERT_EQ(::mkfifo(At("pipe").toUtf8().constData(), 0600), 0);
  EXPECT_EQ(FailureOf([&] { CopyFileDurably(At("pipe"), At("target")); }),
            failure::kPermissionDenied);
  EXPECT_EQ(AllNames(), QStringList({"pipe"}));
}

TEST_F(FileCopyTest, TargetThatExistsKeepsItsRightsAndACopyOfAProtectedFileCanBeWritten) {
  WriteFile(At("source"), "new");
  ASSERT_EQ(::chmod(At("source").toUtf8().constData(), 0444), 0);
  WriteFile(At("shared"), "old");
  ASSERT_EQ(::chmod(At("shared").toUtf8().constData(), 0664), 0);

  CopyFileDurably(At("source"), At("shared"));
  CopyFileDurably(At("source"), At("fresh"));

  EXPECT_TRUE(QFileInfo(At("shared")).permission(QFileDevice::WriteGroup));
  EXPECT_TRUE(QFileInfo(At("fresh")).permission(QFileDevice::WriteOwner));
}

TEST_F(FileCopyTest, FullDiskLeavesTheOldFileWholeAndNothingElse) {
  WriteFile(At("source"), Bytes(400'000, 'c'));
  WriteFile(At("target"), "old and whole");
  const auto report = RunInChild([&] {
    const struct rlimit limit = {100'000, 100'000};
    ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    CopyFileDurably(At("source"), At("target"));
    return QStringLiteral("copied");
  });
  ASSERT_TRUE(report.has_value());
  EXPECT_TRUE(report->startsWith(QStringLiteral("Failure 61: "))) << report->toStdString();
  EXPECT_TRUE(report->contains(At("target"))) << report->toStdString();
  EXPECT_EQ(ReadFile(At("target")), "old and whole");
  EXPECT_EQ(AllNames(), QStringList({"source", "target"}));
}

TEST_F(FileCopyTest, FolderOrTargetWithoutTheRightToWriteIsPermissionDenied) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  WriteFile(At("source"), "new");
  ASSERT_TRUE(QDir(folder_.path()).mkdir("closed"));
  WriteFile(At("closed/target"), "old");
  ASSERT_EQ(::chmod(At("closed").toUtf8().constData(), 0555), 0);
  WriteFile(At("protected"), "old");
  ASSERT_EQ(::chmod(At("protected").toUtf8().constData(), 0444), 0);
  GiveToNobody(folder_.path());
  for (const char* target : {"closed/target", "protected"}) {
    const auto report = RunAsNobody([&] {
      CopyFileDurably(At("source"), At(target));
      return QStringLiteral("copied");
    });
    EXPECT_TRUE(report.value_or("").startsWith("Failure 70: ")) << target;
    EXPECT_EQ(ReadFile(At(target)), "old") << target;
  }
  ::chmod(At("closed").toUtf8().constData(), 0755);
}

TEST_F(FileCopyTest, KilledCopierLeavesTheOldFileOrTheNewOneWhole) {
  const QByteArray old_bytes = Bytes(600'000, 'd');
  const QByteArray new_bytes = Bytes(900'000, 'e');
  WriteFile(At("old"), old_bytes);
  WriteFile(At("new"), new_bytes);
  int old_seen = 0;
  int new_seen = 0;
  // A slow disk needs longer until the first new file stands.
  for (int round = 0; round < 60 || (new_seen == 0 && round < 3000); ++round) {
    CopyFileDurably(At("old"), At("target"));
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      // Moments from before the first byte to behind several whole copies.
      const struct itimerval death = {{0, 0}, {0, 1 + round * 311}};
      ::setitimer(ITIMER_REAL, &death, nullptr);
      try {
        for (;;) {
          CopyFileDurably(At("new"), At("target"));
          CopyFileDurably(At("old"), At("target"));
        }
      } catch (const Failure&) {
        ::_exit(3);
      }
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << WEXITSTATUS(status);
    const QByteArray found = ReadFile(At("target"));
    ASSERT_TRUE(found == old_bytes || found == new_bytes) << "round " << round;
    ++(found == old_bytes ? old_seen : new_seen);
  }
  EXPECT_GT(old_seen, 0);
  EXPECT_GT(new_seen, 0);
}

TEST_F(FileCopyTest, NewFilesOfAGroupStandAtOnceAndReplacedOnesAtItsEnd) {
  WriteFile(At("source"), "new");
  WriteFile(At("old"), "old");
  CopyGroup group(folder_.path());
  CopyFileDurably(At("source"), At("fresh"), Sync::With(group));
  CopyFileDurably(At("source"), At("old"), Sync::With(group));
  EXPECT_EQ(ReadFile(At("fresh")), "new");
  EXPECT_EQ(ReadFile(At("old")), "old");
  group.Finish();
  EXPECT_EQ(ReadFile(At("old")), "new");
  EXPECT_EQ(AllNames(), QStringList({"fresh", "old", "source"}));
}

TEST_F(FileCopyTest, CopyOfAGroupThatGoesToAnotherDiskWaitsForNoOther) {
  QTemporaryDir other("/dev/shm/kestrix-XXXXXX");
  if (!other.isValid()) GTEST_SKIP() << "there is no memory disk here";
  QDir(folder_.path()).mkpath("from");
  WriteFile(At("from/a"), "new");
  for (const char* name : {"file", "to/a"}) {
    QDir(other.path()).mkpath("to");
    WriteFile(other.filePath(name), "old");
  }
  // Where a person put a folder of the installation onto another disk, a link leads there.
  ASSERT_TRUE(QFile::link(other.path(), At("far")));
  CopyGroup group(folder_.path());
  CopyFileDurably(At("from/a"), other.filePath("file"), Sync::With(group));
  CopyFolderDurably(At("from"), At("far/to"), Sync::With(group));
  EXPECT_EQ(ReadFile(other.filePath("file")), "new");
  EXPECT_EQ(ReadFile(other.filePath("to/a")), "new");
}

TEST_F(FileCopyTest, GroupOfAnySizeIsWholeWhenItIsGivenUp) {
  QDir(folder_.path()).mkpath("from");
  QDir(folder_.path()).mkpath("to");
  constexpr int kMoreThanOneLot = 150;
  for (int i = 0; i < kMoreThanOneLot; ++i) {
    WriteFile(At(QStringLiteral("from/%1").arg(i)), Bytes(1000 + i, 'g'));
    WriteFile(At(QStringLiteral("to/%1").arg(i)), "old");
  }
  const struct timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, At("from").toUtf8().constData(), times, 0), 0);
  {
    CopyGroup group(folder_.path());
    CopyFolderDurably(At("from"), At("to"), Sync::With(group));
  }
  for (int i = 0; i < kMoreThanOneLot; ++i)
    ASSERT_EQ(ReadFile(At(QStringLiteral("to/%1").arg(i))), Bytes(1000 + i, 'g'));
  EXPECT_EQ(QFileInfo(At("to")).lastModified().toSecsSinceEpoch(), 1'000'000'000);
}

TEST_F(FileCopyTest, FolderIsCopiedWithAllBelowItAndItsTimesOverWhatStandsThere) {
  QDir(folder_.path()).mkpath("from/Prj1/deep");
  QDir(folder_.path()).mkpath("to/Prj1");
  WriteFile(At("to/Prj1/0.jpg"), "old");
  WriteFile(At("to/Prj1/b"), "stays");
  for (int i = 0; i < 150; ++i)
    WriteFile(At(QStringLiteral("from/Prj1/%1.jpg").arg(i)), Bytes(1000 + i, 'f'));
  WriteFile(At("from/Prj1/deep/.hidden"), "h");
  const struct timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, At("from/Prj1").toUtf8().constData(), times, 0), 0);

  CopyFolderDurably(At("from"), At("to/"));

  for (int i = 0; i < 150; ++i)
    ASSERT_EQ(ReadFile(At(QStringLiteral("to/Prj1/%1.jpg").arg(i))), Bytes(1000 + i, 'f'));
  EXPECT_EQ(ReadFile(At("to/Prj1/deep/.hidden")), "h");
  EXPECT_EQ(QFileInfo(At("to/Prj1")).lastModified().toSecsSinceEpoch(), 1'000'000'000);
  EXPECT_EQ(
      QDir(At("to/Prj1")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
      152);
  EXPECT_EQ(ReadFile(At("to/Prj1/b")), "stays");
}

TEST_F(FileCopyTest, LinksOfAFolderAreLeftOutAndTold) {
  QDir(folder_.path()).mkpath("from/below");
  WriteFile(At("letter"), "nobody's business");
  ASSERT_TRUE(QFile::link(At("letter"), At("from/below/a.jpg")));
  ASSERT_EQ(::symlink(".", At("from/circle").toUtf8().constData()), 0);
  QStringList links = CopyFolderDurably(At("from"), At("to"));
  links.sort();
  EXPECT_EQ(links, (QStringList{At("from/below/a.jpg"), At("from/circle")}));
  EXPECT_EQ(QDir(At("to")).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
            QStringList{"below"});
  EXPECT_TRUE(QDir(At("to/below")).isEmpty());
}

TEST_F(FileCopyTest, FolderThatIsALinkIsCopiedOnlyAsTheFolderBehindIt) {
  QDir(folder_.path()).mkpath("far");
  WriteFile(At("far/a"), "x");
  ASSERT_TRUE(QFile::link(At("far"), At("from")));
  EXPECT_EQ(CopyFolderDurably(At("from"), At("to")), QStringList{At("from")});
  EXPECT_FALSE(QFileInfo::exists(At("to")));
  EXPECT_EQ(CopyFolderDurably(At("from/"), At("to")), QStringList{});
  EXPECT_EQ(ReadFile(At("to/a")), "x");
}

TEST_F(FileCopyTest, LinksInThePlaceOfCopiesMakeWayForThem) {
  QDir(folder_.path()).mkpath("from/below");
  QDir(folder_.path()).mkpath("far/below");
  QDir(folder_.path()).mkpath("to");
  for (const char* name : {"a", "below/b"}) {
    WriteFile(At("from/" + QString(name)), "new");
    WriteFile(At("far/" + QString(name)), "stays");
  }
  ASSERT_TRUE(QFile::link(At("far/a"), At("to/a")));
  ASSERT_TRUE(QFile::link(At("far/below"), At("to/below")));
  ASSERT_TRUE(QFile::link(At("far"), At("all")));
  for (const char* target : {"to", "all"}) {
    CopyFolderDurably(At("from"), At(target));
    for (const char* name : {"a", "below/b"}) {
      EXPECT_EQ(ReadFile(At(QString(target) + '/' + name)), "new");
      EXPECT_EQ(ReadFile(At("far/" + QString(name))), "stays");
    }
  }
}

TEST_F(FileCopyTest, FolderIntoItselfIsRefused) {
  QDir(folder_.path()).mkpath("from/below");
  WriteFile(At("from/a"), "kept");
  ASSERT_EQ(::symlink("from", At("alias").toUtf8().constData()), 0);
  for (const char* name : {"from", "from/below/copy", "from/copy", "alias/copy", "from/"}) {
    EXPECT_EQ(FailureOf([&] { CopyFolderDurably(At("from"), At(name)); }),
              failure::kPermissionDenied)
        << name;
  }
  EXPECT_EQ(QDir(At("from")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
            QStringList({"a", "below"}));
}

TEST_F(FileCopyTest, MissingFolderAndAFileInItsPlaceAreToldApart) {
  QDir(folder_.path()).mkpath("from");
  WriteFile(At("file"), "x");
  EXPECT_EQ(FailureOf([&] { CopyFolderDurably(At("none"), At("to")); }), failure::kPathNotFound);
  EXPECT_EQ(FailureOf([&] { CopyFolderDurably(At("from"), At("none/to")); }),
            failure::kPathNotFound);
  EXPECT_EQ(FailureOf([&] { CopyFolderDurably(At("from"), At("file")); }), failure::kFileExists);
}

TEST_F(FileCopyTest, WrittenFileIsReplacedWhole) {
  WriteFile(At("file"), "a longer text than the new one");
  WriteFileDurably(At("file"), "new");
  EXPECT_EQ(ReadFile(At("file")), "new");
  WriteFile(At("source"), "newer");
  CopyFileDurably(At("source"), At("file"), Sync::kBytesNow);
  EXPECT_EQ(ReadFile(At("file")), "newer") << "though its name need not be on the disk yet";
  EXPECT_EQ(AllNames(), QStringList({"file", "source"}));
}

TEST(FailureFromErrnoTest, EachKindOfErrorHasItsNumberAndASentence) {
  struct Row {
    int error;
    int number;
  };
  constexpr Row kRows[] = {
      {ENOSPC, failure::kDiskFull},         {EDQUOT, failure::kDiskFull},
      {EACCES, failure::kPermissionDenied}, {EPERM, failure::kPermissionDenied},
      {EROFS, failure::kPermissionDenied},  {ENOENT, failure::kFileNotFound},
      {EEXIST, failure::kFileExists},       {EIO, failure::kDeviceError},
      {ENOTDIR, failure::kPathNotFound},    {EBADMSG, failure::kDeviceError},
  };
  for (const Row& row : kRows) {
    const Failure failure = FailureFromErrno(row.error, "/a/b", "copy");
    EXPECT_EQ(failure.number(), row.number) << row.error;
    EXPECT_TRUE(failure.description().startsWith("Failed to copy \"/a/b\": "));
  }
  EXPECT_EQ(FailureFromErrno(ENOENT, "/a", "list", failure::kPathNotFound).number(),
            failure::kPathNotFound);
}

}  // namespace
}  // namespace kestrix
