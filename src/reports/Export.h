#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "paper/Pdf.h"
#include "reports/Report.h"

namespace kestrix::reports {

/// The endings of the files that a report can be written to, each with its dot.
[[nodiscard]] QStringList Endings();
/// Whether the file's ending is one of them, in any case.
[[nodiscard]] bool HasFormat(const QString& file);

/// The report in the format that the file's ending tells, which must be one of them. Empty when
/// `progress` ended it. It needs a QGuiApplication, and fails as the writers do.
[[nodiscard]] QByteArray BytesFor(const QString& file, const Report& report,
                                  records::Source& source, const paper::Progress& progress = {});

/// Writes a file that is whole, old or new, at every moment. Fails with kCannotOpen and says why.
void WriteWhole(const QString& path, const QByteArray& bytes);

/// The size of the paper's pages, upright.
[[nodiscard]] QPageSize SizeOf(Paper paper);

}  // namespace kestrix::reports
