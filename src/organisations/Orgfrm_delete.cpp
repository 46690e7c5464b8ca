#include <QScopedValueRollback>

#include "formkit/Controls.h"
#include "organisations/OrganisationRows.h"
#include "organisations/Orgfrm.h"
#include "organisations/StudyFiles.h"
#include "platform/FileSystem.h"
#include "ui_Orgfrm.h"

namespace kestrix {

using namespace organisations;

namespace {

/// Numbers of studies that are looked at for a lock sign.
constexpr int kStudiesScanned = 1000;
/// The counter of the search for the study to delete runs to this number, from 1, in such steps.
constexpr int kSearchEnd = 10'000;
constexpr int kSearchStep = 2;

}  // namespace

void Orgfrm::GiveWay() {
  gives_way_ = deleting_;
  if (!gives_way_) UnloadForm();
}

void Orgfrm::delte_Click() {
  {
    const QScopedValueRollback<bool> deleting(deleting_, true);
    DeleteWhatIsChosen();
  }
  if (gives_way_) UnloadForm();
}

void Orgfrm::DeleteWhatIsChosen() {
  try {
    EnteredOrgName_ = Name();
    ui_->orgnmecbotxt->setText(Name());
    if (AnyStudyIsInUse()) {
      Tell(Icon::kInformation, title::kProgram,
           QStringLiteral("All users need to logout/Close/Exit Risk Assessment module and needs to "
                          "be reopened by only one user to delete records."));
      return;
    }
    session().ActiveOrgName = Name();
  } catch (const Failure&) {
    Tell(Icon::kInformation, title::kProgram, QStringLiteral("No records to delete."));
    return;
  }
  if (IsNoName(Name())) {
    Tell(Icon::kInformation, title::kProgram, QStringLiteral("No records selceted"));
  } else if (ConfirmDelete()) {
    const WaitCursor waiting;
    DeleteOrganisation();
  }
  PassOver([this] { orgtmpRcd_.Recordset().MoveFirst(); });
}

/// Whether this run, or anybody else's, has any study of the installation open, as far as it shows.
bool Orgfrm::AnyStudyIsInUse() {
  session().AnyStudyLocked = 0;
  qint16& number = session().LoopIndex;
  for (number = 1; number <= kStudiesScanned; ++number) {
    session().FileFoundA = files().FileExists(installation().StudySign(number));
    if (!session().FileFoundA) continue;
    session().AnyStudyLocked = 1;
    break;
  }
  return session().OtherUserMark > 1 || session().AnyStudyLocked == 1;
}

bool Orgfrm::ConfirmDelete() {
  PassOver(
      [this] {
        if (session().OrgEntryMode == kAdding) return;
        Recordset& rows = Orgndata_.Recordset();
        static_cast<void>(WalkTo(rows, EnteredOrgName_, rows.RecordCount()));
      },
      [this] {
        if (Orgndata_.Recordset().RecordCount() > 0) return;
        SetName(kNoOrganisation);
        session().SelectedOrgName.clear();
        RefreshNames();
      });
  if (IsNoName(Name())) return false;
  return IsDeletionWished(
      QStringLiteral("Wish to delete Organization [%1] from records?").arg(Name()),
      Icon::kCritical);
}

void Orgfrm::DeleteOrganisation() {
  session().SelectedOrgName = Name();
  PassOver(
      [this] {
        // The row that is found last opened has no second field to take a number from: the number
        // of the active study stays.
        Recordset& last = orgtmpRcd_.Recordset();
        if (Orgndata_.Recordset().RecordCount() < 1) return;
        last.MoveFirst();
        if (last.Text(kLastStudyNumber) != session().ActiveOrgName) return;
        session().ActiveStudyNo = Narrow(last.Number(kStudyNumber));
      },
      [this] { FindStudyToDelete(); },
      [this] { DeleteStudyFiles(context(), [this] { Q_EMIT StudyReleaseRequested(); }); },
      // The row goes in any case, also when its files couldn't be deleted.
      [this] { Orgndata_.Recordset().Delete(); }, [this] { ShowNoOrganisation(); });
}

/// With no row of that name the number stays what it was.
void Orgfrm::FindStudyToDelete() {
  Recordset& rows = DeltRcd_.Recordset();
  if (!WalkTo(rows, Name(), kSearchEnd / kSearchStep)) return;
  session().LoopIndex = static_cast<qint16>(1 + (rows.AbsolutePosition() - 1) * kSearchStep);
  session().DeleteStudyNo = Narrow(rows.Number(kStudyNumber));
}

void Orgfrm::ShowNoOrganisation() {
  SetName(kNoOrganisation);
  PassOver([this] { RefreshNames(); }, [this] { orgtmpRcd_.Refresh(); });
  ui_->orgnmecbotxt->setText(Name());
  ui_->addorncmd->setEnabled(true);
  ui_->clsed->setEnabled(true);
  ui_->clsd->setEnabled(false);
  session().OrgEntryMode = kIdle;
}

}  // namespace kestrix
