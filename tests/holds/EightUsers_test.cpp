// Eight processes at work on one study and on one register: no row is lost, none is there twice,
// and nobody's text is overwritten.
#include <QApplication>
#include <QFileInfo>
#include <QPointer>
#include <QSet>
#include <map>
#include <vector>

#include "Chance.h"
#include "Child.h"
#include "formkit/ActiveForms.h"
#include "formkit/FocusEvents.h"
#include "formkit/Form.h"
#include "organisations/Orgfrm.h"
#include "platform/Failure.h"
#include "shell/CommonDialog.h"
#include "store/DataControl.h"
#include "store/Database.h"
#include "store/Installation.h"
#include "store/RecordSources.h"
#include "support/FakePlatform.h"
#include "support/FormHands.h"
#include "support/FormTest.h"
#include "support/TestInstallation.h"

namespace kestrix::holds {
namespace {

constexpr int kUsers = 8;
constexpr int kChanges = 25;        // of each user's own tasks
constexpr int kSharedTexts = 10;    // that each user adds to one field
constexpr int kSharedDeletes = 12;  // tasks that all users try to delete
constexpr int kOrganisations = 6;   // of each user
constexpr int kStudy = 1;
const QString kProject = QStringLiteral("P-1");
const QString kTitle = QStringLiteral("FuntnTaskMachry");
const QString kText = QStringLiteral("HzrdDscptnTXT");

/// The fields of one task that the users write, each its own.
const QStringList kOwnField = {QStringLiteral("HazrdLoctn"),     QStringLiteral("PhaseMachn"),
                               QStringLiteral("Primary_Hazard"), QStringLiteral("Hazard_type"),
                               QStringLiteral("ReccdtnTxt"),     QStringLiteral("ReccdtnTypTxt"),
                               QStringLiteral("preparedBytxt"),  QStringLiteral("ActnByCbo")};

QString NameOf(int user) {
  return QStringLiteral("user%1").arg(user);
}

/// Goes past what others have deleted meanwhile.
void StandOn(Recordset& tasks, const QString& title) {
  const Recordset::Walk walk(tasks);
  for (tasks.MoveFirst(); tasks.Text(kTitle) != title; tasks.MoveNext()) continue;
}

/// Adds to the text of the shared task until it was taken: who was too late reads it again.
int AddToSharedText(Recordset& tasks, const QString& word) {
  for (int refused = 0;; ++refused) {
    try {
      tasks.Set(kText, QString(tasks.Text(kText) + word + u' '));
      tasks.Update();
      return refused;
    } catch (const Failure& failure) {
      if (failure.number() != failure::kRowChanged) throw;
    }
  }
}

/// True when this user was the one who deleted it.
bool DeleteShared(Recordset& tasks, const QString& title) {
  const Recordset::Walk walk(tasks);
  for (tasks.MoveFirst(); !tasks.Eof(); tasks.MoveNext()) {
    if (tasks.Text(kTitle) != title) continue;
    try {
      tasks.Delete();
      return true;
    } catch (const Failure& failure) {
      if (failure.number() != failure::kRowDeleted) throw;
      return false;
    }
  }
  return false;
}

/// Adds, edits and deletes tasks of the user's own, and tells those that are left.
void WorkOnOwnTasks(Recordset& tasks, int user, Chance& chance, const Teller& tell) {
  std::map<QString, QString> mine;
  for (int change = 0; change < kChanges; ++change) {
    const int kind = mine.size() < 3 ? 1 : chance.Between(1, 3);
    const QString text = QStringLiteral("%1 %2").arg(NameOf(user)).arg(change);
    if (kind == 1) {
      const QString title = QStringLiteral("%1-%2").arg(NameOf(user)).arg(change);
      tasks.AddNew();
      tasks.Set(QStringLiteral("Project_Number"), kProject);
      tasks.Set(kTitle, title);
      tasks.Set(kText, text);
      tasks.Update();
      mine[title] = text;
      continue;
    }
    const QString title = std::next(mine.begin(), chance.Between(0, int(mine.size()) - 1))->first;
    StandOn(tasks, title);
    if (kind == 2) {
      tasks.Set(kText, text);
      tasks.Update();
      mine[title] = text;
    } else {
      tasks.Delete();
      mine.erase(title);
    }
    if (chance.OneIn(3)) tasks.Requery();
  }
  for (const auto& [title, text] : mine) tell(QStringLiteral("has\t%1\t%2").arg(title, text));
}

void WorkAsUser(const QString& study, int user, quint32 seed, const StartLine& start,
                const Teller& tell) {
  DataControl source(QStringLiteral("dtsorce2"));
  source.SetConnectionString(DataControl::ConnectionStringFor(study));
  source.SetRecordSource(sources::RiskSql(kProject));
  start.Wait();
  source.Refresh();
  Recordset& tasks = source.Recordset();
  Chance chance(seed);

  int refused = 0;
  for (int i = 0; i < kSharedTexts; ++i) {
    StandOn(tasks, QStringLiteral("shared"));
    refused += AddToSharedText(tasks, QStringLiteral("%1.%2").arg(user).arg(i));
    tasks.Set(kOwnField[user], NameOf(user) + u' ' + QString::number(i));
    tasks.Update();
  }
  tell(QStringLiteral("refused\t%1").arg(refused));
  WorkOnOwnTasks(tasks, user, chance, tell);
  tasks.Requery();
  for (int i = 0; i < kSharedDeletes; ++i) {
    const QString title = QStringLiteral("away %1").arg(i);
    if (DeleteShared(tasks, title)) tell(QStringLiteral("deleted\t") + title);
  }
}

class EightUsersTest : public ::testing::Test {
 protected:
  /// Lets all users start as one and waits for them.
  static QStringList RunAll(const std::function<void(int, const StartLine&, const Teller&)>& work) {
    StartLine start;
    std::vector<Child> users;
    for (int user = 0; user < kUsers; ++user) {
      users.emplace_back([&, user](const Teller& tell) { work(user, start, tell); });
    }
    start.Lift();
    QStringList told;
    for (Child& user : users) {
      EXPECT_TRUE(user.WaitForEnd())
          << user.HowItEnded().toStdString() << ": " << user.Told().join(u'\n').toStdString();
      told += user.Told();
    }
    return told;
  }

