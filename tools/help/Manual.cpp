#include "Manual.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <array>
#include <utility>

#include "platform/Failure.h"

namespace kestrix::help {
namespace {

using Kind = Block::Kind;

struct Mark {
  QLatin1String sign;
  Run::Face face;
};
// The longer sign stands first, since the shorter one begins alike.
constexpr std::array<Mark, 3> kMarks{{
    {QLatin1String("**"), Run::Face::kCaption},
    {QLatin1String("`"), Run::Face::kTyped},
    {QLatin1String("*"), Run::Face::kVariable},
}};

class Parser {
 public:
  Parser(const QString& text, QString name)
      : lines_(text.split(QLatin1Char('\n'))), name_(std::move(name)) {}

  Manual Read() {
    ReadTitle();
    while (at_ < lines_.size()) ReadBlock();
    if (manual_.blocks.empty()) Refuse(QStringLiteral("no text follows the title"));
    for (const QString& target : std::as_const(targets_)) {
      if (!anchors_.contains(target))
        Refuse(QStringLiteral("no heading has the anchor \"%1\" that a link leads to").arg(target));
    }
    return std::move(manual_);
  }

 private:
  [[noreturn]] void Refuse(const QString& why) const {
    throw Failure(
        failure::kSyntax,
        QStringLiteral("%1:%2: %3.").arg(name_).arg(qMin(at_ + 1, lines_.size())).arg(why));
  }

  [[nodiscard]] QString Current() const { return at_ < lines_.size() ? lines_[at_] : QString(); }

  void ReadTitle() {
    while (at_ < lines_.size() && Current().trimmed().isEmpty()) ++at_;
    if (!Current().startsWith(QLatin1String("# "))) {
      Refuse(QStringLiteral("the title (\"# Title\") is missing"));
    }
    manual_.title = Current().mid(2).trimmed();
    ++at_;
  }

  void ReadBlock() {
    const QString line = Current();
    if (line.trimmed().isEmpty()) {
      ++at_;
    } else if (line.startsWith(QLatin1String("## "))) {
      ReadHeading(Kind::kChapter, line.mid(3).trimmed());
    } else if (line.startsWith(QLatin1String("### "))) {
      ReadHeading(Kind::kSection, line.mid(4).trimmed());
    } else if (line.startsWith(QLatin1Char('#'))) {
      Refuse(QStringLiteral("only \"##\" and \"###\" begin a heading behind the title"));
    } else if (line.startsWith(QLatin1String("!["))) {
      ReadPicture(line.trimmed());
    } else if (line.startsWith(QLatin1Char('|'))) {
      ReadTable();
    } else if (const QString entry = EntryOf(line); !entry.isNull()) {
      ++at_;
      Add(line.startsWith(QLatin1Char('-')) ? Kind::kBullet : Kind::kStep, entry + Indented());
    } else {
      ReadParagraphOrMessage();
    }
  }

  void ReadHeading(Kind kind, const QString& text) {
    static const QRegularExpression kAnchor(QStringLiteral(" *\\{#([a-z0-9_-]+)\\}$"));
    static const QRegularExpression kNoWord(QStringLiteral("[^a-z0-9]+"));
    const auto given = kAnchor.match(text);
    const QString words = given.hasMatch() ? text.left(given.capturedStart()) : text;
    QString anchor = given.captured(1);
    if (anchor.isEmpty()) anchor = words.toLower().replace(kNoWord, QStringLiteral("-"));
    // Some sections have one name in every chapter.
    while (anchors_.contains(anchor) && !given.hasMatch()) anchor += QStringLiteral("-next");
    if (anchors_.contains(anchor)) Refuse(QStringLiteral("another heading has this anchor"));
    anchors_.insert(anchor);
    Add(kind, words).anchor = anchor;
    ++at_;
  }

  void ReadPicture(const QString& line) {
    static const QRegularExpression kForm(QStringLiteral(R"(^!\[(.+)\]\(([^/()]+\.png)\)$)"));
    const auto match = kForm.match(line);
    if (!match.hasMatch()) {
      Refuse(QStringLiteral("a picture reads ![what it shows](name.png)"));
    }
    Add(Kind::kPicture, match.captured(1)).picture = match.captured(2);
    ++at_;
  }

  void ReadTable() {
    Block& table = Add(Kind::kTable, QString());
    for (qsizetype row = 0; Current().startsWith(QLatin1Char('|')); ++row, ++at_) {
      QString line = Current().trimmed();
      if (line.size() < 2 || !line.endsWith(QLatin1Char('|'))) {
        Refuse(QStringLiteral("a row of a table ends with \"|\""));
      }
      line = line.mid(1, line.size() - 2);
      if (row == 1) {
        if (line.contains(QRegularExpression(QStringLiteral("[^-|]")))) {
          Refuse(QStringLiteral("the second line of a table is \"|---|---|\""));
        }
        continue;
      }
      std::vector<Line> cells;
      const QStringList texts = line.split(QLatin1Char('|'));
      for (const QString& text : texts) cells.push_back(Faces(text.trimmed()));
      if (!table.rows.empty() && cells.size() != table.rows.front().size()) {
        Refuse(QStringLiteral("this row has %1 cells and the head of its table %2")
                   .arg(cells.size())
                   .arg(table.rows.front().size()));
      }
      table.rows.push_back(std::move(cells));
    }
    if (table.rows.size() < 2) Refuse(QStringLiteral("the table above has no rows"));
  }

