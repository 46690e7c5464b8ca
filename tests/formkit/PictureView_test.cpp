#include "formkit/PictureView.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <memory>

#include "platform/Failure.h"
#include "support/ReadersHeld.h"

namespace kestrix {
namespace {

class PictureViewTest : public ::testing::Test {
 protected:
  PictureViewTest() { label_.resize(300, 200); }

  [[nodiscard]] QString Path(const QString& name) const { return place_.filePath(name); }

  /// Left half red, right half blue.
  [[nodiscard]] static QImage TwoHalves(const QSize& size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int y = 0; y < size.height(); ++y) {
      auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
      std::fill(line + size.width() / 2, line + size.width(), 0xFF0000FFU);
    }
    return image;
  }
  void Write(const QString& name, const QByteArray& bytes) const {
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
  }
  [[nodiscard]] QByteArray Bytes(const QString& name) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  void ExpectRefused(const QString& name, int number) {
    view_.Load(whole_);
    try {
      view_.Load(Path(name));
      FAIL() << name.toStdString() << " was shown";
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), number) << name.toStdString();
      EXPECT_TRUE(failure.description().contains(name));
    }
    EXPECT_TRUE(view_.IsClear());
    EXPECT_TRUE(label_.pixmap(Qt::ReturnByValue).isNull());
  }
  [[nodiscard]] QImage Shown() const { return label_.pixmap(Qt::ReturnByValue).toImage(); }
  [[nodiscard]] static bool IsReddish(const QColor& colour) {
    return colour.red() > 200 && colour.blue() < 60;
  }
  [[nodiscard]] static bool IsBluish(const QColor& colour) {
    return colour.blue() > 200 && colour.red() < 60;
  }

  void SetUp() override {
    whole_ = Path("whole.bmp");
    ASSERT_TRUE(TwoHalves({600, 400}).save(whole_));
  }

  QTemporaryDir place_;
  QString whole_;
  QLabel label_;
  PictureView view_{&label_};
};

TEST_F(PictureViewTest, PictureFillsItsLabelAndKeepsItsShape) {
  view_.Load(whole_);
  EXPECT_FALSE(view_.IsClear());
  EXPECT_EQ(Shown().size(), QSize(300, 200));
  label_.resize(300, 600);
  view_.Load(whole_);
  EXPECT_EQ(Shown().size(), QSize(300, 200));
  EXPECT_EQ(Shown().pixelColor(10, 100), QColor(Qt::red));
  EXPECT_EQ(Shown().pixelColor(290, 100), QColor(Qt::blue));
}

TEST_F(PictureViewTest, PictureSmallerThanItsLabelIsShownAsItIs) {
  // Its content decides what it is, not its ending.
  ASSERT_TRUE(TwoHalves({60, 40}).save(Path("small.png")));
  ASSERT_TRUE(QFile::rename(Path("small.png"), Path("small.jpg")));
  view_.Load(Path("small.jpg"));
  EXPECT_EQ(Shown().size(), QSize(60, 40));
  EXPECT_EQ(PictureView::Read(whole_), QImage(whole_));
}

TEST_F(PictureViewTest, PictureFollowsTheSizeOfItsLabelAndAClearedViewShowsNothing) {
  label_.show();
  view_.Load(whole_);
  label_.resize(150, 150);
  QApplication::processEvents();
  EXPECT_EQ(Shown().width(), 150);
  EXPECT_EQ(Shown().height(), 100);
  view_.Clear();
  EXPECT_TRUE(view_.IsClear());
  EXPECT_TRUE(Shown().isNull());
  label_.resize(100, 100);
  QApplication::processEvents();
  EXPECT_TRUE(Shown().isNull());
}

TEST_F(PictureViewTest, LargePhotographIsReadNoLargerThanItIsShown) {
  ASSERT_TRUE(TwoHalves({8660, 5774}).save(Path("large.jpg")));
  const QImage read = PictureView::Read(Path("large.jpg"));
  EXPECT_EQ(read.width(), 1600);
  EXPECT_NEAR(read.height(), 1600 * 5774 / 8660, 1);
  view_.Load(Path("large.jpg"));
  EXPECT_EQ(Shown().width(), 300);
  EXPECT_TRUE(IsReddish(Shown().pixelColor(20, 100)));
  EXPECT_TRUE(IsBluish(Shown().pixelColor(280, 100)));
}

