#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "app/Workbench.h"
#include "formkit/ActiveForms.h"
#include "formkit/Form.h"
#include "hands/Hands.h"
#include "main_job/WorkedExample.h"
#include "platform/FileSystem.h"
#include "platform/QtPagePrinter.h"
#include "platform/QtPlatform.h"
#include "preview/PageView.h"
#include "preview/RiskBookRpts.h"
#include "reports/Export.h"
#include "store/Database.h"
#include "store/RecordSources.h"
#include "store/Recordset.h"

// Drives the real forms, offscreen unless told otherwise, through the main job on a worked example:
// an organisation, a project, its tasks, both estimations of each; then ends the run, starts again
// and finds everything as it was. Prints what the database then holds and leaves pictures of the
// forms.

namespace {

using namespace kestrix;
namespace example = worked_example;

QTextStream& Out() {
  static QTextStream out(stdout);
  return out;
}

QString Text(const char16_t* text) {
  return text == nullptr ? QString() : QString::fromUtf16(text);
}

/// The job asks nothing: a box that comes up all the same ends it, with what the box says.
class NoMessages : public Messages {
 public:
  Button Show(const Message& message) override {
    shown += message.title + QStringLiteral(": ") + message.text + u'\n';
    return message.default_button;
  }
  void Beep() override {}
  QString shown;
};

class JobEnvironment : public QtEnvironment {
 public:
  explicit JobEnvironment(QString folder) : folder_(std::move(folder)) {}
  [[nodiscard]] QString ApplicationFolder() const override { return folder_; }
  /// The pictures are for everybody: they show no folder of whoever takes them.
  [[nodiscard]] QString DocumentsFolder() const override { return QStringLiteral("/"); }

 private:
  QString folder_;
};

/// Keeps the window's place for this run only: the job leaves a person's settings alone.
class JobSettings : public SettingsStore {
 public:
  [[nodiscard]] QString Get(const QString& section, const QString& key,
                            const QString& default_value) const override {
    return values_.value(section + u'/' + key, default_value);
  }
  void Save(const QString& section, const QString& key, const QString& value) override {
    values_.insert(section + u'/' + key, value);
  }

 private:
  QHash<QString, QString> values_ = {
      {QStringLiteral("Settings/MainWidth"), QStringLiteral("13500")},
      {QStringLiteral("Settings/MainHeight"), QStringLiteral("9000")}};
};

struct Desk {
  explicit Desk(const QString& installation)
      : environment(installation),
        platform{.messages = messages,
                 .files = desktop.platform().files,
                 .shell = desktop.platform().shell,
                 .windows = desktop.platform().windows,
                 .settings = settings,
                 .dialogs = desktop.platform().dialogs,
                 .printing = desktop.platform().printing,
                 .clipboard = desktop.platform().clipboard,
                 .clock = desktop.platform().clock,
                 .environment = environment} {}

  QtPlatform desktop;
  NoMessages messages;
  JobEnvironment environment;
  JobSettings settings;
  Platform platform;
};

/// What stopped the job.
class Stopped : public std::runtime_error {
 public:
  explicit Stopped(const QString& why) : std::runtime_error(why.toStdString()) {}
};

class Job {
 public:
  Job(Desk& desk, QString pictures) : desk_(desk), pictures_(std::move(pictures)) {}

  void FirstRun() {
    Begin();
    MakeOrganisation();
    MakeProject();
    hands_->Click(QStringLiteral("simultn1"));
    for (const example::Task& task : example::kTasks) AddTask(task);
    Picture(QStringLiteral("RiskEvalFrm_1"));
    End();
  }

  void SecondRun() {
    Begin();
    OpenOrganisation();
    Expect(hands_->TextOf(QStringLiteral("ESI_No")), Text(example::kProject));
    Expect(hands_->TextOf(QStringLiteral("ProjectDescription")), Text(example::kDescription));
    hands_->Click(QStringLiteral("simultn1"));
    Await(QStringLiteral("RiskEvalFrm_1"));
    for (std::size_t i = 0; i < example::kTasks.size(); ++i) {
      hands_->ClickRow(QStringLiteral("DB1"), static_cast<int>(i));
      CheckTask(example::kTasks[i]);
    }
    End();
  }

