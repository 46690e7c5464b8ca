#include "estimation/drawing/RiskDrawing.h"

#include <QFontInfo>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "estimation/model/RiskMatrix.h"

namespace kestrix {

using model::MatrixCell;
using model::Stage;
using namespace risk_graph;

namespace {

constexpr std::array<QRgb, 2> kStageColours{0xFF8000, 0x00FF00};
constexpr QRgb kIndexLit = 0x80FFFF;
constexpr QRgb kIndexAtRest = 0xFFFFFF;
// In print without colours, the ground of a cell by its band.
struct BandGrey {
  QStringView band;
  QRgb grey;
};
constexpr std::array<BandGrey, 3> kBandGreys{{{model::kLowRiskText, 0xFFFFFF},
                                              {model::kMediumRiskText, 0xD8D8D8},
                                              {model::kHighRiskText, 0xA0A0A0}}};
constexpr QRgb kMarkerYellow = 0xFFFF00;
// On the required colours, which are the same in every theme, stands this ink; white on purple.
constexpr QRgb kDarkInk = 0x101418;

// The one word that is too long for a small marker.
constexpr QStringView kMediumWord = u"Medium";
constexpr QStringView kMediumShort = u"Med.";

// The letters of the picture beside a font of the usual size, 9 points, at the usual scale.
constexpr int kUsualFontPixels = 12;
constexpr int kTextPixels = 10;
constexpr int kIndexPixels = 12;
constexpr int kNarrowStretch = 88;
// A picture that is much larger than its texts need be doesn't shout.
constexpr qreal kGreatestTextScale = 1.6;
// How much wider, or higher, than it was drawn the picture may become.
constexpr qreal kMostStretch = 1.35;

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

const QRect& FrameOf(RiskDrawing::Part part) {
  return part == RiskDrawing::Part::kGraph ? kGraphFrame : kMatrixFrame;
}

struct Stroke {
  QPoint from;
  QPoint to;
  QColor colour;
};

}  // namespace

/// The steps of one painting, and what they share: the painter, the marks, the scale. It turns
/// twips into whole device pixels, so that straight lines stay crisp at every scale.
class RiskDrawing::Steps {
 public:
  Steps(QPainter& painter, const RiskDrawing& drawing, const RiskMarks& marks)
      : painter_(painter),
        drawing_(drawing),
        marks_(marks),
        scale_(std::min(drawing.scale_x_, drawing.scale_y_)),
        text_scale_(std::max(ScaleOf(drawing.look_.font), std::min(scale_, kGreatestTextScale))),
        ratio_(painter.device()->devicePixelRatioF()) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setLayoutDirection(Qt::LeftToRight);
  }

  void Run() const {
    PaintFrame();
    if (drawing_.part_ == Part::kGraph) {
      PaintGraph();
    } else {
      PaintMatrix();
    }
  }

 private:
  [[nodiscard]] const QColor& ink() const { return drawing_.look_.ink; }
  [[nodiscard]] const QColor& paper() const { return drawing_.look_.paper; }
  [[nodiscard]] QColor Shade(qreal share_of_ink) const { return Mix(paper(), ink(), share_of_ink); }

  /// A width of whole device pixels, at least one, that grows with the room.
  [[nodiscard]] qreal Width(qreal pixels) const {
    return std::max(1.0, std::round(pixels * scale_ * ratio_)) / ratio_;
  }
  [[nodiscard]] qreal AtRest() const { return Width(1); }
  [[nodiscard]] qreal Lit() const { return 3 * AtRest(); }
  [[nodiscard]] qreal Outline() const { return Lit() + 2 * Width(1); }

