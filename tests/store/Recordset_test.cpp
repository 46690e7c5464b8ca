#include "store/Recordset.h"

#include <sqlite3.h>

#include <QSignalSpy>

#include "store/StoreTest.h"
#include "support/RunAsNobody.h"

namespace kestrix::testing {
namespace {

constexpr int kTitle = 1;
constexpr int kLevel = 2;
constexpr int kDone = 3;
constexpr int kNote = 4;

class RecordsetTest : public StoreTest {
 protected:
  QStringList Titles() const {
    return Read(Path("study.mdb"), "SELECT Title FROM Risk_records ORDER BY nunberauto");
  }
};

TEST_F(RecordsetTest, StandsOnTheFirstOfTheRowsInTheOrderOfTheSelect) {
  GivenTasks(3);
  const auto rows = Tasks();
  EXPECT_EQ(rows->RecordCount(), 3);
  EXPECT_EQ(rows->AbsolutePosition(), 1);
  EXPECT_EQ(rows->Text(kTitle), "T1");
  EXPECT_EQ(rows->Number(QStringLiteral("level")), 1);
}

TEST_F(RecordsetTest, AnEmptySetHasNoRowToUse) {
  const auto rows = Tasks();
  EXPECT_EQ(rows->RecordCount(), 0);
  EXPECT_TRUE(rows->Eof());
  EXPECT_TRUE(rows->Bof());
  EXPECT_FALSE(rows->HasCurrentRow());
  EXPECT_EQ(rows->AbsolutePosition(), Recordset::kPositionUnknown);
  EXPECT_EQ(FailureOf([&] { rows->MoveFirst(); }), failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rows->MoveLast(); }), failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rows->MoveNext(); }), failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rows->MovePrevious(); }), failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rows->Delete(); }), failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rows->Set(kTitle, QStringLiteral("x")); }), failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { (void)rows->Text(kTitle); }), failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rows->SetAbsolutePosition(1); }), failure::kNoCurrentRow);
  rows->Update();
  rows->CancelUpdate();
}

TEST_F(RecordsetTest, PositionsRunFromOneAndKnowBothEnds) {
  GivenTasks(2);
  const auto rows = Tasks();
  rows->MoveNext();
  EXPECT_EQ(rows->AbsolutePosition(), 2);
  rows->MoveNext();
  EXPECT_TRUE(rows->Eof());
  EXPECT_EQ(rows->AbsolutePosition(), Recordset::kPositionPastLast);
  EXPECT_EQ(FailureOf([&] { rows->MoveNext(); }), failure::kNoCurrentRow);
  rows->MovePrevious();
  EXPECT_EQ(rows->AbsolutePosition(), 2);
  rows->SetAbsolutePosition(Recordset::kPositionBeforeFirst);
  EXPECT_TRUE(rows->Bof());
  EXPECT_EQ(rows->AbsolutePosition(), Recordset::kPositionBeforeFirst);
  EXPECT_EQ(FailureOf([&] { rows->MovePrevious(); }), failure::kNoCurrentRow);
  rows->SetAbsolutePosition(Recordset::kPositionPastLast);
  EXPECT_TRUE(rows->Eof());
  EXPECT_EQ(FailureOf([&] { rows->SetAbsolutePosition(3); }), failure::kInvalidPosition);
  EXPECT_EQ(FailureOf([&] { rows->SetAbsolutePosition(0); }), failure::kInvalidPosition);
}

TEST_F(RecordsetTest, FieldsAreReachedByPositionAndByNameInAnyCase) {
  GivenTasks(1);
  const auto rows = Tasks();
  EXPECT_EQ(rows->FieldCount(), 6);
  EXPECT_EQ(rows->FieldName(5), "nunberauto");
  EXPECT_EQ(rows->Text(QStringLiteral("TITLE")), "T1");
  EXPECT_EQ(FailureOf([&] { (void)rows->Text(6); }), failure::kNoSuchField);
  EXPECT_EQ(FailureOf([&] { (void)rows->Text(-1); }), failure::kNoSuchField);
  EXPECT_EQ(FailureOf([&] { (void)rows->Text(QStringLiteral("stdyno")); }), failure::kNoSuchField);
}

