#include "formkit/FocusEvents.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>

#include "FormKitTest.h"
#include "formkit/Controls.h"

namespace kestrix {
namespace {

class FocusEventsTest : public FormKitTest {
 protected:
  /// A form with the boxes `first` and `second` and the button `go`, in front, with the focus in
  /// `first`.
  void SetUp() override {
    form = &MakeForm("form");
    first = &form->AddBox("first");
    second = &form->AddBox("second");
    go = &form->AddButton("go", "&Go");
    form->Watch(*go);
    Show(*form);
    Click("first");
    log.clear();
  }

  /// As long as `first` is empty it holds the focus.
  void FirstHoldsFocusWhileEmpty() {
    form->Watch(*first, [this] {
      if (first->text().isEmpty()) form->FocusLater(first);
    });
  }

  PlainForm* form = nullptr;
  QLineEdit* first = nullptr;
  QLineEdit* second = nullptr;
  QPushButton* go = nullptr;
};

TEST_F(FocusEventsTest, TabTellsTheControlThatLosesBeforeTheOneThatGets) {
  PressTab();
  EXPECT_EQ(log, Log({"first lost", "second got"}));
}

TEST_F(FocusEventsTest, ClickRunsBehindTheLostFocusOfTheFieldBefore) {
  Click("go");
  EXPECT_EQ(log, Log({"first lost", "go got", "go clicked"}));
}

TEST_F(FocusEventsTest, LaterHandlerReplacesTheOneBefore) {
  kit.focus.OnLostFocus(first, [this] { log += "new handler"; });
  PressTab();
  EXPECT_EQ(log, Log({"new handler", "second got"}));
}

TEST_F(FocusEventsTest, HeldFocusComesBackAndEatsTheKeyOrTheClickThatTookIt) {
  FirstHoldsFocusWhileEmpty();
  const QList<std::function<void()>> tries{[this] { PressTab(); }, [this] { Click("go"); },
                                           [this] { PressKey(Qt::Key_G, Qt::AltModifier); }};
  for (const auto& attempt : tries) {
    attempt();
    EXPECT_EQ(TakeLog(), Log({"first lost", "first got"}));
    EXPECT_FALSE(go->isDown());
    EXPECT_EQ(FocusName(), "first");
  }
  DoubleClick("go");
  EXPECT_FALSE(TakeLog().contains("go clicked")) << "both presses";
  EXPECT_EQ(FocusName(), "first");

  Type("x");
  Click("go");
  EXPECT_EQ(log, Log({"first lost", "go got", "go clicked"}));
}

TEST_F(FocusEventsTest, TwoFieldsThatBothHoldTheFocusDontChaseEachOther) {
  FirstHoldsFocusWhileEmpty();
  form->Watch(*second, [this] { form->FocusLater(second); });
  PressTab();
  EXPECT_EQ(log, Log({"first lost", "first got"}));
}

TEST_F(FocusEventsTest, MnemonicMovesTheFocusFirst) {
  PressKey(Qt::Key_G, Qt::AltModifier);
  EXPECT_EQ(log, Log({"first lost", "go got", "go clicked"}));
  EXPECT_EQ(FocusName(), "go");
}

TEST_F(FocusEventsTest, MnemonicOfACheckBoxTogglesIt) {
  auto& check = form->Add<QCheckBox>("check");
  check.setText("&Really");
  Settle();
  PressKey(Qt::Key_R, Qt::AltModifier);
  EXPECT_TRUE(check.isChecked());
  EXPECT_EQ(log, Log({"first lost"}));
}

TEST_F(FocusEventsTest, FocusLaterRunsItsStepWithTheFocusThere) {
  second->setText("some text");
  form->FocusLater(second, [this] {
    log += "then in " + FocusName();
    second->setSelection(0, 4);
  });
  EXPECT_EQ(FocusName(), "first");
  Settle();
  EXPECT_EQ(log, Log({"first lost", "second got", "then in second"}));
  EXPECT_EQ(SelectedTextOf("second"), "some");
}

TEST_F(FocusEventsTest, LastFocusLaterWins) {
  form->FocusLater(second, [this] { log += "second's step"; });
  form->FocusLater(go);
  Settle();
  EXPECT_EQ(log, Log({"first lost", "go got"}));
}

TEST_F(FocusEventsTest, FocusLaterToAControlThatIsHiddenDisabledOrGoneDoesNothing) {
  second->hide();
  form->FocusLater(second, [this] { log += "step"; });
  Settle();
  go->setEnabled(false);
  form->FocusLater(go, [this] { log += "step"; });
  Settle();
  second->show();
  form->FocusLater(second, [this] { log += "step"; });
  delete second;
  Settle();
  EXPECT_EQ(log, Log());
  EXPECT_EQ(FocusName(), "first");
}

TEST_F(FocusEventsTest, FocusHeldByAControlThatThenHidesStaysWhereItWent) {
  form->Watch(*first, [this] {
    form->FocusLater(first);
    first->hide();
  });
  PressTab();
  EXPECT_EQ(log, Log({"first lost", "second got"}));
}

TEST_F(FocusEventsTest, FocusSentElsewhereLetsTheClickHappenFirst) {
  form->Watch(*first, [this] { form->FocusLater(second); });
  Click("go");
  EXPECT_EQ(log, Log({"first lost", "go got", "go clicked", "go lost", "second got"}));
}

TEST_F(FocusEventsTest, HidingOrDisablingTheControlTellsItsLostFocusOnce) {
  for (const bool hide : {true, false}) {
    Click("first");
    log.clear();
    hide ? first->hide() : first->setEnabled(false);
    Settle();
    EXPECT_EQ(log, Log({"first lost", "second got"})) << hide;
    first->show();
  }
}

TEST_F(FocusEventsTest, DeletedControlIsToldNothing) {
  delete first;
  Settle();
  Click("go");
  EXPECT_FALSE(log.contains("first lost"));
  EXPECT_TRUE(log.contains("go clicked"));
}

TEST_F(FocusEventsTest, FocusMovedWithinAHandlerIsToldWhereItCameToStand) {
  form->Watch(*first, [this] {
    go->setFocus();
    second->setFocus();
    go->setFocus();
    log += "first done";
  });
  PressTab();
  EXPECT_EQ(log, Log({"first lost", "first done", "go got"}));
}

TEST_F(FocusEventsTest, GotFocusHandlerThatMovesOnIsFinishedBeforeTheNextIsTold) {
  form->Watch(*second, {}, [this] {
    go->setFocus();
    log += "second done";
  });
  PressTab();
  EXPECT_EQ(log, Log({"first lost", "second got", "second done", "second lost", "go got"}));
}

TEST_F(FocusEventsTest, HandlersThatSendTheFocusToEachOtherForEverComeToAnEnd) {
  form->Watch(*first, {}, [this] { second->setFocus(); });
  form->Watch(*second, {}, [this] { first->setFocus(); });
  PressTab();
  EXPECT_LT(log.size(), 40);
}

TEST_F(FocusEventsTest, MessageBoxInBetweenDoesntCount) {
  PassMessageBox(form);
  ASSERT_TRUE(WaitUntil([this] { return FocusName() == "first"; }));
  EXPECT_EQ(log, Log());
}

TEST_F(FocusEventsTest, MessageOfALostFocusEatsTheClickThatCalledIt) {
  form->Watch(*first, [this] { PassMessageBox(form); });
  Click("go");
  ASSERT_TRUE(WaitUntil([this] { return form->isActiveWindow(); }));
  EXPECT_FALSE(log.contains("go clicked"));
  Click("go");
  EXPECT_TRUE(log.contains("go clicked"));
}

TEST_F(FocusEventsTest, FocusHeldBehindAMessageComesBackWithTheForm) {
  form->Watch(*first, [this] {
    form->FocusLater(first);
    PassMessageBox(form);
  });
  Click("go");
  ASSERT_TRUE(WaitUntil([this] { return FocusName() == "first"; }));
  Settle();
  EXPECT_FALSE(log.contains("go clicked"));
  EXPECT_FALSE(log.contains("go got"));
  EXPECT_EQ(log, Log({"first lost", "first got"}));
}

TEST_F(FocusEventsTest, WhatFollowsAQueuedFocusHasTheLastWordBehindARealMessage) {
  first->setText("text");
  const auto refuse = [this] {
    PassMessageBox(form);
    form->FocusLater(first, [this] { first->setSelection(0, 1); });
  };
  form->Watch(*first, refuse, [this] { SelectWhole(first); });
  for (const bool by_click : {false, true}) {
    SCOPED_TRACE(by_click);
    log.clear();
    by_click ? Click("go") : PressTab();
    ASSERT_TRUE(WaitUntil([this] { return FocusName() == "first"; }));
    Settle();
    EXPECT_EQ(log, Log({"first lost", "first got"}));
    EXPECT_EQ(SelectedTextOf("first"), "t");
  }
}

TEST_F(FocusEventsTest, PlaceholderIsSelectedOnEntryAndAnyOtherTextIsnt) {
  auto& combo = form->Add<QComboBox>("combo");
  combo.setEditable(true);
  auto& lines = form->Add<QPlainTextEdit>("lines");
  const auto put = [&](const QString& text) {
    second->setText(text);
    combo.setEditText(text);
    lines.setPlainText(text);
  };
  Settle();
  for (const char* text : {"None.", "N.A.", "None", "Enter Project Number."})
    for (const char* name : {"second", "combo", "lines"}) {
      SCOPED_TRACE(std::string(text) + " in " + name);
      put(text);
      Click("first");
      Click(name);
      EXPECT_EQ(SelectedTextOf(name), text);
      Type("x");
      EXPECT_EQ(TextOf(name), "x");
    }
  put("none.");
  for (const char* name : {"second", "combo", "lines"}) {
    Click(name);
    EXPECT_EQ(SelectedTextOf(name), "") << name;
  }
  second->setText("N.A.");
  second->setReadOnly(true);
  Click("second");
  EXPECT_EQ(SelectedTextOf("second"), "");
}

TEST_F(FocusEventsTest, ListThatClosesWithoutAChoiceLeavesTheSelection) {
  auto& combo = form->Add<QComboBox>("combo");
  combo.setEditable(true);
  SettleCombo(&combo);
  combo.addItems({"one", "two"});
  combo.setEditText("None.");
  Settle();
  Click("combo");
  const auto open_and_close = [&] {
    PressKey(Qt::Key_Down, Qt::AltModifier);
    ASSERT_TRUE(WaitUntil([&] { return combo.view()->isVisible(); }));
    PressKey(Qt::Key_Escape);
    ASSERT_TRUE(WaitUntil([&] { return !combo.view()->isVisible(); }));
    Settle();
  };
  open_and_close();
  EXPECT_EQ(SelectedTextOf("combo"), "None.");
  combo.lineEdit()->setSelection(1, 2);
  open_and_close();
  EXPECT_EQ(SelectedTextOf("combo"), "on");
  const QString long_text = QStringLiteral("long ").repeated(40);
  combo.addItem(long_text);
  Pick("combo", long_text);
  EXPECT_EQ(combo.lineEdit()->cursorPosition(), 0);
}

TEST_F(FocusEventsTest, ComboBoxCountsAsOneControlWithItsEditAndItsList) {
  auto& combo = form->Add<QComboBox>("combo");
  combo.setEditable(true);
  combo.addItems({"one", "two"});
  form->Watch(combo);
  Settle();
  Pick("combo", "two");
  EXPECT_EQ(TextOf("combo"), "two");
  EXPECT_EQ(log, Log({"first lost", "combo got"}));
  Click("go");
  EXPECT_EQ(log.mid(2), Log({"combo lost", "go got", "go clicked"}));
}

TEST_F(FocusEventsTest, UnloadingFormIsToldNothing) {
  auto& other = MakeForm("other");
  other.AddBox("theirs");
  Show(other);
  Show(*form);
  log.clear();
  form->UnloadForm();
  ASSERT_TRUE(ComesForward(other));
  EXPECT_EQ(log, Log({"form query", "form unload", "other active", "theirs got"}));
}

TEST_F(FocusEventsTest, OtherWindowsOfTheProgramDontCount) {
  QWidget window;
  QLineEdit box(&window);
  window.show();
  window.activateWindow();
  box.setFocus();
  ASSERT_TRUE(WaitUntil([&] { return box.hasFocus(); }));
  form->activateWindow();
  ASSERT_TRUE(WaitUntil([this] { return FocusName() == "first"; }));
  EXPECT_EQ(log, Log());
}

}  // namespace
}  // namespace kestrix
