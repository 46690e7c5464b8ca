#include "platform/Leftovers.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <csignal>

#include "platform/Descriptor.h"
#include "platform/FileCopy.h"
#include "support/Files.h"
#include "support/RunAsNobody.h"
#include "support/SystemCalls.h"

namespace kestrix {
namespace {

/// Any run but this one.
const QString kOfAnother = QStringLiteral(".kestrix-ffffffff-12-3.tmp");

class LeftoversTest : public ::testing::Test {
 protected:
  [[nodiscard]] QString At(const QString& name) const { return folder_.filePath(name); }
  [[nodiscard]] QStringList NamesIn(const QString& name = ".") const {
    return QDir(At(name)).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                    QDir::NoDotAndDotDot);
  }
  /// What a process that was killed leaves in that folder.
  [[nodiscard]] QString GivenLeftover(const QString& folder = ".") const {
    const QString path = NextUnfinishedName(QDir::cleanPath(At(folder)));
    WriteFile(path, "half of a copy");
    return path;
  }
  [[nodiscard]] static Descriptor Open(const QString& path) {
    return Descriptor(::open(path.toUtf8().constData(), O_RDWR | O_CLOEXEC));
  }

  QTemporaryDir folder_;
};

TEST_F(LeftoversTest, NamesAreKnownAgainAndNeverTheSame) {
  const QString first = NextUnfinishedName("/a");
  const QString second = NextUnfinishedName("/a");
  EXPECT_NE(first, second);
  EXPECT_TRUE(first.startsWith("/a/.kestrix-"));
  EXPECT_TRUE(IsUnfinishedName(first.section('/', -1)));
  EXPECT_TRUE(IsUnfinishedName(kOfAnother));
}

TEST_F(LeftoversTest, FilesOfOtherNamesStay) {
  const QStringList names{".kestrix",
                          ".kestrix-12-3.tmp",
                          ".kestrix-ffffffff-12-3.tmp.bak",
                          ".kestrix-ffffffff-12-3.tmp\n",
                          ".kestrix-ffffffff-x-3.tmp",
                          "kestrix-ffffffff-12-3.tmp",
                          "a.jpg",
                          "my.kestrix-ffffffff-12-3.tmp"};
  for (const QString& name : names) {
    EXPECT_FALSE(IsUnfinishedName(name)) << name.toStdString();
    WriteFile(At(name), "a person's own");
  }
  RemoveLeftovers(folder_.path(), std::chrono::seconds(0));
  EXPECT_EQ(NamesIn().size(), names.size());
}

TEST_F(LeftoversTest, CopyOfALivingProcessStaysAndThatOfAKilledOneGoes) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const Descriptor file(::open(NextUnfinishedName(folder_.path()).toUtf8().constData(),
                                 O_CREAT | O_EXCL | O_WRONLY, 0600));
    const bool held = file.valid() && HoldUnfinished(file.get());
    if (!held || ::write(writing.get(), "h", 1) != 1) ::_exit(1);
    for (;;) ::pause();
  }
  writing = Descriptor();
  char told = 0;
  ASSERT_EQ(::read(reading.get(), &told, 1), 1);

  RemoveLeftovers(folder_.path(), std::chrono::seconds(0));
  EXPECT_EQ(NamesIn().size(), 1);

  ::kill(child, SIGKILL);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  RemoveLeftovers(folder_.path());
  EXPECT_EQ(NamesIn(), QStringList());
}

TEST_F(LeftoversTest, CopyOfAnotherMachineStaysUntilItWasLeftAlone) {
  WriteFile(At(kOfAnother), "half of a copy");
  RemoveLeftovers(folder_.path());
  EXPECT_EQ(NamesIn(), QStringList{kOfAnother});
  // Nor does an old time of its bytes, which is that of the source, make it one that was left.
  const struct timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, At(kOfAnother).toUtf8().constData(), times, 0), 0);
  RemoveLeftovers(folder_.path());
  EXPECT_EQ(NamesIn(), QStringList{kOfAnother});
  RemoveLeftovers(folder_.path(), std::chrono::seconds(0));
  EXPECT_EQ(NamesIn(), QStringList());
}

