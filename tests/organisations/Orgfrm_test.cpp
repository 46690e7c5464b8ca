#include <QStyleOptionComboBox>

#include "OrgfrmTest.h"

namespace kestrix {
namespace {

const Message kNameNeeded =
    Tell(Icon::kInformation, "BELTROVAN: Data required", "Please enter/select Organization name.");
const Message kLeadingSpace = Tell(Icon::kCritical, "BELTROVAN", "Can not begin with a space.");
const Message kFilesMissing = Tell(Icon::kCritical, "BELTROVAN: Files missing",
                                   "More files required run setup/Installed Files missing");

Message AlreadyExists(const QString& name) {
  return Tell(Icon::kCritical, "BELTROVAN: Duplication",
              "Organization name [" + name + "] already exists.");
}

TEST_F(OrgfrmTest, ShowsItsCaptionsTipsAndStartTexts) {
  OpenOrganisations();
  EXPECT_EQ(form->windowTitle(), " BELTROVAN: Select/Enter Organization /Project");
  EXPECT_EQ(TextOf("orgmnelbl"), "Name of Organization /Project");
  EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
  EXPECT_EQ(TextOf("orgnmecbotxt"), "Select organization");
  EXPECT_EQ(TextOf("clsd"), "&Open Orgn");
  EXPECT_EQ(TextOf("addorncmd"), "&New Orgn.");
  EXPECT_EQ(TextOf("delte"), "&Delete");
  EXPECT_EQ(TextOf("clsed"), "&Exit");
  EXPECT_EQ(TextOf("fle"), "Open from &history");
  EXPECT_EQ(TextOf("hstry"), "No history");
  EXPECT_EQ(Control<QWidget>("clsd").toolTip(), "Selected Organization");
  EXPECT_EQ(Control<QWidget>("addorncmd").toolTip(), "Add new Organization");
  EXPECT_EQ(Control<QWidget>("delte").toolTip(), "Delete Organization");
  EXPECT_EQ(TextOf("Label1"),
            "IMP: To add new organization Textbox should display \"Select Organization\" (Do not "
            "select any organization from the list box) then click [New Orgn]. after entering new "
            "organization in the textbox press Tab key on the keyboard to change curser position "
            "and then select Organization from list box and click [Open Orgn].");
  EXPECT_EQ(TagOf("addorncmd"), "0");
  EXPECT_TRUE(IsLocked());
}

TEST_F(OrgfrmTest, TextLeavesTheArrowOfItsListFreeInEitherDirection) {
  for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    OpenOrganisations();
    form->setLayoutDirection(direction);
    Settle();
    const auto& combo = Control<QComboBox>("orgnmecbo");
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    option.editable = true;
    const QRect arrow = combo.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                      QStyle::SC_ComboBoxArrow, &combo);
    const auto& text = Control<QWidget>("orgnmecbotxt");
    const QRect covered(text.mapTo(form, QPoint()), text.size());
    EXPECT_FALSE(covered.intersects(QRect(combo.mapTo(form, arrow.topLeft()), arrow.size())))
        << direction;
    form->UnloadForm();
    Settle();
  }
}

TEST_F(OrgfrmTest, LoadGoesToTheApplicationsFolderAndOpensTheRegister) {
  session.OrgEntryMode = 2;
  LoadOrganisations();
  EXPECT_EQ(desk.files.CurrentFolder(), installation.Folder());
  EXPECT_EQ(session.OrgDbPath, paths.Register());
  EXPECT_EQ(session.OrgEntryMode, 0);
  for (const char* name : {"Orgndata", "orgtmpRcd", "DeltRcd"}) {
    const auto* source = form->findChild<DataControl*>(name);
    ASSERT_NE(source, nullptr) << name;
    EXPECT_EQ(source->DatabaseName(), paths.Register());
    EXPECT_TRUE(source->HasRecordset());
  }
  EXPECT_EQ(form->findChild<DataControl*>("Orgndata")->RecordSource(), "Orgtn");
  EXPECT_EQ(form->findChild<DataControl*>("orgtmpRcd")->RecordSource(),
            "SELECT Orgtmp.OrgNameTMP FROM Orgtmp");
  EXPECT_EQ(form->findChild<DataControl*>("DeltRcd")->RecordSource(),
            "SELECT orgtn.OrgName, Orgtn.sclenotxt FROM orgtn");
}

