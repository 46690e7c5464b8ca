#pragma once

#include <QByteArray>
#include <QHash>
#include <QSize>
#include <QString>

class QMainWindow;

namespace kestrix {

/// How large forms open. The first time in a run it is the larger of the design's size and of what
/// the desktop's font needs; from then on a form opens as its user left it, with the splitters and
/// the columns of lists. A form that the screen has no room for is as large as the room, and
/// scrolls. Nothing of it is stored.
class FormRooms {
 public:
  /// Gives a form that wasn't shown yet its size, at most `room`.
  void Open(QMainWindow& form, QSize room);
  /// Keeps how a form that goes was left.
  void Leave(const QMainWindow& form);

 private:
  struct Left {
    QSize size;
    bool maximised = false;
    QHash<QString, QByteArray> parts;
  };

  QHash<QString, Left> left_;
};

}  // namespace kestrix
