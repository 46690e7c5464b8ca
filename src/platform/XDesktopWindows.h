#pragma once

#include <memory>

#include "platform/Services.h"

namespace kestrix {

/// The windows of an X desktop, through a connection of its own that is made at the first question
/// and made again when it died. Where there is no X display no window is ever found. It never holds
/// the server, and a window that vanishes while it is looked at is a window that isn't there.
class XDesktopWindows : public DesktopWindows {
 public:
  XDesktopWindows();
  Q_DISABLE_COPY_MOVE(XDesktopWindows)
  ~XDesktopWindows() override;

  [[nodiscard]] quint32 Find(const QString& title) override;
  void Activate(const QString& title) override;

 private:
  class Connection;
  [[nodiscard]] Connection* Connected();

  std::unique_ptr<Connection> connection_;
};

}  // namespace kestrix
