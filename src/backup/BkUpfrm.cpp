#include "backup/BkUpfrm.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QScopeGuard>

#include "backup/BackupSet.h"
#include "formkit/Controls.h"
#include "platform/FileSystem.h"
#include "store/RecordSources.h"
#include "ui_BkUpfrm.h"

namespace kestrix {
namespace {

constexpr int kNameField = 0;
/// Pixels of the bar before the first step.
constexpr double kEmptyBar = 1;

}  // namespace

BkUpfrm::BkUpfrm(Context& context)
    : BackupForm(context),
      ui(std::make_unique<Ui::BkUpfrm>()),
      worker_(context.session, context.installation, context.kit.platform) {
  ui->setupUi(this);
  SetKeys(ui->clsd, ui->clsed);
  orgndata_.SetRecordSource(sources::kOrgtnTable);
  ui->progPic1->installEventFilter(this);
  On(ui->clsd, &QPushButton::clicked, &BkUpfrm::clsd_Click);
  On(ui->clsed, &QPushButton::clicked, &BkUpfrm::clsed_Click);
}

BkUpfrm::~BkUpfrm() = default;

void BkUpfrm::PrepareBackup() {
  setWindowTitle(QStringLiteral(" BELTROVAN: Backup Risk Assessment files"));
  ui->orgmnelbl->setText(QStringLiteral("LIST of Name of Organization / Section to Backup:"));
  SetMainCaption(kSelectFolder);
}

void BkUpfrm::SetMainCaption(const QString& caption) {
  ui->clsd->setText(caption);
  ui->clsd->setToolTip(QString(caption).remove(u'&'));
}

void BkUpfrm::Load() {
  try {
    LoadSteps();
  } catch (const Failure&) {
    Tell(Icon::kCritical, title::kFilesMissing,
         QStringLiteral("More files required run setup/Installed Files missing"));
    UnloadForm();
    Q_EMIT LoadFailed();
  }
}

void BkUpfrm::LoadSteps() {
  FitBar();
  const bool backs_up = session().BackupMode == backup_mode::kBackup;
  const bool restores = session().BackupMode == backup_mode::kRestore;
  const bool lists_organisations = backs_up || restores;
  ui->BKList1->setVisible(lists_organisations);
  ui->ListBk_2->setVisible(!lists_organisations);
  files().ChangeFolder(installation().ApplicationFolder());
  if (backs_up) LoadLiveRegister();
  if (restores) LoadRegisterOfSet();
  if (!lists_organisations) ui->ListBk_2->setText(QStringLiteral("1. Presets\r\n2. Zero nodes"));
  SetMainCaption(ui->clsd->text());
}

void BkUpfrm::LoadLiveRegister() {
  if (!files().FileExists(installation().Register()))
    return Refuse(title::kProgramFilesMissing,
                  QStringLiteral("2. Backup Files missing. contact M/s. BELTROVAN"));
  OpenRegister(installation().Register());
}

/// Shows the organisations of the set by a copy of its register, so that neither the set nor the
/// live register is held open.
void BkUpfrm::LoadRegisterOfSet() {
  const QString in_set = BackupSet(session().BackupFolder).Register();
  if (files().FileExists(in_set) && !IsLink(in_set)) {
    const QString temp = platform().environment.Variable(QStringLiteral("TEMP"));
    const QString copy = JoinPath(temp, QStringLiteral("\\orgtn.mdb"));
    // In a folder that many share, a link of that name might lead anywhere.
    if (files().FileExists(copy)) files().DeleteFile(copy);
    // Nobody needs this copy after a loss of power, and a person waits for it.
    CopyGroup unsynced(temp);
    CopyFileDurably(in_set, copy, Sync::With(unsynced));
    OpenRegister(copy);
  } else {
    Refuse(title::kProgramFilesMissing, kSetMissing);
  }
  SetMainCaption(kRestore);
}

void BkUpfrm::OpenRegister(const QString& path) {
  orgndata_.SetDatabaseName(path);
  orgndata_.Refresh();
  ui->BKList1->clear();
  const Recordset& rows = orgndata_.Recordset();
  for (int row = 1; row <= rows.RecordCount(); ++row)
    ui->BKList1->addItem(rows.ShownText(row, kNameField));
}

void BkUpfrm::Activate() {
  SetMainCaption(ui->clsd->text());
}

void BkUpfrm::closeEvent(QCloseEvent* event) {
  if (!ui->clsed->isEnabled()) return event->ignore();
  BackupForm::closeEvent(event);
}

void BkUpfrm::clsd_Click() {
  if (session().BackupMode == backup_mode::kBackup) return ClickInBackup();
  if (session().BackupMode == backup_mode::kRestore) ClickInRestore();
}

void BkUpfrm::ClickInBackup() {
  CountRows();
  const QString caption = ui->clsd->text();
  if (caption == kSelectFolder) {
    Q_EMIT FolderDialogRequested();
    UnloadForm();
  } else if (caption == kBackup) {
    RunWorker();
  } else if (caption == kBackupComplete) {
    UnloadForm();
  }
}

void BkUpfrm::ClickInRestore() {
  const QString caption = ui->clsd->text();
  if (caption == kRestore) {
    CountRows();
    RunWorker();
    if (IsUnloading())
      Q_EMIT CaptionDue(kRestoreComplete);
    else
      SetMainCaption(kRestoreComplete);
  } else if (caption == kRestoreComplete) {
    UnloadForm();
  }
}

/// Without a register there is nothing to count; the worker then fails on it.
void BkUpfrm::CountRows() {
  session().OrgRowCount =
      Narrow(orgndata_.HasRecordset() ? orgndata_.Recordset().RecordCount() : 0);
}

void BkUpfrm::RunWorker() {
  const WaitCursor wait;
  EnableButtons(false);
  const auto enable = qScopeGuard([this] { EnableButtons(true); });
  try {
    const auto end = worker_.Run(orgndata_.Recordset(), [this](const auto& progress) {
      QMetaObject::invokeMethod(
          this, [this, progress] { ShowProgress(progress); }, Qt::QueuedConnection);
    });
    // The second click of a double click comes now, and mustn't close a form that has just
    // finished.
    QCoreApplication::processEvents();
    if (session().BackupMode != backup_mode::kBackup) return;
    if (end == BackupWorker::End::kRefused) SetMainCaption(kSelectFolder);
    if (end == BackupWorker::End::kAtEnd) SetMainCaption(kBackupComplete);
  } catch (const Failure&) {
    Q_EMIT CopyingFailed();
    UnloadForm();
  }
}

void BkUpfrm::EnableButtons(bool enable) {
  ui->clsd->setEnabled(enable);
  ui->clsed->setEnabled(enable);
  // A button that is disabled gives the focus away.
  if (enable) ui->clsd->setFocus();
}

void BkUpfrm::ShowProgress(const BackupWorker::Progress& progress) {
  percent_ = progress.percent;
  FitBar();
  ui->pctdsp->setText(progress.text);
  ui->pctdsp->repaint();
  ui->progPic2->repaint();
}

/// The filled part keeps its share of the whole bar when the form is given another width.
void BkUpfrm::FitBar() {
  const double width = qMax(kEmptyBar, percent_ * ui->progPic1->width() / 100);
  ui->progPic2->setGeometry(0, 0, qRound(width), ui->progPic1->height());
}

bool BkUpfrm::eventFilter(QObject* watched, QEvent* event) {
  if (watched == ui->progPic1 && event->type() == QEvent::Resize) FitBar();
  return BackupForm::eventFilter(watched, event);
}

void BkUpfrm::clsed_Click() {
  PassOver(
      [&] {
        if (session().BackupMode == backup_mode::kRestore && session().BackupSubMode == 1)
          Q_EMIT FolderDialogRequested();
      },
      [&] { UnloadForm(); });
}

}  // namespace kestrix
