#include "preview/RiskBookRpts.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMouseEvent>
#include <QPdfWriter>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include "checks/FinishedTask.h"
#include "paper/Pdf.h"
#include "preview/Front.h"
#include "preview/PageView.h"
#include "support/FakePlatform.h"
#include "support/Printers.h"
#include "support/TestInstallation.h"

namespace kestrix::testing {
namespace {

using preview::PageView;
using preview::RiskBookRpts;

constexpr int kPatience = 30000;

QApplication& Application() {
  static int count = 1;
  static char name[] = "preview";
  static char* words[] = {name, nullptr};
  // It outlives the threads that made pages.
  static auto* application = new QApplication(count, words);
  return *application;
}

/// Counts the pages that it gets.
class FakePagePrinter : public PagePrinter {
 public:
  class Device : public QPdfWriter {
   public:
    Device(QBuffer& buffer, int& pages) : QPdfWriter(&buffer), pages_(pages) { pages_ = 1; }
    bool newPage() override {
      ++pages_;
      return QPdfWriter::newPage();
    }

   private:
    int& pages_;
  };
  std::unique_ptr<QPagedPaintDevice> Choose(const QString& /*title*/) override {
    buffer.open(QIODevice::WriteOnly);
    return std::make_unique<Device>(buffer, pages);
  }
  QBuffer buffer;
  int pages = 0;
};

class PreviewTest : public ::testing::Test {
 protected:
  PreviewTest() {
    Application();
    desk_.clock.SetToday(QDate(2026, 6, 15));
    installation_.GivenOrganisation(QStringLiteral("Press shop"), 1);
    installation_.GivenOrganisation(QStringLiteral("Welding"), 2);
    for (const char* number : {"P1", "P2", "P3"}) {
      installation_.GivenProject(1, QString::fromLatin1(number), QStringLiteral("Press shop"));
    }
    installation_.GivenProject(2, QStringLiteral("W1"), QStringLiteral("Welding"));
    for (int i = 0; i < 30; ++i) GivenTask(i);
    TestInstallation::Exec(installation_.Register(),
                           QStringLiteral("UPDATE Orgtmp SET OrgNameTMP=1"));
  }

  void TearDown() override {
    window_.reset();
    QThreadPool::globalInstance()->waitForDone();
  }

  void GivenTask(int number) {
    last_ = installation_.GivenTask(
        1, With(FinishedTask(),
                {{QStringLiteral("Project_Number"), QStringLiteral("P2")},
                 {QStringLiteral("RefNo"), QStringLiteral("%1.00").arg(number, 2, 10, QChar(u'0'))},
                 {QStringLiteral("FuntnTaskMachry"), QStringLiteral("Task-%1-").arg(number)}}));
  }

  void Open(const preview::Request& request = {}) {
    window_ = std::make_unique<RiskBookRpts>(desk_.platform(), printer_,
                                             Installation(installation_.Folder()));
    window_->show();
    window_->Open(request);
  }
  void OpenWhole(const preview::Request& request = {}) {
    Open(request);
    AwaitPages();
  }
  void AwaitPages() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return IsEnabled("ReportExport"); }, kPatience))
        << Message().toStdString();
  }

  template <class Widget>
  [[nodiscard]] Widget& Find(const char* name) const {
    auto* found = window_->findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  [[nodiscard]] bool IsEnabled(const char* name) const { return Find<QWidget>(name).isEnabled(); }
  [[nodiscard]] QString Message() const { return Find<QLabel>("ReportMessage").text(); }
  [[nodiscard]] QString Chosen(const char* list) const {
    const QListWidgetItem* item = Find<QListWidget>(list).currentItem();
    return item == nullptr ? QString() : item->text();
  }
  [[nodiscard]] PageView& Pages() const { return Find<PageView>("ReportPreview"); }
  [[nodiscard]] QString TextOfPage() const { return Pages().TextOf(Pages().CurrentPage()); }
  void Click(const char* button) { QTest::mouseClick(&Find<QPushButton>(button), Qt::LeftButton); }

  TestInstallation installation_;
  FakePlatform desk_;
  FakePagePrinter printer_;
  qint64 last_ = 0;
  std::unique_ptr<RiskBookRpts> window_;
};