  TestInstallation installation;
};

TEST_F(EightUsersTest, EveryTaskOfOneStudyIsAccountedFor) {
  installation.GivenStudy(kStudy);
  const QString study = installation.Study(kStudy);
  installation.GivenTask(kStudy, {{"Project_Number", kProject}, {kTitle, "shared"}, {kText, ""}});
  for (int i = 0; i < kSharedDeletes; ++i) {
    installation.GivenTask(
        kStudy, {{"Project_Number", kProject}, {kTitle, QStringLiteral("away %1").arg(i)}});
  }
  Chance chance(SeedOf(kUsers, "users on one study"));
  const QStringList told =
      RunAll([&, seed = chance.Seed()](int user, const StartLine& start, const Teller& tell) {
        WorkAsUser(study, user, seed + static_cast<quint32>(user), start, tell);
      });

  QStringList expected = {QStringLiteral("shared")};
  QStringList deleted;
  std::map<QString, QString> texts;
  int refused = 0;
  for (const QString& line : told) {
    const QStringList parts = line.split(u'\t');
    if (parts[0] == QStringLiteral("has")) {
      expected += parts[1];
      texts[parts[1]] = parts[2];
    }
    if (parts[0] == QStringLiteral("deleted")) deleted += parts[1];
    if (parts[0] == QStringLiteral("refused")) refused += parts[1].toInt();
  }
  std::printf("%d writes came too late to a field and were made again\n", refused);

  // Each shared task was deleted by exactly one user.
  EXPECT_EQ(deleted.size(), kSharedDeletes);
  EXPECT_EQ(QSet<QString>(deleted.begin(), deleted.end()).size(), kSharedDeletes);
  // What each user has left is there, once, with the user's last text; nothing else is.
  QStringList titles;
  for (const QStringList& row :
       TestInstallation::Sql(study, "SELECT FuntnTaskMachry, HzrdDscptnTXT FROM Risk_records")) {
    titles += row[0];
    if (texts.contains(row[0])) {
      EXPECT_EQ(row[1], texts[row[0]]);
    }
  }
  titles.sort();
  expected.sort();
  EXPECT_EQ(titles, expected);
  // No word of the shared text was overwritten, and everybody's own field stands.
  QStringList words = TestInstallation::Column(study,
                                               "SELECT trim(HzrdDscptnTXT) FROM Risk_records WHERE "
                                               "FuntnTaskMachry='shared'")
                          .value(0)
                          .split(u' ');
  EXPECT_EQ(words.size(), kUsers * kSharedTexts);
  EXPECT_EQ(words.removeDuplicates(), 0);
  for (int user = 0; user < kUsers; ++user) {
    EXPECT_EQ(TestInstallation::Column(study, QStringLiteral("SELECT %1 FROM Risk_records WHERE "
                                                             "FuntnTaskMachry='shared'")
                                                  .arg(kOwnField[user])),
              QStringList{QStringLiteral("%1 %2").arg(NameOf(user)).arg(kSharedTexts - 1)});
  }
  EXPECT_EQ(TestInstallation::Column(study, "PRAGMA integrity_check"), QStringList{"ok"});
  EXPECT_FALSE(QFileInfo::exists(installation.StudySign(kStudy)));
}

/// The person in front of one copy of the program, with its form of the organisations.
class Person : public FormHands {
 public:
  explicit Person(const QString& folder) : Person(folder, std::make_unique<Watch>()) {}

