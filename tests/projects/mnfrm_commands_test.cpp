// The commands that lead out of the project form.

#include <QEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QSet>
#include <QTimer>

#include "projects/MnfrmTest.h"

namespace kestrix {
namespace {

const QString kTitle = "BELTROVAN";

class MnfrmCommandsTest : public MnfrmTest {
 protected:
  void OpenAcme() {
    MnfrmTest::OpenAcme({"P1", "P2"});
    asked.clear();
  }
  void GivenReportProgram() { WriteFile(installation.Path("RiskBookRpts.exe"), "program"); }
  void GivenHomeProgram() { WriteFile(installation.Path("../kestrixmodule.exe"), "program"); }
  [[nodiscard]] QString Parent() const { return QFileInfo(installation.Folder()).absolutePath(); }
  void ExpectReportGuard() {
    desk.windows.Open("RiskBookRpts");
    desk.messages.ExpectTell(Icon::kInformation, kTitle, "Close Report preview.");
  }
  void ExpectClosingQuestion(Button answer) {
    desk.messages
        .Expect(
            Ask(Icon::kInformation, kTitle, "Wish to close Risk Assessment Module?", Button::kYes))
        .Answer(answer);
  }
};

TEST_F(MnfrmCommandsTest, TheTasksAreOpenedBehindAHiddenForm) {
  OpenAcme();
  TypeInto("preparedbyTxt", "Ann");
  bool hidden = false;
  QString stored;
  QObject::connect(form, &mnfrm::EvaluationRequested, form, [&] {
    hidden = !form->isVisible();
    stored = Stored("P1", "preparedBytxt");
  });
  Click("simultn1");
  EXPECT_EQ(asked, QStringList{"evaluation"});
  EXPECT_TRUE(hidden);
  EXPECT_EQ(stored, "Ann");
  EXPECT_EQ(session.ProjectFormHolds, 0);
  EXPECT_EQ(desk.files.CurrentFolder(), installation.Folder());
}

TEST_F(MnfrmCommandsTest, ADoubleClickInTheListOpensTheTasks) {
  OpenAcme();
  DoubleClickRow("DB1", 1);
  EXPECT_EQ(asked, QStringList{"evaluation"});
  EXPECT_EQ(form->ESI_No(), "P2");
  EXPECT_FALSE(form->isVisible());
}

TEST_F(MnfrmCommandsTest, TheFormActivatesAgainWhenItIsShownModallyAfterTheTasks) {
  OpenAcme();
  ClickRow("DB1", 1);
  Click("simultn1");
  asked.clear();
  form->ShowFormModal();
  Settle();
  EXPECT_TRUE(form->isModal());
  EXPECT_EQ(asked, QStringList{"organisation form away"});
  EXPECT_EQ(TextOf("ESI_No"), "P2");
}

TEST_F(MnfrmCommandsTest, WithoutAProjectTheTasksAreRefusedBeforeThePreviewIsLookedFor) {
  OpenAcme();
  TypeInto("FndESINo", "nothing like it");
  desk.windows.Open("RiskBookRpts");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Add new organization./ESI number : ACME");
  Click("simultn1");
  EXPECT_TRUE(asked.isEmpty());
  EXPECT_TRUE(form->isVisible());
  EXPECT_TRUE(HasFocus("simultn1"));
  EXPECT_EQ(session.ProjectFormHolds, 1);
  EXPECT_TRUE(desk.windows.ActivationsTried().isEmpty());
}

TEST_F(MnfrmCommandsTest, WithoutAnOrganisationTheTasksAreRefused) {
  OpenAcme();
  form->SetOrganisationCaption(QString());
  session.ActiveOrgName = "";
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Add new organization./ESI number : ");
  Click("simultn1");
  EXPECT_TRUE(asked.isEmpty());
}

TEST_F(MnfrmCommandsTest, AnOpenReportPreviewBarsWhatChangesItsFiles) {
  OpenAcme();
  ClickRow("DB1", 1);
  QStringList activated;
  for (const char* command : {"simultn1", "nworg", "NwESINo", "delteZapNo"}) {
    ExpectReportGuard();
    Click(command);
    activated += "RiskBookRpts";
    EXPECT_EQ(desk.windows.Activated(), activated);
    EXPECT_TRUE(asked.isEmpty()) << command;
    EXPECT_TRUE(IsVisible("ESI_No")) << command;
    EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "P2"})) << command;
    EXPECT_EQ(session.StudyConnected, 1) << command;
    EXPECT_EQ(session.ProjectFormHolds, 1) << command;
  }
}

TEST_F(MnfrmCommandsTest, WhenTheProjectCannotBeStoredTheTasksStayClosed) {
  OpenAcme();
  Exec(installation.Study(1),
       "UPDATE Project_details SET preparedBytxt='Ann' WHERE Project_Number='P2'");
  RefuseEqual("preparedBytxt");
  TypeInto("preparedbyTxt", "Ann");
  Click("simultn1");
  EXPECT_TRUE(asked.isEmpty());
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(TextOf("preparedbyTxt"), "Ann");
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "");
  TypeInto("preparedbyTxt", "Bob");
  Click("simultn1");
  EXPECT_EQ(asked, QStringList{"evaluation"});
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "Bob");
}

