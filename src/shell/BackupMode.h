#pragma once

#include <QtGlobal>

/// What BackupMode of the session stands on: what the forms of the backup are there for.
namespace kestrix::backup_mode {

inline constexpr qint16 kBackup = 0;
inline constexpr qint16 kRestore = 1;
/// Reserved: nothing is copied in these two, and no menu leads to them.
inline constexpr qint16 kList = 2;
inline constexpr qint16 kPresets = 3;

}  // namespace kestrix::backup_mode
