// A process that is killed while it saves, adds and deletes tasks: what it committed is there, and
// the file is whole.
#include <QFile>
#include <QFileInfo>
#include <map>

#include "Chance.h"
#include "Child.h"
#include "store/DataControl.h"
#include "store/Database.h"
#include "store/RecordSources.h"
#include "support/Files.h"
#include "support/TestInstallation.h"

namespace kestrix::holds {
namespace {

constexpr int kRounds = 150;
constexpr int kStudy = 1;
constexpr int kMostTasks = 40;
constexpr int kLongestText = 60'000;
const QString kProject = QStringLiteral("P-1");

/// The tasks of the study: their descriptions by their titles, which are unique here.
using Tasks = std::map<QString, QString>;

/// One change as it is told before it is begun; its effect on the tasks follows from the line.
struct Change {
  QString verb;
  QString title;
  int number = 0;
  int length = 0;

  [[nodiscard]] QString Line() const {
    return QStringLiteral("%1 %2 %3 %4").arg(verb, title).arg(number).arg(length);
  }
  static Change From(const QString& line) {
    const QStringList parts = line.split(u' ');
    return {parts.value(0), parts.value(1), parts.value(2).toInt(), parts.value(3).toInt()};
  }
  [[nodiscard]] QString Text() const {
    return QString::number(number) + QString(length, QChar(u'a' + number % 26));
  }
  void ApplyTo(Tasks& tasks) const {
    if (verb == QStringLiteral("delete")) {
      tasks.erase(title);
    } else {
      tasks[title] = Text();
    }
  }
};

const QString kDone = QStringLiteral("done");

/// Mostly short texts; now and then one that fills many pages.
int Length(Chance& chance) {
  return chance.OneIn(6) ? chance.Between(2000, kLongestText) : chance.Between(0, 300);
}

void OpenTasks(DataControl& source, const QString& study) {
  source.SetConnectionString(DataControl::ConnectionStringFor(study));
  source.SetRecordSource(sources::RiskSql(kProject));
  source.Refresh();
}

Change Choose(Recordset& tasks, Chance& chance, int round, int number) {
  const int count = tasks.RecordCount();
  const int kind = chance.Between(1, 4);
  if (count == 0 || (kind == 1 && count < kMostTasks)) {
    return {QStringLiteral("add"), QStringLiteral("%1-%2").arg(round).arg(number), number,
            Length(chance)};
  }
  tasks.SetAbsolutePosition(chance.Between(1, count));
  const QString title = tasks.Text(QStringLiteral("FuntnTaskMachry"));
  if (kind == 2 || count > kMostTasks) return {QStringLiteral("delete"), title};
  return {QStringLiteral("save"), title, number, Length(chance)};
}

void Make(const Change& change, Recordset& tasks) {
  if (change.verb == QStringLiteral("delete")) {
    tasks.Delete();
    tasks.Requery();
    return;
  }
  if (change.verb == QStringLiteral("add")) {
    tasks.AddNew();
    tasks.Set(QStringLiteral("Project_Number"), kProject);
    tasks.Set(QStringLiteral("FuntnTaskMachry"), change.title);
  }
  tasks.Set(QStringLiteral("HzrdDscptnTXT"), change.Text());
  tasks.Update();
}

/// Changes the study without an end, telling each change before and behind it.
[[noreturn]] void WorkWithoutEnd(const QString& study, int round, quint32 seed,
                                 const Teller& tell) {
  DataControl source(QStringLiteral("dtsorce2"));
  OpenTasks(source, study);
  Recordset& tasks = source.Recordset();
  Chance chance(seed);
  for (int number = 1;; ++number) {
    const Change change = Choose(tasks, chance, round, number);
    tell(change.Line());
    Make(change, tasks);
    tell(kDone);
  }
}

class KilledSavingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    installation.GivenStudy(kStudy);
    // Somebody else's task, which nobody touches.
    installation.GivenTask(kStudy, {{"Project_Number", "P-2"}, {"FuntnTaskMachry", "theirs"}});
    study = installation.Study(kStudy);
  }

  [[nodiscard]] Tasks Stored() const {
    Tasks stored;
    for (const QStringList& row : TestInstallation::Sql(
             study, QStringLiteral("SELECT FuntnTaskMachry, HzrdDscptnTXT FROM Risk_records WHERE "
                                   "Project_Number='P-1'"))) {
      EXPECT_TRUE(stored.emplace(row[0], row[1]).second) << row[0].toStdString() << " is double";
    }
    return stored;
  }

  /// Opens the study as the next start of the program does, and closes it again.
  void OpenNext() {
    DataControl next(QStringLiteral("dtsorce2"));
    OpenTasks(next, study);
    EXPECT_TRUE(QFileInfo::exists(installation.StudySign(kStudy)));
    const int count = next.Recordset().RecordCount();
    next.Close();
    EXPECT_EQ(count, static_cast<int>(Stored().size()));
  }

  [[nodiscard]] QString JournalOfStudy() const { return study + QStringLiteral("-journal"); }

  TestInstallation installation;
  QString study;
};

TEST_F(KilledSavingTest, EveryCommittedChangeIsThereAndTheNextStartOpensTheStudy) {
  const int rounds = Rounds(kRounds);
  Chance chance(SeedOf(rounds, "kills in the middle of saving, adding and deleting"));
  Tasks expected;
  int changes = 0;
  int rolled_back = 0;
  for (int round = 1; round <= rounds; ++round) {
    SCOPED_TRACE(round);
    const quint32 seed = chance.Seed();
    Child child([&](const Teller& tell) { WorkWithoutEnd(study, round, seed, tell); });
    ASSERT_TRUE(child.ListenFor(chance.Between(1, 24), 10'000'000));
    child.ListenFor(1'000'000, chance.Between(0, 20'000));
    child.Kill();
    ASSERT_EQ(child.HowItEnded(), "killed by signal 9") << child.Told().last().toStdString();

    EXPECT_TRUE(QFileInfo::exists(installation.StudySign(kStudy))) << "a killed process leaves it";
    const bool journal_left = QFileInfo::exists(JournalOfStudy());
    ASSERT_NO_THROW(OpenNext());
    EXPECT_FALSE(QFileInfo::exists(installation.StudySign(kStudy)));
    // A journal that was rolled back is gone; one that hadn't taken effect yet may stay.
    rolled_back += journal_left && !QFileInfo::exists(JournalOfStudy()) ? 1 : 0;
    EXPECT_EQ(TestInstallation::Column(study, "PRAGMA integrity_check"), QStringList{"ok"});

    // What was told as done is there; what was only begun is there whole or not at all.
    Change open;
    for (const QString& line : child.Told()) {
      if (line != kDone) {
        open = Change::From(line);
        continue;
      }
      open.ApplyTo(expected);
      open = {};
      ++changes;
    }
    const Tasks stored = Stored();
    if (stored != expected && !open.verb.isEmpty()) open.ApplyTo(expected);
    ASSERT_TRUE(stored == expected) << "seed " << seed << ": " << open.Line().toStdString();
  }
  std::printf("%d changes committed, %d kills left a change that was rolled back\n", changes,
              rolled_back);
  EXPECT_GT(changes, rounds);
  EXPECT_EQ(TestInstallation::Column(
                study, "SELECT FuntnTaskMachry FROM Risk_records WHERE Project_Number='P-2'"),
            QStringList{"theirs"});
}

}  // namespace
}  // namespace kestrix::holds
