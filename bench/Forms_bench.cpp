// What a person waits for in the forms: opening a project, moving between tasks, finding, adding,
// filling a list, emptying one, pasting many lines, seeing large photographs. Each line that it
// prints is a name and a time in milliseconds: the median.
//
// kestrix_bench_forms <folder of an installation> <study> <tasks of the study> [opening|moving|...]
//
// The study has one organisation, "ACME", with the project "P-1" that all its tasks belong to; in
// the study behind it (number + 1) there are as many projects as tasks here.
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImageWriter>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include "Desk.h"
#include "customization/custizationFrm.h"
#include "estimation/RiskEstimtn.h"
#include "evaluation/RiskEvalFrm_1.h"
#include "formkit/Grid.h"
#include "projects/mnfrm.h"
#include "store/DataControl.h"
#include "store/Database.h"
#include "store/RecordSources.h"
#include "store/Statement.h"

namespace kestrix::bench {
namespace {

constexpr int kOpenings = 9;
constexpr int kMoves = 201;
constexpr int kKeystrokes = 9;
constexpr int kAdditions = 15;
constexpr int kPictures = 7;
constexpr int kDeletions = 5;
constexpr int kEntries = 20000;
constexpr int kPastes = 5;
constexpr int kPastedLines = 500000;
constexpr QSize kFiftyMegapixels(8660, 5774);

/// Lets everything run that is queued, the repaint included.
void Settle() {
  QCoreApplication::sendPostedEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) continue;
}

double MillisecondsOf(const std::function<void()>& work) {
  QElapsedTimer clock;
  clock.start();
  work();
  return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

void Print(const char* name, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  std::printf("%s %.4f\n", name, times[times.size() / 2]);
  std::fflush(stdout);
}

void Press(QWidget* widget, int key, const QString& text = {}) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
  QCoreApplication::sendEvent(widget, &press);
  QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
  QCoreApplication::sendEvent(widget, &release);
}

/// Slopes of light, edges and the noise of a sensor: what a photograph is to its formats.
QImage Photograph() {
  QImage photograph(kFiftyMegapixels, QImage::Format_RGB32);
  quint32 dice = 1;
  for (int y = 0; y < photograph.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(photograph.scanLine(y));
    for (int x = 0; x < photograph.width(); ++x) {
      dice = dice * 1664525U + 1013904223U;
      const int noise = static_cast<int>(dice >> 29U);
      const int light = static_cast<int>(100 + 90 * std::sin(x / 700.0) * std::cos(y / 500.0));
      const int edge = (x / 577 + y / 577) % 2 == 0 ? 60 : 190;
      line[x] = qRgb(light + noise, (light + edge) / 2 + noise, edge + noise);
    }
  }
  return photograph;
}

struct PictureFormat {
  const char* name;
  const char* format;
  QImageIOHandler::Transformation held;
  bool progressive;
};
constexpr std::array kPictureFormats{
    PictureFormat{"jpeg", "jpg", QImageIOHandler::TransformationNone, false},
    PictureFormat{"jpeg.turned", "jpg", QImageIOHandler::TransformationRotate90, false},
    PictureFormat{"jpeg.progressive", "jpg", QImageIOHandler::TransformationNone, true},
    PictureFormat{"png", "png", QImageIOHandler::TransformationNone, false},
    PictureFormat{"bmp", "bmp", QImageIOHandler::TransformationNone, false}};

class FormsBench {
 public:
  FormsBench(const QString& folder, int study, int tasks)
      : desk_(folder), study_(study), tasks_(tasks) {
    desk_.session.ActiveStudyNo = static_cast<qint16>(study);
    desk_.project_number = QStringLiteral("P-1");
  }

