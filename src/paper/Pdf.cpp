#include "paper/Pdf.h"

#include <QBuffer>
#include <QHash>
#include <QHashFunctions>
#include <QPainter>
#include <QPdfWriter>
#include <QtMath>
#include <utility>
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

constexpr double kPoint = double{kPdfDots} / kPoints;  ///< in dots
// Around a drawing, for lines that lie on its edge; in points.
constexpr int kEdge = 1;

struct Pages {
  QByteArray bytes;
  PdfStamps stamps;
};

/// Collects the drawings that have a name, each once.
class Drawings {
 public:
  void Add(int page, const PlacedDrawing& placed) {
    const QSizeF size = placed.area.size() / kPoint;
    const auto key = QStringLiteral("%1 %2 %3")
                         .arg(placed.drawing->name)
                         .arg(size.width(), 0, 'f', 2)
                         .arg(size.height(), 0, 'f', 2);
    const auto found = numbers_.constFind(key);
    const int number = found == numbers_.constEnd() ? static_cast<int>(drawings_.size()) : *found;
    if (found == numbers_.constEnd()) {
      numbers_.insert(key, number);
      drawings_.push_back(placed);
    }
    stamps_.push_back({page, placed.area.topLeft() / kPoint - QPointF(kEdge, kEdge), number});
  }

  [[nodiscard]] PdfStamps Take() {
    if (stamps_.empty()) return {};
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(kPdfDots);
    QPainter painter;
    for (const PlacedDrawing& placed : drawings_) {
      const QSizeF size = placed.area.size() / kPoint;
      // The pages of a PDF are whole points large.
      const QSize page(qCeil(size.width()) + 2 * kEdge, qCeil(size.height()) + 2 * kEdge);
      writer.setPageLayout({QPageSize(page), QPageLayout::Portrait, QMarginsF()});
      if (painter.isActive()) {
        writer.newPage();
      } else {
        painter.begin(&writer);
      }
      painter.save();
      placed.drawing->paint(painter, {QPointF(kEdge * kPoint, kEdge * kPoint), placed.area.size()});
      painter.restore();
    }
    painter.end();
    return {buffer.data(), std::move(stamps_)};
  }

 private:
  QHash<QString, int> numbers_;
  std::vector<PlacedDrawing> drawings_;
  std::vector<PdfStamp> stamps_;
};

Pages PlainPages(const Document& document, const Layout& layout, const QPageSize& size,
                 const Progress& progress) {
  const SameOrder same_order;
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(kPdfDots);
  writer.setTitle(document.title);
  writer.setPageLayout(PageLayoutOf(size, layout.PageAt(0).landscape));
  QPainter painter(&writer);
  Drawings drawings;
  for (int page = 0; page < layout.PageCount(); ++page) {
    if (page > 0) {
      writer.setPageLayout(PageLayoutOf(size, layout.PageAt(page).landscape));
      writer.newPage();
    }
    std::vector<PlacedDrawing> named;
    layout.Paint(painter, page, &named);
    for (const PlacedDrawing& placed : named) drawings.Add(page, placed);
    if (progress && !progress(page + 1, layout.PageCount())) return {};
  }
  painter.end();
  return {buffer.data(), drawings.Take()};
}

PdfPlace PlaceOf(const Entry& entry) {
  constexpr double kAbove = 6;  // so that a reader doesn't show the heading at the very edge
  return {entry.page, entry.y / kPoint - kAbove};
}

}  // namespace

QByteArray WritePdf(const Document& document, const Layout& layout, const QPageSize& size,
                    QDate date, const Attachment& attachment, const Progress& progress) {
  const Pages pages = PlainPages(document, layout, size, progress);
  if (pages.bytes.isEmpty()) return {};
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
      pages.bytes, bookmarks, links,
      {document.title, document.author, document.subject, document.language, date, attachment},
      pages.stamps);
}

}  // namespace kestrix::paper
