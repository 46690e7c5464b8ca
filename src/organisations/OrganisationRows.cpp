#include "organisations/OrganisationRows.h"

#include "store/LookupList.h"
#include "store/Recordset.h"

namespace kestrix::organisations {

bool IsNoName(const QString& name) {
  return name.isEmpty() || name == kNoOrganisation;
}

bool WalkTo(Recordset& rows, const QString& name, int at_most) {
  return lookup::WalkTo(rows, name, kOrgName) && rows.AbsolutePosition() <= at_most;
}

}  // namespace kestrix::organisations
