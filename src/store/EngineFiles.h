#pragma once

#include <QString>

struct sqlite3;

namespace kestrix {

/// Opens the database at `path` as sqlite3_open_v2 does, and lets the engine open nothing but plain
/// files and folders, and delete nothing but the journals of open databases, from then on. It opens
/// whatever lies beside a database under the name of its journal, and a pipe there would hold us up
/// for ever; and a journal that somebody laid there can name any file to be deleted.
[[nodiscard]] int OpenByEngine(const QString& path, int flags, sqlite3** handle);

}  // namespace kestrix
