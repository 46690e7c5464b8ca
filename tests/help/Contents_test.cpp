// What the manual must hold: every message of the program, and every form.

#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>

#include "HelpTest.h"

namespace kestrix::help {
namespace {

const QString kSources = QStringLiteral(KESTRIX_SOURCE_FOLDER "/src");

QString TextOf(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return QString::fromUtf8(file.readAll());
}

QStringList FilesBelow(const QString& folder, const QStringList& names) {
  QStringList paths;
  for (QDirIterator it(folder, names, QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
    paths += it.next();
  }
  paths.sort();
  return paths;
}

/// What stands between quotes in a source, adjacent pieces joined.
QStringList LiteralsOf(QString source) {
  static const QRegularExpression kCommentOrInclude(QStringLiteral("(?m)^ *//.*$|^#include.*$"));
  static const QRegularExpression kJoint(QStringLiteral("\"\\s*u?\""));
  static const QRegularExpression kLiteral(QStringLiteral("\"((?:[^\"\\\\\n]|\\\\.)*)\""));
  source.remove(kCommentOrInclude).remove(kJoint);
  QStringList literals;
  for (auto found = kLiteral.globalMatch(source); found.hasNext();) {
    QString text = found.next().captured(1);
    literals +=
        text.replace(QStringLiteral("\\n"), QStringLiteral("\n")).remove(u'\\').simplified();
  }
  return literals;
}

/// Texts of the sources that tell a person something, and what begins as small as a reason doesn't.
bool IsMessage(const QString& text) {
  static const QRegularExpression kMessage(QStringLiteral(
      "^(?!BELTROVAN|KESTRIX)[\"%\\]]*[A-Z0-9\\[%].* .*"
      "([.?!]|[.:] ?\"?%\\d\"?|BELTROVAN|missing|installed|selceted|to delete)$|^Overflow"));
  // A caption, and names that the estimation form speaks.
  static const QRegularExpression kOther(QStringLiteral("^Risk Index\\.$|^(Class|Severity) %1"));
  return kMessage.match(text).hasMatch() && !kOther.match(text).hasMatch();
}

/// All texts of the sources. The pages speak to who builds the help; the statements are no
/// messages. A report and what reads and checks for it tell what to do beside each sentence, or
/// stand alone.
QStringList TextsOfSources() {
  QStringList texts;
  for (const QString& path :
       FilesBelow(kSources, {QStringLiteral("*.cpp"), QStringLiteral("*.h")})) {
    static const QRegularExpression kOthers(
        QStringLiteral("/(paper|records|checks|reports|preview|command)/|/Statements\\.h$"));
    if (!path.contains(kOthers)) texts += LiteralsOf(TextOf(path));
  }
  return texts;
}

Manual TheManual() {
  return Manual::Load(QStringLiteral(KESTRIX_SOURCE_FOLDER "/data/help/manual.md"));
}

TEST(Contents, PiecesOfATextInTheSourcesAreJoined) {
  const QString source = QStringLiteral(
      "#include \"no.h\"\n  // \"no\"\nTell(Icon::k, Q(u\"a \"\n  \"b\\\"c\"), Q(\"d\"));");
  EXPECT_EQ(LiteralsOf(source), QStringList({"a b\"c", "d"}));
}

TEST(Contents, ManualExplainsEveryMessageOfTheProgram) {
  QStringList explained;
  for (const Block& block : TheManual().blocks) {
    for (const Line& message : block.messages) explained += PlainText(message).simplified();
  }
  // Reminders and captions stand in the running text.
  const QString manual = TheManual().PlainText().simplified() + explained.join(u'\n');
  QStringList texts = TextsOfSources();
  texts.removeIf([](const QString& text) { return !IsMessage(text); });
  EXPECT_GE(texts.size(), 70);
  EXPECT_TRUE(texts.contains(QStringLiteral("Cannot be deleted, reserved text.")));
  EXPECT_TRUE(texts.contains(QStringLiteral("5. Installed files missing.")));
  static const QRegularExpression kPlace(QStringLiteral("%\\d"));
  static const QRegularExpression kWord(QStringLiteral("[A-Za-z]{2}"));
  for (const QString& text : texts) {
    for (const QString& part : text.split(kPlace)) {
      const QString words = part.simplified();
      if (!words.contains(kWord)) continue;
      EXPECT_TRUE(manual.contains(words)) << "not in the manual: " << words.toStdString();
    }
  }
}

TEST(Contents, ManualShowsAPictureOfEveryForm) {
  const QString pictures = TheManual().Pictures().join(u' ');
  const QStringList forms = FilesBelow(kSources, {QStringLiteral("*.ui")});
  EXPECT_GE(forms.size(), 11);
  for (const QString& form : forms) {
    const QString name = QFileInfo(form).completeBaseName();
    // A document window stands in the picture of the main window.
    if (name == QStringLiteral("frmDocument")) continue;
    const QRegularExpression named(QStringLiteral("\\b%1(-\\w+)?\\.png").arg(name));
    EXPECT_TRUE(pictures.contains(named)) << name.toStdString();
  }
}

TEST(Contents, CaptionsInBoldStandInTheProgram) {
  // Captions of the design files without the sign of their key, and the texts of the sources.
  QString known;
  const QStringList forms = FilesBelow(kSources, {QStringLiteral("*.ui")});
  for (const QString& form : forms) known += TextOf(form);
  known.replace(QStringLiteral("&amp;"), QString());
  known.replace(QStringLiteral("&gt;"), QStringLiteral(">"));
  known += TextsOfSources().join(u'\n').remove(u'&');
  known = known.simplified();
  // Words of emphasis, and what the desktop itself writes on buttons.
  const QSet<QString> ours{QStringLiteral("before"),
                           QStringLiteral("after"),
                           QStringLiteral("everybody"),
                           QStringLiteral("nobody else"),
                           QStringLiteral("replaces"),
                           QStringLiteral("risk indexes"),
                           QStringLiteral("both"),
                           QStringLiteral("first"),
                           QStringLiteral("Attention."),
                           QStringLiteral("no study at all is open"),
                           QStringLiteral("bold"),
                           QStringLiteral("deletes all pictures"),
                           QStringLiteral("Yes"),
                           QStringLiteral("No"),
                           QStringLiteral("OK"),
                           QStringLiteral("replaces the first one for every task"),
                           QStringLiteral("a restore doesn't find them there"),
                           QStringLiteral("isn't complete")};
  int captions = 0;
  const auto check = [&](const Line& line) {
    for (const help::Run& run : line) {
      if (run.face != help::Run::Face::kCaption || ours.contains(run.text)) continue;
      for (const QString& step : run.text.split(QStringLiteral(" > "))) {
        ++captions;
        static const QRegularExpression kNumbers(QStringLiteral("\\d+ of \\d+$"));
        const QString caption = QString(step).remove(kNumbers).simplified();
        EXPECT_TRUE(known.contains(caption)) << caption.toStdString();
      }
    }
  };
  for (const Block& block : TheManual().blocks) {
    if (block.kind != Block::Kind::kMessage) check(block.line);
    for (const auto& row : block.rows) {
      for (const Line& cell : row) check(cell);
    }
  }
  EXPECT_GE(captions, 100);
}

/// Help is opened at the form that it is asked for.
TEST(Contents, EveryFormHasAHeadingOfItsName) {
  QStringList anchors;
  for (const Block& block : TheManual().blocks) anchors += block.anchor;
  const QStringList forms = FilesBelow(kSources, {QStringLiteral("*.ui")});
  for (const QString& form : forms) {
    const QString name = QFileInfo(form).completeBaseName().toLower();
    EXPECT_TRUE(anchors.contains(name)) << name.toStdString();
  }
}

}  // namespace
}  // namespace kestrix::help
