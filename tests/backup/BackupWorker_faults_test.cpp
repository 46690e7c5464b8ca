#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFileInfo>
#include <atomic>

#include "backup/BackupTest.h"
#include "platform/Leftovers.h"
#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

class BackupWorkerFaultsTest : public BackupTest {
 protected:
  BackupWorkerFaultsTest() {
    GivenFullOrganisation("Press shop", 1);
    GivenFullOrganisation("Foundry", 2);
  }

  /// A set of what is there now, chosen to be restored.
  void GivenSet() {
    ForBackup();
    Run();
    ForRestoreOfToday();
  }
  /// Runs in a child process and tells how that ended, with the messages that came.
  QString Report() {
    FakeMessages& messages = desk.messages;
    QString report;
    try {
      report = Run(RunHere) == BackupWorker::End::kAtEnd ? "at its end" : "not at its end";
    } catch (const Failure& failure) {
      report = QStringLiteral("failure %1").arg(failure.number());
    }
    for (const Message& message : messages.Shown())
      report += "; " + message.title + ": " + message.text;
    return report;
  }
  /// Where no file can grow beyond 150 kB.
  QString ReportOnFullDisk() {
    return RunInChild([this] {
             const struct rlimit limit = {150'000, 150'000};
             ::signal(SIGXFSZ, SIG_IGN);
             ::setrlimit(RLIMIT_FSIZE, &limit);
             return Report();
           })
        .value_or("no report");
  }
};

// A backup that can't go on.

TEST_F(BackupWorkerFaultsTest, MissingStudyEndsABackupAndWhatWasCopiedStays) {
  ASSERT_TRUE(QFile::remove(installation.Study(2)));
  EXPECT_EQ(FailureOfRun(), failure::kFileNotFound);
  EXPECT_EQ(steps.size(), 3);
  EXPECT_EQ(ReadFile(InDated("ktx_RskSmt1.kbp")), ReadFile(installation.Study(1)));
  EXPECT_EQ(ReadFile(InDated("Prj1/a.jpg")), "before of Press shop");
  EXPECT_FALSE(QFileInfo::exists(InDated("ktx_RskSmt2.kbp")));
  EXPECT_FALSE(QFileInfo::exists(InDated("Prj2")));
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(BackupWorkerFaultsTest, MissingPictureFolderEndsABackupBehindItsStudy) {
  ASSERT_TRUE(QDir(installation.PictureFolder(1)).removeRecursively());
  EXPECT_EQ(FailureOfRun(), failure::kPathNotFound);
  EXPECT_EQ(ReadFile(InDated("ktx_RskSmt1.kbp")), ReadFile(installation.Study(1)));
  EXPECT_FALSE(QFileInfo::exists(InDated("ktx_RskSmt2.kbp")));
}

TEST_F(BackupWorkerFaultsTest, MissingListsEndABackupWithoutAMessage) {
  ASSERT_TRUE(QFile::remove(installation.Lists()));
  EXPECT_EQ(FailureOfRun(), failure::kFileNotFound);
  EXPECT_EQ(steps, QStringList{"25 % complete"});
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(BackupWorkerFaultsTest,
       ChosenFolderThatIsGoneAndAnOrganisationThatWasNeverOpenedEndABackup) {
  ASSERT_TRUE(QDir(session.BackupFolder).removeRecursively());
  EXPECT_EQ(FailureOfRun(), failure::kPathNotFound);
  EXPECT_TRUE(steps.isEmpty());
  (void)Place("sets");
  installation.GivenOrganisation("Never opened", 0);
  EXPECT_EQ(FailureOfRun(), failure::kFileNotFound) << "it has nothing to copy";
  EXPECT_TRUE(QFileInfo::exists(InDated("Prj2")));
}

TEST_F(BackupWorkerFaultsTest, FixedFileThatDidNotArriveIsToldAndEndsTheBackup) {
  for (const int done : {1, 0}) {
    desk.files.PretendMissing(done ? "ktx_RskSmt_A.kbp" : "ktx_RskSmt.kbp");
    ExpectTrouble("Backup");
    EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
    EXPECT_EQ(steps.size(), done);
    EXPECT_FALSE(QFileInfo::exists(InDated("ktx_RskSmt1.kbp")));
  }
}

TEST_F(BackupWorkerFaultsTest, DatedFolderThatCannotBeWrittenIsTold) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  ASSERT_TRUE(QDir().mkpath(InSet(kToday)));
  GiveToNobody(installation.Outside(".."));
  ASSERT_EQ(::chmod(InSet(kToday).toUtf8().constData(), 0555), 0);
  const auto report = RunAsNobody([this] {
    ExpectTrouble("Backup");
    return Report();
  });
  EXPECT_EQ(report.value_or("no report"), "at its end; BELTROVAN: " + Trouble("Backup"));
  EXPECT_TRUE(QDir(InSet(kToday)).isEmpty());
}

TEST_F(BackupWorkerFaultsTest, ParentThatCannotBeWrittenEndsABackupWithoutAMessage) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GiveToNobody(installation.Outside(".."));
  ASSERT_EQ(::chmod(session.BackupFolder.toUtf8().constData(), 0555), 0);
  const auto report = RunAsNobody([this] { return Report(); });
  EXPECT_EQ(report.value_or("no report"), "failure 70");
}

