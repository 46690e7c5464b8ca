#include "formkit/Controls.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QWheelEvent>

#include "FormKitTest.h"
#include "formkit/ClickLabel.h"
#include "formkit/WrapCheckBox.h"

namespace kestrix {
namespace {

class ControlsTest : public FormKitTest {
 protected:
  void SetUp() override { form = &MakeForm("form"); }

  QComboBox& AddCombo() {
    auto& combo = form->Add<QComboBox>("combo");
    combo.setEditable(true);
    SettleCombo(&combo);
    QObject::connect(&combo, &QComboBox::activated, form, [this] { log += "picked"; });
    return combo;
  }
  /// What can be seen in the middle of a control's left half.
  [[nodiscard]] QRgb Seen(QWidget& control) {
    Settle();
    const QImage picture = form->grab().toImage();
    const QPoint spot = control.mapTo(form, QPoint(control.width() - 8, control.height() / 2));
    return picture.pixel(spot * picture.devicePixelRatio());
  }

  PlainForm* form = nullptr;
};

TEST_F(ControlsTest, BackColourIsSeenOnEveryKindOfControl) {
  auto& box = form->Add<QLineEdit>("box");
  auto& lines = form->Add<QPlainTextEdit>("lines");
  auto& label = form->Add<QLabel>("label");
  auto& frame = form->Add<QFrame>("frame");
  frame.setMinimumHeight(20);
  auto& combo = AddCombo();
  Show(*form);
  for (QWidget* control : std::initializer_list<QWidget*>{&box, &lines, &label, &frame}) {
    const QRgb before = Seen(*control);
    ASSERT_NE(before, colour::kWarning);
    SetBackColour(control, colour::kWarning);
    EXPECT_EQ(BackColour(control), colour::kWarning);
    EXPECT_EQ(Seen(*control), colour::kWarning) << control->objectName().toStdString();
    control->setEnabled(false);
    EXPECT_EQ(Seen(*control), colour::kWarning) << control->objectName().toStdString();
    control->setEnabled(true);
    SetSystemBack(control);
    EXPECT_EQ(Seen(*control), before) << control->objectName().toStdString();
    EXPECT_NE(BackColour(control), colour::kWarning);
  }
  SetBackColour(&combo, colour::kPaleYellow);
  EXPECT_EQ(BackColour(&combo), colour::kPaleYellow);
  EXPECT_EQ(Seen(*combo.lineEdit()), colour::kPaleYellow);
}

TEST_F(ControlsTest, TextOnABackColourCanBeRead) {
  auto& label = form->Add<QLabel>("label");
  SetBackColour(&label, colour::kPaleYellow);
  EXPECT_EQ(label.palette().color(QPalette::Disabled, QPalette::WindowText), QColor(Qt::black));
  SetBackColour(&label, 0xFF000080);
  EXPECT_EQ(label.palette().color(QPalette::Active, QPalette::WindowText), QColor(Qt::white));
}

TEST_F(ControlsTest, ALinkIsWrittenInAColourThatCanBeReadOnItsPanel) {
  auto& label = form->Add<QLabel>("label");
  QPalette light(QColor(0xEF, 0xEF, 0xEF));
  light.setColor(QPalette::Link, Qt::blue);
  label.setPalette(light);
  EXPECT_EQ(LinkRole(&label), QPalette::Link);
  QPalette dark(QColor(0x28, 0x28, 0x28));
  dark.setColor(QPalette::Link, Qt::blue);
  label.setPalette(dark);
  EXPECT_EQ(LinkRole(&label), QPalette::WindowText);
  dark.setColor(QPalette::Link, QColor(0x80, 0xC0, 0xFF));
  label.setPalette(dark);
  EXPECT_EQ(LinkRole(&label), QPalette::Link);
}

TEST_F(ControlsTest, WaitCursorEndsWithItsBlockOrEarlier) {
  {
    const WaitCursor waiting;
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  }
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  const WaitCursor outer;
  {
    WaitCursor inner;
    inner.Restore();
    inner.Restore();
    EXPECT_NE(QApplication::overrideCursor(), nullptr);
  }
  EXPECT_NE(QApplication::overrideCursor(), nullptr);
}

TEST_F(ControlsTest, FillingAComboTakesItsEntriesAndItsTextAndChoosesNone) {
  auto& combo = AddCombo();
  FillCombo(&combo, {"old"});
  combo.setEditText("typed");
  const QSignalSpy changes(&combo, &QComboBox::editTextChanged);
  FillCombo(&combo, {"one", "two", "two"});
  EXPECT_EQ(combo.currentText(), "");
  EXPECT_EQ(changes.count(), 1) << "by the text that goes";
  EXPECT_EQ(combo.count(), 3);
  EXPECT_EQ(combo.currentIndex(), -1);
  FillCombo(&combo, {});
  EXPECT_EQ(combo.count(), 0);
}

TEST_F(ControlsTest, ComboTakesExactlyWhatIsTypedWhichIsNoPick) {
  auto& combo = AddCombo();
  combo.addItems({"Crushing", "Cutting"});
  combo.setCurrentIndex(-1);
  form->AddBox("next");
  Show(*form);
  for (const char* text : {"cr", "Cutting"}) {
    TypeInto("combo", text);
    PressTab();
    EXPECT_EQ(TextOf("combo"), text);
  }
  TypeInto("combo", "Cutting");
  PressKey(Qt::Key_Return);
  EXPECT_FALSE(log.contains("picked"));
  EXPECT_EQ(combo.count(), 2);
}

TEST_F(ControlsTest, PickingTheSameItemAgainIsAPick) {
  auto& combo = AddCombo();
  combo.addItems({"Crushing", "Cutting"});
  Show(*form);
  Pick("combo", "Cutting");
  Pick("combo", "Cutting");
  EXPECT_EQ(log.count("picked"), 2);
  TypeInto("combo", "other");
  Pick("combo", "Cutting");
  EXPECT_EQ(log.count("picked"), 3);
  EXPECT_EQ(TextOf("combo"), "Cutting");
}

TEST_F(ControlsTest, WheelOverAComboChangesNothing) {
  auto& combo = AddCombo();
  combo.addItems({"one", "two"});
  Show(*form);
  Click("combo");
  QWheelEvent wheel(QPointF(5, 5), combo.mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&combo, &wheel);
  EXPECT_EQ(TextOf("combo"), "one");
  EXPECT_FALSE(wheel.isAccepted());
}

TEST_F(ControlsTest, AWholeTextIsSelectedByKeyAndByMouse) {
  auto& combo = AddCombo();
  combo.setEditText("None.");
  form->AddButton("elsewhere");
  form->Watch(combo, {}, [&combo] { SelectWhole(combo.lineEdit()); });
  Show(*form);
  Click("elsewhere");
  combo.setFocus(Qt::OtherFocusReason);
  Settle();
  EXPECT_EQ(SelectedTextOf("combo"), "None.");
  Click("elsewhere");
  combo.lineEdit()->deselect();
  Click("combo");
  EXPECT_EQ(SelectedTextOf("combo"), "None.");
}

class ClickLabelTest : public ControlsTest {
 protected:
  void SetUp() override {
    ControlsTest::SetUp();
    label = &form->Add<ClickLabel>("label");
    label->setText("Help");
    form->AddButton("elsewhere");
    QObject::connect(label, &ClickLabel::Click, form, [this] { log += "click"; });
    QObject::connect(label, &ClickLabel::DblClick, form, [this] { log += "double"; });
    QObject::connect(label, &ClickLabel::Hovered, form,
                     [this](bool over) { log += over ? "over" : "off"; });
    Show(*form);
    form->findChild<QPushButton*>("elsewhere")->setFocus();
    log.clear();
  }

