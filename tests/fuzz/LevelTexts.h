#pragma once

#include <QString>
#include <array>

#include "Fuzz.h"
#include "estimation/model/RiskModel.h"

namespace kestrix::fuzz {

/// A level text out of an input: mostly one that the model knows, of whichever parameter, or one
/// that differs from it by a little, sometimes any text at all.
inline QString TakeLevel(Input& input) {
  static constexpr std::array kKnown{
      model::kSeverityNone,      model::kSeveritySlight,     model::kSeveritySerious,
      model::kSeverityReset,     model::kExposureAny,        model::kExposureSeldom,
      model::kExposureFrequent,  model::kOccurrenceLow,      model::kOccurrenceMedium,
      model::kOccurrenceHigh,    model::kAvoidancePossible,  model::kAvoidanceImpossible,
      model::kUnsetLevel,        QStringView(u""),           QStringView(u"Reset "),
      QStringView(u"f1, f2"),    QStringView(u"O2, Medium"), QStringView(u"A1, Possible\n"),
      QStringView(u"S1,Slight"), QStringView(u"RILbl6"),     QStringView(u"strtLin1")};
  const auto choice = static_cast<std::size_t>(input.Upto(static_cast<int>(kKnown.size()) + 1));
  return choice < kKnown.size() ? kKnown[choice].toString() : input.Line();
}

/// A level text of a parameter: as above, but more often one that fits.
inline QString TakeLevelOf(model::Parameter parameter, Input& input) {
  using Items = std::span<const QStringView>;
  static constexpr std::array kExposures{model::kExposureAny, model::kExposureSeldom,
                                         model::kExposureFrequent};
  static constexpr std::array<Items, 4> kItems{model::kSeverityItems, kExposures,
                                               model::kOccurrenceItems, model::kAvoidanceItems};
  const Items items = kItems[model::IndexOf(parameter)];
  const auto choice = static_cast<std::size_t>(input.Upto(7));
  return choice < items.size() ? items[choice].toString() : TakeLevel(input);
}

}  // namespace kestrix::fuzz
