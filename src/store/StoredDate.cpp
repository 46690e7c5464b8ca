#include "store/StoredDate.h"

#include <QLocale>
#include <QRegularExpression>

namespace kestrix {
namespace {

constexpr int kEarliestYear = 100;
// Years of two digits below this are of this century.
constexpr int kCenturyTurn = 30;

constexpr int kMonths = 12;
constexpr int kShortMonth = 3;

/// 1 to 12 for a number or an English name, whole or its first three letters; 0 for any other text.
int MonthOf(const QString& text) {
  bool is_number = false;
  const int number = text.toInt(&is_number);
  if (is_number) return number;
  const QString name = text.toLower();
  for (int i = 1; i <= kMonths; ++i) {
    const QString month = QLocale::c().monthName(i).toLower();
    if (name == month || name == month.first(kShortMonth)) return i;
  }
  return 0;
}

int YearOf(const QString& text) {
  const int year = text.toInt();
  if (text.size() > 2) return year;
  return year + (year < kCenturyTurn ? 2000 : 1900);
}

}  // namespace

std::optional<QDate> ReadDate(const QString& text) {
  static const QRegularExpression kDayFirst(
      QStringLiteral("^\\s*(\\d{1,2})([-/. ])(\\d{1,2}|[A-Za-z]{3,9})\\2(\\d{4}|\\d{2})\\s*$"));
  const QRegularExpressionMatch match = kDayFirst.match(text);
  if (!match.hasMatch()) return std::nullopt;
  const int year = YearOf(match.captured(4));
  const QDate date(year, MonthOf(match.captured(3)), match.captured(1).toInt());
  if (!date.isValid() || year < kEarliestYear) return std::nullopt;
  return date;
}

QString WriteDate(QDate date) {
  return date.toString(QStringLiteral("dd/MM/yyyy"));
}

}  // namespace kestrix
