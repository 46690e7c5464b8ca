#include "preview/PageView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "paper/Pdf.h"

namespace kestrix::preview {
namespace {

constexpr double kGap = 12;
constexpr double kLeastZoom = 0.1;
constexpr double kGreatestZoom = 6;
constexpr double kZoomStep = 1.25;
constexpr int kKeptBytes = 192 << 20;

}  // namespace

QPixmap PictureOf(const paper::Layout& layout, int page, double scale, double pixels_of_dot) {
  const QSizeF size = layout.SizeOf(layout.PageAt(page)) * scale;
  QPixmap picture((size * pixels_of_dot).toSize().expandedTo({1, 1}));
  picture.setDevicePixelRatio(pixels_of_dot);
  picture.fill(Qt::white);
  QPainter painter(&picture);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                         QPainter::SmoothPixmapTransform);
  painter.save();
  painter.scale(scale, scale);
  layout.Paint(painter, page);
  painter.restore();
  painter.setPen(Qt::gray);
  painter.drawRect(QRectF(QPointF(), size).adjusted(0, 0, -1, -1));
  return picture;
}

PageView::PageView(QWidget* parent) : QAbstractScrollArea(parent) {
  painted_.setMaxCost(kKeptBytes);
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setMouseTracking(true);
  viewport()->setBackgroundRole(QPalette::Dark);
  viewport()->setAutoFillBackground(true);
  paint_next_.setSingleShot(true);
  paint_next_.setInterval(0);
  connect(&paint_next_, &QTimer::timeout, this, &PageView::PaintNext);
}

void PageView::SetLayout(std::shared_ptr<const paper::Layout> layout) {
  const int page = CurrentPage();
  const double below = layout_ ? verticalScrollBar()->value() - RectOf(page).top() : 0;
  layout_ = std::move(layout);
  painted_.clear();
  found_.reset();
  found_place_.reset();
  link_.reset();
  told_page_ = -1;
  Arrange();
  if (fits_width_) FitWidth();
  if (page < PageCount()) ScrollTo(RectOf(page).top() + below);
  viewport()->update();
}

int PageView::PageCount() const {
  return layout_ ? layout_->PageCount() : 0;
}

int PageView::CurrentPage() const {
  const double middle = verticalScrollBar()->value() + viewport()->height() / 2.0;
  const auto after = std::upper_bound(tops_.begin(), tops_.end(), middle);
  return std::max(0, static_cast<int>(after - tops_.begin()) - 1);
}

void PageView::GoTo(int page, double y) {
  if (page < 0 || page >= PageCount()) return;
  // Of a page that is wider than the view the left edge is shown, where its lines begin.
  const QRectF rect = RectOf(page);
  const bool is_wide = rect.width() > viewport()->width();
  horizontalScrollBar()->setValue(is_wide ? static_cast<int>(rect.left() - kGap)
                                          : horizontalScrollBar()->maximum() / 2);
  ScrollTo(rect.top() + std::max(0.0, y * Scale() - kGap));
}

bool PageView::GoToAnchor(const QString& anchor) {
  const paper::Entry* entry = layout_ ? layout_->Find(anchor) : nullptr;
  if (entry == nullptr) return false;
  GoTo(entry->page, entry->y);
  return true;
}

void PageView::SetZoom(double zoom) {
  fits_width_ = false;
  ApplyZoom(zoom);
}

void PageView::ApplyZoom(double zoom) {
  const double wanted = std::clamp(zoom, kLeastZoom, kGreatestZoom);
  constexpr double kSame = 0.0005;
  if (std::abs(wanted - zoom_) < kSame) return Q_EMIT ZoomChanged(zoom_);
  const int page = CurrentPage();
  const double before = Scale();
  const double below = layout_ ? (verticalScrollBar()->value() - RectOf(page).top()) / before : 0;
  zoom_ = wanted;
  painted_.clear();
  Arrange();
  if (layout_) ScrollTo(RectOf(page).top() + below * Scale());
  viewport()->update();
  Q_EMIT ZoomChanged(zoom_);
}

void PageView::FitWidth() {
  fits_width_ = true;
  if (!layout_) return;
  // The cover decides: turned pages would make all others small.
  const double wide = layout_->SizeOf(layout_->PageAt(0)).width();
  const double room = viewport()->width() - 2 * kGap;
  ApplyZoom(room / wide * paper::kPdfDots / logicalDpiX());
}

