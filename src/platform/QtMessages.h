#pragma once

#include "platform/Messages.h"

namespace kestrix {

/// Message boxes of the desktop. A box lies over the window in front and holds the program until it
/// is answered; boxes may stand over one another. Texts are shown as they are, never as markup:
/// names that a user typed are part of them.
class QtMessages : public Messages {
 public:
  Button Show(const Message& message) override;
  void Beep() override;
};

}  // namespace kestrix
