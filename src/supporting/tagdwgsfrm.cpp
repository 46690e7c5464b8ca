#include "supporting/tagdwgsfrm.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <utility>

#include "formkit/Controls.h"
#include "formkit/PictureView.h"
#include "platform/FileSystem.h"
#include "shell/CommonDialog.h"
#include "store/LookupList.h"
#include "store/RecordSources.h"
#include "store/Recordset.h"
#include "ui_tagdwgsfrm.h"

namespace kestrix {
namespace {

enum Column { kPath = 0, kName = 1 };

const QString kTitle = QStringLiteral("BELTROVAN.");

/// The fields of a link, in the order of its record source.
enum Field { kProject = 0, kFilePath = 1, kShortDescription = 2, kEmbedded = 3 };

const QString kNoFiles = QStringLiteral("No files linked. ");

}  // namespace

tagdwgsfrm::tagdwgsfrm(Context& context)
    : SessionForm(context), ui_(std::make_unique<Ui::tagdwgsfrm>()) {
  ui_->setupUi(this);
  // The path takes the room that the title leaves.
  ui_->fllst->header()->setSectionResizeMode(kPath, QHeaderView::Stretch);
  ui_->fllst->header()->setStretchLastSection(false);
  preview_ = std::make_unique<PictureView>(ui_->ImgAccd2);
  On(ui_->fllst, &QTreeWidget::currentItemChanged, &tagdwgsfrm::fllst_ItemClick);
  // Clicks count on the whole list, also where it has no row.
  ui_->fllst->viewport()->installEventFilter(this);
  ui_->fllst->installEventFilter(this);
  On(ui_->LnkFls_1, &QPushButton::clicked, &tagdwgsfrm::LnkFls_1_Click);
  On(ui_->DeltFle, &QPushButton::clicked, &tagdwgsfrm::DeltFle_Click);
  On(ui_->cls_1, &QPushButton::clicked, &Form::UnloadForm);
}

tagdwgsfrm::~tagdwgsfrm() = default;

void tagdwgsfrm::Load() {
  try {
    dwgflsDB_.SetDatabaseName(installation().Study(session().ActiveStudyNo));
    dwgflsDB_.Refresh();
    ui_->EsiNoLBL->setText(context().project.ESI_No());
    session().FileLinkSql = sources::FileLinkSql(context().project.ESI_No());
    dwgflsDB_.SetRecordSource(session().FileLinkSql);
    dwgflsDB_.Refresh();
    FillList();
    Links().MoveFirst();
  } catch (const Failure&) {
    ui_->pathdsply->ShowText(kNoFiles);
  }
}

void tagdwgsfrm::Activate() {
  try {
    ui_->pathdsply->ShowText(u' ' + SelectedItem().text(kPath));
  } catch (const Failure&) {
    ui_->pathdsply->ShowText(kNoFiles);
  }
}

void tagdwgsfrm::QueryUnload() {
  session().ProjectFormHolds = 1;
  PassOver([&] {
    if (Links().RecordCount() == 0) return;
    Links().SetAbsolutePosition(Recordset::kPositionPastLast);
  });
}

bool tagdwgsfrm::eventFilter(QObject* watched, QEvent* event) {
  const bool done = watched == ui_->fllst->viewport() ? FollowMouse(*event)
                    : watched == ui_->fllst           ? FollowKey(*event)
                                                      : false;
  return done || SessionForm::eventFilter(watched, event);
}

/// True when the list has nothing more to do with the event.
bool tagdwgsfrm::FollowMouse(const QEvent& event) {
  if (event.type() != QEvent::MouseButtonDblClick && event.type() != QEvent::MouseButtonPress &&
      event.type() != QEvent::MouseButtonRelease)
    return false;
  const auto& mouse = static_cast<const QMouseEvent&>(event);
  QTreeWidgetItem* hit = ui_->fllst->itemAt(mouse.position().toPoint());
  if (event.type() == QEvent::MouseButtonDblClick) {
    clicked_twice_ = true;
    // The two presses of a double click may have hit two rows: the last one counts.
    if (hit != nullptr) ui_->fllst->setCurrentItem(hit);
    Guarded([this] { fllst_DblClick(); });
    return true;
  }
  const bool left = mouse.button() == Qt::LeftButton;
  if (event.type() == QEvent::MouseButtonPress) {
    // A file may have changed since it was shown: one that is clicked again is shown once more.
    const bool again = hit != nullptr && hit == ui_->fllst->currentItem();
    if (left && again) Guarded([this] { fllst_ItemClick(); });
  } else if (!std::exchange(clicked_twice_, false) && left) {
    // The second release of a double click ends no click of its own.
    Guarded([this] { fllst_Click(); });
  }
  return false;
}

bool tagdwgsfrm::FollowKey(const QEvent& event) {
  // An arrow key selects as a click does, and the path has to follow the preview.
  if (event.type() == QEvent::KeyRelease && !IsSelectionTold()) Guarded([this] { fllst_Click(); });
  if (event.type() != QEvent::KeyPress) return false;
  const auto& key = static_cast<const QKeyEvent&>(event);
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
  if (!key.isAutoRepeat()) Guarded([this] { fllst_DblClick(); });
  return true;
}

bool tagdwgsfrm::IsSelectionTold() const {
  const QTreeWidgetItem* selected = ui_->fllst->currentItem();
  if (selected == nullptr) return true;
  const QString told = ui_->pathdsply->text();
  return told == selected->text(kPath) || told == u' ' + selected->text(kPath);
}

void tagdwgsfrm::FillList() {
  ui_->fllst->clear();
  if (Links().RecordCount() == 0) return;
  const QStringList paths = Links().Texts(kFilePath);
  const QStringList titles = Links().Texts(kShortDescription);
  QList<QTreeWidgetItem*> items;
  for (qsizetype row = 0; row < paths.size(); ++row) items += ItemOf(paths[row], titles[row]);
  ui_->fllst->addTopLevelItems(items);
  ui_->fllst->setCurrentItem(items.front());
}

QTreeWidgetItem* tagdwgsfrm::ItemOf(const QString& path, const QString& title) const {
  auto* item = new QTreeWidgetItem({path, title});
  // What a column has no room for can be read here. The fixed text comes first, so that no name is
  // taken for markup.
  for (const int column : {kPath, kName}) {
    item->setToolTip(column, ui_->fllst->toolTip() + u'\n' + item->text(column));
  }
  return item;
}

const QTreeWidgetItem& tagdwgsfrm::SelectedItem() const {
  const QTreeWidgetItem* item = ui_->fllst->currentItem();
  if (item == nullptr) {
    throw Failure(failure::kObjectNotSet, QStringLiteral("No file is selected."));
  }
  return *item;
}

void tagdwgsfrm::fllst_ItemClick() {
  try {
    preview_->Clear();
    ui_->NoPreviewLbl->clear();
    preview_->LoadBesideEvents(SelectedItem().text(kPath), [this](PictureView::Outcome outcome) {
      if (outcome == PictureView::Outcome::kFailed) Guarded([this] { ShowFallback(); });
    });
  } catch (const Failure&) {
    ShowFallback();
  }
}

/// What is no picture, or is gone, shows a picture that says so. A file that is there can be opened
/// all the same.
void tagdwgsfrm::ShowFallback() {
  const QTreeWidgetItem* selected = ui_->fllst->currentItem();
  if (selected != nullptr && files().FileExists(selected->text(kPath))) {
    ui_->NoPreviewLbl->setText(QStringLiteral("No preview – double click opens it"));
  }
  session().FileFoundA = files().FileExists(installation().PictureError());
  if (!session().FileFoundA || selected == nullptr) return;
  PassOver([&] { preview_->Clear(); }, [&] { preview_->Load(installation().PictureError()); });
}

void tagdwgsfrm::fllst_Click() {
  try {
    const QString path = SelectedItem().text(kPath);
    ui_->Pathlenstr->setText(path);
    ui_->pathdsply->ShowText(path);
  } catch (const Failure&) {
    ui_->pathdsply->ShowText(kNoFiles);
  }
}

void tagdwgsfrm::LnkFls_1_Click() {
  try {
    LinkChosenFile();
  } catch (const Failure&) {
    Tell(Icon::kInformation, kTitle, QStringLiteral("Unable to Link file./No file selected."));
  }
}

/// A dialog that was cancelled gives an empty path, which the table refuses; the item that was put
/// into the list stays there until the list is filled again.
void tagdwgsfrm::LinkChosenFile() {
  dialog().DialogTitle = QStringLiteral("BELTROVAN : Select Pictures/Documents Files");
  dialog().FileName.clear();
  dialog().Filter = QStringLiteral("Folders|Folders|*..");
  dialog().FilterIndex = 2;
  dialog().ShowOpen(FolderOfNewestLink());
  const QString path = dialog().FileName;
  const QString title = dialog().FileTitle();
  if (Links().RecordCount() > 0 && lookup::WalkTo(Links(), path, kFilePath)) {
    return Tell(Icon::kInformation, QStringLiteral("BELTROVAN: Duplicate linking."),
                QStringLiteral("File already exists."));
  }
  ui_->fllst->addTopLevelItem(ItemOf(path, title));
  AddLink(path, title);
  FillList();
  ui_->fllst->scrollToItem(ui_->fllst->topLevelItem(ui_->fllst->topLevelItemCount() - 1));
  Links().MoveFirst();
  ui_->pathdsply->ShowText(u' ' + SelectedItem().text(kPath));
}

/// Where the last file was linked, in whichever project; files for one machine lie together.
QString tagdwgsfrm::FolderOfNewestLink() const {
  QString folder;
  // The dialog comes up also where the links can't be read.
  PassOver([&] {
    DataControl links(QStringLiteral("newestLinks"));
    links.SetDatabaseName(installation().Study(session().ActiveStudyNo));
    links.SetRecordSource(sources::kNewestLinks);
    links.Refresh();
    const Recordset& newest = links.Recordset();
    if (newest.RecordCount() > 0) folder = QFileInfo(newest.Text(0)).path();
  });
  return folder;
}

void tagdwgsfrm::AddLink(const QString& path, const QString& title) {
  Links().AddNew();
  const Recordset::Attempt attempt(Links());
  Links().Set(kProject, context().project.ESI_No());
  Links().Set(kFilePath, path);
  Links().Set(kShortDescription, title);
  Links().Set(kEmbedded, path);
  Links().Update();
}

void tagdwgsfrm::DeltFle_Click() {
  try {
    const QString path = SelectedItem().text(kPath);
    const int index = ui_->fllst->indexOfTopLevelItem(ui_->fllst->currentItem());
    if (!IsDeletionWished(QStringLiteral("Wish to delete linked file. [") + path +
                          QStringLiteral("] from records?"))) {
      return;
    }
    ui_->Pathlenstr->setText(path);
    delete ui_->fllst->takeTopLevelItem(index);
    lookup::WalkTo(Links(), path, kFilePath);
    Links().Delete();
    if (ui_->fllst->topLevelItemCount() > 0) {
      ui_->pathdsply->ShowText(u' ' + SelectedItem().text(kPath));
    } else {
      preview_->Clear();
      ui_->pathdsply->ShowText(QStringLiteral("No files linked."));
    }
  } catch (const Failure&) {
    Tell(Icon::kInformation, kTitle,
         QStringLiteral("Failed to remove file. /File does not exist."));
  }
}

void tagdwgsfrm::fllst_DblClick() {
  try {
    OpenSelectedFile();
  } catch (const Failure&) {
    TellNotOpened();
  }
}

void tagdwgsfrm::TellNotOpened() {
  Tell(Icon::kInformation, kTitle, QStringLiteral("Unable to open file."));
}

void tagdwgsfrm::OpenSelectedFile() {
  const QString path = SelectedItem().text(kPath);
  ui_->Pathlenstr->setText(path);
  if (!files().FileExists(path)) {
    return Tell(Icon::kInformation, QStringLiteral("BELTROVAN: File missing."),
                QStringLiteral("File moved or Deleted."));
  }
  CutFolderToScratch(path, SelectedItem().text(kName));
  const QString folder = ui_->Pathlenstr->text();
  files().ChangeFolder(folder.isEmpty() ? QDir::rootPath() : folder);
  const WaitCursor wait;
  platform().shell.OpenDocument(path, [form = QPointer(this)] {
    if (form) form->Guarded([form] { form->TellNotOpened(); });
  });
}

/// The folder is cut off by way of the clipboard, which then holds it.
void tagdwgsfrm::CutFolderToScratch(const QString& path, const QString& title) {
  const int length = static_cast<int>(path.size() - title.size()) - 1;
  ui_->Pathlenstr->setVisible(true);
  ui_->Pathlenstr->setFocus();
  ui_->Pathlenstr->setSelection(0, length);
  platform().clipboard.Clear();
  platform().clipboard.SetText(ui_->Pathlenstr->selectedText());
  ui_->Pathlenstr->setVisible(false);
  ui_->Pathlenstr->setText(platform().clipboard.Text());
  ui_->fllst->setFocus();
}

}  // namespace kestrix
