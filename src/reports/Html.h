#pragma once

#include <QByteArray>

#include "paper/Document.h"

namespace kestrix::reports {

/// A document as one HTML file: real headings, tables with heads, pictures and drawings within it,
/// so that browsers show it and word processors open it for editing. Its links lead within it, and
/// nothing in it runs. It needs a QGuiApplication where the document has drawings.
[[nodiscard]] QByteArray HtmlBytes(const paper::Document& document);

}  // namespace kestrix::reports
