#include "organisations/OrganisationRows.h"

#include <limits>

#include "platform/Failure.h"
#include "store/LookupList.h"
#include "store/Recordset.h"

namespace kestrix::organisations {

bool IsNoName(const QString& name) {
  return name.isEmpty() || name == kNoOrganisation;
}

bool WalkTo(Recordset& rows, const QString& name, int at_most) {
  return lookup::WalkTo(rows, name, kOrgName) && rows.AbsolutePosition() <= at_most;
}

qint16 Narrow(qint64 value) {
  using Limits = std::numeric_limits<qint16>;
  if (value < Limits::min() || value > Limits::max()) {
    throw Failure(failure::kOverflow, QStringLiteral("%1 is too large a number.").arg(value));
  }
  return static_cast<qint16>(value);
}

}  // namespace kestrix::organisations
