#include "reports/Xlsx.h"

#include <xlsxwriter.h>

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimeZone>
#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "platform/Failure.h"
#include "reports/Method.h"
#include "reports/Register.h"

namespace kestrix::reports {
namespace {

using records::Band;

constexpr qsizetype kMostUnits = 32767;
constexpr double kNarrow = 9;
constexpr double kWide = 40;
const QDate kFirstDate(1900, 3, 1);  // before it, spreadsheets disagree on the days

lxw_color_t ColourOf(Band band) {
  static constexpr std::array<lxw_color_t, Counts::kBins> kColours{0xE0E0E0, 0xD8F5D8, 0xD8F5D8,
                                                                   0xFFE0C0, 0xFFB0B0};
  return kColours[BinOf(band)];
}

constexpr std::array<std::uint8_t, 3> kPapers{9, 8,
                                              1};  // A4, A3 and Letter, as a workbook has them

QByteArray Bytes(const QString& text) {
  return FittingCell(text).toUtf8();
}

/// A workbook that is being written to a temporary file.
class Book {
 public:
  explicit Book(const Report& report) : report_(report) {
    path_ = folder_.filePath(QStringLiteral("report.xlsx"));
    book_ = workbook_new(QFile::encodeName(path_).constData());
    lxw_doc_properties properties = {};
    QByteArray title =
        (report.organisation.name + QStringLiteral(", ") + report.head.number).toUtf8();
    QByteArray author = report.head.prepared_by.toUtf8();
    properties.title = title.data();
    properties.author = author.data();
    // The library would put the clock in here.
    properties.created = report.options.date.startOfDay(QTimeZone::utc()).toSecsSinceEpoch();
    workbook_set_properties(book_, &properties);
    head_ = Format([](lxw_format* f) {
      format_set_bold(f);
      format_set_bg_color(f, 0xE8ECF1);
      format_set_border(f, LXW_BORDER_THIN);
    });
    plain_ = Format([](lxw_format*) {});
    date_ = Format([](lxw_format* f) { format_set_num_format(f, "dd/mm/yyyy"); });
    for (std::size_t bin = 0; bin < Counts::kBins; ++bin) {
      bands_[bin] = Format([bin](lxw_format* f) {
        format_set_bg_color(f, ColourOf(static_cast<Band>(static_cast<int>(bin) - 1)));
      });
    }
  }
  Book(const Book&) = delete;
  Book& operator=(const Book&) = delete;
  ~Book() {
    if (book_ != nullptr) workbook_close(book_);
  }

  [[nodiscard]] QByteArray Close() {
    const lxw_error error = workbook_close(std::exchange(book_, nullptr));
    QFile file(path_);
    if (error == LXW_NO_ERROR && file.open(QIODevice::ReadOnly)) return file.readAll();
    throw Failure(failure::kCannotOpen, QStringLiteral("The workbook can't be written: %1.")
                                            .arg(QString::fromUtf8(lxw_strerror(error))));
  }

  void AddMethod() {
    lxw_worksheet* sheet = Sheet("Method");
    worksheet_set_column(sheet, 0, 0, kWide, nullptr);
    worksheet_set_column(sheet, 1, 1, 2 * kWide, nullptr);
    lxw_row_t row = 0;
    const auto line = [&](const QString& name, const QString& value) {
      Put(sheet, row, 0, name, head_);
      Put(sheet, row++, 1, value, plain_);
    };
    for (const auto& [name, value] : HeadLines(report_)) line(name, value);
    ++row;
    for (const QString& paragraph : MethodParagraphs()) Put(sheet, row++, 0, paragraph, plain_);
  }

