#include "shell/frmMain.h"

#include <QDialog>
#include <QMenu>
#include <QSignalSpy>
#include <limits>

#include "FrameTest.h"

namespace kestrix {
namespace {

const QString kTitle = QStringLiteral("BELTROVAN");
const QString kNotice = QStringLiteral(
    "Before you backup or Restore study files, make sure on one has logged in to this "
    "application .");

class frmMainTest : public FrameTest {
 protected:
  [[nodiscard]] QString Sign(int number) const {
    return installation.Path(QStringLiteral("RskAsmtFld/ktx_RskSmt%1.ldb").arg(number));
  }
  void OpenAndListen() {
    OpenFrame();
    Listen(Main());
  }
  void Close() { CloseBox(Main()); }
};

TEST_F(frmMainTest, FirstScreenIsTheFrameWithOneEmptyDocument) {
  OpenFrame();

  EXPECT_EQ(Main().windowTitle(), " KESTRIX : Risk Assessment Software  ");
  EXPECT_EQ(StatusText(), " KESTRIX : Risk Assessment Software  ");
  EXPECT_TRUE(IsVisible("sbStatusBarPanel1"));
  EXPECT_EQ(Control<QStatusBar>("sbStatusBar").currentMessage(), StatusText());
  ASSERT_EQ(Windows().size(), 1);
  EXPECT_EQ(Box(0).toPlainText(), "");
  EXPECT_EQ(Box(0).placeholderText(), "Ctrl+H opens an organization.");
  EXPECT_EQ(Child(0).Caption(), "");
  EXPECT_TRUE(Box(0).isVisible());
  EXPECT_EQ(session.DocumentCount, 1);
  EXPECT_TRUE(IsEnabled("mnuData"));
}

TEST_F(frmMainTest, LoadAsksForNoOtherForm) {
  frmMain main(context);
  Listen(main);

  main.LoadForm();

  EXPECT_TRUE(asked_.isEmpty());
}

TEST_F(frmMainTest, OpensAtTheStoredPlaceOrAtTheDefaultOne) {
  auto& first = Make<frmMain>();
  EXPECT_EQ(first.pos(), QPoint(1000 / 15, 1000 / 15));
  EXPECT_EQ(first.size(), QSize(6500 / 15, 6500 / 15));

  GivenSetting("MainLeft", "300");
  GivenSetting("MainTop", "450");
  GivenSetting("MainWidth", "9000");
  GivenSetting("MainHeight", "7500");
  auto& next = Make<frmMain>();
  EXPECT_EQ(next.pos(), QPoint(20, 30));
  EXPECT_EQ(next.size(), QSize(600, 500));
}

TEST_F(frmMainTest, StoredPlacementFarBeyondTheScreensIsTakenAsAbsent) {
  GivenSetting("MainLeft", "-99999999999");
  GivenSetting("MainTop", "450000");
  GivenSetting("MainWidth", "99999999999");
  GivenSetting("MainHeight", "-15");

  auto& main = Make<frmMain>();

  EXPECT_FALSE(main.IsUnloading());
  EXPECT_EQ(main.pos(), QPoint(1000 / 15, 1000 / 15));
  EXPECT_EQ(main.width(), 6500 / 15);
  EXPECT_GT(main.height(), 0);

  // One on a screen that is unplugged stays.
  GivenSetting("MainLeft", "28800");
  EXPECT_EQ(Make<frmMain>().pos().x(), 1920);
}

TEST_F(frmMainTest, DateOfTheBackupFolderHasTwoDigitsAndAnEnglishMonthAndHoldsForTheRun) {
  for (const auto& [today, name] : {std::pair(QDate(2026, 11, 15), "15November2026"),
                                    std::pair(QDate(2027, 3, 5), "05March2027")}) {
    desk.clock.SetToday(today);
    OpenFrame();
    desk.clock.SetToday(today.addDays(1));
    Trigger("Bkup");
    EXPECT_EQ(session.BackupDateName, name);
    Close();
  }
}

TEST_F(frmMainTest, FailingLoadIsToldUnloadsTheFrameAndSucceedsAtTheNextStart) {
  GivenSetting("MainTop", "far up");
  auto* main = new frmMain(context);
  Listen(*main);
  desk.messages.ExpectTell(Icon::kCritical, kTitle, "5. Installed files missing.");

  main->LoadForm();

  EXPECT_TRUE(main->IsUnloading());
  EXPECT_EQ(asked_, (QStringList{"closing", "unloaded", "load failed"}));
  main->ShowForm();
  EXPECT_FALSE(main->isVisible());
  Settle();
  EXPECT_FALSE(Make<frmMain>().IsUnloading());
}

TEST_F(frmMainTest, StatusTextIsShownPlainInTheFirstPanelAndDoesntWidenTheFrame) {
  const QString text = "Active Organization - " + QString(255, u'W');
  OpenFrame();
  const int width = Main().width();
  Main().SetStatusText(text);
  Settle();
  EXPECT_EQ(Main().width(), width);
  EXPECT_LE(Main().minimumSizeHint().width(), width);
  EXPECT_EQ(StatusText(), text);
  EXPECT_EQ(Control<QWidget>("sbStatusBarPanel1").toolTip(), text);
  EXPECT_EQ(Control<QLabel>("sbStatusBarPanel1").textFormat(), Qt::PlainText);
  EXPECT_EQ(Control<QStatusBar>("sbStatusBar").currentMessage(), text);
  Main().SetStatusText("<b>shop</b>");
  EXPECT_EQ(StatusText(), "<b>shop</b>");
  QStatusTipEvent tip(QStringLiteral(""));
  QApplication::sendEvent(&Main(), &tip);
  EXPECT_EQ(Control<QStatusBar>("sbStatusBar").currentMessage(), "<b>shop</b>")
      << "a menu entry leaves it";
}

TEST_F(frmMainTest, ToolBarAndDataMenuAreSwitchedFromOutside) {
  OpenFrame();
  for (const bool enable : {false, true}) {
    Main().EnableToolBar(enable);
    Main().EnableData(enable);
    EXPECT_EQ(IsEnabled("tbToolBar"), enable);
    EXPECT_EQ(IsEnabled("mnuData"), enable);
  }
}

TEST_F(frmMainTest, MinimisedFrameIsMaximisedAtOnceAndNoOtherOne) {
  OpenFrame().MaximiseIfMinimised();
  EXPECT_FALSE(Main().isMaximized());
  Main().showMinimized();
  EXPECT_TRUE(WaitUntil([this] { return Main().isMaximized(); }));
  EXPECT_FALSE(Main().isMinimized());
}

/// Lets a window stay minimised.
class StateKeeper : public QObject {
 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    return event->type() == QEvent::WindowStateChange || event->type() == QEvent::Resize;
  }
};

TEST_F(frmMainTest, MinimisedFrameThatIsUnloadedKeepsTheStoredPlacement) {
  GivenSetting("MainLeft", "300");
  OpenFrame().move(200, 200);
  StateKeeper keeper;
  Main().installEventFilter(&keeper);
  Main().setWindowState(Qt::WindowMinimized);
  ASSERT_TRUE(Main().isMinimized());

  Close();

  EXPECT_EQ(Setting("MainLeft"), "300");
  EXPECT_EQ(Setting("MainWidth"), "<none>");
}

struct MenuEntry {
  const char* name;
  const char* text;
  const char* shortcut;
  bool shown;
};

TEST_F(frmMainTest, MenuHoldsEveryEntryInItsPlaceShownOrHidden) {
  OpenFrame();
  const QHash<QString, QList<MenuEntry>> expected = {
      {"menuBar",
       {{"mnuFile", "&File", "", true},
        {"mnuEdit", "&Edit", "", false},
        {"mnuView", "&View", "", false},
        {"mnuData", "&Run Risk Assessment", "", true},
        {"mnuWindow", "&Window", "", false},
        {"SetDflts", "Set Default currency", "", false},
        {"mnuHelp", "&Help", "", false}}},
      {"mnuFile",
       {{"mnuFileNew", "&New", "Ctrl+N", false},
        {"mnuFileOpen", "&Open...", "Ctrl+O", true},
        {"mnuFileClose", "&Close", "", false},
        {"mnuFileBar0", "", "", false},
        {"mnuFileSave", "&Save", "", false},
        {"mnuFileSaveAs", "Save &As...", "", false},
        {"mnuFileSaveAll", "Save A&ll", "", false},
        {"custmztnFrm", "Customization form", "", true},
        {"BkupRstorHzp", "Backup/Restore Risk Assessment files", "", true},
        {"homepage", "Go to Home Page", "", true},
        {"mnuFileProperties", "Propert&ies", "", false},
        {"mnuFileBar2", "", "", false},
        {"mnuFilePageSetup", "Page Set&up...", "", false},
        {"mnuFilePrintPreview", "Print Pre&view", "", false},
        {"mnuFilePrint", "&Print...", "", false},
        {"mnuFileBar3", "", "", false},
        {"mnuFileSend", "Sen&d...", "", false},
        {"mnuFileBar4", "", "", false},
        {"mnuFileMRU_1", "", "", false},
        {"mnuFileMRU_2", "", "", false},
        {"mnuFileMRU_3", "", "", false},
        {"mnuFileBar5", "", "", false},
        {"mnuFileExit", "E&xit", "", false}}},
      {"BkupRstorHzp",
       {{"Bkup", "&BackUp Risk Assessment", "Ctrl+B", true},
        {"RtrBkUp", "&Restore BackUp Risk Assessment", "Ctrl+R", true}}},
      {"mnuEdit",
       {{"mnuEditUndo", "&Undo", "", false},
        {"mnuEditCut", "Cu&t", "Ctrl+X", false},
        {"mnuEditCopy", "&Copy", "Ctrl+C", false},
        {"mnuEditPaste", "&Paste", "Ctrl+V", false},
        {"mnuEditPasteSpecial", "Paste &Special...", "", false}}},
      {"mnuView",
       {{"mnuViewToolbar", "&Toolbar", "", false},
        {"mnuViewStatusBar", "Status &Bar", "", false},
        {"mnuViewRefresh", "&Refresh", "", false},
        {"mnuViewOptions", "&Options...", "", false},
        {"mnuViewWebBrowser", "&Web Browser", "", false}}},
      {"mnuData", {{"mnuDatamnfrm", "Open Organization/Project", "Ctrl+H", true}}},
      {"mnuWindow",
       {{"mnuWindowNewWindow", "&New Window", "", false},
        {"mnuWindowCascade", "&Cascade", "", false},
        {"mnuWindowTileHorizontal", "Tile &Horizontal", "", false},
        {"mnuWindowTileVertical", "Tile &Vertical", "", false},
        {"mnuWindowArrangeIcons", "&Arrange Icons", "", false}}},
      {"mnuHelp",
       {{"Help", "&Help on Accident Analysis", "", false},
        {"mnuHelpSearchForHelpOn", "&Search For Help On...", "", false},
        {"mnuHelpAbout", "&About ", "", false}}}};
  for (auto menu = expected.begin(); menu != expected.end(); ++menu) {
    SCOPED_TRACE(menu.key().toStdString());
    const auto actions = Control<QWidget>(menu.key()).actions();
    ASSERT_EQ(actions.size(), menu.value().size());
    for (qsizetype i = 0; i < actions.size(); ++i) {
      const MenuEntry& entry = menu.value().at(i);
      SCOPED_TRACE(entry.name);
      const QObject* named =
          actions[i]->menu() ? static_cast<QObject*>(actions[i]->menu<QMenu*>()) : actions[i];
      EXPECT_EQ(named->objectName(), entry.name);
      EXPECT_EQ(actions[i]->text(), entry.text);
      EXPECT_EQ(actions[i]->shortcut().toString(), entry.shortcut);
      EXPECT_EQ(actions[i]->isVisible(), entry.shown);
      EXPECT_EQ(actions[i]->isSeparator(),
                QString::fromLatin1(entry.name).startsWith("mnuFileBar"));
    }
  }
}

TEST_F(frmMainTest, PlaceholdersShowTheirTextInAPlainBoxAndDoNothingElse) {
  OpenAndListen();
  for (const char* name :
       {"mnuFileSaveAll", "mnuFileProperties", "mnuFilePrintPreview", "mnuFileSend", "mnuEditUndo",
        "mnuEditPasteSpecial", "mnuViewRefresh", "mnuViewOptions", "mnuViewWebBrowser"}) {
    desk.messages.ExpectTell(Icon::kNone, "KestrixStudy",
                             QStringLiteral("Add '%1_Click' code.").arg(name));
    Trigger(name);
  }
  const auto shown = desk.messages.Shown().size();
  for (const char* name :
       {"mnuFileClose", "mnuHelpAbout", "SetDflts", "mnuFileMRU_1", "mnuFileMRU_2", "mnuFileMRU_3"})
    Trigger(name);
  EXPECT_EQ(desk.messages.Shown().size(), shown) << "entries without a function do nothing";
  EXPECT_EQ(Windows().size(), 1);
  EXPECT_TRUE(asked_.isEmpty());
}

TEST_F(frmMainTest, ShortcutsWorkWhileTheTextHasTheFocusAndCtrlNThoughItsEntryIsHidden) {
  OpenAndListen();
  PressKey(Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(Windows().size(), 2);
  EXPECT_EQ(session.DocumentCount, 2);
  Box(0).setFocus();
  PressKey(Qt::Key_B, Qt::ControlModifier);
  PressKey(Qt::Key_R, Qt::ControlModifier);
  PressKey(Qt::Key_H, Qt::ControlModifier);
  EXPECT_EQ(asked_, (QStringList{"backup", "restore", "organisations"}));
}

TEST_F(frmMainTest, ToolBarButtonsWorkByTheirKeys) {
  OpenFrame();
  desk.dialogs.ChooseToOpen("");
  Click("Open");
  Click("New");
  EXPECT_EQ(Windows().size(), 2);

  desk.messages.ExpectTell(Icon::kNone, "KestrixStudy", "Add 'Freeform' button code.");
  Click("Freeform");

  Child(1).SetCaption(installation.Outside("saved.kfe"));
  Box(1).setPlainText("Guard of the press");
  Click("Save");
  EXPECT_TRUE(ReadFile(installation.Outside("saved.kfe")).contains("Guard of the press"));
}

TEST_F(frmMainTest, ViewEntriesFlipTheirCheckMarkAndTheirBar) {
  OpenFrame();
  for (const auto& [entry, bar] :
       {std::pair{"mnuViewToolbar", "tbToolBar"}, std::pair{"mnuViewStatusBar", "sbStatusBar"}}) {
    EXPECT_TRUE(Control<QAction>(entry).isChecked());
    Trigger(entry);
    EXPECT_FALSE(Control<QAction>(entry).isChecked());
    EXPECT_FALSE(IsVisible(bar));
    Trigger(entry);
    EXPECT_TRUE(Control<QAction>(entry).isChecked());
    EXPECT_TRUE(IsVisible(bar));
  }
}

TEST_F(frmMainTest, OrganisationsAreAskedForWhenEverythingIsThere) {
  OpenAndListen();
  Qt::CursorShape during = Qt::ArrowCursor;
  QObject::connect(&Main(), &frmMain::OrganisationsRequested, &Main(), [&during] {
    if (const QCursor* cursor = QApplication::overrideCursor()) during = cursor->shape();
  });

  Choose("mnuDatamnfrm");

  EXPECT_EQ(asked_, QStringList{"organisations"});
  EXPECT_EQ(during, Qt::WaitCursor);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  EXPECT_TRUE(session.FileFoundA && session.FileFoundB && session.FileFoundC);
  // A failure while they are shown is passed over.
  QObject::connect(&Main(), &frmMain::OrganisationsRequested, &Main(),
                   [] { throw Failure(failure::kCannotOpen, "No."); });
  Choose("mnuDatamnfrm");
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(frmMainTest, EachMissingFileIsToldWithABeepAndNothingOpens) {
  OpenAndListen();
  int beeps = 0;
  for (const char* file : {"RskAsmt_BkSup.mdb", "orgtn.mdb", "/risk_esmatn.mdb"}) {
    SCOPED_TRACE(file);
    desk.files.Heal();
    desk.files.PretendMissing(QString::fromLatin1(file));
    desk.messages.ExpectTell(Icon::kCritical, "KESTRIX : Files missing",
                             "1a. Files missing. contact M/s. BELTROVAN");
    Choose("mnuDatamnfrm");
    EXPECT_EQ(desk.messages.Waiting(), 0);
    EXPECT_EQ(desk.messages.Beeps(), ++beeps);
  }
  EXPECT_TRUE(asked_.isEmpty());
  EXPECT_TRUE(Main().isVisible());
}

TEST_F(frmMainTest, SiblingPreviewBarsTheOrganisationsAndTheOwnOneDoesnt) {
  OpenAndListen();
  desk.windows.Open("RiskBookRpts");
  Choose("mnuDatamnfrm");
  EXPECT_EQ(asked_, QStringList{"organisations"});

  desk.windows.Close("RiskBookRpts");
  desk.windows.Open("CaseBookRpts");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Close Report preview.");
  Choose("mnuDatamnfrm");
  EXPECT_EQ(asked_, QStringList{"organisations"});
  EXPECT_EQ(desk.windows.ActivationsTried(), QStringList{"RiskBookRpts"});
}

TEST_F(frmMainTest, OrganisationsCannotBeReachedWithoutADocument) {
  OpenAndListen();
  CloseAllChildren();

  EXPECT_FALSE(IsEnabled("mnuData"));
  PressKey(Qt::Key_H, Qt::ControlModifier);
  Control<QAction>("mnuDatamnfrm").trigger();
  EXPECT_TRUE(asked_.isEmpty());

  PressKey(Qt::Key_N, Qt::ControlModifier);
  EXPECT_TRUE(IsEnabled("mnuData"));
  PressKey(Qt::Key_H, Qt::ControlModifier);
  EXPECT_EQ(asked_, QStringList{"organisations"});
}

TEST_F(frmMainTest, BackupAsksForItsFormInBackupModeWithTheNoticeBehindIt) {
  OpenAndListen();
  QString before;
  QObject::connect(&Main(), &frmMain::BackupRequested, &Main(),
                   [&] { before = Box(0).toPlainText(); });
  for (const QStringList& asked : {QStringList{"backup"}, QStringList{"backup", "backup"}}) {
    session.BackupMode = 1;
    session.BackupSubMode = 1;

    Choose("Bkup");

    EXPECT_EQ(asked_, asked);
    EXPECT_EQ(session.BackupMode, 0);
    EXPECT_EQ(session.BackupSubMode, 0);
    ASSERT_EQ(Windows().size(), 1);
    EXPECT_EQ(Box(0).toPlainText(), kNotice);
    EXPECT_EQ(before, kNotice);
  }
}

TEST_F(frmMainTest, DocumentForTheNoticeIsMadeWhenThereIsNone) {
  OpenFrame();
  CloseAllChildren();

  Choose("Bkup");

  ASSERT_EQ(Windows().size(), 1);
  EXPECT_EQ(Box(0).toPlainText(), kNotice);
  EXPECT_EQ(session.DocumentCount, 1);
  EXPECT_TRUE(IsEnabled("mnuData"));
}

TEST_F(frmMainTest, NoticeStandsInFrontOfTheOtherDocuments) {
  OpenFrame();
  Trigger("mnuFileNew");
  Windows().at(0)->showMinimized();
  Windows().at(1)->showMaximized();
  Settle();

  Choose("Bkup");

  EXPECT_EQ(Area().activeSubWindow(), Windows().at(0));
  EXPECT_FALSE(Windows().at(0)->isMinimized());
  EXPECT_EQ(Area().subWindowList(QMdiArea::StackingOrder).last(), Windows().at(0));
  EXPECT_EQ(Box(0).toPlainText(), kNotice);
}

TEST_F(frmMainTest, NoticeNeverReplacesWhatTheUserWroteOrOpened) {
  const QString file = installation.Outside("mine.txt");
  WriteFile(file, "mine");
  for (const bool written : {true, false}) {
    OpenFrame();
    if (written) {
      Box(0).setFocus();
      Type("mine");
    } else {
      desk.dialogs.ChooseToOpen(file);
      Choose("mnuFileOpen");
    }

    Choose("Bkup");

    ASSERT_EQ(Windows().size(), 2);
    EXPECT_EQ(Box(0).toPlainText(), "mine");
    EXPECT_EQ(Box(1).toPlainText(), kNotice);
    Close();
  }
}

TEST_F(frmMainTest, RestoreAsksForTheFolderDialogInRestoreModeAndCustomizationForItsForm) {
  OpenAndListen();
  session.BackupSubMode = 1;

  Choose("RtrBkUp");

  EXPECT_EQ(asked_, QStringList{"restore"});
  EXPECT_EQ(session.BackupMode, 1);
  EXPECT_EQ(session.BackupSubMode, 0);
  EXPECT_EQ(Box(0).toPlainText(), "");
  Choose("custmztnFrm");
  EXPECT_EQ(asked_.last(), "customization");
}

TEST_F(frmMainTest, TheHomePageIsStartedAndYesEndsTheRun) {
  OpenAndListen();
  WriteFile(installation.Folder() + "/../kestrixmodule.exe", "program");
  const Message question =
      Ask(Icon::kInformation, kTitle, "Wish to close Risk Assessment Module?", Button::kYes);
  desk.messages.Expect(question).Answer(Button::kNo);
  Choose("homepage");
  EXPECT_EQ(desk.shell.Companions().size(), 1);
  EXPECT_TRUE(asked_.isEmpty());
  EXPECT_TRUE(Main().isVisible());

  const QPointer<frmMain> main = &Main();
  desk.messages.Expect(question);
  Choose("homepage");
  EXPECT_EQ(desk.shell.Companions().size(), 2);
  EXPECT_EQ(asked_, (QStringList{"closing", "unloaded"}));
  EXPECT_TRUE(main.isNull());
}

/// A box over the frame, as a message opens one and closes it behind its answer.
void ShowBoxOver(frmMain& main) {
  QDialog box(&main);
  box.setModal(true);
  box.show();
  FormHands::Settle();
  EXPECT_FALSE(main.isActiveWindow());
  box.close();
}

TEST_F(frmMainTest, FrontStaysWithTheHomePageThatWasBroughtForward) {
  OpenFrame();
  desk.windows.Open("kestrixmodule");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Home page already open.").WhileOpen([&] {
    ShowBoxOver(Main());
  });
  Choose("homepage");
  EXPECT_EQ(desk.windows.Activated(), QStringList{"kestrixmodule"});
  EXPECT_FALSE(Main().isActiveWindow());
}

TEST_F(frmMainTest, FrameIsInFrontAgainWhenThereIsNoPreviewToBringForward) {
  OpenFrame();
  desk.windows.Open("CaseBookRpts");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Close Report preview.").WhileOpen([&] {
    ShowBoxOver(Main());
  });
  Choose("mnuDatamnfrm");
  EXPECT_TRUE(desk.windows.Activated().isEmpty());
  EXPECT_TRUE(WaitUntil([this] { return Main().isActiveWindow(); }));
}

