#include "platform/QtPrinting.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>

#include "platform/Failure.h"
#include "platform/WindowInFront.h"

namespace kestrix {
namespace {

[[noreturn]] void Fail(const QString& why) {
  throw Failure(failure::kDeviceError, QStringLiteral("Failed to print: %1.").arg(why));
}

/// Printing into a file that can't be written ends without a word, so it is tried before.
void RequireWritable(const QString& path) {
  const bool existed = QFileInfo::exists(path);
  QFile file(path);
  if (!file.open(QIODevice::ReadWrite)) Fail(QStringLiteral("\"%1\" can't be written").arg(path));
  file.close();
  if (!existed) file.remove();
}

}  // namespace

std::unique_ptr<QPrinter> ChosenPrinter(const QString& title, bool selection) {
  auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
  const QPointer<QPrintDialog> dialog = new QPrintDialog(printer.get(), WindowInFront());
  dialog->setWindowTitle(title);
  dialog->setOption(QAbstractPrintDialog::PrintPageRange, false);
  dialog->setOption(QAbstractPrintDialog::PrintSelection, selection);
  dialog->setPrintRange(selection ? QAbstractPrintDialog::Selection
                                  : QAbstractPrintDialog::AllPages);
  const bool accepted = dialog->exec() == QDialog::Accepted;
  delete dialog;
  return accepted ? std::move(printer) : nullptr;
}

QtPrinting::QtPrinting() = default;
QtPrinting::~QtPrinting() = default;

bool QtPrinting::ChoosePrinter(const QString& title, bool selection) {
  std::unique_ptr<QPrinter> chosen = ChosenPrinter(title, selection);
  if (!chosen) return false;
  printer_ = std::move(chosen);
  return true;
}

void QtPrinting::Print(const QTextDocument& document) {
  if (!printer_ || !printer_->isValid()) Fail(QStringLiteral("there is no printer"));
  const QString file = printer_->outputFileName();
  if (!file.isEmpty()) RequireWritable(file);
  document.print(printer_.get());
  const QPrinter::PrinterState state = printer_->printerState();
  if (state == QPrinter::Error || state == QPrinter::Aborted)
    Fail(QStringLiteral("the printer \"%1\" failed").arg(printer_->printerName()));
  if (!file.isEmpty() && QFileInfo(file).size() == 0)
    Fail(QStringLiteral("\"%1\" can't be written").arg(file));
}

}  // namespace kestrix
