#include "platform/QtSettings.h"

#include <QSettings>

namespace kestrix {
namespace {

// Opened anew each time, so that two running copies of the program see each other's values.
QSettings OpenSettings() {
  return QSettings(QStringLiteral("KestrixStudy"), QStringLiteral("KestrixStudy"));
}

QString Place(const QString& section, const QString& key) {
  return section + u'/' + key;
}

}  // namespace

QString QtSettings::Get(const QString& section, const QString& key,
                        const QString& default_value) const {
  return OpenSettings().value(Place(section, key), default_value).toString();
}

void QtSettings::Save(const QString& section, const QString& key, const QString& value) {
  QSettings settings = OpenSettings();
  settings.setValue(Place(section, key), value);
  settings.sync();
}

}  // namespace kestrix
