#pragma once

#include <memory>

#include "platform/Services.h"

class QPrinter;

namespace kestrix {

/// Shows the printer dialog: of a text that has a selection or not, or of whole pages. Null when it
/// was cancelled.
[[nodiscard]] std::unique_ptr<QPrinter> ChosenPrinter(const QString& title, bool selection = false);

/// The printers of the desktop, a PDF file among them, so that there is a way to print where no
/// printer is installed. It remembers the printer that was chosen last.
class QtPrinting : public Printing {
 public:
  QtPrinting();
  Q_DISABLE_COPY_MOVE(QtPrinting)
  ~QtPrinting() override;

  bool ChoosePrinter(const QString& title, bool selection) override;
  void Print(const QTextDocument& document) override;

 private:
  std::unique_ptr<QPrinter> printer_;
};

}  // namespace kestrix
