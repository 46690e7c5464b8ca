// The rules of the single fields.
#include <QLineEdit>
#include <QPlainTextEdit>

#include "evaluation/EvaluationTest.h"

namespace kestrix {
namespace {

class RiskEvalFrm_1FieldsTest : public EvaluationTest {
 protected:
  /// Whether the text boxes take what is typed, and look so; the dates always do.
  void ExpectTyping(bool allowed) const {
    for (const char* box : {"RefNo", "FuntnTaskMachry", "HazrdLoctn"}) {
      EXPECT_NE(Control<QLineEdit>(box).isReadOnly(), allowed) << box;
      EXPECT_EQ(BackOf(box) == BackOf("dateOfRcd"), allowed) << box;
    }
    for (const char* box : {"HzrdDscptnTXT", "ReccdtnTxt"}) {
      EXPECT_NE(Control<QPlainTextEdit>(box).isReadOnly(), allowed) << box;
      EXPECT_EQ(BackOf(box) == BackOf("dateOfRcd"), allowed) << box;
    }
    for (const char* box : {"dateOfRcd", "actnDt"}) {
      EXPECT_FALSE(Control<QLineEdit>(box).isReadOnly()) << box;
    }
  }
};

TEST_F(RiskEvalFrm_1FieldsTest, TheTextBoxesTakeNothingUntilThereIsATask) {
  OpenForm();
  ExpectTyping(false);
  Click("addNewRcd");
  ExpectTyping(true);
  Delete("None.", Button::kYes, "15/02/2013");
  ExpectTyping(false);
}

struct DateBox {
  const char* name;
  const char* field;
};

void PrintTo(const DateBox& box, std::ostream* out) {
  *out << box.name;
}

class RiskEvalFrm_1DateTest : public EvaluationTest, public ::testing::WithParamInterface<DateBox> {
 protected:
  void SetUp() override {
    EvaluationTest::SetUp();
    GivenTasks({"Feed"});
    OpenForm();
  }
  [[nodiscard]] QString Box() const { return GetParam().name; }
  [[nodiscard]] QLineEdit& Edit() const { return Control<QLineEdit>(GetParam().name); }
  /// What the row holds before it is stored.
  [[nodiscard]] QString Held() { return form_->Tasks().Text(QString(GetParam().field)); }
};

TEST_P(RiskEvalFrm_1DateTest, EmptyingTheBoxLaysTheMaskAndTypingFillsIt) {
  SetText(Box(), "");
  EXPECT_EQ(TextOf(Box()), "__/__/____");
  EXPECT_EQ(Edit().selectionStart(), 0);
  EXPECT_EQ(SelectedTextOf(Box()), "_");
  Type("1");
  EXPECT_EQ(TextOf(Box()), "1_/__/____");
  EXPECT_EQ(Edit().selectionStart(), 1);
  EXPECT_EQ(SelectedTextOf(Box()), "_");
  Type("6032014");
  EXPECT_EQ(TextOf(Box()), "16/03/2014");
}

TEST_P(RiskEvalFrm_1DateTest, TypingOnFillsThePlacesAndStepsOverTheSlashes) {
  Focus(Box());
  Edit().selectAll();
  Type("1");
  EXPECT_EQ(TextOf(Box()), "1_/__/____");
  EXPECT_EQ(Edit().selectionStart(), 1);
  EXPECT_EQ(SelectedTextOf(Box()), "_");
  EXPECT_EQ(session.LoopIndex, 1);
  Type("6");
  EXPECT_EQ(TextOf(Box()), "16/__/____");
  EXPECT_EQ(Edit().selectionStart(), 3);
  Type("032014");
  EXPECT_EQ(TextOf(Box()), "16/03/2014");
  PressTab();
  EXPECT_EQ(TextOf(Box()), "16/03/2014");
  CloseForm();
  EXPECT_EQ(Stored(GetParam().field), QStringList{"16/03/2014"});
}

TEST_P(RiskEvalFrm_1DateTest, ADayFirstDateIsWrittenInFull) {
  Focus(Box());
  Edit().setText("1/2/2014");
  PressTab();
  EXPECT_EQ(TextOf(Box()), "01/02/2014");
  EXPECT_EQ(Held(), "01/02/2014");
  EXPECT_NE(Stored(GetParam().field), QStringList{"01/02/2014"}) << "not yet stored";
}

TEST_P(RiskEvalFrm_1DateTest, ADateWithTheNameOfItsMonthStaysWholeUntilItsBoxIsLeft) {
  const QString date = "15 September 2014";
  CloseForm();
  GivenTask({{"FuntnTaskMachry", "Clean"}, {GetParam().field, date}});
  OpenForm();
  for (const int row : {1, 0, 1}) ClickRow("DB1", row);
  EXPECT_EQ(TextOf(Box()), date);
  CloseForm();
  EXPECT_EQ(Stored(GetParam().field).last(), date) << "looking at a task changes nothing";
  OpenForm();
  Focus(Box());
  PressTab();
  EXPECT_EQ(TextOf(Box()), "15/09/2014");
  CloseForm();
  EXPECT_EQ(Stored(GetParam().field).last(), "15/09/2014");
}

TEST_P(RiskEvalFrm_1DateTest, AFigureTooManyMakesItNoDate) {
  Focus(Box());
  Edit().setText("15/02/2013");
  PressKey(Qt::Key_End);
  Type("4");
  EXPECT_EQ(TextOf(Box()), "15/02/20134");
  EXPECT_EQ(Edit().cursorPosition(), 10) << "behind the tenth place";
  ExpectTell("Enter data. (dd/mm/yyyy)");
  PressTab();
  EXPECT_EQ(FocusName(), Box());
  EXPECT_EQ(TextOf(Box()), "15/02/20134");
  SetText(Box(), "15022013");
}

TEST_P(RiskEvalFrm_1DateTest, ADayThatTheCalendarLacksOrAHalfTypedDateHoldsTheFocus) {
  Focus(Box());
  Edit().setText("31/02/2013");
  EXPECT_EQ(Edit().cursorPosition(), 10) << "behind a text without a free place";
  EXPECT_EQ(SelectedTextOf(Box()), "");
  EXPECT_EQ(session.LoopIndex, 10);
  for (const char* text : {"31/02/2013", "15/__/____"}) {
    Edit().setText(text);
    ExpectTell("Enter data. (dd/mm/yyyy)");
    PressTab();
    EXPECT_EQ(FocusName(), Box());
    EXPECT_EQ(TextOf(Box()), text);
  }
  // Emptied, it becomes today, is saved, and lets go.
  SetText(Box(), "");
  PressTab();
  EXPECT_EQ(TextOf(Box()), "15/02/2013");
  EXPECT_EQ(Held(), "15/02/2013");
  EXPECT_NE(FocusName(), Box());
}

INSTANTIATE_TEST_SUITE_P(Dates, RiskEvalFrm_1DateTest,
                         ::testing::Values(DateBox{"dateOfRcd", "dateOfRcd"},
                                           DateBox{"actnDt", "actnDt"}));

TEST_F(RiskEvalFrm_1FieldsTest, ADateThatNobodyTypesShowsNoSelection) {
  OpenOn({"Feed"});
  Focus("RefNo");
  for (const char* box : {"dateOfRcd", "actnDt"}) {
    Control<QLineEdit>(box).clear();
    EXPECT_EQ(TextOf(box), "__/__/____");
    EXPECT_EQ(SelectedTextOf(box), "");
  }
}

TEST_F(RiskEvalFrm_1FieldsTest, KeysLeadToANewTaskTheFindBoxAndTheEstimation) {
  OpenOn({"Feed"});
  Focus("HzrdDscptnTXT");
  PressKey(Qt::Key_Insert);
  EXPECT_EQ(form_->Tasks().RecordCount(), 2);
  EXPECT_TRUE(HasFocus("FuntnTaskMachry"));
  PressKey(Qt::Key_F3);
  EXPECT_TRUE(HasFocus("FndESINo"));
  Focus("HzrdDscptnTXT");
  PressKey(Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(HasFocus("FndESINo"));
  Focus("HzrdDscptnTXT");
  PressKey(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(steps.contains("estimation"));
}

TEST_F(RiskEvalFrm_1FieldsTest, EnteringTheDateSelectsItWholeAndTheActionDateItsFirstFreePlace) {
  GivenTask({{"FuntnTaskMachry", "Feed"}, {"dateOfRcd", ""}, {"actnDt", ""}});
  OpenOn({"Clean"});
  Focus("actnDt");
  EXPECT_EQ(SelectedTextOf("actnDt"), "_") << "the first free place";
  Focus("dateOfRcd");
  EXPECT_EQ(TextOf("dateOfRcd"), "__/__/____");
  EXPECT_EQ(SelectedTextOf("dateOfRcd"), "__/__/____");
  Focus("RefNo");
  ClickRow("DB1", 1);
  Focus("actnDt");
  EXPECT_EQ(SelectedTextOf("actnDt"), "");
  Focus("dateOfRcd");
  EXPECT_EQ(SelectedTextOf("dateOfRcd"), "01/02/2013");
  Focus("RefNo");
  Click("dateOfRcd");
  EXPECT_EQ(SelectedTextOf("dateOfRcd"), "01/02/2013");
}

TEST_F(RiskEvalFrm_1FieldsTest, LeavingADateWithoutATaskWritesNothingAndSaysNothing) {
  OpenForm();
  SetText("dateOfRcd", "16032014");
  PressTab();
  EXPECT_EQ(TextOf("dateOfRcd"), "16/03/2014");
  EXPECT_EQ(AllTasks().size(), 0);
}

// Reference number

struct Reference {
  const char* typed;
  const char* shown;
};

class RiskEvalFrm_1ReferenceTest : public EvaluationTest,
                                   public ::testing::WithParamInterface<Reference> {};

TEST_P(RiskEvalFrm_1ReferenceTest, IsWrittenWithTwoDigitsOnBothSides) {
  OpenOn({"Feed"});
  SetText("RefNo", GetParam().typed);
  PressTab();
  EXPECT_EQ(TextOf("RefNo"), GetParam().shown);
  EXPECT_NE(FocusName(), "RefNo");
  CloseForm();
  EXPECT_EQ(Stored("RefNo"), QStringList{GetParam().shown});
}

INSTANTIATE_TEST_SUITE_P(References, RiskEvalFrm_1ReferenceTest,
                         ::testing::Values(Reference{"12", "12.00"}, Reference{"3.5", "03.50"},
                                           Reference{"0", "00.00"}, Reference{"00.0", "00.00"},
                                           Reference{"100", "100.00"}, Reference{"", ""}));

TEST_F(RiskEvalFrm_1FieldsTest,
       LettersInTheReferenceNumberHoldTheFocusAndTheButtonBehindTheMessageIsNotPressed) {
  OpenOn({"Feed"});
  SetText("RefNo", "abc");
  ExpectTell("Enter number.");
  PressTab();
  EXPECT_EQ(FocusName(), "RefNo");
  EXPECT_EQ(TextOf("RefNo"), "abc");
  ExpectTell("Enter number.");
  Click("addNewRcd");
  EXPECT_EQ(AllTasks().size(), 1);
  EXPECT_EQ(FocusName(), "RefNo");
}

// Check boxes

TEST_F(RiskEvalFrm_1FieldsTest, TheCheckBoxesReadYesAndNo) {
  OpenOn({"Feed"});
  for (const char* name : {"ActntkenOptnY_N", "RskRdsdtnY_N"}) {
    SetCheck(name, true);
    EXPECT_EQ(TextOf(name), "Yes");
    SetCheck(name, false);
    EXPECT_EQ(TextOf(name), "No");
  }
}

// Find

TEST_F(RiskEvalFrm_1FieldsTest, WhatIsTypedPastTheLastTaskGoesNowhere) {
  GivenTasks({"Feed"});
  const auto before = AllTasks();
  OpenForm();
  Search("x");
  ExpectTyping(false);
  Control<QLineEdit>("HazrdLoctn").setText("Nowhere");
  PressTab();
  CloseForm();
  EXPECT_EQ(AllTasks(), before);
}

}  // namespace
}  // namespace kestrix