TEST_F(RecordsetTest, NullReadsAsEmptyTextZeroAndFalse) {
  GivenTasks(1);
  const auto rows = Tasks();
  EXPECT_EQ(rows->Text(kNote), "");
  EXPECT_EQ(rows->Number(kNote), 0);
  EXPECT_FALSE(rows->Truth(kNote));
  rows->Set(kNote, QString());
  EXPECT_FALSE(rows->HasPendingEdit());
}

TEST_F(RecordsetTest, NumberBeyondAllBoundsReadsAsTheLastThatFits) {
  GivenTasks(2);
  Exec(Path("study.mdb"), "UPDATE Risk_records SET Level=2e144 WHERE Title='T1'");
  Exec(Path("study.mdb"), "UPDATE Risk_records SET Level=-1e999 WHERE Title='T2'");
  const auto tasks = Tasks();
  EXPECT_EQ(tasks->Number(kLevel), std::numeric_limits<qint64>::max());
  EXPECT_TRUE(tasks->Truth(kLevel));
  tasks->MoveNext();
  EXPECT_EQ(tasks->Number(kLevel), std::numeric_limits<qint64>::min());
}

TEST_F(RecordsetTest, AnEditIsSeenAtOnceStoredByUpdateAndDroppedByCancelUpdate) {
  GivenTasks(1);
  const auto rows = Tasks();
  rows->Set(kTitle, QStringLiteral("dropped"));
  rows->CancelUpdate();
  EXPECT_EQ(rows->Text(kTitle), "T1");
  rows->Update();
  EXPECT_EQ(Titles(), QStringList{"T1"});
  rows->Set(kTitle, QStringLiteral("new"));
  EXPECT_EQ(rows->Text(kTitle), "new");
  EXPECT_EQ(rows->ShownText(1, kTitle), "new");
  EXPECT_EQ(Titles(), QStringList{"T1"});
  rows->Update();
  EXPECT_FALSE(rows->HasPendingEdit());
  EXPECT_EQ(Titles(), QStringList{"new"});
}

TEST_F(RecordsetTest, AnAttemptThatFailsIsForgottenAndOneThatSucceedsStays) {
  GivenTasks(1);
  const auto rows = Tasks();
  const auto try_to_add = [&](const QString& title) {
    rows->AddNew();
    const Recordset::Attempt attempt(*rows);
    rows->Set(0, QStringLiteral("P"));
    rows->Set(kTitle, title);
    rows->Update();
  };
  EXPECT_EQ(FailureOf([&] { try_to_add(QStringLiteral("T1")); }), failure::kDuplicate);
  EXPECT_FALSE(rows->HasPendingEdit());
  EXPECT_EQ(rows->AbsolutePosition(), 1);
  try_to_add(QStringLiteral("T2"));
  EXPECT_EQ(rows->AbsolutePosition(), 2);
  EXPECT_EQ(Titles(), (QStringList{"T1", "T2"}));
}

using Leave = std::function<void(Recordset&)>;
class LeavingTest : public StoreTest,
                    public ::testing::WithParamInterface<std::pair<int, Leave>> {};

TEST_P(LeavingTest, LeavingARowCommitsItsEdit) {
  GivenTasks(3);
  const auto rows = Tasks();
  rows->MoveNext();
  rows->Set(kTitle, QStringLiteral("left"));
  GetParam().second(*rows);
  EXPECT_EQ(Read(Path("study.mdb"), "SELECT Title FROM Risk_records WHERE Level=2"),
            QStringList{"left"});
}

