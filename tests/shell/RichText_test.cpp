#include "shell/RichText.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTextCursor>
#include <QTextTable>

#include "support/Files.h"
#include "support/FormHands.h"

namespace kestrix {
namespace {

const char kRedDot[] = "data:image/gif;base64,R0lGODlhAQABAIAAAP8AAP///ywAAAAAAQABAAACAkQBADs=";

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
    EXPECT_TRUE(document_->Take(text));
    (void)box_.grab();
    return box_.toPlainText();
  }
  /// A text as our own saving writes it, with `body` in it.
  [[nodiscard]] static QString Ours(const QString& body) {
    QTextDocument empty;
    const QString written = empty.toHtml();
    return written.left(written.indexOf(QStringLiteral("<p "))) + body +
           QStringLiteral("</body></html>");
  }
  [[nodiscard]] static bool IsRich(const QString& body) {
    return KindOf(Ours(body)) == TextKind::kRich;
  }
  [[nodiscard]] static QString Table(const QString& rows) {
    return QStringLiteral("<table border=\"1\">") + rows + QStringLiteral("</table>");
  }

  RichTextBox box_;
  SelfContainedDocument* document_ = nullptr;
};

/// Everything that a document of ours may hold, from whatever page it came.
QString Everything() {
  return QStringLiteral(
             "<h1 align=center>Press</h1><p dir=rtl align=right>one <b>two</b> <i>i</i> <u>u</u> "
             "<s>s</s> <sub>2</sub><sup>3</sup> <tt>t</tt> <font color=red size=+2 face='A B'>f"
             "</font> <a name=n>here</a> <a href='http://x/?a=b&amp;c'>link</a><br>line &lt; end"
             "</p><ul><li><b>three</b><ol start=3 type=a><li>x</ol><li class=checked>ch</ul>"
             "<hr width=50%><blockquote>q</blockquote>"
             "<table border=1 cellpadding=3 width=80% bgcolor=#abc style='border-collapse:collapse;"
             "margin:3px'><thead><tr><th colspan=2 style='padding:3px;border:1px solid red'>h</th>"
             "</tr></thead><tr><td rowspan=2 width=40%>1</td><td>2</td></tr><tr><td>3</td></tr>"
             "</table><img width=20 height=20 src='%1'><p style='line-height:150%;text-indent:9px;"
             "page-break-before:always;background-color:#010203'>z</p><p></p>")
      .arg(QLatin1String(kRedDot));
}

TEST_F(RichTextTest, WhatOurSavingWroteComesBackAsItWas) {
  QTextDocument page;
  page.setHtml(Everything());
  const QString written = page.toHtml();
  EXPECT_EQ(KindOf(written), TextKind::kRich);
  Shown(written);
  EXPECT_EQ(document_->toHtml(), written);
  EXPECT_FALSE(document_->isModified());

  QTextCursor all(&page);
  all.select(QTextCursor::Document);
  EXPECT_EQ(KindOf(all.selection().toHtml()), TextKind::kRich) << "what a copy holds";
}