TEST_F(frmMainTest, HelpEntriesReachTheManualAndTheSearch) {
  OpenFrame();
  WriteFile(installation.Path("hlpAnnlyAdv.pdf"), "manual");
  Trigger("Help");
  const QList<FakeShell::Started> expected = {{"hlpAnnlyAdv.pdf", installation.Folder()}};
  EXPECT_EQ(desk.shell.Documents(), expected);

  desk.messages.ExpectTell(Icon::kInformation, "KestrixStudy",
                           "Unable to display Help Contents. There is no Help associated with "
                           "this project.");
  Trigger("mnuHelpSearchForHelpOn");
}

TEST_F(frmMainTest, EveryRouteOutAsksForTheOtherFormsToGoFirst) {
  for (const bool by_menu : {true, false}) {
    asked_.clear();
    OpenAndListen();
    Trigger("mnuFileNew");
    by_menu ? Trigger("mnuFileExit") : Close();
    EXPECT_EQ(asked_, (QStringList{"closing", "unloaded"}));
    EXPECT_EQ(session.DocumentCount, 0) << "its documents are closed";
  }
}

TEST_F(frmMainTest, ClosingBeforeAnyOrganisationTestsAThousandAndOneNamesAndDoesNothingElse) {
  OpenFrame();
  for (const QString& kept : {Sign(1001), installation.StudySign(0), installation.StudySign(1)})
    WriteFile(kept, "stays");
  Close();
  EXPECT_EQ(session.OrgCount, 1000);
  EXPECT_EQ(session.LockScanIndex, 1001);
  for (const QString& kept : {Sign(1001), installation.StudySign(0), installation.StudySign(1)})
    EXPECT_EQ(ReadFile(kept), "stays");
  EXPECT_TRUE(desk.files.Log().isEmpty());
  // The last name that is tested is that of a thousand.
  session.OrgCount = session.LockScanIndex = 0;
  WriteFile(Sign(1000), "stale");
  OpenFrame();
  Close();
  EXPECT_EQ(ReadFile(Sign(1000)), "<no file>");
}