TEST_F(PreviewTest, ItOpensOnTheOrganisationOpenedLastAndTheProjectOfTheNewestTask) {
  OpenWhole();
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("RiskBookRpts"));
  EXPECT_EQ(Chosen("ReportOrganisations"), QStringLiteral("Press shop"));
  EXPECT_EQ(Chosen("ReportProjects"), QStringLiteral("P2"));
  EXPECT_EQ(Find<QListWidget>("ReportProjects").count(), 3);
  const int pages = Pages().PageCount();
  EXPECT_GT(pages, 30);
  EXPECT_EQ(Find<QLabel>("ReportPages").text(), QStringLiteral("Page 1 of %1").arg(pages));
  EXPECT_EQ(Find<QListView>("ReportThumbnails").model()->rowCount(), pages);
}

TEST_F(PreviewTest, TheCombosHoldTheWordsOfTheCommandWithACapital) {
  OpenWhole();
  const auto words = [this](const char* name) {
    QStringList list;
    auto& combo = Find<QComboBox>(name);
    for (int i = 0; i < combo.count(); ++i) list += combo.itemText(i);
    return list.join(u' ');
  };
  EXPECT_EQ(words("ReportKind"), QStringLiteral("Full Register Sheets Actions Residual Changes"));
  EXPECT_EQ(words("ReportPaper"), QStringLiteral("A4 A3 Letter"));
  EXPECT_EQ(words("ReportOnly"), QStringLiteral("All Open Medium High Not-reduced"));
  EXPECT_EQ(words("ReportOrder"), QStringLiteral("Reference Risk Phase Location"));
}

TEST_F(PreviewTest, AChoiceMakesOtherPages) {
  OpenWhole();
  const int full = Pages().PageCount();
  Find<QComboBox>("ReportKind").setCurrentText(QStringLiteral("Register"));
  AwaitPages();
  EXPECT_LT(Pages().PageCount(), full);
  Find<QLineEdit>("ReportNumber").setText(QStringLiteral("D-17"));
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return TextOfPage().contains(QStringLiteral("D-17")); }, kPatience));
  Find<QListWidget>("ReportOrganisations").setCurrentRow(1);
  ASSERT_TRUE(QTest::qWaitFor([this] { return TextOfPage().contains(QStringLiteral("Welding")); },
                              kPatience));
  EXPECT_EQ(Chosen("ReportProjects"), QStringLiteral("W1"));
}

TEST_F(PreviewTest, ChangesCantBeToldAndNothingCanBeExported) {
  OpenWhole();
  Find<QComboBox>("ReportKind").setCurrentText(QStringLiteral("Changes"));
  EXPECT_FALSE(IsEnabled("ReportExport"));
  EXPECT_FALSE(Message().isEmpty());
  EXPECT_EQ(Pages().PageCount(), 0);
}

TEST_F(PreviewTest, KeysGoFromLinkToLinkAndFollowThem) {
  OpenWhole();
  PageView& pages = Pages();
  pages.GoTo(1);
  ASSERT_TRUE(pages.TextOf(1).contains(QStringLiteral("Contents")));
  pages.setFocus();
  QTest::keyClick(&pages, Qt::Key_Return);
  EXPECT_EQ(pages.CurrentPage(), 1) << "no link is marked yet";
  QTest::keyClick(&pages, Qt::Key_Down, Qt::ControlModifier);
  EXPECT_EQ(Message(), QStringLiteral("Enter goes to \"Summary\"."));
  // The text and the number of its page, then the next line.
  QTest::keyClick(&pages, Qt::Key_Down, Qt::ControlModifier);
  QTest::keyClick(&pages, Qt::Key_Down, Qt::ControlModifier);
  EXPECT_EQ(Message(), QStringLiteral("Enter goes to \"What the checks found\"."));
  QTest::keyClick(&pages, Qt::Key_Up, Qt::ControlModifier);
  EXPECT_EQ(Message(), QStringLiteral("Enter goes to \"Summary\"."));
  QTest::keyClick(&pages, Qt::Key_Return);
  EXPECT_TRUE(pages.TextOf(pages.CurrentPage()).contains(QStringLiteral("Tasks by band")));
}

