#include "backup/FolderList.h"

#include <QDir>
#include <QKeyEvent>
#include <QStyledItemDelegate>

#include "platform/FileSystem.h"

namespace kestrix {
namespace {

constexpr int kPathRole = Qt::UserRole;
constexpr int kDepthRole = Qt::UserRole + 1;
constexpr int kIndent = 14;     // pixels for one folder further down
constexpr int kMostIndent = 8;  // folders; further down the names need the room

/// Draws each folder further to the right than the one that it lies in.
class Indented : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem moved = option;
    moved.textElideMode = Qt::ElideRight;
    const int depth = qMin(index.data(kDepthRole).toInt(), kMostIndent);
    if (option.direction == Qt::RightToLeft)
      moved.rect.adjust(0, 0, -depth * kIndent, 0);
    else
      moved.rect.adjust(depth * kIndent, 0, 0, 0);
    QStyledItemDelegate::paint(painter, moved, index);
  }
};

}  // namespace

FolderList::FolderList(QWidget* parent) : QListWidget(parent) {
  setItemDelegate(new Indented(this));
  connect(this, &QListWidget::itemDoubleClicked, this, &FolderList::Want);
}

void FolderList::Want(const QListWidgetItem* item) {
  // The list is made anew behind the event that has the item in hand.
  const QString path = item->data(kPathRole).toString();
  QMetaObject::invokeMethod(
      this, [this, path] { Q_EMIT Wanted(path); }, Qt::QueuedConnection);
}

void FolderList::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter || !currentItem()) return QListWidget::keyPressEvent(event);
  event->accept();
  Want(currentItem());
}

void FolderList::SetPath(const QString& path) {
  const QString clean = QDir::cleanPath(path);
  Fill(clean, files_->FoldersIn(clean));
  if (std::exchange(path_, clean) != clean) Q_EMIT Change();
}

void FolderList::Refresh() {
  Fill(path_, files_->FoldersIn(path_));
}

void FolderList::Fill(const QString& path, const QStringList& folders) {
  clear();
  int depth = 0;
  QString above;
  AddFolder(QStringLiteral("/"), QStringLiteral("/"), depth, true);
  for (const QString& name : path.split(u'/', Qt::SkipEmptyParts)) {
    above += u'/' + name;
    AddFolder(name, above, ++depth, true);
  }
  setCurrentRow(depth);
  for (const QString& name : folders) AddFolder(name, above + u'/' + name, depth + 1, false);
  scrollToItem(currentItem());
}

void FolderList::AddFolder(const QString& name, const QString& path, int depth, bool open) {
  auto* item = new QListWidgetItem(open ? open_folder_ : folder_, name, this);
  item->setData(kPathRole, path);
  item->setData(kDepthRole, depth);
  item->setToolTip(path);
}

}  // namespace kestrix