  void AddMatrix(const char* name, const Counts& counts) {
    lxw_worksheet* sheet = Sheet(name);
    static constexpr std::array kHeads{u"Severity", u"Cl 4",     u"Cl 5-7",
                                       u"Cl 8-10",  u"Cl 11-13", u"Cl 14-15"};
    for (lxw_col_t column = 0; column < kHeads.size(); ++column) {
      Put(sheet, 0, column, QString::fromUtf16(kHeads[column]), head_);
    }
    for (int severity = model::kMatrixRows; severity > 0; --severity) {
      const auto row = static_cast<lxw_row_t>(model::kMatrixRows - severity + 1);
      worksheet_write_number(sheet, row, 0, severity, head_);
      for (int column = 0; column < model::kMatrixColumns; ++column) {
        const auto place =
            static_cast<std::size_t>((severity - 1) * model::kMatrixColumns + column);
        worksheet_write_string(sheet, row, static_cast<lxw_col_t>(column + 1),
                               Bytes(QStringLiteral("%1: %2")
                                         .arg(model::kMatrixCells[place].band)
                                         .arg(counts.cells[place]))
                                   .constData(),
                               FormatOf(model::kMatrixCells[place].band));
      }
    }
    worksheet_set_column(sheet, 0, model::kMatrixColumns, 16, nullptr);
    lxw_row_t row = model::kMatrixRows + 2;
    lxw_col_t column = 0;
    for (const char16_t* head : {u"Band", u"By index", u"By class"}) {
      Put(sheet, row, column++, QString::fromUtf16(head), head_);
    }
    for (std::size_t bin = 0; bin < Counts::kBins; ++bin) {
      const QString text = TextOf(static_cast<Band>(static_cast<int>(bin) - 1));
      Put(sheet, ++row, 0, text, bands_[bin]);
      worksheet_write_number(sheet, row, 1, counts.index_bands[bin], plain_);
      worksheet_write_number(sheet, row, 2, counts.class_bands[bin], plain_);
    }
  }

  void AddRegister() {
    lxw_worksheet* sheet = Sheet("Register");
    const auto columns = RegisterColumns();
    const auto last_column = static_cast<lxw_col_t>(columns.size() - 1);
    std::vector<qsizetype> widths;
    for (lxw_col_t column = 0; column <= last_column; ++column) {
      Put(sheet, 0, column, columns[column].head.toString(), head_);
      widths.push_back(columns[column].head.size());
    }
    lxw_row_t row = 0;
    for (const Entry& entry : report_.entries) {
      ++row;
      for (lxw_col_t column = 0; column <= last_column; ++column) {
        const Cell cell = columns[column].of(entry);
        PutCell(sheet, row, column, cell);
        widths[column] = std::max(widths[column], cell.text.size());
      }
    }
    for (lxw_col_t column = 0; column <= last_column; ++column) {
      const double width = std::clamp(1.1 * static_cast<double>(widths[column]), kNarrow, kWide);
      worksheet_set_column(sheet, column, column, width, nullptr);
    }
    worksheet_freeze_panes(sheet, 1, 2);
    worksheet_autofilter(sheet, 0, 0, std::max<lxw_row_t>(row, 1), last_column);
    Print(sheet);
  }

  void AddActions() {
    lxw_worksheet* sheet = Sheet("Actions");
    static constexpr std::array kHeads{u"Action by", u"Action date", u"Overdue",
                                       u"Reference", u"Task",        u"Recommendation"};
    for (lxw_col_t column = 0; column < kHeads.size(); ++column) {
      Put(sheet, 0, column, QString::fromUtf16(kHeads[column]), head_);
    }
    lxw_row_t row = 0;
    for (const Entry* entry : OpenActions(report_)) {
      ++row;
      Put(sheet, row, 0, entry->task.action_by, plain_);
      PutCell(sheet, row, 1, ActionDate(*entry));
      Put(sheet, row, 2, entry->overdue ? QStringLiteral("overdue") : QString(), plain_);
      Put(sheet, row, 3, entry->task.reference, plain_);
      Put(sheet, row, 4, entry->task.title, plain_);
      Put(sheet, row, 5, entry->task.recommendation, plain_);
    }
    worksheet_set_column(sheet, 0, 3, 16, nullptr);
    worksheet_set_column(sheet, 4, 5, kWide, nullptr);
    worksheet_freeze_panes(sheet, 1, 0);
    Print(sheet);
  }