TEST_F(OrgfrmTest, ListsTheNamesInTheOrderOfTheRegister) {
  installation.GivenOrganisation("Press shop", 1);
  installation.GivenOrganisation("Assembly", 2);
  installation.GivenOrganisation("assembly", 3);
  OpenOrganisations();
  EXPECT_EQ(ItemsOf("orgnmecbo"), QStringList({"Press shop", "Assembly", "assembly"}));
  EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
}

TEST_F(OrgfrmTest, EmptyRegisterOffersToAddAndToLeave) {
  OpenOrganisations();
  EXPECT_TRUE(ItemsOf("orgnmecbo").isEmpty());
  EXPECT_TRUE(IsEnabled("addorncmd"));
  EXPECT_TRUE(IsEnabled("clsed"));
  desk.messages.Expect(kNameNeeded);
  Click("clsd");
  EXPECT_FALSE(IsGone());
  EXPECT_EQ(FocusName(), "orgnmecbotxt");
  EXPECT_TRUE(Organisations().isEmpty());
}

TEST_F(OrgfrmTest, PickedNameIsShownAndTurnsExitOff) {
  installation.GivenOrganisation("Press shop", 1);
  OpenOrganisations();
  EXPECT_TRUE(IsEnabled("clsed"));
  PickOrganisation("Press shop");
  EXPECT_EQ(TextOf("orgnmecbo"), "Press shop");
  EXPECT_EQ(TextOf("orgnmecbotxt"), "Press shop");
  EXPECT_EQ(Enabled(), QStringList({"clsd", "addorncmd", "delte"}));
  Control<QWidget>("clsd").setEnabled(false);
  Control<QLineEdit>("orgnmecbotxt").setText("Press");
  EXPECT_TRUE(IsEnabled("clsd")) << "a changed text turns both on";
  EXPECT_TRUE(IsEnabled("clsed"));
  PickOrganisation("Press shop");
  EXPECT_EQ(TextOf("orgnmecbotxt"), "Press shop") << "the same name again is a pick too";
  EXPECT_FALSE(IsEnabled("clsed"));
}

TEST_F(OrgfrmTest, PickOfNoNameTurnsOpenAndExitOff) {
  Exec(installation.Register(), "INSERT INTO orgtn(OrgName) VALUES('Select organization')");
  OpenAndPick("Select organization");
  EXPECT_EQ(Enabled(), QStringList({"addorncmd", "delte"}));
}

TEST_F(OrgfrmTest, NothingIsTypedIntoLockedBoxesOrIntoTheCombo) {
  installation.GivenOrganisation("Press shop", 1);
  OpenOrganisations();
  Click("orgnmecbotxt");
  Type("x");
  EXPECT_EQ(TextOf("orgnmecbotxt"), "Select organization");
  PressShiftTab();
  EXPECT_EQ(FocusName(), "orgnmecbo");
  Type("x");
  EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
}

TEST_F(OrgfrmTest, KeysPickFromTheList) {
  installation.GivenOrganisation("Press shop", 1);
  installation.GivenOrganisation("Assembly", 2);
  OpenOrganisations();
  ASSERT_EQ(FocusName(), "orgnmecbo");
  PressKey(Qt::Key_Down);
  EXPECT_EQ(TextOf("orgnmecbotxt"), "Press shop");
  PressKey(Qt::Key_Down);
  EXPECT_EQ(TextOf("orgnmecbotxt"), "Assembly");
  EXPECT_FALSE(IsEnabled("clsed"));
}

TEST_F(OrgfrmTest, TabGoesFromTheNameToTheCommands) {
  OpenOrganisations();
  QStringList order = {FocusName()};
  for (int i = 0; i < 6; ++i) {
    PressTab();
    order += FocusName();
  }
  EXPECT_EQ(order, QStringList({"orgnmecbo", "orgnmecbotxt", "clsd", "addorncmd", "delte", "clsed",
                                "orgnmecbo"}));
}

