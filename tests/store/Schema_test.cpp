#include "store/Schema.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <csignal>

#include "store/RecordSources.h"
#include "store/StoreTest.h"
#include "support/RunAsNobody.h"

namespace kestrix::testing {
namespace {

constexpr auto kFirstVersion =
    "DROP INDEX Risk_records_titles; DROP INDEX Risk_records_of_picture_before;"
    "DROP INDEX Risk_records_of_picture_after; PRAGMA user_version=1;";
constexpr auto kSchema = "SELECT sql FROM sqlite_schema WHERE sql NOTNULL ORDER BY name";

class SchemaTest : public StoreTest {
 protected:
  void SetUp() override { GivenStudyOfVersion1(); }

  /// A study as the first version of this program made it, with tasks.
  void GivenStudyOfVersion1() {
    Exec(GivenInstalledStudy("study.mdb"), kFirstVersion);
    Exec(study_,
         "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<500) INSERT INTO "
         "Risk_records(Project_Number, PicBfrRcmdtn) SELECT 'P', i||'.jpg' FROM n; "
         "INSERT INTO fileLink VALUES('P','/a','a','/a');");
    old_ = ReadFile(study_);
  }
  [[nodiscard]] QString OpenFails() const {
    try {
      const kestrix::Database database(study_);
      return {};
    } catch (const Failure& failure) {
      return QStringLiteral("%1 %2").arg(failure.number()).arg(failure.description());
    }
  }
  [[nodiscard]] static int VersionOf(const QString& path) {
    return Read(path, "PRAGMA user_version")[0].toInt();
  }
  void ExpectNewest() const {
    EXPECT_EQ(VersionOf(study_), 2);
    EXPECT_EQ(Read(study_, kSchema), newest_schema_);
    EXPECT_EQ(Read(study_, "SELECT count(*) FROM Risk_records"), QStringList{"500"});
    EXPECT_EQ(Read(study_, "PRAGMA integrity_check"), QStringList{"ok"});
  }
  /// The study is as it was, and nothing else lies in its folder.
  void ExpectUntouched() const {
    EXPECT_EQ(ReadFile(study_), old_);
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"study.mdb"});
  }

  QString study_ = Path("study.mdb");
  QString copy_ = CopyOfVersion(study_, 1);
  QByteArray old_;
  QStringList newest_schema_ =
      Read(QStringLiteral(KESTRIX_PRISTINE_FOLDER "/risk_esmatn.mdb"), kSchema);
};

TEST_F(SchemaTest, AnOlderStudyIsBroughtUpBehindACopyOfItHoweverItCameHere) {
  EXPECT_EQ(copy_, study_ + ".v1");
  WriteFile(copy_, "left by a try that was killed");
  for (const bool restored : {false, true}) {
    if (restored) {
      WriteFile(Path("set.kbp"), old_);
      ReplaceDatabase(Path("set.kbp"), study_);
      EXPECT_EQ(VersionOf(study_), 1);
    }
    EXPECT_EQ(OpenFails(), "");
    ExpectNewest();
    EXPECT_EQ(ReadFile(copy_), old_);
    const QByteArray newest = ReadFile(study_);
    EXPECT_EQ(OpenFails(), "");
    EXPECT_EQ(ReadFile(study_), newest) << "it is brought up once";
  }
}

TEST_F(SchemaTest, AStudyWhoseNumberIsTooLowIsBroughtUpFromWhatItIs) {
  // Without one, as when a study is written out as SQL and made again of it.
  Exec(study_, "PRAGMA user_version=0");
  EXPECT_EQ(OpenFails(), "");
  ExpectNewest();
  EXPECT_TRUE(QFile::remove(CopyOfVersion(study_, 0)));
  // A newest one needs nothing, whatever its number became.
  for (const int number : {0, 1, -1}) {
    Exec(study_, QStringLiteral("PRAGMA user_version=%1").arg(number));
    old_ = ReadFile(study_);
    EXPECT_EQ(OpenFails(), "");
    ExpectUntouched();
  }
}

TEST_F(SchemaTest, AFileOfANewerVersionIsRefusedAndSaysSo) {
  const TestInstallation installed;
  for (const QString& path : {installed.Register(), installed.Lists(), installed.Template()}) {
    const int newer = VersionOf(path) + 1;
    for (const char* change : {"SELECT 1", "CREATE TABLE more(x)"}) {
      // A file of another kind may have a number that this kind has not come to yet.
      const int number = QByteArray(change) == "SELECT 1" ? newer : 3;
      Exec(path, change);
      Exec(path, QStringLiteral("PRAGMA user_version=%1").arg(number));
      const QByteArray bytes = ReadFile(path);
      study_ = path;
      EXPECT_TRUE(
          OpenFails().startsWith(QStringLiteral("%1 The file %2 was made by a newer version "
                                                "of this program: it has version %3,")
                                     .arg(failure::kNotADatabase)
                                     .arg(path)
                                     .arg(number)))
          << OpenFails().toStdString();
      EXPECT_EQ(ReadFile(path), bytes);
    }
  }
}

TEST_F(SchemaTest, AFileThatHasNotWhatItsVersionHasIsRefusedAndStaysAsItIs) {
  for (const char* change : {"PRAGMA user_version=2", "CREATE TABLE more(x)",
                             "PRAGMA user_version=3; PRAGMA application_id=0; CREATE TABLE more(x)",
                             "CREATE INDEX Risk_records_of_picture_after ON fileLink(FilePath)"}) {
    Exec(study_, change);
    old_ = ReadFile(study_);
    EXPECT_EQ(OpenFails(), QStringLiteral("%1 The file %2 is not a database of this program.")
                               .arg(failure::kNotADatabase)
                               .arg(study_));
    ExpectUntouched();
    ASSERT_TRUE(QFile::remove(study_));
    GivenStudyOfVersion1();
  }
}

