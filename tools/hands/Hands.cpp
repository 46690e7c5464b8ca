#include "hands/Hands.h"

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QTextEdit>
#include <QWindow>

#include "formkit/ActiveForms.h"
#include "formkit/Form.h"
#include "formkit/Grid.h"

namespace kestrix {
namespace {

constexpr int kMostRounds = 200;
constexpr int kPatience = 10'000;  // milliseconds

QtMessageHandler handler_before = nullptr;

QString NameOf(const QObject& object) {
  return object.objectName().isEmpty() ? QString::fromLatin1(object.metaObject()->className())
                                       : object.objectName();
}

/// Where a press on the control hits it: a check box is smaller than its widget.
QPoint Middle(const QWidget& control) {
  const auto* box = qobject_cast<const QCheckBox*>(&control);
  if (!box || control.inherits("kestrix::WrapCheckBox")) return control.rect().center();
  QStyleOptionButton option;
  option.initFrom(box);
  option.text = box->text();
  return box->style()->subElementRect(QStyle::SE_CheckBoxClickRect, &option, box).center();
}

/// Where a press hits a combo: its arrow, when something lies over the rest of it.
QPoint FreePart(const QComboBox& combo) {
  const QPoint middle = combo.rect().center();
  const QWidget* hit = combo.window()->childAt(combo.mapTo(combo.window(), middle));
  if (hit == &combo || combo.isAncestorOf(hit)) return middle;
  QStyleOptionComboBox option;
  option.initFrom(&combo);
  option.editable = combo.isEditable();
  return combo.style()
      ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, &combo)
      .center();
}

/// The text edit part of a box, if it has one.
QLineEdit* EditOf(QObject& object) {
  if (auto* combo = qobject_cast<QComboBox*>(&object)) return combo->lineEdit();
  return qobject_cast<QLineEdit*>(&object);
}

}  // namespace

void LeaveOutComplaints() {
  handler_before = qInstallMessageHandler(
      [](QtMsgType type, const QMessageLogContext& context, const QString& text) {
        if (!text.startsWith(QStringLiteral("This plugin does not support")) &&
            !text.contains(QStringLiteral("XDG_RUNTIME_DIR")))
          handler_before(type, context, text);
      });
}

void Hands::End(const QString& why) {
  throw std::runtime_error(why.toStdString());
}

void Hands::Missing(const QString& name, const char* kind) const {
  QStringList names;
  const auto children = Window().findChildren<QObject*>();
  for (const QObject* child : children)
    if (!child->objectName().isEmpty() && !child->objectName().startsWith(QStringLiteral("qt_")))
      names += child->objectName();
  names.sort();
  names.removeDuplicates();
  End(QStringLiteral("There is no %1 named \"%2\" in %3. There are: %4")
          .arg(QString::fromLatin1(kind), name, NameOf(Window()),
               names.join(QStringLiteral(", "))));
}

QWidget& Hands::Window() const {
  if (window_) return *window_;
  // A form that is shown is in front only once the display has said so.
  const QDeadlineTimer patience(kPatience);
  while (!forms_.active() && !patience.hasExpired())
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  QWidget* front = forms_.active();
  if (!front) End(QStringLiteral("No form is in front."));
  return *front;
}

QObject* Hands::Find(const QString& name) const {
  return Window().findChild<QObject*>(name);
}

void Hands::Settle() {
  auto* dispatcher = QAbstractEventDispatcher::instance();
  for (int round = 0; round < kMostRounds; ++round) {
    const bool worked = dispatcher->processEvents(QEventLoop::AllEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!worked) return;
  }
  qFatal("The program doesn't come to rest.");
}

bool Hands::WaitUntil(const std::function<bool()>& holds) {
  return QTest::qWaitFor(holds, kPatience);
}

/// Brings a control where it can be pressed; what can't be pressed fails the test.
void Hands::Reach(QWidget& control) {
  if (!control.isVisible()) End(NameOf(control) + QStringLiteral(" can't be seen."));
  if (!control.isEnabled()) End(NameOf(control) + QStringLiteral(" is disabled."));
  const QWidget* modal = QApplication::activeModalWidget();
  if (modal && modal != control.window())
    End(NameOf(control) + QStringLiteral(" is barred by ") + NameOf(*modal));
  for (QWidget* parent = control.parentWidget(); parent; parent = parent->parentWidget())
    if (auto* area = qobject_cast<QScrollArea*>(parent)) area->ensureWidgetVisible(&control);
  if (!control.window()->isActiveWindow()) {
    control.window()->activateWindow();
    const bool active = WaitUntil([&] { return control.window()->isActiveWindow(); });
    if (!active) End(NameOf(*control.window()) + QStringLiteral(" doesn't come to the front."));
  }
  Settle();
}