TEST_F(RichTextTest, PlainTextOfFullSizeOpensAgainAfterItWasSaved) {
  const QString line = QStringLiteral("Guard of the press\n");
  Shown(line.repeated(49'000));
  EXPECT_EQ(KindOf(document_->toHtml()), TextKind::kRich);
}

TEST_F(RichTextTest, EverythingElseIsShownAsThePlainTextThatItIs) {
  for (const char* text :
       {"guard < 20 mm & <b>fixed</b>", "", "see <html>", "a\nb\n", "<html><body><b>x</b>",
        "<!DOCTYPE html><html><body><p>x</p></body></html>",
        "<html><table cellpadding=\"999999999\"><tr><td>x</table>",
        "<html><body><img src=\"/dev/zero\">x</body></html>"}) {
    EXPECT_EQ(KindOf(QString::fromLatin1(text)), TextKind::kPlain) << text;
    EXPECT_EQ(Shown(QString::fromLatin1(text)), text);
  }
}

TEST_F(RichTextTest, OnlyTheTagsAndAttributesThatWeWriteAreRich) {
  EXPECT_TRUE(IsRich("<p style=\" margin-top:0px; color:rgba(1,2,3,0.498039);\">x</p>"));
  EXPECT_TRUE(IsRich("<pre> x\ty</pre>"));
  for (const char* body :
       {"<b>x</b>", "<p onclick=\"x\">x</p>", "<p style=\"position:fixed;\">x</p>", "<p>x",
        "<p>x</p></p>", "<ul></p><ul>", "<p x>x</p>", "<P>x</P>", "<p><![CDATA[x]]></p>",
        "<p>&#769;</p>", "<p style=\"color:url(/dev/zero)\">x</p>", "<base href=\"/\" />",
        "<style>p { color: url(x); }</style>", "<style>@import x;</style>",
        "<p><img src=\"/dev/zero\" /></p>", "<p><img src=\"file:///dev/zero\" /></p>",
        "<p title=\"<\">x</p>", "<p style='color:red\">x</p>"})
    EXPECT_FALSE(IsRich(QString::fromLatin1(body))) << body;
}

TEST_F(RichTextTest, NumbersBeyondTheirBoundsAreNotRich) {
  const QString cell = QStringLiteral("<tr><td>x</td></tr></table>");
  EXPECT_TRUE(IsRich("<table cellpadding=\"12\">" + cell));
  for (const char* number : {"3001", "99999", "1e9", "-9999", "12em", ""})
    EXPECT_FALSE(IsRich(QStringLiteral("<table cellpadding=\"%1\">").arg(number) + cell)) << number;
  for (const char* style : {"font-size:72pt", "line-height:200%", "margin-left:-999px"})
    EXPECT_TRUE(IsRich(QStringLiteral("<p style=\"%1;\">x</p>").arg(style))) << style;
  for (const char* style : {"font-size:73pt", "line-height:201%", "margin-left:1000px",
                            "margin-left:5em", "text-indent:1e9px", "margin-top:99999px"})
    EXPECT_FALSE(IsRich(QStringLiteral("<p style=\"%1;\">x</p>").arg(style))) << style;
}

TEST_F(RichTextTest, NestingAndNumbersOfElementsHaveBounds) {
  const auto nested = [](const QString& open, const QString& close, int times) {
    return open.repeated(times) + QStringLiteral("x") + close.repeated(times);
  };
  EXPECT_TRUE(IsRich(nested("<ul><li>", "</li></ul>", 20)));
  EXPECT_FALSE(IsRich(nested("<ul><li>", "</li></ul>", 200)));
  const QString table = QStringLiteral("<table><tr><td>");
  EXPECT_TRUE(IsRich(nested(table, "</td></tr></table>", 3)));
  EXPECT_FALSE(IsRich(nested(table, "</td></tr></table>", 4)));
  EXPECT_TRUE(IsRich("<p>" + QStringLiteral("<span>x</span>").repeated(4000) + "</p>"));
  EXPECT_FALSE(IsRich("<p>" + QStringLiteral("<span>x</span>").repeated(6000) + "</p>"));
  EXPECT_TRUE(IsRich(QStringLiteral("<p>x</p>").repeated(50'000)));
  EXPECT_FALSE(IsRich(QStringLiteral("<p>x</p>").repeated(50'001)));
  const QString large = QStringLiteral("<p style=\" font-size:40pt;\">x</p>");
  EXPECT_TRUE(IsRich(large.repeated(5000)));
  EXPECT_FALSE(IsRich(large.repeated(5001)));
}

TEST_F(RichTextTest, CellsOfATableFillItsRows) {
  EXPECT_TRUE(IsRich(Table("<tr><td colspan=\"2\">1</td></tr><tr><td>2</td><td>3</td></tr>")));
  EXPECT_TRUE(IsRich(Table("<tr><td rowspan=\"2\">1</td><td>2</td></tr><tr><td>3</td></tr>")));
  for (const char* rows :
       {"<tr><td>1</td></tr><tr><td>2</td><td>3</td></tr>", "<td>1</td>",
        "<tr><td colspan=\"999\">1</td></tr><tr><td>2</td></tr>", "<tr><td><tr></tr></td></tr>",
        "<tr><td colspan=\"0\">1</td></tr>",
        "<tr><td rowspan=\"2\">1</td><td>2</td></tr><tr><td>3</td><td>4</td></tr>"})
    EXPECT_FALSE(IsRich(Table(QString::fromLatin1(rows)))) << rows;
  EXPECT_FALSE(IsRich(Table("<tr><td colspan=\"2600\">1</td></tr><tr>" +
                            QStringLiteral("<td>x</td>").repeated(2600) + "</tr>")));
}

TEST_F(RichTextTest, TextBeyondThePlainBoundIsTooLarge) {
  const QString million = QStringLiteral("Guard\t ").repeated(1024 * 1024 / 7);
  EXPECT_EQ(KindOf(million), TextKind::kPlain);
  EXPECT_EQ(KindOf(million + million), TextKind::kTooLarge);
  EXPECT_EQ(KindOf(QString(49'999, u'\n')), TextKind::kPlain);
  EXPECT_EQ(KindOf(QString(3'000'000, u'\n')), TextKind::kTooLarge);
  EXPECT_EQ(KindOf("e" + QString(100, QChar(0x301))), TextKind::kPlain);
  EXPECT_EQ(KindOf("e" + QString(200'000, QChar(0x301))), TextKind::kTooLarge);

  Shown("kept");
  EXPECT_FALSE(document_->Take(QString(3'000'000, u'\n')));
  EXPECT_EQ(box_.toPlainText(), "kept");
}

TEST_F(RichTextTest, EndlessWordsAreBrokenAnywhereSoThatTheyAreShownInTime) {
  const QString endless = QStringLiteral("x").repeated(1'000'000);
  // By words it would take hours, and the test would never end.
  EXPECT_EQ(Shown(endless), endless);
  EXPECT_EQ(Shown(Ours("<p>" + endless + "</p>")), endless);

  Shown("words again");
  EXPECT_EQ(document_->defaultTextOption().wrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
}

/// Neither the document nor what the toolkit falls back to for want of a picture opens a file.
TEST_F(RichTextTest, NothingOutsideOfTheTextIsReadOrShown) {
  QTemporaryDir folder;
  const QString picture = folder.filePath("picture.png");
  QImage image(40, 40, QImage::Format_RGB32);
  image.fill(Qt::red);
  ASSERT_TRUE(image.save(picture));
  const QString pipe = folder.filePath("pipe");
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  const QByteArray svg =
      "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'>"
      "<rect width='40' height='40' fill='red'/></svg>";
  for (const QString& source :
       {picture, QStringLiteral("file://") + picture, pipe, QStringLiteral("/dev/zero"),
        QStringLiteral("http://127.0.0.1:1/a.png"), QStringLiteral(":/qt-project.org/a.png"),
        QStringLiteral("data:image/svg+xml;base64,") + QString::fromLatin1(svg.toBase64())}) {
    Shown("text");
    QTextImageFormat format;
    format.setName(source);
    format.setWidth(40);
    format.setHeight(40);
    // Past all that looks at texts first.
    QTextCursor(document_).insertImage(format);
    const QImage shown = box_.grab().toImage();
    for (int x = 0; x < shown.width(); ++x)
      ASSERT_NE(shown.pixelColor(x, 25), QColor(Qt::red)) << source.toStdString();
  }
}

TEST_F(RichTextTest, PictureWithinTheTextIsShownUpToABound) {
  const auto pixel = [this](const QString& source) {
    const QVariant found = document_->resource(QTextDocument::ImageResource, QUrl(source));
    return found.value<QImage>().pixelColor(0, 0);
  };
  EXPECT_EQ(pixel(QLatin1String(kRedDot)), QColor(Qt::red));
  QByteArray huge;
  QBuffer buffer(&huge);
  QImage image(8000, 8000, QImage::Format_Mono);
  image.fill(1);
  ASSERT_TRUE(image.save(&buffer, "PNG"));
  EXPECT_EQ(pixel("data:image/png;base64," + QString::fromLatin1(huge.toBase64())).alpha(), 0);
}

TEST_F(RichTextTest, EmptyDocumentOfTheBoxOpensEmpty) {
  Shown("");
  EXPECT_EQ(Shown(document_->toHtml()), "");
}

TEST_F(RichTextTest, DamagedDocumentsOpenAsTheirText) {
  QTextDocument page;
  page.setHtml(Everything());
  const QByteArray whole = page.toHtml().toUtf8();
  for (qsizetype length = 0; length < whole.size(); length += 23) {
    const QString cut = QString::fromUtf8(whole.first(length));
    EXPECT_EQ(Shown(cut), cut);
  }
  QRandomGenerator random(14121);
  for (int round = 0; round < 300; ++round) {
    QByteArray damaged = whole;
    for (int hit = 0; hit < 8; ++hit) {
      const auto place = random.bounded(damaged.size());
      damaged[place] = static_cast<char>(random.bounded(1, 256));
    }
    EXPECT_FALSE(Shown(QString::fromUtf8(damaged)).isEmpty());
  }
}

}  // namespace
}  // namespace kestrix
