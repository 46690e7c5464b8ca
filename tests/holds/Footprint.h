#pragma once

#include <QStringList>
#include <QtGlobal>

namespace kestrix::holds {

/// What this process takes of the machine at one moment. Before it is taken the program should have
/// come to rest; what the allocator keeps for later is given back to the system first.
struct Footprint {
  /// Bytes that the program has asked for and not given back.
  qint64 heap = 0;
  /// Bytes of memory that is nobody else's, whether they are in memory or swapped out.
  qint64 own = 0;
  /// Bytes in memory, those of files and libraries included, which the system may drop at any time.
  qint64 resident = 0;

  [[nodiscard]] static Footprint Now();
};

/// How far `now` lies above `before`, in percent.
[[nodiscard]] double GrowthPercent(qint64 before, qint64 now);

/// What each open handle of this process leads to, sorted.
[[nodiscard]] QStringList OpenHandles();

}  // namespace kestrix::holds