TEST_F(BackupWorkerFaultsTest, FullDiskEndsABackupAndTheOlderSetStaysWhole) {
  Run();
  const Tree before = TreeOf(session.BackupFolder);
  installation.GivenTasks(1, "P-2", 3000);
  EXPECT_EQ(ReportOnFullDisk(), "failure 61");
  EXPECT_EQ(TreeOf(session.BackupFolder), before);
}

TEST_F(BackupWorkerFaultsTest, DiskThatIsFullAtTheEndIsAFailureAndNotAFullBar) {
  desk.files.FailNext(FileAction::kEndBatch, "", failure::kDiskFull);
  EXPECT_EQ(FailureOfRun(), failure::kDiskFull);
  EXPECT_EQ(steps.last(), "75 % complete");
}

TEST_F(BackupWorkerFaultsTest, StudyThatSomebodyIsWritingForTooLongEndsABackup) {
  const WriterAtWork writer(installation.Study(1));
  EXPECT_EQ(FailureOfRun(), failure::kLocked);
  EXPECT_FALSE(QFileInfo::exists(InDated("ktx_RskSmt1.kbp")));
}

TEST_F(BackupWorkerFaultsTest, BackupDuringAnotherUsersWorkIsWholeAndLacksNothingCommittedBefore) {
  // The writer counts here, in memory of both processes, each pair of rows once it is committed.
  void* shared = ::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(shared, MAP_FAILED);
  auto& committed = *new (shared) std::atomic<int>(0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const OtherUser writer(installation.Study(1));
    while (
        writer.Exec("BEGIN IMMEDIATE; INSERT INTO Risk_records(Project_Number) VALUES('W');"
                    "INSERT INTO Risk_records(Project_Number) VALUES('W'); COMMIT"))
      ++committed;
    ::_exit(1);
  }
  const QString copy = InDated("ktx_RskSmt1.kbp");
  for (int round = 0; round < 10; ++round) {
    const int known = committed;
    EXPECT_TRUE(WaitUntil([&] { return committed > known; }));
    const int before = committed;
    Run();
    EXPECT_EQ(Column(copy, "PRAGMA integrity_check"), QStringList{"ok"});
    const int rows =
        Column(copy, "SELECT count(*) FROM Risk_records WHERE Project_Number='W'").value(0).toInt();
    EXPECT_EQ(rows % 2, 0);
    EXPECT_GE(rows / 2, before);
  }
  ::kill(child, SIGKILL);
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status)) << "the writer gave up";
  ::munmap(shared, sizeof(std::atomic<int>));
}

TEST_F(BackupWorkerFaultsTest, FolderThatAnotherUserMakesFirstIsTaken) {
  desk.files.BeforeNext(FileAction::kCreateFolder, kToday,
                        [this] { ASSERT_TRUE(QDir().mkdir(InSet(kToday))); });
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(desk.files.FaultsLeft(), 0);
  EXPECT_EQ(ReadFile(InDated("ktx_RskSmt2.kbp")), ReadFile(installation.Study(2)));
}

// Links, which may lead to anything that this user may read or write.

