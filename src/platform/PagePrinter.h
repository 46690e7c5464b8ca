#pragma once

#include <QPagedPaintDevice>
#include <QString>
#include <memory>

namespace kestrix {

/// Printers for those who paint their pages themselves.
class PagePrinter {
 public:
  virtual ~PagePrinter() = default;
  /// Shows the printer dialog; null when it was cancelled. The pages of what it gives are the whole
  /// paper.
  [[nodiscard]] virtual std::unique_ptr<QPagedPaintDevice> Choose(const QString& title) = 0;
};

}  // namespace kestrix
