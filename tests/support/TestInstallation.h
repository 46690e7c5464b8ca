#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <memory>

class QProcess;
struct sqlite3;

namespace kestrix {

/// Another user's connection to a database, closed at its end. What fails there fails the test.
class OtherUser {
 public:
  enum class Use { kRead, kWrite, kMake };
  explicit OtherUser(const QString& file, Use use = Use::kWrite);
  ~OtherUser();
  OtherUser(const OtherUser&) = delete;
  OtherUser& operator=(const OtherUser&) = delete;

  /// Runs statements and tells whether all of them were carried out.
  bool Exec(const QString& sql) const;
  /// The rows of a query, each a list of texts. Null reads as "<null>".
  [[nodiscard]] QList<QStringList> Rows(const QString& query) const;
  [[nodiscard]] sqlite3* handle() const { return handle_; }

 private:
  sqlite3* handle_ = nullptr;
};

/// An installation folder of the test's own, laid out as the build makes it, and the hands of
/// another user on its databases. Paths are full paths; nothing here goes through the store that is
/// tested.
class TestInstallation {
 public:
  TestInstallation();

  /// The application's folder.
  [[nodiscard]] QString Folder() const { return folder_; }
  /// `tail` with "/" between folders, e.g. "RskAsmtFld/orgtn.mdb".
  [[nodiscard]] QString Path(const QString& tail) const;
  [[nodiscard]] QString Template() const;
  [[nodiscard]] QString Register() const;
  [[nodiscard]] QString Lists() const;
  [[nodiscard]] QString Study(int number) const;
  [[nodiscard]] QString StudySign(int number) const;
  [[nodiscard]] QString PictureFolder(int number) const;
  /// A place of this test outside of the installation.
  [[nodiscard]] QString Outside(const QString& name) const;

  /// The rows of a query, by a connection of its own that only reads.
  [[nodiscard]] static QList<QStringList> Sql(const QString& file, const QString& query);
  /// The first column of a query.
  [[nodiscard]] static QStringList Column(const QString& file, const QString& query);
  /// All rows of a table in the order in which they were added.
  [[nodiscard]] static QList<QStringList> RowsOf(const QString& file, const QString& table);
  /// Changes a file as another user does.
  static void Exec(const QString& file, const QString& sql);

  /// The six lists without a row.
  void EmptyLists();
  /// A list with these rows in its first field and no others.
  void GivenListRows(const QString& table, const QStringList& rows);
  /// These hazard types, besides those that are there, below a primary hazard.
  void GivenHazardTypes(const QString& primary_hazard, const QStringList& rows);
  /// An organisation in the register; with a number above 0 also its study and picture folder.
  void GivenOrganisation(const QString& name, int number);
  /// An empty study database and its picture folder.
  void GivenStudy(int number);
  /// A project of a study; `fields` are further fields by name.
  void GivenProject(int study, const QString& number, const QString& organisation,
                    const QMap<QString, QVariant>& fields = {});
  /// A task of a study, given by its fields, and its number (nunberauto).
  qint64 GivenTask(int study, const QMap<QString, QVariant>& fields);
  /// Many tasks of one project, titled "Task 1" and so on.
  void GivenTasks(int study, const QString& project, int count);

 private:
  static qint64 Insert(const QString& file, const QString& table,
                       const QMap<QString, QVariant>& fields);

  QTemporaryDir place_;
  QString folder_;
};

/// Another user who is in the middle of a change: nobody else can change the file while this lives.
class WriterAtWork {
 public:
  explicit WriterAtWork(const QString& file) : user_(file) { user_.Exec("BEGIN EXCLUSIVE"); }

 private:
  OtherUser user_;
};

/// Another process that works on a database until it is told to end or is killed.
class OtherProcess {
 public:
  explicit OtherProcess(const QString& file);
  ~OtherProcess();
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;

  /// Runs statements there and gives back what they print, when they are done.
  QString Run(const QString& sql);
  void Kill();

 private:
  std::unique_ptr<QProcess> process_;
};

}  // namespace kestrix
