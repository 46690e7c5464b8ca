#include "formkit/DrawnIcon.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPalette>
#include <set>

namespace kestrix {
namespace {

constexpr int kSide = 24;
constexpr std::array kAll = {Drawing::kFolder, Drawing::kOpenFolder, Drawing::kNewFolder,
                             Drawing::kDisk,   Drawing::kPage,       Drawing::kPencil,
                             Drawing::kHouse};

QImage Picture(Drawing drawing, int side = kSide, QIcon::Mode mode = QIcon::Normal) {
  return DrawnIcon(drawing)
      .pixmap(QSize(side, side), 1, mode)
      .toImage()
      .convertToFormat(QImage::Format_ARGB32);
}

/// How many points are wholly in `colour`: those in the middle of a line.
int PointsIn(const QImage& picture, QColor colour) {
  int points = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) points += picture.pixelColor(x, y) == colour ? 1 : 0;
  }
  return points;
}

class DrawnIconTest : public ::testing::TestWithParam<Drawing> {
 protected:
  ~DrawnIconTest() override { QApplication::setPalette(palette_before_); }

  static void GivenColours(QColor text, QColor disabled_text) {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Active, QPalette::ButtonText, text);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabled_text);
    QApplication::setPalette(palette);
  }

 private:
  QPalette palette_before_ = QApplication::palette();
};

TEST_P(DrawnIconTest, LinesHaveTheColourOfTheTextsOfButtonsAlsoOfDisabledAndHighlightedOnes) {
  GivenColours(Qt::black, Qt::gray);
  const QColor highlighted = QApplication::palette().color(QPalette::HighlightedText);
  for (const auto& [mode, colour] : {std::pair<QIcon::Mode, QColor>(QIcon::Normal, Qt::black),
                                     {QIcon::Disabled, Qt::gray},
                                     {QIcon::Selected, highlighted}}) {
    const QImage picture = Picture(GetParam(), 4 * kSide, mode);
    EXPECT_GT(PointsIn(picture, colour), 100) << mode;
    EXPECT_EQ(PointsIn(picture, mode == QIcon::Normal ? Qt::gray : Qt::black), 0) << mode;
  }
}

TEST_P(DrawnIconTest, OneThatWasMadeBeforeTheDesktopTurnedDarkIsSeenOnIt) {
  GivenColours(Qt::black, Qt::gray);
  const QIcon icon = DrawnIcon(GetParam());
  icon.pixmap(4 * kSide);
  GivenColours(Qt::white, Qt::gray);
  EXPECT_GT(PointsIn(icon.pixmap(4 * kSide).toImage(), Qt::white), 100);
}

TEST_P(DrawnIconTest, NothingIsCutOffAtTheEdges) {
  for (const int side : {16, 20, 24, 48, 96}) {
    const QImage picture = Picture(GetParam(), side);
    ASSERT_EQ(picture.size(), QSize(side, side));
    const int last = side - 1;
    for (int i = 0; i < side; ++i) {
      for (const QPoint edge : {QPoint(i, 0), QPoint(i, last), QPoint(0, i), QPoint(last, i)}) {
        ASSERT_EQ(picture.pixelColor(edge).alpha(), 0)
            << side << " " << edge.x() << " " << edge.y();
      }
    }
  }
}

TEST_P(DrawnIconTest, ScaledDesktopGetsAsManyPointsAsItShows) {
  EXPECT_EQ(DrawnIcon(GetParam()).pixmap(QSize(kSide, kSide), 2.0).toImage().size(),
            QSize(2 * kSide, 2 * kSide));
}

INSTANTIATE_TEST_SUITE_P(All, DrawnIconTest, ::testing::ValuesIn(kAll));

TEST(DrawnIconsTest, EachLooksDifferent) {
  std::set<QByteArray> pictures;
  for (const Drawing drawing : kAll) {
    const QImage picture = Picture(drawing);
    pictures.insert(QByteArray(reinterpret_cast<const char*>(picture.constBits()),
                               static_cast<qsizetype>(picture.sizeInBytes())));
  }
  EXPECT_EQ(pictures.size(), kAll.size());
}

}  // namespace
}  // namespace kestrix
