#include "store/RecordSources.h"

#include <gtest/gtest.h>

namespace kestrix::testing {
namespace {

TEST(RecordSourcesTest, TheProjectsOfAnOrganisation) {
  EXPECT_EQ(sources::ProjectSql(QStringLiteral("Press shop")),
            "SELECT Project_details.Factory_Name, Project_details.Project_Number, "
            "Project_details.Project_phase, Project_details.Project_Description, "
            "Project_details.preparedBytxt FROM Project_details WHERE "
            "(((Project_details.Factory_Name)='Press shop'))");
}

TEST(RecordSourcesTest, TheTasksOfAProjectAreFortyEightFieldsInTheirOrder) {
  const QString sql = sources::RiskSql(QStringLiteral("P-1"));
  EXPECT_TRUE(
      sql.startsWith(QStringLiteral("SELECT Risk_records.Project_Number, Risk_records.dateOfRcd, "
                                    "Risk_records.FuntnTaskMachry,")));
  EXPECT_TRUE(sql.contains(QStringLiteral("Risk_records.RiskIndex, Risk_records.Chk_OptnSe,")));
  EXPECT_TRUE(sql.contains(QStringLiteral(
      "Risk_records.[5Chk_OptnSltdAftr], Risk_records.nunberauto, "
      "Risk_records.PicBfrRcmdtn, Risk_records.PicAftrRcmdtn FROM Risk_records Where "
      "(((Risk_records.Project_Number)='P-1')) ORDER BY Risk_records.nunberauto")));
  EXPECT_EQ(sql.left(sql.indexOf(QStringLiteral(" FROM "))).count(u','), 47);
}

TEST(RecordSourcesTest, TheLinkedFilesOfAProject) {
  EXPECT_EQ(sources::FileLinkSql(QStringLiteral("P-1")),
            "SELECT fileLink.Project_Number, fileLink.FilePath, fileLink.FileShrtDscrptn, "
            "fileLink.FileEmb FROM fileLink WHERE (((fileLink.Project_Number)='P-1'))");
}

TEST(RecordSourcesTest, TheFormsOfTheHazardTypesDifferAsTheirReadersDo) {
  const QString hazard = QStringLiteral("Mechanical");
  EXPECT_EQ(sources::HazardTypesOf(hazard),
            "SELECT HazardType.hazardoccurrence, HazardType.HazardTyp, HazardType.SrNo FROM "
            "HazardType WHERE(((hazardType.HazardTyp)='Mechanical'))");
  EXPECT_EQ(sources::HazardTypesToDelete(hazard),
            "SELECT hazardType.hazardoccurrence, hazardType.HazardTyp, hazardType.SrNo FROM "
            "HazardType WHERE (((hazardType.HazardTyp)='Mechanical'))");
  EXPECT_EQ(sources::HazardTypesForTask(hazard), sources::HazardTypesToDelete(hazard));
  EXPECT_EQ(sources::HazardTypesForClick(hazard),
            "SELECT hazardType.hazardoccurrence, hazardType.HazardTyp, hazardType.SrNo From "
            "HazardType WHERE (((hazardType.HazardTyp)='Mechanical'))");
}

TEST(RecordSourcesTest, AnApostropheIsPastedAsItStands) {
  EXPECT_TRUE(sources::ProjectSql(QStringLiteral("O'Neil")).endsWith(QStringLiteral("'O'Neil'))")));
}

}  // namespace
}  // namespace kestrix::testing
