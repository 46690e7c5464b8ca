// The project form's life: load, activation, the grid, holding the front, closing.

#include "projects/mnfrm.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>

#include "projects/MnfrmTest.h"
#include "store/RecordSources.h"

namespace kestrix {
namespace {

TEST_F(MnfrmTest, LoadShowsTheFormBeforeAnythingIsConnected) {
  form = &Make<mnfrm>();
  EXPECT_TRUE(form->isVisible());
  EXPECT_FALSE(form->isModal());
  EXPECT_EQ(form->windowTitle(), " KESTRIX: Project details form ");
  EXPECT_EQ(session.SupportDbPath, installation.Lists());
  LookAt(*form);
  EXPECT_EQ(Control<DataControl>("CboBxLstDB").DatabaseName(), installation.Lists());
  EXPECT_EQ(Control<DataControl>("AccdDptBd").DatabaseName(), installation.Lists());
  EXPECT_FALSE(Control<DataControl>("dtsorce1").HasRecordset());
}

TEST_F(MnfrmTest, AssistiveToolsReadTheOrganisationAndWhatTheButtonsOfTheStagesDo) {
  OpenAcme();
  const auto name_of = [this](const char* control) {
    return QAccessible::queryAccessibleInterface(&Control<QWidget>(control))
        ->text(QAccessible::Name);
  };
  EXPECT_TRUE(name_of("Orglbltxt").contains("ACME")) << name_of("Orglbltxt").toStdString();
  EXPECT_EQ(name_of("adddt0"), "Click to add to Project stage");
  EXPECT_EQ(name_of("dletedt0"), "Click to delete from Project stage");
}

TEST_F(MnfrmTest, TheFormStartsWithItsTextsAndToolTips) {
  OpenAcme();
  struct Face {
    const char* name;
    const char* text;
    const char* tip;
  };
  constexpr Face kFaces[] = {
      {"orgmnelbl", "Name of Organization", ""},
      {"hzpNolbl", "Project Number", ""},
      {"PrjStgLbl", "Project stage", ""},
      {"adddt0", "+", "Click to add to Project stage"},
      {"dletedt0", "-", "Click to delete from Project stage"},
      {"PIddwgnolbl", "Project Description", ""},
      {"preparedbyLbl", "Prepared By", ""},
      {"StudyNoAuto", "0", ""},
      {"Label2", "Find", ""},
      {"FndESINo", "", "Find Project Number (case sensitive)"},
      {"NwESINo", "&New Project Number", ""},
      {"delteZapNo", "&Delete Project Number", ""},
      {"simultn1", "Open &Risk assessment", ""},
      {"repotview", "&View Risk Reports", ""},
      {"LnkDwgs", "&Picture/Drawings in support of Risk study", ""},
      {"nworg", "Add &New/Delete/Select Organization/Section",
       "Add New/Delete/Select Organization"},
      {"clsdfrm", "&Exit", "Exit"},
      {"HlpHzp", "Help", "Click to open HELP"},
      {"appndxTxt", "", "Enter top header here before printing"},
      {"Label4", "As per ISO/TR14121-2 Second edition 2012-06-01 accordance with ISO 12100:2010",
       ""},
      {"DB1_caption", "Project Number list", ""}};
  for (const Face& face : kFaces) {
    EXPECT_EQ(TextOf(face.name), face.text) << face.name;
    EXPECT_EQ(Control<QWidget>(face.name).toolTip(), face.tip) << face.name;
  }
  EXPECT_EQ(Control<Grid>("DB1").model()->headerData(0, Qt::Horizontal).toString(),
            "Project Number");
  for (const char* hidden : {"StudyNoAuto", "appndxTxt", "ESI_No_temp"})
    EXPECT_FALSE(IsVisible(hidden)) << hidden;
  EXPECT_FALSE(IsEnabled("ESI_No"));
  EXPECT_EQ(BackColour(&Control<QWidget>("Orglbltxt")), colour::kPaleYellow);
  EXPECT_TRUE(Control<QWidget>("Orglbltxt").font().bold());
  EXPECT_TRUE(HasFocus("FndESINo"));
}

TEST_F(MnfrmTest, MissingOrDamagedListsEndTheLoadWithTheNoticeOfMissingFiles) {
  const QByteArray damaged = "no database";
  for (const bool missing : {false, true}) {
    WriteFile(installation.Lists(), damaged);
    if (missing) {
      ASSERT_TRUE(QFile::remove(installation.Lists()));
    }
    asked.clear();
    form = new mnfrm(context);
    const std::unique_ptr<mnfrm> owner(form);
    Listen();
    QSignalSpy unloaded(form, &Form::Unloaded);
    desk.messages
        .ExpectTell(Icon::kCritical, "BELTROVAN: Files missing",
                    "More files required run setup/Installed Files missing/Requires MS Office "
                    "installed")
        .WhileOpen([&] {
          EXPECT_EQ(unloaded.count(), 1);
          EXPECT_EQ(asked.value(0), "organisation form away");
          EXPECT_FALSE(asked.contains("load failed"));
          EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        });
    form->LoadForm();
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(asked.last(), "load failed");
    EXPECT_EQ(asked.count("load failed"), 1);
    if (!missing) {
      EXPECT_EQ(ReadFile(installation.Lists()), damaged);
    }
  }
}

TEST_F(MnfrmTest, AnOpenedOrganisationShowsItsProjectsFromTheFirstOn) {
  installation.GivenProject(1, "P1", "ACME",
                            {{"Project_phase", "Design"},
                             {"Project_Description", "Press line\nwith two guards"},
                             {"preparedBytxt", "Ann"}});
  GivenProjects({"P2"});
  GivenProjects({"X1"}, "Other works");
  OpenAcme();
  EXPECT_EQ(TextOf("Orglbltxt"), " ACME");
  EXPECT_EQ(RowsShownIn("DB1"), (QList<QStringList>{{"P1"}, {"P2"}}));
  EXPECT_EQ(CurrentRow(), 1);
  EXPECT_EQ(Control<Grid>("DB1").Row(), 0);
  EXPECT_EQ(TextOf("ESI_No"), "P1");
  EXPECT_EQ(TextOf("PrjStgCbo"), "Design");
  EXPECT_EQ(TextOf("ProjectDescription"), "Press line\nwith two guards");
  EXPECT_EQ(TextOf("preparedbyTxt"), "Ann");
  EXPECT_EQ(form->ESI_No(), "P1");
  EXPECT_EQ(form->ProjectDescription(), "Press line\nwith two guards");
  EXPECT_EQ(ProjectCommands(), kAllEnabled);
  EXPECT_EQ(frame.data_enabled, false);
  EXPECT_EQ(frame.tool_bar_enabled, false);
  EXPECT_EQ(asked, QStringList{"organisation form away"});
  EXPECT_EQ(session.StudyConnected, 0);
  EXPECT_EQ(session.ListTextKnown, 1);
  EXPECT_EQ(session.ProjectSql.text, sources::ProjectSql("ACME").text);
  EXPECT_EQ(Control<DataControl>("dtsorce1").ConnectionString(),
            DataControl::ConnectionStringFor(installation.Study(1)));
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(MnfrmTest, LongTextsAreShownFromTheirBeginning) {
  const QString text = QString("Press line ").repeated(20);
  for (const char* number : {"1 ", "2 "}) {
    installation.GivenProject(1, number + text, "ACME",
                              {{"Project_phase", text}, {"preparedBytxt", text}});
  }
  OpenAcme();
  for (const int row : {0, 1, 0}) {
    ClickRow("DB1", row);
    EXPECT_EQ(Control<QLineEdit>("ESI_No").cursorPosition(), 0);
    EXPECT_EQ(Control<QComboBox>("PrjStgCbo").lineEdit()->cursorPosition(), 0);
    EXPECT_EQ(Control<QLineEdit>("preparedbyTxt").cursorPosition(), 0);
  }
}

TEST_F(MnfrmTest, AnOrganisationWithoutProjectsKeepsItsCommands) {
  OpenAcme();
  EXPECT_TRUE(RowsShownIn("DB1").isEmpty());
  for (const char* field : {"ESI_No", "PrjStgCbo", "ProjectDescription", "preparedbyTxt"})
    EXPECT_EQ(TextOf(field), "") << field;
  EXPECT_EQ(TextOf("StudyNoAuto"), "0");
  EXPECT_EQ(ProjectCommands(), kAllEnabled);
  // An activation mends an unknown flag, but not on a form that is connected.
  for (const qint16 connected : {qint16{0}, qint16{1}}) {
    session.StudyConnected = connected;
    session.ListTextKnown = 0;
    GoAwayAndComeBack();
    EXPECT_EQ(session.ListTextKnown, 1 - connected);
  }
}

TEST_F(MnfrmTest, WithoutAProjectTheBoxesAreLockedAndTheListSaysWhatToDoFirst) {
  const auto expect_locked = [this](bool locked) {
    const QPalette::ColorRole back = locked ? QPalette::Window : QPalette::Base;
    for (const char* name : {"ProjectDescription", "preparedbyTxt"}) {
      EXPECT_EQ(Control<QWidget>(name).property("readOnly"), locked) << name;
      EXPECT_EQ(BackColour(&Control<QWidget>(name)), form->palette().color(back).rgb()) << name;
    }
  };
  OpenAcme();
  expect_locked(true);
  auto& list = Control<Grid>("DB1");
  EXPECT_EQ(list.placeholderText(),
            "No projects yet. Press New Project Number to add the first one.");
  const QImage said = list.grab().toImage();
  list.setPlaceholderText(QString());
  EXPECT_NE(list.grab().toImage(), said);
  TypeNewNumber("P1");
  PressTab();
  expect_locked(false);
  TypeInto("FndESINo", "no such project");
  expect_locked(true);
}

TEST_F(MnfrmTest, WithoutAnOrganisationTheCommandsAreOffWhateverWasSelected) {
  session.SelectedOrgName = "ACME";
  session.ActiveOrgName = "ACME";
  WaitForFront(Open<mnfrm>());
  EXPECT_EQ(session.ActiveOrgName, "");
  EXPECT_TRUE(RowsShownIn("DB1").isEmpty());
  EXPECT_EQ(ProjectCommands(), kAllDisabled);
  EXPECT_EQ(Control<Grid>("DB1").placeholderText(), "Select an organization first.");
}

TEST_F(MnfrmTest, TheSelectedOrganisationBecomesTheActiveOne) {
  GivenProjects({"P1"}, "Second works");
  form = &Make<mnfrm>();
  session.SelectedOrgName = "Second works";
  session.ActiveStudyNo = 1;
  form->SetOrganisationCaption(" Second works");
  WaitForFront(*form);
  LookAt(*form);
  EXPECT_EQ(session.ActiveOrgName, "Second works");
  EXPECT_EQ(TextOf("ESI_No"), "P1");
}

TEST_F(MnfrmTest, ALongNameIsCutOnTheScreenAndWholeInItsTip) {
  const QString name = "ACME" + QString(251, u'W');
  OpenOrganisation(name, 1);
  auto& label = Control<QLabel>("Orglbltxt");
  EXPECT_EQ(label.text(), u' ' + name);
  EXPECT_EQ(label.toolTip(), name);
  const QImage shown = label.grab().toImage();
  const int room = label.contentsRect().width() - 2 * label.margin();
  const QString cut = label.fontMetrics().elidedText(label.text(), Qt::ElideRight, room);
  ASSERT_TRUE(cut.endsWith(u'…'));
  label.setText(cut);
  EXPECT_EQ(label.grab().toImage(), shown);
}

TEST_F(MnfrmTest, AMissingStudyLeavesTheListEmptyAndSaysNothing) {
  OpenOrganisation("ACME", 7);
  EXPECT_TRUE(RowsShownIn("DB1").isEmpty());
  EXPECT_FALSE(Control<DataControl>("dtsorce1").HasRecordset());
  EXPECT_EQ(ProjectCommands(), kAllEnabled);
  EXPECT_FALSE(QFile::exists(installation.Study(7)));
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(MnfrmTest, AMissingStudyDoesNotShowTheProjectsOfAnotherOrganisation) {
  GivenProjects({"P1"});
  for (const int missing : {2, 0}) {
    OpenOrganisation("ACME", 1);
    ChangeOrganisation("Second works", missing);
    EXPECT_TRUE(RowsShownIn("DB1").isEmpty()) << missing;
    EXPECT_EQ(TextOf("ESI_No"), "") << missing;
    EXPECT_FALSE(QFile::exists(installation.StudySign(1))) << missing;
    Click("clsdfrm");
  }
}

TEST_F(MnfrmTest, ADamagedStudyOrAnApostropheInTheNameEndsTheActivationWithoutAWord) {
  OpenOrganisation("O'Neill", 1);
  EXPECT_TRUE(RowsShownIn("DB1").isEmpty());
  EXPECT_FALSE(Control<DataControl>("dtsorce1").HasRecordset());
  EXPECT_EQ(session.ListTextKnown, 0);
  Click("clsdfrm");
  WriteFile(installation.Study(1), "this is no database at all");
  OpenAcme();
  EXPECT_TRUE(RowsShownIn("DB1").isEmpty());
  EXPECT_EQ(session.ListTextKnown, 0);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  EXPECT_EQ(ReadFile(installation.Study(1)), "this is no database at all");
}

TEST_F(MnfrmTest, AfterAClickInTheListTheRowStaysWhenTheFormComesBack) {
  OpenAcme({"P1", "P2", "P3"});
  ClickRow("DB1", 2);
  GivenProjects({"P4"});
  GoAwayAndComeBack();
  EXPECT_EQ(session.StudyConnected, 1);
  EXPECT_EQ(CurrentRow(), 3);
  EXPECT_EQ(TextOf("ESI_No"), "P3");
  EXPECT_EQ(RowsShownIn("DB1").size(), 3);
}

TEST_F(MnfrmTest, WithoutAClickTheFormReadsTheListAnewWhenItComesBack) {
  OpenAcme({"P1", "P2"});
  TypeInto("FndESINo", "P2");
  ASSERT_EQ(TextOf("ESI_No"), "P2");
  GivenProjects({"P3"});
  GoAwayAndComeBack();
  EXPECT_EQ(session.StudyConnected, 0);
  EXPECT_EQ(TextOf("ESI_No"), "P1");
  EXPECT_EQ(RowsShownIn("DB1").size(), 3);
}

TEST_F(MnfrmTest, ARememberedOrganisationIsConnectedByItsActivation) {
  installation.GivenStudy(2);
  GivenProjects({"P1", "P2"});
  GivenProjects({"Q1", "Q2"}, "Second works", 2);
  OpenAcme();
  ClickRow("DB1", 1);
  ChangeOrganisation("Second works", 2);
  EXPECT_EQ(session.StudyConnected, 0);
  EXPECT_EQ(TextOf("ESI_No"), "Q1");
  ClickRow("DB1", 1);
  ChangeOrganisation("ACME", 1);
  EXPECT_EQ(session.StudyConnected, 1);
  EXPECT_EQ(session.ListTextKnown, 1);
  EXPECT_EQ(TextOf("ESI_No"), "P1");
  EXPECT_EQ(CurrentRow(), 1);
  ChangeOrganisation("Second works", 2);
  EXPECT_EQ(session.ListTextKnown, 2);
  EXPECT_EQ(TextOf("ESI_No"), "Q1");
}

TEST_F(MnfrmTest, AFourthOrganisationOfASessionIsNotRemembered) {
  const QStringList names = {"A", "B", "C", "D"};
  for (int study = 1; study <= 4; ++study) {
    if (study > 1) installation.GivenStudy(study);
    GivenProjects({"P1"}, names[study - 1], study);
  }
  OpenOrganisation("A", 1);
  ClickRow("DB1", 0);
  for (int study = 2; study <= 4; ++study) {
    ChangeOrganisation(names[study - 1], study);
    EXPECT_EQ(session.StudyConnected, 0) << study;
    ClickRow("DB1", 0);
  }
  ChangeOrganisation("C", 3);
  EXPECT_EQ(session.StudyConnected, 1);
  ChangeOrganisation("D", 4);
  EXPECT_EQ(session.StudyConnected, 0);
}

TEST_F(MnfrmTest, AnEmptyStudyNumberIsNeitherLookedUpNorRemembered) {
  OpenAcme({"P1", "P2"});
  ClickRow("DB1", 1);
  Click("FndESINo");
  ASSERT_EQ(session.ListTextKnown, 1);
  Control<QLineEdit>("StudyNoAuto").clear();
  session.ListTextKnown = 0;
  session.StudyConnected = 0;
  GoAwayAndComeBack();
  // The name is known, so it counts as connected; the walk finds nothing, and the last step mends
  // it.
  EXPECT_EQ(session.StudyConnected, 1);
  EXPECT_EQ(session.ListTextKnown, 1);
  EXPECT_EQ(TextOf("ESI_No"), "P1");
  session.ListTextKnown = 5;
  ClickRow("DB1", 1);
  Click("FndESINo");
  EXPECT_EQ(session.ListTextKnown, 5);
}

TEST_F(MnfrmTest, AClickInTheListNotesItsRowAndConnectsAndLeavingItRemembersTheOrganisation) {
  OpenAcme({"P1", "P2"});
  auto& grid = Control<Grid>("DB1");
  EXPECT_TRUE(grid.AllowUpdate());
  ClickRow("DB1", 1);
  EXPECT_FALSE(grid.AllowUpdate());
  EXPECT_EQ(session.GridRowNumber, 1);
  EXPECT_EQ(session.StudyConnected, 1);
  EXPECT_EQ(TextOf("ESI_No"), "P2");
  EXPECT_EQ(TextOf("StudyNoAuto"), "0") << "on every row";
  EXPECT_EQ(grid.selectionModel()->selectedRows().size(), 1);
  EXPECT_EQ(grid.selectionModel()->selectedRows().value(0).row(), 1);
  Type("zzz");
  PressKey(Qt::Key_F2);
  Type("zzz");
  // Leaving the list remembers the organisation.
  session.GridRowNumber = 9;
  session.ListTextKnown = 0;
  Click("FndESINo");
  EXPECT_TRUE(grid.AllowUpdate());
  EXPECT_EQ(session.GridRowNumber, 1);
  EXPECT_EQ(session.ListTextKnown, 1);
  EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "P2"})) << "nothing can be typed into the list";
}

TEST_F(MnfrmTest, TheBlankPartOfTheListTakesClicksToo) {
  OpenAcme({"P1"});
  const auto* list = Control<Grid>("DB1").viewport();
  const QPoint below = list->mapTo(form, list->rect().bottomLeft() + QPoint(10, -3));
  QTest::mouseClick(form->windowHandle(), Qt::LeftButton, Qt::NoModifier, below);
  Settle();
  EXPECT_EQ(session.StudyConnected, 1);
  EXPECT_FALSE(asked.contains("evaluation"));
  QTest::mouseDClick(form->windowHandle(), Qt::LeftButton, Qt::NoModifier, below);
  Settle();
  EXPECT_EQ(asked.count("evaluation"), 1);
}

TEST_F(MnfrmTest, AMoveInTheListStoresWhatWasTypedForTheRowThatIsLeft) {
  OpenAcme({"P1", "P2"});
  TypeInto("preparedbyTxt", "Ann");
  Click("FndESINo");
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "");
  ClickRow("DB1", 1);
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "Ann");
  EXPECT_EQ(TextOf("preparedbyTxt"), "");
}

