#include "backup/BesideEvents.h"

#include <QEventLoop>
#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrentRun>

namespace kestrix {

void RunBesideEvents(const std::function<void()>& work) {
  // Not the threads that all share: the painting of a picture waits for those.
  QThreadPool threads;
  QEventLoop loop;
  QFutureWatcher<void> done;
  QObject::connect(&done, &QFutureWatcher<void>::finished, &loop, &QEventLoop::quit);
  done.setFuture(QtConcurrent::run(&threads, work));
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  done.waitForFinished();
}

}  // namespace kestrix