TEST_F(LeftoversTest, CopyOfAnotherMachineThatIsHeldStaysHoweverLongItTakes) {
  WriteFile(At(kOfAnother), "half of a copy");
  const Descriptor writer = Open(At(kOfAnother));
  ASSERT_TRUE(HoldUnfinished(writer.get()));
  RemoveLeftovers(folder_.path(), std::chrono::seconds(0));
  EXPECT_EQ(NamesIn(), QStringList{kOfAnother});
}

TEST_F(LeftoversTest, FileThatSomebodyIsAboutToRemoveCannotBeHeld) {
  WriteFile(At(kOfAnother), "half of a copy");
  const Descriptor remover = Open(At(kOfAnother));
  const Descriptor writer = Open(At(kOfAnother));
  ASSERT_TRUE(HoldUnfinished(remover.get()));
  EXPECT_FALSE(HoldUnfinished(writer.get()));
}

TEST_F(LeftoversTest, FolderOrLinkOfSuchANameStays) {
  WriteFile(At("mine"), "a person's own");
  const QString folder = NextUnfinishedName(folder_.path());
  const QString link = NextUnfinishedName(folder_.path());
  ASSERT_TRUE(QDir().mkdir(folder));
  ASSERT_TRUE(QFile::link(At("mine"), link));
  RemoveLeftovers(folder_.path(), std::chrono::seconds(0));
  EXPECT_TRUE(QFileInfo(folder).isDir());
  EXPECT_TRUE(QFileInfo(link).isSymLink());
  EXPECT_EQ(ReadFile(At("mine")), "a person's own");
}

TEST_F(LeftoversTest, FolderThatIsMissingOrMayNotBeReadIsPassedOver) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  RemoveLeftovers(At("none"));
  ASSERT_TRUE(QDir(folder_.path()).mkdir("closed"));
  const QString leftover = GivenLeftover("closed");
  GiveToNobody(folder_.path());
  ASSERT_EQ(::chmod(At("closed").toUtf8().constData(), 0555), 0);
  EXPECT_EQ(RunAsNobody([&] {
              RemoveLeftovers(At("closed"));
              return QStringLiteral("done");
            }).value_or("no report"),
            "done");
  EXPECT_TRUE(QFileInfo::exists(leftover));
  ::chmod(At("closed").toUtf8().constData(), 0755);
}

// What copies do about them.

TEST_F(LeftoversTest, EachWayIntoAFolderRemovesWhatWasLeftThere) {
  WriteFile(At("source"), "new");
  ASSERT_TRUE(QDir(folder_.path()).mkpath("from/below"));
  ASSERT_TRUE(QDir(folder_.path()).mkpath("to/below"));
  WriteFile(At("from/below/a"), "new");
  const auto expect_gone = [](const QString& leftover) {
    EXPECT_FALSE(QFileInfo::exists(leftover)) << leftover.toStdString();
  };

  QString leftover = GivenLeftover();
  CopyFileDurably(At("source"), At("target"));
  expect_gone(leftover);

  leftover = GivenLeftover();
  CopyOpenFileDurably(Open(At("source")).get(), At("target"));
  expect_gone(leftover);

  leftover = GivenLeftover();
  WriteFileDurably(At("target"), "text");
  expect_gone(leftover);

  leftover = GivenLeftover("to");
  const QString below = GivenLeftover("to/below");
  CopyFolderDurably(At("from"), At("to"));
  expect_gone(leftover);
  expect_gone(below);

  leftover = GivenLeftover("to");
  CopyGroup group(folder_.path());
  CopyFileDurably(At("source"), At("to/b"), Sync::With(group));
  expect_gone(leftover);
}

