#pragma once

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "records/Task.h"

namespace kestrix::records {

/// A link from a project to a file on the disk; `title` is its name without the folder.
struct LinkedFile {
  QString project;
  QString path;
  QString title;

  friend bool operator==(const LinkedFile&, const LinkedFile&) = default;
};

struct Project {
  QString number;
  QString stage;
  QString description;
  QString prepared_by;
  std::vector<LinkedFile> links;  ///< in the table's order
  std::vector<Task> tasks;        ///< by `nunberauto`
};

/// A line of the register: an organisation and the number of its study, 0 when it has none yet.
struct Organisation {
  QString name;
  qint64 study = 0;
};

struct Register {
  std::vector<Organisation> organisations;  ///< in the table's order
  qint64 opened_last = 0;                   ///< the study that was opened last, by anybody
};

/// All of one organisation's study. Two rows of one project number are one project, with the head
/// of the first; tasks and links of a project that isn't there are orphans.
struct Study {
  std::vector<Project> projects;
  std::vector<Task> orphan_tasks;
  std::vector<LinkedFile> orphan_links;
};

/// A project as lists tell it.
struct ProjectLine {
  QString number;
  QString stage;
  qint64 tasks = 0;
  qint64 newest_task = 0;  ///< its number; 0 without a task
};

/// The entries of the lookup lists that all organisations share.
struct Lists {
  QSet<QString> stages;
  QSet<QString> phases;
  QSet<QString> hazards;
  QHash<QString, QStringList> hazards_of_type;  ///< by hazard type: the hazards it stands under
  QSet<QString> recommendation_types;
  QSet<QString> people;
};

/// What is known of a file that a record names. Only ordinary files exist here: a folder, a pipe or
/// a device doesn't. Bytes and digest are told of an existing file only.
struct FileFacts {
  bool exists = false;
  qint64 bytes = 0;
  QByteArray sha256;  ///< in hexadecimal digits; empty when it couldn't be read
};

/// Where records are read from: the files of an installation, or a server. It never writes, leaves
/// no sign of another user, and waits for none longer than the store does.
///
/// Each read of a study is one moment of it. All functions fail with a Failure that says which file
/// couldn't be read and why.
class Source {
 public:
  Source() = default;
  virtual ~Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  [[nodiscard]] virtual Register ReadRegister() = 0;
  /// The projects of a study and how many tasks each has, without reading the tasks.
  [[nodiscard]] virtual std::vector<ProjectLine> ListProjects(const Organisation& of) = 0;
  [[nodiscard]] virtual Study ReadStudy(const Organisation& of) = 0;
  /// One project of a study; nothing when there is none of that number.
  [[nodiscard]] virtual std::optional<Project> ReadProject(const Organisation& of,
                                                           const QString& number) = 0;
  /// The picture `name` of a study, which lies in its picture folder, or is the picture that stands
  /// for none. A name that leads elsewhere exists nowhere.
  [[nodiscard]] virtual FileFacts LookAtPicture(const Organisation& of, const QString& name) = 0;
  [[nodiscard]] virtual QByteArray ReadPicture(const Organisation& of, const QString& name) = 0;
  [[nodiscard]] virtual FileFacts LookAtFile(const QString& path) = 0;
  [[nodiscard]] virtual QByteArray ReadFile(const QString& path) = 0;
  /// The same question without reading the file.
  [[nodiscard]] virtual bool HasPicture(const Organisation& of, const QString& name) = 0;
  [[nodiscard]] virtual bool HasFile(const QString& path) = 0;

  [[nodiscard]] virtual Lists ReadLists() = 0;
  /// Where the study of an organisation lies, and whether anything lies there.
  [[nodiscard]] virtual QString StudyPath(const Organisation& of) = 0;
  [[nodiscard]] virtual bool HasStudy(const Organisation& of) = 0;
  /// Fails with kNotADatabase where the database isn't whole.
  virtual void CheckWhole(const Organisation& of) = 0;
  /// The names of all studies and picture folders that are there, by their numbers.
  [[nodiscard]] virtual QMap<qint64, QString> StudyFiles() = 0;
  [[nodiscard]] virtual QMap<qint64, QString> PictureFolders() = 0;
};

}  // namespace kestrix::records