INSTANTIATE_TEST_SUITE_P(
    EveryWay, LeavingTest,
    ::testing::Values(
        std::pair<int, Leave>{0, [](Recordset& rows) { rows.MoveFirst(); }},
        std::pair<int, Leave>{1, [](Recordset& rows) { rows.MoveLast(); }},
        std::pair<int, Leave>{2, [](Recordset& rows) { rows.MoveNext(); }},
        std::pair<int, Leave>{3, [](Recordset& rows) { rows.MovePrevious(); }},
        std::pair<int, Leave>{4, [](Recordset& rows) { rows.SetAbsolutePosition(2); }},
        std::pair<int, Leave>{5, [](Recordset& rows) { rows.SetAbsolutePosition(-3); }},
        std::pair<int, Leave>{6, [](Recordset& rows) { rows.AddNew(); }},
        std::pair<int, Leave>{7, [](Recordset& rows) { rows.Requery(); }},
        std::pair<int, Leave>{8, [](Recordset& rows) { rows.Update(); }},
        std::pair<int, Leave>{9, [](Recordset& rows) { rows.Close(); }}),
    [](const auto& name) { return "Way" + std::to_string(name.param.first); });

TEST_F(RecordsetTest, GoingCommitsThePendingEditAndTellsNobody) {
  GivenTasks(1);
  auto rows = Tasks();
  rows->Set(kTitle, QStringLiteral("gone"));
  int told = 0;
  const auto tell = [&] { ++told; };
  QObject::connect(rows.get(), &Recordset::Shown, rows.get(), tell);
  QObject::connect(rows.get(), &Recordset::RowChanged, rows.get(), tell);
  QObject::connect(rows.get(), &Recordset::RowInserted, rows.get(), tell);
  rows->AddNew();
  rows->Set(0, QStringLiteral("P"));
  told = 0;
  rows.reset();
  EXPECT_EQ(told, 0);
  EXPECT_EQ(Titles(), (QStringList{"gone", "untitled"}));
}

TEST_F(RecordsetTest, AnEditBackToWhatIsStoredIsNoEdit) {
  GivenTasks(1);
  const auto rows = Tasks();
  rows->Set(kTitle, QStringLiteral("new"));
  rows->Set(kTitle, QStringLiteral("T1"));
  rows->Set(kLevel, QStringLiteral("1"));
  rows->Set(kDone, false);
  EXPECT_FALSE(rows->HasPendingEdit());
}

TEST_F(RecordsetTest, ATextLongerThanItsColumnIsRefusedAndTheEditKept) {
  GivenTasks(1);
  const auto rows = Tasks();
  rows->Set(kTitle, QStringLiteral("0123456789"));
  EXPECT_EQ(FailureOf([&] { rows->Set(kTitle, QStringLiteral("0123456789a")); }),
            failure::kTooLong);
  EXPECT_EQ(rows->Text(kTitle), "0123456789");
  // Counted in characters, not in units.
  const QString ten = QStringLiteral("😀😀😀😀😀😀😀😀😀😀");
  rows->Set(kTitle, ten);
  rows->Update();
  EXPECT_EQ(Titles(), QStringList{ten});
}

TEST_F(RecordsetTest, AStoredTextLongerThanItsColumnIsReadCutAndStaysAsItIs) {
  GivenTasks(1);
  Exec(Path("study.mdb"), "UPDATE Risk_records SET Title='😀😀😀😀😀😀😀😀😀😀 and more'");
  const QString ten = QStringLiteral("😀😀😀😀😀😀😀😀😀😀");
  const auto rows = Tasks();
  EXPECT_EQ(rows->Text(kTitle), ten);
  EXPECT_EQ(rows->ShownText(1, kTitle), ten);
  {
    const Recordset::Walk walk(*rows);
    EXPECT_EQ(rows->Text(kTitle), ten);
  }
  rows->Set(kTitle, ten);
  rows->Set(kLevel, 7);
  rows->Update();
  EXPECT_EQ(Titles(), QStringList{ten + " and more"});
  EXPECT_EQ(rows->Number(kLevel), 7);
  // What a person puts in its place is stored as any text is.
  rows->Set(kTitle, QStringLiteral("short"));
  rows->Update();
  EXPECT_EQ(Titles(), QStringList{"short"});
}

