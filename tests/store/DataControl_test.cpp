#include "store/DataControl.h"

#include <QSignalSpy>

#include "store/StoreTest.h"

namespace kestrix::testing {
namespace {

class DataControlTest : public StoreTest {
 protected:
  void SetUp() override { (void)GivenInstalledStudy("study.mdb"); }
  void GivenTasks(int count) {
    for (int i = 1; i <= count; ++i)
      Exec(Path("study.mdb"), "INSERT INTO Risk_records(Project_Number) VALUES('P')");
  }
  void OpenTasks() {
    control.SetDatabaseName(Path("study.mdb"));
    control.SetRecordSource(Select("Risk_records"));
    control.Refresh();
  }
  DataControl control{QStringLiteral("dtsorce1")};
};

TEST_F(DataControlTest, AConnectionStringNamesItsFile) {
  control.SetConnectionString(QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") +
                              Path("study.mdb"));
  EXPECT_EQ(control.DatabaseName(), Path("study.mdb"));
  EXPECT_EQ(control.ConnectionString(), DataControl::ConnectionStringFor(Path("study.mdb")));
  EXPECT_EQ(control.objectName(), "dtsorce1");
}

TEST_F(DataControlTest, ThereAreNoRowsBeforeARefresh) {
  EXPECT_FALSE(control.HasRecordset());
  EXPECT_EQ(FailureOf([&] { (void)control.Recordset(); }), failure::kObjectNotSet);
}

TEST_F(DataControlTest, RefreshOpensTheFileAndTheRowsAndTells) {
  GivenTasks(2);
  const QSignalSpy reset(&control, &DataControl::RowsReset);
  control.SetDatabaseName(Path("study.mdb"));
  control.Refresh();
  EXPECT_FALSE(control.HasRecordset());
  EXPECT_TRUE(QFile::exists(Path("study.ldb")));
  control.SetRecordSource(Select("Risk_records"));
  control.Refresh();
  EXPECT_EQ(control.Recordset().RecordCount(), 2);
  EXPECT_EQ(reset.count(), 2);
}

TEST_F(DataControlTest, RefreshCommitsThePendingEdit) {
  GivenTasks(1);
  OpenTasks();
  control.Recordset().Set(1, QStringLiteral("kept"));
  control.Refresh();
  EXPECT_EQ(control.Recordset().Text(1), "kept");
  // One that can't be committed is told behind the refresh.
  control.Recordset().Set(1, QStringLiteral("mine"));
  Exec(Path("study.mdb"), "UPDATE Risk_records SET dateOfRcd='theirs'");
  EXPECT_EQ(FailureOf([&] { control.Refresh(); }), failure::kRowChanged);
  EXPECT_EQ(control.Recordset().Text(1), "theirs");
}

TEST_F(DataControlTest, PointingElsewhereLetsGoOfTheFirstFile) {
  (void)GivenInstalledStudy("other.mdb");
  control.SetDatabaseName(Path("study.mdb"));
  control.Refresh();
  control.SetDatabaseName(Path("other.mdb"));
  control.Refresh();
  EXPECT_FALSE(QFile::exists(Path("study.ldb")));
  EXPECT_TRUE(QFile::exists(Path("other.ldb")));
  control.Close();
  EXPECT_FALSE(QFile::exists(Path("other.ldb")));
}

TEST_F(DataControlTest, AFailedRefreshLeavesNoRowsAndSaysSo) {
  GivenTasks(1);
  OpenTasks();
  const QSignalSpy shown(&control, &DataControl::Shown);
  control.SetRecordSource(Select("nowhere"));
  EXPECT_EQ(FailureOf([&] { control.Refresh(); }), failure::kSyntax);
  EXPECT_FALSE(control.HasRecordset());
  EXPECT_EQ(shown.count(), 1);
}

TEST_F(DataControlTest, RefreshSeesAFileThatWasPutInItsPlace) {
  GivenTasks(1);
  (void)GivenInstalledStudy("new.mdb");
  OpenTasks();
  ASSERT_EQ(rename(Path("new.mdb").toUtf8().constData(), Path("study.mdb").toUtf8().constData()),
            0);
  control.Refresh();
  EXPECT_EQ(control.Recordset().RecordCount(), 0);
}

TEST_F(DataControlTest, ItPassesOnWhatItsRowsTell) {
  GivenTasks(2);
  OpenTasks();
  const QSignalSpy row(&control, &DataControl::RowChanged);
  const QSignalSpy field(&control, &DataControl::FieldChanged);
  const QSignalSpy inserted(&control, &DataControl::RowInserted);
  const QSignalSpy removed(&control, &DataControl::RowRemoved);
  control.Recordset().MoveNext();
  control.Recordset().Set(1, QStringLiteral("x"));
  control.Recordset().AddNew();
  control.Recordset().Update();
  control.Recordset().Delete();
  EXPECT_GE(row.count(), 3);
  EXPECT_EQ(field.count(), 1);
  EXPECT_EQ(inserted.count(), 1);
  EXPECT_EQ(removed.count(), 1);
}

}  // namespace
}  // namespace kestrix::testing