TEST_F(BackupWorkerFaultsTest, LinksInASetAreReplacedAndNotWrittenThrough) {
  Run();
  const Tree set = TreeOf(InSet(kToday));
  const QStringList names = {"ktx_RskSmt.kbp", "ktx_RskSmt_A.kbp", "ktx_RskSmt1.kbp", "Prj1/a.jpg"};
  for (const QString& name : names) {
    WriteFile(Place("far") + '/' + name.section('/', -1), "stays");
    ASSERT_TRUE(QFile::remove(InDated(name)));
    ASSERT_TRUE(QFile::link(Place("far") + '/' + name.section('/', -1), InDated(name)));
  }
  ASSERT_TRUE(QDir(InDated("Prj2")).removeRecursively());
  ASSERT_TRUE(QFile::link(Place("far"), InDated("Prj2")));
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(TreeOf(InSet(kToday)), set);
  for (const QString& name : names) {
    EXPECT_FALSE(QFileInfo(InDated(name)).isSymLink());
    EXPECT_EQ(ReadFile(Place("far") + '/' + name.section('/', -1)), "stays");
  }
  EXPECT_EQ(QDir(Place("far")).entryList(QDir::Files).size(), 4);
}

TEST_F(BackupWorkerFaultsTest, LinksAmongThePicturesAreLeftOutWithAWord) {
  const QString letter = Place("far") + "/letter";
  WriteFile(letter, "nobody's business");
  ASSERT_TRUE(QFile::link(letter, Picture(1, "c.jpg")));
  desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN",
                           "Links were left out:\n" + Picture(1, "c.jpg"));
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_FALSE(TreeOf(InSet(kToday)).contains("Prj1/c.jpg"));

  // And so are those of a set.
  ForRestoreOfToday();
  ASSERT_TRUE(QFile::link(letter, InSet("Prj1/d.jpg")));
  ASSERT_TRUE(QDir().rename(InSet("Prj2"), Place("far") + "/Prj2"));
  ASSERT_TRUE(QFile::link(Place("far") + "/Prj2", InSet("Prj2")));
  desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN",
                           "Links were left out:\n" + InSet("Prj1/d.jpg") + '\n' + InSet("Prj2"));
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(QDir(installation.PictureFolder(1)).entryList(QDir::Files | QDir::System),
            (QStringList{"a.jpg", "b.jpg"}));
  EXPECT_FALSE(QFileInfo::exists(installation.PictureFolder(2)));
}

TEST_F(BackupWorkerFaultsTest, PicturesThatLieOnAnotherDiskAreCopiedFromThere) {
  ASSERT_TRUE(QDir().rename(installation.PictureFolder(1), Place("far") + "/Prj1"));
  ASSERT_TRUE(QFile::link(Place("far") + "/Prj1", installation.PictureFolder(1)));
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(ReadFile(InDated("Prj1/a.jpg")), "before of Press shop");
}

TEST_F(BackupWorkerFaultsTest, LinkInTheSetIsNoneOfItsDatabases) {
  GivenSet();
  const QString register_in_set = InSet("ktx_RskSmt.kbp");
  for (const QString& name :
       {InSet("ktx_RskSmt2.kbp"), InSet("ktx_RskSmt_A.kbp"), register_in_set}) {
    const QString far = Place("far") + '/' + name.section('/', -1);
    ASSERT_TRUE(QFile::rename(name, far));
    Exec(far, "ANALYZE");
    ASSERT_TRUE(QFile::link(far, name));
    const Tree before = TreeOf(Data());
    ExpectTrouble("Restore");
    EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
    EXPECT_EQ(TreeOf(Data()).value("risk_esmatn2.mdb"), before.value("risk_esmatn2.mdb"));
    EXPECT_EQ(ReadFile(installation.Lists()), before.value("RskAsmt_BkSup.mdb"));
    EXPECT_EQ(ReadFile(installation.Register()), before.value("orgtn.mdb"));
  }
}

// A restore that can't go on.

TEST_F(BackupWorkerFaultsTest, SetWithTheRegisterAloneReplacesItAndThenSaysThatItFailed) {
  GivenSet();
  for (const char* name : {"ktx_RskSmt_A.kbp", "ktx_RskSmt1.kbp", "ktx_RskSmt2.kbp"})
    ASSERT_TRUE(QFile::remove(InSet(name)));
  Exec(installation.Register(), "DELETE FROM orgtn");
  installation.GivenListRows("Prjstage", {"None.", "Mine"});
  const QByteArray lists = ReadFile(installation.Lists());
  const QByteArray study = ReadFile(installation.Study(1));
  ExpectTrouble("Restore");

  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);

  EXPECT_EQ(Organisations(installation.Register()), (QStringList{"Press shop", "Foundry"}));
  EXPECT_EQ(ReadFile(installation.Lists()), lists);
  EXPECT_EQ(ReadFile(installation.Study(1)), study);
  EXPECT_EQ(steps, QStringList{"25 % complete"});
}

