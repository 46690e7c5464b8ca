#include "platform/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace kestrix {

void QtClipboard::Clear() {
  QGuiApplication::clipboard()->clear();
}

void QtClipboard::SetText(const QString& text) {
  QGuiApplication::clipboard()->setText(text);
}

QString QtClipboard::Text() const {
  return QGuiApplication::clipboard()->text();
}

}  // namespace kestrix
