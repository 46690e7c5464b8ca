#include "platform/QtPlatform.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "platform/QtClock.h"
#include "support/Files.h"
#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

/// What the environment says in a process where `name` has `value`.
QString VariableWhere(const char* name, const QByteArray& value) {
  return RunInChild([&] {
           value.isNull() ? qunsetenv(name) : qputenv(name, value);
           return QtEnvironment().Variable(name);
         })
      .value_or("<the child died>");
}

TEST(QtEnvironmentTest, ApplicationFolderIsThatOfTheProgramWithoutASeparator) {
  EXPECT_EQ(QtEnvironment().ApplicationFolder(),
            QFileInfo(QCoreApplication::applicationFilePath()).absolutePath());
  EXPECT_FALSE(QtEnvironment().ApplicationFolder().endsWith('/'));
  EXPECT_EQ(QtEnvironment().ApplicationTitle(), "KestrixStudy");
}

TEST(QtEnvironmentTest, DrivesAndProgramFoldersAreTheRootUnlessSet) {
  for (const char* name : {"SYSTEMROOT", "SYSTEMDRIVE", "PROGRAMFILES"}) {
    EXPECT_EQ(VariableWhere(name, {}), "/") << name;
    EXPECT_EQ(VariableWhere(name, "/mnt/other"), "/mnt/other") << name;
  }
  EXPECT_EQ(VariableWhere("KESTRIX_NO_SUCH_VARIABLE", {}), "");
}

TEST(QtEnvironmentTest, TempIsTheChosenTemporaryFolderOrOneOfTheUsersOwnUnlessSet) {
  const QTemporaryDir session;  // nobody else may look into it
  const QTemporaryDir chosen;
  const auto temp_where = [](const QString& session_folder, const QString& temporary_folder) {
    return RunInChild([&] {
             qputenv("TMPDIR", temporary_folder.toUtf8());
             qputenv("XDG_RUNTIME_DIR", session_folder.toUtf8());
             qunsetenv("TEMP");
             return QtEnvironment().Variable("TEMP");
           })
        .value_or("<the child died>");
  };
  EXPECT_EQ(temp_where(session.path(), {}), session.path());
  EXPECT_EQ(temp_where(session.path(), chosen.path()), chosen.path());
  // A session of somebody else's: a shared folder is no place for a name that everybody uses.
  const QFileInfo own(temp_where("/proc", {}));
  EXPECT_EQ(own.path(), QStringLiteral("/tmp"));
  EXPECT_EQ(own.ownerId(), ::geteuid());
  EXPECT_EQ(own.permissions() & (QFile::WriteGroup | QFile::WriteOther), QFile::Permissions());
  EXPECT_EQ(VariableWhere("TEMP", "/mnt/scratch"), "/mnt/scratch");
}

TEST(QtEnvironmentTest, DocumentsAreTheHomeFolderWhereThereIsNoSuchFolder) {
  const QTemporaryDir home;
  const auto documents = [&] {
    return RunInChild([&] {
             qputenv("HOME", home.path().toUtf8());
             qputenv("XDG_CONFIG_HOME", (home.path() + "/.config").toUtf8());
             return QtEnvironment().DocumentsFolder();
           })
        .value_or("<the child died>");
  };
  EXPECT_EQ(documents(), home.path());
  ASSERT_TRUE(QDir(home.path()).mkdir("Documents"));
  EXPECT_EQ(documents(), home.path() + "/Documents");
}

TEST(QtEnvironmentTest, DrivesAreFoldersWithTheRootFirstAndNoneOfTheKernelsOwn) {
  const QStringList drives = QtEnvironment().Drives();
  ASSERT_FALSE(drives.isEmpty());
  EXPECT_EQ(drives.first(), "/");
  EXPECT_EQ(drives.count("/"), 1);
  for (const QString& drive : drives) {
    EXPECT_TRUE(QFileInfo(drive).isDir()) << drive.toStdString();
    for (const char* kernels : {"/proc", "/sys", "/dev"})
      EXPECT_FALSE(drive.startsWith(kernels)) << drive.toStdString();
  }
}

TEST(QtEnvironmentTest, OverlayIsADriveForWhoCanWriteIt) {
  const QTemporaryDir place;
  const auto folder = [&](const char* name) {
    const QString path = QFileInfo(place.path()).canonicalFilePath() + "/" + name;
    QDir().mkpath(path);
    return path;
  };
  const QByteArray options = ("lowerdir=" + folder("lower") + ",upperdir=" + folder("upper") +
                              ",workdir=" + folder("work"))
                                 .toUtf8();
  const QString mount = folder("mount");
  const auto is_drive_when = [&](bool read_only) {
    return RunInChild([&] {
             const bool is_mounted =
                 ::unshare(CLONE_NEWNS) == 0 &&
                 ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                 ::mount("overlay", mount.toUtf8().constData(), "overlay",
                         read_only ? MS_RDONLY : 0, options.constData()) == 0;
             if (!is_mounted) return QString("no mount");
             return QString(QtEnvironment().Drives().contains(mount) ? "yes" : "no");
           })
        .value_or("<the child died>");
  };
  const QString open = is_drive_when(false);
  if (open == "no mount") GTEST_SKIP() << "Nothing can be mounted here.";
  EXPECT_EQ(open, "yes");
  EXPECT_EQ(is_drive_when(true), "no");
}

TEST(QtEnvironmentTest, NetworkFoldersThatTheDesktopHasConnectedAreDrives) {
  const QTemporaryDir session;
  const QString share = session.path() + "/gvfs/smb-share:server=office,share=sets";
  ASSERT_TRUE(QDir().mkpath(share));
  const auto drives = RunInChild([&] {
    qputenv("XDG_RUNTIME_DIR", session.path().toUtf8());
    return QtEnvironment().Drives().join('\n');
  });
  EXPECT_TRUE(drives.value_or("").split('\n').contains(share)) << drives->toStdString();
}

TEST(QtClockTest, TodayIsADayOfTheSystemCalendar) {
  const QDate before = QDate::currentDate();
  const QDate today = QtClock().Today();
  EXPECT_GE(today, before);
  EXPECT_LE(today, QDate::currentDate());
}

}  // namespace
}  // namespace kestrix
