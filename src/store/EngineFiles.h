#pragma once

#include <QString>

struct sqlite3;

namespace kestrix {

/// Opens the database at `path` as sqlite3_open_v2 does, and lets the engine from then on open
/// nothing but plain files and folders, as a pipe under the name of a journal would hold us up for
/// ever, and delete nothing but the journals of open databases: one that somebody laid there can
/// name any file.
[[nodiscard]] int OpenByEngine(const QString& path, int flags, sqlite3** handle);

}  // namespace kestrix
