#include "support/FakeMessages.h"

#include <gtest/gtest.h>

namespace kestrix {
namespace {

Button SafeAnswer(const Message& message) {
  return message.buttons.contains(Button::kNo) ? Button::kNo : Button::kOk;
}

}  // namespace

FakeMessages::Expectation& FakeMessages::Expect(const Message& message) {
  return expected_.emplace_back(message);
}

FakeMessages::Expectation& FakeMessages::ExpectTell(Icon icon, const QString& title,
                                                    const QString& text) {
  return Expect(Tell(icon, title, text));
}

FakeMessages::Expectation& FakeMessages::ExpectAsk(Icon icon, const QString& title,
                                                   const QString& text, Button answer) {
  return Expect(Ask(icon, title, text)).Answer(answer);
}

void FakeMessages::Verify() {
  for (const Expectation& missed : expected_)
    ADD_FAILURE() << "Expected message box never came: "
                  << ::testing::PrintToString(missed.message_);
  expected_.clear();
}

Button FakeMessages::Show(const Message& message) {
  shown_.append(message);
  if (expected_.empty()) {
    ADD_FAILURE() << "Unexpected message box: " << ::testing::PrintToString(message);
    return SafeAnswer(message);
  }
  if (expected_.front().message_ != message) {
    const Message& next = expected_.front().message_;
    ADD_FAILURE() << "Wrong message box: " << ::testing::PrintToString(message)
                  << "\n        expected: " << ::testing::PrintToString(next);
    // A box that is nearly the expected one stands for it, so that one slip is reported once.
    if (next.text == message.text || next.title == message.title) expected_.pop_front();
    return SafeAnswer(message);
  }
  // Taken off first: what happens behind the box may show the next one.
  const Expectation met = std::move(expected_.front());
  expected_.pop_front();
  if (met.while_open_) met.while_open_();
  return met.answer_;
}

}  // namespace kestrix
