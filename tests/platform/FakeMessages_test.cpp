#include "support/FakeMessages.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace kestrix {
namespace {

const Message kTold = Tell(Icon::kInformation, "BELTROVAN", "Home page already open.");
const Message kAsked = Ask(Icon::kInformation, "BELTROVAN", "Wish to close?");

TEST(FakeMessagesTest, ExpectedBoxGetsItsAnswerAndIsKept) {
  FakeMessages messages;
  messages.Expect(kTold);
  messages.ExpectAsk(Icon::kInformation, "BELTROVAN", "Wish to close?", Button::kYes);
  EXPECT_EQ(messages.Show(kTold), Button::kOk);
  EXPECT_EQ(messages.Show(kAsked), Button::kYes);
  EXPECT_EQ(messages.Shown(), QList<Message>({kTold, kAsked}));
  EXPECT_EQ(messages.Waiting(), 0);
}

TEST(FakeMessagesTest, UnexpectedQuestionFailsTheTestAndIsAnsweredNo) {
  FakeMessages messages;
  Message dangerous = kAsked;
  dangerous.default_button = Button::kYes;
  Button answer = Button::kYes;
  EXPECT_NONFATAL_FAILURE(answer = messages.Show(dangerous), "Wish to close?");
  EXPECT_EQ(answer, Button::kNo);
}

TEST(FakeMessagesTest, BoxThatDiffersInAnythingFailsTheTest) {
  struct Slip {
    const char* what;
    void (*make)(Message&);
  };
  constexpr Slip kSlips[] = {
      {"text", [](Message& message) { message.text += u' '; }},
      {"title", [](Message& message) { message.title += u'.'; }},
      {"icon", [](Message& message) { message.icon = Icon::kCritical; }},
      {"buttons", [](Message& message) { message.buttons = {Button::kOk}; }},
      {"default", [](Message& message) { message.default_button = Button::kYes; }},
  };
  for (const Slip& slip : kSlips) {
    FakeMessages messages;
    messages.Expect(kAsked).Answer(Button::kYes);
    Message wrong = kAsked;
    slip.make(wrong);
    SCOPED_TRACE(slip.what);
    EXPECT_NONFATAL_FAILURE((void)messages.Show(wrong), "Wrong message box");
    EXPECT_EQ(messages.Waiting(), 0);
  }
}

TEST(FakeMessagesTest, BoxThatNeverCameFailsTheTest) {
  FakeMessages messages;
  messages.Expect(kTold);
  EXPECT_NONFATAL_FAILURE(messages.Verify(), "never came");
  EXPECT_EQ(messages.Waiting(), 0);
}

TEST(FakeMessagesTest, BoxCanComeBehindAnOpenBox) {
  FakeMessages messages;
  bool open = false;
  messages.Expect(kAsked).Answer(Button::kYes).WhileOpen([&] {
    open = true;
    EXPECT_EQ(messages.Show(kTold), Button::kOk);
  });
  messages.Expect(kTold);
  EXPECT_EQ(messages.Show(kAsked), Button::kYes);
  EXPECT_TRUE(open);
}

}  // namespace
}  // namespace kestrix
