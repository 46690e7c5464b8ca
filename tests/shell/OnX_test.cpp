#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>

#include "support/XServer.h"

namespace kestrix {
namespace {

constexpr int kLongest = 100'000;  // milliseconds

/// Runs the test of the frame's place once more where a window manager puts a border around it,
/// which differs between a window of normal size and a maximised one.
TEST(FrameOnXTest, PlaceOfTheFrameIsStoredUnderAWindowManager) {
  const QString why_not = XServer::WhyNot(XServer::Manager::kOpenbox);
  if (!why_not.isEmpty()) GTEST_SKIP() << why_not.toStdString();
  const XServer server(XServer::Manager::kOpenbox);
  ASSERT_TRUE(server.Ready()) << "the display didn't come up";
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("QT_QPA_PLATFORM", "xcb");
  // The desktop's bus leaks a block of its own there; our leaks show without a display as well.
  environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
  QProcess tests;
  tests.setProcessEnvironment(environment);
  tests.setProcessChannelMode(QProcess::MergedChannels);
  tests.start(QCoreApplication::applicationFilePath(),
              {"--gtest_filter=frmMainTest.MinimisedFrameThatCameBackMaximised*"});
  ASSERT_TRUE(tests.waitForFinished(kLongest));
  const std::string printed = tests.readAll().toStdString();
  EXPECT_EQ(tests.exitStatus(), QProcess::NormalExit) << printed;
  EXPECT_EQ(tests.exitCode(), 0) << printed;
  EXPECT_NE(printed.find("[  PASSED  ]"), std::string::npos) << printed;
}

}  // namespace
}  // namespace kestrix
