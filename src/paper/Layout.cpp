#include "paper/Layout.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QImageReader>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <map>

#include "paper/Composer.h"

namespace kestrix::paper {
namespace {

constexpr double kMmOfAnInch = 25.4;
// Sharp on paper; more would only make the file larger.
constexpr double kPictureDots = 300;

/// The lines of the contents: the number of a heading's page stands at the right.
std::vector<Block> ContentsOf(const std::vector<Entry>& entries, int pages_before) {
  Table table;
  table.widths = {92, 8};
  table.small = true;
  table.head = {QString(), QString()};
  for (const Entry& entry : entries) {
    if (!entry.in_contents) continue;
    const QString indent(2 * (entry.level - 1), QChar::Nbsp);
    table.rows.push_back(
        {{{{indent, Face::kPlain, {}},
           {entry.text, entry.level == 1 ? Face::kBold : Face::kPlain, entry.anchor}},
          {},
          false},
         {Link(QString::number(entry.page + pages_before + 1), entry.anchor), {}, true}});
  }
  table.head.clear();
  return {{Heading{1, QStringLiteral("Contents"), QStringLiteral("contents"), false}},
          {std::move(table)}};
}

/// Paints the items of one page.
struct Painted {
  QPainter& painter;
  int dots;
  std::vector<PlacedDrawing>* named;
  // Their lines stand on the page one after the other.
  std::map<const SetText*, std::unique_ptr<QTextLayout>> shaped = {};

  void operator()(const TextLine& item) {
    auto& layout = shaped[item.text.get()];
    if (!layout) layout = item.text->Shaped();
    layout->lineAt(item.line).draw(&painter, item.at);
  }
  void operator()(const Fill& item) const { painter.fillRect(item.area, item.colour); }
  void operator()(const Stroke& item) const {
    painter.setPen(QPen(item.colour, dots / 150.0));
    painter.drawRect(item.area);
    painter.setPen(kInk);
  }
  void operator()(const PlacedDrawing& item) const {
    if (named != nullptr && !item.drawing->name.isEmpty()) return named->push_back(item);
    painter.save();
    item.drawing->paint(painter, item.area);
    painter.restore();
  }
  void operator()(const PlacedPicture& item) const {
    QString why;
    const QImage image =
        ImageOf(*item.picture, (item.area.size() * kPictureDots / dots).toSize(), why);
    if (!image.isNull()) return painter.drawImage(item.area, image);
    painter.setFont(FontOf(kSmallPoints, dots));
    painter.drawText(item.area, Qt::AlignCenter | Qt::TextWordWrap,
                     item.picture->name + QChar::LineSeparator + why);
    operator()(Stroke{item.area, kLine});
  }
};

}  // namespace

QImage ImageOf(const Picture& picture, QSize most, QString& why) {
  QByteArray bytes = picture.read();
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
  const QSize stored = turned ? picture.pixels.transposed() : picture.pixels;
  if (most.width() < picture.pixels.width() || most.height() < picture.pixels.height()) {
    reader.setScaledSize(stored.scaled(turned ? most.transposed() : most, Qt::KeepAspectRatio));
  }
  const QImage image = reader.read();
  if (image.isNull()) why = reader.errorString();
  return image;
}

Layout::Layout(const Document& document, const QPageSize& size, int dots)
    : document_(document), paper_(size.sizePixels(dots)), dots_(dots) {
  Composer cover(paper_, dots);
  cover.Compose(document.cover);
  Composer body(paper_, dots);
  body.Compose(document.body);

  const auto compose_contents = [&](int pages_before) {
    Composer contents(paper_, dots);
    contents.Compose(ContentsOf(body.entries, pages_before));
    return contents;
  };
  const auto cover_pages = static_cast<int>(cover.pages.size());
  const auto contents_pages = static_cast<int>(compose_contents(0).pages.size());
  Composer contents = compose_contents(cover_pages + contents_pages);

  const auto take = [this](Composer& from) {
    const int before = PageCount();
    for (Entry& entry : from.entries) {
      entry.page += before;
      entries_.push_back(std::move(entry));
    }
    std::move(from.pages.begin(), from.pages.end(), std::back_inserter(pages_));
  };
  take(cover);
  take(contents);
  take(body);
  for (std::size_t i = 0; i < entries_.size(); ++i) anchors_.insert(entries_[i].anchor, i);
}

Layout::~Layout() = default;

QSizeF Layout::SizeOf(const Page& page) const {
  return page.landscape ? paper_.transposed() : paper_;
}

const Entry* Layout::Find(const QString& anchor) const {
  const auto found = anchors_.constFind(anchor);
  return found == anchors_.constEnd() ? nullptr : &entries_[*found];
}

void Layout::Paint(QPainter& painter, int page, std::vector<PlacedDrawing>* named) const {
  const Page& content = PageAt(page);
  const QSizeF size = SizeOf(content);
  painter.setPen(kInk);
  Painted painted{painter, dots_, named};
  for (const Item& item : content.items) std::visit(painted, item);

  const double margin = kMarginMm * dots_ / kMmOfAnInch;
  const QFont font = FontOf(kSmallPoints, dots_);
  const QFontMetricsF metrics(font);
  const QRectF frame(margin, margin, size.width() - 2 * margin, size.height() - 2 * margin);
  painter.setFont(font);
  painter.setPen(kInk);
  const auto elided = [&](const QString& text, double part) {
    return metrics.elidedText(text, Qt::ElideRight, frame.width() * part);
  };
  if (page > 0) {
    painter.drawText(frame, Qt::AlignTop | Qt::AlignLeft, elided(document_.head, 1));
    painter.fillRect(
        QRectF(frame.left(), frame.top() + metrics.height() * 1.2, frame.width(), dots_ / 180.0),
        kLine);
  }
  painter.drawText(frame, Qt::AlignBottom | Qt::AlignLeft, elided(document_.foot, 0.8));
  painter.drawText(
      frame, Qt::AlignBottom | Qt::AlignRight,
      QStringLiteral("Page %1 of %2")
          .arg(page + 1)
          .arg(document_.is_whole ? QString::number(PageCount()) : QStringLiteral("…")));
}

}  // namespace kestrix::paper
