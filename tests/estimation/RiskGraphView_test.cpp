#include "estimation/RiskGraphView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QImage>
#include <QPalette>
#include <QSignalSpy>
#include <QToolTip>
#include <memory>

#include "estimation/model/RiskGraphRules.h"
#include "estimation/model/RiskMatrix.h"

namespace kestrix {
namespace {

using model::Stage;
using risk_graph::CellNamed;
using risk_graph::GraphLine;
using risk_graph::IndexLabelNamed;
using risk_graph::kLines;
using risk_graph::LineNamed;
using Part = RiskGraphView::Part;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr QRgb kOutside = 0xFFFF00FF;

struct Theme {
  const char* name;
  QColor paper;
  QColor ink;
};

const Theme kLight{"light", Qt::white, Qt::black};
const Theme kDark{"dark", QColor(0x1E1E20), QColor(0xEBEBEB)};

class RiskGraphViewTest : public ::testing::Test {
 protected:
  RiskGraphViewTest() {
    graph_.Show(state_, Part::kGraph);
    matrix_.Show(state_, Part::kMatrix);
    graph_.resize(520, 300);
    matrix_.resize(420, 220);
    Wear(kLight);
  }

  void Wear(const Theme& theme) {
    QPalette palette;
    for (const auto role : {QPalette::Base, QPalette::Window}) palette.setColor(role, theme.paper);
    for (const auto role : {QPalette::Text, QPalette::WindowText}) {
      palette.setColor(role, theme.ink);
    }
    graph_.setPalette(palette);
    matrix_.setPalette(palette);
  }

