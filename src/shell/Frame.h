#pragma once

#include <QString>

namespace kestrix {

/// What other forms may do to the frame. The frame implements it; nobody else sees more of it.
class Frame {
 public:
  /// The frame's title text, which its status bar shows while no organisation is open.
  static inline const QString kTitle = QStringLiteral(" KESTRIX : Risk Assessment Software  ");

  virtual ~Frame() = default;
  /// The first panel of the status bar, shown at once.
  virtual void SetStatusText(const QString& text) = 0;
  /// The menu that leads to the organisations.
  virtual void EnableData(bool enable) = 0;
  virtual void EnableToolBar(bool enable) = 0;
  /// A minimised frame is maximised; any other state stays.
  virtual void MaximiseIfMinimised() = 0;
};

}  // namespace kestrix
