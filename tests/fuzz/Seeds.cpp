// Makes the seeds of all targets below the folder that it is told: small inputs of every kind that
// the program reads, made from its own databases, and from texts and pictures of our own.
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QStringList>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "support/EndlessRows.h"
#include "support/TestInstallation.h"

namespace {

void Check(bool done, const QString& what) {
  if (done) return;
  std::fprintf(stderr, "The seeds can't be made: %s.\n", qUtf8Printable(what));
  std::exit(1);
}

/// The seeds of one target.
class Corpus {
 public:
  Corpus(const QString& root, const QString& target) : folder_(root + u'/' + target) {
    QDir(folder_).removeRecursively();
    Check(QDir().mkpath(folder_), folder_);
  }
  void Add(const QString& name, const QByteArray& bytes) const {
    QFile file(PathOf(name));
    Check(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), file.fileName());
  }
  /// Texts that need no names.
  void AddTexts(const QList<QByteArray>& texts) const {
    for (qsizetype i = 0; i < texts.size(); ++i) Add(QStringLiteral("text%1").arg(i), texts[i]);
  }
  [[nodiscard]] QString PathOf(const QString& name) const { return folder_ + u'/' + name; }

 private:
  QString folder_;
};

/// Makes or changes a database.
void Execute(const QString& path, const QString& sql) {
  Check(kestrix::OtherUser(path, kestrix::OtherUser::Use::kMake).Exec(sql), path);
}

struct DatabaseSeed {
  const char* name;
  const char* original;
  const char* sql;
};

constexpr const char* kTasks =
    "INSERT INTO Project_details(Factory_Name, Project_Number) VALUES('ACME', 'P-1');"
    "WITH RECURSIVE counted(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM counted LIMIT 6) "
    "INSERT INTO Risk_records(Project_Number, FuntnTaskMachry, SevertyCbo, ExposureCbo, RiskIndex) "
    "SELECT 'P-1', 'Task '||n, 'S2, Serious', 'F1, Seldom', n FROM counted;"
    "INSERT INTO fileLink(Project_Number, FilePath) VALUES('P-1', '/drawings/press.pdf');";

constexpr DatabaseSeed kDatabases[] = {
    {"register", "RskAsmtFld/orgtn.mdb",
     "INSERT INTO orgtn VALUES('ACME', 1); INSERT INTO orgtn VALUES('Bolt & Sons', 2.5);"},
    {"lists", "RskAsmtFld/RskAsmt_BkSup.mdb", ""},
    {"study", "risk_esmatn.mdb", kTasks},
    // A long text goes on in pages of its own.
    {"study-long", "risk_esmatn.mdb",
     "INSERT INTO Risk_records(Project_Number, HzrdDscptnTXT) "
     "VALUES('P-1', hex(zeroblob(2000))), ('P-1', x'ff00fe'), ('P-1', 1e300);"},
    // A row that was deleted leaves free pages.
    {"study-free", "risk_esmatn.mdb",
     "INSERT INTO fileLink(Project_Number, FilePath) VALUES('P-1', hex(zeroblob(1500)));"
     "DELETE FROM fileLink;"},
};

/// Pages as small as they can be: a mutation then hits what a page is made of.
void AddDatabases(const Corpus& corpus) {
  for (const DatabaseSeed& seed : kDatabases) {
    const QString path = corpus.PathOf(QString::fromLatin1(seed.name));
    const QString original =
        QStringLiteral(KESTRIX_PRISTINE_FOLDER) + u'/' + QString::fromLatin1(seed.original);
    Check(QFile::copy(original, path), original);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    Execute(path, QStringLiteral("PRAGMA page_size=512; VACUUM;") + seed.sql);
  }
  // What another program may have made of it: tables that are no tables, columns that compute.
  const QString odd = corpus.PathOf(QStringLiteral("odd"));
  Execute(odd,
          "PRAGMA page_size=512; PRAGMA encoding='UTF-16le';"
          "CREATE TABLE orgtn(OrgName TEXT AS (printf('%d', sclenotxt)) STORED, sclenotxt INTEGER);"
          "CREATE TABLE Orgtmp(OrgNameTMP INTEGER PRIMARY KEY, x CHECK(x<>random())) WITHOUT ROWID;"
          "CREATE VIEW Prjstage AS SELECT 1 AS hazopstage;"
          "CREATE TRIGGER t AFTER INSERT ON orgtn BEGIN DELETE FROM orgtn; END;"
          "INSERT INTO orgtn(sclenotxt) VALUES(1), (NULL), ('text');"
          "CREATE UNIQUE INDEX i ON orgtn(abs(sclenotxt)) WHERE sclenotxt<>'text';");
}

