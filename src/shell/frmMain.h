#pragma once

#include <QRect>
#include <QString>
#include <memory>

#include "shell/Frame.h"
#include "shell/SessionForm.h"

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
  /// The load failed and was told; the frame is unloaded already.
  void LoadFailed();
  /// The files are there and no preview is open. A failure is passed over here.
  void OrganisationsRequested();
  void CustomizationRequested();
  void BackupRequested();   ///< the session stands on backup
  void RestoreRequested();  ///< the session stands on restore
  /// The frame is about to be unloaded, and all that it led to with it.
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

  std::unique_ptr<Ui::frmMain> ui_;
  std::unique_ptr<Documents> documents_;
  CutLabel* panel_ = nullptr;  ///< the first one of the status bar
  QRect normal_place_;         ///< where it goes back to when it is maximised no more
};

}  // namespace kestrix
