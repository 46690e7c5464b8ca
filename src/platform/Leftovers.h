#pragma once

#include <QString>
#include <chrono>

namespace kestrix {

/// A copy that has no place yet may stand beside its target under a name of its own, and a process
/// that is killed leaves it there. These functions give such copies their names and know them
/// again. A name tells which run of which machine wrote it, and the writer holds a lock on the file
/// for as long as it lives.

/// A name in `folder` for the next unfinished copy of this process.
[[nodiscard]] QString NextUnfinishedName(const QString& folder);
/// Whether a file of that name, without its folder, is an unfinished copy of any process.
[[nodiscard]] bool IsUnfinishedName(const QString& name);

/// Marks the open file `fd`, which is to have or has such a name, as one that is being written. It
/// stays so until it is closed. False when somebody who took it for a leftover was quicker: it may
/// be gone at any moment.
[[nodiscard]] bool HoldUnfinished(int fd);

/// How long the copy of another machine, or of a run that a loss of power ended, must have been
/// left alone to be taken for a leftover: a lock isn't seen from everywhere.
inline constexpr std::chrono::seconds kQuietTime = std::chrono::hours(24);

/// Removes from `folder` the unfinished copies whose writers are gone. One that can't be told from
/// a copy that is being written stays, and so does one that may not be removed. Never fails.
void RemoveLeftovers(const QString& folder, std::chrono::seconds quiet_time = kQuietTime);

}  // namespace kestrix
