#pragma once

#include <QByteArray>
#include <QHash>
#include <QSize>
#include <QString>

class QMainWindow;

namespace kestrix {

/// How large forms open: the first time in a run as design and font need, from then on as their
/// user left them, with the splitters and the columns of lists. A form that the screen has no room
/// for is as large as the room, and scrolls. Nothing of it is stored.
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
