// Project numbers: entering, finding and deleting projects, and their description.

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>

#include "projects/MnfrmTest.h"

namespace kestrix {
namespace {

const QString kTitle = "BELTROVAN";
const QString kPrompt = "Enter Project Number.";

class ProjectNumbersTest : public MnfrmTest {
 protected:
  [[nodiscard]] QRgb EntryColour() { return BackColour(&Control<QWidget>("ESI_No_temp")); }
  [[nodiscard]] bool EntryIsBold() { return Control<QWidget>("ESI_No_temp").font().bold(); }
  [[nodiscard]] QRgb WindowColour() { return BackColour(&Control<QWidget>("preparedbyTxt")); }
  void ExpectEntryIsOpen() {
    EXPECT_TRUE(IsVisible("ESI_No_temp"));
    EXPECT_FALSE(IsVisible("ESI_No"));
    EXPECT_TRUE(HasFocus("ESI_No_temp"));
  }
  void ExpectEntryIsDone() {
    EXPECT_FALSE(IsVisible("ESI_No_temp"));
    EXPECT_TRUE(IsVisible("ESI_No"));
    EXPECT_FALSE(IsEnabled("ESI_No"));
    EXPECT_EQ(TextOf("ESI_No_temp"), "");
    EXPECT_TRUE(HasFocus("PrjStgCbo"));
  }
  void ExpectKnown(const QString& number, Button answer) {
    desk.messages.ExpectAsk(
        Icon::kCritical, "BELTROVAN: ERROR",
        "Project No. [" + number + "] already exists. Wish to enter same Project?", answer);
  }
  void AddNumber(const QString& number) {
    TypeNewNumber(number);
    PressTab();
  }
};

TEST_F(ProjectNumbersTest, ANewNumberBecomesAProjectWithItsFirstValues) {
  OpenAcme({"P1", "P2"});
  AddNumber("P3");
  EXPECT_EQ(RowsOf(installation.Study(1), "Project_details").last(),
            (QStringList{"ACME", "P3", "None", "N.A.", ""}));
  EXPECT_EQ(RowsShownIn("DB1"), (QList<QStringList>{{"P1"}, {"P2"}, {"P3"}}));
  EXPECT_EQ(CurrentRow(), 3);
  EXPECT_EQ(Control<Grid>("DB1").Row(), 2);
  EXPECT_EQ(TextOf("ESI_No"), "P3");
  EXPECT_EQ(TextOf("PrjStgCbo"), "None");
  EXPECT_EQ(TextOf("ProjectDescription"), "N.A.");
  EXPECT_EQ(TextOf("Orglbltxt"), "ACME");
  ExpectEntryIsDone();
}

TEST_F(ProjectNumbersTest, NumbersAreAddedToTheLetterAndOthersOrganisationsOnesAreFree) {
  GivenProjects({"P1"}, "Second works");
  OpenAcme();
  QStringList stored = {"P1"};
  for (const QString& number :
       {QString("P1"), QString("12"), QString("12  "), QString("abc"), QString("ABC")}) {
    AddNumber(number);
    stored += number;
    EXPECT_EQ(StoredNumbers(), stored);
    EXPECT_EQ(CurrentRow(), stored.size() - 1);
    ExpectEntryIsDone();
  }
  AddNumber(QString(300, u'n'));
  EXPECT_EQ(StoredNumbers().last(), QString(255, u'n'));
}

TEST_F(ProjectNumbersTest, AClickElsewhereEndsTheEntryAsTabDoes) {
  OpenAcme();
  TypeNewNumber("P1");
  Click("preparedbyTxt");
  EXPECT_EQ(StoredNumbers(), QStringList{"P1"});
  ExpectEntryIsDone();
}

TEST_F(ProjectNumbersTest, ALeadingBlankIsRefusedAndTheBoxIsPaintedUntilTheNumberIsMended) {
  OpenAcme({"P1"});
  TypeNewNumber("  12");
  desk.messages.ExpectTell(Icon::kCritical, kTitle, "Can not begin with a space.");
  PressTab();
  ExpectEntryIsOpen();
  EXPECT_EQ(TextOf("ESI_No_temp"), "  12");
  EXPECT_EQ(SelectedTextOf("ESI_No_temp"), " ");
  EXPECT_EQ(Control<QLineEdit>("ESI_No_temp").selectionStart(), 0);
  EXPECT_EQ(EntryColour(), colour::kWarning);
  desk.messages.ExpectTell(Icon::kCritical, kTitle, "Can not begin with a space.");
  Click("delteZapNo");
  ExpectEntryIsOpen();
  EXPECT_EQ(StoredNumbers(), QStringList{"P1"}) << "the command isn't carried out either";
  for (int blank = 0; blank < 2; ++blank) PressKey(Qt::Key_Delete);
  PressTab();
  EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "12"}));
  EXPECT_EQ(EntryColour(), WindowColour());
  EXPECT_TRUE(EntryIsBold());
}

