#pragma once

#include "platform/Services.h"

namespace kestrix {

/// Starts companions and hands documents to the desktop's opener. A companion is the file of that
/// name in the current folder and nothing else: no search path takes part. A document is only ever
/// handed to the opener as its one argument, as a full path, so that no name of a file is taken for
/// an option or run as a program. What is started lives on by itself.
class QtShell : public Shell {
 public:
  void StartCompanion(const QString& name) override;
  using Shell::OpenDocument;
  void OpenDocument(const QString& path, const std::function<void()>& failed) override;
  void OpenPage(const QString& path, const QString& place) override;

 private:
  static void Open(const QString& path, const QString& place, const std::function<void()>& failed);
};

}  // namespace kestrix
