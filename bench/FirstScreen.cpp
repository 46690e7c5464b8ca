// Loaded before a program of Qt, it lets the program come to its first event loop, waits until
// everything that is queued there is done (the windows are laid out and painted), tells the moment
// and the peak of the memory, and ends the program. So the shipped program file itself is measured.
#include <unistd.h>
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QWidget>
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

int QApplication::exec() {
  QCoreApplication::sendPostedEvents();
  while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) continue;
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  int windows = 0;
  for (const QWidget* window : topLevelWidgets()) windows += window->isVisible() ? 1 : 0;
  std::printf("first-screen %lld %ld %d\n", now.tv_sec * 1'000'000'000LL + now.tv_nsec,
              PeakKilobytes(), windows);
  std::fflush(stdout);
  _exit(0);
}
