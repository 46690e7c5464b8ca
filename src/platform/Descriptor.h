#pragma once

#include <unistd.h>

#include <utility>

namespace kestrix {

/// Owns one open file descriptor and closes it at the end of its life. It never duplicates one and
/// never reports a failing close: whoever needs a file to be on the disk syncs it before.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] bool valid() const { return number_ >= 0; }

 private:
  int number_ = -1;
};

}  // namespace kestrix
