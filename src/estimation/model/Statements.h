#pragma once

#include <QStringView>
#include <array>

#include "estimation/model/RiskLevels.h"

/// The descriptive statements of the matrix route: one is chosen for each parameter, and the number
/// of its box is the parameter's score. ISO/TR 14121-2:2012, 6.5 (hybrid tool).
namespace kestrix::model {

/// One of the five statement boxes. A box that is not enabled gives no score.
struct Statement {
  QStringView text;  ///< with its leading blank, as it is stored
  bool enabled = true;
};

inline constexpr int kFirstStatementBox = 1;
inline constexpr int kLastStatementBox = 5;
using StatementSet = std::array<Statement, 5>;

inline constexpr StatementSet kSeverityStatements{{
    {u" Scratches, bruises that are cured by first aid or similar"},
    {u" More severe scratches, bruises, stabbing, which require medical attention from "
     u"professionals"},
    {u" Normally irreversible injury; it will be slightly difficult to continue work after "
     u"healing"},
    {u" Irreversible injury in such a way that it will be very difficult to continue work after "
     u"healing, if possible at all"},
    {u"", false},
}};

inline constexpr StatementSet kExposureStatements{{
    {u"", false},
    {u" Interval between exposure is more than a year"},
    {u" Interval between exposure is more than two weeks but less than or equal to a year"},
    {u" Interval between exposure is more than a day but less than or equal to two weeks"},
    {u" Interval between exposure is more than a hour but less than or equal to a day / interval "
     u"less than or equal to an hour"},
}};

inline constexpr StatementSet kOccurrenceStatements{{
    {u" Negligible: for example, this kind of component never fails so that a hazardous event "
     u"occurs. No possibility of human error"},
    {u" Rarely: for example, it is unlikely this kind of component will fail so that a hazardous "
     u"event occurs. Human error is unlikely."},
    {u" Possible: for example, this kind of component can fail so that a hazardous event occurs. "
     u"Human error is possible."},
    {u" Likely: for example, this kind of component will probably fail so that a hazardous event "
     u"occurs. Human error is likely."},
    {u" Very high: for example, this kind of component is not made for this application. It will "
     u"fail so that a hazardous event occurs. Human behaviour is such that the likelihood of error "
     u"is very high."},
}};

inline constexpr StatementSet kAvoidanceStatements{{
    {u" Likely: for example, it is likely that contact with moving parts behind an interlocked "
     u"guard will be avoided in most cases should the interlocking fail and the movements "
     u"continue."},
    {u" ", false},
    {u" Possible: for example, it is possible to avoid an entanglement hazard where the speed is "
     u"slow and there is sufficient space or otherwise it is easy to avoid moving parts of "
     u"machinery."},
    {u"", false},
    {u" Impossible: for example, it is impossible to avoid a sudden appearance of a powerful laser "
     u"beam, or in case of an explosion."},
}};

inline constexpr std::array<StatementSet, 4> kStatements{
    kSeverityStatements, kExposureStatements, kOccurrenceStatements, kAvoidanceStatements};

/// The five boxes of a parameter; element n - 1 is the box of score n.
[[nodiscard]] constexpr const StatementSet& StatementsOf(Parameter parameter) {
  return kStatements[IndexOf(parameter)];
}

}  // namespace kestrix::model
