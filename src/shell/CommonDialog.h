#pragma once

#include <QObject>
#include <QString>

#include "platform/Services.h"

namespace kestrix {

/// The file and printer dialog of the frame, which forms share: its properties are set, it is
/// shown, and what was chosen is read from it. They keep their values between two uses.
class CommonDialog : public QObject {
  Q_OBJECT

 public:
  explicit CommonDialog(Platform& platform, QObject* parent = nullptr);

  QString DialogTitle;
  QString Filter;
  int FilterIndex = 1;
  /// The full path that was chosen; empty when the dialog was cancelled. The next dialog comes up
  /// with it; anything else that is left here is nothing that was chosen, and shows nowhere.
  QString FileName;
  /// The name without its folder of what was chosen last; empty when the dialog was cancelled.
  [[nodiscard]] QString FileTitle() const { return file_title_; }

  /// Comes up in `folder`, or where the last dialog was when there is no such folder.
  void ShowOpen(const QString& folder = {});
  void ShowSave();
  /// False when it was cancelled.
  bool ShowPrinter(bool selection);

 private:
  [[nodiscard]] FileDialogRequest Request() const;
  void Take(const QString& path);

  Platform& platform_;
  QString file_title_;
};

}  // namespace kestrix
