#pragma once

#include <QString>
#include <QTextDocument>

namespace kestrix {

/// True when `text` is a rich text as documents are kept, HTML, and one that can be laid out in
/// sensible time. What is nested beyond all measure, as only a damaged or hostile file is, is
/// no rich text.
[[nodiscard]] bool IsRichText(const QString& text);

/// A rich text that is made of itself alone: it never reads another file, of this machine or of
/// another, whatever its text asks for.
class SelfContainedDocument : public QTextDocument {
  Q_OBJECT

 public:
  using QTextDocument::QTextDocument;

  /// Takes `text` in place of what the document holds: rich, or plain if it isn't rich text.
  void Take(const QString& text);

 protected:
  QVariant loadResource(int type, const QUrl& name) override;

 private:
  void WrapFor(const QString& text);
};

}  // namespace kestrix
