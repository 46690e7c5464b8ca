// The document children of the frame and the commands that work on them.

#include <QLayout>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <algorithm>

#include "formkit/Controls.h"
#include "platform/Failure.h"
#include "shell/CommonDialog.h"
#include "shell/frmDocument.h"
#include "shell/frmMain.h"
#include "ui_frmMain.h"

namespace kestrix {
namespace {

const QString kAnyFile = QStringLiteral("All Files (*.*)|*.*");
const QString kDocumentFile = QStringLiteral("All Files (*.kfe*)|*.kfe*");
const QString kExtension = QStringLiteral(".kfe");
/// A child whose caption begins so has no file yet.
const QString kUnnamed = QStringLiteral("Document");
/// From one new child to the next, in pixels.
constexpr int kStep = 26;
constexpr int kLeastSteps = 4;

/// Where a child of that extent begins, `further` from the first one, and from the first one again
/// once there is no more room. A frame that is too small for it lets it begin further down all the
/// same, by a few steps, so that those below it are still seen.
int PlaceWithin(int room, int extent, int further) {
  const int steps = std::min(kLeastSteps * kStep, room / 2);
  return further % (std::max({room - extent, steps, 0}) + 1);
}

QList<QMdiSubWindow*> ChildrenThatAre(const QMdiArea& area, bool minimised) {
  QList<QMdiSubWindow*> children;
  const auto all = area.subWindowList(QMdiArea::CreationOrder);
  for (QMdiSubWindow* child : all)
    if (child->isMinimized() == minimised && !child->isHidden()) children.append(child);
  return children;
}

}  // namespace

void frmMain::LoadNewDoc() {
  if (session().DocumentCount == 0) document_number_ = 0;
  ++document_number_;
  auto* child = new frmDocument(session(), *this);
  ShowChild(*child);
  session().DocumentCount = document_number_;
  if (!own_) own_ = child;
}

void frmMain::ShowChild(frmDocument& child) {
  // As large as designed, and each a step further down, as far as the frame has room for it.
  layout()->activate();
  // With a large font the bars grow by a pixel when they are first shown.
  const QSize room = ui_->mdiArea->maximumViewportSize() - QSize(0, 2);
  const QSize design = child.size();
  connect(&child, &frmDocument::Pasting, this,
          [this, &child](const QString& text) { Guarded([&] { child.SetSelRTF(text); }); });
  QMdiSubWindow* window = ui_->mdiArea->addSubWindow(&child);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setWindowIcon(ui_->tbNew->icon());
  const QSize extent = design.grownBy(window->layout()->contentsMargins());
  const int further = (document_number_ - 1) * kStep;
  const QPoint place(PlaceWithin(room.width(), extent.width(), further),
                     PlaceWithin(room.height(), extent.height(), further));
  window->resize(extent.boundedTo(room - QSize(place.x(), place.y())));
  window->show();
  // Behind a maximised child it comes up maximised too, and fills the frame.
  if (!window->isMaximized()) window->move(place);
}

frmDocument* frmMain::ActiveChild() const {
  const QMdiSubWindow* window = ui_->mdiArea->currentSubWindow();
  auto* child = window ? qobject_cast<frmDocument*>(window->widget()) : nullptr;
  return child && !child->IsClosed() ? child : nullptr;
}

frmDocument& frmMain::OwnChild() {
  // A child that has become the user's is never written over.
  if (own_ && (own_->IsClosed() || !own_->IsUntouched())) own_ = nullptr;
  if (!own_) LoadNewDoc();
  auto* window = qobject_cast<QMdiSubWindow*>(own_->parentWidget());
  if (window->isMinimized()) window->showNormal();
  ui_->mdiArea->setActiveSubWindow(window);
  return *own_;
}

void frmMain::mnuFileNew_Click() {
  LoadNewDoc();
}

void frmMain::mnuWindowNewWindow_Click() {
  LoadNewDoc();
}

void frmMain::mnuFileOpen_Click() {
  if (!ActiveChild()) LoadNewDoc();
  dialog().DialogTitle = QStringLiteral("Open");
  dialog().Filter = kAnyFile;
  dialog().ShowOpen();
  const QString name = dialog().FileName;
  if (name.isEmpty()) return;
  if (!ActiveChild()) LoadNewDoc();
  frmDocument* child = ActiveChild();
  const WaitCursor cursor;
  child->LoadFile(name);
  child->SetCaption(name);
}

void frmMain::mnuFileSave_Click() {
  frmDocument* child = ActiveChild();
  if (!child) return;
  if (!child->Caption().startsWith(kUnnamed)) return child->SaveFile(child->Caption());
  dialog().DialogTitle = QStringLiteral("Save");
  dialog().Filter = kDocumentFile;
  dialog().ShowSave();
  const QString name = dialog().FileName;
  if (name.isEmpty()) return;
  child->SetCaption(name);
  child->SaveFile(name + kExtension);
}

void frmMain::mnuFileSaveAs_Click() {
  frmDocument* child = ActiveChild();
  if (!child) return;
  dialog().DialogTitle = QStringLiteral("Save As");
  dialog().Filter = kDocumentFile;
  dialog().ShowSave();
  const QString name = dialog().FileName;
  if (name.isEmpty()) return;
  child->SetCaption(name);
  child->SaveFile(name);
}

void frmMain::mnuFilePageSetup_Click() {
  PassOver([this] {
    dialog().DialogTitle = QStringLiteral("Page Setup");
    (void)dialog().ShowPrinter(false);
  });
}

void frmMain::mnuFilePrint_Click() {
  const frmDocument* child = ActiveChild();
  if (!child) return;
  PassOver([&] {
    dialog().DialogTitle = QStringLiteral("Print");
    if (dialog().ShowPrinter(child->HasSelection())) child->SelPrint(platform().printing);
  });
}

void frmMain::mnuEditCut_Click() {
  frmDocument* child = ActiveChild();
  if (!child) return;
  mnuEditCopy_Click();
  child->RemoveSelection();
}

void frmMain::mnuEditCopy_Click() {
  const frmDocument* child = ActiveChild();
  if (!child) return;
  platform().clipboard.Clear();
  platform().clipboard.SetText(child->SelRTF());
}

void frmMain::mnuEditPaste_Click() {
  if (frmDocument* child = ActiveChild()) child->SetSelRTF(platform().clipboard.Text());
}

void frmMain::mnuWindowCascade_Click() {
  Arrange(0);
}

void frmMain::mnuWindowTileHorizontal_Click() {
  Arrange(1);
}

void frmMain::mnuWindowTileVertical_Click() {
  Arrange(2);
}

void frmMain::mnuWindowArrangeIcons_Click() {
  Arrange(3);
}

void frmMain::Arrange(int how) {
  switch (how) {
    case 0:
      return ui_->mdiArea->cascadeSubWindows();
    case 1:
      return Tile(Qt::Horizontal);
    case 2:
      return Tile(Qt::Vertical);
    default:
      return ArrangeIcons();
  }
}

void frmMain::Tile(Qt::Orientation orientation) {
  const auto children = ChildrenThatAre(*ui_->mdiArea, false);
  if (children.isEmpty()) return;
  const QSize room = ui_->mdiArea->maximumViewportSize();
  const int count = static_cast<int>(children.size());
  // Horizontal tiles are wide and lie one above the other.
  const QSize tile = orientation == Qt::Horizontal ? QSize(room.width(), room.height() / count)
                                                   : QSize(room.width() / count, room.height());
  QPoint place;
  for (QMdiSubWindow* child : children) {
    child->showNormal();
    child->setGeometry(QRect(place, tile));
    if (orientation == Qt::Horizontal) {
      place.ry() += tile.height();
    } else {
      place.rx() += tile.width();
    }
  }
}

void frmMain::ArrangeIcons() {
  // In rows from the lower left corner, as far as the frame is wide.
  const QSize room = ui_->mdiArea->maximumViewportSize();
  QPoint corner(0, room.height());
  const auto children = ChildrenThatAre(*ui_->mdiArea, true);
  for (QMdiSubWindow* child : children) {
    if (corner.x() > 0 && corner.x() + child->width() > room.width())
      corner = QPoint(0, corner.y() - child->height());
    child->move(corner.x(), corner.y() - child->height());
    corner.rx() += child->width();
  }
}

}  // namespace kestrix
