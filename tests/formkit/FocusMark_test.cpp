#include "formkit/FocusMark.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace kestrix {
namespace {

TEST(FocusMarkTest, IsAFrameOfTwoPixelsAndLeavesThePictureItsColours) {
  for (const bool keyboard : {true, false}) {
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::red);
    QStyleOptionFocusRect option;
    option.rect = image.rect().adjusted(5, 5, -5, -5);
    option.state.setFlag(QStyle::State_KeyboardFocusChange, keyboard);
    QPainter painter(&image);
    FocusMark().drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, nullptr);
    painter.end();
    const QRect inside = option.rect.adjusted(2, 2, -2, -2);
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const bool on_frame = keyboard && option.rect.contains(x, y) && !inside.contains(x, y);
        ASSERT_EQ(image.pixelColor(x, y) != QColor(Qt::red), on_frame) << x << ' ' << y;
      }
    }
  }
}

TEST(FocusMarkTest, HintsFollowTheTextOfTheTheme) {
  QPalette dark;
  dark.setColor(QPalette::Text, Qt::white);
  dark.setColor(QPalette::PlaceholderText, Qt::black);
  FocusMark().polish(dark);
  const QColor hint = dark.color(QPalette::PlaceholderText);
  EXPECT_EQ(hint.rgb(), QColor(Qt::white).rgb());
  EXPECT_LT(hint.alphaF(), 0.7F);
}

}  // namespace
}  // namespace kestrix
