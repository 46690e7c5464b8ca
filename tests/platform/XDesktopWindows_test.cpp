#include "platform/XDesktopWindows.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QTest>
#include <functional>
#include <memory>

#include "support/Files.h"
#include "support/XServer.h"

namespace kestrix {
namespace {

constexpr int kTimeLimit = 15'000;  // milliseconds

bool Soon(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, kTimeLimit);
}

/// Every rule holds with a window manager and without one.
class XDesktopWindowsTest : public ::testing::TestWithParam<XServer::Manager> {
 protected:
  void SetUp() override {
    const QString why_not = XServer::WhyNot(GetParam());
    if (!why_not.isEmpty()) GTEST_SKIP() << why_not.toStdString();
    server_ = std::make_unique<XServer>(GetParam());
    ASSERT_TRUE(server_->Ready()) << "the display didn't come up";
  }
  QProcess* Opened(const QString& title, bool old_title = false) {
    QProcess* program = server_->OpenWindow(title, old_title);
    EXPECT_NE(program, nullptr) << title.toStdString();
    return program;
  }
  /// A window manager lists a window a moment after it shows.
  [[nodiscard]] bool FoundSoon(const QString& title) {
    return Soon([&] { return windows_.Find(title) != 0; });
  }

  std::unique_ptr<XServer> server_;
  XDesktopWindows windows_;
};

TEST_P(XDesktopWindowsTest, OnlyTheExactTitleIsFound) {
  Opened("RiskBookRpts");
  EXPECT_TRUE(FoundSoon("RiskBookRpts"));
  for (const char* other : {"RiskBookRpt", "RiskBookRpts ", "riskbookrpts", "CaseBookRpts", ""})
    EXPECT_EQ(windows_.Find(other), 0U) << other;
}

TEST_P(XDesktopWindowsTest, WindowIsGoneWithItsProgram) {
  QProcess* program = Opened("kestrixmodule");
  ASSERT_TRUE(FoundSoon("kestrixmodule"));
  server_->CloseWindow(program);
  EXPECT_TRUE(Soon([&] { return windows_.Find("kestrixmodule") == 0; }));
  EXPECT_EQ(FailureOf([&] { windows_.Activate("kestrixmodule"); }), failure::kInvalidCall);
}

TEST_P(XDesktopWindowsTest, TitleMayHoldAnyLetters) {
  Opened("Prüfbericht – Übersicht");
  EXPECT_TRUE(FoundSoon("Prüfbericht – Übersicht"));
}

TEST_P(XDesktopWindowsTest, WindowThatIsTitledInTheOldWayOnlyIsFound) {
  Opened("RiskBookRpts", true);
  EXPECT_TRUE(FoundSoon("RiskBookRpts"));
}

TEST_P(XDesktopWindowsTest, ActivatedWindowComesToTheFrontAndTakesTheKeyboard) {
  Opened("below");
  Opened("above");
  ASSERT_TRUE(FoundSoon("below"));
  ASSERT_TRUE(FoundSoon("above"));
  for (const char* title : {"below", "above", "below"}) {
    windows_.Activate(title);
    EXPECT_TRUE(Soon([&] { return xlook::TopmostTitle() == title; })) << title;
    EXPECT_TRUE(Soon([&] { return xlook::FocusedTitle() == title; })) << title;
  }
}

TEST_P(XDesktopWindowsTest, ServerThatDiedIsReplacedByTheNextOne) {
  Opened("kestrixmodule");
  ASSERT_TRUE(FoundSoon("kestrixmodule"));
  server_->Kill();
  EXPECT_EQ(windows_.Find("kestrixmodule"), 0U);
  EXPECT_EQ(FailureOf([&] { windows_.Activate("kestrixmodule"); }), failure::kInvalidCall);
  server_.reset();

  server_ = std::make_unique<XServer>(GetParam());
  ASSERT_TRUE(server_->Ready());
  Opened("kestrixmodule");
  EXPECT_TRUE(FoundSoon("kestrixmodule"));
}

TEST_P(XDesktopWindowsTest, WindowsThatComeAndGoMeanwhileDoNoHarm) {
  Opened("stays");
  ASSERT_TRUE(FoundSoon("stays"));
  for (int i = 0; i < 10; ++i) {
    QProcess* program = Opened("goes");
    program->kill();
    for (int look = 0; look < 50; ++look) EXPECT_NE(windows_.Find("stays"), 0U);
    EXPECT_TRUE(program->waitForFinished(kTimeLimit));
  }
}

INSTANTIATE_TEST_SUITE_P(Managers, XDesktopWindowsTest,
                         ::testing::Values(XServer::Manager::kNone, XServer::Manager::kOpenbox),
                         [](const auto& test) {
                           return test.param == XServer::Manager::kNone ? "Without" : "Openbox";
                         });

TEST(XDesktopWindowsWithoutDisplayTest, NoWindowIsEverFound) {
  const bool had_display = qEnvironmentVariableIsSet("DISPLAY");
  const QByteArray display = qgetenv("DISPLAY");
  for (const char* none : {"", ":9999", "nonsense"}) {
    qputenv("DISPLAY", none);
    XDesktopWindows windows;
    EXPECT_EQ(windows.Find("RiskBookRpts"), 0U);
    EXPECT_EQ(FailureOf([&] { windows.Activate("RiskBookRpts"); }), failure::kInvalidCall);
  }
  had_display ? qputenv("DISPLAY", display) : qunsetenv("DISPLAY");
}

TEST(TestWindowTest, ProgramTellsTheFolderThatItRunsIn) {
  const QString why_not = XServer::WhyNot(XServer::Manager::kNone);
  if (!why_not.isEmpty()) GTEST_SKIP() << why_not.toStdString();
  const QTemporaryDir folder;
  XServer server(XServer::Manager::kNone);
  ASSERT_TRUE(server.Ready());
  ASSERT_NE(server.OpenWindow("kestrixmodule", false, folder.path(), folder.filePath("report")),
            nullptr);
  ASSERT_TRUE(Soon([&] { return QFileInfo::exists(folder.filePath("report")); }));
  EXPECT_EQ(ReadFile(folder.filePath("report")),
            QFileInfo(folder.path()).canonicalFilePath().toUtf8());
}

}  // namespace
}  // namespace kestrix