TEST_F(RecordsetTest, ANewRowTakesDefaultsForWhatWasNotSetAndIsCurrentAndLast) {
  GivenTasks(2);
  const auto rows = Tasks();
  rows->AddNew();
  EXPECT_TRUE(rows->IsAdding());
  EXPECT_EQ(rows->AbsolutePosition(), Recordset::kPositionUnknown);
  EXPECT_EQ(rows->RecordCount(), 2);
  EXPECT_EQ(rows->Text(kTitle), "");
  rows->Set(0, QStringLiteral("P"));
  rows->Set(kDone, true);
  rows->Update();
  EXPECT_EQ(rows->RecordCount(), 3);
  EXPECT_EQ(rows->AbsolutePosition(), 3);
  EXPECT_EQ(rows->Text(kTitle), "untitled");
  EXPECT_TRUE(rows->Truth(kDone));
  EXPECT_EQ(Titles(), (QStringList{"T1", "T2", "untitled"}));
}

TEST_F(RecordsetTest, TheAddedRowIsFoundAgainBehindWhatOthersAddedAndDeleted) {
  GivenTasks(2);
  const auto rows = Tasks();
  EXPECT_EQ(rows->AddedPosition(), 2) << "the last one, as long as none was added";
  rows->AddNew();
  rows->Set(0, QStringLiteral("P"));
  rows->Set(kTitle, QStringLiteral("mine"));
  rows->Update();
  EXPECT_EQ(rows->AddedPosition(), 3);
  Exec(Path("study.mdb"),
       "INSERT INTO Risk_records(Project_Number,Title) VALUES('P','theirs');"
       "DELETE FROM Risk_records WHERE Title='T1'");
  rows->Requery();
  rows->SetAbsolutePosition(rows->AddedPosition());
  EXPECT_EQ(rows->Text(kTitle), "mine");
  EXPECT_EQ(rows->AbsolutePosition(), 2);
  Exec(Path("study.mdb"), "DELETE FROM Risk_records WHERE Title='mine'");
  rows->Requery();
  EXPECT_EQ(rows->AddedPosition(), rows->RecordCount()) << "somebody else has deleted it";
}

TEST_F(RecordsetTest, AnAddedRowThatTheSelectDoesNotHoldStaysReadableUntilRequery) {
  GivenTasks(1);
  const auto rows = Tasks();
  rows->AddNew();
  rows->Set(0, QStringLiteral("Q"));
  rows->Set(kTitle, QStringLiteral("other"));
  rows->Update();
  EXPECT_EQ(rows->ShownText(2, kTitle), "other");
  {
    const Recordset::Walk walk(*rows);
    QStringList seen;
    for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
      seen += rows->Text(0) + rows->Text(kTitle) + rows->Text(kNote);
    }
    EXPECT_EQ(seen, (QStringList{"PT1", "Qother"}));
  }
  rows->MoveLast();
  EXPECT_EQ(rows->Text(kTitle), "other");
  rows->Requery();
  EXPECT_EQ(rows->RecordCount(), 1);
}

TEST_F(RecordsetTest, AnEmptyNewRowIsARowOfDefaults) {
  const auto rows = Tasks();
  rows->AddNew();
  rows->Update();
  EXPECT_EQ(Titles(), QStringList{"untitled"});
}

TEST_F(RecordsetTest, ANewRowThatIsCancelledLeavesTheCursorWhereItWas) {
  GivenTasks(2);
  const auto rows = Tasks();
  rows->MoveNext();
  rows->AddNew();
  rows->Set(kTitle, QStringLiteral("x"));
  rows->CancelUpdate();
  EXPECT_EQ(rows->AbsolutePosition(), 2);
  EXPECT_EQ(rows->Text(kTitle), "T2");
  EXPECT_EQ(Titles().size(), 2);
}

TEST_F(RecordsetTest, ABrokenUniqueIndexIsADuplicateAndTheEditStaysPending) {
  GivenTasks(1);
  const auto rows = Tasks();
  rows->AddNew();
  rows->Set(0, QStringLiteral("P"));
  rows->Set(kTitle, QStringLiteral("T1"));
  EXPECT_EQ(FailureOf([&] { rows->Update(); }), failure::kDuplicate);
  EXPECT_TRUE(rows->IsAdding());
  EXPECT_EQ(FailureOf([&] { rows->MoveFirst(); }), failure::kDuplicate);
  rows->Set(kTitle, QStringLiteral("T2"));
  rows->Update();
  EXPECT_EQ(Titles(), (QStringList{"T1", "T2"}));
}