TEST_F(BackupWorkerFaultsTest, StudyThatTheSetLacksIsGoneAfterTheRestore) {
  GivenSet();
  ASSERT_TRUE(QFile::remove(InSet("ktx_RskSmt1.kbp")));
  EXPECT_EQ(FailureOfRun(), failure::kFileNotFound);
  EXPECT_FALSE(QFileInfo::exists(installation.Study(1)));
  EXPECT_TRUE(QFileInfo::exists(installation.Study(2)));
  EXPECT_EQ(steps.size(), 2);
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(BackupWorkerFaultsTest, PicturesThatTheSetLacksEndTheRestoreBehindTheStudy) {
  GivenSet();
  ASSERT_TRUE(QDir(InSet("Prj1")).removeRecursively());
  Exec(installation.Study(1), "DELETE FROM Risk_records");
  EXPECT_EQ(FailureOfRun(), failure::kPathNotFound);
  EXPECT_EQ(ReadFile(installation.Study(1)), ReadFile(InSet("ktx_RskSmt1.kbp")));
  EXPECT_FALSE(QFileInfo::exists(installation.PictureFolder(1)));
  EXPECT_FALSE(QFileInfo::exists(installation.PictureFolder(2)));
}

TEST_F(BackupWorkerFaultsTest, SplitSetGivesNoPicturesBack) {
  WriteFile(InSet("ktx_RskSmt.kbp"), "an older set");
  ExpectOverwriteQuestion(Button::kYes);
  Run();
  ForRestore();
  EXPECT_EQ(FailureOfRun(), failure::kPathNotFound);
  EXPECT_TRUE(QFileInfo::exists(InDated("Prj1/a.jpg")));
  EXPECT_FALSE(QFileInfo::exists(installation.PictureFolder(1)));
}

TEST_F(BackupWorkerFaultsTest, PicturesThatCannotBeDeletedAreToldAndTheRestoreGoesOn) {
  GivenSet();
  WriteFile(Picture(1, "a.jpg"), "changed");
  desk.files.FailNext(FileAction::kDeleteFolder, "Prj1", failure::kPermissionDenied);
  ExpectTrouble("Restore");
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(steps.size(), 4);
  EXPECT_EQ(ReadFile(Picture(1, "a.jpg")), "before of Press shop");
  EXPECT_FALSE(desk.files.Log().contains("DeleteFolder " + installation.PictureFolder(2)));
}

TEST_F(BackupWorkerFaultsTest, RegisterThatDidNotArriveInARestoreIsToldAndOtherTroubleEndsIt) {
  GivenSet();
  for (const auto& [action, part, number] :
       {std::tuple(FileAction::kDeleteFolder, "Prj1", failure::kDeviceError),
        // Once behind the pictures that go, once behind the copies.
        std::tuple(FileAction::kEndBatch, "", failure::kDiskFull)}) {
    desk.files.FailNext(action, part, number);
    EXPECT_EQ(FailureOfRun(), number);
    EXPECT_TRUE(steps.isEmpty());
  }
  desk.files.PretendMissing("orgtn.mdb");
  ExpectTrouble("Restore");
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_TRUE(steps.isEmpty());
}

TEST_F(BackupWorkerFaultsTest, InstallationThatCannotBeWrittenIsToldInARestore) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GivenSet();
  const QByteArray lists = ReadFile(installation.Lists());
  GiveToNobody(installation.Outside(".."));
  ASSERT_EQ(::chmod(Data().toUtf8().constData(), 0555), 0);
  const auto report = RunAsNobody([this] {
    ExpectTrouble("Restore");
    return Report();
  });
  EXPECT_EQ(report.value_or("no report"), "at its end; BELTROVAN: " + Trouble("Restore"));
  EXPECT_EQ(ReadFile(installation.Lists()), lists);
  ::chmod(Data().toUtf8().constData(), 0755);
}

TEST_F(BackupWorkerFaultsTest, WriteProtectedStudyIsReplacedAllTheSame) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GivenSet();
  installation.GivenTasks(1, "P-2", 5);
  GiveToNobody(installation.Outside(".."));
  ASSERT_EQ(::chmod(installation.Study(1).toUtf8().constData(), 0444), 0);
  EXPECT_EQ(RunAsNobody([this] { return Report(); }).value_or("no report"), "at its end");
  EXPECT_EQ(ReadFile(installation.Study(1)), ReadFile(InSet("ktx_RskSmt1.kbp")));
}

