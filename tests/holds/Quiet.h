#pragma once

#include "platform/QtFileSystem.h"
#include "support/FakePlatform.h"

namespace kestrix::holds {

/// A person who presses Yes, or OK, at once and keeps every box in mind.
class QuietMessages : public Messages {
 public:
  Button Show(const Message& message) override {
    shown.append(message);
    return message.buttons.contains(Button::kYes) ? Button::kYes : Button::kOk;
  }
  void Beep() override {}

  QList<Message> shown;
};

/// A desktop with real files and a quiet person; the rest of it does nothing.
class QuietDesk {
 public:
  [[nodiscard]] Platform& platform() { return platform_; }

  QuietMessages messages;

 private:
  FakePlatform fakes_;
  QtFileSystem files_;
  Platform platform_{
      messages,       files_,          fakes_.shell,     fakes_.windows, fakes_.settings,
      fakes_.dialogs, fakes_.printing, fakes_.clipboard, fakes_.clock,   fakes_.environment};
};

}  // namespace kestrix::holds
