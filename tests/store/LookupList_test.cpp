#include "store/LookupList.h"

#include "store/RecordSources.h"
#include "store/StoreTest.h"

namespace kestrix::testing {
namespace {

bool HoldsReserved(const Recordset& row) {
  return lookup::IsReserved(row.Text(0));
}

class LookupListTest : public StoreTest {
 protected:
  void SetUp() override {
    Exec(
        Path("lists.mdb"),
        "CREATE TABLE Prjstage(hazopstage VARCHAR(255)); CREATE TABLE PhaseMachLife(PhaseMachLife);"
        "CREATE TABLE primaryhazard(hazardType, srno INTEGER PRIMARY KEY AUTOINCREMENT);"
        "CREATE TABLE HazardType(hazardoccurrence, HazardTyp,"
        " SrNo INTEGER PRIMARY KEY AUTOINCREMENT);"
        "CREATE TABLE RecommTyp(RecommendationTyp); CREATE TABLE ActionBy(ActnBy);"
        "INSERT INTO Prjstage VALUES('None.'),('N.A.'),('Design'),('design'),('Use');"
        "INSERT INTO HazardType(hazardoccurrence,HazardTyp) VALUES('Crushing','Mechanical'),"
        "('Noise','Noise hazards');");
  }
  std::unique_ptr<Recordset> Rows(const Select& select) {
    return std::make_unique<Recordset>(std::make_shared<Database>(Path("lists.mdb")), select);
  }
  QStringList Stored() { return Read(Path("lists.mdb"), "SELECT hazopstage FROM Prjstage"); }
};

TEST_F(LookupListTest, TheTextsKeepTheOrderOfTheTableAndLeaveOutWhatIsGone) {
  const auto rows = Rows(sources::kPrjstage);
  EXPECT_EQ(lookup::Texts(*rows), (QStringList{"None.", "N.A.", "Design", "design", "Use"}));
  Exec(Path("lists.mdb"), "DELETE FROM Prjstage WHERE hazopstage='design'");
  EXPECT_EQ(lookup::Texts(*rows), (QStringList{"None.", "N.A.", "Design", "Use"}));
  EXPECT_TRUE(lookup::Texts(*Rows(sources::kActionBy)).isEmpty());
}

TEST_F(LookupListTest, KnowingIsExactInCaseAndWalksToTheEnd) {
  const auto rows = Rows(sources::kPrjstage);
  EXPECT_TRUE(lookup::Knows(*rows, QStringLiteral("design")));
  EXPECT_TRUE(rows->Eof());
  EXPECT_FALSE(lookup::Knows(*rows, QStringLiteral("DESIGN")));
  EXPECT_FALSE(lookup::Knows(*Rows(sources::kActionBy), QString()));
  // A pair is known by both fields.
  const auto types = Rows(Select("HazardType"));
  for (const QString& parent : {QStringLiteral("Noise hazards"), QStringLiteral("Mechanical")})
    EXPECT_EQ(lookup::Knows(*types, QStringLiteral("Noise"), &parent), parent != "Mechanical");
}

TEST_F(LookupListTest, DeletingAllIsOneTransaction) {
  const auto rows = Rows(sources::kPrjstage);
  const auto refuses = [](const Recordset& row) {
    if (row.Text(0) == "Design") throw Failure(failure::kLocked, "locked");
    return false;
  };
  EXPECT_EQ(FailureOf([&] { lookup::DeleteAllBut(*rows, refuses); }), failure::kLocked);
  EXPECT_EQ(Stored().size(), 5);
  EXPECT_EQ(rows->RecordCount(), 5);
  lookup::DeleteAllBut(*rows, HoldsReserved);
  EXPECT_EQ(Stored(), (QStringList{"None.", "N.A."}));
}

TEST_F(LookupListTest, DeletingAllGoesOnBehindAnEntryThatSomebodyElseDeleted) {
  const auto rows = Rows(sources::kPrjstage);
  Exec(Path("lists.mdb"), "DELETE FROM Prjstage WHERE hazopstage='Design'");
  lookup::DeleteAllBut(*rows, HoldsReserved);
  EXPECT_EQ(Stored(), (QStringList{"None.", "N.A."}));
}

TEST_F(LookupListTest, EveryRecordSourceOfTheListsOpens) {
  for (const Select& select :
       {sources::kPrjstage, sources::kPhaseMachLife, sources::kPrimaryHazard, sources::kRecommTyp,
        sources::kActionBy, sources::HazardTypesOf(QStringLiteral("Mechanical")),
        sources::HazardTypesForTask(QStringLiteral("Mechanical")),
        sources::HazardTypesForClick(QStringLiteral("Mechanical"))}) {
    EXPECT_EQ(FailureOf([&] { Rows(select); }), 0) << select.text.toStdString();
  }
  EXPECT_EQ(Rows(sources::HazardTypesOf(QStringLiteral("Mechanical")))->RecordCount(), 1);
}

}  // namespace
}  // namespace kestrix::testing
