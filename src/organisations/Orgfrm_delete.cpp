#include <QScopedValueRollback>

#include "formkit/Controls.h"
#include "organisations/Orgfrm.h"
#include "organisations/StudyFiles.h"
#include "platform/FileSystem.h"
#include "ui_Orgfrm.h"

namespace kestrix {

using namespace organisations;

namespace {

/// Numbers of studies that are looked at for a lock sign.
constexpr int kStudiesScanned = 1000;

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
      return Tell(
          Icon::kInformation, title::kProgram,
          QStringLiteral("All users need to logout/Close/Exit Risk Assessment module and needs to "
                         "be reopened by only one user to delete records."));
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
  PassOver([this] { register_.LastOpened().MoveFirst(); });
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
        register_.GoTo(EnteredOrgName_);
      },
      [this] {
        if (register_.Count() > 0) return;
        SetName(kNoOrganisation);
        session().SelectedOrgName.clear();
        ListNames(register_.ReadNames());
      });
  if (IsNoName(Name())) return false;
  return IsDeletionWished(
      QStringLiteral("Wish to delete Organization [%1] from records?").arg(Name()),
      Icon::kCritical);
}

void Orgfrm::DeleteOrganisation() {
  session().SelectedOrgName = Name();
  PassOver([this] { register_.TakeLastNumberOf(session().ActiveOrgName); },
           [this] { register_.FindStudyToDelete(Name()); },
           [this] { DeleteStudyFiles(context(), [this] { Q_EMIT StudyReleaseRequested(); }); },
           // The row goes in any case, also when its files couldn't be deleted.
           [this] { register_.Organisations().Delete(); }, [this] { ShowNoOrganisation(); });
}

void Orgfrm::ShowNoOrganisation() {
  SetName(kNoOrganisation);
  PassOver([this] { ListNames(register_.ReadNames()); }, [this] { register_.ReadLastOpened(); });
  ui_->orgnmecbotxt->setText(Name());
  ui_->addorncmd->setEnabled(true);
  ui_->clsed->setEnabled(true);
  ui_->clsd->setEnabled(false);
  session().OrgEntryMode = kIdle;
}

}  // namespace kestrix
