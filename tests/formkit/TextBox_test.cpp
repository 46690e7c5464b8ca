#include "formkit/TextBox.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTest>
#include <memory>

#include "formkit/TextLimit.h"
#include "support/Printers.h"

namespace kestrix {
namespace {

class TextBoxTest : public ::testing::Test {
 protected:
  void SetUp() override {
    clipboard_.clear();
    box_.setPlainText("mine");
    box_.show();
  }
  void Offer(const char* format, const QByteArray& bytes) {
    auto data = std::make_unique<QMimeData>();
    data->setData(QString::fromLatin1(format), bytes);
    clipboard_.setMimeData(data.release());
  }

  QClipboard& clipboard_ = *QGuiApplication::clipboard();
  TextBox box_;
};

TEST_F(TextBoxTest, PastingOfNothingDoesNothing) {
  QTest::keyClick(&box_, Qt::Key_V, Qt::ControlModifier);
  QTest::keyClick(&box_, Qt::Key_Insert, Qt::ShiftModifier);
  QTest::keyClick(&box_, Qt::Key_Insert, Qt::ControlModifier | Qt::ShiftModifier);
  QTest::mouseClick(box_.viewport(), Qt::MiddleButton);
  box_.paste();
  EXPECT_EQ(box_.toPlainText(), "mine");
}

TEST_F(TextBoxTest, TextIsPastedAsItStands) {
  clipboard_.setText("**yours** and ");
  QTest::keyClick(&box_, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(box_.toPlainText(), "**yours** and mine");
  box_.undo();
  EXPECT_EQ(box_.toPlainText(), "mine");
}

TEST_F(TextBoxTest, MarkupIsNotPastedNorAnythingIntoAReadOnlyBox) {
  Offer("text/markdown", "**yours**");
  box_.paste();
  EXPECT_EQ(box_.toPlainText(), "mine");
  clipboard_.setText("yours");
  box_.setReadOnly(true);
  box_.paste();
  EXPECT_EQ(box_.toPlainText(), "mine");
}

/// Were all the lines put in and then taken out, this would take seconds.
TEST_F(TextBoxTest, OfHundredsOfThousandsOfLinesOnlyThoseGoInThatThereIsRoomFor) {
  const TextLimit limit(&box_, 10);
  int most = 0;
  QObject::connect(box_.document(), &QTextDocument::contentsChange,
                   [&most](int, int, int added) { most = std::max(most, added); });
  clipboard_.setText(QStringLiteral("x\r\n").repeated(500'000));
  box_.selectAll();
  box_.paste();
  EXPECT_EQ(box_.toPlainText(), "x\nx\nx\nx\nx\n");
  EXPECT_LE(most, 11);
  box_.undo();
  EXPECT_EQ(box_.toPlainText(), "mine");
}

TEST_F(TextBoxTest, AccentsWithoutEndAreLeftOut) {
  const QString letter = "e" + QString(100, QChar(0x301));
  EXPECT_EQ(TextBox::WithoutEndlessMarks(letter + "x" + letter), letter + "x" + letter);
  clipboard_.setText(letter + QString(60'000, QChar(0x301)) + "x");
  box_.selectAll();
  box_.paste();
  EXPECT_EQ(box_.toPlainText(), letter + "x");
  EXPECT_EQ(TextBox::WithoutEndlessMarks("e" + QStringLiteral(u"\U0001D167").repeated(300)).size(),
            201);
}

}  // namespace
}  // namespace kestrix
