#include "platform/QtClock.h"

namespace kestrix {

QDate QtClock::Today() const {
  return QDate::currentDate();
}

}  // namespace kestrix
