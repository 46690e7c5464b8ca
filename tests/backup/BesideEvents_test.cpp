#include "backup/BesideEvents.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QLineEdit>
#include <QProcess>
#include <QTimer>
#include <future>
#include <stdexcept>

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

/// Another client of the display, which sends keys to a window of ours and moves it.
class OtherClient {
 public:
  OtherClient() : xcb_(::xcb_connect(nullptr, nullptr)) {}
  OtherClient(const OtherClient&) = delete;
  OtherClient& operator=(const OtherClient&) = delete;
  ~OtherClient() { ::xcb_disconnect(xcb_); }

  void Strike(WId window, xcb_keycode_t key) {
    xcb_key_press_event_t event = {};
    event.detail = key;
    event.event = event.child = static_cast<xcb_window_t>(window);
    event.root = ::xcb_setup_roots_iterator(::xcb_get_setup(xcb_)).data->root;
    event.same_screen = 1;
    for (const int type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
      event.response_type = static_cast<uint8_t>(type);
      ::xcb_send_event(xcb_, 0, event.event, XCB_EVENT_MASK_KEY_PRESS,
                       reinterpret_cast<const char*>(&event));
    }
    ::xcb_flush(xcb_);
  }
  void Move(WId window, const QPoint& place) {
    const uint32_t values[] = {static_cast<uint32_t>(place.x()), static_cast<uint32_t>(place.y())};
    ::xcb_configure_window(xcb_, static_cast<xcb_window_t>(window),
                           XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
    ::xcb_flush(xcb_);
  }

 private:
  xcb_connection_t* xcb_;
};

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

TEST(BesideEventsTest, MoveIsAnsweredAndKeysWaitOnADisplay) {
  const QString why_not = XServer::WhyNot(XServer::Manager::kNone);
  if (!why_not.isEmpty()) GTEST_SKIP() << why_not.toStdString();
  const XServer display(XServer::Manager::kNone);
  ASSERT_TRUE(display.Ready());
  QProcess tests;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("QT_QPA_PLATFORM", "xcb");
  environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
  tests.setProcessEnvironment(environment);
  tests.setProcessChannelMode(QProcess::MergedChannels);
  tests.start(QCoreApplication::applicationFilePath(),
              {"--gtest_filter=BesideEventsOnDisplayTest.*"});
  ASSERT_TRUE(tests.waitForFinished());
  const std::string printed = tests.readAll().toStdString();
  EXPECT_EQ(tests.exitCode(), 0) << printed;
  EXPECT_NE(printed.find("[  PASSED  ] 1 test"), std::string::npos) << printed;
}

}  // namespace
}  // namespace kestrix
