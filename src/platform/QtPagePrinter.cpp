#include "platform/QtPagePrinter.h"

#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>

#include "platform/WindowInFront.h"

namespace kestrix {

std::unique_ptr<QPagedPaintDevice> QtPagePrinter::Choose(const QString& title) {
  auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
  printer->setFullPage(true);
  const QPointer<QPrintDialog> dialog = new QPrintDialog(printer.get(), WindowInFront());
  dialog->setWindowTitle(title);
  dialog->setOption(QAbstractPrintDialog::PrintPageRange, false);
  const bool accepted = dialog->exec() == QDialog::Accepted;
  delete dialog;
  if (!accepted) return nullptr;
  return printer;
}

}  // namespace kestrix
