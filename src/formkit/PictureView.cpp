#include "formkit/PictureView.h"

#include <QEvent>
#include <QFileInfo>
#include <QImageReader>
#include <QLabel>
#include <QPixmap>
#include <algorithm>

#include "platform/Failure.h"

namespace kestrix {
namespace {

// More than a picture beside a form ever has room for, on the finest of screens.
constexpr QSize kLargestShown(1600, 1200);
// A picture that can't be read scaled takes four bytes a pixel while it is read.
constexpr int kLargestReadMegabytes = 512;
// No camera takes more. A file that claims more would be read for minutes, whatever it holds.
constexpr qint64 kMostPixels = 250'000'000;

Failure Unreadable(const QString& path, const QString& why) {
  return {failure::kInvalidPicture,
          QStringLiteral("%1 can't be shown as a picture: %2.").arg(path, why)};
}

}  // namespace

PictureView::PictureView(QLabel* label) : QObject(label), label_(label) {
  label_->installEventFilter(this);
}

void PictureView::Clear() {
  picture_ = {};
  label_->clear();
}

void PictureView::Load(const QString& path) {
  Clear();
  picture_ = Read(path);
  Fit();
}

QImage PictureView::Read(const QString& path) {
  if (!QFileInfo(path).isFile()) {
    throw Failure(failure::kFileNotFound, QStringLiteral("The file %1 does not exist.").arg(path));
  }
  QImageReader::setAllocationLimit(kLargestReadMegabytes);
  QImageReader reader(path);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  if (qint64{size.width()} * size.height() > kMostPixels) {
    throw Unreadable(path, QStringLiteral("it is too large"));
  }
  if (size.width() > kLargestShown.width() || size.height() > kLargestShown.height()) {
    reader.setScaledSize(size.scaled(kLargestShown, Qt::KeepAspectRatio).expandedTo({1, 1}));
  }
  QImage picture = reader.read();
  if (picture.isNull()) throw Unreadable(path, reader.errorString());
  // Some files claim one size and then hold another.
  const int longest = std::max(kLargestShown.width(), kLargestShown.height());
  if (picture.width() <= longest && picture.height() <= longest) return picture;
  return picture.scaled(
      picture.size().scaled(kLargestShown, Qt::KeepAspectRatio).expandedTo({1, 1}));
}

bool PictureView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == label_ && event->type() == QEvent::Resize && !IsClear()) Fit();
  return QObject::eventFilter(watched, event);
}

void PictureView::Fit() {
  const qreal ratio = label_->devicePixelRatioF();
  const QSize room = (QSizeF(label_->contentsRect().size()) * ratio).toSize().expandedTo({1, 1});
  QPixmap shown =
      QPixmap::fromImage(picture_.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
  shown.setDevicePixelRatio(ratio);
  label_->setPixmap(shown);
}

}  // namespace kestrix
