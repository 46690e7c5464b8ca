#include "estimation/PickOnlyCombo.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <utility>

namespace kestrix {

PickOnlyCombo::PickOnlyCombo(QComboBox* box) : QObject(box), box_(box) {
  box_->lineEdit()->setReadOnly(true);
  box_->lineEdit()->setCursor(Qt::ArrowCursor);
  box_->lineEdit()->installEventFilter(this);
  box_->installEventFilter(this);
  box_->view()->window()->installEventFilter(this);
}

void PickOnlyCombo::Show(QComboBox* box, const QString& text) {
  // The item of this text, if there is one, is where the arrow keys go on from.
  box->setCurrentIndex(box->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
  box->setEditText(text);
  box->lineEdit()->home(false);
}

bool PickOnlyCombo::eventFilter(QObject* watched, QEvent* event) {
  // No other events: the box, of which this is a part, tells of its end as well.
  if (event->type() == QEvent::MouseButtonPress) {
    return TakesPress(watched, *static_cast<QMouseEvent*>(event));
  }
  // The list opens with the release, as a release would close it again.
  if (event->type() == QEvent::MouseButtonRelease && std::exchange(pressed_, false)) {
    box_->showPopup();
    return true;
  }
  if (event->type() == QEvent::KeyPress && watched == box_) {
    return TakesKey(*static_cast<QKeyEvent*>(event));
  }
  return QObject::eventFilter(watched, event);
}

bool PickOnlyCombo::TakesPress(QObject* watched, const QMouseEvent& press) {
  QWidget* list = box_->view()->window();
  if (watched == list) {
    // The press that closes the list must not open it again.
    const QPoint place = box_->mapFromGlobal(press.globalPosition().toPoint());
    if (box_->rect().contains(place)) list->setAttribute(Qt::WA_NoMouseReplay);
    return false;
  }
  if (watched != box_->lineEdit() || !box_->isEnabled()) return false;
  pressed_ = press.button() == Qt::LeftButton;
  return true;
}

bool PickOnlyCombo::TakesKey(const QKeyEvent& key) {
  if ((key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != Qt::NoModifier) return false;
  if (key.key() == Qt::Key_Space) {
    box_->showPopup();
    return true;
  }
  if (key.text().isEmpty() || !key.text().at(0).isLetterOrNumber()) return false;
  PickByLetter(key.text());
  return true;
}

void PickOnlyCombo::PickByLetter(const QString& letter) {
  const int count = box_->count();
  for (int step = 1; step <= count; ++step) {
    const int index = (box_->currentIndex() + step) % count;
    if (!box_->itemText(index).startsWith(letter, Qt::CaseInsensitive)) continue;
    box_->setCurrentIndex(index);
    Q_EMIT box_->activated(index);
    return;
  }
}

}  // namespace kestrix