  ClickLabel* label = nullptr;
};

TEST_F(ClickLabelTest, ActsByMouseAndKeys) {
  Click("label");
  EXPECT_EQ(log.count("click"), 1);
  EXPECT_EQ(FocusName(), "label");
  PressKey(Qt::Key_Space);
  PressKey(Qt::Key_Return);
  EXPECT_EQ(log.count("click"), 3);
  EXPECT_EQ(log.count("double"), 0);
  PressKey(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(log.count("double"), 1);
}

TEST_F(ClickLabelTest, DoubleClickIsOneClickAndOneDoubleClick) {
  DoubleClick("label");
  log.removeAll("over");
  EXPECT_EQ(log, Log({"click", "double"}));
}

TEST_F(ClickLabelTest, ReleaseElsewhereIsNoClick) {
  QWindow* window = form->windowHandle();
  QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, label->geometry().center());
  QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, QPoint(1, 1));
  EXPECT_FALSE(log.contains("click"));
}

TEST_F(ClickLabelTest, TellsWhenThePointerComesAndGoes) {
  PointAt("elsewhere");
  log.clear();
  PointAt("label");
  PointAt("elsewhere");
  EXPECT_EQ(log, Log({"over", "off"}));
}

TEST_F(ClickLabelTest, FocusIsSeen) {
  const QImage without = label->grab().toImage();
  label->setFocus(Qt::TabFocusReason);
  Settle();
  EXPECT_NE(label->grab().toImage(), without);
}

TEST_F(ClickLabelTest, AssistiveToolsFindAButtonToPress) {
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(label);
  ASSERT_NE(face, nullptr);
  EXPECT_EQ(face->role(), QAccessible::Button);
  EXPECT_EQ(face->text(QAccessible::Name), "Help");
  QAccessibleActionInterface* actions = face->actionInterface();
  ASSERT_NE(actions, nullptr);
  ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
  actions->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(log, Log({"click"}));
}

TEST_F(ControlsTest, BackColourOfAButtonIsSeenInLightAndDarkPressedInOrNot) {
  auto& button = form->Add<QPushButton>("button");
  button.setCheckable(true);
  button.setMinimumHeight(30);
  Show(*form);
  QPalette dark;
  dark.setColor(QPalette::Window, QColor(0x353535));
  dark.setColor(QPalette::Button, QColor(0x353535));
  dark.setColor(QPalette::ButtonText, Qt::white);
  for (const QPalette& theme : {QPalette(), dark}) {
    form->setPalette(theme);
    for (const QRgb colour : {0xFFFFC080U, 0xFF80FF80U}) {
      for (const bool checked : {false, true}) {
        button.setChecked(checked);
        SetBackColour(&button, colour);
        EXPECT_EQ(BackColour(&button), colour);
        // The style shades a button; its hue remains.
        const QColor seen(Seen(button));
        EXPECT_NEAR(seen.hue(), QColor(colour).hue(), 8);
        EXPECT_GT(seen.saturation(), 40);
        EXPECT_EQ(button.palette().color(QPalette::ButtonText), QColor(Qt::black));
      }
    }
    SetSystemBack(&button);
    EXPECT_LT(QColor(Seen(button)).saturation(), 20);
  }
}

class WrapCheckBoxTest : public ControlsTest {
 protected:
  void SetUp() override {
    ControlsTest::SetUp();
    box = &form->Add<WrapCheckBox>("box");
    box->setText(
        "Serious injury, normally irreversible: fatality, loss of a limb or permanent disability");
  }