  /// The forms that the main job doesn't pass through, for their pictures.
  void ShowTheRest() {
    Begin();
    hands_->Choose(QStringLiteral("custmztnFrm"));
    Await(QStringLiteral("custizationFrm"));
    Picture(QStringLiteral("custizationFrm"));
    hands_->Click(QStringLiteral("ext"));
    Await(QStringLiteral("frmMain"));
    hands_->Choose(QStringLiteral("Bkup"));
    Await(QStringLiteral("BkUpfrm"));
    Picture(QStringLiteral("BkUpfrm"));
    hands_->Click(QStringLiteral("clsd"));
    Await(QStringLiteral("opnflddlg"));
    Picture(QStringLiteral("opnflddlg"));
    hands_->Click(QStringLiteral("cls1"));
    Await(QStringLiteral("BkUpfrm"));
    hands_->Click(QStringLiteral("clsed"));
    Await(QStringLiteral("frmMain"));
    OpenOrganisation();
    hands_->Click(QStringLiteral("LnkDwgs"));
    Await(QStringLiteral("tagdwgsfrm"));
    Picture(QStringLiteral("tagdwgsfrm"));
    hands_->Click(QStringLiteral("cls_1"));
    Await(QStringLiteral("mnfrm"));
    CloseAll();
  }

  /// The notice of missing files, which comes up where the register is no register.
  void ShowNotice() {
    const QString path = Installation(desk_.environment.ApplicationFolder()).Register();
    const QString aside = path + QStringLiteral(".aside");
    if (!QFile::rename(path, aside)) throw Stopped(QStringLiteral("The register is kept."));
    desk_.platform.files.CopyFile(Installation(desk_.environment.ApplicationFolder()).NoPicture(),
                                  path);
    Begin();
    hands_->Choose(QStringLiteral("mnuDatamnfrm"));
    Await(QStringLiteral("reqfrm"));
    Picture(QStringLiteral("reqfrm"));
    hands_->Click(QStringLiteral("runsetp"));
    workbench_.reset();
    // The notice never comes without the message that leads to it.
    if (desk_.messages.shown.isEmpty()) throw Stopped(QStringLiteral("No message came."));
    desk_.messages.shown.clear();
    if (!QFile::remove(path) || !QFile::rename(aside, path)) {
      throw Stopped(QStringLiteral("The register can't be put back."));
    }
  }

  /// The report preview of the project, and the report as a document and as a workbook.
  void ShowReport() {
    QtPagePrinter printer;
    const Installation installation(desk_.environment.ApplicationFolder());
    preview::RiskBookRpts window(desk_.platform, printer, installation);
    window.show();
    window.Open({});
    const auto* done = window.findChild<QWidget*>(QStringLiteral("ReportExport"));
    if (!Hands::WaitUntil([done] { return done->isEnabled(); }))
      throw Stopped(QStringLiteral("The report isn't shown."));
    window.findChild<preview::PageView*>()->GoToAnchor(QStringLiteral("summary"));
    Hands::Settle();
    const QString path = QStringLiteral("%1/RiskBookRpts.png").arg(pictures_);
    if (!window.grab().save(path)) throw Stopped(QStringLiteral("%1 can't be written.").arg(path));

    records::FileSource source(installation);
    reports::Options options;
    options.date = desk_.platform.clock.Today();
    const reports::Report report = reports::MakeReport(
        source, {Text(example::kOrganisation), study_}, Text(example::kProject), options);
    for (const char* ending : {"pdf", "xlsx"}) {
      const QString file = QStringLiteral("%1/report.%2").arg(pictures_, QLatin1String(ending));
      reports::WriteWhole(file, reports::BytesFor(file, report, source));
    }
  }

  [[nodiscard]] int study() const { return study_; }

