#pragma once

#include <QFont>
#include <QList>
#include <QString>
#include <QTextLayout>
#include <memory>
#include <vector>

namespace kestrix::paper {

/// A text set in lines of one width. It keeps its words and the places of its lines; the shapes of
/// the letters, which take many times that room, are made again for the page that is painted.
class SetText {
 public:
  using Formats = QList<QTextLayout::FormatRange>;
  /// `text` in lines of `width`, in dots; `right`: its lines end at the right.
  SetText(QString text, Formats formats, QFont font, double width, bool right);

  /// A line: the characters that stand on it, and its place below the text's beginning, in dots.
  struct Line {
    int start = 0;
    int length = 0;
    double y = 0;
    double height = 0;
  };

  [[nodiscard]] int LineCount() const { return static_cast<int>(lines_.size()); }
  [[nodiscard]] const Line& LineAt(int line) const {
    return lines_[static_cast<std::size_t>(line)];
  }
  [[nodiscard]] const QString& Characters() const { return text_; }
  [[nodiscard]] QString CharactersOf(int line) const;
  /// The same lines with the shapes of their letters.
  [[nodiscard]] std::unique_ptr<QTextLayout> Shaped() const;

 private:
  QString text_;
  Formats formats_;
  QFont font_;
  double width_;
  bool right_;
  std::vector<Line> lines_;
};

}  // namespace kestrix::paper
