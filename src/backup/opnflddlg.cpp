#include "backup/opnflddlg.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QSignalBlocker>
#include <algorithm>

#include "backup/BackupSet.h"
#include "formkit/Controls.h"
#include "formkit/DrawnIcon.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "ui_opnflddlg.h"

namespace kestrix {
namespace {

/// What a folder's name can't hold on some disk that a set may be carried to.
bool IsForbidden(QChar letter) {
  return letter.unicode() < 0x20 || QStringView(u"/\\:*?\"<>|").contains(letter);
}

/// Whether a restore, which empties the picture folders first, would delete what lies in `folder`
/// before it reads it: a set in one of them, or the pictures of a set beside them.
bool IsAmongPictures(const QString& folder, const QString& picture_root) {
  const auto is_below = [](const QString& path, const QString& root) {
    const QString way = QDir(root).relativeFilePath(path);
    return way == u'.' || way.startsWith(QStringLiteral("Prj"));
  };
  const QString real_root = QFileInfo(picture_root).canonicalFilePath();
  return is_below(folder, picture_root) ||
         (!real_root.isEmpty() && is_below(QFileInfo(folder).canonicalFilePath(), real_root));
}

bool LiesOn(const QString& path, const QString& drive) {
  return path == drive || path.startsWith(drive.endsWith(u'/') ? drive : drive + u'/');
}

}  // namespace

opnflddlg::opnflddlg(Context& context)
    : BackupForm(context), ui_(std::make_unique<Ui::opnflddlg>()) {
  ui_->setupUi(this);
  SetKeys(ui_->slctfld, ui_->cls1);
  ui_->ktxDir->SetFiles(files());
  ui_->crtfldbtn->setIcon(DrawnIcon(Drawing::kNewFolder));

  On(ui_->ktxdrv, &QComboBox::currentIndexChanged, &opnflddlg::ktxdrv_Change);
  On(ui_->ktxdrv, &QComboBox::activated, &opnflddlg::ktxdrv_Click);
  On(ui_->ktxDir, &FolderList::Change, &opnflddlg::TakePath);
  On(ui_->ktxDir, &FolderList::clicked, &opnflddlg::TakePath);
  On(ui_->ktxDir, &FolderList::Wanted, &opnflddlg::ktxDir_Wanted);
  On(ui_->crtfldbtn, &QToolButton::clicked, &opnflddlg::crtfldbtn_Click);
  OnLostFocus(ui_->crtfldnme, &opnflddlg::crtfldnme_LostFocus);
  On(ui_->slctfld, &QPushButton::clicked, &opnflddlg::slctfld_Click);
  On(ui_->cls1, &QPushButton::clicked, &opnflddlg::cls1_Click);
}

opnflddlg::~opnflddlg() = default;

void opnflddlg::Load() {
  // What is set up here is no change yet: BackupFolder stays until the dialog is in front.
  const QSignalBlocker drives_are_silent(ui_->ktxdrv);
  const QSignalBlocker folders_are_silent(ui_->ktxDir);
  ui_->ktxdrv->clear();
  ui_->ktxdrv->addItems(platform().environment.Drives());
  SelectDrive(platform().environment.Variable(QStringLiteral("SYSTEMDRIVE")));
  documents_ = platform().environment.DocumentsFolder();
  ui_->crtfldnme->clear();

  const QString before = session().BackupFolder;
  const bool is_there = !before.isEmpty() && files().FolderExists(before);
  OpenFirstFolder(is_there ? before : documents_);
  const bool is_gone = !before.isEmpty() && !is_there;
  ui_->curntpathlbl->ShowText(is_gone ? before : ui_->ktxDir->Path());

  const bool makes_folders = session().BackupMode == backup_mode::kBackup;
  ui_->crtfldbtn->setVisible(makes_folders);
  ui_->crtfldnme->setVisible(makes_folders);
}

/// The drive that `path` lies on; of nested ones, the innermost.
void opnflddlg::SelectDrive(const QString& path) {
  int found = 0;
  for (int i = 0; i < ui_->ktxdrv->count(); ++i) {
    const QString drive = ui_->ktxdrv->itemText(i);
    if (LiesOn(path, drive) && drive.size() >= ui_->ktxdrv->itemText(found).size()) found = i;
  }
  ui_->ktxdrv->setCurrentIndex(found);
}

/// A folder that can't be read mustn't leave the list without anything to walk through.
void opnflddlg::OpenFirstFolder(const QString& folder) {
  for (const QString& path : {folder, documents_}) {
    try {
      return ui_->ktxDir->SetPath(path);
    } catch (const Failure&) {
      // The next one may do.
    }
  }
  ui_->ktxDir->SetPath(ui_->ktxdrv->currentText());
}

void opnflddlg::Activate() {
  TakePath();
}

void opnflddlg::closeEvent(QCloseEvent* event) {
  event->accept();
  cls1_Click();
}

void opnflddlg::TakePath() {
  ui_->curntpathlbl->ShowText(ui_->ktxDir->Path());
  session().BackupFolder = ui_->ktxDir->Path();
  ui_->slctfld->setToolTip(PlainTip(QStringLiteral("Select ") + ui_->ktxDir->Path()));
}

void opnflddlg::ktxdrv_Change() {
  try {
    ui_->ktxDir->SetPath(ui_->ktxdrv->currentText());
  } catch (const Failure&) {
    Tell(Icon::kCritical, QStringLiteral("BELTROVAN: Drive not ready"),
         QStringLiteral("Drive not ready."));
    SelectDrive(platform().environment.Variable(QStringLiteral("PROGRAMFILES")));
  }
}

/// The drive that stands in the box already changes nothing there when it is picked.
void opnflddlg::ktxdrv_Click() {
  if (ui_->ktxDir->Path() != ui_->ktxdrv->currentText()) ktxdrv_Change();
}

void opnflddlg::ktxDir_Wanted(const QString& path) {
  try {
    ui_->ktxDir->SetPath(path);
  } catch (const Failure& failure) {
    if (failure.number() != failure::kPathNotFound) throw;
    // It was deleted meanwhile, and maybe the open folder with it: the list shows what is there.
    OpenFirstFolder(ui_->ktxDir->Path());
  }
}

void opnflddlg::crtfldbtn_Click() {
  ui_->crtfldnme->setEnabled(true);
  ui_->crtfldnme->setText(QStringLiteral("New Folder"));
  FocusLater(ui_->crtfldnme, [this] { ui_->crtfldnme->selectAll(); });
}

void opnflddlg::crtfldnme_LostFocus() {
  const QString name = ui_->crtfldnme->text();
  session().MsgAnswer = Ask(Icon::kQuestion, title::kProgram,
                            QStringLiteral("Wish to create Folder [%1]?").arg(name));
  if (session().MsgAnswer != Button::kYes) return ShowForm();
  try {
    MakeFolder(name);
    ui_->crtfldnme->setEnabled(false);
  } catch (const Failure&) {
    Tell(Icon::kCritical, QStringLiteral("BELTROVAN : ERROR"),
         QStringLiteral("Failed to create folder/Access denied."));
    ShowForm();
  }
}

void opnflddlg::MakeFolder(const QString& name) {
  if (std::any_of(name.begin(), name.end(), IsForbidden))
    throw Failure(failure::kPathNotFound, QStringLiteral("\"%1\" is no folder name.").arg(name));
  const QString path = JoinPath(ui_->curntpathlbl->text(), u'\\' + name);
  if (!files().FolderExists(path)) files().CreateFolder(path);
  ui_->ktxDir->SetPath(path);
}

void opnflddlg::slctfld_Click() {
  session().BackupFolder = ui_->ktxDir->Path();
  const BackupSet set(session().BackupFolder);
  switch (session().BackupMode) {
    case backup_mode::kBackup:
      Q_EMIT BackupFolderChosen();
      return UnloadForm();
    case backup_mode::kRestore:
      if (!files().FileExists(set.Register())) return RefuseFolder();
      if (IsAmongPictures(session().BackupFolder, installation().PictureRoot()))
        return Refuse(title::kProgramFilesMissing, kSetMissing);
      Q_EMIT RestoreFolderChosen();
      return UnloadForm();
    case backup_mode::kPresets:
      if (!files().FileExists(set.Presets()) || !files().FileExists(set.ZeroNodes()))
        return RefuseFolder();
      UnloadForm();
      Q_EMIT RestoreFolderChosen();
      return;
    default:
      return;
  }
}

void opnflddlg::RefuseFolder() {
  Refuse(
      QStringLiteral("KESTRIX"),
      QStringLiteral("1. Folder does not have backup files to restore, select different folder."));
}

void opnflddlg::cls1_Click() {
  UnloadForm();
  const qint16 mode = session().BackupMode;
  if (mode == backup_mode::kBackup || mode == backup_mode::kList) Q_EMIT Cancelled();
  if (session().BackupSubMode == 1) session().BackupSubMode = 0;
}

}  // namespace kestrix
