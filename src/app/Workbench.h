#pragma once

#include <QObject>

#include "formkit/ActiveForms.h"
#include "formkit/FocusEvents.h"
#include "formkit/Form.h"
#include "formkit/FormSlot.h"
#include "shell/CommonDialog.h"
#include "shell/Frame.h"
#include "shell/SessionForm.h"
#include "shell/SessionState.h"
#include "store/Installation.h"

namespace kestrix {

class BkUpfrm;
class Orgfrm;
class RiskEstimtn;
class RiskEvalFrm_1;
class custizationFrm;
class frmMain;
class mnfrm;
class opnflddlg;
class reqfrm;
class tagdwgsfrm;

/// The one map of the program: it makes every form, keeps the rule that a form exists once and is
/// loaded by the first reference, and holds every hand-over between two forms. It knows no rule of
/// a form; read from top to bottom, its .cpp tells who follows whom.
class Workbench : public QObject, private Frame, private ProjectInHand, private TaskInHand {
  Q_OBJECT

 public:
  explicit Workbench(Platform& platform);
  ~Workbench() override;

  /// Loads the frame and shows it: the first usable screen.
  void Start();

  [[nodiscard]] SessionState& session() { return session_; }
  /// Who is in front.
  [[nodiscard]] ActiveForms& forms() { return active_; }

 Q_SIGNALS:
  /// The frame is gone, and with it all other forms: the run ends.
  void Ended();

 private:
  // The narrow views of forms that others are given; a use loads the form where the rules say so.
  void SetStatusText(const QString& text) override;
  void EnableData(bool enable) override;
  void EnableToolBar(bool enable) override;
  void MaximiseIfMinimised() override;
  QString ESI_No() override;
  QString ProjectDescription() override;
  Recordset& Tasks() override;

  template <class F>
  std::unique_ptr<F> Make(void (Workbench::*connect_form)(F&));
  void ConnectFrame(frmMain& form);
  void ConnectOrganisations(Orgfrm& form);
  void ConnectProjects(mnfrm& form);
  void ConnectEvaluation(RiskEvalFrm_1& form);
  void ConnectEstimation(RiskEstimtn& form);
  void ConnectBackup(BkUpfrm& form);
  void ConnectFolderDialog(opnflddlg& form);
  void ConnectNotice(reqfrm& form);

  bool eventFilter(QObject* watched, QEvent* event) override;
  void ReturnToHiddenForm();
  void ShowNotice();
  void EndRun();

  Platform& platform_;
  SessionState session_;
  Installation installation_;
  FocusEvents focus_;
  ActiveForms active_;
  FormKit kit_;
  CommonDialog dialog_;
  Context context_;

  FormSlot<frmMain> frame_;
  FormSlot<Orgfrm> organisations_;
  FormSlot<mnfrm> projects_;
  FormSlot<RiskEvalFrm_1> evaluation_;
  FormSlot<RiskEstimtn> estimation_;
  FormSlot<custizationFrm> customization_;
  FormSlot<tagdwgsfrm> linked_files_;
  FormSlot<BkUpfrm> backup_;
  FormSlot<opnflddlg> folder_dialog_;
  FormSlot<reqfrm> notice_;
  bool ended_ = false;
};

}  // namespace kestrix
