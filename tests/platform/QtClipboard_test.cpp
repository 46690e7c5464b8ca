#include "platform/QtPlatform.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>

#include "support/Printers.h"

namespace kestrix {
namespace {

TEST(QtClipboardTest, TextIsThatOfTheDesktop) {
  QtClipboard clipboard;
  clipboard.SetText("/srv/Pläne");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "/srv/Pläne");
  EXPECT_EQ(clipboard.Text(), "/srv/Pläne");
  clipboard.Clear();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "");
}

}  // namespace
}  // namespace kestrix
