#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace kestrix {

class Database;
class Failure;

/// What a database of this system is behind its newest version by.
struct Behind {
  qint64 version;    ///< the number that the file carries
  QByteArray steps;  ///< SQL that brings it to the newest version; empty for one that is
};

/// Compares the tables, columns and indexes of a database with those of each version of each kind
/// that this program knows. A file may carry a lower number than its schema has, or none: tools
/// that write a database out and in again drop it. Fails with kNotADatabase for any other file, and
/// says so of one that a newer program made.
[[nodiscard]] Behind BehindNewest(Database& database);

/// Where the copy of the database at `path` lies that was taken before it left `version`. A later
/// one takes the place of an earlier one.
[[nodiscard]] QString CopyOfVersion(const QString& path, qint64 version);
/// Where all such copies may lie.
[[nodiscard]] QStringList CopiesOfVersions(const QString& path);

/// What is said of a file that isn't ours.
[[nodiscard]] Failure NotOfThisProgram(const QString& path);

}  // namespace kestrix
