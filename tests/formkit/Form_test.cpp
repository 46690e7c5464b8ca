#include "formkit/Form.h"

#include <QComboBox>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QTableWidget>
#include <QWindow>
#include <cstdlib>
#include <tuple>

#include "FormKitTest.h"
#include "store/DataControl.h"
#include "store/RecordSources.h"
#include "support/TestInstallation.h"

namespace kestrix {
namespace {

/// A form that counts how often it is made, and whose handlers fail as a test wants.
class LivingForm : public PlainForm {
  Q_OBJECT

 public:
  LivingForm(FormKit& kit, Log& log) : PlainForm(kit, QStringLiteral("living"), log) {
    box = &Add<QLineEdit>("box");
    button = &Add<QPushButton>("button");
    On(button, &QPushButton::clicked, &LivingForm::button_Click);
    On(box, &QLineEdit::textChanged, &LivingForm::box_Change);
    OnLostFocus(box, &LivingForm::box_LostFocus);
    OnGotFocus(box, &LivingForm::box_GotFocus);
  }

  void button_Click() { throw Failure(failure::kDiskFull, "The disk is full."); }
  void box_Change(const QString& text) { texts += text; }
  void box_LostFocus() {
    if (box->text() == "bad") throw Failure(failure::kTypeMismatch, "That is no number.");
  }
  void box_GotFocus() {
    if (box->text() == "odd") throw std::runtime_error("something odd");
  }

