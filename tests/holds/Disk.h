#pragma once

#include <QMap>
#include <QString>
#include <functional>

#include "backup/BackupWorker.h"
#include "store/Installation.h"

namespace kestrix::holds {

/// A folder with all that a person of this program has: an installation with an organisation, its
/// study, tasks and pictures, and beside it, outside, a picture, a document and an older backup
/// set. It only names what lies where, so that it can stand for a copy elsewhere too.
class Disk {
 public:
  static constexpr int kStudy = 1;
  static inline const QString kProject = QStringLiteral("P-1");

  explicit Disk(const QString& folder);
  /// Fills the folder.
  void Lay() const;
  void CopyTo(const QString& folder) const;

  [[nodiscard]] const QString& folder() const { return folder_; }
  [[nodiscard]] const Installation& paths() const { return paths_; }
  [[nodiscard]] QString Study() const { return paths_.Study(kStudy); }
  [[nodiscard]] QString Picture() const { return Outside(QStringLiteral("press.png")); }
  [[nodiscard]] QString Document() const { return Outside(QStringLiteral("note.rtf")); }
  /// The folder of the backup set: databases and picture folders.
  [[nodiscard]] QString Set() const { return Outside(QStringLiteral("Set")); }

  /// Writes the set anew, or restores it. The worker's own outcome.
  BackupWorker::End BackUp(const BackupWorker::StepDone& step_done = Unheard) const;
  BackupWorker::End Restore(const BackupWorker::StepDone& step_done = Unheard) const;

  /// What every file holds: of a database all its rows, if it is whole, of others their bytes. What
  /// stands beside a database only while it is open or half-written is left out.
  using State = QMap<QString, QString>;
  [[nodiscard]] State Look() const;

 private:
  [[nodiscard]] QString Outside(const QString& name) const;
  static void Unheard(const BackupWorker::Progress&) {}
  BackupWorker::End Run(int mode, const BackupWorker::StepDone& step_done) const;

  QString folder_;
  Installation paths_;
};

/// The template of a temporary folder that lies in memory, where the system has room for such: for
/// tests that write much and ask nothing of the disk.
[[nodiscard]] QString FolderInMemory();

/// Content of a database in one text: the answer of its integrity check and every row of every
/// table.
[[nodiscard]] QByteArray ContentOf(const QString& database);

}  // namespace kestrix::holds
