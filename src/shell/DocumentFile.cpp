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

QString ReadDocument(const QString& path) {
  const QFileInfo info(path);
  if (path.isEmpty() || !info.exists())
    FailToRead(failure::kFileNotFound, path, QStringLiteral("there is no such file"));
  if (!info.isFile())
    FailToRead(failure::kInvalidCall, path, QStringLiteral("it is no plain file"));
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    FailToRead(failure::kPermissionDenied, path, file.errorString());
  // One byte more tells whether the file goes on, also when it grew since it was looked at.
  const QByteArray bytes = file.read(kMostDocumentBytes + 1);
  if (bytes.size() > kMostDocumentBytes) {
    FailToRead(failure::kInvalidCall, path,
               QStringLiteral("it is too large, it has more than %1 MB")
                   .arg(kMostDocumentBytes / (1024LL * 1024)));
  }
  if (file.error() != QFileDevice::NoError)
    FailToRead(failure::kDeviceError, path, file.errorString());
  return WithoutForeignCharacters(Decoded(bytes));
}

void WriteDocument(const QString& path, const QString& text) {
  if (path.isEmpty())
    throw Failure(failure::kPathNotFound,
                  QStringLiteral("Failed to save: the document has no file name."));
  WriteFileDurably(path, text.toUtf8());
}

}  // namespace kestrix
