#include "LargeInstallation.h"

#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace kestrix::bench {
namespace {

constexpr int kPictureBytes = 150'000;

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

/// A picture that no disk can make smaller.
void MakePicture(const QString& path) {
  QByteArray bytes(kPictureBytes, '\0');
  QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
    GiveUp(file.errorString());
}

}  // namespace

void GiveUp(const QString& why) {
  std::fprintf(stderr, "%s\n", why.toUtf8().constData());
  std::exit(2);
}

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

LargeInstallation::LargeInstallation(const QString& folder) : folder_(folder) {
  const QString pristine = QStringLiteral(KESTRIX_PRISTINE_FOLDER);
  QDir().mkpath(Data() + QStringLiteral("/Picfolder"));
  for (const char* name : {"orgtn.mdb", "RskAsmt_BkSup.mdb"}) {
    const QString file = u'/' + QString::fromLatin1(name);
    Copy(pristine + QStringLiteral("/RskAsmtFld") + file, Data() + file);
  }
  const QString first = Data() + QStringLiteral("/risk_esmatn1.mdb");
  Copy(pristine + QStringLiteral("/risk_esmatn.mdb"), first);
  Execute(first,
          QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "
                         "INSERT INTO Risk_records(Project_Number,FuntnTaskMachry,HzrdDscptnTXT,"
                         "ReccdtnTxt) SELECT 'P-1','Task '||i, hex(randomblob(60)),"
                         "hex(randomblob(60)) FROM n")
              .arg(kTasks));
  for (int number = 1; number <= kStudies; ++number) AddFiles(number);
  List(kStudies);
  RunProgram({QStringLiteral("sync"), QStringLiteral("-f"), folder_});
}

QString LargeInstallation::Data() const {
  return folder_ + QStringLiteral("/RskAsmtFld");
}

void LargeInstallation::List(int studies) const {
  Execute(Data() + QStringLiteral("/orgtn.mdb"),
          QStringLiteral("DELETE FROM orgtn; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 "
                         "FROM n WHERE i<%1) INSERT INTO orgtn SELECT 'Works '||i, i FROM n")
              .arg(studies));
}

void LargeInstallation::AddFiles(int number) const {
  if (number > 1)
    Copy(Data() + QStringLiteral("/risk_esmatn1.mdb"),
         Data() + QStringLiteral("/risk_esmatn%1.mdb").arg(number));
  const QString pictures = Data() + QStringLiteral("/Picfolder/Prj%1/").arg(number);
  QDir().mkpath(pictures);
  for (int i = 0; i < kPicturesOfEach; ++i) MakePicture(pictures + QStringLiteral("%1.jpg").arg(i));
}

}  // namespace kestrix::bench
