#include "platform/FontsAhead.h"

#include <fontconfig/fontconfig.h>

#include <clocale>
#include <system_error>

namespace kestrix {

FontsAhead::FontsAhead() {
  std::setlocale(LC_ALL, "");
  try {
    reader_ = std::thread(FcInit);
  } catch (const std::system_error&) {
    // Only slower.
  }
}

FontsAhead::~FontsAhead() {
  Wait();
}

void FontsAhead::Wait() {
  if (reader_.joinable()) reader_.join();
}

}  // namespace kestrix
