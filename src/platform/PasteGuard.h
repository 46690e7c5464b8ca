#pragma once

#include <QObject>

namespace kestrix {

/// Lets a person paste where there is nothing to paste. The toolkit's boxes of several lines take
/// the first format of what the clipboard holds without looking whether there is one, and end the
/// program when there is none: on a desktop just started, or once the program has gone that a text
/// was copied from. While this lives, such a paste does nothing, in whatever box of the program.
/// What can be pasted is left to the boxes.
class PasteGuard : public QObject {
  Q_OBJECT

 public:
  /// Made after the application object.
  PasteGuard();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kestrix