TEST_F(OrgfrmTest, DoubleClickOnTheComboOrOnItsFaceOpensItsName) {
  installation.GivenOrganisation("Press shop", 4);
  for (const bool face : {true, false}) {
    session.ActiveStudyNo = 0;
    OpenAndPick("Press shop");
    if (face) {
      DoubleClickFace();
    } else {
      QTest::mouseDClick(&Control<QComboBox>("orgnmecbo"), Qt::LeftButton);
      Settle();
    }
    EXPECT_TRUE(IsGone());
    EXPECT_EQ(session.ActiveStudyNo, 4);
    EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
  }
}

TEST_F(OrgfrmTest, DoubleClickWhileTypingSelectsAWordAndTheCloseBoxDropsIt) {
  OpenOrganisations();
  TypeNew("Press");
  DoubleClickFace();
  EXPECT_EQ(SelectedTextOf("orgnmecbotxt"), "Press");
  EXPECT_TRUE(told.isEmpty());
  CloseBox(*form);
  EXPECT_TRUE(IsGone());
  EXPECT_EQ(told, QStringList({"closing"})) << "as by Exit";
  EXPECT_EQ(session.OrgEntryMode, 0);
  EXPECT_TRUE(Organisations().isEmpty());
  OpenOrganisations();
  EXPECT_EQ(TagOf("addorncmd"), "0") << "a new load reads the design again";
  EXPECT_TRUE(IsEnabled("orgnmecbo"));
}

TEST_F(OrgfrmTest, AddingUnlocksTheBoxAndGivesItTheFocus) {
  installation.GivenOrganisation("Press shop", 1);
  OpenOrganisations();
  Click("addorncmd");
  EXPECT_EQ(TagOf("addorncmd"), "1");
  EXPECT_EQ(TagOf("clsd"), "0");
  EXPECT_EQ(session.OrgEntryMode, 1);
  EXPECT_EQ(TextOf("orgnmecbo"), "");
  EXPECT_EQ(TextOf("orgnmecbotxt"), "");
  EXPECT_FALSE(IsEnabled("orgnmecbo"));
  EXPECT_FALSE(IsLocked());
  EXPECT_FALSE(IsEnabled("addorncmd"));
  EXPECT_FALSE(IsEnabled("clsed"));
  EXPECT_EQ(FocusName(), "orgnmecbotxt");
  Type("A");
  EXPECT_EQ(TextOf("orgnmecbotxt"), "A");
  EXPECT_TRUE(IsEnabled("clsd"));
  EXPECT_FALSE(IsEnabled("clsed"));
}

class OrgfrmNewNameTest : public OrgfrmTest, public ::testing::WithParamInterface<bool> {};

TEST_P(OrgfrmNewNameTest, NewNameIsStoredOnceAndOpenedAtOnce) {
  OpenOrganisations();
  TypeNew("Press shop");
  GetParam() ? Click("clsd") : PressTab();
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Press shop", "1"}}));
  EXPECT_TRUE(QFile::exists(installation.Study(1)));
  EXPECT_EQ(session.ActiveOrgName, "Press shop");
  EXPECT_EQ(session.SelectedOrgName, "Press shop");
  EXPECT_EQ(session.ActiveStudyNo, 1);
  EXPECT_EQ(session.OrgCount, 1);
  EXPECT_EQ(LastOpened(), QStringList({"1"}));
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
  EXPECT_TRUE(IsGone());
}

INSTANTIATE_TEST_SUITE_P(EachWay, OrgfrmNewNameTest, ::testing::Bool(),
                         [](const auto& way) { return way.param ? "ByOpen" : "ByTab"; });

