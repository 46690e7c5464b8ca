#include "checks/Checker.h"

#include <gtest/gtest.h>

#include <QFile>

#include "checks/FinishedTask.h"
#include "records/FileSource.h"
#include "support/Printers.h"
#include "support/TestInstallation.h"

namespace kestrix::testing {
namespace {

using checks::Finding;

const QDate kToday(2026, 6, 15);

/// One organisation with one project.
class CheckerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    installation_.GivenOrganisation(QStringLiteral("Press shop"), 1);
    installation_.GivenProject(1, QStringLiteral("P1"), QStringLiteral("Press shop"));
    installation_.GivenListRows(QStringLiteral("ActionBy"), {QStringLiteral("Ann")});
  }

  [[nodiscard]] std::vector<Finding> CheckAll() {
    records::FileSource source{Installation(installation_.Folder())};
    return checks::Checker(source, kToday).CheckAll();
  }
  [[nodiscard]] QStringList Rules() {
    QStringList rules;
    for (const Finding& finding : CheckAll()) rules += finding.rule;
    return rules;
  }

  TestInstallation installation_;
};

TEST_F(CheckerTest, AFinishedTaskHasNoFinding) {
  installation_.GivenTask(1, FinishedTask());
  EXPECT_EQ(Rules(), QStringList());
}

/// What breaks one rule and no other, and the field that the finding names.
struct Break {
  const char* rule;
  Fields changes;
  const char* field;
};

class RuleTest : public CheckerTest, public ::testing::WithParamInterface<Break> {};

TEST_P(RuleTest, IsBrokenByThisAlone) {
  const Break& broken = GetParam();
  const qint64 id = installation_.GivenTask(1, With(FinishedTask(), broken.changes));
  const std::vector<Finding> findings = CheckAll();
  ASSERT_EQ(findings.size(), 1U) << Rules().join(u' ').toStdString();
  const Finding& finding = findings.front();
  EXPECT_EQ(finding.rule, QString::fromLatin1(broken.rule));
  EXPECT_EQ(finding.field, QString::fromLatin1(broken.field));
  EXPECT_EQ(finding.organisation, QStringLiteral("Press shop"));
  EXPECT_EQ(finding.project, QStringLiteral("P1"));
  EXPECT_EQ(finding.id, id);
  EXPECT_FALSE(finding.says.isEmpty());
  EXPECT_FALSE(finding.says.contains(u'%'));
  EXPECT_FALSE(finding.advice.isEmpty());
}

Fields Changes(std::initializer_list<std::pair<const char*, QVariant>> changes) {
  Fields fields;
  for (const auto& [name, value] : changes) fields.insert(QString::fromLatin1(name), value);
  return fields;
}

/// A stage that nobody has estimated yet.
Fields Unset(const char* after) {
  const QString twin = QString::fromLatin1(after);
  Fields fields;
  for (const char* name :
       {"ExposureCbo", "occurrenceCbo", "avoidanceCbo", "Chk_OptnEx", "Chk_OptnOc", "Chk_OptnAv"}) {
    fields.insert(QString::fromLatin1(name) + twin, QStringLiteral("N.A."));
  }
  for (const char* name : {"SevertyCbo", "Chk_OptnSe"}) {
    fields.insert(QString::fromLatin1(name) + twin, QStringLiteral("Reset"));
  }
  for (const char* name :
       {"RiskIndex", "1Chk_OptnSltd", "2Chk_OptnSltd", "3Chk_OptnSltd", "4Chk_OptnSltd"}) {
    const QString score = QString::fromLatin1(name) + twin;
    fields.insert(score, 0);
  }
  return fields;
}