TEST_F(MnfrmTest, TheFormTakesTheFrontBackWhileItHolds) {
  OpenAcme();
  ASSERT_EQ(session.ProjectFormHolds, 1);
  auto& other = Make<OtherForm>();
  other.ShowForm();
  Settle();
  WaitForFront(*form);
  session.ProjectFormHolds = 0;
  other.ShowForm();
  WaitForFront(other);
}

TEST_F(MnfrmTest, TheOrganisationFormsClosingTurnsTheCommandsByTheName) {
  OpenAcme();
  session.ProjectFormHolds = 0;
  form->SetOrganisationCaption(QString());
  form->OrganisationFormClosed();
  EXPECT_EQ(ProjectCommands(), kAllDisabled);
  EXPECT_EQ(session.ProjectFormHolds, 1);
  form->SetOrganisationCaption(" ACME");
  form->OrganisationFormClosed();
  EXPECT_EQ(ProjectCommands(), kAllEnabled);
}

TEST_F(MnfrmTest, LettingGoOfTheStudyFreesItsFileAndForgetsTheOrganisation) {
  GivenProjects({"P1"});
  for (const bool has_template : {true, false}) {
    if (!has_template) {
      ASSERT_TRUE(QFile::remove(installation.Template()));
    }
    OpenAcme();
    ASSERT_TRUE(QFile::exists(installation.StudySign(1)));
    form->LetGoOfStudy();
    EXPECT_FALSE(QFile::exists(installation.StudySign(1)));
    EXPECT_EQ(TextOf("Orglbltxt"), "");
    EXPECT_EQ(session.ActiveOrgName, "");
    if (!has_template) continue;
    EXPECT_TRUE(RowsShownIn("DB1").isEmpty());
    EXPECT_EQ(Control<DataControl>("dtsorce1").ConnectionString(),
              DataControl::ConnectionStringFor(installation.Template()));
    Click("clsdfrm");
  }
}

