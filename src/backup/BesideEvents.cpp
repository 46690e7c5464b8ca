#include "backup/BesideEvents.h"

#include <QEventLoop>
#include <QScopeGuard>
#include <future>

namespace kestrix {

void RunBesideEvents(const std::function<void()>& work) {
  QEventLoop loop;
  auto done = std::async(std::launch::async, [&] {
    const auto quit = qScopeGuard(
        [&] { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); });
    work();
  });
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  done.get();
}

}  // namespace kestrix