  WrapCheckBox* box = nullptr;
};

TEST_F(WrapCheckBoxTest, GrowsInHeightAsItNarrows) {
  const int wide = box->heightForWidth(2000);
  const int narrow = box->heightForWidth(200);
  EXPECT_GE(narrow, 2 * wide - 8);
  EXPECT_GT(box->heightForWidth(120), narrow);
  EXPECT_LT(box->minimumSizeHint().width(), 150);
}

TEST_F(WrapCheckBoxTest, KnowsItsHeightForEachTextAndFontThatItGets) {
  const int before = box->heightForWidth(200);
  const QString text = box->text();
  box->setText(QStringLiteral("Short"));
  EXPECT_LT(box->heightForWidth(200), before);
  box->setText(text);
  EXPECT_EQ(box->heightForWidth(200), before);
  QFont font = box->font();
  font.setPointSize(2 * font.pointSize());
  box->setFont(font);
  EXPECT_GT(box->heightForWidth(200), before);
}

TEST_F(WrapCheckBoxTest, LastLineOfTheTextIsDrawn) {
  Show(*form);
  box->setFixedWidth(200);
  Settle();
  const QImage picture = box->grab().toImage();
  const auto is_written = [&](int from, int to) {
    const QRgb blank = picture.pixel(picture.width() - 1, picture.height() / 2);
    for (int y = from; y < to; ++y)
      for (int x = 30; x < picture.width() - 4; ++x)
        if (qGray(picture.pixel(x, y)) < qGray(blank) / 2) return true;
    return false;
  };
  const int line = box->fontMetrics().height();
  const int height = box->heightForWidth(200);
  const int top = (box->height() - height) / 2;
  EXPECT_TRUE(is_written(top, top + line + 4));
  EXPECT_TRUE(is_written(top + height - line - 2, top + height));
}

TEST_F(WrapCheckBoxTest, BlankAtTheBeginningIsKeptAndNotDrawn) {
  Show(*form);
  box->setFixedWidth(200);
  const QString text = box->text();
  Settle();
  const QImage without = box->grab().toImage();
  box->setText(' ' + text);
  Settle();
  EXPECT_EQ(box->grab().toImage(), without);
  EXPECT_EQ(box->text(), ' ' + text);
}

TEST_F(WrapCheckBoxTest, EdgeOfAnEmptyBoxIsSeenInLightAndDark) {
  struct Theme {
    QRgb window;
    QRgb paper;
    QRgb ink;
  };
  Show(*form);
  for (const Theme& theme :
       {Theme{0xFFEFEFEF, 0xFFFFFFFF, 0xFF000000}, Theme{0xFF31363B, 0xFF232629, 0xFFEFF0F1}}) {
    QPalette palette((QColor(theme.window)));
    palette.setColor(QPalette::Window, QColor(theme.window));
    palette.setColor(QPalette::Base, QColor(theme.paper));
    for (const auto role : {QPalette::Text, QPalette::WindowText})
      palette.setColor(role, QColor(theme.ink));
    box->setPalette(palette);
    const QImage picture = box->grab().toImage();
    int farthest = 0;
    for (int x = 0; x < 6; ++x) {
      const int edge = qGray(picture.pixel(x, picture.height() / 2));
      farthest = std::max(farthest, std::abs(edge - qGray(theme.paper)));
    }
    EXPECT_GT(farthest, 70) << "of 255 shades";
  }
}

TEST_F(WrapCheckBoxTest, ClickAnywhereOnItToggles) {
  Show(*form);
  Click("box");
  EXPECT_TRUE(IsChecked("box"));
  PressKey(Qt::Key_Space);
  EXPECT_FALSE(IsChecked("box"));
}

}  // namespace
}  // namespace kestrix