TEST_F(BackupWorkerFaultsTest, StudyThatCannotBeReadInTheSetLeavesTheOldOneWhole) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GivenSet();
  installation.GivenTasks(1, "P-2", 5);
  GiveToNobody(installation.Outside(".."));
  ASSERT_EQ(::chmod(InSet("ktx_RskSmt1.kbp").toUtf8().constData(), 0), 0);
  const QByteArray study = ReadFile(installation.Study(1));
  EXPECT_EQ(RunAsNobody([this] { return Report(); }).value_or("no report"), "failure 70");
  EXPECT_EQ(ReadFile(installation.Study(1)), study);
}

TEST_F(BackupWorkerFaultsTest, FullDiskInARestoreLeavesTheOldStudyWhole) {
  installation.GivenTasks(2, "P-2", 3000);
  GivenSet();
  Exec(installation.Study(2), "DELETE FROM Risk_records WHERE Project_Number='P-1'");
  const QByteArray study = ReadFile(installation.Study(2));
  EXPECT_EQ(ReportOnFullDisk(), "failure 61");
  EXPECT_EQ(ReadFile(installation.Study(2)), study);
}

TEST_F(BackupWorkerFaultsTest, StudyThatSomebodyIsWritingStaysAsItIs) {
  GivenSet();
  const QByteArray study = ReadFile(installation.Study(1));
  const WriterAtWork writer(installation.Study(1));
  EXPECT_EQ(FailureOfRun(), failure::kLocked);
  EXPECT_EQ(ReadFile(installation.Study(1)), study);
}

TEST_F(BackupWorkerFaultsTest, WhatAKilledWriterLeftIsNotTakenForAPartOfTheRestoredStudy) {
  GivenSet();
  {
    OtherProcess writer(installation.Study(1));
    writer.Run(
        "PRAGMA cache_size=1; BEGIN; UPDATE Risk_records SET HzrdDscptnTXT='half done'; "
        "INSERT INTO Risk_records(HzrdDscptnTXT) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
        "SELECT i+1 FROM n WHERE i<2000) SELECT 'half done' FROM n;");
    writer.Kill();
  }
  ASSERT_TRUE(QFileInfo::exists(installation.Study(1) + "-journal"));
  // Nobody can roll back into a file that was damaged, so its journal must not stay.
  WriteFile(installation.Study(1), "no database any more");
  Run();
  EXPECT_EQ(Column(installation.Study(1), "PRAGMA integrity_check"), QStringList{"ok"});
  EXPECT_EQ(ReadFile(installation.Study(1)), ReadFile(InSet("ktx_RskSmt1.kbp")));
}

TEST_F(BackupWorkerFaultsTest, JournalBesideAFileOfASetStaysAndIsNotRolledBack) {
  GivenSet();
  const QByteArray study = ReadFile(InSet("ktx_RskSmt1.kbp"));
  const QString journal = InSet("ktx_RskSmt1.kbp-journal");
  {
    // A change to a copy that was begun, with all that is needed to take it back.
    ASSERT_TRUE(QFile::copy(InSet("ktx_RskSmt1.kbp"), InSet("ktx_RskSmt1.kbp.copy")));
    OtherProcess writer(InSet("ktx_RskSmt1.kbp.copy"));
    writer.Run(
        "PRAGMA cache_size=1; BEGIN; UPDATE Risk_records SET HzrdDscptnTXT=hex(zeroblob(9999));");
    ASSERT_TRUE(QFile::copy(InSet("ktx_RskSmt1.kbp.copy-journal"), journal));
  }
  const Tree set = TreeOf(session.BackupFolder);
  Exec(installation.Study(1), "DELETE FROM Risk_records");
  Run();
  EXPECT_EQ(TreeOf(session.BackupFolder), set);
  EXPECT_EQ(ReadFile(installation.Study(1)), study);
}

TEST_F(BackupWorkerFaultsTest, DamagedRegisterIsRestoredOver) {
  GivenSet();
  WriteFile(installation.Register(), "damaged");
  Run();
  EXPECT_EQ(ReadFile(installation.Register()), ReadFile(InSet("ktx_RskSmt.kbp")));
}

// The process killed in the middle.

