#include "shell/DocumentFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QTemporaryDir>

#include "support/Files.h"
#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

class DocumentFileTest : public ::testing::Test {
 protected:
  [[nodiscard]] QString Path(const QString& name) const { return folder_.filePath(name); }
  [[nodiscard]] QString ReadBack(const QByteArray& bytes) const {
    WriteFile(Path(QStringLiteral("a.kfe")), bytes);
    return ReadDocument(Path(QStringLiteral("a.kfe")));
  }

  QTemporaryDir folder_;
};

TEST_F(DocumentFileTest, WhatWasWrittenIsReadAgain) {
  const QString file = Path(QStringLiteral("a.kfe"));
  WriteDocument(file, QStringLiteral("Prüfung – 押す\n"));
  EXPECT_EQ(ReadFile(Path(QStringLiteral("a.kfe"))),
            "Pr\xC3\xBC"
            "fung \xE2\x80\x93 \xE6\x8A\xBC\xE3\x81\x99\n");
  EXPECT_EQ(ReadDocument(file), QStringLiteral("Prüfung – 押す\n"));
}

TEST_F(DocumentFileTest, WritingReplacesAllOfTheOldContentAndLeavesNothingBeside) {
  const QString file = Path(QStringLiteral("a.kfe"));
  WriteDocument(file, QStringLiteral("a long first text"));
  WriteDocument(file, QStringLiteral("short"));
  EXPECT_EQ(ReadFile(Path(QStringLiteral("a.kfe"))), "short");
  EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"a.kfe"});
}

TEST_F(DocumentFileTest, TextsOfOtherEncodingsAreRead) {
  EXPECT_EQ(ReadBack("\xEF\xBB\xBFmark"), "mark");
  EXPECT_EQ(ReadBack(QByteArray("\xFF\xFEm\0\xFC\0", 6)), QStringLiteral("mü"));
  EXPECT_EQ(ReadBack("Pr\xFC"
                     "fung"),
            QStringLiteral("Prüfung"));
  EXPECT_EQ(ReadBack(""), "");
}

TEST_F(DocumentFileTest, BytesThatAreNoTextAreMarkedInTheirPlaces) {
  EXPECT_EQ(ReadBack(QByteArray("a\0b", 3)), QStringLiteral("a\uFFFDb"));
  EXPECT_EQ(ReadBack("a\xEF\xBF\xBC"
                     "b"),
            QStringLiteral("a\uFFFDb"));
}

TEST_F(DocumentFileTest, MissingFileFails) {
  EXPECT_EQ(FailureOf([&] { (void)ReadDocument(Path(QStringLiteral("none"))); }),
            failure::kFileNotFound);
  EXPECT_EQ(FailureOf([] { (void)ReadDocument(QString()); }), failure::kFileNotFound);
}

TEST_F(DocumentFileTest, WhatIsNoPlainFileFailsAndIsNotWaitedFor) {
  EXPECT_EQ(FailureOf([&] { (void)ReadDocument(folder_.path()); }), failure::kInvalidCall);
  const QString pipe = Path(QStringLiteral("pipe"));
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  EXPECT_EQ(FailureOf([&] { (void)ReadDocument(pipe); }), failure::kInvalidCall);
  EXPECT_EQ(FailureOf([] { (void)ReadDocument(QStringLiteral("/dev/zero")); }),
            failure::kInvalidCall);
}

TEST_F(DocumentFileTest, FileBeyondTheBoundFailsWithItsSizeInWords) {
  QFile file(Path(QStringLiteral("huge.kfe")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_TRUE(file.resize(kMostDocumentBytes + 1));
  file.close();
  try {
    (void)ReadDocument(file.fileName());
    FAIL() << "It was read.";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.number(), failure::kInvalidCall);
    EXPECT_TRUE(failure.description().contains("more than 16 MB"));
  }
}

TEST_F(DocumentFileTest, WritingWithoutANameOrIntoNoFolderFails) {
  EXPECT_EQ(FailureOf([] { WriteDocument(QString(), QStringLiteral("text")); }),
            failure::kPathNotFound);
  EXPECT_NE(FailureOf([&] { WriteDocument(Path(QStringLiteral("no/a")), QStringLiteral("text")); }),
            0);
  EXPECT_NE(FailureOf([&] { WriteDocument(folder_.path(), QStringLiteral("text")); }), 0);
}

TEST_F(DocumentFileTest, RefusedWriteLeavesTheOldFileWhole) {
  if (!CanRunAsNobody()) GTEST_SKIP() << "This test needs to drop its rights.";
  WriteFile(Path(QStringLiteral("a.kfe")), "old");
  ASSERT_EQ(::chmod(QFile::encodeName(folder_.path()).constData(), 0755), 0);
  const auto report = RunAsNobody([&] {
    WriteDocument(Path(QStringLiteral("a.kfe")), QStringLiteral("new"));
    return QStringLiteral("written");
  });
  EXPECT_TRUE(report.value_or(QString()).startsWith("Failure 70"))
      << report.value_or(QStringLiteral("<no report>")).toStdString();
  EXPECT_EQ(ReadFile(Path(QStringLiteral("a.kfe"))), "old");
}

TEST_F(DocumentFileTest, FileThatMayNotBeReadFails) {
  if (!CanRunAsNobody()) GTEST_SKIP() << "This test needs to drop its rights.";
  WriteFile(Path(QStringLiteral("a.kfe")), "secret");
  ASSERT_EQ(::chmod(QFile::encodeName(folder_.path()).constData(), 0755), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(Path(QStringLiteral("a.kfe"))).constData(), 0600), 0);
  const auto report = RunAsNobody([&] { return ReadDocument(Path(QStringLiteral("a.kfe"))); });
  EXPECT_TRUE(report.value_or(QString()).startsWith("Failure 70"))
      << report.value_or(QStringLiteral("<no report>")).toStdString();
}

}  // namespace
}  // namespace kestrix
