#pragma once

#include <QByteArray>
#include <QRectF>
#include <QString>
#include <vector>

namespace kestrix::paper {

/// A point of a PDF: the page, counted from 0, and the distance from its upper edge in points.
struct PdfPlace {
  int page = 0;
  qreal y = 0;
};
struct PdfBookmark {
  QString text;
  bool top = false;  ///< of the first level; the others stand below the last one of these
  PdfPlace place;
};
struct PdfLink {
  int page = 0;
  QRectF area;  ///< in points, from the upper left corner of the page
  PdfPlace target;
};

/// The PDF with what the toolkit's writer can't give it: bookmarks, links within, and the language
/// of its text. Equal input gives equal bytes but for the time that the writer put in. Fails with
/// kSyntax when `pdf` is none.
[[nodiscard]] QByteArray WithMarks(const QByteArray& pdf, const std::vector<PdfBookmark>& bookmarks,
                                   const std::vector<PdfLink>& links, const QString& language);

}  // namespace kestrix::paper
