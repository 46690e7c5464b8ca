#pragma once

#include <gtest/gtest.h>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

#include "store/Database.h"
#include "store/Recordset.h"
#include "support/Files.h"
#include "support/TestInstallation.h"

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

  /// What another program does to a file, which it makes if there is none.
  static void Exec(const QString& path, const QString& sql) {
    OtherUser(path, OtherUser::Use::kMake).Exec(sql);
  }

  /// The first column of a query, read by a connection of its own.
  static QStringList Read(const QString& path, const QString& sql) {
    return TestInstallation::Column(path, sql);
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
    EXPECT_TRUE(QFile::copy(KESTRIX_PRISTINE_FOLDER "/risk_esmatn.mdb", Path(name)));
    QFile::setPermissions(Path(name), QFile::ReadOwner | QFile::WriteOwner);
    return Path(name);
  }

  void GivenTasks(int count) {
    Exec(Path("study.mdb"),
         QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT %1) "
                        "INSERT INTO Risk_records(Project_Number,Title,Level) "
                        "SELECT 'P','T'||i,i FROM n")
             .arg(count));
  }

  std::unique_ptr<Recordset> Tasks() {
    return std::make_unique<Recordset>(
        std::make_shared<Database>(Path("study.mdb")),
        Select("Risk_records.Project_Number, Risk_records.Title, Risk_records.Level, "
               "Risk_records.Done, Risk_records.Note, Risk_records.nunberauto",
               "FROM Risk_records Where (((Risk_records.Project_Number)='P')) ORDER BY "
               "Risk_records.nunberauto"));
  }

  QTemporaryDir folder_;
};

}  // namespace kestrix::testing
