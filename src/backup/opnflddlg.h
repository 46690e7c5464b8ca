#pragma once

#include <QString>
#include <memory>

#include "backup/BackupForm.h"

namespace kestrix {

namespace Ui {
class opnflddlg;
}

/// Picks the folder of a backup set. For a backup any folder will do and a new one can be made; for
/// a restore only one that holds a set. The folder that is open in its list is BackupFolder of the
/// session at every moment, and stays so when the dialog is gone.
class opnflddlg : public BackupForm {
  Q_OBJECT

 public:
  explicit opnflddlg(Context& context);
  ~opnflddlg() override;

 Q_SIGNALS:
  /// This dialog unloads itself behind that.
  void BackupFolderChosen();
  /// A folder with a set. This dialog unloads itself behind that; in the reserved mode it is
  /// unloaded already.
  void RestoreFolderChosen();
  /// No folder was taken for a backup, and this dialog is unloaded.
  void Cancelled();

 protected:
  void Load() override;
  void Activate() override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void ktxdrv_Change();
  void ktxdrv_Click();
  void ktxDir_Wanted(const QString& path);
  void crtfldbtn_Click();
  void crtfldnme_LostFocus();
  void slctfld_Click();
  void cls1_Click();

  void SelectDrive(const QString& path);
  void OpenFirstFolder(const QString& folder);
  void MakeFolder(const QString& name);
  void TakePath();
  void RefuseFolder();

  std::unique_ptr<Ui::opnflddlg> ui_;
  QString documents_;  ///< the user's documents, where the dialog opens at first
};

}  // namespace kestrix
