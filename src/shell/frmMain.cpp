#include "shell/frmMain.h"

#include <QEvent>
#include <QLocale>
#include <QScreen>
#include <QShortcut>
#include <QToolButton>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "formkit/Controls.h"
#include "formkit/CutLabel.h"
#include "formkit/DrawnIcon.h"
#include "platform/FileSystem.h"
#include "platform/Measures.h"
#include "shell/Companions.h"
#include "shell/Documents.h"
#include "shell/frmDocument.h"
#include "ui_frmMain.h"

namespace kestrix {
namespace {

const QString kSection = QStringLiteral("Settings");
constexpr char kLeft[] = "MainLeft";
constexpr char kTop[] = "MainTop";
constexpr char kWidth[] = "MainWidth";
constexpr char kHeight[] = "MainHeight";
constexpr int kDefaultPlace = 1000;  // twips
constexpr int kDefaultSize = 6500;   // twips

/// What the exit's look for a stale sign takes in place of an unknown number of organisations.
constexpr qint16 kManyOrganisations = 1000;

/// Commands that only say that they have no function.
using Entry = QAction* Ui_frmMain::*;
constexpr std::array kPlaceholders = {
    &Ui_frmMain::mnuFileSaveAll, &Ui_frmMain::mnuFileProperties, &Ui_frmMain::mnuFilePrintPreview,
    &Ui_frmMain::mnuFileSend,    &Ui_frmMain::mnuEditUndo,       &Ui_frmMain::mnuEditPasteSpecial,
    &Ui_frmMain::mnuViewRefresh, &Ui_frmMain::mnuViewOptions,    &Ui_frmMain::mnuViewWebBrowser,
};

constexpr std::pair<Entry, void (Documents::*)()> kDocumentCommands[] = {
    {&Ui_frmMain::mnuFileNew, &Documents::New},
    {&Ui_frmMain::mnuFileOpen, &Documents::Open},
    {&Ui_frmMain::mnuFileSave, &Documents::Save},
    {&Ui_frmMain::mnuFileSaveAs, &Documents::SaveAs},
    {&Ui_frmMain::mnuFilePageSetup, &Documents::PageSetup},
    {&Ui_frmMain::mnuFilePrint, &Documents::Print},
    {&Ui_frmMain::mnuEditCut, &Documents::Cut},
    {&Ui_frmMain::mnuEditCopy, &Documents::Copy},
    {&Ui_frmMain::mnuEditPaste, &Documents::Paste},
    {&Ui_frmMain::mnuWindowNewWindow, &Documents::New},
    {&Ui_frmMain::mnuWindowCascade, &Documents::Cascade},
    {&Ui_frmMain::mnuWindowTileHorizontal, &Documents::TileHorizontal},
    {&Ui_frmMain::mnuWindowTileVertical, &Documents::TileVertical},
    {&Ui_frmMain::mnuWindowArrangeIcons, &Documents::ArrangeIcons},
    {&Ui_frmMain::tbOpen, &Documents::Open},
    {&Ui_frmMain::tbSave, &Documents::Save},
    {&Ui_frmMain::tbNew, &Documents::New},
};

struct ToolButton {
  Entry action;
  const char* key;
  Drawing picture;
};
constexpr std::array<ToolButton, 4> kToolButtons{{
    {&Ui_frmMain::tbOpen, "Open", Drawing::kOpenFolder},
    {&Ui_frmMain::tbSave, "Save", Drawing::kDisk},
    {&Ui_frmMain::tbNew, "New", Drawing::kPage},
    {&Ui_frmMain::tbFreeform, "Freeform", Drawing::kPencil},
}};

/// A place or size that lies further than this beyond the screens was never stored by a frame.
constexpr int kFarAway = 5000;  // pixels

}  // namespace

frmMain::frmMain(Context& context) : SessionForm(context), ui_(std::make_unique<Ui::frmMain>()) {
  ui_->setupUi(this);
  documents_ = std::make_unique<Documents>(context, *this, *ui_->mdiArea);
  SettleMenu();
  SettleToolBar();
  SettleStatusBar();
  ConnectCommands();
  ConnectPlaceholders();
}

frmMain::~frmMain() = default;

void frmMain::SettleMenu() {
  for (QMenu* hidden : {ui_->mnuEdit, ui_->mnuView, ui_->mnuWindow, ui_->mnuHelp})
    hidden->menuAction()->setVisible(false);
  ui_->mnuDatamnfrm->setEnabled(false);
  // A hidden entry loses its shortcut, and this one keeps it: its menu is shown.
  auto* new_document = new QShortcut(ui_->mnuFileNew->shortcut(), this);
  On(new_document, &QShortcut::activated, [this] { documents_->New(); });
}

void frmMain::SettleToolBar() {
  for (const ToolButton& button : kToolButtons) {
    QAction* action = ui_.get()->*button.action;
    action->setIcon(DrawnIcon(button.picture));
    ui_->tbToolBar->widgetForAction(action)->setObjectName(QString::fromLatin1(button.key));
  }
}

void frmMain::SettleStatusBar() {
  panel_ = new CutLabel(this);
  panel_->setObjectName(QStringLiteral("sbStatusBarPanel1"));
  panel_->setTextFormat(Qt::PlainText);
  ui_->sbStatusBar->addPermanentWidget(panel_, 1);
}

void frmMain::ConnectCommands() {
  On(ui_->mnuDatamnfrm, &QAction::triggered, &frmMain::mnuDatamnfrm_Click);
  On(ui_->custmztnFrm, &QAction::triggered, [this] { Q_EMIT CustomizationRequested(); });
  On(ui_->Bkup, &QAction::triggered, &frmMain::Bkup_Click);
  On(ui_->RtrBkUp, &QAction::triggered, &frmMain::RtrBkUp_Click);
  On(ui_->homepage, &QAction::triggered, &frmMain::homepage_Click);
  On(ui_->mnuFileExit, &QAction::triggered, [this] { UnloadForm(); });
  connect(ui_->mnuViewToolbar, &QAction::triggered, ui_->tbToolBar, &QWidget::setVisible);
  connect(ui_->mnuViewStatusBar, &QAction::triggered, ui_->sbStatusBar, &QWidget::setVisible);
  On(ui_->Help, &QAction::triggered, [this] { companions::OpenManual(context()); });
  On(ui_->mnuHelpSearchForHelpOn, &QAction::triggered,
     [this] { companions::SearchHelp(context()); });
  for (const auto& [entry, command] : kDocumentCommands) {
    On(ui_.get()->*entry, &QAction::triggered,
       [this, command = command] { ((*documents_).*command)(); });
  }
}

void frmMain::ConnectPlaceholders() {
  const auto connect_to = [this](QAction* action, const QString& text) {
    On(action, &QAction::triggered,
       [this, text] { Tell(Icon::kNone, platform().environment.ApplicationTitle(), text); });
  };
  for (const Entry entry : kPlaceholders) {
    QAction* action = ui_.get()->*entry;
    connect_to(action, QStringLiteral("Add '%1_Click' code.").arg(action->objectName()));
  }
  connect_to(ui_->tbFreeform, QStringLiteral("Add 'Freeform' button code."));
}

void frmMain::SetStatusText(const QString& text) {
  panel_->ShowText(text);
  // The panel covers the bar's own message, which is what assistive tools read.
  ui_->sbStatusBar->showMessage(text);
  ui_->sbStatusBar->repaint();
}

void frmMain::EnableData(bool enable) {
  ui_->mnuData->setEnabled(enable);
  // The entry too, so that no shortcut and no tool gets past the menu.
  ui_->mnuDatamnfrm->setEnabled(enable);
}

void frmMain::EnableToolBar(bool enable) {
  ui_->tbToolBar->setEnabled(enable);
}

void frmMain::MaximiseIfMinimised() {
  if (!isMinimized()) return;
  setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowMaximized);
}

