#include "backup/BesideEvents.h"

#include <QEventLoop>
#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrentRun>
#include <exception>

namespace kestrix {

void RunBesideEvents(const std::function<void()>& work) {
  // Not the threads that all share: the painting of a picture waits for those.
  QThreadPool threads;
  QEventLoop loop;
  QFutureWatcher<void> done;
  QObject::connect(&done, &QFutureWatcher<void>::finished, &loop, &QEventLoop::quit);
  // The toolkit would hand back an exception of its own in place of this one.
  std::exception_ptr thrown;
  done.setFuture(QtConcurrent::run(&threads, [&] {
    try {
      work();
    } catch (...) {
      thrown = std::current_exception();
    }
  }));
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  done.waitForFinished();
  if (thrown) std::rethrow_exception(thrown);
}

}  // namespace kestrix
