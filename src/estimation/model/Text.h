#pragma once

#include <QStringView>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace kestrix::model {

/// A colour as 0xRRGGBB. `QColor(QRgb)` takes it as it is; the model itself paints nothing.
using Rgb = quint32;

/// Texts of the model are the same when every character is: exact, case and blanks included.
[[nodiscard]] constexpr bool SameText(QStringView left, QStringView right) noexcept {
  if (left.size() != right.size()) return false;
  const auto size = static_cast<std::size_t>(left.size());
  if (std::is_constant_evaluated()) {
    return std::u16string_view(left.utf16(), size) == std::u16string_view(right.utf16(), size);
  }
  // The library compares such views letter by letter.
  return size == 0 || std::memcmp(left.utf16(), right.utf16(), size * sizeof(char16_t)) == 0;
}

}  // namespace kestrix::model
