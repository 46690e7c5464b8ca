// Two copies of the shipped program that work on one folder.

#include <gtest/gtest.h>

#include "outside/OutsideTest.h"

namespace kestrix {
namespace {

const QString kInUse =
    "BELTROVAN|All users need to logout/Close/Exit Risk Assessment module and needs to be reopened "
    "by only one user to delete records.";
const QString kStillOpen =
    "BELTROVAN|Failed to delete records as more than one user has opened this file.";
const QString kQuestion =
    "BELTROVAN: Delete record|Wish to delete Organization [Press shop] from records?";

class TwoCopiesTest : public ManagedTest {
 protected:
  /// The first copy makes an organisation and closes its study again.
  void GivenClosedOrganisation(Person& first) {
    ASSERT_TRUE(first.Start());
    ASSERT_NO_FATAL_FAILURE(AddOrganisation(first, "Press shop"));
    ASSERT_TRUE(first.Click("clsdfrm"));
    ASSERT_TRUE(first.SeesActive("frmMain"));
    ASSERT_FALSE(QFile::exists(Path("risk_esmatn1.ldb")));
    ASSERT_TRUE(QDir().mkpath(Path("Picfolder/Prj1")));
    QFile picture(Path("Picfolder/Prj1/a.jpg"));
    ASSERT_TRUE(picture.open(QIODevice::WriteOnly));
  }
  /// The name stands in the box of the organisations, and nothing is opened.
  static void PickOrganisation(Person& person) {
    ASSERT_NO_FATAL_FAILURE(OpenOrganisations(person));
    ASSERT_NO_FATAL_FAILURE(PickByKeys(person, "orgnmecbo", 0, "Press shop"));
  }
  static void OpenOrganisation(Person& person) {
    person.Press({"alt+o"});
    ASSERT_TRUE(person.SeesActive("mnfrm"));
  }
  [[nodiscard]] QStringList Stages() const {
    return TestInstallation::Column(Path("RskAsmt_BkSup.mdb"), "SELECT hazopstage FROM Prjstage");
  }
  static QStringList Items(const Person& person, const QString& list) {
    QStringList items;
    const QJsonArray told = person.Control(list)["items"].toArray();
    for (const QJsonValue item : told)
      items += item.isString() ? item.toString() : item["text"].toString();
    return items;
  }
  /// Adds an entry on the customization form and waits until its list shows it.
  static void AddEntry(Person& person, const QString& text) {
    ASSERT_TRUE(person.Click("adddt"));
    ASSERT_TRUE(person.SeesFocus("AddrcdTxt"));
    person.Type(text);
    person.Press({"Tab"});
    ASSERT_TRUE(person.Sees([&] { return Items(person, "ActnByLst").contains(text); }));
  }
  /// Goes out of the box of the project stages and into it again, which fills its list.
  static void FillStages(Person& person) {
    ASSERT_TRUE(person.SeesFocus("PrjStgCbo"));
    person.Press({"Tab"});
    ASSERT_TRUE(person.Sees([&] { return person.Focus() != "PrjStgCbo"; }));
    person.Press({"shift+Tab"});
    ASSERT_TRUE(person.SeesFocus("PrjStgCbo"));
  }
};

TEST_P(TwoCopiesTest, KeepEachOthersWorkAndBarTheDelete) {
  const auto first = Sit();
  ASSERT_NO_FATAL_FAILURE(GoToTasks(*first));
  ASSERT_TRUE(first->Click("ClsedDg"));
  ASSERT_TRUE(first->SeesActive("mnfrm"));
  const auto second = Sit();
  ASSERT_TRUE(second->Start());
  ASSERT_TRUE(second->BringUp("frmMain"));
  ASSERT_NO_FATAL_FAILURE(PickOrganisation(*second));
  ASSERT_NO_FATAL_FAILURE(OpenOrganisation(*second));
  ASSERT_NO_FATAL_FAILURE(OpenTasks(*second));
  ASSERT_TRUE(first->BringUp("mnfrm"));
  ASSERT_NO_FATAL_FAILURE(OpenTasks(*first));
  ASSERT_TRUE(first->Click("HazrdLoctn"));
  first->Press({"ctrl+a"});
  first->Type("infeed");
  ASSERT_TRUE(second->BringUp("RiskEvalFrm_1"));
  ASSERT_TRUE(second->Click("ReccdtnTxt"));
  second->Press({"ctrl+a"});
  second->Type("guard");
  ASSERT_TRUE(second->Click("ClsedDg"));
  ASSERT_TRUE(second->SeesActive("mnfrm"));
  ASSERT_TRUE(first->BringUp("RiskEvalFrm_1"));
  ASSERT_TRUE(first->Click("ClsedDg"));
  ASSERT_TRUE(first->SeesActive("mnfrm"));
  EXPECT_EQ(Study("SELECT HazrdLoctn, ReccdtnTxt FROM Risk_records"),
            (QList<QStringList>{{"infeed", "guard"}}));
  // The study is open in both: nobody deletes it.
  ASSERT_TRUE(first->Click("nworg"));
  ASSERT_NO_FATAL_FAILURE(PickByKeys(*first, "orgnmecbo", 0, "Press shop"));
  ASSERT_TRUE(first->Click("delte"));
  EXPECT_TRUE(first->Sees([&] { return first->Box().contains("All users need to logout"); }));
  EXPECT_TRUE(QFile::exists(Path("risk_esmatn1.mdb")));
}

TEST_P(TwoCopiesTest, ShareTheListsWhileOneAddsToThemAndTheOtherFillsItsOwn) {
  const QStringList before = Stages();
  const auto keeper = Sit();
  ASSERT_TRUE(keeper->Start());
  ASSERT_TRUE(keeper->BringUp("frmMain"));
  ASSERT_TRUE(keeper->Click("mnuFile"));
  ASSERT_TRUE(keeper->Click("custmztnFrm"));
  ASSERT_TRUE(keeper->SeesActive("custizationFrm"));
  const auto engineer = Sit();
  ASSERT_TRUE(engineer->Start());
  ASSERT_TRUE(engineer->BringUp("frmMain"));
  ASSERT_NO_FATAL_FAILURE(AddOrganisation(*engineer, "Press shop"));
  ASSERT_NO_FATAL_FAILURE(AddProject(*engineer, "P-1"));
  EXPECT_EQ(Items(*engineer, "PrjStgCbo"), before);
  QStringList added;
  for (const int round : {1, 2}) {
    const QString kept = QStringLiteral("Kept %1").arg(round);
    ASSERT_TRUE(keeper->BringUp("custizationFrm"));
    ASSERT_NO_FATAL_FAILURE(AddEntry(*keeper, kept));
    added += kept;
    ASSERT_TRUE(engineer->BringUp("mnfrm"));
    ASSERT_NO_FATAL_FAILURE(FillStages(*engineer));
    EXPECT_EQ(Items(*engineer, "PrjStgCbo"), before + added);
    const QString own = QStringLiteral("Own %1").arg(round);
    engineer->Press({"ctrl+a"});
    engineer->Type(own);
    ASSERT_TRUE(engineer->Click("adddt0"));
    added += own;
    ASSERT_TRUE(engineer->Sees([&] { return Items(*engineer, "PrjStgCbo") == before + added; }));
    ASSERT_TRUE(engineer->Click("PrjStgCbo"));
  }
  // The one copy has only seen what it added itself; all is in the list once it is chosen again.
  ASSERT_TRUE(keeper->BringUp("custizationFrm"));
  EXPECT_EQ(Items(*keeper, "ActnByLst"), before + QStringList({"Kept 1", "Kept 2"}));
  ASSERT_TRUE(keeper->Click("ForCustmnCbo"));
  ASSERT_NO_FATAL_FAILURE(PickByKeys(*keeper, "ForCustmnCbo", 0, "Project stage"));
  EXPECT_TRUE(keeper->Sees([&] { return Items(*keeper, "ActnByLst") == before + added; }));
  EXPECT_EQ(Stages(), before + added);
}

TEST_P(TwoCopiesTest, DeleteOnlyWhenTheOtherHasClosedTheStudy) {
  const auto first = Sit();
  ASSERT_NO_FATAL_FAILURE(GivenClosedOrganisation(*first));
  const auto second = Sit();
  ASSERT_TRUE(second->Start());
  ASSERT_TRUE(second->BringUp("frmMain"));
  ASSERT_NO_FATAL_FAILURE(PickOrganisation(*second));
  ASSERT_NO_FATAL_FAILURE(OpenOrganisation(*second));
  ASSERT_TRUE(first->BringUp("frmMain"));
  ASSERT_NO_FATAL_FAILURE(PickOrganisation(*first));
  ASSERT_TRUE(first->Click("delte"));
  ASSERT_TRUE(first->SeesBox(kInUse));
  first->Press({"Return"});
  ASSERT_TRUE(first->SeesActive("Orgfrm"));
  EXPECT_EQ(Organisations(), QStringList{"Press shop"});
  EXPECT_TRUE(QFile::exists(Path("risk_esmatn1.mdb")));
  EXPECT_TRUE(QFile::exists(Path("Picfolder/Prj1/a.jpg")));
  ASSERT_TRUE(second->BringUp("mnfrm"));
  ASSERT_TRUE(second->Click("clsdfrm"));
  // The window manager may give the front to the other program then.
  ASSERT_TRUE(second->Sees([&] { return second->Window("mnfrm").isEmpty(); }));
  ASSERT_TRUE(first->BringUp("Orgfrm"));
  ASSERT_TRUE(first->Click("delte"));
  ASSERT_TRUE(first->SeesBox(kQuestion));
  first->Press({"Return"});  // No is the default
  ASSERT_TRUE(first->SeesActive("Orgfrm"));
  EXPECT_EQ(Organisations(), QStringList{"Press shop"});
  ASSERT_TRUE(first->Click("delte"));
  ASSERT_TRUE(first->SeesBox(kQuestion));
  first->Press({"alt+y"});
  ASSERT_TRUE(first->SeesText("orgnmecbotxt", "Select organization"));
  EXPECT_TRUE(Organisations().isEmpty());
  EXPECT_FALSE(QFile::exists(Path("risk_esmatn1.mdb")));
  EXPECT_FALSE(QFile::exists(Path("Picfolder/Prj1")));
}

TEST_P(TwoCopiesTest, WhoCameInBehindTheQuestionKeepsTheStudy) {
  const auto first = Sit();
  ASSERT_NO_FATAL_FAILURE(GivenClosedOrganisation(*first));
  const auto second = Sit();
  ASSERT_TRUE(second->Start());
  ASSERT_TRUE(second->BringUp("frmMain"));
  ASSERT_NO_FATAL_FAILURE(PickOrganisation(*second));
  ASSERT_TRUE(first->BringUp("frmMain"));
  ASSERT_NO_FATAL_FAILURE(PickOrganisation(*first));
  ASSERT_TRUE(first->Click("delte"));
  ASSERT_TRUE(first->SeesBox(kQuestion));
  ASSERT_TRUE(second->BringUp("Orgfrm"));
  ASSERT_NO_FATAL_FAILURE(OpenOrganisation(*second));
  ASSERT_TRUE(first->BringUpBox());
  first->Press({"alt+y"});
  ASSERT_TRUE(first->SeesBox(kStillOpen));
  EXPECT_EQ(Organisations(), QStringList{"Press shop"});  // the files come first
  ASSERT_TRUE(first->BringUpBox());
  first->Press({"Return"});
  // Letting go of the study has brought up the project form. It takes over with no organisation
  // once it is in front, which is for the window manager to give or for the person to take.
  ASSERT_TRUE(first->Sees([&] { return first->Box().isEmpty(); }));
  ASSERT_TRUE(first->BringUp("mnfrm"));
  ASSERT_TRUE(first->Sees([&] { return first->Window("Orgfrm").isEmpty(); }));
  EXPECT_EQ(first->Text("Orglbltxt"), "");
  EXPECT_FALSE(first->Control("simultn1")["enabled"].toBool());
  EXPECT_TRUE(Organisations().isEmpty());
  EXPECT_TRUE(QFile::exists(Path("risk_esmatn1.mdb")));
  EXPECT_FALSE(QFile::exists(Path("Picfolder/Prj1")));
  ASSERT_TRUE(second->BringUp("mnfrm"));
  ASSERT_NO_FATAL_FAILURE(AddProject(*second, "P-1"));
  EXPECT_EQ(Study("SELECT Project_Number FROM Project_details"), (QList<QStringList>{{"P-1"}}));
}

INSTANTIATE_TEST_SUITE_P(Displays, TwoCopiesTest, ::testing::Values(XServer::Manager::kOpenbox),
                         OutsideTest::NameOf);

}  // namespace
}  // namespace kestrix
