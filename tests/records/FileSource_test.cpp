#include "records/FileSource.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include "platform/Failure.h"
#include "support/Printers.h"
#include "support/TestInstallation.h"

namespace kestrix::testing {
namespace {

using records::Organisation;

class FileSourceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    installation_.GivenOrganisation(kShop.name, 1);
    installation_.GivenProject(1, QStringLiteral("P1"), kShop.name,
                               {{QStringLiteral("Project_phase"), QStringLiteral("Design")},
                                {QStringLiteral("preparedBytxt"), QStringLiteral("Ann")}});
  }

  /// All that lies in the installation, with the times of the last change.
  [[nodiscard]] QStringList Everything() const {
    QStringList entries;
    for (const QString& folder : {QStringLiteral("."), QStringLiteral("RskAsmtFld")}) {
      const QDir dir(installation_.Path(folder));
      const auto kAll = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
      for (const QFileInfo& info : dir.entryInfoList(kAll)) {
        entries += info.filePath() + info.lastModified().toString(Qt::ISODateWithMs);
      }
    }
    return entries;
  }

  const Organisation kShop{QStringLiteral("Press shop"), 1};
  TestInstallation installation_;
  records::FileSource source_{Installation(installation_.Folder())};
};

TEST_F(FileSourceTest, TheRegisterIsReadInItsOrder) {
  installation_.GivenOrganisation(QStringLiteral("Never opened"), 0);
  TestInstallation::Exec(installation_.Register(),
                         QStringLiteral("UPDATE Orgtmp SET OrgNameTMP=1"));
  const records::Register read = source_.ReadRegister();
  ASSERT_EQ(read.organisations.size(), 2U);
  EXPECT_EQ(read.organisations[0].name, kShop.name);
  EXPECT_EQ(read.organisations[0].study, 1);
  EXPECT_EQ(read.organisations[1].study, 0);
  EXPECT_EQ(read.opened_last, 1);
}

TEST_F(FileSourceTest, EachFieldOfATaskComesFromItsOwnColumn) {
  // Every column its own name, or its own number, so that none can stand for another.
  QMap<QString, QVariant> fields;
  int number = 0;
  records::Task blank;
  VisitFields(blank, [&](QStringView name, auto& value) {
    if constexpr (std::is_same_v<std::decay_t<decltype(value)>, QString>) {
      fields.insert(name.toString(), QStringLiteral("text of ") + name.toString());
    } else if constexpr (std::is_same_v<std::decay_t<decltype(value)>, bool>) {
      fields.insert(name.toString(), 1);
    } else {
      fields.insert(name.toString(), ++number);
    }
  });
  fields.insert(QStringLiteral("Project_Number"), QStringLiteral("P1"));
  installation_.GivenTask(1, fields);
  const auto project = source_.ReadProject(kShop, QStringLiteral("P1"));
  ASSERT_TRUE(project.has_value());
  ASSERT_EQ(project->tasks.size(), 1U);
  int count = 0;
  VisitFields(project->tasks[0], [&](QStringView name, const auto& value) {
    ++count;
    constexpr bool kIsTruth = std::is_same_v<std::decay_t<decltype(value)>, bool>;
    const QString stored = fields.value(name.toString()).toString();
    const QString expected = kIsTruth ? QStringLiteral("true") : stored;
    EXPECT_EQ(QVariant(value).toString(), expected) << name.toUtf8().constData();
  });
  EXPECT_EQ(count, 48);
  EXPECT_EQ(TestInstallation::Column(installation_.Study(1),
                                     QStringLiteral("SELECT count(*) FROM "
                                                    "pragma_table_info('Risk_records')")),
            QStringList(QStringLiteral("48")));
}

TEST_F(FileSourceTest, TasksComeInTheOrderOfTheirNumbersAndOrphansApart) {
  const auto task = [this](const char* project, const char* title) {
    installation_.GivenTask(1, {{QStringLiteral("Project_Number"), QString::fromUtf8(project)},
                                {QStringLiteral("FuntnTaskMachry"), QString::fromUtf8(title)}});
  };
  task("P1", "b");
  task("P2", "of nobody");
  task("P1", "a");
  const records::Study study = source_.ReadStudy(kShop);
  ASSERT_EQ(study.projects.size(), 1U);
  EXPECT_EQ(study.projects[0].stage, QStringLiteral("Design"));
  EXPECT_EQ(study.projects[0].prepared_by, QStringLiteral("Ann"));
  ASSERT_EQ(study.projects[0].tasks.size(), 2U);
  EXPECT_EQ(study.projects[0].tasks[0].title, QStringLiteral("b"));
  EXPECT_EQ(study.projects[0].tasks[1].title, QStringLiteral("a"));
  ASSERT_EQ(study.orphan_tasks.size(), 1U);
  EXPECT_EQ(study.orphan_tasks[0].project, QStringLiteral("P2"));
}

