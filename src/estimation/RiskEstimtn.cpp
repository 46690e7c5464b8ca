#include "estimation/RiskEstimtn.h"

#include "platform/FileSystem.h"
#include "shell/CommonDialog.h"
#include "store/Recordset.h"
#include "ui_RiskEstimtn.h"

namespace kestrix {

RiskEstimtn::RiskEstimtn(Context& context)
    : SessionForm(context), ui_(std::make_unique<Ui::RiskEstimtn>()) {
  ui_->setupUi(this);
  ui_->RiskGraph->Show(graph_, RiskGraphView::Part::kGraph);
  ui_->RiskMatrix->Show(graph_, RiskGraphView::Part::kMatrix);
  ConnectLevels();
  ConnectStatements();
  ConnectStages();
  ConnectPictures();
  ui_->TaskLbl->installEventFilter(this);
}

RiskEstimtn::~RiskEstimtn() = default;

void RiskEstimtn::Load() {
  try {
    graph_.SetStage(Stage::kBefore);
    ShowTask();
    ReplayStage(Replay::kAtLoad);
    for (const QString& folder :
         {installation().PictureRoot(), installation().PictureFolder(session().ActiveStudyNo)}) {
      if (!files().FolderExists(folder)) files().CreateFolder(folder);
    }
    ShowStatementLabels();
    RefreshRiskDisplay();
    LoadPictures();
  } catch (const Failure&) {
    // Meant for pictures that are gone: a form without its pictures is of use all the same.
    ReplaceMissingPictures();
  }
  FocusLater(ui_->SevertyCbo);
}

void RiskEstimtn::QueryUnload() {
  for (const Parameter parameter : model::kParameters) {
    const QString text = LevelText(parameter);
    const bool chosen = !model::IsUnsetLevel(text);
    Store(Fields().LevelOf(parameter), chosen ? text : model::UnsetWordOf(parameter).toString());
  }
  after_->view.Clear();
  before_->view.Clear();
  dialog().FileName = QStringLiteral("1");
  files().ChangeFolder(installation().ApplicationFolder());
}

/// Which task this is: its place in the list, its reference number and its title.
void RiskEstimtn::ShowTask() {
  const QString task = QStringLiteral("Task %1 of %2\nReference number %3\n%4")
                           .arg(Task().AbsolutePosition())
                           .arg(Task().RecordCount())
                           .arg(Stored(u"RefNo"), Stored(u"FuntnTaskMachry"));
  constexpr int kLettersALine = 26;
  ui_->TaskLbl->setMinimumWidth(fontMetrics().averageCharWidth() * kLettersALine);
  ui_->TaskLbl->setToolTip(task);
  ui_->TaskLbl->setAccessibleName(task);
  CutTask();
}

/// Cuts the text of the task to the room of its corner.
void RiskEstimtn::CutTask() {
  QLabel* label = ui_->TaskLbl;
  const QString task = label->accessibleName();
  const QRect room = label->contentsRect();
  qsizetype length = task.size();
  QString shown = task;
  while (length > 0 &&
         !room.contains(label->fontMetrics().boundingRect(room, Qt::TextWordWrap, shown))) {
    shown = task.left(--length).trimmed() + u'…';
  }
  label->setText(shown);
}

bool RiskEstimtn::eventFilter(QObject* watched, QEvent* event) {
  if (watched == ui_->TaskLbl && event->type() == QEvent::Resize) CutTask();
  if (event->type() == QEvent::MouseButtonPress) PressOnResult(watched);
  return SessionForm::eventFilter(watched, event);
}

void RiskEstimtn::clsfrm_Click() {
  UnloadForm();
  Q_EMIT Done();
}

Recordset& RiskEstimtn::Task() const {
  return context().task.Tasks();
}

model::Stage RiskEstimtn::StageInHand() const {
  return ui_->RskBfrAftrChk->isChecked() ? Stage::kAfter : Stage::kBefore;
}

const model::StageFields& RiskEstimtn::Fields() const {
  return model::FieldsOf(StageInHand());
}

QString RiskEstimtn::Stored(QStringView field) const {
  return Task().Text(field.toString());
}

void RiskEstimtn::Store(QStringView field, const QVariant& value) {
  Task().Set(field.toString(), value);
}

QComboBox* RiskEstimtn::BoxOf(Parameter parameter) const {
  const std::array boxes{ui_->SevertyCbo, ui_->ExposureCbo, ui_->occurrenceCbo, ui_->avoidanceCbo};
  return boxes[model::IndexOf(parameter)];
}

QString RiskEstimtn::LevelText(Parameter parameter) const {
  return BoxOf(parameter)->currentText();
}

QCheckBox* RiskEstimtn::Chk(int number) const {
  const std::array<QCheckBox*, 5> boxes{ui_->Chk_1, ui_->Chk_2, ui_->Chk_3, ui_->Chk_4, ui_->Chk_5};
  return boxes[static_cast<std::size_t>(number - model::kFirstStatementBox)];
}

std::optional<model::Parameter> RiskEstimtn::ActiveParameter() const {
  for (const Parameter parameter : model::kParameters) {
    if (session().ActiveParameterBox == BoxOf(parameter)->objectName()) return parameter;
  }
  return std::nullopt;
}

}  // namespace kestrix
