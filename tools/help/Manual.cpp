#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextList>
#include <QTextTable>

#include "Manual.h"
#include "platform/Failure.h"

namespace kestrix::help {
namespace {

using Kind = Block::Kind;

/// Of "messages above : what to do", which Markdown doesn't know, the messages become quotations.
QString WithMessagesQuoted(const QString& text) {
  QStringList lines;
  qsizetype paragraph = 0;  // where the one in hand begins
  for (const QString& line : text.split(u'\n')) {
    if (line.startsWith(QStringLiteral(": "))) {
      for (qsizetype i = paragraph; i < lines.size(); ++i)
        lines[i] = QStringLiteral("> ") + lines[i] + QStringLiteral("\n>");
      lines.append({QString(), line.mid(2)});
    } else {
      lines.append(line);
    }
    if (line.trimmed().isEmpty()) paragraph = lines.size();
  }
  return lines.join(u'\n');
}

/// Turns the text that the toolkit read into blocks.
class Reader {
 public:
  Reader(const QString& text, QString name) : name_(std::move(name)) {
    text_.setMarkdown(WithMessagesQuoted(text),
                      QTextDocument::MarkdownFeatures(QTextDocument::MarkdownNoHTML) |
                          QTextDocument::MarkdownDialectGitHub);
  }

  Manual Read() {
    const QTextFrame* root = text_.rootFrame();
    for (auto it = root->begin(); !it.atEnd(); ++it) {
      if (auto* table = qobject_cast<QTextTable*>(it.currentFrame())) {
        TakeTable(*table);
      } else {
        TakeBlock(it.currentBlock());
      }
    }
    if (manual_.title.isEmpty()) Refuse(QStringLiteral("the title (\"# Title\") is missing"));
    if (!messages_.empty())
      Refuse(QStringLiteral("nothing stands below a message, \"%1\"")
                 .arg(PlainText(messages_.back())));
    if (manual_.blocks.empty()) Refuse(QStringLiteral("no text follows the title"));
    for (const QString& target : std::as_const(targets_)) {
      if (!anchors_.contains(target))
        Refuse(QStringLiteral("a link leads to no heading, \"%1\"").arg(target));
    }
    return std::move(manual_);
  }

 private:
  [[noreturn]] void Refuse(const QString& why) const {
    throw Failure(failure::kSyntax, QStringLiteral("%1: %2.").arg(name_, why));
  }

  void TakeBlock(const QTextBlock& block) {
    const QTextBlockFormat format = block.blockFormat();
    const QString words = block.text().trimmed();
    if (words.isEmpty()) return;
    if (const int level = format.headingLevel(); level > 0) return TakeHeading(level, words);
    const QTextCharFormat first = block.begin().fragment().charFormat();
    if (first.isImageFormat()) return TakePicture(first.toImageFormat());
    Line line = LineOf(block);
    if (format.intProperty(QTextFormat::BlockQuoteLevel) > 0) {
      messages_.push_back(std::move(line));
    } else if (const QTextList* list = block.textList()) {
      Add(list->format().style() == QTextListFormat::ListDecimal ? Kind::kStep : Kind::kBullet,
          std::move(line));
    } else {
      Add(messages_.empty() ? Kind::kParagraph : Kind::kMessage, std::move(line));
    }
  }

  void TakeHeading(int level, const QString& text) {
    static const QRegularExpression kAnchor(QStringLiteral(" *\\{#([a-z0-9_-]+)\\}$"));
    static const QRegularExpression kNoWord(QStringLiteral("[^a-z0-9]+"));
    if (level == 1) {
      manual_.title = text;
      return;
    }
    if (level > 3)
      Refuse(QStringLiteral("only \"##\" and \"###\" begin a heading, unlike \"%1\"").arg(text));
    const auto given = kAnchor.match(text);
    const QString words = given.hasMatch() ? text.left(given.capturedStart()) : text;
    QString anchor = given.captured(1);
    if (anchor.isEmpty()) anchor = words.toLower().replace(kNoWord, QStringLiteral("-"));
    // Some sections have one name in every chapter.
    while (anchors_.contains(anchor) && !given.hasMatch()) anchor += QStringLiteral("-next");
    if (anchors_.contains(anchor))
      Refuse(QStringLiteral("two headings have one anchor, \"%1\"").arg(anchor));
    anchors_.insert(anchor);
    Add(level == 2 ? Kind::kChapter : Kind::kSection, Plain(words)).anchor = anchor;
  }

  void TakePicture(const QTextImageFormat& picture) {
    const QString shows = picture.stringProperty(QTextFormat::ImageAltText);
    if (shows.isEmpty() || picture.name().contains(u'/') ||
        !picture.name().endsWith(QStringLiteral(".png")))
      Refuse(QStringLiteral("a picture reads ![what it shows](name.png), unlike \"%1\"")
                 .arg(picture.name()));
    Add(Kind::kPicture, Plain(shows)).picture = picture.name();
  }

  void TakeTable(const QTextTable& table) {
    Block& block = Add(Kind::kTable, {});
    for (int row = 0; row < table.rows(); ++row) {
      std::vector<Line> cells;
      for (int column = 0; column < table.columns(); ++column) {
        const QTextBlock cell = table.cellAt(row, column).firstCursorPosition().block();
        cells.push_back(row == 0 ? Plain(cell.text()) : LineOf(cell));
      }
      block.rows.push_back(std::move(cells));
    }
  }

  [[nodiscard]] static Line Plain(const QString& text) { return {{text, Run::Face::kPlain, {}}}; }

  [[nodiscard]] Line LineOf(const QTextBlock& block) {
    Line line;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextCharFormat format = it.fragment().charFormat();
      Run run{it.fragment().text(), Run::Face::kPlain, {}};
      if (format.isAnchor()) {
        run.face = Run::Face::kLink;
        run.target = format.anchorHref().mid(1);
        targets_.append(run.target);
      } else if (format.fontFixedPitch()) {
        run.face = Run::Face::kTyped;
      } else if (format.fontWeight() >= QFont::Bold) {
        run.face = Run::Face::kCaption;
      } else if (format.fontItalic()) {
        run.face = Run::Face::kVariable;
      }
      // A face within a link doesn't divide it.
      if (!run.target.isEmpty() && !line.empty() && line.back().target == run.target) {
        line.back().text += run.text;
      } else {
        line.push_back(run);
      }
    }
    return line;
  }

  Block& Add(Kind kind, Line line) {
    Block block;
    block.kind = kind;
    block.line = std::move(line);
    std::swap(block.messages, messages_);
    manual_.blocks.push_back(std::move(block));
    return manual_.blocks.back();
  }

  QTextDocument text_;
  QString name_;
  std::vector<Line> messages_;  ///< that wait for what to do
  QSet<QString> anchors_;
  QStringList targets_;
  Manual manual_;
};

}  // namespace

Manual Manual::Parse(const QString& text, const QString& name) {
  return Reader(text, name).Read();
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
