// Every kind of write on a disk that becomes full at each of its blocks, beyond the size that files
// may have, and in folders that can't be written: the write ends as a Failure says, and what was
// there before is whole.
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <csignal>

#include "Child.h"
#include "Disk.h"
#include "platform/Failure.h"
#include "platform/QtFileSystem.h"
#include "shell/DocumentFile.h"
#include "store/DataControl.h"
#include "store/LookupList.h"
#include "store/RecordSources.h"
#include "support/Files.h"
#include "support/RunAsNobody.h"

namespace kestrix::holds {
namespace {

constexpr int kBlock = 4096;
constexpr int kMostBlocks = 400;

struct Write {
  const char* name;
  void (*work)(const Disk& disk);
  /// One that takes many steps keeps those that it had done when it failed.
  bool stepwise = false;
};

void PrintTo(const Write& write, std::ostream* out) {
  *out << write.name;
}

template <class Change>
void ChangeRows(const QString& file, const Select& select, Change change) {
  DataControl source(QStringLiteral("source"));
  source.SetDatabaseName(file);
  source.SetRecordSource(select);
  source.Refresh();
  change(source.Recordset());
  source.Close();
}

constexpr int kLongText = 60'000;

const Write kWrites[] = {
    {"AddedTask",
     [](const Disk& disk) {
       ChangeRows(disk.Study(), sources::RiskSql(Disk::kProject), [](Recordset& tasks) {
         tasks.AddNew();
         tasks.Set(QStringLiteral("Project_Number"), Disk::kProject);
         tasks.Set(QStringLiteral("HzrdDscptnTXT"), QString(kLongText, u'x'));
         tasks.Update();
       });
     }},
    {"SavedTask",
     [](const Disk& disk) {
       ChangeRows(disk.Study(), sources::RiskSql(Disk::kProject), [](Recordset& tasks) {
         tasks.MoveLast();
         tasks.Set(QStringLiteral("HzrdDscptnTXT"), QString(kLongText, u'y'));
         tasks.Set(QStringLiteral("HazrdLoctn"), QStringLiteral("Hall 3"));
         tasks.Update();
       });
     }},
    {"DeletedTask",
     [](const Disk& disk) {
       ChangeRows(disk.Study(), sources::RiskSql(Disk::kProject),
                  [](Recordset& tasks) { tasks.Delete(); });
     }},
    {"AddedListEntry",
     [](const Disk& disk) {
       ChangeRows(disk.paths().SupportLists(), sources::kActionBy, [](Recordset& rows) {
         rows.AddNew();
         rows.Set(0, QString(200, u'z'));
         rows.Update();
       });
     }},
    {"DeletedListEntry",
     [](const Disk& disk) {
       ChangeRows(disk.paths().SupportLists(), sources::kActionBy, [](Recordset& rows) {
         lookup::DeleteFirst(rows, QStringLiteral("Safety officer"));
       });
     }},
    {"AddedOrganisation",
     [](const Disk& disk) {
       ChangeRows(disk.paths().Register(), sources::kOrgtn, [](Recordset& rows) {
         rows.AddNew();
         rows.Set(0, QStringLiteral("Beltworks"));
         rows.Update();
       });
     }},
    {"NewStudy",
     [](const Disk& disk) {
       QtFileSystem().CopyFile(disk.paths().StudyTemplate(), disk.paths().Study(9));
     }},
    {"StoredPicture",
     [](const Disk& disk) {
       QtFileSystem().CopyFile(disk.Picture(), disk.paths().PictureFolder(Disk::kStudy) +
                                                   QStringLiteral("/before.png"));
     }},
    {"SavedDocument",
     [](const Disk& disk) { WriteDocument(disk.Document(), QString(kLongText, u'w')); }},
    {"Backup", [](const Disk& disk) { disk.BackUp(); }, true},
    {"Restore", [](const Disk& disk) { disk.Restore(); }, true},
};

/// How a write ended and what the disk then held.
struct Outcome {
  int number = 0;  ///< of the Failure; 0 when it ended well
  Disk::State state;
};

int NumberOf(const Write& write, const Disk& disk) {
  try {
    write.work(disk);
    return 0;
  } catch (const Failure& failure) {
    return failure.number();
  }
}

void TellState(const Disk& disk, const Teller& tell) {
  const Disk::State state = disk.Look();
  for (auto at = state.begin(); at != state.end(); ++at) {
    tell(at.key() + u'\t' + at.value());
  }
}

Outcome OutcomeOf(const QStringList& told) {
  Outcome outcome{told.value(0).toInt(), {}};
  for (const QString& line : told.mid(1)) {
    const QStringList parts = line.split(u'\t');
    outcome.state.insert(parts.value(0), parts.value(1));
  }
  return outcome;
}

/// Puts a small disk of this process's own in the place of a folder.
bool MountSmallDisk(const QString& folder) {
  return ::unshare(CLONE_NEWNS) == 0 &&
         ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         ::mount("none", QFile::encodeName(folder).constData(), "tmpfs", 0, "size=4m") == 0;
}

/// Takes all room of the disk but that many blocks; false when the disk has no more than these.
bool FillUpTo(int blocks, const QString& folder, const QString& filler) {
  struct statvfs disk {};
  if (::statvfs(QFile::encodeName(folder).constData(), &disk) != 0) return false;
  const auto free = static_cast<int>(disk.f_bavail * disk.f_bsize / kBlock);
  if (free <= blocks) return false;
  WriteFile(filler, QByteArray((free - blocks) * kBlock, 'f'));
  return true;
}

class FullDiskTest : public ::testing::TestWithParam<Write> {
 protected:
  void SetUp() override {
    ready.Lay();
    before = ready.Look();
    const QTemporaryDir place(FolderInMemory());
    ready.CopyTo(place.path());
    const Disk disk(place.path());
    ASSERT_NO_THROW(GetParam().work(disk));
    after = disk.Look();
    ASSERT_NE(before, after) << "this write changes nothing";
  }

