#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QStringView>
#include <array>

#include "estimation/model/RiskMatrix.h"
#include "estimation/model/Text.h"

/// Where everything of the risk graph and of the risk matrix lies, in twips (1/15 of a logical
/// pixel). Nothing here moves or is lit: these tables only say what there is to light.
namespace kestrix::risk_graph {

using model::SameText;

/// A drawing at the size that it was drawn for has one unit for so many twips.
inline constexpr qreal kTwipsPerUnit = 15;

/// The lines that one step puts out together. `NoneLn2` stands in two groups: the path without a
/// hazard and the shortest path with one end on the same stretch.
enum LineGroup : unsigned {
  kNoGroup = 0,  ///< the stage marker, which is never put out
  kSeverityGroup = 1,
  kExposureGroup = 2,
  kOccurrenceGroup = 4,
  kAvoidanceGroup = 8
};

struct GraphLine {
  QStringView name;
  QPoint from;
  QPoint to;
  unsigned groups;  ///< LineGroup values joined by "or"

  [[nodiscard]] constexpr bool IsIn(LineGroup group) const { return (groups & group) != 0; }
};

inline constexpr std::array<GraphLine, 33> kLines{{
    {u"strtLin1", {255, 2595}, {1320, 2595}, kNoGroup},
    {u"SV1", {1305, 3285}, {1305, 2610}, kSeverityGroup},
    {u"SV2", {1305, 2595}, {1305, 2130}, kSeverityGroup},
    {u"SV3", {1305, 2115}, {1305, 1665}, kSeverityGroup},
    {u"SH3", {1290, 3285}, {2355, 3285}, kSeverityGroup},
    {u"SEH1_2", {1290, 2115}, {3465, 2115}, kSeverityGroup},
    {u"NoneLn", {1305, 1620}, {4560, 1620}, kSeverityGroup},
    {u"NoneLn2", {4575, 1620}, {5790, 1620}, kSeverityGroup | kOccurrenceGroup},
    {u"FV1", {2355, 2910}, {2355, 3300}, kExposureGroup},
    {u"FV2", {2355, 3285}, {2355, 3675}, kExposureGroup},
    {u"FH3", {2385, 2880}, {3390, 2880}, kExposureGroup},
    {u"FH4", {2340, 3675}, {3435, 3675}, kExposureGroup},
    {u"OAng0", {3435, 2115}, {4560, 1635}, kOccurrenceGroup},
    {u"OH2", {3480, 2115}, {4560, 2115}, kOccurrenceGroup},
    {u"OAng1", {3405, 2100}, {4545, 2490}, kOccurrenceGroup},
    {u"OAng2", {3435, 2895}, {4545, 2520}, kOccurrenceGroup},
    {u"OH3", {3405, 2895}, {4545, 2895}, kOccurrenceGroup},
    {u"OAng3", {3405, 2880}, {4590, 3315}, kOccurrenceGroup},
    {u"OAng4", {3435, 3675}, {4530, 3300}, kOccurrenceGroup},
    {u"OH4", {3435, 3675}, {4530, 3675}, kOccurrenceGroup},
    {u"OAng5", {3405, 3675}, {4560, 4110}, kOccurrenceGroup},
    {u"AAng0", {4560, 2100}, {5760, 1635}, kAvoidanceGroup},
    {u"AH1", {4545, 2115}, {5760, 2115}, kAvoidanceGroup},
    {u"AAng1", {4620, 2490}, {5820, 2115}, kAvoidanceGroup},
    {u"AH2", {4545, 2505}, {5715, 2505}, kAvoidanceGroup},
    {u"AAng2", {4545, 2880}, {5745, 2505}, kAvoidanceGroup},
    {u"AH3", {4530, 2895}, {5715, 2895}, kAvoidanceGroup},
    {u"AAng3", {4545, 3285}, {5745, 2910}, kAvoidanceGroup},
    {u"AH4", {4500, 3300}, {5685, 3300}, kAvoidanceGroup},
    {u"AAng4", {4530, 3675}, {5730, 3300}, kAvoidanceGroup},
    {u"AH5", {4575, 3675}, {5670, 3675}, kAvoidanceGroup},
    {u"AAng5", {4545, 4125}, {5700, 3675}, kAvoidanceGroup},
    {u"AH6", {4500, 4110}, {5685, 4110}, kAvoidanceGroup},
}};

/// The columns of the graph's branches and of its end, and the rows of the risk indexes 0 to 6.
inline constexpr int kSeverityColumn = 1305;
inline constexpr int kExposureColumn = 2355;
inline constexpr int kOccurrenceColumn = 3435;
inline constexpr int kAvoidanceColumn = 4545;
inline constexpr int kEndColumn = 5760;
inline constexpr std::array<int, 7> kIndexRows{1620, 2115, 2505, 2895, 3300, 3675, 4110};

/// The stage marker, which no step ever puts out.
inline constexpr QStringView kStartLine = u"strtLin1";
/// The arrow head at the end of the start line, in the colour of the stage.
inline constexpr QStringView kArrowName = u"ArowendShape";
inline constexpr std::array<QPoint, 3> kArrow{{{1065, 2475}, {1065, 2715}, {1320, 2595}}};

/// Where branches meet, and where they come to their end. The ends of lines that meet lie a few
/// twips apart; a dot joins them.
inline constexpr std::array<QPoint, 23> kNodes{{
    {1305, 1620}, {1305, 2115}, {1305, 3285},  //
    {2355, 2895}, {2355, 3285}, {2355, 3675},  //
    {3435, 2115}, {3435, 2895}, {3435, 3675},  //
    {4560, 1620}, {4560, 2115}, {4560, 2505}, {4560, 2895},
    {4560, 3300}, {4560, 3675}, {4560, 4110},  //
    {5760, 1620}, {5760, 2115}, {5760, 2505}, {5760, 2895},
    {5760, 3300}, {5760, 3675}, {5760, 4110},
}};
/// How far, along each axis, an end of a line may lie from the node that it belongs to.
inline constexpr int kNodeReach = 90;

/// The columns of the graph: where each decision is taken, and the index at the end. Their heads
/// are labels of the form, above the boxes in which the decisions are taken.
inline constexpr std::array<QRect, 5> kColumns{{
    {1185, 1305, 1065, 3030},
    {2250, 1305, 1080, 3030},
    {3330, 1305, 1110, 3030},
    {4440, 1305, 1500, 3030},
    {5940, 1305, 765, 3030},
}};

/// A label of the column at the graph's right end.
struct IndexLabel {
  QStringView name;
  int index;  ///< its risk index, which is also its caption
  QRect place;
};

inline constexpr std::array<IndexLabel, 7> kIndexLabels{{
    {u"RILbl0", 0, {6180, 1515, 330, 315}},
    {u"RILb1", 1, {6180, 1965, 330, 315}},
    {u"RILb2", 2, {6180, 2355, 330, 315}},
    {u"RILbl3", 3, {6180, 2775, 330, 315}},
    {u"RILbl4", 4, {6180, 3180, 330, 315}},
    {u"RILbl5", 5, {6180, 3555, 330, 315}},
    {u"RILbl6", 6, {6180, 3930, 330, 315}},
}};

/// How a fixed text of the graph stands.
enum class TextKind {
  kBranch,  ///< on top of a line, from the left
  kLevel    ///< a short word on the line itself
};

struct GraphText {
  QStringView text;
  QStringView tip;  ///< empty where it needs none
  TextKind kind;
  QRect place;
  QStringView line;  ///< the line that it names
};

inline constexpr std::array<GraphText, 28> kTexts{{
    {u"Start", {}, TextKind::kBranch, {240, 2310, 780, 195}, u"strtLin1"},
    {u"None.", {}, TextKind::kBranch, {1380, 1380, 900, 195}, u"NoneLn"},
    {u"S1, Slight", {}, TextKind::kBranch, {1380, 1875, 900, 195}, u"SEH1_2"},
    {u"S2, Serious", {}, TextKind::kBranch, {1380, 3045, 900, 195}, u"SH3"},
    {u"  F1, F2",
     u"F1, Seldom or F2, Frequent",
     TextKind::kBranch,
     {2415, 1875, 960, 195},
     u"SEH1_2"},
    {u"F1, Seldom", {}, TextKind::kBranch, {2415, 2640, 960, 195}, u"FH3"},
    {u"F2, Frequent", {}, TextKind::kBranch, {2415, 3435, 960, 195}, u"FH4"},
    {u"O1", u"Low", TextKind::kLevel, {4035, 1698, 255, 195}, u"OAng0"},
    {u"O2", u"Medium", TextKind::kLevel, {4035, 2018, 255, 195}, u"OH2"},
    {u"O3", u"High", TextKind::kLevel, {4035, 2270, 255, 195}, u"OAng1"},
    {u"O1", u"Low", TextKind::kLevel, {4035, 2545, 255, 195}, u"OAng2"},
    {u"O2", u"Medium", TextKind::kLevel, {4035, 2798, 255, 195}, u"OH3"},
    {u"O3", u"High", TextKind::kLevel, {4035, 3059, 255, 195}, u"OAng3"},
    {u"O1", u"Low", TextKind::kLevel, {4035, 3335, 255, 195}, u"OAng4"},
    {u"O2", u"Medium", TextKind::kLevel, {4035, 3578, 255, 195}, u"OH4"},
    {u"O3", u"High", TextKind::kLevel, {4035, 3859, 255, 195}, u"OAng5"},
    {u"A1", u"Possible", TextKind::kLevel, {4860, 1848, 225, 195}, u"AAng0"},
    {u"A2", u"Impossible", TextKind::kLevel, {5130, 2018, 225, 195}, u"AH1"},
    {u"A1", u"Possible", TextKind::kLevel, {4860, 2274, 225, 195}, u"AAng1"},
    {u"A2", u"Impossible", TextKind::kLevel, {5130, 2408, 225, 195}, u"AH2"},
    {u"A1", u"Possible", TextKind::kLevel, {4860, 2664, 225, 195}, u"AAng2"},
    {u"A2", u"Impossible", TextKind::kLevel, {5130, 2798, 225, 195}, u"AH3"},
    {u"A1", u"Possible", TextKind::kLevel, {4860, 3063, 225, 195}, u"AAng3"},
    {u"A2", u"Impossible", TextKind::kLevel, {5130, 3202, 225, 195}, u"AH4"},
    {u"A1", u"Possible", TextKind::kLevel, {4860, 3449, 225, 195}, u"AAng4"},
    {u"A2", u"Impossible", TextKind::kLevel, {5130, 3578, 225, 195}, u"AH5"},
    {u"A1", u"Possible", TextKind::kLevel, {4860, 3863, 225, 195}, u"AAng5"},
    {u"A2", u"Impossible", TextKind::kLevel, {5130, 4012, 225, 195}, u"AH6"},
}};

/// A cell of the matrix; its colour and words stand in the model under the same name. Neighbouring
/// cells share their edge and overlap by as much.
struct CellPlace {
  QStringView name;
  QRect place;
};

inline constexpr std::array<CellPlace, 20> kCells{{
    {u"Rsk1", {8235, 4680, 945, 555}},   {u"Rsk2", {9165, 4680, 945, 555}},
    {u"Rsk3", {10095, 4680, 945, 555}},  {u"Rsk4", {11025, 4680, 945, 555}},
    {u"Rsk5", {11955, 4680, 900, 555}},  {u"Rsk6", {8235, 4170, 945, 555}},
    {u"Rsk7", {9165, 4170, 945, 555}},   {u"Rsk8", {10095, 4170, 945, 555}},
    {u"Rsk9", {11025, 4170, 945, 555}},  {u"Rsk10", {11955, 4170, 900, 555}},
    {u"Rsk11", {8235, 3630, 945, 555}},  {u"Rsk12", {9165, 3630, 945, 555}},
    {u"Rsk13", {10095, 3630, 945, 555}}, {u"Rsk14", {11025, 3630, 945, 555}},
    {u"Rsk15", {11955, 3630, 900, 555}}, {u"Rsk16", {8235, 3090, 945, 555}},
    {u"Rsk17", {9165, 3090, 945, 555}},  {u"Rsk18", {10095, 3090, 945, 555}},
    {u"Rsk19", {11025, 3090, 945, 555}}, {u"Rsk20", {11955, 3090, 900, 555}},
}};

/// A head of a column (class) or of a row (severity score) of the matrix.
struct MatrixHead {
  QStringView name;
  QStringView text;
  QRect place;
};

inline constexpr std::array<MatrixHead, 5> kColumnHeads{{
    {u"Label68", u" 4", {8235, 2790, 945, 270}},
    {u"Label69", u"5-7", {9165, 2790, 945, 270}},
    {u"Label70", u"8-10", {10095, 2790, 945, 270}},
    {u"Label71", u"11-13", {11025, 2790, 945, 270}},
    {u"Label47", u"14-15", {11955, 2790, 900, 270}},
}};
inline constexpr std::array<MatrixHead, 4> kRowHeads{{
    {u"Label64", u"1", {7890, 4680, 315, 555}},
    {u"Label65", u"2", {7890, 4170, 315, 555}},
    {u"Label66", u"3", {7890, 3630, 315, 555}},
    {u"Label67", u"4", {7890, 3090, 315, 555}},
}};
/// The corner between the heads, which says what they count.
inline constexpr QRect kHeadCorner{7740, 2790, 465, 270};

inline constexpr QStringView kMarkerName = u"MarkerFlag";
inline constexpr QSize kMarkerSize{375, 300};
inline constexpr QPoint kMarkerOffset{270, 140};  ///< from the cell's top left corner

/// The room that each part needs, all its pieces and a margin included.
inline constexpr QRect kGraphFrame{105, 1275, 6630, 3090};
inline constexpr QRect kMatrixFrame{7620, 2715, 5325, 2610};

/// The piece of this name, or null.
[[nodiscard]] const GraphLine* LineNamed(QStringView name) noexcept;
[[nodiscard]] const IndexLabel* IndexLabelNamed(QStringView name) noexcept;
[[nodiscard]] const CellPlace* CellNamed(QStringView name) noexcept;

/// Where the marker lies when it is on this cell.
[[nodiscard]] constexpr QRect MarkerPlaceOn(const CellPlace& cell) {
  return {cell.place.topLeft() + kMarkerOffset, kMarkerSize};
}

/// Whether an end of a line belongs to this node.
[[nodiscard]] constexpr bool IsAt(QPoint end, QPoint node) {
  return end.x() >= node.x() - kNodeReach && end.x() <= node.x() + kNodeReach &&
         end.y() >= node.y() - kNodeReach && end.y() <= node.y() + kNodeReach;
}

/// Whether a line begins or ends at this node.
[[nodiscard]] constexpr bool Touches(const GraphLine& line, QPoint node) {
  return IsAt(line.from, node) || IsAt(line.to, node);
}

/// Where an end of a line is painted: on its node, so that lines that meet leave no gap.
[[nodiscard]] constexpr QPoint PaintedEnd(QPoint end) {
  for (const QPoint node : kNodes) {
    if (IsAt(end, node)) return node;
  }
  return end;
}

/// Where a path of this risk index, 0 to 6, comes to its end.
[[nodiscard]] constexpr QPoint EndOfIndex(int index) {
  return {kEndColumn, kIndexRows[static_cast<std::size_t>(index)]};
}

/// Whether a line comes to the graph's right end in the row of this risk index.
[[nodiscard]] constexpr bool EndsAtIndex(const GraphLine& line, int index) {
  return IsAt(line.to, EndOfIndex(index));
}

}  // namespace kestrix::risk_graph