TEST_F(OrgfrmTest, NamesAreStoredAsTypedUpToTheirGreatestLength) {
  const QString longest(255, u'x');
  const QString scripts = QString::fromUtf8("O'Brien & \"Söhne\" %1 機械 🛠");
  const std::pair<QString, QString> names[] = {
      {scripts, scripts}, {"A   ", "A   "}, {longest + "y", longest}, {"a   ", "a   "}};
  QList<QStringList> stored;
  for (const auto& [typed, kept] : names) {
    OpenOrganisations();
    Click("addorncmd");
    Control<QLineEdit>("orgnmecbotxt").clear();
    Control<QLineEdit>("orgnmecbotxt").insert(typed);
    PressTab();
    stored.append({kept, QString::number(stored.size() + 1)});
    EXPECT_EQ(Organisations(), stored);
    EXPECT_EQ(session.ActiveOrgName, kept);
  }
}

TEST_F(OrgfrmTest, LeadingSpaceIsRefusedAndBoxStaysPaintedWhenTheNameIsMended) {
  OpenOrganisations();
  TypeNew(" Press shop");
  desk.messages.Expect(kLeadingSpace);
  PressTab();
  EXPECT_EQ(BackColour(&Control<QWidget>("orgnmecbotxt")), 0xFFFFE0C0U);
  EXPECT_EQ(FocusName(), "orgnmecbotxt");
  EXPECT_EQ(SelectedTextOf("orgnmecbotxt"), " ");
  EXPECT_EQ(TextOf("orgnmecbo"), "");
  EXPECT_TRUE(Organisations().isEmpty());
  EXPECT_TRUE(told.isEmpty());
  PressKey(Qt::Key_Delete);
  EXPECT_EQ(BackColour(&Control<QWidget>("orgnmecbotxt")), 0xFFFFE0C0U);
  PressTab();
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Press shop", "1"}}));
}

TEST_F(OrgfrmTest, EmptyOrReservedNameIsAskedForAgainAndEatsTheClickThatLeftTheBox) {
  installation.GivenOrganisation("Press shop", 1);
  for (const char* name : {"", "Select organization"}) {
    OpenOrganisations();
    TypeNew(name);
    desk.messages.Expect(kNameNeeded);
    Click("delte");
    EXPECT_EQ(FocusName(), "orgnmecbotxt");
    EXPECT_FALSE(IsEnabled("clsd"));
    EXPECT_FALSE(IsEnabled("clsed"));
    EXPECT_EQ(session.OrgEntryMode, 1);
    EXPECT_EQ(Organisations().size(), 1);
    EXPECT_TRUE(QFile::exists(installation.Study(1))) << "the click isn't carried out";
  }
}

TEST_F(OrgfrmTest, LeavingTheBoxWhenIdleOnlyKeepsTheTexts) {
  installation.GivenOrganisation("Press shop", 1);
  OpenOrganisations();
  for (const char* name : {"", "Press shop"}) {
    if (*name) PickOrganisation(name);
    Click("orgnmecbotxt");
    session.SelectedOrgName = "before";
    PressTab();
    EXPECT_EQ(session.SelectedOrgName, name);
    EXPECT_EQ(TextOf("orgnmecbo"), *name ? name : "Select organization");
  }
  EXPECT_TRUE(told.isEmpty());
  Control<QLineEdit>("orgnmecbotxt").setText("Press");
  Click("orgnmecbotxt");
  PressTab();
  EXPECT_EQ(TextOf("orgnmecbo"), "Press");
  EXPECT_EQ(session.SelectedOrgName, "Press shop");
}

TEST_F(OrgfrmTest, LeavingTheBoxAfterAnOpenLocksIt) {
  installation.GivenOrganisation("Press shop", 1);
  OpenOrganisations();
  session.OrgEntryMode = 2;
  Control<QLineEdit>("orgnmecbotxt").setReadOnly(false);
  Control<QLineEdit>("orgnmecbotxt").setText("Press shop");
  Control<QWidget>("clsd").setEnabled(false);
  Click("orgnmecbotxt");
  PressTab();
  EXPECT_TRUE(IsLocked());
  EXPECT_TRUE(IsEnabled("clsd"));
  EXPECT_EQ(TextOf("orgnmecbotxt"), "Press shop");
  EXPECT_EQ(Organisations().size(), 1);
  EXPECT_TRUE(told.isEmpty());
}