TEST_F(frmMainTest, StaleSignIsRemovedAtTheFirstExitAndOnlyOneOfThem) {
  OpenFrame();
  WriteFile(Sign(0), "stale");
  WriteFile(Sign(1), "stale");

  Close();
  EXPECT_EQ(ReadFile(Sign(0)), "<no file>");
  EXPECT_EQ(ReadFile(Sign(1)), "stale");
  EXPECT_EQ(session.LockScanIndex, 0);

  OpenFrame();
  Close();
  EXPECT_EQ(ReadFile(Sign(1)), "<no file>");
}

TEST_F(frmMainTest, LookForStaleSignsGoesOnWhereTheLastOneEnded) {
  session.OrgCount = 2;
  OpenFrame();
  Close();
  EXPECT_EQ(session.LockScanIndex, 3);

  WriteFile(Sign(0), "stale");
  WriteFile(Sign(4), "stale");
  OpenFrame();
  Close();
  EXPECT_EQ(ReadFile(Sign(0)), "stale");
  EXPECT_EQ(ReadFile(Sign(4)), "<no file>");
}

TEST_F(frmMainTest, SignThatCannotBeRemovedHoldsUpNothing) {
  OpenAndListen();
  WriteFile(Sign(0), "stale");
  desk.files.FailNext(FileAction::kDeleteFile, "ktx_RskSmt0", failure::kPermissionDenied);
  Close();
  EXPECT_EQ(asked_, (QStringList{"closing", "unloaded"}));
  EXPECT_EQ(desk.files.FaultsLeft(), 0);
}

