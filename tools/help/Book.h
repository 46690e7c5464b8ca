#pragma once

#include <QByteArray>

#include "Manual.h"
#include "Pictures.h"
#include "paper/Document.h"

namespace kestrix::help {

/// The manual as a document: the text before its first chapter on the first page, each chapter on a
/// new one, headings with their numbers. Fails as `pictures` do.
[[nodiscard]] paper::Document BookOf(const Manual& manual, const Pictures& pictures);

/// That document as a PDF on A4, with bookmarks, contents and links that lead to their headings. It
/// needs a QGuiApplication; any platform will do.
[[nodiscard]] QByteArray PrintedBook(const Manual& manual, const Pictures& pictures);

}  // namespace kestrix::help