TEST_F(OrgfrmTest, KnownNameOpensThatOrganisationAfterTheDuplicateMessage) {
  installation.GivenOrganisation("Assembly", 2);
  installation.GivenOrganisation("Press shop", 7);
  OpenOrganisations();
  desk.messages.Expect(AlreadyExists("Press shop")).WhileOpen([&] {
    EXPECT_EQ(session.OrgEntryMode, 1);
    EXPECT_EQ(TagOf("addorncmd"), "1");
  });
  Add("Press shop");
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Assembly", "2"}, {"Press shop", "7"}}));
  EXPECT_EQ(session.ActiveOrgName, "Press shop");
  EXPECT_EQ(session.SelectedOrgName, "Press shop");
  EXPECT_EQ(session.ActiveStudyNo, 7);
  EXPECT_EQ(session.OrgEntryMode, 0);
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
  EXPECT_TRUE(IsGone());
}

TEST_F(OrgfrmTest, NameThatSomebodyElseAddedMeanwhileIsADuplicate) {
  OpenOrganisations();
  TypeNew("Press shop");
  OtherProcess other(installation.Register());
  other.Run("INSERT INTO orgtn VALUES('Press shop',5);");
  desk.messages.Expect(AlreadyExists("Press shop"));
  PressTab();
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Press shop", "5"}}));
  EXPECT_TRUE(IsGone());
}

TEST_F(OrgfrmTest, RegisterThatCantBeWrittenEndsTheAddingSilently) {
  const auto add_in_vain = [this] {
    OpenOrganisations();
    TypeNew("Press shop");
    const WriterAtWork other(installation.Register());
    PressTab();
  };
  add_in_vain();
  EXPECT_TRUE(told.isEmpty());
  EXPECT_EQ(session.OrgEntryMode, 1);
  EXPECT_FALSE(IsLocked());
  CloseBox(*form);
  EXPECT_TRUE(Organisations().isEmpty()) << "it is not stored by closing";
  add_in_vain();
  EXPECT_FALSE(IsGone());
  // The name is still there, and is stored when it is left again.
  Click("orgnmecbotxt");
  PressTab();
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Press shop", "1"}}));
}

TEST_F(OrgfrmTest, ActivationWithoutOrganisationsTurnsAddingAndExitOn) {
  OpenOrganisations();
  Control<QWidget>("addorncmd").setEnabled(false);
  Control<QWidget>("clsed").setEnabled(false);
  session.StudyConnected = 1;
  GoAwayAndComeBack();
  EXPECT_TRUE(IsEnabled("addorncmd"));
  EXPECT_TRUE(IsEnabled("clsed"));
  EXPECT_EQ(session.StudyConnected, 1);
}

TEST_F(OrgfrmTest, ActivationWhileAddingTurnsExitOff) {
  installation.GivenOrganisation("Press shop", 1);
  OpenOrganisations();
  TypeNew("A");
  Control<QWidget>("clsd").setEnabled(false);
  Control<QWidget>("clsed").setEnabled(true);
  session.StudyConnected = 1;
  kit.focus.Forget(form);
  GoAwayAndComeBack();
  EXPECT_FALSE(IsEnabled("clsed"));
  EXPECT_TRUE(IsEnabled("clsd"));
  EXPECT_EQ(session.StudyConnected, 0);
}

TEST_F(OrgfrmTest, ActivationWhenIdleLeavesTheButtonsAlone) {
  installation.GivenOrganisation("Press shop", 1);
  OpenOrganisations();
  Control<QWidget>("clsd").setEnabled(false);
  Control<QWidget>("clsed").setEnabled(false);
  session.StudyConnected = 1;
  GoAwayAndComeBack();
  EXPECT_FALSE(IsEnabled("clsd"));
  EXPECT_FALSE(IsEnabled("clsed"));
  EXPECT_EQ(session.StudyConnected, 1);
}

