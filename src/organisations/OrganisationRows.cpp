#include "organisations/OrganisationRows.h"

#include <limits>

#include "platform/Failure.h"
#include "store/Recordset.h"

namespace kestrix::organisations {

bool IsNoName(const QString& name) {
  return name.isEmpty() || name == kNoOrganisation;
}

bool WalkTo(Recordset& rows, const QString& name, int at_most) {
  const Recordset::Walk walk(rows);
  rows.MoveFirst();
  for (int i = 0; i < at_most && !rows.Eof(); ++i) {
    if (rows.Text(kOrgName) == name) return true;
    rows.MoveNext();
  }
  return false;
}

qint16 Narrow(qint64 value) {
  using Limits = std::numeric_limits<qint16>;
  if (value < Limits::min() || value > Limits::max()) {
    throw Failure(failure::kOverflow, QStringLiteral("%1 is too large a number.").arg(value));
  }
  return static_cast<qint16>(value);
}

}  // namespace kestrix::organisations
