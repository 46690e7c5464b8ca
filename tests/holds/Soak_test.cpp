// A long day at the desk: one process takes down many tasks through the real forms, and brings
// every form up and down many times. What the program takes of the machine doesn't grow by it, and
// nothing is left open behind it.
#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QPixmapCache>
#include <QThreadPool>
#include <array>
#include <deque>
#include <map>

#include "Chance.h"
#include "Footprint.h"
#include "app/Workbench.h"
#include "main_job/WorkedExample.h"
#include "platform/QtFileSystem.h"
#include "support/FakePlatform.h"
#include "support/FormHands.h"
#include "support/TestInstallation.h"

namespace kestrix::holds {
namespace {

namespace example = worked_example;

constexpr double kMostGrowth = 5;  // percent
#ifdef KESTRIX_SANITIZED
constexpr int kTasks = 60;
#else
constexpr int kTasks = 2000;
#endif
constexpr int kPaintedOneIn = 10;  // rounds; the last one of each half is painted
constexpr int kKept = 12;          // tasks in the project behind each round
constexpr int kDays = 20;          // runs of the program, each through all forms
constexpr int kStudy = 1;
const QString kOrganisation = QStringLiteral("Press shop");
const QString kProject = QStringLiteral("P-1");
const QString kPhase = QStringLiteral("Dismantling");

QString Text(const char16_t* text) {
  return QString::fromUtf16(text);
}

/// Says Yes to each question and counts the boxes by how they begin, keeping none in mind.
class SteadyMessages : public Messages {
 public:
  Button Show(const Message& message) override {
    ++boxes[message.text.section(u' ', 0, 2)];
    return message.buttons.contains(Button::kYes) ? Button::kYes : Button::kOk;
  }
  void Beep() override { ++boxes[QStringLiteral("beep")]; }

  std::map<QString, int> boxes;
};

/// A desktop with real files; the rest of it keeps no record of what it was asked.
struct SteadyDesk {
  FakePlatform fakes;
  SteadyMessages messages;
  QtFileSystem files;
  Platform platform{
      messages,      files,          fakes.shell,     fakes.windows, fakes.settings,
      fakes.dialogs, fakes.printing, fakes.clipboard, fakes.clock,   fakes.environment};
};

void PrintGrowth(const Footprint& half, const Footprint& whole) {
  const auto line = [](const char* kind, qint64 before, qint64 now) {
    std::printf("  %-11s %6lld kB, then %6lld kB: %+.2f %%\n", kind, before / 1024, now / 1024,
                GrowthPercent(before, now));
  };
  line("heap in use", half.heap, whole.heap);
  line("own memory", half.own, whole.own);
  line("resident", half.resident, whole.resident);
  std::fflush(stdout);
}

void ExpectNoGrowth(const Footprint& half, const Footprint& whole) {
  EXPECT_LT(GrowthPercent(half.heap, whole.heap), kMostGrowth);
#ifndef KESTRIX_SANITIZED
  // The sanitizer holds back what was freed, so there the heap alone tells.
  EXPECT_LT(GrowthPercent(half.own, whole.own), kMostGrowth);
#endif
}

/// Decides whether the windows are painted, those that come later included. Painting is the greater
/// part of what a round takes; whatever else the program does, it does unpainted as well.
class Shutter : public QObject {
 public:
  Shutter() { qApp->installEventFilter(this); }
  ~Shutter() override { Set(true); }

  /// Open, everything is painted at once, and from then on what changes.
  void Set(bool open) {
    open_ = open;
    paintings_ = 0;
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) window->setUpdatesEnabled(open);
  }
  /// Since the shutter was set.
  [[nodiscard]] int paintings() const { return paintings_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget && event->type() == QEvent::Paint) ++paintings_;
    // A window is polished before it is first shown.
    if (widget && event->type() == QEvent::Polish && widget->isWindow())
      widget->setUpdatesEnabled(open_);
    return QObject::eventFilter(watched, event);
  }

 private:
  bool open_ = true;
  int paintings_ = 0;
};

/// The whole program in this process, with one person at it.
class SoakTest : public ::testing::Test, public TestInstallation {
 protected:
  SoakTest() {
    // What the toolkit has painted it keeps, up to a limit, for half a minute, and the names that
    // it keeps it under for longer: their size depends on how fast the machine is.
    QPixmapCache::setCacheLimit(0);
    desk.fakes.environment.SetApplicationFolder(Folder());
    GivenOrganisation(kOrganisation, kStudy);
    GivenProject(kStudy, kProject, kOrganisation);
    ComeToRest();
    handles_before_ = OpenHandles();
  }
  ~SoakTest() override { QDir::setCurrent(folder_before_); }

  /// Lets everything run that is queued, and ends the toolkit's threads that wait for work.
  static void ComeToRest() {
    FormHands::Settle();
    QThreadPool::globalInstance()->waitForDone();
  }

