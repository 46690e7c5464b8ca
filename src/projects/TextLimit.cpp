#include "projects/TextLimit.h"

#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

namespace kestrix {

TextLimit::TextLimit(QPlainTextEdit* box, int limit) : QObject(box), box_(box), limit_(limit) {
  connect(box->document(), &QTextDocument::contentsChange, this, &TextLimit::Note);
  connect(box, &QPlainTextEdit::textChanged, this, &TextLimit::Cut);
}

void TextLimit::Note(int position, int /*removed*/, int added) {
  end_of_added_ = position + added;
}

void TextLimit::Cut() {
  // A document ends with a paragraph end of its own, which isn't part of the text.
  const int length = box_->document()->characterCount() - 1;
  if (length <= limit_) return;
  const int end = std::min(end_of_added_, length);
  int start = std::max(0, end - (length - limit_));
  // Half a character is none.
  if (box_->document()->characterAt(start).isLowSurrogate() && start > 0) --start;
  QTextCursor cursor(box_->document());
  cursor.setPosition(start);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
}

}  // namespace kestrix