TEST_F(LeftoversTest, CopyOverALinkCleansUpWhereTheFileLies) {
  WriteFile(At("source"), "new");
  ASSERT_TRUE(QDir(folder_.path()).mkdir("far"));
  WriteFile(At("far/file"), "old");
  ASSERT_TRUE(QFile::link(At("far/file"), At("link")));
  const QString leftover = GivenLeftover("far");
  CopyFileDurably(At("source"), At("link"));
  EXPECT_FALSE(QFileInfo::exists(leftover));
}

TEST_F(LeftoversTest, FolderCopyLeavesUnfinishedCopiesOfTheDeadAndOfTheLivingOut) {
  ASSERT_TRUE(QDir(folder_.path()).mkpath("from/below"));
  WriteFile(At("from/a.jpg"), "a picture");
  WriteFile(At("from/" + kOfAnother), "half of a copy");
  const QString living = GivenLeftover("from/below");
  const Descriptor writer = Open(living);
  ASSERT_TRUE(HoldUnfinished(writer.get()));

  CopyFolderDurably(At("from"), At("to"));

  EXPECT_EQ(NamesIn("to"), (QStringList{"a.jpg", "below"}));
  EXPECT_EQ(NamesIn("to/below"), QStringList());
  // The source is left as it is.
  EXPECT_TRUE(QFileInfo::exists(living));
  EXPECT_TRUE(QFileInfo::exists(At("from/" + kOfAnother)));
}

/// Copies over `target` in a child that is killed at the moment when the copy was to take its
/// place.
void KillBeforeItsPlace(const QString& source, const QString& target, bool has_unnamed_files) {
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const bool limited = (has_unnamed_files || RefuseUnnamedFiles()) && DieAtRename();
    if (limited) CopyFileDurably(source, target);
    ::_exit(1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
}

class LeftoversKilledTest : public LeftoversTest, public ::testing::WithParamInterface<bool> {};

TEST_P(LeftoversKilledTest, CopierThatIsKilledBeforeItsCopyHasItsPlaceLeavesWhatTheNextRemoves) {
  KESTRIX_SKIP_WITHOUT_LIMITS();
  WriteFile(At("source"), "new");
  WriteFile(At("target"), "old");

  KillBeforeItsPlace(At("source"), At("target"), GetParam());

  EXPECT_EQ(ReadFile(At("target")), "old");
  ASSERT_EQ(NamesIn().size(), 3);
  EXPECT_TRUE(IsUnfinishedName(NamesIn().first()));

  CopyFileDurably(At("source"), At("target"));
  EXPECT_EQ(ReadFile(At("target")), "new");
  EXPECT_EQ(NamesIn(), (QStringList{"source", "target"}));
}

TEST_P(LeftoversKilledTest, CopyOnADiskOfEitherKindIsWhole) {
  KESTRIX_SKIP_WITHOUT_LIMITS();
  WriteFile(At("source"), QByteArray(300'000, 'x'));
  WriteFile(At("target"), "old");
  const auto report = RunInChild([this] {
    if (!GetParam() && !RefuseUnnamedFiles()) return QStringLiteral("not limited");
    CopyFileDurably(At("source"), At("target"));
    CopyFileDurably(At("source"), At("fresh"));
    return QStringLiteral("copied");
  });
  EXPECT_EQ(report.value_or("no report"), "copied");
  EXPECT_EQ(ReadFile(At("target")), QByteArray(300'000, 'x'));
  EXPECT_EQ(ReadFile(At("fresh")), QByteArray(300'000, 'x'));
  EXPECT_EQ(NamesIn(), (QStringList{"fresh", "source", "target"}));
}

INSTANTIATE_TEST_SUITE_P(EachDisk, LeftoversKilledTest, ::testing::Bool(), [](const auto& disk) {
  return disk.param ? "WithUnnamedFiles" : "WithNamedFilesOnly";
});

}  // namespace
}  // namespace kestrix
