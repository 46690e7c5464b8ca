#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <functional>

#include "Manual.h"
#include "Pictures.h"
#include "platform/Failure.h"

namespace kestrix::help {

/// A small manual and a folder for its pictures.
class HelpTest : public ::testing::Test {
 protected:
  static Manual Read(const QString& text) { return Manual::Parse(text, QStringLiteral("m.md")); }

  /// The sentence that the work fails with; empty when it doesn't fail.
  static std::string SentenceOf(const std::function<void()>& work) {
    try {
      work();
    } catch (const Failure& failure) {
      return failure.description().toStdString();
    }
    return {};
  }

  [[nodiscard]] QString PathOf(const QString& name) const { return folder_.filePath(name); }

  void MakePicture(const QString& name, const QSize& size = QSize(640, 400)) const {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    ASSERT_TRUE(picture.save(PathOf(name), "PNG"));
  }

  void MakeFile(const QString& name, const QByteArray& bytes) const {
    QFile file(PathOf(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
  }

  [[nodiscard]] Pictures TheirPictures() const { return Pictures(folder_.path()); }

 private:
  QTemporaryDir folder_;
};

}  // namespace kestrix::help
