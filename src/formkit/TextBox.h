#pragma once

#include <QPlainTextEdit>

namespace kestrix {

/// A box of several lines that takes what is pasted or dropped as the text that it is, and of it
/// only what there is room for, so that a long one is answered at once. Pasting nothing does
/// nothing.
class TextBox : public QPlainTextEdit {
  Q_OBJECT

 public:
  using QPlainTextEdit::QPlainTextEdit;

  /// `text` without the accents that follow one letter beyond any script's measure: the time that a
  /// letter takes to be drawn grows with the square of its accents.
  [[nodiscard]] static QString WithoutEndlessMarks(const QString& text);

 protected:
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
};

}  // namespace kestrix
