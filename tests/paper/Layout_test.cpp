#include "paper/Layout.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>

#include "paper/Pdf.h"

namespace kestrix::paper {
namespace {

const QPageSize kA4(QPageSize::A4);

/// The lines of a page, from its top to its foot.
QStringList LinesOf(const Layout& layout, int page) {
  QStringList lines;
  for (const Item& item : layout.PageAt(page).items) {
    const auto* line = std::get_if<TextLine>(&item);
    if (line == nullptr) continue;
    lines += line->text->CharactersOf(line->line).trimmed();
  }
  return lines;
}

Table Rows(int count, const QString& text) {
  Table table{{1, 3}, {QStringLiteral("Number"), QStringLiteral("Text")}, {}, false};
  for (int i = 0; i < count; ++i) {
    table.rows.push_back({{Plain(QString::number(i)), {}, true}, {Plain(text), {}, false}});
  }
  return table;
}

Document With(std::vector<Block> body) {
  Document document;
  document.title = QStringLiteral("Title");
  document.cover.push_back({Paragraph{Plain(QStringLiteral("Cover"))}});
  document.body = std::move(body);
  return document;
}

TEST(LayoutTest, ATablesHeadStandsOnEachOfItsPages) {
  const Document document = With({{Rows(200, QStringLiteral("text"))}});
  const Layout layout(document, kA4, kPdfDots);
  ASSERT_GT(layout.PageCount(), 4);
  int rows = 0;
  for (int page = 2; page < layout.PageCount(); ++page) {
    const QStringList lines = LinesOf(layout, page);
    EXPECT_EQ(lines.mid(0, 2), QStringList({QStringLiteral("Number"), QStringLiteral("Text")}));
    EXPECT_EQ(lines.count(QStringLiteral("Number")), 1);
    rows += static_cast<int>(lines.count(QStringLiteral("text")));
  }
  EXPECT_EQ(rows, 200);
}

TEST(LayoutTest, ARowIsTornOnlyWhenItIsLongerThanAPage) {
  const QString ten_lines = QStringList(QList<QString>(10, QStringLiteral("line"))).join(u'\n');
  const Document document = With({{Rows(20, ten_lines)}});
  const Layout layout(document, kA4, kPdfDots);
  for (int page = 2; page < layout.PageCount(); ++page) {
    EXPECT_EQ(LinesOf(layout, page).count(QStringLiteral("line")) % 10, 0) << page;
  }
  const QString endless = QStringList(QList<QString>(300, QStringLiteral("line"))).join(u'\n');
  const Document longer = With({{Rows(1, endless)}});
  const Layout torn(longer, kA4, kPdfDots);
  int lines = 0;
  for (int page = 2; page < torn.PageCount(); ++page) {
    lines += static_cast<int>(LinesOf(torn, page).count(QStringLiteral("line")));
  }
  EXPECT_EQ(lines, 300);
}

class FootTest : public ::testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(EveryHeight, FootTest, ::testing::Range(30, 70));

TEST_P(FootTest, AHeadingStandsWithWhatFollows) {
  std::vector<Block> body;
  for (int i = 0; i < GetParam(); ++i) body.push_back({Paragraph{Plain(QStringLiteral("entry"))}});
  body.push_back({Heading{2, QStringLiteral("Heading"), QStringLiteral("there"), true}});
  body.push_back({Rows(3, QStringLiteral("text"))});
  const Document document = With(std::move(body));
  const Layout layout(document, kA4, kPdfDots);
  const Entry* heading = layout.Find(QStringLiteral("there"));
  ASSERT_NE(heading, nullptr);
  const QStringList lines = LinesOf(layout, heading->page);
  const qsizetype place = lines.indexOf(QStringLiteral("Heading"));
  ASSERT_GE(place, 0);
  // The table's head and its first row.
  EXPECT_EQ(lines.value(place + 1), QStringLiteral("Number"));
  EXPECT_EQ(lines.value(place + 3), QStringLiteral("0"));
}

TEST(LayoutTest, EveryCharacterOfAForeignScriptIsLaidOut) {
  const QString text = QStringLiteral("λειτουργία حماية 压力机 \U0001F6E0");
  const Document document = With({{Paragraph{Plain(text)}}});
  const Layout layout(document, kA4, kPdfDots);
  EXPECT_EQ(LinesOf(layout, 2), QStringList(text));
}

TEST(LayoutTest, APhotographOf100MegapixelsIsUnpackedAsSmallAsItStands) {
  QImage photograph(10000, 10000, QImage::Format_Grayscale8);
  photograph.fill(Qt::gray);
  QBuffer file;
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_TRUE(photograph.save(&file, "JPEG"));
  QString why;
  const Picture picture{photograph.size(), [&] { return file.data(); }, {10, 10}, {}, {}, true};
  EXPECT_EQ(ImageOf(picture, QSize(500, 300), why).size(), QSize(300, 300));
  const Picture broken{photograph.size(), [&] { return file.data().left(60); }, {}, {}, {}, true};
  EXPECT_TRUE(ImageOf(broken, QSize(500, 300), why).isNull());
  EXPECT_FALSE(why.isEmpty());
}

TEST(LayoutTest, ABreakAtTheEndMakesNoEmptyPage) {
  const Document document = With({{Paragraph{Plain(QStringLiteral("text"))}}, {PageBreak{true}}});
  EXPECT_EQ(Layout(document, kA4, kPdfDots).PageCount(), 3);
}

TEST(LayoutTest, ControlCharactersShowThatTheyAreNone) {
  const Document document = With({{Paragraph{Plain(QStringLiteral("a\u0007b"))}}});
  const Layout layout(document, kA4, kPdfDots);
  EXPECT_EQ(LinesOf(layout, 2), QStringList(QStringLiteral("a\uFFFDb")));
}

TEST(PdfTest, TheSameDocumentGivesTheSameBytes) {
  const auto write = [] {
    const Document document =
        With({{Heading{1, QStringLiteral("One"), QStringLiteral("one"), true}},
              {Paragraph{Link(QStringLiteral("there"), QStringLiteral("one"))}}});
    const Layout layout(document, kA4, kPdfDots);
    return WritePdf(document, layout, kA4, QDate(2026, 1, 2),
                    {QStringLiteral("a.json"), "{}", QStringLiteral("application/json"), {}});
  };
  const QByteArray first = write();
  EXPECT_TRUE(first.startsWith("%PDF-1."));
  EXPECT_EQ(first, write());
}

TEST(PdfTest, WritingCanBeStopped) {
  const Document document = With({{Rows(200, QStringLiteral("text"))}});
  const Layout layout(document, kA4, kPdfDots);
  int pages = 0;
  const QByteArray bytes =
      WritePdf(document, layout, kA4, QDate(2026, 1, 2), {}, [&pages](int done, int /*of*/) {
        pages = done;
        return done < 2;
      });
  EXPECT_TRUE(bytes.isEmpty());
  EXPECT_EQ(pages, 2);
}

}  // namespace
}  // namespace kestrix::paper
