#include "estimation/model/RiskGraphRules.h"

#include <algorithm>

namespace kestrix::model {
namespace {

constexpr std::array kExposures{kExposureAny, kExposureSeldom, kExposureFrequent};

// Where no rule stands.
constexpr int kNone = -1;

template <std::size_t N>
constexpr int PlaceOf(QStringView text, const std::array<QStringView, N>& texts) noexcept {
  for (std::size_t place = 0; place < N; ++place) {
    if (SameText(text, texts[place])) return static_cast<int>(place);
  }
  return kNone;
}

constexpr std::size_t Slot(int exposure, int occurrence) {
  return static_cast<std::size_t>(exposure) * kOccurrenceItems.size() +
         static_cast<std::size_t>(occurrence);
}

constexpr std::size_t Slot(int exposure, int occurrence, int avoidance) {
  return Slot(exposure, occurrence) * kAvoidanceItems.size() + static_cast<std::size_t>(avoidance);
}

constexpr std::size_t kPairs = kExposures.size() * kOccurrenceItems.size();
constexpr std::size_t kTriples = kPairs * kAvoidanceItems.size();

// The tables are turned into direct look-ups while compiling, so that an evaluation compares each
// text once and not once a row. Filled from the last row up: the first row that fits remains.
consteval std::array<int, kPairs> OccurrenceLookUp() {
  std::array<int, kPairs> rows{};
  rows.fill(kNone);
  for (std::size_t row = kOccurrenceRules.size(); row-- > 0;) {
    const OccurrenceRule& rule = kOccurrenceRules[row];
    rows[Slot(PlaceOf(rule.exposure, kExposures), PlaceOf(rule.occurrence, kOccurrenceItems))] =
        static_cast<int>(row);
  }
  return rows;
}

consteval std::array<int, kTriples> AvoidanceLookUp() {
  std::array<int, kTriples> rows{};
  rows.fill(kNone);
  for (std::size_t row = kAvoidanceRules.size(); row-- > 0;) {
    const AvoidanceRule& rule = kAvoidanceRules[row];
    rows[Slot(PlaceOf(rule.exposure, kExposures), PlaceOf(rule.occurrence, kOccurrenceItems),
              PlaceOf(rule.avoidance, kAvoidanceItems))] = static_cast<int>(row);
  }
  return rows;
}

constexpr auto kOccurrenceRows = OccurrenceLookUp();
constexpr auto kAvoidanceRows = AvoidanceLookUp();

}  // namespace

const SeverityRule* SeverityRuleFor(QStringView severity) noexcept {
  const auto found = std::ranges::find_if(kSeverityRules, [severity](const SeverityRule& rule) {
    return SameText(rule.severity, severity);
  });
  return found == kSeverityRules.end() ? nullptr : &*found;
}

const ExposureRule* ExposureRuleFor(QStringView exposure, QStringView severity) noexcept {
  const auto found = std::ranges::find_if(kExposureRules, [&](const ExposureRule& rule) {
    return SameText(rule.exposure, exposure) && SameText(rule.severity, severity);
  });
  return found == kExposureRules.end() ? nullptr : &*found;
}

const OccurrenceRule* OccurrenceRuleFor(QStringView occurrence, QStringView exposure) noexcept {
  const int exposure_place = PlaceOf(exposure, kExposures);
  const int occurrence_place = PlaceOf(occurrence, kOccurrenceItems);
  if (exposure_place == kNone || occurrence_place == kNone) return nullptr;
  const int row = kOccurrenceRows[Slot(exposure_place, occurrence_place)];
  return row == kNone ? nullptr : &kOccurrenceRules[static_cast<std::size_t>(row)];
}

const AvoidanceRule* AvoidanceRuleFor(QStringView avoidance, QStringView occurrence,
                                      QStringView exposure) noexcept {
  const int exposure_place = PlaceOf(exposure, kExposures);
  const int occurrence_place = PlaceOf(occurrence, kOccurrenceItems);
  const int avoidance_place = PlaceOf(avoidance, kAvoidanceItems);
  if (exposure_place == kNone || occurrence_place == kNone || avoidance_place == kNone) {
    return nullptr;
  }
  const int row = kAvoidanceRows[Slot(exposure_place, occurrence_place, avoidance_place)];
  return row == kNone ? nullptr : &kAvoidanceRules[static_cast<std::size_t>(row)];
}

std::optional<int> RiskIndexOf(QStringView severity, QStringView exposure, QStringView occurrence,
                               QStringView avoidance) noexcept {
  if (const AvoidanceRule* rule = AvoidanceRuleFor(avoidance, occurrence, exposure)) {
    return rule->index;
  }
  if (!IsUnsetLevel(avoidance)) return std::nullopt;
  if (const OccurrenceRule* rule = OccurrenceRuleFor(occurrence, exposure)) return rule->index;
  if (!IsUnsetLevel(occurrence) || !IsUnsetLevel(exposure)) return std::nullopt;
  const SeverityRule* rule = SeverityRuleFor(severity);
  return rule == nullptr ? std::nullopt : rule->index;
}

}  // namespace kestrix::model
