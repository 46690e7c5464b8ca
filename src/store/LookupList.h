#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace kestrix {

class Recordset;

/// The shape that filling, adding to and deleting from a lookup list have in common. Each list
/// tells only how it differs, in the form that shows it.
namespace lookup {

/// "None." and "N.A.", exactly: entries that can neither be deleted nor changed.
[[nodiscard]] bool IsReserved(const QString& text);

inline const QString kNone = QStringLiteral("None.");
inline const QString kNotApplicable = QStringLiteral("N.A.");

/// The first field of every row, in table order, without rows that somebody else has deleted. The
/// rows stand past the last one.
[[nodiscard]] QStringList Texts(Recordset& rows);
/// Stands past the last row; true when one has `text` in its first field and, when
/// it is given, `parent` in its second.
[[nodiscard]] bool Knows(Recordset& rows, const QString& text, const QString* parent = nullptr);
/// Stores a row with `text` and, when it is given, `parent` in its first fields. A row that is
/// refused is forgotten, and its failure is thrown.
void Add(Recordset& rows, const QString& text, const QString* parent = nullptr);
/// Stands on the first row whose `field` is `text`; past the last row when there is none. True when
/// it was found. Fails with kNoCurrentRow on an empty list.
bool WalkTo(Recordset& rows, const QString& text, int field = 0);
/// Deletes the first row whose first field is `text`. Fails with kNoCurrentRow when there is none.
void DeleteFirst(Recordset& rows, const QString& text);
/// Deletes all rows but those that `spared` holds for, in one transaction, which gets the row as
/// the current one.
void DeleteAllBut(Recordset& rows, const std::function<bool(const Recordset&)>& spared);
/// The same of hazard types, but for those below another hazard than `parent`: a hazard whose name
/// reads as a condition has rows of all hazards opened.
void DeleteBelow(Recordset& types, const QString& parent);

}  // namespace lookup
}  // namespace kestrix
