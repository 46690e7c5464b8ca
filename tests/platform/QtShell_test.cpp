#include "platform/QtPlatform.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QTest>
#include <QUrl>

#include "support/Files.h"

namespace kestrix {
namespace {

constexpr int kTimeLimit = 15'000;  // milliseconds

class QtShellTest : public ::testing::Test {
 protected:
  QtShellTest() {
    QDir(folder_.path()).mkdir("bin");
    QDir(folder_.path()).mkdir("here");
    QDir::setCurrent(At("here"));
  }
  ~QtShellTest() override {
    QDir::setCurrent(started_in_);
    qputenv("PATH", path_);
  }
  [[nodiscard]] QString At(const QString& name) const { return folder_.filePath(name); }

  void MakeExecutable(const QString& name) {
    ASSERT_EQ(::chmod(At(name).toUtf8().constData(), 0755), 0);
  }
  /// A program that leaves its folder and its arguments, one a line, in the file `report`.
  void MakeProgram(const QString& name, const QString& report) {
    const QString script = QStringLiteral(
                               "#!/bin/sh\n"
                               "{ pwd; for a in \"$@\"; do echo \"$a\"; done; } > '%1.new'\n"
                               "mv '%1.new' '%1'\n")
                               .arg(At(report));
    WriteFile(At(name), script.toUtf8());
    MakeExecutable(name);
  }
  /// An opener that is found before all others.
  void MakeOpener() {
    MakeProgram("bin/xdg-open", "opened");
    qputenv("PATH", At("bin").toUtf8() + ':' + path_);
  }
  [[nodiscard]] QStringList Report(const QString& report) const {
    if (!QTest::qWaitFor([&] { return QFileInfo::exists(At(report)); }, kTimeLimit))
      return {"<no report>"};
    return QString::fromUtf8(ReadFile(At(report))).split('\n', Qt::SkipEmptyParts);
  }
  [[nodiscard]] QString Here(const QString& name = {}) const {
    const QString here = QFileInfo(At("here")).canonicalFilePath();
    return name.isEmpty() ? here : here + '/' + name;
  }

  QTemporaryDir folder_;
  QtShell shell_;
  QString started_in_ = QDir::currentPath();
  QByteArray path_ = qgetenv("PATH");
};

TEST_F(QtShellTest, CompanionOfTheCurrentFolderStartsThereWithoutArguments) {
  MakeProgram("here/RiskBookRpts.exe", "started");
  shell_.StartCompanion("RiskBookRpts.exe");
  EXPECT_EQ(Report("started"), QStringList(Here()));
}

TEST_F(QtShellTest, CompanionIsNeverLookedForInTheSearchPath) {
  MakeProgram("bin/kestrixmodule.exe", "started");
  qputenv("PATH", At("bin").toUtf8() + ':' + path_);
  EXPECT_EQ(FailureOf([&] { shell_.StartCompanion("kestrixmodule.exe"); }), failure::kFileNotFound);
  EXPECT_EQ(FailureOf([&] { shell_.StartCompanion(""); }), failure::kFileNotFound);
  // Nor is what is no program.
  WriteFile(At("here/RiskBookRpts.exe"), "#!/bin/sh\n");
  QDir(At("here")).mkdir("folder.exe");
  for (const char* name : {"RiskBookRpts.exe", "folder.exe"})
    EXPECT_EQ(FailureOf([&] { shell_.StartCompanion(name); }), failure::kFileNotFound) << name;
}

TEST_F(QtShellTest, DocumentGoesToTheOpenerAsOneFullPath) {
  MakeOpener();
  for (const QString name : {"here/a manual; of $HOME.pdf", "here/--help", "bin/plan.jpg"}) {
    WriteFile(At(name), "x");
    const bool is_here = name.startsWith("here/");
    shell_.OpenDocument(is_here ? name.mid(5) : At(name));
    EXPECT_EQ(Report("opened"), QStringList({Here(), is_here ? Here(name.mid(5)) : At(name)}));
    ASSERT_TRUE(QFile::remove(At("opened")));
  }
}

TEST_F(QtShellTest, PlaceInAPageGoesToTheOpenerWithIt) {
  MakeOpener();
  WriteFile(At("here/a page.htm"), "x");
  shell_.OpenPage("a page.htm", "mnfrm");
  const QUrl page = QUrl::fromLocalFile(Here("a page.htm"));
  EXPECT_EQ(Report("opened"),
            QStringList({Here(), QString::fromLatin1(page.toEncoded()) + "#mnfrm"}));
}

TEST_F(QtShellTest, LinkedProgramIsHandedToTheOpenerAndNeverRun) {
  MakeOpener();
  MakeProgram("here/drawing.sh", "ran");
  ASSERT_EQ(::symlink("drawing.sh", At("here/drawing.pdf").toUtf8().constData()), 0);
  shell_.OpenDocument("drawing.pdf");
  EXPECT_EQ(Report("opened"), QStringList({Here(), Here("drawing.pdf")}));
  shell_.OpenDocument(At("here/drawing.sh"));
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return ReadFile(At("opened")).contains("drawing.sh"); }, kTimeLimit));
  EXPECT_FALSE(QFileInfo::exists(At("ran")));
}

TEST_F(QtShellTest, LauncherIsRefusedUnderEveryName) {
  MakeOpener();
  WriteFile(At("here/play.desktop"), "[Desktop Entry]\nType=Application\nExec=true\n");
  ASSERT_EQ(::symlink("play.desktop", At("here/plan.jpg").toUtf8().constData()), 0);
  EXPECT_EQ(FailureOf([&] { shell_.OpenDocument("play.desktop"); }), failure::kInvalidCall);
  EXPECT_EQ(FailureOf([&] { shell_.OpenDocument("plan.jpg"); }), failure::kInvalidCall);
}

TEST_F(QtShellTest, MissingDocumentIsNotFound) {
  EXPECT_EQ(FailureOf([&] { shell_.OpenDocument("none.pdf"); }), failure::kFileNotFound);
  EXPECT_EQ(FailureOf([&] { shell_.OpenDocument(""); }), failure::kFileNotFound);
}

TEST_F(QtShellTest, OpenerThatEndsWithAnErrorIsTold) {
  WriteFile(At("here/plan.jpg"), "x");
  WriteFile(At("bin/xdg-open"), "#!/bin/sh\necho $1 >> '" + At("opened").toUtf8() +
                                    "'\ncase $1 in *plan.jpg) exit 4;; esac\n");
  MakeExecutable("bin/xdg-open");
  qputenv("PATH", At("bin").toUtf8() + ':' + path_);
  QStringList failed;
  for (const QString name : {"plan.jpg", "../bin/xdg-open", "plan.jpg"}) {
    shell_.OpenDocument(name, [&failed, name] { failed += name; });
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return failed.size() == 2; }, kTimeLimit));
  EXPECT_TRUE(QTest::qWaitFor([&] { return ReadFile(At("opened")).count('\n') == 3; }, kTimeLimit));
  EXPECT_EQ(failed, QStringList({"plan.jpg", "plan.jpg"}));
}

TEST_F(QtShellTest, DesktopWithoutAnOpenerSaysSo) {
  WriteFile(At("here/plan.jpg"), "x");
  qputenv("PATH", At("bin").toUtf8());
  EXPECT_EQ(FailureOf([&] { shell_.OpenDocument("plan.jpg"); }), failure::kInvalidCall);
}

}  // namespace
}  // namespace kestrix
