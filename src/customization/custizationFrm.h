#pragma once

#include <QString>
#include <memory>

#include "shell/SessionForm.h"
#include "store/DataControl.h"

namespace kestrix {

namespace Ui {
class custizationFrm;
}

/// Edits the lookup lists that all organisations share: adds, changes and deletes entries, one list
/// at a time. It keeps no copy of a list and needs no organisation to be open; the forms that use a
/// list read it again whenever its box gets the focus.
///
/// "Primary Hazard" has two levels: the primary hazards, and the hazard types below the one that
/// was picked in `HazardType`. Which of them is shown decides what each command does.
class custizationFrm : public SessionForm {
  Q_OBJECT

 public:
  explicit custizationFrm(Context& context);
  ~custizationFrm() override;

 protected:
  void Load() override;
  void Unload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void FillListChoices();
  void LoadListChoice();
  void ForCustmnCbo_Click();
  void ForCustmnCbo_GotFocus();
  void ForCustmnCbo_LostFocus();
  void ActnByLst_Click();
  void HazardType_Click();

  void adddt_Click();
  void AddrcdTxt_LostFocus();
  void AddListRecord();
  void ReopenPrimaryHazards();
  void SavRcd_Click();
  void dletedt_Click();
  void DeleteEntry();
  void DeleteHazardTypes();
  void DeltAll_Click();
  void DeleteAllEntries();
  void DeletePrimaryHazards();
  void FollowMouse(const QObject* button);

  void OpenRows(const Select& sql);
  void OpenPlain(const Select& sql);
  void FillBoth();
  void ClearLists();
  [[nodiscard]] QString Choice() const;
  [[nodiscard]] bool IsPrimaryHazardChosen() const;
  [[nodiscard]] QString SelectedEntry() const;
  void SelectEntry(const QString& text);
  [[nodiscard]] bool IsShownHazard(const QString& hazard) const;
  void SetCaption(const QString& subject);
  [[nodiscard]] Recordset& Rows() const { return nameDB_.Recordset(); }

  std::unique_ptr<Ui::custizationFrm> ui_;
  DataControl nameDB_{QStringLiteral("nameDB"), this};
  QString ListChoiceText_;          ///< of ForCustmnCbo on entering it and after each pick
  bool HazardListShowing_ = false;  ///< the hazard types of one primary hazard are shown
};

}  // namespace kestrix