  void Start() {
    bench = std::make_unique<Workbench>(desk.platform);
    hands = std::make_unique<FormHands>(bench->forms());
    bench->Start();
    ExpectFront("frmMain");
  }
  void End() {
    ExpectFront("frmMain");
    hands->CloseBox(hands->Window());
    hands.reset();
    bench.reset();
    ComeToRest();
  }
  void ExpectFront(const QString& form) const {
    FormHands::Settle();
    ASSERT_NE(bench->forms().active(), nullptr);
    ASSERT_EQ(bench->forms().active()->objectName(), form);
  }
  void ClickThrough(const QString& button, const QString& form) const {
    hands->Click(button);
    ExpectFront(form);
  }
  void OpenOrganisation() const {
    ExpectFront("Orgfrm");
    hands->Pick("orgnmecbo", kOrganisation);
    ClickThrough("clsd", "mnfrm");
  }
  void OpenTasks() const {
    hands->Choose("mnuDatamnfrm");
    OpenOrganisation();
    ClickThrough("simultn1", "RiskEvalFrm_1");
  }

  void ExpectNothingLeftOpen() const {
    EXPECT_EQ(OpenHandles(), handles_before_);
    QDirIterator signs(Folder(), {"*.ldb"}, QDir::Files | QDir::Hidden,
                       QDirIterator::Subdirectories);
    EXPECT_FALSE(signs.hasNext()) << signs.next().toStdString();
  }

  SteadyDesk desk;
  std::unique_ptr<Workbench> bench;
  std::unique_ptr<FormHands> hands;

 private:
  QString folder_before_ = QDir::currentPath();
  QStringList handles_before_;
};

/// What the study is to hold of one task.
struct Task {
  QString title;
  QString description;
  const example::Task* source = nullptr;
};

/// The tasks of one project, taken down, estimated, copied, looked up and deleted.
class SoakOfTasksTest : public SoakTest {
 protected:
  /// A task is added, estimated and copied, another one looked at, one found, and the oldest two
  /// deleted, so that the project is as large behind each round as before it.
  void Round(int number) {
    const auto& source = example::kTasks[static_cast<std::size_t>(number) % example::kTasks.size()];
    AddTask(number, source);
    Estimate(source, number);
    CopyTask(QStringLiteral("Copy %1").arg(number));
    MoveTo(number % static_cast<int>(kept.size()));
    Find(kept[static_cast<std::size_t>(number) * 5 % kept.size()].title);
    while (kept.size() > kKept) DeleteOldest();
  }

  /// Title, phase and description, and one of the other fields in its turn.
  void AddTask(int number, const example::Task& source) {
    const QString title = QStringLiteral("Task %1").arg(number);
    const QString description = title + QStringLiteral(" hurts");
    hands->Click("addNewRcd");
    Fill("FuntnTaskMachry", title);
    hands->Pick("PhaseMachn", kPhase);
    Fill("HzrdDscptnTXT", description);
    const std::array<std::pair<const char*, QString>, 7> others{{{"HazrdLoctn", "Bed"},
                                                                 {"RefNo", Text(source.reference)},
                                                                 {"ReccdtnTxt", "Guard it"},
                                                                 {"PrimaryHazard", "Noise"},
                                                                 {"HazardType", "Pumps"},
                                                                 {"ReccdtnTypTxt", "Guard"},
                                                                 {"ActnByCbo", "Works"}}};
    const auto& [box, text] = others[static_cast<std::size_t>(number) % others.size()];
    Fill(box, text);
    kept.push_back({title, description, &source});
  }

  /// By keyboard: what the box held gives way to what is typed.
  void Fill(const QString& box, const QString& text) const {
    hands->Control(box).setFocus(Qt::TabFocusReason);
    hands->PressKey(Qt::Key_A, Qt::ControlModifier);
    hands->Type(text);
  }

  void Estimate(const example::Task& source, int number) const {
    ClickThrough("RiskEsmtBtn", "RiskEstimtn");
    EstimateStage(source.before, number);
    ASSERT_EQ(hands->TextOf("RiskIdxBRsltDsp"), QString::number(source.index_before));
    hands->Click("RskBfrAftrChk");
    EstimateStage(source.after, number + 1);
    ASSERT_EQ(hands->TextOf("RiskIdxARsltDsp"), QString::number(source.index_after));
    ClickThrough("clsfrm", "RiskEvalFrm_1");
  }

  /// All levels, and the statement of one of them.
  void EstimateStage(const example::Estimation& estimation, int number) const {
    const std::array<std::pair<const char*, const char16_t*>, 4> levels{
        {{"SevertyCbo", estimation.severity},
         {"ExposureCbo", estimation.exposure},
         {"occurrenceCbo", estimation.occurrence},
         {"avoidanceCbo", estimation.avoidance}}};
    for (std::size_t i = 0; i < levels.size(); ++i) {
      const auto& [box, level] = levels[i];
      if (level == nullptr) continue;
      PickByLetter(box, Text(level));
      if (i != static_cast<std::size_t>(number) % levels.size()) continue;
      hands->Click(QStringLiteral("Chk_%1").arg(estimation.scores[i]));
    }
  }

