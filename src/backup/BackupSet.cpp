#include "backup/BackupSet.h"

#include "platform/Services.h"

namespace kestrix {

BackupSet::BackupSet(QString folder, QString picture_folder)
    : folder_(std::move(folder)), picture_folder_(std::move(picture_folder)) {}

QString BackupSet::File(const QString& name) const {
  return JoinPath(folder_, u'\\' + name);
}

QString BackupSet::Register() const {
  return File(QStringLiteral("ktx_RskSmt.kbp"));
}

QString BackupSet::SupportLists() const {
  return File(QStringLiteral("ktx_RskSmt_A.kbp"));
}

QString BackupSet::Study(int number) const {
  return File(QStringLiteral("ktx_RskSmt%1.kbp").arg(number));
}

QString BackupSet::Pictures(int number) const {
  return JoinPath(picture_folder_, QStringLiteral("\\Prj%1").arg(number));
}

QString BackupSet::Presets() const {
  return File(QStringLiteral("ktx_Prets.kbp"));
}

QString BackupSet::ZeroNodes() const {
  return File(QStringLiteral("ktx_ZoNds.kbp"));
}

}  // namespace kestrix
