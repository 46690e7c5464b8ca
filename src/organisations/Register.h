#pragma once

#include <QString>
#include <QStringList>

#include "store/DataControl.h"

namespace kestrix {

struct Context;

namespace organisations {

/// The combo's text as long as no organisation was chosen; it is no row of the register.
inline const QString kNoOrganisation = QStringLiteral("Select organization");

/// What OrgEntryMode says: nothing is pending, a name is being added, an organisation was opened.
enum EntryMode : qint16 { kIdle, kAdding, kOpened };

[[nodiscard]] bool IsNoName(const QString& name);

/// The register as its form works on it: the names with the numbers of their studies, and the
/// number that was opened last. Its steps read and write the values of the session that the rules
/// name, and it knows no control. Every step fails as the rows it uses do.
class Register {
 public:
  /// Its data controls become children of `form`.
  Register(Context& context, QObject* form);

  /// Opens the file, again when it is open: another one may lie at its place. Gives the names in
  /// the order of the register.
  QStringList Open(const QString& path);
  /// Opens the organisations alone again.
  QStringList ReadNames();

  [[nodiscard]] Recordset& Organisations() const { return Orgndata_.Recordset(); }
  [[nodiscard]] Recordset& LastOpened() const { return orgtmpRcd_.Recordset(); }
  void ReadLastOpened() { orgtmpRcd_.Refresh(); }
  [[nodiscard]] int Count() const { return Organisations().RecordCount(); }
  /// The number of the rows becomes OrgCount. Fails with kOverflow.
  void TakeCount();

  /// Stands on the row of that name; false when there is none.
  bool GoTo(const QString& name);
  /// Stores a row of that name, without a number. Fails with kDuplicate.
  void Add(const QString& name);
  /// Whose study was opened last.
  [[nodiscard]] QString NameOfLastOpened();

  /// Whether the organisation in work is there without a number: it was never opened, or the
  /// program ended before it was numbered.
  [[nodiscard]] bool LacksNumber();
  /// Gives it the smallest number that no row holds, and its study.
  void GiveNumber();
  /// Its number becomes that of the active study; with no such row nothing happens. Whoever has the
  /// study open already leaves OtherUserMark.
  void TakeNumber();
  /// The number of the active study becomes the one that was opened last.
  void StoreLastOpened();
  /// The number of `name` becomes that of the study to delete. With no row of that name among the
  /// first 5000, as they were when the file was opened, it stays what it was.
  void FindStudyToDelete(const QString& name);
  /// The number of the row that was opened last, if it is called `name`, becomes that of the active
  /// study. The row has no such field, so it stays.
  void TakeLastNumberOf(const QString& name);

 private:
  [[nodiscard]] bool FindFreeNumber();
  void StoreNumber(qint16 number);

  Context& context_;
  DataControl Orgndata_;   ///< the organisations
  DataControl orgtmpRcd_;  ///< the study number opened last
  DataControl DeltRcd_;    ///< a second view of the organisations: only for FindStudyToDelete
};

}  // namespace organisations
}  // namespace kestrix
