// Any bytes in place of a database: each source of rows that a form opens in it is opened, read and
// changed, or refused with a Failure.
#include <QFile>
#include <QFileInfo>

#include "Fuzz.h"
#include "holds/UseDatabase.h"
#include "platform/Failure.h"
#include "store/Database.h"
#include "store/RecordSources.h"
#include "store/Schema.h"

namespace kestrix::fuzz {
namespace {

const QList<Select>& Sources() {
  static const QList<Select> kSources = {
      sources::kOrgtnTable,
      sources::kOrgtmp,
      sources::kPrjstage,
      sources::kPrimaryHazard,
      sources::HazardTypesOf(QStringLiteral("Mechanical hazards")),
      sources::ProjectSql(QStringLiteral("ACME")),
      sources::RiskSql(QStringLiteral("P-1")),
      sources::FileLinkSql(QStringLiteral("P-1"))};
  return kSources;
}

void HoldsAsBefore(const QString& path, const QByteArray& bytes) {
  Hold(BytesOf(path) == bytes, "reading a database doesn't change it");
  Hold(!QFileInfo::exists(LockSign::PathFor(path)), "the sign goes with the last close");
  Hold(!QFileInfo::exists(path + QStringLiteral("-journal")), "reading leaves no journal");
}

/// Whether this file can be opened at all. Which failures opening one may end with stands in
/// Database.h.
bool Opens(const QString& path) {
  try {
    const Database database(path);
    Hold(!database.IsReadOnly(), "a file that can be written is opened for writing");
    return true;
  } catch (const Failure& failure) {
    Note(failure);
    Hold(failure.number() == failure::kNotADatabase || failure.number() == failure::kCannotOpen ||
             failure.number() == failure::kDeviceError,
         "a file that isn't a database is refused as such", failure.description());
    return false;
  }
}

/// Whether opening the file brought it to the newest version. What it was lies beside it then.
bool WasBroughtUp(const QString& path, const QByteArray& bytes) {
  bool found = false;
  for (const QString& copy : CopiesOfVersions(path)) {
    if (!QFileInfo::exists(copy)) continue;
    found = true;
    Hold(BytesOf(copy) == bytes, "the copy of an older version is the file as it was");
    QFile::remove(copy);
  }
  return found;
}

}  // namespace
}  // namespace kestrix::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace kestrix;
  QByteArray bytes = fuzz::Input(data, size).Rest();
  const QString path = fuzz::LayFile(QStringLiteral("database.mdb"), bytes);
  const auto note = [](const Failure& failure) { fuzz::Note(failure); };
  const bool opens = fuzz::Opens(path);
  if (opens && fuzz::WasBroughtUp(path, bytes)) bytes = fuzz::BytesOf(path);
  fuzz::HoldsAsBefore(path, bytes);
  if (!opens) return 0;
  const int readable = holds::UseDatabase(path, fuzz::Sources(), false, note);
  fuzz::Note(QStringLiteral("%1 readable").arg(readable));
  fuzz::HoldsAsBefore(path, bytes);
  const QString copy = path + QStringLiteral(".copy");
  if (holds::Succeeds([&] { CopyDatabase(path, copy); }, note)) {
    fuzz::Hold(fuzz::BytesOf(copy) == bytes, "a copy is what was copied");
  }
  fuzz::HoldsAsBefore(path, bytes);
  static_cast<void>(holds::UseDatabase(path, fuzz::Sources(), true, note));
  fuzz::Hold(!QFileInfo::exists(LockSign::PathFor(path)), "the sign goes with the last close");
  return 0;
}
