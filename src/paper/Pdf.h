#pragma once

#include <QByteArray>
#include <QDate>
#include <QPageSize>
#include <QString>
#include <functional>

#include "paper/Layout.h"
#include "paper/PdfMarks.h"

namespace kestrix::paper {

/// Called after each page with how many are done, and of how many; it ends the writing by saying
/// false.
using Progress = std::function<bool(int done, int of)>;

/// The pages of `layout` as a PDF, with an outline, links that lead to their anchors, title,
/// author, language, and the attachment. `date` stands as the day it was made, so that the same
/// document gives the same bytes. Empty when `progress` ended it. The layout must have been made
/// for kPdfDots. It needs a QGuiApplication; any platform will do.
[[nodiscard]] QByteArray WritePdf(const Document& document, const Layout& layout,
                                  const QPageSize& size, QDate date, const Attachment& attachment,
                                  const Progress& progress = {});

inline constexpr int kPdfDots = 1200;

}  // namespace kestrix::paper
