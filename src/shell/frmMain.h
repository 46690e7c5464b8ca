#pragma once

#include <QRect>
#include <QString>
#include <memory>

#include "shell/Frame.h"
#include "shell/SessionForm.h"

class QAction;

namespace kestrix {

class CutLabel;
class Documents;

namespace Ui {
class frmMain;
}

/// The frame: the program's first form, with the menu that leads to all others and the document
/// children within it. It ends the run when it is unloaded. It shows no other form by itself: it
/// says what was asked for.
///
/// Commands that are hidden exist and answer, so that what drives the program by their names finds
/// them; of their shortcuts only that of `mnuFileNew` is at hand.
class frmMain : public SessionForm, public Frame {
  Q_OBJECT

 public:
  explicit frmMain(Context& context);
  ~frmMain() override;

  void SetStatusText(const QString& text) override;
  void EnableData(bool enable) override;
  void EnableToolBar(bool enable) override;
  void MaximiseIfMinimised() override;

 Q_SIGNALS:
  /// The load failed and was told; the frame is unloaded already. The project form is to be
  /// unloaded.
  void LoadFailed();
  /// The files are there and no preview is open: the organisation form is to be shown, not modal.
  /// A failure is passed over here.
  void OrganisationsRequested();
  /// The customization form is to be shown modally.
  void CustomizationRequested();
  /// The session stands on backup. The backup form is to be shown; then its caption is to be
  /// " BELTROVAN: Backup Risk Assessment files", its `orgmnelbl` "LIST of Name of Organization /
  /// Section to Backup:" and its `clsd` "&Select folder"; then the project form and the evaluation
  /// form are to be unloaded.
  void BackupRequested();
  /// The session stands on restore. The folder dialog is to be shown.
  void RestoreRequested();
  /// The frame is about to be unloaded. `mnfrm`, `Orgfrm`, `RiskEvalFrm_1`, `opnflddlg`, `BkUpfrm`
  /// and `tagdwgsfrm` are to be unloaded, in this order, as far as they are loaded, whatever
  /// becomes of each.
  void Closing();

 protected:
  void Load() override;
  void QueryUnload() override;
  void Unload() override;
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ConnectCommands();
  void ConnectPlaceholders();
  void SettleMenu();
  void SettleToolBar();
  void SettleStatusBar();

  // The life of the frame.
  void RestorePlacement();
  void StorePlacement();
  void NotePlace();
  /// With its border, as it is placed, and without, as it is sized.
  [[nodiscard]] QRect Place() const;
  [[nodiscard]] int Setting(const char* key, int default_value) const;
  void RemoveStaleSign();

  // Commands.
  void mnuDatamnfrm_Click();
  void Bkup_Click();
  void RtrBkUp_Click();
  void homepage_Click();
  void mnuViewToolbar_Click();
  void mnuViewStatusBar_Click();
  void Placeholder(const QString& text);

  std::unique_ptr<Ui::frmMain> ui_;
  std::unique_ptr<Documents> documents_;
  CutLabel* panel_ = nullptr;  ///< the first one of the status bar
  QRect normal_place_;         ///< where it goes back to when it is maximised no more
};

}  // namespace kestrix
