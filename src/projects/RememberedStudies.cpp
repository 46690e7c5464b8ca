#include "projects/RememberedStudies.h"

#include <algorithm>

namespace kestrix {
namespace {

/// The name of a slot that was given back.
const QString kFreed = QStringLiteral("NULL");

}  // namespace

int RememberedStudies::SlotOf(const QString& organisation) const {
  const auto found = std::find_if(slots_.begin(), slots_.end(), [&](const Slot& slot) {
    return slot.organisation == organisation;
  });
  return found == slots_.end() ? 0 : static_cast<int>(found - slots_.begin()) + 1;
}

bool RememberedStudies::IsNamed(int slot, const QString& organisation) const {
  return slot >= 1 && slot <= kSlots &&
         slots_[static_cast<std::size_t>(slot - 1)].organisation == organisation;
}

bool RememberedStudies::Holds(int slot, const QString& organisation, qint16 study_no) const {
  return IsNamed(slot, organisation) &&
         slots_[static_cast<std::size_t>(slot - 1)].study_no == study_no;
}

int RememberedStudies::Remember(const QString& organisation, qint16 study_no) {
  if (const int slot = SlotOf(organisation)) {
    slots_[static_cast<std::size_t>(slot - 1)].study_no = study_no;
    return slot;
  }
  const auto free = std::find_if(slots_.begin(), slots_.end(), [](const Slot& slot) {
    return slot.organisation.isEmpty() || slot.organisation == kFreed;
  });
  if (free == slots_.end()) return 0;
  *free = {organisation, study_no};
  return static_cast<int>(free - slots_.begin()) + 1;
}

void RememberedStudies::ForgetNames() {
  for (Slot& slot : slots_) slot.organisation = kFreed;
}

}  // namespace kestrix