TEST_F(PictureViewTest, PictureIsShownAsTheCameraWasHeld) {
  struct Held {
    QImageIOHandler::Transformation by;
    bool upright;
  };
  for (const Held& held : {Held{QImageIOHandler::TransformationRotate90, true},
                           Held{QImageIOHandler::TransformationRotate270, true},
                           Held{QImageIOHandler::TransformationRotate180, false}}) {
    QImageWriter writer(Path("held.jpg"), "jpg");
    writer.setTransformation(held.by);
    ASSERT_TRUE(writer.write(TwoHalves({4000, 2000})));
    const QImage read = PictureView::Read(Path("held.jpg"));
    EXPECT_EQ(read.height() > read.width(), held.upright);
    const QPoint first = held.upright ? QPoint(read.width() / 2, 10) : QPoint(10, 10);
    // Turned by a quarter to the right, left comes to be on top.
    const bool red_first = held.by == QImageIOHandler::TransformationRotate90;
    EXPECT_EQ(IsReddish(read.pixelColor(first)), red_first) << int(held.by);
    EXPECT_EQ(IsBluish(read.pixelColor(first)), !red_first) << int(held.by);
  }
}

TEST_F(PictureViewTest, FileThatIsNotThereIsRefused) {
  ExpectRefused("nowhere.jpg", failure::kFileNotFound);
  ASSERT_TRUE(QDir(place_.path()).mkdir("folder.jpg"));
  ExpectRefused("folder.jpg", failure::kFileNotFound);
}