  static QImage ImageOf(RiskGraphView& view, qreal ratio = 1) {
    QImage image(view.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(kOutside);
    view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
  }

  // A colour that any pixel close to this place has, since a place may fall between two pixels.
  static bool HasColourAt(const QImage& image, QPointF place, const QColor& colour) {
    const QPointF pixel = place * image.devicePixelRatio();
    const int x = static_cast<int>(pixel.x());
    const int y = static_cast<int>(pixel.y());
    for (int dx = -1; dx <= 1; ++dx) {
      for (int dy = -1; dy <= 1; ++dy) {
        if (!image.valid(x + dx, y + dy)) continue;
        if (image.pixelColor(x + dx, y + dy) == colour) return true;
      }
    }
    return false;
  }

  static QPointF OnLine(const RiskGraphView& view, QStringView name, qreal share) {
    const GraphLine* line = LineNamed(name);
    return view.WidgetPointOf(QPointF(line->from) + (QPointF(line->to) - line->from) * share);
  }

  static QString TipAt(RiskGraphView& view, QPointF place) {
    QToolTip::hideText();
    const QPoint pixel = place.toPoint();
    QHelpEvent help(QEvent::ToolTip, pixel, view.mapToGlobal(pixel));
    QCoreApplication::sendEvent(&view, &help);
    return help.isAccepted() ? QToolTip::text() : QString();
  }

  QPointF CentreOf(const RiskGraphView& view, const QRect& twips) const {
    return view.WidgetRectOf(twips).center();
  }

  RiskGraphState state_;
  RiskGraphView graph_;
  RiskGraphView matrix_;
};

TEST_F(RiskGraphViewTest, PropertiesFollowTheStateInBothViews) {
  QSignalSpy lines(&graph_, &RiskGraphView::LitLinesChanged);
  QSignalSpy labels(&graph_, &RiskGraphView::LitIndexLabelsChanged);
  QSignalSpy marker(&graph_, &RiskGraphView::MarkedCellChanged);
  state_.Light(model::SeverityRuleFor(u"S2, Serious")->lines);
  state_.LightIndexLabel(u"RILb1");
  state_.MarkCell(u"Rsk12");
  EXPECT_EQ(lines.size(), 1);
  EXPECT_EQ(labels.size(), 1);
  EXPECT_EQ(marker.size(), 1);
  for (RiskGraphView* view : {&graph_, &matrix_}) {
    EXPECT_THAT(view->property("litLines").toStringList(), ElementsAre("SV1", "SH3"));
    EXPECT_THAT(view->property("litIndexLabels").toStringList(), ElementsAre("RILb1"));
    EXPECT_EQ(view->property("markedCell").toString(), "Rsk12");
  }
  state_.PutOut(risk_graph::kSeverityGroup);
  state_.PutOutIndexLabels();
  state_.HideMarker();
  for (RiskGraphView* view : {&graph_, &matrix_}) {
    EXPECT_THAT(view->property("litLines").toStringList(), IsEmpty());
    EXPECT_THAT(view->property("litIndexLabels").toStringList(), IsEmpty());
    EXPECT_EQ(view->property("markedCell").toString(), QString());
  }
}

TEST_F(RiskGraphViewTest, LettersFollowTheFontAndThePictureMakesRoomForThem) {
  // The letters of the class "5-7", which stand alone on their ground.
  const auto height_of_letters = [this] {
    const QRectF head = matrix_.WidgetRectOf(risk_graph::kColumnHeads[1].place);
    const QImage image = ImageOf(matrix_).copy(head.toAlignedRect().adjusted(4, 3, -4, -3));
    int rows = 0;
    for (int y = 0; y < image.height(); ++y) {
      bool ink = false;
      for (int x = 0; x < image.width(); ++x) ink |= qGray(image.pixel(x, y)) < 128;
      rows += ink ? 1 : 0;
    }
    return rows;
  };
  matrix_.resize(matrix_.minimumSize());
  const int before = height_of_letters();
  const QSize room = matrix_.minimumSize();
  QFont font = matrix_.font();
  font.setPixelSize(24);
  matrix_.setFont(font);
  EXPECT_GE(matrix_.minimumSize().width(), 2 * room.width() - 1);
  EXPECT_GE(matrix_.minimumSize().height(), 2 * room.height() - 1);
  matrix_.resize(matrix_.minimumSize());
  EXPECT_GE(height_of_letters(), before * 3 / 2);
}

TEST_F(RiskGraphViewTest, ViewWithoutAStateIsEmpty) {
  RiskGraphView view;
  view.resize(200, 100);
  EXPECT_THAT(view.litLines(), IsEmpty());
  EXPECT_EQ(view.markedCell(), QString());
  {
    RiskGraphState short_lived;
    view.Show(short_lived, Part::kGraph);
    short_lived.Light(u"SV1");
    EXPECT_THAT(view.litLines(), ElementsAre("SV1"));
  }
  EXPECT_THAT(view.litLines(), IsEmpty());
  // Another state replaces the first.
  RiskGraphState other;
  graph_.Show(other, Part::kGraph);
  QSignalSpy lines(&graph_, &RiskGraphView::LitLinesChanged);
  state_.Light(u"SV1");
  EXPECT_EQ(lines.size(), 0);
  EXPECT_THAT(graph_.litLines(), IsEmpty());
  QImage blank(view.size(), QImage::Format_RGB32);
  blank.fill(kOutside);
  EXPECT_EQ(ImageOf(view), blank);
}

TEST_F(RiskGraphViewTest, EveryLitLineHasTheColourOfItsStageInEveryThemeAndScale) {
  const std::vector<std::pair<Stage, QColor>> stages{{Stage::kBefore, QColor(0xFF8000)},
                                                     {Stage::kAfter, QColor(0x00FF00)}};
  for (const Theme& theme : {kLight, kDark}) {
    Wear(theme);
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0}) {
      for (const auto& [stage, colour] : stages) {
        state_.SetStage(stage);
        for (const GraphLine& line : kLines) {
          if (line.groups == risk_graph::kNoGroup) continue;
          state_.Light(line.name);
          EXPECT_TRUE(HasColourAt(ImageOf(graph_, ratio), OnLine(graph_, line.name, 0.2), colour))
              << line.name.toString().toStdString() << " " << theme.name << " " << ratio;
          state_.PutOut(risk_graph::kSeverityGroup);
          state_.PutOut(risk_graph::kExposureGroup);
          state_.PutOut(risk_graph::kOccurrenceGroup);
          state_.PutOut(risk_graph::kAvoidanceGroup);
        }
      }
    }
  }
}

TEST_F(RiskGraphViewTest, LineAtRestHasTheInkOfTheThemeAndNoStageColour) {
  for (const Theme& theme : {kLight, kDark}) {
    Wear(theme);
    const QImage image = ImageOf(graph_, 2);
    for (const QStringView name : {u"SV1", u"SV2", u"SEH1_2", u"NoneLn", u"FH4", u"OH3", u"AH6"}) {
      const QPointF place = OnLine(graph_, name, 0.2);
      EXPECT_TRUE(HasColourAt(image, place, theme.ink)) << name.toString().toStdString();
      EXPECT_FALSE(HasColourAt(image, place, QColor(0xFF8000)));
      EXPECT_FALSE(HasColourAt(image, place, QColor(0x00FF00)));
    }
  }
}

TEST_F(RiskGraphViewTest, LitLineIsThreeTimesAsThickAsOneAtRest) {
  const auto thickness = [this](const QColor& colour) {
    const QImage image = ImageOf(graph_, 2);
    const QPointF place = OnLine(graph_, u"NoneLn", 0.4) * 2;
    int pixels = 0;
    for (int dy = -12; dy <= 12; ++dy) {
      pixels +=
          image.pixelColor(static_cast<int>(place.x()), static_cast<int>(place.y()) + dy) == colour;
    }
    return pixels;
  };
  const int at_rest = thickness(kLight.ink);
  state_.Light(u"NoneLn");
  EXPECT_GT(at_rest, 0);
  EXPECT_EQ(thickness(QColor(0xFF8000)), 3 * at_rest);
}

TEST_F(RiskGraphViewTest, LitLineHasADarkEdgeOnLightGround) {
  state_.SetStage(Stage::kAfter);
  state_.Light(u"NoneLn");
  const QImage image = ImageOf(graph_, 2);
  const QPointF place = OnLine(graph_, u"NoneLn", 0.4) * 2;
  int dark = 0;
  for (int dy = -12; dy <= 12; ++dy) {
    const QColor colour =
        image.pixelColor(static_cast<int>(place.x()), static_cast<int>(place.y()) + dy);
    dark += colour.lightness() < 80 && colour != kLight.ink;
  }
  EXPECT_GE(dark, 2) << "one edge on each side";
}

TEST_F(RiskGraphViewTest, StartAndItsArrowFollowTheStage) {
  const QPointF start = OnLine(graph_, u"strtLin1", 0.3);
  const QPointF arrow = graph_.WidgetPointOf({1155, 2595});
  EXPECT_TRUE(HasColourAt(ImageOf(graph_), start, QColor(0xFF8000)));
  EXPECT_TRUE(HasColourAt(ImageOf(graph_), arrow, QColor(0xFF8000)));
  state_.SetStage(Stage::kAfter);
  EXPECT_TRUE(HasColourAt(ImageOf(graph_), start, QColor(0x00FF00)));
  EXPECT_TRUE(HasColourAt(ImageOf(graph_), arrow, QColor(0x00FF00)));
}

TEST_F(RiskGraphViewTest, IndexLabelIsWhiteAtRestAndCyanWhenLitInBothStages) {
  for (const Stage stage : {Stage::kBefore, Stage::kAfter}) {
    state_.SetStage(stage);
    for (const auto& label : risk_graph::kIndexLabels) {
      // Beside the digit, inside the frame.
      const QPointF place = graph_.WidgetPointOf(label.place.topLeft() + QPoint(75, 75));
      EXPECT_TRUE(HasColourAt(ImageOf(graph_, 2), place, QColor(0xFFFFFF)));
      state_.LightIndexLabel(label.name);
      EXPECT_TRUE(HasColourAt(ImageOf(graph_, 2), place, QColor(0x80FFFF)));
      state_.PutOutIndexLabels();
    }
  }
}

TEST_F(RiskGraphViewTest, CellsHaveTheirRequiredColours) {
  for (const Theme& theme : {kLight, kDark}) {
    Wear(theme);
    const QImage image = ImageOf(matrix_, 2);
    for (const auto& cell : risk_graph::kCells) {
      const auto& row =
          model::kMatrixCells[static_cast<std::size_t>(&cell - risk_graph::kCells.data())];
      const QPointF place = matrix_.WidgetPointOf(cell.place.topLeft() + QPoint(90, 90));
      EXPECT_TRUE(HasColourAt(image, place, QColor(row.colour)))
          << cell.name.toString().toStdString() << " " << theme.name;
    }
  }
}

TEST_F(RiskGraphViewTest, MarkerIsYellowInsideItsCellAndGoneWhenHidden) {
  const QColor yellow(0xFFFF00);
  for (const auto& cell : risk_graph::kCells) {
    state_.MarkCell(cell.name);
    const QImage image = ImageOf(matrix_);
    const QRect inside = matrix_.WidgetRectOf(cell.place).toAlignedRect();
    int yellow_inside = 0;
    int yellow_outside = 0;
    for (int x = 0; x < image.width(); ++x) {
      for (int y = 0; y < image.height(); ++y) {
        if (image.pixelColor(x, y) != yellow) continue;
        ++(inside.contains(x, y) ? yellow_inside : yellow_outside);
      }
    }
    EXPECT_GT(yellow_inside, 100) << cell.name.toString().toStdString();
    EXPECT_EQ(yellow_outside, 0) << cell.name.toString().toStdString();
  }
  state_.HideMarker();
  const QImage image = ImageOf(matrix_);
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) ASSERT_NE(image.pixelColor(x, y), yellow);
  }
}

