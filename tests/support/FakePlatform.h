#pragma once

#include "support/FailingFileSystem.h"
#include "support/FakeMessages.h"
#include "support/FakeServices.h"

namespace kestrix {

/// All fakes of one test, and the Platform that hands them to what is tested. Files are the real
/// ones, with the faults that a test plans.
class FakePlatform {
 public:
  FakePlatform() = default;
  FakePlatform(const FakePlatform&) = delete;
  FakePlatform& operator=(const FakePlatform&) = delete;

  FakeMessages messages;
  FailingFileSystem files;
  FakeShell shell{files};
  FakeWindows windows;
  FakeSettings settings;
  FakeFileDialogs dialogs;
  FakePrinting printing;
  FakeClipboard clipboard;
  FakeClock clock;
  FakeEnvironment environment;

  [[nodiscard]] Platform& platform() { return platform_; }

 private:
  Platform platform_{messages, files,    shell,     windows, settings,
                     dialogs,  printing, clipboard, clock,   environment};
};

}  // namespace kestrix
