#include "platform/QtSettings.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QSettings>

#include "support/Files.h"

namespace kestrix {
namespace {

class QtSettingsTest : public ::testing::Test {
 protected:
  QtSettingsTest() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder_.path());
  }
  [[nodiscard]] QString File() const { return folder_.filePath("KestrixStudy/KestrixStudy.conf"); }

  QTemporaryDir folder_;
  QtSettings settings_;
};

TEST_F(QtSettingsTest, AbsentValueIsTheDefault) {
  EXPECT_EQ(settings_.Get("Settings", "MainLeft", "1000"), "1000");
  EXPECT_EQ(ReadFile(File()), "<no file>");
}

TEST_F(QtSettingsTest, SavedValueIsOnTheDiskAsTextUnderItsSection) {
  settings_.Save("Settings", "MainLeft", "-120");
  EXPECT_EQ(ReadFile(File()), "[Settings]\nMainLeft=-120\n");
  EXPECT_EQ(QtSettings().Get("Settings", "MainLeft", "1000"), "-120");
  EXPECT_EQ(settings_.Get("Other", "MainLeft", "7"), "7");
}

TEST_F(QtSettingsTest, AnyTextComesBackAsItWas) {
  for (const char* text : {"", "a, b", "\"x\"", "%20;#", "Zeile\nzwei", "@Invalid()"}) {
    settings_.Save("Settings", "Key", text);
    EXPECT_EQ(QtSettings().Get("Settings", "Key", "default"), text);
  }
}

TEST_F(QtSettingsTest, DamagedFileGivesDefaults) {
  QDir(folder_.path()).mkdir("KestrixStudy");
  WriteFile(File(), QByteArray("\x00\xff[[[=\n", 7));
  EXPECT_EQ(settings_.Get("Settings", "MainLeft", "1000"), "1000");
}

}  // namespace
}  // namespace kestrix
