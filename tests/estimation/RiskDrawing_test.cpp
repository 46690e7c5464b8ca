#include "estimation/drawing/RiskDrawing.h"

#include <gmock/gmock.h>

#include <QImage>
#include <QPainter>

#include "estimation/model/RiskGraphRules.h"

namespace kestrix {
namespace {

using model::Stage;
using Part = RiskDrawing::Part;
using ::testing::ElementsAre;

const LevelTexts kPath{"S2, Serious", "F2, Frequent", "O3, High", "A2, Impossible"};

/// The middle of a picture of this size is painted, with a margin around.
QImage Painted(Part part, const QSize& size, const RiskMarks& marks, bool coloured) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  RiskLook look;
  look.font.setStyleStrategy(QFont::NoSubpixelAntialias);
  look.coloured = coloured;
  RiskDrawing(part, QRectF(image.rect()).adjusted(10, 10, -10, -10), look).Paint(painter, marks);
  return image;
}

/// How many pixels of a column of the picture are as dark as this, around a place.
int DarkPixels(const QImage& image, QPointF place) {
  int dark = 0;
  for (int dy = -12; dy <= 12; ++dy) {
    dark += qGray(image.pixel(place.toPoint() + QPoint(0, dy))) < 128 ? 1 : 0;
  }
  return dark;
}

TEST(RiskMarksTest, AreThePathAndTheCellOfAStoredStage) {
  const RiskMarks marks = MarksOf(Stage::kAfter, kPath, 3, 9);
  EXPECT_THAT(marks.LitLines(), ElementsAre("SV1", "SH3", "FV2", "FH4", "OAng5", "AH6"));
  EXPECT_THAT(marks.LitIndexLabels(), ElementsAre("RILbl6"));
  EXPECT_EQ(marks.LitStageOf(u"SV1"), Stage::kAfter);
  ASSERT_NE(marks.cell, nullptr);
  EXPECT_EQ(marks.cell->name, u"Rsk13");
  EXPECT_EQ(MarksOf(Stage::kBefore, {"Reset", "N.A.", "N.A.", "N.A."}, 0, 9), RiskMarks());
}

TEST(RiskDrawingTest, PaintsInItsRoomAtAnySize) {
  const RiskMarks marks = MarksOf(Stage::kBefore, kPath, 3, 9);
  for (const Part part : {Part::kGraph, Part::kMatrix}) {
    for (const int width : {320, 640, 3000}) {
      const QSize size(width, width / 2);
      const QImage image = Painted(part, size, marks, true);
      const QRect room = image.rect().adjusted(10, 10, -10, -10);
      bool lit = false;
      for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
          const QRgb colour = image.pixel(x, y);
          if (!room.contains(x, y)) {
            ASSERT_EQ(colour, 0xFFFFFFFFU) << x << ' ' << y;
          }
          lit |= colour == (part == Part::kGraph ? 0xFFFF8000U : 0xFFFFFF00U);
        }
      }
      EXPECT_TRUE(lit) << width;
    }
  }
}

TEST(RiskDrawingTest, TellsAllInBlackAndWhiteToo) {
  const RiskMarks marks = MarksOf(Stage::kBefore, kPath, 1, 1);
  const QSize size(900, 450);
  const RiskDrawing graph(Part::kGraph, QRectF(10, 10, 880, 430), {});
  const RiskDrawing matrix(Part::kMatrix, QRectF(10, 10, 880, 430), {});
  for (const Part part : {Part::kGraph, Part::kMatrix}) {
    const QImage image = Painted(part, size, marks, false);
    for (int y = 0; y < size.height(); ++y) {
      for (int x = 0; x < size.width(); ++x) {
        const QColor colour = image.pixelColor(x, y);
        ASSERT_LE(std::abs(colour.red() - colour.green()), 8) << x << ' ' << y;
        ASSERT_LE(std::abs(colour.red() - colour.blue()), 8) << x << ' ' << y;
      }
    }
    if (part == Part::kGraph) {
      const auto middle = [&](QStringView line) {
        const risk_graph::GraphLine& piece = *risk_graph::LineNamed(line);
        return graph.PointOf((QPointF(piece.from) * 0.85 + QPointF(piece.to) * 0.15));
      };
      EXPECT_GE(DarkPixels(image, middle(u"FH4")), 3 * DarkPixels(image, middle(u"FH3")));
    } else {
      QList<int> greys;
      for (const QStringView cell : {u"Rsk2", u"Rsk4", u"Rsk20"}) {
        const QRectF place = matrix.RectOf(risk_graph::CellNamed(cell)->place);
        greys += qGray(image.pixel(QPointF(place.left() + 8, place.center().y()).toPoint()));
      }
      EXPECT_GT(greys[0], greys[1]);
      EXPECT_GT(greys[1], greys[2]);
    }
  }
}

}  // namespace
}  // namespace kestrix
