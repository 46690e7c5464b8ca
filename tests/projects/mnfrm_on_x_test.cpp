// The guard against an open report preview, with a real window of that title on a real display.

#include "platform/XDesktopWindows.h"
#include "projects/MnfrmTest.h"
#include "support/XServer.h"

namespace kestrix {
namespace {

/// Every rule holds with a window manager and without one.
class MnfrmOnXTest : public MnfrmTest, public ::testing::WithParamInterface<XServer::Manager> {
 protected:
  void SetUp() override {
    const QString why_not = XServer::WhyNot(GetParam());
    if (!why_not.isEmpty()) GTEST_SKIP() << why_not.toStdString();
    server_ = std::make_unique<XServer>(GetParam());
    ASSERT_TRUE(server_->Ready()) << "the display didn't come up";
    installation.GivenStudy(1);
    GivenProjects({"P1"});
    form = new mnfrm(on_x_);
    owner_.reset(form);
    Listen();
    form->LoadForm();
    HandOver("ACME", 1);
    LookAt(*form);
    asked.clear();
  }

  QProcess* OpenPreview() {
    QProcess* preview = server_->OpenWindow("RiskBookRpts");
    EXPECT_NE(preview, nullptr);
    EXPECT_TRUE(WaitUntil([this] { return windows_.Find("RiskBookRpts") != 0; }));
    return preview;
  }
  void ExpectGuard() {
    desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN", "Close Report preview.");
  }

  std::unique_ptr<XServer> server_;
  XDesktopWindows windows_;
  Platform platform_{desk.messages, desk.files,    desk.shell,     windows_,   desk.settings,
                     desk.dialogs,  desk.printing, desk.clipboard, desk.clock, desk.environment};
  FormKit kit_on_x_{platform_, kit.focus, kit.forms};
  Context on_x_{kit_on_x_, session, paths, frame, dialog, project, task};
  std::unique_ptr<mnfrm> owner_;
};

TEST_P(MnfrmOnXTest, AnOpenPreviewBarsTheFourCommandsAndComesToTheFront) {
  OpenPreview();
  server_->OpenWindow("something above it");
  for (const char* command : {"NwESINo", "delteZapNo", "nworg", "simultn1"}) {
    ExpectGuard();
    Click(command);
    EXPECT_TRUE(WaitUntil([] { return xlook::TopmostTitle() == "RiskBookRpts"; })) << command;
    EXPECT_NE(session.WinHandle, 0) << command;
  }
  EXPECT_TRUE(asked.isEmpty());
  EXPECT_EQ(StoredNumbers(), QStringList{"P1"});
  Click("LnkDwgs");
  EXPECT_EQ(asked, QStringList{"linked files"});
}

TEST_P(MnfrmOnXTest, TheCommandsWorkAgainOnceThePreviewIsClosed) {
  QProcess* preview = OpenPreview();
  ExpectGuard();
  Click("simultn1");
  server_->CloseWindow(preview);
  EXPECT_TRUE(WaitUntil([this] { return windows_.Find("RiskBookRpts") == 0; }));
  Click("simultn1");
  EXPECT_EQ(asked, QStringList{"evaluation"});
}

TEST_P(MnfrmOnXTest, APreviewOfTheSiblingModuleBarsNothing) {
  server_->OpenWindow("CaseBookRpts");
  ASSERT_TRUE(WaitUntil([this] { return windows_.Find("CaseBookRpts") != 0; }));
  Click("simultn1");
  EXPECT_EQ(asked, QStringList{"evaluation"});
}

INSTANTIATE_TEST_SUITE_P(Desktops, MnfrmOnXTest,
                         ::testing::Values(XServer::Manager::kNone, XServer::Manager::kOpenbox),
                         [](const auto& desktop) {
                           return desktop.param == XServer::Manager::kNone ? "WithoutManager"
                                                                           : "WithOpenbox";
                         });

}  // namespace
}  // namespace kestrix
