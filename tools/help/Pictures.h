#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>

namespace kestrix::help {

/// The pictures of the forms, in one folder. They are read as they are asked for and never changed.
class Pictures {
 public:
  explicit Pictures(QString folder) : folder_(std::move(folder)) {}

  /// Fails with kFileNotFound and a sentence that names every one of them that isn't there.
  void Require(const QStringList& names) const;
  /// The bytes of the file, and the picture in it. Fails with kFileNotFound or kInvalidPicture.
  [[nodiscard]] QByteArray Bytes(const QString& name) const;
  [[nodiscard]] QImage Image(const QString& name) const;

 private:
  QString folder_;
};

}  // namespace kestrix::help
