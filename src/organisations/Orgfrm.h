#pragma once

#include <QString>
#include <memory>

#include "organisations/Register.h"
#include "shell/SessionForm.h"

namespace kestrix {

namespace Ui {
class Orgfrm;
}

/// The register of organisations: picks one, adds one and deletes one. While it is loaded it holds
/// itself in front.
///
/// The name in the combo is the organisation that the commands work on. An organisation gets its
/// study number when it is opened for the first time: the smallest one that no row of the register
/// holds. Its study is created then. The commands never show a study; they say that one was opened.
class Orgfrm : public SessionForm {
  Q_OBJECT

 public:
  explicit Orgfrm(Context& context);
  ~Orgfrm() override;

  /// Unloads the form for the project form that came up. Behind the delete that is in work, if
  /// there is one: letting go of the study may have brought the project form up, and the row of the
  /// register goes last.
  void GiveWay();

 Q_SIGNALS:
  /// `caption` is that of the project form, which comes up with it: a blank and the name. This form
  /// unloads itself right behind it.
  void OrganisationOpened(const QString& caption);
  /// This form is being unloaded, by whichever route.
  void Closing();
  /// Files of the installation are missing, which was told; this form is unloaded already.
  void ProjectFormUnloadRequested();
  /// The load failed and was told; this form and the project form are unloaded.
  void LoadFailed();
  /// The study that is being deleted is in use: the project form is to let go of it.
  void StudyReleaseRequested();

 protected:
  void Load() override;
  void Activate() override;
  void Deactivate() override;
  void Unload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Orgfrm.cpp: its life, choosing, adding, history.
  void ListNames(const QStringList& names);
  void ReadRegisterAgain();
  [[nodiscard]] QString Name() const;
  void SetName(const QString& name);
  [[nodiscard]] bool IsAdding() const;
  void orgnmecbo_Click();
  void orgnmecbotxt_Change();
  void orgnmecbotxt_LostFocus();
  void RefuseLeadingSpace();
  void DemandName();
  /// False when the name was in the register already, and that organisation was opened instead.
  [[nodiscard]] bool AddOrganisation(const QString& name);
  void OpenDuplicate();
  void addorncmd_Click();
  void fle_Click();
  void hstry_Click();
  void DropEntry();

  // Orgfrm_open.cpp: making the chosen organisation the active one.
  void clsd_Click();
  void LeaveWithoutTemplate();
  void AskForName();
  void TakeUpOrganisation();
  void NumberOrganisation();

  // Orgfrm_delete.cpp: removing an organisation with its study.
  void delte_Click();
  void DeleteWhatIsChosen();
  [[nodiscard]] bool AnyStudyIsInUse();
  /// False when there is nothing to delete, or the person doesn't want it.
  [[nodiscard]] bool ConfirmDelete();
  void DeleteOrganisation();
  void ShowNoOrganisation();

  std::unique_ptr<Ui::Orgfrm> ui_;
  organisations::Register register_;
  QString EnteredOrgName_;
  bool deleting_ = false;   ///< a delete is in work
  bool gives_way_ = false;  ///< the form is to be unloaded behind it
};

}  // namespace kestrix
