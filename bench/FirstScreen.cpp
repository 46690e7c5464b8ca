// Loaded before a program of Qt, it lets the program come to its first event loop, waits until its
// window is on the display and everything that is queued there is done (the window is laid out and
// painted), tells the moment and the peak of the memory, and ends the program. So the shipped
// program file itself is measured.
#include <unistd.h>
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QWidget>
#include <QWindow>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

long PeakKilobytes() {
  std::FILE* status = std::fopen("/proc/self/status", "r");
  if (status == nullptr) return 0;
  char line[256];
  long peak = 0;
  while (std::fgets(line, sizeof line, status) != nullptr) {
    if (std::strncmp(line, "VmHWM:", 6) == 0) peak = std::atol(line + 6);
  }
  std::fclose(status);
  return peak;
}

}  // namespace

/// A display tells a window that it is to be seen some time after it was asked to show it.
bool Exposed() {
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && !window->windowHandle()->isExposed()) return false;
  }
  return true;
}

void WorkOffEvents(QEventLoop::ProcessEventsFlags flags) {
  while (QCoreApplication::eventDispatcher()->processEvents(flags)) continue;
}

int QApplication::exec() {
  QCoreApplication::sendPostedEvents();
  while (!Exposed()) {
    QCoreApplication::eventDispatcher()->processEvents(QEventLoop::WaitForMoreEvents);
  }
  WorkOffEvents(QEventLoop::AllEvents);
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  int windows = 0;
  for (const QWidget* window : topLevelWidgets()) windows += window->isVisible() ? 1 : 0;
  std::printf("first-screen %lld %ld %d\n", now.tv_sec * 1'000'000'000LL + now.tv_nsec,
              PeakKilobytes(), windows);
  std::fflush(stdout);
  _exit(0);
}
