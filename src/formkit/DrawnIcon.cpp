#include "formkit/DrawnIcon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <array>
#include <span>

#include "formkit/PaintedIcon.h"

namespace kestrix {
namespace {

constexpr double kGrid = 24;  ///< the drawings are 24 by 24
constexpr double kLineWidth = 1.7;
constexpr float kFilling = 0.15F;  ///< opacity of the colour within closed lines

struct Line {
  std::span<const QPointF> points;
  bool is_closed;  ///< from the last point to the first, and filled
};

constexpr std::array<QPointF, 6> kFolderBack{{{3, 19}, {3, 5}, {9, 5}, {11, 7}, {19, 7}, {19, 10}}};
constexpr std::array<QPointF, 4> kFolderFront{{{3, 19}, {7, 10}, {21, 10}, {17.5, 19}}};
constexpr std::array kOpenFolder{Line{kFolderBack, false}, Line{kFolderFront, true}};

constexpr std::array<QPointF, 6> kFolderEdge{{{3, 19}, {3, 5}, {9, 5}, {11, 7}, {21, 7}, {21, 19}}};
constexpr std::array<QPointF, 2> kPlusAcross{{{9, 13}, {15, 13}}};
constexpr std::array<QPointF, 2> kPlusDown{{{12, 10}, {12, 16}}};
constexpr std::array kFolder{Line{kFolderEdge, true}};
constexpr std::array kNewFolder{Line{kFolderEdge, true}, Line{kPlusAcross, false},
                                Line{kPlusDown, false}};

constexpr std::array<QPointF, 5> kDiskEdge{{{4, 4}, {17, 4}, {20, 7}, {20, 20}, {4, 20}}};
constexpr std::array<QPointF, 4> kDiskShutter{{{8, 4}, {8, 9}, {15, 9}, {15, 4}}};
constexpr std::array<QPointF, 4> kDiskLabel{{{7, 20}, {7, 13}, {17, 13}, {17, 20}}};
constexpr std::array kDisk{Line{kDiskEdge, true}, Line{kDiskShutter, false},
                           Line{kDiskLabel, false}};

constexpr std::array<QPointF, 5> kPageEdge{{{5, 3}, {14, 3}, {19, 8}, {19, 21}, {5, 21}}};
constexpr std::array<QPointF, 3> kPageCorner{{{14, 3}, {14, 8}, {19, 8}}};
constexpr std::array kPage{Line{kPageEdge, true}, Line{kPageCorner, false}};

constexpr std::array<QPointF, 5> kPencilEdge{{{4, 20}, {5, 15}, {16, 4}, {20, 8}, {9, 19}}};
constexpr std::array<QPointF, 2> kPencilEnd{{{13, 7}, {17, 11}}};
constexpr std::array kPencil{Line{kPencilEdge, true}, Line{kPencilEnd, false}};

constexpr std::array<QPointF, 3> kHouseRoof{{{2.5, 11.5}, {12, 3}, {21.5, 11.5}}};
constexpr std::array<QPointF, 9> kHouseWalls{
    {{5, 9.3}, {5, 20}, {10, 20}, {10, 14}, {14, 14}, {14, 20}, {19, 20}, {19, 9.3}, {12, 3}}};
constexpr std::array kHouse{Line{kHouseWalls, true}, Line{kHouseRoof, false}};

/// In the order of `Drawing`.
constexpr std::array<std::span<const Line>, 7> kDrawings{
    {kFolder, kOpenFolder, kNewFolder, kDisk, kPage, kPencil, kHouse}};

void PaintLines(std::span<const Line> lines, QPainter& painter, const QRect& room,
                QIcon::Mode mode) {
  // Asked for each time, since a desktop may turn dark while the program runs.
  const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
  const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
  const QColor colour = QGuiApplication::palette().color(group, role);
  QColor filling = colour;
  filling.setAlphaF(kFilling);
  painter.translate(room.topLeft());
  painter.scale(room.width() / kGrid, room.height() / kGrid);
  painter.setPen(QPen(colour, kLineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(filling);
  for (const auto& [points, is_closed] : lines) {
    const int count = static_cast<int>(points.size());
    if (is_closed) {
      painter.drawPolygon(points.data(), count);
    } else {
      painter.drawPolyline(points.data(), count);
    }
  }
}

}  // namespace

QIcon DrawnIcon(Drawing drawing) {
  const auto lines = kDrawings[static_cast<std::size_t>(drawing)];
  return PaintedIcon([lines](QPainter& painter, const QRect& room, QIcon::Mode mode) {
    PaintLines(lines, painter, room, mode);
  });
}

}  // namespace kestrix
