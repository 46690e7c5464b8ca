// The estimation form on a task with any texts in the fields of its two paths: it opens, draws the
// path of each stage and stores what its rules give, whatever it finds, and a person goes on from
// there.
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QPushButton>

#include "LevelTexts.h"
#include "estimation/RiskEstimtn.h"
#include "estimation/drawing/RiskGraphGeometry.h"
#include "holds/Quiet.h"
#include "store/RecordSources.h"
#include "support/FormTest.h"

namespace kestrix::fuzz {
namespace {

using model::Parameter;
using model::Stage;

constexpr int kStudy = 1;
constexpr int kMostActions = 60;

/// One study with one task, which every input writes anew, and what the form needs besides.
class Desk {
 public:
  Desk() : installation_(Folder()) {
    QImage picture(2, 2, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    const bool laid = QDir().mkpath(QFileInfo(installation_.NoPicture()).path()) &&
                      QDir().mkpath(QFileInfo(installation_.Study(kStudy)).path()) &&
                      picture.save(installation_.NoPicture(), "PNG") &&
                      QFile::copy(QStringLiteral(KESTRIX_PRISTINE_FOLDER "/risk_esmatn.mdb"),
                                  installation_.Study(kStudy));
    Hold(laid, "an installation can be laid out", installation_.Study(kStudy));
    TestInstallation::Exec(installation_.Study(kStudy),
                           QStringLiteral("INSERT INTO Risk_records(Project_Number) VALUES('P')"));
    session_.ActiveStudyNo = kStudy;
    task_.source.SetDatabaseName(installation_.Study(kStudy));
    task_.source.SetRecordSource(sources::RiskSql(QStringLiteral("P")));
    task_.source.Refresh();
  }

  [[nodiscard]] Context& context() { return context_; }
  [[nodiscard]] Recordset& Task() { return task_.source.Recordset(); }
  [[nodiscard]] QString Stored(QStringView field) { return Task().Text(field.toString()); }
  void Write(QStringView field, const QVariant& value) { Task().Set(field.toString(), value); }
  /// The messages that came since the last call.
  [[nodiscard]] QList<Message> TakeMessages() { return std::exchange(desk_.messages.shown, {}); }

 private:
  FocusEvents focus_;
  ActiveForms forms_{focus_};
  Installation installation_;
  holds::QuietDesk desk_;
  FormKit kit_{desk_.platform(), focus_, forms_};
  SessionState session_;
  FakeFrame frame_;
  CommonDialog dialog_{desk_.platform()};
  FakeProject project_;
  FakeTask task_;
  Context context_{kit_, session_, installation_, frame_, dialog_, project_, task_};
};

/// A number of the row: mostly one that belongs there.
QVariant TakeStoredNumber(Input& input) {
  const int choice = input.Upto(15);
  if (choice <= 6) return choice;
  if (choice <= 12) return input.Upto(5);
  return input.Line();
}

void WriteTask(Desk& desk, Input& input) {
  for (const Stage stage : {Stage::kBefore, Stage::kAfter}) {
    const model::StageFields& fields = model::FieldsOf(stage);
    for (const Parameter parameter : model::kParameters) {
      desk.Write(fields.LevelOf(parameter), TakeLevelOf(parameter, input).left(255));
    }
    desk.Write(fields.risk_index, TakeStoredNumber(input));
    for (const Parameter parameter : model::kParameters) {
      desk.Write(fields.ScoreOf(parameter), TakeStoredNumber(input));
      const QString statement = input.Upto(3) == 0 ? input.Line().left(255) : QString();
      desk.Write(fields.StatementOf(parameter), statement);
    }
  }
  desk.Task().Update();
}

QString Shown(const RiskEstimtn& form, const char* name) {
  return form.findChild<QComboBox*>(QString::fromLatin1(name))->currentText();
}

/// `restarted` tells that the statements were cleared since the form came up, which takes the
/// stored index of both stages and leaves the path lit.
void CheckGraph(Desk& desk, const RiskEstimtn& form, Stage stage, bool restarted = false) {
  const auto* graph = form.findChild<QWidget*>(QStringLiteral("RiskGraph"));
  const QStringList lines = graph->property("litLines").toStringList();
  for (const QString& name : lines) {
    const risk_graph::GraphLine* line = risk_graph::LineNamed(name);
    Hold(line != nullptr && line->groups != risk_graph::kNoGroup, "a lit line is one of the graph",
         name);
  }
  const QStringList labels = graph->property("litIndexLabels").toStringList();
  Hold(labels.size() <= 1, "a path ends once", labels.join(u' '));
  const auto index = model::RiskIndexOf(Shown(form, "SevertyCbo"), Shown(form, "ExposureCbo"),
                                        Shown(form, "occurrenceCbo"), Shown(form, "avoidanceCbo"));
  Note(QStringLiteral("%1 lines, index %2").arg(lines.join(u' ')).arg(index.value_or(-1)));
  if (!labels.isEmpty()) {
    const risk_graph::IndexLabel* label = risk_graph::IndexLabelNamed(labels.first());
    Hold(label != nullptr, "a lit label is one of the graph", labels.first());
    Hold(index == label->index, "the lit label is the end of the path that is shown",
         labels.first());
    const QString stored = desk.Stored(model::FieldsOf(stage).risk_index);
    const bool taken = restarted && stored == QStringLiteral("0");
    Hold(taken || stored == QString::number(label->index), "the index of the lit label is stored",
         labels.first());
  }
  const QString cell =
      form.findChild<QWidget*>(QStringLiteral("RiskMatrix"))->property("markedCell").toString();
  Hold(cell.isEmpty() || risk_graph::CellNamed(cell) != nullptr, "the marker lies on a cell", cell);
}

void CheckMessages(Desk& desk) {
  const QList<Message> messages = desk.TakeMessages();
  for (const Message& message : messages) {
    Note(message.text);
    Hold(!message.text.isEmpty(), "a message says something", message.title);
  }
}

/// What is stored of a stage's path, with its index.
QStringList PathOf(Desk& desk, Stage stage) {
  QStringList path;
  for (const QStringView field : model::FieldsOf(stage).level) path += desk.Stored(field);
  return path << desk.Stored(model::FieldsOf(stage).risk_index);
}

/// Picks an item of a level box, as far as there is one to pick.
void Pick(const RiskEstimtn& form, const char* name, int item) {
  auto* box = form.findChild<QComboBox*>(QString::fromLatin1(name));
  if (!box->isEnabled() || box->count() == 0) return;
  box->setCurrentIndex(item % box->count());
  Q_EMIT box->activated(box->currentIndex());
}

/// One thing that a person does on the form. True when the statements were cleared by it.
bool Act(const RiskEstimtn& form, Input& input) {
  static constexpr std::array kBoxes{"SevertyCbo", "ExposureCbo", "occurrenceCbo", "avoidanceCbo"};
  const int what = input.Upto(7);
  if (what < 4) {
    Pick(form, kBoxes[static_cast<std::size_t>(what)], input.Upto(3));
  } else if (what == 4) {
    form.findChild<QPushButton*>(QStringLiteral("RskBfrAftrChk"))->toggle();
  } else if (what == 5) {
    form.findChild<QPushButton*>(QStringLiteral("RestartBtn"))->click();
  } else {
    form.findChild<QCheckBox*>(QStringLiteral("Chk_%1").arg(1 + input.Upto(4)))->click();
  }
  return what == 5;
}

void Estimate(Desk& desk, Input& input) {
  const QStringList after = PathOf(desk, Stage::kAfter);
  RiskEstimtn form(desk.context());
  form.LoadForm();
  CheckGraph(desk, form, Stage::kBefore);
  Hold(PathOf(desk, Stage::kAfter) == after, "opening leaves the other stage alone",
       after.join(u'|'));
  auto* stage = form.findChild<QPushButton*>(QStringLiteral("RskBfrAftrChk"));
  stage->setChecked(true);
  CheckGraph(desk, form, Stage::kAfter);
  const QStringList stored = PathOf(desk, Stage::kAfter);
  stage->setChecked(false);
  CheckGraph(desk, form, Stage::kBefore);
  stage->setChecked(true);
  Hold(PathOf(desk, Stage::kAfter) == stored, "a path that comes back again is stored the same",
       stored.join(u'|'));
  CheckMessages(desk);
  bool restarted = false;
  for (int action = 0; action < kMostActions && !input.IsUsedUp(); ++action) {
    restarted = Act(form, input) || restarted;
    CheckGraph(desk, form, stage->isChecked() ? Stage::kAfter : Stage::kBefore, restarted);
  }
  CheckMessages(desk);
  form.UnloadForm();
  CheckMessages(desk);
}

}  // namespace
}  // namespace kestrix::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace kestrix;
  fuzz::WithinApplication();
  static auto* desk = new fuzz::Desk;
  fuzz::Input input(data, size);
  fuzz::WriteTask(*desk, input);
  fuzz::Estimate(*desk, input);
  return 0;
}
