#include "outside/Watch.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QLocalSocket>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTextEdit>
#include <QToolBar>
#include <QWindow>

namespace kestrix {
namespace {

/// As the display counts, whatever the scale.
QJsonObject OnScreen(const QWidget* widget, const QRect& part) {
  const double scale = widget->devicePixelRatioF();
  const QPoint at = widget->mapToGlobal(part.topLeft());
  return {{"x", qRound(at.x() * scale)},
          {"y", qRound(at.y() * scale)},
          {"width", qRound(part.width() * scale)},
          {"height", qRound(part.height() * scale)}};
}

/// The name by which a person's hand would find it: its own, or that of what it is a part of.
const QWidget* Named(const QWidget* widget) {
  while (widget && !widget->isWindow() &&
         (widget->objectName().isEmpty() || widget->objectName().startsWith("qt_")))
    widget = widget->parentWidget();
  return widget;
}

QString TextOf(const QWidget* widget) {
  if (auto* button = qobject_cast<const QAbstractButton*>(widget)) return button->text();
  if (auto* label = qobject_cast<const QLabel*>(widget)) return label->text();
  if (auto* line = qobject_cast<const QLineEdit*>(widget)) return line->text();
  if (auto* combo = qobject_cast<const QComboBox*>(widget)) return combo->currentText();
  if (auto* plain = qobject_cast<const QPlainTextEdit*>(widget)) return plain->toPlainText();
  if (auto* text = qobject_cast<const QTextEdit*>(widget)) return text->toPlainText();
  if (auto* child = qobject_cast<const QMdiSubWindow*>(widget)) return child->windowTitle();
  return {};
}

QString SelectionOf(const QWidget* widget) {
  if (auto* line = qobject_cast<const QLineEdit*>(widget)) return line->selectedText();
  if (auto* combo = qobject_cast<const QComboBox*>(widget))
    return combo->lineEdit() ? combo->lineEdit()->selectedText() : QString();
  if (auto* plain = qobject_cast<const QPlainTextEdit*>(widget))
    return plain->textCursor().selectedText();
  return {};
}

/// Whether more is written on it than it has room for.
bool IsCut(const QWidget* widget) {
  const auto is_larger = [widget](QSize needed) {
    return needed.width() > widget->width() + 1 || needed.height() > widget->height() + 1;
  };
  if (auto* label = qobject_cast<const QLabel*>(widget)) {
    if (label->text().isEmpty()) return false;
    if (label->wordWrap()) return label->heightForWidth(label->width()) > label->height() + 1;
    return is_larger(label->minimumSizeHint());
  }
  if (widget->hasHeightForWidth())
    return widget->heightForWidth(widget->width()) > widget->height();
  // A style's idea of the least button is generous; what counts is that its text is seen whole.
  if (auto* button = qobject_cast<const QAbstractButton*>(widget))
    return is_larger(button->fontMetrics().size(Qt::TextShowMnemonic, button->text()));
  return false;
}

QJsonArray ItemsOf(const QWidget* widget) {
  QJsonArray items;
  if (auto* combo = qobject_cast<const QComboBox*>(widget))
    for (int i = 0; i < combo->count(); ++i) items.append(combo->itemText(i));
  if (auto* view = qobject_cast<const QAbstractItemView*>(widget); view && view->model())
    for (int row = 0; row < view->model()->rowCount(); ++row) {
      const QModelIndex index = view->model()->index(row, 0);
      QStringList columns;
      for (int column = 0; column < view->model()->columnCount(); ++column)
        columns.append(index.siblingAtColumn(column).data().toString());
      QJsonObject item = OnScreen(view->viewport(), view->visualRect(index));
      item["text"] = columns.join('|');
      item["current"] = view->currentIndex().row() == row;
      items.append(item);
    }
  return items;
}

QJsonObject Tell(const QWidget* widget) {
  QJsonObject told = OnScreen(widget, widget->rect());
  const QRect seen = widget->visibleRegion().boundingRect();
  told["seen"] = OnScreen(widget, seen);
  told["name"] = widget->objectName();
  told["class"] = widget->metaObject()->className();
  told["text"] = TextOf(widget);
  told["selection"] = SelectionOf(widget);
  told["visible"] = widget->isVisible();
  told["enabled"] = widget->isEnabled();
  told["cut"] = widget->isVisible() && IsCut(widget);
  told["tip"] = widget->toolTip();
  told["accessible"] = widget->accessibleName();
  told["description"] = widget->accessibleDescription();
  told["focus"] = Named(QApplication::focusWidget()) == widget;
  told["takes_focus"] = (widget->focusPolicy() & Qt::TabFocus) != 0;
  if (auto* button = qobject_cast<const QAbstractButton*>(widget))
    told["checked"] = button->isChecked();
  const QJsonArray items = ItemsOf(widget);
  if (!items.isEmpty()) told["items"] = items;
  // The list of a box is a window without a name; its entries are told with their places.
  if (auto* combo = qobject_cast<const QComboBox*>(widget); combo && combo->view()->isVisible())
    told["list"] = ItemsOf(combo->view());
  return told;
}

/// Entries of a menu bar, a menu and a tool bar, which are no widgets of their own.
void TellActions(const QWidget* widget, QJsonArray& controls) {
  const auto* bar = qobject_cast<const QMenuBar*>(widget);
  const auto* menu = qobject_cast<const QMenu*>(widget);
  if (!bar && !menu) return;
  const auto actions = widget->actions();
  for (QAction* action : actions) {
    QJsonObject told =
        OnScreen(widget, bar ? bar->actionGeometry(action) : menu->actionGeometry(action));
    const QString name = action->objectName();
    told["name"] = name.isEmpty() && action->menu() ? action->menu()->objectName() : name;
    told["class"] = "QAction";
    told["text"] = action->text();
    told["visible"] = action->isVisible() && widget->isVisible();
    told["enabled"] = action->isEnabled();
    told["checked"] = action->isChecked();
    told["tip"] = action->toolTip();
    controls.append(told);
  }
}

QJsonObject TellWindow(QWidget* window) {
  QJsonObject told = Tell(window);
  const QRect frame = window->frameGeometry();
  const double scale = window->devicePixelRatioF();
  told["frame"] = QJsonObject{{"x", qRound(frame.x() * scale)},
                              {"y", qRound(frame.y() * scale)},
                              {"width", qRound(frame.width() * scale)},
                              {"height", qRound(frame.height() * scale)}};
  told["id"] = QString::number(window->internalWinId());
  told["title"] = window->windowTitle();
  told["active"] = window->isActiveWindow();
  told["modal"] = window->isModal();
  told["state"] = static_cast<int>(window->windowState());
  QJsonArray controls;
  TellActions(window, controls);
  const auto children = window->findChildren<QWidget*>();
  for (const QWidget* child : children) {
    if (child->isWindow() || child->window() != window) continue;
    if (!child->objectName().isEmpty()) controls.append(Tell(child));
    TellActions(child, controls);
  }
  told["controls"] = controls;
  return told;
}

QJsonObject TellAll() {
  QJsonArray windows;
  const auto widgets = QApplication::topLevelWidgets();
  for (QWidget* widget : widgets)
    if (widget->isVisible()) windows.append(TellWindow(widget));
  QJsonObject told{{"windows", windows}};
  if (const QWidget* focus = Named(QApplication::focusWidget())) {
    told["focus"] = focus->objectName();
    told["focus_window"] = focus->window()->objectName();
  }
  if (const QWidget* active = QApplication::activeWindow()) told["active"] = active->objectName();
  return told;
}

/// A dark desktop: its colours come with the desktop's theme, which a bare display doesn't have.
void GoDark() {
  QPalette dark(QColor(0x30, 0x30, 0x30), QColor(0x28, 0x28, 0x28));
  dark.setColor(QPalette::Base, QColor(0x1c, 0x1c, 0x1c));
  dark.setColor(QPalette::ToolTipBase, QColor(0x40, 0x40, 0x40));
  dark.setColor(QPalette::ToolTipText, Qt::white);
  QApplication::setPalette(dark);
}

}  // namespace

Watch::Watch(const QString& path) {
  connect(&server_, &QLocalServer::newConnection, this, &Watch::Answer);
  server_.listen(path);
  if (qEnvironmentVariableIsSet("KESTRIX_WATCH_DARK"))
    QMetaObject::invokeMethod(this, GoDark, Qt::QueuedConnection);
}

void Watch::Answer() {
  QLocalSocket* socket = server_.nextPendingConnection();
  connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
  connect(socket, &QLocalSocket::readyRead, socket, [socket] {
    if (!socket->canReadLine()) return;
    socket->readAll();
    socket->write(QJsonDocument(TellAll()).toJson(QJsonDocument::Compact) + '\n');
  });
}

QObject* WatchPlugin::create(const QString& /*name*/, const QString& path) {
  return new Watch(path);
}

}  // namespace kestrix
