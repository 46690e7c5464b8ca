#include "Disk.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QImage>

#include "Quiet.h"
#include "platform/Failure.h"
#include "platform/FileCopy.h"
#include "store/DataControl.h"
#include "store/RecordSources.h"
#include "support/Files.h"
#include "support/TestInstallation.h"

namespace kestrix::holds {
namespace {

constexpr int kTasks = 12;

void RunAtOnce(const std::function<void()>& work) {
  work();
}

void MakePicture(const QString& path, int side, QRgb colour) {
  QImage picture(side, side, QImage::Format_RGB32);
  picture.fill(colour);
  for (int i = 0; i < side; ++i) picture.setPixel(i, (i * 7) % side, colour ^ 0xFFFFFF);
  EXPECT_TRUE(picture.save(path, "PNG"));
}

void Execute(const QString& file, const QString& sql) {
  TestInstallation::Exec(file, sql);
}

bool IsDatabase(const QString& path) {
  return path.endsWith(QStringLiteral(".mdb")) || path.endsWith(QStringLiteral(".kbp"));
}

}  // namespace

Disk::Disk(const QString& folder) : folder_(folder), paths_(folder + QStringLiteral("/Program")) {}

QString Disk::Outside(const QString& name) const {
  return folder_ + QStringLiteral("/outside/") + name;
}

void Disk::Lay() const {
  CopyFolderDurably(QStringLiteral(KESTRIX_PRISTINE_FOLDER), paths_.ApplicationFolder());
  EXPECT_TRUE(QDir().mkpath(paths_.PictureFolder(kStudy)));
  EXPECT_TRUE(QDir().mkpath(Set()));
  EXPECT_TRUE(QFile::copy(paths_.StudyTemplate(), Study()));
  Execute(paths_.Register(), QStringLiteral("INSERT INTO orgtn VALUES('ACME', 1)"));
  Execute(Study(), QStringLiteral("INSERT INTO Project_details(Factory_Name, Project_Number) "
                                  "VALUES('ACME', 'P-1')"));
  Execute(Study(), QStringLiteral("WITH RECURSIVE counted(n) AS (SELECT 1 UNION ALL SELECT n+1 "
                                  "FROM counted LIMIT %1) INSERT INTO Risk_records(Project_Number, "
                                  "FuntnTaskMachry, HzrdDscptnTXT) SELECT 'P-1', 'Task '||n, "
                                  "hex(zeroblob(n*50)) FROM counted")
                       .arg(kTasks));
  Execute(Study(), QStringLiteral("INSERT INTO fileLink(Project_Number, FilePath) "
                                  "VALUES('P-1', '/drawings/press.pdf')"));
  MakePicture(Picture(), 120, 0xFF205080);
  MakePicture(paths_.PictureFolder(kStudy) + QStringLiteral("/before.png"), 60, 0xFF802010);
  WriteFile(Document(), "<html><body><p><b>Press</b> line</p></body></html>");
  EXPECT_EQ(BackUp(), BackupWorker::End::kAtEnd);
  // Since then there was a change to everything that the set holds.
  Execute(paths_.Register(), QStringLiteral("UPDATE Orgtmp SET OrgNameTMP=1"));
  Execute(paths_.SupportLists(), QStringLiteral("INSERT INTO ActionBy VALUES('Safety officer')"));
  Execute(Study(), QStringLiteral("UPDATE Risk_records SET HazrdLoctn='Hall 2'"));
  MakePicture(paths_.PictureFolder(kStudy) + QStringLiteral("/before.png"), 64, 0xFF108020);
  MakePicture(paths_.PictureFolder(kStudy) + QStringLiteral("/after.png"), 64, 0xFF108020);
}

void Disk::CopyTo(const QString& folder) const {
  CopyFolderDurably(folder_, folder);
}

BackupWorker::End Disk::BackUp(const BackupWorker::StepDone& step_done) const {
  return Run(0, step_done);
}

BackupWorker::End Disk::Restore(const BackupWorker::StepDone& step_done) const {
  return Run(1, step_done);
}

BackupWorker::End Disk::Run(int mode, const BackupWorker::StepDone& step_done) const {
  QuietDesk desk;
  SessionState session;
  session.BackupMode = static_cast<qint16>(mode);
  session.BackupFolder = Set();
  session.BackupDateName = QStringLiteral(".");
  DataControl source(QStringLiteral("OrgData"));
  source.SetDatabaseName(mode == 0 ? paths_.Register() : BackupSet(Set()).Register());
  source.SetRecordSource(sources::kOrgtn);
  source.Refresh();
  session.OrgRowCount = static_cast<qint16>(source.Recordset().RecordCount());
  BackupWorker worker(session, paths_, desk.platform(), RunAtOnce);
  const BackupWorker::End end = worker.Run(source.Recordset(), step_done);
  if (!desk.messages.shown.isEmpty() && desk.messages.shown.last().buttons.size() == 1) {
    throw Failure(failure::kPermissionDenied, desk.messages.shown.last().text);
  }
  return end;
}

Disk::State Disk::Look() const {
  State state;
  QDirIterator files(folder_, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString path = files.next();
    if (path.endsWith(QStringLiteral(".ldb")) || path.endsWith(QStringLiteral("-journal")))
      continue;
    const QByteArray content = IsDatabase(path) ? ContentOf(path) : ReadFile(path);
    const bool whole = !IsDatabase(path) || content.startsWith("ok");
    const QByteArray mark =
        QCryptographicHash::hash(content, QCryptographicHash::Sha1).toHex().left(12);
    state.insert(path.mid(folder_.size() + 1),
                 QString::fromUtf8(whole ? mark : "damaged " + content.left(60)));
  }
  return state;
}

QString FolderInMemory() {
  const QString memory = QStringLiteral("/dev/shm");
  const bool usable = QFileInfo(memory).isDir() && QFileInfo(memory).isWritable();
  return (usable ? memory : QDir::tempPath()) + QStringLiteral("/kestrix-holds-XXXXXX");
}

QByteArray ContentOf(const QString& database) {
  const OtherUser user(database);
  QStringList lines;
  const auto add = [&](const QString& query) {
    for (const QStringList& row : user.Rows(query)) lines += row.join(u'\t');
  };
  add("PRAGMA integrity_check");
  for (const QStringList& table :
       user.Rows("SELECT name FROM sqlite_schema WHERE type='table' ORDER BY name"))
    add("SELECT * FROM \"" + table[0] + "\" ORDER BY _rowid_");
  return lines.join(u'\n').toUtf8();
}

}  // namespace kestrix::holds
