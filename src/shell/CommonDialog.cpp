#include "shell/CommonDialog.h"

#include <QFileInfo>

namespace kestrix {

CommonDialog::CommonDialog(Platform& platform, QObject* parent)
    : QObject(parent), platform_(platform) {
  setObjectName(QStringLiteral("dlgCommonDialog"));
}

void CommonDialog::ShowOpen(const QString& folder) {
  FileDialogRequest request = Request();
  request.folder = folder;
  Take(platform_.dialogs.Open(request));
}

void CommonDialog::ShowSave() {
  Take(platform_.dialogs.Save(Request()));
}

bool CommonDialog::ShowPrinter(bool selection) {
  return platform_.printing.ChoosePrinter(DialogTitle, selection);
}

FileDialogRequest CommonDialog::Request() const {
  return {.title = DialogTitle,
          .filter = Filter,
          .filter_index = FilterIndex,
          .file_name = QFileInfo(FileName).isAbsolute() ? FileName : QString(),
          .folder = {}};
}

void CommonDialog::Take(const QString& path) {
  FileName = path;
  file_title_ = QFileInfo(path).fileName();
}

}  // namespace kestrix
