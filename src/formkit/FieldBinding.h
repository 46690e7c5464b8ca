#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QWidget;

namespace kestrix {

class DataControl;

/// Ties a control to a field of the current row: the control shows the field, and every change of
/// the control, by hand or by program, goes into the row's pending edit. With no current row the
/// control is empty and its changes go nowhere, though they stay on the screen. A field that the
/// record source doesn't have leaves the control alone. A text box takes no more than the column
/// holds. A change that the row refuses leaves the row as it was; rows that can't be written at all
/// give the control its old value back.
///
/// A binding belongs to its control, and ends with it.
class FieldBinding : public QObject {
  Q_OBJECT

 public:
  FieldBinding(DataControl& source, const QString& field, QLineEdit* control);
  FieldBinding(DataControl& source, const QString& field, QPlainTextEdit* control);
  FieldBinding(DataControl& source, const QString& field, QComboBox* control);  ///< its edit text
  FieldBinding(DataControl& source, const QString& field, QCheckBox* control);
  FieldBinding(DataControl& source, const QString& field, QLabel* control);  ///< shows only
  /// The binding of a control of any of these kinds.
  static FieldBinding* Tie(DataControl& source, const QString& field, QWidget* control);

  /// Shows the field again. Fails as Recordset::Text does.
  void Load();
  /// Takes what the control shows into the field; a field that is shown already keeps the line ends
  /// that another program gave it. Fails as Recordset::Set does.
  void Save() const;
  /// Shows `value`, which goes into the field as any change does.
  void Put(const QVariant& value);

 private:
  /// How one kind of control shows a value, tells its own, and what it makes of a value that it is
  /// given to show. A control that only shows tells none.
  struct Face {
    std::function<void(const QVariant&)> show;
    std::function<QVariant()> value;
    std::function<QVariant(const QVariant&)> shown_as;
    std::function<void(int)> limit = {};  ///< to so many characters
  };

  FieldBinding(DataControl& source, const QString& field, QObject* control, Face face);
  void Show();
  void ShowField(int field);
  void LimitTo(int most);
  void Take();
  [[nodiscard]] QVariant RowValue(int field) const;

  DataControl& source_;
  QString field_;
  Face face_;
  bool known_ = false;    ///< the record source has, or had last, the field
  bool limited_ = false;  ///< the control knows how much the column holds
};

}  // namespace kestrix
