#include "supporting/tagdwgsfrm.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QStandardPaths>
#include <QTreeWidget>
#include <QWindow>

#include "platform/QtPlatform.h"
#include "support/Files.h"
#include "support/FormTest.h"
#include "support/OtherForm.h"
#include "support/ReadersHeld.h"

namespace kestrix {
namespace {

const QString kEnd = QStringLiteral("BELTROVAN.");
constexpr int kStudy = 3;

class tagdwgsfrmTest : public FormTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the wait cursor was not put back";
  }

  tagdwgsfrmTest() {
    installation.GivenStudy(kStudy);
    session.ActiveStudyNo = kStudy;
    project.number = QStringLiteral("P-1");
  }

  QString GivenFile(const QString& name, const QByteArray& bytes = "text") {
    WriteFile(installation.Outside(name), bytes);
    return installation.Outside(name);
  }
  QString GivenPicture(const QString& name) {
    const QString path = installation.Outside(name);
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::blue);
    EXPECT_TRUE(image.save(path, "PNG"));
    return path;
  }
  void GivenLink(const QString& path, const QString& number = "P-1") {
    const auto quoted = [](QString text) { return text.replace("'", "''"); };
    Exec(installation.Study(kStudy),
         QStringLiteral("INSERT INTO fileLink(Project_Number,FilePath,FileShrtDscrptn,FileEmb) "
                        "VALUES('%1','%2','%3','%2')")
             .arg(quoted(number), quoted(path), quoted(QFileInfo(path).fileName())));
  }
  QStringList StoredPaths(const QString& number = "P-1") {
    return Column(installation.Study(kStudy),
                  "SELECT FilePath FROM fileLink WHERE Project_Number='" + number + "'");
  }
  QStringList ShownPaths() {
    QStringList found;
    auto& list = Control<QTreeWidget>("fllst");
    for (int i = 0; i < list.topLevelItemCount(); ++i) found += list.topLevelItem(i)->text(0);
    return found;
  }
  void ClickLink(int row, bool twice = false) {
    const auto& list = Control<QTreeWidget>("fllst");
    ClickList(list.visualItemRect(list.topLevelItem(row)).center(), twice);
  }
  /// A click or double click as the desktop tells of it, with its second release.
  void ClickList(const QPoint& place, bool twice = false) {
    const auto& list = Control<QTreeWidget>("fllst");
    QWindow* window = list.window()->windowHandle();
    const QPoint spot = list.viewport()->mapTo(list.window(), place);
    if (twice) {
      QTest::mouseDClick(window, Qt::LeftButton, {}, spot);
    } else {
      QTest::mouseClick(window, Qt::LeftButton, {}, spot);
    }
    Settle();
  }
  /// Below all rows.
  void ClickEmptyPlace(bool twice = false) {
    ClickList(Control<QTreeWidget>("fllst").viewport()->rect().bottomLeft() + QPoint(20, -5),
              twice);
  }
  void ExpectTell(const QString& text) { desk.messages.ExpectTell(Icon::kInformation, kEnd, text); }
  void ExpectQuestion(const QString& path, Button answer) {
    desk.messages.ExpectAsk(Icon::kInformation, "BELTROVAN: Delete record",
                            "Wish to delete linked file. [" + path + "] from records?", answer);
  }
  void Link(const QString& path) {
    desk.dialogs.ChooseToOpen(path);
    Click("LnkFls_1");
  }
  QStringList Opened() {
    QStringList found;
    for (const auto& document : desk.shell.Documents()) found += document.name;
    return found;
  }
  QImage Preview() { return Control<QLabel>("ImgAccd2").pixmap(Qt::ReturnByValue).toImage(); }
  static bool IsBlue(const QImage& image) {
    return !image.isNull() && image.pixelColor(image.width() / 2, image.height() / 2) == Qt::blue;
  }
};

