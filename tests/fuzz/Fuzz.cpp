#include "Fuzz.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStringConverter>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "platform/Failure.h"

namespace kestrix::fuzz {
namespace {

constexpr std::size_t kNotes = 4096;

// The fuzzer looks into a section of this name besides its own counters.
__attribute__((section("__libfuzzer_extra_counters"))) std::array<uint8_t, kNotes> notes;

QString Decoded(const QByteArray& bytes) {
  QStringDecoder decoder(QStringConverter::Utf8);
  const QString text = decoder.decode(bytes);
  return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

}  // namespace

void Hold(bool holds, const char* promise, const QString& about) {
  if (holds) return;
  std::fprintf(stderr, "== This doesn't hold: %s. %s\n", promise, qUtf8Printable(about));
  std::abort();
}

void Note(const QString& what) {
  quint32 place = 2166136261U;
  for (const QChar c : what) place = (place ^ c.unicode()) * 16777619U;
  uint8_t& note = notes[(place >> 8) % kNotes];
  note = std::max<uint8_t>(note, 1);
}

void Note(const Failure& failure) {
  Hold(failure.number() > 0, "a failure has a number", failure.description());
  Hold(!failure.description().trimmed().isEmpty(), "a failure is told in words");
  Note(QString::number(failure.number()) + failure.description());
}

void WithinApplication() {
  static int count = 1;
  static char name[] = "fuzz";
  static char* names[] = {name, nullptr};
  // Never deleted: whatever the fuzzer holds at the end may still need it.
  static const QApplication* application = [] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Those who read have much to say of what they refuse.
    QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false\nqt.gui.imageio*=false"));
    return new QApplication(count, names);
  }();
  static_cast<void>(application);
}

QString Folder() {
  static const QTemporaryDir folder([] {
    const QFileInfo memory(QStringLiteral("/dev/shm"));
    const bool usable = memory.isDir() && memory.isWritable();
    return (usable ? memory.filePath() : QDir::tempPath()) + QStringLiteral("/kestrix-fuzz-XXXXXX");
  }());
  return folder.path();
}

QString LayFile(const QString& name, const QByteArray& bytes) {
  const QString path = Folder() + u'/' + name;
  QFile::remove(path);
  QFile file(path);
  const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
  Hold(written, "the input can be laid out as a file", path);
  return path;
}

QByteArray BytesOf(const QString& path) {
  QFile file(path);
  Hold(file.open(QIODevice::ReadOnly), "a file that was laid out is there", path);
  return file.readAll();
}

int Input::Byte() {
  if (bytes_.isEmpty()) return 0;
  const auto byte = static_cast<uint8_t>(bytes_.front());
  bytes_.remove(0, 1);
  return byte;
}

QString Input::Line() {
  const qsizetype end = bytes_.indexOf('\n');
  const QByteArray line = bytes_.left(end);
  bytes_.remove(0, end < 0 ? bytes_.size() : end + 1);
  return Decoded(line);
}

QByteArray Input::Rest() {
  return std::exchange(bytes_, {});
}

QString Input::RestAsText() {
  return Decoded(Rest());
}

}  // namespace kestrix::fuzz
