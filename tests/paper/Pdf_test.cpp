#include "paper/Pdf.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QTextLayout>
#include <map>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <string>

namespace kestrix::paper {
namespace {

const QPageSize kA4(QPageSize::A4);

Drawing Square(const QString& name, double millimetres, int& painted) {
  return {[&painted](QPainter& painter, const QRectF& area) {
            ++painted;
            painter.fillRect(area, Qt::black);
          },
          QSizeF(millimetres, millimetres), QStringLiteral("A square"), name};
}

/// The drawings that each page of the body shows, by their objects in the file.
std::vector<std::vector<int>> DrawingsOf(const Document& document) {
  const Layout layout(document, kA4, kPdfDots);
  const QByteArray bytes = WritePdf(document, layout, kA4, QDate(2026, 1, 2), {});
  QPDF file;
  file.processMemoryFile("pdf", bytes.constData(), static_cast<size_t>(bytes.size()));
  std::vector<std::vector<int>> pages;
  for (QPDFObjectHandle page : file.getAllPages()) {
    auto& drawings = pages.emplace_back();
    for (auto& [name, form] : QPDFPageObjectHelper(page).getFormXObjects()) {
      drawings.push_back(form.getObjectID());
    }
  }
  pages.erase(pages.begin(), pages.begin() + 2);  // cover and contents
  return pages;
}

TEST(PdfTest, DrawingsThatLookAlikeAreStoredOnce) {
  const QString name = QStringLiteral("square");
  int painted = 0;
  Document document;
  document.cover.push_back({Paragraph{Plain(QStringLiteral("Cover"))}});
  document.body = {{Square(name, 20, painted)},
                   {PageBreak{}},
                   {Square(name, 20, painted)},
                   {PageBreak{}},
                   {Square(name, 30, painted)}};
  const auto pages = DrawingsOf(document);
  ASSERT_EQ(pages.size(), 3u);
  for (const auto& drawings : pages) ASSERT_EQ(drawings.size(), 1u);
  EXPECT_EQ(pages[0], pages[1]);
  EXPECT_NE(pages[0], pages[2]) << "another size";
  EXPECT_EQ(painted, 2);
}

TEST(PdfTest, ADrawingWithoutANameIsPaintedWhereItStands) {
  int painted = 0;
  Document document;
  document.cover.push_back({Paragraph{Plain(QStringLiteral("Cover"))}});
  document.body = {{Square({}, 20, painted)}, {PageBreak{}}, {Square({}, 20, painted)}};
  EXPECT_EQ(DrawingsOf(document), (std::vector<std::vector<int>>{{}, {}}));
  EXPECT_EQ(painted, 2);
}

TEST(PdfTest, ALinkCoversAllLinesOfItsCell) {
  Document document;
  document.cover.push_back({Paragraph{Plain(QStringLiteral("Cover"))}});
  Table table{{10, 90}, {QStringLiteral("A"), QStringLiteral("B")}, {}, false};
  const QString title = QStringLiteral("a title that needs a good many lines");
  table.rows.push_back({{Link(title, QStringLiteral("there")), {}, false}, {}});
  document.body = {{Heading{1, QStringLiteral("There"), QStringLiteral("there")}},
                   {std::move(table)}};
  const Layout layout(document, kA4, kPdfDots);
  const auto& links = layout.PageAt(2).links;
  ASSERT_EQ(links.size(), 1u);
  int lines = 0;
  for (const Item& item : layout.PageAt(2).items) {
    const auto* line = std::get_if<TextLine>(&item);
    if (line == nullptr || line->text->Characters() != title) continue;
    ++lines;
    const auto shaped = line->text->Shaped();
    const QTextLine on = shaped->lineAt(line->line);
    EXPECT_EQ(line->text->CharactersOf(line->line), title.mid(on.textStart(), on.textLength()));
    EXPECT_TRUE(links[0].area.contains(line->Corner() + QPointF(1, 1))) << line->line;
  }
  EXPECT_GT(lines, 3);
}

}  // namespace
}  // namespace kestrix::paper
