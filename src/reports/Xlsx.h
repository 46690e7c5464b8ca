#pragma once

#include <QByteArray>

#include "reports/Report.h"

namespace kestrix::reports {

/// The report as a workbook: Method, Before and After (the matrices with their counts), Register,
/// Actions, Files. Texts are texts, whatever they begin with; dates are dates from 1900-03-01 on.
/// Fails with kCannotOpen where no temporary file can be written.
[[nodiscard]] QByteArray XlsxBytes(const Report& report);

/// `text` as a cell can hold it: a literal "_x0041_" escaped, and at most 32,767 UTF-16 units, cut
/// at a character and with a word that says so.
[[nodiscard]] QString FittingCell(const QString& text);

}  // namespace kestrix::reports
