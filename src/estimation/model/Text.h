#pragma once

#include <QStringView>
#include <string_view>

namespace kestrix::model {

/// A colour as 0xRRGGBB. `QColor(QRgb)` takes it as it is; the model itself paints nothing.
using Rgb = quint32;

/// Texts of the model are the same when every character is: exact, case and blanks included.
[[nodiscard]] constexpr bool SameText(QStringView left, QStringView right) noexcept {
  return left.size() == right.size() &&
         std::u16string_view(left.utf16(), static_cast<std::size_t>(left.size())) ==
             std::u16string_view(right.utf16(), static_cast<std::size_t>(right.size()));
}

}  // namespace kestrix::model