  void AddFiles() {
    lxw_worksheet* sheet = Sheet("Files");
    static constexpr std::array kHeads{u"File", u"Path", u"Bytes", u"SHA-256"};
    for (lxw_col_t column = 0; column < kHeads.size(); ++column) {
      Put(sheet, 0, column, QString::fromUtf16(kHeads[column]), head_);
    }
    lxw_row_t row = 0;
    for (const Link& link : report_.links) {
      ++row;
      Put(sheet, row, 0, link.link.title, plain_);
      Put(sheet, row, 1, link.link.path, plain_);
      if (link.facts.exists) {
        worksheet_write_number(sheet, row, 2, static_cast<double>(link.facts.bytes), plain_);
        Put(sheet, row, 3, QString::fromLatin1(link.facts.sha256), plain_);
      } else {
        Put(sheet, row, 2, QStringLiteral("missing"), plain_);
      }
    }
    worksheet_set_column(sheet, 0, 1, kWide, nullptr);
    worksheet_set_column(sheet, 2, 2, 12, nullptr);
    worksheet_set_column(sheet, 3, 3, 66, nullptr);
    Print(sheet);
  }

 private:
  template <class Set>
  lxw_format* Format(Set set) {
    lxw_format* format = workbook_add_format(book_);
    format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
    format_set_text_wrap(format);
    set(format);
    return format;
  }

  lxw_worksheet* Sheet(const char* name) { return workbook_add_worksheet(book_, name); }

  /// Landscape, as wide as a page, the head on each.
  void Print(lxw_worksheet* sheet) const {
    worksheet_set_landscape(sheet);
    worksheet_set_paper(sheet, kPapers[static_cast<std::size_t>(report_.options.paper)]);
    worksheet_fit_to_pages(sheet, 1, 0);
    worksheet_repeat_rows(sheet, 0, 0);
  }

  [[nodiscard]] lxw_format* FormatOf(QStringView band) const {
    for (std::size_t bin = 0; bin < Counts::kBins; ++bin) {
      if (band == TextOf(static_cast<Band>(static_cast<int>(bin) - 1))) return bands_[bin];
    }
    return plain_;
  }

  void Put(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, const QString& text,
           lxw_format* format) {
    worksheet_write_string(sheet, row, column, Bytes(text).constData(), format);
  }

  void PutCell(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, const Cell& cell) {
    if (cell.number) {
      worksheet_write_number(sheet, row, column, *cell.number, plain_);
    } else if (cell.date && *cell.date >= kFirstDate) {
      lxw_datetime day = {cell.date->year(), cell.date->month(), cell.date->day(), 0, 0, 0};
      worksheet_write_datetime(sheet, row, column, &day, date_);
    } else {
      Put(sheet, row, column, cell.text, cell.band ? bands_[BinOf(*cell.band)] : plain_);
    }
  }

  const Report& report_;
  QTemporaryDir folder_;
  QString path_;
  lxw_workbook* book_ = nullptr;
  lxw_format* head_ = nullptr;
  lxw_format* plain_ = nullptr;
  lxw_format* date_ = nullptr;
  std::array<lxw_format*, Counts::kBins> bands_{};
};

}  // namespace

QString FittingCell(const QString& text) {
  // What a reader would take for an escaped character is escaped itself; what XML can't hold is
  // told by the sign for it.
  static const QRegularExpression kEscape(QStringLiteral("_(?=x[0-9A-Fa-f]{4}_)"));
  static const QString kEscaped = QStringLiteral("_x005F_");
  QString cell = text;
  for (QChar& c : cell) {
    if (c >= QChar(0xFFFE)) c = QChar::ReplacementCharacter;
  }
  cell.replace(kEscape, kEscaped);
  if (cell.size() <= kMostUnits) return cell;
  const QString word = QStringLiteral("… (cut, %1 characters: see PDF)").arg(text.toUcs4().size());
  qsizetype end = kMostUnits - word.size();
  const qsizetype escape = cell.lastIndexOf(kEscaped, end);
  if (escape >= 0 && escape + kEscaped.size() > end) end = escape;
  if (cell[end].isLowSurrogate()) --end;
  return cell.left(end) + word;
}

QByteArray XlsxBytes(const Report& report) {
  Book book(report);
  book.AddMethod();
  book.AddMatrix("Before", report.before);
  book.AddMatrix("After", report.after);
  book.AddRegister();
  book.AddActions();
  book.AddFiles();
  return book.Close();
}

}  // namespace kestrix::reports