TEST_F(PreviewTest, FindGoesFromPlaceToPlace) {
  OpenWhole();
  auto& find = Find<QLineEdit>("ReportFind");
  find.setFocus();
  QTest::keyClicks(&find, QStringLiteral("task-17-"));
  const int first = Pages().CurrentPage();
  EXPECT_TRUE(Pages().TextOf(first).contains(QStringLiteral("Task-17-")) ||
              Pages().TextOf(first + 1).contains(QStringLiteral("Task-17-")));
  std::set<int> pages;
  for (int i = 0; i < 4; ++i) {
    QTest::keyClick(&find, Qt::Key_Return);
    pages.insert(Pages().CurrentPage());
  }
  EXPECT_GE(pages.size(), 3u) << "contents, register, sheet";
  QTest::keyClicks(&find, QStringLiteral("nowhere"));
  EXPECT_TRUE(Message().contains(QStringLiteral("isn't on the pages")));
}

TEST_F(PreviewTest, ARowOfTheRegisterLeadsToItsSheet) {
  OpenWhole();
  Pages().GoToAnchor(QStringLiteral("register"));
  const int before = Pages().CurrentPage();
  // The place of a link on the screen is found as a hand does: by the shape of the pointer.
  QWidget& view = *Pages().viewport();
  bool followed = false;
  for (int y = 0; y < view.height() && !followed; y += 4) {
    for (int x = 0; x < view.width() && !followed; x += 6) {
      QMouseEvent move(QEvent::MouseMove, QPointF(x, y), view.mapToGlobal(QPointF(x, y)),
                       Qt::NoButton, Qt::NoButton, Qt::NoModifier);
      QApplication::sendEvent(&view, &move);
      if (view.cursor().shape() != Qt::PointingHandCursor) continue;
      QTest::mouseClick(&view, Qt::LeftButton, {}, {x, y});
      followed = true;
    }
  }
  ASSERT_TRUE(followed);
  EXPECT_GT(Pages().CurrentPage(), before);
  EXPECT_TRUE(TextOfPage().contains(QStringLiteral("Hazard description")));
}

TEST_F(PreviewTest, ItOpensAtATask) {
  OpenWhole({QStringLiteral("Press shop"), QStringLiteral("P2"), last_});
  ASSERT_TRUE(QTest::qWaitFor([this] { return Pages().CurrentPage() > 5; }, kPatience));
  EXPECT_TRUE(TextOfPage().contains(QStringLiteral("Task-29-")));
}

TEST_F(PreviewTest, AnExportHasTheFormatOfItsEnding) {
  OpenWhole();
  for (const auto& [ending, beginning] : {std::pair{"pdf", "%PDF-1"},
                                          {"csv", "\xEF\xBB\xBFReference"},
                                          {"xlsx", "PK"},
                                          {"html", "<!DOCTYPE html>"},
                                          {"json", "{"}}) {
    const QString path = installation_.Outside(QStringLiteral("r.") + QString::fromLatin1(ending));
    desk_.dialogs.ChooseToSave(path);
    Click("ReportExport");
    AwaitPages();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << ending << Message().toStdString();
    EXPECT_TRUE(file.readAll().startsWith(beginning)) << ending;
  }
}

TEST_F(PreviewTest, AFileThatCantBeWrittenIsTold) {
  OpenWhole();
  desk_.dialogs.ChooseToSave(installation_.Outside(QStringLiteral("no/such/r.csv")));
  Click("ReportExport");
  AwaitPages();
  EXPECT_TRUE(Message().contains(QStringLiteral("can't be written")));
}

TEST_F(PreviewTest, AnExportCanBeStoppedAndLeavesNothing) {
  OpenWhole();
  const QString path = installation_.Outside(QStringLiteral("r.pdf"));
  desk_.dialogs.ChooseToSave(path);
  Click("ReportExport");
  Click("ReportStop");
  AwaitPages();
  EXPECT_FALSE(QFile::exists(path));
  EXPECT_TRUE(Message().contains(QStringLiteral("stopped")));
}

TEST_F(PreviewTest, EveryPageIsPrinted) {
  OpenWhole();
  Find<QComboBox>("ReportKind").setCurrentText(QStringLiteral("Register"));
  AwaitPages();
  Click("ReportPrint");
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return Message() == QStringLiteral("Printed."); }, kPatience));
  EXPECT_EQ(printer_.pages, Pages().PageCount());
}

