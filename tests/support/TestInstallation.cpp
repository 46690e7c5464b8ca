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

/// A prepared statement, finalized at its end.
class Prepared {
 public:
  Prepared(const OtherUser& connection, const QString& sql) {
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
      row += text ? QString::fromUtf8(text) : "<null>";
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

const QStringList kLists = {"Prjstage",   "PhaseMachLife", "primaryhazard",
                            "HazardType", "RecommTyp",     "ActionBy"};

}  // namespace

OtherUser::OtherUser(const QString& file, Use use) {
  constexpr int kFlags[] = {SQLITE_OPEN_READONLY, SQLITE_OPEN_READWRITE,
                            SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE};
  const int code =
      sqlite3_open_v2(file.toUtf8().constData(), &handle_, kFlags[static_cast<int>(use)], nullptr);
  EXPECT_EQ(code, SQLITE_OK) << file.toStdString();
  sqlite3_busy_timeout(handle_, kPatience);
}

OtherUser::~OtherUser() {
  sqlite3_close(handle_);
}

bool OtherUser::Exec(const QString& sql) const {
  const int code = sqlite3_exec(handle_, sql.toUtf8().constData(), nullptr, nullptr, nullptr);
  EXPECT_EQ(code, SQLITE_OK) << sqlite3_errmsg(handle_) << ": " << sql.toStdString();
  return code == SQLITE_OK;
}

QList<QStringList> OtherUser::Rows(const QString& query) const {
  Prepared statement(*this, query);
  QList<QStringList> rows;
  int code = statement.Step();
  for (; code == SQLITE_ROW; code = statement.Step()) rows += statement.Row();
  EXPECT_EQ(code, SQLITE_DONE) << query.toStdString() << ": " << sqlite3_errmsg(handle_);
  return rows;
}

TestInstallation::TestInstallation() : folder_(place_.filePath("KestrixStudy")) {
  EXPECT_TRUE(place_.isValid());
  CopyTree(KESTRIX_PRISTINE_FOLDER, folder_);
  EXPECT_TRUE(QDir().mkpath(Path("RskAsmtFld/Picfolder")));
  EXPECT_TRUE(QDir().mkpath(Outside(QString())));
}

QString TestInstallation::Path(const QString& tail) const {
  return folder_ + u'/' + tail;
}

QString TestInstallation::Template() const {
  return Path("risk_esmatn.mdb");
}

QString TestInstallation::Register() const {
  return Path("RskAsmtFld/orgtn.mdb");
}

QString TestInstallation::Lists() const {
  return Path("RskAsmtFld/RskAsmt_BkSup.mdb");
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
  return place_.filePath("outside/" + name);
}

QList<QStringList> TestInstallation::Sql(const QString& file, const QString& query) {
  return OtherUser(file, OtherUser::Use::kRead).Rows(query);
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
  OtherUser(file).Exec(sql);
}

qint64 TestInstallation::Insert(const QString& file, const QString& table,
                                const QMap<QString, QVariant>& fields) {
  QStringList names;
  QStringList places;
  for (auto field = fields.keyBegin(); field != fields.keyEnd(); ++field) {
    names += Named(*field);
    places += "?";
  }
  const OtherUser connection(file);
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
    Insert(Lists(), "HazardType", {{"hazardoccurrence", row}, {"HazardTyp", primary_hazard}});
}

void TestInstallation::GivenOrganisation(const QString& name, int number) {
  Insert(Register(), "orgtn", {{"OrgName", name}, {"sclenotxt", number}});
  if (number > 0) GivenStudy(number);
}

void TestInstallation::GivenStudy(int number) {
  EXPECT_TRUE(QFile::copy(Template(), Study(number)));
  EXPECT_TRUE(QDir().mkpath(PictureFolder(number)));
}

void TestInstallation::GivenProject(int study, const QString& number, const QString& organisation,
                                    const QMap<QString, QVariant>& fields) {
  QMap<QString, QVariant> all = fields;
  all.insert("Project_Number", number);
  all.insert("Factory_Name", organisation);
  Insert(Study(study), "Project_details", all);
}

qint64 TestInstallation::GivenTask(int study, const QMap<QString, QVariant>& fields) {
  return Insert(Study(study), "Risk_records", fields);
}

void TestInstallation::GivenTasks(int study, const QString& project, int count) {
  const OtherUser connection(Study(study));
  Prepared statement(
      connection,
      QStringLiteral("WITH RECURSIVE counted(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM counted "
                     "LIMIT ?1) INSERT INTO Risk_records(Project_Number,FuntnTaskMachry) "
                     "SELECT ?2, 'Task '||n FROM counted"));
  statement.Bind(1, count);
  statement.Bind(2, project);
  EXPECT_EQ(statement.Step(), SQLITE_DONE) << sqlite3_errmsg(connection.handle());
}

OtherProcess::OtherProcess(const QString& file) : process_(std::make_unique<QProcess>()) {
  process_->setProcessChannelMode(QProcess::MergedChannels);
  process_->start("sqlite3", {file});
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
