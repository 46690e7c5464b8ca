#include "Pictures.h"

#include <QDir>
#include <QFile>

#include "platform/Failure.h"

namespace kestrix::help {

void Pictures::Require(const QStringList& names) const {
  QStringList missing;
  for (const QString& name : names) {
    if (!QFile::exists(QDir(folder_).filePath(name))) missing += name;
  }
  if (missing.isEmpty()) return;
  throw Failure(failure::kFileNotFound,
                QStringLiteral("The folder %1 lacks pictures that the manual shows: %2.")
                    .arg(folder_, missing.join(QStringLiteral(", "))));
}

QByteArray Pictures::Bytes(const QString& name) const {
  QFile file(QDir(folder_).filePath(name));
  if (!file.open(QIODevice::ReadOnly)) {
    throw Failure(failure::kFileNotFound, QStringLiteral("The picture %1 can't be read: %2.")
                                              .arg(file.fileName(), file.errorString()));
  }
  return file.readAll();
}

QImage Pictures::Image(const QString& name) const {
  QImage image;
  if (!image.loadFromData(Bytes(name), "PNG")) {
    throw Failure(failure::kInvalidPicture,
                  QStringLiteral("%1 is no PNG picture.").arg(QDir(folder_).filePath(name)));
  }
  return image;
}

}  // namespace kestrix::help
