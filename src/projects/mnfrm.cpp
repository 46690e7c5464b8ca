#include "projects/mnfrm.h"

#include "formkit/Controls.h"
#include "formkit/DrawnIcon.h"
#include "formkit/FieldBinding.h"
#include "platform/FileSystem.h"
#include "shell/Companions.h"
#include "shell/Frame.h"
#include "store/LookupList.h"
#include "store/RecordSources.h"
#include "ui_mnfrm.h"

namespace kestrix {
namespace {

/// What the frame's status bar reads once no organisation is open any more.
const QString kIdleStatus = QStringLiteral(" KESTRIX : Risk Assessment Software ");

constexpr int kTimerInterval = 4000;

}  // namespace

mnfrm::mnfrm(Context& context)
    : SessionForm(context), ui_(std::make_unique<Ui::mnfrm>()), numbers_(*this, *ui_, dtsorce1_) {
  ui_->setupUi(this);
  Timer2_.setObjectName(QStringLiteral("Timer2"));
  Timer2_.setInterval(kTimerInterval);
  ui_->homepage->setIcon(DrawnIcon(Drawing::kHouse));
  SetBackColour(ui_->Orglbltxt, colour::kPaleYellow);
  ui_->HlpHzp->setForegroundRole(LinkRole(ui_->HlpHzp));
  Dress();
  BindFields();
  Connect();
}

mnfrm::~mnfrm() = default;

void mnfrm::Dress() {
  // The number is read more often than anything else here, though it can't be typed into.
  QPalette readable;
  readable.setColor(QPalette::Disabled, QPalette::Text,
                    palette().color(QPalette::Active, QPalette::WindowText));
  ui_->ESI_No->setPalette(readable);
  LockBoxes();
}

void mnfrm::changeEvent(QEvent* event) {
  SessionForm::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && ui_->preparedbyTxt) Dress();
}

void mnfrm::BindFields() {
  new FieldBinding(dtsorce1_, QStringLiteral("Project_Number"), ui_->ESI_No);
  new FieldBinding(dtsorce1_, QStringLiteral("Project_phase"), ui_->PrjStgCbo);
  new FieldBinding(dtsorce1_, QStringLiteral("Project_Description"), ui_->ProjectDescription);
  new FieldBinding(dtsorce1_, QStringLiteral("preparedBytxt"), ui_->preparedbyTxt);
  // The rows don't have this field: the box keeps its "0" on every row.
  new FieldBinding(dtsorce1_, QStringLiteral("stdyno"), ui_->StudyNoAuto);
  ui_->DB1->SetSource(dtsorce1_,
                      {{QStringLiteral("Project Number"), QStringLiteral("Project_Number")}});
}

void mnfrm::Connect() {
  connect(&dtsorce1_, &DataControl::Shown, this, [this] {
    LockBoxes();
    for (QLineEdit* box : {ui_->ESI_No, ui_->PrjStgCbo->lineEdit(), ui_->preparedbyTxt}) {
      ShowBeginning(box);
    }
  });
  OnGotFocus(ui_->DB1, [this] { ui_->DB1->SetAllowUpdate(false); });
  OnLostFocus(ui_->DB1, &mnfrm::DB1_LostFocus);
  On(ui_->DB1, &Grid::Click, &mnfrm::DB1_Click);
  On(ui_->DB1, &Grid::DblClick, &mnfrm::simultn1_Click);

  ui_->NwESINo->grabShortcut(Qt::Key_Insert);
  GiveFindKeys(ui_->FndESINo);
  On(ui_->NwESINo, &QPushButton::clicked, [this] { numbers_.Begin(); });
  OnGotFocus(ui_->ESI_No_temp, [this] { SelectWhole(ui_->ESI_No_temp); });
  OnLostFocus(ui_->ESI_No_temp, [this] { numbers_.LeaveEntry(); });
  OnLostFocus(ui_->ESI_No, [this] { numbers_.Enter(); });
  OnLostFocus(ui_->ProjectDescription, &mnfrm::ProjectDescription_LostFocus);
  On(ui_->FndESINo, &QLineEdit::textChanged, [this] { numbers_.Find(); });
  On(ui_->delteZapNo, &QPushButton::clicked, [this] { numbers_.Delete(); });

  OnGotFocus(ui_->PrjStgCbo, &mnfrm::PrjStgCbo_GotFocus);
  OnLostFocus(ui_->PrjStgCbo, &mnfrm::PrjStgCbo_LostFocus);
  On(ui_->adddt0, &QPushButton::clicked, &mnfrm::adddt0_Click);
  On(ui_->dletedt0, &QPushButton::clicked, &mnfrm::dletedt0_Click);

  On(ui_->simultn1, &QPushButton::clicked, &mnfrm::simultn1_Click);
  On(ui_->repotview, &QPushButton::clicked, &mnfrm::repotview_Click);
  On(ui_->LnkDwgs, &QPushButton::clicked, &mnfrm::LnkDwgs_Click);
  On(ui_->nworg, &QPushButton::clicked, &mnfrm::nworg_Click);
  On(ui_->clsdfrm, &QPushButton::clicked, &Form::UnloadForm);
  On(ui_->HlpHzp, &ClickLabel::Click, [this] { companions::OpenHelpPage(context()); });
  On(ui_->HlpHzp, &ClickLabel::Hovered, &mnfrm::HlpHzp_Hover);
  On(ui_->homepage, &QToolButton::clicked, &mnfrm::homepage_Click);
}