TEST_F(OrgfrmTest, ReadsARestoredRegisterWhenItIsInFrontAgain) {
  installation.GivenOrganisation("Press shop", 1);
  installation.GivenOrganisation("Assembly", 2);
  OpenOrganisations();
  for (const char* picked : {"Press shop", "Assembly"}) {
    PickOrganisation(picked);
    // As a restore lays it: another file at the place of the one that is open.
    const QString restored = installation.Outside("restored.mdb");
    ASSERT_TRUE(QFile::copy(installation.Register(), restored));
    Exec(restored,
         "DELETE FROM orgtn WHERE OrgName='Press shop';"
         "UPDATE orgtn SET sclenotxt=9; UPDATE Orgtmp SET OrgNameTMP=9");
    ASSERT_EQ(std::rename(qPrintable(restored), qPrintable(installation.Register())), 0);
    GoAwayAndComeBack();
    LookAt(*form);
    EXPECT_EQ(ItemsOf("orgnmecbo"), QStringList{"Assembly"});
    const QString left = picked == QLatin1String("Assembly") ? picked : "Select organization";
    EXPECT_EQ(TextOf("orgnmecbo"), left);
    EXPECT_EQ(TextOf("orgnmecbotxt"), left);
  }
  OpenHistory();
  EXPECT_EQ(TextOf("hstry"), "Assembly");
  Click("clsd");
  EXPECT_EQ(session.ActiveStudyNo, 9);
  EXPECT_EQ(LastOpened(), QStringList{"9"});
}

TEST_F(OrgfrmTest, TakesTheFrontBackUntilItIsUnloaded) {
  OpenOrganisations();
  auto& other = Open<OtherForm>();
  EXPECT_EQ(kit.forms.active(), form);
  form->UnloadForm();
  Settle();
  other.ShowForm();
  Settle();
  EXPECT_EQ(kit.forms.active(), &other);
}

TEST_F(OrgfrmTest, HistoryNamesTheOrganisationOpenedLast) {
  installation.GivenOrganisation("Press shop", 1);
  installation.GivenOrganisation("R & D", 2);
  Exec(installation.Register(), "UPDATE Orgtmp SET OrgNameTMP=1");
  OpenOrganisations();
  OpenHistory();
  EXPECT_EQ(TextOf("hstry"), "Press shop");
  OtherProcess(installation.Register()).Run("UPDATE Orgtmp SET OrgNameTMP=2;");
  OpenHistory();
  EXPECT_EQ(Control<QAction>("hstry").iconText(), "R & D");
  Choose("hstry");
  EXPECT_EQ(session.SelectedOrgName, "R & D");
  EXPECT_EQ(session.ActiveOrgName, "R & D");
  EXPECT_EQ(session.ActiveStudyNo, 2);
  EXPECT_EQ(told, QStringList({"opened [ R & D]", "closing"}));
}

TEST_F(OrgfrmTest, HistoryWithoutAMatchKeepsItsCaptionAndIsOpenedAsAName) {
  for (const QStringList& names : {QStringList(), QStringList{"Press shop"}}) {
    if (!names.isEmpty()) installation.GivenOrganisation(names.first(), 1);
    Exec(installation.Register(), "UPDATE Orgtmp SET OrgNameTMP=9");
    session.ActiveStudyNo = 6;
    OpenOrganisations();
    OpenHistory();
    EXPECT_EQ(TextOf("hstry"), "No history");
    const auto before = Organisations();
    Choose("hstry");
    EXPECT_TRUE(IsGone());
    EXPECT_EQ(session.SelectedOrgName, "No history");
    EXPECT_EQ(session.ActiveOrgName, "No history");
    EXPECT_EQ(session.ActiveStudyNo, 6);
    EXPECT_EQ(session.OrgCount, names.size());
    EXPECT_EQ(LastOpened(), QStringList({"6"}));
    EXPECT_EQ(Organisations(), before);
    EXPECT_EQ(told, QStringList({"opened [ No history]", "closing"}));
  }
}

TEST_F(OrgfrmTest, EmptyHistoryEntryDoesNothing) {
  OpenOrganisations();
  Control<QAction>("hstry").setText(QString());
  Control<QAction>("hstry").trigger();
  Settle();
  EXPECT_FALSE(IsGone());
  EXPECT_EQ(TextOf("orgnmecbo"), "Select organization");
}

