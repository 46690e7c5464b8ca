#pragma once

#include <array>

/// The worked example that the program shows of itself: the tasks of a hydraulic press, estimated
/// both ways, before and after what is recommended. Every text and choice is one that a person
/// could type and pick in the forms.
namespace kestrix::worked_example {

/// One estimation: the four levels of the risk graph, and the numbers of the four statements.
struct Estimation {
  const char16_t* severity;
  const char16_t* exposure;  ///< null where the severity leaves one exposure only
  const char16_t* occurrence;
  const char16_t* avoidance;  ///< null where the path ends before it
  std::array<int, 4> scores;  ///< severity, exposure, occurrence, avoidance
};

struct Task {
  const char16_t* reference;
  const char16_t* title;
  const char16_t* location;
  const char16_t* phase;
  const char16_t* primary_hazard;
  const char16_t* hazard_type;
  const char16_t* description;
  const char16_t* recommendation;
  const char16_t* recommendation_type;
  const char16_t* action_by;
  Estimation before;
  Estimation after;
  int index_before;  ///< what the risk graph gives, checked against what the forms show
  int index_after;
};

inline constexpr const char16_t* kOrganisation = u"Press shop";
inline constexpr const char16_t* kProject = u"HP-250";
inline constexpr const char16_t* kStage = u"Design";
inline constexpr const char16_t* kDescription =
    u"Hydraulic press HP-250, 2500 kN, hand-fed, with die cushion and hydraulic power unit.\n"
    u"Limits of the machine: one operator, one tool setter, two shifts, indoor use.";
inline constexpr const char16_t* kPreparedBy = u"A. Ferrand, safety engineer";

inline constexpr std::array<Task, 7> kTasks{{
    {u"1.1",
     u"Load and unload workpieces by hand",
     u"Tool area, front of the press",
     u"Operation",
     u"Mechanical hazards",
     u"Crushing",
     u"The operator reaches between the closing tools to place or take the workpiece while the "
     u"slide starts its stroke. Hands can be crushed between upper and lower tool.",
     u"Guard the tool area with a light curtain of type 4 at the calculated safety distance and "
     u"stop the slide through two monitored valves; feed with a sliding die where the part allows.",
     u"Safeguarding",
     u"Design engineer",
     {u"S2, Serious", u"F2, Frequent", u"O3, High", u"A2, Impossible", {4, 5, 4, 5}},
     {u"S2, Serious", u"F1, Seldom", u"O1, Low", u"A1, Possible", {4, 2, 1, 3}},
     6,
     1},
    {u"1.2",
     u"Set and change the tools",
     u"Slide and bed",
     u"Setting",
     u"Mechanical hazards",
     u"Crushing",
     u"The tool setter works under the raised slide. Leakage or a burst hose lets the slide sink "
     u"by its own weight.",
     u"Fit a mechanical restraint that holds the slide at the top, interlocked with the setting "
     u"mode, and reduce the closing speed to 10 mm/s with hold-to-run control.",
     u"Safeguarding",
     u"Design engineer",
     {u"S2, Serious", u"F1, Seldom", u"O3, High", u"A2, Impossible", {4, 4, 3, 5}},
     {u"S2, Serious", u"F1, Seldom", u"O1, Low", u"A1, Possible", {4, 4, 1, 1}},
     4,
     1},
    {u"2.1",
     u"Service the hydraulic power unit",
     u"Hydraulic power unit, rear",
     u"Maintenance",
     u"Mechanical hazards",
     u"High pressure",
     u"A fitting is opened while an accumulator still holds pressure. Oil is ejected at high "
     u"pressure into skin or eyes.",
     u"Discharge the accumulators automatically when the main switch is opened, fit a gauge at "
     u"each accumulator, and lock the switch before any fitting is opened.",
     u"Inherently safe design",
     u"Maintenance manager",
     {u"S2, Serious", u"F1, Seldom", u"O2, Midium", u"A2, Impossible", {3, 3, 3, 5}},
     {u"S1, Slight", nullptr, u"O2, Midium", u"A1, Possible", {2, 3, 2, 1}},
     3,
     0},
    {u"2.2",
     u"Find faults in the control cabinet",
     u"Control cabinet",
     u"Fault-finding",
     u"Electrical hazards",
     u"Live parts",
     u"Measurements are taken with the door open and the supply on. Live terminals at 400 V lie "
     u"beside the test points.",
     u"Cover live terminals to IP2X, bring the test points out behind a panel at 24 V, and allow "
     u"the work to electrically skilled persons only.",
     u"Inherently safe design",
     u"Electrical engineer",
     {u"S2, Serious", u"F1, Seldom", u"O2, Midium", u"A1, Possible", {4, 3, 2, 3}},
     {u"S1, Slight", nullptr, u"O1, Low", nullptr, {1, 3, 1, 1}},
     2,
     0},
    {u"3.1",
     u"Run the press in production",
     u"Work place of the operator",
     u"Operation",
     u"Noise hazards",
     u"Manufacturing process",
     u"Punching and the pumps give 92 dB(A) at the operator's ear over the whole shift.",
     u"Mount the pumps on dampers in a lined housing and grind the punches with a shear angle; "
     u"below 85 dB(A) no hearing protection is needed.",
     u"Inherently safe design",
     u"Design engineer",
     {u"S2, Serious", u"F2, Frequent", u"O2, Midium", u"A1, Possible", {3, 5, 4, 3}},
     {u"S1, Slight", nullptr, u"O2, Midium", u"A2, Impossible", {2, 5, 2, 3}},
     4,
     1},
    {u"4.1",
     u"Clean the bed and remove scrap",
     u"Bed, scrap chute",
     u"Cleaning",
     u"Mechanical hazards",
     u"Cutting or severing",
     u"Sharp scrap is taken out by hand through the chute; edges cut hands and forearms.",
     u"Lead the scrap away by a conveyor, and give tongs and cut-resistant gloves for what is "
     u"left.",
     u"Information for use",
     u"Production manager",
     {u"S1, Slight", nullptr, u"O3, High", u"A2, Impossible", {2, 4, 4, 3}},
     {u"S1, Slight", nullptr, u"O1, Low", nullptr, {1, 4, 2, 1}},
     2,
     0},
    {u"5.1",
     u"Transport the press to its site",
     u"Whole machine",
     u"Transport",
     u"Mechanical hazards",
     u"Falling objects",
     u"The centre of gravity lies high; with slings at the wrong points the press tips while it "
     u"is lifted.",
     u"Weld on lifting eyes above the centre of gravity, mark them, and draw the sling angles in "
     u"the instruction for use.",
     u"Information for use",
     u"Logistics",
     {u"S2, Serious", u"F1, Seldom", u"O2, Midium", u"A2, Impossible", {4, 2, 3, 5}},
     {u"S2, Serious", u"F1, Seldom", u"O1, Low", u"A2, Impossible", {4, 2, 1, 3}},
     3,
     2},
}};

}  // namespace kestrix::worked_example
