#pragma once

#include <QString>

namespace kestrix {

/// Copies the database at `source` to `target` with the journal that a killed writer left, while
/// nobody can change either: opening the copy rolls it back there. Fails with kLocked when somebody
/// writes for longer than the store waits, and as reading and writing a file can.
void CopyWithJournal(const QString& source, const QString& target);

/// Whether another program has set the database at `path` to write-ahead mode, and whether
/// committed rows stand in a file beside it: these can't be read without writing there.
[[nodiscard]] bool IsInWriteAheadMode(const QString& path);
[[nodiscard]] bool IsWrittenAhead(const QString& path);

}  // namespace kestrix
