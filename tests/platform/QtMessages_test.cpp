#include "platform/QtPlatform.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "support/Printers.h"

namespace kestrix {
namespace {

class QtMessagesTest : public ::testing::Test {
 protected:
  /// Does `act` on the box that opens next.
  void InBox(const std::function<void(QMessageBox&)>& act) {
    QTimer::singleShot(0, qApp, [this, act] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr || !box->isVisible()) return InBox(act);
      act(*box);
    });
  }
  static void Press(QMessageBox& box, QMessageBox::StandardButton button) {
    ASSERT_NE(box.button(button), nullptr);
    QTest::mouseClick(box.button(button), Qt::LeftButton);
  }
  /// The answer to `message` when `key` is pressed in its box.
  Button AnswerTo(const Message& message, Qt::Key key) {
    InBox([key](QMessageBox& box) {
      QWidget* focused = QApplication::focusWidget();
      QTest::keyClick(focused != nullptr ? focused : &box, key);
    });
    return messages_.Show(message);
  }

  QtMessages messages_;
};

TEST_F(QtMessagesTest, BoxShowsTitleTextIconAndButtonsAndNamesThatLookLikeMarkupAsTheyAre) {
  InBox([](QMessageBox& box) {
    EXPECT_EQ(box.windowTitle(), "BELTROVAN: Over write");
    EXPECT_EQ(box.text(), "Wish to replace [<b>Press</b>]?");
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.icon(), QMessageBox::Critical);
    EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
    EXPECT_TRUE(box.isModal());
    Press(box, QMessageBox::Yes);
  });
  EXPECT_EQ(messages_.Show(
                Ask(Icon::kCritical, "BELTROVAN: Over write", "Wish to replace [<b>Press</b>]?")),
            Button::kYes);
}

TEST_F(QtMessagesTest, EachIconIsItsOwn) {
  struct Row {
    Icon ours;
    QMessageBox::Icon desktop;
  };
  constexpr Row kRows[] = {{Icon::kNone, QMessageBox::NoIcon},
                           {Icon::kInformation, QMessageBox::Information},
                           {Icon::kCritical, QMessageBox::Critical},
                           {Icon::kQuestion, QMessageBox::Question}};
  for (const Row& row : kRows) {
    InBox([&](QMessageBox& box) {
      EXPECT_EQ(box.icon(), row.desktop);
      EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
      Press(box, QMessageBox::Ok);
    });
    EXPECT_EQ(messages_.Show(Tell(row.ours, "KESTRIX", "Text")), Button::kOk);
  }
}

TEST_F(QtMessagesTest, EscapeAndClosingAreNoWhereThereIsANoElseOkAndReturnPressesTheDefaultButton) {
  EXPECT_EQ(AnswerTo(Ask(Icon::kQuestion, "T", "Q?", Button::kYes), Qt::Key_Escape), Button::kNo);
  EXPECT_EQ(AnswerTo(Tell(Icon::kNone, "T", "Told"), Qt::Key_Escape), Button::kOk);
  EXPECT_EQ(AnswerTo(Ask(Icon::kQuestion, "T", "Q?"), Qt::Key_Return), Button::kNo);
  EXPECT_EQ(AnswerTo(Ask(Icon::kQuestion, "T", "Q?", Button::kYes), Qt::Key_Return), Button::kYes);
  InBox([](QMessageBox& box) { box.close(); });
  EXPECT_EQ(messages_.Show(Ask(Icon::kQuestion, "T", "Q?", Button::kYes)), Button::kNo);
}

TEST_F(QtMessagesTest, ShortBoxShowsItsTitleWholeAndItsButtonsWithoutPictures) {
  InBox([](QMessageBox& box) {
    QFont bold = box.font();
    bold.setBold(true);
    EXPECT_GT(box.width(), QFontMetrics(bold).horizontalAdvance(box.windowTitle()));
    for (const QAbstractButton* button : box.buttons()) EXPECT_TRUE(button->icon().isNull());
    box.close();
  });
  messages_.Show(Ask(Icon::kNone, "BELTROVAN: A title that is much longer than the text", "?"));
}

TEST_F(QtMessagesTest, LongTextWrapsOnTheScreen) {
  InBox([](QMessageBox& box) {
    EXPECT_TRUE(box.findChild<QLabel*>("qt_msgbox_label")->wordWrap());
    EXPECT_LE(box.width(), box.screen()->availableGeometry().width());
    box.close();
  });
  messages_.Show(Tell(Icon::kNone, "T", QString("A sentence of many words. ").repeated(40)));
}

TEST_F(QtMessagesTest, TextsCanBeCopiedHoweverLongAndTheDefaultButtonHasTheFocus) {
  const QString copied = QStringLiteral("Why.\n\n") + QString(60'000, u'x');
  InBox([&](QMessageBox& box) {
    EXPECT_EQ(box.text(), "Why.");
    EXPECT_EQ(box.detailedText(), copied);
    EXPECT_LE(box.height(), box.screen()->availableGeometry().height());
    EXPECT_TRUE(box.textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    EXPECT_EQ(box.focusWidget(), box.defaultButton());
    box.close();
  });
  messages_.Show(Tell(Icon::kCritical, "T", copied));
}

TEST_F(QtMessagesTest, BoxesNestAndEachLiesOverTheOneBefore) {
  QPointer<QWidget> first;
  Button inner = Button::kOk;
  InBox([&](QMessageBox& box) {
    first = &box;
    InBox([&](QMessageBox& over) {
      EXPECT_EQ(over.parentWidget(), first.data());
      Press(over, QMessageBox::Yes);
    });
    inner = messages_.Show(Ask(Icon::kQuestion, "Inner", "Q?"));
    Press(box, QMessageBox::Ok);
  });
  EXPECT_EQ(messages_.Show(Tell(Icon::kNone, "Outer", "T")), Button::kOk);
  EXPECT_EQ(inner, Button::kYes);
  EXPECT_TRUE(first.isNull());
}

TEST_F(QtMessagesTest, WindowThatGoesWhileItsBoxIsOpenTakesTheBoxWithItAndTheAnswerIsNo) {
  auto window = std::make_unique<QWidget>();
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  InBox([&](QMessageBox& box) {
    EXPECT_EQ(box.parentWidget(), window.get());
    if (box.parentWidget() != window.get()) box.close();
    window.reset();
  });
  EXPECT_EQ(messages_.Show(Ask(Icon::kQuestion, "T", "Q?", Button::kYes)), Button::kNo);
}

}  // namespace
}  // namespace kestrix
