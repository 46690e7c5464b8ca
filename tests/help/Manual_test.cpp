#include "HelpTest.h"

namespace kestrix::help {
namespace {

using Kind = Block::Kind;
using Face = Run::Face;

class ManualTest : public HelpTest {
 protected:
  /// The sentence about a manual that has this line behind its title.
  static std::string SentenceAbout(const char* text) {
    return SentenceOf([&] { static_cast<void>(Read(QStringLiteral("# T\n\n") + QString(text))); });
  }
};

TEST_F(ManualTest, EveryKindOfBlockIsRead) {
  const Manual manual = Read(QStringLiteral(
      "# The title\n\nBefore.\n\n## One {#first}\n\n### Part\n\nA text\nof two lines.\n\n"
      "- an entry\n  that goes on\n1. a step\n\n![a form](form.png)\n\n| a | b |\n|---|---|\n"
      "| c | d |\n\n## Two\n\nFirst words.\nSecond words.\n: What to do,\n  and then.\n"));
  EXPECT_EQ(manual.title, QStringLiteral("The title"));
  const Kind kinds[] = {Kind::kParagraph, Kind::kChapter, Kind::kSection, Kind::kParagraph,
                        Kind::kBullet,    Kind::kStep,    Kind::kPicture, Kind::kTable,
                        Kind::kChapter,   Kind::kMessage};
  ASSERT_EQ(manual.blocks.size(), std::size(kinds));
  for (size_t i = 0; i < std::size(kinds); ++i) {
    EXPECT_EQ(manual.blocks[i].kind, kinds[i]) << i;
  }
  EXPECT_EQ(PlainText(manual.blocks[1].line), QStringLiteral("One"));
  EXPECT_EQ(manual.blocks[1].anchor, QStringLiteral("first"));
  EXPECT_EQ(manual.blocks[2].anchor, QStringLiteral("part"));
  EXPECT_EQ(PlainText(manual.blocks[3].line), QStringLiteral("A text of two lines."));
  EXPECT_EQ(PlainText(manual.blocks[4].line), QStringLiteral("an entry that goes on"));
  EXPECT_EQ(manual.blocks[6].picture, QStringLiteral("form.png"));
  ASSERT_EQ(manual.blocks[7].rows.size(), 2u);
  EXPECT_EQ(PlainText(manual.blocks[7].rows[1][1]), QStringLiteral("d"));
  ASSERT_EQ(manual.blocks[9].messages.size(), 2u);
  EXPECT_EQ(PlainText(manual.blocks[9].messages[1]), QStringLiteral("Second words."));
  EXPECT_EQ(PlainText(manual.blocks[9].line), QStringLiteral("What to do, and then."));
}

TEST_F(ManualTest, FacesAreToldApart) {
  const Manual manual =
      Read(QStringLiteral("# T\n\nPress **Open Orgn**, type `a*b`, see *name*.\n"));
  const Line& line = manual.blocks[0].line;
  ASSERT_EQ(line.size(), 7u);
  EXPECT_EQ(line[1].text, QStringLiteral("Open Orgn"));
  EXPECT_EQ(line[1].face, Face::kCaption);
  EXPECT_EQ(line[3].text, QStringLiteral("a*b"));
  EXPECT_EQ(line[3].face, Face::kTyped);
  EXPECT_EQ(line[5].text, QStringLiteral("name"));
  EXPECT_EQ(line[5].face, Face::kVariable);
  EXPECT_EQ(line[6].face, Face::kPlain);
}

TEST_F(ManualTest, LinkLeadsToAHeadingThatIsThere) {
  const Manual manual = Read(QStringLiteral("# T\n\nSee [the part](#part).\n\n## Part\n"));
  const help::Run& link = manual.blocks[0].line.at(1);
  EXPECT_EQ(link.text, QStringLiteral("the part"));
  EXPECT_EQ(link.face, Face::kLink);
  EXPECT_EQ(link.target, QStringLiteral("part"));
}

TEST_F(ManualTest, EveryLineAboveWhatToDoIsAMessage) {
  const Manual manual = Read(QStringLiteral(
      "# T\n\n1\\. Files missing\nSee *this* \"file\".\n: Look.\n\nSecond: yes\n: No.\n"));
  ASSERT_EQ(manual.blocks.size(), 2u);
  ASSERT_EQ(manual.blocks[0].messages.size(), 2u);
  EXPECT_EQ(PlainText(manual.blocks[0].messages[0]), QStringLiteral("1. Files missing"));
  EXPECT_EQ(PlainText(manual.blocks[0].messages[1]), QStringLiteral("See this \"file\"."));
  EXPECT_EQ(manual.blocks[0].messages[1].at(1).face, Face::kVariable);
  EXPECT_EQ(PlainText(manual.blocks[1].messages.at(0)), QStringLiteral("Second: yes"));
}

TEST_F(ManualTest, PicturesAreNamedOnceInTheirOrder) {
  const Manual manual =
      Read(QStringLiteral("# T\n\n![b](b.png)\n\n![a](a.png)\n\n![again](b.png)\n"));
  EXPECT_EQ(manual.Pictures(), QStringList({QStringLiteral("b.png"), QStringLiteral("a.png")}));
}

TEST_F(ManualTest, MistakesAreToldWithTheirWords) {
  EXPECT_EQ(SentenceOf([] { static_cast<void>(Read(QStringLiteral("no title\n"))); }),
            "m.md: the title (\"# Title\") is missing.");
  EXPECT_EQ(SentenceAbout(""), "m.md: no text follows the title.");
  EXPECT_EQ(SentenceAbout("![shows](http://x/a.png)\n"),
            "m.md: a picture reads ![what it shows](name.png), unlike \"http://x/a.png\".");
  EXPECT_EQ(SentenceAbout("#### deep\n"),
            "m.md: only \"##\" and \"###\" begin a heading, unlike \"deep\".");
  EXPECT_EQ(SentenceAbout("## A {#a}\n\n## B {#a}\n"),
            "m.md: two headings have one anchor, \"a\".");
  EXPECT_EQ(SentenceAbout("Message.\n: \n"), "m.md: nothing stands below a message, \"Message.\".");
  EXPECT_EQ(SentenceAbout("See [it](#gone).\n"), "m.md: a link leads to no heading, \"gone\".");
}

TEST_F(ManualTest, MissingSourceIsToldByItsName) {
  const std::string sentence =
      SentenceOf([this] { static_cast<void>(Manual::Load(PathOf(QStringLiteral("no.md")))); });
  EXPECT_NE(sentence.find("no.md can't be read"), std::string::npos) << sentence;
}

}  // namespace
}  // namespace kestrix::help
