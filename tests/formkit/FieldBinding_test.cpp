#include "formkit/FieldBinding.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>

#include "FormKitTest.h"
#include "formkit/Controls.h"
#include "store/DataControl.h"
#include "store/RecordSources.h"
#include "support/TestInstallation.h"

namespace kestrix {
namespace {

/// Three tasks of a project, and a form whose controls are bound to their fields.
class FieldBindingTest : public FormKitTest {
 protected:
  void SetUp() override {
    place.GivenStudy(1);
    for (const char* title : {"Cut", "Weld", "Paint"})
      place.GivenTask(1, {{"Project_Number", "P1"},
                          {"FuntnTaskMachry", title},
                          {"HzrdDscptnTXT", QString("of ") + title}});
    form = &MakeForm("form");
    source = new DataControl("dtsorce2", form);
    source->SetDatabaseName(place.Study(1));
    source->SetRecordSource(sources::RiskSql("P1"));
    Bind<QLineEdit>("title", "FuntnTaskMachry");
    Bind<QPlainTextEdit>("lines", "HzrdDscptnTXT");
    auto& combo = form->Add<QComboBox>("phase");
    combo.setEditable(true);
    SettleCombo(&combo);
    new FieldBinding(*source, "PhaseMachn", &combo);
    Bind<QCheckBox>("done", "ActntkenOptnY_N");
    Bind<QLabel>("number", "Project_Number");
    Show(*form);
  }

  template <class W>
  W& Bind(const QString& name, const QString& field) {
    auto& control = form->Add<W>(name);
    new FieldBinding(*source, field, &control);
    return control;
  }
  [[nodiscard]] Recordset& Rows() const { return source->Recordset(); }
  [[nodiscard]] QStringList Stored(const QString& field) const {
    return place.Column(place.Study(1),
                        "SELECT " + field + " FROM Risk_records ORDER BY nunberauto");
  }