TEST_F(tagdwgsfrmTest, WearsItsCaptions) {
  const auto& form = Open<tagdwgsfrm>();
  EXPECT_EQ(form.windowTitle(), "BELTROVAN: Supporting Pictures/Documents ");
  EXPECT_EQ(TextOf("hzpNolbl"), "Project Number");
  EXPECT_EQ(TextOf("LnkFls_1"), "&Link Drwings/files");
  EXPECT_EQ(TextOf("DeltFle"), "Remove file link");
  EXPECT_EQ(TextOf("cls_1"), "&Exit");
  EXPECT_EQ(Control<QTreeWidget>("fllst").toolTip(), "Double click to open file");
  EXPECT_EQ(Control<QTreeWidget>("fllst").columnCount(), 2);
  EXPECT_FALSE(IsVisible("Pathlenstr"));
  for (const char* name : {"fllst", "LnkFls_1", "DeltFle", "cls_1"}) EXPECT_TRUE(IsEnabled(name));
  EXPECT_TRUE(HasFocus("fllst"));
}

TEST_F(tagdwgsfrmTest, ShowsTheLinksOfItsProjectInTheOrderOfTheTable) {
  GivenLink("/tmp/b.txt");
  GivenLink("/tmp/a.txt");
  GivenLink("/tmp/other.txt", "P-2");
  Open<tagdwgsfrm>();
  EXPECT_EQ(TextOf("EsiNoLBL"), "P-1");
  EXPECT_EQ(ShownPaths(), (QStringList{"/tmp/b.txt", "/tmp/a.txt"}));
  EXPECT_EQ(Control<QTreeWidget>("fllst").topLevelItem(0)->text(1), "b.txt");
}

TEST_F(tagdwgsfrmTest, TheFirstLinkIsSelectedWhenTheFormComesUp) {
  GivenLink(GivenPicture("a.png"));
  GivenLink("/tmp/b.txt");
  Open<tagdwgsfrm>();
  EXPECT_EQ(TextOf("pathdsply"), " " + installation.Outside("a.png"));
  EXPECT_TRUE(IsBlue(Preview()));
}

TEST_F(tagdwgsfrmTest, AnEmptyListSaysSoAndHasNothingToOpenOrRemove) {
  Open<tagdwgsfrm>();
  EXPECT_EQ(TextOf("pathdsply"), "No files linked. ");
  ExpectTell("Unable to open file.");
  ClickEmptyPlace(true);
  ExpectTell("Failed to remove file. /File does not exist.");
  Click("DeltFle");
}

TEST_F(tagdwgsfrmTest, ComingBackFromAnotherFormTellsTheSelectedPathAnew) {
  GivenLink("/tmp/a.txt");
  GivenLink("/tmp/b.txt");
  auto& form = Open<tagdwgsfrm>();
  ClickLink(1);
  EXPECT_EQ(TextOf("pathdsply"), "/tmp/b.txt");
  auto& other = Open<OtherForm>();
  other.UnloadForm();
  Settle();
  LookAt(form);
  EXPECT_EQ(TextOf("pathdsply"), " /tmp/b.txt");
}

TEST_F(tagdwgsfrmTest, AClickBesideTheRowsTellsTheSelectedPathOrThatThereIsNone) {
  GivenLink("/tmp/a.txt");
  Open<tagdwgsfrm>();
  ClickEmptyPlace();
  EXPECT_EQ(TextOf("pathdsply"), "/tmp/a.txt");
  EXPECT_EQ(TextOf("Pathlenstr"), "/tmp/a.txt");
  ExpectQuestion("/tmp/a.txt", Button::kYes);
  Click("DeltFle");
  EXPECT_EQ(TextOf("pathdsply"), "No files linked.");
  EXPECT_TRUE(StoredPaths().isEmpty());
  ClickEmptyPlace();
  EXPECT_EQ(TextOf("pathdsply"), "No files linked. ");
}

TEST_F(tagdwgsfrmTest, AProjectNumberWithAnApostropheAndAMissingStudyEndAsAnEmptyList) {
  GivenLink("/tmp/b.txt");
  project.number = QStringLiteral("O'Neil");
  Open<tagdwgsfrm>();
  EXPECT_TRUE(ShownPaths().isEmpty());
  EXPECT_EQ(TextOf("pathdsply"), "No files linked. ");
  ExpectTell("Unable to Link file./No file selected.");
  Link(GivenFile("x.txt"));
  ASSERT_TRUE(QFile::remove(installation.Study(kStudy)));
  Open<tagdwgsfrm>();
  EXPECT_EQ(TextOf("pathdsply"), "No files linked. ");
}

