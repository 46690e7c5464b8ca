#include "command/CommandLine.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "checks/FinishedTask.h"
#include "support/FakeServices.h"
#include "support/Printers.h"
#include "support/TestInstallation.h"

namespace kestrix::testing {
namespace {

class CommandTest : public ::testing::Test {
 protected:
  void SetUp() override {
    installation_.GivenOrganisation(QStringLiteral("Press shop"), 1);
    installation_.GivenProject(1, QStringLiteral("P1"), QStringLiteral("Press shop"));
    installation_.GivenTask(1, FinishedTask());
  }

  int Run(const QStringList& words) {
    out_.clear();
    errors_.clear();
    QTextStream out(&out_);
    QTextStream errors(&errors_);
    FakeClock clock;
    clock.SetToday(QDate(2026, 6, 15));
    return command::Run(QStringList(QStringLiteral("kestrix")) + words,
                        {installation_.Folder(), clock, out, errors, false});
  }
  int Run(const char* words) { return Run(QString::fromUtf8(words).split(u' ')); }
  [[nodiscard]] QJsonObject Printed() const {
    return QJsonDocument::fromJson(out_.toUtf8()).object();
  }
  [[nodiscard]] static QByteArray BytesOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
  }
  int Report(const QString& file, const QStringList& more = {}) {
    return Run(QStringList{QStringLiteral("report"), QStringLiteral("Press shop"),
                           QStringLiteral("P1"), QStringLiteral("-o"), file} +
               more);
  }

