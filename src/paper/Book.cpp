#include "paper/Book.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <array>
#include <map>

#include "paper/PdfMarks.h"
#include "platform/Failure.h"

namespace kestrix::paper::book {
namespace {

using Kind = Block::Kind;

constexpr int kKeepWithNext = QTextFormat::UserProperty + 1;
constexpr int kTarget = QTextFormat::UserProperty + 2;

constexpr qreal kMarginMm = 20;
constexpr qreal kFooterMm = 9;
constexpr qreal kTextPoints = 9.5;
constexpr qreal kSmallPoints = 8;
constexpr qreal kTitlePoints = 24;
/// Between two lines, in parts of the size of their letters.
constexpr qreal kLeading = 0.25;
/// A picture of so many dots is as wide as the text. Narrower ones stand in the same scale, so that
/// the letters of all forms have one size.
constexpr qreal kDotsAcross = 1120;
/// A picture takes at most this part of a page's height, so that its text can stand beside it.
constexpr qreal kPictureHeight = 0.62;
/// A chapter begins on a new page unless this part of the page in hand is free.
constexpr qreal kRoomForChapter = 0.5;
/// A table up to this part of a page's height is kept on one page.
constexpr qreal kSmallTable = 0.5;

const QColor kInk(0x1c, 0x1c, 0x1c);
const QColor kLead(0x0b, 0x4f, 0x8a);
const QColor kSoft(0xf1, 0xf4, 0xf8);
const QColor kRule(0xc3, 0xca, 0xd4);

/// How the words of each kind of block are set, in points.
struct Setting {
  Kind kind;
  qreal size;
  qreal above;
  qreal below;
  qreal indent;
  bool lead;  ///< bold, in the colour of headings
};
constexpr std::array<Setting, 8> kSettings{{
    {Kind::kChapter, 17, 22, 8, 0, true},
    {Kind::kSection, 12, 12, 4, 0, true},
    {Kind::kParagraph, kTextPoints, 0, 6, 0, false},
    {Kind::kBullet, kTextPoints, 0, 3, 14, false},
    {Kind::kStep, kTextPoints, 0, 3, 16, false},
    {Kind::kMessage, kTextPoints, 0, 7, 10, false},
    {Kind::kPicture, kSmallPoints, 2, 10, 0, false},
    {Kind::kTable, kTextPoints - 1, 0, 0, 0, false},
}};

const Setting& SettingOf(Kind kind) {
  for (const Setting& setting : kSettings) {
    if (setting.kind == kind) return setting;
  }
  return kSettings[2];
}

QFont TextFont(qreal points) {
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setStyleHint(QFont::SansSerif);
  font.setPointSizeF(points);
  return font;
}

struct Entry {
  QString number;
  QString text;
  bool chapter = false;
  QString anchor;
  int block = 0;  ///< of the laid out text
  int page = 0;   ///< of the text, counted from 0
  qreal y = 0;    ///< on that page, in its dots
};

/// A stretch of a line that leads to a heading.
struct Link {
  int page = 0;
  QRectF area;
  QString anchor;
};

/// The text after the table of contents, laid out page by page.
class Body {
 public:
  Body(const PictureSource& pictures, QPagedPaintDevice& device, const QSizeF& page)
      : pictures_(pictures),
        page_(page),
        point_(ScreenDpi() / 72.0),
        screen_dot_(device.logicalDpiY() / ScreenDpi()) {
    text_.documentLayout()->setPaintDevice(&device);
    text_.setDocumentMargin(0);
    text_.setUndoRedoEnabled(false);
    text_.setDefaultFont(TextFont(kTextPoints));
    text_.setPageSize(page);
    // What begins a page would else show a hair of itself at the foot of the one before.
    QTextFrameFormat every_page = text_.rootFrame()->frameFormat();
    every_page.setTopMargin(3 * point_);
    text_.rootFrame()->setFrameFormat(every_page);
  }

