#pragma once

#include <QList>
#include <QString>

namespace kestrix {

/// The picture beside the text of a message box.
enum class Icon { kNone, kInformation, kCritical, kQuestion };

enum class Button { kOk, kYes, kNo };

/// One message box, whole: what tests compare and what the desktop shows.
struct Message {
  QString title;
  QString text;
  Icon icon = Icon::kNone;
  QList<Button> buttons = {Button::kOk};
  Button default_button = Button::kOk;

  bool operator==(const Message&) const = default;
};

/// Titles that boxes of several forms have.
namespace title {
inline const QString kProgram = QStringLiteral("BELTROVAN");
inline const QString kDeleteRecord = QStringLiteral("BELTROVAN: Delete record");
inline const QString kFilesMissing = QStringLiteral("BELTROVAN: Files missing");
inline const QString kProgramFilesMissing = QStringLiteral("KESTRIX : Files missing");
}  // namespace title

/// A message that only tells: one button, OK.
inline Message Tell(Icon icon, QString title, QString text) {
  return {.title = std::move(title), .text = std::move(text), .icon = icon};
}

/// A question with Yes and No. No is the default unless the caller says otherwise.
inline Message Ask(Icon icon, QString title, QString text, Button default_button = Button::kNo) {
  return {.title = std::move(title),
          .text = std::move(text),
          .icon = icon,
          .buttons = {Button::kYes, Button::kNo},
          .default_button = default_button};
}

/// Talks to the person at the desktop. Nothing else in the program opens a message box.
class Messages {
 public:
  virtual ~Messages() = default;
  /// Shows `message` and waits for its answer. Closing the box is No where there is a No, else OK.
  virtual Button Show(const Message& message) = 0;
  virtual void Beep() = 0;
};

}  // namespace kestrix
