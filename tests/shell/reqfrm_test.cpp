#include "shell/reqfrm.h"

#include "support/Files.h"
#include "support/FormTest.h"

namespace kestrix {
namespace {

class reqfrmTest : public FormTest {
 protected:
  void SetUp() override {
    form_ = &OpenModal<reqfrm>();
    QObject::connect(form_, &reqfrm::ProgramEndRequested, form_,
                     [this] { steps_.append("end requested"); });
    QObject::connect(form_, &reqfrm::Unloaded, form_, [this] { steps_.append("unloaded"); });
  }
  [[nodiscard]] QString Word() const { return installation.Outside("ktxopnd.txt"); }

  QPointer<reqfrm> form_;
  QStringList steps_;
};

TEST_F(reqfrmTest, NoticeShowsItsTexts) {
  EXPECT_EQ(form_->windowTitle(), " BELTROVAN : Required files installation");
  EXPECT_EQ(TextOf("lbl1_1"),
            "1. Run ''Microsoft access component setup'' (program as administrator.)  go to "
            "startup->All Programs->KESTRIX EHS software ->Right-button click on Microsoft access "
            "component setup");
  EXPECT_EQ(TextOf("lbl1_2"),
            "2. RT-button click of KESTRIX desk top icon->Select Properties -> select "
            "Compatibility Tab->Check box and select Windows-95->under privilege level click [Run "
            "this program as Administrator]->Click [Apply] button->Then click [Show settings for "
            "all users]-> Opens dialog for compatibility for all users->Repeat again all done for "
            "Compatibility Tab i.e. Check box and select Windows-2000->under privilege level click "
            "[Run this program as Administrator]->Click [Apply] button->Then click [Show settings "
            "for all users]->[Apply]->[OK]-> [OK].");
  EXPECT_EQ(TextOf("runsetp"), "&Run Setup");
}

TEST_F(reqfrmTest, ButtonWithoutTheFileOnlyEndsTheProgramAndItsMnemonicPressesIt) {
  PressKey(Qt::Key_R, Qt::AltModifier);
  EXPECT_EQ(steps_, (QStringList{"end requested", "unloaded"}));
  EXPECT_EQ(ReadFile(Word()), "<no file>");
  EXPECT_TRUE(form_.isNull());
}

TEST_F(reqfrmTest, OldTextOfTheFileIsReplacedAndNotAddedTo) {
  WriteFile(Word(), "File opened by somebody\n");
  Click("runsetp");
  EXPECT_EQ(ReadFile(Word()), "File closed");
  EXPECT_EQ(steps_, (QStringList{"end requested", "unloaded"}));
}

TEST_F(reqfrmTest, FileThatCannotBeWrittenLeavesTheNoticeUntilItsCloseBoxIsUsed) {
  WriteFile(Word(), "File opened");
  desk.files.FailNext(FileAction::kReplaceText, "ktxopnd.txt", failure::kPermissionDenied);

  Click("runsetp");

  EXPECT_TRUE(steps_.isEmpty());
  EXPECT_TRUE(form_->isVisible());
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
  EXPECT_EQ(ReadFile(Word()), "File opened");

  CloseBox(*form_);
  EXPECT_EQ(steps_, QStringList{"unloaded"});
}

}  // namespace
}  // namespace kestrix