  /// The rows alone, and the form as it comes up when a person opens the project.
  void Opening() {
    std::vector<double> rows;
    std::vector<double> load;
    std::vector<double> whole;
    for (int i = 0; i < kOpenings; ++i) {
      rows.push_back(MillisecondsOf([this] {
        DataControl source(QStringLiteral("dtsorce2"));
        source.SetConnectionString(
            DataControl::ConnectionStringFor(desk_.installation().Study(study_)));
        source.SetRecordSource(sources::RiskSql(QStringLiteral("P-1")));
        source.Refresh();
        Expect(source.Recordset().RecordCount() == tasks_);
        Expect(!source.Recordset().Text(2).isEmpty());
      }));
      whole.push_back(MillisecondsOf([&] {
        form_ = new RiskEvalFrm_1(desk_.context());
        load.push_back(MillisecondsOf([this] { form_->LoadForm(); }));
        form_->ShowFormModal();
        Settle();
      }));
      Expect(form_->Tasks().RecordCount() == tasks_);
      Close();
    }
    Print("open.rows", rows);
    Print("open.load", load);
    Print("open.form", whole);
  }

  void Moving() {
    OpenTasks();
    auto* grid = Control<Grid>("DB1");
    grid->setFocus();
    Settle();
    std::vector<double> moves;
    std::vector<double> shown;
    for (int i = 0; i < kMoves; ++i) {
      const int before = form_->Tasks().AbsolutePosition();
      double repaint = 0;
      const double move = MillisecondsOf([&] { Press(grid, Qt::Key_Down); });
      repaint = MillisecondsOf([] { Settle(); });
      Expect(form_->Tasks().AbsolutePosition() == before + 1);
      moves.push_back(move);
      shown.push_back(move + repaint);
    }
    Print("move", moves);
    Print("move.shown", shown);
    Close();
  }

  void Finding() {
    std::vector<double> first;
    std::vector<double> later;
    std::vector<double> shown;
    for (int i = 0; i < kKeystrokes; ++i) {
      OpenTasks();
      auto* box = Control<QLineEdit>("FndESINo");
      FindIn(box, first, later, shown);
      Close();
    }
    Print("find.tasks.first", first);
    Print("find.tasks.later", later);
    Print("find.tasks.shown", shown);
  }

  void FindingProjects() {
    desk_.session.ActiveStudyNo = static_cast<qint16>(study_ + 1);
    desk_.session.SelectedOrgName = QStringLiteral("ACME");
    std::vector<double> first;
    std::vector<double> later;
    std::vector<double> shown;
    for (int i = 0; i < kKeystrokes; ++i) {
      desk_.session.StudyConnected = 0;
      auto* form = new mnfrm(desk_.context());
      form->SetOrganisationCaption(QStringLiteral(" ACME"));
      form->LoadForm();
      Settle();
      window_ = form;
      Expect(Control<Grid>("DB1")->model()->rowCount() == tasks_);
      FindIn(Control<QLineEdit>("FndESINo"), first, later, shown);
      form->UnloadForm();
      Settle();
    }
    Print("find.projects.first", first);
    Print("find.projects.later", later);
    Print("find.projects.shown", shown);
  }

  void Adding() {
    OpenTasks();
    std::vector<double> additions;
    for (int i = 1; i <= kAdditions; ++i) {
      additions.push_back(MillisecondsOf([this] {
        Control<QPushButton>("addNewRcd")->click();
        Settle();
      }));
      Expect(form_->Tasks().RecordCount() == tasks_ + i);
    }
    Print("add", additions);
    Close();
  }

  void FillingList() {
    OpenTasks();
    auto* combo = Control<QComboBox>("ActnByCbo");
    auto* elsewhere = Control<QLineEdit>("HazrdLoctn");
    std::vector<double> fills;
    for (int i = 0; i < kOpenings; ++i) {
      elsewhere->setFocus();
      Settle();
      fills.push_back(MillisecondsOf([&] {
        combo->setFocus();
        Settle();
      }));
    }
    std::printf("list.entries %d\n", combo->count());
    Print("list.fill", fills);
    Close();
  }

