#include "platform/QtFileDialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <functional>

#include "support/Files.h"

namespace kestrix {
namespace {

TEST(ParseFilterTest, LabelsAndPatternsComeInPairs) {
  const std::pair<const char*, QList<NameFilter>> rows[] = {
      {"Pictures|*.jpg;*.bmp|Text (*.txt)|*.txt",
       {{"Pictures", {"*.jpg", "*.bmp"}}, {"Text (*.txt)", {"*.txt"}}}},
      {"All Files (*.*)|*.*", {{"All Files (*.*)", {"*"}}}},
      {"Text|*.txt|", {{"Text", {"*.txt"}}}},
      {"", {}},
      // A label without patterns, or with one that the dialog can't read, lets every name through.
      {"Folders|Folders|*..", {{"Folders", {"Folders"}}, {"*..", {"*"}}}},
      {"Odd|a(b);|Next|*.c", {{"Odd", {"*"}}, {"Next", {"*.c"}}}}};
  for (const auto& [filter, expected] : rows) EXPECT_EQ(ParseFilter(filter), expected) << filter;
}

TEST(DesktopFilterTest, PatternsStandOnceBehindTheLabel) {
  EXPECT_EQ(DesktopFilter({"All Files (*.kfe*)", {"*.kfe*"}}), "All Files (*.kfe*)");
  EXPECT_EQ(DesktopFilter({"Pictures", {"*.jpg", "*.bmp"}}), "Pictures (*.jpg *.bmp)");
}

class QtFileDialogsTest : public ::testing::Test {
 protected:
  void SetUp() override { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
  [[nodiscard]] QString At(const QString& name) const { return folder_.filePath(name); }
  /// Does `act` on the dialog that opens next.
  void InDialog(const std::function<void(QFileDialog&)>& act) {
    QTimer::singleShot(0, qApp, [this, act] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return InDialog(act);
      act(*dialog);
    });
  }
  static void TypeName(QFileDialog& dialog, const QString& name) {
    auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit");
    ASSERT_NE(edit, nullptr);
    edit->setText(name);
    static_cast<QDialog&>(dialog).accept();
  }

  QTemporaryDir folder_;
  QtFileDialogs dialogs_;
};

TEST_F(QtFileDialogsTest, OpeningGivesTheFullPathThatWasChosen) {
  WriteFile(At("plan.jpg"), "x");
  QString title;
  QStringList filters;
  QString filter;
  InDialog([&](QFileDialog& dialog) {
    title = dialog.windowTitle();
    filters = dialog.nameFilters();
    filter = dialog.selectedNameFilter();
    TypeName(dialog, At("plan.jpg"));
  });
  EXPECT_EQ(dialogs_.Open({"BELTROVAN : Select", "Folders|Folders|*..", 2, "", ""}),
            At("plan.jpg"));
  EXPECT_EQ(title, "BELTROVAN : Select");
  EXPECT_EQ(filters, QStringList({"Folders (Folders)", "*.. (*)"}));
  EXPECT_EQ(filter, "*.. (*)");
}

TEST_F(QtFileDialogsTest, WithoutADocumentsFolderItOpensAtHomeWithNoNameTyped) {
  const QByteArray home = qgetenv("HOME");
  qputenv("HOME", folder_.path().toLocal8Bit());
  QString opened;
  QString typed = "?";
  InDialog([&](QFileDialog& dialog) {
    opened = dialog.directory().absolutePath();
    if (auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit")) typed = edit->text();
    dialog.reject();
  });
  dialogs_.Open({"Open", "All Files (*.*)|*.*", 1, "", ""});
  qputenv("HOME", home);
  EXPECT_EQ(opened, QDir(folder_.path()).absolutePath());
  EXPECT_EQ(typed, "");
}

TEST_F(QtFileDialogsTest, FilterIndexOutsideTheChoicesIsTheFirst) {
  QString filter;
  InDialog([&](QFileDialog& dialog) {
    filter = dialog.selectedNameFilter();
    dialog.reject();
  });
  EXPECT_EQ(dialogs_.Open({"Open", "A|*.a|B|*.b", 7, "", ""}), "");
  EXPECT_EQ(filter, "A (*.a)");
}

TEST_F(QtFileDialogsTest, SavingGivesTheNameAsItWasTypedWithoutAnExtension) {
  InDialog([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
    TypeName(dialog, At("notes"));
  });
  EXPECT_EQ(dialogs_.Save({"Save As", "All Files (*.kfe*)|*.kfe*", 1, "", ""}), At("notes"));
  EXPECT_FALSE(QFileInfo::exists(At("notes")));
}

TEST_F(QtFileDialogsTest, CancelledDialogGivesNothingAndTheNextOneOpensWhereItWasLeft) {
  InDialog([&](QFileDialog& dialog) {
    dialog.setDirectory(folder_.path());
    dialog.reject();
  });
  EXPECT_EQ(dialogs_.Open({"Open", "All Files (*.*)|*.*", 1, "", ""}), "");
  QString opened_in;
  InDialog([&](QFileDialog& dialog) {
    opened_in = dialog.directory().absolutePath();
    dialog.reject();
  });
  EXPECT_EQ(dialogs_.Save({"Save", "All Files (*.*)|*.*", 1, "", ""}), "");
  EXPECT_EQ(opened_in, folder_.path());
}

TEST_F(QtFileDialogsTest, DialogLiesOverTheWindowInFront) {
  QWidget window;
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  QWidget* parent = nullptr;
  InDialog([&](QFileDialog& dialog) {
    parent = dialog.parentWidget();
    dialog.reject();
  });
  (void)dialogs_.Open({"Open", "", 1, "", ""});
  EXPECT_EQ(parent, &window);
}

}  // namespace
}  // namespace kestrix
