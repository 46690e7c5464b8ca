#pragma once

namespace kestrix {

/// A twip is 1/15 of a logical pixel: the measure of stored window places and of the risk graph.
inline constexpr int kTwipsPerPixel = 15;

[[nodiscard]] constexpr int PixelsFromTwips(int twips) {
  return twips / kTwipsPerPixel;
}
[[nodiscard]] constexpr int TwipsFromPixels(int pixels) {
  return pixels * kTwipsPerPixel;
}

}  // namespace kestrix
