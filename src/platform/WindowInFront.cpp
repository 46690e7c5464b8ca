#include "platform/WindowInFront.h"

#include <QApplication>
#include <QWidget>

namespace kestrix {

QWidget* WindowInFront() {
  if (QWidget* modal = QApplication::activeModalWidget(); modal != nullptr && modal->isVisible())
    return modal;
  QWidget* active = QApplication::activeWindow();
  return active != nullptr && active->isVisible() ? active : nullptr;
}

}  // namespace kestrix