 private:
  /// Waits until the form named `name` is in front.
  void Await(const QString& name) {
    const auto in_front = [&] {
      const Form* form = workbench_->forms().active();
      return form != nullptr && form->objectName() == name;
    };
    if (!Hands::WaitUntil(in_front))
      throw Stopped(QStringLiteral("The form %1 did not come to the front.").arg(name));
    Hands::Settle();
  }

  /// Saves what the form in front looks like.
  void Picture(const QString& name) {
    const QString path = QStringLiteral("%1/%2.png").arg(pictures_, name);
    if (!hands_->Window().grab().save(path))
      throw Stopped(QStringLiteral("The picture %1 can't be written.").arg(path));
  }

  void OpenOrganisation() {
    hands_->Choose(QStringLiteral("mnuDatamnfrm"));
    Await(QStringLiteral("Orgfrm"));
    hands_->Pick(QStringLiteral("orgnmecbo"), Text(example::kOrganisation));
    Picture(QStringLiteral("Orgfrm"));
    hands_->Click(QStringLiteral("clsd"));
    Await(QStringLiteral("mnfrm"));
  }

  void Begin() {
    workbench_ = std::make_unique<Workbench>(desk_.platform);
    hands_ = std::make_unique<Hands>(workbench_->forms());
    workbench_->Start();
    Await(QStringLiteral("frmMain"));
    Picture(QStringLiteral("frmMain"));
  }

  void End() {
    hands_->Click(QStringLiteral("ClsedDg"));
    Await(QStringLiteral("mnfrm"));
    Picture(QStringLiteral("mnfrm"));
    study_ = workbench_->session().ActiveStudyNo;
    CloseAll();
  }

  void CloseAll() {
    hands_->Click(QStringLiteral("clsdfrm"));
    Await(QStringLiteral("frmMain"));
    hands_->Window().close();
    QCoreApplication::processEvents();
    workbench_.reset();
    if (!desk_.messages.shown.isEmpty()) throw Stopped(desk_.messages.shown);
  }

  static void Expect(const QString& found, const QString& wanted) {
    if (found == wanted) return;
    throw Stopped(QStringLiteral("Found “%1” where “%2” was stored.").arg(found, wanted));
  }

  void MakeOrganisation() {
    hands_->Choose(QStringLiteral("mnuDatamnfrm"));
    Await(QStringLiteral("Orgfrm"));
    hands_->Click(QStringLiteral("addorncmd"));
    hands_->TypeInto(QStringLiteral("orgnmecbotxt"), Text(example::kOrganisation));
    hands_->PressTab();
    Await(QStringLiteral("mnfrm"));
  }

  void MakeProject() {
    hands_->Click(QStringLiteral("NwESINo"));
    hands_->TypeInto(QStringLiteral("ESI_No_temp"), Text(example::kProject));
    hands_->PressTab();
    hands_->TypeInto(QStringLiteral("PrjStgCbo"), Text(example::kStage));
    hands_->TypeInto(QStringLiteral("ProjectDescription"), Text(example::kDescription));
    hands_->TypeInto(QStringLiteral("preparedbyTxt"), Text(example::kPreparedBy));
  }

  void AddTask(const example::Task& task) {
    Await(QStringLiteral("RiskEvalFrm_1"));
    hands_->Click(QStringLiteral("addNewRcd"));
    const std::pair<const char*, const char16_t*> texts[] = {{"FuntnTaskMachry", task.title},
                                                             {"HazrdLoctn", task.location},
                                                             {"RefNo", task.reference},
                                                             {"HzrdDscptnTXT", task.description},
                                                             {"ReccdtnTxt", task.recommendation}};
    for (const auto& [control, text] : texts) {
      hands_->TypeInto(QString::fromLatin1(control), Text(text));
    }
    const std::pair<const char*, const char16_t*> picks[] = {
        {"PhaseMachn", task.phase},
        {"PrimaryHazard", task.primary_hazard},
        {"HazardType", task.hazard_type},
        {"ReccdtnTypTxt", task.recommendation_type},
        {"ActnByCbo", task.action_by}};
    for (const auto& [control, text] : picks) {
      // A person types what the list doesn't offer.
      hands_->TypeInto(QString::fromLatin1(control), Text(text));
    }
    hands_->Click(QStringLiteral("RiskEsmtBtn"));
    Await(QStringLiteral("RiskEstimtn"));
    Estimate(task.before);
    Expect(hands_->TextOf(QStringLiteral("RiskIdxBRsltDsp")), QString::number(task.index_before));
    Picture(QStringLiteral("RiskEstimtn-before"));
    hands_->Click(QStringLiteral("RskBfrAftrChk"));
    Estimate(task.after);
    Expect(hands_->TextOf(QStringLiteral("RiskIdxARsltDsp")), QString::number(task.index_after));
    Picture(QStringLiteral("RiskEstimtn-after"));
    hands_->Click(QStringLiteral("clsfrm"));
    Await(QStringLiteral("RiskEvalFrm_1"));
  }

