#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QTextStream>
#include <cstdlib>
#include <memory>

#include "app/Workbench.h"
#include "app/main_job/Hand.h"
#include "app/main_job/WorkedExample.h"
#include "platform/FileSystem.h"
#include "platform/QtPlatform.h"
#include "store/Database.h"
#include "store/RecordSources.h"
#include "store/Recordset.h"

// Drives the real forms, offscreen unless told otherwise, through the main job on a worked example:
// an organisation, a project, its tasks, both estimations of each; then ends the run, starts anew
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

class Job {
 public:
  Job(Desk& desk, QString pictures) : desk_(desk), pictures_(std::move(pictures)) {}

  void FirstRun() {
    Begin();
    MakeOrganisation();
    MakeProject();
    hand_.Click(QStringLiteral("simultn1"));
    for (const example::Task& task : example::kTasks) AddTask(task);
    hand_.Picture(pictures_, QStringLiteral("RiskEvalFrm_1"));
    End();
  }

  void SecondRun() {
    Begin();
    OpenOrganisation();
    Expect(hand_.TextOf(QStringLiteral("ESI_No")), Text(example::kProject));
    Expect(hand_.TextOf(QStringLiteral("ProjectDescription")), Text(example::kDescription));
    hand_.Click(QStringLiteral("simultn1"));
    hand_.On(QStringLiteral("RiskEvalFrm_1"));
    for (std::size_t i = 0; i < example::kTasks.size(); ++i) {
      hand_.ClickRow(QStringLiteral("DB1"), static_cast<int>(i));
      CheckTask(example::kTasks[i]);
    }
    End();
  }

  /// The forms that the main job doesn't pass through, for their pictures.
  void ShowTheRest() {
    Begin();
    hand_.Trigger(QStringLiteral("custmztnFrm"));
    hand_.On(QStringLiteral("custizationFrm"));
    hand_.Picture(pictures_, QStringLiteral("custizationFrm"));
    hand_.Click(QStringLiteral("ext"));
    hand_.On(QStringLiteral("frmMain"));
    hand_.Trigger(QStringLiteral("Bkup"));
    hand_.On(QStringLiteral("BkUpfrm"));
    hand_.Picture(pictures_, QStringLiteral("BkUpfrm"));
    hand_.Click(QStringLiteral("clsd"));
    hand_.On(QStringLiteral("opnflddlg"));
    hand_.Picture(pictures_, QStringLiteral("opnflddlg"));
    hand_.Click(QStringLiteral("cls1"));
    hand_.On(QStringLiteral("BkUpfrm"));
    hand_.Click(QStringLiteral("clsed"));
    hand_.On(QStringLiteral("frmMain"));
    OpenOrganisation();
    hand_.Click(QStringLiteral("LnkDwgs"));
    hand_.On(QStringLiteral("tagdwgsfrm"));
    hand_.Picture(pictures_, QStringLiteral("tagdwgsfrm"));
    hand_.Click(QStringLiteral("cls_1"));
    hand_.On(QStringLiteral("mnfrm"));
    CloseAll();
  }

  /// The notice of missing files, which comes up where the register is no register.
  void ShowNotice() {
    const QString path = Installation(desk_.environment.ApplicationFolder()).Register();
    const QString aside = path + QStringLiteral(".aside");
    if (!QFile::rename(path, aside)) throw HandStopped(QStringLiteral("The register is kept."));
    desk_.platform.files.CopyFile(Installation(desk_.environment.ApplicationFolder()).NoPicture(),
                                  path);
    Begin();
    hand_.Trigger(QStringLiteral("mnuDatamnfrm"));
    hand_.On(QStringLiteral("reqfrm"));
    hand_.Picture(pictures_, QStringLiteral("reqfrm"));
    hand_.Click(QStringLiteral("runsetp"));
    workbench_.reset();
    // The notice never comes without the message that leads to it.
    if (desk_.messages.shown.isEmpty()) throw HandStopped(QStringLiteral("No message came."));
    desk_.messages.shown.clear();
    if (!QFile::remove(path) || !QFile::rename(aside, path)) {
      throw HandStopped(QStringLiteral("The register can't be put back."));
    }
  }

