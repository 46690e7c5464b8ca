#include "estimation/model/RiskGraphRules.h"

#include <algorithm>

namespace kestrix::model {
namespace {

// The line of two paths: an occurrence puts out what a severity without a hazard lit of it.
constexpr QStringView kSharedLine = u"NoneLn2";

/// The first row of a table that fits, or null.
template <typename Table, typename Fits>
const typename Table::value_type* FirstOf(const Table& table, Fits fits) noexcept {
  const auto found = std::ranges::find_if(table, fits);
  return found == table.end() ? nullptr : &*found;
}

}  // namespace

const SeverityRule* SeverityRuleFor(QStringView severity) noexcept {
  return FirstOf(kSeverityRules,
                 [&](const auto& rule) { return SameText(rule.severity, severity); });
}

const ExposureRule* ExposureRuleFor(QStringView exposure, QStringView severity) noexcept {
  return FirstOf(kExposureRules, [&](const auto& rule) {
    return SameText(rule.exposure, exposure) && SameText(rule.severity, severity);
  });
}

const OccurrenceRule* OccurrenceRuleFor(QStringView occurrence, QStringView exposure) noexcept {
  return FirstOf(kOccurrenceRules, [&](const auto& rule) {
    return SameText(rule.occurrence, occurrence) && SameText(rule.exposure, exposure);
  });
}

const AvoidanceRule* AvoidanceRuleFor(QStringView avoidance, QStringView occurrence,
                                      QStringView exposure) noexcept {
  return FirstOf(kAvoidanceRules, [&](const auto& rule) {
    return SameText(rule.avoidance, avoidance) && SameText(rule.occurrence, occurrence) &&
           SameText(rule.exposure, exposure);
  });
}

LitPath PathOf(QStringView severity, QStringView exposure, QStringView occurrence,
               QStringView avoidance) {
  LitPath path;
  const auto light = [&path](const auto& lines, QStringView index_label) {
    for (const QStringView line : lines) {
      if (!path.lines.contains(line)) path.lines.append(line);
    }
    path.index_label = index_label;
  };
  const auto is_chosen = [](QStringView level) { return !SameText(level, kUnsetLevel); };
  if (const SeverityRule* rule = SeverityRuleFor(severity)) {
    light(rule->lines, rule->index_label);
    if (rule->index) return path;
  }

  // The one exposure of "S1, Slight" is in force before anybody chooses it.
  QStringView exposure_in_force = is_chosen(exposure) ? exposure : QStringView();
  if (is_chosen(exposure)) {
    path.index_label = {};
    if (const ExposureRule* rule = ExposureRuleFor(exposure, severity)) light(rule->lines, {});
  } else if (SameText(severity, kSeveritySlight)) {
    exposure_in_force = kExposureAny;
  }
  if (is_chosen(occurrence)) {
    path.index_label = {};
    path.lines.removeAll(kSharedLine);
    if (const OccurrenceRule* rule = OccurrenceRuleFor(occurrence, exposure_in_force)) {
      light(rule->lines, rule->index_label);
    }
  }
  if (is_chosen(avoidance)) {
    path.index_label = {};
    if (const AvoidanceRule* rule = AvoidanceRuleFor(
            avoidance, is_chosen(occurrence) ? occurrence : QStringView(), exposure_in_force)) {
      light(LineNames{rule->line}, rule->index_label);
    }
  }
  return path;
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