  [[nodiscard]] QRectF RectOf(const QRect& twips) const {
    const QRectF rect = drawing_.RectOf(twips);
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
    QFont font = drawing_.look_.font;
    font.setBold(bold);
    const int least = drawing_.look_.least_letters;
    const int wanted = std::max(least, static_cast<int>(pixels * text_scale_));
    for (int size = wanted; size > least; --size) {
      font.setPixelSize(size);
      const QRect needed = QFontMetrics(font, painter_.device())
                               .boundingRect(QRect(QPoint(), room.toSize()), flags, text);
      if (needed.width() <= room.width() && needed.height() <= room.height()) return font;
    }
    // Narrower letters are still as high as they must be.
    font.setPixelSize(least);
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

  /// A colour that means something beside its form; without colours it is left out.
  [[nodiscard]] QColor ColourOf(QRgb colour) const {
    return drawing_.look_.coloured ? QColor(colour) : QColor(Qt::white);
  }
  [[nodiscard]] QColor ColourOf(Stage stage) const {
    return drawing_.look_.coloured ? QColor(kStageColours[IndexOf(stage)]) : ink();
  }
  [[nodiscard]] QColor ColourOf(const MatrixCell& cell) const {
    if (drawing_.look_.coloured) return QColor(cell.colour);
    const auto grey = std::ranges::find(kBandGreys, cell.band, &BandGrey::band);
    return QColor(grey->grey);
  }

  /// Red is as dark as purple once it is grey.
  [[nodiscard]] QColor InkOn(const QColor& ground) const {
    constexpr int kDarkGrey = 100;
    const bool is_dark = ground == QColor(model::kCellPurple) ||
                         (drawing_.look_.printed && qGray(ground.rgb()) < kDarkGrey);
    return is_dark ? QColor(Qt::white) : QColor(kDarkInk);
  }

  void PaintFrame() const {
    Box(RectOf(FrameOf(drawing_.part_)), paper(), Shade(0.25), AtRest(), Width(5));
  }

  void PaintGraph() const {
    PaintColumns();
    PaintLeaders();
    PaintLinesAtRest();
    PaintLitPath();
    PaintNodes();
    PaintStart();
    PaintIndexLabels();
    PaintTexts();
  }

  void PaintColumns() const {
    bool tinted = true;
    for (const QRect& column : kColumns) {
      if (tinted) {
        painter_.fillRect(RectOf(column), Shade(0.04));
      }
      tinted = !tinted;
    }
  }

  // The lines end before their labels; a leader takes each end to its label.
  void PaintLeaders() const {
    for (const IndexLabel& label : kIndexLabels) {
      Line(EndOfIndex(label.index), LeaderEnd(label), Shade(0.25), AtRest());
    }
  }

  void PaintLinesAtRest() const {
    for (const GraphLine& line : kLines) {
      if (line.name == kStartLine || marks_.LitStageOf(line.name)) continue;
      Line(PaintedEnd(line.from), PaintedEnd(line.to), ink(), AtRest());
    }
  }

  // All outlines first, so that none cuts through a line that it meets.
  void PaintLitPath() const {
    const QList<Stroke> strokes = LitStrokes();
    for (const Stroke& stroke : strokes) {
      Line(stroke.from, stroke.to, OutlineOf(stroke.colour), Outline());
    }
    for (const Stroke& stroke : strokes) {
      Line(stroke.from, stroke.to, stroke.colour, Lit());
    }
  }

  [[nodiscard]] QList<Stroke> LitStrokes() const {
    QList<Stroke> strokes;
    for (const GraphLine& line : kLines) {
      if (const std::optional<Stage> stage = marks_.LitStageOf(line.name)) {
        strokes.append({PaintedEnd(line.from), PaintedEnd(line.to), ColourOf(*stage)});
      }
    }
    for (const IndexLabel& label : kIndexLabels) {
      if (marks_.IsIndexLabelLit(label.name)) strokes.append(LitLeaderOf(label));
    }
    return strokes;
  }

  // The leader has the colour of the line that it goes on from.
  [[nodiscard]] Stroke LitLeaderOf(const IndexLabel& label) const {
    Stroke leader{EndOfIndex(label.index), LeaderEnd(label), ColourOf(marks_.stage)};
    for (const GraphLine& line : kLines) {
      const std::optional<Stage> stage = marks_.LitStageOf(line.name);
      if (stage && EndsAtIndex(line, label.index)) leader.colour = ColourOf(*stage);
    }
    return leader;
  }

  void PaintNodes() const {
    for (const QPoint node : kNodes) {
      std::optional<Stage> lit;
      for (const GraphLine& line : kLines) {
        if (const auto stage = marks_.LitStageOf(line.name); stage && Touches(line, node)) {
          lit = stage;
        }
      }
      if (lit) {
        Dot(node, Width(4), ColourOf(*lit), OutlineOf(ColourOf(*lit)));
      } else {
        Dot(node, Width(1.5), ink(), ink());
      }
    }
  }

  void PaintStart() const {
    const GraphLine& start = *LineNamed(kStartLine);
    const QColor colour = ColourOf(marks_.stage);
    const QColor outline = OutlineOf(colour);
    const QPoint shaft_end(kArrow[0].x() + kNodeReach, start.to.y());
    Line(start.from, shaft_end, outline, Outline());
    QPolygonF arrow;
    for (const QPoint corner : kArrow) arrow.append(drawing_.PointOf(corner));
    painter_.setPen(QPen(outline, Width(1), Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter_.setBrush(colour);
    painter_.drawPolygon(arrow);
    Line(start.from, shaft_end, colour, Lit());
  }

  void PaintIndexLabels() const {
    for (const IndexLabel& label : kIndexLabels) {
      const bool lit = marks_.IsIndexLabelLit(label.name);
      const QRectF rect = RectOf(label.place);
      if (lit) {
        const qreal edge = Width(1.5);
        Box(rect, ink(), ink(), edge, Width(3));
        Box(Inside(rect, 2 * edge), ColourOf(kIndexLit), QColor(kDarkInk), edge, Width(2));
      } else {
        Box(rect, QColor(kIndexAtRest), Mix(QColor(kIndexAtRest), QColor(kDarkInk), 0.5), AtRest(),
            Width(3));
      }
      Text(rect, QString::number(label.index), Qt::AlignCenter, QColor(kDarkInk), kIndexPixels,
           lit);
    }
  }

  void PaintTexts() const {
    for (const GraphText& text : kTexts) {
      const QRectF rect = RectOf(text.place);
      const bool lit = !text.line.isEmpty() && marks_.LitStageOf(text.line).has_value();
      const QString words = text.text.toString();
      switch (text.kind) {
        case TextKind::kBranch:
          Text(rect, words, Qt::AlignLeft | Qt::AlignBottom, ink(), kTextPixels, lit);
          break;
        case TextKind::kLevel:
          Box(rect, paper(), lit ? ink() : Shade(0.25), Width(lit ? 1.5 : 1), Width(3));
          Text(rect, words, Qt::AlignCenter, ink(), kTextPixels, lit);
          break;
      }
    }
  }

  void PaintMatrix() const {
    PaintCells();
    PaintHeads();
    PaintMarker();
  }

  void PaintCells() const {
    for (const CellPlace& cell : kCells) {
      const MatrixCell& row = ModelCellOf(cell);
      const QRectF rect = RectOf(cell.place);
      const QColor colour = ColourOf(row);
      painter_.fillRect(rect, colour);
      Frame(rect, drawing_.look_.coloured ? paper() : Shade(0.5), AtRest());
      if (&cell == marks_.cell) continue;
      const qreal margin = Width(2);
      const qreal right = 3 * margin + rect.width() * drawing_.look_.cell_room;
      Text(rect.adjusted(3 * margin, margin, -right, -margin), row.band.toString(),
           Qt::AlignCenter | Qt::TextWordWrap, InkOn(colour), kTextPixels, true);
    }
  }

  void PaintHeads() const {
    const CellPlace* marked = marks_.cell;
    const auto head = [&](const MatrixHead& row, bool of_marked) {
      const QRectF rect = RectOf(row.place);
      painter_.fillRect(Inside(rect, 2 * AtRest()), Shade(of_marked ? 0.25 : 0.08));
      Text(rect, row.text.trimmed().toString(), Qt::AlignCenter, ink(), kTextPixels, of_marked);
    };
    for (const MatrixHead& row : kColumnHeads) {
      head(row, marked != nullptr && marked->place.left() == row.place.left());
    }
    for (const MatrixHead& row : kRowHeads) {
      head(row, marked != nullptr && marked->place.top() == row.place.top());
    }
    Text(RectOf(kHeadCorner), QStringLiteral("Se / Cl"), Qt::AlignCenter, ink(), kTextPixels,
         false);
  }

  // The marker lies in the middle of its cell, so the word of the band moves onto it, shortened
  // where it must be.
  void PaintMarker() const {
    const CellPlace* marked = marks_.cell;
    if (marked == nullptr) return;
    const QRectF cell = RectOf(marked->place);
    const qreal thick = Width(2.5);
    Frame(cell, ink(), thick);
    Frame(Inside(cell, 2 * thick), paper(), Width(1));

    const QRectF marker = RectOf(MarkerPlaceOn(*marked));
    painter_.setPen(QPen(QColor(kDarkInk), Width(1)));
    painter_.setBrush(ColourOf(kMarkerYellow));
    painter_.drawEllipse(Inside(marker, Width(1)));
    const qreal round_off = marker.width() / 10;
    const QRectF room = marker.adjusted(round_off, 0, -round_off, 0);
    Text(room, WordFor(ModelCellOf(*marked).band, room.width()), Qt::AlignCenter, QColor(kDarkInk),
         kTextPixels, false);
  }

  [[nodiscard]] qreal OnGrid(qreal place) const { return std::round(place * ratio_) / ratio_; }

  // A line of an odd number of device pixels is crisp along the middle of one, an even one along
  // the edge between two.
  [[nodiscard]] QPointF Centred(QPoint twips, qreal width) const {
    const bool odd = (std::lround(width * ratio_) % 2) != 0;
    const auto snap = [&](qreal place) {
      return odd ? (std::floor(place * ratio_) + 0.5) / ratio_ : OnGrid(place);
    };
    const QPointF place = drawing_.PointOf(twips);
    return {snap(place.x()), snap(place.y())};
  }

  QPainter& painter_;
  const RiskDrawing& drawing_;
  const RiskMarks& marks_;
  qreal scale_;
  qreal text_scale_;
  qreal ratio_;
};

RiskDrawing::RiskDrawing(Part part, const QRectF& room, const RiskLook& look)
    : part_(part), room_(room), look_(look) {
  const QSizeF usual = UsualSize(part);
  scale_x_ = room.width() / usual.width();
  scale_y_ = room.height() / usual.height();
  const qreal most = std::min(scale_x_, scale_y_) * kMostStretch;
  scale_x_ = std::min(scale_x_, most);
  scale_y_ = std::min(scale_y_, most);
}

void RiskDrawing::Paint(QPainter& painter, const RiskMarks& marks) const {
  Steps(painter, *this, marks).Run();
}

QPointF RiskDrawing::PointOf(QPointF twips) const {
  const QPointF place = (twips - QRectF(FrameOf(part_)).center()) / kTwipsPerUnit;
  return room_.center() + QPointF(place.x() * scale_x_, place.y() * scale_y_);
}

QRectF RiskDrawing::RectOf(const QRectF& twips) const {
  return {PointOf(twips.topLeft()), PointOf(twips.bottomRight())};
}

QSizeF RiskDrawing::UsualSize(Part part) {
  return QSizeF(FrameOf(part).size()) / kTwipsPerUnit;
}

qreal RiskDrawing::ScaleOf(const QFont& font) {
  return std::max(1.0, 1.0 * QFontInfo(font).pixelSize() / kUsualFontPixels);
}

const MatrixCell& ModelCellOf(const CellPlace& place) {
  return model::kMatrixCells[static_cast<std::size_t>(&place - kCells.data())];
}

}  // namespace kestrix
