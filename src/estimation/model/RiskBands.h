#pragma once

#include <QString>
#include <QStringView>
#include <array>
#include <optional>

#include "estimation/model/Text.h"

/// The words and colours of a risk index and of a class, and the verdict on risk reduction:
/// risk evaluation as of ISO 12100:2010, 5.6.
namespace kestrix::model {

inline constexpr Rgb kLightGreen = 0x80FF80;
inline constexpr Rgb kLightOrange = 0xFFC080;
inline constexpr Rgb kRed = 0xFF0000;
/// The green of a class without risk, and the first setting of a label with an index of 0.
inline constexpr Rgb kGreen = 0x00C000;

inline constexpr QStringView kNoRiskText = u"No Risk";
inline constexpr QStringView kLowRiskText = u"Low Risk";
inline constexpr QStringView kMediumRiskText = u"Medium Risk";
inline constexpr QStringView kHighRiskText = u"High Risk";

inline constexpr int kLeastRiskIndex = 0;
inline constexpr int kGreatestRiskIndex = 6;

/// The band of a risk index: its text, and the colour of its shape and of its label.
struct IndexBand {
  QStringView text;
  Rgb colour;
};

inline constexpr std::array<IndexBand, 7> kIndexBands{{
    {kNoRiskText, kLightGreen},
    {kLowRiskText, kLightGreen},
    {kLowRiskText, kLightGreen},
    {kMediumRiskText, kLightOrange},
    {kMediumRiskText, kLightOrange},
    {kHighRiskText, kRed},
    {kHighRiskText, kRed},
}};

/// The band of a risk index from 0 to 6; nothing for any other number. ISO/TR 14121-2:2012, 6.3.
[[nodiscard]] constexpr std::optional<IndexBand> BandOfIndex(int index) noexcept {
  if (index < kLeastRiskIndex || index > kGreatestRiskIndex) return std::nullopt;
  return kIndexBands[static_cast<std::size_t>(index)];
}

inline constexpr QStringView kReducedYes = u"Yes";
inline constexpr QStringView kReducedNo = u"No";
inline constexpr QStringView kReducedUnclear = u"May require further risk reduction.";

/// Whether the index fell. An after index that is still its first 0 counts like any other.
[[nodiscard]] constexpr bool IsReduced(int before, int after) noexcept {
  return before > after;
}

/// "Has the risk been adequately reduced?", from the stored indexes of both stages: "Yes", "No",
/// "May require further risk reduction." for two that are equal, "No Risk" for two of 0.
/// ISO 12100:2010, 5.6; ISO/TR 14121-2:2012, 7 (risk evaluation).
[[nodiscard]] constexpr QStringView Verdict(int before, int after) noexcept {
  if (before > after) return kReducedYes;
  if (before < after) return kReducedNo;
  return before == 0 ? kNoRiskText : kReducedUnclear;
}

/// How a label of the summary names a band: the word behind the number, and the label's colour.
/// Here every word has one colour, unlike the cells of the matrix.
struct LabelBand {
  QStringView word;  ///< with its leading blank, as " (Low Risk)"
  Rgb colour;
};

/// The label of a risk index from 0 to 6; nothing for any other number: the label then keeps the
/// bare number and the colour that it had. ISO/TR 14121-2:2012, 6.3.
[[nodiscard]] std::optional<LabelBand> IndexLabelOf(int index) noexcept;

/// The label of a class behind a severity score: no risk where either is 0, else the word of the
/// matrix cell; nothing where they name no cell (the label then keeps all). Scores 0 to 4, class
/// 0 to 15. ISO/TR 14121-2:2012, 6.5 (hybrid tool).
[[nodiscard]] std::optional<LabelBand> ClassBandOf(int severity, int class_score) noexcept;

/// The number followed by the band's word, as "5 (High Risk)".
[[nodiscard]] QString CaptionOf(int number, const LabelBand& band);

}  // namespace kestrix::model
