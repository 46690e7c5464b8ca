#include "paper/Pdf.h"

#include <QBuffer>
#include <QHashFunctions>
#include <QPainter>
#include <QPdfWriter>
#include <vector>

namespace kestrix::paper {
namespace {

constexpr double kPoints = 72;

QPageLayout PageLayoutOf(const QPageSize& size, bool landscape) {
  return {size, landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF()};
}

/// The toolkit's writer goes through its fonts in the order of a hash, which it may not draw lots
/// for while the same document is to give the same bytes.
class SameOrder {
 public:
  SameOrder() { QHashSeed::setDeterministicGlobalSeed(); }
  SameOrder(const SameOrder&) = delete;
  SameOrder& operator=(const SameOrder&) = delete;
  ~SameOrder() { QHashSeed::resetRandomGlobalSeed(); }
};

QByteArray PlainPages(const Document& document, const Layout& layout, const QPageSize& size,
                      const Progress& progress) {
  const SameOrder same_order;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(kPdfDots);
  writer.setTitle(document.title);
  writer.setPageLayout(PageLayoutOf(size, layout.PageAt(0).landscape));
  QPainter painter(&writer);
  for (int page = 0; page < layout.PageCount(); ++page) {
    if (page > 0) {
      writer.setPageLayout(PageLayoutOf(size, layout.PageAt(page).landscape));
      writer.newPage();
    }
    layout.Paint(painter, page);
    if (progress && !progress(page + 1, layout.PageCount())) return {};
  }
  painter.end();
  return bytes;
}

constexpr double kPoint = double{kPdfDots} / kPoints;  ///< in dots

PdfPlace PlaceOf(const Entry& entry) {
  constexpr double kAbove = 6;  // so that a reader doesn't show the heading at the very edge
  return {entry.page, entry.y / kPoint - kAbove};
}

}  // namespace

QByteArray WritePdf(const Document& document, const Layout& layout, const QPageSize& size,
                    QDate date, const Attachment& attachment, const Progress& progress) {
  const QByteArray pages = PlainPages(document, layout, size, progress);
  if (pages.isEmpty()) return {};
  std::vector<PdfBookmark> bookmarks;
  for (const Entry& entry : layout.Entries()) {
    if (!entry.anchor.isEmpty()) bookmarks.push_back({entry.text, entry.level, PlaceOf(entry)});
  }
  std::vector<PdfLink> links;
  for (int page = 0; page < layout.PageCount(); ++page) {
    for (const PlacedLink& link : layout.PageAt(page).links) {
      const Entry* target = layout.Find(link.anchor);
      if (target == nullptr) continue;
      links.push_back(
          {page, {link.area.topLeft() / kPoint, link.area.size() / kPoint}, PlaceOf(*target)});
    }
  }
  return WithMarks(
      pages, bookmarks, links,
      {document.title, document.author, document.subject, document.language, date, attachment});
}

}  // namespace kestrix::paper
