#include "reports/Export.h"

#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <array>

#include "platform/Failure.h"
#include "reports/Compose.h"
#include "reports/Csv.h"
#include "reports/Html.h"
#include "reports/Json.h"
#include "reports/Xlsx.h"

namespace kestrix::reports {
namespace {

QByteArray Pdf(const Report& report, records::Source& source, const paper::Progress& progress) {
  const QByteArray json = JsonBytes(report);
  const paper::Document document = Compose(report, DigestOf(json), source);
  const QPageSize size = SizeOf(report.options.paper);
  const paper::Layout layout(document, size, paper::kPdfDots);
  return WritePdf(document, layout, size, report.options.date,
                  {QStringLiteral("report.json"), json, QStringLiteral("application/json"),
                   QStringLiteral("What is stored, and what the risk model makes of it")},
                  progress);
}

QByteArray Html(const Report& report, records::Source& source, const paper::Progress& /*none*/) {
  return HtmlBytes(Compose(report, DigestOf(JsonBytes(report)), source));
}

template <QByteArray (*bytes)(const Report& report)>
QByteArray Data(const Report& report, records::Source& /*source*/,
                const paper::Progress& /*none*/) {
  return bytes(report);
}

struct Format {
  QStringView ending;
  QByteArray (*bytes)(const Report& report, records::Source& source,
                      const paper::Progress& progress);
};
constexpr std::array kFormats{Format{u".pdf", Pdf}, Format{u".html", Html},
                              Format{u".xlsx", Data<XlsxBytes>}, Format{u".csv", Data<CsvBytes>},
                              Format{u".json", Data<JsonBytes>}};

const Format* FormatOf(const QString& file) {
  const auto found = std::ranges::find_if(kFormats, [&file](const Format& format) {
    return file.endsWith(format.ending, Qt::CaseInsensitive);
  });
  return found == kFormats.end() ? nullptr : &*found;
}

}  // namespace

QStringList Endings() {
  QStringList endings;
  for (const Format& format : kFormats) endings += format.ending.toString();
  return endings;
}

bool HasFormat(const QString& file) {
  return FormatOf(file) != nullptr;
}

QByteArray BytesFor(const QString& file, const Report& report, records::Source& source,
                    const paper::Progress& progress) {
  return FormatOf(file)->bytes(report, source, progress);
}

void WriteWhole(const QString& path, const QByteArray& bytes) {
  // A device or a pipe would be replaced by the new file.
  const QFileInfo older(path);
  if (older.exists() && !older.isFile()) {
    throw Failure(failure::kCannotOpen,
                  QStringLiteral("%1 can't be written: it is no ordinary file.").arg(path));
  }
  QSaveFile file(path);
  if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) return;
  throw Failure(failure::kCannotOpen,
                QStringLiteral("%1 can't be written: %2.").arg(path, file.errorString()));
}

QPageSize SizeOf(Paper paper) {
  static constexpr std::array kSizes{QPageSize::A4, QPageSize::A3, QPageSize::Letter};
  return QPageSize(kSizes[static_cast<std::size_t>(paper)]);
}

}  // namespace kestrix::reports
