#pragma once

#include <deque>
#include <functional>

#include "platform/Messages.h"
#include "support/Printers.h"

namespace kestrix {

/// Stands in for the person at the desktop: a queue of the message boxes that a test expects, each
/// with its answer. A box that differs from the next expected one, or comes when none is expected,
/// fails the test; it is answered No where it has a No, else OK. A box that never came fails the
/// test in Verify, which the destructor runs too.
class FakeMessages : public Messages {
 public:
  /// One expected box.
  class Expectation {
   public:
    explicit Expectation(Message message)
        : message_(std::move(message)), answer_(message_.default_button) {}
    /// What the person presses. Unless said, it is the default button.
    Expectation& Answer(Button button) {
      answer_ = button;
      return *this;
    }
    /// Runs `act` while the box is open: for what happens behind a box.
    Expectation& WhileOpen(std::function<void()> act) {
      while_open_ = std::move(act);
      return *this;
    }

   private:
    friend class FakeMessages;
    Message message_;
    Button answer_;
    std::function<void()> while_open_;
  };

  FakeMessages() = default;
  FakeMessages(const FakeMessages&) = delete;
  FakeMessages& operator=(const FakeMessages&) = delete;
  ~FakeMessages() override { Verify(); }

  /// The next box will be exactly `message`. Boxes are expected in the order of these calls.
  Expectation& Expect(const Message& message);
  /// The next box will tell, with OK alone.
  Expectation& ExpectTell(Icon icon, const QString& title, const QString& text);
  /// The next box will ask Yes or No with No as the default, and gets `answer`.
  Expectation& ExpectAsk(Icon icon, const QString& title, const QString& text, Button answer);

  /// Fails the test for each box that was expected and never came, and forgets them.
  void Verify();
  /// How many expected boxes haven't come yet.
  [[nodiscard]] int Waiting() const { return static_cast<int>(expected_.size()); }
  /// Every box that came, in order, expected or not.
  [[nodiscard]] const QList<Message>& Shown() const { return shown_; }
  [[nodiscard]] int Beeps() const { return beeps_; }

  Button Show(const Message& message) override;
  void Beep() override { ++beeps_; }

 private:
  std::deque<Expectation> expected_;
  QList<Message> shown_;
  int beeps_ = 0;
};

}  // namespace kestrix
