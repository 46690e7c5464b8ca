#pragma once

#include "platform/QtClipboard.h"
#include "platform/QtClock.h"
#include "platform/QtEnvironment.h"
#include "platform/QtFileDialogs.h"
#include "platform/QtFileSystem.h"
#include "platform/QtMessages.h"
#include "platform/QtPrinting.h"
#include "platform/QtSettings.h"
#include "platform/QtShell.h"
#include "platform/Services.h"
#include "platform/XDesktopWindows.h"

namespace kestrix {

/// Owns the services of a Qt desktop for the whole run and hands them out. It is made once, after
/// the application object, and outlives every form. It decides nothing.
class QtPlatform {
 public:
  QtPlatform() = default;
  Q_DISABLE_COPY_MOVE(QtPlatform)

  [[nodiscard]] Platform& platform() { return platform_; }

 private:
  QtMessages messages_;
  QtFileSystem files_;
  QtShell shell_;
  XDesktopWindows windows_;
  QtSettings settings_;
  QtFileDialogs dialogs_;
  QtPrinting printing_;
  QtClipboard clipboard_;
  QtClock clock_;
  QtEnvironment environment_;
  Platform platform_{messages_, files_,    shell_,     windows_, settings_,
                     dialogs_,  printing_, clipboard_, clock_,   environment_};
};

}  // namespace kestrix
