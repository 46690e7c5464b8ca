#include "store/RecordSources.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace kestrix::testing {
namespace {

TEST(RecordSourcesTest, TheProjectsOfAnOrganisation) {
  EXPECT_EQ(sources::ProjectSql(QStringLiteral("Press shop")).text,
            "SELECT Project_details.Factory_Name, Project_details.Project_Number, "
            "Project_details.Project_phase, Project_details.Project_Description, "
            "Project_details.preparedBytxt FROM Project_details WHERE "
            "(((Project_details.Factory_Name)='Press shop'))");
}

TEST(RecordSourcesTest, TheTasksOfAProjectAreFortyEightFieldsInTheirOrder) {
  const QStringList before = {
      "Project_Number", "dateOfRcd",      "FuntnTaskMachry", "HazrdLoctn",    "PhaseMachn",
      "Primary_Hazard", "Hazard_type",    "RefNo",           "HzrdDscptnTXT", "ReccdtnTxt",
      "ReccdtnTypTxt",  "preparedBytxt",  "RIARtxt",         "RskRdsdtnY_N",  "ActnByCbo",
      "actnDt",         "ActntkenOptnY_N"};
  const QStringList stage = {"SevertyCbo",   "ExposureCbo", "occurrenceCbo",
                             "avoidanceCbo", "RiskIndex",   "Chk_OptnSe",
                             "Chk_OptnEx",   "Chk_OptnOc",  "Chk_OptnAv"};
  const QStringList scores = {"1Chk_OptnSltd", "2Chk_OptnSltd", "3Chk_OptnSltd", "4Chk_OptnSltd",
                              "5Chk_OptnSltd"};
  QStringList fields = before;
  for (const QStringList& group : {stage, scores}) {
    for (const char* of_stage : {"", "Aftr"}) {
      for (const QString& name : group) {
        fields += group == scores ? u'[' + name + of_stage + u']' : name + of_stage;
      }
    }
  }
  fields += QStringList{"nunberauto", "PicBfrRcmdtn", "PicAftrRcmdtn"};
  ASSERT_EQ(fields.size(), 48);
  EXPECT_EQ(sources::RiskSql(QStringLiteral("P-1")).text,
            QStringLiteral("SELECT Risk_records.") + fields.join(", Risk_records.") +
                " FROM Risk_records Where (((Risk_records.Project_Number)='P-1')) ORDER BY "
                "Risk_records.nunberauto");
}

TEST(RecordSourcesTest, TheLinkedFilesOfAProject) {
  EXPECT_EQ(sources::FileLinkSql(QStringLiteral("P-1")).text,
            "SELECT fileLink.Project_Number, fileLink.FilePath, fileLink.FileShrtDscrptn, "
            "fileLink.FileEmb FROM fileLink WHERE (((fileLink.Project_Number)='P-1'))");
}

TEST(RecordSourcesTest, TheFormsOfTheHazardTypesDifferAsTheirReadersDo) {
  const QString hazard = QStringLiteral("Mechanical");
  EXPECT_EQ(sources::HazardTypesOf(hazard).text,
            "SELECT HazardType.hazardoccurrence, HazardType.HazardTyp, HazardType.SrNo FROM "
            "HazardType WHERE(((hazardType.HazardTyp)='Mechanical'))");
  EXPECT_EQ(sources::HazardTypesForTask(hazard).text,
            "SELECT hazardType.hazardoccurrence, hazardType.HazardTyp, hazardType.SrNo FROM "
            "HazardType WHERE (((hazardType.HazardTyp)='Mechanical'))");
  EXPECT_EQ(sources::HazardTypesForClick(hazard).text,
            "SELECT hazardType.hazardoccurrence, hazardType.HazardTyp, hazardType.SrNo From "
            "HazardType WHERE (((hazardType.HazardTyp)='Mechanical'))");
}

TEST(RecordSourcesTest, AnApostropheIsPastedAsItStands) {
  EXPECT_TRUE(
      sources::ProjectSql(QStringLiteral("O'Neil")).text.endsWith(QStringLiteral("'O'Neil'))")));
}

}  // namespace
}  // namespace kestrix::testing
