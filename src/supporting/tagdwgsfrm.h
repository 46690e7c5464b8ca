#pragma once

#include <QString>
#include <memory>

#include "shell/SessionForm.h"
#include "store/DataControl.h"

class QTreeWidgetItem;

namespace kestrix {

class PictureView;
namespace Ui {
class tagdwgsfrm;
}

/// The links from the project in hand to pictures, drawings and documents anywhere on the disk. A
/// link is a path: the file is neither copied, moved nor deleted here, and opening one hands it to
/// the desktop as a document; nothing that was linked is ever run.
class tagdwgsfrm : public SessionForm {
  Q_OBJECT

 public:
  explicit tagdwgsfrm(Context& context);
  ~tagdwgsfrm() override;

 protected:
  void Load() override;
  void Activate() override;
  void QueryUnload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void fllst_ItemClick();
  void fllst_Click();
  void fllst_DblClick();
  void LnkFls_1_Click();
  void DeltFle_Click();

  [[nodiscard]] bool FollowMouse(const QEvent& event);
  [[nodiscard]] bool FollowKey(const QEvent& event);
  [[nodiscard]] bool IsSelectionTold() const;
  void LinkChosenFile();
  void AddLink(const QString& path, const QString& title);
  void OpenSelectedFile();
  void TellNotOpened();
  void CutFolderToScratch(const QString& path, const QString& title);
  void FillList();
  [[nodiscard]] QTreeWidgetItem* ItemOf(const QString& path, const QString& title) const;
  [[nodiscard]] QString FolderOfNewestLink() const;
  void ShowFallback();
  [[nodiscard]] const QTreeWidgetItem& SelectedItem() const;
  [[nodiscard]] Recordset& Links() const { return dwgflsDB_.Recordset(); }

  std::unique_ptr<Ui::tagdwgsfrm> ui_;
  std::unique_ptr<PictureView> preview_;
  DataControl dwgflsDB_{QStringLiteral("dwgflsDB"), this};
  bool clicked_twice_ = false;  ///< since the last release of the mouse
};

}  // namespace kestrix
