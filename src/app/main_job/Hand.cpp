#include "app/main_job/Hand.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTest>

namespace kestrix {
namespace {

constexpr int kPatienceMilliseconds = 10000;

}  // namespace

template <class W>
W* Hand::Find(const QString& name) const {
  W* found = form_ == nullptr ? nullptr : form_->findChild<W*>(name);
  if (found == nullptr) {
    throw HandStopped(QStringLiteral("There is no %1 on %2.")
                          .arg(name, form_ == nullptr ? QString() : form_->objectName()));
  }
  return found;
}

void Hand::On(const QString& name) {
  form_ = nullptr;
  const auto in_front = [&] {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == name && window->isVisible() && window->isActiveWindow()) {
        form_ = window;
      }
    }
    return form_ != nullptr;
  };
  if (!QTest::qWaitFor(in_front, kPatienceMilliseconds)) {
    throw HandStopped(QStringLiteral("The form %1 did not come to the front.").arg(name));
  }
  QCoreApplication::processEvents();
}

QWidget* Hand::Usable(const QString& control) const {
  auto* widget = Find<QWidget>(control);
  if (!widget->isVisible() || !widget->isEnabled()) {
    throw HandStopped(QStringLiteral("%1 on %2 can't be used.").arg(control, form_->objectName()));
  }
  return widget;
}

void Hand::Click(const QString& control) {
  QWidget* widget = Usable(control);
  QTest::mouseClick(widget, Qt::LeftButton);
  QCoreApplication::processEvents();
}

void Hand::Trigger(const QString& action) {
  auto* entry = Find<QAction>(action);
  if (!entry->isEnabled()) throw HandStopped(QStringLiteral("%1 can't be used.").arg(action));
  entry->trigger();
  QCoreApplication::processEvents();
}

void Hand::Type(const QString& control, const QString& text) {
  QWidget* widget = Usable(control);
  QWidget* target = widget;
  if (auto* combo = qobject_cast<QComboBox*>(widget)) target = combo->lineEdit();
  QTest::mouseClick(target, Qt::LeftButton);
  QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(widget, Qt::Key_Delete);
  for (const QChar c : text) {
    if (c == u'\n') {
      QTest::keyClick(widget, Qt::Key_Return);
    } else {
      QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
  }
  QCoreApplication::processEvents();
}

void Hand::Pick(const QString& combo, const QString& item) {
  auto* box = qobject_cast<QComboBox*>(Usable(combo));
  if (box == nullptr) throw HandStopped(QStringLiteral("%1 is no list.").arg(combo));
  box->setFocus(Qt::MouseFocusReason);
  QCoreApplication::processEvents();
  const int row = box->findText(item, Qt::MatchExactly | Qt::MatchCaseSensitive);
  if (row < 0) throw HandStopped(QStringLiteral("%1 has no item %2.").arg(combo, item));
  box->showPopup();
  QAbstractItemView* list = box->view();
  list->setCurrentIndex(box->model()->index(row, box->modelColumn(), box->rootModelIndex()));
  QTest::keyClick(list, Qt::Key_Return);
  box->hidePopup();
  QCoreApplication::processEvents();
  // Offscreen, a list that closes leaves no window active.
  if (QApplication::activeWindow() != form_) QApplication::setActiveWindow(form_);
  QCoreApplication::processEvents();
}

void Hand::ClickRow(const QString& grid, int row) {
  auto* list = qobject_cast<QAbstractItemView*>(Usable(grid));
  if (list == nullptr || list->model() == nullptr || row >= list->model()->rowCount()) {
    throw HandStopped(QStringLiteral("%1 has no row %2.").arg(grid).arg(row));
  }
  const QModelIndex index = list->model()->index(row, 0);
  list->scrollTo(index);
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(index).center());
  QCoreApplication::processEvents();
}

void Hand::Tab() {
  QWidget* widget = QApplication::focusWidget();
  if (widget != nullptr) QTest::keyClick(widget, Qt::Key_Tab);
  QCoreApplication::processEvents();
}

QString Hand::TextOf(const QString& control) const {
  auto* widget = Find<QWidget>(control);
  if (const auto* label = qobject_cast<QLabel*>(widget)) return label->text();
  if (const auto* line = qobject_cast<QLineEdit*>(widget)) return line->text();
  if (const auto* combo = qobject_cast<QComboBox*>(widget)) return combo->currentText();
  if (const auto* text = qobject_cast<QPlainTextEdit*>(widget)) return text->toPlainText();
  if (const auto* button = qobject_cast<QAbstractButton*>(widget)) return button->text();
  throw HandStopped(QStringLiteral("%1 has no text.").arg(control));
}

bool Hand::IsShown(const QString& control) const {
  return Find<QWidget>(control)->isVisible();
}

void Hand::Picture(const QString& folder, const QString& file) {
  QCoreApplication::processEvents();
  const QString path = QStringLiteral("%1/%2.png").arg(folder, file);
  if (!form_->grab().save(path)) {
    throw HandStopped(QStringLiteral("The picture %1 can't be written.").arg(path));
  }
}

}  // namespace kestrix
