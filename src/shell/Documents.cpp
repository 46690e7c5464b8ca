#include "shell/Documents.h"

#include <QLayout>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <algorithm>

#include "formkit/Controls.h"
#include "formkit/DrawnIcon.h"
#include "shell/CommonDialog.h"
#include "shell/frmDocument.h"
#include "shell/frmMain.h"

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

Documents::Documents(Context& context, frmMain& frame, QMdiArea& area)
    : context_(context), frame_(frame), area_(area) {}

void Documents::New() {
  if (context_.session.DocumentCount == 0) number_ = 0;
  ++number_;
  auto* child = new frmDocument(context_.session, frame_);
  ShowChild(*child);
  context_.session.DocumentCount = number_;
  if (!own_) own_ = child;
}

void Documents::ShowChild(frmDocument& child) {
  // As large as designed, and each a step further down, as far as the frame has room for it.
  frame_.layout()->activate();
  // With a large font the bars grow by a pixel when they are first shown.
  const QSize room = area_.maximumViewportSize() - QSize(0, 2);
  const QSize design = child.size();
  QObject::connect(&child, &frmDocument::Pasting, &frame_, [this, &child](const QString& text) {
    frame_.Guarded([&] { child.SetSelRTF(text); });
  });
  QMdiSubWindow* window = area_.addSubWindow(&child);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setWindowIcon(DrawnIcon(Drawing::kPage));
  const QSize extent = design.grownBy(window->layout()->contentsMargins());
  const int further = (number_ - 1) * kStep;
  const QPoint place(PlaceWithin(room.width(), extent.width(), further),
                     PlaceWithin(room.height(), extent.height(), further));
  window->resize(extent.boundedTo(room - QSize(place.x(), place.y())));
  window->show();
  // Behind a maximised child it comes up maximised too, and fills the frame.
  if (!window->isMaximized()) window->move(place);
}

frmDocument* Documents::Active() const {
  const QMdiSubWindow* window = area_.currentSubWindow();
  auto* child = window ? qobject_cast<frmDocument*>(window->widget()) : nullptr;
  return child && !child->IsClosed() ? child : nullptr;
}

frmDocument& Documents::Own() {
  // A child that has become the user's is never written over.
  if (own_ && (own_->IsClosed() || !own_->IsUntouched())) own_ = nullptr;
  if (!own_) New();
  auto* window = qobject_cast<QMdiSubWindow*>(own_->parentWidget());
  if (window->isMinimized()) window->showNormal();
  area_.setActiveSubWindow(window);
  return *own_;
}

void Documents::Open() {
  if (!Active()) New();
  context_.dialog.DialogTitle = QStringLiteral("Open");
  context_.dialog.Filter = kAnyFile;
  context_.dialog.ShowOpen();
  const QString name = context_.dialog.FileName;
  if (name.isEmpty()) return;
  if (!Active()) New();
  frmDocument* child = Active();
  const WaitCursor cursor;
  child->LoadFile(name);
  child->SetCaption(name);
}

void Documents::Save() {
  frmDocument* child = Active();
  if (!child) return;
  if (!child->Caption().startsWith(kUnnamed)) return child->SaveFile(child->Caption());
  SaveUnder(QStringLiteral("Save"), kExtension);
}

void Documents::SaveAs() {
  SaveUnder(QStringLiteral("Save As"), {});
}

/// The file gets the name that a person gives with `extension`, and the caption without it.
void Documents::SaveUnder(const QString& title, const QString& extension) {
  frmDocument* child = Active();
  if (!child) return;
  context_.dialog.DialogTitle = title;
  context_.dialog.Filter = kDocumentFile;
  context_.dialog.ShowSave();
  const QString name = context_.dialog.FileName;
  if (name.isEmpty()) return;
  child->SetCaption(name);
  child->SaveFile(name + extension);
}

void Documents::PageSetup() {
  PassOver([this] {
    context_.dialog.DialogTitle = QStringLiteral("Page Setup");
    (void)context_.dialog.ShowPrinter(false);
  });
}

void Documents::Print() {
  const frmDocument* child = Active();
  if (!child) return;
  PassOver([&] {
    context_.dialog.DialogTitle = QStringLiteral("Print");
    if (context_.dialog.ShowPrinter(child->HasSelection()))
      child->SelPrint(context_.kit.platform.printing);
  });
}

void Documents::Cut() {
  frmDocument* child = Active();
  if (!child) return;
  Copy();
  child->RemoveSelection();
}

void Documents::Copy() {
  const frmDocument* child = Active();
  if (!child) return;
  context_.kit.platform.clipboard.Clear();
  context_.kit.platform.clipboard.SetText(child->SelRTF());
}

void Documents::Paste() {
  if (frmDocument* child = Active()) child->SetSelRTF(context_.kit.platform.clipboard.Text());
}

void Documents::Cascade() {
  area_.cascadeSubWindows();
}

void Documents::Tile(Qt::Orientation orientation) {
  const auto children = ChildrenThatAre(area_, false);
  if (children.isEmpty()) return;
  const QSize room = area_.maximumViewportSize();
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

void Documents::ArrangeIcons() {
  // In rows from the lower left corner, as far as the frame is wide.
  const QSize room = area_.maximumViewportSize();
  QPoint corner(0, room.height());
  const auto children = ChildrenThatAre(area_, true);
  for (QMdiSubWindow* child : children) {
    if (corner.x() > 0 && corner.x() + child->width() > room.width())
      corner = QPoint(0, corner.y() - child->height());
    child->move(corner.x(), corner.y() - child->height());
    corner.rx() += child->width();
  }
}

}  // namespace kestrix
