#include "organisations/Register.h"

#include <QSet>
#include <QSignalBlocker>

#include "organisations/StudyFiles.h"
#include "platform/FileSystem.h"
#include "shell/SessionForm.h"
#include "store/LookupList.h"
#include "store/RecordSources.h"

namespace kestrix::organisations {
namespace {

/// Positions of the fields of the register, and of the one field of the history's row.
constexpr int kOrgName = 0;
constexpr int kStudyNumber = 1;
constexpr int kLastStudyNumber = 0;

/// The counter of the search for the study to delete runs to this number, from 1, in such steps.
constexpr int kSearchEnd = 10'000;
constexpr int kSearchStep = 2;

/// Stands on the first of the first `at_most` rows that has `name`; false when there is none. Fails
/// with kNoCurrentRow on an empty register.
bool WalkTo(Recordset& rows, const QString& name, int at_most) {
  return lookup::WalkTo(rows, name, kOrgName) && rows.AbsolutePosition() <= at_most;
}

}  // namespace

bool IsNoName(const QString& name) {
  return name.isEmpty() || name == kNoOrganisation;
}

Register::Register(Context& context, QObject* form)
    : context_(context),
      Orgndata_(QStringLiteral("Orgndata"), form),
      orgtmpRcd_(QStringLiteral("orgtmpRcd"), form),
      DeltRcd_(QStringLiteral("DeltRcd"), form) {
  Orgndata_.SetRecordSource(sources::kOrgtnTable);
  orgtmpRcd_.SetRecordSource(sources::kOrgtmp);
  DeltRcd_.SetRecordSource(sources::kOrgtn);
}

QStringList Register::Open(const QString& path) {
  for (DataControl* source : {&Orgndata_, &orgtmpRcd_, &DeltRcd_}) source->SetDatabaseName(path);
  orgtmpRcd_.Refresh();
  DeltRcd_.Refresh();
  return ReadNames();
}

QStringList Register::ReadNames() {
  Orgndata_.Refresh();
  return Organisations().Texts(kOrgName);
}

void Register::TakeCount() {
  context_.session.OrgCount = Narrow(Count());
}

bool Register::GoTo(const QString& name) {
  return Count() > 0 && WalkTo(Organisations(), name, Count());
}

void Register::Add(const QString& name) {
  Recordset& rows = Organisations();
  rows.AddNew();
  const Recordset::Attempt attempt(rows);
  rows.Set(kOrgName, name);
  rows.Update();
}

QString Register::NameOfLastOpened() {
  LastOpened().MoveFirst();
  const qint64 number = LastOpened().Number(kLastStudyNumber);
  Organisations().Find(kStudyNumber,
                       [&](const QString& stored) { return stored.toLongLong() == number; });
  return Organisations().Text(kOrgName);
}

bool Register::LacksNumber() {
  const SessionState& session = context_.session;
  return WalkTo(Organisations(), session.ActiveOrgName, session.OrgCount) &&
         Organisations().Number(kStudyNumber) == 0;
}

void Register::GiveNumber() {
  if (FindFreeNumber() && LacksNumber()) StoreNumber(context_.session.ActiveStudyNo);
}

/// The smallest number that no row of the register holds becomes the active one. False when there
/// is none up to the count of the organisations.
bool Register::FindFreeNumber() {
  SessionState& session = context_.session;
  QSet<qint64> taken;
  for (const QString& number : Organisations().Texts(kStudyNumber))
    taken.insert(number.toLongLong());
  for (int number = 1; number <= session.OrgCount; ++number) {
    session.LoopIndex = static_cast<qint16>(number);
    if (taken.contains(number)) continue;
    session.ActiveStudyNo = session.LoopIndex;
    return true;
  }
  return false;
}

void Register::StoreNumber(qint16 number) {
  Recordset& rows = Organisations();
  const QSignalBlocker quiet(Orgndata_);  // a number that somebody else gave meanwhile stands
  const Recordset::Attempt attempt(rows);
  PassOver([&] { rows.Edit(); }, [&] { rows.Set(kStudyNumber, number); },
           [&] { CreateStudyDb(context_); }, [&] { rows.Update(); });
}

void Register::TakeNumber() {
  SessionState& session = context_.session;
  Recordset& rows = Organisations();
  if (!WalkTo(rows, session.ActiveOrgName, session.OrgCount)) return;
  PassOver([&] { session.ActiveStudyNo = Narrow(rows.Number(kStudyNumber)); });
  // Somebody else has the study open. It opens all the same; only a delete is barred by it.
  session.FileFoundA = context_.kit.platform.files.FileExists(
      context_.installation.StudySign(session.ActiveStudyNo));
  if (session.FileFoundA) session.OtherUserMark = 2;
}

void Register::StoreLastOpened() {
  Recordset& last = LastOpened();
  // What others opened meanwhile is overwritten, not fought over: the row is read again, and
  // whoever is quicker even so isn't told of. Nobody has typed this number.
  const QSignalBlocker quiet(orgtmpRcd_);
  last.MoveFirst();
  const Recordset::Attempt attempt(last);
  last.Edit();
  last.Set(kLastStudyNumber, context_.session.ActiveStudyNo);
  last.Update();
}

void Register::FindStudyToDelete(const QString& name) {
  Recordset& rows = DeltRcd_.Recordset();
  if (!WalkTo(rows, name, kSearchEnd / kSearchStep)) return;
  context_.session.LoopIndex = static_cast<qint16>(1 + (rows.AbsolutePosition() - 1) * kSearchStep);
  context_.session.DeleteStudyNo = Narrow(rows.Number(kStudyNumber));
}

void Register::TakeLastNumberOf(const QString& name) {
  if (Count() < 1) return;
  LastOpened().MoveFirst();
  if (LastOpened().Text(kLastStudyNumber) != name) return;
  context_.session.ActiveStudyNo = Narrow(LastOpened().Number(kStudyNumber));
}

}  // namespace kestrix::organisations
