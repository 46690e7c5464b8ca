#include "shell/frmDocument.h"

#include <QClipboard>
#include <QMimeData>
#include <QTextDocument>
#include <memory>

#include "FrameTest.h"

namespace kestrix {
namespace {

const QString kFrameTitle = QStringLiteral(" KESTRIX : Risk Assessment Software  ");

template <typename Act>
QString FailureTextOf(Act act) {
  try {
    act();
  } catch (const Failure& failure) {
    return failure.description();
  }
  return QStringLiteral("<no failure>");
}

class frmDocumentTest : public FrameTest {
 protected:
  void SetUp() override { OpenFrame(); }

  [[nodiscard]] QString File(const QString& name) const { return installation.Outside(name); }
  /// The text of a stored document, by a reader of its own.
  [[nodiscard]] static QString StoredText(const QString& path) {
    QTextDocument document;
    document.setHtml(QString::fromUtf8(ReadFile(path)));
    return document.toPlainText();
  }
  void OpenFile(const QString& path) {
    desk.dialogs.ChooseToOpen(path);
    Choose("mnuFileOpen");
  }
  void Write(const QString& text) {
    Box(0).setFocus();
    Type(text);
  }
  void SelectFirst(int letters) {
    QTextCursor cursor = Box(0).textCursor();
    cursor.setPosition(0);
    cursor.setPosition(letters, QTextCursor::KeepAnchor);
    Box(0).setTextCursor(cursor);
  }
  /// The failure that the last command ended with, as it was told.
  void ExpectFailure(const QString& text) {
    desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN", text);
  }
};

TEST_F(frmDocumentTest, NewChildHasNoCaptionAndCountsByTheRunningNumber) {
  Trigger("mnuFileNew");
  Trigger("mnuWindowNewWindow");
  EXPECT_EQ(Windows().size(), 3);
  EXPECT_EQ(session.DocumentCount, 3);
  EXPECT_EQ(Child(2).Caption(), "");
  CloseAllChildren();
  EXPECT_EQ(session.DocumentCount, 0);
  for (const int count : {1, 2}) {
    Trigger("mnuFileNew");
    EXPECT_EQ(session.DocumentCount, count) << "it starts again at zero";
  }
  CloseChild(0);
  EXPECT_EQ(session.DocumentCount, 1);
  Trigger("mnuFileNew");
  EXPECT_EQ(session.DocumentCount, 3) << "and goes on after a child was closed";
}

TEST_F(frmDocumentTest, LoadOfAChildEnablesTheWayAndClosingOneOfTwoLeavesItOpen) {
  Main().EnableData(false);
  Trigger("mnuFileNew");
  EXPECT_TRUE(IsEnabled("mnuData"));
  CloseChild(0);
  EXPECT_TRUE(IsEnabled("mnuData"));
}

TEST_F(frmDocumentTest, ClosingTheLastChildBarsTheWayAndOpeningAFileOpensItAgain) {
  CloseChild(0);
  EXPECT_FALSE(IsEnabled("mnuData"));
  OpenFile(QString());
  EXPECT_TRUE(IsEnabled("mnuData"));
}

TEST_F(frmDocumentTest, ClosingTheLastChildBarsTheWayWhateverTheCountSays) {
  Trigger("mnuFileNew");
  CloseChild(0);
  Trigger("mnuFileNew");
  CloseChild(0);
  EXPECT_TRUE(IsEnabled("mnuData"));
  CloseChild(0);
  EXPECT_EQ(session.DocumentCount, 1);
  EXPECT_FALSE(IsEnabled("mnuData"));
  EXPECT_FALSE(IsEnabled("mnuDatamnfrm"));
}

TEST_F(frmDocumentTest, ClosingAChildPutsTheTitleBackIntoTheStatusBar) {
  Trigger("mnuFileNew");
  Main().SetStatusText("Active Organization - Press shop");
  CloseChild(1);
  EXPECT_EQ(StatusText(), kFrameTitle);
}

TEST_F(frmDocumentTest, ChildThatIsClosedTwiceCountsOnce) {
  Trigger("mnuFileNew");
  frmDocument& child = Child(0);
  child.close();
  child.close();
  Settle();
  EXPECT_EQ(session.DocumentCount, 1);
}

TEST_F(frmDocumentTest, ChangedTextIsNotAskedAboutWhenItsChildCloses) {
  Trigger("mnuFileClose");
  EXPECT_EQ(Windows().size(), 1) << "the entry does nothing";
  Write("unsaved");
  CloseChild(0);
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
  EXPECT_TRUE(Windows().isEmpty());
}

TEST_F(frmDocumentTest, BoxKeepsAMarginOfAHundredTwipsOnEachSide) {
  Child(0).resize(400, 300);
  EXPECT_EQ(Box(0).geometry(), QRect(7, 7, (400 * 15 - 200) / 15, (300 * 15 - 200) / 15));
}

TEST_F(frmDocumentTest, TextWrapsFourHundredTwipsBeforeTheEndOfTheBox) {
  Child(0).resize(400, 300);
  EXPECT_EQ(Box(0).lineWrapMode(), QTextEdit::FixedPixelWidth);
  EXPECT_EQ(Box(0).lineWrapColumnOrWidth(), (Box(0).width() * 15 - 400) / 15);

  Box(0).setPlainText(QStringLiteral("word ").repeated(200));
  EXPECT_EQ(qRound(Box(0).document()->textWidth()), Box(0).lineWrapColumnOrWidth());
}

TEST_F(frmDocumentTest, ChildTooSmallForTheMarginsKeepsTheBoxWhereItWas) {
  frmDocument child(session, Main());
  child.resize(400, 300);
  const auto* box = child.findChild<QTextEdit*>("rtfText");
  child.show();
  Settle();
  const QRect before = box->geometry();
  child.resize(13, 300);
  EXPECT_EQ(box->geometry(), before);
  child.resize(14, 300);
  EXPECT_EQ(box->width(), 0);
}

TEST_F(frmDocumentTest, OpenShowsItsDialogAndCancellingOpensNothing) {
  Write("mine");
  OpenFile(QString());
  ASSERT_EQ(desk.dialogs.Requests().size(), 1);
  EXPECT_EQ(desk.dialogs.Requests()[0].request.title, "Open");
  EXPECT_EQ(desk.dialogs.Requests()[0].request.filter, "All Files (*.*)|*.*");
  EXPECT_EQ(Box(0).toPlainText(), "mine");
  EXPECT_EQ(Child(0).Caption(), "");
}

TEST_F(frmDocumentTest, OpenMakesAChildBeforeItsDialogWhenNoneIsThere) {
  CloseAllChildren();
  OpenFile(QString());
  EXPECT_EQ(Windows().size(), 1);
}

TEST_F(frmDocumentTest, PlainTextOpensAsTextAndItsNameBecomesTheCaption) {
  WriteFile(File("a.txt"), "guard < 20 mm\n<b>not bold</b>");
  OpenFile(File("a.txt"));
  EXPECT_EQ(Box(0).toPlainText(), "guard < 20 mm\n<b>not bold</b>");
  EXPECT_EQ(Child(0).Caption(), File("a.txt"));
  EXPECT_EQ(Windows()[0]->windowTitle(), File("a.txt"));
}

TEST_F(frmDocumentTest, OpenLoadsIntoTheActiveChild) {
  WriteFile(File("a.txt"), "text");
  Trigger("mnuFileNew");
  Area().setActiveSubWindow(Windows()[0]);
  OpenFile(File("a.txt"));
  EXPECT_EQ(Box(0).toPlainText(), "text");
  EXPECT_EQ(Box(1).toPlainText(), "");
}

TEST_F(frmDocumentTest, FileThatCannotBeReadOrIsTooLargeEndsTheCommandWithItsFailure) {
  Write("mine");
  WriteFile(File("large.txt"), QByteArray(3'000'000, '\n'));
  for (const auto& [name, why] : {std::pair("none.kfe", "there is no such file."),
                                  std::pair("large.txt", "it is too large to be shown.")}) {
    ExpectFailure(QStringLiteral("Failed to open \"%1\": %2").arg(File(name), why));
    OpenFile(File(name));
    EXPECT_EQ(Child(0).Caption(), "");
    EXPECT_EQ(Box(0).toPlainText(), "mine");
  }
}

TEST_F(frmDocumentTest, SmallFileWithHugeNumbersOpensAsItsText) {
  const QByteArray text = "<html><table cellpadding=\"999999999\"><tr><td>x</td></tr></table>";
  WriteFile(File("a.kfe"), text);
  OpenFile(File("a.kfe"));
  EXPECT_EQ(Box(0).toPlainText(), QString::fromLatin1(text));
}

TEST_F(frmDocumentTest, PastingByHandTakesWhatABoxOfOursCopiedAndElseTheText) {
  Box(0).setHtml("<p>one <b>two</b></p>");
  Box(0).selectAll();
  Box(0).copy();
  Trigger("mnuFileNew");
  Box(1).paste();
  EXPECT_EQ(Box(1).toPlainText(), "one two");
  EXPECT_TRUE(Box(1).toHtml().contains("font-weight:700"));

  auto page = std::make_unique<QMimeData>();
  page->setHtml("<table cellpadding=\"999999999\"><tr><td>page</td></tr></table>");
  page->setText("page");
  QGuiApplication::clipboard()->setMimeData(page.release());
  Box(1).selectAll();
  Box(1).paste();
  EXPECT_EQ(Box(1).toPlainText(), "page");
  EXPECT_FALSE(Box(1).toHtml().contains("<table"));

  QGuiApplication::clipboard()->clear();
  Box(1).paste();
  EXPECT_EQ(Box(1).toPlainText(), "page");
}

TEST_F(frmDocumentTest, PasteThatHasNoRoomIsToldAndChangesNothing) {
  Write("mine");
  const QString refusal = QStringLiteral("Failed to paste: the text is too large to be shown.");
  const QString lines(30'000, u'\n');
  QGuiApplication::clipboard()->setText(lines);
  Box(0).paste();
  EXPECT_EQ(Box(0).document()->blockCount(), 30'001);
  ExpectFailure(refusal);
  Box(0).paste();
  EXPECT_EQ(Box(0).document()->blockCount(), 30'001);
  desk.clipboard.SetText(lines);
  ExpectFailure(refusal);
  Trigger("mnuEditPaste");
  EXPECT_EQ(Box(0).document()->blockCount(), 30'001);
}

TEST_F(frmDocumentTest, SaveOfANewChildFailsForWantOfAName) {
  Write("mine");
  ExpectFailure("Failed to save: the document has no file name.");
  Trigger("mnuFileSave");
  EXPECT_TRUE(desk.dialogs.Requests().isEmpty());
}

TEST_F(frmDocumentTest, SaveOfAChildCalledDocumentAsksForANameAndAddsItsExtension) {
  Child(0).SetCaption("Document1");
  Write("mine");
  desk.dialogs.ChooseToSave(File("press"));

  Trigger("mnuFileSave");

  EXPECT_EQ(StoredText(File("press.kfe")), "mine");
  EXPECT_EQ(Child(0).Caption(), File("press"));
  EXPECT_TRUE(desk.dialogs.Requests()[0].to_save);
  EXPECT_EQ(desk.dialogs.Requests()[0].request.title, "Save");
  EXPECT_EQ(desk.dialogs.Requests()[0].request.filter, "All Files (*.kfe*)|*.kfe*");
}

TEST_F(frmDocumentTest, CancelledSaveWritesNothingAndKeepsTheCaption) {
  for (const char* entry : {"mnuFileSave", "mnuFileSaveAs"}) {
    Child(0).SetCaption("Document1");
    desk.dialogs.ChooseToSave(QString());
    Trigger(entry);
    EXPECT_EQ(Child(0).Caption(), "Document1");
  }
}

TEST_F(frmDocumentTest, SaveOfANamedChildWritesToItsCaptionWithoutAsking) {
  WriteFile(File("a.txt"), "old");
  OpenFile(File("a.txt"));
  Box(0).selectAll();
  Write("new");
  Trigger("mnuFileSave");
  EXPECT_EQ(StoredText(File("a.txt")), "new");
  EXPECT_EQ(desk.dialogs.Requests().size(), 1);
}

TEST_F(frmDocumentTest, DocumentInSmallLettersIsANameLikeAnyOther) {
  Child(0).SetCaption(File("document.kfe"));
  Write("mine");
  Trigger("mnuFileSave");
  EXPECT_EQ(StoredText(File("document.kfe")), "mine");
  EXPECT_TRUE(desk.dialogs.Requests().isEmpty());
}

TEST_F(frmDocumentTest, SaveAsStoresTheNameAsTyped) {
  Write("mine");
  desk.dialogs.ChooseToSave(File("press"));

  Trigger("mnuFileSaveAs");

  EXPECT_EQ(StoredText(File("press")), "mine");
  EXPECT_FALSE(QFile::exists(File("press.kfe")));
  EXPECT_EQ(Child(0).Caption(), File("press"));
  EXPECT_EQ(desk.dialogs.Requests()[0].request.title, "Save As");
  EXPECT_EQ(desk.dialogs.Requests()[0].request.filter, "All Files (*.kfe*)|*.kfe*");
}

TEST_F(frmDocumentTest, FileThatCannotBeWrittenEndsTheCommandWithItsFailure) {
  desk.dialogs.ChooseToSave(File("no folder/press"));
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN", FailureTextOf([&] {
                             frmDocument(session, Main()).SaveFile(File("no folder/press"));
                           }));
  Trigger("mnuFileSaveAs");
}

TEST_F(frmDocumentTest, SavedDocumentOpensAgainAsItWas) {
  Box(0).setHtml("<p>one <b>two</b></p><ul><li>three</li></ul>");
  const QString before = Box(0).toHtml();
  desk.dialogs.ChooseToSave(File("a.kfe"));
  Trigger("mnuFileSaveAs");
  Box(0).clear();
  OpenFile(File("a.kfe"));
  EXPECT_EQ(Box(0).toHtml(), before);
}

TEST_F(frmDocumentTest, SavingWithoutAChildDoesNothing) {
  CloseAllChildren();
  for (const char* name : {"mnuFileSave", "mnuFileSaveAs", "mnuFilePrint"}) Trigger(name);
  EXPECT_TRUE(desk.dialogs.Requests().isEmpty());
  EXPECT_TRUE(desk.printing.Dialogs().isEmpty());
}

TEST_F(frmDocumentTest, PrintingPrintsTheSelectionOrAllOfTheTextUnlessItIsCancelled) {
  Box(0).setPlainText("one two");
  Trigger("mnuFilePrint");
  SelectFirst(3);
  Trigger("mnuFilePrint");
  const QList<FakePrinting::Chosen> expected = {{"Print", false}, {"Print", true}};
  EXPECT_EQ(desk.printing.Dialogs(), expected);
  EXPECT_EQ(desk.printing.Printed(), (QStringList{"one two", "one"}));
  desk.printing.CancelDialogs(true);
  Trigger("mnuFilePrint");
  EXPECT_EQ(desk.printing.Printed().size(), 2);
}

TEST_F(frmDocumentTest,
       PageSetupShowsTheDialogAndPrintsNothingAndFailuresOfThePrinterArePassedOver) {
  Trigger("mnuFilePageSetup");
  const QList<FakePrinting::Chosen> expected = {{"Page Setup", false}};
  EXPECT_EQ(desk.printing.Dialogs(), expected);
  EXPECT_TRUE(desk.printing.Printed().isEmpty());
  desk.printing.BreakPrinter();
  for (const char* entry : {"mnuFilePrint", "mnuFilePageSetup"}) Trigger(entry);
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

}  // namespace
}  // namespace kestrix
