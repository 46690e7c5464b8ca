#include "platform/Leftovers.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <csignal>
#include <functional>

#include "platform/Descriptor.h"
#include "platform/FileCopy.h"
#include "support/Files.h"
#include "support/RunAsNobody.h"
#include "support/SystemCalls.h"

namespace kestrix {
namespace {

class LeftoversTest : public ::testing::Test {
 protected:
  [[nodiscard]] QString At(const QString& name) const { return folder_.filePath(name); }
  [[nodiscard]] QStringList NamesIn(const QString& name = ".") const {
    return QDir(At(name)).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                    QDir::NoDotAndDotDot);
  }
  /// What a process that was killed leaves in that folder.
  [[nodiscard]] QString GivenLeftover(const QString& folder = ".") const {
    const QString path = PartIn(QDir::cleanPath(At(folder)));
    WriteFile(path, "half of a copy");
    return path;
  }
  [[nodiscard]] static Descriptor Open(const QString& path) {
    return Descriptor(::open(path.toUtf8().constData(), O_RDWR | O_CLOEXEC));
  }

  QTemporaryDir folder_;
};

TEST_F(LeftoversTest, CopyOfALivingProcessStaysAndThatOfAKilledOneGoes) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const QString part = GivenLeftover();
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const Descriptor file = Open(part);
    if (!HoldPart(file.get()) || ::write(writing.get(), "h", 1) != 1) ::_exit(1);
    for (;;) ::pause();
  }
  writing = Descriptor();
  char told = 0;
  ASSERT_EQ(::read(reading.get(), &told, 1), 1);

  RemoveLeftover(folder_.path());
  EXPECT_TRUE(QFileInfo::exists(part));

  ::kill(child, SIGKILL);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  RemoveLeftover(folder_.path());
  EXPECT_EQ(NamesIn(), QStringList());
}

TEST_F(LeftoversTest, CopyWaitsForThePlaceThatALivingOneHas) {
  WriteFile(At("source"), "new");
  WriteFile(At("target"), "old");
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const Descriptor reading(ends[0]);
  const Descriptor writing(ends[1]);
  const QString part = GivenLeftover();
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const Descriptor file = Open(part);
    const Descriptor openings(::inotify_init());
    char event[4096];
    // The other one looks at it before it begins, and whenever it wants the name.
    const bool done =
        HoldPart(file.get()) &&
        ::inotify_add_watch(openings.get(), part.toUtf8().constData(), IN_OPEN) >= 0 &&
        ::write(writing.get(), "h", 1) == 1 && ::read(openings.get(), event, sizeof event) > 0 &&
        ::read(openings.get(), event, sizeof event) > 0 &&
        ::rename(part.toUtf8().constData(), At("mine").toUtf8().constData()) == 0;
    ::_exit(done ? 0 : 1);
  }
  char told = 0;
  ASSERT_EQ(::read(reading.get(), &told, 1), 1);
  CopyFileDurably(At("source"), At("target"));
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(ReadFile(At("mine")), "half of a copy");
  EXPECT_EQ(ReadFile(At("target")), "new");
}

TEST_F(LeftoversTest, OtherFilesStayAndALinkGoesWithoutWhatItLeadsTo) {
  WriteFile(At("mine"), "a person's own");
  WriteFile(At(".kestrix.part.bak"), "a person's own");
  ASSERT_TRUE(QFile::link(At("mine"), At(kPartName)));
  CopyFileDurably(At("mine"), At(".kestrix.part.bak"));
  EXPECT_EQ(NamesIn(), (QStringList{".kestrix.part.bak", "mine"}));
  EXPECT_EQ(ReadFile(At("mine")), "a person's own");
}

TEST_F(LeftoversTest, FolderThatIsMissingOrMayNotBeWrittenIsPassedOver) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  RemoveLeftover(At("none"));
  ASSERT_TRUE(QDir(folder_.path()).mkdir("closed"));
  const QString leftover = GivenLeftover("closed");
  GiveToNobody(folder_.path());
  ASSERT_EQ(::chmod(At("closed").toUtf8().constData(), 0555), 0);
  EXPECT_EQ(RunAsNobody([&] {
              RemoveLeftover(At("closed"));
              return QStringLiteral("done");
            }).value_or("no report"),
            "done");
  EXPECT_TRUE(QFileInfo::exists(leftover));
  ::chmod(At("closed").toUtf8().constData(), 0755);
}

TEST_F(LeftoversTest, EachWayIntoAFolderRemovesWhatWasLeftThere) {
  WriteFile(At("source"), "new");
  ASSERT_TRUE(QDir(folder_.path()).mkpath("from/below"));
  ASSERT_TRUE(QDir(folder_.path()).mkpath("far"));
  WriteFile(At("from/below/a"), "new");
  WriteFile(At("far/file"), "old");
  ASSERT_TRUE(QFile::link(At("far/file"), At("link")));
  CopyFolderDurably(At("from"), At("to"));
  const struct {
    const char* folder;
    std::function<void()> act;
  } kWays[] = {
      {".", [this] { CopyFileDurably(At("source"), At("target")); }},
      {".", [this] { CopyOpenFileDurably(Open(At("source")).get(), At("target")); }},
      {".", [this] { WriteFileDurably(At("target"), "text"); }},
      {"far", [this] { CopyFileDurably(At("source"), At("link")); }},
      {"to/below", [this] { CopyFolderDurably(At("from"), At("to")); }},
  };
  for (const auto& way : kWays) {
    const QString leftover = GivenLeftover(way.folder);
    way.act();
    EXPECT_FALSE(QFileInfo::exists(leftover));
  }
}

TEST_F(LeftoversTest, FolderCopyLeavesUnfinishedCopiesOut) {
  ASSERT_TRUE(QDir(folder_.path()).mkpath("from"));
  WriteFile(At("from/a.jpg"), "a picture");
  const QString leftover = GivenLeftover("from");
  CopyFolderDurably(At("from"), At("to"));
  EXPECT_EQ(NamesIn("to"), QStringList{"a.jpg"});
  // The source is left as it is.
  EXPECT_TRUE(QFileInfo::exists(leftover));
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
  EXPECT_EQ(NamesIn().first(), kPartName);

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
