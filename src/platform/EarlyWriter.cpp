#include "platform/EarlyWriter.h"

#include <fcntl.h>

#include <system_error>

namespace kestrix {
namespace {

/// Each of them is an open file.
constexpr size_t kMostWaiting = 64;
/// So many are begun in one go: to wake the thread for each would cost as much as it saves.
constexpr size_t kLot = 16;

}  // namespace

EarlyWriter::~EarlyWriter() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void EarlyWriter::Begin(int fd) {
  const std::lock_guard lock(mutex_);
  if (waiting_.size() >= kMostWaiting) return;
  Descriptor own(::fcntl(fd, F_DUPFD_CLOEXEC, 0));
  if (!own.valid()) return;
  waiting_.push_back(std::move(own));
  if (waiting_.size() >= kLot) changed_.notify_one();
  if (thread_.joinable()) return;
  try {
    thread_ = std::thread([this] { Run(); });
  } catch (const std::system_error&) {
    // Without a thread all is written at the end.
    waiting_.clear();
  }
}

void EarlyWriter::Run() {
  for (;;) {
    std::vector<Descriptor> lot;
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return ended_ || waiting_.size() >= kLot; });
      if (ended_) return;
      lot.swap(waiting_);
    }
    for (const Descriptor& file : lot) ::sync_file_range(file.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
  }
}

}  // namespace kestrix