  [[nodiscard]] int study() const { return study_; }

 private:
  void OpenOrganisation() {
    hand_.Trigger(QStringLiteral("mnuDatamnfrm"));
    hand_.On(QStringLiteral("Orgfrm"));
    hand_.Pick(QStringLiteral("orgnmecbo"), Text(example::kOrganisation));
    hand_.Picture(pictures_, QStringLiteral("Orgfrm"));
    hand_.Click(QStringLiteral("clsd"));
    hand_.On(QStringLiteral("mnfrm"));
  }

  void Begin() {
    workbench_ = std::make_unique<Workbench>(desk_.platform);
    workbench_->Start();
    hand_.On(QStringLiteral("frmMain"));
    hand_.Picture(pictures_, QStringLiteral("frmMain"));
  }

  void End() {
    hand_.Click(QStringLiteral("ClsedDg"));
    hand_.On(QStringLiteral("mnfrm"));
    hand_.Picture(pictures_, QStringLiteral("mnfrm"));
    study_ = workbench_->session().ActiveStudyNo;
    CloseAll();
  }

  void CloseAll() {
    hand_.Click(QStringLiteral("clsdfrm"));
    hand_.On(QStringLiteral("frmMain"));
    hand_.form()->close();
    QCoreApplication::processEvents();
    workbench_.reset();
    if (!desk_.messages.shown.isEmpty()) throw HandStopped(desk_.messages.shown);
  }

  static void Expect(const QString& found, const QString& wanted) {
    if (found == wanted) return;
    throw HandStopped(QStringLiteral("Found “%1” where “%2” was stored.").arg(found, wanted));
  }

  void MakeOrganisation() {
    hand_.Trigger(QStringLiteral("mnuDatamnfrm"));
    hand_.On(QStringLiteral("Orgfrm"));
    hand_.Click(QStringLiteral("addorncmd"));
    hand_.Type(QStringLiteral("orgnmecbotxt"), Text(example::kOrganisation));
    hand_.Tab();
    hand_.On(QStringLiteral("mnfrm"));
  }

  void MakeProject() {
    hand_.Click(QStringLiteral("NwESINo"));
    hand_.Type(QStringLiteral("ESI_No_temp"), Text(example::kProject));
    hand_.Tab();
    hand_.Type(QStringLiteral("PrjStgCbo"), Text(example::kStage));
    hand_.Type(QStringLiteral("ProjectDescription"), Text(example::kDescription));
    hand_.Type(QStringLiteral("preparedbyTxt"), Text(example::kPreparedBy));
  }

  void AddTask(const example::Task& task) {
    hand_.On(QStringLiteral("RiskEvalFrm_1"));
    hand_.Click(QStringLiteral("addNewRcd"));
    const std::pair<const char*, const char16_t*> texts[] = {{"FuntnTaskMachry", task.title},
                                                             {"HazrdLoctn", task.location},
                                                             {"RefNo", task.reference},
                                                             {"HzrdDscptnTXT", task.description},
                                                             {"ReccdtnTxt", task.recommendation}};
    for (const auto& [control, text] : texts) {
      hand_.Type(QString::fromLatin1(control), Text(text));
    }
    const std::pair<const char*, const char16_t*> picks[] = {
        {"PhaseMachn", task.phase},
        {"PrimaryHazard", task.primary_hazard},
        {"HazardType", task.hazard_type},
        {"ReccdtnTypTxt", task.recommendation_type},
        {"ActnByCbo", task.action_by}};
    for (const auto& [control, text] : picks) {
      // A person types what the list doesn't offer.
      hand_.Type(QString::fromLatin1(control), Text(text));
    }
    hand_.Click(QStringLiteral("RiskEsmtBtn"));
    hand_.On(QStringLiteral("RiskEstimtn"));
    Estimate(task.before);
    Expect(hand_.TextOf(QStringLiteral("RiskIdxBRsltDsp")), QString::number(task.index_before));
    hand_.Picture(pictures_, QStringLiteral("RiskEstimtn-before"));
    hand_.Click(QStringLiteral("RskBfrAftrChk"));
    Estimate(task.after);
    Expect(hand_.TextOf(QStringLiteral("RiskIdxARsltDsp")), QString::number(task.index_after));
    hand_.Picture(pictures_, QStringLiteral("RiskEstimtn-after"));
    hand_.Click(QStringLiteral("clsfrm"));
    hand_.On(QStringLiteral("RiskEvalFrm_1"));
  }

