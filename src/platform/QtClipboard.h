#pragma once

#include <QClipboard>
#include <QGuiApplication>

#include "platform/Services.h"

namespace kestrix {

/// The clipboard that all programs of the desktop share.
class QtClipboard : public Clipboard {
 public:
  void Clear() override { QGuiApplication::clipboard()->clear(); }
  void SetText(const QString& text) override { QGuiApplication::clipboard()->setText(text); }
  [[nodiscard]] QString Text() const override { return QGuiApplication::clipboard()->text(); }
};

}  // namespace kestrix