TEST_F(MnfrmTest, TwoUsersKeepTheirWorkOnDifferentFieldsAndOnTheSameOneTheFirstUsersTextStands) {
  OpenAcme({"P1"});
  TypeInto("ProjectDescription", "my own");
  Exec(installation.Study(1), "UPDATE Project_details SET preparedBytxt='theirs'");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_Description"), "my own");
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "theirs");
  TypeInto("ProjectDescription", "mine");
  Exec(installation.Study(1), "UPDATE Project_details SET Project_Description='theirs'");
  ExpectLost("Project_Description");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_Description"), "theirs");
  EXPECT_EQ(TextOf("ProjectDescription"), "theirs");
}

TEST_F(MnfrmTest, APickOverTheSameFieldStaysOnItsProjectAndSaysSo) {
  OpenAcme({"P1", "P2"});
  TypeInto("preparedbyTxt", "mine");
  Exec(installation.Study(1),
       "UPDATE Project_details SET preparedBytxt='theirs' WHERE Project_Number='P1'");
  ExpectLost("preparedBytxt");
  ClickRow("DB1", 1);
  EXPECT_EQ(CurrentRow(), 1);
  EXPECT_EQ(Control<Grid>("DB1").Row(), 0);
  EXPECT_EQ(TextOf("preparedbyTxt"), "theirs");
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "theirs");
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("ESI_No"), "P2");
}

