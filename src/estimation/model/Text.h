#pragma once

#include <QStringView>
#include <string_view>

namespace kestrix::model {

/// A colour as 0xRRGGBB. `QColor(QRgb)` takes it as it is; the model itself paints nothing.
using Rgb = quint32;

/// Texts of the model are the same when every character is: exact, case and blanks included.
[[nodiscard]] constexpr bool SameText(QStringView left, QStringView right) noexcept {
  const auto units = [](QStringView text) {
    return std::u16string_view(text.utf16(), static_cast<std::size_t>(text.size()));
  };
  return units(left) == units(right);
}

}  // namespace kestrix::model