bool frmMain::event(QEvent* event) {
  // The tip of a menu entry would take the place of the organisation in the status bar.
  if (event->type() == QEvent::StatusTip) return true;
  return SessionForm::event(event);
}

void frmMain::changeEvent(QEvent* event) {
  SessionForm::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) MaximiseIfMinimised();
}

void frmMain::moveEvent(QMoveEvent* event) {
  SessionForm::moveEvent(event);
  NotePlace();
}

void frmMain::resizeEvent(QResizeEvent* event) {
  SessionForm::resizeEvent(event);
  NotePlace();
  MaximiseIfMinimised();
}

/// Noted as it comes, since a maximised frame can't be asked any more: a window manager may put a
/// narrower border around it, and the toolkit forgets the place of one that was minimised first.
void frmMain::NotePlace() {
  if (!isMaximized() && !isMinimized()) normal_place_ = Place();
}

QRect frmMain::Place() const {
  return {pos(), size()};
}

void frmMain::Load() {
  try {
    setWindowTitle(kTitle);
    RestorePlacement();
    documents_->New();
    SetStatusText(kTitle);
    // English month names whatever the desktop speaks, so that all users of a folder of backups
    // find each other's sets.
    session().BackupDateName =
        QLocale::c().toString(platform().clock.Today(), QStringLiteral("ddMMMMyyyy"));
  } catch (const Failure&) {
    Tell(Icon::kCritical, title::kProgram, QStringLiteral("5. Installed files missing."));
    UnloadForm();
    Q_EMIT LoadFailed();
  }
}

