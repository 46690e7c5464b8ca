#include "evaluation/RiskEvalFrm_1.h"

#include "evaluation/MatrixIcon.h"
#include "formkit/Controls.h"
#include "store/RecordSources.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {
namespace {

// Of the list of tasks when the form comes up; the splitter changes it.
constexpr int kListWidth = 300;
constexpr int kReferenceColumn = 0;
constexpr int kKeyColumn = 2;

}  // namespace

RiskEvalFrm_1::RiskEvalFrm_1(Context& context)
    : SessionForm(context),
      ui_([this] {
        auto made = std::make_unique<Ui::RiskEvalFrm_1>();
        made->setupUi(this);
        return made;
      }()),
      // The bindings come first, so that a change rule that corrects a text has the last word.
      controls_(*ui_, dtsorce2_),
      lists_(*this, *ui_, CboBxLstDB_),
      summary_(*ui_, session()),
      navigation_(*this, *ui_, dtsorce2_, controls_, lists_, summary_) {
  ui_->DB1->SetSource(dtsorce2_,
                      {{QStringLiteral("Ref.No."), QStringLiteral("RefNo")},
                       {QStringLiteral("Functions and Task "), QStringLiteral("FuntnTaskMachry")},
                       {QStringLiteral("nunberauto"), QStringLiteral("nunberauto")}});
  ui_->DB1->SetToolTips([this](int position) { return RiskSummary::TipOf(Tasks(), position); });
  SettleLooks();
  ConnectTasks();
  ConnectLists();
  ConnectFields();
}

RiskEvalFrm_1::~RiskEvalFrm_1() = default;

void RiskEvalFrm_1::SettleLooks() {
  ui_->RiskEsmtBtn->setIcon(MatrixIcon());
  ui_->TaskSplitter->setSizes({kListWidth, width() - kListWidth});
  // The titles get what the two numbers leave.
  QHeaderView* header = ui_->DB1->horizontalHeader();
  header->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
  header->setTextElideMode(Qt::ElideRight);
  for (const int column : {kReferenceColumn, kKeyColumn}) {
    header->resizeSection(column, header->sectionSizeHint(column));
  }
  // These labels are never enabled, and are there to be read.
  for (QLabel* label : {ui_->RIBRtxt, ui_->RIARtxt, ui_->ClassScorLBL, ui_->ClassScorLBLA}) {
    QPalette palette = label->palette();
    palette.setColor(QPalette::Disabled, QPalette::WindowText,
                     palette.color(QPalette::Active, QPalette::WindowText));
    label->setPalette(palette);
  }
}

void RiskEvalFrm_1::ConnectTasks() {
  using Me = RiskEvalFrm_1;
  connect(&dtsorce2_, &DataControl::Shown, this, &Me::ShowProjectNumber);
  connect(&dtsorce2_, &DataControl::Shown, this, &Me::SettleTyping);
  connect(&dtsorce2_, &DataControl::Shown, this, [this] { controls_.ShowBeginnings(); });
  On(ui_->DB1, &Grid::RowColChange, [this] { navigation_.RowChanged(); });
  OnGotFocus(ui_->DB1, [this] { ui_->DB1->SetAllowUpdate(false); });
  ui_->addNewRcd->grabShortcut(Qt::Key_Insert);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
    ui_->RiskEsmtBtn->grabShortcut(Qt::CTRL | key);
  GiveFindKeys(ui_->FndESINo);
  On(ui_->addNewRcd, &QPushButton::clicked, &Me::addNewRcd_Click);
  On(ui_->CpyTaskCmd, &QPushButton::clicked, &Me::CpyTaskCmd_Click);
  On(ui_->DleteRcd, &QPushButton::clicked, &Me::DleteRcd_Click);
  On(ui_->nxtfrmbtn, &QPushButton::clicked, [this] { navigation_.Next(); });
  On(ui_->prvsfrmbtn, &QPushButton::clicked, [this] { navigation_.Previous(); });
  On(ui_->RiskEsmtBtn, &QPushButton::clicked, &Me::RiskEsmtBtn_Click);
  On(ui_->ClsedDg, &QPushButton::clicked, &Me::ClsedDg_Click);
}

void RiskEvalFrm_1::ConnectLists() {
  for (const TaskLists::List& list : lists_.All()) {
    OnGotFocus(list.combo, [this, &list] { lists_.Enter(list); });
    On(list.add, &QPushButton::clicked, [this, &list] { lists_.Add(list); });
    On(list.remove, &QPushButton::clicked, [this, &list] { lists_.Delete(list); });
  }
  On(ui_->PrimaryHazard, &QComboBox::activated, [this] { lists_.CountHazardTypes(); });
  OnLostFocus(ui_->PrimaryHazard, &RiskEvalFrm_1::PrimaryHazard_LostFocus);
  OnLostFocus(ui_->HazardType, &RiskEvalFrm_1::HazardType_LostFocus);
}

