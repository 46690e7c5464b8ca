#pragma once

#include "platform/PagePrinter.h"

namespace kestrix {

/// The printers of the desktop, a PDF file among them.
class QtPagePrinter : public PagePrinter {
 public:
  [[nodiscard]] std::unique_ptr<QPagedPaintDevice> Choose(const QString& title) override;
};

}  // namespace kestrix
