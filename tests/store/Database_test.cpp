#include "store/Database.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDataStream>
#include <csignal>
#include <numeric>

#include "store/StoreTest.h"
#include "support/EndlessRows.h"
#include "support/RunAsNobody.h"

namespace kestrix::testing {
namespace {

class DatabaseTest : public StoreTest {
 protected:
  bool SignLies() const { return QFile::exists(Path("study.ldb")); }

  /// The journal of a change to many files, of which none was written: it names the file that tells
  /// about all of them. The study had its size before that change.
  [[nodiscard]] QByteArray JournalThatNames(const QByteArray& file) const {
    const auto pages = static_cast<quint32>(QFile(Path("study.mdb")).size() / 4096);
    constexpr quint32 kMarkPage = 0x40000000 / 4096 + 1;
    constexpr int kSector = 512;
    const QByteArray magic = QByteArray::fromHex("d9d505f920a163d7");
    QByteArray journal = magic;
    QDataStream(&journal, QIODevice::Append)
        << quint32{0} << quint32{1} << pages << quint32{kSector} << quint32{4096};
    journal = journal.leftJustified(kSector, '\0');
    const auto sum = std::accumulate(file.begin(), file.end(), quint32{0});
    QDataStream(&journal, QIODevice::Append) << kMarkPage;
    journal += file;
    QDataStream(&journal, QIODevice::Append) << static_cast<quint32>(file.size()) << sum;
    return journal + magic;
  }

  /// A register whose pages lead to the same organisations again and again.
  QString GivenEndlessRegister() const {
    const QString path = Path("endless.mdb");
    Exec(path,
         "PRAGMA page_size=512; CREATE TABLE orgtn(OrgName TEXT, sclenotxt INTEGER);"
         "CREATE TABLE Orgtmp(OrgNameTMP INTEGER);");
    const int root = Read(path, "SELECT rootpage FROM sqlite_schema WHERE name='orgtn'")[0].toInt();
    WriteFile(path, WithEndlessRows(ReadFile(path), root));
    return path;
  }

  /// A refused file fails with `number`, stays as it was and leaves no sign.
  void ExpectRefused(const QByteArray& bytes, int number) {
    const QString path = Path("bad.mdb");
    WriteFile(path, bytes);
    EXPECT_EQ(FailureOf([&] { const kestrix::Database database(path); }), number);
    EXPECT_EQ(ReadFile(path), bytes);
    EXPECT_FALSE(QFile::exists(Path("bad.ldb")));
    EXPECT_FALSE(QFile::exists(path + "-journal"));
  }
};

TEST_F(DatabaseTest, TheSignLiesBesideTheFileWhileAnyoneHasItOpen) {
  auto first = std::make_unique<Database>(Path("study.mdb"));
  EXPECT_TRUE(SignLies());
  auto second = std::make_unique<Database>(Path("study.mdb"));
  first.reset();
  EXPECT_TRUE(SignLies());
  second.reset();
  EXPECT_FALSE(SignLies());
}

TEST_F(DatabaseTest, TheSignOfAKilledProcessStaysUntilTheNextClose) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const Database database(Path("study.mdb"));
    const char done = 1;
    (void)!write(ready[1], &done, 1);
    pause();
    _exit(0);
  }
  char done = 0;
  ASSERT_EQ(read(ready[0], &done, 1), 1);
  EXPECT_TRUE(SignLies());
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(SignLies());
  { const Database database(Path("study.mdb")); }
  EXPECT_FALSE(SignLies());
  close(ready[0]);
  close(ready[1]);
}

TEST_F(DatabaseTest, ManyProcessesOpeningAndClosingLeaveNoSign) {
  QList<pid_t> children;
  for (int i = 0; i < 8; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      bool held = true;
      for (int round = 0; round < 50; ++round) {
        const Database database(Path("study.mdb"));
        held = held && QFile::exists(Path("study.ldb"));
      }
      _exit(held ? 0 : 1);
    }
    children += child;
  }
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  EXPECT_FALSE(SignLies());
}

