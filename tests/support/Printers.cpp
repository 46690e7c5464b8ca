#include "support/Printers.h"

#include <ostream>

void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

void PrintTo(const QStringList& texts, std::ostream* out) {
  *out << '{';
  for (const QString& text : texts) *out << ' ' << '"' << text.toStdString() << '"';
  *out << " }";
}

namespace kestrix {

void PrintTo(Button button, std::ostream* out) {
  *out << (button == Button::kOk ? "OK" : button == Button::kYes ? "Yes" : "No");
}

void PrintTo(Icon icon, std::ostream* out) {
  constexpr const char* kNames[] = {"no icon", "information", "critical", "question"};
  *out << kNames[static_cast<int>(icon)];
}

void PrintTo(const Message& message, std::ostream* out) {
  *out << '[' << message.title.toStdString() << "] \"" << message.text.toStdString() << "\" (";
  PrintTo(message.icon, out);
  *out << ';';
  for (const Button button : message.buttons) {
    *out << ' ';
    PrintTo(button, out);
  }
  *out << "; default ";
  PrintTo(message.default_button, out);
  *out << ')';
}

}  // namespace kestrix
