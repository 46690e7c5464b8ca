#include "platform/QtPagePrinter.h"

#include <QPrinter>

#include "platform/QtPrinting.h"

namespace kestrix {

std::unique_ptr<QPagedPaintDevice> QtPagePrinter::Choose(const QString& title) {
  std::unique_ptr<QPrinter> printer = ChosenPrinter(title);
  if (printer) printer->setFullPage(true);
  return printer;
}

}  // namespace kestrix
