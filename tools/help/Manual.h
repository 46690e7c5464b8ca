#pragma once

#include <QString>
#include <QStringList>

#include "Text.h"

namespace kestrix::help {

/// The source of all help, read: the manual and the help page show all of it. The source is
/// Markdown, of which these have a meaning here:
///
///     # Title                      once, at the top
///     ## Chapter {#anchor}         what links lead to: of a chapter about a form the form's name
///     ### Section                  in small letters; without one it is made of the words
///     **captions of the screen**, `what is typed or lies on the disk`, *what stands for a text*
///     [a link](#anchor)            leads to the heading of that anchor
///     - an entry, 1. a step, tables
///     ![what it shows](name.png)   a picture, on a line of its own
///     Text of a message            one line for each message, and
///     : what to do                 what it means and what to do; the one part that isn't Markdown
struct Manual : Text {
  /// Reads the text of the file `name`. A mistake in it fails with kSyntax and a sentence that
  /// tells the words.
  [[nodiscard]] static Manual Parse(const QString& text, const QString& name);
  /// Reads the file. A file that isn't there or can't be read fails with kFileNotFound.
  [[nodiscard]] static Manual Load(const QString& path);

  /// The pictures that the blocks name, each once, in their order.
  [[nodiscard]] QStringList Pictures() const;
  /// All words of the manual without any mark-up, one line for each block, message and cell.
  [[nodiscard]] QString PlainText() const;
};

}  // namespace kestrix::help
