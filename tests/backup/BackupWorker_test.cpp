#include "backup/BackupWorker.h"

#include <QFileInfo>

#include "backup/BackupTest.h"

namespace kestrix {
namespace {

class BackupWorkerTest : public BackupTest {};

TEST_F(BackupWorkerTest, FirstBackupGoesIntoADatedFolderWithItsPictures) {
  GivenFullOrganisation("Press shop", 1);
  GivenFullOrganisation("Foundry", 7);

  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);

  Tree expected;
  expected[kToday] = expected[kToday + "/Prj1"] = expected[kToday + "/Prj7"] = "<folder>";
  expected[kToday + "/ktx_RskSmt.kbp"] = ReadFile(installation.Register());
  expected[kToday + "/ktx_RskSmt_A.kbp"] = ReadFile(installation.Lists());
  for (const int number : {1, 7}) {
    const QString n = QString::number(number);
    expected[kToday + "/ktx_RskSmt" + n + ".kbp"] = ReadFile(installation.Study(number));
    for (const char* name : {"a.jpg", "b.jpg"})
      expected[kToday + "/Prj" + n + "/" + name] = ReadFile(Picture(number, name));
  }
  EXPECT_EQ(TreeOf(session.BackupFolder), expected);
}

TEST_F(BackupWorkerTest, EachFinishedStepIsToldAndTheSessionHoldsThem) {
  GivenFullOrganisation("Press shop", 1);
  GivenFullOrganisation("Foundry", 2);
  Run();
  EXPECT_EQ(steps,
            (QStringList{"25 % complete", "50 % complete", "75 % complete", "100 % complete"}));
  EXPECT_EQ(percent, 100);
  EXPECT_EQ(session.OrgRowCount, 2);
  EXPECT_EQ(session.BackupStepTotal, 4);
  EXPECT_EQ(session.LoopIndex, 5) << "behind the last step";
  desk.files.PretendMissing("ktx_RskSmt_A.kbp");
  ExpectTrouble("Backup");
  Run();
  EXPECT_EQ(session.LoopIndex, 2);
}

TEST_F(BackupWorkerTest, PercentIsRoundedAndAHalfGoesUp) {
  GivenManyOrganisations(6);
  Run();
  EXPECT_EQ(steps,
            (QStringList{"13 % complete", "25 % complete", "38 % complete", "50 % complete",
                         "63 % complete", "75 % complete", "88 % complete", "100 % complete"}));
}

TEST_F(BackupWorkerTest, EmptyRegisterGivesTheTwoFixedFiles) {
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(steps, (QStringList{"50 % complete", "100 % complete"}));
  EXPECT_EQ(session.BackupStepTotal, 2);
  EXPECT_EQ(TreeOf(session.BackupFolder).keys(),
            (QStringList{kToday, kToday + "/ktx_RskSmt.kbp", kToday + "/ktx_RskSmt_A.kbp"}));
}

TEST_F(BackupWorkerTest, SecondBackupOfADayOverwritesWithoutAQuestion) {
  GivenFullOrganisation("Press shop", 1);
  Run();
  installation.GivenTasks(1, "P-2", 5);
  WriteFile(Picture(1, "a.jpg"), "a later picture");
  WriteFile(Picture(1, "c.jpg"), "a third picture");
  ASSERT_TRUE(QFile::remove(Picture(1, "b.jpg")));

  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);

  EXPECT_EQ(ReadFile(InDated("ktx_RskSmt1.kbp")), ReadFile(installation.Study(1)));
  EXPECT_EQ(ReadFile(InDated("Prj1/a.jpg")), "a later picture");
  EXPECT_EQ(ReadFile(InDated("Prj1/c.jpg")), "a third picture");
  // The folder is filled over: what the organisation has no longer stays in the set.
  EXPECT_EQ(ReadFile(InDated("Prj1/b.jpg")), "after of Press shop");
  EXPECT_EQ(desk.messages.Shown().size(), 0);
}

class BackupWorkerReplaceTest : public BackupTest,
                                public ::testing::WithParamInterface<const char*> {};

