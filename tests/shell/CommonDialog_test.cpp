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
  dialog.DialogTitle = QStringLiteral("Open");
  dialog.Filter = QStringLiteral("All Files (*.*)|*.*");
  dialog.FilterIndex = 2;
  dialog.FileName = QStringLiteral("/data/before.kfe");
  desk.dialogs.ChooseToOpen(QStringLiteral("/data/guards.kfe"));

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

TEST_F(CommonDialogTest, HoldsWhatWasChosenToSave) {
  desk.dialogs.ChooseToSave(QStringLiteral("/data/press.kfe"));

  dialog.ShowSave();

  EXPECT_EQ(dialog.FileName, "/data/press.kfe");
  EXPECT_EQ(dialog.FileTitle(), "press.kfe");
  EXPECT_TRUE(desk.dialogs.Requests().first().to_save);
}

TEST_F(CommonDialogTest, WhatAFormLeftAsTheNameShowsNowhere) {
  dialog.FileName = QStringLiteral("1");
  desk.dialogs.ChooseToSave(QString());

  dialog.ShowSave();

  EXPECT_EQ(desk.dialogs.Requests().first().request.file_name, "");
}

TEST_F(CommonDialogTest, CancelledDialogLeavesNoNameAndNoTitleOfAnEarlierUse) {
  desk.dialogs.ChooseToOpen(QStringLiteral("/data/guards.kfe"));
  desk.dialogs.ChooseToOpen(QString());
  dialog.ShowOpen();

  dialog.ShowOpen();

  EXPECT_EQ(dialog.FileName, "");
  EXPECT_EQ(dialog.FileTitle(), "");
}

TEST_F(CommonDialogTest, PrinterDialogTellsWhetherItWasCancelled) {
  dialog.DialogTitle = QStringLiteral("Print");
  EXPECT_TRUE(dialog.ShowPrinter(true));
  desk.printing.CancelDialogs(true);
  EXPECT_FALSE(dialog.ShowPrinter(false));

  const QList<FakePrinting::Chosen> expected = {{QStringLiteral("Print"), true},
                                                {QStringLiteral("Print"), false}};
  EXPECT_EQ(desk.printing.Dialogs(), expected);
}

}  // namespace
}  // namespace kestrix
