#include "estimation/RiskEstimtn.h"
#include "formkit/Controls.h"
#include "store/Recordset.h"
#include "ui_RiskEstimtn.h"

namespace kestrix {
namespace {

/// What a field or a score label shows, as a number.
qint16 WholeOf(const QString& text) {
  if (const auto number = model::WholePartOf(text)) return *number;
  throw Failure(failure::kTypeMismatch,
                QStringLiteral("\"%1\" stands where a number is expected.").arg(text));
}

qint16 ClassOf(const QLabel* exposure, const QLabel* occurrence, const QLabel* avoidance) {
  const auto sum = model::ClassOf(WholeOf(exposure->text()), WholeOf(occurrence->text()),
                                  WholeOf(avoidance->text()));
  if (!sum)
    throw Failure(failure::kOverflow, QStringLiteral("The sum of the scores is too large."));
  return *sum;
}

}  // namespace

/// Recomputes every result from the stored row and the score labels, in the order that counts:
/// where two steps write one control, the later one stands.
void RiskEstimtn::RefreshRiskDisplay() {
  SessionState& s = session();
  s.RiskIndexBefore = WholeOf(Stored(model::FieldsOf(Stage::kBefore).risk_index));
  s.RiskIndexAfter = WholeOf(Stored(model::FieldsOf(Stage::kAfter).risk_index));
  ui_->RiskIdxBRsltDsp->setText(QString::number(s.RiskIndexBefore));
  ui_->RiskIdxARsltDsp->setText(QString::number(s.RiskIndexAfter));

  if (s.RiskIndexBefore == 0) ShowIndexBand(0, ui_->RiskShape1, ui_->RiskShape1, ui_->RskTxtLbl);
  ui_->HasRiskRdsLbl->setText(model::Verdict(s.RiskIndexBefore, s.RiskIndexAfter).toString());

  // A before index of 0 paints the after shape here; the after band repaints it right behind.
  ShowIndexBand(s.RiskIndexBefore, ui_->RiskShape1, ui_->RiskShape2, ui_->RskTxtLbl);
  ShowIndexBand(s.RiskIndexAfter, ui_->RiskShape2, ui_->RiskShape2, ui_->RskTxtLbl2);
  ShowMatrix();
  DescribePath();
}

void RiskEstimtn::ShowIndexBand(int index, QFrame* shape, QFrame* shape_of_zero, QLabel* label) {
  const std::optional<model::IndexBand> band = model::BandOfIndex(index);
  if (!band) return;
  SetBackColour(index == 0 ? shape_of_zero : shape, band->colour);
  label->setText(band->text.toString());
}

void RiskEstimtn::ShowMatrix() {
  SessionState& s = session();
  s.SeverityBefore = WholeOf(ui_->SerScrStd->text());
  s.ClassBefore = ClassOf(ui_->ExScrStd, ui_->OCrScrStd, ui_->AvrScrStd);
  ui_->HzrdScrLbl->setText(QStringLiteral("Class scored (Cl.) : ") +
                           QString::number(s.ClassBefore));
  ui_->svertyScorLbl->setText(QStringLiteral("Se. :") + QString::number(s.SeverityBefore));

  const model::MatrixResult result = model::CellOf(s.SeverityBefore, s.ClassBefore);
  if (result.kind == model::MatrixResult::Kind::kUnchanged) return;
  SetBackColour(ui_->RbiMatxShape, result.colour);
  ui_->RBIMatrixLbl->setText(result.band.toString());
  if (result.cell != nullptr) {
    graph_.MarkCell(result.cell->name);
  } else {
    graph_.HideMarker();
  }
  ui_->RiskMatrix->SetMatrixTexts(s.SeverityBefore, s.ClassBefore, result.band);
}

/// Says in words what the graph shows: the path of the boxes, with the index where it has come to
/// its end.
void RiskEstimtn::DescribePath() {
  const QString severity = LevelText(Parameter::kSeverity);
  const QString exposure = LevelText(Parameter::kExposure);
  const QString occurrence = LevelText(Parameter::kOccurrence);
  const QString avoidance = LevelText(Parameter::kAvoidance);
  ui_->RiskGraph->SetPathTexts(severity, exposure, occurrence, avoidance,
                               model::RiskIndexOf(severity, exposure, occurrence, avoidance));
}

}  // namespace kestrix
