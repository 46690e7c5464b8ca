// Damaged and foreign files in place of each database, picture, document and backup set, read as
// the program reads them: it ends with a result or a Failure, never with the process, and opening a
// file doesn't change it.
#include <unistd.h>

#include <QBuffer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QTextTable>

#include "Chance.h"
#include "Child.h"
#include "Damage.h"
#include "Disk.h"
#include "UseDatabase.h"
#include "formkit/PictureView.h"
#include "platform/Failure.h"
#include "shell/DocumentFile.h"
#include "shell/RichText.h"
#include "store/Database.h"
#include "store/RecordSources.h"
#include "support/Files.h"
#include "support/TestInstallation.h"

namespace kestrix::holds {
namespace {

constexpr int kFiles = 520;
constexpr int kFilesOfOneChild = 52;
/// Nobody waits longer for one damaged file; sanitizers take their share.
constexpr unsigned kPatienceSeconds = 30;

class DamagedTest : public ::testing::Test {
 protected:
  /// Whether a damaged file, which lies at the path, could be used. What is wrong is thrown as an
  /// exception that is no Failure.
  using Use = std::function<bool(const QString& path, const QByteArray& bytes)>;

  /// Damages each of `originals` in turn and has it used in child processes, which tell what they
  /// are about to use, so that whoever ends one is known.
  void UseDamaged(
      const QList<QByteArray>& originals, const QString& name, const Use& use,
      const std::function<void(const std::function<void()>&)>& within =
          [](const std::function<void()>& work) { work(); }) {
    const int files = Rounds(kFiles);
    Chance seeds(SeedOf(files, "damaged files"));
    int used = 0;
    for (int first = 0; first < files; first += kFilesOfOneChild) {
      const quint32 seed = seeds.Seed();
      Child child([&](const Teller& tell) {
        Chance chance(seed);
        within([&] {
          for (int i = first; i < first + kFilesOfOneChild; ++i) {
            const Damaged damaged = Damage(originals[i % originals.size()], chance);
            tell(QStringLiteral("file %1 of seed %2: %3").arg(i).arg(seed).arg(damaged.how));
            const QTemporaryDir place(folder.filePath(QStringLiteral("XXXXXX")));
            const QString path = place.filePath(name);
            WriteFile(path, damaged.bytes);
            ::alarm(kPatienceSeconds);
            if (use(path, damaged.bytes)) tell(QStringLiteral("used"));
          }
        });
      });
      EXPECT_TRUE(child.WaitForEnd()) << child.HowItEnded().toStdString() << " behind\n"
                                      << child.Told()
                                             .mid(std::max<qsizetype>(0, child.Told().size() - 2))
                                             .join(u'\n')
                                             .toStdString();
      used += static_cast<int>(child.Told().count(QStringLiteral("used")));
    }
    std::printf("%d of them could still be read, the others were refused\n", used);
    EXPECT_GT(used, 0);
    EXPECT_LT(used, files);
  }

  void UseDamagedDatabase(const QString& original, const QString& name,
                          const QList<Select>& record_sources) {
    const QByteArray bytes = ReadFile(original);
    ASSERT_EQ(UseDatabase(original, record_sources, false), record_sources.size());
    UseDamaged({bytes}, name, [&](const QString& path, const QByteArray& damaged) {
      const int opened = UseDatabase(path, record_sources, false);
      if (ReadFile(path) != damaged) throw std::runtime_error("opening it changed the file");
      if (QFileInfo::exists(LockSign::PathFor(path))) throw std::runtime_error("the sign stays");
      if (QFileInfo::exists(path + "-journal")) throw std::runtime_error("a journal stays");
      static_cast<void>(Succeeds([&] { CopyDatabase(path, path + QStringLiteral(".copy")); }));
      if (ReadFile(path) != damaged) throw std::runtime_error("copying it changed the file");
      static_cast<void>(UseDatabase(path, record_sources, true));
      return opened > 0;
    });
  }

