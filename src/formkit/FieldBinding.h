#pragma once

#include <QMetaProperty>
#include <QObject>
#include <QString>
#include <QVariant>

class QWidget;

namespace kestrix {

class DataControl;

/// Ties a control to a field of the current row: the control shows the field, and every change of
/// the control, by hand or by program, goes into the row's pending edit. A label shows only. With
/// no current row the control is empty and its changes go nowhere, though they stay on the screen.
/// A field that the record source doesn't have leaves the control alone. A text box takes no more
/// than the column holds. A change that the row refuses leaves the row as it was; rows that can't
/// be written at all give the control its old value back.
///
/// A binding belongs to its control, and ends with it.
class FieldBinding : public QObject {
  Q_OBJECT

 public:
  /// `control` is a box of text, of one line or several, a combo box, of which the text counts, a
  /// check box or a label.
  FieldBinding(DataControl& source, const QString& field, QWidget* control);

  /// Shows the field again. Fails as Recordset::Text does.
  void Load();
  /// Takes what the control shows into the field; a field that is shown already keeps the line ends
  /// that another program gave it. Fails as Recordset::Set does.
  void Save() const;
  /// Shows `value`, which goes into the field as any change does.
  void Put(const QVariant& value);

 private:
  /// If it is this one; the one of this binding for -1.
  void ShowField(int field);
  void LimitTo(int most);
  Q_INVOKABLE void Take();
  [[nodiscard]] QVariant RowValue(int field) const;
  [[nodiscard]] QVariant ShownAs(const QVariant& value) const;

  DataControl& source_;
  QString field_;
  QWidget* control_;
  QMetaProperty shown_;   ///< what the control shows
  bool known_ = false;    ///< the record source has, or had last, the field
  bool limited_ = false;  ///< the control knows how much the column holds
};

}  // namespace kestrix