TEST_F(RecordsetTest, ARuleOfTheTableRefusesTheRow) {
  Recordset links(std::make_shared<Database>(Path("study.mdb")), Select("fileLink"));
  links.AddNew();
  links.Set(1, QString());
  EXPECT_EQ(FailureOf([&] { links.Update(); }), failure::kRefused);
  links.CancelUpdate();
  EXPECT_EQ(Read(Path("study.mdb"), "SELECT count(*) FROM fileLink"), QStringList{"0"});
}

TEST_F(RecordsetTest, ADeletedRowStaysThePlaceUntilTheNextMove) {
  GivenTasks(3);
  const auto rows = Tasks();
  rows->MoveNext();
  rows->Set(kTitle, QStringLiteral("dropped"));
  rows->Delete();
  EXPECT_EQ(rows->RecordCount(), 2);
  EXPECT_FALSE(rows->HasCurrentRow());
  EXPECT_FALSE(rows->Eof());
  EXPECT_EQ(FailureOf([&] { (void)rows->Text(kTitle); }), failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rows->Delete(); }), failure::kNoCurrentRow);
  rows->MoveNext();
  EXPECT_EQ(rows->Text(kTitle), "T3");
  rows->MovePrevious();
  EXPECT_EQ(rows->Text(kTitle), "T1");
  EXPECT_EQ(Titles(), (QStringList{"T1", "T3"}));
}

TEST_F(RecordsetTest, DeletingTheOnlyRowLeadsPastTheLastAtTheNextMove) {
  GivenTasks(1);
  const auto rows = Tasks();
  rows->Delete();
  EXPECT_FALSE(rows->Eof());
  rows->MoveNext();
  EXPECT_TRUE(rows->Eof());
  EXPECT_EQ(FailureOf([&] { rows->MoveFirst(); }), failure::kNoCurrentRow);
}

TEST_F(RecordsetTest, OnTheSameFieldTheFirstUserStandsAndTheOtherFieldsOfTheSecondAreWritten) {
  GivenTasks(1);
  const auto rows = Tasks();
  rows->Set(kTitle, QStringLiteral("mine"));
  rows->Set(kLevel, 9);
  rows->Set(kNote, QStringLiteral("my note"));
  Exec(Path("study.mdb"), "UPDATE Risk_records SET Title='theirs', Done=1");
  QStringList lost;
  QObject::connect(rows.get(), &Recordset::EditLost, rows.get(),
                   [&](Failure& failure) { lost += failure.description(); });
  EXPECT_EQ(FailureOf([&] { rows->Update(); }), failure::kRowChanged);
  EXPECT_EQ(lost, QStringList{"Somebody else has changed Title of this record meanwhile. Their "
                              "text stands; please look at it and change it again if need be.\n\n"
                              "Title\nTheirs: theirs\nYours: mine"});
  EXPECT_EQ(rows->Text(kTitle), "theirs");
  EXPECT_EQ(Read(Path("study.mdb"), "SELECT Title||Level||Note||Done FROM Risk_records"),
            QStringList{"theirs9my note1"});
  EXPECT_FALSE(rows->HasPendingEdit());
  rows->Set(kTitle, QStringLiteral("again"));
  rows->Update();
  EXPECT_EQ(Titles(), QStringList{"again"});
  EXPECT_EQ(lost.size(), 1);
}

TEST_F(RecordsetTest, WhatCannotBeStoredAtClosingIsToldWithItsTexts) {
  GivenTasks(1);
  const auto database = std::make_shared<Database>(Path("study.mdb"));
  sqlite3_busy_timeout(database->handle(), 1);
  Recordset rows(database, Select("Risk_records"));
  rows.Set(kTitle, QStringLiteral("mine"));
  const WriterAtWork other(Path("study.mdb"));
  QString lost;
  QObject::connect(&rows, &Recordset::EditLost, &rows,
                   [&](Failure& failure) { lost = failure.description(); });
  EXPECT_EQ(FailureOf([&] { rows.Update(); }), failure::kLocked);
  EXPECT_EQ(lost, "") << "it is still pending";
  EXPECT_EQ(FailureOf([&] { rows.Close(); }), failure::kLocked);
  EXPECT_TRUE(lost.endsWith(QStringLiteral("\n\nTitle\nYours: mine"))) << lost.toStdString();
}

