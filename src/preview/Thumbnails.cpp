#include "preview/Thumbnails.h"

#include <QPainter>
#include <algorithm>

#include "preview/PageView.h"

namespace kestrix::preview {
namespace {

constexpr double kWidth = 90;
constexpr int kSquare = 130;
constexpr int kKept = 500;

/// In the middle of a square, so that upright and turned pages take one room.
QPixmap Squared(const QPixmap& page) {
  const QSizeF size = page.deviceIndependentSize();
  QPixmap square(QSize(kSquare, kSquare) * page.devicePixelRatio());
  square.setDevicePixelRatio(page.devicePixelRatio());
  square.fill(Qt::transparent);
  QPainter(&square).drawPixmap(QPointF((kSquare - size.width()) / 2, (kSquare - size.height()) / 2),
                               page);
  return square;
}

}  // namespace

Thumbnails::Thumbnails(QObject* parent) : QAbstractListModel(parent), painted_(kKept) {
  paint_next_.setSingleShot(true);
  paint_next_.setInterval(0);
  connect(&paint_next_, &QTimer::timeout, this, &Thumbnails::PaintNext);
}

void Thumbnails::SetLayout(std::shared_ptr<const paper::Layout> layout) {
  beginResetModel();
  layout_ = std::move(layout);
  painted_.clear();
  wanted_.clear();
  endResetModel();
}

int Thumbnails::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !layout_ ? 0 : layout_->PageCount();
}

double Thumbnails::Scale() const {
  const QSizeF paper = layout_->SizeOf(layout_->PageAt(0));
  return kWidth / std::min(paper.width(), paper.height());
}

QVariant Thumbnails::data(const QModelIndex& index, int role) const {
  const int page = index.row();
  if (role == Qt::DisplayRole) return QString::number(page + 1);
  if (role == Qt::AccessibleTextRole) return QStringLiteral("Page %1").arg(page + 1);
  if (role != Qt::DecorationRole) return {};
  if (const QPixmap* picture = painted_.object(page)) return *picture;
  if (std::find(wanted_.begin(), wanted_.end(), page) == wanted_.end()) wanted_.push_back(page);
  paint_next_.start();
  QPixmap blank((layout_->SizeOf(layout_->PageAt(page)) * Scale()).toSize());
  blank.fill(Qt::white);
  return Squared(blank);
}

void Thumbnails::PaintNext() {
  if (wanted_.empty() || !layout_) return;
  const int page = wanted_.back();
  wanted_.pop_back();
  painted_.insert(page, new QPixmap(Squared(PictureOf(*layout_, page, Scale(), 2))));
  const QModelIndex changed = index(page);
  Q_EMIT dataChanged(changed, changed, {Qt::DecorationRole});
  if (!wanted_.empty()) paint_next_.start();
}

}  // namespace kestrix::preview
