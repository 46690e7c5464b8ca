#include <fcntl.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "backup/BackupWorker.h"
#include "platform/QtPlatform.h"
#include "store/DataControl.h"
#include "store/RecordSources.h"

// Measures a backup of a large installation against copying the same files with `cp -r` and
// `sync -f`, each a few times in turn, so that both meet the same disk. Both end with all of it on
// the disk. The first argument is the folder to work in, by default the temporary one; it needs
// about two gigabytes.

namespace kestrix {
namespace {

constexpr int kStudies = 200;
constexpr int kTasks = 1000;
constexpr int kPicturesOfEach = 2;
constexpr int kPictureBytes = 150'000;
constexpr int kRounds = 5;
constexpr double kMost = 1.2;

[[noreturn]] void GiveUp(const QString& why) {
  std::fprintf(stderr, "%s\n", why.toUtf8().constData());
  std::exit(2);
}

void Execute(const QString& file, const QString& sql) {
  sqlite3* handle = nullptr;
  const bool done =
      sqlite3_open(file.toUtf8().constData(), &handle) == SQLITE_OK &&
      sqlite3_exec(handle, sql.toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
  if (!done) GiveUp(QString::fromUtf8(sqlite3_errmsg(handle)));
  sqlite3_close(handle);
}

void Copy(const QString& source, const QString& target) {
  if (!QFile::copy(source, target)) GiveUp(QStringLiteral("Can't make ") + target);
}

/// Runs a program to its end, as a person would have it run.
void RunProgram(const QStringList& words) {
  std::vector<QByteArray> bytes;
  std::vector<char*> arguments;
  for (const QString& word : words) bytes.push_back(word.toLocal8Bit());
  for (QByteArray& word : bytes) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const pid_t child = ::fork();
  if (child == 0) {
    ::execvp(arguments.front(), arguments.data());
    ::_exit(127);
  }
  int status = 0;
  if (::waitpid(child, &status, 0) != child || status != 0)
    GiveUp(words.first() + QStringLiteral(" failed"));
}

/// An installation with studies and pictures of a busy organisation.
class LargeInstallation {
 public:
  explicit LargeInstallation(const QString& place)
      : folder_(place + QStringLiteral("/KestrixStudy")) {
    const QString pristine = QStringLiteral(KESTRIX_PRISTINE_FOLDER);
    const QString data = folder_ + QStringLiteral("/RskAsmtFld/");
    QDir().mkpath(data + QStringLiteral("Picfolder"));
    for (const char* name : {"orgtn.mdb", "RskAsmt_BkSup.mdb"}) {
      const QString file = QString::fromLatin1(name);
      Copy(pristine + QStringLiteral("/RskAsmtFld/") + file, data + file);
    }
    Copy(pristine + QStringLiteral("/risk_esmatn.mdb"), data + QStringLiteral("risk_esmatn1.mdb"));
    Execute(
        data + QStringLiteral("risk_esmatn1.mdb"),
        QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "
                       "INSERT INTO Risk_records(Project_Number,FuntnTaskMachry,HzrdDscptnTXT,"
                       "ReccdtnTxt) SELECT 'P-1','Task '||i, hex(randomblob(60)),"
                       "hex(randomblob(60)) FROM n")
            .arg(kTasks));
    Execute(
        data + QStringLiteral("orgtn.mdb"),
        QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "
                       "INSERT INTO orgtn SELECT 'Works '||i, i FROM n")
            .arg(kStudies));
    for (int number = 1; number <= kStudies; ++number) AddFiles(data, number);
    RunProgram({QStringLiteral("sync"), QStringLiteral("-f"), folder_});
  }

  [[nodiscard]] const QString& Folder() const { return folder_; }

 private:
  static void AddFiles(const QString& data, int number) {
    if (number > 1)
      Copy(data + QStringLiteral("risk_esmatn1.mdb"),
           data + QStringLiteral("risk_esmatn%1.mdb").arg(number));
    const QString pictures = data + QStringLiteral("Picfolder/Prj%1/").arg(number);
    QDir().mkpath(pictures);
    for (int i = 0; i < kPicturesOfEach; ++i) {
      QByteArray bytes(kPictureBytes, '\0');
      QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(bytes.data()),
                                            bytes.size() / 4);
      QFile file(pictures + QStringLiteral("%1.jpg").arg(i));
      if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        GiveUp(file.errorString());
    }
  }

  QString folder_;
};

double SecondsOf(const std::function<void()>& work) {
  QElapsedTimer time;
  time.start();
  work();
  return static_cast<double>(time.nsecsElapsed()) / 1e9;
}

void BackUp(const LargeInstallation& installation, const QString& into, QtPlatform& desktop) {
  const Installation paths(installation.Folder());
  SessionState session;
  session.BackupFolder = into;
  session.BackupDateName = QStringLiteral("15February2013");
  DataControl organisations(QStringLiteral("Orgndata"));
  organisations.SetDatabaseName(paths.Register());
  organisations.SetRecordSource(sources::kOrgtnTable);
  organisations.Refresh();
  session.OrgRowCount = static_cast<qint16>(organisations.Recordset().RecordCount());
  BackupWorker worker(session, paths, desktop.platform());
  const auto end = worker.Run(organisations.Recordset(), [](const BackupWorker::Progress&) {});
  if (end != BackupWorker::End::kAtEnd) GiveUp(QStringLiteral("The backup did not reach its end"));
}

double Median(std::vector<double> seconds) {
  std::sort(seconds.begin(), seconds.end());
  return seconds[seconds.size() / 2];
}

int Measure(const QString& where) {
  const QTemporaryDir place(where + QStringLiteral("/kestrix-bench-XXXXXX"));
  if (!place.isValid()) GiveUp(place.errorString());
  const LargeInstallation installation(place.path());
  QtPlatform desktop;
  std::vector<double> copies;
  std::vector<double> backups;
  std::vector<double> repeated;
  // Nothing is deleted in between: a disk that has just lost many files is slow to take new ones.
  for (int round = 0; round < kRounds; ++round) {
    const QString copy = place.filePath(QStringLiteral("copy%1").arg(round));
    const QString set = place.filePath(QStringLiteral("set%1").arg(round));
    QDir().mkpath(set);
    RunProgram({QStringLiteral("sync"), QStringLiteral("-f"), place.path()});
    copies.push_back(SecondsOf([&] {
      RunProgram({QStringLiteral("cp"), QStringLiteral("-r"),
                  installation.Folder() + QStringLiteral("/RskAsmtFld"), copy});
      RunProgram({QStringLiteral("sync"), QStringLiteral("-f"), copy});
    }));
    backups.push_back(SecondsOf([&] { BackUp(installation, set, desktop); }));
  }
  for (int round = 0; round < kRounds; ++round) {
    const QString set = place.filePath(QStringLiteral("set%1").arg(round));
    repeated.push_back(SecondsOf([&] { BackUp(installation, set, desktop); }));
  }
  const double ratio = Median(backups) / Median(copies);
  std::printf("%d studies of %d tasks, %d pictures; medians of %d rounds\n", kStudies, kTasks,
              kStudies * kPicturesOfEach, kRounds);
  std::printf("cp -r and sync -f          %7.3f s\n", Median(copies));
  std::printf("backup, durable at its end %7.3f s   %.2f times; at most %.1f\n", Median(backups),
              ratio, kMost);
  std::printf("backup over an older set   %7.3f s   %.2f times\n", Median(repeated),
              Median(repeated) / Median(copies));
  return ratio <= kMost ? 0 : 1;
}

}  // namespace
}  // namespace kestrix

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  return kestrix::Measure(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::tempPath());
}
