#include "shell/RichText.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QRandomGenerator>
#include <QTextCursor>
#include <QTextEdit>

#include "support/Files.h"
#include "support/FormHands.h"

namespace kestrix {
namespace {

/// Shows a text as a document child does, and lays it out.
class RichTextTest : public ::testing::Test {
 protected:
  void SetUp() override {
    document_ = new SelfContainedDocument(&box_);
    box_.setDocument(document_);
    box_.resize(400, 300);
    box_.show();
  }
  QString Shown(const QString& text) {
    document_->Take(text);
    (void)box_.grab();
    return box_.toPlainText();
  }
  [[nodiscard]] static QString Nested(const QString& open, int times) {
    return QStringLiteral("<html><body>") + open.repeated(times) + QStringLiteral("hello");
  }

  QTextEdit box_;
  SelfContainedDocument* document_ = nullptr;
};

TEST_F(RichTextTest, DocumentThatTheBoxWroteComesBackAsItWas) {
  Shown("<html><body><p>one <b>two</b></p><ul><li>three</li></ul></body></html>");
  const QString written = document_->toHtml();
  EXPECT_TRUE(IsRichText(written));
  Shown(written);
  EXPECT_EQ(document_->toHtml(), written);
  EXPECT_FALSE(document_->isModified());
}

TEST_F(RichTextTest, PlainTextStaysAsItStandsWhateverItHolds) {
  for (const char* text : {"guard < 20 mm & <b>fixed</b>", "", "see <html>", "a\nb\n"}) {
    EXPECT_FALSE(IsRichText(text)) << text;
    EXPECT_EQ(Shown(text), text);
  }
}

TEST_F(RichTextTest, RichTextBeginsAsADocumentWhateverItsCapitalsAndSpaces) {
  EXPECT_TRUE(IsRichText(" \n<HTML><body>x"));
  EXPECT_TRUE(IsRichText("<!doctype HTML><p>x"));
  EXPECT_FALSE(IsRichText("<!doctype xml>"));
  EXPECT_FALSE(IsRichText("<ht"));
}

TEST_F(RichTextTest, TablesInTablesBeyondMeasureAreShownAsTheirText) {
  EXPECT_TRUE(IsRichText(Nested("<table><tr><td>", 8)));
  const QString hostile = Nested("<table><tr><td>", 10'000);
  EXPECT_FALSE(IsRichText(hostile));
  EXPECT_EQ(Shown(hostile), hostile);
}

TEST_F(RichTextTest, NestingBeyondMeasureIsShownAsItsText) {
  for (const char* open : {"<div>", "<ul><li>", "<b>", "<blockquote>"}) {
    EXPECT_TRUE(IsRichText(Nested(open, 100))) << open;
    EXPECT_FALSE(IsRichText(Nested(open, 1000))) << open;
  }
}

TEST_F(RichTextTest, ManyElementsBesideEachOtherAreNoNesting) {
  EXPECT_TRUE(IsRichText(Nested("<div><b>x</b></div>", 1000)));
  EXPECT_TRUE(IsRichText(Nested("<p>x<br>", 1000)));
  EXPECT_TRUE(IsRichText(Nested("<table><tr><td>x</td></tr></table>", 1000)));
}

TEST_F(RichTextTest, StyleSheetsBeyondMeasureAreShownAsTheirText) {
  const QString style = QStringLiteral("<style>p{color:#204080}</style>");
  const QString body = QStringLiteral("<p>hello</p>").repeated(2000);
  EXPECT_TRUE(IsRichText("<html><head>" + style.repeated(20) + "</head><body>" + body));
  EXPECT_FALSE(IsRichText("<html>" + style.repeated(200) + Nested("<div>", 200) + body));
  EXPECT_FALSE(IsRichText("<html><style>" + QStringLiteral("* * p{}").repeated(2000) + "</style>" +
                          Nested("<div>", 200) + body));
}
TEST_F(RichTextTest, HugeSpansAreShownAsTheirText) {
  EXPECT_FALSE(IsRichText("<html><table><tr><td colspan=20000>x</table>"));
  EXPECT_FALSE(IsRichText("<html><table><tr><td rowspan = '99999'>x</table>"));
  EXPECT_TRUE(IsRichText("<html><table><tr><td colspan=\"12\">x</table>"));
}

TEST_F(RichTextTest, EndlessWordsAreBrokenAnywhereSoThatTheyAreShownInTime) {
  const QString endless = QStringLiteral("x").repeated(1'000'000);
  // By words it would take hours, and the test would never end.
  EXPECT_EQ(Shown(endless), endless);
  EXPECT_EQ(Shown(QStringLiteral("<html><body>") + endless), endless);

  Shown("words again");
  EXPECT_EQ(document_->defaultTextOption().wrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
}

TEST_F(RichTextTest, NothingOutsideOfTheTextIsRead) {
  QTemporaryDir folder;
  const QString picture = folder.filePath("picture.png");
  QImage image(40, 40, QImage::Format_RGB32);
  image.fill(Qt::red);
  ASSERT_TRUE(image.save(picture));
  for (const QString& source :
       {picture, QStringLiteral("file://") + picture, QStringLiteral("/dev/zero"),
        QStringLiteral("http://127.0.0.1:1/a.png"), QStringLiteral(":/qt-project.org/a.png")}) {
    EXPECT_EQ(document_->resource(QTextDocument::ImageResource, QUrl(source)), QVariant())
        << source.toStdString();
    Shown(QStringLiteral("<html><body><img src=\"%1\">text").arg(source));
  }
  Shown(QStringLiteral("<html><head><link rel=\"stylesheet\" href=\"file://%1\"></head>x")
            .arg(picture));
  SUCCEED() << "No layout waited for a file.";
}

TEST_F(RichTextTest, PictureWithinTheTextIsShown) {
  const QUrl red("data:image/gif;base64,R0lGODlhAQABAIAAAP8AAP///ywAAAAAAQABAAACAkQBADs=");
  EXPECT_FALSE(document_->resource(QTextDocument::ImageResource, red).isNull());
}

TEST_F(RichTextTest, EmptyDocumentOfTheBoxOpensEmpty) {
  Shown("");
  EXPECT_EQ(Shown(document_->toHtml()), "");
}

TEST_F(RichTextTest, TextThatADamagedTagSwallowsIsShownWithItsTags) {
  const QString damaged = "<html><body style=\"color:red><p>Press</p></body></html>";
  EXPECT_EQ(Shown(damaged), damaged);
}

TEST_F(RichTextTest, DamagedDocumentsOpenAsWhatCanBeRead) {
  Shown(
      "<html><body><h1>Press</h1><p>one <b>two</b></p><ul><li>three</li></ul>"
      "<table border=1><tr><td>a</td><td colspan=2>b</td></tr></table>"
      "<img src=\"data:image/gif;base64,R0lGODlhAQABAIAAAP8AAP///ywAAAAAAQABAAACAkQBADs=\">"
      "</body></html>");
  const QByteArray whole = document_->toHtml().toUtf8();
  for (qsizetype length = 0; length < whole.size(); length += 23)
    Shown(QString::fromUtf8(whole.first(length)));

  QRandomGenerator random(14121);
  for (int round = 0; round < 300; ++round) {
    QByteArray damaged = whole;
    for (int hit = 0; hit < 8; ++hit) {
      const auto place = random.bounded(damaged.size());
      damaged[place] = static_cast<char>(random.bounded(256));
    }
    const QString text = Shown(QString::fromUtf8(damaged));
    EXPECT_FALSE(text.isEmpty());
  }
}

}  // namespace
}  // namespace kestrix
