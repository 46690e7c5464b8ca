#include "platform/PasteGuard.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <optional>

namespace kestrix {
namespace {

bool IsBox(const QObject* object) {
  return qobject_cast<const QTextEdit*>(object) || qobject_cast<const QPlainTextEdit*>(object);
}

/// Where a box would take its text from for these keys.
std::optional<QClipboard::Mode> SourceOf(QKeyEvent& event) {
  if (!event.matches(QKeySequence::Paste)) return std::nullopt;
  const bool of_selection = event.key() == Qt::Key_Insert &&
                            event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
  return of_selection ? QClipboard::Selection : QClipboard::Clipboard;
}

/// The same for keys pressed in a box and for buttons released in what it shows.
std::optional<QClipboard::Mode> SourceOf(const QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && IsBox(watched))
    return SourceOf(*static_cast<QKeyEvent*>(event));
  if (event->type() == QEvent::MouseButtonRelease && IsBox(watched->parent()) &&
      static_cast<QMouseEvent*>(event)->button() == Qt::MiddleButton)
    return QClipboard::Selection;
  return std::nullopt;
}

bool HoldsNothing(QClipboard::Mode source) {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData(source);
  return data == nullptr || data->formats().isEmpty();
}

}  // namespace

PasteGuard::PasteGuard() {
  qApp->installEventFilter(this);
}

bool PasteGuard::eventFilter(QObject* watched, QEvent* event) {
  const auto source = SourceOf(watched, event);
  if (!source || !HoldsNothing(*source)) return QObject::eventFilter(watched, event);
  event->accept();
  return true;
}

}  // namespace kestrix
