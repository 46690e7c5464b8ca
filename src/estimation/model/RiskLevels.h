#pragma once

#include <QStringView>
#include <array>
#include <span>

#include "estimation/model/Text.h"

/// What is estimated: the four parameters, their levels, and the fields of a task that keep them.
///
/// The parameters are the elements of risk of ISO 12100:2010, 5.5.2: the severity of harm (5.5.2.2)
/// and, for the probability of its occurrence (5.5.2.3), exposure, the hazardous event, and the
/// possibility of avoidance. A level is its text: that text is chosen, compared and stored.
namespace kestrix::model {

/// Every task is estimated twice, before and after the recommendations.
enum class Stage { kBefore = 0, kAfter = 1 };

enum class Parameter { kSeverity = 0, kExposure = 1, kOccurrence = 2, kAvoidance = 3 };
inline constexpr std::array kParameters{Parameter::kSeverity, Parameter::kExposure,
                                        Parameter::kOccurrence, Parameter::kAvoidance};

[[nodiscard]] constexpr std::size_t IndexOf(Stage stage) {
  return static_cast<std::size_t>(stage);
}
[[nodiscard]] constexpr std::size_t IndexOf(Parameter parameter) {
  return static_cast<std::size_t>(parameter);
}

// Levels, letter for letter: studies hold these texts, and every comparison is against them.
inline constexpr QStringView kSeverityNone = u"None.";
inline constexpr QStringView kSeveritySlight = u"S1, Slight";
inline constexpr QStringView kSeveritySerious = u"S2, Serious";
inline constexpr QStringView kSeverityReset = u"Reset";
inline constexpr QStringView kExposureAny = u"F1, F2";
inline constexpr QStringView kExposureSeldom = u"F1, Seldom";
inline constexpr QStringView kExposureFrequent = u"F2, Frequent";
inline constexpr QStringView kOccurrenceLow = u"O1, Low";
inline constexpr QStringView kOccurrenceMedium = u"O2, Midium";
inline constexpr QStringView kOccurrenceHigh = u"O3, High";
inline constexpr QStringView kAvoidancePossible = u"A1, Possible";
inline constexpr QStringView kAvoidanceImpossible = u"A2, Impossible";

/// The unset word of the severity, of its level and of its statement alike.
inline constexpr QStringView kUnsetSeverity = kSeverityReset;
/// The unset word of the other three parameters.
inline constexpr QStringView kUnsetLevel = u"N.A.";

[[nodiscard]] constexpr QStringView UnsetWordOf(Parameter parameter) {
  return parameter == Parameter::kSeverity ? kUnsetSeverity : kUnsetLevel;
}

/// A level that nobody has chosen: an empty box, or the unset word of a stored field.
[[nodiscard]] constexpr bool IsUnsetLevel(QStringView text) {
  return text.isEmpty() || SameText(text, kUnsetLevel);
}

// The items of the level boxes in the order in which they are offered.
inline constexpr std::array kSeverityItems{kSeverityNone, kSeveritySlight, kSeveritySerious,
                                           kSeverityReset};
inline constexpr std::array kExposureItemsOfSlight{kExposureAny};
inline constexpr std::array kExposureItemsOfSerious{kExposureSeldom, kExposureFrequent};
inline constexpr std::array kOccurrenceItems{kOccurrenceLow, kOccurrenceMedium, kOccurrenceHigh};
inline constexpr std::array kAvoidanceItems{kAvoidancePossible, kAvoidanceImpossible};

/// The exposure levels that may be chosen behind this severity; none behind any other text.
[[nodiscard]] constexpr std::span<const QStringView> ExposureItemsOf(QStringView severity) {
  if (SameText(severity, kSeveritySlight)) return kExposureItemsOfSlight;
  if (SameText(severity, kSeveritySerious)) return kExposureItemsOfSerious;
  return {};
}

/// The fields of a task row that keep one stage. The two stages differ in these names only, so no
/// code asks for the stage except to fetch its row of names.
struct StageFields {
  std::array<QStringView, 4> level;      ///< by Parameter: the level text
  QStringView risk_index;                ///< 0 to 6
  std::array<QStringView, 4> statement;  ///< by Parameter: the text of the chosen statement
  std::array<QStringView, 4> score;      ///< by Parameter: the number of the chosen statement
  QStringView spare_score;               ///< kept in the row, read and written by no estimation
  QStringView picture;                   ///< file name of the stage's picture

  [[nodiscard]] constexpr QStringView LevelOf(Parameter parameter) const {
    return level[IndexOf(parameter)];
  }
  [[nodiscard]] constexpr QStringView StatementOf(Parameter parameter) const {
    return statement[IndexOf(parameter)];
  }
  [[nodiscard]] constexpr QStringView ScoreOf(Parameter parameter) const {
    return score[IndexOf(parameter)];
  }
};

inline constexpr std::array<StageFields, 2> kStageFields{{
    {.level = {u"SevertyCbo", u"ExposureCbo", u"occurrenceCbo", u"avoidanceCbo"},
     .risk_index = u"RiskIndex",
     .statement = {u"Chk_OptnSe", u"Chk_OptnEx", u"Chk_OptnOc", u"Chk_OptnAv"},
     .score = {u"1Chk_OptnSltd", u"2Chk_OptnSltd", u"3Chk_OptnSltd", u"4Chk_OptnSltd"},
     .spare_score = u"5Chk_OptnSltd",
     .picture = u"PicBfrRcmdtn"},
    {.level = {u"SevertyCboAftr", u"ExposureCboAftr", u"occurrenceCboAftr", u"avoidanceCboAftr"},
     .risk_index = u"RiskIndexAftr",
     .statement = {u"Chk_OptnSeAftr", u"Chk_OptnExAftr", u"Chk_OptnOcAftr", u"Chk_OptnAvAftr"},
     .score = {u"1Chk_OptnSltdAftr", u"2Chk_OptnSltdAftr", u"3Chk_OptnSltdAftr",
               u"4Chk_OptnSltdAftr"},
     .spare_score = u"5Chk_OptnSltdAftr",
     .picture = u"PicAftrRcmdtn"},
}};

[[nodiscard]] constexpr const StageFields& FieldsOf(Stage stage) {
  return kStageFields[IndexOf(stage)];
}

}  // namespace kestrix::model