  void Add(const Block& block) {
    switch (block.kind) {
      case Kind::kChapter:
      case Kind::kSection:
        AddHeading(block);
        break;
      case Kind::kPicture:
        AddPicture(block);
        break;
      case Kind::kTable:
        AddTable(block);
        break;
      case Kind::kMessage:
        for (const Line& message : block.messages) AddMessage(message);
        AddText(block.kind, block.line);
        break;
      default:
        AddText(block.kind, block.line);
    }
    last_ = block.kind;
  }

  /// Divides the text into pages: what must not be torn goes to the next page with what follows,
  /// and a chapter begins a page unless much of the page before it is free.
  void Paginate() {
    for (const Entry& entry : entries_) {
      if (!entry.chapter || entry.block == 0) continue;
      const QTextBlock chapter = text_.findBlockByNumber(entry.block);
      while (BreakBeforeFirstTorn(chapter)) {
      }
      const QTextBlock before = chapter.previous();
      const qreal used = RectOf(before).bottom() - PageAt(LastLineTop(before)) * page_.height();
      if (used > (1 - kRoomForChapter) * page_.height()) BreakBefore(chapter);
    }
    while (BreakBeforeFirstTorn(QTextBlock())) {
    }
    for (Entry& entry : entries_) {
      const QTextBlock heading = text_.findBlockByNumber(entry.block);
      entry.page = PageOf(heading);
      entry.y = LineTop(heading, 0) - entry.page * page_.height();
    }
  }

  [[nodiscard]] const std::vector<Entry>& Entries() const { return entries_; }
  [[nodiscard]] int Pages() const { return text_.pageCount(); }

  [[nodiscard]] std::vector<Link> Links() const {
    std::vector<Link> links;
    for (QTextBlock block = text_.begin(); block.isValid(); block = block.next()) {
      for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QString anchor = it.fragment().charFormat().stringProperty(kTarget);
        if (!anchor.isEmpty()) AddLinks(block, it.fragment(), anchor, links);
      }
    }
    return links;
  }

  [[nodiscard]] std::vector<QStringList> LinesOfPages() const {
    std::vector<QStringList> pages(static_cast<size_t>(Pages()));
    for (QTextBlock block = text_.begin(); block.isValid(); block = block.next()) {
      for (int line = 0; line < block.layout()->lineCount(); ++line) {
        const QTextLine place = block.layout()->lineAt(line);
        const auto page = static_cast<size_t>(PageAt(LineTop(block, line)));
        pages.at(page) += block.text().mid(place.textStart(), place.textLength());
      }
    }
    return pages;
  }

  void Draw(QPainter& painter, int page) {
    painter.save();
    const QRectF clip(0, page * page_.height(), page_.width(), page_.height());
    painter.translate(0, -clip.top());
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = clip;
    context.palette.setColor(QPalette::Text, kInk);
    painter.setClipRect(clip);
    text_.documentLayout()->draw(&painter, context);
    painter.restore();
  }

 private:
  /// What the layout takes a picture's dot for.
  static qreal ScreenDpi() {
    if (QCoreApplication::testAttribute(Qt::AA_Use96Dpi)) return 96;
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen == nullptr ? 96 : screen->logicalDotsPerInchY();
  }

  /// A piece of text may go over several lines.
  void AddLinks(const QTextBlock& block, const QTextFragment& piece, const QString& anchor,
                std::vector<Link>& links) const {
    const int begin = piece.position() - block.position();
    for (int i = 0; i < block.layout()->lineCount(); ++i) {
      const QTextLine line = block.layout()->lineAt(i);
      const int from = std::max(begin, line.textStart());
      const int to = std::min(begin + piece.length(), line.textStart() + line.textLength());
      if (from >= to) continue;
      const qreal top = LineTop(block, i);
      const int page = PageAt(top);
      const qreal left = line.cursorToX(from);
      links.push_back({page,
                       QRectF(RectOf(block).left() + left, top - page * page_.height(),
                              line.cursorToX(to) - left, line.height()),
                       anchor});
    }
  }

  /// The end of the text in a new block, the first one of all excepted.
  QTextCursor Begin(const QTextBlockFormat& format) {
    QTextCursor cursor(&text_);
    cursor.movePosition(QTextCursor::End);
    if (!begun_ || after_table_) {
      cursor.setBlockFormat(format);
    } else {
      cursor.insertBlock(format, QTextCharFormat());
    }
    begun_ = true;
    after_table_ = false;
    return cursor;
  }

