#pragma once

#include <QAbstractScrollArea>
#include <QCache>
#include <QPixmap>
#include <QTimer>
#include <memory>
#include <optional>
#include <vector>

#include "paper/Layout.h"

namespace kestrix::preview {

/// Shows the pages of a layout one below the other. A page is painted once for each zoom, behind
/// the event in hand, so that scrolling waits for none; until then its place is white.
class PageView : public QAbstractScrollArea {
  Q_OBJECT

 public:
  explicit PageView(QWidget* parent = nullptr);

  /// Shows other pages; the view stays at the page in hand as far as there is one. Null: none.
  void SetLayout(std::shared_ptr<const paper::Layout> layout);

  [[nodiscard]] int PageCount() const;
  /// The page that most of the view shows, from 0.
  [[nodiscard]] int CurrentPage() const;
  /// Shows a place of a page, in dots of the layout below its upper edge, at the view's top.
  void GoTo(int page, double y = 0);
  /// Goes to an anchor. False where there is none.
  bool GoToAnchor(const QString& anchor);

  [[nodiscard]] double Zoom() const { return zoom_; }  ///< 1 is the size of paper
  void SetZoom(double zoom);
  void FitWidth();
  [[nodiscard]] bool FitsWidth() const { return fits_width_; }

  /// Goes to the next place of the text after the one that was found last, from the beginning again
  /// behind the end, and marks it. False where the text stands nowhere.
  bool Find(const QString& text, bool backwards = false);

  /// Marks the next link after the one that is marked, or the one before it; from the page in hand
  /// where none is seen.
  void MarkLink(bool backwards = false);
  /// Goes where the marked link leads to; false where none is marked.
  bool FollowLink();

  /// The words of a page in their order.
  [[nodiscard]] QString TextOf(int page) const;

 Q_SIGNALS:
  void CurrentPageChanged(int page);
  void ZoomChanged(double zoom);
  /// `heading` is what the link leads to.
  void LinkMarked(const QString& heading);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  struct Found {
    int page = 0;
    QRectF area;  ///< in dots of the layout
  };

  [[nodiscard]] double Scale() const;           ///< dots of the screen to one of the layout
  [[nodiscard]] QRectF RectOf(int page) const;  ///< in the view's content
  [[nodiscard]] QPointF Offset() const;
  [[nodiscard]] const paper::PlacedLink* LinkAt(QPointF position) const;
  /// Marks a place and scrolls where it isn't seen.
  void Show(const Found& place);
  void ApplyZoom(double zoom);
  void Arrange();
  void ScrollTo(double top);
  void PaintNext();
  [[nodiscard]] std::vector<Found> PlacesOf(const QString& text) const;

  std::shared_ptr<const paper::Layout> layout_;
  std::vector<double> tops_;  ///< of the pages, in the view's content
  double width_ = 0;
  double height_ = 0;
  double zoom_ = 1;
  bool fits_width_ = true;
  int told_page_ = -1;
  QCache<int, QPixmap> painted_;
  QTimer paint_next_;
  QString found_text_;
  std::optional<std::size_t> found_place_;
  std::optional<Found> found_;
  /// The marked link: its page, and its place there.
  std::optional<std::pair<int, int>> link_;
};

/// One page as a picture of this width.
[[nodiscard]] QPixmap PictureOf(const paper::Layout& layout, int page, double scale,
                                double pixels_of_dot);

}  // namespace kestrix::preview
