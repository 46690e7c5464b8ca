#pragma once

#include <QFutureWatcher>
#include <QImage>
#include <QObject>
#include <functional>

class QLabel;
class QThreadPool;

namespace kestrix {

/// Shows a picture file in a label, scaled to the room that the label has, as the picture was taken
/// (its orientation is honoured). It reads no more of a large photograph than a screen can show,
/// and refuses what claims to be larger than a picture can reasonably be.
///
/// A large picture can be read beside the events, so that its form goes on working meanwhile. A
/// view reads one picture at a time: whatever is shown next, nothing included, takes its place.
class PictureView : public QObject {
  Q_OBJECT

 public:
  /// What became of a picture that was to be shown.
  enum class Outcome { kShown, kFailed, kGivenUp };
  using Then = std::function<void(Outcome)>;

  explicit PictureView(QLabel* label);
  ~PictureView() override;

  /// The label shows nothing.
  void Clear();
  /// Shows the picture in `path`, whatever its ending says. Fails with kFileNotFound when there is
  /// no such file and with kInvalidPicture when it can't be read as a picture; the label then is
  /// clear.
  void Load(const QString& path);
  /// As Load, but a large picture is read beside the events: the label is clear until it can be
  /// seen. Fails at once with what the beginning of the file tells; `then` is told the rest, once:
  /// before this returns for a picture that is read at a glance, and by the view's end never.
  void LoadBesideEvents(const QString& path, Then then);
  [[nodiscard]] bool IsClear() const { return picture_.isNull(); }

  /// The picture in `path`, not larger than a screen. Fails as Load does.
  [[nodiscard]] static QImage Read(const QString& path);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Fit();
  void ReadingEnded();
  void GiveUpReading();

  QLabel* label_;
  QImage picture_;
  QFutureWatcher<QImage> reading_;  ///< null of an image when the picture can't be read
  Then then_;                       ///< set while a picture is being read
  QThreadPool* reader_;             ///< of one thread; its end waits for the end of the reading
};

}  // namespace kestrix