  [[nodiscard]] QTextBlockFormat BlockFormat(const Setting& setting) const {
    QTextBlockFormat format;
    format.setTopMargin(setting.above * point_);
    format.setBottomMargin(setting.below * point_);
    format.setLeftMargin(setting.indent * point_ * screen_dot_);
    // Below the line, not above it: the layout fits lines to the page without it.
    format.setLineHeight(kLeading * setting.size * point_, QTextBlockFormat::LineDistanceHeight);
    return format;
  }

  static QTextCharFormat CharFormat(const Setting& setting) {
    QTextCharFormat format;
    format.setFont(TextFont(setting.size));
    format.setForeground(setting.lead ? kLead : kInk);
    if (setting.lead) format.setFontWeight(QFont::Bold);
    return format;
  }

  static void Insert(QTextCursor& cursor, const Line& line, const QTextCharFormat& plain) {
    for (const Run& run : line) {
      QTextCharFormat format = plain;
      if (run.face == Run::Face::kCaption) format.setFontWeight(QFont::Bold);
      if (run.face == Run::Face::kVariable) format.setFontItalic(true);
      if (run.face == Run::Face::kLink) {
        format.setForeground(kLead);
        format.setProperty(kTarget, run.target);
      }
      if (run.face == Run::Face::kTyped) {
        format.setFontFamilies({QStringLiteral("DejaVu Sans Mono")});
        format.setFontPointSize(plain.fontPointSize() - 0.5);
      }
      cursor.insertText(run.text, format);
    }
  }

  void AddHeading(const Block& block) {
    const bool chapter = block.kind == Kind::kChapter;
    const Setting& setting = SettingOf(block.kind);
    QTextBlockFormat format = BlockFormat(setting);
    format.setProperty(kKeepWithNext, true);
    if (chapter) {
      ++chapter_;
      section_ = 0;
    } else {
      ++section_;
    }
    Entry entry;
    entry.chapter = chapter;
    entry.number =
        chapter ? QString::number(chapter_) : QStringLiteral("%1.%2").arg(chapter_).arg(section_);
    entry.text = PlainText(block.line);
    entry.anchor = block.anchor;
    QTextCursor cursor = Begin(format);
    entry.block = cursor.blockNumber();
    cursor.insertText(entry.number + QStringLiteral("  ") + entry.text, CharFormat(setting));
    entries_.push_back(entry);
  }

  void AddText(Kind kind, const Line& line) {
    const Setting& setting = SettingOf(kind);
    QTextBlockFormat format = BlockFormat(setting);
    const QTextCharFormat plain = CharFormat(setting);
    if (kind == Kind::kStep || kind == Kind::kBullet) {
      step_ = last_ == kind ? step_ + 1 : 1;
      const QString sign =
          kind == Kind::kBullet ? QString(QChar(0x2022)) : QStringLiteral("%1.").arg(step_);
      // A hanging indent with a tab stop keeps the signs in one line and the text in another.
      format.setTextIndent(-setting.indent * point_ * screen_dot_);
      format.setTabPositions({QTextOption::Tab(setting.indent * point_, QTextOption::LeftTab)});
      QTextCursor cursor = Begin(format);
      cursor.insertText(sign + QLatin1Char('\t'), plain);
      Insert(cursor, line, plain);
      return;
    }
    // What ends in a colon is nothing without what follows.
    const bool announces = kind == Kind::kParagraph && PlainText(line).endsWith(QLatin1Char(':'));
    if (announces) format.setProperty(kKeepWithNext, true);
    QTextCursor cursor = Begin(format);
    Insert(cursor, line, plain);
  }

  void AddMessage(const Line& message) {
    QTextBlockFormat format;
    format.setTopMargin(3 * point_);
    format.setBottomMargin(3 * point_);
    format.setBackground(kSoft);
    format.setProperty(kKeepWithNext, true);
    QTextCharFormat plain = CharFormat(SettingOf(Kind::kParagraph));
    plain.setFontWeight(QFont::Bold);
    QTextCursor cursor = Begin(format);
    Insert(cursor, message, plain);
  }

