#include "formkit/FieldBinding.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>
#include <utility>

#include "formkit/Controls.h"
#include "formkit/TextLimit.h"
#include "platform/Failure.h"
#include "store/DataControl.h"

namespace kestrix {
namespace {

QString ShownInCombo(const QComboBox* box, const QString& text) {
  return box->lineEdit() ? ShownIn(box->lineEdit(), text) : text;
}

void Limit(QLineEdit* box, int most) {
  if (box != nullptr) box->setMaxLength(std::min(box->maxLength(), most));
}

}  // namespace

FieldBinding* FieldBinding::Tie(DataControl& source, const QString& field, QWidget* control) {
  if (auto* box = qobject_cast<QLineEdit*>(control)) return new FieldBinding(source, field, box);
  if (auto* box = qobject_cast<QPlainTextEdit*>(control))
    return new FieldBinding(source, field, box);
  if (auto* box = qobject_cast<QComboBox*>(control)) return new FieldBinding(source, field, box);
  if (auto* box = qobject_cast<QCheckBox*>(control)) return new FieldBinding(source, field, box);
  return new FieldBinding(source, field, static_cast<QLabel*>(control));
}

FieldBinding::FieldBinding(DataControl& source, const QString& field, QLineEdit* control)
    : FieldBinding(source, field, control,
                   {[control](const QVariant& value) { control->setText(value.toString()); },
                    [control] { return control->text(); },
                    [control](const QVariant& value) { return ShownIn(control, value.toString()); },
                    [control](int most) { Limit(control, most); }}) {
  connect(control, &QLineEdit::textChanged, this, &FieldBinding::Take);
}

FieldBinding::FieldBinding(DataControl& source, const QString& field, QPlainTextEdit* control)
    : FieldBinding(source, field, control,
                   {[control](const QVariant& value) { control->setPlainText(value.toString()); },
                    [control] { return control->toPlainText(); },
                    [control](const QVariant& value) { return ShownIn(control, value.toString()); },
                    [control](int most) { new TextLimit(control, most); }}) {
  connect(control, &QPlainTextEdit::textChanged, this, &FieldBinding::Take);
}

FieldBinding::FieldBinding(DataControl& source, const QString& field, QComboBox* control)
    : FieldBinding(
          source, field, control,
          {[control](const QVariant& value) { control->setCurrentText(value.toString()); },
           [control] { return control->currentText(); },
           [control](const QVariant& value) { return ShownInCombo(control, value.toString()); },
           [control](int most) { Limit(control->lineEdit(), most); }}) {
  connect(control, &QComboBox::currentTextChanged, this, &FieldBinding::Take);
  connect(control, &QComboBox::editTextChanged, this, &FieldBinding::Take);
}

FieldBinding::FieldBinding(DataControl& source, const QString& field, QCheckBox* control)
    : FieldBinding(source, field, control,
                   {[control](const QVariant& value) { control->setChecked(value.toBool()); },
                    [control] { return control->isChecked(); },
                    [](const QVariant& value) { return value.toBool(); }}) {
  connect(control, &QCheckBox::toggled, this, &FieldBinding::Take);
}

FieldBinding::FieldBinding(DataControl& source, const QString& field, QLabel* control)
    : FieldBinding(source, field, control,
                   {[control](const QVariant& value) { control->setText(value.toString()); },
                    [control] { return control->text(); },
                    [](const QVariant& value) { return value.toString(); }}) {}

FieldBinding::FieldBinding(DataControl& source, const QString& field, QObject* control, Face face)
    : QObject(control), source_(source), field_(field), face_(std::move(face)) {
  connect(&source, &DataControl::Shown, this, &FieldBinding::Show);
  connect(&source, &DataControl::FieldChanged, this, &FieldBinding::ShowField);
  if (source.HasRecordset()) Show();
}

void FieldBinding::Show() {
  ShowField(-1);
}

void FieldBinding::ShowField(int field) {
  QVariant value;
  try {
    if (source_.HasRecordset()) {
      const Recordset& rows = source_.Recordset();
      known_ = false;
      const int mine = rows.FieldIndex(field_);
      known_ = true;
      if (!std::exchange(limited_, true)) LimitTo(rows.FieldLimit(mine));
      if (field >= 0 && field != mine) return;
      if (rows.HasCurrentRow()) value = RowValue(mine);
    }
  } catch (const Failure&) {
    // No such field, or the row went away under us: the first leaves the control alone, the
    // second empties it.
  }
  if (known_) Put(value);
}

QVariant FieldBinding::RowValue(int field) const {
  const Recordset& rows = source_.Recordset();
  if (face_.value().typeId() == QMetaType::Bool) return rows.Truth(field);
  return rows.Text(field);
}

void FieldBinding::Put(const QVariant& value) {
  // A control that shows the value already is left alone, with its cursor and its selection.
  if (face_.shown_as(value) != face_.value()) face_.show(value);
}

void FieldBinding::LimitTo(int most) {
  if (most >= 0 && face_.limit) face_.limit(most);
}

void FieldBinding::Load() {
  Put(RowValue(source_.Recordset().FieldIndex(field_)));
}

void FieldBinding::Save() const {
  Recordset& rows = source_.Recordset();
  const int field = rows.FieldIndex(field_);
  // The control is asked for what it shows now: a change rule may have changed it again since.
  const QVariant mine = face_.value();
  if (face_.shown_as(RowValue(field)) != mine) rows.Set(field, mine);
}

void FieldBinding::Take() {
  try {
    if (source_.HasRecordset() && source_.Recordset().HasCurrentRow()) Save();
  } catch (const Failure& failure) {
    // The row keeps what it had; whoever commits it hears of the failure. But nobody commits what
    // can't be written: the control shows at once that it takes nothing.
    if (failure.number() == failure::kReadOnly) Show();
  }
}

}  // namespace kestrix