TEST_F(ProjectNumbersTest, AnEmptyEntryAsksForANumberAndHoldsTheFocusUntilOneIsTyped) {
  OpenAcme();
  Click("NwESINo");
  ExpectEntryIsOpen();
  PressTab();
  ExpectEntryIsOpen();
  EXPECT_EQ(TextOf("ESI_No_temp"), kPrompt);
  EXPECT_EQ(SelectedTextOf("ESI_No_temp"), kPrompt);
  EXPECT_FALSE(EntryIsBold());
  EXPECT_EQ(EntryColour(), colour::kWarning);
  // The prompt itself counts as empty.
  PressTab();
  ExpectEntryIsOpen();
  EXPECT_TRUE(StoredNumbers().isEmpty());
  Type("P7");
  PressTab();
  EXPECT_EQ(StoredNumbers(), QStringList{"P7"});
  ExpectEntryIsDone();
  Click("NwESINo");
  CloseBox(*form);
  EXPECT_EQ(StoredNumbers(), QStringList{"P7"}) << "an empty entry is no obstacle to closing";
}

TEST_F(ProjectNumbersTest, YesOnAKnownNumberGoesToThatProjectAndNoAsksForAnotherOne) {
  OpenAcme({"P1", "P2", "P3"});
  ExpectKnown("P2", Button::kNo);
  AddNumber("P2");
  ExpectEntryIsOpen();
  EXPECT_EQ(TextOf("ESI_No_temp"), kPrompt);
  EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "P2", "P3"}));
  Type("P2");
  ExpectKnown("P2", Button::kYes);
  PressTab();
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
  EXPECT_EQ(session.LoopIndex, 2);
  EXPECT_EQ(CurrentRow(), 2);
  EXPECT_EQ(TextOf("ESI_No"), "P2");
  EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "P2", "P3"}));
  EXPECT_EQ(TextOf("Orglbltxt"), " ACME");
  ExpectEntryIsDone();
  // One that another user has given meanwhile is known too.
  GivenProjects({"P4"});
  ExpectKnown("P4", Button::kYes);
  AddNumber("P4");
  EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "P2", "P3", "P4"}));
  EXPECT_EQ(TextOf("ESI_No"), "P4");
  EXPECT_EQ(RowsShownIn("DB1").size(), 4);
  ExpectEntryIsDone();
}

TEST_F(ProjectNumbersTest, ARefusedNewProjectLeavesNothingBehind) {
  OpenAcme({"P1", "P2"});
  RefuseEqual("Project_Number");
  TypeNewNumber("p1");
  desk.messages.ExpectTell(Icon::kCritical, kTitle,
                           installation.Study(1) +
                               ": UNIQUE constraint failed: Project_details.Project_Number."
                               "\n\nProject_Number\nYours: p1");
  PressTab();
  EXPECT_FALSE(IsVisible("ESI_No_temp"));
  EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "P2"}));
  EXPECT_EQ(RowsShownIn("DB1"), (QList<QStringList>{{"P1"}, {"P2"}}));
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("ESI_No"), "P2");
}

TEST_F(ProjectNumbersTest, WithoutAStudyANewNumberGoesNowhere) {
  OpenOrganisation("ACME", 9);
  AddNumber("P1");
  EXPECT_FALSE(IsVisible("ESI_No_temp"));
  EXPECT_EQ(TextOf("ESI_No"), "");
  EXPECT_FALSE(QFile::exists(installation.Study(9)));
}

TEST_F(ProjectNumbersTest, WithoutAnOrganisationANewNumberLeavesTheTemplateEmpty) {
  OpenAcme({"P1"});
  form->LetGoOfStudy();
  const QByteArray untouched = ReadFile(installation.Template());
  AddNumber("P9");
  ExpectEntryIsDone();
  EXPECT_EQ(StoredNumbers(), QStringList{"P1"});
  EXPECT_TRUE(RowsOf(installation.Template(), "Project_details").isEmpty());
  CloseBox(*form);
  EXPECT_EQ(ReadFile(installation.Template()), untouched) << "every new study is a copy of it";
}

