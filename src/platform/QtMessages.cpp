#include "platform/QtPlatform.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <algorithm>

#include "platform/WindowInFront.h"

namespace kestrix {
namespace {

// Characters that a screen shows whole beside the buttons.
constexpr int kLongText = 2000;
constexpr int kTitleButtons = 5;   ///< squares of a line's height
constexpr int kWidestTitle = 600;  ///< pixels, that a title may make a box wide

/// In the order of `Button`.
constexpr QMessageBox::StandardButton kButtons[] = {QMessageBox::Ok, QMessageBox::Yes,
                                                    QMessageBox::No};

/// In the order of `Icon`.
constexpr QMessageBox::Icon kIcons[] = {QMessageBox::NoIcon, QMessageBox::Information,
                                        QMessageBox::Critical, QMessageBox::Question};

QMessageBox::StandardButton DesktopButton(Button button) {
  return kButtons[static_cast<int>(button)];
}

Button AnswerOfClosing(const Message& message) {
  return message.buttons.contains(Button::kNo) ? Button::kNo : Button::kOk;
}

/// Title bars are written in bold, and hold some buttons beside the title.
int TitleWidth(const QWidget& box) {
  QFont font = box.font();
  font.setBold(true);
  const QFontMetrics metrics(font);
  return metrics.horizontalAdvance(box.windowTitle()) + kTitleButtons * metrics.height();
}

void Fill(QMessageBox& box, const Message& message) {
  box.setWindowTitle(message.title);
  box.setTextFormat(Qt::PlainText);
  box.setText(message.text);
  // What is told of a text that couldn't be stored is there to be copied, however long.
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  if (message.text.size() > kLongText) {
    box.setText(message.text.section(u'\n', 0, 0).left(kLongText));
    box.setDetailedText(message.text);
  }
  box.setIcon(kIcons[static_cast<int>(message.icon)]);
  QMessageBox::StandardButtons buttons;
  for (const Button button : message.buttons) buttons |= DesktopButton(button);
  box.setStandardButtons(buttons);
  box.setDefaultButton(DesktopButton(message.default_button));
  box.defaultButton()->setFocus();
  box.setEscapeButton(DesktopButton(AnswerOfClosing(message)));
  const auto drawn = box.buttons();
  for (QAbstractButton* button : drawn) button->setIcon({});
  // A long path in a text may not push the box over the edge of the screen.
  if (auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label")))
    label->setWordWrap(true);
  // A short text may not leave the title cut.
  if (auto* rows = qobject_cast<QGridLayout*>(box.layout()))
    rows->addItem(new QSpacerItem(std::min(TitleWidth(box), kWidestTitle), 0), rows->rowCount(), 0,
                  1, rows->columnCount());
}

}  // namespace

Button QtMessages::Show(const Message& message) {
  // The window below may go, and the box with it, while the box is open.
  const QPointer<QMessageBox> box = new QMessageBox(WindowInFront());
  Fill(*box, message);
  // A box that waits for a person is no time to wait for the program.
  QApplication::setOverrideCursor(Qt::ArrowCursor);
  const int answer = box->exec();
  QApplication::restoreOverrideCursor();
  delete box;
  for (const Button button : message.buttons)
    if (DesktopButton(button) == answer) return button;
  return AnswerOfClosing(message);
}

void QtMessages::Beep() {
  QApplication::beep();
}

}  // namespace kestrix
