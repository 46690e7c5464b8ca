// Any bytes in place of a picture: a label shows them, scaled into its room, or is clear and the
// file is refused as no picture.
#include <QLabel>

#include "Fuzz.h"
#include "formkit/PictureView.h"
#include "platform/Failure.h"

namespace kestrix::fuzz {
namespace {

constexpr QSize kRoom(96, 64);

bool Shows(PictureView& view, const QString& path) {
  try {
    view.Load(path);
    return true;
  } catch (const Failure& failure) {
    Note(failure);
    Hold(failure.number() == failure::kInvalidPicture, "what is no picture is refused as such",
         failure.description());
    return false;
  }
}

}  // namespace
}  // namespace kestrix::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace kestrix;
  fuzz::WithinApplication();
  const QByteArray bytes = fuzz::Input(data, size).Rest();
  const QString path = fuzz::LayFile(QStringLiteral("press.jpg"), bytes);
  QLabel label;
  label.resize(fuzz::kRoom);
  PictureView view(&label);
  const bool shows = fuzz::Shows(view, path);
  fuzz::Hold(shows != view.IsClear(), "a label shows a picture or is clear");
  const QPixmap shown = label.pixmap(Qt::ReturnByValue);
  fuzz::Hold(shows != shown.isNull(), "what was read is shown");
  if (shows) {
    fuzz::Hold(shown.width() <= fuzz::kRoom.width() && shown.height() <= fuzz::kRoom.height(),
               "a picture fits into its label");
    const QImage read = PictureView::Read(path);
    fuzz::Hold(read.width() <= 1600 && read.height() <= 1600, "no picture is larger than a screen");
    fuzz::Note(QStringLiteral("%1 by %2").arg(read.width() / 16).arg(read.height() / 16));
  }
  fuzz::Hold(fuzz::BytesOf(path) == bytes, "showing a picture doesn't change its file");
  return 0;
}