TEST_F(OrgfrmTest, HistoryDropsTheNameThatIsBeingAddedAndOpens) {
  installation.GivenOrganisation("Press shop", 3);
  Exec(installation.Register(), "UPDATE Orgtmp SET OrgNameTMP=3");
  OpenOrganisations();
  TypeNew("Paint shop");
  OpenHistory();
  QObject::connect(form, &Orgfrm::OrganisationOpened, form, [&] {
    EXPECT_EQ(TagOf("addorncmd"), "0");
    EXPECT_EQ(session.OrgEntryMode, 0);
  });
  Choose("hstry");
  EXPECT_TRUE(IsGone());
  EXPECT_EQ(told, QStringList({"opened [ Press shop]", "closing"}));
  EXPECT_EQ(session.ActiveStudyNo, 3);
  EXPECT_EQ(Organisations(), QList<QStringList>({{"Press shop", "3"}}));
  EXPECT_FALSE(QFile::exists(installation.Study(1)));
}

TEST_F(OrgfrmTest, ExitUnloadsTheFormAndTellsTheProjectForm) {
  session.OrgEntryMode = 2;
  OpenOrganisations();
  session.OrgEntryMode = 2;
  QObject::connect(form, &Orgfrm::Closing, form, [&] { EXPECT_EQ(session.OrgEntryMode, 2); });
  Click("clsed");
  EXPECT_TRUE(IsGone());
  EXPECT_EQ(told, QStringList({"closing"}));
  EXPECT_EQ(session.OrgEntryMode, 0);
}

TEST_F(OrgfrmTest, RegisterThatCantBeOpenedLeadsToTheNoticeAndStaysAsItIs) {
  const QString path = installation.Register();
  const QByteArray good = ReadFile(path);
  QByteArray bad_header = good;
  bad_header.replace(0, 100, QByteArray(100, '\xff'));
  const auto expect_refused = [&](const char* what) {
    SCOPED_TRACE(what);
    const QByteArray before = ReadFile(path);
    desk.messages.Expect(kFilesMissing).WhileOpen([&] {
      EXPECT_FALSE(form->IsUnloading());
      EXPECT_TRUE(told.isEmpty());
    });
    OpenOrganisations();
    EXPECT_TRUE(IsGone());
    EXPECT_EQ(told, QStringList({"closing", "project form away", "load failed"}));
    EXPECT_EQ(ReadFile(path), before);
  };
  desk.files.FailNext(FileAction::kChangeFolder, QString(), failure::kPathNotFound);
  expect_refused("the application's folder is gone");
  Exec(path, "DROP TABLE Orgtmp");
  expect_refused("no table of the history");
  const std::pair<const char*, QByteArray> files[] = {
      {"empty", {}},
      {"truncated", good.left(1000)},
      {"a letter", QByteArray("This is a letter.\n").repeated(1000)},
      {"damaged header", bad_header},
      {"a study", ReadFile(installation.Template())}};
  for (const auto& [what, bytes] : files) {
    WriteFile(path, bytes);
    expect_refused(what);
  }
  ASSERT_TRUE(QFile::remove(path));
  expect_refused("missing");
  ASSERT_TRUE(QDir().mkpath(path));
  expect_refused("a folder");
}

TEST_F(OrgfrmTest, WriteProtectedRegisterOpensKnownOrganisationsAndAddsNone) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  installation.GivenOrganisation("Press shop", 3);
  GiveToNobody(QFileInfo(installation.Folder()).path());
  const QByteArray before = ReadFile(installation.Register());
  const auto seen = RunAsNobody([&] {
    QFile::setPermissions(installation.Register(), QFile::ReadOwner);
    OpenOrganisations();
    Add("Assembly");
    QString result = IsGone() ? "gone" : "there";
    CloseBox(*form);
    OpenAndPick("Press shop");
    Click("clsd");
    return result + ", study " + QString::number(session.ActiveStudyNo) + ", boxes " +
           QString::number(desk.messages.Shown().size());
  });
  EXPECT_EQ(seen.value_or("died"), "there, study 3, boxes 0");
  EXPECT_EQ(ReadFile(installation.Register()), before);
}

}  // namespace
}  // namespace kestrix
