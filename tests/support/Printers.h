#pragma once

#include <QString>
#include <QStringList>
#include <iosfwd>

#include "platform/Messages.h"

// So that a failed comparison shows a text as a text. They stand where the types stand: the test
// framework looks for them there.
void PrintTo(const QString& text, std::ostream* out);
void PrintTo(const QStringList& texts, std::ostream* out);

namespace kestrix {
void PrintTo(Button button, std::ostream* out);
void PrintTo(Icon icon, std::ostream* out);
void PrintTo(const Message& message, std::ostream* out);
}  // namespace kestrix
