#include "paper/Composer.h"

#include <QTextLayout>
#include <algorithm>
#include <numeric>
#include <utility>

namespace kestrix::paper {
namespace {

constexpr double kMmOfAnInch = 25.4;
constexpr double kPointsOfAnInch = 72;

// In points.
constexpr double kCellPadding = 2.5;
constexpr double kMarkWidth = 3;
constexpr double kMarkRoom = 4;  ///< from the mark to the text
constexpr double kColumnGap = 10;
constexpr double kIndent = 16;  ///< of a paragraph with a mark

// Texts up to this length are shaped once and used wherever they stand again.
constexpr qsizetype kSharedText = 200;

/// The text's characters as they can be set: control characters show as what they are not.
QString Settable(const QString& text) {
  const auto is_control = [](QChar c) {
    return (c.unicode() < 0x20 && c != u'\t') || c.unicode() == 0x7F;
  };
  if (std::none_of(text.cbegin(), text.cend(), is_control)) return text;
  QString settable = text;
  settable.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  for (QChar& c : settable) {
    if (c == u'\n' || c == u'\r') {
      c = QChar::LineSeparator;
    } else if (is_control(c)) {
      c = QChar::ReplacementCharacter;
    }
  }
  return settable;
}

/// Places a moved copy of each item.
struct Moved {
  QPointF by;

