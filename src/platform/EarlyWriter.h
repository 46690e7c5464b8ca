#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/Descriptor.h"

namespace kestrix {

/// Has files written to the disk while others are still being copied, so that less is left to wait
/// for at the end. The disk takes only so much at a time, and whoever hands it more must wait: that
/// is done here, on a thread of its own. It only saves time: nothing is known to be on the disk
/// before somebody has synced it.
class EarlyWriter {
 public:
  EarlyWriter() = default;
  EarlyWriter(const EarlyWriter&) = delete;
  EarlyWriter& operator=(const EarlyWriter&) = delete;
  /// What waits by then isn't begun any more.
  ~EarlyWriter();

  /// Begins to write the open file `fd`, which may be closed meanwhile. Where too many wait
  /// already, it does nothing.
  void Begin(int fd);

 private:
  void Run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Descriptor> waiting_;
  bool ended_ = false;
  std::thread thread_;
};

}  // namespace kestrix
