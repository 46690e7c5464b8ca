#include "support/FormHands.h"

#include <gmock/gmock.h>

#include <QCheckBox>
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
    combo->setEditable(true);
    button = Named(new QPushButton("&Do it", page), "button");
    check = Named(new QCheckBox("Yes", page), "check");
    for (QWidget* control : std::initializer_list<QWidget*>{box, combo, button, check})
      layout->addWidget(control);
    On(button, &QPushButton::clicked, &Worktop::button_Click);
  }

  void button_Click() {
    session().ActiveOrgName = box->text();
    frame().SetStatusText(box->text());
    Tell(Icon::kInformation, "BELTROVAN", context().project.ESI_No());
  }

  QLineEdit* box = nullptr;
  QComboBox* combo = nullptr;
  QPushButton* button = nullptr;
  QCheckBox* check = nullptr;

 private:
  template <class W>
  static W* Named(W* control, const char* name) {
    control->setObjectName(name);
    return control;
  }
};

class FormHandsTest : public FormTest {};

TEST_F(FormHandsTest, PersonWorksAFormOnTheSession) {
  Open<Worktop>();
  project.number = "P 7";
  TypeInto("box", "ACME & Söhne");
  desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN", "P 7");
  Click("button");
  EXPECT_EQ(session.ActiveOrgName, "ACME & Söhne");
  EXPECT_EQ(frame.status_texts, QStringList({"ACME & Söhne"}));
  SetCheck("check", true);
  EXPECT_TRUE(IsChecked("check"));
  EXPECT_EQ(TextOf("button"), "&Do it");
}

TEST_F(FormHandsTest, NameThatIsntThereEndsTheTestWithTheNamesThatAre) {
  Open<Worktop>();
  try {
    Click("buton");
    FAIL() << "It was found.";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), ::testing::HasSubstr("box, button, check, combo"));
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

TEST_F(FormHandsTest, InstallationIsTheTestsOwn) {
  EXPECT_TRUE(QFile::exists(paths.StudyTemplate()));
  EXPECT_EQ(paths.Register(), installation.Register());
  EXPECT_EQ(paths.Study(3), installation.Study(3));
  installation.GivenOrganisation("ACME", 3);
  EXPECT_EQ(Column(installation.Register(), "SELECT OrgName FROM orgtn"), QStringList({"ACME"}));
  EXPECT_EQ(RowsOf(installation.Study(3), "Risk_records"), QList<QStringList>());
  EXPECT_TRUE(QFile::exists(installation.PictureFolder(3)));
  EXPECT_NE(RowsOf(installation.Lists(), "Prjstage"), QList<QStringList>());
  installation.EmptyLists();
  installation.GivenListRows("PhaseMachLife", {"None.", "Use"});
  EXPECT_EQ(RowsOf(installation.Lists(), "PhaseMachLife"),
            QList<QStringList>({{"None."}, {"Use"}}));
}

TEST_F(FormHandsTest, TaskInHandIsTheCurrentRowOfTheProjectsTasks) {
  installation.GivenStudy(1);
  installation.GivenProject(1, "P1", "ACME");
  installation.GivenTask(1, {{"Project_Number", "P1"}, {"FuntnTaskMachry", "Cut"}});
  GivenTaskInHand(1, "P1");
  EXPECT_EQ(context.task.Tasks().Text("FuntnTaskMachry"), "Cut");
  EXPECT_EQ(context.project.ESI_No(), "P1");
}

TEST_F(FormHandsTest, OtherProcessWorksOnTheSameFile) {
  installation.GivenStudy(1);
  OtherProcess other(installation.Study(1));
  other.Run("INSERT INTO Risk_records(Project_Number) VALUES('theirs');");
  EXPECT_EQ(other.Run("SELECT Project_Number FROM Risk_records;"), "theirs\n");
  EXPECT_EQ(Column(installation.Study(1), "SELECT Project_Number FROM Risk_records"),
            QStringList({"theirs"}));
  other.Kill();
}

}  // namespace
}  // namespace kestrix

#include "FormHands_test.moc"