  void CheckTask(const example::Task& task) {
    const std::pair<const char*, const char16_t*> texts[] = {
        {"FuntnTaskMachry", task.title},     {"HazrdLoctn", task.location},
        {"PhaseMachn", task.phase},          {"PrimaryHazard", task.primary_hazard},
        {"HazardType", task.hazard_type},    {"HzrdDscptnTXT", task.description},
        {"ReccdtnTxt", task.recommendation}, {"ReccdtnTypTxt", task.recommendation_type},
        {"ActnByCbo", task.action_by}};
    for (const auto& [control, text] : texts) {
      Expect(hand_.TextOf(QString::fromLatin1(control)), Text(text));
    }
    hand_.Click(QStringLiteral("RiskEsmtBtn"));
    hand_.On(QStringLiteral("RiskEstimtn"));
    Expect(hand_.TextOf(QStringLiteral("RiskIdxBRsltDsp")), QString::number(task.index_before));
    Expect(hand_.TextOf(QStringLiteral("RiskIdxARsltDsp")), QString::number(task.index_after));
    ExpectLevels(task.before);
    hand_.Click(QStringLiteral("RskBfrAftrChk"));
    ExpectLevels(task.after);
    hand_.Click(QStringLiteral("clsfrm"));
    hand_.On(QStringLiteral("RiskEvalFrm_1"));
  }

  void ExpectLevels(const example::Estimation& estimation) {
    Expect(hand_.TextOf(QStringLiteral("SevertyCbo")), Text(estimation.severity));
    Expect(hand_.TextOf(QStringLiteral("occurrenceCbo")), Text(estimation.occurrence));
    Expect(hand_.TextOf(QStringLiteral("avoidanceCbo")), Text(estimation.avoidance));
    const std::pair<const char*, int> scores[] = {{"SerScrStd", estimation.scores[0]},
                                                  {"ExScrStd", estimation.scores[1]},
                                                  {"OCrScrStd", estimation.scores[2]}};
    for (const auto& [label, score] : scores) {
      Expect(hand_.TextOf(QString::fromLatin1(label)), QString::number(score));
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
      if (level != nullptr) hand_.Pick(QString::fromLatin1(box), Text(level));
    }
    for (std::size_t i = 0; i < estimation.scores.size(); ++i) {
      const QString box = QString::fromLatin1(levels[i].first);
      auto* widget = hand_.form()->findChild<QWidget*>(box);
      if (!widget->isEnabled()) continue;
      widget->setFocus(Qt::TabFocusReason);
      QCoreApplication::processEvents();
      hand_.Click(QStringLiteral("Chk_%1").arg(estimation.scores[i]));
    }
  }

  Desk& desk_;
  QString pictures_;
  std::unique_ptr<Workbench> workbench_;
  Hand hand_;
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

/// The offscreen desktop tells at every turn what it can't do; nobody here asked it to.
void OmitWhatOffscreenCannot(QtMsgType type, const QMessageLogContext& /*unused*/,
                             const QString& text) {
  if (type < QtCriticalMsg && (text.startsWith(QStringLiteral("This plugin does not support")) ||
                               text.contains(QStringLiteral("XDG_RUNTIME_DIR")))) {
    return;
  }
  QTextStream(stderr) << text << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(OmitWhatOffscreenCannot);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
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
    PrintStudy(Installation(folder), job.study());
  } catch (const std::exception& stopped) {
    QTextStream(stderr) << "The job stopped: " << stopped.what() << '\n';
    return EXIT_FAILURE;
  }
  Out() << "\nClosed, started again, and everything was found as it was.\nPictures of the forms: "
        << pictures << '\n';
  return EXIT_SUCCESS;
}