TEST_F(MnfrmCommandsTest, TheReportProgramIsStartedInTheApplicationsFolder) {
  GivenReportProgram();
  OpenAcme();
  auto& timer = Control<QTimer>("Timer2");
  EXPECT_FALSE(timer.isActive());
  EXPECT_EQ(timer.interval(), 4000);
  TypeInto("preparedbyTxt", "Ann");
  Click("repotview");
  EXPECT_EQ(desk.shell.Companions(),
            (QList<FakeShell::Started>{{"RiskBookRpts.exe", installation.Folder()}}));
  EXPECT_TRUE(timer.isActive());
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "");
}

TEST_F(MnfrmCommandsTest, ARunningReportPreviewIsBroughtForward) {
  GivenReportProgram();
  OpenAcme();
  desk.windows.Open("RiskBookRpts");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Report preview already open.");
  Click("repotview");
  EXPECT_EQ(desk.windows.Activated(), QStringList{"RiskBookRpts"});
  EXPECT_TRUE(desk.shell.Companions().isEmpty());
  EXPECT_FALSE(Control<QTimer>("Timer2").isActive());
}

TEST_F(MnfrmCommandsTest, AMissingReportProgramIsTold) {
  OpenAcme();
  desk.windows.Open("RiskBookRpts");
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN: Files missing",
                           "1. Installed Files missing");
  Click("repotview");
  EXPECT_TRUE(desk.shell.Companions().isEmpty());
  EXPECT_TRUE(desk.windows.ActivationsTried().isEmpty());
}

