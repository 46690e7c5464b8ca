#pragma once

#include <QTemporaryDir>
#include <mutex>
#include <optional>

namespace kestrix::command {

/// Ends the process on SIGINT or SIGTERM so that nothing of its work stays: temporary files lie in
/// a folder of its own, which goes first, and what is being written comes to its end. It must be
/// made before any other thread, and lives until the process ends.
class Interruption {
 public:
  Interruption();

  /// From here on the process ends by itself: no signal comes between.
  static void End() { Writing().lock(); }

  /// Held while a file comes to its place; a signal waits for it.
  static std::mutex& Writing();

 private:
  void Wait();

  std::optional<QTemporaryDir> folder_;
};

}  // namespace kestrix::command
