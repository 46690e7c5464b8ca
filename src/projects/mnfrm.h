#pragma once

#include <memory>

#include "projects/ProjectNumbers.h"
#include "projects/RememberedStudies.h"
#include "shell/SessionForm.h"

class QTimer;

namespace kestrix {

class DataControl;
class LookupBox;
class Recordset;

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
/// It never shows another form; it says what is wanted, by the signals below.
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

  /// The caption of Orglbltxt: the organisation form writes a blank and the name when it has opened
  /// an organisation.
  void SetOrganisationCaption(const QString& caption);
  /// What the unload of the organisation form does to this form: the caption is drawn anew, the
  /// form holds the front again, and the four commands that need an organisation are enabled if
  /// there is one.
  void OrganisationFormClosed();
  /// Showing the organisation form, asked for by OrganisationsRequested, failed: this form and that
  /// one are unloaded.
  void OrganisationFormNotShown();
  /// Lets go of the study that is open, so that its files can be deleted: the rows become those of
  /// the empty template, or none where that can't be opened, and no organisation is in work any
  /// more. It never fails.
  void LetGoOfStudy();

 Q_SIGNALS:
  /// The organisation form is to be unloaded if it is loaded.
  void OrganisationFormUnloadRequested();
  /// The evaluation form is to be unloaded if it is loaded; this form is closing.
  void EvaluationFormUnloadRequested();
  /// The load failed; the organisation form and this one are unloaded and the person was told. The
  /// frame is to be unloaded, then the notice of required files to be shown modally.
  void LoadFailed();
  /// The evaluation form is to be shown modally. This form has hidden itself; it wants to be shown
  /// modally when that one closes.
  void EvaluationRequested();
  /// The form of linked files is to be shown modally, over this one. Its closing sets
  /// ProjectFormHolds.
  void LinkedFilesRequested();
  /// The organisation form is to be shown modally, over this one. When that fails,
  /// OrganisationFormNotShown is to be called.
  void OrganisationsRequested();
  /// The home page was started in place of this program, and this form is unloaded: the other forms
  /// that are open are to be unloaded, then the frame.
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
  /// `count` as far as a value of the session can hold it.
  [[nodiscard]] static qint16 Capped(int count);
  /// Stores the pending edit of the current project. What can't be stored stays on the screen and
  /// is tried again by the next commit. Fails as Commit does.
  void StoreProject();
  void ESI_No_temp_LostFocus() { numbers_.LeaveEntry(); }
  void ESI_No_LostFocus() { numbers_.Enter(); }
  void ProjectDescription_LostFocus();
  void DB1_GotFocus();
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
  /// True when the report preview runs, which reads the same files: the person was told to close
  /// it.
  [[nodiscard]] bool ReportWindowIsOpen();
  void simultn1_Click();
  void repotview_Click();
  void LnkDwgs_Click();
  void nworg_Click();
  void clsdfrm_Click();
  void HlpHzp_Click();
  void HlpHzp_Hover(bool over);
  void homepage_Click();

  std::unique_ptr<Ui::mnfrm> ui_;
  DataControl& dtsorce1_;    ///< the projects of the organisation in work
  DataControl& CboBxLstDB_;  ///< the project stages
  DataControl& AccdDptBd_;   ///< given the support database at load, and not used further
  QTimer& Timer2_;  ///< runs from the first start of the reports on; nothing follows its tick

  ProjectNumbers numbers_;
  RememberedStudies remembered_;
  QString LastComboText_;  ///< scratch text of PrjStgCbo and of ProjectDescription
};

}  // namespace kestrix
