#include "platform/QtFileSystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>

#include "support/Files.h"
#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

class QtFileSystemTest : public ::testing::Test {
 protected:
  ~QtFileSystemTest() override { QDir::setCurrent(started_in_); }
  [[nodiscard]] QString At(const QString& name) const { return folder_.filePath(name); }
  void MakeFolder(const QString& name) { ASSERT_TRUE(QDir(folder_.path()).mkpath(name)); }

  QTemporaryDir folder_;
  QtFileSystem files_;
  QString started_in_ = QDir::currentPath();
};

TEST_F(QtFileSystemTest, FilesAndFoldersAreToldApart) {
  WriteFile(At("file"), "x");
  MakeFolder("folder");
  EXPECT_TRUE(files_.FileExists(At("file")));
  EXPECT_FALSE(files_.FileExists(At("folder")));
  EXPECT_FALSE(files_.FileExists(At("none")));
  EXPECT_FALSE(files_.FileExists(""));
  EXPECT_TRUE(files_.FolderExists(At("folder")));
  EXPECT_FALSE(files_.FolderExists(At("file")));
  EXPECT_FALSE(files_.FolderExists(""));
}

TEST_F(QtFileSystemTest, FolderIsMadeOnce) {
  files_.CreateFolder(At("made"));
  EXPECT_TRUE(QFileInfo(At("made")).isDir());
  EXPECT_EQ(FailureOf([&] { files_.CreateFolder(At("made")); }), failure::kFileExists);
  EXPECT_EQ(FailureOf([&] { files_.CreateFolder(At("none/made")); }), failure::kPathNotFound);
  EXPECT_EQ(FailureOf([&] { files_.CreateFolder(At(QString(300, u'x'))); }),
            failure::kPathNotFound);
}

TEST_F(QtFileSystemTest, TargetThatEndsInASeparatorIsTheFolderOfTheCopy) {
  WriteFile(At("file"), "x");
  MakeFolder("Prj3/deep");
  MakeFolder("to");
  files_.CopyFile(At("file"), At("to/"));
  files_.CopyFolder(At("Prj3"), At("to/"));
  EXPECT_EQ(ReadFile(At("to/file")), "x");
  EXPECT_TRUE(QFileInfo(At("to/Prj3/deep")).isDir());
  EXPECT_EQ(FailureOf([&] { files_.CopyFile(At("file"), At("none/")); }), failure::kPathNotFound);
  EXPECT_EQ(FailureOf([&] { files_.CopyFolder(At("Prj3"), At("none/")); }), failure::kPathNotFound);
  EXPECT_EQ(FailureOf([&] { files_.CopyFile(At("file"), folder_.path() + "/"); }),
            failure::kPermissionDenied);
}

TEST_F(QtFileSystemTest, WriteProtectedFileIsDeleted) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  WriteFile(At("file"), "x");
  ASSERT_EQ(::chmod(At("file").toUtf8().constData(), 0444), 0);
  GiveToNobody(folder_.path());
  EXPECT_EQ(RunAsNobody([&] {
              files_.DeleteFile(At("file"));
              return QStringLiteral("deleted");
            }),
            QStringLiteral("deleted"));
  EXPECT_FALSE(QFileInfo::exists(At("file")));
}

TEST_F(QtFileSystemTest, WhatIsMissingOrOfTheOtherKindIsNotDeleted) {
  MakeFolder("folder");
  EXPECT_EQ(FailureOf([&] { files_.DeleteFile(At("none")); }), failure::kFileNotFound);
  EXPECT_EQ(FailureOf([&] { files_.DeleteFile(At("folder")); }), failure::kFileNotFound);
  EXPECT_TRUE(QFileInfo(At("folder")).isDir());
  WriteFile(At("file"), "x");
  EXPECT_EQ(FailureOf([&] { files_.DeleteFolder(At("none")); }), failure::kPathNotFound);
  EXPECT_EQ(FailureOf([&] { files_.DeleteFolder(At("file")); }), failure::kPathNotFound);
  EXPECT_EQ(ReadFile(At("file")), "x");
}

TEST_F(QtFileSystemTest, FolderIsDeletedWithProtectedFoldersBelowIt) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  MakeFolder("Prj1/deep/deeper");
  WriteFile(At("Prj1/deep/deeper/file"), "x");
  WriteFile(At("Prj1/.hidden"), "x");
  ASSERT_EQ(::chmod(At("Prj1/deep/deeper").toUtf8().constData(), 0555), 0);
  ASSERT_EQ(::chmod(At("Prj1/deep").toUtf8().constData(), 0000), 0);
  GiveToNobody(folder_.path());
  EXPECT_EQ(RunAsNobody([&] {
              files_.DeleteFolder(At("Prj1"));
              return QStringLiteral("deleted");
            }),
            QStringLiteral("deleted"));
  EXPECT_FALSE(QFileInfo::exists(At("Prj1")));
}