TEST_F(DatabaseTest, InAReadOnlyFolderTheFileIsReadAndNoSignIsMade) {
  GivenTasks(1);
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GiveToNobody(folder_.path());
  QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::ExeOwner);
  const auto told = RunAsNobody([this] {
    const Database database(Path("study.mdb"));
    return QStringLiteral("%1 %2 %3")
        .arg(database.IsReadOnly())
        .arg(SignLies())
        .arg(Tasks()->Text(1));
  });
  EXPECT_EQ(told, QStringLiteral("1 0 T1"));
}

TEST_F(DatabaseTest, ASignThatAnotherUserMadeIsHeldTooAndOutlivesTheirs) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GiveToNobody(folder_.path());
  WriteFile(Path("study.ldb"), {});  // of ours: nobody else may write into it
  ASSERT_TRUE(QFile::setPermissions(Path("study.ldb"), QFile::ReadOwner | QFile::ReadOther));
  const auto told = RunAsNobody([this] {
    const Database mine(Path("study.mdb"));
    { const Database another(Path("study.mdb")); }
    return QString::number(SignLies());
  });
  EXPECT_EQ(told, QStringLiteral("1"));
  EXPECT_FALSE(SignLies());
}

TEST_F(DatabaseTest, APipeInPlaceOfTheSignOfAnotherUserIsNotWaitedFor) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GiveToNobody(folder_.path());
  ASSERT_EQ(mkfifo(Path("study.ldb").toUtf8().constData(), 0444), 0);
  const auto told = RunAsNobody([this] {
    const Database database(Path("study.mdb"));
    return QString::number(Tasks()->RecordCount());
  });
  EXPECT_EQ(told, QStringLiteral("0"));
}

TEST_F(DatabaseTest, APipeInPlaceOfAJournalIsRefusedAndNotWaitedFor) {
  ASSERT_EQ(mkfifo(Path("study.mdb-journal").toUtf8().constData(), 0666), 0);
  const auto told = RunInChild([this] {
    const Database database(Path("study.mdb"));
    return QString::number(Tasks()->RecordCount());
  });
  ASSERT_TRUE(told);
  EXPECT_TRUE(told->startsWith(QStringLiteral("Failure %1:").arg(failure::kCannotOpen)))
      << told->toStdString();
}

TEST_F(DatabaseTest, APipeThatAJournalNamesIsNotWaitedFor) {
  const QByteArray pipe = Path("pipe").toUtf8();
  ASSERT_EQ(mkfifo(pipe.constData(), 0666), 0);
  WriteFile(Path("study.mdb-journal"), JournalThatNames(pipe));
  const auto told = RunInChild([this] {
    const Database database(Path("study.mdb"));
    return QString::number(Tasks()->RecordCount());
  });
  EXPECT_TRUE(told);
}

TEST_F(DatabaseTest, AFileThatAJournalNamesIsNotDeleted) {
  // Also when it is the journal of another database that is open.
  for (const char* name : {"letter.txt", "other.mdb-journal"}) {
    MakeStudy(Path("other.mdb"));
    const Database other(Path("other.mdb"));
    WriteFile(Path(name), "Dear all");
    WriteFile(Path("study.mdb-journal"), JournalThatNames(Path(name).toUtf8()));
    const Database database(Path("study.mdb"));
    EXPECT_EQ(ReadFile(Path(name)), "Dear all");
    EXPECT_FALSE(QFile::exists(Path("study.mdb-journal")));
    EXPECT_TRUE(QFile::remove(Path("other.mdb")));
  }
}

