#pragma once

#include <QIODevice>
#include <QImage>
#include <functional>

#include "paper/Text.h"

namespace kestrix::paper::book {

/// Gives the picture of a name. What it fails with, printing fails with.
using PictureSource = std::function<QImage(const QString& name)>;

/// Prints a text as a PDF: A4, a title page with the text before the first chapter, the
/// table of contents, and the chapters, each on a new page. Bookmarks, the lines of the contents
/// and the links of the text lead to their headings. A heading never stands alone at the foot of a
/// page, nor does a picture without its caption or a message without its advice. Every page but the
/// first bears its number, counted from the title page, so that it is the number that a PDF reader
/// shows.
///
/// It needs a QGuiApplication, any platform will do. A device that can't be written to fails with
/// kDeviceError.
void PrintBook(const Text& text, const PictureSource& pictures, QIODevice& device);

/// The lines of the pages after the table of contents, page by page, as PrintBook breaks them. A
/// picture's line holds the one character that stands for it.
[[nodiscard]] std::vector<QStringList> LinesOfPages(const Text& text,
                                                    const PictureSource& pictures);

}  // namespace kestrix::paper::book
