#include "shell/Companions.h"

#include <QDir>
#include <QFileInfo>

#include "support/Files.h"
#include "support/FormTest.h"

namespace kestrix {
namespace {

const QString kTitle = "BELTROVAN";
const QString kWishToClose = "Wish to close Risk Assessment Module?";

class CompanionsTest : public FormTest {
 protected:
  void GivenProgramAbove() { WriteFile(Above("kestrixmodule.exe"), "program"); }
  void GivenFile(const QString& name) { WriteFile(installation.Path(name), "file"); }
  [[nodiscard]] QString Folder() const { return installation.Folder(); }
  [[nodiscard]] QString FolderAbove() const { return QFileInfo(installation.Folder()).path(); }
  [[nodiscard]] QString Above(const QString& name) const { return FolderAbove() + u'/' + name; }
  void ExpectClosingQuestion(Button answer) {
    desk.messages.Expect(Ask(Icon::kInformation, kTitle, kWishToClose, Button::kYes))
        .Answer(answer);
  }
};

TEST_F(CompanionsTest, HomePageThatRunsIsBroughtToTheFrontAndThisProgramStays) {
  GivenProgramAbove();
  desk.windows.Open(companions::kHomePage);
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Home page already open.");

  EXPECT_FALSE(companions::GoToHomePage(context));

  EXPECT_EQ(desk.windows.Activated(), QStringList{"kestrixmodule"});
  EXPECT_TRUE(desk.shell.Companions().isEmpty());
  EXPECT_NE(session.WinHandle, 0);
}

TEST_F(CompanionsTest, MissingHomePageIsToldAndTheCurrentFolderIsLeftAtTheParent) {
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Installed files missing.");

  EXPECT_FALSE(companions::GoToHomePage(context));

  EXPECT_EQ(desk.files.CurrentFolder(), FolderAbove());
  EXPECT_TRUE(desk.shell.Companions().isEmpty());
  EXPECT_EQ(desk.messages.Beeps(), 0);
}

TEST_F(CompanionsTest, YesStartsTheHomePageAndEndsThisProgram) {
  GivenProgramAbove();
  ExpectClosingQuestion(Button::kYes);

  EXPECT_TRUE(companions::GoToHomePage(context));

  const QList<FakeShell::Started> expected = {{"kestrixmodule.exe", FolderAbove()}};
  EXPECT_EQ(desk.shell.Companions(), expected);
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
  EXPECT_EQ(desk.messages.Beeps(), 1);

  ExpectClosingQuestion(Button::kNo);
  EXPECT_FALSE(companions::GoToHomePage(context)) << "both programs run";
  EXPECT_EQ(desk.shell.Companions().size(), 2);
  EXPECT_EQ(session.MsgAnswer, Button::kNo);
}

TEST_F(CompanionsTest, HomePageThatFailsToStartShowsNothingAndTheAnswerHolds) {
  GivenProgramAbove();
  desk.shell.FailWith(failure::kFileNotFound);
  ExpectClosingQuestion(Button::kYes);

  EXPECT_TRUE(companions::GoToHomePage(context));
}

TEST_F(CompanionsTest, HomePageEndsWithoutAWordWhenTheFolderIsGone) {
  desk.files.FailNext(FileAction::kChangeFolder, "..", failure::kPathNotFound);

  EXPECT_FALSE(companions::GoToHomePage(context));

  EXPECT_TRUE(desk.messages.Shown().isEmpty());
  EXPECT_TRUE(desk.shell.Companions().isEmpty());
}

TEST_F(CompanionsTest, HomePageOnTheWayOutIsActivatedOnlyWhenItRuns) {
  companions::ActivateHomePage(context);
  EXPECT_TRUE(desk.windows.ActivationsTried().isEmpty());
  EXPECT_EQ(session.WinHandle, 0);

  desk.windows.Open(companions::kHomePage);
  companions::ActivateHomePage(context);
  EXPECT_EQ(desk.windows.Activated(), QStringList{"kestrixmodule"});
}

TEST_F(CompanionsTest, ReportWindowOfTheTestedTitleEndsTheCommandAndComesToTheFront) {
  desk.windows.Open(companions::kReportPreview);
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Close Report preview.");

  EXPECT_TRUE(companions::ReportWindowGuard(context, companions::kReportPreview));

  EXPECT_EQ(desk.windows.Activated(), QStringList{"RiskBookRpts"});
  session.WinHandle = 7;

  EXPECT_FALSE(companions::ReportWindowGuard(context, companions::kSiblingPreview));

  EXPECT_EQ(session.WinHandle, 0);
}

TEST_F(CompanionsTest, SiblingPreviewEndsTheCommandAndTheActivationOfTheOtherTitleFailsSilently) {
  desk.windows.Open(companions::kSiblingPreview);
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Close Report preview.");

  EXPECT_TRUE(companions::ReportWindowGuard(context, companions::kSiblingPreview));

  EXPECT_EQ(desk.windows.ActivationsTried(), QStringList{"RiskBookRpts"});
  EXPECT_TRUE(desk.windows.Activated().isEmpty());
}

TEST_F(CompanionsTest, ReportPreviewStartsOnceFromTheApplicationsFolderAndAMissingOneIsTold) {
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN: Files missing",
                           "1. Installed Files missing");
  EXPECT_FALSE(companions::StartReportPreview(context));
  EXPECT_TRUE(desk.shell.Companions().isEmpty());

  GivenFile("RiskBookRpts.exe");
  EXPECT_TRUE(companions::StartReportPreview(context));
  const QList<FakeShell::Started> expected = {{"RiskBookRpts.exe", Folder()}};
  EXPECT_EQ(desk.shell.Companions(), expected);

  desk.windows.Open(companions::kReportPreview);
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "Report preview already open.");
  EXPECT_FALSE(companions::StartReportPreview(context));
  EXPECT_EQ(desk.windows.Activated(), QStringList{"RiskBookRpts"});
  EXPECT_EQ(desk.shell.Companions(), expected);
}

TEST_F(CompanionsTest, ReportPreviewThatFailsToStartShowsNothing) {
  GivenFile("RiskBookRpts.exe");
  desk.shell.FailWith(failure::kFileNotFound);

  EXPECT_FALSE(companions::StartReportPreview(context));

  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(CompanionsTest, HelpFilesOpenByTheirNamesInTheApplicationsFolderAndMissingOnesAreTold) {
  GivenFile("hlpAnnlyAdv.pdf");
  GivenFile("acci_alys_help.htm");
  const auto open_both = [this] {
    companions::OpenManual(context);
    companions::OpenHelpPage(context);
  };
  open_both();
  const QList<FakeShell::Started> expected = {{"hlpAnnlyAdv.pdf", Folder()},
                                              {"acci_alys_help.htm", Folder()}};
  EXPECT_EQ(desk.shell.Documents(), expected);
  desk.shell.FailWith(failure::kInvalidCall);
  open_both();
  EXPECT_TRUE(desk.messages.Shown().isEmpty()) << "without a program for their types";

  desk.files.PretendMissing("hlpAnnlyAdv.pdf");
  desk.files.PretendMissing("acci_alys_help.htm");
  for (int i = 0; i < 2; ++i)
    desk.messages.ExpectTell(Icon::kInformation, kTitle,
                             "Help file does not exisit, contact BELTROVAN");
  open_both();
  EXPECT_EQ(desk.shell.Documents(), expected);
}

}  // namespace
}  // namespace kestrix