TEST_F(tagdwgsfrmTest, LinkingKeepsThePathAndNeitherCopiesNorMoves) {
  const QString path = GivenFile("drawing 1.txt");
  Open<tagdwgsfrm>();
  Link(path);
  EXPECT_EQ(Sql(installation.Study(kStudy),
                "SELECT Project_Number,FilePath,FileShrtDscrptn,FileEmb FROM fileLink"),
            (QList<QStringList>{{"P-1", path, "drawing 1.txt", path}}));
  EXPECT_EQ(ShownPaths(), QStringList{path});
  EXPECT_EQ(TextOf("pathdsply"), " " + path);
  EXPECT_TRUE(QFile::exists(path));
  ASSERT_EQ(desk.dialogs.Requests().size(), 1);
  EXPECT_EQ(desk.dialogs.Requests().first().request.title,
            "BELTROVAN : Select Pictures/Documents Files");
  EXPECT_EQ(desk.dialogs.Requests().first().request.filter, "Folders|Folders|*..");
  EXPECT_EQ(desk.dialogs.Requests().first().request.filter_index, 2);
  EXPECT_EQ(desk.dialogs.Requests().first().request.file_name, "");
}

TEST_F(tagdwgsfrmTest, BehindALinkTheFirstFileIsTheSelectedOne) {
  GivenLink("/tmp/a.txt");
  GivenLink("/tmp/b.txt");
  Open<tagdwgsfrm>();
  ClickLink(1);
  Link(GivenFile("x.txt"));
  EXPECT_EQ(ShownPaths(), (QStringList{"/tmp/a.txt", "/tmp/b.txt", installation.Outside("x.txt")}));
  EXPECT_EQ(TextOf("pathdsply"), " /tmp/a.txt");
  EXPECT_EQ(dialog.FileName, installation.Outside("x.txt"));
  // The name that was chosen last isn't offered again.
  Link(GivenFile("y.txt"));
  EXPECT_EQ(desk.dialogs.Requests().last().request.file_name, "");
}

TEST_F(tagdwgsfrmTest, ALinkThatTheStudyRefusesIsToldAndForgotten) {
  GivenLink(installation.Outside("X.TXT"), "P-2");
  Open<tagdwgsfrm>();
  Exec(installation.Study(kStudy), "CREATE UNIQUE INDEX one ON fileLink(FilePath COLLATE NOCASE)");
  ExpectTell("Unable to Link file./No file selected.");
  Link(GivenFile("x.txt"));
  EXPECT_TRUE(StoredPaths().isEmpty());
  EXPECT_EQ(ShownPaths(), QStringList{installation.Outside("x.txt")});
  // What is in the list alone is no link: it can be removed from nowhere.
  ClickLink(0);
  ExpectQuestion(installation.Outside("x.txt"), Button::kYes);
  ExpectTell("Failed to remove file. /File does not exist.");
  Click("DeltFle");
  EXPECT_TRUE(ShownPaths().isEmpty());
  EXPECT_TRUE(StoredPaths().isEmpty());
}

TEST_F(tagdwgsfrmTest, TheDialogComesUpWhereTheLastFileWasLinked) {
  Open<tagdwgsfrm>();
  Link(GivenFile("x.txt"));
  EXPECT_EQ(desk.dialogs.Requests().last().request.folder, "");
  ASSERT_TRUE(QDir().mkpath(installation.Outside("drawings")));
  Link(GivenFile("drawings/y.txt"));
  EXPECT_EQ(desk.dialogs.Requests().last().request.folder,
            QFileInfo(installation.Outside("x")).path());
  project.number = QStringLiteral("P-2");
  Open<tagdwgsfrm>();
  Link(GivenFile("z.txt"));
  EXPECT_EQ(desk.dialogs.Requests().last().request.folder, installation.Outside("drawings"));
}

