#include "estimation/RiskEstimtn.h"
#include "formkit/ClickLabel.h"
#include "formkit/Controls.h"
#include "store/Recordset.h"
#include "ui_RiskEstimtn.h"

namespace kestrix {
namespace {

using model::Stage;

/// How a stage shows itself. The tip names the stage that a click leads to.
struct StageLook {
  const char16_t* toggle;
  const char16_t* results;
  QRgb back;
  const char16_t* tip;
};

constexpr std::array kLooks{
    StageLook{u"   Risk estimation before recommendations",
              u"Data selected for Risk estimation before recommendations", 0xFFFFC080,
              u"Click to estimation risk after recommendations"},
    StageLook{u"   Risk estimation after recommendations",
              u"Data selected for Risk estimation after recommendations", 0xFF80FF80,
              u"Click to estimation risk before recommendations"}};

const StageLook& LookOf(Stage stage) {
  return kLooks[model::IndexOf(stage)];
}

}  // namespace

void RiskEstimtn::ConnectStages() {
  On(ui_->RskBfrAftrChk, &QPushButton::toggled, &RiskEstimtn::SwitchStage);
  On(ui_->RsltDsplRiskLbl, &ClickLabel::Click, &RiskEstimtn::RsltDsplRiskLbl_Click);
  On(ui_->clsfrm, &QPushButton::clicked, &RiskEstimtn::clsfrm_Click);
  const StageLook& look = LookOf(Stage::kBefore);
  ui_->RsltDsplRiskLbl->setText(QString::fromUtf16(look.results));
  SetBackColour(ui_->RskBfrAftrChk, look.back);
  SetBackColour(ui_->RsltDsplRiskLbl, look.back);
}

/// Puts the stored path of the stage in hand back by the handlers of a person's choices, so that
/// nothing but those handlers knows how a path is drawn and stored.
void RiskEstimtn::ReplayStage(Replay when) {
  if (LevelText(Parameter::kSeverity).isEmpty())
    ShowLevel(Parameter::kSeverity, model::kSeverityReset.toString());
  const QString severity = Stored(Fields().LevelOf(Parameter::kSeverity));
  if (severity == model::kSeverityReset) {
    // At the load nothing is drawn or opened yet, and there is nothing to put back.
    if (when == Replay::kOnSwitch) ResetChain();
  } else {
    ShowLevel(Parameter::kSeverity, severity);
    SevertyCbo_Click();
  }
  struct Step {
    Parameter parameter;
    void (RiskEstimtn::*click)();
  };
  for (const Step& step : {Step{Parameter::kExposure, &RiskEstimtn::ExposureCbo_Click},
                           Step{Parameter::kOccurrence, &RiskEstimtn::occurrenceCbo_Click},
                           Step{Parameter::kAvoidance, &RiskEstimtn::avoidanceCbo_Click}}) {
    const QString level = Stored(Fields().LevelOf(step.parameter));
    if (level == model::kUnsetLevel) continue;
    ShowLevel(step.parameter, level);
    (this->*step.click)();
  }
}

void RiskEstimtn::ResetChain() {
  graph_.PutOutFrom(Parameter::kSeverity);
  ShowLevel(Parameter::kSeverity, model::kSeverityReset.toString());
  CloseFrom(Parameter::kExposure);
}

void RiskEstimtn::SwitchStage() {
  const StageLook& look = LookOf(StageInHand());
  ShowToolTips();
  ui_->RskBfrAftrChk->setText(QString::fromUtf16(look.toggle));
  ui_->RsltDsplRiskLbl->setText(QString::fromUtf16(look.results));
  SetBackColour(ui_->RskBfrAftrChk, look.back);
  SetBackColour(ui_->RsltDsplRiskLbl, look.back);
  graph_.SetStage(StageInHand());
  ReplayStage(Replay::kOnSwitch);
  ShowStatementLabels();
  RefreshRiskDisplay();
  TakeParameter(Parameter::kSeverity);
}

/// The caption is a second switch. The toggle's own change switches as well, so the stage is
/// replayed twice, with the same outcome.
void RiskEstimtn::RsltDsplRiskLbl_Click() {
  ui_->RskBfrAftrChk->toggle();
  SwitchStage();
}

void RiskEstimtn::ShowToolTips() {
  const QString tip = QString::fromUtf16(LookOf(StageInHand()).tip);
  ui_->RskBfrAftrChk->setToolTip(tip);
  ui_->RsltDsplRiskLbl->setToolTip(tip);
}

}  // namespace kestrix
