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

/// One block of the manual, from one place of its source.
struct Block {
  enum class Kind { kChapter, kSection, kParagraph, kBullet, kStep, kMessage, kPicture, kTable };
  Kind kind = Kind::kParagraph;
  Line line;                            ///< a message's: what to do; a picture's: what it shows
  std::vector<Line> messages;           ///< kMessage: the messages that the line is for
  QString picture;                      ///< kPicture: a file name without a folder
  std::vector<std::vector<Line>> rows;  ///< kTable: the first row holds the heads
  QString anchor;                       ///< kChapter, kSection: what links lead to
};

/// The source of all help, read: the manual and the help page show all of it. The source is a plain
/// text file in a small part of Markdown:
///
///     # Title                      once, at the top
///     ## Chapter {#anchor}         what links lead to: of a chapter about a form the form's name
///     ### Section                  in small letters; without one it is made of the words
///     A paragraph, of any number   with **captions of the screen**, `what is typed or lies on the
///     of lines                     disk` and *what stands for another text*
///     [a link](#anchor)            leads to the heading of that anchor
///     - an entry, 1. a step        further lines are indented
///     | head | head |              a table; its second line is |---|---|
///     ![what it shows](name.png)   a picture
///     Text of a message            one line for each message, and
///     : what to do                 what it means and what to do; further lines are indented
///     \1. No step                  the stroke keeps a line from being taken for an entry
///
/// It holds no picture itself and knows nothing of how the help looks.
struct Manual {
  QString title;
  std::vector<Block> blocks;

  /// Reads the text of the file `name`. A mistake in it fails with kSyntax and a sentence that
  /// tells the line.
  [[nodiscard]] static Manual Parse(const QString& text, const QString& name);
  /// Reads the file. A file that isn't there or can't be read fails with kFileNotFound.
  [[nodiscard]] static Manual Load(const QString& path);

  /// The pictures that the blocks name, each once, in their order.
  [[nodiscard]] QStringList Pictures() const;
  /// All words of the manual without any mark-up, one line for each block, message and cell.
  [[nodiscard]] QString PlainText() const;
};

/// The words of a line without their faces.
[[nodiscard]] QString PlainText(const Line& line);

}  // namespace kestrix::help
