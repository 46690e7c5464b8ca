#include "records/FileSource.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "platform/Descriptor.h"
#include "platform/Failure.h"
#include "store/Database.h"
#include "store/Statement.h"

namespace kestrix::records {
namespace {

const QString kNoPicture = QStringLiteral("NoPicSlted.jpg");

/// A database that is only looked at, in one transaction: all that is read is of one moment.
class Look {
 public:
  explicit Look(const QString& path) : database_(path, Database::Use::kLook) {
    Statement(database_, QStringLiteral("BEGIN")).Step();
  }
  [[nodiscard]] Database& database() { return database_; }

 private:
  Database database_;  // closing ends the transaction
};

/// The columns of a task, quoted, in the order of VisitFields.
const QString& TaskColumns() {
  static const QString columns = [] {
    QStringList names;
    Task task;
    VisitFields(task,
                [&names](QStringView name, auto&) { names += u'"' + name.toString() + u'"'; });
    return names.join(u',');
  }();
  return columns;
}

/// A statement with the texts and numbers that its parameters take, in order.
template <class... Values>
Statement& Bound(Statement& statement, const Values&... values) {
  int parameter = 0;
  (statement.Bind(++parameter, values), ...);
  return statement;
}

/// The texts of a statement's rows. Most columns hold what they held in the row before, and a text
/// that is shared takes neither time nor room again.
class Texts {
 public:
  explicit Texts(const Statement& row) : before_(static_cast<std::size_t>(row.ColumnCount())) {}

  QString At(const Statement& row, int column) {
    auto& [bytes, text] = before_[static_cast<std::size_t>(column)];
    const QByteArrayView now = row.Utf8(column);
    if (bytes != now) {
      bytes = now.toByteArray();
      text = QString::fromUtf8(now);
    }
    return text;
  }

 private:
  struct Known {
    QByteArray bytes;
    QString text;
  };
  std::vector<Known> before_;  ///< by column
};

struct FromColumn {
  Statement& row;
  Texts& texts;
  int column = 0;