  void ReadParagraphOrMessage() {
    QStringList texts;
    while (!Current().trimmed().isEmpty() && !Current().startsWith(QLatin1String(": "))) {
      QString text = Current().trimmed();
      if (text.startsWith(QLatin1Char('\\'))) text.remove(0, 1);
      texts.append(text);
      ++at_;
    }
    if (!Current().startsWith(QLatin1String(": "))) {
      Add(Kind::kParagraph, texts.join(QLatin1Char(' ')));
      return;
    }
    if (texts.isEmpty()) Refuse(QStringLiteral("no message stands above \": what to do\""));
    const QString advice = Current().mid(2).trimmed();
    ++at_;
    Block& message = Add(Kind::kMessage, advice + Indented());
    for (const QString& text : qAsConst(texts)) message.messages.push_back(Faces(text));
  }

  /// The text of an entry of a list without its sign; null when the line isn't one.
  [[nodiscard]] static QString EntryOf(const QString& line) {
    static const QRegularExpression kSign(QStringLiteral(R"(^(-|\d+\.) +)"));
    const auto match = kSign.match(line);
    return match.hasMatch() ? line.mid(match.capturedLength()).trimmed() : QString();
  }

  /// The indented lines that go on with the block in hand, each behind a blank.
  QString Indented() {
    QString text;
    while (Current().startsWith(QLatin1String("  ")) && !Current().trimmed().isEmpty()) {
      text += QLatin1Char(' ') + Current().trimmed();
      ++at_;
    }
    return text;
  }

  Block& Add(Kind kind, const QString& text) {
    Block block;
    block.kind = kind;
    block.line = Faces(text);
    manual_.blocks.push_back(std::move(block));
    return manual_.blocks.back();
  }

  [[nodiscard]] Line Faces(const QString& text) {
    static const QRegularExpression kLink(QStringLiteral("\\[([^\\[\\]]+)\\]\\(#([a-z0-9_-]+)\\)"));
    Line line;
    QString plain;
    const auto flush = [&] {
      if (!plain.isEmpty()) line.push_back({plain, Run::Face::kPlain, {}});
      plain.clear();
    };
    for (qsizetype i = 0; i < text.size();) {
      const auto link = kLink.match(text, i, QRegularExpression::NormalMatch,
                                    QRegularExpression::AnchorAtOffsetMatchOption);
      if (link.hasMatch()) {
        flush();
        line.push_back({link.captured(1), Run::Face::kLink, link.captured(2)});
        targets_.append(link.captured(2));
        i = link.capturedEnd();
        continue;
      }
      const Mark* mark = MarkAt(text, i);
      if (mark == nullptr) {
        plain += text[i++];
        continue;
      }
      const qsizetype begin = i + mark->sign.size();
      const qsizetype end = text.indexOf(mark->sign, begin);
      if (end <= begin) {
        Refuse(QStringLiteral("\"%1\" has no end or nothing in it").arg(QString(mark->sign)));
      }
      flush();
      line.push_back({text.mid(begin, end - begin), mark->face, {}});
      i = end + mark->sign.size();
    }
    flush();
    return line;
  }

  [[nodiscard]] static const Mark* MarkAt(const QString& text, qsizetype place) {
    for (const Mark& mark : kMarks) {
      if (QStringView(text).mid(place).startsWith(mark.sign)) return &mark;
    }
    return nullptr;
  }

  QStringList lines_;
  QString name_;
  qsizetype at_ = 0;
  QSet<QString> anchors_;
  QStringList targets_;
  Manual manual_;
};

}  // namespace

Manual Manual::Parse(const QString& text, const QString& name) {
  return Parser(text, name).Read();
}

Manual Manual::Load(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    throw Failure(
        failure::kFileNotFound,
        QStringLiteral("The manual's source %1 can't be read: %2.").arg(path, file.errorString()));
  }
  return Parse(QString::fromUtf8(file.readAll()), path);
}

QStringList Manual::Pictures() const {
  QStringList names;
  for (const Block& block : blocks) {
    if (block.kind == Kind::kPicture && !names.contains(block.picture)) names += block.picture;
  }
  return names;
}

QString PlainText(const Line& line) {
  QString text;
  for (const Run& run : line) text += run.text;
  return text;
}

QString Manual::PlainText() const {
  QStringList texts{title};
  for (const Block& block : blocks) {
    for (const Line& message : block.messages) texts += help::PlainText(message);
    texts += help::PlainText(block.line);
    for (const auto& row : block.rows) {
      for (const Line& cell : row) texts += help::PlainText(cell);
    }
  }
  return texts.join(QLatin1Char('\n'));
}

}  // namespace kestrix::help
