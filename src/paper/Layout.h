#pragma once

#include <QColor>
#include <QHash>
#include <QImage>
#include <QPageLayout>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <memory>
#include <variant>
#include <vector>

#include "paper/Document.h"
#include "paper/SetText.h"

class QPaintDevice;
class QPainter;

namespace kestrix::paper {

/// What stands on a page, with its place. Measures are dots of the device that was laid out for.
struct TextLine {
  std::shared_ptr<const SetText> text;
  int line = 0;
  QPointF at;  ///< of the text's beginning

  /// Where the line itself begins.
  [[nodiscard]] QPointF Corner() const { return at + QPointF(0, text->LineAt(line).y); }
};
struct Fill {
  QRectF area;
  QColor colour;
};
struct Stroke {
  QRectF area;
  QColor colour;
};
struct PlacedPicture {
  const Picture* picture = nullptr;
  QRectF area;
};
struct PlacedDrawing {
  const Drawing* drawing = nullptr;
  QRectF area;
};
using Item = std::variant<TextLine, Fill, Stroke, PlacedPicture, PlacedDrawing>;

/// A rectangle of a page that leads to an anchor.
struct PlacedLink {
  QRectF area;
  QString anchor;
};

struct Page {
  bool landscape = false;
  std::vector<Item> items;
  std::vector<PlacedLink> links;
};

/// A heading with the place that it got.
struct Entry {
  int level = 1;
  QString text;
  QString anchor;
  int page = 0;  ///< from 0
  double y = 0;  ///< of its top
  bool in_contents = true;
};

/// A picture's file unpacked to at most `most` dots, in its own proportions: a photograph is never
/// unpacked whole. Null where it can't be; `why` says so then.
[[nodiscard]] QImage ImageOf(const Picture& picture, QSize most, QString& why);

/// A document's pages: cover, contents, body. It keeps the document's pictures and drawings by
/// reference, so the document must outlive it.
class Layout {
 public:
  /// Lays out for pages of `size` (the upright paper) on a device of `dots` per inch.
  Layout(const Document& document, const QPageSize& size, int dots);
  ~Layout();
  Layout(const Layout&) = delete;
  Layout& operator=(const Layout&) = delete;

  [[nodiscard]] int PageCount() const { return static_cast<int>(pages_.size()); }
  [[nodiscard]] const Page& PageAt(int page) const {
    return pages_[static_cast<std::size_t>(page)];
  }
  /// The page's size in dots, turned as it is.
  [[nodiscard]] QSizeF SizeOf(const Page& page) const;
  [[nodiscard]] const std::vector<Entry>& Entries() const { return entries_; }
  /// The place of an anchor, or null.
  [[nodiscard]] const Entry* Find(const QString& anchor) const;

  /// Paints a page, its head and foot included, with the painter's origin at the paper's corner.
  /// Drawings that have a name are left to `named`, where there is one.
  void Paint(QPainter& painter, int page, std::vector<PlacedDrawing>* named = nullptr) const;

 private:
  friend class Composer;
  const Document& document_;
  QSizeF paper_;  ///< upright, in dots
  int dots_;
  std::vector<Page> pages_;
  std::vector<Entry> entries_;
  QHash<QString, std::size_t> anchors_;  ///< places in entries_
};

}  // namespace kestrix::paper