TEST_P(BackupWorkerReplaceTest, FolderWithOneFixedFileIsLeftAloneWhenTheUserRefusesAndElseSplit) {
  GivenFullOrganisation("Press shop", 1);
  WriteFile(InSet(GetParam()), "an older set");
  const Tree before = TreeOf(session.BackupFolder);
  ExpectOverwriteQuestion(Button::kNo);
  EXPECT_EQ(Run(), BackupWorker::End::kRefused);
  EXPECT_EQ(TreeOf(session.BackupFolder), before);
  EXPECT_EQ(session.MsgAnswer, Button::kNo);
  EXPECT_TRUE(steps.isEmpty());
  ExpectOverwriteQuestion(Button::kYes);
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(TreeOf(session.BackupFolder).keys(),
            (QStringList{kToday, kToday + "/Prj1", kToday + "/Prj1/a.jpg", kToday + "/Prj1/b.jpg",
                         "ktx_RskSmt.kbp", "ktx_RskSmt1.kbp", "ktx_RskSmt_A.kbp"}));
  EXPECT_EQ(ReadFile(InSet("ktx_RskSmt.kbp")), ReadFile(installation.Register()));
  EXPECT_EQ(ReadFile(InSet("ktx_RskSmt_A.kbp")), ReadFile(installation.Lists()));
  EXPECT_EQ(steps.size(), 3);
}

INSTANTIATE_TEST_SUITE_P(EachFixedFile, BackupWorkerReplaceTest,
                         ::testing::Values("ktx_RskSmt.kbp", "ktx_RskSmt_A.kbp"),
                         [](const auto& file) { return "File" + std::to_string(file.index + 1); });

TEST_F(BackupWorkerTest, RegisterOf325RowsIsTheLastThatCountsToItsEnd) {
  GivenManyOrganisations(325);
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(steps.size(), 327);
  EXPECT_EQ(steps.last(), "100 % complete");
}

TEST_F(BackupWorkerTest, RegisterOf326RowsOverflowsBehindItsLastCopy) {
  GivenManyOrganisations(326);
  EXPECT_EQ(FailureOfRun(), failure::kOverflow);
  EXPECT_EQ(steps.size(), 327);
  EXPECT_TRUE(QFileInfo(InDated("Prj326")).isDir());
  EXPECT_EQ(ReadFile(InDated("ktx_RskSmt326.kbp")), ReadFile(installation.Study(326)));
  Exec(installation.Study(326), "INSERT INTO Project_details(Project_Number) VALUES('later')");
  ForRestoreOfToday();
  EXPECT_EQ(FailureOfRun(), failure::kOverflow) << "so does its restore";
  EXPECT_EQ(ReadFile(installation.Study(326)), ReadFile(InSet("ktx_RskSmt326.kbp")));
}

TEST_F(BackupWorkerTest, RegisterOf328RowsLosesItsLastTwo) {
  GivenManyOrganisations(328);
  EXPECT_EQ(FailureOfRun(), failure::kOverflow);
  EXPECT_EQ(session.BackupStepTotal, 330);
  EXPECT_TRUE(QFileInfo(InDated("Prj326")).isDir());
  EXPECT_FALSE(QFileInfo::exists(InDated("ktx_RskSmt327.kbp")));
  EXPECT_FALSE(QFileInfo::exists(InDated("ktx_RskSmt328.kbp")));
}

struct Modes {
  qint16 mode;
  qint16 sub_mode;
};
class BackupWorkerModesTest : public BackupTest, public ::testing::WithParamInterface<Modes> {};

TEST_P(BackupWorkerModesTest, OtherModesDoNothing) {
  GivenFullOrganisation("Press shop", 1);
  Run();
  session.BackupFolder = InSet(kToday);
  const Tree set = TreeOf(session.BackupFolder);
  const Tree data = TreeOf(Data());
  session.BackupMode = GetParam().mode;
  session.BackupSubMode = GetParam().sub_mode;
  EXPECT_EQ(Run(), BackupWorker::End::kNothingToDo);
  EXPECT_EQ(TreeOf(session.BackupFolder), set);
  EXPECT_EQ(TreeOf(Data()), data);
}

INSTANTIATE_TEST_SUITE_P(EachPair, BackupWorkerModesTest,
                         ::testing::Values(Modes{0, 1}, Modes{1, 1}, Modes{2, 0}, Modes{3, 3}),
                         [](const auto& pair) {
                           return "Mode" + std::to_string(pair.param.mode) + "Sub" +
                                  std::to_string(pair.param.sub_mode);
                         });

class BackupWorkerFolderTest : public BackupTest,
                               public ::testing::WithParamInterface<const char*> {};

TEST_P(BackupWorkerFolderTest, FoldersOfAnyNameTakeASetAndGiveItBack) {
  GivenFullOrganisation("O'Brien \"North\"", 1);
  session.BackupFolder = Place(QString::fromUtf8(GetParam()));
  Run();
  const Tree before = TreeOf(Data());
  Exec(installation.Study(1), "DELETE FROM Risk_records");
  ASSERT_TRUE(QFile::remove(Picture(1, "a.jpg")));

  ForRestoreOfToday();
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(TreeOf(Data()), before);
}

