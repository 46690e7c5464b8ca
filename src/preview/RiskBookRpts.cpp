#include "preview/RiskBookRpts.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPromise>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QtConcurrentRun>
#include <algorithm>

#include "paper/Pdf.h"
#include "platform/Failure.h"
#include "reports/Export.h"
#include "store/StoredDate.h"
#include "ui_RiskBookRpts.h"

namespace kestrix::preview {
namespace {

using reports::Options;

const QString kTitle = QStringLiteral("RiskBookRpts");
constexpr int kWhileTyping = 300;  // milliseconds
constexpr int kAfterAChange = 400;
constexpr double kPercent = 100;

QString WithCapital(const char16_t* word) {
  QString text = QString::fromUtf16(word);
  text[0] = text[0].toUpper();
  return text;
}

template <std::size_t size>
void Fill(QComboBox& combo, const std::array<const char16_t*, size>& words) {
  for (const char16_t* word : words) combo.addItem(WithCapital(word));
}

template <class Value>
Value Chosen(const QComboBox& combo) {
  return static_cast<Value>(std::max(0, combo.currentIndex()));
}

QString TextOf(const QListWidget& list) {
  return list.currentItem() == nullptr ? QString() : list.currentItem()->text();
}

ProjectsRead ReadProjectsOf(const Installation& installation,
                            const records::Organisation& organisation) {
  try {
    return {records::FileSource(installation).ListProjects(organisation), {}};
  } catch (const Failure& failure) {
    return {{}, failure.description()};
  }
}

/// The project of the newest task, else the last row.
int NewestOf(const std::vector<records::ProjectLine>& lines) {
  const auto newest = std::ranges::max_element(lines, {}, &records::ProjectLine::newest_task);
  if (newest == lines.end()) return -1;
  if (newest->newest_task == 0) return static_cast<int>(lines.size()) - 1;
  return static_cast<int>(newest - lines.begin());
}

}  // namespace

struct RiskBookRpts::Printing {
  MadeReport made;
  std::unique_ptr<QPagedPaintDevice> device;
  QPainter painter;
  int next = 0;
};

RiskBookRpts::RiskBookRpts(Platform& platform, PagePrinter& printer, Installation installation)
    : platform_(platform),
      printer_(printer),
      installation_(std::move(installation)),
      ui_(std::make_unique<Ui::RiskBookRpts>()) {
  ui_->setupUi(this);
  ui_->ReportThumbnails->setModel(&thumbnails_);
  ui_->ReportThumbnails->setViewMode(QListView::IconMode);
  ui_->ReportThumbnails->setFlow(QListView::TopToBottom);
  ui_->ReportThumbnails->setWrapping(false);
  ui_->ReportThumbnails->setMovement(QListView::Static);
  ui_->ReportThumbnails->setUniformItemSizes(true);
  ui_->ReportThumbnails->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  ui_->ReportThumbnails->setIconSize(QSize(130, 130));
  ui_->Parts->setStretchFactor(2, 1);
  ui_->Parts->setSizes({270, 170, 740});
  constexpr double kOfTheScreen = 0.95;  // the frame and the desktop's bars need the rest
  resize(size().boundedTo(screen()->availableSize() * kOfTheScreen));
  for (QTimer* timer : {&make_soon_, &read_again_, &print_next_}) timer->setSingleShot(true);
  FillChoices();
  ConnectControls();
  SetIdle({});
}

RiskBookRpts::~RiskBookRpts() {
  Stop();
}

void RiskBookRpts::FillChoices() {
  Fill(*ui_->ReportKind, reports::kKindWords);
  Fill(*ui_->ReportPaper, reports::kPaperWords);
  Fill(*ui_->ReportOnly, reports::kOnlyWords);
  Fill(*ui_->ReportOrder, reports::kOrderWords);
  ui_->ReportDate->setDate(platform_.clock.Today());
  for (const int percent : {50, 75, 100, 125, 150, 200, 400}) {
    ui_->ReportZoom->addItem(QStringLiteral("%1 %").arg(percent));
  }
  ui_->ReportFitWidth->setChecked(true);
}

void RiskBookRpts::ConnectControls() {
  connect(ui_->ReportOrganisations, &QListWidget::currentRowChanged, this,
          [this] { Guarded([this] { ReadProjects(); }); });
  connect(ui_->ReportProjects, &QListWidget::currentRowChanged, this, [this] { Make(); });
  for (QComboBox* combo : {ui_->ReportKind, ui_->ReportPaper, ui_->ReportOnly, ui_->ReportOrder}) {
    connect(combo, &QComboBox::currentIndexChanged, this, [this] { Make(); });
  }
  const auto soon = [this] { make_soon_.start(kWhileTyping); };
  connect(ui_->ReportNumber, &QLineEdit::textChanged, this, soon);
  connect(ui_->ReportRevision, &QLineEdit::textChanged, this, soon);
  connect(ui_->ReportDate, &QDateEdit::dateChanged, this, soon);
  connect(&make_soon_, &QTimer::timeout, this, &RiskBookRpts::Make);
  connect(&read_again_, &QTimer::timeout, this, &RiskBookRpts::ReadProjects);
  connect(&watcher_, &QFileSystemWatcher::fileChanged, this,
          [this] { read_again_.start(kAfterAChange); });
  connect(&print_next_, &QTimer::timeout, this, [this] { Guarded([this] { PrintNext(); }); });

  connect(&projects_, &QFutureWatcherBase::finished, this, &RiskBookRpts::TakeProjects);
  connect(&cover_, &QFutureWatcherBase::finished, this, &RiskBookRpts::TakeCover);
  connect(&whole_, &QFutureWatcherBase::finished, this, &RiskBookRpts::TakeWhole);
  connect(&exported_, &QFutureWatcherBase::finished, this, &RiskBookRpts::TakeExported);
  connect(&exported_, &QFutureWatcherBase::progressRangeChanged, ui_->ReportProgress,
          &QProgressBar::setRange);
  connect(&exported_, &QFutureWatcherBase::progressValueChanged, ui_->ReportProgress,
          &QProgressBar::setValue);

  connect(ui_->ReportExport, &QPushButton::clicked, this,
          [this] { Guarded([this] { Export(); }); });
  connect(ui_->ReportPrint, &QPushButton::clicked, this, [this] { Guarded([this] { Print(); }); });
  connect(ui_->ReportRefresh, &QPushButton::clicked, this, [this] {
    Guarded([this] { ReadOrganisations({TextOf(*ui_->ReportOrganisations), {}, 0}); });
  });
  connect(ui_->ReportStop, &QPushButton::clicked, this, &RiskBookRpts::Stop);
  connect(ui_->ReportFind, &QLineEdit::returnPressed, this, [this] { Find(false); });
  connect(ui_->ReportFind, &QLineEdit::textEdited, this, [this](const QString& text) {
    if (!text.isEmpty()) Find(false);
  });
  connect(ui_->ReportZoom, &QComboBox::textActivated, this, &RiskBookRpts::TakeZoom);
  connect(ui_->ReportZoom->lineEdit(), &QLineEdit::returnPressed, this, &RiskBookRpts::TakeZoom);
  connect(ui_->ReportFitWidth, &QPushButton::clicked, this, [this](bool checked) {
    if (checked) {
      ui_->ReportPreview->FitWidth();
    } else {
      ui_->ReportPreview->SetZoom(ui_->ReportPreview->Zoom());
    }
  });
  connect(ui_->ReportPreview, &PageView::CurrentPageChanged, this, &RiskBookRpts::ShowPage);
  connect(ui_->ReportPreview, &PageView::ZoomChanged, this, &RiskBookRpts::ShowZoom);
  connect(ui_->ReportPreview, &PageView::LinkMarked, this, [this](const QString& heading) {
    ui_->ReportMessage->setText(QStringLiteral("Enter goes to \"%1\".").arg(heading));
  });
  connect(ui_->ReportThumbnails, &QListView::clicked, this,
          [this](const QModelIndex& index) { ui_->ReportPreview->GoTo(index.row()); });
  connect(ui_->ReportThumbnails, &QListView::activated, this,
          [this](const QModelIndex& index) { ui_->ReportPreview->GoTo(index.row()); });

  const auto key = [this](const QKeySequence& sequence, auto act) {
    connect(new QShortcut(sequence, this), &QShortcut::activated, this, act);
  };
  key(QKeySequence(Qt::CTRL | Qt::Key_E), [this] { ui_->ReportExport->click(); });
  key(QKeySequence::Print, [this] { ui_->ReportPrint->click(); });
  key(QKeySequence(Qt::Key_F5), [this] { ui_->ReportRefresh->click(); });
  key(QKeySequence::Find, [this] {
    ui_->ReportFind->setFocus(Qt::ShortcutFocusReason);
    ui_->ReportFind->selectAll();
  });
  key(QKeySequence(Qt::Key_F3), [this] { Find(false); });
  key(QKeySequence(Qt::SHIFT | Qt::Key_F3), [this] { Find(true); });
  key(QKeySequence(Qt::Key_Escape), [this] { ui_->ReportStop->click(); });
  constexpr double kStep = 1.25;
  key(QKeySequence::ZoomIn,
      [this] { ui_->ReportPreview->SetZoom(ui_->ReportPreview->Zoom() * kStep); });
  key(QKeySequence::ZoomOut,
      [this] { ui_->ReportPreview->SetZoom(ui_->ReportPreview->Zoom() / kStep); });
}

void RiskBookRpts::Guarded(const std::function<void()>& work) {
  try {
    work();
  } catch (const Failure& failure) {
    SetIdle(failure.description());
  }
}

void RiskBookRpts::Open(const Request& request) {
  Guarded([&] { ReadOrganisations(request); });
}

void RiskBookRpts::ReadOrganisations(const Request& request) {
  wanted_project_ = request.project;
  if (wanted_project_.isEmpty()) wanted_project_ = TextOf(*ui_->ReportProjects);
  wanted_task_ = request.task;
  const QSignalBlocker quiet(ui_->ReportOrganisations);
  ui_->ReportOrganisations->clear();
  organisations_.clear();
  records::Register read;
  try {
    read = records::FileSource(installation_).ReadRegister();
  } catch (const Failure& failure) {
    ui_->ReportProjects->clear();
    return ShowNothing(failure.description());
  }
  organisations_ = std::move(read.organisations);
  int row = -1;
  for (const records::Organisation& organisation : organisations_) {
    const bool is_wanted = request.organisation.isEmpty()
                               ? organisation.study == read.opened_last && organisation.study > 0
                               : organisation.name == request.organisation;
    if (is_wanted && row < 0) row = ui_->ReportOrganisations->count();
    ui_->ReportOrganisations->addItem(organisation.name);
  }
  if (row < 0 && request.organisation.isEmpty()) row = ui_->ReportOrganisations->count() - 1;
  ui_->ReportOrganisations->setCurrentRow(row);
  if (row >= 0) return ReadProjects();
  ui_->ReportProjects->clear();
  ShowNothing(
      request.organisation.isEmpty()
          ? QStringLiteral("No organisation is registered yet.")
          : QStringLiteral("There is no organisation with the name %1.").arg(request.organisation));
}

void RiskBookRpts::ReadProjects() {
  const int row = ui_->ReportOrganisations->currentRow();
  if (row < 0) return;
  if (wanted_project_.isEmpty() && projects_.isFinished()) {
    wanted_project_ = TextOf(*ui_->ReportProjects);
  }
  projects_.setFuture(QtConcurrent::run(ReadProjectsOf, installation_,
                                        organisations_[static_cast<std::size_t>(row)]));
}

void RiskBookRpts::TakeProjects() {
  const ProjectsRead read = projects_.result();
  const QString wanted = std::exchange(wanted_project_, QString());
  {
    const QSignalBlocker quiet(ui_->ReportProjects);
    ui_->ReportProjects->clear();
    for (const records::ProjectLine& line : read.lines) ui_->ReportProjects->addItem(line.number);
    const auto named = std::ranges::find(read.lines, wanted, &records::ProjectLine::number);
    ui_->ReportProjects->setCurrentRow(named == read.lines.end()
                                           ? NewestOf(read.lines)
                                           : static_cast<int>(named - read.lines.begin()));
  }
  Watch();
  if (!read.failure.isEmpty()) return ShowNothing(read.failure);
  if (read.lines.empty()) return ShowNothing(QStringLiteral("This organisation has no project."));
  Make();
}

void RiskBookRpts::Watch() {
  const QStringList watched = watcher_.files();
  if (!watched.isEmpty()) watcher_.removePaths(watched);
  const int row = ui_->ReportOrganisations->currentRow();
  if (row < 0) return;
  // A file that is replaced takes its watch along, so it is set again each time.
  const QString study =
      records::FileSource(installation_).StudyPath(organisations_[static_cast<std::size_t>(row)]);
  if (QFileInfo::exists(study)) watcher_.addPath(study);
}

std::optional<Wish> RiskBookRpts::CurrentWish() const {
  const int row = ui_->ReportOrganisations->currentRow();
  const QString project = TextOf(*ui_->ReportProjects);
  if (row < 0 || ui_->ReportProjects->currentRow() < 0) return std::nullopt;
  Options options;
  options.kind = Chosen<reports::Kind>(*ui_->ReportKind);
  options.paper = Chosen<reports::Paper>(*ui_->ReportPaper);
  options.only = Chosen<reports::Only>(*ui_->ReportOnly);
  options.order = Chosen<reports::Order>(*ui_->ReportOrder);
  options.number = ui_->ReportNumber->text();
  options.revision = ui_->ReportRevision->text();
  options.date = ui_->ReportDate->date();
  return Wish{organisations_[static_cast<std::size_t>(row)], project, options};
}

void RiskBookRpts::Make() {
  make_soon_.stop();
  const std::optional<Wish> wish = CurrentWish();
  if (!wish) return;
  if (wish->options.kind == reports::Kind::kChanges) {
    return ShowNothing(QStringLiteral("This version can't tell changes since a backup set."));
  }
  whole_.cancel();
  SetBusy(QStringLiteral("Reading…"), 0);
  const bool same = made_ && made_->failure.isEmpty() &&
                    made_->report.organisation.name == wish->organisation.name &&
                    made_->report.head.number == wish->project;
  // Where pages of the same project stand already, they stay until the new ones are there.
  if (!same) cover_.setFuture(QtConcurrent::run(MakeCover, installation_, *wish));
  whole_.setFuture(QtConcurrent::run([installation = installation_,
                                      wish = *wish](QPromise<MadeReport>& promise) {
    promise.addResult(MakeWhole(installation, wish, [&promise] { return promise.isCanceled(); }));
  }));
}

void RiskBookRpts::TakeCover() {
  if (!whole_.isRunning()) return;  // the whole came first
  const MadeReport made = cover_.result();
  if (made && made->failure.isEmpty()) ShowMade(made);
}

void RiskBookRpts::TakeWhole() {
  if (whole_.isCanceled() || whole_.future().resultCount() == 0) return;
  const MadeReport made = whole_.result();
  if (!made) return;
  if (!made->failure.isEmpty()) return ShowNothing(made->failure);
  ShowMade(made);
  SetIdle({});
  if (wanted_task_ == 0) return;
  const qint64 task = std::exchange(wanted_task_, 0);
  if (!ui_->ReportPreview->GoToAnchor(QStringLiteral("task-%1").arg(task))) {
    SetIdle(QStringLiteral("The report holds no task with the number %1.").arg(task));
  }
}

void RiskBookRpts::ShowMade(MadeReport made) {
  made_ = std::move(made);
  thumbnails_.SetLayout(Pages());
  ui_->ReportPreview->SetLayout(Pages());
  ShowPage(ui_->ReportPreview->CurrentPage());
}

void RiskBookRpts::ShowNothing(const QString& why) {
  whole_.cancel();
  made_.reset();
  thumbnails_.SetLayout(nullptr);
  ui_->ReportPreview->SetLayout(nullptr);
  SetIdle(why);
}

std::shared_ptr<const paper::Layout> RiskBookRpts::Pages() const {
  return made_ ? std::shared_ptr<const paper::Layout>(made_, made_->layout.get()) : nullptr;
}

void RiskBookRpts::Export() {
  if (!made_ || !made_->whole) return;
  FileDialogRequest request;
  request.title = QStringLiteral("Export the report");
  request.filter = QStringLiteral(
      "PDF (*.pdf)|*.pdf|Web page (*.html)|*.html|Workbook (*.xlsx)|*.xlsx|"
      "Text with commas (*.csv)|*.csv|JSON (*.json)|*.json");
  request.file_name = QStringLiteral("report.pdf");
  request.folder = platform_.environment.DocumentsFolder();
  const QString path = platform_.dialogs.Save(request);
  if (path.isEmpty()) return;
  if (!reports::HasFormat(path)) {
    return SetIdle(QStringLiteral("The file's ending tells the format: %1.")
                       .arg(reports::Endings().join(QStringLiteral(", "))));
  }
  SetBusy(QStringLiteral("Exporting %1…").arg(QFileInfo(path).fileName()), 0);
  exported_.setFuture(QtConcurrent::run([made = made_, path](QPromise<QString>& promise) {
    try {
      const QByteArray bytes =
          reports::BytesFor(path, made->report, *made->source, [&promise](int done, int of) {
            promise.setProgressRange(0, of);
            promise.setProgressValue(done);
            return !promise.isCanceled();
          });
      if (promise.isCanceled() || bytes.isEmpty()) return;
      reports::WriteWhole(path, bytes);
      promise.addResult(QStringLiteral("Exported to %1.").arg(path));
    } catch (const Failure& failure) {
      promise.addResult(failure.description());
    }
  }));
}

void RiskBookRpts::TakeExported() {
  SetIdle(exported_.future().resultCount() > 0
              ? exported_.result()
              : QStringLiteral("The export was stopped; nothing was written."));
}

void RiskBookRpts::Print() {
  if (!made_ || !made_->whole || printing_) return;
  std::unique_ptr<QPagedPaintDevice> device = printer_.Choose(kTitle);
  if (!device) return;
  printing_ = std::make_unique<Printing>();
  printing_->made = made_;
  printing_->device = std::move(device);
  SetBusy(QStringLiteral("Printing…"), made_->layout->PageCount());
  print_next_.start(0);
}

/// One page each time that the events have had their turn.
void RiskBookRpts::PrintNext() {
  if (!printing_) return;
  Printing& job = *printing_;
  const paper::Layout& layout = *job.made->layout;
  const auto turn = [&](int page) {
    job.device->setPageLayout(
        {reports::SizeOf(job.made->report.options.paper),
         layout.PageAt(page).landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
         QMarginsF()});
  };
  turn(job.next);
  const bool ready = job.next == 0 ? job.painter.begin(job.device.get()) : job.device->newPage();
  if (!ready) {
    EndPrinting();
    throw Failure(failure::kDeviceError, QStringLiteral("The printer takes no page."));
  }
  job.painter.save();
  const double scale = double(job.device->logicalDpiX()) / paper::kPdfDots;
  job.painter.scale(scale, scale);
  layout.Paint(job.painter, job.next);
  job.painter.restore();
  ui_->ReportProgress->setValue(++job.next);
  if (job.next < layout.PageCount()) return print_next_.start(0);
  EndPrinting();
  SetIdle(QStringLiteral("Printed."));
}

void RiskBookRpts::EndPrinting() {
  if (printing_ && printing_->painter.isActive()) printing_->painter.end();
  printing_.reset();
}

void RiskBookRpts::Stop() {
  const bool prints = printing_ != nullptr;
  EndPrinting();
  exported_.cancel();
  if (whole_.isRunning()) {
    whole_.cancel();
    SetIdle(QStringLiteral("Stopped; Refresh reads again."));
  }
  if (prints) SetIdle(QStringLiteral("The printing was stopped."));
}

void RiskBookRpts::Find(bool backwards) {
  const QString text = ui_->ReportFind->text();
  if (text.isEmpty()) return;
  ui_->ReportMessage->setText(ui_->ReportPreview->Find(text, backwards)
                                  ? QString()
                                  : QStringLiteral("\"%1\" isn't on the pages.").arg(text));
}

void RiskBookRpts::TakeZoom() {
  bool is_number = false;
  const double percent = ui_->ReportZoom->currentText().remove(u'%').trimmed().toDouble(&is_number);
  if (is_number && percent > 0) ui_->ReportPreview->SetZoom(percent / kPercent);
  ShowZoom(ui_->ReportPreview->Zoom());
}

void RiskBookRpts::ShowZoom(double zoom) {
  ui_->ReportFitWidth->setChecked(ui_->ReportPreview->FitsWidth());
  ui_->ReportZoom->setEditText(QStringLiteral("%1 %").arg(qRound(zoom * kPercent)));
}

void RiskBookRpts::ShowPage(int page) {
  if (!made_) return ui_->ReportPages->clear();
  ui_->ReportPages->setText(
      QStringLiteral("Page %1 of %2")
          .arg(page + 1)
          .arg(made_->whole ? QString::number(made_->layout->PageCount()) : QStringLiteral("…")));
  ui_->ReportThumbnails->setCurrentIndex(thumbnails_.index(page));
  ui_->ReportPreview->setAccessibleDescription(ui_->ReportPreview->TextOf(page));
}

void RiskBookRpts::SetBusy(const QString& message, int most) {
  ui_->ReportMessage->setText(message);
  ui_->ReportProgress->setRange(0, most);
  ui_->ReportProgress->setValue(0);
  ui_->ReportProgress->show();
  ui_->ReportStop->setEnabled(true);
  ui_->ReportExport->setEnabled(false);
  ui_->ReportPrint->setEnabled(false);
}

void RiskBookRpts::SetIdle(const QString& message) {
  const bool has_pages = made_ && made_->whole;
  ui_->ReportMessage->setText(message);
  ui_->ReportProgress->hide();
  ui_->ReportStop->setEnabled(false);
  ui_->ReportExport->setEnabled(has_pages);
  ui_->ReportPrint->setEnabled(has_pages);
  if (!made_) ui_->ReportPages->clear();
}

void RiskBookRpts::closeEvent(QCloseEvent* event) {
  Stop();
  event->accept();
}

}  // namespace kestrix::preview
