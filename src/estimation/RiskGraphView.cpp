#include "estimation/RiskGraphView.h"

#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "estimation/model/RiskMatrix.h"
#include "formkit/Controls.h"
#include "platform/Measures.h"

namespace kestrix {

using model::MatrixCell;
using model::Stage;
using namespace risk_graph;

namespace {

constexpr std::array<QRgb, 2> kStageColours{0xFF8000, 0x00FF00};
constexpr QRgb kIndexLit = 0x80FFFF;
constexpr QRgb kIndexAtRest = 0xFFFFFF;
constexpr QRgb kMarkerYellow = 0xFFFF00;
// On the required colours, which are the same in every theme, stands this ink or white.
constexpr QRgb kDarkInk = 0x101418;

// The one word that is too long for a small marker.
constexpr QStringView kMediumWord = u"Medium";
constexpr QStringView kMediumShort = u"Med.";

// The letters of the picture beside a font of the usual size, 9 points, at the usual scale.
constexpr int kTextPixels = 10;
constexpr int kIndexPixels = 12;
// Below this no text is readable on a common screen, so it is never made smaller.
constexpr int kLeastTextPixels = 9;
constexpr int kNarrowStretch = 88;
// A picture that is much larger than its texts need be doesn't shout.
constexpr qreal kGreatestTextScale = 1.6;
// How much wider, or higher, than it was drawn the picture may become.
constexpr qreal kMostStretch = 1.35;

QColor ColourOf(Stage stage) {
  return QColor(kStageColours[IndexOf(stage)]);
}

// The bright lit colours would drown on a light ground without a dark edge.
QColor OutlineOf(const QColor& lit) {
  return lit.darker(300);
}

// From the end of a path to its label, in the row of the index.
QPoint LeaderEnd(const IndexLabel& label) {
  return {label.place.left(), EndOfIndex(label.index).y()};
}

QColor Mix(const QColor& one, const QColor& other, qreal share_of_other) {
  const auto channel = [share_of_other](float a, float b) {
    return static_cast<float>(a + (b - a) * share_of_other);
  };
  return QColor::fromRgbF(channel(one.redF(), other.redF()), channel(one.greenF(), other.greenF()),
                          channel(one.blueF(), other.blueF()));
}

// How bright a colour is to the eye, by the sRGB curve: 0 to 1.
qreal Luminance(const QColor& colour) {
  const auto linear = [](qreal channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

QColor InkOn(const QColor& ground) {
  const QColor dark(kDarkInk);
  const qreal on_ground = Luminance(ground) + 0.05;
  const bool dark_reads_better = on_ground / (Luminance(dark) + 0.05) >= (1.0 + 0.05) / on_ground;
  return dark_reads_better ? dark : QColor(Qt::white);
}

const MatrixCell& ModelCellOf(const CellPlace& place) {
  return model::kMatrixCells[static_cast<std::size_t>(&place - kCells.data())];
}

QStringList SetTextsOf(std::initializer_list<QStringView> texts) {
  QStringList set;
  for (const QStringView text : texts) {
    if (!model::IsUnsetLevel(text) && text != model::kUnsetSeverity) set.append(text.toString());
  }
  return set;
}

}  // namespace

/// What the painting steps share for one repaint: the painter, the scale, and the theme's colours.
/// It turns twips into whole device pixels, so that straight lines stay crisp at every scale.
class RiskGraphView::Brush {
 public:
  Brush(QPainter& painter, const RiskGraphView& view)
      : painter_(painter),
        view_(view),
        scale_(view.ScalesInForce().least()),
        text_scale_(std::max(FontScale(&view), std::min(scale_, kGreatestTextScale))),
        ratio_(painter.device()->devicePixelRatioF()),
        ink_(view.palette().color(QPalette::WindowText)),
        paper_(view.palette().color(QPalette::Base)) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setLayoutDirection(Qt::LeftToRight);
  }

  [[nodiscard]] QPainter& painter() const { return painter_; }
  [[nodiscard]] const QColor& ink() const { return ink_; }
  [[nodiscard]] const QColor& paper() const { return paper_; }
  [[nodiscard]] QColor Shade(qreal share_of_ink) const { return Mix(paper_, ink_, share_of_ink); }

  /// A width of whole device pixels, at least one, that grows with the room.
  [[nodiscard]] qreal Width(qreal pixels) const {
    return std::max(1.0, std::round(pixels * scale_ * ratio_)) / ratio_;
  }
  [[nodiscard]] qreal AtRest() const { return Width(1); }
  [[nodiscard]] qreal Lit() const { return 3 * AtRest(); }
  [[nodiscard]] qreal Outline() const { return Lit() + 2 * Width(1); }

  [[nodiscard]] qreal Length(qreal twips) const { return twips / kTwipsPerPixel * scale_; }

  [[nodiscard]] QRectF RectOf(const QRect& twips) const {
    const QRectF rect = view_.WidgetRectOf(twips);
    return {QPointF(OnGrid(rect.left()), OnGrid(rect.top())),
            QPointF(OnGrid(rect.right()), OnGrid(rect.bottom()))};
  }

  /// The rectangle in which a frame of this width lies wholly inside the given one.
  [[nodiscard]] static QRectF Inside(const QRectF& rect, qreal width) {
    return rect.adjusted(width / 2, width / 2, -width / 2, -width / 2);
  }

  void Line(QPoint from, QPoint to, const QColor& colour, qreal width) const {
    painter_.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
    painter_.drawLine(Centred(from, width), Centred(to, width));
  }

  void Dot(QPoint centre, qreal radius, const QColor& fill, const QColor& frame) const {
    painter_.setPen(QPen(frame, AtRest()));
    painter_.setBrush(fill);
    painter_.drawEllipse(Centred(centre, AtRest()), radius, radius);
  }

  void Box(const QRectF& rect, const QColor& fill, const QColor& frame, qreal width,
           qreal radius) const {
    painter_.setPen(QPen(frame, width));
    painter_.setBrush(fill);
    painter_.drawRoundedRect(Inside(rect, width), radius, radius);
  }

  /// A frame with sharp corners, wholly inside the rectangle.
  void Frame(const QRectF& rect, const QColor& colour, qreal width) const {
    painter_.setPen(QPen(colour, width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRect(Inside(rect, width));
  }

  /// The largest font, up to `pixels` scaled, in which the text fits; never below the readable.
  [[nodiscard]] QFont FontFor(const QString& text, const QSizeF& room, int flags, int pixels,
                              bool bold) const {
    QFont font = view_.font();
    font.setBold(bold);
    const int wanted = std::max(kLeastTextPixels, static_cast<int>(pixels * text_scale_));
    for (int size = wanted; size > kLeastTextPixels; --size) {
      font.setPixelSize(size);
      const QRect needed = QFontMetrics(font, painter_.device())
                               .boundingRect(QRect(QPoint(), room.toSize()), flags, text);
      if (needed.width() <= room.width() && needed.height() <= room.height()) return font;
    }
    // Narrower letters are still as high as they must be.
    font.setPixelSize(kLeastTextPixels);
    if (QFontMetricsF(font, painter_.device()).horizontalAdvance(text) > room.width() &&
        (flags & Qt::TextWordWrap) == 0) {
      font.setStretch(kNarrowStretch);
    }
    return font;
  }

  /// The word of a band, or its short form where the word is wider than the room.
  [[nodiscard]] QString WordFor(QStringView band, qreal room) const {
    const QString word = band.toString().section(u' ', 0, 0);
    const QFont font = FontFor(word, {room, room}, Qt::AlignCenter, kTextPixels, false);
    const bool fits = QFontMetricsF(font, painter_.device()).horizontalAdvance(word) <= room;
    return fits || word != kMediumWord ? word : kMediumShort.toString();
  }

  void Text(const QRectF& rect, const QString& text, int flags, const QColor& colour, int pixels,
            bool bold) const {
    painter_.setFont(FontFor(text, rect.size(), flags, pixels, bold));
    painter_.setPen(colour);
    painter_.drawText(rect, flags | Qt::TextDontClip, text);
  }

 private:
  [[nodiscard]] qreal OnGrid(qreal place) const { return std::round(place * ratio_) / ratio_; }

  // A line of an odd number of device pixels is crisp along the middle of one, an even one along
  // the edge between two.
  [[nodiscard]] QPointF Centred(QPoint twips, qreal width) const {
    const bool odd = (std::lround(width * ratio_) % 2) != 0;
    const auto snap = [&](qreal place) {
      return odd ? (std::floor(place * ratio_) + 0.5) / ratio_ : OnGrid(place);
    };
    const QPointF place = view_.WidgetPointOf(twips);
    return {snap(place.x()), snap(place.y())};
  }

  QPainter& painter_;
  const RiskGraphView& view_;
  qreal scale_;
  qreal text_scale_;
  qreal ratio_;
  QColor ink_;
  QColor paper_;
};

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
  connect(&state, &RiskGraphState::LitLinesChanged, this, repaint_later);
  connect(&state, &RiskGraphState::LitIndexLabelsChanged, this, repaint_later);
  connect(&state, &RiskGraphState::MarkedCellChanged, this, repaint_later);
  connect(&state, &RiskGraphState::StageChanged, this, repaint_later);
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
  return state_ == nullptr ? QStringList() : state_->litLines();
}

QStringList RiskGraphView::litIndexLabels() const {
  return state_ == nullptr ? QStringList() : state_->litIndexLabels();
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

QRect RiskGraphView::Frame() const {
  return part_ == Part::kGraph ? kGraphFrame : kMatrixFrame;
}

RiskGraphView::Scales RiskGraphView::ScalesInForce() const {
  const QSizeF frame = QSizeF(Frame().size()) / kTwipsPerPixel;
  const Scales fill{width() / frame.width(), height() / frame.height()};
  const qreal most = fill.least() * kMostStretch;
  return {std::min(fill.x, most), std::min(fill.y, most)};
}

QPointF RiskGraphView::WidgetPointOf(QPointF twips) const {
  const QRectF frame(Frame());
  const Scales scales = ScalesInForce();
  const QPointF place = (twips - frame.center()) / kTwipsPerPixel;
  return {width() / 2.0 + place.x() * scales.x, height() / 2.0 + place.y() * scales.y};
}

QRectF RiskGraphView::WidgetRectOf(const QRectF& twips) const {
  return {WidgetPointOf(twips.topLeft()), WidgetPointOf(twips.bottomRight())};
}

QSize RiskGraphView::minimumSizeHint() const {
  return (part_ == Part::kGraph ? QSize(430, 188) : QSize(330, 190)) * FontScale(this);
}

QSize RiskGraphView::sizeHint() const {
  return Frame().size() / kTwipsPerPixel * 5 / 4;
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
  Brush brush(painter, *this);
  PaintFrame(brush);
  if (part_ == Part::kGraph) {
    PaintGraph(brush);
  } else {
    PaintMatrix(brush);
  }
}

void RiskGraphView::PaintFrame(Brush& brush) const {
  brush.Box(brush.RectOf(Frame()), brush.paper(), brush.Shade(0.25), brush.AtRest(),
            brush.Width(5));
}

void RiskGraphView::PaintGraph(Brush& brush) const {
  PaintColumns(brush);
  PaintLeaders(brush);
  PaintLinesAtRest(brush);
  PaintLitPath(brush);
  PaintNodes(brush);
  PaintStart(brush);
  PaintIndexLabels(brush);
  PaintTexts(brush);
}

void RiskGraphView::PaintColumns(Brush& brush) const {
  bool tinted = true;
  for (const QRect& column : kColumns) {
    if (tinted) {
      brush.painter().fillRect(brush.RectOf(column), brush.Shade(0.04));
    }
    tinted = !tinted;
  }
}

// The lines end before their labels; a leader takes each end to its label.
void RiskGraphView::PaintLeaders(Brush& brush) const {
  for (const IndexLabel& label : kIndexLabels) {
    brush.Line(EndOfIndex(label.index), LeaderEnd(label), brush.Shade(0.25), brush.AtRest());
  }
}

void RiskGraphView::PaintLinesAtRest(Brush& brush) const {
  for (const GraphLine& line : kLines) {
    if (line.name == kStartLine || state_->LitStageOf(line.name)) continue;
    brush.Line(PaintedEnd(line.from), PaintedEnd(line.to), brush.ink(), brush.AtRest());
  }
}

// All outlines first, so that none cuts through a line that it meets.
void RiskGraphView::PaintLitPath(Brush& brush) const {
  const QList<Stroke> strokes = LitStrokes();
  for (const Stroke& stroke : strokes) {
    brush.Line(stroke.from, stroke.to, OutlineOf(stroke.colour), brush.Outline());
  }
  for (const Stroke& stroke : strokes) {
    brush.Line(stroke.from, stroke.to, stroke.colour, brush.Lit());
  }
}

QList<RiskGraphView::Stroke> RiskGraphView::LitStrokes() const {
  QList<Stroke> strokes;
  for (const GraphLine& line : kLines) {
    if (const std::optional<Stage> stage = state_->LitStageOf(line.name)) {
      strokes.append({PaintedEnd(line.from), PaintedEnd(line.to), ColourOf(*stage)});
    }
  }
  for (const IndexLabel& label : kIndexLabels) {
    if (state_->IsIndexLabelLit(label.name)) strokes.append(LitLeaderOf(label));
  }
  return strokes;
}

// The leader has the colour of the line that it goes on from.
RiskGraphView::Stroke RiskGraphView::LitLeaderOf(const IndexLabel& label) const {
  Stroke leader{EndOfIndex(label.index), LeaderEnd(label), ColourOf(state_->stage())};
  for (const GraphLine& line : kLines) {
    const std::optional<Stage> stage = state_->LitStageOf(line.name);
    if (stage && EndsAtIndex(line, label.index)) leader.colour = ColourOf(*stage);
  }
  return leader;
}

void RiskGraphView::PaintNodes(Brush& brush) const {
  for (const QPoint node : kNodes) {
    std::optional<Stage> lit;
    for (const GraphLine& line : kLines) {
      if (const auto stage = state_->LitStageOf(line.name); stage && Touches(line, node)) {
        lit = stage;
      }
    }
    if (lit) {
      brush.Dot(node, brush.Width(4), ColourOf(*lit), OutlineOf(ColourOf(*lit)));
    } else {
      brush.Dot(node, brush.Width(1.5), brush.ink(), brush.ink());
    }
  }
}

void RiskGraphView::PaintStart(Brush& brush) const {
  const GraphLine& start = *LineNamed(kStartLine);
  const QColor colour = ColourOf(state_->stage());
  const QColor outline = OutlineOf(colour);
  const QPoint shaft_end(kArrow[0].x() + kNodeReach, start.to.y());
  brush.Line(start.from, shaft_end, outline, brush.Outline());
  QPolygonF arrow;
  for (const QPoint corner : kArrow) arrow.append(WidgetPointOf(corner));
  brush.painter().setPen(QPen(outline, brush.Width(1), Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
  brush.painter().setBrush(colour);
  brush.painter().drawPolygon(arrow);
  brush.Line(start.from, shaft_end, colour, brush.Lit());
}

void RiskGraphView::PaintIndexLabels(Brush& brush) const {
  for (const IndexLabel& label : kIndexLabels) {
    const bool lit = state_->IsIndexLabelLit(label.name);
    const QRectF rect = brush.RectOf(label.place);
    if (lit) {
      const qreal edge = brush.Width(1.5);
      brush.Box(rect, brush.ink(), brush.ink(), edge, brush.Width(3));
      brush.Box(Brush::Inside(rect, 2 * edge), QColor(kIndexLit), QColor(kDarkInk), edge,
                brush.Width(2));
    } else {
      brush.Box(rect, QColor(kIndexAtRest), Mix(QColor(kIndexAtRest), QColor(kDarkInk), 0.5),
                brush.AtRest(), brush.Width(3));
    }
    brush.Text(rect, QString::number(label.index), Qt::AlignCenter, QColor(kDarkInk), kIndexPixels,
               lit);
  }
}

void RiskGraphView::PaintTexts(Brush& brush) const {
  for (const GraphText& text : kTexts) {
    const QRectF rect = brush.RectOf(text.place);
    const bool lit = !text.line.isEmpty() && state_->LitStageOf(text.line).has_value();
    const QString words = text.text.toString();
    switch (text.kind) {
      case TextKind::kBranch:
        brush.Text(rect, words, Qt::AlignLeft | Qt::AlignBottom, brush.ink(), kTextPixels, lit);
        break;
      case TextKind::kLevel:
        brush.Box(rect, brush.paper(), lit ? brush.ink() : brush.Shade(0.25),
                  brush.Width(lit ? 1.5 : 1), brush.Width(3));
        brush.Text(rect, words, Qt::AlignCenter, brush.ink(), kTextPixels, lit);
        break;
    }
  }
}

void RiskGraphView::PaintMatrix(Brush& brush) const {
  PaintCells(brush);
  PaintHeads(brush);
  PaintMarker(brush);
}

void RiskGraphView::PaintCells(Brush& brush) const {
  const QString marked = state_->markedCell();
  for (const CellPlace& cell : kCells) {
    const MatrixCell& row = ModelCellOf(cell);
    const QRectF rect = brush.RectOf(cell.place);
    const QColor colour(row.colour);
    brush.painter().fillRect(rect, colour);
    brush.Frame(rect, brush.paper(), brush.AtRest());
    if (cell.name == marked) continue;
    const qreal margin = brush.Width(2);
    brush.Text(rect.adjusted(3 * margin, margin, -3 * margin, -margin), row.band.toString(),
               Qt::AlignCenter | Qt::TextWordWrap, InkOn(colour), kTextPixels, true);
  }
}

void RiskGraphView::PaintHeads(Brush& brush) const {
  const CellPlace* marked = CellNamed(state_->markedCell());
  const auto head = [&](const MatrixHead& row, bool of_marked) {
    const QRectF rect = brush.RectOf(row.place);
    brush.painter().fillRect(Brush::Inside(rect, 2 * brush.AtRest()),
                             brush.Shade(of_marked ? 0.25 : 0.08));
    brush.Text(rect, row.text.trimmed().toString(), Qt::AlignCenter, brush.ink(), kTextPixels,
               of_marked);
  };
  for (const MatrixHead& row : kColumnHeads) {
    head(row, marked != nullptr && marked->place.left() == row.place.left());
  }
  for (const MatrixHead& row : kRowHeads) {
    head(row, marked != nullptr && marked->place.top() == row.place.top());
  }
  brush.Text(brush.RectOf(kHeadCorner), QStringLiteral("Se / Cl"), Qt::AlignCenter, brush.ink(),
             kTextPixels, false);
}

// The marker lies in the middle of its cell, so the word of the band moves onto it, shortened where
// it must be.
void RiskGraphView::PaintMarker(Brush& brush) const {
  const CellPlace* marked = CellNamed(state_->markedCell());
  if (marked == nullptr) return;
  const QRectF cell = brush.RectOf(marked->place);
  const qreal thick = brush.Width(2.5);
  brush.Frame(cell, brush.ink(), thick);
  brush.Frame(Brush::Inside(cell, 2 * thick), brush.paper(), brush.Width(1));

  const QRectF marker = brush.RectOf(MarkerPlaceOn(*marked));
  QPainter& painter = brush.painter();
  painter.setPen(QPen(QColor(kDarkInk), brush.Width(1)));
  painter.setBrush(QColor(kMarkerYellow));
  painter.drawEllipse(Brush::Inside(marker, brush.Width(1)));
  const qreal round_off = marker.width() / 10;
  const QRectF room = marker.adjusted(round_off, 0, -round_off, 0);
  brush.Text(room, brush.WordFor(ModelCellOf(*marked).band, room.width()), Qt::AlignCenter,
             QColor(kDarkInk), kTextPixels, false);
}

}  // namespace kestrix