TEST_F(RecordsetTest, AnEditIsHeldAgainstWhatItBeganOnHoweverManyRowsAreLookedAtMeanwhile) {
  GivenTasks(600);
  const auto rows = Tasks();
  rows->Set(kTitle, QStringLiteral("mine"));
  Exec(Path("study.mdb"), "UPDATE Risk_records SET Title='theirs' WHERE Level=1");
  for (int position = 2; position <= 600; ++position) (void)rows->ShownText(position, kTitle);
  EXPECT_EQ(FailureOf([&] { rows->Update(); }), failure::kRowChanged);
  EXPECT_EQ(Titles().first(), "theirs");
}

TEST_F(RecordsetTest, AnEditOfARowThatSomebodyDeletedFailsAndEnds) {
  GivenTasks(2);
  const auto rows = Tasks();
  rows->Set(kTitle, QStringLiteral("mine"));
  Exec(Path("study.mdb"), "DELETE FROM Risk_records WHERE Level=1");
  EXPECT_EQ(FailureOf([&] { rows->Update(); }), failure::kRowDeleted);
  EXPECT_EQ(FailureOf([&] { (void)rows->Text(kTitle); }), failure::kRowDeleted);
  rows->MoveNext();
  EXPECT_EQ(rows->Text(kTitle), "T2");
}

TEST_F(RecordsetTest, DeletingARowThatIsGoneFailsButLeavesIt) {
  for (const bool was_read : {true, false}) {
    Exec(Path("study.mdb"), "DELETE FROM Risk_records");
    GivenTasks(2);
    const auto rows = Tasks();
    if (was_read) (void)rows->Text(kTitle);
    Exec(Path("study.mdb"), "DELETE FROM Risk_records WHERE Level=1");
    EXPECT_EQ(FailureOf([&] { rows->Delete(); }), failure::kRowDeleted);
    EXPECT_EQ(rows->RecordCount(), 1);
    rows->MoveNext();
    EXPECT_EQ(rows->Text(kTitle), "T2");
  }
}

TEST_F(RecordsetTest, ADeletionThatIsRefusedKeepsTheRowAndItsEdit) {
  GivenTasks(1);
  const auto database = std::make_shared<Database>(Path("study.mdb"));
  sqlite3_busy_timeout(database->handle(), 1);
  Recordset rows(database, Select("Risk_records"));
  rows.Set(kTitle, QStringLiteral("mine"));
  auto other = std::make_unique<WriterAtWork>(Path("study.mdb"));
  EXPECT_EQ(FailureOf([&] { rows.Delete(); }), failure::kLocked);
  other.reset();
  EXPECT_EQ(rows.RecordCount(), 1);
  EXPECT_EQ(rows.Text(kTitle), "mine");
  rows.Update();
  EXPECT_EQ(Titles(), QStringList{"mine"});
}

TEST_F(RecordsetTest, NeitherAnEditNorADeleteGoesIntoAnotherRowThatTookOverTheKey) {
  for (const bool edit : {true, false}) {
    Exec(Path("study.mdb"),
         "DELETE FROM Project_details; INSERT INTO Project_details VALUES('F','old','N.A.')");
    Recordset rows(std::make_shared<Database>(Path("study.mdb")), Select("Project_details"));
    EXPECT_EQ(rows.Text(1), "old");
    if (edit) rows.Set(2, QStringLiteral("of the old one"));
    Exec(Path("study.mdb"),
         "DELETE FROM Project_details; INSERT INTO Project_details VALUES('F','new','N.A.')");
    EXPECT_EQ(FailureOf([&] { edit ? rows.Update() : rows.Delete(); }), failure::kRowDeleted);
    EXPECT_EQ(
        Read(Path("study.mdb"), "SELECT Project_Number||Project_Description FROM Project_details"),
        QStringList{"newN.A."});
  }
}

