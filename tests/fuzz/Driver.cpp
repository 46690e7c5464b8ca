// Stands in for the fuzzer where the compiler has none: runs a target on its seeds and, a number of
// times, on damaged ones, always the same. Told nothing but files, it runs each of them.
#include <fcntl.h>
#include <unistd.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <csignal>
#include <cstdio>

#include "Fuzz.h"
#include "holds/Chance.h"
#include "holds/Damage.h"

namespace {

using kestrix::holds::Chance;

constexpr quint32 kSeed = 20120615;
constexpr int kHangSeconds = 60;

/// The input in hand, for whoever looks into why the process ended.
QByteArray input_in_hand;
/// Where it goes then: a full path, as a target may change the current folder.
QByteArray place_of_input;

extern "C" void KeepInput(int signal) {
  const int file = open(place_of_input.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  if (file >= 0) {
    const auto size = static_cast<size_t>(input_in_hand.size());
    static_cast<void>(!write(file, input_in_hand.constData(), size));
    close(file);
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void Run(const QByteArray& input) {
  input_in_hand = input;
  alarm(kHangSeconds);
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.constData()),
                         static_cast<size_t>(input.size()));
  alarm(0);
}

QList<QByteArray> InputsOf(const QStringList& paths) {
  QList<QByteArray> inputs;
  for (const QString& path : paths) {
    if (QFileInfo(path).isDir()) {
      const QDir folder(path);
      QStringList inner;
      for (const QString& name : folder.entryList(QDir::Files, QDir::Name)) {
        inner += folder.filePath(name);
      }
      inputs += InputsOf(inner);
      continue;
    }
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) inputs += file.readAll();
  }
  return inputs;
}

}  // namespace

int main(int count, char** arguments) {
  int times = 0;
  QStringList paths;
  for (int i = 1; i < count; ++i) {
    const QString argument = QString::fromLocal8Bit(arguments[i]);
    if (argument.startsWith(QStringLiteral("-runs="))) {
      times = argument.mid(6).toInt();
    } else {
      paths += argument;
    }
  }
  const QString name = QFileInfo(QString::fromLocal8Bit(arguments[0])).fileName();
  place_of_input = QFile::encodeName(QDir::current().filePath(name + QStringLiteral("-input")));
  for (const int signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGALRM}) {
    std::signal(signal, KeepInput);
  }
  const QList<QByteArray> seeds = InputsOf(paths);
  if (seeds.isEmpty()) {
    std::fprintf(stderr, "There is nothing to run: name files or folders of inputs.\n");
    return 1;
  }
  for (const QByteArray& seed : seeds) Run(seed);
  Chance chance(kSeed);
  for (int i = 0; i < times; ++i) {
    Run(kestrix::holds::Damage(seeds[i % seeds.size()], chance).bytes);
  }
  std::printf("%d seeds and %d damaged ones were run\n", static_cast<int>(seeds.size()), times);
  return 0;
}
