#pragma once

#include <QByteArray>

#include "paper/Document.h"
#include "reports/Report.h"

namespace kestrix::reports {

/// The report as a document of sections, as its kind has them. `digest` is that of the report's
/// JSON; its beginning stands on every page. `source` gives the pictures when they are painted, and
/// must live as long as the document.
[[nodiscard]] paper::Document Compose(const Report& report, const QByteArray& digest,
                                      records::Source& source);

/// The cover alone, of a report that has looked at rows alone. It tells neither digest nor number
/// of pages.
[[nodiscard]] paper::Document ComposeCover(const Report& report, records::Source& source);

/// A level as pages tell it, "O2, Medium", and a statement without its leading blank.
[[nodiscard]] QString LevelText(const QString& stored);
[[nodiscard]] QString StatementText(const QString& stored);
/// A band by its form and its word, so that it is told in black and white too.
[[nodiscard]] QString BandText(records::Band band);

}  // namespace kestrix::reports