  Item operator()(TextLine item) const {
    item.at += by;
    return item;
  }
  template <class Placed>
  Item operator()(Placed item) const {
    item.area.translate(by);
    return item;
  }
};

void Append(Piece& into, const Piece& piece, QPointF by) {
  for (const Item& item : piece.items) into.items.push_back(std::visit(Moved{by}, item));
  for (PlacedLink link : piece.links) {
    link.area.translate(by);
    into.links.push_back(std::move(link));
  }
  if (piece.entry && !into.entry) into.entry = piece.entry;
}

/// The size of something `size` large that is at most as large as `most`, in its own proportions.
QSizeF Fitted(QSizeF size, QSizeF most) {
  return size.scaled(most, Qt::KeepAspectRatio);
}

}  // namespace

double Composer::Mm(double millimetres) const {
  return millimetres * dots_ / kMmOfAnInch;
}

double Composer::Pt(double points) const {
  return points * dots_ / kPointsOfAnInch;
}

double Composer::TextWidth() const {
  const double width = pages.back().landscape ? paper_.height() : paper_.width();
  return width - 2 * Mm(kMarginMm);
}

double Composer::TextHeight() const {
  const double height = pages.back().landscape ? paper_.width() : paper_.height();
  return height - 2 * Mm(kMarginMm) - Mm(kHeadMm) - Mm(kFootMm);
}

void Composer::BeginPage(bool landscape) {
  if (!pages.empty() && pages.back().items.empty()) {
    pages.back().landscape = landscape;
  } else {
    pages.push_back({landscape, {}, {}});
  }
  y_ = 0;
}

void Composer::Compose(const std::vector<Block>& blocks) {
  if (pages.empty()) BeginPage(false);
  // Block by block, so that what was placed needn't be kept twice; what is kept with the next block
  // waits for it.
  Pieces chain;
  for (const Block& block : blocks) {
    if (const auto* page_break = std::get_if<PageBreak>(&block.is)) {
      PutChain(chain);
      BeginPage(page_break->landscape);
      continue;
    }
    for (Piece& piece : PiecesOf(block, TextWidth())) {
      const bool goes_on = piece.keep_with_next;
      chain.push_back(std::move(piece));
      if (!goes_on) PutChain(chain);
    }
  }
  PutChain(chain);
  // Nothing followed the last break.
  if (pages.size() > 1 && pages.back().items.empty()) pages.pop_back();
}

void Composer::PutChain(Pieces& chain) {
  double height = 0;
  for (const Piece& piece : chain) height += piece.above + piece.height;
  const bool fits = y_ + height <= TextHeight();
  if (!fits && y_ > 0 && !chain.empty()) BeginPage(pages.back().landscape);
  for (Piece& piece : chain) PutPiece(piece);
  chain.clear();
}

void Composer::PutPiece(Piece& piece) {
  if (y_ > 0 && y_ + piece.above + piece.height > TextHeight()) {
    BeginPage(pages.back().landscape);
  }
  const QPointF corner(Mm(kMarginMm), Mm(kMarginMm) + Mm(kHeadMm));
  const bool repeats_head = y_ == 0 && piece.head;
  Piece placed;
  if (repeats_head) {
    Append(placed, *piece.head, corner);
    y_ += piece.head->height;
  } else if (y_ > 0) {
    y_ += piece.above;
  }
  if (piece.entry) {
    Entry entry = *piece.entry;
    entry.page = static_cast<int>(pages.size()) - 1;
    entry.y = corner.y() + y_;
    entries.push_back(std::move(entry));
  }
  Append(placed, piece, corner + QPointF(0, y_));
  y_ += piece.height;
  Page& page = pages.back();
  std::move(placed.items.begin(), placed.items.end(), std::back_inserter(page.items));
  std::move(placed.links.begin(), placed.links.end(), std::back_inserter(page.links));
}

Composer::Pieces Composer::PiecesOf(const Block& block, double width) {
  return std::visit([&](const auto& is) { return PiecesOf(is, width); }, block.is);
}

Composer::Pieces Composer::PiecesOf(const std::vector<Block>& blocks, double width) {
  Pieces all;
  for (const Block& block : blocks) {
    Pieces pieces = PiecesOf(block, width);
    std::move(pieces.begin(), pieces.end(), std::back_inserter(all));
  }
  return all;
}

Composer::Shaped Composer::Shape(const Text& text, double points, bool bold, bool lead,
                                 double width, bool right) {
  QString whole;
  QString key = QStringLiteral("%1 %2 %3 ").arg(points).arg(width).arg(bold * 4 + lead * 2 + right);
  QList<QTextLayout::FormatRange> formats;
  for (const Run& run : text) {
    const QString settable = Settable(run.text);
    key += QStringLiteral("%1%2:").arg(static_cast<int>(run.face)).arg(!run.link.isEmpty());
    key += settable;
    QTextCharFormat format;
    if (run.face == Face::kBold) format.setFontWeight(QFont::Bold);
    if (run.face == Face::kItalic) format.setFontItalic(true);
    if (run.face == Face::kTyped) {
      format.setFontFamilies({QString::fromUtf16(kTypedFamily)});
    }
    if (!run.link.isEmpty()) format.setForeground(kLead);
    if (!format.isEmpty()) {
      formats.push_back(
          {static_cast<int>(whole.size()), static_cast<int>(settable.size()), format});
    }
    whole += settable;
  }
  const bool shared = whole.size() <= kSharedText;
  if (shared) {
    const auto found = shaped_.constFind(key);
    if (found != shaped_.constEnd()) return *found;
  }
  if (lead) {
    QTextCharFormat format;
    format.setForeground(kLead);
    formats.push_back({0, static_cast<int>(whole.size()), format});
  }
  QFont& font = fonts_[{points, bold}];
  if (font.pixelSize() < 0) font = FontOf(points, dots_, bold);
  auto shaped = std::make_shared<const SetText>(whole, formats, font, width, right);
  if (shared) shaped_.insert(key, shaped);
  return shaped;
}

void Composer::LinksOf(const Text& text, const SetText& set, int first, int end, QPointF at,
                       std::vector<PlacedLink>& links) {
  if (std::ranges::all_of(text, &QString::isEmpty, &Run::link)) return;
  const std::unique_ptr<QTextLayout> layout = set.Shaped();
  int begin = 0;
  for (const Run& run : text) {
    const int after = begin + static_cast<int>(Settable(run.text).size());
    QRectF area;
    for (int line = first; line < end && !run.link.isEmpty(); ++line) {
      const QTextLine on = layout->lineAt(line);
      const int from = std::max(begin, on.textStart());
      const int to = std::min(after, on.textStart() + on.textLength());
      if (from >= to) continue;
      const double left = on.cursorToX(from);
      const double right = on.cursorToX(to);
      area |= QRectF(at.x() + std::min(left, right), at.y() + on.y(), std::abs(right - left),
                     on.height());
    }
    if (!area.isEmpty()) links.push_back({area, run.link});
    begin = after;
  }
}

Composer::Pieces Composer::Lines(const Text& text, const Setting& setting, double width) {
  const Shaped shaped = Shape(text, setting.size, setting.bold, setting.lead, width, false);
  Pieces pieces;
  const int count = shaped->LineCount();
  for (int line = 0; line < count; ++line) {
    const SetText::Line& on = shaped->LineAt(line);
    Piece piece;
    piece.height = on.height;
    const QPointF at(0, -on.y);
    piece.items.push_back(TextLine{shaped, line, at});
    LinksOf(text, *shaped, line, line + 1, at, piece.links);
    // Neither the first line nor the last one stands alone.
    piece.keep_with_next = count > 1 && (line == 0 || line == count - 2);
    pieces.push_back(std::move(piece));
  }
  if (!pieces.empty()) {
    pieces.front().above = Pt(setting.above);
    pieces.back().height += Pt(setting.below);
  }
  return pieces;
}

Composer::Pieces Composer::PiecesOf(const Heading& heading, double width) {
  Pieces pieces = Lines(Plain(heading.text), SettingOf(heading), width);
  for (Piece& piece : pieces) piece.keep_with_next = true;
  if (!pieces.empty()) {
    pieces.front().entry =
        Entry{heading.level, heading.text, heading.anchor, 0, 0, heading.in_contents};
  }
  return pieces;
}

Composer::Pieces Composer::PiecesOf(const Paragraph& paragraph, double width) {
  const double indent = paragraph.mark.isEmpty() ? 0 : Pt(kIndent);
  Pieces pieces = Lines(paragraph.text, SettingOf(paragraph), width - indent);
  if (indent > 0) {
    Pieces marks = Lines(Plain(paragraph.mark), SettingOf(paragraph), indent);
    for (Piece& piece : pieces) {
      Piece moved;
      Append(moved, piece, {indent, 0});
      std::swap(piece.items, moved.items);
      std::swap(piece.links, moved.links);
    }
    if (!pieces.empty() && !marks.empty()) Append(pieces.front(), marks.front(), {});
  }
  if (paragraph.keep_with_next) {
    for (Piece& piece : pieces) piece.keep_with_next = true;
  }
  return pieces;
}

Composer::Pieces Composer::PiecesOf(const Picture& picture, double width) {
  QSizeF most(Mm(picture.most.width()), Mm(picture.most.height()));
  most.setWidth(std::min(most.width(), width));
  most.setHeight(std::min(most.height(), TextHeight()));
  const bool there = !picture.pixels.isEmpty() && picture.read;
  constexpr double kFrameMm = 6;
  const QSizeF frame(most.width(), std::min(most.height(), Mm(kFrameMm)));
  const QSizeF size = there ? Fitted(QSizeF(picture.pixels), most) : frame;
  Piece piece;
  piece.height = size.height() + Pt(4);
  if (there) {
    piece.items.push_back(PlacedPicture{&picture, {QPointF(), size}});
    return {std::move(piece)};
  }
  piece.items.push_back(Stroke{{QPointF(), size}, kLine});
  Piece words;
  Stack(Lines(Plain(picture.missing), {kSmallPoints, 0, 0, false, false}, size.width() - Pt(8)),
        Pt(4), words);
  Append(piece, words, QPointF(0, Pt(4)));
  return {std::move(piece)};
}

Composer::Pieces Composer::PiecesOf(const Drawing& drawing, double width) {
  const QSizeF wanted(Mm(drawing.size.width()), Mm(drawing.size.height()));
  const QSizeF size = wanted.width() <= width ? wanted : Fitted(wanted, {width, wanted.height()});
  Piece piece;
  piece.height = size.height() + Pt(4);
  piece.items.push_back(PlacedDrawing{&drawing, {QPointF(), size}});
  return {std::move(piece)};
}

std::vector<double> Composer::EdgesOf(const Table& table, double width) const {
  const double sum = std::accumulate(table.widths.begin(), table.widths.end(), 0.0);
  std::vector<double> edges{0};
  for (const double part : table.widths) edges.push_back(edges.back() + part / sum * width);
  return edges;
}

Piece Composer::RowPart(const std::vector<Cell>& row, const std::vector<Shaped>& shaped,
                        const std::vector<double>& edges, int first, int end) const {
  Piece piece;
  for (std::size_t column = 0; column < row.size(); ++column) {
    const SetText& text = *shaped[column];
    const int last = std::min(end, text.LineCount());
    if (first >= last) continue;
    const SetText::Line& lowest = text.LineAt(last - 1);
    const double beside = row[column].mark ? Pt(kMarkRoom) : 0;
    const QPointF at(edges[column] + Pt(kCellPadding) + beside,
                     Pt(kCellPadding) - text.LineAt(first).y);
    for (int line = first; line < last; ++line) {
      piece.items.push_back(TextLine{shaped[column], line, at});
    }
    LinksOf(row[column].text, text, first, last, at, piece.links);
    piece.height = std::max(piece.height, at.y() + lowest.y + lowest.height + Pt(kCellPadding));
  }
  for (std::size_t column = 0; column < row.size(); ++column) {
    if (!row[column].mark) continue;
    piece.items.push_back(
        Fill{{edges[column] + Pt(0.5), Pt(1), Pt(kMarkWidth) - Pt(1), piece.height - Pt(2)},
             *row[column].mark});
  }
  piece.items.push_back(Fill{{0, piece.height, edges.back(), Pt(0.4)}, kLine});
  piece.height += Pt(0.4);
  return piece;
}

Composer::Pieces Composer::PiecesOf(const Table& table, double width) {
  const double points = table.small ? kSmallPoints : kBodyPoints;
  const std::vector<double> edges = EdgesOf(table, width);
  const auto shape = [&](const std::vector<Cell>& row, bool is_head) {
    std::vector<Shaped> shaped;
    for (std::size_t column = 0; column < row.size(); ++column) {
      const double room = edges[column + 1] - edges[column] - 2 * Pt(kCellPadding) -
                          (row[column].mark ? Pt(kMarkRoom) : 0);
      const bool bold = is_head || (table.head.empty() && column == 0);
      shaped.push_back(Shape(row[column].text, points, bold, false, room, row[column].right));
    }
    return shaped;
  };
  const auto lines_of = [](const std::vector<Shaped>& shaped) {
    int most = 0;
    for (const Shaped& cell : shaped) most = std::max(most, cell->LineCount());
    return most;
  };

  std::shared_ptr<Piece> head;
  if (!table.head.empty()) {
    std::vector<Cell> cells;
    for (const QString& text : table.head) {
      const bool right = !table.rows.empty() && table.rows.front()[cells.size()].right;
      cells.push_back({Plain(text), {}, right});
    }
    const std::vector<Shaped> shaped = shape(cells, true);
    Piece words = RowPart(cells, shaped, edges, 0, lines_of(shaped));
    head = std::make_shared<Piece>();
    head->height = words.height;
    head->items.push_back(Fill{{0, 0, edges.back(), words.height}, kSoft});
    Append(*head, words, {});
    head->keep_with_next = true;
  }
  Pieces pieces;
  if (head) pieces.push_back(*head);
  for (const std::vector<Cell>& row : table.rows) {
    const std::vector<Shaped> shaped = shape(row, false);
    const int lines = lines_of(shaped);
    Piece whole = RowPart(row, shaped, edges, 0, lines);
    const double room = TextHeight() - (head ? head->height : 0);
    if (whole.height <= room) {
      whole.head = head;
      pieces.push_back(std::move(whole));
      continue;
    }
    for (int line = 0; line < lines; ++line) {
      Piece part = RowPart(row, shaped, edges, line, line + 1);
      part.head = head;
      pieces.push_back(std::move(part));
    }
  }
  if (!pieces.empty()) pieces.back().height += Pt(6);
  return pieces;
}

void Composer::Stack(Pieces pieces, double x, Piece& into) {
  double y = 0;
  for (const Piece& piece : pieces) {
    y += y > 0 ? piece.above : 0;
    Append(into, piece, {x, y});
    y += piece.height;
  }
  into.height = std::max(into.height, y);
}

Composer::Pieces Composer::PiecesOf(const Columns& columns, double width) {
  const auto count = static_cast<double>(columns.columns.size());
  const double column_width = (width - (count - 1) * Pt(kColumnGap)) / count;
  Piece beside;
  double x = 0;
  for (const std::vector<Block>& blocks : columns.columns) {
    Stack(PiecesOf(blocks, column_width), x, beside);
    x += column_width + Pt(kColumnGap);
  }
  if (beside.height <= TextHeight()) return {std::move(beside)};
  Pieces below;
  for (const std::vector<Block>& blocks : columns.columns) {
    Pieces pieces = PiecesOf(blocks, width);
    std::move(pieces.begin(), pieces.end(), std::back_inserter(below));
  }
  return below;
}

Composer::Pieces Composer::PiecesOf(const Together& together, double width) {
  Pieces pieces = PiecesOf(together.blocks, width);
  Piece one;
  Stack(pieces, 0, one);
  if (one.height > TextHeight() || pieces.empty()) return pieces;
  one.above = pieces.front().above;
  one.keep_with_next = pieces.back().keep_with_next;
  return {std::move(one)};
}

Composer::Pieces Composer::PiecesOf(const PageBreak& /*page_break*/, double /*width*/) {
  return {};  // Within columns there is no page to begin.
}

Composer::Pieces Composer::PiecesOf(const Rule& rule, double width) {
  Piece piece;
  piece.height = Mm(rule.above) + Pt(4);
  piece.items.push_back(Fill{{0, Mm(rule.above), width, Pt(0.6)}, kLine});
  return {std::move(piece)};
}

}  // namespace kestrix::paper
