#include "Book.h"

#include <QImage>
#include <QPageSize>
#include <algorithm>
#include <utility>

#include "paper/Pdf.h"
#include "paper/Style.h"

namespace kestrix::help {
namespace {

using Kind = Block::Kind;

/// A picture of so many dots is as wide as the text. Narrower ones stand in the same scale, so that
/// the letters of all forms have one size.
constexpr double kDotsAcross = 1120;
constexpr QSizeF kLargestPicture(180, 150);  // in millimetres
/// Tables up to so many rows are kept on one page.
constexpr std::size_t kSmallTable = 12;

paper::Text TextOf(const Line& line) {
  paper::Text text;
  for (const Run& run : line) {
    switch (run.face) {
      case Run::Face::kPlain:
        text.push_back({run.text, paper::Face::kPlain, {}});
        break;
      case Run::Face::kCaption:
        text.push_back({run.text, paper::Face::kBold, {}});
        break;
      case Run::Face::kTyped:
        text.push_back({run.text, paper::Face::kTyped, {}});
        break;
      case Run::Face::kVariable:
        text.push_back({run.text, paper::Face::kItalic, {}});
        break;
      case Run::Face::kLink:
        text.push_back({run.text, paper::Face::kPlain, run.target});
        break;
    }
  }
  return text;
}

class Book {
 public:
  explicit Book(const Pictures& pictures) : pictures_(pictures) {}

  void Add(std::vector<paper::Block>& to, const Block& block) {
    switch (block.kind) {
      case Kind::kChapter:
        if (chapter_ > 0) to.push_back({paper::PageBreak{}});
        ++chapter_;
        section_ = 0;
        to.push_back(Heading(1, QString::number(chapter_), block));
        break;
      case Kind::kSection:
        ++section_;
        to.push_back(Heading(2, QStringLiteral("%1.%2").arg(chapter_).arg(section_), block));
        break;
      case Kind::kParagraph:
        // What ends in a colon is nothing without what follows.
        to.push_back({paper::Paragraph{TextOf(block.line), paper::Paragraph::Style::kBody,
                                       PlainText(block.line).endsWith(u':')}});
        break;
      case Kind::kBullet:
        to.push_back(Entry(QStringLiteral("•"), block.line));
        break;
      case Kind::kStep:
        step_ = last_ == Kind::kStep ? step_ + 1 : 1;
        to.push_back(Entry(QStringLiteral("%1.").arg(step_), block.line));
        break;
      case Kind::kMessage:
        to.push_back(Messages(block));
        break;
      case Kind::kPicture:
        to.push_back(Picture(block));
        break;
      case Kind::kTable:
        to.push_back(Table(block));
        break;
    }
    last_ = block.kind;
  }

 private:
  [[nodiscard]] static paper::Block Heading(int level, const QString& number, const Block& block) {
    return {
        paper::Heading{level, number + QStringLiteral("  ") + PlainText(block.line), block.anchor}};
  }

  [[nodiscard]] static paper::Block Entry(const QString& mark, const Line& line) {
    paper::Paragraph paragraph{TextOf(line)};
    paragraph.mark = mark;
    return {std::move(paragraph)};
  }

  /// The messages, and below them what to do.
  [[nodiscard]] static paper::Block Messages(const Block& block) {
    paper::Table messages{{1}, {}, {}, false};
    for (const Line& message : block.messages) {
      messages.rows.push_back({{TextOf(message), paper::kLead, false}});
    }
    return {paper::Together{{{std::move(messages)}, {paper::Paragraph{TextOf(block.line)}}}}};
  }

  [[nodiscard]] paper::Block Picture(const Block& block) const {
    const Pictures* pictures = &pictures_;
    const QString name = block.picture;
    paper::Picture picture;
    picture.pixels = pictures_.Image(name).size();
    picture.read = [pictures, name] { return pictures->Bytes(name); };
    const double across = std::min(1.0, picture.pixels.width() / kDotsAcross);
    picture.most = {kLargestPicture.width() * across, kLargestPicture.height()};
    picture.name = name;
    return {
        paper::Together{{{std::move(picture)},
                         {paper::Paragraph{TextOf(block.line), paper::Paragraph::Style::kSmall}}}}};
  }

  /// Columns as wide as their longest words, within limits.
  [[nodiscard]] static paper::Block Table(const Block& block) {
    paper::Table table;
    for (const Line& head : block.rows.front()) table.head.push_back(PlainText(head));
    table.widths.assign(table.head.size(), 0);
    for (const std::vector<Line>& row : block.rows) {
      for (std::size_t column = 0; column < table.widths.size(); ++column) {
        const auto length = static_cast<double>(PlainText(row[column]).size());
        table.widths[column] = std::max(table.widths[column], std::clamp(length, 11.0, 60.0));
      }
    }
    for (auto row = block.rows.begin() + 1; row != block.rows.end(); ++row) {
      std::vector<paper::Cell> cells;
      for (const Line& cell : *row) cells.push_back({TextOf(cell), {}, false});
      table.rows.push_back(std::move(cells));
    }
    if (table.rows.size() > kSmallTable) return {std::move(table)};
    return {paper::Together{{{std::move(table)}}}};
  }

  const Pictures& pictures_;
  int chapter_ = 0;
  int section_ = 0;
  int step_ = 0;
  Kind last_ = Kind::kParagraph;
};

}  // namespace

paper::Document BookOf(const Manual& manual, const Pictures& pictures) {
  paper::Document document;
  document.title = manual.title;
  document.language = manual.language;
  document.head = manual.title;
  document.cover = {{paper::Paragraph{paper::Plain(manual.title), paper::Paragraph::Style::kTitle}},
                    {paper::Rule{}}};
  Book book(pictures);
  bool before_chapters = true;
  for (const Block& block : manual.blocks) {
    before_chapters = before_chapters && block.kind != Kind::kChapter;
    book.Add(before_chapters ? document.cover : document.body, block);
  }
  return document;
}

QByteArray PrintedBook(const Manual& manual, const Pictures& pictures) {
  const paper::Document document = BookOf(manual, pictures);
  const QPageSize size(QPageSize::A4);
  const paper::Layout layout(document, size, paper::kPdfDots);
  return WritePdf(document, layout, size, {}, {});
}

}  // namespace kestrix::help
