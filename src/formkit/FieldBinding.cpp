#include "formkit/FieldBinding.h"

#include <QLineEdit>
#include <QMetaMethod>
#include <QPlainTextEdit>
#include <algorithm>
#include <utility>

#include "formkit/Controls.h"
#include "formkit/TextLimit.h"
#include "platform/Failure.h"
#include "store/DataControl.h"

namespace kestrix {

FieldBinding::FieldBinding(DataControl& source, const QString& field, QWidget* control)
    : QObject(control),
      source_(source),
      field_(field),
      control_(control),
      shown_(control->metaObject()->userProperty()) {
  const QMetaObject* meta = control->metaObject();
  if (!shown_.isValid()) shown_ = meta->property(meta->indexOfProperty("text"));  // of a label
  connect(&source, &DataControl::Shown, this, [this] { ShowField(-1); });
  connect(&source, &DataControl::FieldChanged, this, &FieldBinding::ShowField);
  if (source.HasRecordset()) ShowField(-1);
  if (!shown_.hasNotifySignal()) return;
  const int take = staticMetaObject.indexOfMethod("Take()");
  connect(control, shown_.notifySignal(), this, staticMetaObject.method(take));
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
  if (shown_.typeId() == QMetaType::Bool) return rows.Truth(field);
  return rows.Text(field);
}

/// What the control makes of a value that it is given to show.
QVariant FieldBinding::ShownAs(const QVariant& value) const {
  if (shown_.typeId() == QMetaType::Bool) return value.toBool();
  if (auto* lines = qobject_cast<QPlainTextEdit*>(control_))
    return ShownIn(lines, value.toString());
  const QLineEdit* line = LineOf(control_);
  return line ? ShownIn(line, value.toString()) : value.toString();
}

void FieldBinding::Put(const QVariant& value) {
  // A control that shows the value already is left alone, with its cursor and its selection.
  const QVariant shown = ShownAs(value);
  if (shown != shown_.read(control_)) shown_.write(control_, shown);
}

void FieldBinding::LimitTo(int most) {
  if (most < 0) return;
  if (QLineEdit* line = LineOf(control_)) line->setMaxLength(std::min(line->maxLength(), most));
  if (auto* lines = qobject_cast<QPlainTextEdit*>(control_)) new TextLimit(lines, most);
}

void FieldBinding::Load() {
  Put(RowValue(source_.Recordset().FieldIndex(field_)));
}

void FieldBinding::Save() const {
  Recordset& rows = source_.Recordset();
  const int field = rows.FieldIndex(field_);
  // The control is asked for what it shows now: a change rule may have changed it again since.
  const QVariant mine = shown_.read(control_);
  if (ShownAs(RowValue(field)) != mine) rows.Set(field, mine);
}

void FieldBinding::Take() {
  try {
    if (source_.HasRecordset() && source_.Recordset().HasCurrentRow()) Save();
  } catch (const Failure& failure) {
    // The row keeps what it had; whoever commits it hears of the failure. But nobody commits what
    // can't be written: the control shows at once that it takes nothing.
    if (failure.number() == failure::kReadOnly) ShowField(-1);
  }
}

}  // namespace kestrix
