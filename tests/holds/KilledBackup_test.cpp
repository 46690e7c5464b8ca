// A process that is killed while it writes a backup set or restores one: every file is the old one
// or the new one, whole.
#include <signal.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <algorithm>

#include "Chance.h"
#include "Child.h"
#include "Disk.h"
#include "platform/Leftovers.h"
#include "store/DataControl.h"
#include "store/RecordSources.h"
#include "support/Files.h"
#include "support/SystemCalls.h"

namespace kestrix::holds {
namespace {

constexpr int kRounds = 25;          // of each of the two
constexpr int kLongestRun = 60'000;  // microseconds
constexpr int kSteps = 3;            // register, lists, the one study with its pictures

struct Copying {
  const char* name;
  void (*work)(const Disk& disk, const BackupWorker::StepDone& step_done);
};

void Unheard(const BackupWorker::Progress&) {}

class KilledBackupTest : public ::testing::TestWithParam<Copying> {
 protected:
  void SetUp() override {
    ready.Lay();
    before = ready.Look();
    const QTemporaryDir place;
    ready.CopyTo(place.path());
    GetParam().work(Disk(place.path()), Unheard);
    after = Disk(place.path()).Look();
    ASSERT_NE(before, after);
  }

  /// Each file that a killed process left is the old one or the new one, and whoever tries again
  /// gets what an undisturbed run gives.
  void ExpectOldOrNewAndTheNextRunToItsEnd(const Disk& disk, const Disk::State& found) const {
    for (auto at = found.begin(); at != found.end(); ++at) {
      if (IsUnfinished(at.key())) continue;
      EXPECT_TRUE(at.value() == before.value(at.key()) || at.value() == after.value(at.key()))
          << at.key().toStdString() << ": " << at.value().toStdString();
    }
    for (const QString& path : before.keys()) {
      if (path.contains(QStringLiteral("Picfolder"))) continue;
      EXPECT_TRUE(found.contains(path)) << path.toStdString();
    }
    ASSERT_NO_THROW(GetParam().work(disk, Unheard));
    const Disk::State at_end = disk.Look();
    for (auto at = after.begin(); at != after.end(); ++at) {
      EXPECT_EQ(at_end.value(at.key()), at.value()) << at.key().toStdString();
    }
    EXPECT_EQ(UnfinishedIn(at_end), 0);
  }

  /// A copy that was killed may leave its unfinished file, under a name that nobody reads, until
  /// the next copy goes into that folder.
  static bool IsUnfinished(const QString& path) { return path.endsWith(kPartName); }
  static qsizetype UnfinishedIn(const Disk::State& state) {
    return std::count_if(state.keyBegin(), state.keyEnd(), IsUnfinished);
  }

  QTemporaryDir folder;
  Disk ready{folder.path()};
  Disk::State before;
  Disk::State after;
};

std::string NameOf(const ::testing::TestParamInfo<Copying>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Each, KilledBackupTest,
    ::testing::Values(Copying{"Backup", [](const Disk& disk,
                                           const auto& step_done) { disk.BackUp(step_done); }},
                      Copying{"Restore", [](const Disk& disk,
                                            const auto& step_done) { disk.Restore(step_done); }}),
    NameOf);

TEST_P(KilledBackupTest, EveryFileIsOldOrNewWholeAndTheNextRunComesToItsEnd) {
  const int rounds = Rounds(kRounds);
  Chance chance(SeedOf(rounds, "kills in the middle of copying"));
  int in_between = 0;
  for (int round = 1; round <= rounds; ++round) {
    SCOPED_TRACE(round);
    const QTemporaryDir place;
    ready.CopyTo(place.path());
    const Disk disk(place.path());
    Child child([&](const Teller& tell) {
      tell(QStringLiteral("at work"));
      GetParam().work(disk, Unheard);
      tell(QStringLiteral("done"));
    });
    ASSERT_TRUE(child.ListenFor(1, 10'000'000));
    child.ListenFor(2, chance.Between(0, kLongestRun));
    child.Kill();
    const Disk::State found = disk.Look();
    in_between += found != before && found != after ? 1 : 0;
    ExpectOldOrNewAndTheNextRunToItsEnd(disk, found);
  }
  // How many depends on the disk; the test below hits the middle for certain.
  std::printf("%d kills found the copying half-way\n", in_between);
}

TEST_P(KilledBackupTest, BehindEachStepEveryFileIsOldOrNewWhole) {
  int unfinished = 0;
  for (int last_step = 1; last_step <= kSteps; ++last_step) {
    SCOPED_TRACE(last_step);
    const QTemporaryDir place;
    ready.CopyTo(place.path());
    const Disk disk(place.path());
    Child child([&](const Teller&) {
      int step = 0;
      GetParam().work(disk, [&](const BackupWorker::Progress&) {
        if (++step == last_step) ::kill(::getpid(), SIGKILL);
      });
    });
    EXPECT_FALSE(child.WaitForEnd());
    EXPECT_EQ(child.HowItEnded(), "killed by signal 9");
    const Disk::State found = disk.Look();
    unfinished += found != after ? 1 : 0;
    ExpectOldOrNewAndTheNextRunToItsEnd(disk, found);
  }
  EXPECT_GT(unfinished, 0);
}

TEST_P(KilledBackupTest, CopyThatHasNoPlaceYetIsLeftAndGoesWithTheNextRun) {
  KESTRIX_SKIP_WITHOUT_LIMITS();
  Child child([&](const Teller&) {
    if (DieAtRename()) GetParam().work(ready, Unheard);
  });
  EXPECT_FALSE(child.WaitForEnd());
  EXPECT_TRUE(child.HowItEnded().startsWith("killed")) << child.HowItEnded().toStdString();
  const Disk::State found = ready.Look();
  EXPECT_EQ(UnfinishedIn(found), 1);
  ExpectOldOrNewAndTheNextRunToItsEnd(ready, found);
}

}  // namespace
}  // namespace kestrix::holds