TEST_F(RiskGraphViewTest, MarkedCellHasAThickFrameBesidesItsCircle) {
  const QPointF edge = matrix_.WidgetPointOf(
      {CellNamed(u"Rsk13")->place.center().x() + 0.0, CellNamed(u"Rsk13")->place.top() + 15.0});
  EXPECT_FALSE(HasColourAt(ImageOf(matrix_, 2), edge, kLight.ink));
  state_.MarkCell(u"Rsk13");
  EXPECT_TRUE(HasColourAt(ImageOf(matrix_, 2), edge, kLight.ink));
  Wear(kDark);
  EXPECT_TRUE(HasColourAt(ImageOf(matrix_, 2), edge, kDark.ink));
}

TEST_F(RiskGraphViewTest, NothingIsPaintedOutsideTheFrame) {
  for (const GraphLine& line : kLines) state_.Light(line.name);
  for (const auto& label : risk_graph::kIndexLabels) state_.LightIndexLabel(label.name);
  state_.MarkCell(u"Rsk20");
  const std::vector<std::pair<RiskGraphView*, QRect>> parts{{&graph_, risk_graph::kGraphFrame},
                                                            {&matrix_, risk_graph::kMatrixFrame}};
  for (const auto& [view, frame] : parts) {
    for (const QSize size : {QSize(900, 240), QSize(430, 500), QSize(433, 231)}) {
      view->resize(size);
      const QImage image = ImageOf(*view);
      const QRect inside = view->WidgetRectOf(frame).toAlignedRect();
      int painted = 0;
      for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
          if (inside.contains(x, y)) {
            painted += image.pixel(x, y) != kOutside;
          } else {
            ASSERT_EQ(image.pixel(x, y), kOutside) << x << ", " << y;
          }
        }
      }
      EXPECT_GT(painted, inside.width() * inside.height() * 9 / 10);
    }
  }
}

