#pragma once

#include <QString>

namespace kestrix {

/// Where everything of an installation lies, below the application's folder. It only builds paths;
/// it never looks whether something is there.
class Installation {
 public:
  explicit Installation(QString application_folder);

  [[nodiscard]] const QString& ApplicationFolder() const { return folder_; }
  /// `tail` begins with "\\" and has "\\" between folders.
  [[nodiscard]] QString Path(const QString& tail) const;

  [[nodiscard]] QString StudyTemplate() const;              ///< \risk_esmatn.mdb
  [[nodiscard]] QString Register() const;                   ///< \RskAsmtFld\orgtn.mdb
  [[nodiscard]] QString SupportLists() const;               ///< \RskAsmtFld\RskAsmt_BkSup.mdb
  [[nodiscard]] QString Study(int number) const;            ///< \RskAsmtFld\risk_esmatn<n>.mdb
  [[nodiscard]] QString StudySign(int number) const;        ///< the lock sign beside it
  [[nodiscard]] QString StaleBackupSign(int number) const;  ///< \RskAsmtFld\ktx_RskSmt<n>.ldb
  [[nodiscard]] QString PictureRoot() const;                ///< \RskAsmtFld\Picfolder
  [[nodiscard]] QString PictureFolder(int number) const;    ///< \RskAsmtFld\Picfolder\Prj<n>
  [[nodiscard]] QString NoPicture() const;                  ///< \RskAsmtFld\NoPicSlted.jpg
  [[nodiscard]] QString PictureError() const;               ///< \RskAsmtFld\errImgLoad.jpg
  [[nodiscard]] QString DataFolder() const;                 ///< \RskAsmtFld
  [[nodiscard]] QString Manual() const;                     ///< \hlpAnnlyAdv.pdf
  [[nodiscard]] QString HelpPage() const;                   ///< \acci_alys_help.htm
  [[nodiscard]] QString ReportProgram() const;              ///< \RiskBookRpts.exe

 private:
  QString folder_;
};

}  // namespace kestrix
