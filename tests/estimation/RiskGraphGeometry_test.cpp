#include "estimation/drawing/RiskGraphGeometry.h"

#include <gmock/gmock.h>

#include <QString>
#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

#include "estimation/model/RiskGraphRules.h"

namespace kestrix::risk_graph {
namespace {

using ::testing::ElementsAre;

// Lines that meet were drawn by hand and miss each other by a few twips.
constexpr int kTolerance = 90;

bool Near(QPoint one, QPoint other) {
  return std::abs(one.x() - other.x()) <= kTolerance && std::abs(one.y() - other.y()) <= kTolerance;
}

// Where one gets from here along the lines, each used at most once, in the order in which they
// come.
QPoint Walk(QPoint place, const model::LineNames& names) {
  for (const QStringView name : names) {
    const GraphLine* line = LineNamed(name);
    EXPECT_NE(line, nullptr) << name.toString().toStdString();
    if (line == nullptr) return {};
    if (Near(place, line->from)) {
      place = line->to;
    } else if (Near(place, line->to)) {
      place = line->from;
    } else {
      ADD_FAILURE() << name.toString().toStdString() << " begins at no end of the path so far";
    }
  }
  return place;
}

const QPoint kStart(kSeverityColumn, 2595);
const QPoint kAfterAny(kOccurrenceColumn, 2115);
const QPoint kAfterSeldom(kOccurrenceColumn, 2895);
const QPoint kAfterFrequent(kOccurrenceColumn, 3675);

QPoint AfterExposure(QStringView exposure) {
  if (exposure == model::kExposureAny) return kAfterAny;
  return exposure == model::kExposureSeldom ? kAfterSeldom : kAfterFrequent;
}

QStringList LinesOf(LineGroup group) {
  QStringList names;
  for (const GraphLine& line : kLines) {
    if (line.IsIn(group)) names.append(line.name.toString());
  }
  return names;
}

TEST(RiskGraphGeometryTest, EveryResetStepHasItsLines) {
  EXPECT_THAT(LinesOf(kSeverityGroup),
              ElementsAre("SV1", "SV2", "SV3", "SH3", "SEH1_2", "NoneLn", "NoneLn2"));
  EXPECT_THAT(LinesOf(kExposureGroup), ElementsAre("FV1", "FV2", "FH3", "FH4"));
  EXPECT_THAT(LinesOf(kOccurrenceGroup), ElementsAre("NoneLn2", "OAng0", "OH2", "OAng1", "OAng2",
                                                     "OH3", "OAng3", "OAng4", "OH4", "OAng5"));
  EXPECT_THAT(LinesOf(kAvoidanceGroup),
              ElementsAre("AAng0", "AH1", "AAng1", "AH2", "AAng2", "AH3", "AAng3", "AH4", "AAng4",
                          "AH5", "AAng5", "AH6"));
}

TEST(RiskGraphGeometryTest, OnlyTheStartLineIsInNoGroupAndOnlyOneLineIsInTwo) {
  for (const GraphLine& line : kLines) {
    const int groups = line.IsIn(kSeverityGroup) + line.IsIn(kExposureGroup) +
                       line.IsIn(kOccurrenceGroup) + line.IsIn(kAvoidanceGroup);
    const int expected = line.name == u"strtLin1" ? 0 : line.name == u"NoneLn2" ? 2 : 1;
    EXPECT_EQ(groups, expected) << line.name.toString().toStdString();
  }
}

TEST(RiskGraphGeometryTest, ThirtyThreeLinesLieWhereTheyWereDrawnUnderNamesOfTheirOwn) {
  EXPECT_EQ(LineNamed(u"strtLin1")->from, QPoint(255, 2595));
  EXPECT_EQ(LineNamed(u"strtLin1")->to, QPoint(1320, 2595));
  EXPECT_EQ(LineNamed(u"SEH1_2")->to, QPoint(3465, 2115));
  EXPECT_EQ(LineNamed(u"AAng1")->from, QPoint(4620, 2490));
  EXPECT_EQ(LineNamed(u"AH6")->to, QPoint(5685, 4110));
  EXPECT_EQ(LineNamed(u"sv1"), nullptr) << "names are exact";
  EXPECT_EQ(LineNamed(u""), nullptr);
  std::set<QString> names;
  for (const GraphLine& line : kLines) names.insert(line.name.toString());
  EXPECT_EQ(names.size(), 33U);
}

TEST(RiskGraphGeometryTest, SeverityLeadsFromTheStartToItsExposureAndNoHazardStraightToIndexZero) {
  EXPECT_TRUE(Near(Walk(kStart, model::SeverityRuleFor(u"S1, Slight")->lines), kAfterAny));
  EXPECT_TRUE(Near(Walk(kStart, model::SeverityRuleFor(u"S2, Serious")->lines),
                   QPoint(kExposureColumn, 3285)));
  EXPECT_TRUE(Near(Walk(kStart, model::SeverityRuleFor(u"None.")->lines),
                   QPoint(kEndColumn, kIndexRows[0])));
}

TEST(RiskGraphGeometryTest, ExposureLeadsToItsOccurrence) {
  for (const model::ExposureRule& rule : model::kExposureRules) {
    const QPoint begin = rule.exposure == model::kExposureAny ? QPoint(kSeverityColumn, 2115)
                                                              : QPoint(kExposureColumn, 3285);
    EXPECT_TRUE(Near(Walk(begin, rule.lines), AfterExposure(rule.exposure)))
        << rule.exposure.toString().toStdString();
  }
}

TEST(RiskGraphGeometryTest, OccurrenceLeadsToTheAvoidanceOrToTheEnd) {
  for (const model::OccurrenceRule& rule : model::kOccurrenceRules) {
    const QPoint end = Walk(AfterExposure(rule.exposure), rule.lines);
    const int column = !rule.index ? kAvoidanceColumn : kEndColumn;
    EXPECT_NEAR(end.x(), column, kTolerance) << rule.occurrence.toString().toStdString();
    if (!rule.index) continue;
    EXPECT_NEAR(end.y(), kIndexRows[static_cast<std::size_t>(*rule.index)], kTolerance);
  }
}

TEST(RiskGraphGeometryTest, AvoidanceLeadsFromItsOccurrenceToTheRowOfItsIndex) {
  int joined = 0;
  for (const model::AvoidanceRule& rule : model::kAvoidanceRules) {
    const GraphLine* line = LineNamed(rule.line);
    ASSERT_NE(line, nullptr);
    const QPoint end(kEndColumn, kIndexRows[static_cast<std::size_t>(rule.index)]);
    EXPECT_TRUE(Near(line->to, end)) << rule.line.toString().toStdString();
    EXPECT_TRUE(EndsAtIndex(*line, rule.index));
    EXPECT_EQ(IndexLabelNamed(rule.index_label)->index, rule.index);
    const auto* occurrence = model::OccurrenceRuleFor(rule.occurrence, rule.exposure);
    if (occurrence->index) continue;
    EXPECT_TRUE(Near(line->from, Walk(AfterExposure(rule.exposure), occurrence->lines)))
        << rule.line.toString().toStdString();
    ++joined;
  }
  EXPECT_EQ(joined, 17) << "all but the rule of a path that had ended before";
}

TEST(RiskGraphGeometryTest, LineEndsOnlyInTheRowOfItsOwnIndex) {
  for (const GraphLine& line : kLines) {
    int rows = 0;
    for (int index = 0; index <= 6; ++index) rows += EndsAtIndex(line, index);
    const bool last = line.IsIn(kAvoidanceGroup) || line.name == u"NoneLn2";
    EXPECT_EQ(rows, last ? 1 : 0) << line.name.toString().toStdString();
  }
}

TEST(RiskGraphGeometryTest, IndexLabelsStandInOneColumnNextToTheirRows) {
  const std::array<int, 7> tops{1515, 1965, 2355, 2775, 3180, 3555, 3930};
  for (std::size_t place = 0; place < kIndexLabels.size(); ++place) {
    const IndexLabel& label = kIndexLabels[place];
    EXPECT_EQ(label.index, static_cast<int>(place));
    EXPECT_EQ(label.place, QRect(6180, tops[place], 330, 315));
    EXPECT_TRUE(label.place.contains(6200, kIndexRows[place]));
  }
  EXPECT_EQ(IndexLabelNamed(u"RILbl1"), nullptr) << "the labels of 1 and 2 are spelt without l";
  EXPECT_EQ(IndexLabelNamed(u"RILb1")->index, 1);
}

TEST(RiskGraphGeometryTest, EveryBranchHasItsWord) {
  std::map<QString, int> count;
  for (const GraphText& text : kTexts) ++count[text.text.toString()];
  for (const char* once :
       {"Start", "None.", "S1, Slight", "S2, Serious", "F1, Seldom", "F2, Frequent", "  F1, F2"}) {
    EXPECT_EQ(count[once], 1) << once;
  }
  for (const char* occurrence : {"O1", "O2", "O3"}) EXPECT_EQ(count[occurrence], 3) << occurrence;
  for (const char* avoidance : {"A1", "A2"}) EXPECT_EQ(count[avoidance], 6) << avoidance;
  EXPECT_EQ(count.size(), 12U);
}

TEST(RiskGraphGeometryTest, ShortWordsSayInFullWhatTheyMean) {
  const std::map<QString, QString> tips{
      {"O1", "Low"},      {"O2", "Medium"},     {"O3", "High"},
      {"A1", "Possible"}, {"A2", "Impossible"}, {"  F1, F2", "F1, Seldom or F2, Frequent"}};
  for (const GraphText& text : kTexts) {
    const auto tip = tips.find(text.text.toString());
    EXPECT_EQ(text.tip.toString(), tip == tips.end() ? QString() : tip->second);
  }
}

TEST(RiskGraphGeometryTest, WordsOfALevelLieOnTheirLine) {
  for (const GraphText& text : kTexts) {
    if (text.kind != TextKind::kLevel) continue;
    const GraphLine* line = LineNamed(text.line);
    ASSERT_NE(line, nullptr) << text.line.toString().toStdString();
    const QPoint from = PaintedEnd(line->from);
    const QPoint to = PaintedEnd(line->to);
    const QPoint centre = text.place.center();
    const double share = double(centre.x() - from.x()) / (to.x() - from.x());
    EXPECT_GT(share, 0.0);
    EXPECT_LT(share, 1.0);
    EXPECT_NEAR(from.y() + share * (to.y() - from.y()), centre.y(), 2);
    EXPECT_EQ(line->IsIn(kOccurrenceGroup), text.text.startsWith(u'O'));
  }
}

// A word that touched another line would read as that line's.
TEST(RiskGraphGeometryTest, WordsOfALevelLieOnNoOtherLine) {
  const int room = 15;  // half of a lit line
  for (const GraphText& text : kTexts) {
    if (text.kind != TextKind::kLevel) continue;
    const QRectF place(text.place.adjusted(-room, -room, room, room));
    for (const GraphLine& line : kLines) {
      if (line.name == text.line) continue;
      const QPointF from = PaintedEnd(line.from);
      const QPointF step = (QPointF(PaintedEnd(line.to)) - from) / 200;
      for (int i = 0; i <= 200; ++i) {
        ASSERT_FALSE(place.contains(from + i * step))
            << text.line.toString().toStdString() << " on " << line.name.toString().toStdString();
      }
    }
  }
}

TEST(RiskGraphGeometryTest, LinesThatMeetArePaintedToTheSamePoint) {
  for (const model::AvoidanceRule& rule : model::kAvoidanceRules) {
    EXPECT_EQ(PaintedEnd(LineNamed(rule.line)->to), EndOfIndex(rule.index));
  }
  EXPECT_EQ(PaintedEnd(LineNamed(u"NoneLn2")->to), EndOfIndex(0));
  for (const GraphLine& line : kLines) {
    if (line.groups == kNoGroup) continue;
    for (const QPoint end : {line.from, line.to}) {
      EXPECT_TRUE(std::ranges::count(kNodes, PaintedEnd(end)) == 1 || Near(end, kStart))
          << line.name.toString().toStdString();
    }
  }
}

// The word of each line is the one that the rules light the line for.
TEST(RiskGraphGeometryTest, WordsOfALevelAgreeWithTheRules) {
  const auto word_of = [](QStringView line) {
    for (const GraphText& text : kTexts) {
      if (text.line == line && text.kind == TextKind::kLevel) return text.text.toString();
    }
    return QString();
  };
  for (const model::OccurrenceRule& rule : model::kOccurrenceRules) {
    EXPECT_EQ(word_of(*rule.lines.begin()), rule.occurrence.left(2));
  }
  for (const model::AvoidanceRule& rule : model::kAvoidanceRules) {
    EXPECT_EQ(word_of(rule.line), rule.avoidance.left(2)) << rule.line.toString().toStdString();
  }
}

TEST(RiskGraphGeometryTest, NoTwoTextsOfTheGraphOverlap) {
  for (std::size_t one = 0; one < kTexts.size(); ++one) {
    for (std::size_t other = one + 1; other < kTexts.size(); ++other) {
      EXPECT_FALSE(kTexts[one].place.intersects(kTexts[other].place))
          << kTexts[one].line.toString().toStdString() << " and "
          << kTexts[other].line.toString().toStdString();
    }
  }
}

TEST(RiskGraphGeometryTest, CellsStandInRowsFromTheBottomAndColumnsFromTheLeft) {
  const std::array<int, 5> lefts{8235, 9165, 10095, 11025, 11955};
  const std::array<int, 4> tops{4680, 4170, 3630, 3090};
  for (std::size_t place = 0; place < kCells.size(); ++place) {
    const std::size_t column = place % 5;
    EXPECT_EQ(kCells[place].name, QString("Rsk%1").arg(place + 1));
    EXPECT_EQ(kCells[place].place,
              QRect(lefts[column], tops[place / 5], column == 4 ? 900 : 945, 555));
    EXPECT_EQ(model::kMatrixCells[place].severity, static_cast<int>(place / 5) + 1);
  }
}

TEST(RiskGraphGeometryTest, HeadsStandAtTheirRowsAndColumns) {
  const std::array<QString, 5> columns{" 4", "5-7", "8-10", "11-13", "14-15"};
  const std::array<QString, 5> names{"Label68", "Label69", "Label70", "Label71", "Label47"};
  for (std::size_t column = 0; column < kColumnHeads.size(); ++column) {
    EXPECT_EQ(kColumnHeads[column].name, names[column]);
    EXPECT_EQ(kColumnHeads[column].text, columns[column]);
    EXPECT_EQ(kColumnHeads[column].place.left(), kCells[column].place.left());
  }
  for (std::size_t row = 0; row < kRowHeads.size(); ++row) {
    EXPECT_EQ(kRowHeads[row].name, QString("Label%1").arg(64 + row));
    EXPECT_EQ(kRowHeads[row].text, QString::number(row + 1));
    EXPECT_EQ(kRowHeads[row].place.top(), kCells[row * 5].place.top());
  }
}

TEST(RiskGraphGeometryTest, MarkerLiesInsideEveryCell) {
  for (const CellPlace& cell : kCells) {
    const QRect marker = MarkerPlaceOn(cell);
    EXPECT_EQ(marker.topLeft(), cell.place.topLeft() + QPoint(270, 140));
    EXPECT_EQ(marker.size(), QSize(375, 300));
    EXPECT_TRUE(cell.place.contains(marker)) << cell.name.toString().toStdString();
  }
}

TEST(RiskGraphGeometryTest, FramesHoldAllTheirPieces) {
  for (const GraphLine& line : kLines) {
    EXPECT_TRUE(kGraphFrame.contains(line.from));
    EXPECT_TRUE(kGraphFrame.contains(line.to));
  }
  for (const GraphText& text : kTexts) EXPECT_TRUE(kGraphFrame.contains(text.place));
  for (const IndexLabel& label : kIndexLabels) EXPECT_TRUE(kGraphFrame.contains(label.place));
  for (const QRect& column : kColumns) EXPECT_TRUE(kGraphFrame.contains(column));
  for (const CellPlace& cell : kCells) EXPECT_TRUE(kMatrixFrame.contains(cell.place));
  for (const MatrixHead& head : kColumnHeads) EXPECT_TRUE(kMatrixFrame.contains(head.place));
  for (const MatrixHead& head : kRowHeads) EXPECT_TRUE(kMatrixFrame.contains(head.place));
  EXPECT_TRUE(kMatrixFrame.contains(kHeadCorner));
}

}  // namespace
}  // namespace kestrix::risk_graph
