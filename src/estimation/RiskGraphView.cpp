#include "estimation/RiskGraphView.h"

#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>

#include "estimation/model/RiskMatrix.h"

namespace kestrix {

using model::MatrixCell;
using namespace risk_graph;

namespace {

QStringList SetTextsOf(std::initializer_list<QStringView> texts) {
  QStringList set;
  for (const QStringView text : texts) {
    if (!model::IsUnsetLevel(text) && text != model::kUnsetSeverity) set.append(text.toString());
  }
  return set;
}

}  // namespace

RiskGraphView::RiskGraphView(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void RiskGraphView::Show(const RiskGraphState& state, Part part) {
  if (state_ != nullptr) disconnect(state_, nullptr, this, nullptr);
  state_ = &state;
  part_ = part;
  if (accessibleName().isEmpty()) {
    setAccessibleName(part == Part::kGraph ? QStringLiteral("Risk graph")
                                           : QStringLiteral("Risk matrix"));
  }
  const auto repaint_later = [this] { update(); };
  for (const auto changed :
       {&RiskGraphState::LitLinesChanged, &RiskGraphState::StageChanged,
        &RiskGraphState::LitIndexLabelsChanged, &RiskGraphState::MarkedCellChanged})
    connect(&state, changed, this, repaint_later);
  connect(&state, &QObject::destroyed, this, repaint_later);
  connect(&state, &RiskGraphState::LitLinesChanged, this, &RiskGraphView::LitLinesChanged);
  connect(&state, &RiskGraphState::LitIndexLabelsChanged, this,
          &RiskGraphView::LitIndexLabelsChanged);
  connect(&state, &RiskGraphState::MarkedCellChanged, this, &RiskGraphView::MarkedCellChanged);
  setMinimumSize(minimumSizeHint());
  update();
}

// The picture grows with its letters, which follow the font.
void RiskGraphView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) setMinimumSize(minimumSizeHint());
  QWidget::changeEvent(event);
}

QStringList RiskGraphView::litLines() const {
  return state_ == nullptr ? QStringList() : state_->marks().LitLines();
}

QStringList RiskGraphView::litIndexLabels() const {
  return state_ == nullptr ? QStringList() : state_->marks().LitIndexLabels();
}

QString RiskGraphView::markedCell() const {
  return state_ == nullptr ? QString() : state_->markedCell();
}

void RiskGraphView::SetPathTexts(QStringView severity, QStringView exposure, QStringView occurrence,
                                 QStringView avoidance, std::optional<int> index) {
  const QStringList path = SetTextsOf({severity, exposure, occurrence, avoidance});
  QString words = path.isEmpty() ? QStringLiteral("Nothing chosen") : path.join(u"; ");
  if (index) words += QStringLiteral(": risk index %1").arg(*index);
  Describe(words);
}

void RiskGraphView::SetMatrixTexts(int severity, int class_score, QStringView band) {
  Describe(QStringLiteral("Class %1, severity %2: %3").arg(class_score).arg(severity).arg(band));
}

// A new description is told to assistive tools by Qt; one that stays must not be read out again.
void RiskGraphView::Describe(const QString& words) {
  if (words != accessibleDescription()) setAccessibleDescription(words);
}

RiskDrawing RiskGraphView::Drawing() const {
  return {part_, rect(),
          RiskLook{.font = font(),
                   .ink = palette().color(QPalette::WindowText),
                   .paper = palette().color(QPalette::Base)}};
}

QPointF RiskGraphView::WidgetPointOf(QPointF twips) const {
  return Drawing().PointOf(twips);
}

QRectF RiskGraphView::WidgetRectOf(const QRectF& twips) const {
  return Drawing().RectOf(twips);
}

QSize RiskGraphView::minimumSizeHint() const {
  return (part_ == Part::kGraph ? QSize(430, 188) : QSize(316, 172)) * RiskDrawing::ScaleOf(font());
}

QSize RiskGraphView::sizeHint() const {
  return (RiskDrawing::UsualSize(part_) * 5 / 4).toSize();
}

bool RiskGraphView::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  if (!ShowTip(*static_cast<QHelpEvent*>(event))) {
    QToolTip::hideText();
    event->ignore();
  }
  return true;
}

bool RiskGraphView::ShowTip(const QHelpEvent& event) {
  const std::optional<Tip> tip = TipAt(event.pos());
  if (!tip) return false;
  QToolTip::showText(event.globalPos(), tip->text, this, tip->place);
  return true;
}

std::optional<RiskGraphView::Tip> RiskGraphView::TipAt(QPoint place) const {
  if (part_ == Part::kGraph) {
    for (const GraphText& text : kTexts) {
      const QRect rect = WidgetRectOf(text.place).toAlignedRect();
      if (!text.tip.isEmpty() && rect.contains(place)) return Tip{text.tip.toString(), rect};
    }
    return std::nullopt;
  }
  // From the last cell back, as the later one of two that overlap lies on top.
  for (auto cell = kCells.rbegin(); cell != kCells.rend(); ++cell) {
    const QRect rect = WidgetRectOf(cell->place).toAlignedRect();
    if (!rect.contains(place)) continue;
    const MatrixCell& row = ModelCellOf(*cell);
    return Tip{QStringLiteral("Severity %1, class %2 to %3: %4")
                   .arg(row.severity)
                   .arg(row.least_class)
                   .arg(row.greatest_class)
                   .arg(row.band),
               rect};
  }
  return std::nullopt;
}

void RiskGraphView::paintEvent(QPaintEvent* /*event*/) {
  if (state_ == nullptr) return;
  QPainter painter(this);
  Drawing().Paint(painter, state_->marks());
}

}  // namespace kestrix
