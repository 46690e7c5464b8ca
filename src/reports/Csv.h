#pragma once

#include <QByteArray>

#include "reports/Report.h"

namespace kestrix::reports {

/// The register as CSV after RFC 4180: UTF-8 with a byte order mark, CRLF, a field in quotes where
/// it needs them. Dates are ISO dates; what is no date stays the stored text. A text that a
/// spreadsheet would take for a formula gets an apostrophe in front.
[[nodiscard]] QByteArray CsvBytes(const Report& report);

/// `text` with one apostrophe in front where it begins with = + - @, a tab or a line end, or with
/// an apostrophe and one of these; so that a reader takes exactly one away.
[[nodiscard]] QString Protected(const QString& text);

}  // namespace kestrix::reports
