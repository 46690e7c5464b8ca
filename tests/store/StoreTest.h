#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <memory>

#include "platform/Failure.h"
#include "store/Database.h"
#include "store/Recordset.h"

namespace kestrix::testing {

/// A database of any tables: those of these tests show more kinds of columns than ours have.
class Database : public kestrix::Database {
 public:
  explicit Database(const QString& path) : kestrix::Database(path, Made::kByATest) {}
};

/// A study database of the test's own in a folder of its own, and another user's connection to it.
class StoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(folder_.isValid());
    MakeStudy(Path("study.mdb"));
  }

  [[nodiscard]] QString Path(const char* name) const {
    return folder_.filePath(QString::fromUtf8(name));
  }

  /// What another program does to the file.
  static void Exec(const QString& path, const char* sql) {
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &handle), SQLITE_OK);
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(handle, sql, nullptr, nullptr, &error), SQLITE_OK)
        << (error != nullptr ? error : "");
    sqlite3_free(error);
    sqlite3_close(handle);
  }

  /// The first column of a query, read by a connection of its own.
  static QStringList Read(const QString& path, const char* sql) {
    QStringList values;
    sqlite3* handle = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &handle, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(handle, sql, -1, &statement, nullptr), SQLITE_OK)
        << sqlite3_errmsg(handle);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
      values += text == nullptr ? QStringLiteral("<null>") : QString::fromUtf8(text);
    }
    sqlite3_finalize(statement);
    sqlite3_close(handle);
    return values;
  }

  static void MakeStudy(const QString& path) {
    Exec(path,
         "CREATE TABLE Project_details(Factory_Name VARCHAR(255) NOT NULL DEFAULT '',"
         " Project_Number VARCHAR(255) NOT NULL DEFAULT '',"
         " Project_Description VARCHAR(255) NOT NULL DEFAULT 'N.A.');"
         "CREATE TABLE fileLink(Project_Number VARCHAR(255), FilePath VARCHAR(255) NOT NULL"
         " CHECK(length(FilePath) >= 1));"
         "CREATE TABLE Risk_records(Project_Number VARCHAR(255) NOT NULL DEFAULT '',"
         " Title VARCHAR(10) NOT NULL DEFAULT 'untitled', Level INTEGER NOT NULL DEFAULT 0,"
         " Done BOOLEAN NOT NULL DEFAULT 0, Note VARCHAR(255),"
         " nunberauto INTEGER PRIMARY KEY AUTOINCREMENT);"
         "CREATE UNIQUE INDEX one_title ON Risk_records(Project_Number, Title);");
  }

  /// An empty study as an installation has it.
  [[nodiscard]] QString GivenInstalledStudy(const char* name) const {
    EXPECT_TRUE(
        QFile::copy(QStringLiteral(KESTRIX_PRISTINE_FOLDER "/risk_esmatn.mdb"), Path(name)));
    QFile::setPermissions(Path(name), QFile::ReadOwner | QFile::WriteOwner);
    return Path(name);
  }

  void GivenTasks(int count) {
    QByteArray sql = "BEGIN;";
    for (int i = 1; i <= count; ++i) {
      sql += "INSERT INTO Risk_records(Project_Number,Title,Level) VALUES('P','T" +
             QByteArray::number(i) + "'," + QByteArray::number(i) + ");";
    }
    Exec(Path("study.mdb"), (sql + "COMMIT;").constData());
  }

  std::unique_ptr<Recordset> Tasks() {
    return std::make_unique<Recordset>(
        std::make_shared<Database>(Path("study.mdb")),
        Select("Risk_records.Project_Number, Risk_records.Title, Risk_records.Level, "
               "Risk_records.Done, Risk_records.Note, Risk_records.nunberauto",
               "FROM Risk_records Where (((Risk_records.Project_Number)='P')) ORDER BY "
               "Risk_records.nunberauto"));
  }

  /// The number of the Failure that `work` ends with; 0 when it ends well.
  static int FailureOf(const std::function<void()>& work) {
    try {
      work();
    } catch (const Failure& failure) {
      EXPECT_FALSE(failure.description().isEmpty());
      return failure.number();
    }
    return 0;
  }

  QTemporaryDir folder_;
};

}  // namespace kestrix::testing