  void CheckTask(const example::Task& task) {
    const std::pair<const char*, const char16_t*> texts[] = {
        {"FuntnTaskMachry", task.title},     {"HazrdLoctn", task.location},
        {"PhaseMachn", task.phase},          {"PrimaryHazard", task.primary_hazard},
        {"HazardType", task.hazard_type},    {"HzrdDscptnTXT", task.description},
        {"ReccdtnTxt", task.recommendation}, {"ReccdtnTypTxt", task.recommendation_type},
        {"ActnByCbo", task.action_by}};
    for (const auto& [control, text] : texts) {
      Expect(hands_->TextOf(QString::fromLatin1(control)), Text(text));
    }
    hands_->Click(QStringLiteral("RiskEsmtBtn"));
    Await(QStringLiteral("RiskEstimtn"));
    Expect(hands_->TextOf(QStringLiteral("RiskIdxBRsltDsp")), QString::number(task.index_before));
    Expect(hands_->TextOf(QStringLiteral("RiskIdxARsltDsp")), QString::number(task.index_after));
    ExpectLevels(task.before);
    hands_->Click(QStringLiteral("RskBfrAftrChk"));
    ExpectLevels(task.after);
    hands_->Click(QStringLiteral("clsfrm"));
    Await(QStringLiteral("RiskEvalFrm_1"));
  }

  void ExpectLevels(const example::Estimation& estimation) {
    Expect(hands_->TextOf(QStringLiteral("SevertyCbo")), Text(estimation.severity));
    Expect(hands_->TextOf(QStringLiteral("occurrenceCbo")), Text(estimation.occurrence));
    Expect(hands_->TextOf(QStringLiteral("avoidanceCbo")), Text(estimation.avoidance));
    const std::pair<const char*, int> scores[] = {{"SerScrStd", estimation.scores[0]},
                                                  {"ExScrStd", estimation.scores[1]},
                                                  {"OCrScrStd", estimation.scores[2]}};
    for (const auto& [label, score] : scores) {
      Expect(hands_->TextOf(QString::fromLatin1(label)), QString::number(score));
    }
  }

  void Estimate(const example::Estimation& estimation) {
    const std::pair<const char*, const char16_t*> levels[] = {
        {"SevertyCbo", estimation.severity},
        {"ExposureCbo", estimation.exposure},
        {"occurrenceCbo", estimation.occurrence},
        {"avoidanceCbo", estimation.avoidance}};
    // The path first: a statement of a parameter can be chosen once its box is open.
    for (const auto& [box, level] : levels) {
      if (level != nullptr) hands_->Pick(QString::fromLatin1(box), Text(level));
    }
    for (std::size_t i = 0; i < estimation.scores.size(); ++i) {
      const QString box = QString::fromLatin1(levels[i].first);
      if (!hands_->IsEnabled(box)) continue;
      hands_->Control<QWidget>(box).setFocus(Qt::TabFocusReason);
      Hands::Settle();
      hands_->Click(QStringLiteral("Chk_%1").arg(estimation.scores[i]));
    }
  }

