#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include "platform/Failure.h"
#include "support/Printers.h"

namespace kestrix {

/// Makes or replaces a file; a file that can't be made fails the test.
inline void WriteFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
  EXPECT_TRUE(written) << path.toStdString();
}

/// The content of a file; "<no file>" when it can't be read.
[[nodiscard]] inline QByteArray ReadFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
}

/// The number of the Failure that `act` ends with; 0 when it ends well.
template <typename Act>
[[nodiscard]] int FailureOf(Act act) {
  try {
    act();
  } catch (const Failure& failure) {
    EXPECT_FALSE(failure.description().isEmpty());
    return failure.number();
  }
  return 0;
}

}  // namespace kestrix
