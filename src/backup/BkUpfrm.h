#pragma once

#include <QString>
#include <memory>

#include "backup/BackupForm.h"
#include "backup/BackupWorker.h"
#include "store/DataControl.h"

namespace kestrix {

namespace Ui {
class BkUpfrm;
}

/// Drives a backup or a restore from one button, whose caption is the state of the work, and shows
/// the organisations that take part and how far the copying is. What is copied where is the
/// worker's business.
///
/// While copying it is painted, moved and resized as ever, and can't be closed. Its buttons are
/// disabled then, also for the clicks and keys that had to wait for the end of the copying.
class BkUpfrm : public BackupForm {
  Q_OBJECT

 public:
  /// What the main button says, and so what a press on it does next.
  static inline const QString kSelectFolder = QStringLiteral("&Select folder");
  static inline const QString kBackup = QStringLiteral("&Backup Study files");
  static inline const QString kBackupComplete = QStringLiteral("&Backup complete");
  static inline const QString kRestore = QStringLiteral("&Restore Study files");
  static inline const QString kRestoreComplete = QStringLiteral("&Study files Restored complete");

  explicit BkUpfrm(Context& context);
  ~BkUpfrm() override;

  /// Captions of form, list and main button for the backup that the frame's menu begins.
  void PrepareBackup();
  /// The main button's caption; its tool tip follows.
  void SetMainCaption(const QString& caption);

 Q_SIGNALS:
  /// This form unloads itself behind that.
  void FolderDialogRequested();
  /// Loading failed, which has been told, and this form is unloaded.
  void LoadFailed();
  /// This form unloads itself behind that.
  void CopyingFailed();
  /// A restore is over and this form was unloaded in it: `caption` is meant for the main button of
  /// the form that a reference now loads. It isn't shown.
  void CaptionDue(const QString& caption);

 protected:
  void Load() override;
  void Activate() override;
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void clsd_Click();
  void clsed_Click();

  void LoadSteps();
  void LoadLiveRegister();
  void LoadRegisterOfSet();
  void OpenRegister(const QString& path);
  void ClickInBackup();
  void ClickInRestore();
  void CountRows();
  void RunWorker();
  void EnableButtons(bool enable);
  void ShowProgress(const BackupWorker::Progress& progress);
  void FitBar();

  std::unique_ptr<Ui::BkUpfrm> ui;
  DataControl orgndata_{QStringLiteral("Orgndata"), this};
  BackupWorker worker_;
  double percent_ = 0;  ///< of the bar
};

}  // namespace kestrix