TEST_F(tagdwgsfrmTest, ANewLinkIsInSightAndItsColumnsFitTheWindow) {
  for (int i = 0; i < 60; ++i) GivenLink(QStringLiteral("/tmp/%1.txt").arg(i));
  auto& form = Open<tagdwgsfrm>();
  const QString path = GivenFile(QString(200, u'n') + ".txt");
  Link(path);
  auto& list = Control<QTreeWidget>("fllst");
  const QTreeWidgetItem* added = list.topLevelItem(60);
  EXPECT_TRUE(list.viewport()->rect().contains(list.visualItemRect(added)));
  EXPECT_EQ(list.currentItem(), list.topLevelItem(0));
  EXPECT_TRUE(added->toolTip(0).contains(path));
  EXPECT_TRUE(added->toolTip(1).contains(QFileInfo(path).fileName()));
  EXPECT_NE(list.textElideMode(), Qt::ElideNone);
  const int width = list.columnWidth(0);
  form.resize(form.width() + 200, form.height());
  Settle();
  EXPECT_GT(list.columnWidth(0), width);
  EXPECT_LE(list.columnWidth(0) + list.columnWidth(1), list.viewport()->width());
}

TEST_F(tagdwgsfrmTest, CapitalsMakeAnotherFile) {
  GivenLink(installation.Outside("A.txt"));
  Open<tagdwgsfrm>();
  Link(GivenFile("a.txt"));
  EXPECT_EQ(StoredPaths(),
            (QStringList{installation.Outside("A.txt"), installation.Outside("a.txt")}));
}

class tagdwgsfrmNameTest : public tagdwgsfrmTest,
                           public ::testing::WithParamInterface<const char*> {};

TEST_P(tagdwgsfrmNameTest, EveryNameIsLinkedPreviewedAndOpened) {
  QString name = QString::fromUtf8(GetParam());
  if (name == "255") name = QString(251, u'n') + ".png";
  const QString path = GivenPicture(name);
  Open<tagdwgsfrm>();
  Link(path);
  EXPECT_EQ(StoredPaths(), QStringList{path});
  ClickLink(0, true);
  EXPECT_TRUE(IsBlue(Preview()));
  EXPECT_EQ(Opened(), QStringList{path});
  EXPECT_TRUE(desk.shell.Companions().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Names, tagdwgsfrmNameTest,
                         ::testing::Values("with blanks.png", "it's \"quoted\".png",
                                           "图纸 Чертёж 🏭.png", "255", "-dash.png", "#%20.png",
                                           "back\\slash.png"),
                         [](const auto& name) { return "Name" + std::to_string(name.index); });

TEST_F(tagdwgsfrmTest, TheSamePathTwiceIsRefused) {
  const QString path = GivenFile("x.txt");
  GivenLink(path, "P-2");
  Open<tagdwgsfrm>();
  Link(path);
  EXPECT_EQ(StoredPaths(), QStringList{path}) << "under two projects it is allowed";
  EXPECT_EQ(StoredPaths("P-2"), QStringList{path});
  desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN: Duplicate linking.",
                           "File already exists.");
  Link(path);
  EXPECT_EQ(StoredPaths(), QStringList{path});
  EXPECT_EQ(ShownPaths(), QStringList{path});
}

TEST_F(tagdwgsfrmTest, ACancelledDialogIsRefusedByTheTableAndLeavesItsItemUntilTheNextFill) {
  GivenLink("/tmp/a.txt");
  Open<tagdwgsfrm>();
  ExpectTell("Unable to Link file./No file selected.");
  Link({});
  EXPECT_EQ(StoredPaths(), QStringList{"/tmp/a.txt"});
  EXPECT_EQ(ShownPaths(), (QStringList{"/tmp/a.txt", ""}));
  Link(GivenFile("x.txt"));
  EXPECT_EQ(ShownPaths().size(), 2);
  EXPECT_EQ(ShownPaths().last(), installation.Outside("x.txt"));
}

