#include "formkit/TextBox.h"

#include <QMimeData>

#include "formkit/TextLimit.h"

namespace kestrix {
namespace {

constexpr int kMostMarks = 100;

}  // namespace

QString TextBox::WithoutEndlessMarks(const QString& text) {
  QString kept;
  kept.reserve(text.size());
  int marks = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const bool pair =
        text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
    const char32_t c = pair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
    marks = QChar::isMark(c) ? marks + 1 : 0;
    if (marks <= kMostMarks) kept += QStringView(text).mid(i, pair ? 2 : 1);
    if (pair) ++i;
  }
  return kept;
}

bool TextBox::canInsertFromMimeData(const QMimeData* source) const {
  return source->hasText();
}

void TextBox::insertFromMimeData(const QMimeData* source) {
  if (isReadOnly()) return;
  textCursor().insertText(TextLimit::Pasted(this, WithoutEndlessMarks(source->text())));
  ensureCursorVisible();
}

}  // namespace kestrix
