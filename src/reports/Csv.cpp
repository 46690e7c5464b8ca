#include "reports/Csv.h"

#include "reports/Register.h"

namespace kestrix::reports {
namespace {

bool BeginsLikeAFormula(QStringView text) {
  constexpr QStringView kBeginnings = u"=+-@\t\r\n";
  return !text.isEmpty() && kBeginnings.contains(text.front());
}

QString Field(const QString& text) {
  const bool needs_quotes =
      text.contains(u'"') || text.contains(u',') || text.contains(u'\n') || text.contains(u'\r');
  if (!needs_quotes) return text;
  return u'"' + QString(text).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

QString Told(const Cell& cell) {
  if (cell.date) return cell.date->toString(Qt::ISODate);
  return cell.number ? cell.text : Protected(cell.text);
}

}  // namespace

QString Protected(const QString& text) {
  const QStringView behind = text.startsWith(u'\'') ? QStringView(text).sliced(1) : text;
  return BeginsLikeAFormula(behind) ? u'\'' + text : text;
}

QByteArray CsvBytes(const Report& report) {
  QString lines(QChar::ByteOrderMark);
  const auto line = [&lines](auto&& field_of) {
    QStringList fields;
    for (const Column& column : RegisterColumns()) fields += Field(field_of(column));
    lines += fields.join(u',') + QStringLiteral("\r\n");
  };
  line([](const Column& column) { return column.head.toString(); });
  for (const Entry& entry : report.entries) {
    line([&entry](const Column& column) { return Told(column.of(entry)); });
  }
  return lines.toUtf8();
}

}  // namespace kestrix::reports