INSTANTIATE_TEST_SUITE_P(
    Tasks, RuleTest,
    ::testing::Values(
        Break{"not-estimated-after", Unset("Aftr"), "SevertyCboAftr"},
        Break{"incomplete-class-before", Changes({{"Chk_OptnEx", "N.A."}, {"2Chk_OptnSltd", 0}}),
              "Chk_OptnEx"},
        Break{"incomplete-class-after",
              Changes({{"Chk_OptnSeAftr", "Reset"}, {"1Chk_OptnSltdAftr", 0}}), "Chk_OptnSeAftr"},
        Break{"unknown-level", Changes({{"occurrenceCbo", "O2, Medium"}}), "occurrenceCbo"},
        Break{"unknown-level", Changes({{"SevertyCboAftr", "S3, Fatal"}}), "SevertyCboAftr"},
        Break{"unknown-statement", Changes({{"Chk_OptnOcAftr", " Sometimes"}}), "Chk_OptnOcAftr"},
        Break{"index-differs", Changes({{"RiskIndex", 5}}), "RiskIndex"},
        Break{"class-differs", Changes({{"3Chk_OptnSltd", 4}}), "3Chk_OptnSltd"},
        Break{"verdict-differs", Changes({{"RskRdsdtnY_N", 0}}), "RskRdsdtnY_N"},
        Break{"no-recommendation", Changes({{"ReccdtnTxt", "N.A."}}), "ReccdtnTxt"},
        Break{"overdue",
              Changes({{"ActntkenOptnY_N", 0}, {"ActnByCbo", "Ann"}, {"actnDt", "14/06/2026"}}),
              "actnDt"},
        Break{"bad-date", Changes({{"dateOfRcd", "31/02/2026"}}), "dateOfRcd"},
        Break{"bad-date",
              Changes({{"actnDt", "soon"}, {"ActntkenOptnY_N", 0}, {"ActnByCbo", "Ann"}}),
              "actnDt"},
        Break{"bad-reference", Changes({{"RefNo", "one"}}), "RefNo"},
        Break{"missing-picture", Changes({{"PicAftrRcmdtn", "gone.jpg"}}), "PicAftrRcmdtn"},
        Break{"missing-picture", Changes({{"PicBfrRcmdtn", "../orgtn.mdb"}}), "PicBfrRcmdtn"},
        Break{"not-in-list", Changes({{"PhaseMachn", "Lunch"}}), "PhaseMachn"},
        Break{"not-in-list", Changes({{"ReccdtnTypTxt", "Hope"}}), "ReccdtnTypTxt"},
        Break{"wrong-parent", Changes({{"Primary_Hazard", "None."}, {"Hazard_type", "Crushing"}}),
              "Hazard_type"}));

class OpenActionTest : public CheckerTest {
 protected:
  void GivenOpenAction(const Fields& changes) {
    installation_.GivenTask(1, With(With(FinishedTask(), Changes({{"ActntkenOptnY_N", 0},
                                                                  {"ActnByCbo", "Ann"},
                                                                  {"actnDt", "15/06/2026"}})),
                                    changes));
  }
};

TEST_F(OpenActionTest, IsNoFindingUntilTheDayAfter) {
  GivenOpenAction({});
  EXPECT_EQ(Rules(), QStringList());
}

TEST_F(OpenActionTest, NeedsAnOwner) {
  GivenOpenAction(Changes({{"ActnByCbo", "None."}}));
  EXPECT_EQ(Rules(), QStringList(QStringLiteral("no-owner")));
}

TEST_F(OpenActionTest, NeedsADate) {
  GivenOpenAction(Changes({{"actnDt", ""}}));
  EXPECT_EQ(Rules(), QStringList(QStringLiteral("no-date")));
}

TEST_F(CheckerTest, ATaskThatNobodyEstimatedIsNotSafe) {
  installation_.GivenTask(1, Changes({{"Project_Number", "P1"}}));
  EXPECT_EQ(Rules(), QStringList(QStringLiteral("not-estimated-before")));
}

TEST_F(CheckerTest, NoHazardIsAnEstimationAndNeedsNoStatement) {
  Fields task = With(FinishedTask(), Unset(""));
  task.insert(Unset("Aftr"));
  task.insert(Changes({{"SevertyCbo", "None."},
                       {"SevertyCboAftr", "None."},
                       {"RskRdsdtnY_N", 0},
                       {"ReccdtnTxt", "None."}}));
  installation_.GivenTask(1, task);
  EXPECT_EQ(Rules(), QStringList());
}

TEST_F(CheckerTest, AnUnknownLevelSilencesItsStageOnly) {
  installation_.GivenTask(1, With(FinishedTask(), Changes({{"avoidanceCbo", "A3"},
                                                           {"Chk_OptnOc", "?"},
                                                           {"2Chk_OptnSltd", 4},
                                                           {"RiskIndexAftr", 2}})));
  EXPECT_EQ(Rules(),
            QStringList({QStringLiteral("unknown-level"), QStringLiteral("index-differs")}));
}

TEST_F(CheckerTest, ARiskThatRoseOrStayedIsTold) {
  // Both stages alike, so that only what compares them has something to tell.
  const Fields after = Changes({{"ExposureCboAftr", "F2, Frequent"},
                                {"occurrenceCboAftr", "O3, High"},
                                {"avoidanceCboAftr", "A2, Impossible"},
                                {"RiskIndexAftr", 6},
                                {"RskRdsdtnY_N", 0}});
  installation_.GivenTask(1, With(FinishedTask(), after));
  EXPECT_EQ(Rules(), QStringList(QStringLiteral("not-reduced")));
  TestInstallation::Exec(installation_.Study(1),
                         QStringLiteral("UPDATE Risk_records SET avoidanceCbo='A1, Possible', "
                                        "RiskIndex=5"));
  EXPECT_EQ(Rules(), QStringList(QStringLiteral("risk-rose")));
}

