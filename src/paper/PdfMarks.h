#pragma once

#include <QByteArray>
#include <QDate>
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
  int level = 1;  ///< each stands below the last one of a lower level
  PdfPlace place;
};
struct PdfLink {
  int page = 0;
  QRectF area;  ///< in points, from the upper left corner of the page
  PdfPlace target;
};

/// A drawing that stands on many pages: the pages of `drawings`, a PDF, hold each once, without
/// margins.
struct PdfStamp {
  int page = 0;
  QPointF corner;   ///< the upper left one, in points from that of the page
  int drawing = 0;  ///< the page that holds it
};
struct PdfStamps {
  QByteArray drawings;
  std::vector<PdfStamp> places;
};

/// A file that a PDF carries with it.
struct Attachment {
  QString name;
  QByteArray bytes;
  QString type;  ///< as in "application/json"
  QString description;
};

/// What a PDF says of itself. With a date the same document gives the same bytes; without one the
/// toolkit's writer puts in the time.
struct PdfFacts {
  QString title;
  QString author;
  QString subject;
  QString language;
  QDate date;
  Attachment attachment;  ///< none without a name
};

/// The PDF with what the toolkit's writer can't give it: bookmarks, links within, the language of
/// its text, drawings that are stored once, a file that it carries. Fails with kSyntax when `pdf`
/// is none.
[[nodiscard]] QByteArray WithMarks(const QByteArray& pdf, const std::vector<PdfBookmark>& bookmarks,
                                   const std::vector<PdfLink>& links, const PdfFacts& facts,
                                   const PdfStamps& stamps = {});

}  // namespace kestrix::paper
