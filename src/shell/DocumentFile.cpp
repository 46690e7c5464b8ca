#include "shell/DocumentFile.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QStringConverter>
#include <algorithm>

#include "platform/Failure.h"
#include "platform/FileCopy.h"

namespace kestrix {
namespace {

[[noreturn]] void FailToRead(int number, const QString& path, const QString& why) {
  throw Failure(number, QStringLiteral("Failed to open \"%1\": %2.").arg(path, why));
}

QString Decoded(const QByteArray& bytes) {
  const auto marked = QStringConverter::encodingForData(bytes);
  QStringDecoder decoder(marked.value_or(QStringConverter::Utf8));
  QString text = decoder.decode(bytes);
  if (decoder.hasError() && !marked) text = QString::fromLatin1(bytes);
  return text;
}

/// Characters that stand for the inner parts of a rich text, and those that end a text elsewhere,
/// are no text.
QString WithoutForeignCharacters(QString text) {
  const auto is_foreign = [](QChar c) {
    return c.isNull() || c == QChar::ObjectReplacementCharacter || c == QChar(0xFDD0) ||
           c == QChar(0xFDD1);
  };
  std::replace_if(text.begin(), text.end(), is_foreign, QChar(QChar::ReplacementCharacter));
  return text;
}

}  // namespace

DocumentFile::DocumentFile(QString path) : path_(std::move(path)) {}

QString DocumentFile::Read() const {
  const QFileInfo info(path_);
  if (path_.isEmpty() || !info.exists())
    FailToRead(failure::kFileNotFound, path_, QStringLiteral("there is no such file"));
  if (!info.isFile())
    FailToRead(failure::kInvalidCall, path_, QStringLiteral("it is no plain file"));
  QFile file(path_);
  if (!file.open(QIODevice::ReadOnly))
    FailToRead(failure::kPermissionDenied, path_, file.errorString());
  // One byte more tells whether the file goes on, also when it grew since it was looked at.
  const QByteArray bytes = file.read(kMostBytes + 1);
  if (bytes.size() > kMostBytes) {
    FailToRead(failure::kInvalidCall, path_,
               QStringLiteral("it is too large, it has more than %1 MB")
                   .arg(kMostBytes / (1024LL * 1024)));
  }
  if (file.error() != QFileDevice::NoError)
    FailToRead(failure::kDeviceError, path_, file.errorString());
  return WithoutForeignCharacters(Decoded(bytes));
}

void DocumentFile::Write(const QString& text) const {
  if (path_.isEmpty())
    throw Failure(failure::kPathNotFound,
                  QStringLiteral("Failed to save: the document has no file name."));
  WriteFileDurably(path_, text.toUtf8());
}

}  // namespace kestrix
