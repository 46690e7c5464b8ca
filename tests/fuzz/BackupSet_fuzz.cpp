// Any bytes in place of a part of a backup set: a restore puts back what the set holds or leaves
// what was there, and never changes the set.
#include <QDir>
#include <QFile>

#include "Fuzz.h"
#include "holds/Disk.h"
#include "holds/UseDatabase.h"

namespace kestrix::fuzz {
namespace {

struct Part {
  QString in_set;
  QString target;
};

/// A disk with an installation and a set of it, laid out once.
const holds::Disk& Untouched() {
  static const holds::Disk* disk = [] {
    const auto* made = new holds::Disk(Folder() + QStringLiteral("/untouched"));
    Hold(QDir().mkpath(made->folder()), "a disk can be laid out", made->folder());
    made->Lay();
    return made;
  }();
  return *disk;
}

QList<Part> PartsOf(const holds::Disk& disk) {
  const BackupSet set(disk.Set());
  return {{set.Register(), disk.paths().Register()},
          {set.SupportLists(), disk.paths().SupportLists()},
          {set.Study(holds::Disk::kStudy), disk.Study()}};
}

}  // namespace
}  // namespace kestrix::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace kestrix;
  fuzz::WithinApplication();
  fuzz::Input input(data, size);
  const int choice = input.Upto(2);
  const holds::Disk& untouched = fuzz::Untouched();
  const holds::Disk disk(fuzz::Folder() + QStringLiteral("/disk"));
  QDir(disk.folder()).removeRecursively();
  fuzz::Hold(QDir().mkpath(disk.folder()), "a folder can be made", disk.folder());
  untouched.CopyTo(disk.folder());
  const QList<fuzz::Part> parts = fuzz::PartsOf(disk);
  const QByteArray bytes = input.Rest();
  const QString path = fuzz::LayFile(QStringLiteral("part.kbp"), bytes);
  QFile::remove(parts[choice].in_set);
  fuzz::Hold(QFile::rename(path, parts[choice].in_set), "a part takes its place in the set");

  const bool restored =
      holds::Succeeds([&] { disk.Restore(); }, [](const Failure& failure) { fuzz::Note(failure); });
  fuzz::Note(QStringLiteral("restored %1").arg(restored));
  fuzz::Hold(fuzz::BytesOf(parts[choice].in_set) == bytes, "a restore doesn't change the set");
  const QList<fuzz::Part> before = fuzz::PartsOf(untouched);
  for (qsizetype i = 0; i < parts.size(); ++i) {
    const QByteArray now = fuzz::BytesOf(parts[i].target);
    fuzz::Hold(now == fuzz::BytesOf(before[i].target) || now == fuzz::BytesOf(parts[i].in_set),
               "a file is the old one or that of the set", parts[i].target);
  }
  return 0;
}
