#pragma once

#include <QPointer>

class QMdiArea;

namespace kestrix {

class frmDocument;
class frmMain;
struct Context;

/// The document children within the frame, and the commands that work on the active one.
class Documents {
 public:
  /// `area` is the part of `frame` that the children lie in.
  Documents(Context& context, frmMain& frame, QMdiArea& area);

  /// The child that the frame writes its notices into, in front of the others, so that a notice is
  /// seen.
  [[nodiscard]] frmDocument& Own();

  void New();
  void Open();
  void Save();
  void SaveAs();
  void PageSetup();
  void Print();
  void Cut();
  void Copy();
  void Paste();
  void Cascade();
  void TileHorizontal() { Tile(Qt::Horizontal); }
  void TileVertical() { Tile(Qt::Vertical); }
  void ArrangeIcons();

 private:
  void ShowChild(frmDocument& child);
  [[nodiscard]] frmDocument* Active() const;
  void SaveUnder(const QString& title, const QString& extension);
  void Tile(Qt::Orientation orientation);

  Context& context_;
  frmMain& frame_;
  QMdiArea& area_;
  qint32 number_ = 0;  ///< the running number of new children
  QPointer<frmDocument> own_;
};

}  // namespace kestrix
