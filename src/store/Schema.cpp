#include "store/Schema.h"

#include <sqlite3.h>

#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "SchemaTexts.h"
#include "platform/Failure.h"
#include "store/Database.h"

namespace kestrix {
namespace {

// What data/*.sql marks all files of ours with.
constexpr auto kApplicationId = "1263752280";

/// The tables, indexes and whatever else a database is made of: the SQL of each, whatever its
/// layout.
using Parts = QSet<QString>;

/// One version of one kind of file.
struct Schema {
  qint64 version;
  const char* step;  ///< what makes it of the version before
  Parts parts;
};

constexpr auto kVersionSql = "PRAGMA user_version";
// What the engine keeps for itself has no SQL, or is a table of its own.
constexpr auto kPartsSql =
    "SELECT sql FROM sqlite_schema WHERE sql NOTNULL AND NOT (type='table' AND name GLOB "
    "'sqlite_*')";

/// The first column of what `sql` gives; nothing when the engine fails.
std::optional<QStringList> Ask(sqlite3* handle, const char* sql) {
  QStringList texts;
  const auto take = [](void* all, int, char** row, char**) {
    static_cast<QStringList*>(all)->append(QString::fromUtf8(row[0]));
    return 0;
  };
  if (sqlite3_exec(handle, sql, take, &texts, nullptr) != SQLITE_OK) return {};
  return texts;
}

Parts PartsOf(const QStringList& statements) {
  static const QRegularExpression layout(QStringLiteral("--[^\\n]*|\\s+"));
  Parts parts;
  for (const QString& sql : statements) parts.insert(QString(sql).remove(layout).toLower());
  return parts;
}

/// What a file of this system may be made of, kind by kind from the first version to the newest:
/// made from the same texts as those of an installation.
const std::vector<std::vector<Schema>>& Kinds() {
  static const auto kinds = [] {
    std::vector<std::vector<Schema>> made;
    for (const auto& steps : kSchemaTexts) {
      sqlite3* memory = nullptr;
      sqlite3_open(":memory:", &memory);
      const std::unique_ptr<sqlite3, EngineCloser> closer(memory);
      auto& kind = made.emplace_back();
      for (const char* step : steps) {
        sqlite3_exec(memory, step, nullptr, nullptr, nullptr);
        kind.push_back({Ask(memory, kVersionSql)->value(0).toLongLong(), step,
                        PartsOf(*Ask(memory, kPartsSql))});
      }
    }
    return made;
  }();
  return kinds;
}

}  // namespace

QString CopyOfVersion(const QString& path, qint64 version) {
  return QStringLiteral("%1.v%2").arg(path).arg(version);
}

QStringList CopiesOfVersions(const QString& path) {
  qint64 newest = 0;
  for (const auto& kind : Kinds()) newest = std::max(newest, kind.back().version);
  QStringList copies;
  for (qint64 version = 0; version < newest; ++version) copies += CopyOfVersion(path, version);
  return copies;
}

Failure NotOfThisProgram(const QString& path) {
  return {failure::kNotADatabase,
          QStringLiteral("The file %1 is not a database of this program.").arg(path)};
}

Behind BehindNewest(Database& database) {
  database.BeginWork();
  const auto ask = [&](const char* sql) {
    if (const auto texts = Ask(database.handle(), sql)) return *texts;
    throw database.LastFailure();
  };
  const Parts parts = PartsOf(ask(kPartsSql));
  const qint64 version = ask(kVersionSql).value(0).toLongLong();
  qint64 newest = 0;
  for (const auto& kind : Kinds()) {
    newest = std::max(newest, kind.back().version);
    const auto same = std::find_if(kind.begin(), kind.end(),
                                   [&](const Schema& known) { return known.parts == parts; });
    if (same == kind.end()) continue;
    newest = kind.back().version;
    if (version > same->version) break;
    if (version == newest) return {version, {}};
    QByteArray steps;
    for (auto step = same + 1; step != kind.end(); ++step) steps += step->step;
    return {version, steps + "PRAGMA user_version=" + QByteArray::number(newest)};
  }
  if (version <= newest || ask("PRAGMA application_id").value(0) != kApplicationId) {
    throw NotOfThisProgram(database.path());
  }
  throw Failure(failure::kNotADatabase,
                QStringLiteral("The file %1 was made by a newer version of this program: it has "
                               "version %2, and this program knows none above %3.")
                    .arg(database.path())
                    .arg(version)
                    .arg(newest));
}

}  // namespace kestrix
