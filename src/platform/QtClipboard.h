#pragma once

#include "platform/Services.h"

namespace kestrix {

/// The clipboard that all programs of the desktop share.
class QtClipboard : public Clipboard {
 public:
  void Clear() override;
  void SetText(const QString& text) override;
  [[nodiscard]] QString Text() const override;
};

}  // namespace kestrix
