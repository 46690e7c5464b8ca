#include "estimation/model/RiskMatrix.h"

#include <QString>
#include <cmath>
#include <limits>

namespace kestrix::model {
namespace {

constexpr int kLeast = std::numeric_limits<qint16>::min();
constexpr int kGreatest = std::numeric_limits<qint16>::max();

constexpr std::optional<qint16> Narrow(int number) {
  if (number < kLeast || number > kGreatest) return std::nullopt;
  return static_cast<qint16>(number);
}

}  // namespace

std::optional<qint16> WholePartOf(QStringView text) {
  bool is_number = false;
  const double number = text.trimmed().toDouble(&is_number);
  if (!is_number || !std::isfinite(number)) return std::nullopt;
  const double whole = std::trunc(number);
  if (whole < kLeast || whole > kGreatest) return std::nullopt;
  return static_cast<qint16>(whole);
}

std::optional<qint16> ClassOf(qint16 exposure, qint16 occurrence, qint16 avoidance) {
  const std::optional<qint16> first = Narrow(int{exposure} + int{occurrence});
  return first ? Narrow(int{*first} + int{avoidance}) : std::nullopt;
}

}  // namespace kestrix::model
