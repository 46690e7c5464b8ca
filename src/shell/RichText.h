#pragma once

#include <QString>
#include <QTextDocument>
#include <QTextEdit>

namespace kestrix {

/// How a text goes into a document.
enum class TextKind {
  kRich,      ///< as our own saving writes it, and small enough to be laid out at once
  kPlain,     ///< everything else, letter by letter
  kTooLarge,  ///< more than a window can show without a wait
};
[[nodiscard]] TextKind KindOf(const QString& text);

/// A rich text that is made of itself alone: it never reads another file, of this machine or of
/// another, whatever its text asks for.
class SelfContainedDocument : public QTextDocument {
  Q_OBJECT

 public:
  using QTextDocument::QTextDocument;

  /// Takes `text` in place of what the document holds. One that is too large changes nothing, and
  /// false comes back.
  [[nodiscard]] bool Take(const QString& text);
  /// Whether `text` can be added to what the document holds.
  [[nodiscard]] bool HasRoomFor(const QString& text) const;

 protected:
  QVariant loadResource(int type, const QUrl& name) override;

 private:
  void WrapFor(const QString& text);

  qint64 pixels_left_ = kMostPixels;
  static constexpr qint64 kMostPixels = 32LL * 1024 * 1024;
};

/// The box of a document. What is pasted or dropped it only announces: whoever owns the box puts it
/// in, as far as there is room.
class RichTextBox : public QTextEdit {
  Q_OBJECT

 public:
  using QTextEdit::QTextEdit;

 Q_SIGNALS:
  void Pasting(const QString& text);

 protected:
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
};

}  // namespace kestrix
