// Anything done to a box whose text has a limit: typing, pasting over a selection, taking back.
#include <QPlainTextEdit>
#include <QTextCursor>

#include "Fuzz.h"
#include "formkit/TextLimit.h"

namespace kestrix::fuzz {
namespace {

constexpr int kLimit = 12;
constexpr int kMostSteps = 24;

enum Step { kInsert, kReplaceAll, kRemove, kUndo, kRedo };

bool IsHalf(const QString& text) {
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
      ++i;
    } else if (text[i].isSurrogate()) {
      return true;
    }
  }
  return false;
}

QTextCursor Select(QPlainTextEdit& box, Input& input) {
  const auto length = static_cast<int>(box.toPlainText().size());
  QTextCursor cursor(box.document());
  cursor.setPosition(input.Upto(length));
  cursor.setPosition(input.Upto(length), QTextCursor::KeepAnchor);
  return cursor;
}

/// A text that replaces a selection leaves what stood around it, and of itself the beginning.
void CheckInsert(QPlainTextEdit& box, Input& input) {
  const QString before = box.toPlainText();
  QTextCursor cursor = Select(box, input);
  const QString head = before.left(cursor.selectionStart());
  const QString tail = before.mid(cursor.selectionEnd());
  const QString text = input.Line();
  cursor.insertText(text);
  const QString now = box.toPlainText();
  if (IsHalf(before) || IsHalf(head) || IsHalf(tail) || IsHalf(text)) return;
  Hold(now.startsWith(head) && now.endsWith(tail), "what stood in the box stays whole", now);
  Hold(!IsHalf(now), "no character is cut in two", now);
}

void Do(int step, QPlainTextEdit& box, Input& input) {
  switch (step) {
    case kInsert:
      return CheckInsert(box, input);
    case kReplaceAll:
      return box.setPlainText(input.Line());
    case kRemove:
      return Select(box, input).removeSelectedText();
    case kUndo:
      return box.undo();
    default:
      return box.redo();
  }
}

}  // namespace
}  // namespace kestrix::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace kestrix;
  fuzz::WithinApplication();
  fuzz::Input input(data, size);
  QPlainTextEdit box;
  const TextLimit limit(&box, fuzz::kLimit);
  for (int step = 0; step < fuzz::kMostSteps && !input.IsUsedUp(); ++step) {
    fuzz::Do(input.Upto(fuzz::kRedo), box, input);
    fuzz::Hold(box.toPlainText().size() <= fuzz::kLimit, "a text never outgrows its limit",
               box.toPlainText());
  }
  // Taking everything back comes to an end, and ends with the text of the last whole setting.
  for (int step = 0; box.document()->isUndoAvailable(); ++step) {
    fuzz::Hold(step <= 4 * fuzz::kMostSteps, "every step can be taken back", box.toPlainText());
    box.undo();
    fuzz::Hold(box.toPlainText().size() <= fuzz::kLimit, "a text never outgrows its limit",
               box.toPlainText());
  }
  return 0;
}