/// Without a project nobody would keep what is typed for one.
void mnfrm::LockBoxes() {
  const bool locked = !dtsorce1_.HasRecordset() || !dtsorce1_.Recordset().HasCurrentRow();
  SetLocked(ui_->ProjectDescription, locked);
  SetLocked(ui_->preparedbyTxt, locked);
}

QString mnfrm::ESI_No() {
  return ui_->ESI_No->text();
}

QString mnfrm::ProjectDescription() {
  return ui_->ProjectDescription->toPlainText();
}

void mnfrm::SetOrganisationCaption(const QString& caption) {
  ui_->Orglbltxt->ShowText(caption);
}

void mnfrm::OrganisationFormClosed() {
  ui_->Orglbltxt->update();
  session().ProjectFormHolds = 1;
  EnableProjectCommands();
}

void mnfrm::OrganisationFormNotShown() {
  UnloadForm();
  Q_EMIT OrganisationFormUnloadRequested();
}

void mnfrm::LetGoOfStudy() {
  dtsorce1_.SetConnectionString(DataControl::ConnectionStringFor(installation().StudyTemplate()));
  PassOver([this] { dtsorce1_.Refresh(); });
  ui_->Orglbltxt->ShowText(QString());
  session().ActiveOrgName.clear();
}

void mnfrm::Load() {
  WaitCursor waiting;
  try {
    // The find box is what is wanted first; without a word the first focus would go to the header.
    ui_->FndESINo->setFocus();
    // Whoever writes the organisation's name loads this form by it, and it is to be seen then.
    ShowForm();
    session().SupportDbPath = installation().SupportLists();
    CboBxLstDB_.SetDatabaseName(session().SupportDbPath);
    AccdDptBd_.SetDatabaseName(session().SupportDbPath);
    CboBxLstDB_.Refresh();
  } catch (const Failure&) {
    waiting.Restore();
    Q_EMIT OrganisationFormUnloadRequested();
    UnloadForm();
    Tell(Icon::kCritical, title::kFilesMissing,
         QStringLiteral("More files required run setup/Installed Files missing/Requires MS Office "
                        "installed"));
    Q_EMIT LoadFailed();
  }
}

void mnfrm::Activate() {
  const WaitCursor waiting;
  const bool was_connected = session().StudyConnected != 0;
  try {
    TakeOrganisation();
    if (!was_connected) {
      ConnectStudy();
      FindRememberedSlot();
      GoToRememberedStudy();
    }
  } catch (const Failure&) {
    return;
  }
  const auto repair_slot = [this] {
    if (session().ListTextKnown == 0) session().ListTextKnown = 1;
  };
  const auto first_row = [this] {
    if (ui_->StudyNoAuto->text().isEmpty() &&
        remembered_.IsNamed(session().ListTextKnown, OrganisationCaption())) {
      dtsorce1_.Recordset().MoveFirst();
    }
  };
  if (!was_connected) PassOver(repair_slot, first_row);
  PassOver([this] { EnableProjectCommands(); });
}

void mnfrm::TakeOrganisation() {
  Q_EMIT OrganisationFormUnloadRequested();
  frame().EnableData(false);
  frame().EnableToolBar(false);
  if (!session().SelectedOrgName.isEmpty()) session().ActiveOrgName = session().SelectedOrgName;
  if (OrganisationCaption().isEmpty()) session().ActiveOrgName.clear();
}

