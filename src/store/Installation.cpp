#include "store/Installation.h"

#include "platform/Services.h"

namespace kestrix {

Installation::Installation(QString application_folder) : folder_(std::move(application_folder)) {}

QString Installation::Path(const QString& tail) const {
  return JoinPath(folder_, tail);
}

QString Installation::StudyTemplate() const {
  return Path(QStringLiteral("\\risk_esmatn.mdb"));
}

QString Installation::Register() const {
  return Path(QStringLiteral("\\RskAsmtFld\\orgtn.mdb"));
}

QString Installation::SupportLists() const {
  return Path(QStringLiteral("\\RskAsmtFld\\RskAsmt_BkSup.mdb"));
}

QString Installation::Study(int number) const {
  return Path(QStringLiteral("\\RskAsmtFld\\risk_esmatn%1.mdb").arg(number));
}

QString Installation::StudySign(int number) const {
  return Path(QStringLiteral("\\RskAsmtFld\\risk_esmatn%1.ldb").arg(number));
}

QString Installation::StaleBackupSign(int number) const {
  return Path(QStringLiteral("\\RskAsmtFld\\ktx_RskSmt%1.ldb").arg(number));
}

QString Installation::PictureRoot() const {
  return Path(QStringLiteral("\\RskAsmtFld\\Picfolder"));
}

QString Installation::PictureFolder(int number) const {
  return Path(QStringLiteral("\\RskAsmtFld\\Picfolder\\Prj%1").arg(number));
}

QString Installation::NoPicture() const {
  return Path(QStringLiteral("\\RskAsmtFld\\NoPicSlted.jpg"));
}

QString Installation::PictureError() const {
  return Path(QStringLiteral("\\RskAsmtFld\\errImgLoad.jpg"));
}

QString Installation::DataFolder() const {
  return Path(QStringLiteral("\\RskAsmtFld"));
}

QString Installation::Manual() const {
  return Path(QStringLiteral("\\hlpAnnlyAdv.pdf"));
}

QString Installation::HelpPage() const {
  return Path(QStringLiteral("\\acci_alys_help.htm"));
}

QString Installation::ReportProgram() const {
  return Path(QStringLiteral("\\RiskBookRpts.exe"));
}

}  // namespace kestrix
