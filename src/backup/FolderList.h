#pragma once

#include <QListWidget>
#include <QString>

#include "formkit/DrawnIcon.h"

namespace kestrix {

class FileSystem;

/// The folders of a disk to walk through: the way from its root down to the open folder, and below
/// that the folders in it. The open folder's row is bold and has the picture of an open folder. A
/// double click, or Enter, on another one asks for that to be opened. It changes nothing on the
/// disk.
class FolderList : public QListWidget {
  Q_OBJECT
  /// The folder that is open, a full path without a separator at its end, except for a root.
  Q_PROPERTY(QString Path READ Path NOTIFY Change)

 public:
  explicit FolderList(QWidget* parent = nullptr);

  /// Called once, before anything is opened.
  void SetFiles(const FileSystem& files) { files_ = &files; }

  [[nodiscard]] QString Path() const { return path_; }
  /// Opens a folder, and reads it again when it is open. Fails as FileSystem::FoldersIn does; the
  /// list then stays as it was.
  void SetPath(const QString& path);

 Q_SIGNALS:
  /// Another folder has been opened.
  void Change();
  /// Somebody wants `path` to be opened.
  void Wanted(const QString& path);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Want(const QListWidgetItem* item);
  void Fill(const QString& path, const QStringList& folders);
  void AddFolder(const QString& name, const QString& path, int depth);

  const QIcon folder_ = DrawnIcon(Drawing::kFolder);
  const QIcon open_folder_ = DrawnIcon(Drawing::kOpenFolder);
  const FileSystem* files_ = nullptr;
  QString path_;
};

}  // namespace kestrix
