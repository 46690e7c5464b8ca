#pragma once

#include <QFont>
#include <QHash>
#include <QPageSize>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "paper/Layout.h"
#include "paper/Style.h"

namespace kestrix::paper {

/// A piece of a page that is never divided: a line of a text, a row of a table, a picture. Its
/// items stand relative to its own corner.
struct Piece {
  double above = 0;  ///< room before it, except at the top of a page
  double height = 0;
  bool keep_with_next = false;
  std::vector<Item> items;
  std::vector<PlacedLink> links;
  std::optional<Entry> entry;
  std::optional<bool> new_page;       ///< begins a page, turned as this says
  std::shared_ptr<const Piece> head;  ///< repeated at the top of a page that begins with this piece
};

/// Turns blocks into pieces and puts these onto pages, one after the other.
class Composer {
 public:
  Composer(QSizeF paper, int dots) : paper_(paper), dots_(dots) {}

  void Compose(const std::vector<Block>& blocks);
  /// Begins a new page, unless the page in hand is still empty and turned as wanted.
  void BeginPage(bool landscape);

  std::vector<Page> pages;
  std::vector<Entry> entries;

 private:
  using Pieces = std::vector<Piece>;
  using Shaped = std::shared_ptr<const SetText>;

  [[nodiscard]] double Mm(double millimetres) const;
  [[nodiscard]] double Pt(double points) const;
  [[nodiscard]] double TextWidth() const;
  [[nodiscard]] double TextHeight() const;

  [[nodiscard]] Pieces PiecesOf(const Block& block, double width);
  [[nodiscard]] Pieces PiecesOf(const std::vector<Block>& blocks, double width);
  [[nodiscard]] Pieces PiecesOf(const Heading& heading, double width);
  [[nodiscard]] Pieces PiecesOf(const Paragraph& paragraph, double width);
  [[nodiscard]] Pieces PiecesOf(const Picture& picture, double width);
  [[nodiscard]] Pieces PiecesOf(const Drawing& drawing, double width);
  [[nodiscard]] Pieces PiecesOf(const Table& table, double width);
  [[nodiscard]] Pieces PiecesOf(const Columns& columns, double width);
  [[nodiscard]] Pieces PiecesOf(const Together& together, double width);
  [[nodiscard]] Pieces PiecesOf(const PageBreak& page_break, double width);
  [[nodiscard]] Pieces PiecesOf(const Rule& rule, double width);

  [[nodiscard]] Shaped Shape(const Text& text, double points, bool bold, bool lead, double width,
                             bool right);
  [[nodiscard]] Pieces Lines(const Text& text, const Setting& setting, double width);
  /// The part of a row from line `first` to before `end` of each cell.
  [[nodiscard]] Piece RowPart(const std::vector<Cell>& row, const std::vector<Shaped>& shaped,
                              const std::vector<double>& edges, int first, int end) const;
  [[nodiscard]] std::vector<double> EdgesOf(const Table& table, double width) const;
  /// Pieces one below the other as one, at `x`.
  static void Stack(Pieces pieces, double x, Piece& into);
  /// The links of lines `first` to before `end`, one for each run.
  static void LinksOf(const Text& text, const SetText& set, int first, int end, QPointF at,
                      std::vector<PlacedLink>& links);

  void Put(Pieces pieces);
  void PutChain(Pieces& chain);
  void PutPiece(Piece& piece);

  QSizeF paper_;
  int dots_;
  double y_ = 0;  ///< on the page in hand, below the top of its text
  QHash<QString, Shaped> shaped_;
  QHash<std::pair<double, bool>, QFont> fonts_;  ///< by points, and whether they are bold
};

}  // namespace kestrix::paper
