#include <QTextDocumentFragment>

#include "FrameTest.h"

namespace kestrix {
namespace {

class DocumentsTest : public FrameTest {
 protected:
  void OpenTwo() {
    OpenFrame();
    Trigger("mnuWindowNewWindow");
  }
};

// Edit commands.

TEST_F(DocumentsTest, CutPutsTheRichTextOnTheClipboardAndTakesItOutOfTheDocument) {
  OpenFrame();
  Box(0).setHtml("one <b>two</b> three");
  QTextCursor cursor = Box(0).textCursor();
  cursor.setPosition(4);
  cursor.setPosition(7, QTextCursor::KeepAnchor);
  Box(0).setTextCursor(cursor);

  Trigger("mnuEditCut");

  EXPECT_EQ(Box(0).toPlainText(), "one  three");
  EXPECT_TRUE(desk.clipboard.Text().startsWith("<!DOCTYPE HTML"));
  const auto cut = QTextDocumentFragment::fromHtml(desk.clipboard.Text());
  EXPECT_EQ(cut.toPlainText(), "two");
  EXPECT_EQ(desk.clipboard.Clears(), 1);
}

TEST_F(DocumentsTest, CopyAndPasteKeepTheFormOfTheText) {
  OpenFrame();
  Box(0).setHtml("<b>guard</b>");
  Box(0).selectAll();
  Trigger("mnuEditCopy");
  EXPECT_EQ(Box(0).toPlainText(), "guard");

  Trigger("mnuFileNew");
  Trigger("mnuEditPaste");

  EXPECT_EQ(Box(1).toPlainText(), "guard");
  QTextCursor cursor = Box(1).textCursor();
  cursor.setPosition(2);
  EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
}

TEST_F(DocumentsTest, PasteReplacesTheSelectionByPlainTextAsItStands) {
  OpenFrame();
  Box(0).setPlainText("old");
  Box(0).selectAll();
  desk.clipboard.SetText("a < b & <b>c</b>");
  Trigger("mnuEditPaste");
  EXPECT_EQ(Box(0).toPlainText(), "a < b & <b>c</b>");
  Trigger("mnuEditCopy");
  EXPECT_EQ(desk.clipboard.Text(), "") << "a copy of nothing empties it";
}

TEST_F(DocumentsTest, CommandsWithoutAChildDoNothingAndShowNothing) {
  OpenFrame();
  CloseAllChildren();
  desk.clipboard.SetText("kept");
  for (const char* name :
       {"mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuWindowCascade", "mnuWindowTileHorizontal",
        "mnuWindowTileVertical", "mnuWindowArrangeIcons"})
    Trigger(name);
  EXPECT_EQ(desk.clipboard.Text(), "kept");
  EXPECT_EQ(desk.clipboard.Clears(), 0);
  EXPECT_TRUE(Windows().isEmpty());
}

// Window arrangement.

TEST_F(DocumentsTest, NewChildrenLieWithinTheFrameAndDoNotCoverEachOther) {
  OpenFrame().resize(1024, 740);
  Settle();
  for (int i = 0; i < 20; ++i) Trigger("mnuFileNew");
  const QRect room(QPoint(0, 0), Area().maximumViewportSize());
  QSet<QPair<int, int>> places;
  for (const QMdiSubWindow* window : Windows()) {
    EXPECT_TRUE(room.contains(window->geometry()));
    places.insert({window->x(), window->y()});
  }
  EXPECT_GT(places.size(), 15);
}

TEST_F(DocumentsTest, NewChildrenOfAFrameThatIsTooSmallForThemDoNotCoverEachOtherEither) {
  OpenFrame();
  // All of the room, save a line or two for bars that grow when they are shown.
  const QSize most = Area().maximumViewportSize();
  ASSERT_EQ(Windows()[0]->pos(), QPoint(0, 0));
  ASSERT_EQ(Windows()[0]->width(), most.width());
  ASSERT_LE(Windows()[0]->height(), most.height());
  ASSERT_GE(Windows()[0]->height(), most.height() - 2);
  for (int i = 0; i < 2; ++i) PressKey(Qt::Key_N, Qt::ControlModifier);
  const QRect room(QPoint(0, 0), Area().maximumViewportSize());
  for (int i = 1; i < 3; ++i) {
    EXPECT_GT(Windows()[i]->x(), Windows()[i - 1]->x());
    EXPECT_GT(Windows()[i]->y(), Windows()[i - 1]->y());
    EXPECT_TRUE(room.contains(Windows()[i]->geometry()));
  }
}

TEST_F(DocumentsTest, NewChildrenBehindAMaximisedOneFillTheFrameToo) {
  OpenFrame();
  Windows()[0]->showMaximized();
  Settle();
  for (int i = 0; i < 2; ++i) PressKey(Qt::Key_N, Qt::ControlModifier);
  ASSERT_EQ(Windows().size(), 3);
  EXPECT_TRUE(Windows()[2]->isMaximized());
  EXPECT_TRUE(Windows()[2]->geometry().contains(Area().viewport()->rect()));
  EXPECT_EQ(Area().viewport()->size(), Area().maximumViewportSize()) << "there are scroll bars";
}

TEST_F(DocumentsTest, TilesLieOneAboveTheOtherOrSideBySideAndCascadedChildrenOverlap) {
  OpenTwo();
  const int width = Area().maximumViewportSize().width();
  const int height = Area().maximumViewportSize().height();
  Trigger("mnuWindowTileHorizontal");
  EXPECT_EQ(Windows()[0]->geometry(), QRect(0, 0, width, height / 2));
  EXPECT_EQ(Windows()[1]->geometry(), QRect(0, height / 2, width, height / 2));
  Trigger("mnuWindowTileVertical");
  EXPECT_EQ(Windows()[0]->geometry(), QRect(0, 0, width / 2, height));
  EXPECT_EQ(Windows()[1]->geometry(), QRect(width / 2, 0, width / 2, height));
  Trigger("mnuWindowCascade");
  EXPECT_LT(Windows()[0]->y(), Windows()[1]->y());
  EXPECT_TRUE(Windows()[0]->geometry().intersects(Windows()[1]->geometry()));
}

TEST_F(DocumentsTest, MinimisedChildrenAreArrangedAlongTheLowerEdge) {
  OpenTwo();
  for (QMdiSubWindow* window : Windows()) {
    window->showMinimized();
    window->move(30, 30);
  }
  Trigger("mnuWindowArrangeIcons");
  const int bottom = Area().maximumViewportSize().height();
  EXPECT_EQ(Windows()[0]->geometry().bottomLeft(), QPoint(0, bottom - 1));
  EXPECT_FALSE(Windows()[0]->geometry().intersects(Windows()[1]->geometry()));
}

}  // namespace
}  // namespace kestrix
