#include "formkit/Controls.h"
#include "organisations/Orgfrm.h"
#include "platform/FileSystem.h"
#include "shell/Frame.h"
#include "ui_Orgfrm.h"

namespace kestrix {

using namespace organisations;

void Orgfrm::clsd_Click() {
  WaitCursor waiting;
  try {
    session().FileFoundA = files().FileExists(installation().StudyTemplate());
    if (!session().FileFoundA) {
      waiting.Restore();
      return LeaveWithoutTemplate();
    }
    if (IsNoName(Name())) {
      waiting.Restore();
      return AskForName();
    }
    TakeUpOrganisation();
  } catch (const Failure&) {
    return;
  }
  PassOver(
      [this] {
        if (IsAdding() || register_.LacksNumber()) NumberOrganisation();
      },
      [this] { register_.TakeNumber(); }, [this] { register_.StoreLastOpened(); },
      [this] { Q_EMIT OrganisationOpened(u' ' + session().ActiveOrgName); });
  session().OrgOpenDone = 1;
  // The project form that came up may have unloaded this one already, which ends its modes.
  if (session().OrgEntryMode != kAdding && !IsUnloading()) session().OrgEntryMode = kOpened;
  UnloadForm();
}

void Orgfrm::LeaveWithoutTemplate() {
  Tell(Icon::kInformation, QStringLiteral("BELTROVAN: File missing."),
       QStringLiteral("Installed files missing."));
  UnloadForm();
  Q_EMIT ProjectFormUnloadRequested();
}

void Orgfrm::AskForName() {
  Tell(Icon::kInformation, QStringLiteral("BELTROVAN: Data required"),
       QStringLiteral("Please enter/select Organization name."));
  ShowForm();
  FocusLater(ui_->orgnmecbotxt);
}

void Orgfrm::TakeUpOrganisation() {
  session().SelectedOrgName = Name();
  session().ActiveOrgName = Name();
  frame().SetStatusText(QStringLiteral("Active Organization - ") + session().ActiveOrgName);
  register_.TakeCount();
}

/// The organisation is opened for the first time: it gets its number and its study.
void Orgfrm::NumberOrganisation() {
  // Others may have added theirs meanwhile, before this one's row and with the numbers up to here,
  // or have opened this one.
  PassOver([this] { ListNames(register_.ReadNames()); }, [this] { register_.TakeCount(); });
  register_.GiveNumber();
}

}  // namespace kestrix
