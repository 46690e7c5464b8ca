// The ways out of the project form: to the tasks, the reports, the linked files, the organisations,
// the help page, the home page, and out.

#include "formkit/Controls.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "projects/mnfrm.h"
#include "shell/Companions.h"
#include "ui_mnfrm.h"

namespace kestrix {

void mnfrm::simultn1_Click() {
  try {
    files().ChangeFolder(installation().ApplicationFolder());
    if (OrganisationCaption().isEmpty() || ui_->ESI_No->text().isEmpty()) {
      Tell(Icon::kInformation, title::kProgram,
           QStringLiteral("Add new organization./ESI number : ") + session().ActiveOrgName);
      return FocusLater(ui_->simultn1);
    }
    if (companions::ReportWindowGuard(context())) return;
    session().ProjectFormHolds = 0;
    Commit(dtsorce1_);
    hide();
    Q_EMIT EvaluationRequested();
  } catch (const Failure&) {
    // The form stays.
  }
}

void mnfrm::repotview_Click() {
  if (companions::StartReportPreview(context())) Timer2_.start();
}

void mnfrm::LnkDwgs_Click() {
  session().ProjectFormHolds = 0;
  Q_EMIT LinkedFilesRequested();
}

void mnfrm::nworg_Click() {
  if (companions::ReportWindowGuard(context())) return;
  session().ProjectFormHolds = 0;
  session().StudyConnected = 0;
  Q_EMIT OrganisationsRequested();
}

void mnfrm::HlpHzp_Hover(bool over) {
  QFont font = ui_->HlpHzp->font();
  font.setUnderline(over);
  ui_->HlpHzp->setFont(font);
  if (over) {
    ui_->HlpHzp->setForegroundRole(QPalette::WindowText);
    SetBackColour(ui_->HlpHzp, colour::kPaleYellow);
  } else {
    SetSystemBack(ui_->HlpHzp);
    ui_->HlpHzp->setForegroundRole(LinkRole(ui_->HlpHzp));
  }
}

void mnfrm::homepage_Click() {
  if (!companions::GoToHomePage(context())) return;
  UnloadForm();
  Q_EMIT HomePageTakesOver();
}

}  // namespace kestrix
