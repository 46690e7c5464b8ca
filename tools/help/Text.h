#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace kestrix::help {

/// A stretch of text in one face.
struct Run {
  enum class Face { kPlain, kCaption, kTyped, kVariable, kLink };
  QString text;
  Face face = Face::kPlain;  ///< kCaption: as it stands on the screen; kVariable: stands for a text
  QString target;            ///< kLink: the anchor of a heading
};
using Line = std::vector<Run>;

/// One block of a text.
struct Block {
  enum class Kind { kChapter, kSection, kParagraph, kBullet, kStep, kMessage, kPicture, kTable };
  Kind kind = Kind::kParagraph;
  Line line;                            ///< a message's: what to do; a picture's: what it shows
  std::vector<Line> messages;           ///< kMessage: the messages that the line is for
  QString picture;                      ///< kPicture: its name, as the source of pictures knows it
  std::vector<std::vector<Line>> rows;  ///< kTable: the first row holds the heads
  QString anchor;                       ///< kChapter, kSection: what links lead to
};

/// A text to be shown. It holds no picture itself and knows nothing of how it looks.
struct Text {
  QString title;
  QString language = QStringLiteral("en");
  std::vector<Block> blocks;
};

/// The words of a line without their faces.
[[nodiscard]] inline QString PlainText(const Line& line) {
  QString text;
  for (const Run& run : line) text += run.text;
  return text;
}

}  // namespace kestrix::help
