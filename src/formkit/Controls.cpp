#include "formkit/Controls.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

#include "formkit/TextLimit.h"
#include "store/LookupList.h"

namespace kestrix {
namespace {

/// The two colours that make up a control's face: what lies behind and what is written on it.
struct Roles {
  QPalette::ColorRole back;
  QPalette::ColorRole text;
};

constexpr Roles kField{QPalette::Base, QPalette::Text};
constexpr Roles kButton{QPalette::Button, QPalette::ButtonText};
constexpr Roles kPanel{QPalette::Window, QPalette::WindowText};

/// A box of several lines knows one kind of line end.
QString PlainTextOf(QString text) {
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  for (QChar& at : text) {
    if (at == u'\r' || at == QChar::ParagraphSeparator || at == QChar::LineSeparator) at = u'\n';
    if (at == QChar::Nbsp) at = u' ';
  }
  return text;
}

Roles RolesOf(const QWidget* control) {
  if (qobject_cast<const QLineEdit*>(control) || qobject_cast<const QComboBox*>(control) ||
      qobject_cast<const QAbstractScrollArea*>(control))
    return kField;
  return kPanel;
}

/// How bright a colour is to the eye, from 0 to 1.
double Luminance(QRgb colour) {
  const auto linear = [](int channel) {
    const double part = channel / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
         0.0722 * linear(qBlue(colour));
}

void Paint(QPalette& palette, Roles roles, QRgb colour) {
  // Above this, black is the one of the two that stands out more.
  constexpr double kBlackReadsBetter = 0.179;
  const QColor text = Luminance(colour) > kBlackReadsBetter ? Qt::black : Qt::white;
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    palette.setColor(group, roles.back, QColor::fromRgb(colour));
    palette.setColor(group, roles.text, text);
  }
}

/// What the program writes where nothing was typed yet.
bool IsPlaceholder(const QString& text) {
  return text == lookup::kNone || text == lookup::kNotApplicable || text == u"None" ||
         text == u"Enter Project Number.";
}

bool HasSelection(const QLineEdit* box) {
  return box->hasSelectedText();
}
bool HasSelection(const QPlainTextEdit* box) {
  return box->textCursor().hasSelection();
}

/// A press that brought the focus goes on to place the cursor, or would begin to drag what is
/// selected; so the text is selected behind it, unless somebody selected a part by then.
template <class Box>
void SelectAll(Box* box) {
  if (QGuiApplication::mouseButtons() == Qt::NoButton) return box->selectAll();
  if constexpr (std::is_same_v<Box, QPlainTextEdit>) {
    box->moveCursor(QTextCursor::End);
  } else {
    box->deselect();
  }
  const auto select = [box] {
    if (!HasSelection(box)) box->selectAll();
  };
  QMetaObject::invokeMethod(box, select, Qt::QueuedConnection);
}

/// Turns the wheel away from a combo box: it belongs to the list below or to the page. And keeps
/// what is selected in the box while its list is open: the toolkit takes the list's focus for one
/// that has gone for good.
class ComboGuard : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::FocusOut && QApplication::activePopupWidget() &&
        static_cast<QFocusEvent*>(event)->reason() == Qt::OtherFocusReason) {
      QFocusEvent to_popup(QEvent::FocusOut, Qt::PopupFocusReason);
      QCoreApplication::sendEvent(watched, &to_popup);
      return true;
    }
    if (event->type() != QEvent::Wheel) return QObject::eventFilter(watched, event);
    event->ignore();
    return true;
  }
};

}  // namespace

WaitCursor::WaitCursor() {
  QApplication::setOverrideCursor(Qt::WaitCursor);
}

WaitCursor::~WaitCursor() {
  Restore();
}

void WaitCursor::Restore() {
  if (std::exchange(waiting_, false)) QApplication::restoreOverrideCursor();
}

void SetBackColour(QWidget* control, QRgb colour) {
  QPalette palette = control->palette();
  const Roles roles = RolesOf(control);
  Paint(palette, roles, colour);
  if (qobject_cast<QComboBox*>(control) || qobject_cast<QAbstractButton*>(control))
    Paint(palette, kButton, colour);
  control->setPalette(palette);
  if (roles.back == QPalette::Window) control->setAutoFillBackground(true);
}

void SetSystemBack(QWidget* control) {
  control->setPalette(QPalette());
}