TEST_F(DatabaseTest, AMissingFileIsNamedAndAFolderIsNoDatabase) {
  EXPECT_EQ(FailureOf([&] { const Database database(Path("none.mdb")); }), failure::kFileNotFound);
  EXPECT_EQ(FailureOf([&] { const Database database(folder_.path()); }), failure::kCannotOpen);
  EXPECT_FALSE(QFile::exists(Path("none.mdb")));
  EXPECT_FALSE(QFile::exists(Path("none.ldb")));
}

TEST_F(DatabaseTest, WhatIsNoDatabaseOfOursIsRefusedAndStaysAsItIs) {
  const QString other = Path("other.mdb");
  Exec(other, "CREATE TABLE people(name TEXT)");
  // Where the head of the file says how its tables are described.
  constexpr int kFormat = 47;
  QByteArray unknown_format = ReadFile(GivenInstalledStudy("whole.mdb"));
  unknown_format[kFormat] = 9;
  for (const QByteArray& bytes :
       {QByteArray(), QByteArray("Not a database at all, but a text of some length.\n"),
        QByteArray("SQLite format 3\0", 16) + QByteArray(5000, 'x'), unknown_format,
        ReadFile(other)})
    ExpectRefused(bytes, failure::kNotADatabase);
}

TEST_F(DatabaseTest, ATruncatedFileIsRefused) {
  const QString study = GivenInstalledStudy("whole.mdb");
  Exec(study,
       "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<500) "
       "INSERT INTO Risk_records(Project_Number) SELECT i FROM n");
  const QByteArray whole = ReadFile(study);
  for (const qsizetype size : {whole.size() / 2, whole.size() - 4096, qsizetype{100}}) {
    ExpectRefused(whole.left(size), failure::kNotADatabase);
  }
}

TEST_F(DatabaseTest, ATableWhoseRowsNeverEndIsRefusedWhateverIsAskedOfIt) {
  const QString path = GivenEndlessRegister();
  const auto database = std::make_shared<Database>(path);
  // Rows that come without an end, and rows that are looked through for one that never comes.
  for (const Select& select :
       {Select("orgtn"), Select("OrgName", "FROM orgtn WHERE OrgName='ACME'")}) {
    EXPECT_EQ(FailureOf([&] { const Recordset rows(database, select); }), failure::kNotADatabase);
  }
  Recordset others(database, Select("Orgtmp"));
  EXPECT_EQ(others.RecordCount(), 0);
}

TEST_F(DatabaseTest, AGapThatMakesAFileLargeBuysItNoWork) {
  const QString path = GivenEndlessRegister();
  constexpr qint64 kGiant = qint64{64} << 30;
  ASSERT_TRUE(QFile::resize(path, kGiant));
  const auto database = std::make_shared<Database>(path);
  EXPECT_EQ(FailureOf([&] { const Recordset rows(database, Select("orgtn")); }),
            failure::kNotADatabase);
}

TEST_F(DatabaseTest, AColumnThatComputesAGiantTextFails) {
  const QString path = Path("giant.mdb");
  Exec(path,
       "CREATE TABLE orgtn(OrgName AS (hex(zeroblob(4000000))), sclenotxt INTEGER);"
       "CREATE TABLE Orgtmp(OrgNameTMP INTEGER); INSERT INTO orgtn(sclenotxt) VALUES(1);");
  Recordset rows(std::make_shared<Database>(path), Select("orgtn"));
  EXPECT_EQ(FailureOf([&] { (void)rows.Value(0); }), failure::kTooLong);
}

