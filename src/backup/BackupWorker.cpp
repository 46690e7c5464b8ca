#include "backup/BackupWorker.h"

#include <QScopeGuard>
#include <algorithm>
#include <cmath>

#include "platform/Failure.h"
#include "platform/Messages.h"
#include "store/Database.h"
#include "store/Recordset.h"

namespace kestrix {
namespace {

/// The register and the lists come first in every set; one step for each organisation follows.
constexpr int kRegisterStep = 1;
constexpr int kListsStep = 2;
constexpr int kFixedSteps = 2;

/// Picture folders of higher numbers are left alone by a restore.
constexpr int kLastClearedFolder = 1000;

/// The register's number of an organisation.
constexpr int kNumberField = 1;

}  // namespace

BackupWorker::BackupWorker(SessionState& session, const Installation& installation,
                           Platform& platform, Runner runner)
    : session_(session),
      installation_(installation),
      platform_(platform),
      runner_(std::move(runner)) {}

BackupWorker::End BackupWorker::Run(Recordset& organisations, const StepDone& step_done) {
  const bool backs_up = session_.BackupMode == backup_mode::kBackup;
  const bool restores = session_.BackupMode == backup_mode::kRestore;
  if ((!backs_up && !restores) || session_.BackupSubMode != 0) return End::kNothingToDo;
  step_done_ = step_done;
  ReadNumbers(organisations);
  if (backs_up) return Backup();
  Restore();
  return End::kAtEnd;
}

/// Walks the register from its first row; one without a row has nothing but the fixed files to
/// copy.
void BackupWorker::ReadNumbers(Recordset& organisations) {
  numbers_.clear();
  if (session_.OrgRowCount == 0) return;
  const Recordset::Walk walk(organisations);
  organisations.MoveFirst();
  for (int row = 0; row < session_.OrgRowCount; ++row, organisations.MoveNext())
    numbers_.push_back(static_cast<int>(organisations.Number(kNumberField)));
}

BackupWorker::End BackupWorker::Backup() {
  const QString chosen = session_.BackupFolder;
  const QString dated = JoinPath(chosen, u'\\' + session_.BackupDateName);
  bool replaces = false;
  runner_([&] { replaces = HoldsASet(BackupSet(chosen)); });
  if (replaces) {
    session_.MsgAnswer = platform_.messages.Show(
        Ask(Icon::kCritical, QStringLiteral("BELTROVAN: Over write"),
            QStringLiteral(
                "Wish to replace existing backup files?, If 'NO', select different folder.")));
    if (session_.MsgAnswer != Button::kYes) return End::kRefused;
  } else {
    runner_([&] { MakeFolder(dated); });
  }
  const BackupSet set(replaces ? chosen : dated, dated);
  bool whole = false;
  RunCopies([&] {
    // When a copy fails, what was copied before it comes to its place and onto the disk all the
    // same.
    FileBatch batch(files(), chosen);
    CopyGroup databases(chosen);
    whole = RunSteps([&](int step) { return BackUpStep(set, step, Sync::With(databases)); },
                     [&] {
                       databases.Finish();
                       batch.End();
                     });
  });
  if (!whole) TellFailed(QStringLiteral("Backup"));
  TellLinks();
  return End::kAtEnd;
}

bool BackupWorker::HoldsASet(const BackupSet& set) const {
  return files().FileExists(set.Register()) || files().FileExists(set.SupportLists());
}

void BackupWorker::Restore() {
  ClearPictures();
  const BackupSet set(session_.BackupFolder);
  bool whole = false;
  RunCopies([&] {
    FileBatch batch(files(), installation_.DataFolder());
    whole = RunSteps([&](int step) { return RestoreStep(set, step); }, [&] { batch.End(); });
  });
  if (!whole) TellFailed(QStringLiteral("Restore"));
  TellLinks();
}

void BackupWorker::ClearPictures() {
  bool cleared = true;
  runner_([&] {
    FileBatch batch(files(), installation_.DataFolder());
    for (int k = 1; cleared && k <= kLastClearedFolder; ++k) cleared = Cleared(k);
    batch.End();
  });
  if (!cleared) TellFailed(QStringLiteral("Restore"));
}

void BackupWorker::RunCopies(const std::function<void()>& copies) {
  session_.BackupStepTotal = Narrow(session_.OrgRowCount + kFixedSteps);
  total_ = session_.BackupStepTotal;
  step_ = 0;
  links_.clear();
  const auto tell_step = qScopeGuard([this] { session_.LoopIndex = static_cast<qint16>(step_); });
  runner_(copies);
}

/// Runs the steps, told after each how far they are; the last one is done when all is on the disk.
/// False when one of them couldn't be done.
bool BackupWorker::RunSteps(const std::function<bool(int)>& step,
                            const std::function<void()>& bring_onto_disk) {
  for (step_ = 1; step_ <= total_; ++step_) {
    const bool done = step(step_);
    if (!done || step_ == total_) bring_onto_disk();
    if (!done) return false;
    step_done_(ProgressAfter(step_));
  }
  return true;
}

bool BackupWorker::BackUpStep(const BackupSet& set, int step, Sync when) {
  if (step > kFixedSteps) {
    BackUpOrganisation(set, numbers_[static_cast<size_t>(step - kFixedSteps - 1)], when);
    return true;
  }
  const bool is_register = step == kRegisterStep;
  const QString source = is_register ? installation_.Register() : installation_.SupportLists();
  const QString target = is_register ? set.Register() : set.SupportLists();
  return Writes([&] { CopyDatabase(source, target, when); }, target);
}

void BackupWorker::BackUpOrganisation(const BackupSet& set, int number, Sync when) {
  CopyDatabase(installation_.Study(number), set.Study(number), when);
  MakeFolder(set.PictureFolder());
  // A person may have put the pictures onto another disk, where a link leads.
  CopyPictures(installation_.PictureFolder(number) + u'/', set.PictureFolder());
}

/// A file of the set that is a link may lead to anything of this user's, and is none of the set.
bool BackupWorker::RestoreStep(const BackupSet& set, int step) {
  if (step > kFixedSteps) {
    const int number = numbers_[static_cast<size_t>(step - kFixedSteps - 1)];
    if (IsLink(set.Study(number))) return false;
    RestoreOrganisation(set, number);
    return true;
  }
  const bool is_register = step == kRegisterStep;
  const QString source = is_register ? set.Register() : set.SupportLists();
  const QString target = is_register ? installation_.Register() : installation_.SupportLists();
  // A set may hold the register alone: that is told, while any other file that it lacks is not.
  if (IsLink(source) || (step == kListsStep && !files().FileExists(source))) return false;
  return Writes([&] { ReplaceDatabase(source, target, Sync::kBytesNow); }, target);
}

void BackupWorker::RestoreOrganisation(const BackupSet& set, int number) {
  RestoreStudy(set.Study(number), installation_.Study(number));
  CopyPictures(set.Pictures(number), installation_.PictureRoot());
}

void BackupWorker::CopyPictures(const QString& source, const QString& target_parent) {
  links_ += files().CopyFolder(source, JoinPath(target_parent, QStringLiteral("\\")));
}

/// Somebody else who backs up into the same place may make it first.
void BackupWorker::MakeFolder(const QString& path) {
  if (files().FolderExists(path)) return;
  try {
    files().CreateFolder(path);
  } catch (const Failure&) {
    if (!files().FolderExists(path)) throw;
  }
}

/// A study makes way for the one of the set even when the set lacks it, or when it is
/// write-protected. Else it stays until its successor is whole, also when that can't be read.
void BackupWorker::RestoreStudy(const QString& source, const QString& target) {
  if (!files().FileExists(source) && files().FileExists(target)) files().DeleteFile(target);
  try {
    ReplaceDatabase(source, target, Sync::kBytesNow);
  } catch (const Failure& failure) {
    const bool is_protected = files().FileExists(target) && !CanWrite(target);
    if (failure.number() != failure::kPermissionDenied || !is_protected) throw;
    files().DeleteFile(target);
    ReplaceDatabase(source, target, Sync::kBytesNow);
  }
}

/// Deletes a picture folder; false when it may not be deleted.
bool BackupWorker::Cleared(int number) {
  const QString folder = installation_.PictureFolder(number);
  if (!files().FolderExists(folder)) return true;
  try {
    files().DeleteFolder(folder);
  } catch (const Failure& failure) {
    if (failure.number() != failure::kPermissionDenied) throw;
  }
  return !files().FolderExists(folder);
}

/// Runs a copy; false when the place of `target` can't be written.
bool BackupWorker::Writes(const std::function<void()>& copy, const QString& target) {
  try {
    copy();
  } catch (const Failure& failure) {
    if (failure.number() != failure::kPermissionDenied) throw;
    return false;
  }
  return files().FileExists(target);
}

/// The product is a small integer on purpose: from its 328th step on a run ends as by any failure.
BackupWorker::Progress BackupWorker::ProgressAfter(int step) const {
  const qint16 hundredfold = Narrow(step * 100);
  const double percent = static_cast<double>(hundredfold) / total_;
  return {.percent = percent,
          .text = QString::number(std::lround(percent)) + QStringLiteral(" % complete")};
}

void BackupWorker::TellLinks() {
  constexpr qsizetype kMost = 10;
  if (links_.isEmpty()) return;
  QStringList shown = links_.first(std::min(links_.size(), kMost));
  if (shown.size() < links_.size()) shown += QStringLiteral("…");
  platform_.messages.Show(Tell(Icon::kInformation, title::kProgram,
                               QStringLiteral("Links were left out:\n%1").arg(shown.join(u'\n'))));
}

void BackupWorker::TellFailed(const QString& what) {
  platform_.messages.Show(Tell(Icon::kInformation, title::kProgram,
                               QStringLiteral("Failed to %1. Seek Administrator approval for "
                                              "writing. Unable to continue.")
                                   .arg(what)));
}

}  // namespace kestrix
