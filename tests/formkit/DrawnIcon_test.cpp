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

TEST_P(DrawnIconTest, LinesHaveTheColourOfTheTextsOfButtons) {
  GivenColours(Qt::black, Qt::gray);
  EXPECT_GT(PointsIn(Picture(GetParam(), 4 * kSide), Qt::black), 100);
  EXPECT_EQ(PointsIn(Picture(GetParam(), 4 * kSide), Qt::gray), 0);
}

TEST_P(DrawnIconTest, OneThatWasMadeBeforeTheDesktopTurnedDarkIsSeenOnIt) {
  GivenColours(Qt::black, Qt::gray);
  const QIcon icon = DrawnIcon(GetParam());
  icon.pixmap(4 * kSide);
  GivenColours(Qt::white, Qt::gray);
  EXPECT_GT(PointsIn(icon.pixmap(4 * kSide).toImage(), Qt::white), 100);
}

TEST_P(DrawnIconTest, DisabledOneHasTheColourOfDisabledTexts) {
  GivenColours(Qt::black, Qt::gray);
  const QImage picture = Picture(GetParam(), 4 * kSide, QIcon::Disabled);
  EXPECT_GT(PointsIn(picture, Qt::gray), 100);
  EXPECT_EQ(PointsIn(picture, Qt::black), 0);
}

TEST_P(DrawnIconTest, OneOnAHighlightedRowHasTheColourOfItsText) {
  GivenColours(Qt::black, Qt::gray);
  const QImage picture = Picture(GetParam(), 4 * kSide, QIcon::Selected);
  EXPECT_GT(PointsIn(picture, QApplication::palette().color(QPalette::HighlightedText)), 100);
  EXPECT_EQ(PointsIn(picture, Qt::black), 0);
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
