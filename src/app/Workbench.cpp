#include "app/Workbench.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>

#include "backup/BkUpfrm.h"
#include "backup/opnflddlg.h"
#include "customization/custizationFrm.h"
#include "estimation/RiskEstimtn.h"
#include "evaluation/RiskEvalFrm_1.h"
#include "organisations/Orgfrm.h"
#include "projects/mnfrm.h"
#include "shell/frmMain.h"
#include "shell/reqfrm.h"
#include "supporting/tagdwgsfrm.h"

namespace kestrix {
namespace {

/// Whether a key was pressed that doesn't only change the meaning of the next one.
bool IsKeyOfItsOwn(const QEvent& event) {
  if (event.type() != QEvent::KeyPress) return false;
  const int key = static_cast<const QKeyEvent&>(event).key();
  return key != Qt::Key_Alt && key != Qt::Key_AltGr && key != Qt::Key_Control &&
         key != Qt::Key_Shift && key != Qt::Key_Meta;
}

}  // namespace

Workbench::Workbench(Platform& platform)
    : platform_(platform),
      installation_(platform.environment.ApplicationFolder()),
      active_(focus_),
      kit_{platform_, focus_, active_},
      dialog_(platform_),
      context_{kit_, session_, installation_, *this, dialog_, *this, *this},
      frame_([this] { return Make(&Workbench::ConnectFrame); }),
      organisations_([this] { return Make(&Workbench::ConnectOrganisations); }),
      projects_([this] { return Make(&Workbench::ConnectProjects); }),
      evaluation_([this] { return Make(&Workbench::ConnectEvaluation); }),
      estimation_([this] { return Make(&Workbench::ConnectEstimation); }),
      customization_([this] { return std::make_unique<custizationFrm>(context_); }),
      linked_files_([this] { return std::make_unique<tagdwgsfrm>(context_); }),
      backup_([this] { return Make(&Workbench::ConnectBackup); }),
      folder_dialog_([this] { return Make(&Workbench::ConnectFolderDialog); }),
      notice_([this] { return Make(&Workbench::ConnectNotice); }) {
  qApp->installEventFilter(this);
}

Workbench::~Workbench() {
  // A form that was unloaded goes with the next turn of the event loop and looks at what is ours
  // until then; at the end of the run there may be no next turn.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// A form is connected before its load runs, so that a load that fails is heard.
template <class F>
std::unique_ptr<F> Workbench::Make(void (Workbench::*connect_form)(F&)) {
  auto form = std::make_unique<F>(context_);
  (this->*connect_form)(*form);
  return form;
}

void Workbench::Start() {
  frame_.Get().ShowForm();
}

// The frame leads to the organisations, the lists and the backup; its end is the end of the run.
void Workbench::ConnectFrame(frmMain& form) {
  connect(&form, &frmMain::OrganisationsRequested, this,
          [this] { organisations_.Get().ShowForm(); });
  connect(&form, &frmMain::CustomizationRequested, this,
          [this] { customization_.Get().ShowFormModal(); });
  connect(&form, &frmMain::BackupRequested, this, [this] {
    // One reference, since a form whose load failed would be loaded again by the next.
    BkUpfrm& backup = backup_.Get();
    backup.ShowForm();
    backup.PrepareBackup();
    projects_.Unload();
    evaluation_.Unload();
  });
  connect(&form, &frmMain::RestoreRequested, this, [this] {
    // A backup form that is there stands for other work, and no button of it would do this one.
    backup_.Unload();
    folder_dialog_.Get().ShowForm();
  });
  connect(&form, &frmMain::Closing, this, [this] {
    projects_.Unload();
    organisations_.Unload();
    evaluation_.Unload();
    folder_dialog_.Unload();
    backup_.Unload();
    linked_files_.Unload();
  });
  connect(&form, &frmMain::LoadFailed, this, [this] { projects_.Unload(); });
  connect(&form, &Form::Unloaded, this, &Workbench::EndRun);
}

// An organisation that was opened comes up on the project form, which its caption loads.
void Workbench::ConnectOrganisations(Orgfrm& form) {
  connect(&form, &Orgfrm::OrganisationOpened, this,
          [this](const QString& caption) { projects_.Get().SetOrganisationCaption(caption); });
  connect(&form, &Orgfrm::Closing, this, [this] { projects_.Get().OrganisationFormClosed(); });
  connect(&form, &Orgfrm::ProjectFormUnloadRequested, this, [this] { projects_.Unload(); });
  connect(&form, &Orgfrm::StudyReleaseRequested, this, [this] { projects_.Get().LetGoOfStudy(); });
  connect(&form, &Orgfrm::LoadFailed, this, &Workbench::ShowNotice);
}

// From a project to its tasks, its linked files, its organisation, or out.
void Workbench::ConnectProjects(mnfrm& form) {
  connect(&form, &mnfrm::OrganisationFormUnloadRequested, this, [this] {
    if (Orgfrm* organisations = organisations_.IfLoaded()) organisations->GiveWay();
  });
  connect(&form, &mnfrm::EvaluationFormUnloadRequested, this, [this] { evaluation_.Unload(); });
  connect(&form, &mnfrm::EvaluationRequested, this, [this] { evaluation_.Get().ShowFormModal(); });
  connect(&form, &mnfrm::LinkedFilesRequested, this,
          [this] { linked_files_.Get().ShowFormModal(); });
  connect(&form, &mnfrm::OrganisationsRequested, this, [this, &form] {
    Orgfrm& organisations = organisations_.Get();
    organisations.ShowFormModal();
    if (organisations.IsUnloading()) form.OrganisationFormNotShown();
  });
  connect(&form, &mnfrm::HomePageTakesOver, this, [this] { frame_.Unload(); });
  connect(&form, &mnfrm::LoadFailed, this, [this] {
    frame_.Unload();
    ShowNotice();
  });
}

// Between the tasks and their estimation, and back to the project.
void Workbench::ConnectEvaluation(RiskEvalFrm_1& form) {
  connect(&form, &RiskEvalFrm_1::EstimationRequested, this,
          [this] { estimation_.Get().ShowFormModal(); });
  connect(&form, &RiskEvalFrm_1::Closed, this, [this] { projects_.Get().ShowFormModal(); });
  connect(&form, &RiskEvalFrm_1::ProjectAndOrganisationUnloadRequested, this, [this] {
    organisations_.Unload();
    projects_.Unload();
  });
  connect(&form, &RiskEvalFrm_1::FrameUnloadRequested, this, [this] { frame_.Unload(); });
}

void Workbench::ConnectEstimation(RiskEstimtn& form) {
  connect(&form, &RiskEstimtn::Done, this, [this] { evaluation_.Get().ShowFormModal(); });
}

// A backup shows its list, asks for a folder and comes back; a restore begins with the folder.
void Workbench::ConnectBackup(BkUpfrm& form) {
  connect(&form, &BkUpfrm::FolderDialogRequested, this,
          [this] { folder_dialog_.Get().ShowForm(); });
  connect(&form, &BkUpfrm::LoadFailed, this, &Workbench::ShowNotice);
  connect(&form, &BkUpfrm::CopyingFailed, this, [this] { folder_dialog_.Unload(); });
  connect(&form, &BkUpfrm::CaptionDue, this,
          [this](const QString& caption) { backup_.Get().SetMainCaption(caption); });
}

void Workbench::ConnectFolderDialog(opnflddlg& form) {
  const auto show_with = [this](const QString& caption) {
    BkUpfrm& backup = backup_.Get();
    backup.SetMainCaption(caption);
    backup.ShowForm();
  };
  connect(&form, &opnflddlg::BackupFolderChosen, this,
          [show_with] { show_with(BkUpfrm::kBackup); });
  // Each restore begins with a form of its own: one that is there shows what it did before.
  connect(&form, &opnflddlg::RestoreFolderChosen, this, [this, show_with] {
    backup_.Unload();
    show_with(BkUpfrm::kRestore);
  });
  connect(&form, &opnflddlg::Cancelled, this, [this] { backup_.Get().ShowForm(); });
}

// The notice ends the program: all that is open goes, and it goes last.
void Workbench::ConnectNotice(reqfrm& form) {
  connect(&form, &reqfrm::ProgramEndRequested, this, [this] {
    frame_.Unload();
    organisations_.Unload();
    projects_.Unload();
  });
  connect(&form, &Form::Unloaded, this, &Workbench::EndRun);
}

// A form that is closed by its title bar doesn't bring back the form that hid itself for it, and
// the frame's way to the organisations is barred while a project form is loaded. A press on the
// frame, or of any key there, leads out of there.
bool Workbench::eventFilter(QObject* watched, QEvent* event) {
  const bool is_press = event->type() == QEvent::MouseButtonPress || IsKeyOfItsOwn(*event);
  const auto* pressed = is_press ? qobject_cast<QWidget*>(watched) : nullptr;
  if (pressed != nullptr && frame_.IsLoaded() && pressed->window() == frame_.IfLoaded()) {
    QMetaObject::invokeMethod(this, &Workbench::ReturnToHiddenForm, Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}

void Workbench::ReturnToHiddenForm() {
  if (!frame_.IsLoaded() || estimation_.IsLoaded() || organisations_.IsLoaded()) return;
  Form* hidden = evaluation_.IfLoaded();
  if (hidden == nullptr) hidden = projects_.IfLoaded();
  if (hidden != nullptr && !hidden->isVisible()) hidden->ShowFormModal();
}

void Workbench::ShowNotice() {
  notice_.Get().ShowFormModal();
}

/// The frame has gone, or the notice that outlived it. Behind the event in hand, since whoever
/// unloads the frame may yet show the notice.
void Workbench::EndRun() {
  const auto end = [this] {
    if (frame_.IsLoaded() || notice_.IsLoaded() || ended_) return;
    ended_ = true;
    organisations_.Unload();
    projects_.Unload();
    evaluation_.Unload();
    estimation_.Unload();
    customization_.Unload();
    linked_files_.Unload();
    folder_dialog_.Unload();
    backup_.Unload();
    // An organisation form that goes refers to the project form, which that brings up once more.
    projects_.Unload();
    Q_EMIT Ended();
  };
  QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
}

void Workbench::SetStatusText(const QString& text) {
  if (frame_.IsLoaded()) frame_.Get().SetStatusText(text);
}

void Workbench::EnableData(bool enable) {
  if (frame_.IsLoaded()) frame_.Get().EnableData(enable);
}

void Workbench::EnableToolBar(bool enable) {
  if (frame_.IsLoaded()) frame_.Get().EnableToolBar(enable);
}

void Workbench::MaximiseIfMinimised() {
  if (frame_.IsLoaded()) frame_.Get().MaximiseIfMinimised();
}

QString Workbench::ESI_No() {
  return projects_.Get().ESI_No();
}

QString Workbench::ProjectDescription() {
  return projects_.Get().ProjectDescription();
}

Recordset& Workbench::Tasks() {
  return evaluation_.Get().Tasks();
}

}  // namespace kestrix