double Contrast(const QColor& one, const QColor& other) {
  const double a = Luminance(one.rgb()) + 0.05;
  const double b = Luminance(other.rgb()) + 0.05;
  return std::max(a, b) / std::min(a, b);
}

QPalette::ColorRole LinkRole(const QWidget* control) {
  constexpr double kReadable = 4.5;
  const QPalette& palette = control->palette();
  return Contrast(palette.color(QPalette::Link), palette.color(QPalette::Window)) < kReadable
             ? QPalette::WindowText
             : QPalette::Link;
}

QRgb BackColour(const QWidget* control) {
  return control->palette().color(QPalette::Active, RolesOf(control).back).rgb();
}

qreal FontScale(const QWidget* control) {
  constexpr qreal kDesignPixels = 12;
  return std::max(1.0, QFontInfo(control->font()).pixelSize() / kDesignPixels);
}

void SettleCombo(QComboBox* combo) {
  constexpr auto kGuardName = "kestrix_combo_guard";
  if (!combo->findChild<QObject*>(kGuardName, Qt::FindDirectChildrenOnly)) {
    auto* guard = new ComboGuard(combo);
    guard->setObjectName(kGuardName);
    combo->installEventFilter(guard);
  }
  combo->setInsertPolicy(QComboBox::NoInsert);
  if (!combo->isEditable()) return;
  combo->setCompleter(nullptr);
  // A text that was typed is not picked from the list, even if it stands there.
  QObject::disconnect(combo->lineEdit(), &QLineEdit::editingFinished, combo, nullptr);
  QLineEdit* edit = combo->lineEdit();
  QObject::connect(combo, &QComboBox::activated, edit, [edit] { edit->home(false); });
  QObject::connect(edit, &QLineEdit::textChanged, edit, [edit] {
    if (edit->isReadOnly() || !edit->hasFocus()) edit->home(false);
  });
}

void FillCombo(QComboBox* combo, const QStringList& entries) {
  combo->clear();
  if (combo->isEditable()) combo->clearEditText();
  // The first entry would be taken as chosen, and its text with it.
  const QSignalBlocker combo_is_silent(combo);
  const QSignalBlocker edit_is_silent(combo->lineEdit());
  combo->addItems(entries);
  combo->setCurrentIndex(-1);
}

void SetLocked(QWidget* box, bool locked) {
  constexpr auto kReadOnly = "readOnly";
  if (!box->property(kReadOnly).isValid()) return;
  box->setProperty(kReadOnly, locked);
  QPalette palette;
  if (locked)
    palette.setColor(QPalette::Base, box->parentWidget()->palette().color(QPalette::Window));
  box->setPalette(palette);
}

QLineEdit* LineOf(QWidget* control) {
  const auto* combo = qobject_cast<QComboBox*>(control);
  return combo ? combo->lineEdit() : qobject_cast<QLineEdit*>(control);
}

QString PlainTip(const QString& text) {
  return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text.trimmed();
}

QString ShownIn(const QLineEdit* box, const QString& text) {
  return text.left(box->maxLength());
}

QString ShownIn(const QPlainTextEdit* box, const QString& text) {
  return TextLimit::Taken(box, PlainTextOf(text));
}

void ShowBeginning(QLineEdit* box) {
  if (!box->hasFocus()) box->home(false);
}

void SelectWhole(QLineEdit* box) {
  SelectAll(box);
}

void GiveFindKeys(QLineEdit* box) {
  for (const QKeySequence& keys : {QKeySequence(Qt::Key_F3), QKeySequence(QKeySequence::Find)}) {
    auto* shortcut = new QShortcut(keys, box);
    QObject::connect(shortcut, &QShortcut::activated, box, [box] {
      box->setFocus(Qt::ShortcutFocusReason);
      if (box->hasFocus()) box->selectAll();
    });
  }
}

void SelectPlaceholder(QWidget* control) {
  if (QLineEdit* box = LineOf(control)) {
    if (!box->isReadOnly() && IsPlaceholder(box->text())) SelectAll(box);
  } else if (auto* lines = qobject_cast<QPlainTextEdit*>(control)) {
    if (!lines->isReadOnly() && IsPlaceholder(lines->toPlainText())) SelectAll(lines);
  }
}

}  // namespace kestrix
