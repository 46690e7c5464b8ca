#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <xlsxwriter.h>

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QPainter>
#include <QPdfWriter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

#include "estimation/model/Statements.h"
#include "paper/Pdf.h"
#include "platform/QtPagePrinter.h"
#include "platform/QtPlatform.h"
#include "preview/RiskBookRpts.h"
#include "records/FileSource.h"
#include "reports/Compose.h"
#include "reports/Csv.h"
#include "reports/Export.h"
#include "reports/Json.h"
#include "reports/Register.h"
#include "reports/Xlsx.h"

// Reports of many tasks, each beside the same work without anything of ours.
namespace {

using namespace kestrix;

const QString kOrganisation = QStringLiteral("Press shop");
const QString kProject = QStringLiteral("P1");

void Execute(const QString& file, const QString& sql) {
  sqlite3* handle = nullptr;
  char* error = nullptr;
  sqlite3_open(file.toUtf8().constData(), &handle);
  if (sqlite3_exec(handle, sql.toUtf8().constData(), nullptr, nullptr, &error) != SQLITE_OK) {
    qFatal("%s", error);
  }
  sqlite3_close(handle);
}

/// An installation of one project with so many tasks, made once.
const QString& FolderOf(int tasks) {
  static QTemporaryDir scratch;
  static std::map<int, QString> made;
  QString& folder = made[tasks];
  if (!folder.isEmpty()) return folder;
  folder = scratch.filePath(QString::number(tasks));
  QDir().mkpath(folder + QStringLiteral("/RskAsmtFld/Picfolder/Prj1"));
  const QString pristine = QStringLiteral(KESTRIX_PRISTINE_FOLDER "/");
  for (const char* name :
       {"risk_esmatn.mdb", "RskAsmtFld/orgtn.mdb", "RskAsmtFld/RskAsmt_BkSup.mdb"}) {
    QFile::copy(pristine + QLatin1String(name), folder + u'/' + QLatin1String(name));
  }
  const QString study = folder + QStringLiteral("/RskAsmtFld/risk_esmatn1.mdb");
  QFile::copy(folder + QStringLiteral("/risk_esmatn.mdb"), study);
  Execute(folder + QStringLiteral("/RskAsmtFld/orgtn.mdb"),
          QStringLiteral("INSERT INTO orgtn(OrgName,sclenotxt) VALUES('%1',1)").arg(kOrganisation));
  Execute(study, QStringLiteral("INSERT INTO Project_details(Factory_Name,Project_Number) "
                                "VALUES('%1','%2')")
                     .arg(kOrganisation, kProject));
  using model::Parameter;
  const auto statement = [](Parameter parameter, std::size_t score) {
    return model::StatementsOf(parameter)[score - 1].text.toString();
  };
  QString tasks_sql = QStringLiteral(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) INSERT INTO "
      "Risk_records(Project_Number,dateOfRcd,FuntnTaskMachry,HazrdLoctn,RefNo,HzrdDscptnTXT,"
      "ReccdtnTxt,ActnByCbo,actnDt,SevertyCbo,ExposureCbo,occurrenceCbo,avoidanceCbo,RiskIndex,"
      "\"1Chk_OptnSltd\",\"2Chk_OptnSltd\",\"3Chk_OptnSltd\",\"4Chk_OptnSltd\","
      "Chk_OptnSe,Chk_OptnEx,Chk_OptnOc,Chk_OptnAv,"
      "SevertyCboAftr,ExposureCboAftr,occurrenceCboAftr,avoidanceCboAftr,RiskIndexAftr,"
      "\"1Chk_OptnSltdAftr\",\"2Chk_OptnSltdAftr\",\"3Chk_OptnSltdAftr\","
      "\"4Chk_OptnSltdAftr\",Chk_OptnSeAftr,Chk_OptnExAftr,Chk_OptnOcAftr,Chk_OptnAvAftr) "
      "SELECT '%2','01/02/2026','Task '||i||' at the press','Place '||(i%20),"
      "printf('%02d.%02d',i/100,i%100),'The operator reaches between the closing tools, task '"
      "||i||'. The movement isn''t stopped when the door is opened; parts that jam are taken out "
      "by hand, number '||(i*7919%1000)||' of the shift.','Guard the tool area with a light "
      "curtain, and stop the movement '||i||' within its distance.','Maintenance','01/03/2027',"
      "'S2, Serious','F2, Frequent','O3, High','A2, Impossible',6,4,5,4,5,");
  tasks_sql = tasks_sql.arg(tasks).arg(kProject);
  for (const auto& [avoidance, end] :
       {std::pair{5, ",'S2, Serious','F1, Seldom','O1, Low','A1, Possible',2,4,2,1,1,"},
        std::pair{1, " FROM n"}}) {
    tasks_sql += QStringLiteral("'%1','%2','%3','%4'%5")
                     .arg(statement(Parameter::kSeverity, 4),
                          statement(Parameter::kExposure, avoidance == 5 ? 5 : 2),
                          statement(Parameter::kOccurrence, avoidance == 5 ? 4 : 1),
                          statement(Parameter::kAvoidance, static_cast<std::size_t>(avoidance)),
                          QLatin1String(end));
  }
  Execute(study, tasks_sql);
  return folder;
}

