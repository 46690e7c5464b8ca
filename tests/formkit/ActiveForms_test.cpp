#include "formkit/ActiveForms.h"

#include <QWindow>

#include "FormKitTest.h"

namespace kestrix {
namespace {

class ActiveFormsTest : public FormKitTest {
 protected:
  void SetUp() override {
    frame = &MakeForm("frame");
    a = &MakeForm("a");
    b = &MakeForm("b");
    a->AddBox("a_box");
    b->AddBox("b_box");
    // Side by side: which of two windows gets the front that lie one below the other when a third
    // one goes is for the window manager to say.
    frame->move(0, 0);
    a->move(420, 0);
    b->move(0, 340);
    Show(*frame);
    Show(*a);
    log.clear();
  }

  PlainForm* frame = nullptr;
  PlainForm* a = nullptr;
  PlainForm* b = nullptr;
};

TEST_F(ActiveFormsTest, FormsHandTheFrontToEachOther) {
  Show(*b);
  Show(*a);
  Show(*b);
  EXPECT_EQ(log, Log({"a_box lost", "a inactive", "b active", "b_box got",  //
                      "b_box lost", "b inactive", "a active", "a_box got",  //
                      "a_box lost", "a inactive", "b active", "b_box got"}));
}

TEST_F(ActiveFormsTest, FormThatShowsAgainWhileItIsActiveIsToldNothing) {
  a->ShowForm();
  Settle();
  EXPECT_EQ(log, Log());
}

TEST_F(ActiveFormsTest, MessageBoxTellsNoFormAndLeavesItUsable) {
  PassMessageBox(a);
  ASSERT_TRUE(ComesForward(*a));
  EXPECT_EQ(log, Log());
  TypeInto("a_box", "text");
  EXPECT_EQ(TextOf("a_box"), "text");
}

TEST_F(ActiveFormsTest, FrontThatIsGivenAwayBehindAMessageBoxIsNotTakenBack) {
  QWidget other;
  other.setGeometry(420, 340, 200, 100);
  other.show();
  a->ShowForm();
  ASSERT_TRUE(ComesForward(*a));
  PassMessageBox(a);
  other.activateWindow();
  kit.forms.GiveAwayFront();
  EXPECT_TRUE(WaitUntil([&] { return other.isActiveWindow(); }));
  Settle();
  EXPECT_TRUE(other.isActiveWindow());
  // Only that one time: behind the next box the form is in front again.
  a->ShowForm();
  ASSERT_TRUE(ComesForward(*a));
  PassMessageBox(a);
  EXPECT_TRUE(ComesForward(*a));
}

TEST_F(ActiveFormsTest, WindowThatIsNoFormTellsNoForm) {
  QWidget window;
  window.show();
  window.activateWindow();
  ASSERT_TRUE(WaitUntil([&] { return window.isActiveWindow(); }));
  a->activateWindow();
  ASSERT_TRUE(ComesForward(*a));
  EXPECT_EQ(log, Log());
}

TEST_F(ActiveFormsTest, HiddenFormIsntToldThatItLost) {
  a->hide();
  b->ShowForm();
  ASSERT_TRUE(ComesForward(*b));
  EXPECT_FALSE(log.contains("a inactive"));
  EXPECT_EQ(log.last(), "b_box got");
}

TEST_F(ActiveFormsTest, HidingBringsBackTheFormThatWasActiveLast) {
  Show(*b);
  log.clear();
  b->hide();
  ASSERT_TRUE(ComesForward(*a));
  EXPECT_EQ(log, Log({"b_box lost", "a active", "a_box got"}));
}

TEST_F(ActiveFormsTest, FormThatWasActiveLastComesThoughTheWindowManagerGaveTheFrontToAnother) {
  Show(*b);
  b->hide();
  QApplication::setActiveWindow(frame);
  ASSERT_EQ(active(), frame);
  EXPECT_TRUE(ComesForward(*a));
}

TEST_F(ActiveFormsTest, FormThatAsksForTheFrontOfOneThatWentKeepsIt) {
  Show(*b);
  b->hide();
  frame->ShowForm();
  ASSERT_TRUE(ComesForward(*frame));
  EXPECT_EQ(active(), frame);
}

TEST_F(ActiveFormsTest, UnloadingBringsBackTheFormThatWasActiveLast) {
  Show(*b);
  log.clear();
  b->UnloadForm();
  ASSERT_TRUE(ComesForward(*a));
  EXPECT_EQ(log, Log({"b query", "b unload", "a active", "a_box got"}));
}

TEST_F(ActiveFormsTest, ReferenceIsEmptyBeforeTheNextFormIsActive) {
  FormSlot<PlainForm> slot([this] { return std::make_unique<PlainForm>(kit, "slotted", log); });
  Show(slot.Get());
  a->on_activate = [&] { log += slot.IsLoaded() ? "still loaded" : "slot empty"; };
  log.clear();
  slot.Unload();
  ASSERT_TRUE(ComesForward(*a));
  EXPECT_TRUE(log.contains("slot empty"));
}

TEST_F(ActiveFormsTest, InactiveFormThatHidesBringsNobodyForward) {
  Show(*b);
  log.clear();
  a->hide();
  Settle();
  EXPECT_EQ(log, Log());
  EXPECT_EQ(active(), b);
}

TEST_F(ActiveFormsTest, ModalFormBarsTheOthersUntilItIsGone) {
  ShowModal(*b);
  EXPECT_EQ(QApplication::activeModalWidget(), b);
  LookAt(*a);
  EXPECT_THROW(Click("a_box"), std::runtime_error);

  a->TakeFrontBack();
  Settle();
  EXPECT_EQ(active(), b);

  b->hide();
  ASSERT_TRUE(ComesForward(*a));
  TypeInto("a_box", "free");
  EXPECT_EQ(TextOf("a_box"), "free");
}

TEST_F(ActiveFormsTest, ModalFormHandsOverToAnotherModalForm) {
  ShowModal(*b);
  log.clear();
  b->hide();
  a->ShowFormModal();
  ASSERT_TRUE(ComesForward(*a));
  EXPECT_EQ(QApplication::activeModalWidget(), a);
  EXPECT_FALSE(log.contains("frame active"));
  EXPECT_EQ(log.last(), "a_box got");
}

TEST_F(ActiveFormsTest, VisibleFormBecomesModalWithoutLosingTheFront) {
  a->ShowFormModal();
  ASSERT_TRUE(ComesForward(*a));
  EXPECT_EQ(QApplication::activeModalWidget(), a);
  EXPECT_FALSE(log.contains("a active"));
  EXPECT_FALSE(log.contains("frame active"));
}

TEST_F(ActiveFormsTest, FormThatHoldsTheFrontTakesItBack) {
  a->on_deactivate = [this] { a->TakeFrontBack(); };
  b->ShowForm();
  ASSERT_TRUE(WaitUntil([this] { return log.contains("a active"); }));
  Settle();
  EXPECT_EQ(active(), a);
  EXPECT_EQ(log.filter("active"), Log({"a inactive", "b active", "b inactive", "a active"}));
}

TEST_F(ActiveFormsTest, FormThatHoldsTheFrontLetsGoWhenItIsUnloaded) {
  a->on_deactivate = [this] { a->TakeFrontBack(); };
  b->on_activate = [this] { a->UnloadForm(); };
  b->ShowForm();
  ASSERT_TRUE(ComesForward(*b));
  EXPECT_EQ(active(), b);
}

TEST_F(ActiveFormsTest, ActivationThatHandsOnToAThirdFormTellsEachOnce) {
  b->on_activate = [this] {
    b->hide();
    frame->ShowForm();
  };
  b->ShowForm();
  ASSERT_TRUE(ComesForward(*frame));
  EXPECT_EQ(log.filter("active"), Log({"a inactive", "b active", "frame active"}));
}

TEST_F(ActiveFormsTest, FormsStayAboveTheFrame) {
  Show(*b);
  EXPECT_EQ(kit.forms.frame(), frame);
  EXPECT_EQ(a->windowHandle()->transientParent(), frame->windowHandle());
  EXPECT_EQ(b->windowHandle()->transientParent(), frame->windowHandle());
  EXPECT_EQ(frame->windowHandle()->transientParent(), nullptr);
}

TEST_F(ActiveFormsTest, FailureWhileActivatingIsShownAndTheProgramGoesOn) {
  b->on_activate = [] { throw Failure(failure::kDiskFull, "The disk is full."); };
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN", "The disk is full.");
  Show(*b);
  TypeInto("b_box", "goes on");
  EXPECT_EQ(TextOf("b_box"), "goes on");
}

}  // namespace
}  // namespace kestrix
