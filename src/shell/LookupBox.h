#pragma once

#include <QString>

class QComboBox;

namespace kestrix {

class DataControl;
class SessionForm;
struct Select;

/// A combo box that is fed from a lookup list, and the two commands on the list behind it. The rows
/// are those of a data control, which several boxes may share: the one that was entered last has
/// its list there. The text in hand is kept where the rules of the form read and write it too.
class LookupBox {
 public:
  /// `sql` selects the list; null for one that depends on another box, whose rows the form opens.
  LookupBox(SessionForm& form, DataControl& source, QComboBox* box, const Select* sql,
            QString& kept);

  /// Offers every entry of the rows that are open, and shows `text`.
  void Fill(const QString& text) const;
  /// "+": adds the text of the box, unless the list has it. A list that depends on another box
  /// holds its entries below `parent`, and is searched as it is open; any other is read again
  /// first, since others add to it. A failure ends the command, and nobody is told.
  void Add(const QString* parent = nullptr);
  /// "-": deletes the text that was kept, after a question about `asked`, unless `judged` is
  /// reserved. Ends as Add does.
  void Delete(const QString& judged, const QString& asked);

 private:
  [[nodiscard]] bool AddEntry(const QString* parent);
  void ReadAgain();

  SessionForm& form_;
  DataControl& source_;
  QComboBox* box_;
  const Select* sql_;
  QString& kept_;
};

}  // namespace kestrix
