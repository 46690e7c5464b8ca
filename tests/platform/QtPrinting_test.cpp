#include "platform/QtPrinting.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>
#include <QTimer>
#include <functional>

#include "support/Files.h"

namespace kestrix {
namespace {

class QtPrintingTest : public ::testing::Test {
 protected:
  [[nodiscard]] QString At(const QString& name) const { return folder_.filePath(name); }
  /// Does `act` on the printer dialog that opens next.
  void InDialog(const std::function<void(QPrintDialog&)>& act) {
    QTimer::singleShot(0, qApp, [this, act] {
      auto* dialog = qobject_cast<QPrintDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return InDialog(act);
      act(*dialog);
    });
  }
  /// Chooses the file `path` as the printer.
  void ChooseFile(const QString& path) {
    InDialog([path](QPrintDialog& dialog) {
      auto* name = dialog.findChild<QLineEdit*>("filename");
      ASSERT_NE(name, nullptr);
      name->setText(path);
      dialog.accept();
    });
    ASSERT_TRUE(printing_.ChoosePrinter("Print", false));
  }

  QTemporaryDir folder_;
  QtPrinting printing_;
};

TEST_F(QtPrintingTest, DialogHasItsTitleAndOffersTheSelectionWhenThereIsOne) {
  for (const bool selection : {true, false}) {
    InDialog([selection](QPrintDialog& dialog) {
      EXPECT_EQ(dialog.windowTitle(), "Print");
      EXPECT_EQ(dialog.testOption(QAbstractPrintDialog::PrintSelection), selection);
      EXPECT_FALSE(dialog.testOption(QAbstractPrintDialog::PrintPageRange));
      EXPECT_EQ(dialog.printRange(),
                selection ? QAbstractPrintDialog::Selection : QAbstractPrintDialog::AllPages);
      dialog.reject();
    });
    EXPECT_FALSE(printing_.ChoosePrinter("Print", selection));
  }
}

TEST_F(QtPrintingTest, PrintingWithoutAChosenPrinterFails) {
  EXPECT_EQ(FailureOf([&] { printing_.Print(QTextDocument("Text")); }), failure::kDeviceError);
}

TEST_F(QtPrintingTest, TextIsPrintedIntoTheChosenFile) {
  ChooseFile(At("out.pdf"));
  printing_.Print(QTextDocument("Text"));
  EXPECT_TRUE(ReadFile(At("out.pdf")).startsWith("%PDF-"));
}

TEST_F(QtPrintingTest, FileThatCannotBeWrittenFails) {
  ChooseFile(At("out.pdf"));
  ASSERT_TRUE(folder_.remove());
  EXPECT_EQ(FailureOf([&] { printing_.Print(QTextDocument("Text")); }), failure::kDeviceError);
}

}  // namespace
}  // namespace kestrix
