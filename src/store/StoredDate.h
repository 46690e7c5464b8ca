#pragma once

#include <QDate>
#include <QString>
#include <optional>

namespace kestrix {

/// The date that a day-first reader sees in `text`: 15/02/2013, 1/2/2013, 1-2-13, 1 Feb 2013.
/// Years of two digits lie between 1930 and 2029. Nothing for any other text, a day that the
/// calendar doesn't have included.
[[nodiscard]] std::optional<QDate> ReadDate(const QString& text);
/// "dd/mm/yyyy", as records keep a date.
[[nodiscard]] QString WriteDate(QDate date);

}  // namespace kestrix
