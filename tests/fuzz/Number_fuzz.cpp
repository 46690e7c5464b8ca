// Any text where a number is expected: the reference number of a task, and the scores and indexes
// that a task keeps.
#include <QRegularExpression>
#include <cmath>

#include "Fuzz.h"
#include "estimation/model/RiskModel.h"
#include "store/ReferenceNumber.h"

namespace kestrix::fuzz {
namespace {

void CheckReference(const QString& text) {
  static const QRegularExpression kForm(QStringLiteral("\\A-?[0-9]{2,}\\.[0-9]{2}\\z"));
  const std::optional<QString> number = ReferenceNumber(text);
  bool is_number = false;
  const double value = text.trimmed().toDouble(&is_number);
  if (!number) return;
  Hold(kForm.match(*number).hasMatch(), "a reference number has the form 00.00", *number);
  Hold(ReferenceNumber(*number) == number, "a reference number stays as it is", *number);
  Hold(!number->startsWith(QStringLiteral("-00.00")), "zero has no sign", *number);
  Hold(number->size() <= 6 || number->at(number->startsWith(u'-') ? 1 : 0) != u'0' ||
           number->size() == (number->startsWith(u'-') ? 6 : 5),
       "no needless zero stands in front", *number);
  // Where a binary number is exact enough, it tells the same.
  if (is_number && std::abs(value) < 1e12) {
    Hold(std::abs(number->toDouble() - value) <= 0.005 + std::abs(value) * 1e-12,
         "rounding moves by no more than half of a hundredth", text);
  }
}

void CheckWholePart(const QString& text) {
  const std::optional<qint16> whole = model::WholePartOf(text);
  if (!whole) return;
  bool is_number = false;
  const double value = text.trimmed().toDouble(&is_number);
  Hold(is_number && std::abs(value - *whole) < 1, "a whole part is that of the number", text);
  Hold(model::WholePartOf(QString::number(*whole)) == whole, "a whole number is its own part",
       text);
}

}  // namespace
}  // namespace kestrix::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace kestrix;
  const QString text = fuzz::Input(data, size).RestAsText();
  fuzz::CheckReference(text);
  fuzz::CheckWholePart(text);
  return 0;
}
