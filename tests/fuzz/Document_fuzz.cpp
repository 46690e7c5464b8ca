// Any bytes in place of a document: they are shown, rich or as the text that they are, and what is
// shown can be saved and opened again.
#include <QTextCursor>

#include "Fuzz.h"
#include "platform/Failure.h"
#include "shell/DocumentFile.h"
#include "shell/RichText.h"

namespace kestrix::fuzz {
namespace {

constexpr int kWidth = 500;

bool IsForeign(QChar c) {
  return c.isNull() || c == QChar::ObjectReplacementCharacter || c == QChar(0xFDD0) ||
         c == QChar(0xFDD1);
}

/// Shows a text as a document child does, laid out.
void Show(SelfContainedDocument& document, const QString& text) {
  Hold(document.Take(text), "a document that isn't too large is taken");
  document.setTextWidth(kWidth);
  const QSizeF extent = document.size();
  Hold(extent.isValid(), "a document that was taken can be laid out");
  Hold(!document.isModified(), "a document that was only read is not modified");
}

}  // namespace
}  // namespace kestrix::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace kestrix;
  fuzz::WithinApplication();
  const QByteArray bytes = fuzz::Input(data, size).Rest();
  const QString file = fuzz::LayFile(QStringLiteral("note.rtf"), bytes);
  const QString text = ReadDocument(file);
  fuzz::Hold(std::none_of(text.begin(), text.end(), fuzz::IsForeign),
             "a text holds no characters that stand for the inner parts of a document");
  SelfContainedDocument document;
  const TextKind kind = KindOf(text);
  if (kind == TextKind::kTooLarge) return 0;
  fuzz::Show(document, text);
  if (kind == TextKind::kPlain) {
    fuzz::Note(QStringLiteral("plain"));
    fuzz::Hold(document.blockCount() >= 1, "a plain text is shown as it is");
  }
  fuzz::Note(QStringLiteral("%1 blocks").arg(document.blockCount()));

  // What is saved opens again, and a part of it goes into another document, as a paste does.
  const QString saved = document.toHtml();
  WriteDocument(file, saved);
  SelfContainedDocument again;
  fuzz::Show(again, ReadDocument(file));
  SelfContainedDocument pasted;
  if (kind == TextKind::kRich) {
    QTextCursor(&pasted).insertHtml(text);
    static_cast<void>(pasted.size());
  }
  return 0;
}