TEST_F(tagdwgsfrmTest, AFileThatIsClickedAgainIsReadAgain) {
  GivenLink(GivenFile("a.png"));
  Open<tagdwgsfrm>();
  ClickLink(0);
  EXPECT_FALSE(IsBlue(Preview()));
  GivenPicture("a.png");
  ClickLink(0);
  EXPECT_TRUE(IsBlue(Preview()));
  EXPECT_EQ(TextOf("pathdsply"), installation.Outside("a.png"));
}

TEST_F(tagdwgsfrmTest, AnArrowKeySelectsAsAClickDoes) {
  GivenLink("/tmp/b.txt");
  GivenLink("/tmp/a.txt");
  Open<tagdwgsfrm>();
  auto& list = Control<QTreeWidget>("fllst");
  list.setCurrentItem(list.topLevelItem(0));
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(TextOf("pathdsply"), "/tmp/a.txt");
}

TEST_F(tagdwgsfrmTest, WhatIsNoPictureOrIsGoneShowsTheFallback) {
  GivenLink(GivenFile("a.txt"));
  GivenLink(installation.Outside("gone.png"));
  GivenLink(GivenFile("broken.jpg", "\xff\xd8\xff\xe0 not really"));
  GivenLink(GivenFile("empty.png", ""));
  GivenLink(QFileInfo(installation.Outside("a.txt")).path());
  GivenPicture("torn.png");
  ASSERT_TRUE(QFile::resize(installation.Outside("torn.png"), 40));
  GivenLink(installation.Outside("torn.png"));
  Open<tagdwgsfrm>();
  for (int row = 0; row < 6; ++row) {
    ClickLink(row);
    EXPECT_FALSE(Preview().isNull()) << row;
    EXPECT_FALSE(IsBlue(Preview())) << row;
  }
}

TEST_F(tagdwgsfrmTest, AFileWithoutAPreviewSaysHowItIsSeen) {
  GivenLink(GivenPicture("a.png"));
  GivenLink(GivenFile("a.txt"));
  GivenLink(installation.Outside("gone.png"));
  Open<tagdwgsfrm>();
  for (const auto& [row, line] :
       {std::pair{0, ""}, {1, "No preview – double click opens it"}, {2, ""}}) {
    ClickLink(row);
    EXPECT_EQ(TextOf("NoPreviewLbl"), line) << row;
  }
}

TEST_F(tagdwgsfrmTest, ALargePictureIsReadWhileTheListIsUsedAndASmallOneIsNotBlownUp) {
  QImage large(4000, 3000, QImage::Format_RGB32);
  large.fill(Qt::blue);
  ASSERT_TRUE(large.save(installation.Outside("large.png"), "PNG"));
  GivenLink(GivenPicture("small.png"));
  GivenLink(installation.Outside("large.png"));
  QFile::copy(installation.Outside("large.png"), installation.Outside("torn.png"));
  ASSERT_TRUE(QFile::resize(installation.Outside("torn.png"), 5000));
  GivenLink(installation.Outside("torn.png"));
  auto& form = Open<tagdwgsfrm>();
  EXPECT_EQ(Preview().size(), QSize(40, 30));
  ReadersHeld held(form);
  ClickLink(1);
  EXPECT_TRUE(Preview().isNull());
  EXPECT_EQ(TextOf("pathdsply"), installation.Outside("large.png")) << "the list goes on";
  held.LetGo();
  EXPECT_TRUE(WaitUntil([&] { return IsBlue(Preview()); }));
  ClickLink(2);
  EXPECT_TRUE(WaitUntil([&] { return !Preview().isNull(); }));
  EXPECT_FALSE(IsBlue(Preview())) << "the fallback";
  EXPECT_NE(TextOf("NoPreviewLbl"), "");
}