TEST_F(QtFileSystemTest, LinkInADeletedFolderOrInItsPlaceGoesAndIsNeverFollowed) {
  MakeFolder("Prj1");
  MakeFolder("elsewhere");
  WriteFile(At("elsewhere/kept"), "x");
  ASSERT_EQ(::symlink("../elsewhere", At("Prj1/link").toUtf8().constData()), 0);
  ASSERT_EQ(::symlink("../elsewhere/kept", At("Prj1/file").toUtf8().constData()), 0);
  files_.DeleteFolder(At("Prj1/"));
  EXPECT_FALSE(QFileInfo::exists(At("Prj1")));
  EXPECT_EQ(ReadFile(At("elsewhere/kept")), "x");
  ASSERT_EQ(::symlink("elsewhere", At("Prj1").toUtf8().constData()), 0);
  files_.DeleteFolder(At("Prj1"));
  EXPECT_FALSE(QFileInfo(At("Prj1")).isSymLink());
  EXPECT_EQ(ReadFile(At("elsewhere/kept")), "x");
}

TEST_F(QtFileSystemTest, FolderOfSomebodyElseIsNotDeleted) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  MakeFolder("closed/Prj1");
  WriteFile(At("closed/Prj1/file"), "x");
  GiveToNobody(folder_.path());
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown(At("closed/Prj1").toUtf8().constData(), 0, 0), 0);
    ASSERT_EQ(::chown(At("closed").toUtf8().constData(), 0, 0), 0);
  } else {
    GTEST_SKIP() << "only root can make a folder of somebody else";
  }
  const auto report = RunAsNobody([&] {
    files_.DeleteFolder(At("closed/Prj1"));
    return QStringLiteral("deleted");
  });
  EXPECT_TRUE(report.value_or("").startsWith(QStringLiteral("Failure 70: ")));
  EXPECT_EQ(ReadFile(At("closed/Prj1/file")), "x");
}

TEST_F(QtFileSystemTest, TextOfAFileThatExistsIsReplacedWithoutALineEnd) {
  WriteFile(At("notice"), "an older and longer text\n");
  files_.ReplaceText(At("notice"), QStringLiteral("File clösed"));
  EXPECT_EQ(ReadFile(At("notice")), QStringLiteral("File clösed").toUtf8());
  EXPECT_EQ(FailureOf([&] { files_.ReplaceText(At("none"), "x"); }), failure::kFileNotFound);
  EXPECT_FALSE(QFileInfo::exists(At("none")));
}

TEST_F(QtFileSystemTest, FoldersAreListedSortedWithoutHiddenOnes) {
  for (const char* name : {"beta", "Alpha", ".hidden", "gamma"}) MakeFolder(name);
  WriteFile(At("file"), "x");
  EXPECT_EQ(files_.FoldersIn(folder_.path()), QStringList({"Alpha", "beta", "gamma"}));
  EXPECT_EQ(FailureOf([&] { (void)files_.FoldersIn(At("none")); }), failure::kPathNotFound);
}

TEST_F(QtFileSystemTest, BatchDoesAllThatItsSingleChangesWouldDo) {
  MakeFolder("Prj1");
  WriteFile(At("Prj1/a.jpg"), "picture");
  WriteFile(At("file"), "new");
  WriteFile(At("gone"), "x");
  MakeFolder("to");
  WriteFile(At("to/old"), "old");
  FileBatch batch(files_, At("to"));
  files_.CopyFile(At("file"), At("to/old"));
  files_.CopyFile(At("file"), At("to/fresh"));
  files_.CopyFolder(At("Prj1"), At("to/"));
  files_.CreateFolder(At("to/made"));
  files_.DeleteFile(At("gone"));
  EXPECT_EQ(FailureOf([&] { files_.CopyFile(At("file"), At("file")); }),
            failure::kPermissionDenied);
  batch.End();
  EXPECT_EQ(ReadFile(At("to/old")), "new");
  EXPECT_EQ(ReadFile(At("to/fresh")), "new");
  EXPECT_EQ(ReadFile(At("to/Prj1/a.jpg")), "picture");
  EXPECT_TRUE(QFileInfo(At("to/made")).isDir());
  EXPECT_FALSE(QFileInfo::exists(At("gone")));
  EXPECT_EQ(QDir(At("to")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList({"fresh", "made", "old", "Prj1"}));
}

TEST_F(QtFileSystemTest, BatchThatCannotReachTheDiskSaysSoAtItsEndOnly) {
  FileBatch batch(files_, At("none"));
  EXPECT_EQ(FailureOf([&] { batch.End(); }), failure::kPathNotFound);
  EXPECT_EQ(FailureOf([&] { batch.End(); }), 0);
  EXPECT_EQ(FailureOf([&] { const FileBatch dropped(files_, At("none")); }), 0);
}

TEST_F(QtFileSystemTest, CurrentFolderMovesAlsoToARelativePath) {
  MakeFolder("family/module");
  files_.ChangeFolder(At("family/module"));
  files_.ChangeFolder("..");
  EXPECT_EQ(files_.CurrentFolder(), QFileInfo(At("family")).canonicalFilePath());
  EXPECT_EQ(FailureOf([&] { files_.ChangeFolder("none"); }), failure::kPathNotFound);
  EXPECT_EQ(files_.CurrentFolder(), QFileInfo(At("family")).canonicalFilePath());
}

}  // namespace
}  // namespace kestrix
