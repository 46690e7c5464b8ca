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

TEST_F(CompanionsTest, CommandGoesOnWhenOnlyAWindowOfAnotherTitleIsOpen) {
  desk.windows.Open(companions::kReportPreview);
  session.WinHandle = 7;
  EXPECT_FALSE(companions::ReportWindowGuard(context, companions::kSiblingPreview));
  EXPECT_EQ(session.WinHandle, 0);
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
