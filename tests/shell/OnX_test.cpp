#include <gtest/gtest.h>

#include "support/XServer.h"

namespace kestrix {
namespace {

/// Runs the test of the frame's place once more where a window manager puts a border around it,
/// which differs between a window of normal size and a maximised one.
TEST(FrameOnXTest, PlaceOfTheFrameIsStoredUnderAWindowManager) {
  const QString why_not = XServer::WhyNot(XServer::Manager::kOpenbox);
  if (!why_not.isEmpty()) GTEST_SKIP() << why_not.toStdString();
  const XServer server(XServer::Manager::kOpenbox);
  ASSERT_TRUE(server.Ready()) << "the display didn't come up";
  EXPECT_EQ(RunOnDisplay("frmMainTest.MinimisedFrameThatCameBackMaximised*"), "");
}

}  // namespace
}  // namespace kestrix