  /// Forms have no edge of their own and would run into the paper.
  static QImage Framed(QImage image) {
    image.convertTo(QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setPen(kRule);
    painter.drawRect(image.rect().adjusted(0, 0, -1, -1));
    return image;
  }

  void AddPicture(const Block& block) {
    const QImage image = Framed(pictures_(block.picture));
    const QUrl url(QStringLiteral("picture:") + block.picture);
    text_.addResource(QTextDocument::ImageResource, url, image);
    const qreal scale = std::min({page_.width() / kDotsAcross, page_.width() / image.width(),
                                  kPictureHeight * page_.height() / image.height()});
    QTextImageFormat picture;
    picture.setName(url.toString());
    picture.setWidth(image.width() * scale / screen_dot_);
    picture.setHeight(image.height() * scale / screen_dot_);
    const Setting& setting = SettingOf(block.kind);
    QTextBlockFormat above;
    above.setTopMargin(4 * point_);
    above.setAlignment(Qt::AlignHCenter);
    above.setProperty(kKeepWithNext, true);
    Begin(above).insertImage(picture);
    QTextBlockFormat format = BlockFormat(setting);
    format.setAlignment(Qt::AlignHCenter);
    QTextCharFormat plain = CharFormat(setting);
    plain.setFontItalic(true);
    QTextCursor cursor = Begin(format);
    Insert(cursor, block.line, plain);
  }

  void AddTable(const Block& block) {
    QTextTableFormat format;
    format.setHeaderRowCount(1);
    format.setBorder(0);
    format.setBorderCollapse(true);
    format.setCellSpacing(0);
    format.setBottomMargin(9 * point_);
    format.setTopMargin(2 * point_);
    const int columns = static_cast<int>(block.rows.front().size());
    QTextCursor cursor(&text_);
    cursor.movePosition(QTextCursor::End);
    QTextTable* table = cursor.insertTable(static_cast<int>(block.rows.size()), columns, format);
    const QTextCharFormat plain = CharFormat(SettingOf(Kind::kTable));
    for (size_t row = 0; row < block.rows.size(); ++row) {
      for (int column = 0; column < columns; ++column) {
        QTextTableCell cell = table->cellAt(static_cast<int>(row), column);
        QTextCharFormat words = plain;
        QTextTableCellFormat frame;
        frame.setTopPadding(3.5);
        frame.setBottomPadding(3.5);
        frame.setLeftPadding(4);
        frame.setRightPadding(9);
        frame.setBottomBorder(0.75);
        frame.setBottomBorderBrush(kRule);
        frame.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        if (row == 0) {
          frame.setBackground(kSoft);
          words.setFontWeight(QFont::Bold);
        }
        cell.setFormat(frame);
        QTextCursor inside = cell.firstCursorPosition();
        Insert(inside, block.rows[row][static_cast<size_t>(column)], words);
      }
    }
    // The block that the layout keeps behind a table takes what comes next.
    begun_ = true;
    after_table_ = true;
  }

  [[nodiscard]] QRectF RectOf(const QTextBlock& block) const {
    return text_.documentLayout()->blockBoundingRect(block);
  }

  [[nodiscard]] int PageOf(const QTextBlock& block) const { return PageAt(LineTop(block, 0)); }

  [[nodiscard]] int PageAt(qreal y) const { return static_cast<int>((y + 1) / page_.height()); }

  /// Where the line of the block begins; the layout moves lines, not blocks, over the foot of a
  /// page.
  [[nodiscard]] qreal LineTop(const QTextBlock& block, int line) const {
    const QRectF rect = RectOf(block);
    const QTextLayout* layout = block.layout();
    if (layout == nullptr || layout->lineCount() <= line) return rect.top();
    return rect.top() + layout->lineAt(line).y();
  }

  [[nodiscard]] qreal LastLineTop(const QTextBlock& block) const {
    const QTextLayout* layout = block.layout();
    return LineTop(block, layout == nullptr ? 0 : std::max(0, layout->lineCount() - 1));
  }

  [[nodiscard]] static QTextTable* TableAround(const QTextBlock& block) {
    return QTextCursor(block).currentTable();
  }

  [[nodiscard]] static QTextBlock LastBlockOf(const QTextTable& table) {
    return table.lastCursorPosition().block();
  }

  /// A small table is torn when it doesn't stand on one page; a large one may.
  [[nodiscard]] bool Torn(const QTextTable& table) const {
    const qreal top = LineTop(table.firstCursorPosition().block(), 0);
    const qreal bottom = LastLineTop(LastBlockOf(table));
    return PageAt(top) != PageAt(bottom) && bottom - top < kSmallTable * page_.height();
  }

  [[nodiscard]] bool Torn(const QTextBlock& block) const {
    const int page = PageOf(block);
    if (PageAt(LastLineTop(block)) != page) return true;
    const QTextBlock next = block.next();
    if (!next.isValid()) return false;
    if (PageOf(next) != page) return true;
    if (const QTextTable* table = TableAround(next)) return Torn(*table);
    // One line of a paragraph is too little of it.
    return next.layout()->lineCount() > 1 && PageAt(LineTop(next, 1)) != page;
  }

  /// Looks at the blocks before `end`; true when there was one to break before.
  bool BreakBeforeFirstTorn(const QTextBlock& end) {
    QTextBlock chain;
    for (QTextBlock block = text_.begin(); block != end; block = block.next()) {
      if (QTextTable* table = TableAround(block)) {
        if (!chain.isValid() && Torn(*table) && BreakBefore(*table)) return true;
        chain = QTextBlock();
        block = LastBlockOf(*table);
        continue;
      }
      if (!block.blockFormat().boolProperty(kKeepWithNext)) {
        chain = QTextBlock();
        continue;
      }
      if (!chain.isValid()) chain = block;
      if (Torn(block) && BreakBefore(chain)) return true;
    }
    return false;
  }

  /// True when there was no break yet: what begins a page and is torn all the same is too long.
  static bool BreakBefore(const QTextBlock& block) {
    QTextBlockFormat format = block.blockFormat();
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore) return false;
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCursor(block).setBlockFormat(format);
    return true;
  }

