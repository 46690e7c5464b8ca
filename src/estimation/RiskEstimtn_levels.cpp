#include "estimation/PickOnlyCombo.h"
#include "estimation/RiskEstimtn.h"
#include "formkit/Controls.h"
#include "store/Recordset.h"
#include "ui_RiskEstimtn.h"

namespace kestrix {
namespace {

using model::Parameter;

/// In the order of `Parameter`.
constexpr std::array<QStringView, 4> kStatementCaptions{
    u"Hazard description : Severity", u"Hazard description : Frequency of exposure",
    u"Hazard description : Probability of occurrence hazard event",
    u"Hazard description : Possibility of avoidance"};

}  // namespace

void RiskEstimtn::ConnectLevels() {
  On(ui_->SevertyCbo, &QComboBox::activated, &RiskEstimtn::SevertyCbo_Click);
  On(ui_->ExposureCbo, &QComboBox::activated, &RiskEstimtn::ExposureCbo_Click);
  On(ui_->occurrenceCbo, &QComboBox::activated, &RiskEstimtn::occurrenceCbo_Click);
  On(ui_->avoidanceCbo, &QComboBox::activated, &RiskEstimtn::avoidanceCbo_Click);
  for (const Parameter parameter : model::kParameters) {
    OnGotFocus(BoxOf(parameter), [this, parameter] { TakeParameter(parameter); });
    new PickOnlyCombo(BoxOf(parameter));
  }
}

void RiskEstimtn::SevertyCbo_Click() {
  graph_.PutOutFrom(Parameter::kSeverity);
  CloseFrom(Parameter::kExposure);

  const QString text = LevelText(Parameter::kSeverity);
  Store(Fields().LevelOf(Parameter::kSeverity), text);
  if (text == model::kSeverityReset) {
    ResetStage();
  } else if (const model::SeverityRule* rule = model::SeverityRuleFor(text)) {
    graph_.Light(rule->lines);
    if (rule->index) {
      StoreUnsetLevelsBehindSeverity();
      EndPath(*rule->index, rule->index_label);
    } else {
      Offer(Parameter::kExposure, model::ExposureItemsOf(text));
    }
  }
  if (text == model::kSeveritySlight) {
    // One exposure only: it needs no choice, and occurrence is open at once.
    ShowLevel(Parameter::kExposure, model::kExposureAny.toString());
    Offer(Parameter::kOccurrence, model::kOccurrenceItems);
  }
  RefreshRiskDisplay();
}

/// The stage is as no one had ever estimated it, its index included; its statements stay.
void RiskEstimtn::ResetStage() {
  StoreUnsetLevelsBehindSeverity();
  const bool before = StageInHand() == Stage::kBefore;
  SetBackColour(before ? ui_->RiskShape1 : ui_->RiskShape2, model::kLightGreen);
  (before ? ui_->RskTxtLbl : ui_->RskTxtLbl2)->setText(model::kNoRiskText.toString());
  (before ? ui_->RiskIdxBRsltDsp : ui_->RiskIdxARsltDsp)->setText(QStringLiteral("0"));
  Store(Fields().risk_index, 0);
}

void RiskEstimtn::EndPath(int index, QStringView index_label) {
  graph_.LightIndexLabel(index_label);
  Store(Fields().risk_index, index);
}

void RiskEstimtn::ExposureCbo_Click() {
  graph_.PutOutFrom(Parameter::kExposure);
  const QString text = LevelText(Parameter::kExposure);
  if (const model::ExposureRule* rule =
          model::ExposureRuleFor(text, LevelText(Parameter::kSeverity))) {
    graph_.Light(rule->lines);
    Offer(Parameter::kOccurrence, model::kOccurrenceItems);
    CloseFrom(Parameter::kAvoidance);
  }
  Store(Fields().LevelOf(Parameter::kExposure), text);
  RefreshRiskDisplay();
}

void RiskEstimtn::occurrenceCbo_Click() {
  graph_.PutOutFrom(Parameter::kOccurrence);
  const QString text = LevelText(Parameter::kOccurrence);
  if (const model::OccurrenceRule* rule =
          model::OccurrenceRuleFor(text, LevelText(Parameter::kExposure))) {
    graph_.Light(rule->lines);
    if (rule->index) {
      EndPath(*rule->index, rule->index_label);
      CloseFrom(Parameter::kAvoidance);
    } else {
      Offer(Parameter::kAvoidance, model::kAvoidanceItems);
    }
  }
  Store(Fields().LevelOf(Parameter::kOccurrence), text);
  RefreshRiskDisplay();
}

void RiskEstimtn::avoidanceCbo_Click() {
  graph_.PutOutFrom(Parameter::kAvoidance);
  const QString text = LevelText(Parameter::kAvoidance);
  if (const model::AvoidanceRule* rule = model::AvoidanceRuleFor(
          text, LevelText(Parameter::kOccurrence), LevelText(Parameter::kExposure))) {
    graph_.Light(rule->line);
    EndPath(rule->index, rule->index_label);
  }
  Store(Fields().LevelOf(Parameter::kAvoidance), text);
  RefreshRiskDisplay();
}

void RiskEstimtn::TakeParameter(Parameter parameter) {
  session().ActiveParameterBox = BoxOf(parameter)->objectName();
  MarkActiveParameter();
  LoadStatements(parameter);
  ui_->HzrdDscptnLbl->setText(kStatementCaptions[model::IndexOf(parameter)].toString());
}

/// Opens a box with these items and no text.
void RiskEstimtn::Offer(Parameter parameter, std::span<const QStringView> items) {
  QComboBox* box = BoxOf(parameter);
  box->setEnabled(true);
  QStringList texts;
  for (const QStringView item : items) texts += item.toString();
  FillCombo(box, texts);
}

/// Empties and closes this box and all behind it; their stored fields stay.
void RiskEstimtn::CloseFrom(Parameter first) {
  for (const Parameter parameter : model::kParameters) {
    if (parameter < first) continue;
    FillCombo(BoxOf(parameter), {});
    BoxOf(parameter)->setEnabled(false);
  }
}

void RiskEstimtn::StoreUnsetLevelsBehindSeverity() {
  for (const Parameter parameter :
       {Parameter::kExposure, Parameter::kOccurrence, Parameter::kAvoidance})
    Store(Fields().LevelOf(parameter), model::UnsetWordOf(parameter).toString());
}

void RiskEstimtn::ShowLevel(Parameter parameter, const QString& text) {
  PickOnlyCombo::Show(BoxOf(parameter), text);
}

}  // namespace kestrix
