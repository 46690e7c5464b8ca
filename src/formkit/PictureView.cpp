#include "formkit/PictureView.h"

#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QLabel>
#include <QPixmap>
#include <QPromise>
#include <QThreadPool>
#include <QtConcurrentRun>
#include <algorithm>
#include <memory>
#include <utility>

#include "platform/Failure.h"

namespace kestrix {
namespace {

// More than a picture beside a form ever has room for, on the finest of screens.
constexpr QSize kLargestShown(1600, 1200);
// A picture that can't be read scaled takes four bytes a pixel while it is read.
constexpr int kLargestReadMegabytes = 512;
// No camera takes more. A file that claims more would be read for minutes, whatever it holds.
constexpr qint64 kMostPixels = 250'000'000;

// What is read in less than the blink of an eye, whatever its format.
constexpr qint64 kPixelsAtAGlance = 4'000'000;

Failure Unreadable(const QString& path, const QString& why) {
  return {failure::kInvalidPicture,
          QStringLiteral("%1 can't be shown as a picture: %2.").arg(path, why)};
}

qint64 PixelsOf(const QSize& size) {
  return qint64{size.width()} * size.height();
}

/// A file that comes to its end as soon as nobody waits for what is read from it any more.
class AwaitedFile : public QFile {
 public:
  AwaitedFile(const QString& path, const QPromise<QImage>& promise)
      : QFile(path), promise_(promise) {}

 protected:
  qint64 readData(char* data, qint64 most) override {
    return promise_.isCanceled() ? -1 : QFile::readData(data, most);
  }

 private:
  const QPromise<QImage>& promise_;
};

/// A reader of the picture in `file`, made ready to read no more of it than can be shown. Fails
/// with what the beginning of the file tells.
std::unique_ptr<QImageReader> ReaderOf(QFile& file, QSize* whole = nullptr) {
  if (!QFileInfo(file).isFile()) {
    throw Failure(failure::kFileNotFound,
                  QStringLiteral("The file %1 does not exist.").arg(file.fileName()));
  }
  QImageReader::setAllocationLimit(kLargestReadMegabytes);
  // A file that can't be opened is told by the reader.
  (void)file.open(QIODevice::ReadOnly);
  auto reader = std::make_unique<QImageReader>(&file);
  reader->setDecideFormatFromContent(true);
  reader->setAutoTransform(true);
  const QSize size = reader->size();
  if (PixelsOf(size) > kMostPixels) {
    throw Unreadable(file.fileName(), QStringLiteral("it is too large"));
  }
  if (size.width() > kLargestShown.width() || size.height() > kLargestShown.height()) {
    reader->setScaledSize(size.scaled(kLargestShown, Qt::KeepAspectRatio).expandedTo({1, 1}));
  }
  if (whole != nullptr) *whole = size;
  return reader;
}

QImage ReadFrom(QImageReader& reader, const QString& path) {
  QImage picture = reader.read();
  if (picture.isNull()) throw Unreadable(path, reader.errorString());
  // Some files claim one size and then hold another.
  const int longest = std::max(kLargestShown.width(), kLargestShown.height());
  if (picture.width() <= longest && picture.height() <= longest) return picture;
  return picture.scaled(
      picture.size().scaled(kLargestShown, Qt::KeepAspectRatio).expandedTo({1, 1}));
}

void ReadInto(QPromise<QImage>& promise, const QString& path) {
  QImage picture;
  try {
    AwaitedFile file(path, promise);
    picture = ReadFrom(*ReaderOf(file), path);
  } catch (const Failure&) {
    // The null image tells it: what of the file was wrong is of no use any more.
  }
  promise.addResult(picture);
}

}  // namespace

// Not the threads that all share: scaling a picture for the screen waits for those.
PictureView::PictureView(QLabel* label)
    : QObject(label), label_(label), reader_(new QThreadPool(this)) {
  reader_->setMaxThreadCount(1);
  label_->installEventFilter(this);
  connect(&reading_, &QFutureWatcherBase::finished, this, &PictureView::ReadingEnded);
}

PictureView::~PictureView() {
  reading_.cancel();
}

void PictureView::Clear() {
  GiveUpReading();
  picture_ = {};
  label_->clear();
}

void PictureView::Load(const QString& path) {
  Clear();
  picture_ = Read(path);
  Fit();
}

void PictureView::LoadBesideEvents(const QString& path, Then then) {
  Clear();
  QFile file(path);
  QSize size;
  const std::unique_ptr<QImageReader> reader = ReaderOf(file, &size);
  if (PixelsOf(size) > kPixelsAtAGlance) {
    then_ = std::move(then);
    reading_.setFuture(QtConcurrent::run(reader_, &ReadInto, path));
    return;
  }
  picture_ = ReadFrom(*reader, path);
  Fit();
  then(Outcome::kShown);
}

void PictureView::ReadingEnded() {
  if (!then_) return;
  picture_ = reading_.result();
  if (!picture_.isNull()) Fit();
  const Then then = std::exchange(then_, {});
  then(picture_.isNull() ? Outcome::kFailed : Outcome::kShown);
}

void PictureView::GiveUpReading() {
  if (!then_) return;
  reading_.cancel();
  reading_.setFuture({});
  const Then then = std::exchange(then_, {});
  then(Outcome::kGivenUp);
}

QImage PictureView::Read(const QString& path) {
  QFile file(path);
  return ReadFrom(*ReaderOf(file), path);
}

bool PictureView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == label_ && event->type() == QEvent::Resize && !IsClear()) Fit();
  return QObject::eventFilter(watched, event);
}

void PictureView::Fit() {
  const qreal ratio = label_->devicePixelRatioF();
  // A small picture is shown as it is: larger it would only be coarser.
  const QSizeF most = label_->contentsRect().size().boundedTo(picture_.size());
  const QSize room = (most * ratio).toSize().expandedTo({1, 1});
  QPixmap shown =
      QPixmap::fromImage(picture_.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
  shown.setDevicePixelRatio(ratio);
  label_->setPixmap(shown);
}

}  // namespace kestrix