TEST_F(DatabaseTest, AStudyWithOtherTablesColumnsOrIndexesIsRefused) {
  for (const char* change : {
           "ALTER TABLE Risk_records ADD COLUMN more AS (hex(zeroblob(100000000)))",
           "ALTER TABLE Risk_records RENAME COLUMN RIARtxt TO renamed",
           "ALTER TABLE fileLink DROP COLUMN FileEmb",
           "CREATE TABLE more(x)",
           "CREATE VIEW more AS SELECT 1",
           "CREATE TRIGGER more AFTER INSERT ON fileLink BEGIN DELETE FROM fileLink; END",
           "CREATE INDEX more ON fileLink(FilePath) WHERE FilePath GLOB '*a*a*a*a*'",
           "DROP TABLE fileLink",
           "PRAGMA writable_schema=ON; UPDATE sqlite_schema SET sql=replace(sql, 'length(FilePath) "
           "BETWEEN', 'length(hex(FilePath)) BETWEEN')",
       }) {
    SCOPED_TRACE(change);
    const QString study = GivenInstalledStudy("changed.mdb");
    { const kestrix::Database ours(study); }
    Exec(study, change);
    ExpectRefused(ReadFile(study), failure::kNotADatabase);
    ASSERT_TRUE(QFile::remove(study));
  }
}

TEST_F(DatabaseTest, WhatOtherProgramsMayDoToAStudyLeavesItOurs) {
  const QString study = GivenInstalledStudy("ours.mdb");
  Exec(study, "INSERT INTO fileLink VALUES('P','/a','a','/a'); ANALYZE; VACUUM");
  const kestrix::Database database(study);
  EXPECT_EQ(Read(study, "SELECT count(*) FROM sqlite_stat1 WHERE tbl='fileLink'"),
            QStringList{"1"});
}

TEST_F(DatabaseTest, ItNoticesThatAnotherFileTookItsPlace) {
  const Database database(Path("study.mdb"));
  EXPECT_TRUE(database.IsTheFileAtItsPath());
  MakeStudy(Path("new.mdb"));
  ASSERT_EQ(rename(Path("new.mdb").toUtf8().constData(), Path("study.mdb").toUtf8().constData()),
            0);
  EXPECT_FALSE(database.IsTheFileAtItsPath());
}

TEST_F(DatabaseTest, ACopyIsTheFileByteForByte) {
  GivenTasks(50);
  const auto rows = Tasks();
  (void)rows->Text(1);  // It waits for no reader.
  CopyDatabase(Path("study.mdb"), Path("copy.mdb"));
  EXPECT_EQ(ReadFile(Path("copy.mdb")), ReadFile(Path("study.mdb")));
  EXPECT_FALSE(QFile::exists(Path("copy.mdb-journal")));
  // What is no database is copied as the file that it is.
  WriteFile(Path("plain.kbp"), "plain");
  CopyDatabase(Path("plain.kbp"), Path("copy.mdb"));
  EXPECT_EQ(ReadFile(Path("copy.mdb")), "plain");
}