TEST_F(FileSourceTest, TwoRowsOfOneNumberAreOneProjectWithTheFirstHead) {
  installation_.GivenProject(1, QStringLiteral("P1"), kShop.name,
                             {{QStringLiteral("Project_phase"), QStringLiteral("Later")}});
  installation_.GivenTasks(1, QStringLiteral("P1"), 3);
  const auto lines = source_.ListProjects(kShop);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].stage, QStringLiteral("Design"));
  EXPECT_EQ(lines[0].tasks, 3);
  const records::Study study = source_.ReadStudy(kShop);
  ASSERT_EQ(study.projects.size(), 1U);
  EXPECT_EQ(study.projects[0].tasks.size(), 3U);
}

TEST_F(FileSourceTest, AProjectOfAnotherNameInTheStudyIsNotThisOrganisations) {
  installation_.GivenProject(1, QStringLiteral("P7"), QStringLiteral("Former owner"));
  EXPECT_EQ(source_.ListProjects(kShop).size(), 1U);
  EXPECT_FALSE(source_.ReadProject(kShop, QStringLiteral("P7")).has_value());
}

TEST_F(FileSourceTest, AnOrganisationThatWasNeverOpenedHasNothing) {
  EXPECT_TRUE(source_.ListProjects({QStringLiteral("New"), 0}).empty());
  EXPECT_TRUE(source_.ReadStudy({QStringLiteral("New"), 0}).projects.empty());
}

TEST_F(FileSourceTest, ReadingLeavesNothingBehind) {
  installation_.GivenTasks(1, QStringLiteral("P1"), 2);
  const QStringList before = Everything();
  (void)source_.ReadRegister();
  (void)source_.ReadStudy(kShop);
  (void)source_.ReadLists();
  source_.CheckWhole(kShop);
  EXPECT_EQ(Everything(), before);
}

TEST_F(FileSourceTest, AnUnfinishedChangeIsRolledBackInACopyOnly) {
  installation_.GivenTasks(1, QStringLiteral("P1"), 50);
  {
    OtherProcess writer(installation_.Study(1));
    writer.Run(
        QStringLiteral("PRAGMA cache_size=1; BEGIN IMMEDIATE; UPDATE Risk_records SET "
                       "HzrdDscptnTXT=hex(randomblob(9000));"));
    writer.Kill();
  }
  ASSERT_TRUE(QFile::exists(installation_.Study(1) + QStringLiteral("-journal")));
  const QStringList before = Everything();
  const auto project = source_.ReadProject(kShop, QStringLiteral("P1"));
  ASSERT_TRUE(project.has_value());
  ASSERT_EQ(project->tasks.size(), 50U);
  EXPECT_EQ(project->tasks[49].description, QStringLiteral("None."));
  EXPECT_EQ(Everything(), before);
}

TEST_F(FileSourceTest, AStudyInWriteAheadModeIsReadWithoutTouchingIt) {
  installation_.GivenTasks(1, QStringLiteral("P1"), 2);
  TestInstallation::Exec(installation_.Study(1), QStringLiteral("PRAGMA journal_mode=WAL"));
  const QStringList before = Everything();
  EXPECT_EQ(source_.ReadStudy(kShop).projects.at(0).tasks.size(), 2U);
  EXPECT_EQ(Everything(), before);
}

TEST_F(FileSourceTest, PicturesAreOrdinaryFilesOfTheFolder) {
  const QString folder = installation_.PictureFolder(1);
  QFile picture(folder + QStringLiteral("/a.jpg"));
  ASSERT_TRUE(picture.open(QIODevice::WriteOnly));
  picture.write("bytes");
  picture.close();
  ASSERT_EQ(::mkfifo(QFile::encodeName(folder + QStringLiteral("/pipe.jpg")).constData(), 0600), 0);
  ASSERT_TRUE(QFile::link(QStringLiteral("/etc/hostname"), folder + QStringLiteral("/link.jpg")));

  const records::FileFacts facts = source_.LookAtPicture(kShop, QStringLiteral("a.jpg"));
  EXPECT_TRUE(facts.exists);
  EXPECT_EQ(facts.bytes, 5);
  EXPECT_EQ(facts.sha256, QCryptographicHash::hash("bytes", QCryptographicHash::Sha256).toHex());
  EXPECT_EQ(source_.ReadPicture(kShop, QStringLiteral("a.jpg")), QByteArray("bytes"));
  for (const char* name :
       {"", ".", "..", "gone.jpg", "pipe.jpg", "link.jpg", "../../orgtn.mdb", "/etc/hostname"}) {
    const QString text = QString::fromUtf8(name);
    EXPECT_FALSE(source_.LookAtPicture(kShop, text).exists) << name;
    EXPECT_TRUE(source_.ReadPicture(kShop, text).isEmpty()) << name;
  }
  // Both forms in which the picture that stands for none is stored.
  EXPECT_TRUE(source_.HasPicture(kShop, QStringLiteral("NoPicSlted.jpg")));
  EXPECT_TRUE(source_.HasPicture(kShop, QStringLiteral("/elsewhere/NoPicSlted.jpg")));
}

TEST_F(FileSourceTest, AMissingStudySaysSo) {
  try {
    (void)source_.ReadStudy({QStringLiteral("Lost"), 9});
    FAIL() << "it was read";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.number(), failure::kFileNotFound);
    EXPECT_TRUE(failure.description().contains(QStringLiteral("risk_esmatn9.mdb")));
  }
}

}  // namespace
}  // namespace kestrix::testing
