#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "backup/BackupSet.h"
#include "backup/BesideEvents.h"
#include "platform/FileCopy.h"
#include "platform/FileSystem.h"
#include "platform/Services.h"
#include "shell/SessionState.h"
#include "store/Installation.h"

namespace kestrix {

class Recordset;

/// Writes the backup set of an installation, or restores one, as the session's modes say. A set is
/// a plain copy of the databases under other names, and of the picture folders; every row of the
/// register takes part.
///
/// It knows no window: it copies through a runner, so that whoever shows the progress stays alive
/// meanwhile; while the runner runs, the session is left alone. Each file is old or new, whole, at
/// every moment, and all of it is on the disk when Run returns. What was copied or deleted before a
/// failure stays so.
class BackupWorker {
 public:
  /// How a run ended that didn't fail. A run that a message stopped is at its end too.
  enum class End { kNothingToDo, kRefused, kAtEnd };

  struct Progress {
    double percent = 0;  ///< 0 to 100
    QString text;        ///< "42 % complete"
  };
  /// Told after each step, by the thread that copies; after the last one when all is on the disk.
  using StepDone = std::function<void(const Progress&)>;
  using Runner = std::function<void(const std::function<void()>&)>;

  BackupWorker(SessionState& session, const Installation& installation, Platform& platform,
               Runner runner = RunBesideEvents);

  /// Runs a backup or a restore to its end. `organisations` is the register to go by, of which
  /// OrgRowCount rows are counted: the live one in a backup, the set's in a restore. Fails as
  /// copying and deleting do, and with kOverflow at the 328th step.
  End Run(Recordset& organisations, const StepDone& step_done);

 private:
  End Backup();
  void Restore();
  void ClearPictures();

  // What runs beside the events: all that looks at the disk.
  [[nodiscard]] bool HoldsASet(const BackupSet& set) const;
  [[nodiscard]] bool RunSteps(const std::function<bool(int)>& step,
                              const std::function<void()>& bring_onto_disk);
  [[nodiscard]] bool BackUpStep(const BackupSet& set, int step, Sync when);
  [[nodiscard]] bool RestoreStep(const BackupSet& set, int step);
  void BackUpOrganisation(const BackupSet& set, int number, Sync when);
  void RestoreOrganisation(const BackupSet& set, int number);
  void RestoreStudy(const QString& source, const QString& target);
  [[nodiscard]] bool Cleared(int number);
  void MakeFolder(const QString& path);
  void CopyPictures(const QString& source, const QString& target_parent);
  [[nodiscard]] bool Writes(const std::function<void()>& copy, const QString& target);
  [[nodiscard]] Progress ProgressAfter(int step) const;

  void RunCopies(const std::function<void()>& copies);
  void TellFailed(const QString& what);
  void TellLinks();
  void ReadNumbers(Recordset& organisations);
  [[nodiscard]] FileSystem& files() const { return platform_.files; }

  SessionState& session_;
  const Installation& installation_;
  Platform& platform_;
  Runner runner_;
  StepDone step_done_;
  std::vector<int> numbers_;  ///< of the organisations, in the order of the register
  int total_ = 0;
  int step_ = 0;
  QStringList links_;  ///< that were left out
};

}  // namespace kestrix
