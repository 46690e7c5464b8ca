#pragma once

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>

/// What every target has: an input, any bytes at all, is given to the program's own code, which
/// comes to a result or a Failure that says so. A promise that doesn't hold ends the process.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace kestrix {
class Failure;
}

namespace kestrix::fuzz {

/// Ends the process with this sentence, and what it is about, unless the promise holds.
void Hold(bool holds, const char* promise, const QString& about = {});

/// Tells the fuzzer that something happened of which it can't know: a library in which no branches
/// are counted took another way. Inputs that are the first to make something happen are kept.
void Note(const QString& what);
void Note(const Failure& failure);

/// Makes the one application, without a screen, that fonts, pictures and controls need.
void WithinApplication();

/// A folder in memory, where the system has room for such, that goes with the process.
[[nodiscard]] QString Folder();
/// Puts these bytes in place of a file of that folder. Its full path.
QString LayFile(const QString& name, const QByteArray& bytes);
[[nodiscard]] QByteArray BytesOf(const QString& path);

/// An input in parts: what is left of it is taken from its front, and an input that is used up
/// gives zeros and empty texts.
class Input {
 public:
  Input(const uint8_t* data, size_t size)
      : bytes_(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)) {}

  [[nodiscard]] bool IsUsedUp() const { return bytes_.isEmpty(); }
  [[nodiscard]] int Byte();
  [[nodiscard]] int Upto(int most) { return Byte() % (most + 1); }
  /// Up to the next line end, which goes with it. UTF-8; what isn't is taken for Latin-1.
  [[nodiscard]] QString Line();
  [[nodiscard]] QByteArray Rest();
  [[nodiscard]] QString RestAsText();

 private:
  QByteArray bytes_;
};

}  // namespace kestrix::fuzz