TEST_F(RiskGraphViewTest, PictureFillsARoomOfAboutItsShape) {
  for (const QSize size : {QSize(620, 240), QSize(430, 230), QSize(1180, 560)}) {
    graph_.resize(size);
    const QRectF frame = graph_.WidgetRectOf(risk_graph::kGraphFrame);
    EXPECT_NEAR(frame.width(), size.width(), 0.01);
    EXPECT_NEAR(frame.height(), size.height(), 0.01);
  }
}

TEST_F(RiskGraphViewTest, PictureIsNeverStretchedOutOfShapeAndStaysInTheMiddle) {
  const qreal drawn = qreal(risk_graph::kGraphFrame.width()) / risk_graph::kGraphFrame.height();
  for (const QSize size : {QSize(900, 240), QSize(430, 500)}) {
    graph_.resize(size);
    const QRectF frame = graph_.WidgetRectOf(risk_graph::kGraphFrame);
    const qreal stretch = frame.width() / frame.height() / drawn;
    EXPECT_NEAR(stretch > 1 ? stretch : 1 / stretch, 1.35, 0.001);
    EXPECT_NEAR(frame.center().x(), size.width() / 2.0, 0.5);
    EXPECT_NEAR(frame.center().y(), size.height() / 2.0, 0.5);
    EXPECT_LE(frame.width(), size.width() + 0.01);
    EXPECT_LE(frame.height(), size.height() + 0.01);
  }
}