TEST_F(PreviewTest, ADamagedStudySaysSoAndTheOthersAreShown) {
  QFile study(installation_.Study(1));
  ASSERT_TRUE(study.open(QIODevice::WriteOnly | QIODevice::Truncate));
  study.write("no database");
  study.close();
  Open();
  ASSERT_TRUE(QTest::qWaitFor(
      [this] { return Message().contains(QStringLiteral("risk_esmatn1.mdb")); }, kPatience));
  EXPECT_FALSE(IsEnabled("ReportExport"));
  Find<QListWidget>("ReportOrganisations").setCurrentRow(1);
  AwaitPages();
  EXPECT_TRUE(TextOfPage().contains(QStringLiteral("Welding")));
}

TEST_F(PreviewTest, AChangeOnTheDiskIsReadAndThePageStays) {
  OpenWhole();
  Pages().GoTo(7);
  const int pages = Pages().PageCount();
  GivenTask(30);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Pages().PageCount() > pages; }, kPatience));
  EXPECT_EQ(Pages().CurrentPage(), 7);
}

TEST_F(PreviewTest, ZoomAndFitWidth) {
  OpenWhole();
  auto& zoom = Find<QComboBox>("ReportZoom");
  zoom.setEditText(QStringLiteral("150 %"));
  QTest::keyClick(zoom.lineEdit(), Qt::Key_Return);
  EXPECT_NEAR(Pages().Zoom(), 1.5, 0.001);
  EXPECT_FALSE(Find<QPushButton>("ReportFitWidth").isChecked());
  Click("ReportFitWidth");
  EXPECT_LT(Pages().Zoom(), 1.5);
  EXPECT_EQ(zoom.currentText(), QStringLiteral("%1 %").arg(qRound(Pages().Zoom() * 100)));
}

TEST_F(PreviewTest, NothingIsWrittenIntoTheInstallation) {
  const auto all = [this] {
    QMap<QString, QDateTime> files;
    QDirIterator entries(installation_.Folder(),
                         QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
      entries.next();
      files.insert(entries.filePath(), entries.fileInfo().lastModified());
    }
    return files;
  };
  const auto before = all();
  OpenWhole();
  EXPECT_EQ(all(), before);
  window_.reset();
  EXPECT_EQ(all(), before);
}

TEST_F(PreviewTest, EveryControlHasAName) {
  OpenWhole();
  for (const char* name :
       {"ReportOrganisations", "ReportProjects", "ReportKind",       "ReportPaper",
        "ReportOnly",          "ReportOrder",    "ReportNumber",     "ReportRevision",
        "ReportPreview",       "ReportExport",   "ReportPrint",      "ReportRefresh",
        "ReportPages",         "ReportMessage",  "ReportDate",       "ReportFind",
        "ReportZoom",          "ReportFitWidth", "ReportThumbnails", "ReportProgress",
        "ReportStop"}) {
    EXPECT_FALSE(Find<QWidget>(name).accessibleName().isEmpty()) << name;
  }
  EXPECT_TRUE(Pages().accessibleDescription().contains(QStringLiteral("Risk assessment")));
}

TEST_F(PreviewTest, ALaterStartHandsItsRequestOver) {
  preview::Front first(installation_.Folder());
  EXPECT_FALSE(first.HandOver({}));
  preview::Request taken;
  first.Listen([&taken](const preview::Request& request) { taken = request; });
  bool handed_over = false;
  // The later one is another process; here it is another thread.
  std::unique_ptr<QThread> later(QThread::create([&] {
    handed_over = preview::Front(installation_.Folder())
                      .HandOver({QStringLiteral("Welding"), QStringLiteral("W1"), 7});
  }));
  later->start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return later->isFinished(); }, kPatience));
  EXPECT_TRUE(handed_over);
  EXPECT_EQ(taken.organisation, QStringLiteral("Welding"));
  EXPECT_EQ(taken.project, QStringLiteral("W1"));
  EXPECT_EQ(taken.task, 7);
}

}  // namespace
}  // namespace kestrix::testing