  static bool BreakBefore(QTextTable& table) {
    QTextTableFormat format = table.format();
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore) return false;
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    table.setFormat(format);
    return true;
  }

  const PictureSource& pictures_;
  QSizeF page_;
  // The layout takes vertical distances and tabs in dots of the screen, but horizontal distances in
  // those of the page.
  qreal point_;       ///< in dots of the screen
  qreal screen_dot_;  ///< in dots of the page
  QTextDocument text_;
  std::vector<Entry> entries_;
  int chapter_ = 0;
  int section_ = 0;
  int step_ = 0;
  Kind last_ = Kind::kParagraph;
  bool begun_ = false;
  bool after_table_ = false;
};

void SetPage(QPdfWriter& writer) {
  writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                   QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm - 6),
                                   QPageLayout::Millimeter));
}

/// The part of a page that takes text.
QRectF FrameOf(const QPdfWriter& writer) {
  const qreal footer = kFooterMm * writer.logicalDpiY() / 25.4;
  return {0, 0, qreal(writer.width()), writer.height() - footer};
}

/// The text before the first chapter stands on the title page, the rest in the body.
bool StandsOnCover(const Text& text, const Block& block) {
  for (const Block& other : text.blocks) {
    if (other.kind == Kind::kChapter) return false;
    if (&other == &block) return true;
  }
  return true;
}

/// Title page, table of contents and body, drawn one behind the other.
class Printer {
 public:
  Printer(const Text& text, const PictureSource& pictures, QPdfWriter& writer)
      : source_(text), pictures_(pictures), writer_(writer) {}