void Hands::PressAndRelease(QWidget& control, const QPoint& position, bool twice) {
  Reach(control);
  const QPoint spot = control.mapTo(control.window(), position);
  const QWidget* hit = control.window()->childAt(spot);
  if (hit != &control && !control.isAncestorOf(hit))
    End(NameOf(control) + QStringLiteral(" is covered by ") +
        (hit ? NameOf(*hit) : QStringLiteral("nothing: it lies outside of its window")));
  // What a press brings about has been done before a person lets the button go.
  const QPointer<QWindow> window = control.window()->windowHandle();
  QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, spot);
  Settle();
  if (window) QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, spot);
  Settle();
  if (!twice || !window) return;
  QTest::mouseDClick(window, Qt::LeftButton, Qt::NoModifier, spot);
  Settle();
}

void Hands::Click(const QString& name) {
  auto& control = Control<QWidget>(name);
  PressAndRelease(control, Middle(control), false);
}

void Hands::DoubleClick(const QString& name) {
  auto& control = Control<QWidget>(name);
  Reach(control);
  QTest::mouseDClick(control.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                     control.mapTo(control.window(), Middle(control)));
  Settle();
}

void Hands::PointAt(const QString& name) {
  auto& control = Control<QWidget>(name);
  Reach(control);
  QWindow* window = control.window()->windowHandle();
  QTest::mouseMove(window, QPoint(1, 1));
  QTest::mouseMove(window, control.mapTo(control.window(), control.rect().center()));
  Settle();
}

QPoint Hands::RowCentre(Grid& grid, int row) const {
  const QModelIndex index = grid.model()->index(row, 0);
  if (!index.isValid()) End(NameOf(grid) + QStringLiteral(" has no row %1.").arg(row));
  grid.scrollTo(index);
  Settle();
  return grid.visualRect(index).center();
}

void Hands::ClickRow(const QString& grid, int row) {
  auto& view = Control<Grid>(grid);
  PressAndRelease(*view.viewport(), RowCentre(view, row), false);
}

void Hands::DoubleClickRow(const QString& grid, int row) {
  auto& view = Control<Grid>(grid);
  Reach(view);
  QWidget& viewport = *view.viewport();
  QTest::mouseDClick(viewport.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                     viewport.mapTo(viewport.window(), RowCentre(view, row)));
  Settle();
}

void Hands::PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QWindow* window = QGuiApplication::focusWindow();
  if (!window) End(QStringLiteral("No window takes keys."));
  QTest::keyClick(window, key, modifiers);
  Settle();
}

void Hands::Type(const QString& text) {
  for (const QChar letter : text) {
    QWindow* window = QGuiApplication::focusWindow();
    if (!window) End(QStringLiteral("No window takes keys."));
    const bool ascii = letter.unicode() < 128;
    const Qt::Key key = letter == u'\n' ? Qt::Key_Return
                        : ascii         ? QTest::asciiToKey(letter.toLatin1())
                                        : Qt::Key_unknown;
    QTest::sendKeyEvent(QTest::Click, window, key,
                        letter == u'\n' ? QStringLiteral("\r") : QString(letter), Qt::NoModifier);
  }
  Settle();
}

void Hands::TypeInto(const QString& name, const QString& text) {
  Click(name);
  if (!HasFocus(name)) End(name + QStringLiteral(" doesn't take the focus."));
  PressKey(Qt::Key_A, Qt::ControlModifier);
  PressKey(Qt::Key_Delete);
  Type(text);
}

void Hands::AppendTo(const QString& name, const QString& text) {
  Click(name);
  if (!HasFocus(name)) End(name + QStringLiteral(" doesn't take the focus."));
  PressKey(Qt::Key_End, Qt::ControlModifier);
  PressKey(Qt::Key_End);
  Type(text);
}