TEST_F(RecordsetTest, ValuesOfOthersAreSeenOnComingToTheRowAndTheirRowsAfterRequery) {
  GivenTasks(2);
  const auto rows = Tasks();
  EXPECT_EQ(rows->ShownText(2, kTitle), "T2");
  Exec(Path("study.mdb"),
       "UPDATE Risk_records SET Title='theirs' WHERE Level=2;"
       "INSERT INTO Risk_records(Project_Number,Title) VALUES('P','added')");
  rows->MoveNext();
  EXPECT_EQ(rows->Text(kTitle), "theirs");
  EXPECT_EQ(rows->RecordCount(), 2);
  rows->Requery();
  EXPECT_EQ(rows->RecordCount(), 3);
  EXPECT_EQ(rows->AbsolutePosition(), 1);
}

TEST_F(RecordsetTest, AWalkTellsOnceAndSeesWhatOthersChangedSinceTheLastOne) {
  GivenTasks(100);
  const auto rows = Tasks();
  const QSignalSpy shown(rows.get(), &Recordset::Shown);
  const QSignalSpy changed(rows.get(), &Recordset::RowChanged);
  const auto find = [&](const QString& title) {
    const Recordset::Walk walk(*rows);
    for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
      if (rows->Text(kTitle) == title) return rows->AbsolutePosition();
    }
    return -1;
  };
  EXPECT_EQ(find(QStringLiteral("T70")), 70);
  EXPECT_EQ(shown.count(), 1);
  EXPECT_EQ(changed.count(), 1);
  Exec(Path("study.mdb"), "UPDATE Risk_records SET Title='moved' WHERE Level=3");
  EXPECT_EQ(find(QStringLiteral("moved")), 3);
  EXPECT_EQ(find(QStringLiteral("none")), -1);
  EXPECT_TRUE(rows->Eof());
  EXPECT_EQ(changed.count(), 3);
}

TEST_F(RecordsetTest, AWalkGoesOnPastRowsThatAreDeleted) {
  GivenTasks(3);
  const auto rows = Tasks();
  Exec(Path("study.mdb"), "DELETE FROM Risk_records WHERE Level=2");
  const Recordset::Walk walk(*rows);
  QStringList seen;
  for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) seen += rows->Text(kTitle);
  EXPECT_EQ(seen, (QStringList{"T1", "", "T3"}));
  for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext())
    if (rows->Text(kTitle) == "T1") rows->Delete();
  EXPECT_EQ(Titles(), QStringList{"T3"});
}

TEST_F(RecordsetTest, AWalkThatBeginsInTheMiddleSeesWhatOthersChanged) {
  GivenTasks(3);
  const auto rows = Tasks();
  {
    const Recordset::Walk walk(*rows);
    rows->MoveFirst();
    EXPECT_EQ(rows->Text(kTitle), "T1");
  }
  Exec(Path("study.mdb"), "UPDATE Risk_records SET Title='theirs' WHERE Level=2");
  const Recordset::Walk walk(*rows);
  rows->MoveNext();
  EXPECT_EQ(rows->Text(kTitle), "theirs");
}

TEST_F(RecordsetTest, AWalkWithinAWalkTellsNobodyEither) {
  GivenTasks(3);
  const auto rows = Tasks();
  rows->MoveFirst();
  const QSignalSpy shown(rows.get(), &Recordset::Shown);
  {
    const Recordset::Walk outer(*rows);
    {
      const Recordset::Walk inner(*rows);
      rows->MoveNext();
      rows->Delete();
      rows->MoveNext();
    }
    EXPECT_EQ(shown.count(), 0);
    EXPECT_EQ(rows->Text(kTitle), "T3");
  }
  EXPECT_EQ(shown.count(), 1);
  EXPECT_EQ(Titles(), (QStringList{"T1", "T3"}));
}

