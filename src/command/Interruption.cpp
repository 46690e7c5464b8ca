#include "command/Interruption.h"

#include <pthread.h>
#include <unistd.h>

#include <QFile>
#include <array>
#include <csignal>
#include <thread>

namespace kestrix::command {
namespace {

constexpr std::array kSignals{SIGINT, SIGTERM};

sigset_t Signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kSignals) sigaddset(&signals, signal);
  return signals;
}

}  // namespace

Interruption::Interruption() {
  const sigset_t signals = Signals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  folder_.emplace();
  // Libraries ask the environment where their temporary files go.
  if (folder_->isValid()) qputenv("TMPDIR", QFile::encodeName(folder_->path()));
  std::thread([this] { Wait(); }).detach();
}

std::mutex& Interruption::Writing() {
  static std::mutex writing;
  return writing;
}

void Interruption::Wait() {
  const sigset_t signals = Signals();
  int signal = 0;
  while (sigwait(&signals, &signal) != 0) {
  }
  Writing().lock();
  // The other thread may be putting a file there just now.
  constexpr int kTries = 1000;
  for (int tries = 0; tries < kTries && !folder_->remove(); ++tries) {
  }
  // The caller sees which signal it was.
  std::signal(signal, SIG_DFL);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  raise(signal);
  _exit(1);
}

}  // namespace kestrix::command
