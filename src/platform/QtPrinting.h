#pragma once

#include <memory>

#include "platform/Services.h"

class QPrinter;

namespace kestrix {

/// The printers of the desktop, a PDF file among them, so that there is a way to print where no
/// printer is installed. It remembers the printer that was chosen last.
class QtPrinting : public Printing {
 public:
  QtPrinting();
  QtPrinting(const QtPrinting&) = delete;
  QtPrinting& operator=(const QtPrinting&) = delete;
  ~QtPrinting() override;

  bool ChoosePrinter(const QString& title, bool selection) override;
  void Print(const QTextDocument& document) override;

 private:
  std::unique_ptr<QPrinter> printer_;
};

}  // namespace kestrix