  Desk& desk_;
  QString pictures_;
  std::unique_ptr<Workbench> workbench_;
  std::unique_ptr<Hands> hands_;
  int study_ = 0;
};

void PrintStudy(const Installation& installation, int study) {
  const auto database = std::make_shared<Database>(installation.Study(study));
  Recordset tasks(database, sources::RiskSql(Text(example::kProject)));
  Out() << "\nOrganisation  " << Text(example::kOrganisation) << "  (study " << study << ")\n"
        << "Project       " << Text(example::kProject) << "  with " << tasks.RecordCount()
        << " tasks\n\n";
  const auto row = [](const QStringList& cells) {
    constexpr int kWidths[] = {6, 38, 14, 7, 7, 8, 8};
    QString line;
    for (int i = 0; i < cells.size(); ++i) {
      line += cells[i].left(kWidths[i] - 1).leftJustified(kWidths[i]);
    }
    Out() << line.trimmed() << '\n';
  };
  row({QStringLiteral("Ref."), QStringLiteral("Task"), QStringLiteral("Phase"),
       QStringLiteral("Before"), QStringLiteral("After"), QStringLiteral("Class B"),
       QStringLiteral("Class A")});
  for (; !tasks.Eof(); tasks.MoveNext()) {
    const auto sum = [&](const char* tail) {
      qint64 score = 0;
      for (const char* digit : {"2", "3", "4"}) {
        score += tasks.Number(QLatin1String(digit) + QLatin1String("Chk_OptnSltd") +
                              QLatin1String(tail));
      }
      return QString::number(score);
    };
    row({tasks.Text(QStringLiteral("RefNo")), tasks.Text(QStringLiteral("FuntnTaskMachry")),
         tasks.Text(QStringLiteral("PhaseMachn")), tasks.Text(QStringLiteral("RiskIndex")),
         tasks.Text(QStringLiteral("RiskIndexAftr")), sum(""), sum("Aftr")});
  }
}

/// Without a display the toolkit's screen is smaller than a form; this one shows each whole.
void ChooseScreen(const QTemporaryDir& folder) {
  const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
  if (!platform.isEmpty() && platform != "offscreen") return;
  QFile screen(folder.filePath(QStringLiteral("screen.json")));
  if (!screen.open(QIODevice::WriteOnly)) return;
  screen.write(R"({"screens": [{"name": "Screen", "x": 0, "y": 0, "width": 1280, "height": 1024,
                   "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(screen.fileName()));
}

}  // namespace

int main(int argc, char** argv) {
  LeaveOutComplaints();
  const QTemporaryDir scratch;
  ChooseScreen(scratch);
  QApplication::setQuitOnLastWindowClosed(false);
  const QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("KestrixStudy"));

  QCommandLineParser options;
  options.addOption({QStringLiteral("installation"), QStringLiteral("The application's folder."),
                     QStringLiteral("folder")});
  options.addOption({QStringLiteral("screenshots"), QStringLiteral("Where the pictures go."),
                     QStringLiteral("folder")});
  options.addHelpOption();
  options.process(application);
  const QString folder = QDir(options.value(QStringLiteral("installation"))).absolutePath();
  const QString pictures = QDir(options.value(QStringLiteral("screenshots"))).absolutePath();
  if (!options.isSet(QStringLiteral("installation")) ||
      !options.isSet(QStringLiteral("screenshots")) || !QDir().mkpath(pictures)) {
    QTextStream(stderr) << "Give --installation and --screenshots, each with a folder.\n";
    return EXIT_FAILURE;
  }
  try {
    Desk desk(folder);
    Job job(desk, pictures);
    job.FirstRun();
    job.SecondRun();
    job.ShowTheRest();
    job.ShowNotice();
    job.ShowReport();
    PrintStudy(Installation(folder), job.study());
  } catch (const std::exception& stopped) {
    QTextStream(stderr) << "The job stopped: " << stopped.what() << '\n';
    return EXIT_FAILURE;
  }
  Out() << "\nClosed, started again, and everything was found as it was.\nPictures of the forms: "
        << pictures << "\nThe report of the project: report.pdf and report.xlsx beside them\n";
  return EXIT_SUCCESS;
}
