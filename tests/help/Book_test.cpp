#include "Book.h"

#include <QRegularExpression>
#include <QStandardPaths>
#include <qpdf/QPDF.hh>

#include "HelpTest.h"
#include "paper/Pdf.h"

namespace kestrix::help {
namespace {

bool IsWholePdf(const QByteArray& bytes) {
  return bytes.startsWith("%PDF-1.") && bytes.trimmed().endsWith("%%EOF");
}

int PagesOf(const QByteArray& pdf) {
  QPDF file;
  file.processMemoryFile("pdf", pdf.constData(), static_cast<size_t>(pdf.size()));
  return static_cast<int>(file.getAllPages().size());
}

class BookTest : public HelpTest {
 protected:
  /// The lines of the pages after the table of contents, page by page. A picture's line holds the
  /// one character that stands for it.
  [[nodiscard]] std::vector<QStringList> LinesOfPages(const QString& text) const {
    const Pictures pictures = TheirPictures();
    const paper::Document document = BookOf(Read(text), pictures);
    const paper::Layout layout(document, QPageSize(QPageSize::A4), paper::kPdfDots);
    std::vector<QStringList> pages;
    for (int page = 1; page < layout.PageCount(); ++page) {
      QStringList lines;
      for (const paper::Item& item : layout.PageAt(page).items) {
        if (const auto* line = std::get_if<paper::TextLine>(&item)) {
          lines += line->text->CharactersOf(line->line).trimmed();
        } else if (std::holds_alternative<paper::PlacedPicture>(item)) {
          lines += QString(QChar::ObjectReplacementCharacter);
        }
      }
      if (!pages.empty() || !lines.contains(QStringLiteral("Contents"))) pages.push_back(lines);
    }
    return pages;
  }
  [[nodiscard]] QByteArray Printed(const QString& text) const {
    return PrintedBook(Read(text), TheirPictures());
  }
};

const QString kParagraph = QStringLiteral("Some words that fill a line of the page. ").repeated(8);

TEST_F(BookTest, BookHasTitleContentsAndItsTextOnPagesOfA4) {
  MakePicture(QStringLiteral("form.png"), QSize(1000, 1400));
  const QString text = QStringLiteral(
      "# Title\n\nBefore.\n\n## One\n\nText.\n\n## Two\n\n![form](form.png)\n\n"
      "## Three\n\n| a | b |\n|---|---|\n| c | d |\n");
  const auto pages = LinesOfPages(text);
  EXPECT_EQ(pages.size(), 3u);
  const QByteArray pdf = Printed(text);
  EXPECT_TRUE(IsWholePdf(pdf));
  EXPECT_EQ(PagesOf(pdf), 5);
  QPDF file;
  file.processMemoryFile("pdf", pdf.constData(), static_cast<size_t>(pdf.size()));
  auto first = file.getAllPages().front();
  const auto page = first.getKey("/MediaBox").getArrayAsRectangle();
  EXPECT_NEAR(page.urx, 595, 1);
  EXPECT_NEAR(page.ury, 842, 1);
}

/// What a reader of PDFs finds in the finished file.
TEST_F(BookTest, BookmarksContentsAndLinksLeadToTheirHeadings) {
  const QByteArray pdf = Printed(
      QStringLiteral("# Title\n\n## One\n\nSee [the *other* one](#two) there.\n\n") +
      QStringLiteral("- entry\n").repeated(90) + QStringLiteral("\n## Two\n\n### Part\n\nText.\n"));
  QPDF file;
  file.processMemoryFile("pdf", pdf.constData(), static_cast<size_t>(pdf.size()));
  auto root = file.getRoot();
  EXPECT_EQ(root.getKey("/Lang").getUTF8Value(), "en");
  EXPECT_EQ(file.getTrailer().getKey("/Info").getKey("/Title").getUTF8Value(), "Title");
  auto first = root.getKey("/Outlines").getKey("/First");
  EXPECT_EQ(first.getKey("/Title").getUTF8Value(), "Contents");
  auto one = first.getKey("/Next");
  auto two = one.getKey("/Next");
  EXPECT_EQ(one.getKey("/Title").getUTF8Value(), "1  One");
  EXPECT_EQ(two.getKey("/Title").getUTF8Value(), "2  Two");
  EXPECT_EQ(two.getKey("/First").getKey("/Title").getUTF8Value(), "2.1  Part");
  auto pages = file.getAllPages();
  ASSERT_GT(pages.size(), 4u);
  EXPECT_EQ(two.getKey("/Dest").getArrayItem(0).getObjGen(), pages.back().getObjGen());
  // Text and page number of each of three lines, and the link of the text.
  auto contents = pages[1].getKey("/Annots");
  ASSERT_EQ(contents.getArrayNItems(), 6);
  EXPECT_EQ(contents.getArrayItem(2).getKey("/Dest").unparse(), two.getKey("/Dest").unparse());
  auto links = pages[2].getKey("/Annots");
  ASSERT_EQ(links.getArrayNItems(), 1);
  EXPECT_EQ(links.getArrayItem(0).getKey("/Dest").unparse(), two.getKey("/Dest").unparse());
  const auto area = links.getArrayItem(0).getKey("/Rect").getArrayAsRectangle();
  EXPECT_GT(area.urx - area.llx, 40);
  EXPECT_GT(area.llx, 60) << "not from the margin of the page, but from the words";
  EXPECT_LT(area.ury, 842 - 60);
}

/// `lines` entries, and then the text; wherever it comes to the foot of a page.
class FootOfPageTest : public BookTest, public ::testing::WithParamInterface<int> {
 protected:
  [[nodiscard]] std::vector<QStringList> PagesWith(const QString& text) const {
    const QString above = QStringLiteral("# T\n\n## One\n\n") +
                          QStringLiteral("- entry\n").repeated(GetParam()) + u'\n';
    return LinesOfPages(above + text);
  }

