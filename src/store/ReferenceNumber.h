#pragma once

#include <QString>
#include <optional>

namespace kestrix {

/// `text` in the form "00.00": at least two digits before the point, two behind it, halves rounded
/// away from zero. 3.5 is "03.50" and 100 is "100.00"; any number of digits is kept exactly.
/// The desktop's decimal sign is taken for the point as well. Nothing for a text that is no plain
/// decimal number, the empty one included.
[[nodiscard]] std::optional<QString> ReferenceNumber(const QString& text);

}  // namespace kestrix
