#pragma once

#include <QString>

namespace kestrix {

/// A copy has no name until it is whole, where the disk knows such files. On its way to the place
/// of an older file, and all the time on other disks, it stands in its folder under the one name
/// that is kept for that, and a process that is killed leaves it there. Its writer holds a lock on
/// it for as long as it lives.
inline constexpr QLatin1StringView kPartName(".kestrix.part");

[[nodiscard]] QString PartIn(const QString& folder);

/// Whether the open file `fd` stands at `path`.
[[nodiscard]] bool LiesAt(const QString& path, int fd);

/// Marks the open file `fd` as one that is being written, until it is closed. False when somebody
/// holds it: who writes it, or who took it for a leftover.
[[nodiscard]] bool HoldPart(int fd);

/// Removes from `folder` the copy whose writer is gone, and anything else of its name but a folder
/// that holds something. What may not be removed stays. Never fails.
void RemoveLeftover(const QString& folder);

}  // namespace kestrix
