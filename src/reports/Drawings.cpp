#include "reports/Drawings.h"

#include <QPainter>
#include <algorithm>
#include <utility>

#include "paper/Style.h"
#include "reports/Compose.h"

namespace kestrix::reports {
namespace {

using namespace paper;
using records::Band;

// In millimetres.
constexpr QSizeF kGraphSize(85, 41);
constexpr QSizeF kMatrixSize(85, 28);
constexpr double kDrawnPoints = 7;
constexpr double kCountRoom = 0.3;  ///< of a cell of the matrix, for the number of its tasks
constexpr int kPointsOfAnInch = 72;

/// Equal names for what is painted alike.
QString NameOf(RiskDrawing::Part part, const RiskMarks& marks, const std::vector<int>& counts) {
  QString name =
      part == RiskDrawing::Part::kGraph ? QStringLiteral("graph") : QStringLiteral("matrix");
  const auto add = [&name](int value) { name += u' ' + QString::number(value); };
  add(static_cast<int>(marks.stage));
  for (const auto& line : marks.lines) add(line ? static_cast<int>(*line) : -1);
  for (const bool label : marks.labels) add(label ? 1 : 0);
  if (marks.cell != nullptr) name += u' ' + marks.cell->name.toString();
  for (const int count : counts) add(count);
  return name;
}

void PaintRisk(QPainter& painter, const QRectF& area, RiskDrawing::Part part,
               const RiskMarks& marks, const std::vector<int>& counts) {
  // The drawing takes a unit of the painter for about a point.
  constexpr double kPointsAcross = 240;
  const double unit = area.width() / kPointsAcross;
  painter.translate(area.topLeft());
  painter.scale(unit, unit);
  RiskLook look;
  look.font = FontOf(kDrawnPoints, kPointsOfAnInch);
  look.least_letters = 5;
  look.printed = true;
  if (!counts.empty()) look.cell_room = kCountRoom;
  const RiskDrawing drawing(part, QRectF(QPointF(), area.size() / unit), look);
  drawing.Paint(painter, marks);
  if (counts.empty()) return;
  painter.setFont(FontOf(kDrawnPoints + 1, kPointsOfAnInch, true));
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts[i] == 0) continue;
    const QRectF cell = drawing.RectOf(risk_graph::kCells[i].place);
    // At the cell's edge, beside the word for its band.
    const QString count = QString::number(counts[i]);
    const double width = std::max(kCountRoom * cell.width(), 4.0 + 4 * double(count.size()));
    const QRectF plate(cell.right() - width, cell.center().y() - 5, width - 1, 10);
    painter.setPen(Qt::black);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(plate, 3, 3);
    painter.drawText(plate, Qt::AlignCenter, count);
  }
}

void PaintBars(QPainter& painter, const QRectF& area, const std::array<int, Counts::kBins>& bands) {
  const int most = std::max(1, *std::max_element(bands.begin(), bands.end()));
  const double step = area.height() / static_cast<double>(bands.size());
  QFont font = painter.font();
  font.setPixelSize(std::max(1, static_cast<int>(step * 0.42)));
  painter.setFont(font);
  for (std::size_t bin = 0; bin < bands.size(); ++bin) {
    const QRectF line(area.left(), area.top() + static_cast<double>(bin) * step, area.width(),
                      step);
    const Band band = kBins[bin];
    painter.setPen(QColor(0x1c, 0x1c, 0x1c));
    painter.drawText(line.adjusted(0, 0, -line.width() * 0.68, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     BandText(band));
    const QRectF bar(line.left() + line.width() * 0.34, line.top() + step * 0.2,
                     line.width() * 0.54 * bands[bin] / most, step * 0.6);
    painter.fillRect(bar, ColourOf(band));
    painter.drawRect(bar);
    painter.drawText(QRectF(bar.right() + step * 0.2, line.top(), line.width() * 0.12, step),
                     Qt::AlignVCenter | Qt::AlignLeft, QString::number(bands[bin]));
  }
}

}  // namespace

QColor ColourOf(Band band) {
  static constexpr std::array<QRgb, Counts::kBins> kColours{0xFF9AA3AF, 0xFF80FF80, 0xFF80FF80,
                                                            0xFFFFC080, 0xFFFF0000};
  return QColor::fromRgb(kColours[BinOf(band)]);
}

Block Drawn(RiskDrawing::Part part, RiskMarks marks, const QString& told,
            const std::vector<int>& counts) {
  if (part == RiskDrawing::Part::kGraph) {
    marks.cell = nullptr;
  } else {
    marks = {.cell = marks.cell};
  }
  return {Drawing{[part, marks, counts](QPainter& painter, const QRectF& area) {
                    PaintRisk(painter, area, part, marks, counts);
                  },
                  part == RiskDrawing::Part::kGraph ? kGraphSize : kMatrixSize, told,
                  NameOf(part, marks, counts)}};
}

std::vector<Block> CountMatrix(const QString& title, const Counts& counts) {
  return {{Paragraph{Plain(title), Paragraph::Style::kSmall, true}},
          Drawn(RiskDrawing::Part::kMatrix, {}, title, {counts.cells.begin(), counts.cells.end()})};
}

std::vector<Block> BandBars(const QString& title, const std::array<int, Counts::kBins>& bands) {
  return {
      {Paragraph{Plain(title), Paragraph::Style::kSmall, true}},
      {Drawing{[bands](QPainter& painter, const QRectF& area) { PaintBars(painter, area, bands); },
               {85, 28},
               title,
               {}}}};
}

}  // namespace kestrix::reports