bool PageView::Find(const QString& text, bool backwards) {
  if (!layout_ || text.isEmpty()) return false;
  const std::vector<Found> places = PlacesOf(text);
  if (places.empty()) {
    found_.reset();
    found_place_.reset();
    viewport()->update();
    return false;
  }
  if (text != found_text_) found_place_.reset();
  found_text_ = text;
  const std::size_t count = places.size();
  if (found_place_) {
    found_place_ = (*found_place_ + (backwards ? count - 1 : 1)) % count;
  } else {
    const auto from_here = std::find_if(places.begin(), places.end(), [this](const Found& place) {
      return place.page >= CurrentPage();
    });
    found_place_ =
        from_here == places.end() ? 0 : static_cast<std::size_t>(from_here - places.begin());
  }
  link_.reset();
  Show(places[*found_place_]);
  return true;
}

void PageView::Show(const Found& place) {
  found_ = place;
  const QRectF page = RectOf(place.page);
  const QRectF area(page.topLeft() + place.area.topLeft() * Scale(), place.area.size() * Scale());
  if (!QRectF(Offset(), QSizeF(viewport()->size())).contains(area)) {
    GoTo(place.page, std::max(0.0, place.area.top() - viewport()->height() / 3.0 / Scale()));
  }
  viewport()->update();
}

void PageView::MarkLink(bool backwards) {
  const auto links = [this](int page) {
    return static_cast<int>(layout_->PageAt(page).links.size());
  };
  const int step = backwards ? -1 : 1;
  const int pages = PageCount();
  if (pages == 0) return;
  int page = CurrentPage();
  int link = backwards ? links(page) - 1 : 0;
  if (link_ && std::abs(link_->first - page) <= 1) {
    page = link_->first;
    link = link_->second + step;
  }
  for (int tried = 0; tried <= pages; ++tried) {
    if (link >= 0 && link < links(page)) {
      const paper::PlacedLink& on = layout_->PageAt(page).links[static_cast<std::size_t>(link)];
      link_ = {page, link};
      Show({page, on.area});
      const paper::Entry* target = layout_->Find(on.anchor);
      return Q_EMIT LinkMarked(target == nullptr ? QString() : target->text);
    }
    page = (page + step + pages) % pages;
    link = backwards ? links(page) - 1 : 0;
  }
}

bool PageView::FollowLink() {
  if (!link_) return false;
  const auto [page, link] = *std::exchange(link_, std::nullopt);
  found_.reset();
  return GoToAnchor(layout_->PageAt(page).links[static_cast<std::size_t>(link)].anchor);
}

QString PageView::TextOf(int page) const {
  QStringList lines;
  for (const paper::Item& item : layout_->PageAt(page).items) {
    if (const auto* line = std::get_if<paper::TextLine>(&item)) {
      lines += line->text->CharactersOf(line->line);
    }
  }
  return lines.join(u'\n');
}

std::vector<PageView::Found> PageView::PlacesOf(const QString& text) const {
  std::vector<Found> places;
  for (int page = 0; page < PageCount(); ++page) {
    for (const paper::Item& item : layout_->PageAt(page).items) {
      const auto* line = std::get_if<paper::TextLine>(&item);
      if (line == nullptr) continue;
      const paper::SetText::Line& stands = line->text->LineAt(line->line);
      const QString& whole = line->text->Characters();
      // What begins on this line; it may go on in the next one.
      qsizetype at = whole.indexOf(text, stands.start, Qt::CaseInsensitive);
      const int end = stands.start + stands.length;
      if (at < 0 || at >= end) continue;
      const std::unique_ptr<QTextLayout> shaped = line->text->Shaped();
      const QTextLine on = shaped->lineAt(line->line);
      for (; at >= 0 && at < end; at = whole.indexOf(text, at + 1, Qt::CaseInsensitive)) {
        const double left = on.cursorToX(static_cast<int>(at));
        const double right =
            on.cursorToX(static_cast<int>(std::min<qsizetype>(at + text.size(), end)));
        places.push_back({page, QRectF(line->at.x() + std::min(left, right), line->at.y() + on.y(),
                                       std::abs(right - left), on.height())});
      }
    }
  }
  return places;
}

double PageView::Scale() const {
  return zoom_ * logicalDpiX() / paper::kPdfDots;
}

QRectF PageView::RectOf(int page) const {
  const QSizeF size = layout_->SizeOf(layout_->PageAt(page)) * Scale();
  const double left =
      std::max(kGap, (std::max<double>(width_, viewport()->width()) - size.width()) / 2);
  return {QPointF(left, tops_[static_cast<std::size_t>(page)]), size};
}

QPointF PageView::Offset() const {
  return {static_cast<double>(horizontalScrollBar()->value()),
          static_cast<double>(verticalScrollBar()->value())};
}

