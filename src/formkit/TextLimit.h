#pragma once

#include <QObject>

class QPlainTextEdit;

namespace kestrix {

/// Refuses what would make the text of a box of several lines longer than its column: of a long
/// paste the beginning goes in, and what stood in the box before stays whole. Every change can be
/// taken back as before.
class TextLimit : public QObject {
  Q_OBJECT

 public:
  /// Lives as long as `box`. `limit` counts characters.
  TextLimit(QPlainTextEdit* box, int limit);

  /// What `box` holds behind `text` was set: its beginning, where the box has a limit.
  [[nodiscard]] static QString Taken(const QPlainTextEdit* box, const QString& text);
  /// What of `text` there is room for in place of the selection of `box`.
  [[nodiscard]] static QString Pasted(const QPlainTextEdit* box, QString text);

 private:
  static int LimitOf(const QPlainTextEdit* box);
  void Note(int position, int removed, int added);
  void Cut();
  void MakeAnew(const QString& kept, int place);
  void Remove(int start, int end);

  QPlainTextEdit* box_;
  int limit_;
  int end_of_added_ = 0;
};

}  // namespace kestrix
