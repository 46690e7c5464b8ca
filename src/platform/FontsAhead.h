#pragma once

#include <thread>

namespace kestrix {

/// Has the desktop's configuration of fonts read on a thread of its own while the program connects
/// to the display: reading it takes as long as making the first window, and nothing can be laid out
/// without it. It never chooses a font. Where no thread can be had nothing is read ahead, and the
/// toolkit reads the configuration when it needs it.
class FontsAhead {
 public:
  /// Takes over the locale of the desktop, which the toolkit would do a moment later: the
  /// configuration's numbers are read by it, so it isn't to change meanwhile.
  FontsAhead();
  ~FontsAhead();
  FontsAhead(const FontsAhead&) = delete;
  FontsAhead& operator=(const FontsAhead&) = delete;

  /// Waits until the configuration is read. To be called before the first text is laid out, or it
  /// would be read twice at once.
  void Wait();

 private:
  std::thread reader_;
};

}  // namespace kestrix