  QTemporaryDir folder{FolderInMemory()};
  Disk disk{folder.path()};
};

TEST_F(DamagedTest, RegisterIsReadOrRefused) {
  disk.Lay();
  UseDamagedDatabase(disk.paths().Register(), QStringLiteral("orgtn.mdb"),
                     {sources::kOrgtnTable, sources::kOrgtn, sources::kOrgtmp});
}

TEST_F(DamagedTest, ListsAreReadOrRefused) {
  disk.Lay();
  UseDamagedDatabase(
      disk.paths().SupportLists(), QStringLiteral("RskAsmt_BkSup.mdb"),
      {sources::kPrjstage, sources::kPhaseMachLife, sources::kPrimaryHazard, sources::kRecommTyp,
       sources::kActionBy, sources::HazardTypesOf(QStringLiteral("Mechanical hazards"))});
}

TEST_F(DamagedTest, StudyIsReadOrRefused) {
  disk.Lay();
  UseDamagedDatabase(disk.Study(), QStringLiteral("risk_esmatn1.mdb"),
                     {sources::ProjectSql(QStringLiteral("ACME")), sources::RiskSql(Disk::kProject),
                      sources::FileLinkSql(Disk::kProject)});
}

TEST_F(DamagedTest, JournalBesideAStudyIsRolledBackOrRefused) {
  disk.Lay();
  // A study as a killed process left it, with the journal of its half-done change: a change that
  // doesn't fit into memory is in the file before it is committed.
  auto writer = std::make_unique<OtherUser>(disk.Study());
  writer->Exec(
      "PRAGMA cache_size=1; BEGIN; UPDATE Risk_records SET HzrdDscptnTXT=hex(zeroblob(20000))");
  const QByteArray study = ReadFile(disk.Study());
  const QByteArray journal = ReadFile(disk.Study() + QStringLiteral("-journal"));
  writer.reset();
  ASSERT_TRUE(journal.startsWith("\xd9\xd5\x05\xf9"));
  UseDamaged({journal}, QStringLiteral("risk_esmatn1.mdb-journal"),
             [&](const QString& path, const QByteArray&) {
               const QString file = path.chopped(8);
               WriteFile(file, study);
               return UseDatabase(file, {sources::RiskSql(Disk::kProject)}, false) > 0 &&
                      UseDatabase(file, {sources::RiskSql(Disk::kProject)}, true) > 0 &&
                      !QFileInfo::exists(path);
             });
}

/// Runs within an application, which fonts and the readers of pictures need.
void WithinApplication(const std::function<void()>& work) {
  int argc = 1;
  char name[] = "holds";
  char* argv[] = {name, nullptr};
  const QGuiApplication application(argc, argv);
  // Those who read have much to say of what they refuse.
  QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false\nqt.gui.imageio*=false"));
  work();
}

QByteArray PictureAs(const char* format) {
  QImage picture(48, 32, QImage::Format_RGB32);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) picture.setPixel(x, y, qRgb(x * 5, y * 7, x * y));
  }
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  EXPECT_TRUE(picture.save(&buffer, format)) << format;
  return buffer.data();
}

TEST_F(DamagedTest, PictureIsShownOrRefused) {
  const QByteArray gif = QByteArray::fromHex(
      "47494638396104000400800000ffffff0000002c000000000400040000020584618b0905003b");
  const QByteArray svg =
      "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'>"
      "<rect width='20' height='10' fill='#204080'/></svg>";
  const QList<QByteArray> pictures = {PictureAs("PNG"),
                                      PictureAs("JPG"),
                                      PictureAs("BMP"),
                                      PictureAs("PPM"),
                                      PictureAs("XPM"),
                                      gif,
                                      svg};
  UseDamaged(
      pictures, QStringLiteral("press.jpg"),
      [](const QString& path, const QByteArray& damaged) {
        QImage picture;
        const bool shown = Succeeds([&] { picture = PictureView::Read(path); });
        if (shown && picture.isNull()) throw std::runtime_error("no picture and no Failure");
        if (ReadFile(path) != damaged) throw std::runtime_error("reading it changed the file");
        return shown;
      },
      WithinApplication);
}

