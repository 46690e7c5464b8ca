#pragma once

#include <QTimer>
#include <memory>

#include "projects/ProjectNumbers.h"
#include "projects/RememberedStudies.h"
#include "shell/SessionForm.h"
#include "store/DataControl.h"

namespace kestrix {

class LookupBox;

namespace Ui {
class mnfrm;
}

/// The projects of the organisation in work: lists, adds, finds and deletes them, sets their stage,
/// and leads from the current one to its tasks, its linked files and its reports.
///
/// The current row of `dtsorce1` is the project in hand; no other place keeps it. A project number
/// is unique within its organisation by the check at its entry alone, and is never changed after
/// it. Deleting a project deletes its row and nothing that other tables keep under its number.
///
/// Two of its commands have Alt+N by their captions. The key goes from one to the other, and Space
/// runs the one that has the focus.
class mnfrm : public SessionForm, public ProjectInHand {
  Q_OBJECT

 public:
  explicit mnfrm(Context& context);
  ~mnfrm() override;

  [[nodiscard]] QString ESI_No() override;
  [[nodiscard]] QString ProjectDescription() override;

  /// The caption of Orglbltxt: a blank and the name of the organisation that was opened.
  void SetOrganisationCaption(const QString& caption);
  /// The organisation form was unloaded: this one holds the front again, and the commands that need
  /// an organisation are enabled if there is one.
  void OrganisationFormClosed();
  /// Showing the organisation form, asked for by OrganisationsRequested, failed: this form and that
  /// one are unloaded.
  void OrganisationFormNotShown();
  /// Lets go of the study that is open, so that its files can be deleted: the rows become those of
  /// the empty template, or none where that can't be opened, and no organisation is in work any
  /// more. It never fails.
  void LetGoOfStudy();

 Q_SIGNALS:
  void OrganisationFormUnloadRequested();
  /// This form is closing.
  void EvaluationFormUnloadRequested();
  /// The load failed and was told; the organisation form and this one are unloaded.
  void LoadFailed();
  /// This form has hidden itself; it wants to be shown modally when the evaluation form closes.
  void EvaluationRequested();
  /// Over this form. The closing of that one sets ProjectFormHolds.
  void LinkedFilesRequested();
  /// Over this form. When that fails, OrganisationFormNotShown is to be called.
  void OrganisationsRequested();
  /// The home page was started in place of this program, and this form is unloaded.
  void HomePageTakesOver();

 protected:
  void Load() override;
  void Activate() override;
  void Deactivate() override;
  void QueryUnload() override;
  void changeEvent(QEvent* event) override;

 private:
  // mnfrm.cpp: its life, the description, and the grid.
  void Dress();
  void LockBoxes();
  void Connect();
  void BindFields();
  void TakeOrganisation();
  void ConnectStudy();
  void FindRememberedSlot();
  void GoToRememberedStudy();
  void EnableProjectCommands();
  [[nodiscard]] QString OrganisationCaption() const;
  [[nodiscard]] qint16 StudyNumberShown() const;
  void ProjectDescription_LostFocus();
  void DB1_LostFocus();
  void DB1_Click();

  // mnfrm_stages.cpp: the list of project stages.
  void PrjStgCbo_GotFocus();
  void PrjStgCbo_LostFocus();
  void adddt0_Click();
  void dletedt0_Click();
  [[nodiscard]] LookupBox Stages();
  void EnableStageCommands();

  // mnfrm_commands.cpp: the ways out of the form.
  void simultn1_Click();
  void repotview_Click();
  void LnkDwgs_Click();
  void nworg_Click();
  void HlpHzp_Hover(bool over);
  void homepage_Click();

  std::unique_ptr<Ui::mnfrm> ui_;
  /// The projects of the organisation in work.
  DataControl dtsorce1_{QStringLiteral("dtsorce1"), this};
  DataControl CboBxLstDB_{QStringLiteral("CboBxLstDB"), this};  ///< the project stages
  /// Given the support database at load, and not used further.
  DataControl AccdDptBd_{QStringLiteral("AccdDptBd"), this};
  QTimer Timer2_{this};  ///< runs from the first start of the reports on; nothing follows its tick

  ProjectNumbers numbers_;
  RememberedStudies remembered_;
  QString LastComboText_;  ///< scratch text of PrjStgCbo and of ProjectDescription
};

}  // namespace kestrix
