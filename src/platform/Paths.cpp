#include "platform/Services.h"

namespace kestrix {

QString JoinPath(const QString& folder, const QString& tail) {
  if (tail.isEmpty()) return folder;
  QString below = tail;
  below.replace(u'\\', u'/');
  const bool folder_ends = folder.endsWith(u'/');
  const bool tail_begins = below.startsWith(u'/');
  if (folder_ends && tail_begins) return folder + below.sliced(1);
  if (folder_ends || tail_begins || folder.isEmpty()) return folder + below;
  return folder + u'/' + below;
}

}  // namespace kestrix