void mnfrm::ConnectStudy() {
  const int number = session().ActiveStudyNo;
  const QString study = installation().Study(number);
  const bool exists = number != 0 && files().FileExists(study);
  if (number != 0) ui_->repotview->setEnabled(true);
  if (!exists) {
    // Another organisation's projects mustn't stand below this one's name.
    dtsorce1_.Close();
    return;
  }
  dtsorce1_.SetConnectionString(DataControl::ConnectionStringFor(study));
  session().ProjectSql = sources::ProjectSql(session().ActiveOrgName);
  dtsorce1_.SetRecordSource(session().ProjectSql);
  dtsorce1_.Refresh();
}

void mnfrm::FindRememberedSlot() {
  if (ui_->StudyNoAuto->text().isEmpty()) return;
  if (const int slot = remembered_.SlotOf(OrganisationCaption())) {
    session().ListTextKnown = static_cast<qint16>(slot);
  }
}

void mnfrm::GoToRememberedStudy() {
  if (!session().SelectedOrgName.isEmpty() && remembered_.SlotOf(OrganisationCaption()) != 0) {
    session().StudyConnected = 1;
  }
  if (session().StudyConnected == 0 || !dtsorce1_.HasRecordset()) return;

  Recordset& projects = dtsorce1_.Recordset();
  if (projects.RecordCount() == 0) return;
  const bool holds =
      remembered_.Holds(session().ListTextKnown, OrganisationCaption(), StudyNumberShown());
  projects.SetAbsolutePosition(holds ? 1 : Recordset::kPositionPastLast);
}

void mnfrm::EnableProjectCommands() {
  const bool enable = !OrganisationCaption().isEmpty();
  for (QWidget* command : {ui_->delteZapNo, ui_->LnkDwgs, ui_->simultn1, ui_->repotview}) {
    command->setEnabled(enable);
  }
  ui_->DB1->setPlaceholderText(
      enable ? QStringLiteral("No projects yet. Press New Project Number to add the first one.")
             : QStringLiteral("Select an organization first."));
}

QString mnfrm::OrganisationCaption() const {
  return ui_->Orglbltxt->text();
}

qint16 mnfrm::StudyNumberShown() const {
  return ui_->StudyNoAuto->text().toShort();
}

void mnfrm::Deactivate() {
  if (session().ProjectFormHolds == 1) TakeFrontBack();
}

void mnfrm::QueryUnload() {
  // A title bar takes no focus: the box that has it is left here. A number that is being entered is
  // not added by going away.
  if (focusWidget() == ui_->PrjStgCbo) PrjStgCbo_LostFocus();
  if (focusWidget() == ui_->ProjectDescription) ProjectDescription_LostFocus();
  try {
    session().ProjectFormHolds = 0;
    session().StudyConnected = 0;
    remembered_.ForgetNames();
    frame().EnableData(true);
    frame().EnableToolBar(true);
    frame().SetStatusText(kIdleStatus);
    session().ActiveOrgName.clear();
    Q_EMIT OrganisationFormUnloadRequested();
    frame().MaximiseIfMinimised();
    Q_EMIT EvaluationFormUnloadRequested();
  } catch (const Failure&) {
    // The form goes all the same.
  }
}

void mnfrm::ProjectDescription_LostFocus() {
  try {
    LastComboText_ = ui_->ProjectDescription->toPlainText();
    if (LastComboText_.isEmpty()) ui_->ProjectDescription->setPlainText(lookup::kNone);
    Commit(dtsorce1_);
  } catch (const Failure&) {
    // The row shows again what it holds.
  }
}

void mnfrm::DB1_Click() {
  session().GridRowNumber = Capped(ui_->DB1->Row());
  session().StudyConnected = 1;
}

void mnfrm::DB1_LostFocus() {
  ui_->DB1->SetAllowUpdate(true);
  session().GridRowNumber = Capped(ui_->DB1->Row());
  if (ui_->StudyNoAuto->text().isEmpty()) return;
  if (const int slot = remembered_.Remember(OrganisationCaption(), StudyNumberShown())) {
    session().ListTextKnown = static_cast<qint16>(slot);
  }
}

}  // namespace kestrix