struct Subject {
  explicit Subject(int tasks) : source(Installation(FolderOf(tasks))) {
    options.date = QDate(2026, 6, 15);
    report = reports::MakeReport(source, {kOrganisation, 1}, kProject, options);
  }
  records::FileSource source;
  reports::Options options;
  reports::Report report;
};

void Read(benchmark::State& state) {
  records::FileSource source{Installation(FolderOf(static_cast<int>(state.range(0))))};
  for (auto _ : state) {
    benchmark::DoNotOptimize(source.ReadProject({kOrganisation, 1}, kProject));
  }
}

/// The program `sqlite3` reading the same SELECT, its start included.
void ReadByTheEngineAlone(benchmark::State& state) {
  const QString study =
      FolderOf(static_cast<int>(state.range(0))) + QStringLiteral("/RskAsmtFld/risk_esmatn1.mdb");
  const QByteArray command =
      QStringLiteral("sqlite3 '%1' 'SELECT * FROM Risk_records ORDER BY nunberauto' >/dev/null")
          .arg(study)
          .toUtf8();
  for (auto _ : state) {
    if (std::system(command.constData()) != 0) state.SkipWithError("sqlite3 failed");
  }
}

/// From the choice of a project to its first page, in the real window, which goes on to make all
/// pages meanwhile; and the longest time that an event waits until they are there.
void FirstPage(benchmark::State& state) {
  QtPlatform desktop;
  QtPagePrinter printer;
  const Installation installation(FolderOf(static_cast<int>(state.range(0))));
  double longest = 0;
  for (auto _ : state) {
    preview::RiskBookRpts window(desktop.platform(), printer, installation);
    window.show();
    QApplication::processEvents();
    QElapsedTimer since_choice;
    since_choice.start();
    window.Open({});
    const auto* pages = window.findChild<QLabel*>(QStringLiteral("ReportPages"));
    const auto* whole = window.findChild<QPushButton*>(QStringLiteral("ReportExport"));
    double first = 0;
    while (!whole->isEnabled()) {
      QElapsedTimer turn;
      turn.start();
      QApplication::processEvents();
      longest = std::max(longest, static_cast<double>(turn.nsecsElapsed()) / 1e6);
      // Told and, in the turn after that, painted.
      if (first == 0 && !pages->text().isEmpty()) {
        QApplication::processEvents();
        first = static_cast<double>(since_choice.nsecsElapsed()) / 1e9;
      }
      QThread::usleep(200);
    }
    state.SetIterationTime(first);
  }
  state.counters["longest_ms"] = longest;
}

void Write(benchmark::State& state, const QString& file) {
  Subject subject(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(reports::BytesFor(file, subject.report, subject.source));
  }
  struct rusage usage {};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024;
}

constexpr int kLetters = 125;  // of the small texts, in dots
constexpr double kAscent = 116;

/// The lines of the same pages, put where they stand by the toolkit alone.
void PdfWithoutLayout(benchmark::State& state) {
  Subject subject(static_cast<int>(state.range(0)));
  const paper::Document document = reports::Compose(subject.report, {}, subject.source);
  const paper::Layout layout(document, QPageSize(QPageSize::A4), paper::kPdfDots);
  std::vector<std::vector<std::pair<QPointF, QString>>> pages;
  for (int page = 0; page < layout.PageCount(); ++page) {
    auto& lines = pages.emplace_back();
    for (const paper::Item& item : layout.PageAt(page).items) {
      const auto* line = std::get_if<paper::TextLine>(&item);
      if (line == nullptr) continue;
      lines.emplace_back(line->Corner() + QPointF(0, kAscent),
                         line->text->CharactersOf(line->line));
    }
  }
  for (auto _ : state) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(paper::kPdfDots);
    QPainter painter(&writer);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(kLetters);
    painter.setFont(font);
    for (const auto& lines : pages) {
      for (const auto& [at, text] : lines) painter.drawText(at, text);
      writer.newPage();
    }
  }
  state.counters["pages"] = layout.PageCount();
}

void XlsxByTheLibraryAlone(benchmark::State& state) {
  Subject subject(static_cast<int>(state.range(0)));
  std::vector<std::vector<QByteArray>> cells;
  for (const reports::Entry& entry : subject.report.entries) {
    auto& row = cells.emplace_back();
    for (const reports::Column& column : reports::RegisterColumns()) {
      row.push_back(column.of(entry).text.toUtf8());
    }
  }
  const QTemporaryDir folder;
  const QByteArray path = folder.filePath(QStringLiteral("a.xlsx")).toUtf8();
  for (auto _ : state) {
    lxw_workbook* book = workbook_new(path.constData());
    lxw_worksheet* sheet = workbook_add_worksheet(book, nullptr);
    lxw_row_t number = 0;
    for (const auto& row : cells) {
      lxw_col_t column = 0;
      for (const QByteArray& cell : row) {
        worksheet_write_string(sheet, number, column++, cell.constData(), nullptr);
      }
      ++number;
    }
    workbook_close(book);
  }
}

BENCHMARK(Read)->Arg(1000)->Arg(10000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ReadByTheEngineAlone)->Arg(10000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FirstPage)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, pdf, QStringLiteral("r.pdf"))
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(PdfWithoutLayout)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, xlsx, QStringLiteral("r.xlsx"))
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(XlsxByTheLibraryAlone)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, csv, QStringLiteral("r.csv"))
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, json, QStringLiteral("r.json"))
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, html, QStringLiteral("r.html"))
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
