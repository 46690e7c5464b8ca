#include "projects/ProjectNumbers.h"

#include "formkit/Controls.h"
#include "shell/Companions.h"
#include "shell/SessionForm.h"
#include "store/DataControl.h"
#include "store/LookupList.h"
#include "ui_mnfrm.h"

namespace kestrix {
namespace {

const QString kPrompt = QStringLiteral("Enter Project Number.");

/// Fields of a project by their place in the record source.
enum Field { kFactoryName = 0, kProjectNumber = 1 };

void SetBold(QWidget* control, bool bold) {
  QFont font = control->font();
  font.setBold(bold);
  control->setFont(font);
}

}  // namespace

ProjectNumbers::ProjectNumbers(SessionForm& form, const Ui::mnfrm& ui, DataControl& projects)
    : form_(form), ui_(ui), source_(projects) {}

void ProjectNumbers::Begin() {
  if (companions::ReportWindowGuard(form_.context())) return;
  ui_.ESI_No_temp->setVisible(true);
  ui_.ESI_No->setVisible(false);
  form_.FocusLater(ui_.ESI_No_temp);
}

void ProjectNumbers::LeaveEntry() {
  QLineEdit* box = ui_.ESI_No_temp;
  if (box->text().startsWith(u' ')) {
    SetBackColour(box, colour::kWarning);
    form_.Tell(Icon::kCritical, title::kProgram, QStringLiteral("Can not begin with a space."));
    form_.FocusLater(box, [box] { box->setSelection(0, 1); });
    return;
  }
  if (box->text().isEmpty() || box->text() == kPrompt) return AskAgain();

  SetBold(box, true);
  SetSystemBack(box);
  const bool goes_on = Enter();
  box->clear();
  box->setVisible(false);
  // A box that has the focus again and is then emptied and hidden loses it as an empty one.
  if (goes_on) return AskAgain();
  form_.FocusLater(ui_.PrjStgCbo);
}

void ProjectNumbers::AskAgain() {
  QLineEdit* box = ui_.ESI_No_temp;
  box->setText(kPrompt);
  SetBold(box, false);
  SetBackColour(box, colour::kWarning);
  box->setVisible(true);
  form_.FocusLater(box);
}

bool ProjectNumbers::Enter() {
  const QString number = ui_.ESI_No_temp->text();
  bool goes_on = false;
  try {
    if (number.isEmpty()) {
      form_.Tell(Icon::kCritical, title::kProgram, kPrompt);
      form_.FocusLater(ui_.ESI_No_temp);
      goes_on = true;
    } else if (GoTo(number)) {
      goes_on = RefuseDuplicate(number);
    } else {
      AddOrTell(number);
    }
    ui_.ESI_No->setEnabled(false);
  } catch (const Failure&) {
    // Nothing was added.
  }
  return goes_on;
}

bool ProjectNumbers::GoTo(const QString& number) {
  Recordset& projects = source_.Recordset();
  const Recordset::Walk walk(projects);
  projects.Requery();  // others number projects too
  if (projects.RecordCount() == 0) return false;
  const bool found = lookup::WalkTo(projects, number, kProjectNumber);
  const int steps = found ? projects.AbsolutePosition() : projects.RecordCount();
  form_.session().LoopIndex = Capped(steps);
  return found;
}

bool ProjectNumbers::RefuseDuplicate(const QString& number) {
  form_.session().MsgAnswer =
      form_.Ask(Icon::kCritical, QStringLiteral("BELTROVAN: ERROR"),
                QStringLiteral("Project No. [") + number +
                    QStringLiteral("] already exists. Wish to enter same Project?"));
  const bool refused = form_.session().MsgAnswer != Button::kYes;
  ui_.ESI_No_temp->setVisible(refused);
  ui_.ESI_No->setVisible(!refused);
  form_.FocusLater(refused ? static_cast<QWidget*>(ui_.ESI_No_temp) : ui_.PrjStgCbo);
  return refused;
}

void ProjectNumbers::AddOrTell(const QString& number) {
  try {
    Add(number);
  } catch (const Failure& failure) {
    // The entry box is emptied next.
    if (!failure.IsTold()) {
      form_.TellFailure(failure.description() + QStringLiteral("\n\nProject_Number\nYours: ") +
                        number);
    }
    throw;
  }
}

void ProjectNumbers::Add(const QString& number) {
  // With no organisation in work the rows are the template's, and every new study is a copy of it.
  if (form_.session().ActiveOrgName.isEmpty()) return ShowNumber();
  Recordset& projects = source_.Recordset();
  ui_.DB1->SetAllowUpdate(true);
  projects.AddNew();
  const Recordset::Attempt attempt(projects);
  FillNewProject(number);
  projects.Update();
  projects.Requery();
  projects.SetAbsolutePosition(projects.AddedPosition());
  ShowNumber();
}

void ProjectNumbers::ShowNumber() {
  ui_.ESI_No_temp->setVisible(false);
  ui_.ESI_No->setVisible(true);
}

void ProjectNumbers::FillNewProject(const QString& number) {
  Recordset& projects = source_.Recordset();
  projects.Set(kFactoryName, form_.session().ActiveOrgName);
  projects.Set(kProjectNumber, number);
  // The leading blank comes back when the organisation form next writes the caption.
  ui_.Orglbltxt->ShowText(form_.session().ActiveOrgName);
  ui_.ESI_No->setText(number);
  // Without a full stop: an ordinary stage, not the reserved one.
  ui_.PrjStgCbo->setCurrentText(QStringLiteral("None"));
  ui_.ProjectDescription->setPlainText(lookup::kNotApplicable);
}

void ProjectNumbers::Find() {
  if (!source_.HasRecordset()) return;
  Recordset& projects = source_.Recordset();
  if (projects.RecordCount() == 0) return;
  const QString wanted = ui_.FndESINo->text();
  const Recordset::Walk walk(projects);
  projects.Find(kProjectNumber, [&](const QString& number) { return number.startsWith(wanted); });
  if (projects.AbsolutePosition() != 1)
    ui_.ESI_No_temp->setText(QStringLiteral("No records found!"));
}

void ProjectNumbers::Delete() {
  try {
    if (companions::ReportWindowGuard(form_.context())) return;
    if (ui_.ESI_No->text().isEmpty()) {
      return form_.Tell(Icon::kInformation, title::kProgram, QStringLiteral("No records selceted"));
    }
    const QString question = QStringLiteral("Wish to delete Project Number. [") +
                             ui_.ESI_No->text() + QStringLiteral("] from records?");
    if (!form_.IsDeletionWished(question)) return form_.TakeFrontBack();
    DeleteRow();
  } catch (const Failure& failure) {
    if (failure.number() != failure::kNoCurrentRow) return;
    form_.Tell(Icon::kInformation, title::kProgram, QStringLiteral("No records to delete."));
  }
}

void ProjectNumbers::DeleteRow() {
  Recordset& projects = source_.Recordset();
  projects.Delete();
  projects.Update();
  projects.Requery();
  projects.MoveFirst();
}

}  // namespace kestrix
