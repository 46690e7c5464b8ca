#pragma once

#include <QString>
#include <QVariant>
#include <algorithm>
#include <array>
#include <limits>

#include "platform/Failure.h"
#include "platform/Messages.h"
#include "store/RecordSources.h"

namespace kestrix {

/// What BackupMode of the session stands on. In the reserved ones nothing is copied, and no menu
/// leads to them.
namespace backup_mode {
inline constexpr qint16 kBackup = 0;
inline constexpr qint16 kRestore = 1;
inline constexpr qint16 kList = 2;     ///< reserved
inline constexpr qint16 kPresets = 3;  ///< reserved
}  // namespace backup_mode

/// What all forms share for one run, each value under the name that the rules of the program give
/// it. Forms read and write it directly; its 16-bit integers are 16-bit on purpose.
struct SessionState {
  // The organisation in work.
  QString ActiveOrgName;
  QString SelectedOrgName;
  qint16 ActiveStudyNo = 0;
  qint16 DeleteStudyNo = 0;
  qint16 OrgCount = 0;
  qint16 OrgEntryMode = 0;  ///< 0 idle, 1 a new name is being typed, 2 an organisation was opened
  qint16 StudyConnected = 0;
  qint16 ProjectFormHolds = 0;
  qint16 OtherUserMark = 0;  ///< 2 when the study opened was in use by somebody already
  qint16 AnyStudyLocked = 0;
  qint16 OrgOpenDone = 0;

  // The frame.
  qint32 DocumentCount = 0;
  qint16 LockScanIndex = 0;
  qint32 WinHandle = 0;

  // Paths and record sources.
  QString OrgDbPath;
  QString SupportDbPath;
  Select ListSql;
  Select ProjectSql;
  Select RiskSql;
  Select FileLinkSql;

  // Scratch values that several handlers share.
  qint16 LoopIndex = 0;
  Button MsgAnswer = Button::kNo;
  bool FileFoundA = false;
  bool FileFoundB = false;
  bool FileFoundC = false;

  // Lists and projects.
  qint16 ListTextKnown = 0;
  qint16 GridRowNumber = 0;
  QString ListFocusText;
  QString ListText;
  QString ParentHazardText;
  int HazardTypeRows = 0;
  bool PrimaryHazardClicked = false;
  qint16 AddDupFound = 0;
  bool AddPending = false;

  // Tasks and their estimation.
  qint16 TaskPosition = 0;
  std::array<QVariant, 48> TaskCopyBuffer;
  qint16 RiskIndexBefore = 0;
  qint16 RiskIndexAfter = 0;
  qint16 SeverityBefore = 0;
  qint16 SeverityAfter = 0;
  qint16 ClassBefore = 0;
  qint16 ClassAfter = 0;
  QString ActiveParameterBox;

  // Backup and restore.
  qint16 BackupMode = 0;
  qint16 BackupSubMode = 0;
  QString BackupFolder;
  QString BackupDateName;
  qint16 OrgRowCount = 0;
  qint16 BackupStepTotal = 0;
};

/// `value` as one of the 16-bit integers of the session. Fails with kOverflow.
[[nodiscard]] inline qint16 Narrow(qint64 value) {
  using Limits = std::numeric_limits<qint16>;
  if (value < Limits::min() || value > Limits::max())
    throw Failure(failure::kOverflow, QStringLiteral("Overflow."));
  return static_cast<qint16>(value);
}

/// `count` as far as one of these integers can hold it.
[[nodiscard]] inline qint16 Capped(int count) {
  return static_cast<qint16>(std::min<int>(count, std::numeric_limits<qint16>::max()));
}

}  // namespace kestrix