/// Tables whose rows never end, and columns that are computed to any length.
void AddHostileDatabases(const Corpus& corpus) {
  constexpr int kFirstTable = 2;
  for (const char* endless : {"orgtn", "Orgtmp"}) {
    const QString path = corpus.PathOf(QStringLiteral("endless-") + QString::fromLatin1(endless));
    const bool first = qstrcmp(endless, "orgtn") == 0;
    Execute(path,
            "PRAGMA page_size=512; CREATE TABLE orgtn(OrgName TEXT, sclenotxt INTEGER);"
            "CREATE TABLE Orgtmp(OrgNameTMP INTEGER);");
    QFile file(path);
    Check(file.open(QIODevice::ReadWrite), path);
    const QByteArray bytes =
        kestrix::WithEndlessRows(file.readAll(), first ? kFirstTable : kFirstTable + 1);
    Check(file.seek(0) && file.write(bytes) == bytes.size(), path);
  }
  Execute(corpus.PathOf(QStringLiteral("giant")),
          "PRAGMA page_size=512;"
          "CREATE TABLE orgtn(OrgName AS (hex(zeroblob(400000000))), sclenotxt INTEGER "
          "CHECK(length(zeroblob(900000000))>0));"
          "CREATE TABLE Orgtmp(OrgNameTMP INTEGER DEFAULT (printf('%*d', 999999999, 1)));"
          "INSERT INTO Orgtmp VALUES(1);");
}

QByteArray PictureAs(const char* format, int width = 24, int height = 16) {
  QImage picture(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) picture.setPixel(x, y, qRgb(x * 9, y * 7, x * y));
  }
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  Check(picture.save(&buffer, format), QString::fromLatin1(format));
  return buffer.data();
}

/// A photograph that was taken with the camera turned, as its head says.
QByteArray TurnedPhotograph(char orientation) {
  QByteArray head(
      "\xFF\xE1\x00\x22"
      "Exif\0\0"
      "MM\0\x2A\0\0\0\x08"
      "\0\x01\x01\x12\0\x03\0\0\0\x01\0",
      29);
  head += QByteArray(1, orientation) + QByteArray(6, '\0');
  return PictureAs("JPG").insert(2, head);
}

const QByteArray kGif = QByteArray::fromHex(
    "47494638396104000400800000ffffff0000002c000000000400040000020584618b0905003b");

void AddPictures(const Corpus& corpus) {
  for (const char* format : {"PNG", "JPG", "BMP", "PPM", "XPM", "XBM", "PGM", "PBM"}) {
    corpus.Add(QString::fromLatin1(format), PictureAs(format));
  }
  for (const char orientation : {'\1', '\3', '\6', '\10'}) {
    corpus.Add(QStringLiteral("turned%1").arg(int{orientation}), TurnedPhotograph(orientation));
  }
  corpus.Add(QStringLiteral("wide"), PictureAs("PNG", 1700, 2));
  corpus.Add(QStringLiteral("GIF"), kGif);
  corpus.Add(QStringLiteral("SVG"),
             "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'>"
             "<rect width='20' height='10' fill='#204080'/></svg>");
  QImage few(16, 16, QImage::Format_Indexed8);
  few.setColorTable({qRgb(0, 0, 0), qRgb(200, 40, 40)});
  few.fill(1);
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  Check(few.save(&buffer, "PNG"), QStringLiteral("a picture of few colours"));
  corpus.Add(QStringLiteral("few-colours"), buffer.data());
}

void AddDocuments(const Corpus& corpus) {
  const QByteArray picture = PictureAs("PNG", 4, 4).toBase64();
  QList<QByteArray> texts = {
      "Press line 4, guard \xC3\xBC"
      "berbr\xC3\xBC"
      "ckt\r\nStop.\r\n",
      QByteArray("\xFF\xFEP\0r\0e\0s\0s\0\n\0", 12),
      QByteArray("\xFE\xFF\0P\0r\0e\0s\0s", 10),
      "\xEF\xBB\xBFPress",
      "Gr\xF6\xDF"
      "e",
      "<html><img src=\"file:///etc/hostname\"/><link rel=\"stylesheet\" href=\"a.css\"></html>",
      "{\\rtf1\\ansi Press}",
  };
  // As our own saving writes them.
  const QByteArray bodies[] = {
      "<h1>Press</h1><p align=\"center\" style=\" margin-left:20px;\">Guard"
      "<span style=\" font-size:18pt; color:#aa0000;\">stop</span> &amp; \xE2\x9A\xA0<br />x</p>",
      "<table border=\"1\" width=\"80%\" cellpadding=\"3\"><tr><td colspan=\"2\">1</td></tr>"
      "<tr><td rowspan=\"2\">2</td><td width=\"40%\">3</td></tr><tr><td>4</td></tr></table>",
      "<ul><li>one<ol start=\"3\" type=\"a\"><li>two</li></ol></li></ul><hr width=\"50%\" />"
      "<pre> x\ty </pre><p><a href=\"#n\">here</a></p>",
      "<p style=\" text-indent:9px; line-height:150%; page-break-before:always;\">\t"
      "<img width=\"20\" height=\"20\" src=\"data:image/png;base64," +
          picture + "\" /></p>",
  };
  for (const QByteArray& body : bodies)
    texts.append(
        "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0//EN\" "
        "\"http://www.w3.org/TR/REC-html40/strict.dtd\">\n"
        "<html><head><meta name=\"qrichtext\" content=\"1\" /></head><body>" +
        body + "</body></html>");
  corpus.AddTexts(texts);
}