void PageView::Arrange() {
  tops_.clear();
  width_ = 0;
  height_ = kGap;
  for (int page = 0; page < PageCount(); ++page) {
    const QSizeF size = layout_->SizeOf(layout_->PageAt(page)) * Scale();
    tops_.push_back(height_);
    height_ += size.height() + kGap;
    width_ = std::max(width_, size.width() + 2 * kGap);
  }
  verticalScrollBar()->setRange(0, std::max(0, static_cast<int>(height_) - viewport()->height()));
  verticalScrollBar()->setPageStep(viewport()->height());
  verticalScrollBar()->setSingleStep(std::max(1, viewport()->height() / 12));
  const int beside = std::max(0, static_cast<int>(width_) - viewport()->width());
  const bool in_the_middle =
      horizontalScrollBar()->value() * 2 == horizontalScrollBar()->maximum() || fits_width_;
  horizontalScrollBar()->setRange(0, beside);
  // Turned pages are wider; the upright ones stand in the middle.
  if (in_the_middle) horizontalScrollBar()->setValue(beside / 2);
  horizontalScrollBar()->setPageStep(viewport()->width());
  scrollContentsBy(0, 0);
}

void PageView::ScrollTo(double top) {
  verticalScrollBar()->setValue(static_cast<int>(top));
}

const paper::PlacedLink* PageView::LinkAt(QPointF position) const {
  const QPointF at = position + Offset();
  for (int page = 0; page < PageCount(); ++page) {
    const QRectF rect = RectOf(page);
    if (!rect.contains(at)) continue;
    const QPointF dots = (at - rect.topLeft()) / Scale();
    for (const paper::PlacedLink& link : layout_->PageAt(page).links) {
      if (link.area.contains(dots)) return &link;
    }
  }
  return nullptr;
}

void PageView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(viewport());
  painter.translate(-Offset());
  const QRectF seen(Offset(), QSizeF(viewport()->size()));
  bool wanting = false;
  for (int page = 0; page < PageCount(); ++page) {
    const QRectF rect = RectOf(page);
    if (rect.bottom() < seen.top()) continue;
    if (rect.top() > seen.bottom()) break;
    if (const QPixmap* picture = painted_.object(page)) {
      painter.drawPixmap(rect.topLeft(), *picture);
    } else {
      painter.fillRect(rect, Qt::white);
      wanting = true;
    }
    if (found_ && found_->page == page) {
      const QRectF area(rect.topLeft() + found_->area.topLeft() * Scale(),
                        found_->area.size() * Scale());
      painter.setPen(QPen(QColor(0xD0, 0x60, 0x00), 2));
      painter.setBrush(QColor(0xFF, 0xC0, 0x00, 0x60));
      painter.drawRect(area.adjusted(-2, -1, 2, 1));
    }
  }
  if (wanting) paint_next_.start();
}

void PageView::PaintNext() {
  const QRectF seen(Offset(), QSizeF(viewport()->size()));
  for (int page = 0; page < PageCount(); ++page) {
    const QRectF rect = RectOf(page);
    if (rect.bottom() < seen.top() || painted_.contains(page)) continue;
    if (rect.top() > seen.bottom()) return;
    auto* picture = new QPixmap(PictureOf(*layout_, page, Scale(), devicePixelRatioF()));
    const qint64 bytes = qint64{picture->width()} * picture->height() * 4;
    painted_.insert(page, picture, static_cast<int>(std::min<qint64>(bytes, kKeptBytes)));
    viewport()->update();
    return;
  }
}

void PageView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  if (fits_width_) FitWidth();
  Arrange();
}

void PageView::scrollContentsBy(int /*dx*/, int /*dy*/) {
  viewport()->update();
  if (!layout_) return;
  const int page = CurrentPage();
  if (std::exchange(told_page_, page) != page) Q_EMIT CurrentPageChanged(page);
}

void PageView::mouseMoveEvent(QMouseEvent* event) {
  viewport()->setCursor(LinkAt(event->position()) != nullptr ? Qt::PointingHandCursor
                                                             : Qt::ArrowCursor);
}

void PageView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (const paper::PlacedLink* link = LinkAt(event->position())) GoToAnchor(link->anchor);
}

void PageView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Down:
    case Qt::Key_Up:
      if ((event->modifiers() & Qt::ControlModifier) == 0) break;
      return MarkLink(event->key() == Qt::Key_Up);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (FollowLink()) return;
      break;
    case Qt::Key_Home:
      return GoTo(0);
    case Qt::Key_End:
      return GoTo(PageCount() - 1);
    default:
      break;
  }
  QAbstractScrollArea::keyPressEvent(event);
}

void PageView::wheelEvent(QWheelEvent* event) {
  if (event->modifiers() & Qt::ControlModifier) {
    SetZoom(event->angleDelta().y() > 0 ? zoom_ * kZoomStep : zoom_ / kZoomStep);
    return event->accept();
  }
  QAbstractScrollArea::wheelEvent(event);
}

}  // namespace kestrix::preview