TEST_F(frmMainTest, LookForStaleSignsEndsAtTheLargestNumber) {
  session.OrgCount = std::numeric_limits<qint16>::max();
  session.LockScanIndex = std::numeric_limits<qint16>::max() - 1;
  OpenFrame();
  Close();
  EXPECT_EQ(session.LockScanIndex, std::numeric_limits<qint16>::max());
}

TEST_F(frmMainTest, HomePageComesToTheFrontAfterTheOtherFormsWentWhoseFailureHoldsUpNothing) {
  OpenFrame();
  Close();
  EXPECT_TRUE(desk.windows.ActivationsTried().isEmpty()) << "it doesn't run";
  EXPECT_EQ(session.WinHandle, 0);
  OpenFrame();
  desk.windows.Open("kestrixmodule");
  QStringList activated_before;
  QObject::connect(&Main(), &frmMain::Closing, &Main(), [&] {
    activated_before = desk.windows.Activated();
    throw Failure(failure::kCannotOpen, "No.");
  });
  Close();
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
  EXPECT_TRUE(activated_before.isEmpty());
  EXPECT_EQ(desk.windows.Activated(), QStringList{"kestrixmodule"});
}

TEST_F(frmMainTest, PlacementIsStoredInTwipsAndOfAMaximisedFrameTheOneThatItGoesBackTo) {
  for (const bool maximised : {false, true}) {
    OpenFrame();
    Main().move(40, 50);
    Main().resize(700, 500);
    Settle();
    if (maximised) Main().showMaximized();
    Settle();

    Close();

    EXPECT_EQ(Setting("MainLeft"), "600");
    EXPECT_EQ(Setting("MainTop"), "750");
    EXPECT_EQ(Setting("MainWidth"), "10500");
    EXPECT_EQ(Setting("MainHeight"), "7500");
    for (const char* key : {"MainLeft", "MainTop", "MainWidth", "MainHeight"})
      GivenSetting(key, "3000");
  }
}

TEST_F(frmMainTest, PlacementStaysTheSameOverManyRuns) {
  for (int run = 0; run < 3; ++run) {
    OpenFrame();
    Close();
  }
  EXPECT_EQ(Setting("MainLeft"), "990");
  EXPECT_EQ(Setting("MainWidth"), "6495");
}

TEST_F(frmMainTest, MinimisedFrameThatCameBackMaximisedStoresThePlaceThatItGoesBackTo) {
  OpenFrame();
  const QPoint place(1000 / 15, 1000 / 15);
  const QSize size(6500 / 15, 6500 / 15);
  // A window manager takes a moment to put its border around the frame.
  ASSERT_TRUE(WaitUntil([&] {
    return Main().pos() == place && Main().frameGeometry().top() < Main().geometry().top();
  }));
  Main().showMinimized();
  ASSERT_TRUE(WaitUntil([&] { return Main().isMaximized() && Main().width() > size.width(); }));

  Close();

  EXPECT_EQ(Setting("MainLeft"), "990");
  EXPECT_EQ(Setting("MainTop"), "990");
  EXPECT_EQ(Setting("MainWidth"), "6495");
  EXPECT_EQ(Setting("MainHeight"), "6495");
}

}  // namespace
}  // namespace kestrix