void RiskEvalFrm_1::ConnectFields() {
  using Me = RiskEvalFrm_1;
  for (QLineEdit* date : {ui_->dateOfRcd, ui_->actnDt}) {
    On(date, &QLineEdit::textChanged, [this, date] { DateChanged(date); });
    OnLostFocus(date, [this, date] { DateLeft(date); });
  }
  OnGotFocus(ui_->dateOfRcd, &Me::dateOfRcd_GotFocus);
  OnGotFocus(ui_->actnDt, &Me::actnDt_GotFocus);
  OnLostFocus(ui_->RefNo, &Me::RefNo_LostFocus);
  On(ui_->ActntkenOptnY_N, &QCheckBox::toggled, &Me::ActntkenOptnY_N_Click);
  On(ui_->RskRdsdtnY_N, &QCheckBox::toggled, &Me::RskRdsdtnY_N_Click);
  OnLostFocus(ui_->FuntnTaskMachry, &Me::FuntnTaskMachry_LostFocus);
  On(ui_->FndESINo, &QLineEdit::textChanged, [this] { navigation_.Find(); });
  OnLostFocus(ui_->FndESINo, [this] { navigation_.LeaveFind(); });
}

void RiskEvalFrm_1::Load() {
  try {
    session().HazardTypeRows = 1;
    session().PrimaryHazardClicked = false;
    ui_->ESINoLBLCp->setText(context().project.ESI_No());
    ui_->PrjDesptn->setText(context().project.ProjectDescription());
    OpenTasks();
    OpenLists();
    if (session().TaskPosition == 0) session().TaskPosition = 1;
    // The task that was in hand when the form was last open, of whichever project that was.
    if (Tasks().AbsolutePosition() != Recordset::kPositionUnknown) {
      Tasks().SetAbsolutePosition(session().TaskPosition);
    }
    // The first task comes up without a change of row, and with the tick that was stored last.
    summary_.SyncReducedCheck(Tasks());
  } catch (const Failure&) {
    LoadFailed();
  }
}

void RiskEvalFrm_1::OpenTasks() {
  // Until the place of the last time is taken up again, moves must not be taken for a new place.
  [[maybe_unused]] const auto opening = navigation_.Opening();
  dtsorce2_.SetConnectionString(
      DataControl::ConnectionStringFor(installation().Study(session().ActiveStudyNo)));
  session().RiskSql = sources::RiskSql(context().project.ESI_No());
  dtsorce2_.SetRecordSource(session().RiskSql);
  dtsorce2_.Refresh();
  if (TaskCount() == 0) {
    ClearTaskForm();
    lists_.Disable();
    ui_->TotAcdRCDDsply->setText(QStringLiteral(" Total recorded task %1 ").arg(TaskCount()));
    return;
  }
  Tasks().MoveFirst();
  navigation_.ShowPosition();
  controls_.ShowTask(Tasks());
  lists_.EnableCombos(true);
}

void RiskEvalFrm_1::OpenLists() {
  session().SupportDbPath = installation().SupportLists();
  CboBxLstDB_.SetDatabaseName(session().SupportDbPath);
  CboBxLstDB_.Refresh();
}

void RiskEvalFrm_1::LoadFailed() {
  messages().Beep();
  Q_EMIT ProjectAndOrganisationUnloadRequested();
  Tell(Icon::kCritical, title::kFilesMissing,
       QStringLiteral("More files required run setup/Installed Files missing/Requires MS Office "
                      "installed"));
  Q_EMIT FrameUnloadRequested();
}

void RiskEvalFrm_1::Activate() {
  // Past the last task, after a find without a match, the labels keep what they show.
  if (TaskCount() != 0 && Tasks().HasCurrentRow()) summary_.Show(Tasks());
}

void RiskEvalFrm_1::QueryUnload() {
  if (TaskCount() == 0) return;
  SaveTask();
  try {
    Tasks().Update();
  } catch (const Failure& failure) {
    if (!Tasks().HasPendingEdit()) throw;
    // What was typed stays on the screen. It can be copied from there once where the file will
    // never take it.
    const bool never = failure.number() == failure::kReadOnly;
    if (never && std::exchange(kept_to_copy_, true)) return;
    TellFailure(failure.description());
    Stay();
  }
}

void RiskEvalFrm_1::ClearTaskForm() {
  ui_->PrjDesptn->setText(QStringLiteral("No task recorded. Click 'Add New Task' to record task"));
  ui_->HzrdTyp->setText(QStringLiteral("No task recorded"));
  controls_.ShowUnset(Today());
  summary_.Clear();
  ui_->TotAcdRCDDsply->setText(QStringLiteral(" Recorded task 0 "));
}

void RiskEvalFrm_1::ShowProjectNumber() {
  // Without a task the label goes on telling the project; a new task gets its number later.
  if (!dtsorce2_.HasRecordset() || Tasks().IsAdding() || !Tasks().HasCurrentRow()) return;
  PassOver([this] { ui_->ESINoLBLCp->setText(Tasks().Text(0)); });
}

/// What is typed without a task, or past the last one, would go nowhere.
void RiskEvalFrm_1::SettleTyping() {
  const bool has_task = dtsorce2_.HasRecordset() && Tasks().HasCurrentRow();
  if (ui_->FuntnTaskMachry->isReadOnly() == has_task) controls_.AllowTyping(has_task);
}

void RiskEvalFrm_1::RiskEsmtBtn_Click() {
  if (TaskCount() == 0)
    return Tell(Icon::kInformation, title::kProgram,
                QStringLiteral("No task entered. Please add task."));
  hide();
  Q_EMIT EstimationRequested();
}

void RiskEvalFrm_1::ClsedDg_Click() {
  UnloadForm();
  if (IsUnloading()) Q_EMIT Closed();
}

}  // namespace kestrix
