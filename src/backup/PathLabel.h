#pragma once

#include <QLabel>

namespace kestrix {

/// The text of a tool tip that reads `path`: a name with angle brackets is no markup.
[[nodiscard]] QString PathTip(const QString& path);

/// Shows a path in the room it has: broken anywhere when a line is too short for it, and with its
/// middle left out when the lines are too few. Its text is always the whole path.
class PathLabel : public QLabel {
  Q_OBJECT

 public:
  explicit PathLabel(QWidget* parent = nullptr);

  /// Shows `path`, whole in the tool tip.
  void ShowPath(const QString& path);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kestrix
