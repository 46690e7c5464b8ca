#include "estimation/model/RiskMatrix.h"

#include <QtNumeric>
#include <cmath>
#include <limits>

namespace kestrix::model {
std::optional<qint16> WholePartOf(QStringView text) {
  bool is_number = false;
  const double number = text.trimmed().toDouble(&is_number);
  if (!is_number || !std::isfinite(number)) return std::nullopt;
  using Limits = std::numeric_limits<qint16>;
  const double whole = std::trunc(number);
  if (whole < Limits::min() || whole > Limits::max()) return std::nullopt;
  return static_cast<qint16>(whole);
}

std::optional<qint16> ClassOf(qint16 exposure, qint16 occurrence, qint16 avoidance) {
  qint16 sum = 0;
  if (qAddOverflow(exposure, occurrence, &sum) || qAddOverflow(sum, avoidance, &sum)) return {};
  return sum;
}

}  // namespace kestrix::model