  TestInstallation place;
  PlainForm* form = nullptr;
  DataControl* source = nullptr;
};

TEST_F(FieldBindingTest, ControlsShowTheCurrentRow) {
  source->Refresh();
  EXPECT_EQ(TextOf("title"), "Cut");
  EXPECT_EQ(TextOf("lines"), "of Cut");
  EXPECT_EQ(TextOf("phase"), "None.");
  EXPECT_EQ(TextOf("number"), "P1");
  EXPECT_FALSE(IsChecked("done"));
  EXPECT_FALSE(Rows().HasPendingEdit());

  Rows().MoveNext();
  EXPECT_EQ(TextOf("title"), "Weld");
  EXPECT_EQ(TextOf("lines"), "of Weld");
  EXPECT_FALSE(Rows().HasPendingEdit());
}

TEST_F(FieldBindingTest, TypedChangesReachTheFileWhenTheRowIsLeft) {
  source->Refresh();
  TypeInto("title", "Saw");
  TypeInto("lines", "noise\nand dust");
  TypeInto("phase", "Use");
  SetCheck("done", true);
  EXPECT_TRUE(Rows().HasPendingEdit());
  EXPECT_EQ(Stored("FuntnTaskMachry").first(), "Cut");

  Rows().MoveNext();
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList({"Saw", "Weld", "Paint"}));
  EXPECT_EQ(Stored("HzrdDscptnTXT").first(), "noise\nand dust");
  EXPECT_EQ(Stored("PhaseMachn").first(), "Use");
  EXPECT_EQ(Stored("ActntkenOptnY_N").first(), "1");
  EXPECT_EQ(TextOf("title"), "Weld");
  EXPECT_FALSE(IsChecked("done"));
}

TEST_F(FieldBindingTest, TextSetByTheProgramIsAChangeToo) {
  source->Refresh();
  form->findChild<QLineEdit*>("title")->setText("set");
  form->findChild<QComboBox*>("phase")->setEditText("set too");
  Rows().Update();
  EXPECT_EQ(Stored("FuntnTaskMachry").first(), "set");
  EXPECT_EQ(Stored("PhaseMachn").first(), "set too");
}

TEST_F(FieldBindingTest, FieldSetByTheProgramIsShown) {
  source->Refresh();
  Rows().Set("FuntnTaskMachry", "from the row");
  EXPECT_EQ(TextOf("title"), "from the row");
  Rows().Set("ActntkenOptnY_N", true);
  EXPECT_TRUE(IsChecked("done"));
  Rows().CancelUpdate();
  EXPECT_EQ(TextOf("title"), "Cut");
  EXPECT_FALSE(IsChecked("done"));
}

TEST_F(FieldBindingTest, TypingKeepsTheCursorWhereItIs) {
  source->Refresh();
  Click("title");
  PressKey(Qt::Key_Home);
  Type("ab");
  EXPECT_EQ(TextOf("title"), "abCut");
  EXPECT_EQ(form->findChild<QLineEdit*>("title")->cursorPosition(), 2);
  Click("lines");
  PressKey(Qt::Key_Home, Qt::ControlModifier);
  Type("xy");
  EXPECT_EQ(TextOf("lines"), "xyof Cut");
  for (int key = 0; key < 2; ++key) PressKey(Qt::Key_Backspace);
  Click("title");
  TypeInto("title", "Cut");
  EXPECT_FALSE(Rows().HasPendingEdit()) << "a text that is typed back is no change";
}

TEST_F(FieldBindingTest, WithoutARowControlsAreEmptyAndWhatIsSetStaysOnTheScreen) {
  place.Exec(place.Study(1), "DELETE FROM Risk_records");
  form->findChild<QLineEdit*>("title")->setText("before");
  source->Refresh();
  EXPECT_EQ(TextOf("title"), "");
  EXPECT_FALSE(IsChecked("done"));
  form->findChild<QLineEdit*>("title")->setText("None.");
  SetCheck("done", true);
  EXPECT_EQ(TextOf("title"), "None.");
  EXPECT_FALSE(Rows().HasPendingEdit());
  source->Close();
  EXPECT_EQ(TextOf("title"), "");
  EXPECT_EQ(Stored("FuntnTaskMachry"), QStringList());
}

TEST_F(FieldBindingTest, FieldThatTheRecordSourceLacksLeavesTheControlAlone) {
  auto& hidden = form->Add<QLineEdit>("hidden");
  hidden.setText("0");
  new FieldBinding(*source, "stdyno", &hidden);
  source->Refresh();
  Rows().MoveNext();
  EXPECT_EQ(TextOf("hidden"), "0");
  hidden.setText("7");
  EXPECT_FALSE(Rows().HasPendingEdit());
  source->Close();
  EXPECT_EQ(TextOf("hidden"), "7");
}

TEST_F(FieldBindingTest, ChangeRuleThatRewritesWhatIsShownGoesIntoTheRow) {
  auto& date = form->Add<QLineEdit>("date");
  // One rule is connected before the binding and one behind it: both orders must do.
  const auto mask = [&date] {
    if (date.text().isEmpty()) date.setText("__/__/____");
  };
  QObject::connect(&date, &QLineEdit::textChanged, form, mask);
  new FieldBinding(*source, "actnDt", &date);
  auto& other = Bind<QLineEdit>("other", "dateOfRcd");
  QObject::connect(&other, &QLineEdit::textChanged, form, [&other] {
    if (other.text().isEmpty()) other.setText("masked");
  });
  date.setText("x");
  other.setText("x");
  source->Refresh();
  EXPECT_EQ(TextOf("date"), "__/__/____");
  EXPECT_EQ(Rows().Text("actnDt"), "__/__/____");
  EXPECT_EQ(Rows().Text("dateOfRcd"), "masked");
  Rows().Update();
  EXPECT_EQ(Stored("actnDt").first(), "__/__/____");
}

TEST_F(FieldBindingTest, BoxThatShowsLessThanTheRowHoldsDoesntCutTheRow) {
  form->findChild<QLineEdit*>("title")->setMaxLength(2);
  place.Exec(place.Study(1), "UPDATE Risk_records SET HzrdDscptnTXT='a'||char(13,10)||'b'");
  source->Refresh();
  EXPECT_EQ(TextOf("title"), "Cu");
  EXPECT_EQ(TextOf("lines"), "a\nb");
  EXPECT_FALSE(Rows().HasPendingEdit());
}

TEST_F(FieldBindingTest, ControlThatIsDeletedEndsItsBinding) {
  source->Refresh();
  delete form->findChild<QLineEdit*>("title");
  Rows().MoveNext();
  EXPECT_EQ(TextOf("lines"), "of Weld");
}

}  // namespace
}  // namespace kestrix
