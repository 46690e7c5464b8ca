#include "evaluation/DateMask.h"

#include <algorithm>

#include "store/StoredDate.h"

namespace kestrix {
namespace {

constexpr QChar kFree = u'_';
}  // namespace

std::optional<DateMask::Outcome> DateMask::Settle(const QString& text) {
  if (ReadDate(text)) return std::nullopt;
  QString shown = text;
  if (shown.isEmpty()) shown = kEmpty;
  if (shown.size() == 1) shown += kEmpty.sliced(1);
  const qsizetype free = shown.indexOf(kFree);
  if (free >= 0 && free < kPlaces) return Outcome{shown, static_cast<int>(free), 1};
  return Outcome{shown, std::min(kPlaces, static_cast<int>(shown.size())), 0};
}

}  // namespace kestrix