  void Print() {
    dots_ = writer_.logicalDpiY() / 25.4;
    frame_ = FrameOf(writer_);
    Body body(pictures_, writer_, frame_.size());
    Body cover(pictures_, writer_, QSizeF(frame_.width(), frame_.height() * 0.75));
    for (const Block& block : source_.blocks) {
      (StandsOnCover(source_, block) ? cover : body).Add(block);
    }
    body.Paginate();
    const int contents_pages = LayOutContents(body.Entries());
    first_page_ = 1 + contents_pages;
    pages_ = first_page_ + body.Pages();

    if (!painter_.begin(&writer_)) {
      throw Failure(failure::kDeviceError, QStringLiteral("The pages can't be printed."));
    }
    DrawCover(cover);
    for (int page = 0; page < contents_pages; ++page) {
      NextPage();
      DrawContents(body.Entries(), page);
    }
    for (int page = 0; page < body.Pages(); ++page) {
      NextPage();
      body.Draw(painter_, page);
    }
    painter_.end();
    NoteMarks(body);
  }

  [[nodiscard]] const std::vector<PdfBookmark>& Bookmarks() const { return bookmarks_; }
  [[nodiscard]] const std::vector<PdfLink>& Links() const { return links_; }

 private:
  /// What leads where, once every page is known.
  void NoteMarks(const Body& body) {
    std::map<QString, PdfPlace> places;
    for (const Entry& entry : body.Entries()) {
      const PdfPlace place{first_page_ + entry.page, Points(QRectF(0, entry.y, 0, 0)).top()};
      places[entry.anchor] = place;
      bookmarks_.push_back(
          {entry.number + QStringLiteral("  ") + entry.text, entry.chapter ? 1 : 2, place});
    }
    const QFontMetricsF metrics(TextFont(kTextPoints), &writer_);
    for (const auto& [page, lines] : contents_) {
      for (const Place& line : lines) {
        const QRectF area(0, line.y, frame_.width(), metrics.height());
        links_.push_back({1 + page, Points(area), bookmarks_[line.entry].place});
      }
    }
    for (const Link& link : body.Links())
      links_.push_back({first_page_ + link.page, Points(link.area), places[link.anchor]});
  }

  /// From dots of the frame to points of the page.
  [[nodiscard]] QRectF Points(const QRectF& area) const {
    const qreal point = writer_.logicalDpiY() / 72.0;
    const QMarginsF margins = writer_.pageLayout().margins(QPageLayout::Point);
    return {margins.left() + area.left() / point, margins.top() + area.top() / point,
            area.width() / point, area.height() / point};
  }

  void NextPage() {
    if (!writer_.newPage()) {
      throw Failure(failure::kDeviceError, QStringLiteral("The pages can't be written."));
    }
    ++page_;
    painter_.setFont(TextFont(kSmallPoints));
    painter_.setPen(QPen(kRule, 0));
    const qreal top = frame_.bottom() + 3 * dots_;
    painter_.drawLine(QPointF(0, top), QPointF(frame_.width(), top));
    painter_.setPen(kInk);
    const QRectF foot(0, top, frame_.width(), (kFooterMm - 3) * dots_);
    painter_.drawText(foot, Qt::AlignLeft | Qt::AlignBottom, source_.title);
    painter_.drawText(foot, Qt::AlignRight | Qt::AlignBottom,
                      QStringLiteral("%1 of %2").arg(page_).arg(pages_));
  }

  void DrawCover(Body& cover) {
    painter_.setFont(TextFont(kTitlePoints));
    painter_.setPen(kLead);
    const QRectF head(0, 0, frame_.width(), frame_.height() * 0.2);
    painter_.drawText(head, Qt::AlignLeft | Qt::AlignBottom | Qt::TextWordWrap, source_.title);
    painter_.save();
    painter_.translate(0, frame_.height() * 0.23);
    cover.Draw(painter_, 0);
    painter_.restore();
  }

