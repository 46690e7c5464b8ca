// A process that is killed while it writes a backup set or restores one: every file is the old one
// or the new one, whole.
#include <QTemporaryDir>

#include "Chance.h"
#include "Child.h"
#include "Disk.h"
#include "platform/FileCopy.h"
#include "store/DataControl.h"
#include "store/RecordSources.h"
#include "support/Files.h"

namespace kestrix::holds {
namespace {

constexpr int kRounds = 25;          // of each of the two
constexpr int kLongestRun = 60'000;  // microseconds

struct Copying {
  const char* name;
  void (*work)(const Disk& disk);
};

class KilledBackupTest : public ::testing::TestWithParam<Copying> {
 protected:
  void SetUp() override {
    ready.Lay();
    before = ready.Look();
    const QTemporaryDir place;
    ready.CopyTo(place.path());
    GetParam().work(Disk(place.path()));
    after = Disk(place.path()).Look();
    ASSERT_NE(before, after);
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
    ::testing::Values(Copying{"Backup", [](const Disk& disk) { disk.BackUp(); }},
                      Copying{"Restore", [](const Disk& disk) { disk.Restore(); }}),
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
      GetParam().work(disk);
      tell(QStringLiteral("done"));
    });
    ASSERT_TRUE(child.ListenFor(1, 10'000'000));
    child.ListenFor(2, chance.Between(0, kLongestRun));
    child.Kill();

    const Disk::State found = disk.Look();
    in_between += found != before && found != after ? 1 : 0;
    for (auto at = found.begin(); at != found.end(); ++at) {
      // A copy that was killed may leave its unfinished file, under a name that nobody reads.
      if (at.key().contains(QStringLiteral("/.kestrix-"))) continue;
      EXPECT_TRUE(at.value() == before.value(at.key()) || at.value() == after.value(at.key()))
          << at.key().toStdString() << ": " << at.value().toStdString();
    }
    for (const QString& path : before.keys()) {
      if (path.contains(QStringLiteral("Picfolder"))) continue;
      EXPECT_TRUE(found.contains(path)) << path.toStdString();
    }
    // Whoever tries again gets what an undisturbed run gives.
    ASSERT_NO_THROW(GetParam().work(disk));
    const Disk::State at_end = disk.Look();
    for (auto at = after.begin(); at != after.end(); ++at) {
      EXPECT_EQ(at_end.value(at.key()), at.value()) << at.key().toStdString();
    }
  }
  std::printf("%d kills found the copying half-way\n", in_between);
  EXPECT_GT(in_between, 0);
}

}  // namespace
}  // namespace kestrix::holds