  /// Types the name of a new organisation and leaves the box; the study it was given.
  int Add(const QString& name) {
    const QPointer<Orgfrm> form = new Orgfrm(context_);
    form->LoadForm();
    form->ShowForm();
    Settle();
    LookAt(*form);
    Click(QStringLiteral("addorncmd"));
    Type(name);
    PressTab();
    const bool gone = !form || form->IsUnloading();
    delete form.data();
    Settle();
    if (!gone) throw Failure(failure::kInvalidCall, QStringLiteral("%1 wasn't opened").arg(name));
    return session_.ActiveStudyNo;
  }
  [[nodiscard]] QList<Message> Shown() const { return desk_.messages.Shown(); }

 private:
  struct Watch {
    FocusEvents focus;
    ActiveForms forms{focus};
  };
  Person(const QString& folder, std::unique_ptr<Watch> watch)
      : FormHands(watch->forms), watch_(std::move(watch)), paths_(folder) {}

  std::unique_ptr<Watch> watch_;
  FakePlatform desk_;
  FormKit kit_{desk_.platform(), watch_->focus, watch_->forms};
  SessionState session_;
  Installation paths_;
  FakeFrame frame_;
  CommonDialog dialog_{desk_.platform()};
  FakeProject project_;
  FakeTask task_;
  Context context_{kit_, session_, paths_, frame_, dialog_, project_, task_};
};

TEST_F(EightUsersTest, EveryOrganisationOfOneRegisterIsThereOnceWithAStudyOfItsNumber) {
  const QStringList told = RunAll([&](int user, const StartLine& start, const Teller& tell) {
    int argc = 1;
    char name[] = "user";
    char* argv[] = {name, nullptr};
    const QApplication application(argc, argv);
    Person person(installation.Folder());
    start.Wait();
    for (int i = 0; i < kOrganisations; ++i) {
      const QString organisation = QStringLiteral("%1 works %2").arg(NameOf(user)).arg(i);
      const int number = person.Add(organisation);
      tell(QStringLiteral("%1\t%2").arg(organisation).arg(number));
    }
    for (const Message& message : person.Shown()) tell(QStringLiteral("box\t") + message.text);
  });
  // The number that two users found free at the same moment may be both's. Nothing else may happen.
  std::map<QString, QString> numbers;
  for (const QStringList& row : TestInstallation::RowsOf(installation.Register(), "orgtn")) {
    EXPECT_TRUE(numbers.emplace(row[0], row[1]).second) << row[0].toStdString() << " is double";
  }
  EXPECT_EQ(numbers.size(), static_cast<size_t>(kUsers * kOrganisations));
  QSet<QString> distinct;
  for (const QString& line : told) {
    const QStringList parts = line.split(u'\t');
    ASSERT_NE(parts[0], "box") << line.toStdString();
    ASSERT_TRUE(numbers.contains(parts[0])) << line.toStdString();
    EXPECT_EQ(numbers[parts[0]], parts[1]) << line.toStdString();
    EXPECT_GT(parts[1].toInt(), 0);
    EXPECT_TRUE(QFileInfo::exists(installation.Study(parts[1].toInt()))) << line.toStdString();
    distinct.insert(parts[1]);
  }
  EXPECT_EQ(told.size(), kUsers * kOrganisations);
  std::printf("%d organisations share %d numbers\n", kUsers * kOrganisations,
              static_cast<int>(distinct.size()));
  EXPECT_EQ(TestInstallation::Column(installation.Register(), "PRAGMA integrity_check"),
            QStringList{"ok"});
  EXPECT_TRUE(distinct.contains(
      TestInstallation::Column(installation.Register(), "SELECT OrgNameTMP FROM Orgtmp").value(0)));
}

}  // namespace
}  // namespace kestrix::holds