  /// The place of the line that holds the words: its page, and its number there.
  static std::pair<size_t, qsizetype> PlaceOf(const std::vector<QStringList>& pages,
                                              const QString& words) {
    for (size_t page = 0; page < pages.size(); ++page) {
      for (qsizetype line = 0; line < pages[page].size(); ++line) {
        if (pages[page][line].contains(words)) return {page, line};
      }
    }
    ADD_FAILURE() << "nowhere: " << words.toStdString();
    return {};
  }

  static QString After(const std::vector<QStringList>& pages, const QString& words, int lines) {
    const auto [page, line] = PlaceOf(pages, words);
    return pages[page].value(line + lines);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryHeight, FootOfPageTest, ::testing::Range(40, 62));

TEST_P(FootOfPageTest, HeadingStandsOnAPageWithTwoLinesOfItsText) {
  const auto pages = PagesWith(QStringLiteral("### Heading\n\n") + kParagraph + u'\n');
  EXPECT_TRUE(After(pages, QStringLiteral("Heading"), 1).startsWith(QStringLiteral("Some words")));
  EXPECT_TRUE(After(pages, QStringLiteral("Heading"), 2).contains(QStringLiteral("words")));
}

TEST_P(FootOfPageTest, MessageStandsOnAPageWithItsAdvice) {
  const auto pages = PagesWith(QStringLiteral("First.\nSecond.\n: Advice.\n"));
  EXPECT_EQ(After(pages, QStringLiteral("First."), 1), QStringLiteral("Second."));
  EXPECT_EQ(After(pages, QStringLiteral("First."), 2), QStringLiteral("Advice."));
}

TEST_P(FootOfPageTest, PictureStandsOnAPageWithItsCaption) {
  MakePicture(QStringLiteral("form.png"), QSize(400, 120));
  const auto pages = PagesWith(QStringLiteral("![The form](form.png)\n"));
  const auto [page, line] = PlaceOf(pages, QStringLiteral("The form"));
  ASSERT_GT(line, 0);
  EXPECT_EQ(pages[page][line - 1], QString(QChar::ObjectReplacementCharacter));
}

TEST_P(FootOfPageTest, SmallTableStandsOnOnePageBelowWhatAnnouncesIt) {
  const auto pages = PagesWith(
      QStringLiteral("The values:\n\n| head | b |\n|---|---|\n| c | d |\n| e | last |\n"));
  const auto announced = PlaceOf(pages, QStringLiteral("The values:"));
  EXPECT_EQ(PlaceOf(pages, QStringLiteral("head")).first, announced.first);
  EXPECT_EQ(PlaceOf(pages, QStringLiteral("last")).first, announced.first);
}

TEST_F(BookTest, EachChapterBeginsAPage) {
  const auto pages = LinesOfPages(QStringLiteral("# T\n\n## One\n\nText.\n\n## Two\n\nText.\n"));
  ASSERT_EQ(pages.size(), 2u);
  EXPECT_EQ(pages[1], QStringList({QStringLiteral("2  Two"), QStringLiteral("Text.")}));
}

TEST_F(BookTest, EntriesStandBesideTheirMarks) {
  const auto pages =
      LinesOfPages(QStringLiteral("# T\n\n## One\n\n1. first\n2. second\n\n- entry\n"));
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_EQ(pages[0].mid(1),
            QStringList({QStringLiteral("first"), QStringLiteral("1."), QStringLiteral("second"),
                         QStringLiteral("2."), QStringLiteral("entry"), QStringLiteral("•")}));
}

TEST_F(BookTest, PictureLargerThanAPageFitsOne) {
  MakePicture(QStringLiteral("form.png"), QSize(3000, 6000));
  const QByteArray pdf = Printed(QStringLiteral("# T\n\n## One\n\n![form](form.png)\n\nBelow.\n"));
  EXPECT_EQ(PagesOf(pdf), 3);
}

TEST_F(BookTest, LongManualComesToAnEnd) {
  QString text = QStringLiteral("# T\n");
  for (int chapter = 0; chapter < 30; ++chapter) {
    text += QStringLiteral("\n## Chapter\n");
    for (int section = 0; section < 5; ++section) {
      text += QStringLiteral("\n### Section\n\n") + kParagraph +
              QStringLiteral("\n\nMessage.\n: ") + kParagraph + u'\n';
    }
  }
  const QByteArray pdf = Printed(text);
  EXPECT_TRUE(IsWholePdf(pdf));
  // 30 chapters, the title page, and a table of contents of 180 lines.
  EXPECT_GE(PagesOf(pdf), 30 + 1 + 3);
}

TEST_F(BookTest, MissingPictureIsToldByItsName) {
  EXPECT_NE(SentenceOf([this] {
              static_cast<void>(Printed(QStringLiteral("# T\n\n## One\n\n![form](gone.png)\n")));
            }).find("gone.png can't be read"),
            std::string::npos);
}

#ifdef KESTRIX_HELP_FOLDER
/// The manual that is installed.
TEST(InstalledManual, IsAWholePdfOfManyPages) {
  QFile file(QStringLiteral(KESTRIX_HELP_FOLDER "/hlpAnnlyAdv.pdf"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray pdf = file.readAll();
  EXPECT_TRUE(IsWholePdf(pdf));
  EXPECT_GE(PagesOf(pdf), 20);
  EXPECT_LT(pdf.size(), 8 * 1024 * 1024);
}
#endif

}  // namespace
}  // namespace kestrix::help
