#pragma once

#include <QByteArray>
#include <QColor>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

class QPainter;
class QRectF;

/// A document as its author sees it: headings, texts, tables, pictures, one after the other. It has
/// no pages yet; Layout gives it these, and a writer of another kind does without.
namespace kestrix::paper {

enum class Face { kPlain, kBold, kItalic, kTyped };

/// A stretch of text in one face; with a link it leads to the anchor of that name.
struct Run {
  QString text;
  Face face = Face::kPlain;
  QString link;
};
using Text = std::vector<Run>;

[[nodiscard]] inline Text Plain(const QString& text) {
  return {{text, Face::kPlain, {}}};
}
[[nodiscard]] inline Text Bold(const QString& text) {
  return {{text, Face::kBold, {}}};
}
[[nodiscard]] inline Text Link(const QString& text, const QString& anchor) {
  return {{text, Face::kPlain, anchor}};
}

/// Level 1 begins a part of the document. What has an anchor can be led to, and stands in the
/// outline.
struct Heading {
  int level = 1;
  QString text;
  QString anchor;
  bool in_contents = true;
};

struct Paragraph {
  enum class Style { kBody, kSmall, kTitle, kSubtitle };
  Text text;
  Style style = Style::kBody;
  bool keep_with_next = false;
  /// A bullet or a number before it; the text stands in an indent then.
  QString mark = {};
};

/// A picture in its own proportions, at most as large as `most` (in millimetres). `pixels` is its
/// size as it is shown, and `read` gives its file when it is needed; where either gives nothing, a
/// frame stands with `missing` in it.
struct Picture {
  QSize pixels;
  std::function<QByteArray()> read;
  QSizeF most;
  QString name;
  QString missing;
  bool is_photograph = false;  ///< its file has the colours of one, and is packed so
};

/// What is painted as lines, at `size` (in millimetres): `paint` fills the rectangle that it gets.
struct Drawing {
  std::function<void(QPainter&, const QRectF&)> paint;
  QSizeF size;
  QString told;  ///< the same in words
  /// Drawings of one name and size look alike, so that a file can hold them once; none: it is the
  /// only one.
  QString name;
};

/// A cell of a table. A band has its colour as a mark beside its word, so that it is told by both.
struct Cell {
  Text text;
  std::optional<QColor> mark;
  bool right = false;  ///< numbers stand at the right
};

/// Rows don't break across pages unless they are longer than one; the head is repeated on each.
struct Table {
  std::vector<double> widths;  ///< in parts of their sum
  std::vector<QString> head;   ///< none: a table of facts, whose first column is bold
  std::vector<std::vector<Cell>> rows;
  bool small = false;
};

struct Block;
/// Blocks beside each other, in columns of one width. It stands on one page if it fits.
struct Columns {
  std::vector<std::vector<Block>> columns;
};
/// Blocks that stand on one page if they fit.
struct Together {
  std::vector<Block> blocks;
};

struct PageBreak {
  bool landscape = false;  ///< of the pages that follow
};

/// A thin line across, or room for a signature above one.
struct Rule {
  double above = 2;  ///< in millimetres
};

struct Block {
  std::variant<Heading, Paragraph, Picture, Drawing, Table, Columns, Together, PageBreak, Rule> is;
};

struct Document {
  QString title;
  QString author;
  QString language;  ///< as in "en"
  QString subject;
  std::vector<Block> cover;  ///< the first page
  std::vector<Block> body;   ///< after the contents
  QString head;              ///< of every page but the cover
  bool is_whole = true;      ///< else the number of its pages is not told
  QString foot;  ///< at the left of every page's foot; "Page n of m" stands at the right
};

}  // namespace kestrix::paper
