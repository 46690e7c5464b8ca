#include "evaluation/RiskSummary.h"

#include <algorithm>

#include "estimation/model/RiskModel.h"
#include "evaluation/TaskFields.h"
#include "formkit/Controls.h"
#include "formkit/Form.h"
#include "shell/SessionState.h"
#include "store/Recordset.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {
namespace {

using model::Parameter;
using model::Stage;
using model::StageFields;

const QString kNotEstimated = QStringLiteral("Not estimated yet");
constexpr QRgb kOpaque = 0xFF000000;

qint16 WholeOf(const Recordset& task, QStringView field) {
  const QString text = task.Text(field.toString());
  if (const auto number = model::WholePartOf(text)) return *number;
  throw Failure(failure::kTypeMismatch,
                QStringLiteral("%1 holds \"%2\" in place of a number.").arg(field, text));
}

qint16 IndexOf(const Recordset& task, Stage stage) {
  return WholeOf(task, model::FieldsOf(stage).risk_index);
}

qint16 SeverityOf(const Recordset& task, Stage stage) {
  return WholeOf(task, model::FieldsOf(stage).ScoreOf(Parameter::kSeverity));
}

qint16 ClassOf(const Recordset& task, Stage stage) {
  const StageFields& fields = model::FieldsOf(stage);
  const auto sum = model::ClassOf(WholeOf(task, fields.ScoreOf(Parameter::kExposure)),
                                  WholeOf(task, fields.ScoreOf(Parameter::kOccurrence)),
                                  WholeOf(task, fields.ScoreOf(Parameter::kAvoidance)));
  if (!sum)
    throw Failure(failure::kOverflow, QStringLiteral("The sum of the scores is too large."));
  return *sum;
}

void Paint(QLabel* label, model::Rgb colour) {
  SetBackColour(label, kOpaque | colour);
}

QString NoRisk(int number) {
  return model::CaptionOf(number, {u" (No Risk)", model::kGreen});
}

void ShowClass(QLabel* label, int severity, int class_score) {
  const auto band = model::ClassBandOf(severity, class_score);
  if (!band) return;
  label->setText(model::CaptionOf(class_score, *band));
  Paint(label, band->colour);
}

}  // namespace

void RiskSummary::Show(const Recordset& task) {
  ReadIndexes(task);
  ShowIndexes();
  session_.SeverityBefore = SeverityOf(task, Stage::kBefore);
  session_.SeverityAfter = SeverityOf(task, Stage::kAfter);
  session_.ClassBefore = ClassOf(task, Stage::kBefore);
  session_.ClassAfter = ClassOf(task, Stage::kAfter);
  ShowClass(ui_.ClassScorLBL, session_.SeverityBefore, session_.ClassBefore);
  ShowClass(ui_.ClassScorLBLA, session_.SeverityAfter, session_.ClassAfter);
  ShowHints(task);
}

void RiskSummary::ReadIndexes(const Recordset& task) {
  session_.RiskIndexBefore = IndexOf(task, Stage::kBefore);
  session_.RiskIndexAfter = IndexOf(task, Stage::kAfter);
}

void RiskSummary::ShowIndexes() {
  const int before = session_.RiskIndexBefore;
  const int after = session_.RiskIndexAfter;
  // Each label gets its text once, after all rules: one that stays costs no repaint.
  QString before_text = QString::number(before);
  // "No Risk" stays only beside an index after that has no band.
  QString after_text = before == 0 ? NoRisk(before) : QString::number(after);
  ShowVerdict(model::Verdict(before, after).toString());
  if (const auto band = model::IndexLabelOf(before)) {
    before_text = model::CaptionOf(before, *band);
    Paint(ui_.RIBRtxt, band->colour);
  }
  if (const auto band = model::IndexLabelOf(after)) {
    after_text = model::CaptionOf(after, *band);
    Paint(ui_.RIARtxt, band->colour);
  }
  ui_.RIBRtxt->setText(before_text);
  ui_.RIARtxt->setText(after_text);
}

/// Why a label reads "No Risk" though nobody has judged the risk.
void RiskSummary::ShowHints(const Recordset& task) {
  struct StageLabels {
    Stage stage;
    QLabel* index;
    QLabel* class_score;
  };
  for (const auto& [stage, index, class_score] :
       {StageLabels{Stage::kBefore, ui_.RIBRtxt, ui_.ClassScorLBL},
        StageLabels{Stage::kAfter, ui_.RIARtxt, ui_.ClassScorLBLA}}) {
    const StageFields& fields = model::FieldsOf(stage);
    const QString level = task.Text(fields.LevelOf(Parameter::kSeverity).toString());
    const auto unset = [&](const QLabel* label) {
      return level == model::kSeverityReset && label->text() == NoRisk(0);
    };
    const bool missing =
        std::any_of(fields.score.begin(), fields.score.end(),
                    [&task](QStringView score) { return WholeOf(task, score) == 0; });
    index->setToolTip(unset(index) ? kNotEstimated : QString());
    class_score->setToolTip(unset(class_score) ? kNotEstimated
                            : missing          ? QStringLiteral("A statement is missing")
                                               : QString());
  }
}

/// The label beside the box asks the question; the sentence in the box answers it.
void RiskSummary::ShowVerdict(const QString& verdict) {
  ui_.RskRdsdtnY_N->setText(verdict);
  ui_.RskRdsdtnY_N->setAccessibleDescription(verdict);
}

void RiskSummary::SyncReducedCheck(const Recordset& task) {
  PassOver([&] {
    ReadIndexes(task);
    ui_.RskRdsdtnY_N->setChecked(
        model::IsReduced(session_.RiskIndexBefore, session_.RiskIndexAfter));
  });
}

void RiskSummary::Clear() {
  for (QLabel* label : {ui_.RIBRtxt, ui_.RIARtxt}) {
    label->setText(QStringLiteral("0"));
    label->setToolTip(QString());
  }
}

QString RiskSummary::TipOf(const Recordset& tasks, int position) {
  const auto risk = [&](int field) {
    const QString index = tasks.ShownText(position, field);
    const auto number = model::WholePartOf(index);
    const auto band = number ? model::IndexLabelOf(*number) : std::nullopt;
    return band ? model::CaptionOf(*number, *band) : index;
  };
  // Marked up, so that a long title is broken into lines.
  return QStringLiteral("<p>%1</p><p>Before recommendations: %2<br>After recommendations: %3</p>")
      .arg(tasks.ShownText(position, task_field::kTitle).toHtmlEscaped(),
           risk(task_field::kRiskIndex).toHtmlEscaped(),
           risk(task_field::kRiskIndexAfter).toHtmlEscaped());
}

}  // namespace kestrix