TEST_F(CheckerTest, ANumberGivenTwiceIsToldOnceForEachButTheFirst) {
  for (const char* reference : {"1", "01.00", "1.0", "0", "0", "", "2"}) {
    installation_.GivenTask(1, With(FinishedTask(), Changes({{"RefNo", reference}})));
  }
  EXPECT_EQ(Rules(),
            QStringList({QStringLiteral("same-reference"), QStringLiteral("same-reference")}));
}

TEST_F(CheckerTest, ALinkedFileThatIsGoneOrNoFileIsTold) {
  const QString there = installation_.Outside(QStringLiteral("plan.txt"));
  QFile file(there);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  for (const QString& path : {there, there + QStringLiteral(".gone"), installation_.Folder()}) {
    TestInstallation::Exec(installation_.Study(1),
                           QStringLiteral("INSERT INTO fileLink (Project_Number, FilePath) VALUES "
                                          "('P1', '%1')")
                               .arg(path));
  }
  EXPECT_EQ(Rules(), QStringList({QStringLiteral("missing-file"), QStringLiteral("missing-file")}));
}

TEST_F(CheckerTest, RowsOfAProjectThatIsGoneAreToldOnceWithTheirCount) {
  installation_.GivenTask(1, With(FinishedTask(), Changes({{"Project_Number", "P9"}})));
  installation_.GivenTask(1, With(FinishedTask(), Changes({{"Project_Number", "P9"}})));
  TestInstallation::Exec(installation_.Study(1),
                         QStringLiteral("INSERT INTO fileLink (Project_Number, FilePath) VALUES "
                                        "('P8', '/etc/hostname')"));
  const std::vector<Finding> findings = CheckAll();
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_EQ(findings[0].rule, QStringLiteral("orphan-tasks"));
  EXPECT_EQ(findings[0].project, QStringLiteral("P9"));
  EXPECT_TRUE(findings[0].says.contains(QStringLiteral("2 tasks")));
  EXPECT_EQ(findings[1].rule, QStringLiteral("orphan-links"));
}

TEST_F(CheckerTest, FilesOfNobodyAndOrganisationsWithoutAStudyAreTold) {
  installation_.GivenStudy(7);
  installation_.GivenOrganisation(QStringLiteral("Never opened"), 0);
  installation_.GivenOrganisation(QStringLiteral("Lost"), 3);
  ASSERT_TRUE(QFile::remove(installation_.Study(3)));
  EXPECT_EQ(Rules(), QStringList({QStringLiteral("no-study"), QStringLiteral("orphan-study"),
                                  QStringLiteral("orphan-pictures")}));
}

TEST_F(CheckerTest, TwoOrganisationsOfOneNumberAreTold) {
  TestInstallation::Exec(installation_.Register(),
                         QStringLiteral("INSERT INTO orgtn VALUES ('Twin', 1)"));
  EXPECT_EQ(Rules(), QStringList(QStringLiteral("same-study")));
}

TEST_F(CheckerTest, AStudyThatIsNoDatabaseIsToldAndTheOthersAreChecked) {
  installation_.GivenOrganisation(QStringLiteral("Welding"), 2);
  installation_.GivenProject(2, QStringLiteral("W1"), QStringLiteral("Welding"));
  installation_.GivenTask(
      2, With(FinishedTask(), Changes({{"Project_Number", "W1"}, {"RefNo", "x"}})));
  QFile study(installation_.Study(1));
  ASSERT_TRUE(study.open(QIODevice::WriteOnly | QIODevice::Truncate));
  study.write("no database");
  study.close();
  EXPECT_EQ(Rules(), QStringList({QStringLiteral("damaged"), QStringLiteral("bad-reference")}));
}

TEST_F(CheckerTest, ChecksLeaveNoSignAndChangeNothing) {
  installation_.GivenTask(1, FinishedTask());
  QFile study(installation_.Study(1));
  ASSERT_TRUE(study.open(QIODevice::ReadOnly));
  const QByteArray before = study.readAll();
  EXPECT_EQ(Rules(), QStringList());
  ASSERT_TRUE(study.seek(0));
  EXPECT_EQ(study.readAll(), before);
  EXPECT_FALSE(QFile::exists(installation_.StudySign(1)));
}

}  // namespace
}  // namespace kestrix::testing
