#include "formkit/ClickLabel.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <utility>

namespace kestrix {
namespace {

class ClickLabelAccess : public QAccessibleWidget {
 public:
  explicit ClickLabelAccess(ClickLabel* label)
      : QAccessibleWidget(label, QAccessible::Button), label_(label) {}

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    const QString given = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && given.isEmpty() ? label_->text() : given;
  }
  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (label_->isEnabled()) names.prepend(pressAction());
    return names;
  }
  void doAction(const QString& name) override {
    if (name != pressAction()) return QAccessibleWidget::doAction(name);
    if (label_->isEnabled()) Q_EMIT label_->Click();
  }

 private:
  ClickLabel* label_;
};

QAccessibleInterface* MakeAccess(const QString& /*class_name*/, QObject* object) {
  auto* label = qobject_cast<ClickLabel*>(object);
  return label ? new ClickLabelAccess(label) : nullptr;
}

}  // namespace

ClickLabel::ClickLabel(QWidget* parent) : QLabel(parent) {
  // Installing the same function again changes nothing.
  QAccessible::installFactory(MakeAccess);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
}

void ClickLabel::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->button() == Qt::LeftButton;
  event->accept();
}

void ClickLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (std::exchange(pressed_, false) && rect().contains(event->position().toPoint()))
    Q_EMIT Click();
}

void ClickLabel::mouseDoubleClickEvent(QMouseEvent* event) {
  pressed_ = false;
  if (event->button() == Qt::LeftButton) Q_EMIT DblClick();
}

void ClickLabel::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && event->modifiers().testFlag(Qt::ControlModifier)) {
    Q_EMIT DblClick();
  } else if (enter || event->key() == Qt::Key_Space) {
    Q_EMIT Click();
  } else {
    QLabel::keyPressEvent(event);
  }
}

void ClickLabel::enterEvent(QEnterEvent* event) {
  QLabel::enterEvent(event);
  Q_EMIT Hovered(true);
}

void ClickLabel::leaveEvent(QEvent* event) {
  QLabel::leaveEvent(event);
  Q_EMIT Hovered(false);
}

void ClickLabel::paintEvent(QPaintEvent* event) {
  QLabel::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  QStyleOptionFocusRect frame;
  frame.initFrom(this);
  frame.backgroundColor = palette().color(backgroundRole());
  frame.state |= QStyle::State_KeyboardFocusChange;
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, this);
}

}  // namespace kestrix
