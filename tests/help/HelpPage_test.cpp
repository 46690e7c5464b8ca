#include "HelpPage.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

#include "HelpTest.h"

namespace kestrix::help {
namespace {

/// What a reader of the page meets, element by element.
struct Seen {
  QString error;
  QMap<QString, int> elements;
  QStringList addresses;  ///< every attribute that can lead somewhere
  QStringList anchors;
  QString text;
};

Seen Look(const QByteArray& page) {
  Seen seen;
  QXmlStreamReader reader(page);
  while (!reader.atEnd()) {
    switch (reader.readNext()) {
      case QXmlStreamReader::StartElement:
        ++seen.elements[reader.name().toString()];
        for (const auto& attribute : reader.attributes()) {
          if (attribute.name() == u"id") seen.anchors += attribute.value().toString();
          static const QStringList kLeading{"src", "href", "srcset", "action", "data", "style"};
          if (kLeading.contains(attribute.name().toString())) {
            seen.addresses += attribute.value().toString();
          }
        }
        break;
      case QXmlStreamReader::Characters:
        seen.text += reader.text();
        break;
      default:
        break;
    }
  }
  if (reader.hasError()) seen.error = reader.errorString();
  return seen;
}

class HelpPageTest : public HelpTest {
 protected:
  [[nodiscard]] QByteArray PageOf(const QString& text) const {
    return HelpPage(Read(text), TheirPictures());
  }
};

const QString kSource = QStringLiteral(
    "# Title\n\n## First\n\nSee [the *one* below](#shown).\n\n## Second {#shown}\n\n### First\n\n- "
    "one\n- two\n\n1. step\n\n"
    "Is 1 < 2 & \"so\"?\n: Yes, **very**.\n\n| a | b |\n|---|---|\n| c | d |\n\n"
    "![a *form*](form.png)\n");

TEST_F(HelpPageTest, PageIsWellFormedAndHoldsTheWholeManual) {
  MakePicture("form.png");
  const QByteArray page = PageOf(kSource);
  EXPECT_TRUE(page.startsWith("<!DOCTYPE html>"));
  const Seen seen = Look(page);
  EXPECT_EQ(seen.error, QString());
  EXPECT_TRUE(seen.text.contains("Is 1 < 2 & \"so\"?"));
  const QMap<QString, int> wanted{{"h1", 1}, {"h2", 2}, {"h3", 1},  {"nav", 1}, {"ul", 2},
                                  {"ol", 1}, {"li", 5}, {"dl", 1},  {"dt", 1},  {"dd", 1},
                                  {"th", 2}, {"td", 2}, {"img", 1}, {"a", 3}};
  for (auto it = wanted.begin(); it != wanted.end(); ++it) {
    EXPECT_EQ(seen.elements[it.key()], it.value()) << it.key().toStdString();
  }
  // For light and dark browsers, without a script.
  EXPECT_TRUE(page.contains("prefers-color-scheme: dark"));
  EXPECT_TRUE(page.contains("name=\"color-scheme\" content=\"light dark\""));
  EXPECT_FALSE(seen.elements.contains("script"));
}

TEST_F(HelpPageTest, ContentsAndLinksLeadToTheAnchorsOfHeadingsAndPicturesAreInThePage) {
  MakePicture("form.png");
  const Seen seen = Look(PageOf(kSource));
  EXPECT_EQ(seen.anchors, QStringList({"first", "shown", "first-next"}));
  EXPECT_EQ(seen.addresses.mid(0, 3), QStringList({"#first", "#shown", "#shown"}));
  ASSERT_EQ(seen.addresses.size(), 4);
  const QString head = "data:image/png;base64,";
  ASSERT_TRUE(seen.addresses[3].startsWith(head));
  EXPECT_EQ(QByteArray::fromBase64(seen.addresses[3].mid(head.size()).toLatin1()),
            TheirPictures().Bytes("form.png"));
}

TEST_F(HelpPageTest, MissingAndForeignPicturesAreToldByTheirNames) {
  EXPECT_NE(SentenceOf([this] { static_cast<void>(PageOf(kSource)); }).find("form.png"),
            std::string::npos);
  MakeFile("form.png", "no picture");
  EXPECT_NE(SentenceOf([this] { static_cast<void>(PageOf(kSource)); }).find("is no PNG picture"),
            std::string::npos);
}

#ifdef KESTRIX_HELP_FOLDER
/// The page that is installed.
TEST(InstalledPage, RefersToNothingOutsideOfItself) {
  QFile file(QStringLiteral(KESTRIX_HELP_FOLDER "/acci_alys_help.htm"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray page = file.readAll();
  const Seen seen = Look(page);
  EXPECT_EQ(seen.error, QString());
  EXPECT_GE(seen.elements[QStringLiteral("img")], 10);
  for (const QString& address : seen.addresses) {
    const bool within = address.startsWith(u'#') && seen.anchors.contains(address.mid(1));
    EXPECT_TRUE(within || address.startsWith("data:")) << address.left(80).toStdString();
  }
  const QRegularExpression outside("https?:|//[a-z]|url\\(|@import|<script|<link");
  const QRegularExpression data("data:[^\"]*");
  EXPECT_FALSE(QString::fromUtf8(page).remove(data).contains(outside));
  EXPECT_TRUE(seen.text.contains("New Project Number"));
}
#endif

}  // namespace
}  // namespace kestrix::help