TEST_F(ProjectNumbersTest, LeavingTheNumberItselfAsksForANumber) {
  OpenAcme({"P1"});
  Control<QLineEdit>("ESI_No").setEnabled(true);
  Click("ESI_No");
  desk.messages.ExpectTell(Icon::kCritical, kTitle, kPrompt);
  PressTab();
  EXPECT_FALSE(IsEnabled("ESI_No"));
  EXPECT_EQ(StoredNumbers(), QStringList{"P1"});
}

TEST_F(ProjectNumbersTest, AnotherUsersNewProjectsAppearWithTheNextAdd) {
  OpenAcme({"P1"});
  GivenProjects({"P2"});
  AddNumber("P3");
  EXPECT_EQ(RowsShownIn("DB1"), (QList<QStringList>{{"P1"}, {"P2"}, {"P3"}}));
  EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "P2", "P3"}));
  EXPECT_EQ(TextOf("ESI_No"), "P3") << "what is typed next is meant for the new project";
  TypeInto("PrjStgCbo", "Pilot run");
  PressTab();
  EXPECT_EQ(Stored("P3", "Project_phase"), "Pilot run");
  EXPECT_NE(Stored("P2", "Project_phase"), "Pilot run");
}

TEST_F(ProjectNumbersTest, ANewProjectIsInHandThoughSomebodyElseAddedOneInTheSameMoment) {
  OpenAcme({"P1"});
  QObject::connect(&Control<DataControl>("dtsorce1"), &DataControl::RowInserted, form,
                   [this] { GivenProjects({"Theirs"}); });
  AddNumber("Mine");
  EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "Mine", "Theirs"}));
  EXPECT_EQ(TextOf("ESI_No"), "Mine");
  ExpectEntryIsDone();
}

TEST_F(ProjectNumbersTest, ProjectsThatAnotherUserDeletedDoNotDisturbANewOne) {
  OpenAcme({"P1", "P2", "P3"});
  Exec(installation.Study(1), "DELETE FROM Project_details WHERE Project_Number<>'P2'");
  AddNumber("P4");
  EXPECT_EQ(StoredNumbers(), (QStringList{"P2", "P4"}));
  EXPECT_EQ(TextOf("ESI_No"), "P4");
  EXPECT_EQ(RowsShownIn("DB1"), (QList<QStringList>{{"P2"}, {"P4"}}));
  ExpectEntryIsDone();
}

TEST_F(ProjectNumbersTest, FindStandsOnTheFirstNumberThatBeginsWithTheText) {
  OpenAcme({"A-1", "B-1", "B-2", "b-3"});
  for (const auto& [text, row] : {std::pair("B", 1), std::pair("B-2", 2), std::pair("b", 3),
                                  std::pair("", 0), std::pair("1", -1)}) {
    TypeInto("FndESINo", text);
    EXPECT_EQ(Control<Grid>("DB1").Row(), row) << text;
    EXPECT_EQ(TextOf("ESI_No"), RowsShownIn("DB1").value(row).value(0)) << text;
  }
}

TEST_F(ProjectNumbersTest, WithoutAMatchNoProjectIsCurrentAndTheEntryBoxSaysSo) {
  OpenAcme({"A-1", "B-1"});
  TypeInto("FndESINo", "Z");
  EXPECT_EQ(CurrentRow(), Recordset::kPositionPastLast);
  for (const char* field : {"ESI_No", "PrjStgCbo", "ProjectDescription", "preparedbyTxt"})
    EXPECT_EQ(TextOf(field), "") << field;
  EXPECT_FALSE(Control<Grid>("DB1").currentIndex().isValid());
  EXPECT_EQ(TextOf("ESI_No_temp"), "No records found!");
  EXPECT_FALSE(IsVisible("ESI_No_temp"));
  Click("NwESINo");
  EXPECT_EQ(SelectedTextOf("ESI_No_temp"), "No records found!");
  Type("C-1");
  PressTab();
  EXPECT_EQ(StoredNumbers(), (QStringList{"A-1", "B-1", "C-1"}));
  ExpectEntryIsDone();
}

