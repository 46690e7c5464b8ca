#pragma once

namespace kestrix {

/// Limits on what this process may ask of the system, for a forked child: they can't be lifted, and
/// hold for what it starts too. Both are false where the system has no such limits.

/// From now on the process is killed at the moment when it wants to rename a file.
[[nodiscard]] bool DieAtRename();

/// From now on no file can be made without a name, as on disks that know no such files.
[[nodiscard]] bool RefuseUnnamedFiles();

/// Whether a process can be limited so here.
[[nodiscard]] bool CanLimitSystemCalls();

}  // namespace kestrix

/// Leaves a test that needs such a process where there can be none.
#define KESTRIX_SKIP_WITHOUT_LIMITS()      \
  if (!::kestrix::CanLimitSystemCalls())   \
  GTEST_SKIP() << "the system calls of a " \
                  "process can't be limited here"