TEST_F(PictureViewTest, DamagedAndForeignFilesAreRefused) {
  ASSERT_TRUE(TwoHalves({400, 300}).save(Path("sound.jpg")));
  Write("cut.jpg", Bytes("sound.jpg").left(150));
  Write("empty.jpg", {});
  Write("text.jpg", "This is a letter, not a picture.");
  QByteArray noise(20'000, '\0');
  for (int i = 0; i < noise.size(); ++i) noise[i] = char((i * 7919 + 13) % 251);
  Write("noise.bmp", noise);
  for (const char* name : {"cut.jpg", "empty.jpg", "text.jpg", "noise.bmp"}) {
    ExpectRefused(name, failure::kInvalidPicture);
  }
}

TEST_F(PictureViewTest, PictureThatIsLargerThanItClaimsIsCutDownToAScreen) {
  // A canvas of 4 by 5000, of which the one frame covers 4 by 4.
  Write("tall.gif",
        QByteArray::fromHex("47494638396104008813800000ffffff0000002c00000000040004000002"
                            "0584618b0905003b"));
  const QImage picture = PictureView::Read(Path("tall.gif"));
  EXPECT_FALSE(picture.isNull());
  EXPECT_LE(picture.height(), 1600);
  EXPECT_GE(picture.width(), 1);
}

TEST_F(PictureViewTest, FileThatClaimsToBeHugeIsRefused) {
  // A bitmap's size stands in bytes 18 to 25, of a JPEG four bytes behind the mark of its frame.
  QByteArray bitmap = Bytes("whole.bmp");
  for (const int at : {18, 22}) bitmap.replace(at, 4, QByteArray::fromHex("60EA0000"));
  Write("huge.bmp", bitmap);
  ASSERT_TRUE(TwoHalves({64, 64}).save(Path("sound.jpg")));
  QByteArray photograph = Bytes("sound.jpg");
  const qsizetype frame = photograph.indexOf(QByteArray::fromHex("FFC00011"));
  ASSERT_GT(frame, 0);
  photograph.replace(frame + 5, 4, QByteArray::fromHex("FFDCFFDC"));
  Write("huge.jpg", photograph);
  ExpectRefused("huge.bmp", failure::kInvalidPicture);
  ExpectRefused("huge.jpg", failure::kInvalidPicture);
}

// Pictures that are read beside the events.

class PictureBesideEventsTest : public PictureViewTest {
 protected:
  using Outcome = PictureView::Outcome;

  void SetUp() override {
    PictureViewTest::SetUp();
    large_ = Path("large.png");
    ASSERT_TRUE(TwoHalves({3000, 2000}).save(large_));
  }
  void Show(const QString& path) {
    view_.LoadBesideEvents(path, [this](Outcome outcome) { told_.append(outcome); });
  }
  [[nodiscard]] bool WaitUntilTold(qsizetype times) {
    return QTest::qWaitFor([&] { return told_.size() >= times; }, 20'000);
  }
  void ExpectShowsLarge() const {
    EXPECT_TRUE(IsReddish(Shown().pixelColor(20, 100)));
    EXPECT_TRUE(IsBluish(Shown().pixelColor(280, 100)));
  }

  QString large_;
  QList<Outcome> told_;
};

TEST_F(PictureBesideEventsTest, SmallPictureIsShownAtOnce) {
  Show(whole_);
  EXPECT_EQ(told_, QList{Outcome::kShown});
  EXPECT_EQ(Shown().size(), QSize(300, 200));
}

TEST_F(PictureBesideEventsTest, LargePictureIsShownWhenItHasBeenRead) {
  view_.Load(whole_);
  ReadersHeld readers(view_);
  Show(large_);
  QApplication::processEvents();
  EXPECT_TRUE(told_.isEmpty());
  EXPECT_TRUE(Shown().isNull()) << "nor is what was there before";
  readers.LetGo();
  ASSERT_TRUE(WaitUntilTold(1));
  EXPECT_EQ(told_, QList{Outcome::kShown});
  EXPECT_FALSE(view_.IsClear());
  ExpectShowsLarge();
}

TEST_F(PictureBesideEventsTest, LargePictureIsShownAsTheCameraWasHeld) {
  QImageWriter writer(Path("held.jpg"), "jpg");
  writer.setTransformation(QImageIOHandler::TransformationRotate90);
  ASSERT_TRUE(writer.write(TwoHalves({3000, 2000})));
  Show(Path("held.jpg"));
  ASSERT_TRUE(WaitUntilTold(1));
  EXPECT_GT(Shown().height(), Shown().width());
  EXPECT_TRUE(IsReddish(Shown().pixelColor(Shown().width() / 2, 10)));
}

TEST_F(PictureBesideEventsTest, WhatTheBeginningOfAFileTellsFailsAtOnce) {
  Write("text.jpg", "This is a letter, not a picture.");
  for (const QString& path : {Path("nowhere.jpg"), Path("text.jpg")}) {
    view_.Load(whole_);
    EXPECT_THROW(Show(path), Failure);
    EXPECT_TRUE(view_.IsClear());
    EXPECT_TRUE(Shown().isNull());
  }
  EXPECT_TRUE(told_.isEmpty());
}

TEST_F(PictureBesideEventsTest, PictureThatBreaksOffIsToldAndLeavesTheLabelClear) {
  const QByteArray sound = Bytes("large.png");
  Write("cut.png", sound.left(sound.size() / 2));
  Show(Path("cut.png"));
  ASSERT_TRUE(WaitUntilTold(1));
  EXPECT_EQ(told_, QList{Outcome::kFailed});
  EXPECT_TRUE(view_.IsClear());
  EXPECT_TRUE(Shown().isNull());
}

TEST_F(PictureBesideEventsTest, WhateverIsShownNextTakesThePlaceOfWhatIsBeingRead) {
  const QList<std::function<void()>> next{[this] { view_.Clear(); }, [this] { view_.Load(whole_); },
                                          [this] { Show(whole_); }};
  for (const auto& act : next) {
    told_.clear();
    ReadersHeld readers(view_);
    Show(large_);
    act();
    ASSERT_FALSE(told_.isEmpty());
    EXPECT_EQ(told_.first(), Outcome::kGivenUp);
    const QImage shown = Shown();
    const auto told = told_;
    readers.LetGoAndWait();
    QApplication::processEvents();
    EXPECT_EQ(told_, told) << "told once";
    EXPECT_EQ(Shown(), shown);
  }
}

TEST_F(PictureBesideEventsTest, LastOfTwoLargePicturesIsShown) {
  QImage green(3000, 2000, QImage::Format_RGB32);
  green.fill(Qt::green);
  ASSERT_TRUE(green.save(Path("green.png")));
  Show(large_);
  Show(Path("green.png"));
  ASSERT_TRUE(WaitUntilTold(2));
  EXPECT_EQ(told_, QList({Outcome::kGivenUp, Outcome::kShown}));
  EXPECT_EQ(Shown().pixelColor(20, 100), QColor(Qt::green));
}

TEST_F(PictureBesideEventsTest, ViewThatEndsMeanwhileTellsNothing) {
  QLabel label;
  auto view = std::make_unique<PictureView>(&label);
  ReadersHeld readers(*view);
  view->LoadBesideEvents(large_, [this](Outcome outcome) { told_.append(outcome); });
  readers.LetGo();
  view.reset();
  QApplication::processEvents();
  EXPECT_TRUE(told_.isEmpty());
}

}  // namespace
}  // namespace kestrix
