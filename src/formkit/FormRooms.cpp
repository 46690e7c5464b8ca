#include "formkit/FormRooms.h"

#include <QHeaderView>
#include <QLayout>
#include <QMainWindow>
#include <QScrollArea>
#include <QSplitter>
#include <algorithm>

#include "formkit/Controls.h"

namespace kestrix {
namespace {

/// The page of a form that always scrolls where it must.
QScrollArea* PageArea(const QMainWindow& form) {
  return form.findChild<QScrollArea*>(QStringLiteral("PageArea"));
}

/// What the design file says in pixels is meant for its font.
void Scale(QMainWindow& form, qreal scale, qreal across) {
  form.resize(static_cast<int>(form.width() * across), static_cast<int>(form.height() * scale));
  const auto widgets = form.findChildren<QWidget*>();
  for (QWidget* widget : widgets) {
    if (widget->minimumSize() == widget->minimumSizeHint()) continue;  // it follows its font itself
    widget->setMinimumSize(static_cast<int>(widget->minimumWidth() * across),
                           static_cast<int>(widget->minimumHeight() * scale));
    const QSize most = widget->maximumSize();
    const auto larger = [](int extent, qreal by) {
      return extent == QWIDGETSIZE_MAX ? extent : static_cast<int>(extent * by);
    };
    widget->setMaximumSize(larger(most.width(), scale), larger(most.height(), scale));
  }
}

/// Takes back what the design keeps free for texts to come, down to what each widget says.
void GiveUpSpare(QMainWindow& form, qreal scale) {
  const auto widgets = form.findChildren<QWidget*>();
  for (QWidget* widget : widgets) {
    const QVariant least = widget->property("leastHeight");
    if (least.isValid()) widget->setMinimumHeight(static_cast<int>(least.toInt() * scale));
  }
}

/// The least size in which nothing of the form is cut, at least that of its design.
QSize NeededSize(const QMainWindow& form) {
  const QWidget* central = form.centralWidget();
  if (!central) return form.size();
  const QScrollArea* area = PageArea(form);
  const QWidget* page = area ? area->widget() : central;
  const QSize around = form.sizeHint() - central->sizeHint();  // the menu bar
  const QSize least = page->minimumSizeHint() + around;
  const int width = std::max(form.width(), least.width());
  const bool wraps = page->layout() && page->layout()->hasHeightForWidth();
  const int wrapped = wraps ? page->heightForWidth(width) + around.height() : 0;
  return {width, std::max({form.height(), least.height(), wrapped})};
}

/// Puts a scroll area around what a form shows.
void LetScroll(QMainWindow& form) {
  QWidget* focused = form.focusWidget();
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidgetResizable(true);
  area->setObjectName(QStringLiteral("PageArea"));
  area->setWidget(form.takeCentralWidget());
  form.setCentralWidget(area);
  if (focused) focused->setFocus();
}

/// Calls `visit` with each part whose division belongs to the user, and its name.
template <class Visit>
void VisitParts(const QMainWindow& form, Visit visit) {
  const auto splitters = form.findChildren<QSplitter*>();
  for (QSplitter* splitter : splitters) visit(splitter->objectName(), splitter);
  const auto headers = form.findChildren<QHeaderView*>();
  for (QHeaderView* header : headers)
    if (header->orientation() == Qt::Horizontal) visit(header->parent()->objectName(), header);
}

}  // namespace

void FormRooms::Open(QMainWindow& form, QSize room) {
  const qreal scale = FontScale(&form);
  // Across, the texts themselves say what they need where the screen is short of it.
  const qreal across = std::clamp(static_cast<qreal>(room.width()) / form.width(), 1.0, scale);
  if (scale > 1) Scale(form, scale, across);
  QSize needed = NeededSize(form);
  if (needed.height() > room.height()) {
    GiveUpSpare(form, scale);
    needed = NeededSize(form);
  }
  const bool too_large = needed.width() > room.width() || needed.height() > room.height();
  if (too_large && form.centralWidget() && !PageArea(form)) LetScroll(form);
  const auto left = left_.constFind(form.objectName());
  if (left == left_.cend()) return form.resize(needed.boundedTo(room));
  form.resize(left->size.boundedTo(room));
  VisitParts(form, [&](const QString& name, auto* part) {
    if (const auto state = left->parts.constFind(name); state != left->parts.cend())
      part->restoreState(*state);
  });
  if (left->maximised) form.setWindowState(form.windowState() | Qt::WindowMaximized);
}

void FormRooms::Leave(const QMainWindow& form) {
  Left& left = left_[form.objectName()];
  left.maximised = form.isMaximized();
  left.size = left.maximised ? form.normalGeometry().size() : form.size();
  VisitParts(form, [&](const QString& name, auto* part) { left.parts[name] = part->saveState(); });
}

}  // namespace kestrix
