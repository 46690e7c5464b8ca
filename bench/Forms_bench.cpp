// What a person waits for in the forms: opening a project, moving between tasks, finding, adding,
// filling a list. Each line that it prints is a name and a time in milliseconds: the median.
//
// kestrix_bench_forms <folder of an installation> <study> <tasks of the study> [opening|moving|...]
//
// The study has one organisation, "ACME", with the project "P-1" that all its tasks belong to; in
// the study behind it (number + 1) there are as many projects as tasks here.
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include "Desk.h"
#include "evaluation/RiskEvalFrm_1.h"
#include "formkit/Grid.h"
#include "projects/mnfrm.h"
#include "store/DataControl.h"
#include "store/RecordSources.h"

namespace kestrix::bench {
namespace {

constexpr int kOpenings = 9;
constexpr int kMoves = 201;
constexpr int kKeystrokes = 9;
constexpr int kAdditions = 15;

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

  /// What the other side reads.
  void Select() { std::printf("%s\n", qPrintable(sources::RiskSql(desk_.project_number))); }

  void ExpectNoMessage() { Expect(desk_.messages.shown.isEmpty()); }

 private:
  void Expect(bool holds) {
    if (holds) return;
    std::fprintf(stderr, "Something else was measured than was meant. %s\n",
                 qPrintable(desk_.messages.shown.join(u'\n')));
    std::exit(1);
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
      {QStringLiteral("select"), &Bench::Select}};
  for (int i = 4; i < argc; ++i) {
    const auto work = all.value(QString::fromLatin1(argv[i]));
    if (work == nullptr) return 2;
    (bench.*work)();
  }
  bench.ExpectNoMessage();
  return 0;
}
