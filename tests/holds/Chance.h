#pragma once

#include <gtest/gtest.h>

#include <QtGlobal>
#include <algorithm>
#include <cstdio>
#include <random>

namespace kestrix::holds {

/// Numbers by chance that can be had again: the seed of a run is printed, and KESTRIX_HOLDS_SEED
/// sets it.
class Chance {
 public:
  explicit Chance(quint32 seed) : random_(seed) {}
  /// From `least` to `most`, both included.
  int Between(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(random_);
  }
  bool OneIn(int times) { return Between(1, times) == 1; }
  quint32 Seed() { return static_cast<quint32>(random_()); }

 private:
  std::mt19937 random_;
};

/// The seed of a whole test, printed with the number of its rounds.
inline quint32 SeedOf(int rounds, const char* what) {
  bool ok = false;
  quint32 seed = qEnvironmentVariable("KESTRIX_HOLDS_SEED").toUInt(&ok);
  if (!ok) seed = std::random_device()();
  std::printf("%d %s, KESTRIX_HOLDS_SEED=%u\n", rounds, what, seed);
  std::fflush(stdout);
  return seed;
}

/// How often a test repeats its work: KESTRIX_HOLDS_TIMES multiplies it for long runs by hand.
inline int Rounds(int usual) {
  return usual * std::max(1, qEnvironmentVariableIntValue("KESTRIX_HOLDS_TIMES"));
}

}  // namespace kestrix::holds
