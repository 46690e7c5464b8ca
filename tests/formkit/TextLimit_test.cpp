#include "formkit/TextLimit.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QTest>
#include <QTextCursor>

#include "support/Printers.h"

namespace kestrix {
namespace {

class TextLimitTest : public ::testing::Test {
 protected:
  QPlainTextEdit box;
  TextLimit limit{&box, 10};

  void PutCursor(int position) {
    QTextCursor cursor = box.textCursor();
    cursor.setPosition(position);
    box.setTextCursor(cursor);
  }
};

TEST_F(TextLimitTest, OneCharacterMoreThanTheFullLengthIsRefusedWhereverItIsTyped) {
  box.setPlainText("0123456789");
  for (const int place : {10, 3}) {
    PutCursor(place);
    QTest::keyClicks(&box, "x");
    EXPECT_EQ(box.toPlainText(), "0123456789");
  }
}

TEST_F(TextLimitTest, ALineEndCountsAsOneCharacterAndOneOfTwoUnitsIsNotCutInTwo) {
  box.setPlainText("abcd\nefgh\nijkl");
  EXPECT_EQ(box.toPlainText(), "abcd\nefgh\n");
  box.setPlainText(QStringLiteral("012345678") + QString::fromUtf8("\U0001F6E0"));
  EXPECT_EQ(box.toPlainText(), "012345678");
}

TEST_F(TextLimitTest, AReplacedSelectionMayBeAsLongAsBefore) {
  box.setPlainText("0123456789");
  QTextCursor cursor = box.textCursor();
  cursor.select(QTextCursor::Document);
  cursor.insertText("abcdefghijklm");
  EXPECT_EQ(box.toPlainText(), "abcdefghij");
}

TEST_F(TextLimitTest, APasteThatWasCutIsTakenBackWholeAndComesBackCut) {
  box.setPlainText("abcdef");
  PutCursor(3);
  box.insertPlainText("0123456789");
  ASSERT_EQ(box.toPlainText(), "abc0123def");
  box.undo();
  EXPECT_EQ(box.toPlainText(), "abcdef");
  EXPECT_FALSE(box.document()->isUndoAvailable());
  box.redo();
  EXPECT_EQ(box.toPlainText(), "abc0123def");
}

TEST_F(TextLimitTest, AKeyThatWasRefusedLeavesWhatWasTypedToBeTakenBack) {
  box.setPlainText("01234567");
  PutCursor(4);
  QTest::keyClicks(&box, "xyz");
  EXPECT_EQ(box.toPlainText(), "0123xy4567");
  EXPECT_EQ(box.textCursor().position(), 6);
  while (box.document()->isUndoAvailable()) {
    const auto steps = box.document()->availableUndoSteps();
    box.undo();
    ASSERT_LT(box.document()->availableUndoSteps(), steps);
  }
  EXPECT_EQ(box.toPlainText(), "01234567");
}

TEST_F(TextLimitTest, WhatWasCutOffATextThatWasSetDoesNotComeBack) {
  box.setPlainText("0123456789ab");
  EXPECT_FALSE(box.document()->isUndoAvailable());
  box.undo();
  EXPECT_EQ(box.toPlainText(), "0123456789");
  PutCursor(2);
  QTest::keyClicks(&box, "x");
  EXPECT_EQ(box.toPlainText(), "0123456789");
}

}  // namespace
}  // namespace kestrix
