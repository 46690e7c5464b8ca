#include "estimation/RiskEstimtn.h"

#include <QShortcut>
#include <algorithm>

#include "formkit/Controls.h"
#include "formkit/WrapCheckBox.h"
#include "store/Recordset.h"
#include "ui_RiskEstimtn.h"

namespace kestrix {

using model::kFirstStatementBox;
using model::kLastStatementBox;

void RiskEstimtn::ConnectStatements() {
  for (int number = kFirstStatementBox; number <= kLastStatementBox; ++number) {
    On(Chk(number), &QCheckBox::toggled, [this, number] { Chk_Click(number); });
    connect(new QShortcut(QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_0 + number)), this),
            &QShortcut::activated, this, [this, number] { TickByKey(number); });
  }
  for (const Parameter parameter : model::kParameters) {
    for (QLabel* label : ResultsOf(parameter)) label->installEventFilter(this);
  }
  On(ui_->RestartBtn, &QPushButton::clicked, &RiskEstimtn::RestartBtn_Click);
}

/// A box that is checked stands for its parameter; unchecking the others first clears the
/// parameter, since their change is a click as well, and what is stored behind that is the new
/// statement.
void RiskEstimtn::Chk_Click(int number) {
  if (Chk(number)->isChecked()) {
    for (int other = kFirstStatementBox; other <= kLastStatementBox; ++other) {
      if (other != number) Chk(other)->setChecked(false);
    }
    if (const std::optional<Parameter> parameter = ActiveParameter()) {
      Store(Fields().ScoreOf(*parameter), number);
      Store(Fields().StatementOf(*parameter), Chk(number)->text());
    }
  } else {
    ClearActiveStatement();
  }
  ShowStatementLabels();
  RefreshRiskDisplay();
}

void RiskEstimtn::ClearActiveStatement() {
  const std::optional<Parameter> parameter = ActiveParameter();
  if (!parameter) return;
  Store(Fields().StatementOf(*parameter), model::UnsetWordOf(*parameter).toString());
  Store(Fields().ScoreOf(*parameter), 0);
}

void RiskEstimtn::LoadStatements(Parameter parameter) {
  const model::StatementSet& statements = model::StatementsOf(parameter);
  for (int number = kFirstStatementBox; number <= kLastStatementBox; ++number) {
    const auto& statement = statements[static_cast<std::size_t>(number - kFirstStatementBox)];
    Chk(number)->setText(statement.text.toString());
    Chk(number)->setEnabled(statement.enabled);
    Chk(number)->setToolTip(statement.enabled ? QStringLiteral("Alt+%1").arg(number) : QString());
  }
  const qint64 score = Task().Number(Fields().ScoreOf(parameter).toString());
  if (score == 0) {
    for (int number = kFirstStatementBox; number <= kLastStatementBox; ++number) {
      Chk(number)->setChecked(false);
    }
  } else if (score >= kFirstStatementBox && score <= kLastStatementBox) {
    Chk(static_cast<int>(score))->setChecked(true);
  }
}

void RiskEstimtn::ShowStatementLabels() {
  constexpr std::array<QStringView, 4> kPrefixes{u"Severty :", u"Exposure :", u"Occurrence :",
                                                 u"Avoidance :"};
  for (const Parameter parameter : model::kParameters) {
    const auto [statement, score] = ResultsOf(parameter);
    statement->setText(kPrefixes[model::IndexOf(parameter)].toString() +
                       Stored(Fields().StatementOf(parameter)));
    score->setText(Stored(Fields().ScoreOf(parameter)));
  }
}

/// The labels with the statement and the score of a parameter.
std::array<QLabel*, 2> RiskEstimtn::ResultsOf(Parameter parameter) const {
  const std::array<std::array<QLabel*, 2>, 4> pairs{{{ui_->SerChkStd, ui_->SerScrStd},
                                                     {ui_->ExChkStdStd, ui_->ExScrStd},
                                                     {ui_->OcrChkStd, ui_->OCrScrStd},
                                                     {ui_->AvrChkStd, ui_->AvrScrStd}}};
  return pairs[model::IndexOf(parameter)];
}

void RiskEstimtn::MarkActiveParameter() {
  for (const Parameter parameter : model::kParameters) {
    for (QLabel* label : ResultsOf(parameter)) SetSystemBack(label);
  }
  if (const std::optional<Parameter> parameter = ActiveParameter()) {
    for (QLabel* label : ResultsOf(*parameter)) SetBackColour(label, colour::kPaleYellow);
  }
}

/// Clicks the statement of this place. The focus stays in the box of the level, so that a whole
/// estimation goes by keyboard.
void RiskEstimtn::TickByKey(int number) {
  ui_->StatementsArea->ensureWidgetVisible(Chk(number));
  Chk(number)->click();
}

/// A press on the result of a parameter brings its statements up, as far as the path has come.
void RiskEstimtn::PressOnResult(const QObject* pressed) {
  for (const Parameter parameter : model::kParameters) {
    const auto labels = ResultsOf(parameter);
    if (std::ranges::find(labels, pressed) == labels.end() || !BoxOf(parameter)->isEnabled()) {
      continue;
    }
    BoxOf(parameter)->setFocus(Qt::MouseFocusReason);
    Guarded([&] { TakeParameter(parameter); });
  }
}

void RiskEstimtn::RestartBtn_Click() {
  session().MsgAnswer = Ask(Icon::kInformation, title::kProgram,
                            QStringLiteral("Wish to clear all selections and restart."));
  if (session().MsgAnswer != Button::kYes) return;
  RestartStatements();
  Task().Update();
  ShowStatementLabels();
  RefreshRiskDisplay();
}

/// Clears the statements of the stage in hand, and the indexes of both stages: the levels and the
/// lit path stay until the severity is reset.
void RiskEstimtn::RestartStatements() {
  for (const Parameter parameter : model::kParameters) {
    Store(Fields().StatementOf(parameter), model::UnsetWordOf(parameter).toString());
  }
  for (const Parameter parameter : model::kParameters) Store(Fields().ScoreOf(parameter), 0);
  for (int number = kFirstStatementBox; number <= kLastStatementBox; ++number) {
    Chk(number)->setChecked(false);
  }
  Store(model::FieldsOf(Stage::kBefore).risk_index, 0);
  Store(model::FieldsOf(Stage::kAfter).risk_index, 0);
}

}  // namespace kestrix
