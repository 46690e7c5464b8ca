#pragma once

#include <QString>

#include "platform/Services.h"

namespace kestrix {

/// Where the parts of a backup set lie in its folder. It only builds paths; it never looks whether
/// something is there. The register in a set is the list of what else it should hold.
class BackupSet {
 public:
  /// The databases lie in `folder`, and the picture folders in `picture_folder`: usually the same
  /// one, but a set that replaced an older one keeps its pictures one level below.
  BackupSet(QString folder, QString picture_folder)
      : folder_(std::move(folder)), picture_folder_(std::move(picture_folder)) {}
  explicit BackupSet(const QString& folder) : BackupSet(folder, folder) {}

  [[nodiscard]] QString Register() const { return JoinPath(folder_, "\\ktx_RskSmt.kbp"); }
  [[nodiscard]] QString SupportLists() const { return JoinPath(folder_, "\\ktx_RskSmt_A.kbp"); }
  [[nodiscard]] QString Study(int number) const {
    return JoinPath(folder_, QString("\\ktx_RskSmt%1.kbp").arg(number));
  }
  [[nodiscard]] QString Pictures(int number) const {
    return JoinPath(picture_folder_, QString("\\Prj%1").arg(number));
  }
  [[nodiscard]] const QString& PictureFolder() const { return picture_folder_; }
  /// What a set of the reserved mode would hold.
  [[nodiscard]] QString Presets() const { return JoinPath(folder_, "\\ktx_Prets.kbp"); }
  [[nodiscard]] QString ZeroNodes() const { return JoinPath(folder_, "\\ktx_ZoNds.kbp"); }

 private:
  QString folder_;
  QString picture_folder_;
};

}  // namespace kestrix
