#include "formkit/ListScrollBar.h"

#include <QPaintEvent>
#include <QScreen>
#include <array>

#include "FormKitTest.h"

namespace kestrix {
namespace {

constexpr int kLast = 1000;
constexpr QRect kUpright(40, 10, 16, 500);
constexpr QRect kLying(10, 40, 500, 16);

/// What a window gets painted of a bar.
class Paintings : public QObject {
 public:
  explicit Paintings(QWidget& bar) : bar_(bar) { bar.installEventFilter(this); }
  /// Since it was last asked.
  QRegion Taken() {
    FormHands::Settle();
    return std::exchange(region_, {});
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == &bar_ && event->type() == QEvent::Paint)
      region_ += static_cast<QPaintEvent*>(event)->region();
    return QObject::eventFilter(watched, event);
  }

 private:
  QWidget& bar_;
  QRegion region_;
};

/// A bar of ours and a plain one, each alone in a window, upright or lying.
class ListScrollBarTest : public ::testing::TestWithParam<QRect> {
 protected:
  ListScrollBarTest() {
    for (QScrollBar* bar : Both()) {
      bar->setGeometry(GetParam());
      bar->setRange(0, kLast);
      bar->setPageStep(20);
      bar->window()->resize(520, 520);
      bar->window()->show();
    }
    FormHands::Settle();
  }

  [[nodiscard]] std::array<QScrollBar*, 2> Both() const { return {ours, plain}; }
  void Move(int value) const {
    for (QScrollBar* bar : Both()) bar->setValue(value);
  }
  /// What the screen shows, which is what was painted and not what would be.
  [[nodiscard]] static QImage Shown(const QScrollBar& bar) {
    FormHands::Settle();
    return bar.screen()->grabWindow(bar.window()->winId()).toImage();
  }
  void ExpectAlike(const std::string& where) const {
    const QImage picture = Shown(*ours);
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(picture, Shown(*plain)) << where;
  }

  [[nodiscard]] static Qt::Orientation Way() {
    return GetParam().height() > GetParam().width() ? Qt::Vertical : Qt::Horizontal;
  }

  QWidget our_window;
  QWidget plain_window;
  ListScrollBar* ours = new ListScrollBar(Way(), &our_window);
  QScrollBar* plain = new QScrollBar(Way(), &plain_window);
};

TEST_P(ListScrollBarTest, ShowsTheSameAsAnyOtherWhereverItIsMoved) {
  const QImage at_first = Shown(*ours);
  for (const int value : {1, 2, 40, 41, 600, 595, 590, 100, 999, kLast, 998, 3, 0, 500}) {
    Move(value);
    ExpectAlike("at " + std::to_string(value));
  }
  EXPECT_NE(Shown(*ours), at_first);

  // Two moves before anything is painted, there and back too.
  Move(300);
  Move(700);
  ExpectAlike("past 300");
  Move(200);
  Move(700);
  ExpectAlike("back from 200");
}

TEST_P(ListScrollBarTest, ShowsTheSameWhenItsLengthsChange) {
  Move(500);
  ExpectAlike("at 500");
  for (QScrollBar* bar : Both()) bar->setPageStep(400);
  ExpectAlike("with a longer slider");
  Move(520);
  ExpectAlike("moved with it");
  for (QScrollBar* bar : Both()) bar->setRange(0, 600);
  ExpectAlike("with a shorter range");
  for (QScrollBar* bar : Both()) bar->resize(bar->size() - QSize(0, 3));
  Move(530);
  ExpectAlike("in less room");
}

TEST_P(ListScrollBarTest, ShowsTheSameWhenItWasMovedUnpainted) {
  Move(400);
  ExpectAlike("at 400");
  for (QScrollBar* bar : Both()) bar->window()->setUpdatesEnabled(false);
  Move(600);
  for (QScrollBar* bar : Both()) bar->window()->setUpdatesEnabled(true);
  ExpectAlike("at 600");
  for (QScrollBar* bar : Both()) bar->hide();
  Move(800);
  for (QScrollBar* bar : Both()) bar->show();
  Move(810);
  ExpectAlike("at 810");
}

TEST_P(ListScrollBarTest, PaintsWhatTheSliderHasPassedOverAndNoMore) {
  Move(500);
  Paintings paintings(*ours);
  (void)paintings.Taken();

  Move(520);
  const QSize step = paintings.Taken().boundingRect().size();
  EXPECT_FALSE(step.isEmpty());
  EXPECT_LT(std::max(step.width(), step.height()), 100);

  // At an end a style may paint the arrows otherwise.
  Move(kLast);
  EXPECT_EQ(paintings.Taken().boundingRect(), ours->rect());
  Move(kLast - 1);
  EXPECT_EQ(paintings.Taken().boundingRect(), ours->rect());
}

TEST_P(ListScrollBarTest, PaintsNothingOfAStepThatCantBeSeen) {
  for (QScrollBar* bar : Both()) bar->setRange(0, 1'000'000);
  Move(500'000);
  Paintings paintings(*ours);
  (void)paintings.Taken();
  Move(500'001);
  EXPECT_TRUE(paintings.Taken().isEmpty());
  ExpectAlike("one step on");
}

INSTANTIATE_TEST_SUITE_P(EitherWay, ListScrollBarTest, ::testing::Values(kUpright, kLying),
                         [](const auto& way) {
                           return way.param == kUpright ? "Upright" : "Lying";
                         });

}  // namespace
}  // namespace kestrix