  TestInstallation installation_;
  QString out_;
  QString errors_;
};

TEST_F(CommandTest, ListTellsOrganisationsProjectsAndTasks) {
  EXPECT_EQ(Run("list"), command::kDone);
  EXPECT_TRUE(out_.contains(QStringLiteral("Press shop  (study 1)")));
  EXPECT_TRUE(out_.contains(QStringLiteral("P1")));
  EXPECT_TRUE(out_.contains(QStringLiteral("1 task\n")));
  EXPECT_EQ(Run("--json list"), command::kDone);
  const QJsonObject organisation = Printed()[u"organisations"][0].toObject();
  EXPECT_EQ(organisation[u"name"], QStringLiteral("Press shop"));
  EXPECT_EQ(organisation[u"study"], 1);
  EXPECT_EQ(organisation[u"projects"][0][u"tasks"], 1);
}

TEST_F(CommandTest, ListGoesOnPastADamagedStudyAndNamesIt) {
  installation_.GivenOrganisation(QStringLiteral("Welding"), 2);
  QFile study(installation_.Study(1));
  ASSERT_TRUE(study.open(QIODevice::WriteOnly | QIODevice::Truncate));
  study.close();
  EXPECT_EQ(Run("list"), command::kFailed);
  EXPECT_TRUE(out_.contains(QStringLiteral("Welding")));
  EXPECT_TRUE(errors_.contains(QStringLiteral("risk_esmatn1.mdb")));
}

TEST_F(CommandTest, AnotherInstallationIsNamedAnywhereInTheCall) {
  const QString elsewhere = installation_.Outside(QStringLiteral("none"));
  EXPECT_EQ(Run({QStringLiteral("list"), QStringLiteral("--installation"), elsewhere}),
            command::kFailed);
  EXPECT_TRUE(errors_.contains(elsewhere));
  EXPECT_EQ(Run({QStringLiteral("--installation"), installation_.Folder(), QStringLiteral("list")}),
            command::kDone);
}

TEST_F(CommandTest, WrongUseIsToldAndEndsWithTwo) {
  for (const char* words :
       {"nonsense", "list --bogus", "list too many", "report", "report A", "report A B",
        "report A B -o x.doc", "report A B -o x.csv --kind small",
        "report A B -o x.csv --date 32/01/2026", "report A B -o x.csv --kind changes",
        "report A B -o x.csv --since set", "--bogus"}) {
    EXPECT_EQ(Run(words), command::kWrongUse) << words;
    EXPECT_FALSE(errors_.isEmpty()) << words;
    EXPECT_TRUE(out_.isEmpty()) << words;
  }
}

TEST_F(CommandTest, HelpAndVersionAreThereOnEveryLevel) {
  for (const char* words : {"--help", "list --help", "report --help", "--help check"}) {
    EXPECT_EQ(Run(words), command::kDone) << words;
    EXPECT_TRUE(out_.contains(QStringLiteral("Usage: kestrix"))) << words;
  }
  EXPECT_EQ(Run("--version"), command::kDone);
}

TEST_F(CommandTest, CheckEndsWithOneOnlyForMoreThanNotes) {
  EXPECT_EQ(Run("check"), command::kDone);
  TestInstallation::Exec(installation_.Study(1),
                         QStringLiteral("UPDATE Risk_records SET PhaseMachn='Lunch'"));
  EXPECT_EQ(Run("check --json"), command::kDone);
  EXPECT_EQ(Printed()[u"findings"][0][u"rule"], QStringLiteral("not-in-list"));
  EXPECT_TRUE(Printed()[u"findings"][0][u"file"].isNull());
  TestInstallation::Exec(installation_.Study(1),
                         QStringLiteral("UPDATE Risk_records SET RiskIndex=2"));
  EXPECT_EQ(Run({QStringLiteral("check"), QStringLiteral("Press shop"), QStringLiteral("P1")}),
            command::kFound);
  EXPECT_TRUE(out_.contains(QStringLiteral("index-differs")));
  EXPECT_EQ(Run({QStringLiteral("check"), QStringLiteral("Nobody")}), command::kFailed);
}

TEST_F(CommandTest, TheJsonHoldsEveryFieldAndWhatTheModelMakesOfIt) {
  const QString file = installation_.Outside(QStringLiteral("report.json"));
  ASSERT_EQ(Report(file), command::kDone) << errors_.toStdString();
  const QJsonObject json = QJsonDocument::fromJson(BytesOf(file)).object();
  EXPECT_EQ(json[u"format"], QStringLiteral("kestrix"));
  const QJsonObject task = json[u"projects"][0][u"tasks"][0].toObject();
  EXPECT_EQ(task[u"FuntnTaskMachry"], QStringLiteral("Load the press"));
  EXPECT_EQ(task[u"ActntkenOptnY_N"], true);
  EXPECT_EQ(task[u"1Chk_OptnSltd"], 1);
  EXPECT_EQ(task[u"computed"][u"before"][u"index"], 6);
  EXPECT_EQ(task[u"computed"][u"after"][u"index_band"], QStringLiteral("Low Risk"));
  EXPECT_EQ(task[u"computed"][u"before"][u"class"], 9);
  EXPECT_EQ(task[u"computed"][u"before"][u"cell"], QStringLiteral("Rsk3"));
  EXPECT_EQ(task[u"computed"][u"verdict"], QStringLiteral("Yes"));
  // 48 fields, the pictures, and what is computed.
  EXPECT_EQ(task.size(), 50);
  const QByteArray first = BytesOf(file);
  ASSERT_EQ(Report(file), command::kDone);
  EXPECT_EQ(BytesOf(file), first);
}

TEST_F(CommandTest, TheCsvHasOneLineATaskAndNoFormula) {
  TestInstallation::Exec(
      installation_.Study(1),
      QStringLiteral("UPDATE Risk_records SET FuntnTaskMachry='=cmd|x', HazrdLoctn='a, \"b\"'"));
  const QString file = installation_.Outside(QStringLiteral("report.csv"));
  ASSERT_EQ(Report(file), command::kDone) << errors_.toStdString();
  const QByteArray bytes = BytesOf(file);
  EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBFReference,Task,Location,"));
  EXPECT_TRUE(bytes.endsWith("\r\n"));
  EXPECT_TRUE(bytes.contains("\r\n01.00,'=cmd|x,\"a, \"\"b\"\"\",None.,"));
  EXPECT_TRUE(bytes.contains(",2026-03-01,Yes,2026-02-01,\"S2, Serious\",\"F2, Frequent\","));
  EXPECT_TRUE(bytes.contains("\"O1, Low\",\"A1, Possible\",1,Low Risk,9,Low Risk,Yes\r\n"));
}

TEST_F(CommandTest, AFilterLeavesTasksOut) {
  const QString file = installation_.Outside(QStringLiteral("report.json"));
  ASSERT_EQ(Report(file, {QStringLiteral("--only"), QStringLiteral("open")}), command::kDone);
  EXPECT_TRUE(QJsonDocument::fromJson(BytesOf(file))[u"projects"][0][u"tasks"].toArray().isEmpty());
}

TEST_F(CommandTest, AFileThatCantBeWrittenIsOneSentenceAndLeavesNothing) {
  const QString file = installation_.Outside(QStringLiteral("no/such/folder.csv"));
  EXPECT_EQ(Report(file), command::kFailed);
  EXPECT_EQ(errors_.count(u'\n'), 1);
  EXPECT_TRUE(errors_.contains(file));
}

TEST_F(CommandTest, WhatIsNotThereIsNamed) {
  const QString file = installation_.Outside(QStringLiteral("report.csv"));
  EXPECT_EQ(Run({QStringLiteral("report"), QStringLiteral("Nobody"), QStringLiteral("P1"),
                 QStringLiteral("-o"), file}),
            command::kFailed);
  EXPECT_TRUE(errors_.contains(QStringLiteral("Nobody")));
  EXPECT_EQ(Run({QStringLiteral("report"), QStringLiteral("Press shop"), QStringLiteral("P9"),
                 QStringLiteral("-o"), file}),
            command::kFailed);
  EXPECT_TRUE(errors_.contains(QStringLiteral("P9")));
  EXPECT_FALSE(QFile::exists(file));
}

}  // namespace
}  // namespace kestrix::testing
