#include "backup/BesideEvents.h"

#include <QEventLoop>
#include <exception>
#include <thread>

namespace kestrix {

void RunBesideEvents(const std::function<void()>& work) {
  std::exception_ptr thrown;
  QEventLoop loop;
  std::thread thread([&] {
    try {
      work();
    } catch (...) {
      thrown = std::current_exception();
    }
    // Queued: a loop that is told to quit before it runs would never end.
    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
  });
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  thread.join();
  if (thrown) std::rethrow_exception(thrown);
}

}  // namespace kestrix
