#include "formkit/TextLimit.h"

#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <iterator>
#include <limits>

namespace kestrix {
namespace {

/// As much of `text` as has at most `limit` characters. Half a character is none.
QString Beginning(const QString& text, int limit) {
  if (text.size() <= limit) return text;
  const bool splits = limit > 0 && text[limit].isLowSurrogate();
  return text.left(splits ? limit - 1 : limit);
}

}  // namespace

TextLimit::TextLimit(QPlainTextEdit* box, int limit) : QObject(box), box_(box), limit_(limit) {
  connect(box->document(), &QTextDocument::contentsChange, this, &TextLimit::Note);
  connect(box, &QPlainTextEdit::textChanged, this, &TextLimit::Cut);
}

int TextLimit::LimitOf(const QPlainTextEdit* box) {
  const auto* limit = box->findChild<const TextLimit*>(QString(), Qt::FindDirectChildrenOnly);
  return limit ? limit->limit_ : std::numeric_limits<int>::max();
}

QString TextLimit::Taken(const QPlainTextEdit* box, const QString& text) {
  return Beginning(text, LimitOf(box));
}

QString TextLimit::Pasted(const QPlainTextEdit* box, QString text) {
  const QTextCursor cursor = box->textCursor();
  const int kept =
      box->document()->characterCount() - 1 - (cursor.selectionEnd() - cursor.selectionStart());
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  return Beginning(text, std::max(0, LimitOf(box) - kept));
}

void TextLimit::Note(int position, int /*removed*/, int added) {
  end_of_added_ = position + added;
}

void TextLimit::Cut() {
  const QTextDocument* document = box_->document();
  const QString text = document->toRawText();
  const auto length = static_cast<int>(text.size());
  if (length <= limit_) return;
  const int end = std::min(end_of_added_, length);
  int start = std::max(0, end - (length - limit_));
  // Half a character is none.
  if (text[start].isLowSurrogate() && start > 0) --start;
  if (document->isUndoAvailable()) {
    MakeAnew(text.left(start) + text.sliced(end), start);
  } else {
    Remove(start, end);
  }
}

/// The change that was too long is taken back and made anew with what there is room for. Were its
/// end only removed, to take that back would bring the end in again, and nothing before it could
/// ever be taken back.
void TextLimit::MakeAnew(const QString& kept, int place) {
  QTextDocument* document = box_->document();
  {
    const QSignalBlocker quiet(box_);
    document->undo();
    document->clearUndoRedoStacks(QTextDocument::RedoStack);
  }
  const QString before = document->toRawText();
  const auto begin = std::mismatch(before.begin(), before.end(), kept.begin(), kept.end());
  const auto end = std::mismatch(before.rbegin(), std::make_reverse_iterator(begin.first),
                                 kept.rbegin(), std::make_reverse_iterator(begin.second));
  QTextCursor cursor(document);
  cursor.setPosition(static_cast<int>(begin.first - before.begin()));
  cursor.setPosition(static_cast<int>(end.first.base() - before.begin()), QTextCursor::KeepAnchor);
  cursor.insertText(QString(begin.second, end.second.base() - begin.second));
  cursor.setPosition(place);
  box_->setTextCursor(cursor);
}

/// Of a text that was set, not typed: there is nothing to take back.
void TextLimit::Remove(int start, int end) {
  QTextDocument* document = box_->document();
  const bool can_undo = document->isUndoRedoEnabled();
  document->setUndoRedoEnabled(false);
  QTextCursor cursor(document);
  cursor.setPosition(start);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
  document->setUndoRedoEnabled(can_undo);
}

}  // namespace kestrix