TEST_F(ProjectNumbersTest,
       LeavingTheBoxesPastTheLastProjectShowsTheirPlaceholdersAndStoresNothing) {
  GivenProjects({"A-1"});
  const auto before = RowsOf(installation.Study(1), "Project_details");
  OpenAcme();
  TypeInto("FndESINo", "Z");
  Click("ProjectDescription");
  Click("PrjStgCbo");
  EXPECT_EQ(TextOf("ProjectDescription"), "None.");
  Click("preparedbyTxt");
  EXPECT_EQ(TextOf("PrjStgCbo"), "N.A.");
  CloseBox(*form);
  EXPECT_EQ(RowsOf(installation.Study(1), "Project_details"), before);
}

TEST_F(ProjectNumbersTest, FindInAnEmptyListDoesNothing) {
  OpenAcme();
  TypeInto("FndESINo", "Z");
  EXPECT_EQ(TextOf("ESI_No_temp"), "");
  Click("clsdfrm");
  Open<mnfrm>();  // without any rows
  TypeInto("FndESINo", "Z");
  EXPECT_EQ(TextOf("FndESINo"), "Z");
  EXPECT_TRUE(desk.messages.Shown().isEmpty());
}

TEST_F(ProjectNumbersTest, FindOverManyProjectsShowsItsResultOnce) {
  GivenManyProjects(10000);
  OpenAcme();
  QSignalSpy shown(&Control<DataControl>("dtsorce1"), &DataControl::Shown);
  TypeInto("FndESINo", "P9999");
  EXPECT_EQ(TextOf("ESI_No"), "P9999");
  EXPECT_EQ(shown.count(), 5);
  shown.clear();
  Type("x");
  EXPECT_EQ(shown.count(), 1);
  EXPECT_EQ(TextOf("ESI_No"), "");
}

TEST_F(ProjectNumbersTest, FindStoresWhatWasTypedAndPassesProjectsThatAnotherUserDeleted) {
  OpenAcme({"A-1", "A-2", "B-1"});
  Exec(installation.Study(1), "DELETE FROM Project_details WHERE Project_Number='A-2'");
  TypeInto("preparedbyTxt", "Ann");
  TypeInto("FndESINo", "B");
  EXPECT_EQ(Stored("A-1", "preparedBytxt"), "Ann");
  EXPECT_EQ(TextOf("ESI_No"), "B-1");
}

class MnfrmDeleteTest : public ProjectNumbersTest {
 protected:
  void ExpectQuestion(const QString& number, Button answer = Button::kYes) {
    desk.messages.ExpectAsk(Icon::kInformation, "BELTROVAN: Delete record",
                            "Wish to delete Project Number. [" + number + "] from records?",
                            answer);
  }
  void Delete(const QString& number, Button answer = Button::kYes) {
    ExpectQuestion(number, answer);
    Click("delteZapNo");
  }
};

TEST_F(MnfrmDeleteTest, YesDeletesTheProjectAndStandsOnTheFirst) {
  OpenAcme({"P1", "P2", "P3"});
  ClickRow("DB1", 1);
  Delete("P2");
  EXPECT_EQ(StoredNumbers(), (QStringList{"P1", "P3"}));
  EXPECT_EQ(RowsShownIn("DB1"), (QList<QStringList>{{"P1"}, {"P3"}}));
  EXPECT_EQ(TextOf("ESI_No"), "P1");
  EXPECT_EQ(session.MsgAnswer, Button::kYes);
}

TEST_F(MnfrmDeleteTest, NoKeepsTheProjectAndAfterTheLastOneThereIsNothingToDelete) {
  OpenAcme({"P1"});
  Delete("P1", Button::kNo);
  EXPECT_EQ(StoredNumbers(), QStringList{"P1"});
  EXPECT_EQ(kit.forms.active(), form);
  EXPECT_EQ(session.MsgAnswer, Button::kNo);
  ExpectQuestion("P1");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "No records to delete.");
  Click("delteZapNo");
  EXPECT_TRUE(StoredNumbers().isEmpty());
  EXPECT_TRUE(RowsShownIn("DB1").isEmpty());
  EXPECT_EQ(TextOf("ESI_No"), "");
  desk.messages.ExpectTell(Icon::kInformation, kTitle, "No records selceted");
  Click("delteZapNo");
}