TEST_F(MnfrmTest, ClosingGivesTheFrameBackAndForgetsTheSession) {
  OpenAcme({"P1"});
  ClickRow("DB1", 0);
  Click("FndESINo");
  asked.clear();
  Click("clsdfrm");
  EXPECT_EQ(asked, (QStringList{"organisation form away", "evaluation form away"}));
  EXPECT_EQ(session.ProjectFormHolds, 0);
  EXPECT_EQ(session.StudyConnected, 0);
  EXPECT_EQ(session.ActiveOrgName, "");
  EXPECT_EQ(session.SelectedOrgName, "ACME");
  EXPECT_EQ(frame.data_enabled, true);
  EXPECT_EQ(frame.tool_bar_enabled, true);
  EXPECT_EQ(frame.status_texts, QStringList{" KESTRIX : Risk Assessment Software "});
  EXPECT_EQ(frame.maximised, 1);
  EXPECT_FALSE(QFile::exists(installation.StudySign(1)));
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
  // Opened again, it remembers no organisation.
  OpenAcme();
  EXPECT_EQ(session.StudyConnected, 0);
  EXPECT_EQ(TextOf("ESI_No"), "P1");
}

TEST_F(MnfrmTest, TheTitleBarsCloseButtonClosesAsTheExitDoesAndStoresWhatWasTypedLast) {
  OpenAcme({"P1"});
  TypeInto("preparedbyTxt", "Ann");
  CloseBox(*form);
  EXPECT_EQ(session.ActiveOrgName, "");
  EXPECT_EQ(frame.data_enabled, true);
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "Ann");
}

TEST_F(MnfrmTest, ClosingLeavesTheBoxThatHasTheFocusAndAddsNoNumber) {
  GivenProjects({"P1"});
  struct Left {
    const char* box;
    const char* field;
    const char* stored;
  };
  for (const Left& left : {Left{"PrjStgCbo", "Project_phase", "N.A."},
                           Left{"ProjectDescription", "Project_Description", "None."}}) {
    OpenOrganisation("ACME", 1);
    TypeInto(left.box, "");
    CloseBox(*form);
    EXPECT_EQ(Stored("P1", left.field), left.stored);
  }
  OpenAcme();
  TypeNewNumber("P2");
  CloseBox(*form);
  EXPECT_EQ(StoredNumbers(), QStringList{"P1"});
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

}  // namespace
}  // namespace kestrix
