#include "estimation/model/RiskBands.h"

#include "estimation/model/RiskMatrix.h"

namespace kestrix::model {
namespace {

struct WordOfBand {
  QStringView text;
  LabelBand label;
};

constexpr std::array<WordOfBand, 4> kWords{{
    {kNoRiskText, {u" (No Risk)", kLightGreen}},
    {kLowRiskText, {u" (Low Risk)", kLightGreen}},
    {kMediumRiskText, {u" (Medium Risk)", kLightOrange}},
    {kHighRiskText, {u" (High Risk)", kRed}},
}};

constexpr std::optional<LabelBand> LabelOf(QStringView band_text) noexcept {
  for (const WordOfBand& row : kWords) {
    if (SameText(row.text, band_text)) return row.label;
  }
  return std::nullopt;
}

}  // namespace

std::optional<LabelBand> IndexLabelOf(int index) noexcept {
  const std::optional<IndexBand> band = BandOfIndex(index);
  return band ? LabelOf(band->text) : std::nullopt;
}

std::optional<LabelBand> ClassBandOf(int severity, int class_score) noexcept {
  const MatrixResult result = CellOf(severity, class_score);
  switch (result.kind) {
    case MatrixResult::Kind::kNoRisk:
      return LabelBand{LabelOf(kNoRiskText)->word, kGreen};
    case MatrixResult::Kind::kCell:
      return LabelOf(result.cell->band);
    case MatrixResult::Kind::kUnchanged:
      break;
  }
  return std::nullopt;
}

QString CaptionOf(int number, const LabelBand& band) {
  return QString::number(number).append(band.word);
}

}  // namespace kestrix::model
