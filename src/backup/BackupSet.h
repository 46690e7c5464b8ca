#pragma once

#include <QString>

namespace kestrix {

/// Where the parts of a backup set lie in its folder. It only builds paths; it never looks whether
/// something is there. The register in a set is the list of what else it should hold.
class BackupSet {
 public:
  /// The databases lie in `folder`, and the picture folders in `picture_folder`: usually the same
  /// one, but a set that replaced an older one keeps its pictures one level below.
  BackupSet(QString folder, QString picture_folder);
  explicit BackupSet(const QString& folder) : BackupSet(folder, folder) {}

  [[nodiscard]] QString Register() const;            ///< ktx_RskSmt.kbp
  [[nodiscard]] QString SupportLists() const;        ///< ktx_RskSmt_A.kbp
  [[nodiscard]] QString Study(int number) const;     ///< ktx_RskSmt<n>.kbp
  [[nodiscard]] QString Pictures(int number) const;  ///< Prj<n>
  [[nodiscard]] const QString& PictureFolder() const { return picture_folder_; }
  /// What a set of the reserved mode would hold.
  [[nodiscard]] QString Presets() const;    ///< ktx_Prets.kbp
  [[nodiscard]] QString ZeroNodes() const;  ///< ktx_ZoNds.kbp

 private:
  [[nodiscard]] QString File(const QString& name) const;

  QString folder_;
  QString picture_folder_;
};

}  // namespace kestrix