TEST_F(MnfrmDeleteTest, WhatIsKeptUnderTheNumberStays) {
  GivenProjects({"P1", "P2"});
  installation.GivenTask(1, {{"Project_Number", "P1"}, {"FuntnTaskMachry", "Feeding"}});
  Exec(installation.Study(1), "INSERT INTO fileLink VALUES('P1','/a/plan.pdf','plan.pdf','')");
  OpenAcme();
  Delete("P1");
  EXPECT_EQ(StoredNumbers(), QStringList{"P2"});
  EXPECT_EQ(Column(installation.Study(1), "SELECT FuntnTaskMachry FROM Risk_records"),
            QStringList{"Feeding"});
  EXPECT_EQ(Column(installation.Study(1), "SELECT FilePath FROM fileLink"),
            QStringList{"/a/plan.pdf"});
  AddNumber("P1");
  EXPECT_EQ(StoredNumbers(), (QStringList{"P2", "P1"})) << "which inherits what stayed";
}

TEST_F(MnfrmDeleteTest, AProjectThatAnotherUserDeletedFirstEndsTheCommandWithoutAWord) {
  OpenAcme({"P1", "P2"});
  ExpectQuestion("P1", Button::kYes);
  Exec(installation.Study(1), "DELETE FROM Project_details WHERE Project_Number='P1'");
  Click("delteZapNo");
  EXPECT_EQ(StoredNumbers(), QStringList{"P2"});
}

TEST_F(ProjectNumbersTest,
       ADescriptionIsStoredUpToItsGreatestLengthWhenItsBoxIsLeftAndABlankOneBecomesNone) {
  OpenAcme({"P1"});
  TypeInto("preparedbyTxt", "Ann");
  Click("ProjectDescription");
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "");
  TypeInto("ProjectDescription", "Two lines\nof text");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_Description"), "Two lines\nof text");
  EXPECT_EQ(Stored("P1", "preparedBytxt"), "Ann") << "what was typed before it is stored with it";
  TypeInto("ProjectDescription", "");
  PressTab();
  EXPECT_EQ(TextOf("ProjectDescription"), "None.");
  EXPECT_EQ(Stored("P1", "Project_Description"), "None.");
  Click("ProjectDescription");
  Control<QPlainTextEdit>("ProjectDescription").setPlainText(QString(65535, u'x') + "y");
  Type("z");
  PressTab();
  EXPECT_EQ(Stored("P1", "Project_Description"), QString(65535, u'x'));
}

TEST_F(ProjectNumbersTest, ARefusedDescriptionStaysToBeMendedAndHoldsItsProject) {
  GivenProjects({"P1"});
  installation.GivenProject(1, "P2", "ACME", {{"Project_Description", "taken"}});
  OpenAcme();
  RefuseEqual("Project_Description");
  TypeInto("ProjectDescription", "taken");
  PressTab();
  EXPECT_EQ(TextOf("ProjectDescription"), "taken");
  EXPECT_EQ(Stored("P1", "Project_Description"), "N.A.");
  desk.messages.ExpectTell(
      Icon::kCritical, kTitle,
      installation.Study(1) + ": UNIQUE constraint failed: Project_details.Project_Description.");
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("ESI_No"), "P1");
  TypeInto("ProjectDescription", "free");
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("ESI_No"), "P2");
  EXPECT_EQ(Stored("P1", "Project_Description"), "free");
}

TEST_F(ProjectNumbersTest, AStudyThatARestoreReplacedIsToldAndTheTextStaysToBeCopied) {
  OpenAcme({"P1", "P2"});
  TypeInto("ProjectDescription", "mine");
  const QString study = installation.Study(1);
  ASSERT_TRUE(QFile::copy(study, study + ".restored"));
  ASSERT_EQ(std::rename(QFile::encodeName(study + ".restored"), QFile::encodeName(study)), 0);
  const QString told = study +
                       " has been replaced or deleted since it was opened, as a restore does. "
                       "Leave the form and open it again.";
  for (int again = 0; again < 2; ++again) desk.messages.ExpectTell(Icon::kCritical, kTitle, told);
  PressTab();
  EXPECT_EQ(TextOf("ProjectDescription"), "mine");
  ClickRow("DB1", 1);
  EXPECT_EQ(TextOf("ProjectDescription"), "mine");
  desk.messages.ExpectTell(Icon::kCritical, kTitle, told + "\n\nProject_Description\nYours: mine");
  form->UnloadForm();
  EXPECT_EQ(Stored("P1", "Project_Description"), "N.A.");
}

}  // namespace
}  // namespace kestrix
