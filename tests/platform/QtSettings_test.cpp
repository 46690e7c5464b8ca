#include "platform/QtPlatform.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <QDir>

#include "support/Files.h"
#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

class QtSettingsTest : public ::testing::Test {
 protected:
  QtSettingsTest() { qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder_.path())); }
  ~QtSettingsTest() override {
    if (before_.isNull()) {
      qunsetenv("XDG_CONFIG_HOME");
    } else {
      qputenv("XDG_CONFIG_HOME", before_);
    }
  }
  void GivenFolder() const { ASSERT_TRUE(QDir(folder_.path()).mkdir("KestrixStudy")); }
  [[nodiscard]] QString File() const { return folder_.filePath("KestrixStudy/KestrixStudy.conf"); }

  const QByteArray before_ = qgetenv("XDG_CONFIG_HOME");
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
  ASSERT_NO_FATAL_FAILURE(GivenFolder());
  WriteFile(File(), QByteArray("\x00\xff[[[=\n", 7));
  EXPECT_EQ(settings_.Get("Settings", "MainLeft", "1000"), "1000");
}

TEST_F(QtSettingsTest, PipeInPlaceOfTheFileGivesDefaultsAndIsNotWaitedFor) {
  ASSERT_NO_FATAL_FAILURE(GivenFolder());
  ASSERT_EQ(mkfifo(QFile::encodeName(File()).constData(), 0666), 0);
  const auto told = RunInChild([this] {
    settings_.Save("Settings", "MainLeft", "-120");
    return settings_.Get("Settings", "MainLeft", "1000");
  });
  EXPECT_EQ(told, QStringLiteral("1000"));
}

TEST_F(QtSettingsTest, GiantFileGivesDefaultsAndStaysAsItIs) {
  ASSERT_NO_FATAL_FAILURE(GivenFolder());
  WriteFile(File(), "[Settings]\nMainLeft=5\n");
  constexpr qint64 kGiant = qint64{64} << 30;
  ASSERT_TRUE(QFile::resize(File(), kGiant));
  const auto told = RunInChild([this] {
    settings_.Save("Settings", "MainLeft", "-120");
    return settings_.Get("Settings", "MainLeft", "1000");
  });
  EXPECT_EQ(told, QStringLiteral("1000"));
  EXPECT_EQ(QFileInfo(File()).size(), kGiant);
}

TEST_F(QtSettingsTest, LockThatNobodyGivesBackIsNotWaitedForForEver) {
  settings_.Save("Settings", "MainLeft", "5");
  // Nobody can take that away as the lock of somebody who is gone.
  ASSERT_TRUE(QDir().mkdir(File() + ".lock"));
  const auto told = RunInChild([this] {
    settings_.Save("Settings", "MainLeft", "-120");
    return settings_.Get("Settings", "MainLeft", "1000");
  });
  EXPECT_EQ(told, QStringLiteral("5"));
}

}  // namespace
}  // namespace kestrix