TEST_F(SchemaTest, ManyThatOpenItAtOnceBringItUpOnce) {
  // Who writes lets them all find the old version, and wait for each other.
  OtherProcess writer(study_);
  writer.Run("BEGIN IMMEDIATE;");
  QList<pid_t> children;
  for (int i = 0; i < 8; ++i) {
    children += fork();
    if (children.last() == 0) _exit(OpenFails().isEmpty() ? 0 : 1);
  }
  writer.Kill();
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  ExpectNewest();
  EXPECT_EQ(ReadFile(copy_), old_);
}

TEST_F(SchemaTest, WhoHasItOpenWorksOn) {
  Recordset rows(std::make_shared<Database>(study_), Select("Risk_records"));
  rows.SetAbsolutePosition(300);
  rows.Set(2, QStringLiteral("typed before"));
  EXPECT_EQ(OpenFails(), "");
  rows.MoveNext();
  EXPECT_EQ(rows.Text(46), "301.jpg");
  rows.AddNew();
  rows.Update();
  EXPECT_EQ(Read(study_, "SELECT FuntnTaskMachry FROM Risk_records WHERE nunberauto IN (300,501)"),
            (QStringList{"typed before", "None."}));
}

TEST_F(SchemaTest, AKillInTheMiddleLeavesItOldAndTheNextTryBringsItUp) {
  // Who reads keeps a writer from the last step of a change.
  OtherProcess reader(study_);
  reader.Run("BEGIN; SELECT count(*) FROM fileLink;");
  const pid_t child = fork();
  if (child == 0) _exit(OpenFails().isEmpty() ? 0 : 1);
  while (QFileInfo(study_ + "-journal").size() <= 512 && waitpid(child, nullptr, WNOHANG) == 0)
    usleep(1000);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  reader.Kill();
  EXPECT_EQ(ReadFile(copy_), old_);
  EXPECT_TRUE(QFile::exists(study_ + "-journal"));
  EXPECT_EQ(VersionOf(study_), 1);
  WriteFile(copy_, "half");
  EXPECT_EQ(OpenFails(), "");
  ExpectNewest();
  EXPECT_EQ(ReadFile(copy_), old_);
}

TEST_F(SchemaTest, AFullDiskRefusesItAndChangesNothing) {
  for (const bool copied : {false, true}) {
    const auto told = RunInChild([this, copied] {
      // The copy finds room, or not even that.
      const auto room = static_cast<rlim_t>(old_.size() - (copied ? 0 : 1));
      const rlimit limit{room, room};
      std::signal(SIGXFSZ, SIG_IGN);
      return setrlimit(RLIMIT_FSIZE, &limit) == 0 ? OpenFails() : QStringLiteral("no limit");
    });
    ASSERT_TRUE(told);
    EXPECT_TRUE(told->contains(
        study_ + " is of an older version of this program and can't be brought up to this one. "))
        << told->toStdString();
    if (!copied) {
      EXPECT_TRUE(told->startsWith(QString::number(failure::kDiskFull)) &&
                  told->endsWith("Failed to copy \"" + copy_ +
                                 "\": the file would grow larger than the disk allows."))
          << told->toStdString();
    }
    EXPECT_EQ(QFile::remove(copy_), copied);
    ExpectUntouched();
  }
}

TEST_F(SchemaTest, AFileThatIsBeingWrittenForLongIsRefusedAndStaysAsItIs) {
  OtherProcess writer(study_);
  writer.Run("BEGIN IMMEDIATE;");
  EXPECT_TRUE(OpenFails().startsWith(QString::number(failure::kLocked)));
  writer.Kill();
  ExpectUntouched();
}

TEST_F(SchemaTest, ACopyHoldsWhatSomebodyElseWroteAhead) {
  OtherProcess tool(study_);
  tool.Run("PRAGMA journal_mode=WAL; UPDATE fileLink SET FileEmb='ahead';");
  EXPECT_EQ(OpenFails(), "");
  EXPECT_EQ(Read(copy_, "SELECT FileEmb FROM fileLink"), QStringList{"ahead"});
  tool.Kill();
  ExpectNewest();
}

TEST_F(SchemaTest, AnOlderFileThatCannotBeWrittenIsReadAsItIs) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GiveToNobody(folder_.path());
  QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::ExeOwner);
  const auto told = RunAsNobody([this] {
    const Recordset rows(std::make_shared<kestrix::Database>(study_), sources::RiskSql("P"));
    return rows.Text(46);
  });
  EXPECT_EQ(told, "1.jpg");
  ExpectUntouched();
}

TEST_F(SchemaTest, NoTaskIsReadToLookForATitleOrForThoseOfAPicture) {
  const auto plan = [&](const QString& select) {
    QStringList steps;
    for (const QStringList& step : TestInstallation::Sql(study_, "EXPLAIN QUERY PLAN " + select))
      steps += step.last();
    return steps.join(u'\n');
  };
  const QString titles =
      "SELECT _rowid_,substr(FuntnTaskMachry,1,255) " + sources::RiskSql("P").tail;
  const QString pictures = sources::TasksOfPicture("x.jpg").text;
  EXPECT_FALSE(plan(titles).contains("COVERING"));
  EXPECT_TRUE(plan(pictures).contains("SCAN"));
  EXPECT_EQ(OpenFails(), "");
  EXPECT_TRUE(plan(titles).contains("COVERING"));
  EXPECT_FALSE(plan(pictures).contains("SCAN"));
}

}  // namespace
}  // namespace kestrix::testing
