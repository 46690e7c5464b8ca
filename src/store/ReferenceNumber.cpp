#include "store/ReferenceNumber.h"

#include <QLocale>
#include <QRegularExpression>
#include <algorithm>

namespace kestrix {
namespace {

constexpr int kDecimals = 2;
constexpr int kLeastDigits = 2;

/// Adds one to a number written in decimal digits.
void Increment(QString& digits) {
  for (qsizetype i = digits.size() - 1; i >= 0; --i) {
    if (digits[i] != u'9') {
      digits[i] = QChar(digits[i].unicode() + 1);
      return;
    }
    digits[i] = u'0';
  }
  digits.prepend(u'1');
}

}  // namespace

std::optional<QString> ReferenceNumber(const QString& text) {
  static const QRegularExpression kDecimal(QStringLiteral("^([+-]?)(\\d*)(?:\\.(\\d*))?$"));
  const QString number = text.trimmed().replace(QLocale().decimalPoint(), QStringLiteral("."));
  const QRegularExpressionMatch match = kDecimal.match(number);
  const QString whole = match.captured(2);
  const QString behind = match.captured(3);
  if (!match.hasMatch() || (whole.isEmpty() && behind.isEmpty())) return std::nullopt;

  // Hundredths as digits: exact for numbers of any length, where binary halves would round astray.
  QString hundredths = whole + behind.leftJustified(kDecimals, u'0', true);
  if (behind.size() > kDecimals && behind[kDecimals] >= u'5') Increment(hundredths);
  while (hundredths.size() > kLeastDigits + kDecimals && hundredths.front() == u'0') {
    hundredths.remove(0, 1);
  }
  hundredths = hundredths.rightJustified(kLeastDigits + kDecimals, u'0');
  const bool is_zero =
      std::all_of(hundredths.begin(), hundredths.end(), [](QChar c) { return c == u'0'; });
  hundredths.insert(hundredths.size() - kDecimals, u'.');
  if (match.captured(1) == u"-" && !is_zero) hundredths.prepend(u'-');
  return hundredths;
}

}  // namespace kestrix
