#include "store/Schema.h"

#include <sqlite3.h>

#include <QRegularExpression>
#include <QSet>
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

// In one statement, so that a file that is being brought up is seen before it or after it. What the
// engine keeps for itself has no SQL, or is a table of its own.
constexpr auto kLookSql =
    "SELECT user_version FROM pragma_user_version UNION ALL SELECT application_id FROM "
    "pragma_application_id UNION ALL SELECT sql FROM sqlite_schema WHERE sql NOTNULL AND NOT "
    "(type='table' AND name GLOB 'sqlite_*')";

struct Look {
  qint64 version = 0;
  QString application;
  Parts parts;
};

/// Nothing when the engine fails.
std::optional<Look> LookAt(sqlite3* handle) {
  static const QRegularExpression layout(QStringLiteral("--[^\\n]*|\\s+"));
  QStringList texts;
  const auto take = [](void* all, int, char** row, char**) {
    static_cast<QStringList*>(all)->append(QString::fromUtf8(row[0]));
    return 0;
  };
  if (sqlite3_exec(handle, kLookSql, take, &texts, nullptr) != SQLITE_OK) return {};
  Look look{texts.takeFirst().toLongLong(), texts.takeFirst(), {}};
  for (QString& sql : texts) look.parts.insert(sql.remove(layout).toLower());
  return look;
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
        const Look look = *LookAt(memory);
        kind.push_back({look.version, step, look.parts});
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
  const std::optional<Look> look = LookAt(database.handle());
  if (!look) throw database.LastFailure();
  const qint64 version = look->version;
  qint64 newest = 0;
  for (const auto& kind : Kinds()) {
    newest = std::max(newest, kind.back().version);
    const auto same = std::find_if(kind.begin(), kind.end(),
                                   [&](const Schema& known) { return known.parts == look->parts; });
    if (same == kind.end()) continue;
    newest = kind.back().version;
    if (version > same->version) break;
    if (same->version == newest) return {version, {}};
    QByteArray steps;
    for (auto step = same + 1; step != kind.end(); ++step) steps += step->step;
    return {version, steps + "PRAGMA user_version=" + QByteArray::number(newest)};
  }
  if (version <= newest || look->application != kApplicationId) {
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
