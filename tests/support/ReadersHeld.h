#pragma once

#include <QList>
#include <QPointer>
#include <QSemaphore>
#include <QThreadPool>
#include <memory>

namespace kestrix {

/// Holds all that a form, or a view, would read beside the events, until LetGo: what a person does
/// meanwhile comes before the end of the reading for certain, however fast the machine is.
class ReadersHeld {
 public:
  explicit ReadersHeld(const QObject& owner) {
    const auto readers = owner.findChildren<QThreadPool*>();
    for (QThreadPool* reader : readers) {
      readers_.append(reader);
      reader->start([gate = gate_] { gate->acquire(); });
    }
  }
  ReadersHeld(const ReadersHeld&) = delete;
  ReadersHeld& operator=(const ReadersHeld&) = delete;
  ~ReadersHeld() { LetGo(); }

  void LetGo() {
    if (!held_) return;
    held_ = false;
    gate_->release(static_cast<int>(readers_.size()));
  }
  /// Lets go, and returns when nothing is being read any more; what follows from it is queued.
  void LetGoAndWait() {
    LetGo();
    for (const auto& reader : readers_) {
      if (reader) reader->waitForDone();
    }
  }

 private:
  QList<QPointer<QThreadPool>> readers_;
  std::shared_ptr<QSemaphore> gate_ = std::make_shared<QSemaphore>();
  bool held_ = true;
};

}  // namespace kestrix