TEST_F(DatabaseTest, CopiesTakenWhileOthersWriteAreWhole) {
  const pid_t child = fork();
  if (child == 0) {
    const OtherUser writer(Path("study.mdb"));
    for (int i = 0;; ++i) {
      const auto pair = QStringLiteral(
          "INSERT INTO Risk_records(Project_Number,Title) VALUES('P','a%1'),('P','b%1')");
      if (!writer.Exec(pair.arg(i))) _exit(1);
    }
  }
  for (int i = 0; i < 20; ++i) {
    CopyDatabase(Path("study.mdb"), Path("copy.mdb"));
    EXPECT_EQ(Read(Path("copy.mdb"), "PRAGMA integrity_check"), QStringList{"ok"});
    EXPECT_EQ(Read(Path("copy.mdb"), "SELECT count(*)%2 FROM Risk_records"), QStringList{"0"});
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

TEST_F(DatabaseTest, AStudyThatIsWrittenAheadGoesBackToTheJournalWhenItIsOpened) {
  GivenTasks(3);
  OtherProcess tool(Path("study.mdb"));
  tool.Run("PRAGMA journal_mode=WAL; UPDATE Risk_records SET Note='ahead';");
  const QString log = Path("study.mdb-wal");
  {
    // Not while somebody else has it open; it is read and written all the same.
    const auto rows = Tasks();
    EXPECT_EQ(rows->Text(4), "ahead");
    rows->Set(4, QStringLiteral("ours"));
    rows->Update();
    EXPECT_TRUE(QFile::exists(log));
  }
  tool.Kill();
  EXPECT_EQ(Tasks()->Text(4), "ours");
  EXPECT_FALSE(QFile::exists(log));
  EXPECT_EQ(Read(Path("study.mdb"), "PRAGMA journal_mode"), QStringList{"delete"});
}

TEST_F(DatabaseTest, ACopyHoldsWhatWasWrittenAheadWhoeverHasTheStudyOpen) {
  GivenTasks(3);
  OtherProcess tool(Path("study.mdb"));
  tool.Run("PRAGMA journal_mode=WAL; UPDATE Risk_records SET Note='ahead';");
  for (const bool open : {true, false}) {
    if (!open) tool.Kill();
    CopyDatabase(Path("study.mdb"), Path("copy.mdb"));
    EXPECT_EQ(QFile::exists(Path("study.mdb-wal")), open);
    EXPECT_EQ(Read(Path("copy.mdb"), "SELECT Note FROM Risk_records"),
              (QStringList{"ahead", "ahead", "ahead"}));
    EXPECT_EQ(Read(Path("copy.mdb"), "PRAGMA journal_mode"), QStringList{"delete"});
    EXPECT_FALSE(QFile::exists(Path("copy.mdb-wal")));
  }
}

TEST_F(DatabaseTest, AStudyThatIsWrittenAheadIsReplacedWhenNobodyHasItOpen) {
  GivenTasks(3);
  CopyDatabase(Path("study.mdb"), Path("set.kbp"));
  OtherProcess tool(Path("study.mdb"));
  tool.Run("PRAGMA journal_mode=WAL; UPDATE Risk_records SET Note='ahead';");
  EXPECT_EQ(FailureOf([&] { ReplaceDatabase(Path("set.kbp"), Path("study.mdb")); }),
            failure::kLocked);
  EXPECT_EQ(Read(Path("study.mdb"), "SELECT DISTINCT Note FROM Risk_records"),
            QStringList{"ahead"});
  tool.Kill();
  for (const bool damaged : {false, true}) {
    if (damaged) WriteFile(Path("study.mdb-wal"), ReadFile(Path("set.kbp")));
    if (damaged) WriteFile(Path("study.mdb"), "no database any more");
    ReplaceDatabase(Path("set.kbp"), Path("study.mdb"));
    EXPECT_EQ(ReadFile(Path("study.mdb")), ReadFile(Path("set.kbp")));
    EXPECT_FALSE(QFile::exists(Path("study.mdb-wal")));
  }
}

TEST_F(DatabaseTest, APipeIsNeitherCopiedNorReplacedNorWaitedFor) {
  WriteFile(Path("plain.kbp"), "plain");
  ASSERT_EQ(mkfifo(Path("pipe.mdb").toUtf8().constData(), 0666), 0);
  ASSERT_TRUE(QFile::link(Path("pipe.mdb"), Path("link.mdb")));
  const auto told = RunInChild([this] {
    const auto number = [](const auto& act) { return QString::number(FailureOf(act)); };
    return number([&] { CopyDatabase(Path("pipe.mdb"), Path("copy.mdb")); }) + u' ' +
           number([&] { ReplaceDatabase(Path("plain.kbp"), Path("pipe.mdb")); }) + u' ' +
           number([&] { ReplaceDatabase(Path("plain.kbp"), Path("link.mdb")); });
  });
  EXPECT_EQ(told, QStringLiteral("%1 %1 %1").arg(failure::kPermissionDenied));
  EXPECT_FALSE(QFile::exists(Path("copy.mdb")));
  struct stat status = {};
  ASSERT_EQ(stat(Path("pipe.mdb").toUtf8().constData(), &status), 0);
  EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

}  // namespace
}  // namespace kestrix::testing