TEST_F(RiskGraphViewTest, BothPartsFitSideBySideOnASmallScreen) {
  EXPECT_LE(graph_.minimumSizeHint().width() + matrix_.minimumSizeHint().width(), 1024 - 100);
  EXPECT_LE(graph_.minimumSizeHint().height() + matrix_.minimumSizeHint().height(), 500);
  EXPECT_GE(graph_.sizeHint().width(), graph_.minimumSizeHint().width());
  EXPECT_GE(matrix_.sizeHint().height(), matrix_.minimumSizeHint().height());
}

TEST_F(RiskGraphViewTest, TextsOfTheGraphShowTheirTips) {
  int with_tip = 0;
  for (const auto& text : risk_graph::kTexts) {
    EXPECT_EQ(TipAt(graph_, CentreOf(graph_, text.place)), text.tip.toString())
        << text.text.toString().toStdString();
    with_tip += text.tip.isEmpty() ? 0 : 1;
  }
  EXPECT_EQ(with_tip, 22);
  EXPECT_EQ(TipAt(graph_, CentreOf(graph_, IndexLabelNamed(u"RILbl3")->place)), QString());
}

TEST_F(RiskGraphViewTest, CellsTellSeverityClassAndBand) {
  EXPECT_EQ(TipAt(matrix_, CentreOf(matrix_, CellNamed(u"Rsk17")->place)),
            "Severity 4, class 5 to 7: Medium Risk");
  EXPECT_EQ(TipAt(matrix_, CentreOf(matrix_, CellNamed(u"Rsk1")->place)),
            "Severity 1, class 1 to 4: Low Risk");
  EXPECT_EQ(TipAt(matrix_, CentreOf(matrix_, CellNamed(u"Rsk20")->place)),
            "Severity 4, class 14 to 15: High Risk");
  EXPECT_EQ(TipAt(matrix_, QPointF(1, 1)), QString());
}

TEST_F(RiskGraphViewTest, AssistiveToolsReadNameAndPath) {
  graph_.SetPathTexts(u"S1, Slight", u"F1, F2", u"N.A.", u"", std::nullopt);
  EXPECT_EQ(graph_.accessibleDescription(), "S1, Slight; F1, F2");
  graph_.SetPathTexts(u"S1, Slight", u"F1, F2", u"O1, Low", u"", 0);
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&graph_);
  ASSERT_NE(face, nullptr);
  EXPECT_EQ(face->text(QAccessible::Name), "Risk graph");
  EXPECT_EQ(face->text(QAccessible::Description), "S1, Slight; F1, F2; O1, Low: risk index 0");
  EXPECT_EQ(matrix_.accessibleName(), "Risk matrix");
  RiskGraphView named;
  named.setAccessibleName("Graph of the press");
  named.Show(state_, Part::kGraph);
  EXPECT_EQ(named.accessibleName(), "Graph of the press") << "a given name is kept";
}

}  // namespace
}  // namespace kestrix
