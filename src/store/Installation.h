#pragma once

#include <QString>

#include "platform/Services.h"

namespace kestrix {

/// Where everything of an installation lies, below the application's folder. It only builds paths;
/// it never looks whether something is there.
class Installation {
 public:
  explicit Installation(QString application_folder) : folder_(std::move(application_folder)) {}

  [[nodiscard]] const QString& ApplicationFolder() const { return folder_; }
  /// `tail` begins with "\\" and has "\\" between folders.
  [[nodiscard]] QString Path(const QString& tail) const { return JoinPath(folder_, tail); }

  [[nodiscard]] QString StudyTemplate() const { return Path("\\risk_esmatn.mdb"); }
  [[nodiscard]] QString Manual() const { return Path("\\hlpAnnlyAdv.pdf"); }
  [[nodiscard]] QString HelpPage() const { return Path("\\acci_alys_help.htm"); }
  [[nodiscard]] QString ReportProgram() const { return Path("\\RiskBookRpts.exe"); }

  [[nodiscard]] QString DataFolder() const { return Path("\\RskAsmtFld"); }
  [[nodiscard]] QString Register() const { return Data("\\orgtn.mdb"); }
  [[nodiscard]] QString SupportLists() const { return Data("\\RskAsmt_BkSup.mdb"); }
  [[nodiscard]] QString Study(int number) const { return Data("\\risk_esmatn%1.mdb", number); }
  /// The lock sign beside it.
  [[nodiscard]] QString StudySign(int number) const { return Data("\\risk_esmatn%1.ldb", number); }
  [[nodiscard]] QString StaleBackupSign(int number) const {
    return Data("\\ktx_RskSmt%1.ldb", number);
  }
  [[nodiscard]] QString PictureRoot() const { return Data("\\Picfolder"); }
  [[nodiscard]] QString PictureFolder(int number) const {
    return Data("\\Picfolder\\Prj%1", number);
  }
  [[nodiscard]] QString NoPicture() const { return Data("\\NoPicSlted.jpg"); }
  [[nodiscard]] QString PictureError() const { return Data("\\errImgLoad.jpg"); }

 private:
  [[nodiscard]] QString Data(const char* tail) const { return JoinPath(DataFolder(), tail); }
  [[nodiscard]] QString Data(const char* tail, int number) const {
    return JoinPath(DataFolder(), QString(tail).arg(number));
  }

  QString folder_;
};

}  // namespace kestrix