class BackupWorkerKilledTest : public BackupWorkerFaultsTest {
 protected:
  /// Kills a child in `work`, at other moments each time, and looks at what it left.
  static void KillIn(const std::function<void()>& work, int microseconds) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      const struct itimerval death = {{0, 0}, {0, microseconds}};
      ::setitimer(ITIMER_REAL, &death, nullptr);
      try {
        for (;;) work();
      } catch (const Failure&) {
        ::_exit(3);
      }
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << WEXITSTATUS(status);
  }
  /// What lies there, without the copies that were on the way to their targets.
  static Tree TargetsIn(const QString& folder) {
    Tree tree = TreeOf(folder);
    for (const QString& name : tree.keys())
      if (name.endsWith(kPartName)) tree.remove(name);
    return tree;
  }
  /// Every file of `now` is that of `old_files` or that of `new_files`, and nothing else is there.
  static void ExpectOldOrNew(const Tree& now, const Tree& old_files, const Tree& new_files) {
    for (auto file = now.begin(); file != now.end(); ++file) {
      const bool whole = file.value() == old_files.value(file.key(), "<none>") ||
                         file.value() == new_files.value(file.key(), "<none>");
      EXPECT_TRUE(whole) << file.key().toStdString();
    }
  }
  /// Lays a half-finished copy, as a killed process of this machine leaves it, into that folder.
  static QString GivenLeftover(const QString& folder) {
    const QString path = PartIn(folder);
    WriteFile(path, "half of a copy");
    return path;
  }
  void ChangeEverything() {
    for (const int number : {1, 2}) {
      installation.GivenTasks(number, "P-2", 400);
      WriteFile(Picture(number, "a.jpg"), QByteArray(200'000, 'x'));
    }
    Exec(installation.Register(), "INSERT INTO Orgtmp VALUES(9)");
    installation.GivenListRows("ActionBy", {"Somebody else"});
  }
};

TEST_F(BackupWorkerKilledTest, BackupLeavesEachFileOldOrNew) {
  Run();
  const Tree old_files = TreeOf(InSet(kToday));
  const QString kept = Place("kept");
  ASSERT_TRUE(QDir().rename(InSet(kToday), kept + "/old"));
  ChangeEverything();
  Run();
  const Tree new_files = TreeOf(InSet(kToday));
  ASSERT_NE(old_files, new_files);
  for (int round = 0; round < 25; ++round) {
    desk.files.CopyFolder(kept + "/old", InSet(kToday));
    KillIn([this] { (void)Run(RunHere); }, 500 + round * 1'300);
    const Tree now = TargetsIn(InSet(kToday));
    ExpectOldOrNew(now, old_files, new_files);
    EXPECT_EQ(now.keys(), old_files.keys()) << "round " << round;
  }
}

TEST_F(BackupWorkerKilledTest, RestoreLeavesEachDatabaseOldOrNew) {
  GivenSet();
  const Tree new_files = TreeOf(Data());
  ChangeEverything();
  const Tree old_files = TreeOf(Data());
  const QString kept = Place("kept");
  desk.files.CopyFolder(Data(), kept + "/old");
  for (int round = 0; round < 25; ++round) {
    desk.files.CopyFolder(kept + "/old", Data());
    KillIn([this] { (void)Run(RunHere); }, 2'000 + round * 2'500);
    const Tree now = TargetsIn(Data());
    ExpectOldOrNew(now, old_files, new_files);
    for (const char* name :
         {"orgtn.mdb", "RskAsmt_BkSup.mdb", "risk_esmatn1.mdb", "risk_esmatn2.mdb"})
      EXPECT_TRUE(now.contains(name)) << name << " in round " << round;
  }
}

TEST_F(BackupWorkerKilledTest, LeftoverOfAKilledCopyIsNoPartOfASet) {
  const QString leftover = GivenLeftover(installation.PictureFolder(1));
  Run();
  EXPECT_EQ(QDir(InDated("Prj1")).entryList(QDir::Files | QDir::Hidden),
            (QStringList{"a.jpg", "b.jpg"}));
  EXPECT_EQ(ReadFile(leftover), "half of a copy");
}

TEST_F(BackupWorkerKilledTest, NextBackupIntoASetRemovesWhatAKilledOneLeftThere) {
  Run();
  const Tree set = TreeOf(InSet(kToday));
  for (const QString& folder : {InSet(kToday), InDated("Prj2")}) (void)GivenLeftover(folder);
  Run();
  EXPECT_EQ(TreeOf(InSet(kToday)), set);
}

TEST_F(BackupWorkerKilledTest, RestoreTakesNoLeftoverOfTheSetAndRemovesThoseOfTheInstallation) {
  GivenSet();
  const Tree before = TreeOf(Data());
  for (const QString& folder : {InSet("Prj1"), Data(), installation.PictureFolder(2)})
    (void)GivenLeftover(folder);
  Run();
  EXPECT_EQ(TreeOf(Data()), before);
}

}  // namespace
}  // namespace kestrix