  /// A clipboard of half a million lines into the description of a hazard.
  void Pasting() {
    OpenTasks();
    auto* box = Control<QPlainTextEdit>("HzrdDscptnTXT");
    QApplication::clipboard()->setText(QString(kPastedLines, u'\n'));
    std::vector<double> pastes;
    for (int i = 0; i < kPastes; ++i) {
      box->setFocus();
      box->selectAll();
      pastes.push_back(MillisecondsOf([&] {
        box->paste();
        Settle();
      }));
      Expect(!box->toPlainText().isEmpty());
    }
    Print("paste", pastes);
    Close();
  }

  /// All entries of a long list, from the answer to the question on.
  void Deleting() {
    desk_.messages.answer = Button::kYes;
    std::vector<double> deletions;
    for (int i = 0; i < kDeletions; ++i) {
      {
        Database lists(desk_.installation().SupportLists());
        Statement(lists, QStringLiteral("DELETE FROM ActionBy")).Step();
        Statement(lists, QStringLiteral("INSERT INTO ActionBy WITH RECURSIVE counted(n) AS (SELECT "
                                        "1 UNION ALL SELECT n+1 FROM counted LIMIT %1) SELECT "
                                        "'Safety officer ' || n FROM counted")
                             .arg(kEntries))
            .Step();
      }
      auto* form = new custizationFrm(desk_.context());
      window_ = form;
      form->LoadForm();
      form->ShowFormModal();
      auto* choice = Control<QComboBox>("ForCustmnCbo");
      choice->setCurrentText(QStringLiteral("Action by"));
      Q_EMIT choice->activated(choice->currentIndex());
      Settle();
      Expect(Control<QListWidget>("ActnByLst")->count() == kEntries);
      deletions.push_back(MillisecondsOf([this] {
        Control<QPushButton>("DeltAll")->click();
        Settle();
      }));
      Expect(Control<QListWidget>("ActnByLst")->count() == 0);
      form->UnloadForm();
      Settle();
    }
    Print("list.delete", deletions);
  }

  /// Photographs of 50 megapixels: until the form is there, until the photograph is seen, and the
  /// longest that the form takes no events meanwhile.
  void Pictures() {
    const QString folder = desk_.installation().PictureFolder(desk_.session.ActiveStudyNo);
    Expect(QDir().mkpath(folder));
    const QImage photograph = Photograph();
    for (const PictureFormat& format : kPictureFormats) {
      const QString name = QString::fromLatin1(format.name);
      QImageWriter writer(folder + u'/' + name, format.format);
      writer.setQuality(format.format == QByteArray("jpg") ? 90 : -1);
      if (format.held != QImageIOHandler::TransformationNone) writer.setTransformation(format.held);
      writer.setProgressiveScanWrite(format.progressive);
      Expect(writer.write(photograph));
      ShowPicture(name);
      Expect(QFile::remove(folder + u'/' + name));
    }
  }

  /// What the other side reads.
  void Select() { std::printf("%s\n", qPrintable(sources::RiskSql(desk_.project_number).text)); }

  void ExpectNoMessage() { Expect(desk_.messages.shown.isEmpty()); }

