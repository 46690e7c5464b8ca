#include "platform/QtPlatform.h"

#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QStandardPaths>

namespace kestrix {
namespace {

// Many thousand times what the program keeps there.
constexpr qint64 kMostBytes = qint64{1024} * 1024;
// Others write for a moment only. Whoever was killed then, on another machine, left his lock
// behind.
constexpr int kLongestWaitMilliseconds = 500;

QString File() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         QStringLiteral("/KestrixStudy/KestrixStudy.conf");
}

/// The toolkit reads whatever lies there to its end: from a pipe for ever, from a giant file until
/// there is no memory left.
bool CanHoldSettings(const QString& path) {
  const QFileInfo file(path);
  return !file.exists() || (file.isFile() && file.size() <= kMostBytes);
}

/// The toolkit waits for a lock as long as it lies there.
bool IsLocked(const QString& path) {
  QLockFile lock(path + QStringLiteral(".lock"));
  return !lock.tryLock(kLongestWaitMilliseconds) && lock.error() == QLockFile::LockFailedError;
}

}  // namespace

// Opened anew each time, so that two running copies of the program see each other's values.
QString QtSettings::Get(const QString& section, const QString& key,
                        const QString& default_value) const {
  const QString path = File();
  if (!CanHoldSettings(path)) return default_value;
  const QSettings settings(path, QSettings::NativeFormat);
  return settings.value(section + u'/' + key, default_value).toString();
}

void QtSettings::Save(const QString& section, const QString& key, const QString& value) {
  const QString path = File();
  if (!CanHoldSettings(path) || IsLocked(path)) return;
  QSettings settings(path, QSettings::NativeFormat);
  settings.setValue(section + u'/' + key, value);
  settings.sync();
}

}  // namespace kestrix
