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

namespace kestrix {

class DataControl;

/// Ties a control to a field of the current row: the control shows the field, and every change of
/// the control, by hand or by program, goes into the row's pending edit. With no current row the
/// control is empty and its changes go nowhere, though they stay on the screen. A field that the
/// record source doesn't have leaves the control alone. A change that the row refuses (a text too
/// long) leaves the row as it was; rows that can't be written at all give the control its old value
/// back.
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

 private:
  /// How one kind of control shows a value, tells its own, and what it makes of a value that it is
  /// given to show. A control that only shows tells none.
  struct Face {
    std::function<void(const QVariant&)> show;
    std::function<QVariant()> value;
    std::function<QVariant(const QVariant&)> shown_as;
  };

  FieldBinding(DataControl& source, const QString& field, QObject* control, Face face);
  void Show();
  void ShowField(int field);
  void Put(const QVariant& value);
  void Take();
  [[nodiscard]] QVariant RowValue(int field) const;

  DataControl& source_;
  QString field_;
  Face face_;
  bool known_ = false;  ///< the record source has, or had last, the field
};

}  // namespace kestrix