 private:
  void Expect(bool holds) {
    if (holds) return;
    std::fprintf(stderr, "Something else was measured than was meant. %s\n",
                 qPrintable(desk_.messages.shown.join(u'\n')));
    std::exit(1);
  }
  /// Runs the events until the picture is seen; the longest that they stood still.
  static double BeatUntilSeen(const QLabel& box) {
    double longest = 0;
    QElapsedTimer since;
    QTimer beat;
    const auto take = [&] {
      longest = std::max(longest, static_cast<double>(since.nsecsElapsed()) / 1e6);
      since.start();
    };
    QObject::connect(&beat, &QTimer::timeout, take);
    beat.start(1);
    since.start();
    while (box.pixmap(Qt::ReturnByValue).isNull()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    Settle();
    take();
    return longest;
  }
  void ShowPicture(const QString& name) {
    DataControl source(QStringLiteral("dtsorce2"));
    source.SetConnectionString(
        DataControl::ConnectionStringFor(desk_.installation().Study(study_)));
    source.SetRecordSource(sources::RiskSql(desk_.project_number));
    source.Refresh();
    source.Recordset().Set(QStringLiteral("PicBfrRcmdtn"), name);
    desk_.tasks = &source.Recordset();
    std::vector<double> opened;
    std::vector<double> shown;
    std::vector<double> blocked;
    for (int i = 0; i < kPictures; ++i) {
      QPointer<RiskEstimtn> form;
      opened.push_back(MillisecondsOf([&] {
        form = new RiskEstimtn(desk_.context());
        form->LoadForm();
        form->ShowFormModal();
        Settle();
      }));
      window_ = form;
      const auto* box = Control<QLabel>("ImgBfore");
      double longest = opened.back();
      const double reading =
          MillisecondsOf([&] { longest = std::max(longest, BeatUntilSeen(*box)); });
      shown.push_back(opened.back() + reading);
      blocked.push_back(longest);
      form->UnloadForm();
      Settle();
    }
    source.Recordset().CancelUpdate();
    desk_.tasks = nullptr;
    Print(qPrintable(QStringLiteral("picture.%1.opened").arg(name)), opened);
    Print(qPrintable(QStringLiteral("picture.%1.shown").arg(name)), shown);
    Print(qPrintable(QStringLiteral("picture.%1.blocked").arg(name)), blocked);
  }
  void OpenTasks() {
    desk_.session.TaskPosition = 0;
    form_ = new RiskEvalFrm_1(desk_.context());
    window_ = form_;
    form_->LoadForm();
    form_->ShowFormModal();
    Settle();
  }
  void Close() {
    form_->UnloadForm();
    Settle();
    Expect(form_.isNull());
  }
  void FindIn(QLineEdit* box, std::vector<double>& first, std::vector<double>& later,
              std::vector<double>& shown) {
    box->setFocus();
    Settle();
    for (int i = 0; i < 4; ++i) {
      const double key = MillisecondsOf([&] { Press(box, Qt::Key_Z, QStringLiteral("z")); });
      const double repaint = MillisecondsOf([] { Settle(); });
      (i == 0 ? first : later).push_back(key);
      shown.push_back(key + repaint);
    }
    Expect(box->text() == QStringLiteral("zzzz"));
  }
  template <class T>
  T* Control(const char* name) {
    auto* control = window_->findChild<T*>(QString::fromLatin1(name));
    Expect(control != nullptr);
    return control;
  }

  Desk desk_;
  int study_;
  int tasks_;
  QPointer<RiskEvalFrm_1> form_;
  QPointer<QWidget> window_;
};

}  // namespace
}  // namespace kestrix::bench

int main(int argc, char** argv) {
  QApplication::setQuitOnLastWindowClosed(false);
  const QApplication application(argc, argv);
  if (argc < 4) return 2;
  using Bench = kestrix::bench::FormsBench;
  Bench bench(QString::fromLocal8Bit(argv[1]), std::atoi(argv[2]), std::atoi(argv[3]));
  const QHash<QString, void (Bench::*)()> all = {
      {QStringLiteral("opening"), &Bench::Opening},
      {QStringLiteral("moving"), &Bench::Moving},
      {QStringLiteral("finding"), &Bench::Finding},
      {QStringLiteral("projects"), &Bench::FindingProjects},
      {QStringLiteral("adding"), &Bench::Adding},
      {QStringLiteral("list"), &Bench::FillingList},
      {QStringLiteral("deleting"), &Bench::Deleting},
      {QStringLiteral("pasting"), &Bench::Pasting},
      {QStringLiteral("pictures"), &Bench::Pictures},
      {QStringLiteral("select"), &Bench::Select}};
  for (int i = 4; i < argc; ++i) {
    const auto work = all.value(QString::fromLatin1(argv[i]));
    if (work == nullptr) return 2;
    (bench.*work)();
  }
  bench.ExpectNoMessage();
  return 0;
}
