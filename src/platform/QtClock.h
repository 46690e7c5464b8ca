#pragma once

#include <QDate>

#include "platform/Services.h"

namespace kestrix {

/// The calendar of this machine, in local time.
class QtClock : public Clock {
 public:
  [[nodiscard]] QDate Today() const override { return QDate::currentDate(); }
};

}  // namespace kestrix
