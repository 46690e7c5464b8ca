#pragma once

#include <QString>
#include <QtGlobal>

namespace kestrix {

class Recordset;

/// How the rows of the register are read and written. The organisation form works on them in three
/// files, which share this.
namespace organisations {

/// The combo's text as long as no organisation was chosen; it is no row of the register.
inline const QString kNoOrganisation = QStringLiteral("Select organization");

/// Positions of the fields of the register, and of the one field of the history's row.
inline constexpr int kOrgName = 0;
inline constexpr int kStudyNumber = 1;
inline constexpr int kLastStudyNumber = 0;

/// What OrgEntryMode says: nothing is pending, a name is being added, an organisation was opened.
enum EntryMode : qint16 { kIdle, kAdding, kOpened };

[[nodiscard]] bool IsNoName(const QString& name);
/// Stands on the first of the first `at_most` rows that has `name`; false when there is none. Fails
/// with kNoCurrentRow on an empty register.
[[nodiscard]] bool WalkTo(Recordset& rows, const QString& name, int at_most);

}  // namespace organisations
}  // namespace kestrix
