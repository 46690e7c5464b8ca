#include "formkit/WrapCheckBox.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <algorithm>

namespace kestrix {
namespace {

constexpr int kTextFlags =
    Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap | Qt::TextShowMnemonic;
constexpr int kRoom = 2;  ///< around the text, for the focus frame
/// Before a layout says how wide the box is, its text may take about so many letters a line.
constexpr int kLettersALine = 40;

/// Styles draw the edge of a box in a shade of the window, which is lost in a dark theme.
constexpr float kEdgeShareOfInk = 0.6F;

QColor EdgeOf(const QPalette& palette) {
  const QColor ink = palette.color(QPalette::WindowText);
  const QColor paper = palette.color(QPalette::Base);
  const auto mix = [](float from, float to) { return from + (to - from) * kEdgeShareOfInk; };
  return QColor::fromRgbF(mix(paper.redF(), ink.redF()), mix(paper.greenF(), ink.greenF()),
                          mix(paper.blueF(), ink.blueF()));
}

/// A blank that a text begins with would set off its first line from those below.
QString ShownText(const QCheckBox& box) {
  return box.text().trimmed();
}

bool IsBlank(const QCheckBox& box) {
  return ShownText(box).isEmpty();
}

/// What an assistive tool reads of a box: one without a text is there for its place alone, and is
/// passed over.
class WrapCheckBoxAccess : public QAccessibleWidget {
 public:
  explicit WrapCheckBoxAccess(WrapCheckBox* box)
      : QAccessibleWidget(box, QAccessible::CheckBox), box_(box) {}

  [[nodiscard]] QAccessible::Role role() const override {
    return IsBlank(*box_) ? QAccessible::NoRole : QAccessible::CheckBox;
  }
  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    const QString given = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && given.isEmpty() ? ShownText(*box_).remove(u'&') : given;
  }
  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = box_->isChecked();
    state.invisible = state.invisible || IsBlank(*box_);
    return state;
  }
  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (box_->isEnabled()) names.prepend(toggleAction());
    return names;
  }
  void doAction(const QString& name) override {
    if (name != toggleAction()) return QAccessibleWidget::doAction(name);
    box_->click();
  }

 private:
  WrapCheckBox* box_;
};

QAccessibleInterface* MakeAccess(const QString& /*class_name*/, QObject* object) {
  auto* box = qobject_cast<WrapCheckBox*>(object);
  return box ? new WrapCheckBoxAccess(box) : nullptr;
}

}  // namespace

WrapCheckBox::WrapCheckBox(QWidget* parent) : QCheckBox(parent) {
  // Installing the same function again changes nothing.
  QAccessible::installFactory(MakeAccess);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum, QSizePolicy::CheckBox);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

int WrapCheckBox::TextLeft() const {
  return style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this) +
         style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, this);
}

int WrapCheckBox::TextHeight(int width) const {
  const int room = std::max(width, 1);
  return fontMetrics().boundingRect(0, 0, room, 0, kTextFlags, ShownText(*this)).height();
}

int WrapCheckBox::heightForWidth(int width) const {
  const int indicator = style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, this);
  return std::max(indicator, TextHeight(width - TextLeft() - 2 * kRoom)) + 2 * kRoom;
}

QSize WrapCheckBox::sizeHint() const {
  const int line = fontMetrics().averageCharWidth() * kLettersALine;
  const int text = std::min(line, fontMetrics().horizontalAdvance(this->text()));
  const int width = TextLeft() + text + 2 * kRoom;
  return {width, heightForWidth(width)};
}

QSize WrapCheckBox::minimumSizeHint() const {
  const QStringList words = text().split(u' ');
  int widest = 0;
  for (const QString& word : words)
    widest = std::max(widest, fontMetrics().horizontalAdvance(word));
  const int line = std::max(fontMetrics().height(),
                            style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, this));
  return {TextLeft() + widest + 2 * kRoom, line + 2 * kRoom};
}

void WrapCheckBox::paintEvent(QPaintEvent* /*event*/) {
  if (IsBlank(*this)) return;
  QPainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);

  QStyleOptionButton indicator = option;
  indicator.rect = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this);
  if (isEnabled()) indicator.palette.setColor(QPalette::Window, EdgeOf(palette()));
  style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &indicator, &painter, this);

  const QRect text_room = style()->visualRect(
      layoutDirection(), rect(), rect().adjusted(TextLeft() + kRoom, kRoom, -kRoom, -kRoom));
  const bool underlines = style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this) != 0;
  const int flags =
      underlines ? kTextFlags : (kTextFlags & ~Qt::TextShowMnemonic) | Qt::TextHideMnemonic;
  style()->drawItemText(&painter, text_room, flags, palette(), isEnabled(), ShownText(*this),
                        QPalette::WindowText);
  if (!hasFocus()) return;
  QStyleOptionFocusRect frame;
  frame.initFrom(this);
  frame.rect = text_room.adjusted(-kRoom, -kRoom, kRoom, kRoom);
  frame.backgroundColor = palette().color(backgroundRole());
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, this);
}

bool WrapCheckBox::hitButton(const QPoint& position) const {
  return rect().contains(position);
}

}  // namespace kestrix