  /// Each file is what it was, or, where a write of many steps got so far, what it became. Nothing
  /// is left over.
  void ExpectOldOrNew(const Outcome& outcome) {
    if (outcome.number == 0) {
      EXPECT_EQ(outcome.state, after);
      return;
    }
    if (!GetParam().stepwise) {
      EXPECT_EQ(outcome.state, before);
      return;
    }
    for (auto at = outcome.state.begin(); at != outcome.state.end(); ++at) {
      EXPECT_TRUE(at.value() == before.value(at.key()) || at.value() == after.value(at.key()))
          << at.key().toStdString() << ": " << at.value().toStdString();
    }
    // A restore takes the pictures away before it brings others; nothing else is ever missing.
    for (const QString& path : before.keys()) {
      if (path.contains(QStringLiteral("Picfolder"))) continue;
      EXPECT_TRUE(outcome.state.contains(path)) << path.toStdString();
    }
  }

  QTemporaryDir folder{FolderInMemory()};
  Disk ready{folder.path()};
  Disk::State before;
  Disk::State after;
};

std::string NameOf(const ::testing::TestParamInfo<Write>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Each, FullDiskTest, ::testing::ValuesIn(kWrites), NameOf);

TEST_P(FullDiskTest, WriteOnADiskThatBecomesFullFailsAndLeavesTheOldDataWhole) {
  const QString kNoDisk = QStringLiteral("no disk");
  int failed = 0;
  bool done = false;
  for (int blocks = 0; blocks < kMostBlocks && !done; ++blocks) {
    SCOPED_TRACE(::testing::Message() << blocks << " blocks are free");
    const QTemporaryDir place(FolderInMemory());
    Child child([&](const Teller& tell) {
      if (!MountSmallDisk(place.path())) return tell(kNoDisk);
      ready.CopyTo(place.path());
      const QString filler = place.filePath(QStringLiteral("filler"));
      if (!FillUpTo(blocks, place.path(), filler)) throw Failure(1, QStringLiteral("too small"));
      const Disk disk(place.path());
      tell(QString::number(NumberOf(GetParam(), disk)));
      QFile::remove(filler);
      TellState(disk, tell);
    });
    ASSERT_TRUE(child.WaitForEnd()) << child.Told().join(u'\n').toStdString();
    if (child.Told() == QStringList{kNoDisk}) GTEST_SKIP() << "no small disk can be made here";
    const Outcome outcome = OutcomeOf(child.Told());
    done = outcome.number == 0;
    failed += done ? 0 : 1;
    EXPECT_TRUE(done || outcome.number == failure::kDiskFull) << outcome.number;
    ExpectOldOrNew(outcome);
  }
  EXPECT_TRUE(done);
  EXPECT_GT(failed, 0);
  std::printf("failed with 0 to %d free blocks\n", failed - 1);
}

TEST_P(FullDiskTest, WriteBeyondTheSizeThatFilesMayHaveFailsAndLeavesTheOldDataWhole) {
  const QSet<int> stated = {failure::kDiskFull, failure::kDeviceError};
  int failed = 0;
  bool done = false;
  for (int blocks = 0; blocks < kMostBlocks && !done; ++blocks) {
    SCOPED_TRACE(::testing::Message() << blocks << " blocks are allowed");
    const QTemporaryDir place(FolderInMemory());
    ready.CopyTo(place.path());
    Child child([&](const Teller& tell) {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit limit{static_cast<rlim_t>(blocks) * kBlock, RLIM_INFINITY};
      if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) throw Failure(1, QStringLiteral("no limit"));
      const Disk disk(place.path());
      const int number = NumberOf(GetParam(), disk);
      const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
      ::setrlimit(RLIMIT_FSIZE, &none);
      tell(QString::number(number));
      TellState(disk, tell);
    });
    ASSERT_TRUE(child.WaitForEnd()) << child.Told().join(u'\n').toStdString();
    const Outcome outcome = OutcomeOf(child.Told());
    done = outcome.number == 0;
    failed += done ? 0 : 1;
    EXPECT_TRUE(done || stated.contains(outcome.number)) << outcome.number;
    ExpectOldOrNew(outcome);
  }
  EXPECT_TRUE(done);
  EXPECT_GT(failed, 0);
}

/// Takes the right to write from every folder, and with `files` from every file too.
void Protect(const QString& folder, bool files) {
  QDirIterator all(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                   QDirIterator::Subdirectories);
  while (all.hasNext()) {
    const QString path = all.next();
    const bool is_folder = all.fileInfo().isDir();
    if (is_folder || files) ::chmod(QFile::encodeName(path).constData(), is_folder ? 0555 : 0444);
  }
  ::chmod(QFile::encodeName(folder).constData(), 0555);
}

TEST_P(FullDiskTest, WriteInAFolderThatCannotBeWrittenFailsAndLeavesTheOldDataWhole) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  const QSet<int> stated = {failure::kReadOnly, failure::kPermissionDenied};
  for (const bool files : {false, true}) {
    SCOPED_TRACE(files ? "files too" : "folders only");
    const QTemporaryDir place(FolderInMemory());
    ready.CopyTo(place.path());
    Protect(place.path(), files);
    GiveToNobody(place.path());
    const Disk disk(place.path());
    const auto told = RunAsNobody([&] { return QString::number(NumberOf(GetParam(), disk)); });
    ASSERT_TRUE(told);
    EXPECT_TRUE(stated.contains(told->toInt())) << told->toStdString();
    ExpectOldOrNew({told->toInt(), disk.Look()});
  }
}

}  // namespace
}  // namespace kestrix::holds
