#pragma once

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QHash>
#include <QString>

#include "paper/Document.h"

namespace kestrix::paper {

// Ink on white paper; the lead colour stays readable in black and white.
inline const QColor kInk(0x1c, 0x1c, 0x1c);
inline const QColor kLead(0x0b, 0x4f, 0x8a);
inline const QColor kSoft(0xee, 0xf1, 0xf5);
inline const QColor kLine(0x9a, 0xa3, 0xaf);

inline constexpr double kMarginMm = 15;
inline constexpr double kHeadMm = 8;  ///< from the margin to the text
inline constexpr double kFootMm = 8;

inline constexpr double kBodyPoints = 9.5;
inline constexpr double kSmallPoints = 7.5;
inline constexpr double kLeading = 1.15;  ///< of the height that the font asks for

/// How a kind of text is set, in points.
struct Setting {
  double size = kBodyPoints;
  double above = 0;
  double below = 4;
  bool bold = false;
  bool lead = false;
};
[[nodiscard]] Setting SettingOf(const Heading& heading);
[[nodiscard]] Setting SettingOf(const Paragraph& paragraph);

/// Counts the characters of texts that no installed font shows; pages have a box for each.
class MissingGlyphs {
 public:
  MissingGlyphs();
  void Look(const QString& text);
  [[nodiscard]] int Count() const { return count_; }

 private:
  QFontMetrics metrics_;
  QHash<char32_t, bool> known_;
  int count_ = 0;
};

/// The font of a size in points on a device of `dots` per inch.
[[nodiscard]] QFont FontOf(double points, int dots, bool bold = false);
inline constexpr const char16_t* kTypedFamily = u"DejaVu Sans Mono";

}  // namespace kestrix::paper
