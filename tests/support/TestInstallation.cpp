#include "support/TestInstallation.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <utility>

namespace kestrix {
namespace {

constexpr int kPatience = 10'000;  // milliseconds

QString Named(const QString& name) {
  return u'"' + name + u'"';
}

/// A connection of another user, closed at its end.
class Connection {
 public:
  Connection(const QString& file, int flags) {
    const int code = sqlite3_open_v2(file.toUtf8().constData(), &handle_, flags, nullptr);
    EXPECT_EQ(code, SQLITE_OK) << file.toStdString();
    sqlite3_busy_timeout(handle_, kPatience);
  }
  ~Connection() { sqlite3_close(handle_); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  [[nodiscard]] sqlite3* handle() const { return handle_; }

 private:
  sqlite3* handle_ = nullptr;
};

/// A prepared statement, finalized at its end.
class Prepared {
 public:
  Prepared(const Connection& connection, const QString& sql) {
    const int code =
        sqlite3_prepare_v2(connection.handle(), sql.toUtf8().constData(), -1, &statement_, nullptr);
    EXPECT_EQ(code, SQLITE_OK) << sql.toStdString() << ": " << sqlite3_errmsg(connection.handle());
  }
  ~Prepared() { sqlite3_finalize(statement_); }
  Prepared(const Prepared&) = delete;
  Prepared& operator=(const Prepared&) = delete;

  void Bind(int place, const QVariant& value) {
    if (value.typeId() == QMetaType::QString) {
      const QByteArray text = value.toString().toUtf8();
      sqlite3_bind_text(statement_, place, text.constData(), static_cast<int>(text.size()),
                        SQLITE_TRANSIENT);
    } else {
      sqlite3_bind_int64(statement_, place, value.toLongLong());
    }
  }
  [[nodiscard]] int Step() { return sqlite3_step(statement_); }
  [[nodiscard]] QStringList Row() {
    QStringList row;
    for (int i = 0; i < sqlite3_column_count(statement_); ++i) {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, i));
      row += text ? QString::fromUtf8(text) : QStringLiteral("<null>");
    }
    return row;
  }

