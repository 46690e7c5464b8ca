#include "shell/CommonDialog.h"

#include <gtest/gtest.h>

#include "support/FakePlatform.h"

namespace kestrix {
namespace {

class CommonDialogTest : public ::testing::Test {
 protected:
  FakePlatform desk;
  CommonDialog dialog{desk.platform()};
};

TEST_F(CommonDialogTest, ShowsItsPropertiesAndHoldsWhatWasChosenToOpen) {
  dialog.DialogTitle = "Open";
  dialog.Filter = "All Files (*.*)|*.*";
  dialog.FilterIndex = 2;
  dialog.FileName = "/data/before.kfe";
  desk.dialogs.ChooseToOpen("/data/guards.kfe");

  dialog.ShowOpen();

  EXPECT_EQ(dialog.FileName, "/data/guards.kfe");
  EXPECT_EQ(dialog.FileTitle(), "guards.kfe");
  ASSERT_EQ(desk.dialogs.Requests().size(), 1);
  const auto& [to_save, request] = desk.dialogs.Requests().first();
  EXPECT_FALSE(to_save);
  EXPECT_EQ(request.title, "Open");
  EXPECT_EQ(request.filter, "All Files (*.*)|*.*");
  EXPECT_EQ(request.filter_index, 2);
  EXPECT_EQ(request.file_name, "/data/before.kfe");
}

TEST_F(CommonDialogTest, HoldsWhatWasChosenToSaveAndNothingOfItOnceItIsCancelled) {
  desk.dialogs.ChooseToSave("/data/press.kfe");
  dialog.ShowSave();
  EXPECT_EQ(dialog.FileName, "/data/press.kfe");
  EXPECT_EQ(dialog.FileTitle(), "press.kfe");
  dialog.FileName = "1";  // what a form left as the name shows nowhere
  desk.dialogs.ChooseToSave(QString());
  dialog.ShowSave();
  EXPECT_EQ(desk.dialogs.Requests().last().request.file_name, "");
  EXPECT_TRUE(desk.dialogs.Requests().last().to_save);
  EXPECT_EQ(dialog.FileName, "");
  EXPECT_EQ(dialog.FileTitle(), "");
}

TEST_F(CommonDialogTest, PrinterDialogTellsWhetherItWasCancelled) {
  dialog.DialogTitle = "Print";
  EXPECT_TRUE(dialog.ShowPrinter(true));
  desk.printing.CancelDialogs(true);
  EXPECT_FALSE(dialog.ShowPrinter(false));

  const QList<FakePrinting::Chosen> expected = {{"Print", true}, {"Print", false}};
  EXPECT_EQ(desk.printing.Dialogs(), expected);
}

}  // namespace
}  // namespace kestrix