TEST_F(tagdwgsfrmTest, WithoutTheFallbackPictureOrWithADamagedOneThePreviewStaysClear) {
  GivenLink(GivenPicture("a.png"));
  GivenLink(GivenFile("a.txt"));
  Open<tagdwgsfrm>();
  for (const bool damaged : {true, false}) {
    const QString fallback = installation.Path("RskAsmtFld/errImgLoad.jpg");
    damaged ? WriteFile(fallback, {}) : void(QFile::remove(fallback));
    ClickLink(0);
    ClickLink(1);
    EXPECT_TRUE(Preview().isNull()) << damaged;
  }
}

TEST_F(tagdwgsfrmTest, ADoubleClickOpensTheDocumentAndLeavesTheFolderOnTheClipboard) {
  const QString path = GivenFile("report.txt");
  GivenLink(path);
  Open<tagdwgsfrm>();
  desk.clipboard.SetText("what the user had");
  ClickLink(0, true);
  EXPECT_EQ(Opened(), QStringList{path});
  EXPECT_EQ(desk.clipboard.Text(), QFileInfo(path).path());
  EXPECT_EQ(desk.files.CurrentFolder(), QFileInfo(path).path());
  EXPECT_FALSE(IsVisible("Pathlenstr"));
  EXPECT_EQ(TextOf("Pathlenstr"), QFileInfo(path).path());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

/// A desktop on which a test looks at the moment of opening, or at files of its own.
class tagdwgsfrmDesktopTest : public tagdwgsfrmTest {
 protected:
  void OpenOn(Shell& shell, FileSystem& files) {
    desktop_ = std::make_unique<OtherDesktop>(desk, files, shell, context);
    form_ = std::make_unique<tagdwgsfrm>(desktop_->context);
    form_->LoadForm();
    form_->ShowForm();
    Settle();
    LookAt(*form_);
  }
  void CloseDesktop() {
    form_.reset();
    desktop_.reset();
  }

 private:
  std::unique_ptr<OtherDesktop> desktop_;
  std::unique_ptr<tagdwgsfrm> form_;
};

class WatchingShell : public FakeShell {
 public:
  using FakeShell::FakeShell;
  void OpenDocument(const QString& path, const std::function<void()>& failed) override {
    const QCursor* cursor = QApplication::overrideCursor();
    waits = cursor != nullptr && cursor->shape() == Qt::WaitCursor;
    FakeShell::OpenDocument(path, failed);
  }
  bool waits = false;
};

TEST_F(tagdwgsfrmDesktopTest, TheCursorWaitsWhileADocumentIsOpened) {
  GivenLink(GivenFile("report.txt"));
  WatchingShell shell(desk.files);
  OpenOn(shell, desk.files);
  ClickLink(0, true);
  EXPECT_TRUE(shell.waits);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  shell.waits = false;
  shell.FailWith(failure::kInvalidCall);
  desk.messages.Expect(Tell(Icon::kInformation, kEnd, "Unable to open file.")).WhileOpen([] {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  });
  ClickLink(0, true);
  EXPECT_TRUE(shell.waits);
  CloseDesktop();
}

/// A disk with a file in its topmost folder.
class FilesAtTheTop : public FailingFileSystem {
 public:
  [[nodiscard]] bool FileExists(const QString& path) const override {
    return path == "/at the top.txt" || FailingFileSystem::FileExists(path);
  }
};

TEST_F(tagdwgsfrmDesktopTest, ADocumentInTheTopmostFolderOpensToo) {
  GivenLink("/at the top.txt");
  FilesAtTheTop files;
  FakeShell shell(files);
  OpenOn(shell, files);
  ClickLink(0, true);
  EXPECT_EQ(shell.Documents(), (QList<FakeShell::Started>{{"/at the top.txt", "/"}}));
  CloseDesktop();
}

TEST_F(tagdwgsfrmTest, ATitleThatIsNotTheFilesNameLeavesAWrongFolderAndCannotOpen) {
  const QString path = GivenFile("report.txt");
  Exec(installation.Study(kStudy),
       "INSERT INTO fileLink VALUES('P-1','" + path + "','port.txt','" + path + "')");
  Open<tagdwgsfrm>();
  ExpectTell("Unable to open file.");
  ClickLink(0, true);
  EXPECT_TRUE(Opened().isEmpty());
}

TEST_F(tagdwgsfrmTest, EnterOpensTheSelectedDocumentAndTheListHasTheFocusAgain) {
  GivenLink(GivenFile("a.txt"));
  GivenLink(GivenFile("b.txt"));
  Open<tagdwgsfrm>();
  ClickLink(0);
  PressKey(Qt::Key_Return);
  EXPECT_TRUE(HasFocus("fllst"));
  PressKey(Qt::Key_Down);
  PressKey(Qt::Key_Enter);
  EXPECT_EQ(Opened(), (QStringList{installation.Outside("a.txt"), installation.Outside("b.txt")}));
}

TEST_F(tagdwgsfrmTest, AProgramThatWasLinkedIsOpenedAsADocumentNeverStarted) {
  const QString path = GivenFile("tool.sh", "#!/bin/sh\ntouch started\n");
  QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  GivenLink(path);
  Open<tagdwgsfrm>();
  ClickLink(0, true);
  EXPECT_EQ(Opened(), QStringList{path});
  EXPECT_TRUE(desk.shell.Companions().isEmpty());
}

/// The same form on the desktop's own opener: a program named xdg-open that stands first in the
/// path and takes down what it is given.
class tagdwgsfrmOpenerTest : public tagdwgsfrmDesktopTest {
 protected:
  tagdwgsfrmOpenerTest() {
    const QString folder = installation.Outside("opener");
    EXPECT_TRUE(QDir().mkpath(folder));
    Script(folder + "/xdg-open", "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" > '" + Given() + "'\n");
    path_before_ = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(folder) + ':' + path_before_);
  }
  ~tagdwgsfrmOpenerTest() override { qputenv("PATH", path_before_); }

  static void Script(const QString& path, const QString& text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
    file.close();
    ASSERT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  }
  QString Given() const { return installation.Outside("given.txt"); }
  QString ReadGiven() const {
    QFile file(Given());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
  }

  /// Opens the one link and gives back what the opener was given.
  QString OpenByDesktop() {
    OpenOn(opener, desk.files);
    ClickLink(0, true);
    EXPECT_TRUE(WaitUntil([&] { return ReadGiven().endsWith('\n'); }));
    CloseDesktop();
    return ReadGiven();
  }

  QtShell opener;

 private:
  QByteArray path_before_;
};

TEST_F(tagdwgsfrmOpenerTest, ALinkedScriptIsHandedToTheOpenerAndNeverRun) {
  const QString started = installation.Outside("started");
  const QString program = installation.Outside("it's a \"tool\".sh");
  Script(program, "#!/bin/sh\ntouch '" + started + "'\n");
  GivenLink(program);
  EXPECT_EQ(OpenByDesktop(), "1\n" + program + "\n");
  EXPECT_FALSE(QFile::exists(started));
}

TEST_F(tagdwgsfrmOpenerTest, ALinkedProgramIsHandedToTheOpenerAndNeverRun) {
  const QString program = installation.Outside("touch");
  ASSERT_TRUE(QFile::copy(QStandardPaths::findExecutable("touch"), program));
  GivenLink(program);
  EXPECT_EQ(OpenByDesktop(), "1\n" + program + "\n");
}

TEST_F(tagdwgsfrmOpenerTest, ALauncherIsNoDocument) {
  const QString started = installation.Outside("started");
  const QString launcher = installation.Outside("tool.desktop");
  Script(launcher, "[Desktop Entry]\nType=Application\nExec=touch " + started + "\n");
  GivenLink(launcher);
  OpenOn(opener, desk.files);
  ExpectTell("Unable to open file.");
  ClickLink(0, true);
  EXPECT_EQ(ReadGiven(), "");
  EXPECT_FALSE(QFile::exists(started));
  CloseDesktop();
}

TEST_F(tagdwgsfrmOpenerTest, AnOpenerThatEndsWithAnErrorIsTold) {
  Script(installation.Outside("opener/xdg-open"), "#!/bin/sh\nexit 3\n");
  GivenLink(GivenFile("report.unknown"));
  OpenOn(opener, desk.files);
  ExpectTell("Unable to open file.");
  ClickLink(0, true);
  EXPECT_TRUE(WaitUntil([&] { return desk.messages.Waiting() == 0; }));
  CloseDesktop();
}

class tagdwgsfrmOpenerNameTest : public tagdwgsfrmOpenerTest,
                                 public ::testing::WithParamInterface<const char*> {};

TEST_P(tagdwgsfrmOpenerNameTest, EveryNameReachesTheOpenerWhole) {
  QString name = QString::fromUtf8(GetParam());
  if (name == "255") name = QString(251, u'n') + ".txt";
  const QString path = GivenFile(name);
  GivenLink(path);
  EXPECT_EQ(OpenByDesktop(), "1\n" + path + "\n");
}

INSTANTIATE_TEST_SUITE_P(Names, tagdwgsfrmOpenerNameTest,
                         ::testing::Values("with  blanks .txt", "it's \"quoted\".txt",
                                           "图纸 Чертёж 🏭.txt", "255", "-dash",
                                           "#%20;$(touch x).txt", "back\\slash.txt"),
                         [](const auto& name) { return "Name" + std::to_string(name.index); });

TEST_F(tagdwgsfrmTest, AFileThatIsGoneOrCannotBeOpenedIsTold) {
  GivenLink(installation.Outside("gone.txt"));
  Open<tagdwgsfrm>();
  desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN: File missing.",
                           "File moved or Deleted.");
  ClickLink(0, true);
  EXPECT_TRUE(Opened().isEmpty());
  GivenFile("gone.txt");
  desk.shell.FailWith(failure::kInvalidCall);
  ExpectTell("Unable to open file.");
  ClickLink(0, true);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(tagdwgsfrmTest, RemovingALinkAsksAndLeavesTheFile) {
  const QString path = GivenFile("x.txt");
  GivenLink("/tmp/a.txt");
  GivenLink(path);
  Open<tagdwgsfrm>();
  ClickLink(1);
  ExpectQuestion(path, Button::kNo);
  Click("DeltFle");
  EXPECT_EQ(StoredPaths().size(), 2);
  ExpectQuestion(path, Button::kYes);
  Click("DeltFle");
  EXPECT_EQ(StoredPaths(), QStringList{"/tmp/a.txt"});
  EXPECT_EQ(ShownPaths(), QStringList{"/tmp/a.txt"});
  EXPECT_EQ(TextOf("pathdsply"), " /tmp/a.txt");
  EXPECT_TRUE(QFile::exists(path));
}

TEST_F(tagdwgsfrmTest, OfTwoRowsWithOnePathTheFirstGoesAndOneThatIsGoneFails) {
  GivenLink("/tmp/a.txt");
  GivenLink("/tmp/a.txt");
  Open<tagdwgsfrm>();
  ClickLink(1);
  ExpectQuestion("/tmp/a.txt", Button::kYes);
  Click("DeltFle");
  EXPECT_EQ(Column(installation.Study(kStudy), "SELECT rowid FROM fileLink"), QStringList{"2"});
  // One that somebody else removed fails.
  ClickLink(0);
  Exec(installation.Study(kStudy), "DELETE FROM fileLink");
  ExpectQuestion("/tmp/a.txt", Button::kYes);
  ExpectTell("Failed to remove file. /File does not exist.");
  Click("DeltFle");
}

TEST_F(tagdwgsfrmTest, EveryWayOutLetsTheProjectFormHoldAgain) {
  GivenLink("/tmp/a.txt");
  const QPointer<Form> by_button = &OpenModal<tagdwgsfrm>();
  Click("cls_1");
  EXPECT_TRUE(by_button.isNull());
  EXPECT_EQ(session.ProjectFormHolds, 1);
  EXPECT_FALSE(QFile::exists(installation.StudySign(kStudy)));
  session.ProjectFormHolds = 0;
  auto& by_box = OpenModal<tagdwgsfrm>();
  CloseBox(by_box);
  EXPECT_EQ(session.ProjectFormHolds, 1);
}

}  // namespace
}  // namespace kestrix