  QLineEdit* box = nullptr;
  QPushButton* button = nullptr;
  QStringList texts;
};

class FormTestOfLife : public FormKitTest {
 protected:
  FormSlot<LivingForm> slot{[this] {
    ++made;
    return std::make_unique<LivingForm>(kit, log);
  }};
  int made = 0;
};

TEST_F(FormTestOfLife, FirstReferenceMakesAndLoads) {
  slot.Unload();
  EXPECT_EQ(made, 0);
  EXPECT_FALSE(slot.IsLoaded());
  EXPECT_EQ(slot.IfLoaded(), nullptr);
  LivingForm& form = slot.Get();
  EXPECT_EQ(log, Log({"living load"}));
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(&slot.Get(), &form);
  EXPECT_EQ(made, 1);
}

TEST_F(FormTestOfLife, UnloadRunsItsRulesOnceAndEmptiesTheReference) {
  LivingForm& form = slot.Get();
  Show(form);
  log.clear();
  form.on_query_unload = [&] { form.UnloadForm(); };
  form.on_unload = [&] { form.UnloadForm(); };
  form.UnloadForm();
  EXPECT_EQ(log, Log({"living query", "living unload"}));
  EXPECT_FALSE(slot.IsLoaded());
  EXPECT_FALSE(form.isVisible());
  EXPECT_TRUE(form.IsUnloading());
  const QPointer<Form> gone = &form;
  Settle();
  EXPECT_TRUE(gone.isNull());
  EXPECT_NE(&slot.Get(), nullptr);
  EXPECT_EQ(made, 2);
}

TEST_F(FormTestOfLife, CloseBoxOfTheWindowUnloads) {
  Show(slot.Get());
  log.clear();
  CloseBox(slot.Get());
  EXPECT_EQ(log, Log({"living query", "living unload"}));
  EXPECT_FALSE(slot.IsLoaded());
}

TEST_F(FormTestOfLife, ModalFormDoesntStayMinimised) {
  LivingForm& form = slot.Get();
  ShowModal(form);
  form.showMinimized();
  EXPECT_TRUE(WaitUntil([&] {
    return !form.isMinimized() && form.windowHandle()->windowState() == Qt::WindowNoState &&
           form.windowHandle()->isExposed();
  }));
  EXPECT_TRUE(form.isModal());
}

TEST_F(FormTestOfLife, LoadThatUnloadsTheFormLetsItsCallerEnd) {
  FormSlot<PlainForm> failing([this] {
    auto form = std::make_unique<PlainForm>(kit, "failing", log);
    form->on_load = [made_form = form.get()] { made_form->UnloadForm(); };
    return form;
  });
  PlainForm& form = failing.Get();
  EXPECT_FALSE(failing.IsLoaded());
  form.setWindowTitle("still there");
  form.ShowForm();
  EXPECT_FALSE(form.isVisible());
  const QPointer<Form> gone = &form;
  Settle();
  EXPECT_TRUE(gone.isNull());
}

TEST_F(FormTestOfLife, FailureOfAClickIsShownOnceAndTheProgramGoesOn) {
  Show(slot.Get());
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN", "The disk is full.");
  Click("button");
  TypeInto("box", "goes on");
  EXPECT_EQ(TextOf("box"), "goes on");
}

TEST_F(FormTestOfLife, AFormThatIsUnloadedBehindTheBoxOfItsHandlerLivesUntilThatHasEnded) {
  LivingForm& form = slot.Get();
  Show(form);
  const QPointer<Form> living = &form;
  desk.messages.Expect(Tell(Icon::kCritical, "BELTROVAN", "The disk is full.")).WhileOpen([&] {
    form.UnloadForm();
    Settle();
    EXPECT_FALSE(slot.IsLoaded());
    EXPECT_FALSE(living.isNull()) << "its handler still stands below the box";
  });
  form.button->click();
  Settle();
  EXPECT_TRUE(living.isNull());
}

TEST_F(FormTestOfLife, FailureOfAFocusHandlerOrStepIsShown) {
  LivingForm& form = slot.Get();
  Show(form);
  TypeInto("box", "bad");
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN", "That is no number.");
  PressTab();
  EXPECT_EQ(FocusName(), "button");
  form.box->setText("odd");
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN", "something odd");
  PressShiftTab();
  EXPECT_EQ(FocusName(), "box");
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN", "in the step");
  form.FocusLater(form.button, [] { throw Failure(1, "in the step"); });
  Settle();
  EXPECT_EQ(FocusName(), "button");
}

TEST_F(FormTestOfLife, FailureOfEachLifeRuleIsShownAndTheLifeGoesOn) {
  FormSlot<PlainForm> failing([this] {
    auto form = std::make_unique<PlainForm>(kit, "failing", log);
    form->on_load = [] { throw Failure(1, "load"); };
    form->on_activate = [] { throw Failure(1, "activate"); };
    form->on_query_unload = [] { throw Failure(1, "query"); };
    form->on_unload = [] { throw Failure(1, "unload"); };
    return form;
  });
  for (const char* text : {"load", "activate", "query", "unload"})
    desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN", text);
  Show(failing.Get());
  failing.Unload();
  Settle();
  EXPECT_FALSE(failing.IsLoaded());
}

TEST_F(FormTestOfLife,
       ChangeRuleRunsAlsoWhenTheProgramSetsTheTextAndNoHandlerOnceTheUnloadRulesHaveRun) {
  LivingForm& form = slot.Get();
  form.box->setText("by program");
  EXPECT_EQ(form.texts, QStringList({"by program"}));
  form.UnloadForm();
  form.box->setText("too late");
  form.button->click();
  EXPECT_EQ(form.texts, QStringList({"by program"}));
}

TEST_F(FormTestOfLife, UnloadCommitsWhatIsPendingOrShowsWhyNotAndLetsGoOfTheFile) {
  TestInstallation place;
  place.GivenStudy(1);
  place.GivenTasks(1, "P1", 1);
  for (const QString stored : {"mine", "theirs"}) {
    LivingForm& form = slot.Get();
    auto* source = new DataControl("dtsorce2", &form);
    source->SetDatabaseName(place.Study(1));
    source->SetRecordSource(sources::RiskSql("P1"));
    source->Refresh();
    ASSERT_TRUE(QFile::exists(place.StudySign(1)));
    source->Recordset().Set("HazrdLoctn", stored == "mine" ? "mine" : "mine too");
    if (stored == "theirs") {
      place.Exec(place.Study(1), "UPDATE Risk_records SET HazrdLoctn='theirs'");
      desk.messages.ExpectTell(
          Icon::kCritical, "BELTROVAN",
          "Somebody else has changed HazrdLoctn of this record meanwhile. Their text stands; "
          "please look at it and change it again if need be.\n\nHazrdLoctn\nTheirs: theirs\n"
          "Yours: mine too");
    }
    form.UnloadForm();
    EXPECT_EQ(place.Column(place.Study(1), "SELECT HazrdLoctn FROM Risk_records"),
              QStringList{stored});
    EXPECT_FALSE(QFile::exists(place.StudySign(1)));
    EXPECT_FALSE(slot.IsLoaded());
  }
}

TEST_F(FormTestOfLife, LoadSettlesTheComboBoxesOfTheForm) {
  LivingForm& form = slot.Get();
  auto& combo = form.Add<QComboBox>("combo");
  combo.setEditable(true);
  ASSERT_NE(combo.completer(), nullptr);
  form.LoadForm();
  EXPECT_EQ(combo.completer(), nullptr);
  EXPECT_EQ(combo.insertPolicy(), QComboBox::NoInsert);
}

TEST_F(FormTestOfLife, PassOverRunsEveryStepWhateverBecomesOfTheOnesBefore) {
  QStringList done;
  PassOver([&] { done += "one"; }, [] { throw Failure(1, "two"); }, [&] { done += "three"; });
  EXPECT_EQ(done, QStringList({"one", "three"}));
}

/// Where a form comes up. A window manager has its own say in it, so this isn't run under one.
class FormPlaceTest : public FormTestOfLife {};

TEST_F(FormPlaceTest, AFormComesUpWholeInTheMiddleOfTheScreenAndStaysWhereItIsPut) {
  PlainForm& frame = MakeForm("frame");
  frame.move(0, 0);
  Show(frame);
  LivingForm& form = slot.Get();
  ShowModal(form);
  const QRect screen = frame.screen()->availableGeometry();
  const QPoint off = form.frameGeometry().center() - screen.center();
  EXPECT_LE(std::abs(off.x()), 1);
  EXPECT_LE(std::abs(off.y()), 1);
  const QPoint corner = screen.topLeft() + QPoint(7, 9);
  form.move(corner);
  form.hide();
  ShowModal(form);
  EXPECT_EQ(form.pos(), corner);
}

TEST_F(FormPlaceTest, AFormThatIsLargerThanTheScreenShowsItsBeginning) {
  PlainForm& frame = MakeForm("frame");
  Show(frame);
  LivingForm& form = slot.Get();
  const QRect screen = frame.screen()->availableGeometry();
  form.resize(screen.size() + QSize(100, 100));
  Show(form);
  EXPECT_EQ(form.pos(), screen.topLeft());
}

TEST_F(FormPlaceTest, AFormOpensAsItsUserLeftItInThisRun) {
  const auto part = [&] {
    auto& splitter = slot.Get().Add<QSplitter>("splitter");
    splitter.addWidget(new QLabel("left"));
    splitter.addWidget(new QLabel("right"));
    auto& table = slot.Get().Add<QTableWidget>("table");
    table.setColumnCount(2);
    table.setHorizontalHeaderLabels({"one", "two"});
    Show(slot.Get());
    return std::pair(&splitter, table.horizontalHeader());
  };
  auto [splitter, header] = part();
  const QSize left = slot.Get().size() + QSize(60, 40);
  slot.Get().resize(left);
  Settle();
  splitter->setSizes({50, left.width() - 50});
  const QList<int> division = splitter->sizes();
  header->resizeSection(0, 77);
  slot.Unload();
  Settle();
  std::tie(splitter, header) = part();
  EXPECT_EQ(slot.Get().size(), left);
  EXPECT_EQ(splitter->sizes(), division);
  EXPECT_EQ(header->sectionSize(0), 77);
}

TEST_F(FormPlaceTest, AFormOpensAsLargeAsItsFontNeeds) {
  const QFont font = QApplication::font();
  QFont large = font;
  large.setPixelSize(2 * QFontInfo(font).pixelSize());
  QApplication::setFont(large);
  LivingForm& form = slot.Get();
  form.button->setText("a text that is rather wider than the form was designed");
  form.box->setMinimumWidth(100);
  const QSize design = form.size();
  Show(form);
  QApplication::setFont(font);
  const QSize room = form.screen()->availableSize();
  EXPECT_EQ(form.height(), std::min(2 * design.height(), room.height()));
  EXPECT_GE(form.width(), std::min(form.button->sizeHint().width(), room.width()));
  EXPECT_EQ(form.box->minimumWidth(), 200);
}

TEST_F(FormPlaceTest, AFormThatTheScreenHasNoRoomForScrolls) {
  LivingForm& form = slot.Get();
  const QSize room = form.screen()->availableSize();
  form.button->setMinimumHeight(room.height() + 50);
  Show(form);
  EXPECT_LE(form.height(), room.height());
  const auto* area = form.findChild<QScrollArea*>("PageArea");
  ASSERT_NE(area, nullptr);
  EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
  Click("box");
  EXPECT_EQ(FocusName(), "box");
}

}  // namespace
}  // namespace kestrix

#include "Form_test.moc"
