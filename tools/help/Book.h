#pragma once

#include <QIODevice>

#include "Manual.h"
#include "Pictures.h"

namespace kestrix::help {

/// Prints the whole manual as a PDF: A4, a title page with the text before the first chapter, the
/// table of contents, and the chapters, each on a new page. Bookmarks, the lines of the contents
/// and the links of the text lead to their headings. A heading never stands alone at the foot of a
/// page, nor does a picture without its caption or a message without its advice. Every page but the
/// first bears its number, counted from the title page, so that it is the number that a PDF reader
/// shows.
///
/// It needs a QGuiApplication, any platform will do. Fails as Pictures does; a device that can't be
/// written to fails with kDeviceError.
void PrintBook(const Manual& manual, const Pictures& pictures, QIODevice& device);

/// The lines of the pages behind the table of contents, page by page, as PrintBook breaks them. A
/// picture's line holds the one character that stands for it.
[[nodiscard]] std::vector<QStringList> LinesOfPages(const Manual& manual, const Pictures& pictures);

}  // namespace kestrix::help