  /// Places the lines of the table of contents; gives the number of its pages.
  int LayOutContents(const std::vector<Entry>& entries) {
    const qreal line = QFontMetricsF(TextFont(kTextPoints), &writer_).height();
    qreal y = 2.6 * line;
    int page = 0;
    for (size_t i = 0; i < entries.size(); ++i) {
      const bool chapter = entries[i].chapter;
      const qreal height = line * (chapter ? 1.1 : 0.92);
      const qreal space = chapter && y > 0 ? line * 0.3 : 0;
      // A chapter goes with its first section.
      const qreal needed = space + (chapter ? 2 * height : height);
      if (y + needed > frame_.height()) {
        ++page;
        y = 0;
      } else {
        y += space;
      }
      contents_[page].push_back({i, y});
      y += height;
    }
    return page + 1;
  }

  void DrawContents(const std::vector<Entry>& entries, int page) {
    if (page == 0) {
      QFont font = TextFont(SettingOf(Kind::kChapter).size);
      font.setBold(true);
      painter_.setFont(font);
      painter_.setPen(kLead);
      painter_.drawText(QRectF(0, 0, frame_.width(), frame_.height()), Qt::AlignLeft | Qt::AlignTop,
                        QStringLiteral("Contents"));
    }
    painter_.setPen(kInk);
    for (const auto& [index, y] : contents_[page]) DrawEntry(entries[index], y);
  }

  void DrawEntry(const Entry& entry, qreal y) {
    QFont font = TextFont(entry.chapter ? kTextPoints : kTextPoints - 1);
    font.setBold(entry.chapter);
    painter_.setFont(font);
    const QFontMetricsF metrics(font, &writer_);
    const qreal left = (entry.chapter ? 0 : 8) * dots_;
    const qreal text = left + (entry.chapter ? 8 : 12) * dots_;
    const qreal base = y + metrics.ascent();
    const QString page = QString::number(first_page_ + entry.page + 1);
    const qreal right = frame_.width() - metrics.horizontalAdvance(page);
    painter_.drawText(QPointF(left, base), entry.number);
    painter_.drawText(QPointF(text, base), entry.text);
    painter_.drawText(QPointF(right, base), page);
    const qreal step = metrics.horizontalAdvance(QLatin1Char('.')) * 1.6;
    const qreal from = text + metrics.horizontalAdvance(entry.text) + step;
    // Counted from the right edge, so that the dots of all lines stand in columns.
    const qreal last = frame_.width() - 8 * dots_;
    const int dots = static_cast<int>((last - from) / step);
    for (int dot = 0; dot < dots; ++dot) {
      painter_.drawText(QPointF(last - dot * step, base), QStringLiteral("."));
    }
  }

  struct Place {
    size_t entry;
    qreal y;
  };

  const Text& source_;
  const PictureSource& pictures_;
  QPdfWriter& writer_;
  QPainter painter_;
  QRectF frame_;
  qreal dots_ = 1;  ///< in a millimetre
  std::map<int, std::vector<Place>> contents_;
  int page_ = 1;
  int pages_ = 1;
  int first_page_ = 1;  ///< the pages before the body
  std::vector<PdfBookmark> bookmarks_;
  std::vector<PdfLink> links_;
};

}  // namespace

void PrintBook(const Text& text, const PictureSource& pictures, QIODevice& device) {
  QBuffer pages;
  pages.open(QIODevice::WriteOnly);
  QPdfWriter writer(&pages);
  writer.setTitle(text.title);
  writer.setCreator(QStringLiteral("KestrixStudy"));
  SetPage(writer);
  Printer printer(text, pictures, writer);
  printer.Print();
  const QByteArray book = WithMarks(pages.data(), printer.Bookmarks(), printer.Links(),
                                    {{}, {}, {}, text.language, {}, {}});
  if (device.write(book) != book.size())
    throw Failure(failure::kDeviceError, QStringLiteral("The pages can't be written."));
}

std::vector<QStringList> LinesOfPages(const Text& text, const PictureSource& pictures) {
  QBuffer nowhere;
  nowhere.open(QIODevice::WriteOnly);
  QPdfWriter writer(&nowhere);
  SetPage(writer);
  Body body(pictures, writer, FrameOf(writer).size());
  for (const Block& block : text.blocks) {
    if (!StandsOnCover(text, block)) body.Add(block);
  }
  body.Paginate();
  return body.LinesOfPages();
}

}  // namespace kestrix::paper::book