void AddDates(const Corpus& corpus) {
  corpus.AddTexts({"15/02/2013", "1/2/2013", "1-2-13", "1 Feb 2013", "29.2.2012", "31 september 29",
                   "__/__/____", "1__/__/____", "12/0_/____", " 07/11/1999 ", "29/02/1900",
                   "15022013", "01/01/0099", "1/2-2013", "\xD9\xA1/2/2013", "9999999999999"});
}

void AddNumbers(const Corpus& corpus) {
  corpus.AddTexts({"3.5", "100", "-0.004", "+.5", "1.", "0007.995", "99.999", "1e3", "1,5", "-",
                   "32767", "-32768.9", "32768", "inf", "nan", " 12 ", "0x10",
                   "123456789012345678901234567890.125"});
}

void AddTextEdits(const Corpus& corpus) {
  // Insert, replace all, remove, take back, do again.
  corpus.AddTexts({QByteArray("\1abcdef\n\0\3\3"
                              "0123456789\n\3\3\4",
                              22),
                   QByteArray("\1"
                              "0123456789\n\0\x0A\x0Axyz\n\3\0\2\4q\n\3\3",
                              25),
                   QByteArray("\0\0\0a\xF0\x9F\x9B\xA0"
                              "bcdefghijk\xF0\x9F\x9B\xA0\n\2\1\3\3\4",
                              25)});
}

void AddPaths(const Corpus& corpus) {
  // Every path of the graph, stage by stage; see LevelTexts.h for how bytes name levels.
  for (char severity = 0; severity < 4; ++severity) {
    for (char exposure = 0; exposure < 3; ++exposure) {
      for (char occurrence = 0; occurrence < 3; ++occurrence) {
        QByteArray path;
        for (const char avoidance : {'\0', '\1'}) {
          path += QByteArray{} + severity + exposure + occurrence + avoidance + '\3' +
                  QByteArray("\1\1\2\1\3\1\4\1", 8);
        }
        // The form goes on with what a person does: picks, the other stage, statements.
        path += QByteArray("\0\2\1\1\2\2\3\1\4\0\1\1\0\6\2\5", 16);
        corpus.Add(
            QString::fromLatin1((QByteArray::number(severity) + QByteArray::number(exposure) +
                                 QByteArray::number(occurrence))),
            path);
      }
    }
  }
  // A path that nobody took, and texts and numbers that no form writes.
  corpus.Add(QStringLiteral("stale"), QByteArray("\7\14\7\14\7\14\0\1\1", 9));
  corpus.Add(QStringLiteral("foreign"),
             "\7\x16Other\n\7\x16\n\7\x16N.A\n\7\x16x\n\x0F"
             "99\n");
}

void AddSetParts(const Corpus& corpus) {
  constexpr const char* kParts[] = {"RskAsmtFld/orgtn.mdb", "RskAsmtFld/RskAsmt_BkSup.mdb",
                                    "risk_esmatn.mdb"};
  for (std::size_t part = 0; part < std::size(kParts); ++part) {
    QFile file(QStringLiteral(KESTRIX_PRISTINE_FOLDER) + u'/' + QString::fromLatin1(kParts[part]));
    Check(file.open(QIODevice::ReadOnly), file.fileName());
    corpus.Add(QString::number(part), QByteArray(1, static_cast<char>(part)) + file.readAll());
  }
  corpus.Add(QStringLiteral("text"), QByteArray("\2Just a text.\n"));
}

}  // namespace

int main(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(count, arguments);
  Check(count == 2, QStringLiteral("name the folder that they go to"));
  const QString root = QString::fromLocal8Bit(arguments[1]);
  const Corpus databases(root, QStringLiteral("Database"));
  AddDatabases(databases);
  AddHostileDatabases(databases);
  AddDocuments({root, QStringLiteral("Document")});
  AddPictures({root, QStringLiteral("Picture")});
  AddDates({root, QStringLiteral("Date")});
  AddNumbers({root, QStringLiteral("Number")});
  AddTextEdits({root, QStringLiteral("TextLimit")});
  AddPaths({root, QStringLiteral("RiskModel")});
  AddPaths({root, QStringLiteral("RiskGraph")});
  AddSetParts({root, QStringLiteral("BackupSet")});
  return 0;
}
