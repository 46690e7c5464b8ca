#pragma once

#include <QImage>
#include <QObject>

class QLabel;

namespace kestrix {

/// Shows a picture file in a label, scaled to the room that the label has, as the picture was taken
/// (its orientation is honoured). It reads no more of a large photograph than a screen can show,
/// and refuses what claims to be larger than a picture can reasonably be.
class PictureView : public QObject {
  Q_OBJECT

 public:
  explicit PictureView(QLabel* label);

  /// The label shows nothing.
  void Clear();
  /// Shows the picture in `path`, whatever its ending says. Fails with kFileNotFound when there is
  /// no such file and with kInvalidPicture when it can't be read as a picture; the label then is
  /// clear.
  void Load(const QString& path);
  [[nodiscard]] bool IsClear() const { return picture_.isNull(); }

  /// The picture in `path`, not larger than a screen. Fails as Load does.
  [[nodiscard]] static QImage Read(const QString& path);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Fit();

  QLabel* label_;
  QImage picture_;
};

}  // namespace kestrix