TEST_F(MnfrmCommandsTest, AReportProgramThatDoesNotStartSaysNothing) {
  GivenReportProgram();
  OpenAcme();
  desk.shell.FailWith(failure::kFileNotFound);
  Click("repotview");
  EXPECT_FALSE(Control<QTimer>("Timer2").isActive());
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(MnfrmCommandsTest, LinkedFilesAreOpenedOverTheFormWhateverThePreviewDoes) {
  OpenAcme();
  desk.windows.Open("RiskBookRpts");
  Click("LnkDwgs");
  EXPECT_EQ(asked, QStringList{"linked files"});
  EXPECT_EQ(session.ProjectFormHolds, 0);
  EXPECT_TRUE(form->isVisible());
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(MnfrmCommandsTest, TheOrganisationsAreAskedForAndTheStudyIsConnectedAnewAfterwards) {
  OpenAcme();
  ClickRow("DB1", 1);
  Click("nworg");
  EXPECT_EQ(asked, QStringList{"organisations"});
  EXPECT_EQ(session.ProjectFormHolds, 0);
  EXPECT_EQ(session.StudyConnected, 0);
  EXPECT_TRUE(form->isVisible());
}

TEST_F(MnfrmCommandsTest, WhenTheOrganisationsCannotBeShownBothFormsAreUnloaded) {
  OpenAcme();
  QObject::connect(form, &mnfrm::OrganisationsRequested, form,
                   [this] { form->OrganisationFormNotShown(); });
  Click("nworg");
  EXPECT_EQ(asked, (QStringList{"organisations", "organisation form away", "evaluation form away",
                                "organisation form away"}));
  EXPECT_EQ(session.ActiveOrgName, "");
  EXPECT_EQ(frame.data_enabled, true);
}

TEST_F(MnfrmCommandsTest, HelpOpensItsPageInTheApplicationsFolderByMouseAndKeys) {
  WriteFile(installation.Path("acci_alys_help.htm"), "<p>help</p>");
  OpenAcme();
  Click("HlpHzp");
  Click("FndESINo");
  for (int i = 0; i < 30 && !HasFocus("HlpHzp"); ++i) PressTab();
  ASSERT_TRUE(HasFocus("HlpHzp"));
  PressKey(Qt::Key_Space);
  const FakeShell::Started page{"acci_alys_help.htm", installation.Folder()};
  EXPECT_EQ(desk.shell.Documents(), (QList<FakeShell::Started>{page, page}));
}

TEST_F(MnfrmCommandsTest, KeysLeadToTheChapterTheFindBoxAndANewNumber) {
  WriteFile(installation.Path("acci_alys_help.htm"), "<p>help</p>");
  OpenAcme();
  PressKey(Qt::Key_F1);
  EXPECT_EQ(desk.shell.Documents().value(0).name,
            installation.Path("acci_alys_help.htm") + "#mnfrm");
  Click("ProjectDescription");
  PressKey(Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(HasFocus("FndESINo"));
  Type("P");
  Click("ProjectDescription");
  PressKey(Qt::Key_F3);
  EXPECT_TRUE(HasFocus("FndESINo"));
  EXPECT_EQ(SelectedTextOf("FndESINo"), "P");
  PressKey(Qt::Key_Insert);
  EXPECT_TRUE(HasFocus("ESI_No_temp"));
}

TEST_F(MnfrmCommandsTest, AMissingHelpPageIsToldAndOneThatNothingOpensShowsNothing) {
  QFile::remove(installation.Path("acci_alys_help.htm"));
  OpenAcme();
  desk.messages.ExpectTell(Icon::kInformation, kTitle,
                           "Help file does not exisit, contact BELTROVAN");
  Click("HlpHzp");
  WriteFile(installation.Path("acci_alys_help.htm"), "<p>help</p>");
  desk.shell.FailWith(failure::kInvalidCall);
  Click("HlpHzp");
  EXPECT_TRUE(desk.shell.Documents().isEmpty());
  EXPECT_EQ(desk.messages.Shown().size(), 1);
}

TEST_F(MnfrmCommandsTest, TheHelpLinkIsUnderlinedOnYellowUnderThePointer) {
  OpenAcme();
  auto& link = Control<QLabel>("HlpHzp");
  const QRgb face = BackColour(&link);
  QEnterEvent enter({1, 1}, {1, 1}, {1, 1});
  QCoreApplication::sendEvent(&link, &enter);
  EXPECT_TRUE(link.font().underline());
  EXPECT_EQ(BackColour(&link), colour::kPaleYellow);
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(&link, &leave);
  EXPECT_FALSE(link.font().underline());
  EXPECT_EQ(BackColour(&link), face);
}

TEST_F(MnfrmCommandsTest, YesStartsTheHomePageAndEndsThisProgram) {
  GivenHomeProgram();
  OpenAcme();
  ExpectClosingQuestion(Button::kYes);
  bool gone = false;
  QObject::connect(form, &mnfrm::HomePageTakesOver, form, [&] { gone = form->IsUnloading(); });
  Click("homepage");
  EXPECT_EQ(desk.messages.Beeps(), 1);
  EXPECT_EQ(desk.shell.Companions(), (QList<FakeShell::Started>{{"kestrixmodule.exe", Parent()}}));
  EXPECT_TRUE(gone);
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
  EXPECT_EQ(asked, (QStringList{"organisation form away", "evaluation form away", "home page"}));
}

TEST_F(MnfrmCommandsTest, NoStartsTheHomePageAndThisProgramStays) {
  GivenHomeProgram();
  OpenAcme();
  ExpectClosingQuestion(Button::kNo);
  Click("homepage");
  EXPECT_EQ(desk.shell.Companions(), (QList<FakeShell::Started>{{"kestrixmodule.exe", Parent()}}));
  EXPECT_TRUE(asked.isEmpty());
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(session.MsgAnswer, Button::kNo);
}

TEST_F(MnfrmCommandsTest, ARunningHomePageIsBroughtForward) {
  GivenHomeProgram();
  OpenAcme();
  desk.windows.Open("kestrixmodule");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Home page already open.");
  Click("homepage");
  EXPECT_EQ(desk.windows.Activated(), QStringList{"kestrixmodule"});
  EXPECT_TRUE(desk.shell.Companions().isEmpty());
  EXPECT_TRUE(form->isVisible());
  EXPECT_NE(session.WinHandle, 0);
}

TEST_F(MnfrmCommandsTest, AMissingHomePageIsToldAndTheCurrentFolderIsTheParent) {
  OpenAcme();
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Installed files missing.");
  Click("homepage");
  EXPECT_TRUE(desk.shell.Companions().isEmpty());
  EXPECT_EQ(desk.files.CurrentFolder(), Parent());
  EXPECT_EQ(desk.messages.Beeps(), 0);
}

TEST_F(MnfrmCommandsTest, BothCommandsOfAltNAreReachedByIt) {
  OpenAcme();
  Click("FndESINo");
  PressKey(Qt::Key_N, Qt::AltModifier);
  const QString first = FocusName();
  PressKey(Qt::Key_N, Qt::AltModifier);
  const QString second = FocusName();
  EXPECT_EQ((QSet<QString>{first, second}), (QSet<QString>{"NwESINo", "nworg"}));
  EXPECT_TRUE(asked.isEmpty());
  while (FocusName() != "nworg") PressKey(Qt::Key_N, Qt::AltModifier);
  PressKey(Qt::Key_Space);
  EXPECT_EQ(asked, QStringList{"organisations"});
}

TEST_F(MnfrmCommandsTest, AltREntersTheTasks) {
  OpenAcme();
  PressKey(Qt::Key_R, Qt::AltModifier);
  EXPECT_EQ(asked, QStringList{"evaluation"});
}

TEST_F(MnfrmCommandsTest, TabGoesThroughTheFormAsTheEyeReads) {
  OpenAcme();
  Click("FndESINo");
  QStringList order = {FocusName()};
  for (int i = 0; i < 13; ++i) {
    PressTab();
    order += FocusName();
  }
  EXPECT_EQ(order, (QStringList{"FndESINo", "DB1", "NwESINo", "delteZapNo", "PrjStgCbo", "adddt0",
                                "dletedt0", "ProjectDescription", "preparedbyTxt", "simultn1",
                                "repotview", "LnkDwgs", "homepage", "HlpHzp"}));
}

}  // namespace
}  // namespace kestrix
