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

/// A text that stands in a source between quotes, adjacent pieces joined.
struct Literal {
  QString text;
  bool in_message = false;  ///< given to what tells, asks or fails
};

/// Reads C++ just far enough to know what stands between quotes, and in whose brackets.
class Reader {
 public:
  explicit Reader(QString source) : source_(std::move(source)) {}

  std::vector<Literal> Read() {
    while (at_ < source_.size()) {
      if (Skip()) continue;
      const QChar c = source_[at_];
      if (c == u'"') {
        ReadLiteral();
        continue;
      }
      if (c == u'(') {
        calls_.append(word_);
      } else if (c == u')' && !calls_.isEmpty()) {
        calls_.removeLast();
      }
      if (c.isLetterOrNumber() || c == u'_') {
        if (!in_word_) word_.clear();
        in_word_ = true;
        word_ += c;
      } else {
        in_word_ = false;
        if (!c.isSpace()) word_.clear();
        joins_ = joins_ && c.isSpace();
      }
      if (in_word_ && word_ != QStringLiteral("u")) joins_ = false;
      ++at_;
    }
    return literals_;
  }

 private:
  /// Comments, includes and single characters.
  bool Skip() {
    const QStringView rest = QStringView(source_).mid(at_);
    if (rest.startsWith(u"//") || rest.startsWith(u"#include")) return SkipTo(u"\n", 0);
    if (rest.startsWith(u"/*")) return SkipTo(u"*/", 2);
    if (rest.startsWith(u"'\\")) return SkipTo(u"'", 3);
    if (rest.size() > 2 && rest[0] == u'\'' && rest[2] == u'\'') {
      at_ += 3;
      return true;
    }
    return false;
  }

  bool SkipTo(QStringView end, qsizetype from) {
    const qsizetype found = source_.indexOf(end, at_ + from);
    at_ = found < 0 ? source_.size() : found + end.size();
    return true;
  }

  void ReadLiteral() {
    QString text;
    for (++at_; at_ < source_.size() && source_[at_] != u'"'; ++at_) {
      if (source_[at_] == u'\\' && at_ + 1 < source_.size()) {
        ++at_;
        text += source_[at_] == u'n' ? u'\n' : source_[at_];
      } else {
        text += source_[at_];
      }
    }
    ++at_;
    if (joins_ && !literals_.empty()) {
      literals_.back().text += text;
    } else {
      literals_.push_back({text, IsInMessage()});
    }
    joins_ = true;
    in_word_ = false;
    word_.clear();
  }

  [[nodiscard]] bool IsInMessage() const {
    static const QRegularExpression kTeller(
        QStringLiteral("^(Tell\\w*|Ask\\w*|Failure|MakeFailure|Fail\\w*)$"));
    for (const QString& call : calls_) {
      if (kTeller.match(call).hasMatch()) return true;
    }
    return false;
  }

  QString source_;
  qsizetype at_ = 0;
  QString word_;
  bool in_word_ = false;
  bool joins_ = false;
  QStringList calls_;
  std::vector<Literal> literals_;
};

bool IsSentence(const QString& text) {
  static const QRegularExpression kSentence(
      QStringLiteral("^[A-Z0-9].* .*([.?!]|BELTROVAN|missing|selceted)$"));
  return kSentence.match(text.trimmed()).hasMatch();
}

bool IsTitle(const QString& text) {
  return text.startsWith(QStringLiteral("BELTROVAN")) || text.startsWith(QStringLiteral("KESTRIX"));
}

/// Sentences of the sources that no message shows.
const QSet<QString>& NoMessages() {
  static const QSet<QString> kTexts{QStringLiteral("Risk Index.")};
  return kTexts;
}

/// The fixed parts of every message of the program.
QSet<QString> MessageTexts() {
  QSet<QString> texts;
  const QStringList files = FilesBelow(kSources, {QStringLiteral("*.cpp"), QStringLiteral("*.h")});
  for (const QString& path : files) {
    // The one speaks to who builds the help; the statements are no messages.
    if (path.contains(QStringLiteral("/main_job/")) ||
        path.endsWith(QStringLiteral("/Statements.h")))
      continue;
    for (const Literal& literal : Reader(TextOf(path)).Read()) {
      if (IsTitle(literal.text) || NoMessages().contains(literal.text)) continue;
      // What begins small is a reason within a message; the manual tells of them in its own words.
      const bool reason =
          literal.text.simplified().left(1).contains(QRegularExpression(QStringLiteral("[a-z]")));
      if ((literal.in_message && !reason) || IsSentence(literal.text)) texts.insert(literal.text);
    }
  }
  return texts;
}

Manual TheManual() {
  return Manual::Load(QStringLiteral(KESTRIX_SOURCE_FOLDER "/data/help/manual.md"));
}

TEST(Contents, ReaderOfSourcesJoinsPiecesAndKnowsTheCall) {
  const auto literals = Reader(QStringLiteral("// \"no\"\n#include \"no.h\"\n'\"' Tell(Icon::k, "
                                              "Q(u\"a \"\n  \"b\\\"c\"), Q(\"d\")); f(\"e\");"))
                            .Read();
  ASSERT_EQ(literals.size(), 3u);
  EXPECT_EQ(literals[0].text, QStringLiteral("a b\"c"));
  EXPECT_TRUE(literals[0].in_message);
  EXPECT_EQ(literals[1].text, QStringLiteral("d"));
  EXPECT_TRUE(literals[1].in_message);
  EXPECT_EQ(literals[2].text, QStringLiteral("e"));
  EXPECT_FALSE(literals[2].in_message);
}

TEST(Contents, ManualExplainsEveryMessageOfTheProgram) {
  QStringList explained;
  for (const Block& block : TheManual().blocks) {
    for (const Line& message : block.messages) explained += PlainText(message).simplified();
  }
  // Reminders and captions stand in the running text.
  const QString manual = TheManual().PlainText().simplified() + explained.join(u'\n');
  const QSet<QString> texts = MessageTexts();
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
  const QStringList files = FilesBelow(kSources, {QStringLiteral("*.cpp"), QStringLiteral("*.h")});
  for (const QString& path : files) {
    for (const Literal& literal : Reader(TextOf(path)).Read()) {
      known += QString(literal.text).remove(u'&') + u'\n';
    }
  }
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
