// Backup and restore of a large installation through the form, each against copying the same files
// with `cp -r` and `sync -f`, after which they are on the disk too.
//
// kestrix_bench_backup [folder to work in]
//
// The two sides run right behind each other, so that what else the machine does meets both; a ratio
// is the median over the rounds. Each line that is printed is a name and a number: seconds,
// megabytes, or milliseconds. The folder needs room for ten gigabytes; nothing is deleted in
// between, since a disk that has just lost many files is slow to take new ones.
#include <sys/resource.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include "Desk.h"
#include "LargeInstallation.h"
#include "backup/BkUpfrm.h"

namespace kestrix::bench {
namespace {

constexpr int kRounds = 7;
constexpr int kFewerRounds = 5;

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void Print(const QString& name, double value) {
  std::printf("%s %.4f\n", name.toLatin1().constData(), value);
  std::fflush(stdout);
}

/// What a piece of work took: of this process and of those that it has waited for.
struct Cost {
  double seconds = 0;
  double processor_seconds = 0;
  double megabytes = 0;  ///< handed to the disk
};

double ProcessorSeconds(int whose) {
  struct rusage usage = {};
  ::getrusage(whose, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double MegabytesWritten() {
  QFile file(QStringLiteral("/proc/self/io"));
  if (!file.open(QIODevice::ReadOnly)) return 0;
  const QList<QByteArray> lines = file.readAll().split('\n');
  for (const QByteArray& line : lines)
    if (line.startsWith("write_bytes: ")) return line.mid(13).toDouble() / 1e6;
  return 0;
}

Cost Sofar() {
  return {.processor_seconds = ProcessorSeconds(RUSAGE_SELF) + ProcessorSeconds(RUSAGE_CHILDREN),
          .megabytes = MegabytesWritten()};
}

Cost CostOf(const std::function<void()>& work) {
  const Cost before = Sofar();
  QElapsedTimer clock;
  clock.start();
  work();
  const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
  const Cost after = Sofar();
  return {seconds, after.processor_seconds - before.processor_seconds,
          after.megabytes - before.megabytes};
}

/// Measures how long the windows of the program go without an answer: the longest time between two
/// moments at which the event loop came to a timer and a repaint that was asked for.
class Pulse : public QObject {
 public:
  explicit Pulse(QWidget& window) : window_(window) {
    window_.installEventFilter(this);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, &window_, [this] { window_.update(); });
  }

  /// In milliseconds. `work` leaves the window open.
  double LongestSilenceIn(const std::function<void()>& work) {
    timer_.start(1);
    WaitForPaint();
    longest_ = 0;
    work();
    WaitForPaint();
    timer_.stop();
    return longest_;
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      if (clock_.isValid())
        longest_ = std::max(longest_, static_cast<double>(clock_.nsecsElapsed()) / 1e6);
      clock_.start();
      ++paints_;
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  void WaitForPaint() {
    for (const int before = paints_; paints_ == before && window_.isVisible();)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  QWidget& window_;
  QTimer timer_;
  QElapsedTimer clock_;
  double longest_ = 0;
  int paints_ = 0;
};

/// Presses the main button of the form, as a person does who has chosen the folder.
class Copier {
 public:
  explicit Copier(const QString& installation) : desk_(installation) {
    desk_.session.BackupDateName = QStringLiteral("15February2013");
  }

  void BackUp(const QString& into) { Press(kBackUp, into, PlainPress); }
  void Restore(const QString& set) { Press(kRestore, set, PlainPress); }
  /// In milliseconds, the longest silence of the window meanwhile.
  double SilenceInBackUp(const QString& into) { return SilenceIn(kBackUp, into); }
  double SilenceInRestore(const QString& set) { return SilenceIn(kRestore, set); }

 private:
  struct Work {
    qint16 mode;
    const QString& from;
    const QString& to;
  };
  static inline const Work kBackUp{0, BkUpfrm::kBackup, BkUpfrm::kBackupComplete};
  static inline const Work kRestore{1, BkUpfrm::kRestore, BkUpfrm::kRestoreComplete};
  using PressButton = std::function<void(BkUpfrm&, QPushButton&)>;

  static void PlainPress(BkUpfrm& /*form*/, QPushButton& button) { button.click(); }

  double SilenceIn(const Work& work, const QString& folder) {
    double silence = 0;
    Press(work, folder, [&](BkUpfrm& form, QPushButton& button) {
      silence = Pulse(form).LongestSilenceIn([&] { button.click(); });
    });
    return silence;
  }

  void Press(const Work& work, const QString& folder, const PressButton& press) {
    desk_.session.BackupMode = work.mode;
    desk_.session.BackupFolder = folder;
    BkUpfrm form(desk_.context());
    form.LoadForm();
    form.ShowForm();
    form.SetMainCaption(work.from);
    auto* button = form.findChild<QPushButton*>(QStringLiteral("clsd"));
    press(form, *button);
    if (button->text() != work.to || !desk_.messages.shown.isEmpty())
      GiveUp(QStringLiteral("\"%1\" didn't come to its end. %2")
                 .arg(work.from, desk_.messages.shown.join(u' ')));
  }

  Desk desk_;
};

void BringToDisk(const QString& folder) {
  RunProgram({QStringLiteral("sync"), QStringLiteral("-f"), folder});
}

void CopyPlainly(const QString& source, const QString& target) {
  RunProgram({QStringLiteral("cp"), QStringLiteral("-r"), source, target});
  BringToDisk(target);
}

/// The costs of two ways to do one thing, round by round: theirs, ours, ours, theirs. So it doesn't
/// matter for their sums who comes behind whom, nor that the machine gets slower or faster.
class Rounds {
 public:
  /// Runs `ours` and `theirs` with the number of the run, each twice in a round.
  void Run(int count, const QString& disk, const std::function<void(int)>& ours,
           const std::function<void(int)>& theirs) {
    for (int round = 0; round < count; ++round) {
      for (const auto& [is_ours, half] : kOrder) {
        BringToDisk(disk);
        const int run = 2 * round + half;
        (is_ours ? ours_ : theirs_).push_back(CostOf([&] { (is_ours ? ours : theirs)(run); }));
      }
    }
  }

  void PrintAs(const QString& name) const {
    PrintCosts(name, ours_);
    PrintCosts(name + QStringLiteral(".plain"), theirs_);
    std::vector<double> ratios;
    for (size_t i = 0; i < ours_.size(); i += 2)
      ratios.push_back((ours_[i].seconds + ours_[i + 1].seconds) /
                       (theirs_[i].seconds + theirs_[i + 1].seconds));
    const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
    Print(name + QStringLiteral(".ratio"), Median(ratios));
    Print(name + QStringLiteral(".ratio.least"), *least);
    Print(name + QStringLiteral(".ratio.most"), *most);
  }

 private:
  static constexpr std::pair<bool, int> kOrder[] = {{false, 0}, {true, 0}, {true, 1}, {false, 1}};

  static void PrintCosts(const QString& name, const std::vector<Cost>& costs) {
    const auto print = [&](const char* what, double Cost::*member) {
      std::vector<double> values;
      for (const Cost& cost : costs) values.push_back(cost.*member);
      Print(name + QString::fromLatin1(what), Median(values));
    };
    print("", &Cost::seconds);
    print(".processor", &Cost::processor_seconds);
    print(".written", &Cost::megabytes);
  }

  std::vector<Cost> ours_;
  std::vector<Cost> theirs_;
};

class BackupBench {
 public:
  explicit BackupBench(const QString& place)
      : place_(place), installation_(At("KestrixStudy")), copier_(installation_.Folder()) {}

  void Run() {
    WarmUp();
    BackUps();
    BackUpsOverOlderSets();
    Restores();
    Silences();
    Growth();
  }

 private:
  [[nodiscard]] QString At(const char* name, int number = -1) const {
    const QString path = place_ + u'/' + QString::fromLatin1(name);
    return number < 0 ? path : path + QString::number(number);
  }
  [[nodiscard]] static QString Dated(const QString& set) {
    return set + QStringLiteral("/15February2013");
  }

  void BackUp(const QString& into) {
    QDir().mkpath(into);
    copier_.BackUp(into);
  }

  /// The first run of each side reads what all others find in memory.
  void WarmUp() {
    BackUp(At("first set"));
    CopyPlainly(installation_.Data(), At("first copy"));
  }

  void BackUps() {
    Rounds rounds;
    rounds.Run(
        kRounds, place_, [&](int run) { BackUp(At("set", run)); },
        [&](int run) { CopyPlainly(installation_.Data(), At("copy", run)); });
    rounds.PrintAs(QStringLiteral("backup"));
  }

  void BackUpsOverOlderSets() {
    Rounds rounds;
    const QString all = installation_.Data() + QStringLiteral("/.");
    rounds.Run(
        kFewerRounds, place_, [&](int run) { BackUp(At("set", run)); },
        [&](int run) { CopyPlainly(all, At("copy", run)); });
    rounds.PrintAs(QStringLiteral("again"));
  }

  /// Both sides take the pictures away and put the databases into the place of older ones.
  void Restores() {
    Rounds rounds;
    rounds.Run(
        kFewerRounds, place_, [&](int run) { copier_.Restore(Dated(At("set", run))); },
        [&](int run) {
          const QString copy = At("copy", run);
          RunProgram({QStringLiteral("rm"), QStringLiteral("-r"), copy + "/Picfolder"});
          CopyPlainly(Dated(At("set", run)) + QStringLiteral("/."), copy);
        });
    rounds.PrintAs(QStringLiteral("restore"));
  }

  /// How long the window is deaf.
  void Silences() {
    std::vector<double> backups;
    std::vector<double> restores;
    for (int run = 0; run < kFewerRounds; ++run) {
      const QString set = At("watched", run);
      QDir().mkpath(set);
      BringToDisk(place_);
      backups.push_back(copier_.SilenceInBackUp(set));
      BringToDisk(place_);
      restores.push_back(copier_.SilenceInRestore(Dated(set)));
    }
    for (const auto& [name, values] : {std::pair{"backup", backups}, {"restore", restores}}) {
      Print(QStringLiteral("silence.") + QString::fromLatin1(name), Median(values));
      Print(QStringLiteral("silence.%1.most").arg(QString::fromLatin1(name)),
            *std::max_element(values.begin(), values.end()));
    }
  }

  /// From the larger part to the smaller: a restore takes away the pictures of those that its set
  /// doesn't list.
  void Growth() {
    for (const int studies : {LargeInstallation::kStudies / 2, LargeInstallation::kStudies / 4}) {
      installation_.List(studies);
      std::vector<double> backups;
      std::vector<double> restores;
      for (int run = 0; run < kFewerRounds; ++run) {
        const QString set = At("part", studies * 100 + run);
        BringToDisk(place_);
        backups.push_back(CostOf([&] { BackUp(set); }).seconds);
        BringToDisk(place_);
        restores.push_back(CostOf([&] { copier_.Restore(Dated(set)); }).seconds);
      }
      Print(QStringLiteral("backup.%1").arg(studies), Median(backups));
      Print(QStringLiteral("restore.%1").arg(studies), Median(restores));
    }
  }

  QString place_;
  LargeInstallation installation_;
  Copier copier_;
};

}  // namespace
}  // namespace kestrix::bench

int main(int argc, char** argv) {
  using namespace kestrix::bench;
  const QApplication application(argc, argv);
  const QString where = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::tempPath();
  const QTemporaryDir place(where + QStringLiteral("/kestrix-bench-XXXXXX"));
  if (!place.isValid()) GiveUp(place.errorString());
  // The register of a set is looked at in the temporary folder.
  qputenv("TEMP", place.path().toLocal8Bit());
  BackupBench(place.path()).Run();
  return 0;
}
