#include "support/FailingFileSystem.h"

#include <gtest/gtest.h>

#include <QDir>

#include "support/FakePlatform.h"
#include "support/Files.h"

namespace kestrix {
namespace {

class FailingFileSystemTest : public ::testing::Test {
 protected:
  [[nodiscard]] QString At(const QString& name) const { return folder_.filePath(name); }

  QTemporaryDir folder_;
  FailingFileSystem files_;
};

TEST_F(FailingFileSystemTest, PlannedFaultHappensOnceAndOnlyThere) {
  WriteFile(At("a"), "x");
  files_.FailNext(FileAction::kCopyFile, "b.kbp", failure::kDiskFull);
  files_.CopyFile(At("a"), At("other"));
  EXPECT_EQ(FailureOf([&] { files_.CopyFile(At("a"), At("b.kbp")); }), failure::kDiskFull);
  EXPECT_FALSE(files_.FileExists(At("b.kbp")));
  files_.CopyFile(At("a"), At("b.kbp"));
  EXPECT_EQ(ReadFile(At("b.kbp")), "x");
  EXPECT_EQ(files_.FaultsLeft(), 0);
  EXPECT_EQ(files_.Log().size(), 3);
  files_.FailNext(FileAction::kEndBatch, "", failure::kDiskFull);
  FileBatch batch(files_, folder_.path());
  EXPECT_EQ(FailureOf([&] { batch.End(); }), failure::kDiskFull);
  files_.PretendMissing("a");
  EXPECT_FALSE(files_.FileExists(At("a")));
  EXPECT_EQ(ReadFile(At("a")), "x");
}

TEST_F(FailingFileSystemTest, LastingFaultStaysUntilItIsHealed) {
  WriteFile(At("a"), "x");
  files_.FailAlways(FileAction::kDeleteFile, "", failure::kPermissionDenied);
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(FailureOf([&] { files_.DeleteFile(At("a")); }), failure::kPermissionDenied);
  files_.Heal();
  files_.DeleteFile(At("a"));
  EXPECT_FALSE(files_.FileExists(At("a")));
}

TEST_F(FailingFileSystemTest, CurrentFolderIsItsOwn) {
  const QString process_folder = QDir::currentPath();
  ASSERT_TRUE(QDir(folder_.path()).mkpath("family/module"));
  WriteFile(At("family/kestrixmodule.exe"), "x");
  files_.ChangeFolder(At("family/module"));
  files_.ChangeFolder("..");
  EXPECT_EQ(files_.CurrentFolder(), At("family"));
  EXPECT_TRUE(files_.FileExists("kestrixmodule.exe"));
  EXPECT_EQ(FailureOf([&] { files_.ChangeFolder("none"); }), failure::kPathNotFound);
  EXPECT_EQ(QDir::currentPath(), process_folder);
}

TEST(FakePlatformTest, CompanionIsRecordedWithTheFolderOfItsMoment) {
  const QTemporaryDir folder;
  FakePlatform fakes;
  Platform& platform = fakes.platform();
  platform.files.ChangeFolder(folder.path());
  platform.shell.StartCompanion("RiskBookRpts.exe");
  EXPECT_EQ(fakes.shell.Companions(),
            QList<FakeShell::Started>({{"RiskBookRpts.exe", folder.path()}}));
  fakes.shell.FailWith(failure::kFileNotFound);
  EXPECT_EQ(FailureOf([&] { platform.shell.OpenDocument("x.pdf"); }), failure::kFileNotFound);
}

TEST(FakePlatformTest, WindowsAreFoundWhileTheyAreOpen) {
  FakePlatform fakes;
  DesktopWindows& windows = fakes.platform().windows;
  EXPECT_EQ(windows.Find("RiskBookRpts"), 0U);
  EXPECT_EQ(FailureOf([&] { windows.Activate("RiskBookRpts"); }), failure::kInvalidCall);
  fakes.windows.Open("RiskBookRpts");
  EXPECT_NE(windows.Find("RiskBookRpts"), 0U);
  windows.Activate("RiskBookRpts");
  EXPECT_EQ(fakes.windows.Activated(), QStringList("RiskBookRpts"));
  EXPECT_EQ(fakes.windows.ActivationsTried().size(), 2);
}

}  // namespace
}  // namespace kestrix