  void operator()(QStringView /*name*/, QString& text) { text = texts.At(row, column++); }
  void operator()(QStringView /*name*/, qint64& number) { number = row.Integer(column++); }
  void operator()(QStringView /*name*/, bool& truth) { truth = row.Integer(column++) != 0; }
};

Task TaskOf(Statement& row, Texts& texts) {
  Task task;
  VisitFields(task, FromColumn{row, texts});
  return task;
}

LinkedFile LinkOf(Statement& row) {
  return {row.Text(0), row.Text(1), row.Text(2)};
}

Project ProjectOf(Statement& row) {
  return {row.Text(0), row.Text(1), row.Text(2), row.Text(3), {}, {}};
}

// A study that was taken over under another name can hold projects of the former one: what the
// forms don't show under this name isn't this organisation's.
const QString kProjects = QStringLiteral(
    "SELECT Project_Number,Project_phase,Project_Description,preparedBytxt FROM Project_details "
    "WHERE Factory_Name=?1");
const QString kLinks =
    QStringLiteral("SELECT Project_Number,FilePath,FileShrtDscrptn FROM fileLink");

int StudyNumber(const Organisation& of) {
  return static_cast<int>(std::min<qint64>(of.study, std::numeric_limits<int>::max()));
}

/// An ordinary file that is open for reading; nothing for anything else, which isn't waited for.
Descriptor OpenOrdinary(const QString& path, int flags = 0) {
  Descriptor file(
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | flags));
  struct stat status = {};
  if (!file.valid() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return file;
}

/// What lies in a folder under a name with a number, by that number.
QMap<qint64, QString> Numbered(const QString& folder, QDir::Filter kind, const QString& pattern) {
  const QRegularExpression name(pattern);
  QMap<qint64, QString> found;
  for (const QString& entry : QDir(folder).entryList(kind | QDir::Hidden)) {
    const QRegularExpressionMatch match = name.match(entry);
    if (match.hasMatch()) found.insert(match.captured(1).toLongLong(), entry);
  }
  return found;
}

QByteArray BytesOf(const Descriptor& file) {
  QFile bytes;
  if (!file.valid() || !bytes.open(file.get(), QIODevice::ReadOnly)) return {};
  return bytes.readAll();
}

FileFacts FactsOf(const Descriptor& file) {
  if (!file.valid()) return {};
  QFile bytes;
  if (!bytes.open(file.get(), QIODevice::ReadOnly)) return {};
  QCryptographicHash hash(QCryptographicHash::Sha256);
  if (!hash.addData(&bytes)) return {true, bytes.size(), {}};
  return {true, bytes.size(), hash.result().toHex()};
}

}  // namespace

Register FileSource::ReadRegister() {
  Look look(installation_.Register());
  Register read;
  Statement rows(look.database(), QStringLiteral("SELECT OrgName,sclenotxt FROM orgtn"));
  while (rows.Step()) read.organisations.push_back({rows.Text(0), rows.Integer(1)});
  Statement last(look.database(), QStringLiteral("SELECT OrgNameTMP FROM Orgtmp"));
  if (last.Step()) read.opened_last = last.Integer(0);
  return read;
}

std::vector<ProjectLine> FileSource::ListProjects(const Organisation& of) {
  std::vector<ProjectLine> lines;
  if (of.study <= 0) return lines;
  Look look(installation_.Study(StudyNumber(of)));
  Statement rows(
      look.database(),
      QStringLiteral("SELECT Project_Number,Project_phase,(SELECT count(*) FROM Risk_records r "
                     "WHERE r.Project_Number=p.Project_Number),(SELECT max(nunberauto) FROM "
                     "Risk_records r WHERE r.Project_Number=p.Project_Number) FROM "
                     "Project_details p WHERE Factory_Name=?1"));
  Bound(rows, of.name);
  QHash<QString, bool> seen;
  while (rows.Step()) {
    const QString number = rows.Text(0);
    if (std::exchange(seen[number], true)) continue;
    lines.push_back({number, rows.Text(1), rows.Integer(2), rows.Integer(3)});
  }
  return lines;
}

Study FileSource::ReadStudy(const Organisation& of) {
  Study study;
  if (of.study <= 0) return study;
  Look look(installation_.Study(StudyNumber(of)));
  QHash<QString, std::size_t> places;
  Statement projects(look.database(), kProjects);
  Bound(projects, of.name);
  while (projects.Step()) {
    Project project = ProjectOf(projects);
    if (places.contains(project.number)) continue;
    places.insert(project.number, study.projects.size());
    study.projects.push_back(std::move(project));
  }
  Statement links(look.database(), kLinks);
  while (links.Step()) {
    LinkedFile link = LinkOf(links);
    const auto place = places.constFind(link.project);
    auto& into = place == places.constEnd() ? study.orphan_links : study.projects[*place].links;
    into.push_back(std::move(link));
  }
  Statement tasks(
      look.database(),
      QStringLiteral("SELECT %1 FROM Risk_records ORDER BY nunberauto").arg(TaskColumns()));
  Texts texts(tasks);
  while (tasks.Step()) {
    Task task = TaskOf(tasks, texts);
    const auto place = places.constFind(task.project);
    auto& into = place == places.constEnd() ? study.orphan_tasks : study.projects[*place].tasks;
    into.push_back(std::move(task));
  }
  return study;
}

std::optional<Project> FileSource::ReadProject(const Organisation& of, const QString& number) {
  if (of.study <= 0) return std::nullopt;
  Look look(installation_.Study(StudyNumber(of)));
  Statement head(look.database(), kProjects + QStringLiteral(" AND Project_Number=?2"));
  if (!Bound(head, of.name, number).Step()) return std::nullopt;
  Project project = ProjectOf(head);
  head.Reset();
  Statement links(look.database(), kLinks + QStringLiteral(" WHERE Project_Number=?1"));
  Bound(links, number);
  while (links.Step()) project.links.push_back(LinkOf(links));
  Statement tasks(look.database(),
                  QStringLiteral("SELECT %1 FROM Risk_records WHERE Project_Number=?1 ORDER BY "
                                 "nunberauto")
                      .arg(TaskColumns()));
  Bound(tasks, number);
  Texts texts(tasks);
  while (tasks.Step()) project.tasks.push_back(TaskOf(tasks, texts));
  return project;
}

std::optional<QString> FileSource::PicturePath(const Organisation& of, const QString& name) const {
  // A cleared picture is stored as the whole path of the picture that stands for none.
  if (name == kNoPicture || name.endsWith(u'/' + kNoPicture)) return installation_.NoPicture();
  if (name.isEmpty() || name == u"." || name == u".." || name.contains(u'/') ||
      name.contains(QChar::Null)) {
    return std::nullopt;
  }
  return installation_.PictureFolder(StudyNumber(of)) + u'/' + name;
}

FileFacts FileSource::LookAtPicture(const Organisation& of, const QString& name) {
  const std::optional<QString> path = PicturePath(of, name);
  return path ? FactsOf(OpenOrdinary(*path, O_NOFOLLOW)) : FileFacts();
}

QByteArray FileSource::ReadPicture(const Organisation& of, const QString& name) {
  const std::optional<QString> path = PicturePath(of, name);
  return path ? BytesOf(OpenOrdinary(*path, O_NOFOLLOW)) : QByteArray();
}

QByteArray FileSource::ReadFile(const QString& path) {
  return BytesOf(OpenOrdinary(path));
}

FileFacts FileSource::LookAtFile(const QString& path) {
  return FactsOf(OpenOrdinary(path));
}

bool FileSource::HasPicture(const Organisation& of, const QString& name) {
  const std::optional<QString> path = PicturePath(of, name);
  return path && OpenOrdinary(*path, O_NOFOLLOW).valid();
}

bool FileSource::HasFile(const QString& path) {
  return OpenOrdinary(path).valid();
}

Lists FileSource::ReadLists() {
  Look look(installation_.SupportLists());
  Lists lists;
  const auto read = [&look](const QString& sql, auto&& take) {
    Statement rows(look.database(), sql);
    while (rows.Step()) take(rows);
  };
  const auto fill = [&read](const QString& sql, QSet<QString>& into) {
    read(sql, [&into](Statement& row) { into.insert(row.Text(0)); });
  };
  fill(QStringLiteral("SELECT hazopstage FROM Prjstage"), lists.stages);
  fill(QStringLiteral("SELECT PhaseMachLife FROM PhaseMachLife"), lists.phases);
  fill(QStringLiteral("SELECT hazardType FROM primaryhazard"), lists.hazards);
  fill(QStringLiteral("SELECT RecommendationTyp FROM RecommTyp"), lists.recommendation_types);
  fill(QStringLiteral("SELECT ActnBy FROM ActionBy"), lists.people);
  read(QStringLiteral("SELECT hazardoccurrence,HazardTyp FROM HazardType"),
       [&lists](Statement& row) { lists.hazards_of_type[row.Text(0)] += row.Text(1); });
  return lists;
}

QString FileSource::StudyPath(const Organisation& of) {
  return installation_.Study(StudyNumber(of));
}

bool FileSource::HasStudy(const Organisation& of) {
  return QFile::exists(StudyPath(of));
}

void FileSource::CheckWhole(const Organisation& of) {
  Look look(StudyPath(of));
  Statement check(look.database(), QStringLiteral("PRAGMA quick_check(1)"));
  if (check.Step() && check.Text(0) == u"ok") return;
  throw Failure(failure::kNotADatabase,
                QStringLiteral("The file %1 is damaged.").arg(StudyPath(of)));
}

QMap<qint64, QString> FileSource::StudyFiles() {
  return Numbered(installation_.DataFolder(), QDir::Files,
                  QStringLiteral("\\Arisk_esmatn([1-9][0-9]*)\\.mdb\\z"));
}

QMap<qint64, QString> FileSource::PictureFolders() {
  return Numbered(installation_.PictureRoot(), QDir::Dirs,
                  QStringLiteral("\\APrj([1-9][0-9]*)\\z"));
}

}  // namespace kestrix::records
