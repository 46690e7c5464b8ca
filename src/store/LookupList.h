#pragma once

#include <QString>
#include <functional>

namespace kestrix {

class Recordset;

/// What a list command needs of the box in front of a lookup list. Forms give it as an adapter of
/// their combo or list box.
class ListBox {
 public:
  virtual ~ListBox() = default;
  virtual void Clear() = 0;
  virtual void AddItem(const QString& text) = 0;
  [[nodiscard]] virtual QString Text() const = 0;
  virtual void SetText(const QString& text) = 0;
};

/// The shape that filling, adding to and deleting from a lookup list have in common. Each list
/// tells only how it differs, in the form that shows it.
namespace lookup {

/// "None." and "N.A.", exactly: entries that can neither be deleted nor changed.
[[nodiscard]] bool IsReserved(const QString& text);

inline const QString kNone = QStringLiteral("None.");
inline const QString kNotApplicable = QStringLiteral("N.A.");

/// Clears `box` and adds the first field of every row, in table order, then stands on the first row
/// again. An empty list fails with kNoCurrentRow after the box was cleared, as its first move does.
void Fill(Recordset& rows, ListBox& box);
/// As Fill, but an empty list only clears the box; the rows are left past the last one.
void FillToEnd(Recordset& rows, ListBox& box);
/// Walks all rows from the first to the last; true when one has `text` in its first field.
[[nodiscard]] bool Knows(Recordset& rows, const QString& text);
/// The same, comparing the first two fields.
[[nodiscard]] bool KnowsPair(Recordset& rows, const QString& text, const QString& parent);
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
