#pragma once

#include "platform/Services.h"

namespace kestrix {

/// One choice of a filter: what a person reads, and the patterns of the names it lets through.
struct NameFilter {
  QString label;
  QStringList patterns;
  bool operator==(const NameFilter&) const = default;
};

/// The choices of a filter text "label|pattern;pattern|label|pattern". "*.*" is every name, with a
/// point in it or without. A label without patterns at the end lets every name through, for a
/// dialog that can show nothing is of no use.
[[nodiscard]] QList<NameFilter> ParseFilter(const QString& filter);

/// One choice in the form that the desktop's dialog reads: "label (pattern pattern)".
[[nodiscard]] QString DesktopFilter(const NameFilter& filter);

/// File dialogs of the desktop. They open where the last one was left, at first in the user's
/// documents. They never add an extension to a name.
class QtFileDialogs : public FileDialogs {
 public:
  QString Open(const FileDialogRequest& request) override { return Run(request, false); }
  QString Save(const FileDialogRequest& request) override { return Run(request, true); }

 private:
  QString Run(const FileDialogRequest& request, bool to_save);

  QString folder_;
};

}  // namespace kestrix
