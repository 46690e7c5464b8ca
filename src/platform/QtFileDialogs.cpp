#include "platform/QtFileDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QStandardPaths>

#include "platform/WindowInFront.h"

namespace kestrix {
namespace {

QStringList PatternsOf(const QString& text) {
  QStringList patterns;
  for (const QString& part : text.split(u';', Qt::SkipEmptyParts)) {
    const QString pattern = part.trimmed();
    // The dialog reads its patterns between brackets and can't be given one that holds a bracket.
    if (pattern.isEmpty() || pattern.contains(u'(') || pattern.contains(u')')) continue;
    patterns.append(pattern == QStringLiteral("*.*") ? QStringLiteral("*") : pattern);
  }
  return patterns.isEmpty() ? QStringList{QStringLiteral("*")} : patterns;
}

/// A label often repeats its patterns at its end; they are shown once.
QString WithoutPatterns(const QString& label) {
  const qsizetype bracket = label.lastIndexOf(u'(');
  if (bracket <= 0 || !label.endsWith(u')')) return label.trimmed();
  return label.first(bracket).trimmed();
}

}  // namespace

QList<NameFilter> ParseFilter(const QString& filter) {
  const QStringList fields = filter.split(u'|');
  QList<NameFilter> filters;
  for (qsizetype i = 0; i < fields.size(); i += 2) {
    const QString patterns = i + 1 < fields.size() ? fields[i + 1] : QString();
    if (fields[i].isEmpty() && patterns.isEmpty()) continue;
    filters.append({fields[i], PatternsOf(patterns)});
  }
  return filters;
}

QString DesktopFilter(const NameFilter& filter) {
  return QStringLiteral("%1 (%2)").arg(WithoutPatterns(filter.label), filter.patterns.join(u' '));
}

QString QtFileDialogs::Run(const FileDialogRequest& request, bool to_save) {
  if (QFileInfo(request.folder).isDir()) folder_ = request.folder;
  if (!QFileInfo(folder_).isDir())
    folder_ = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  // A folder that isn't there would stand in the dialog as the name of a file.
  if (!QFileInfo(folder_).isDir()) folder_ = QDir::homePath();
  // The window below may go, and the dialog with it, while the dialog is open.
  const QPointer<QFileDialog> dialog = new QFileDialog(WindowInFront(), request.title, folder_);
  dialog->setAcceptMode(to_save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog->setFileMode(to_save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  QStringList filters;
  for (const NameFilter& filter : ParseFilter(request.filter))
    filters.append(DesktopFilter(filter));
  if (!filters.isEmpty()) {
    dialog->setNameFilters(filters);
    dialog->selectNameFilter(filters.value(request.filter_index - 1, filters.first()));
  }
  if (!request.file_name.isEmpty()) dialog->selectFile(request.file_name);

  QString path;
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (!dialog.isNull()) {
    folder_ = dialog->directory().absolutePath();
    if (accepted) path = dialog->selectedFiles().value(0);
    delete dialog;
  }
  return QDir::toNativeSeparators(path);
}

}  // namespace kestrix
