#include "support/FormHands.h"

#include <gmock/gmock.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "support/FormTest.h"

namespace kestrix {
namespace {

/// A form on the session, as features make them.
class Worktop : public SessionForm {
  Q_OBJECT

 public:
  explicit Worktop(Context& shared) : SessionForm(shared) {
    setObjectName("Worktop");
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    setCentralWidget(page);
    box = Named(new QLineEdit(page), "box");
    combo = Named(new QComboBox(page), "combo");
    button = Named(new QPushButton("&Do it", page), "button");
    for (QWidget* control : std::initializer_list<QWidget*>{box, combo, button})
      layout->addWidget(control);
  }

  QLineEdit* box = nullptr;
  QComboBox* combo = nullptr;
  QPushButton* button = nullptr;

 private:
  template <class W>
  static W* Named(W* control, const char* name) {
    control->setObjectName(name);
    return control;
  }
};

class FormHandsTest : public FormTest {};

TEST_F(FormHandsTest, NameThatIsntThereEndsTheTestWithTheNamesThatAre) {
  Open<Worktop>();
  try {
    Click("buton");
    FAIL() << "It was found.";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), ::testing::HasSubstr("box, button, combo"));
  }
}

TEST_F(FormHandsTest, WhatCantBePressedIsntPressed) {
  auto& form = Open<Worktop>();
  form.button->setEnabled(false);
  EXPECT_THROW(Click("button"), std::runtime_error);
  form.button->setEnabled(true);
  form.button->hide();
  EXPECT_THROW(Click("button"), std::runtime_error);
  EXPECT_THROW(Pick("combo", "no such entry"), std::runtime_error);
}

}  // namespace
}  // namespace kestrix

#include "FormHands_test.moc"
