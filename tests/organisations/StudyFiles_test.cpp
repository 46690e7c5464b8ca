#include "organisations/StudyFiles.h"

#include <QDir>

#include "support/Files.h"
#include "support/FormTest.h"
#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

const Message kTemplateMissing =
    Tell(Icon::kInformation, "BELTROVAN: File missing.", "Installed files missing.");
const Message kCopyFailed =
    Tell(Icon::kInformation, "BELTROVAN",
         "Failed to create files. Seek Administrator approval for File installation.");
const Message kStillOpen =
    Tell(Icon::kCritical, "BELTROVAN",
         "Failed to delete records as more than one user has opened this file.");

class CreateStudyDbTest : public FormTest {
 protected:
  void Create(qint16 number) {
    session.ActiveStudyNo = number;
    CreateStudyDb(context);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  }
};

TEST_F(CreateStudyDbTest, StudyIsACopyOfTheTemplate) {
  Create(12);
  EXPECT_EQ(ReadFile(installation.Study(12)), ReadFile(installation.Template()));
  EXPECT_TRUE(RowsOf(installation.Study(12), "Project_details").isEmpty());
  EXPECT_FALSE(QDir(installation.PictureFolder(12)).exists());
  EXPECT_TRUE(session.FileFoundA);
  EXPECT_FALSE(session.FileFoundB);
  EXPECT_TRUE(session.FileFoundC);
}

TEST_F(CreateStudyDbTest, MissingTemplateIsToldWhetherTheStudyExistsOrNot) {
  installation.GivenStudy(12);
  ASSERT_TRUE(QFile::remove(installation.Template()));
  for (const qint16 number : {qint16{11}, qint16{12}}) {
    desk.messages.Expect(kTemplateMissing);
    Create(number);
    EXPECT_EQ(QFile::exists(installation.Study(number)), number == 12);
  }
}

TEST_F(CreateStudyDbTest, FolderThatCantBeWrittenIsTold) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GiveToNobody(QFileInfo(installation.Folder()).path());
  const auto seen = RunAsNobody([&] {
    const QString folder = installation.Path("RskAsmtFld");
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    desk.messages.Expect(kCopyFailed);
    Create(12);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return QStringLiteral("%1 box, %2 to come, file: %3")
        .arg(desk.messages.Shown().size())
        .arg(desk.messages.Waiting())
        .arg(QFile::exists(installation.Study(12)));
  });
  EXPECT_EQ(seen.value_or("died"), "1 box, 0 to come, file: 0");
}

TEST_F(CreateStudyDbTest, WriteProtectedTemplateGivesAStudyThatCanBeWritten) {
  ASSERT_TRUE(QFile::setPermissions(installation.Template(), QFile::ReadOwner));
  Create(12);
  EXPECT_TRUE(QFile::permissions(installation.Study(12)) & QFile::WriteOwner);
}

TEST_F(CreateStudyDbTest, JournalOfADeadStudyIsNotPlayedBackIntoTheNewOne) {
  // Somebody was killed in the middle of a change, and the database was taken away without it.
  installation.GivenStudy(12);
  const QString journal = installation.Study(12) + "-journal";
  {
    OtherProcess killed(installation.Study(12));
    killed.Run(
        "PRAGMA cache_size=1; PRAGMA cache_spill=1; BEGIN; "
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<2000) "
        "INSERT INTO Project_details(Factory_Name,Project_Number) "
        "SELECT 'Old', 'P-'||i FROM n;");
    killed.Kill();
  }
  ASSERT_TRUE(QFile::exists(journal));
  ASSERT_TRUE(QFile::remove(installation.Study(12)));
  Create(12);
  EXPECT_FALSE(QFile::exists(journal));
  EXPECT_EQ(Column(installation.Study(12), "PRAGMA integrity_check"), QStringList({"ok"}));
  EXPECT_TRUE(RowsOf(installation.Study(12), "Project_details").isEmpty());
}

class DeleteStudyFilesTest : public FormTest {
 protected:
  void Delete(qint16 number) {
    session.DeleteStudyNo = number;
    session.ActiveOrgName = "Press shop";
    DeleteStudyFiles(context, [this] {
      ++releases;
      if (release) release();
    });
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  }

  std::function<void()> release;
  int releases = 0;
};

TEST_F(DeleteStudyFilesTest, StudyAndPicturesGoAndOthersStay) {
  installation.GivenStudy(3);
  installation.GivenStudy(33);
  WriteFile(installation.PictureFolder(3) + "/a.jpg", "picture");
  ASSERT_TRUE(QFile::setPermissions(installation.Study(3), QFile::ReadOwner));
  for (int time = 0; time < 2; ++time) {
    Delete(3);
    EXPECT_FALSE(QFile::exists(installation.Study(3)));
    EXPECT_FALSE(QDir(installation.PictureFolder(3)).exists());
    EXPECT_TRUE(QFile::exists(installation.Study(33)));
    EXPECT_TRUE(QDir(installation.PictureFolder(33)).exists());
    EXPECT_EQ(releases, 0);
    EXPECT_EQ(session.ActiveOrgName, "Press shop");
    EXPECT_EQ(desk.files.Log(), QStringList({"DeleteFile " + installation.Study(3),
                                             "DeleteFolder " + installation.PictureFolder(3)}));
  }
}

TEST_F(DeleteStudyFilesTest, SignThatAKilledRunLeftIsToldAndTheStudyGoesThoughTheReleaseFails) {
  installation.GivenStudy(3);
  WriteFile(installation.StudySign(3), QByteArray());
  release = [] { throw Failure(failure::kFileNotFound, "no template"); };
  desk.messages.Expect(kStillOpen);
  Delete(3);
  EXPECT_EQ(session.ActiveOrgName, "");
  EXPECT_FALSE(QFile::exists(installation.Study(3)));
  EXPECT_FALSE(QFile::exists(installation.StudySign(3)));
}

TEST_F(DeleteStudyFilesTest, WhatLiesBesideStaysOrGoesWithTheStudyAndPicturesGoAnyway) {
  installation.GivenStudy(3);
  // What a killed change left, and what it was before it was brought up to a newer version.
  const QStringList beside = {installation.Study(3) + "-journal", installation.Study(3) + ".v1"};
  for (const QString& file : beside) WriteFile(file, "left over");
  desk.files.FailNext(FileAction::kDeleteFile, "risk_esmatn3.mdb", failure::kPermissionDenied);
  for (const bool stays : {true, false}) {
    Delete(3);
    EXPECT_EQ(QFile::exists(installation.Study(3)), stays);
    for (const QString& file : beside) EXPECT_EQ(QFile::exists(file), stays);
    EXPECT_FALSE(QDir(installation.PictureFolder(3)).exists());
  }
}

}  // namespace
}  // namespace kestrix
