// Project numbers: how a project comes into being, is found, and goes away.

#include <QLineEdit>

#include "formkit/Controls.h"
#include "platform/Failure.h"
#include "projects/mnfrm.h"
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

void mnfrm::NwESINo_Click() {
  if (ReportWindowIsOpen()) return;
  ui_->ESI_No_temp->setVisible(true);
  ui_->ESI_No->setVisible(false);
  FocusLater(ui_->ESI_No_temp);
}

void mnfrm::ESI_No_temp_GotFocus() {
  SelectWhole(ui_->ESI_No_temp);
}

void mnfrm::ESI_No_temp_LostFocus() {
  QLineEdit* box = ui_->ESI_No_temp;
  if (box->text().startsWith(u' ')) {
    SetBackColour(box, colour::kWarning);
    Tell(Icon::kCritical, title::kProgram, QStringLiteral("Can not begin with a space."));
    FocusLater(box, [box] { box->setSelection(0, 1); });
    return;
  }
  if (box->text().isEmpty() || box->text() == kPrompt) return AskForNumber();

  SetBold(box, true);
  SetSystemBack(box);
  EnteredProjectNumber_ = box->text();
  const bool goes_on = EnterNumber();
  box->clear();
  box->setVisible(false);
  // A box that has the focus again and is then emptied and hidden loses it as an empty one.
  if (goes_on) return AskForNumber();
  FocusLater(ui_->PrjStgCbo);
}

void mnfrm::AskForNumber() {
  QLineEdit* box = ui_->ESI_No_temp;
  box->setText(kPrompt);
  SetBold(box, false);
  SetBackColour(box, colour::kWarning);
  box->setVisible(true);
  FocusLater(box);
}

void mnfrm::ESI_No_LostFocus() {
  EnterNumber();
}

bool mnfrm::EnterNumber() {
  const QString number = ui_->ESI_No_temp->text();
  bool goes_on = false;
  try {
    if (number.isEmpty()) {
      Tell(Icon::kCritical, title::kProgram, kPrompt);
      FocusLater(ui_->ESI_No_temp);
      goes_on = true;
    } else if (WalkToNumber(number)) {
      goes_on = RefuseDuplicate(number);
    } else {
      AddOrTell(number);
    }
    DuplicateAnswered_ = false;
    ui_->ESI_No->setEnabled(false);
  } catch (const Failure&) {
    // Nothing was added.
  }
  return goes_on;
}

bool mnfrm::WalkToNumber(const QString& number) {
  Recordset& projects = dtsorce1_.Recordset();
  const Recordset::Walk walk(projects);
  projects.Requery();  // others number projects too
  if (projects.RecordCount() == 0) return false;
  const bool found = lookup::WalkTo(projects, number, kProjectNumber);
  session().LoopIndex = Capped(found ? projects.AbsolutePosition() : projects.RecordCount());
  return found;
}

bool mnfrm::RefuseDuplicate(const QString& number) {
  session().MsgAnswer = Ask(Icon::kCritical, QStringLiteral("BELTROVAN: ERROR"),
                            QStringLiteral("Project No. [") + number +
                                QStringLiteral("] already exists. Wish to enter same Project?"));
  DuplicateAnswered_ = true;
  const bool refused = session().MsgAnswer != Button::kYes;
  ui_->ESI_No_temp->setVisible(refused);
  ui_->ESI_No->setVisible(!refused);
  FocusLater(refused ? static_cast<QWidget*>(ui_->ESI_No_temp) : ui_->PrjStgCbo);
  return refused;
}

void mnfrm::AddOrTell(const QString& number) {
  try {
    AddProject(number);
  } catch (const Failure& failure) {
    // The entry box is emptied next.
    if (!failure.IsTold()) {
      TellFailure(failure.description() + QStringLiteral("\n\nProject_Number\nYours: ") + number);
    }
    throw;
  }
}

void mnfrm::AddProject(const QString& number) {
  // With no organisation in work the rows are the template's, and every new study is a copy of it.
  if (session().ActiveOrgName.isEmpty()) return ShowNumber();
  Recordset& projects = dtsorce1_.Recordset();
  ui_->DB1->SetAllowUpdate(true);
  projects.AddNew();
  const Recordset::Attempt attempt(projects);
  FillNewProject(number);
  projects.Update();
  projects.Requery();
  projects.SetAbsolutePosition(projects.AddedPosition());
  ShowNumber();
}

void mnfrm::ShowNumber() {
  ui_->ESI_No_temp->setVisible(false);
  ui_->ESI_No->setVisible(true);
}

void mnfrm::FillNewProject(const QString& number) {
  Recordset& projects = dtsorce1_.Recordset();
  projects.Set(kFactoryName, session().ActiveOrgName);
  projects.Set(kProjectNumber, number);
  // The leading blank comes back when the organisation form next writes the caption.
  ui_->Orglbltxt->ShowText(session().ActiveOrgName);
  ui_->ESI_No->setText(number);
  // Without a full stop: an ordinary stage, not the reserved one.
  ui_->PrjStgCbo->setCurrentText(QStringLiteral("None"));
  ui_->ProjectDescription->setPlainText(lookup::kNotApplicable);
}

void mnfrm::ProjectDescription_LostFocus() {
  try {
    LastComboText_ = ui_->ProjectDescription->toPlainText();
    if (LastComboText_.isEmpty()) ui_->ProjectDescription->setPlainText(lookup::kNone);
    StoreProject();
  } catch (const Failure&) {
    // The row shows again what it holds.
  }
}

void mnfrm::FndESINo_Change() {
  if (!dtsorce1_.HasRecordset()) return;
  Recordset& projects = dtsorce1_.Recordset();
  if (projects.RecordCount() == 0) return;
  const QString wanted = ui_->FndESINo->text();
  const Recordset::Walk walk(projects);
  projects.Find(kProjectNumber, [&](const QString& number) { return number.startsWith(wanted); });
  if (projects.AbsolutePosition() != 1)
    ui_->ESI_No_temp->setText(QStringLiteral("No records found!"));
}

void mnfrm::delteZapNo_Click() {
  try {
    if (ReportWindowIsOpen()) return;
    if (ui_->ESI_No->text().isEmpty()) {
      return Tell(Icon::kInformation, title::kProgram, QStringLiteral("No records selceted"));
    }
    const QString question = QStringLiteral("Wish to delete Project Number. [") +
                             ui_->ESI_No->text() + QStringLiteral("] from records?");
    if (!IsDeletionWished(question)) return TakeFrontBack();
    DeleteProject();
  } catch (const Failure& failure) {
    if (failure.number() != failure::kNoCurrentRow) return;
    Tell(Icon::kInformation, title::kProgram, QStringLiteral("No records to delete."));
  }
}

void mnfrm::DeleteProject() {
  Recordset& projects = dtsorce1_.Recordset();
  projects.Delete();
  projects.Update();
  projects.Requery();
  projects.MoveFirst();
}

}  // namespace kestrix