void Hands::Pick(const QString& name, const QString& text) {
  auto& combo = Control<QComboBox>(name);
  Reach(combo);
  // The list may be filled when the box gets the focus.
  if (combo.isEditable()) {
    PressAndRelease(combo, FreePart(combo), false);
  } else {
    combo.setFocus(Qt::MouseFocusReason);
    Settle();
  }
  const int row = combo.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
  if (row < 0)
    End(QStringLiteral("\"%1\" isn't in the list of %2. There are: %3")
            .arg(text, name, ItemsOf(name).join(QStringLiteral(", "))));
  QAbstractItemView& list = *combo.view();
  // The click has opened the list of a box that is only picked from.
  if (!list.isVisible()) PressKey(Qt::Key_Down, Qt::AltModifier);
  if (!WaitUntil([&] { return list.isVisible(); }))
    End(name + QStringLiteral(" doesn't open its list."));
  list.setCurrentIndex(combo.model()->index(row, combo.modelColumn(), combo.rootModelIndex()));
  PressKey(Qt::Key_Return);
}

void Hands::SetCheck(const QString& name, bool checked) {
  if (IsChecked(name) != checked) Click(name);
}

void Hands::Choose(const QString& name) {
  auto& action = Control<QAction>(name);
  if (!action.isVisible()) End(name + QStringLiteral(" can't be seen."));
  if (!action.isEnabled()) End(name + QStringLiteral(" is disabled."));
  action.trigger();
  Settle();
}

void Hands::CloseBox(QWidget& window) {
  window.close();
  Settle();
}

QString Hands::TextOf(const QString& name) const {
  QObject& object = Control<QObject>(name);
  if (const auto* combo = qobject_cast<QComboBox*>(&object)) return combo->currentText();
  if (const auto* lines = qobject_cast<QPlainTextEdit*>(&object)) return lines->toPlainText();
  if (const auto* lines = qobject_cast<QTextEdit*>(&object)) return lines->toPlainText();
  for (const char* property : {"text", "title"})
    if (object.property(property).isValid()) return object.property(property).toString();
  End(name + QStringLiteral(" shows no text."));
}

QString Hands::SelectedTextOf(const QString& name) const {
  QObject& object = Control<QObject>(name);
  if (const QLineEdit* edit = EditOf(object)) return edit->selectedText();
  if (const auto* lines = qobject_cast<QPlainTextEdit*>(&object))
    return lines->textCursor().selectedText();
  End(name + QStringLiteral(" has no selection."));
}

QStringList Hands::ItemsOf(const QString& name) const {
  const QObject& object = Control<QObject>(name);
  QStringList items;
  if (const auto* combo = qobject_cast<const QComboBox*>(&object)) {
    for (int i = 0; i < combo->count(); ++i) items += combo->itemText(i);
  } else if (const auto* view = qobject_cast<const QAbstractItemView*>(&object)) {
    for (int i = 0; i < view->model()->rowCount(); ++i)
      items += view->model()->index(i, 0).data().toString();
  } else {
    End(name + QStringLiteral(" has no items."));
  }
  return items;
}

QList<QStringList> Hands::RowsShownIn(const QString& grid) const {
  const QAbstractItemModel* model = Control<Grid>(grid).model();
  QList<QStringList> rows;
  for (int row = 0; row < model->rowCount(); ++row) {
    QStringList& cells = rows.emplace_back();
    for (int column = 0; column < model->columnCount(); ++column)
      cells += model->index(row, column).data().toString();
  }
  return rows;
}

bool Hands::IsEnabled(const QString& name) const {
  QObject& object = Control<QObject>(name);
  if (const auto* action = qobject_cast<QAction*>(&object)) return action->isEnabled();
  return Control<QWidget>(name).isEnabled();
}

bool Hands::IsVisible(const QString& name) const {
  QObject& object = Control<QObject>(name);
  if (const auto* action = qobject_cast<QAction*>(&object)) return action->isVisible();
  return Control<QWidget>(name).isVisible();
}

bool Hands::IsChecked(const QString& name) const {
  return Control<QAbstractButton>(name).isChecked();
}

bool Hands::HasFocus(const QString& name) const {
  const QWidget* focus = QApplication::focusWidget();
  const auto& control = Control<QWidget>(name);
  return focus && (focus == &control || control.isAncestorOf(focus));
}

QString Hands::FocusName() const {
  const QWidget* focus = QApplication::focusWidget();
  while (focus && focus->objectName().startsWith(QStringLiteral("qt_")))
    focus = focus->parentWidget();
  return focus ? focus->objectName() : QString();
}

}  // namespace kestrix