int frmMain::Setting(const char* key, int default_value) const {
  const QString text = platform().settings.Get(kSection, key, QString::number(default_value));
  bool is_number = false;
  const double twips = text.trimmed().toDouble(&is_number);
  if (!is_number || !std::isfinite(twips))
    throw Failure(failure::kTypeMismatch,
                  QStringLiteral("The setting %1 is no number: \"%2\".").arg(key, text));
  constexpr double kMost = 1e9;
  return static_cast<int>(std::clamp(std::round(twips), -kMost, kMost));
}

void frmMain::RestorePlacement() {
  const QRect desktop = screen()->virtualGeometry();
  const auto pixels = [this](const char* key, int default_value, int from, int to) {
    const int stored = PixelsFromTwips(Setting(key, default_value));
    const bool is_far = stored < from - kFarAway || stored > to + kFarAway;
    return is_far ? PixelsFromTwips(default_value) : stored;
  };
  const int left = pixels(kLeft, kDefaultPlace, desktop.left(), desktop.right());
  const int top = pixels(kTop, kDefaultPlace, desktop.top(), desktop.bottom());
  const int width = pixels(kWidth, kDefaultSize, 0, desktop.width());
  const int height = pixels(kHeight, kDefaultSize, 0, desktop.height());
  move(left, top);
  resize(std::max(width, 1), std::max(height, 1));
  NotePlace();
}

void frmMain::StorePlacement() {
  if (isMinimized()) return;
  // Of a maximised frame the place that it goes back to.
  const QRect place = isMaximized() ? normal_place_ : Place();
  const std::pair<const char*, int> values[] = {
      {kLeft, place.x()}, {kTop, place.y()}, {kWidth, place.width()}, {kHeight, place.height()}};
  for (const auto& [key, pixels] : values)
    platform().settings.Save(kSection, key, QString::number(TwipsFromPixels(pixels)));
}

void frmMain::QueryUnload() {
  PassOver([this] { RemoveStaleSign(); }, [this] { Q_EMIT Closing(); });
  companions::ActivateHomePage(context());
}

void frmMain::RemoveStaleSign() {
  if (session().OrgCount == 0) session().OrgCount = kManyOrganisations;
  const int passes = session().OrgCount + 1;
  for (int pass = 1; pass <= passes; ++pass) {
    const QString sign = installation().StaleBackupSign(session().LockScanIndex);
    session().FileFoundA = files().FileExists(sign);
    if (session().FileFoundA) return files().DeleteFile(sign);
    if (session().LockScanIndex == std::numeric_limits<qint16>::max()) return;
    ++session().LockScanIndex;
  }
}

void frmMain::Unload() {
  // The children go before the frame that they lie in.
  ui_->mdiArea->closeAllSubWindows();
  StorePlacement();
}

void frmMain::mnuDatamnfrm_Click() {
  if (companions::ReportWindowGuard(context(), companions::kSiblingPreview)) return;
  session().FileFoundA = files().FileExists(installation().SupportLists());
  session().FileFoundB = files().FileExists(installation().Register());
  session().FileFoundC = files().FileExists(installation().StudyTemplate());
  if (!session().FileFoundA || !session().FileFoundB || !session().FileFoundC) {
    messages().Beep();
    return Tell(Icon::kCritical, title::kProgramFilesMissing,
                QStringLiteral("1a. Files missing. contact M/s. BELTROVAN"));
  }
  const WaitCursor cursor;
  PassOver([this] { Q_EMIT OrganisationsRequested(); });
}

void frmMain::Bkup_Click() {
  session().BackupMode = backup_mode::kBackup;
  session().BackupSubMode = 0;
  documents_->Own().SetText(
      QStringLiteral("Before you backup or Restore study files, make sure on one has logged in to "
                     "this application ."));
  Q_EMIT BackupRequested();
}

void frmMain::RtrBkUp_Click() {
  session().BackupMode = backup_mode::kRestore;
  session().BackupSubMode = 0;
  Q_EMIT RestoreRequested();
}

void frmMain::homepage_Click() {
  if (companions::GoToHomePage(context())) UnloadForm();
}

}  // namespace kestrix
