#include "platform/PasteGuard.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTest>
#include <QTextEdit>

#include "support/Printers.h"
#include "support/XServer.h"

namespace kestrix {
namespace {

constexpr int kLongest = 100'000;  // milliseconds

/// Boxes of several lines, of both kinds, that hold a text.
template <class Box>
class PasteGuardTest : public ::testing::Test {
 protected:
  void SetUp() override {
    clipboard_.clear(QClipboard::Clipboard);
    if (clipboard_.supportsSelection()) clipboard_.clear(QClipboard::Selection);
    box_.setPlainText("mine");
    box_.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&box_));
  }

  PasteGuard guard_;
  QClipboard& clipboard_ = *QGuiApplication::clipboard();
  Box box_;
};
using Boxes = ::testing::Types<QTextEdit, QPlainTextEdit>;
TYPED_TEST_SUITE(PasteGuardTest, Boxes);

TYPED_TEST(PasteGuardTest, PastingOfNothingDoesNothing) {
  QTest::keyClick(&this->box_, Qt::Key_V, Qt::ControlModifier);
  QTest::keyClick(&this->box_, Qt::Key_Insert, Qt::ShiftModifier);
  QTest::keyClick(&this->box_, Qt::Key_Insert, Qt::ControlModifier | Qt::ShiftModifier);
  QTest::mouseClick(this->box_.viewport(), Qt::MiddleButton);
  EXPECT_EQ(this->box_.toPlainText(), "mine");
}

TYPED_TEST(PasteGuardTest, TextIsPasted) {
  this->clipboard_.setText("yours and ");
  QTest::keyClick(&this->box_, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(this->box_.toPlainText(), "yours and mine");
}

TYPED_TEST(PasteGuardTest, SelectionIsPastedByTheMiddleButtonWhereTheDesktopHasOne) {
  const bool has_selection = this->clipboard_.supportsSelection();
  if (has_selection) this->clipboard_.setText("yours", QClipboard::Selection);
  QTest::mouseClick(this->box_.viewport(), Qt::MiddleButton);
  EXPECT_EQ(this->box_.toPlainText().contains("yours"), has_selection);
}

TEST(PasteGuardOnXTest, PastingIsGuardedWhereProgramsShareTheClipboard) {
  const QString why_not = XServer::WhyNot(XServer::Manager::kNone);
  if (!why_not.isEmpty()) GTEST_SKIP() << why_not.toStdString();
  const XServer server(XServer::Manager::kNone);
  ASSERT_TRUE(server.Ready()) << "the display didn't come up";
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("QT_QPA_PLATFORM", "xcb");
  // The desktop's bus leaks a block of its own there; our leaks show without a display as well.
  environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
  QProcess tests;
  tests.setProcessEnvironment(environment);
  tests.setProcessChannelMode(QProcess::MergedChannels);
  tests.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=PasteGuardTest/*"});
  ASSERT_TRUE(tests.waitForFinished(kLongest));
  const std::string printed = tests.readAll().toStdString();
  EXPECT_EQ(tests.exitStatus(), QProcess::NormalExit) << printed;
  EXPECT_EQ(tests.exitCode(), 0) << printed;
  EXPECT_NE(printed.find("[  PASSED  ]"), std::string::npos) << printed;
}

}  // namespace
}  // namespace kestrix
