#include "platform/PasteGuard.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextEdit>

#include "support/Printers.h"
#include "support/XServer.h"

namespace kestrix {
namespace {

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
  EXPECT_EQ(RunOnDisplay("PasteGuardTest/*"), "");
}

}  // namespace
}  // namespace kestrix