INSTANTIATE_TEST_SUITE_P(EachName, BackupWorkerFolderTest,
                         ::testing::Values("it's", "say \"set\"", "Цех №4", "工場 備份", "a&b;c %1",
                                           " leading and trailing "),
                         [](const auto& name) { return "Name" + std::to_string(name.index + 1); });

TEST_F(BackupWorkerTest, RoundTripBringsEveryTableAndPictureBackByteForByte) {
  GivenFullOrganisation("Press shop", 1);
  GivenFullOrganisation("Foundry", 2);
  Run();
  const Tree before = TreeOf(Data());

  Exec(installation.Register(), "UPDATE orgtn SET OrgName='Renamed' WHERE sclenotxt=1");
  Exec(installation.Register(), "UPDATE Orgtmp SET OrgNameTMP=2");
  installation.EmptyLists();
  Exec(installation.Study(1), "DELETE FROM Project_details; DELETE FROM Risk_records");
  installation.GivenTasks(2, "P-9", 500);
  WriteFile(Picture(1, "a.jpg"), "another picture, longer than the one it replaces");
  WriteFile(Picture(1, "new.jpg"), "a picture that the set doesn't have");
  ASSERT_TRUE(QDir(installation.PictureFolder(2)).removeRecursively());
  ASSERT_TRUE(QFile::remove(installation.Study(2)));

  ForRestoreOfToday();
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(TreeOf(Data()), before);
  EXPECT_EQ(steps,
            (QStringList{"25 % complete", "50 % complete", "75 % complete", "100 % complete"}));
}

TEST_F(BackupWorkerTest, NothingIsChangedOutsideOfTheRunnerSoThatTheWindowStaysAlive) {
  GivenFullOrganisation("Press shop", 1);
  const auto& log = desk.files.Log();
  qsizetype inside = 0;
  const auto runner = [&](const std::function<void()>& work) {
    const qsizetype before = log.size();
    work();
    inside += log.size() - before;
  };
  Run(runner);
  EXPECT_GT(inside, 0);
  EXPECT_EQ(inside, log.size());

  ForRestoreOfToday();
  Run(runner);
  EXPECT_EQ(inside, log.size());
}

TEST_F(BackupWorkerTest, TimesOfTheFilesAreKept) {
  GivenFullOrganisation("Press shop", 1);
  const QDateTime time(QDate(2009, 8, 7), QTime(6, 5, 4));
  QFile study(installation.Study(1));
  ASSERT_TRUE(study.open(QIODevice::ReadWrite));
  ASSERT_TRUE(study.setFileTime(time, QFileDevice::FileModificationTime));
  study.close();
  Run();
  EXPECT_EQ(QFileInfo(InDated("ktx_RskSmt1.kbp")).lastModified(), time);
}

TEST_F(BackupWorkerTest, RestoreLeavesOtherOrganisationsUnlistedAndWithoutPictures) {
  GivenFullOrganisation("Press shop", 1);
  Run();
  const QByteArray set_register = ReadFile(InDated("ktx_RskSmt.kbp"));
  Exec(installation.Register(), "DELETE FROM orgtn");
  GivenFullOrganisation("Paint shop", 12);
  const QByteArray other_study = ReadFile(installation.Study(12));
  ASSERT_TRUE(QDir().mkpath(installation.PictureFolder(1000)));
  ASSERT_TRUE(QDir().mkpath(installation.PictureFolder(1001)));

  ForRestoreOfToday();
  Run();

  EXPECT_EQ(ReadFile(installation.Register()), set_register);
  EXPECT_EQ(Organisations(installation.Register()), QStringList{"Press shop"});
  EXPECT_EQ(ReadFile(installation.Study(12)), other_study);
  EXPECT_FALSE(QFileInfo::exists(installation.PictureFolder(12)));
  EXPECT_FALSE(QFileInfo::exists(installation.PictureFolder(1000)));
  EXPECT_TRUE(QFileInfo(installation.PictureFolder(1001)).isDir());
  EXPECT_EQ(ReadFile(Picture(1, "a.jpg")), "before of Press shop");
}

TEST_F(BackupWorkerTest, RestoreOfAnEmptySetClearsThePicturesAndReplacesTheFixedFiles) {
  Run();
  const QByteArray set_register = ReadFile(InDated("ktx_RskSmt.kbp"));
  GivenFullOrganisation("Press shop", 1);
  ForRestoreOfToday();
  EXPECT_EQ(Run(), BackupWorker::End::kAtEnd);
  EXPECT_EQ(ReadFile(installation.Register()), set_register);
  EXPECT_TRUE(QFileInfo::exists(installation.Study(1)));
  EXPECT_FALSE(QFileInfo::exists(installation.PictureFolder(1)));
}

}  // namespace
}  // namespace kestrix