 private:
  sqlite3_stmt* statement_ = nullptr;
};

void CopyTree(const QString& from, const QString& to) {
  EXPECT_TRUE(QDir().mkpath(to));
  QDirIterator below(from, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
  while (below.hasNext()) {
    const QString source = below.next();
    const QString target = to + source.mid(from.size());
    const bool done = below.fileInfo().isDir()
                          ? QDir().mkpath(target)
                          : QDir().mkpath(QFileInfo(target).path()) && QFile::copy(source, target);
    EXPECT_TRUE(done) << target.toStdString();
    if (!below.fileInfo().isDir())
      QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
  }
}

const QStringList kLists = {QStringLiteral("Prjstage"),      QStringLiteral("PhaseMachLife"),
                            QStringLiteral("primaryhazard"), QStringLiteral("HazardType"),
                            QStringLiteral("RecommTyp"),     QStringLiteral("ActionBy")};

}  // namespace

TestInstallation::TestInstallation() : folder_(place_.filePath(QStringLiteral("KestrixStudy"))) {
  EXPECT_TRUE(place_.isValid());
  CopyTree(QStringLiteral(KESTRIX_PRISTINE_FOLDER), folder_);
  EXPECT_TRUE(QDir().mkpath(Path(QStringLiteral("RskAsmtFld/Picfolder"))));
  EXPECT_TRUE(QDir().mkpath(Outside(QString())));
}

QString TestInstallation::Path(const QString& tail) const {
  return folder_ + u'/' + tail;
}

QString TestInstallation::Template() const {
  return Path(QStringLiteral("risk_esmatn.mdb"));
}

QString TestInstallation::Register() const {
  return Path(QStringLiteral("RskAsmtFld/orgtn.mdb"));
}

QString TestInstallation::Lists() const {
  return Path(QStringLiteral("RskAsmtFld/RskAsmt_BkSup.mdb"));
}

QString TestInstallation::Study(int number) const {
  return Path(QStringLiteral("RskAsmtFld/risk_esmatn%1.mdb").arg(number));
}

QString TestInstallation::StudySign(int number) const {
  return Path(QStringLiteral("RskAsmtFld/risk_esmatn%1.ldb").arg(number));
}

QString TestInstallation::PictureFolder(int number) const {
  return Path(QStringLiteral("RskAsmtFld/Picfolder/Prj%1").arg(number));
}

QString TestInstallation::Outside(const QString& name) const {
  return place_.filePath(QStringLiteral("outside/") + name);
}

QList<QStringList> TestInstallation::Sql(const QString& file, const QString& query) {
  const Connection connection(file, SQLITE_OPEN_READONLY);
  Prepared statement(connection, query);
  QList<QStringList> rows;
  while (statement.Step() == SQLITE_ROW) rows += statement.Row();
  return rows;
}

QStringList TestInstallation::Column(const QString& file, const QString& query) {
  QStringList texts;
  const QList<QStringList> rows = Sql(file, query);
  for (const QStringList& row : rows) texts += row.value(0);
  return texts;
}

QList<QStringList> TestInstallation::RowsOf(const QString& file, const QString& table) {
  return Sql(file, QStringLiteral("SELECT * FROM %1 ORDER BY _rowid_").arg(Named(table)));
}

void TestInstallation::Exec(const QString& file, const QString& sql) {
  const Connection connection(file, SQLITE_OPEN_READWRITE);
  char* error = nullptr;
  const int code =
      sqlite3_exec(connection.handle(), sql.toUtf8().constData(), nullptr, nullptr, &error);
  EXPECT_EQ(code, SQLITE_OK) << (error ? error : "") << ": " << sql.toStdString();
  sqlite3_free(error);
}

qint64 TestInstallation::Insert(const QString& file, const QString& table,
                                const QMap<QString, QVariant>& fields) {
  QStringList names;
  QStringList places;
  for (auto field = fields.keyBegin(); field != fields.keyEnd(); ++field) {
    names += Named(*field);
    places += QStringLiteral("?");
  }
  const Connection connection(file, SQLITE_OPEN_READWRITE);
  Prepared statement(connection, QStringLiteral("INSERT INTO %1(%2) VALUES(%3)")
                                     .arg(Named(table), names.join(u','), places.join(u',')));
  int place = 0;
  for (const QVariant& value : fields) statement.Bind(++place, value);
  EXPECT_EQ(statement.Step(), SQLITE_DONE) << sqlite3_errmsg(connection.handle());
  return sqlite3_last_insert_rowid(connection.handle());
}

void TestInstallation::EmptyLists() {
  for (const QString& list : kLists)
    Exec(Lists(), QStringLiteral("DELETE FROM %1").arg(Named(list)));
}

void TestInstallation::GivenListRows(const QString& table, const QStringList& rows) {
  Exec(Lists(), QStringLiteral("DELETE FROM %1").arg(Named(table)));
  const QString field =
      Column(Lists(), QStringLiteral("SELECT name FROM pragma_table_info('%1')").arg(table))
          .value(0);
  for (const QString& row : rows) Insert(Lists(), table, {{field, row}});
}

void TestInstallation::GivenHazardTypes(const QString& primary_hazard, const QStringList& rows) {
  for (const QString& row : rows)
    Insert(
        Lists(), QStringLiteral("HazardType"),
        {{QStringLiteral("hazardoccurrence"), row}, {QStringLiteral("HazardTyp"), primary_hazard}});
}

void TestInstallation::GivenOrganisation(const QString& name, int number) {
  Insert(Register(), QStringLiteral("orgtn"),
         {{QStringLiteral("OrgName"), name}, {QStringLiteral("sclenotxt"), number}});
  if (number > 0) GivenStudy(number);
}

void TestInstallation::GivenStudy(int number) {
  EXPECT_TRUE(QFile::copy(Template(), Study(number)));
  EXPECT_TRUE(QDir().mkpath(PictureFolder(number)));
}

void TestInstallation::GivenProject(int study, const QString& number, const QString& organisation,
                                    const QMap<QString, QVariant>& fields) {
  QMap<QString, QVariant> all = fields;
  all.insert(QStringLiteral("Project_Number"), number);
  all.insert(QStringLiteral("Factory_Name"), organisation);
  Insert(Study(study), QStringLiteral("Project_details"), all);
}

qint64 TestInstallation::GivenTask(int study, const QMap<QString, QVariant>& fields) {
  return Insert(Study(study), QStringLiteral("Risk_records"), fields);
}

void TestInstallation::GivenTasks(int study, const QString& project, int count) {
  const Connection connection(Study(study), SQLITE_OPEN_READWRITE);
  Prepared statement(
      connection,
      QStringLiteral("WITH RECURSIVE counted(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM counted "
                     "LIMIT ?1) INSERT INTO Risk_records(Project_Number,FuntnTaskMachry) "
                     "SELECT ?2, 'Task '||n FROM counted"));
  statement.Bind(1, count);
  statement.Bind(2, project);
  EXPECT_EQ(statement.Step(), SQLITE_DONE) << sqlite3_errmsg(connection.handle());
}

WriterAtWork::WriterAtWork(const QString& file) {
  EXPECT_EQ(sqlite3_open_v2(file.toUtf8().constData(), &handle_, SQLITE_OPEN_READWRITE, nullptr),
            SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(handle_, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK)
      << sqlite3_errmsg(handle_);
}

WriterAtWork::~WriterAtWork() {
  sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(handle_);
}

OtherProcess::OtherProcess(const QString& file) : process_(std::make_unique<QProcess>()) {
  process_->setProcessChannelMode(QProcess::MergedChannels);
  process_->start(QStringLiteral("sqlite3"), {file});
  EXPECT_TRUE(process_->waitForStarted(kPatience)) << "sqlite3 can't be started";
}

OtherProcess::~OtherProcess() {
  if (process_->state() == QProcess::NotRunning) return;
  process_->closeWriteChannel();
  if (!process_->waitForFinished(kPatience)) Kill();
}

QString OtherProcess::Run(const QString& sql) {
  static const QByteArray kDone = "--done--\n";
  process_->write(sql.toUtf8() + "\n.print --done--\n");
  QByteArray printed;
  while (!printed.endsWith(kDone)) {
    if (!process_->waitForReadyRead(kPatience)) {
      ADD_FAILURE() << "sqlite3 doesn't answer to " << sql.toStdString();
      return QString::fromUtf8(printed);
    }
    printed += process_->readAll();
  }
  printed.chop(kDone.size());
  return QString::fromUtf8(printed);
}

void OtherProcess::Kill() {
  process_->kill();
  process_->waitForFinished(kPatience);
}

}  // namespace kestrix
