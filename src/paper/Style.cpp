#include "paper/Style.h"

#include <algorithm>
#include <array>

namespace kestrix::paper {

Setting SettingOf(const Heading& heading) {
  static constexpr std::array kLevels{Setting{16, 14, 7, true, true}, Setting{12, 9, 5, true, true},
                                      Setting{10, 6, 3, true, false}};
  const int level = std::clamp(heading.level, 1, static_cast<int>(kLevels.size()));
  return kLevels[static_cast<std::size_t>(level - 1)];
}

Setting SettingOf(const Paragraph& paragraph) {
  switch (paragraph.style) {
    case Paragraph::Style::kSmall:
      return {kSmallPoints, 0, 3, false, false};
    case Paragraph::Style::kTitle:
      return {26, 40, 8, true, true};
    case Paragraph::Style::kSubtitle:
      return {14, 0, 8, false, false};
    case Paragraph::Style::kBody:
      break;
  }
  return {};
}

MissingGlyphs::MissingGlyphs() : metrics_(FontOf(kBodyPoints, 72)) {}

void MissingGlyphs::Look(const QString& text) {
  for (const char32_t c : text.toUcs4()) {
    constexpr char32_t kLastAscii = 0x7E;
    if (c <= kLastAscii) continue;
    auto known = known_.find(c);
    if (known == known_.end()) {
      // What has no shape of its own needs no glyph.
      const QChar::Category category = QChar::category(c);
      const bool shapeless = category == QChar::Other_Control || category == QChar::Other_Format ||
                             category == QChar::Separator_Line ||
                             category == QChar::Separator_Paragraph ||
                             category == QChar::Mark_NonSpacing;
      known = known_.insert(c, shapeless || metrics_.inFontUcs4(c));
    }
    if (!*known) ++count_;
  }
}

QFont FontOf(double points, int dots, bool bold) {
  constexpr double kPointsOfAnInch = 72;
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(static_cast<int>(points * dots / kPointsOfAnInch));
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setBold(bold);
  return font;
}

}  // namespace kestrix::paper
