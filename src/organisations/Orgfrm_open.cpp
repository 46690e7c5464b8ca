#include <QSet>
#include <QSignalBlocker>

#include "formkit/Controls.h"
#include "organisations/OrganisationRows.h"
#include "organisations/Orgfrm.h"
#include "organisations/StudyFiles.h"
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
        if (IsAdding() || LacksNumber()) NumberOrganisation();
      },
      [this] { TakeStudyNumber(); }, [this] { StoreInHistory(); },
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
  session().OrgCount = Narrow(Orgndata_.Recordset().RecordCount());
}

/// Whether the register has the organisation, without a number: it was never opened, or the program
/// ended before it was numbered.
bool Orgfrm::LacksNumber() {
  Recordset& rows = Orgndata_.Recordset();
  return WalkTo(rows, session().ActiveOrgName, session().OrgCount) &&
         rows.Number(kStudyNumber) == 0;
}

/// An organisation is opened for the first time: it gets its number and its study.
void Orgfrm::NumberOrganisation() {
  // Others may have added theirs meanwhile, before this one's row and with the numbers up to here,
  // or have opened this one.
  PassOver([this] { RefreshNames(); },
           [this] { session().OrgCount = Narrow(Orgndata_.Recordset().RecordCount()); });
  if (FindFreeNumber() && LacksNumber()) StoreNumber(session().ActiveStudyNo);
}

/// The smallest number that no row of the register holds becomes the active one. False when there
/// is none up to the count of the organisations.
bool Orgfrm::FindFreeNumber() {
  QSet<qint64> taken;
  for (const QString& number : Orgndata_.Recordset().Texts(kStudyNumber))
    taken.insert(number.toLongLong());
  for (int number = 1; number <= session().OrgCount; ++number) {
    session().LoopIndex = static_cast<qint16>(number);
    if (taken.contains(number)) continue;
    session().ActiveStudyNo = session().LoopIndex;
    return true;
  }
  return false;
}

void Orgfrm::StoreNumber(qint16 number) {
  Recordset& rows = Orgndata_.Recordset();
  const QSignalBlocker quiet(Orgndata_);  // a number that somebody else gave meanwhile stands
  const Recordset::Attempt attempt(rows);
  PassOver([&] { rows.Edit(); }, [&] { rows.Set(kStudyNumber, number); },
           [&] { session().ActiveStudyNo = number; }, [&] { CreateStudyDb(context()); },
           [&] { rows.Update(); });
}

void Orgfrm::TakeStudyNumber() {
  Recordset& rows = Orgndata_.Recordset();
  if (!WalkTo(rows, session().ActiveOrgName, session().OrgCount)) return;
  PassOver([&] { session().ActiveStudyNo = Narrow(rows.Number(kStudyNumber)); });
  // Somebody else has the study open. It opens all the same; only a delete is barred by it.
  session().FileFoundA = files().FileExists(installation().StudySign(session().ActiveStudyNo));
  if (session().FileFoundA) session().OtherUserMark = 2;
}

void Orgfrm::StoreInHistory() {
  Recordset& last = orgtmpRcd_.Recordset();
  // What others opened meanwhile is overwritten, not fought over: the row is read again, and
  // whoever is quicker even so isn't told of. Nobody has typed this number.
  const QSignalBlocker quiet(orgtmpRcd_);
  last.MoveFirst();
  const Recordset::Attempt attempt(last);
  last.Edit();
  last.Set(kLastStudyNumber, session().ActiveStudyNo);
  last.Update();
}

}  // namespace kestrix