QByteArray RichDocument() {
  QByteArray text =
      "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0//EN\" "
      "\"http://www.w3.org/TR/REC-html40/strict.dtd\">\n"
      "<html><head><meta name=\"qrichtext\" content=\"1\" /><style>p{color:#204080}</style>"
      "</head><body><h1>Press line</h1><p align=\"center\" style=\"margin-left:20px\">Guard "
      "<span style=\"font-size:18pt;color:#aa0000\">stop</span> &amp; \xE2\x9A\xA0</p>"
      "<table border=\"1\" width=\"80%\" cellpadding=\"3\">";
  for (int row = 0; row < 5; ++row) {
    text += "<tr><td colspan=\"1\" rowspan=\"1\">" + QByteArray::number(row) +
            "</td><td width=\"40%\">Hall 2</td></tr>";
  }
  return text +
         "</table><ul><li>one<ol start=\"3\"><li>two</li></ol></li></ul><p><img width=\"20\" " +
         "height=\"20\" src=\"data:image/png;base64," + PictureAs("PNG").toBase64() +
         "\" /></p><hr width=\"50%\" /></body></html>";
}

TEST_F(DamagedTest, DocumentIsShownOrRefused) {
  const QByteArray utf16 = QByteArray("\xFF\xFE") + QByteArray("P\0r\0e\0s\0s\0\n\0").repeated(40);
  const QByteArray plain = QByteArray(
                               "Press line 4, guard \xC3\xBC"
                               "berbr\xC3\xBC"
                               "ckt\r\n")
                               .repeated(30);
  UseDamaged(
      {RichDocument(), utf16, RichDocument(), plain}, QStringLiteral("note.rtf"),
      [](const QString& path, const QByteArray& damaged) {
        const bool read = Succeeds([&] {
          SelfContainedDocument document;
          if (!document.Take(ReadDocument(path))) return;
          document.setTextWidth(500);
          static_cast<void>(document.size());
          static_cast<void>(document.toHtml());
        });
        if (ReadFile(path) != damaged) throw std::runtime_error("reading it changed the file");
        return read && !damaged.isEmpty() && (damaged.front() == '<' || damaged.front() == 'P');
      },
      WithinApplication);
}

TEST_F(DamagedTest, BackupSetIsRestoredOrRefusedAndNothingElseTouched) {
  disk.Lay();
  const QStringList parts = {QStringLiteral("ktx_RskSmt.kbp"), QStringLiteral("ktx_RskSmt_A.kbp"),
                             QStringLiteral("ktx_RskSmt1.kbp"), QStringLiteral("ktx_RskSmt.kbp")};
  QList<QByteArray> originals;
  for (const QString& part : parts) originals += ReadFile(disk.Set() + u'/' + part);
  int turn = 0;
  UseDamaged(originals, QStringLiteral("damaged.kbp"),
             [&](const QString& path, const QByteArray& damaged) {
               const QTemporaryDir place(FolderInMemory());
               disk.CopyTo(place.path());
               const Disk other(place.path());
               const QString part = other.Set() + u'/' + parts[turn++ % parts.size()];
               QFile::remove(part);
               QFile::copy(path, part);
               const bool restored = Succeeds([&] { other.Restore(); });
               // The set is only read, whatever it is.
               if (ReadFile(part) != damaged) throw std::runtime_error("restoring changed the set");
               const QList<QPair<QString, QString>> targets = {
                   {other.paths().Register(), parts[0]},
                   {other.paths().SupportLists(), parts[1]},
                   {other.Study(), parts[2]}};
               for (const auto& [target, source] : targets) {
                 const QByteArray now = ReadFile(target);
                 const QString was = disk.folder() + target.mid(other.folder().size());
                 if (now != ReadFile(was) && now != ReadFile(other.Set() + u'/' + source)) {
                   throw std::runtime_error("a file is neither the old one nor that of the set");
                 }
               }
               return restored;
             });
}

}  // namespace
}  // namespace kestrix::holds
