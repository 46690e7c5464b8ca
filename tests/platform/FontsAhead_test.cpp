#include "platform/FontsAhead.h"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

/// Each in a child, since what was read of the fonts stays with a process.
class FontsAheadTest : public ::testing::Test {
 protected:
  FontsAheadTest() { QDir(place_.path()).mkdir("fonts"); }

  [[nodiscard]] QString Folder() const { return place_.filePath("fonts"); }

  /// Forgets what is known of fonts, and lets the desktop's configuration be one that leads to one
  /// empty folder.
  void GivenConfiguration() const {
    FcFini();
    QFile file(place_.filePath("fonts.conf"));
    file.open(QIODevice::WriteOnly);
    file.write(QStringLiteral("<fontconfig><dir>%1</dir><cachedir>%1</cachedir></fontconfig>")
                   .arg(Folder())
                   .toUtf8());
    qputenv("FONTCONFIG_FILE", file.fileName().toUtf8());
  }

  static QString KnownFolders() {
    FcStrList* folders = FcConfigGetFontDirs(FcConfigGetCurrent());
    QStringList known;
    while (const FcChar8* folder = FcStrListNext(folders)) {
      known += QString::fromUtf8(reinterpret_cast<const char*>(folder));
    }
    FcStrListDone(folders);
    return known.join(u' ');
  }

  QTemporaryDir place_;
};

TEST_F(FontsAheadTest, ConfigurationIsReadOnceItWasWaitedFor) {
  const auto known = RunInChild([this] {
    GivenConfiguration();
    FontsAhead fonts;
    fonts.Wait();
    // Whoever asks now gets what was read ahead: there is nothing left to read.
    QFile::remove(place_.filePath("fonts.conf"));
    return KnownFolders();
  });
  EXPECT_EQ(known, Folder());
}

TEST_F(FontsAheadTest, WaitingTwiceOrNotAtAllIsHarmless) {
  const auto known = RunInChild([this] {
    GivenConfiguration();
    {
      FontsAhead fonts;
      fonts.Wait();
      fonts.Wait();
    }
    { const FontsAhead fonts; }
    return KnownFolders();
  });
  EXPECT_EQ(known, Folder());
}

TEST_F(FontsAheadTest, WithoutAThreadTheConfigurationIsReadWhenItIsNeeded) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GiveToNobody(place_.path());
  const auto known = RunAsNobody([this] {
    GivenConfiguration();
    const rlimit none{0, 0};
    if (setrlimit(RLIMIT_NPROC, &none) != 0) return QStringLiteral("no limit");
    FontsAhead fonts;
    fonts.Wait();
    return KnownFolders();
  });
  EXPECT_EQ(known, Folder());
}

}  // namespace
}  // namespace kestrix
