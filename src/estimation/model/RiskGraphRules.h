#pragma once

#include <QList>
#include <QStringView>
#include <array>
#include <initializer_list>
#include <optional>

#include "estimation/model/RiskLevels.h"

/// The risk graph: how each choice goes on along the graph, which of its lines that is, and where a
/// finished path ends. ISO/TR 14121-2:2012, 6.3 (risk graph).
///
/// The index and the drawing come from the same rows, so a lit path can't end at another number
/// than the one that is stored.
namespace kestrix::model {

/// Up to four names of lines of the graph, in the order in which they are told.
class LineNames {
 public:
  static constexpr std::size_t kMost = 4;

  constexpr LineNames() = default;
  constexpr LineNames(std::initializer_list<QStringView> names) {
    for (const QStringView name : names) names_[size_++] = name;
  }

  [[nodiscard]] constexpr const QStringView* begin() const { return names_.data(); }
  [[nodiscard]] constexpr const QStringView* end() const { return names_.data() + size_; }
  [[nodiscard]] constexpr const QStringView* data() const { return names_.data(); }
  [[nodiscard]] constexpr std::size_t size() const { return size_; }

 private:
  std::array<QStringView, kMost> names_{};
  std::size_t size_ = 0;
};

/// What a severity opens. "Reset" and any other text have no rule.
struct SeverityRule {
  QStringView severity;
  LineNames lines;
  QStringView index_label;   ///< empty unless the path ends here
  std::optional<int> index;  ///< set where the path ends here
};

inline constexpr std::array<SeverityRule, 3> kSeverityRules{{
    {kSeverityNone, {u"SV2", u"SV3", u"NoneLn", u"NoneLn2"}, u"RILbl0", 0},
    {kSeveritySlight, {u"SV2", u"SEH1_2"}, {}, {}},
    {kSeveritySerious, {u"SV1", u"SH3"}, {}, {}},
}};

/// An exposure counts behind its own severity only.
struct ExposureRule {
  QStringView exposure;
  QStringView severity;
  LineNames lines;
};

inline constexpr std::array<ExposureRule, 3> kExposureRules{{
    {kExposureAny, kSeveritySlight, {u"SEH1_2"}},
    {kExposureSeldom, kSeveritySerious, {u"FV1", u"FH3"}},
    {kExposureFrequent, kSeveritySerious, {u"FV2", u"FH4"}},
}};

/// An occurrence either ends the path (with an index) or opens the avoidance.
struct OccurrenceRule {
  QStringView occurrence;
  QStringView exposure;
  LineNames lines;
  QStringView index_label;   ///< empty unless the path ends here
  std::optional<int> index;  ///< set where the path ends here
};

inline constexpr std::array<OccurrenceRule, 9> kOccurrenceRules{{
    {kOccurrenceLow, kExposureAny, {u"OAng0", u"NoneLn2"}, u"RILbl0", 0},
    {kOccurrenceMedium, kExposureAny, {u"OH2"}, {}, {}},
    {kOccurrenceHigh, kExposureAny, {u"OAng1"}, {}, {}},
    {kOccurrenceLow, kExposureSeldom, {u"OAng2"}, {}, {}},
    {kOccurrenceMedium, kExposureSeldom, {u"OH3"}, {}, {}},
    {kOccurrenceHigh, kExposureSeldom, {u"OAng3"}, {}, {}},
    {kOccurrenceLow, kExposureFrequent, {u"OAng4"}, {}, {}},
    {kOccurrenceMedium, kExposureFrequent, {u"OH4"}, {}, {}},
    {kOccurrenceHigh, kExposureFrequent, {u"OAng5"}, {}, {}},
}};

/// An avoidance ends the path. No row names a severity: the exposure stands for it.
struct AvoidanceRule {
  QStringView avoidance;
  QStringView occurrence;
  QStringView exposure;
  QStringView line;
  QStringView index_label;
  int index;
};

/// In the order in which they are tried; the first that fits counts. The fifth row repeats the
/// third and never comes to its turn. The sixth row fits only a stored avoidance that outlived its
/// path, since "O1, Low" behind "F1, F2" ends the path and offers no avoidance.
inline constexpr std::array<AvoidanceRule, 18> kAvoidanceRules{{
    {kAvoidancePossible, kOccurrenceMedium, kExposureAny, u"AAng0", u"RILbl0", 0},
    {kAvoidanceImpossible, kOccurrenceMedium, kExposureAny, u"AH1", u"RILb1", 1},
    {kAvoidancePossible, kOccurrenceHigh, kExposureAny, u"AAng1", u"RILb1", 1},
    {kAvoidanceImpossible, kOccurrenceHigh, kExposureAny, u"AH2", u"RILb2", 2},
    {kAvoidancePossible, kOccurrenceHigh, kExposureAny, u"AAng1", u"RILb1", 1},
    {kAvoidanceImpossible, kOccurrenceLow, kExposureAny, u"AH2", u"RILb2", 2},
    {kAvoidancePossible, kOccurrenceLow, kExposureSeldom, u"AAng1", u"RILb1", 1},
    {kAvoidanceImpossible, kOccurrenceLow, kExposureSeldom, u"AH2", u"RILb2", 2},
    {kAvoidancePossible, kOccurrenceMedium, kExposureSeldom, u"AAng2", u"RILb2", 2},
    {kAvoidanceImpossible, kOccurrenceMedium, kExposureSeldom, u"AH3", u"RILbl3", 3},
    {kAvoidancePossible, kOccurrenceHigh, kExposureSeldom, u"AAng3", u"RILbl3", 3},
    {kAvoidanceImpossible, kOccurrenceHigh, kExposureSeldom, u"AH4", u"RILbl4", 4},
    {kAvoidancePossible, kOccurrenceLow, kExposureFrequent, u"AAng3", u"RILbl3", 3},
    {kAvoidanceImpossible, kOccurrenceLow, kExposureFrequent, u"AH4", u"RILbl4", 4},
    {kAvoidancePossible, kOccurrenceMedium, kExposureFrequent, u"AAng4", u"RILbl4", 4},
    {kAvoidanceImpossible, kOccurrenceMedium, kExposureFrequent, u"AH5", u"RILbl5", 5},
    {kAvoidancePossible, kOccurrenceHigh, kExposureFrequent, u"AAng5", u"RILbl5", 5},
    {kAvoidanceImpossible, kOccurrenceHigh, kExposureFrequent, u"AH6", u"RILbl6", 6},
}};

/// The rule of this severity, or null: "Reset" and unknown texts open nothing.
/// ISO/TR 14121-2:2012, 6.3; severity of harm: ISO 12100:2010, 5.5.2.2.
[[nodiscard]] const SeverityRule* SeverityRuleFor(QStringView severity) noexcept;

/// The rule of this exposure behind this severity, or null. ISO/TR 14121-2:2012, 6.3.
[[nodiscard]] const ExposureRule* ExposureRuleFor(QStringView exposure,
                                                  QStringView severity) noexcept;

/// The rule of this occurrence behind this exposure, or null. ISO/TR 14121-2:2012, 6.3.
[[nodiscard]] const OccurrenceRule* OccurrenceRuleFor(QStringView occurrence,
                                                      QStringView exposure) noexcept;

/// The first rule that fits this avoidance, occurrence and exposure, or null.
/// ISO/TR 14121-2:2012, 6.3.
[[nodiscard]] const AvoidanceRule* AvoidanceRuleFor(QStringView avoidance, QStringView occurrence,
                                                    QStringView exposure) noexcept;

/// What of the graph is lit by the level texts of a stage, as they are stored: the names of its
/// lines, and of its index label where the path has come to its end.
struct LitPath {
  QList<QStringView> lines;
  QStringView index_label;
};

/// The path of these level texts, as it is drawn when they are chosen one after the other. A level
/// that outlived its path lights what its own rule says. ISO/TR 14121-2:2012, 6.3.
[[nodiscard]] LitPath PathOf(QStringView severity, QStringView exposure, QStringView occurrence,
                             QStringView avoidance);

/// The risk index, 0 to 6, at the end of the path that these level texts describe; nothing where
/// the path has no rule or has not come to its end. Never fails. ISO/TR 14121-2:2012, 6.3.
///
/// The severity counts only as "None." with nothing behind it: the exposure texts tell "S1, Slight"
/// and "S2, Serious" apart. An unset level is an empty text or "N.A.".
[[nodiscard]] std::optional<int> RiskIndexOf(QStringView severity, QStringView exposure,
                                             QStringView occurrence,
                                             QStringView avoidance) noexcept;

}  // namespace kestrix::model
