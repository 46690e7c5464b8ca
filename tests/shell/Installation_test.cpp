#include "store/Installation.h"

#include <gtest/gtest.h>

#include "support/Printers.h"

namespace kestrix {
namespace {

class InstallationTest : public ::testing::Test {
 protected:
  const Installation installation{QStringLiteral("/opt/KestrixStudy")};
};

TEST_F(InstallationTest, FixedFilesLieBelowTheApplicationsFolder) {
  EXPECT_EQ(installation.ApplicationFolder(), "/opt/KestrixStudy");
  EXPECT_EQ(installation.StudyTemplate(), "/opt/KestrixStudy/risk_esmatn.mdb");
  EXPECT_EQ(installation.Register(), "/opt/KestrixStudy/RskAsmtFld/orgtn.mdb");
  EXPECT_EQ(installation.SupportLists(), "/opt/KestrixStudy/RskAsmtFld/RskAsmt_BkSup.mdb");
  EXPECT_EQ(installation.NoPicture(), "/opt/KestrixStudy/RskAsmtFld/NoPicSlted.jpg");
  EXPECT_EQ(installation.PictureError(), "/opt/KestrixStudy/RskAsmtFld/errImgLoad.jpg");
  EXPECT_EQ(installation.DataFolder(), "/opt/KestrixStudy/RskAsmtFld");
  EXPECT_EQ(installation.PictureRoot(), "/opt/KestrixStudy/RskAsmtFld/Picfolder");
  EXPECT_EQ(installation.Manual(), "/opt/KestrixStudy/hlpAnnlyAdv.pdf");
  EXPECT_EQ(installation.HelpPage(), "/opt/KestrixStudy/acci_alys_help.htm");
  EXPECT_EQ(installation.ReportProgram(), "/opt/KestrixStudy/RiskBookRpts.exe");
}

TEST_F(InstallationTest, NumberOfAStudyStandsInPlainDecimalsInItsNames) {
  EXPECT_EQ(installation.Study(12), "/opt/KestrixStudy/RskAsmtFld/risk_esmatn12.mdb");
  EXPECT_EQ(installation.StudySign(12), "/opt/KestrixStudy/RskAsmtFld/risk_esmatn12.ldb");
  EXPECT_EQ(installation.PictureFolder(12), "/opt/KestrixStudy/RskAsmtFld/Picfolder/Prj12");
  EXPECT_EQ(installation.Study(12345), "/opt/KestrixStudy/RskAsmtFld/risk_esmatn12345.mdb");
}

TEST_F(InstallationTest, StaleSignsHaveTheStemOfBackupFilesAndNotThatOfStudies) {
  EXPECT_EQ(installation.StaleBackupSign(0), "/opt/KestrixStudy/RskAsmtFld/ktx_RskSmt0.ldb");
}

TEST_F(InstallationTest, BackslashesOfATailAreFolderBoundaries) {
  EXPECT_EQ(installation.Path(QStringLiteral("\\a\\b.txt")), "/opt/KestrixStudy/a/b.txt");
}

TEST_F(InstallationTest, PercentInTheFoldersNameIsLeftAlone) {
  EXPECT_EQ(Installation(QStringLiteral("/opt/100%1")).Study(3),
            "/opt/100%1/RskAsmtFld/risk_esmatn3.mdb");
}

}  // namespace
}  // namespace kestrix
