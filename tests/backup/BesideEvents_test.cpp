#include "backup/BesideEvents.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QTimer>
#include <future>
#include <stdexcept>

#include "backup/OtherClient.h"
#include "platform/Failure.h"
#include "support/Files.h"
#include "support/FormHands.h"
#include "support/XServer.h"

namespace kestrix {
namespace {

/// Counts how often it is painted.
class Watched : public QLineEdit {
 public:
  int painted = 0;

 protected:
  void paintEvent(QPaintEvent* event) override {
    ++painted;
    QLineEdit::paintEvent(event);
  }
};

TEST(BesideEventsTest, WorkIsDoneOnReturnAndOnAnotherThread) {
  QThread* thread = nullptr;
  RunBesideEvents([&] { thread = QThread::currentThread(); });
  EXPECT_NE(thread, nullptr);
  EXPECT_NE(thread, QThread::currentThread());
}

TEST(BesideEventsTest, FailureOfTheWorkComesBack) {
  EXPECT_EQ(FailureOf([] { RunBesideEvents([] { throw Failure(failure::kDiskFull, "full"); }); }),
            failure::kDiskFull);
  EXPECT_THROW(RunBesideEvents([] { throw std::runtime_error("other"); }), std::runtime_error);
}

TEST(BesideEventsTest, WindowIsPaintedWhileTheWorkGoesOn) {
  Watched window;
  window.show();
  FormHands::Settle();
  const int before = window.painted;
  std::promise<void> painted;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &window, [&] {
    if (window.painted == before) return window.update();
    watch.stop();
    painted.set_value();
  });
  watch.start(1);
  // The work ends only when the window was painted in the meantime.
  RunBesideEvents([&] { painted.get_future().wait(); });
  EXPECT_GT(window.painted, before);
}

/// Runs once more, on a display, by the test below.
TEST(BesideEventsOnDisplayTest, MoveIsAnsweredAndKeysWaitWhileTheWorkGoesOn) {
  if (QGuiApplication::platformName() != "xcb") GTEST_SKIP() << "Runs on a display of its own.";
  constexpr xcb_keycode_t kLetterA = 38;
  Watched window;
  window.show();
  window.activateWindow();
  ASSERT_TRUE(FormHands::WaitUntil([&] { return window.hasFocus(); }));
  OtherClient other;
  std::promise<void> moved;
  QString text_meanwhile = "unset";
  const QPoint before = window.pos();
  QTimer watch;
  bool told = false;
  QObject::connect(&watch, &QTimer::timeout, &window, [&] {
    if (!std::exchange(told, true)) {
      other.Strike(window.winId(), kLetterA);
      other.Move(window.winId(), before + QPoint(40, 30));
    }
    // The key came before the move.
    if (window.pos() == before) return;
    watch.stop();
    text_meanwhile = window.text();
    moved.set_value();
  });
  watch.start(1);
  RunBesideEvents([&] { moved.get_future().wait(); });
  EXPECT_EQ(text_meanwhile, "");
  EXPECT_TRUE(FormHands::WaitUntil([&] { return window.text() == "a"; }));
}

TEST(BesideEventsTest, KeysWaitOnADisplay) {
  const QString why_not = XServer::WhyNot(XServer::Manager::kNone);
  if (!why_not.isEmpty()) GTEST_SKIP() << why_not.toStdString();
  const XServer display(XServer::Manager::kNone);
  ASSERT_TRUE(display.Ready());
  EXPECT_EQ(RunOnDisplay("BesideEventsOnDisplayTest.*:BkUpfrmOnDisplayTest.*"), "");
}

}  // namespace
}  // namespace kestrix
