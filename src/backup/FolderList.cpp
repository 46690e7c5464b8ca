#include "backup/FolderList.h"

#include <QDir>
#include <QKeyEvent>
#include <QStyledItemDelegate>

#include "formkit/Controls.h"
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
  // The list is filled again after the event that has the item in hand.
  const QString path = item->data(kPathRole).toString();
  QMetaObject::invokeMethod(
      this, [this, path] { Q_EMIT Wanted(path); }, Qt::QueuedConnection);
}

void FolderList::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool walks = currentItem() && currentItem()->data(kPathRole).toString() != path_;
  // On the open folder there is nothing to open, and the key is the form's.
  if (!enter || !walks) return QListWidget::keyPressEvent(event);
  event->accept();
  Want(currentItem());
}

void FolderList::SetPath(const QString& path) {
  const QString clean = QDir::cleanPath(path);
  Fill(clean, files_->FoldersIn(clean));
  if (std::exchange(path_, clean) != clean) Q_EMIT Change();
}

void FolderList::Fill(const QString& path, const QStringList& folders) {
  clear();
  int depth = 0;
  QString above;
  AddFolder(QStringLiteral("/"), QStringLiteral("/"), depth);
  for (const QString& name : path.split(u'/', Qt::SkipEmptyParts)) {
    above += u'/' + name;
    AddFolder(name, above, ++depth);
  }
  // The highlighted row is not always the open folder: a click moves the highlight alone.
  QFont bold = font();
  bold.setBold(true);
  item(depth)->setFont(bold);
  item(depth)->setIcon(open_folder_);
  setCurrentItem(item(depth));
  for (const QString& name : folders) AddFolder(name, above + u'/' + name, depth + 1);
  scrollToItem(currentItem());
}

void FolderList::AddFolder(const QString& name, const QString& path, int depth) {
  auto* folder = new QListWidgetItem(folder_, name, this);
  folder->setData(kPathRole, path);
  folder->setData(kDepthRole, depth);
  folder->setToolTip(PlainTip(path));
}

}  // namespace kestrix