  /// Each press of the first letter takes the next level that begins with it.
  void PickByLetter(const QString& box, const QString& level) const {
    auto& combo = hands->Control<QComboBox>(box);
    combo.setFocus(Qt::TabFocusReason);
    FormHands::Settle();
    QString presses;
    int row = combo.currentIndex();
    for (int passed = 0; passed < combo.count() && combo.itemText(row) != level; ++passed) {
      row = (row + 1) % combo.count();
      if (combo.itemText(row).startsWith(level.front())) presses += level.front();
    }
    hands->Type(presses);
    ASSERT_EQ(hands->TextOf(box), level);
  }

  void CopyTask(const QString& title) {
    hands->Click("CpyTaskCmd");
    Fill("FuntnTaskMachry", title);
    hands->PressTab();
    const Task& copied = kept.back();
    kept.push_back({title, copied.description, copied.source});
  }

  void MoveTo(int row) const {
    hands->ClickRow("DB1", row);
    ASSERT_EQ(hands->TextOf("FuntnTaskMachry"), kept[static_cast<std::size_t>(row)].title);
  }

  /// The find box is emptied before it is left, which ends the find.
  void Find(const QString& title) const {
    Fill("FndESINo", title);
    ASSERT_EQ(hands->TextOf("FuntnTaskMachry"), title);
    hands->PressKey(Qt::Key_A, Qt::ControlModifier);
    hands->PressKey(Qt::Key_Delete);
    hands->PressTab();
  }

  void DeleteOldest() {
    MoveTo(0);
    hands->Click("DleteRcd");
    kept.pop_front();
  }

  void ExpectStored() const {
    QList<QStringList> expected;
    for (const Task& task : kept) {
      expected += QStringList{task.title,
                              task.description,
                              kPhase,
                              kProject,
                              QString::number(task.source->index_before),
                              QString::number(task.source->index_after)};
    }
    EXPECT_EQ(Sql(Study(kStudy),
                  "SELECT FuntnTaskMachry, HzrdDscptnTXT, PhaseMachn, Project_Number, RiskIndex, "
                  "RiskIndexAftr FROM Risk_records ORDER BY nunberauto"),
              expected);
    EXPECT_EQ(Column(Study(kStudy), "PRAGMA integrity_check"), QStringList{"ok"});
  }

  std::deque<Task> kept;
};

TEST_F(SoakOfTasksTest, MemoryAndHandlesStayWhatTheyAre) {
  const int tasks = Rounds(kTasks);
  Start();
  OpenTasks();
  Shutter shutter;
  Footprint half;
  for (int number = 1; number <= tasks; ++number) {
    const bool painted = number % kPaintedOneIn == 0;
    shutter.Set(painted);
    Round(number);
    ASSERT_EQ(shutter.paintings() > 0, painted) << "in round " << number;
    ASSERT_FALSE(HasFailure()) << "in round " << number;
    if (number != tasks / 2) continue;
    ComeToRest();
    half = Footprint::Now();
  }
  ComeToRest();
  const Footprint whole = Footprint::Now();
  std::printf("%d tasks, after the first half and after all\n", tasks);
  PrintGrowth(half, whole);
  ExpectNoGrowth(half, whole);

  shutter.Set(true);
  ClickThrough("ClsedDg", "mnfrm");
  ClickThrough("clsdfrm", "frmMain");
  End();
  ExpectStored();
  const int deleted = 2 * tasks - static_cast<int>(kept.size());
  EXPECT_EQ(desk.messages.boxes, (std::map<QString, int>{{"Wish to delete", deleted}}));
  ExpectNothingLeftOpen();
}

TEST_F(SoakTest, FormsThatComeAndGoLeaveNothingBehind) {
  GivenTask(kStudy, {{"Project_Number", kProject}, {"FuntnTaskMachry", "Load"}});
  const int days = Rounds(kDays);
  Footprint half;
  for (int day = 1; day <= days; ++day) {
    Start();
    hands->Choose("custmztnFrm");
    ExpectFront("custizationFrm");
    ClickThrough("ext", "frmMain");
    hands->Choose("Bkup");
    ExpectFront("BkUpfrm");
    ClickThrough("clsd", "opnflddlg");
    ClickThrough("cls1", "BkUpfrm");
    ClickThrough("clsed", "frmMain");
    OpenTasks();
    ClickThrough("RiskEsmtBtn", "RiskEstimtn");
    ClickThrough("clsfrm", "RiskEvalFrm_1");
    ClickThrough("ClsedDg", "mnfrm");
    ClickThrough("LnkDwgs", "tagdwgsfrm");
    ClickThrough("cls_1", "mnfrm");
    hands->Click("nworg");
    OpenOrganisation();
    ClickThrough("clsdfrm", "frmMain");
    End();
    ASSERT_FALSE(HasFailure()) << "on day " << day;
    if (day == days / 2) half = Footprint::Now();
  }
  const Footprint whole = Footprint::Now();
  std::printf("%d runs through all forms, after the first half and after all\n", days);
  PrintGrowth(half, whole);
  ExpectNoGrowth(half, whole);
  EXPECT_EQ(desk.messages.boxes, (std::map<QString, int>{}));
  EXPECT_EQ(RowsOf(Study(kStudy), "Risk_records").size(), 1);
  ExpectNothingLeftOpen();
}

}  // namespace
}  // namespace kestrix::holds