TEST_F(RecordsetTest, AReadOnlyDatabaseIsReadButTakesNoEdit) {
  GivenTasks(2);
  KESTRIX_SKIP_WITHOUT_NOBODY();
  GiveToNobody(folder_.path());
  QFile::setPermissions(Path("study.mdb"), QFile::ReadOwner | QFile::ReadOther);
  const auto told = RunAsNobody([this] {
    const auto rows = Tasks();
    QStringList numbers;
    for (const std::function<void()>& act : std::initializer_list<std::function<void()>>{
             [&] { rows->Set(kTitle, QStringLiteral("x")); }, [&] { rows->Edit(); },
             [&] { rows->AddNew(); }, [&] { rows->Delete(); }}) {
      numbers += QString::number(FailureOf(act));
    }
    return rows->Text(kTitle) + u' ' + numbers.join(u' ') + u' ' +
           (rows->IsAdding() || rows->HasPendingEdit() ? u'+' : u'-') +
           QString::number(rows->RecordCount()) + (QFile::exists(Path("study.ldb")) ? u'+' : u'-');
  });
  const QString refused = QString::number(failure::kReadOnly);
  EXPECT_EQ(told, "T1 " + QStringList(4, refused).join(u' ') + " -2-");
  EXPECT_EQ(Titles(), (QStringList{"T1", "T2"}));
}

TEST_F(RecordsetTest, AMoveToTheSameRowIsNoChangeOfRow) {
  GivenTasks(2);
  const auto rows = Tasks();
  rows->MoveFirst();
  const QSignalSpy changed(rows.get(), &Recordset::RowChanged);
  rows->MoveFirst();
  EXPECT_EQ(changed.count(), 0);
  rows->MoveNext();
  EXPECT_EQ(changed.count(), 1);
}

TEST_F(RecordsetTest, WhatIsNoSelectOnOneTableIsRefused) {
  for (const Select& select : {Select("Title", "FROM Risk_records WHERE Title='it's'"),
                               Select("Title", "FROM nowhere"), Select("nowhere"), Select("1", ""),
                               Select("Title", "FROM Risk_records; DELETE FROM Risk_records"),
                               Select("Title, FilePath", "FROM Risk_records, fileLink")}) {
    const auto open = [&] {
      const Recordset rows(std::make_shared<Database>(Path("study.mdb")), select);
    };
    EXPECT_EQ(FailureOf(open), failure::kSyntax) << select.text.toStdString();
  }
}

TEST_F(RecordsetTest, AnotherWriterIsWaitedForAndThenNamed) {
  GivenTasks(1);
  const auto database = std::make_shared<Database>(Path("study.mdb"));
  sqlite3_busy_timeout(database->handle(), 50);
  Recordset rows(database, Select("Risk_records"));
  rows.Set(kTitle, QStringLiteral("mine"));
  auto other = std::make_unique<WriterAtWork>(Path("study.mdb"));
  EXPECT_EQ(FailureOf([&] { rows.Update(); }), failure::kLocked);
  EXPECT_TRUE(rows.HasPendingEdit());
  other.reset();
  rows.Update();
  EXPECT_EQ(Titles(), QStringList{"mine"});
}

TEST_F(RecordsetTest, AFullDiskKeepsTheOldRowAndTheEdit) {
  GivenTasks(1);
  const auto database = std::make_shared<Database>(Path("study.mdb"));
  Recordset rows(database, Select("Risk_records"));
  sqlite3_exec(database->handle(), "PRAGMA max_page_count=1", nullptr, nullptr, nullptr);
  const QString long_note(255, u'x');
  int failures = 0;
  for (int i = 0; i < 100 && failures == 0; ++i) {
    rows.AddNew();
    rows.Set(kTitle, QString::number(i));
    rows.Set(kNote, long_note);
    if (FailureOf([&] { rows.Update(); }) == failure::kDiskFull) ++failures;
  }
  EXPECT_EQ(failures, 1);
  EXPECT_TRUE(rows.IsAdding());
  rows.CancelUpdate();
  EXPECT_EQ(Read(Path("study.mdb"), "PRAGMA integrity_check"), QStringList{"ok"});
  EXPECT_EQ(Titles().first(), "T1");
}

}  // namespace
}  // namespace kestrix::testing
