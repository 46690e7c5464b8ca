#include "shell/RichText.h"

#include <QBuffer>
#include <QHash>
#include <QImageReader>
#include <QMimeData>
#include <QRegularExpression>
#include <QSet>
#include <QTextOption>
#include <QUrl>
#include <QVariant>
#include <algorithm>

#include "formkit/TextBox.h"

namespace kestrix {
namespace {

/// What a window lays out at once.
constexpr qsizetype kMostCharacters = 1024LL * 1024;
constexpr qsizetype kMostParagraphs = 50'000;
/// The same for a text with larger letters or gaps than a plain one. The toolkit counts heights up
/// to 2^25 pixels, and a window may be so narrow that every letter has a line.
constexpr double kPlainSize = 18;
constexpr qsizetype kMostStyledCharacters = 120'000;
constexpr qsizetype kMostStyledParagraphs = 5000;
/// Spans, entries, cells, pictures: everything that is more than a paragraph.
constexpr qsizetype kMostElements = 5000;
constexpr int kMostLevels = 100;
/// The time that a layout takes doubles with each table in a table.
constexpr int kMostTablesInTables = 3;
constexpr double kMostOfAttribute = 3000;
constexpr double kMostOfProperty = 999;
constexpr qsizetype kLongestSheet = 1000;
/// The time that it takes to find where a line may end grows with the square of a word's letters.
constexpr qsizetype kLongestWord = 2000;

const QString kHead = QStringLiteral(
    "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0//EN\" "
    "\"http://www.w3.org/TR/REC-html40/strict.dtd\">\n"
    "<html><head><meta name=\"qrichtext\" content=\"1\" />");
const QString kEnd = QStringLiteral("</body></html>");

QStringList WordsOf(const char* words) {
  return QString::fromLatin1(words).split(u' ');
}

const QStringList kLines = WordsOf("p br h1 h2 h3 h4 h5 h6 pre");
const QStringList kOthers =
    WordsOf("html head meta style body span a ul ol li hr img table thead tr td");
const QStringList kWithoutEnd = WordsOf("meta br hr img");

/// Attributes whose values are words, and those whose values are numbers.
const QStringList kWords =
    WordsOf("name content charset type class align dir href title alt bgcolor");
const QStringList kNumbers =
    WordsOf("start border width height cellspacing cellpadding colspan rowspan");
const QString kPicture = QStringLiteral("data:image/");

/// Properties of a style, with what their numbers may come to where that is less or more than
/// usual.
const QStringList kProperties = WordsOf(
    "font-family font-style font-variant letter-spacing word-spacing text-decoration "
    "text-transform "
    "color background-color margin-top margin-bottom margin-left margin-right padding-top "
    "padding-bottom padding-left padding-right text-indent vertical-align white-space direction "
    "page-break-before page-break-after border border-color border-style border-width "
    "border-collapse border-top border-bottom border-left border-right border-top-color "
    "border-bottom-color border-left-color border-right-color border-top-style border-bottom-style "
    "border-left-style border-right-style height width content list-style-type -qt-block-indent "
    "-qt-paragraph-type -qt-line-height-type -qt-user-state -qt-list-indent -qt-list-number-prefix "
    "-qt-list-number-suffix -qt-table-type");
const QHash<QString, double>& Properties() {
  static const QHash<QString, double> kAll = [] {
    QHash<QString, double> all{{QStringLiteral("font-size"), 72},
                               {QStringLiteral("line-height"), 200},
                               {QStringLiteral("font-weight"), 1000}};
    for (const QString& name : kProperties) all.insert(name, kMostOfProperty);
    return all;
  }();
  return kAll;
}

/// The cells of a table that is being read. In what we write they fill the rows, none longer than
/// another.
class Cells {
 public:
  bool BeginRow() {
    if (!EndRow()) return false;
    ++rows_;
    next_ = 0;
    return true;
  }
  bool Add(int columns, int rows) {
    if (columns < 1 || rows < 1 || rows_ == 0) return false;
    while (next_ < below_.size() && below_[next_] > 0) ++next_;
    if (rows_ == 1) below_.resize(next_ + columns);
    if (next_ + columns > below_.size()) return false;
    for (const qsizetype end = next_ + columns; next_ < end; ++next_) {
      if (below_[next_] > 0) return false;
      below_[next_] = rows;
    }
    return true;
  }
  /// Of a row or of the table; false when it leaves a gap.
  bool EndRow() {
    if (rows_ > 0 && below_.contains(0)) return false;
    for (int& rows : below_) --rows;
    return true;
  }
  [[nodiscard]] qsizetype Count() const { return rows_ * below_.size(); }

 private:
  QList<int> below_;  ///< for each column, how many rows its cell goes on for
  qsizetype rows_ = 0;
  qsizetype next_ = 0;
};

/// Reads a text as our own saving writes it.
class Reader {
 public:
  explicit Reader(const QString& html) : html_(html) {}

  /// Whether all of it is of the tags and attributes that we write, within their bounds.
  bool IsOurs() {
    static const QRegularExpression kTag(QRegularExpression::anchoredPattern(
        QStringLiteral("<!--(?:Start|End)Fragment-->|"
                       "<(/?)([a-z]+[1-6]?)((?:\\s+[a-z]+=(?:\"[^\"<>]*\"|'[^'<>]*'))*+)\\s*/?>")));
    static const QRegularExpression kOtherEntity(QStringLiteral("&(?!(?:lt|gt|amp|quot);)"));
    if (!html_.startsWith(kHead) || !html_.endsWith(kEnd) || html_.contains(kOtherEntity))
      return false;
    qsizetype at = html_.indexOf(u'\n') + 1;
    for (qsizetype next = 0; (next = html_.indexOf(u'<', at)) >= 0;) {
      text_ += QStringView(html_).mid(at, next - at);
      // No value holds the sign that ends a tag.
      at = html_.indexOf(u'>', next) + 1;
      const auto tag = kTag.match(html_.mid(next, at - next));
      if (!tag.hasMatch()) return false;
      const QString name = tag.captured(2);
      if (name.isEmpty()) continue;
      const bool ends = tag.capturedLength(1) > 0;
      if (ends ? !Ends(name) : !Begins(name, tag.captured(3))) return false;
      if (!ends && name == QStringLiteral("style") && !PassSheet(at)) return false;
    }
    return open_.isEmpty() && IsWithinBounds();
  }

 private:
  [[nodiscard]] bool IsWithinBounds() const {
    const bool styled = largest_ > kPlainSize;
    return elements_ <= kMostElements &&
           text_.size() <= (styled ? kMostStyledCharacters : kMostCharacters) &&
           paragraphs_ <= (styled ? kMostStyledParagraphs : kMostParagraphs) &&
           TextBox::WithoutEndlessMarks(text_).size() == text_.size();
  }
  bool Begins(const QString& name, const QString& attributes) {
    const bool is_line = kLines.contains(name);
    if (!is_line && !kOthers.contains(name)) return false;
    ++(is_line ? paragraphs_ : elements_);
    columns_ = rows_ = 1;
    if (!AttributesAreOurs(attributes) || !HasPlace(name)) return false;
    if (!kWithoutEnd.contains(name)) open_.append(name);
    return open_.size() <= kMostLevels && elements_ <= kMostElements;
  }
  /// Where a table, a row or a cell begins, it is noted.
  bool HasPlace(const QString& name) {
    const QString around = open_.isEmpty() ? QString() : open_.last();
    if (name == QStringLiteral("table")) tables_.append(Cells());
    if (name == QStringLiteral("tr"))
      return (around == QStringLiteral("table") || around == QStringLiteral("thead")) &&
             tables_.last().BeginRow();
    if (name == QStringLiteral("td"))
      return around == QStringLiteral("tr") && tables_.last().Add(columns_, rows_);
    if (name == QStringLiteral("thead")) return around == QStringLiteral("table");
    return tables_.size() <= kMostTablesInTables;
  }
  bool Ends(const QString& name) {
    if (open_.isEmpty() || open_.takeLast() != name) return false;
    if (name != QStringLiteral("table")) return true;
    if (!tables_.last().EndRow()) return false;
    elements_ += tables_.takeLast().Count();
    return true;
  }
  bool AttributesAreOurs(const QString& attributes) {
    static const QRegularExpression kAttribute(
        QStringLiteral("([a-z]+)=(?:\"([^\"]*)\"|'([^']*)')"));
    for (auto all = kAttribute.globalMatch(attributes); all.hasNext();) {
      const auto attribute = all.next();
      const QString name = attribute.captured(1);
      const QString value = attribute.captured(2) + attribute.captured(3);
      if (kWords.contains(name)) continue;
      if (name == QStringLiteral("style") ? !StyleIsOurs(value)
          : name == QStringLiteral("src") ? !value.startsWith(kPicture)
                                          : !NumberIsOurs(name, value))
        return false;
    }
    return true;
  }
  bool NumberIsOurs(const QString& name, const QString& value) {
    static const QRegularExpression kNumber(
        QStringLiteral("^(-?\\d{1,4}(?:\\.\\d{1,6})?)(?:%|px)?$"));
    const auto match = kNumber.match(value);
    if (!kNumbers.contains(name) || !match.hasMatch()) return false;
    const double number = match.captured(1).toDouble();
    if (name == QStringLiteral("colspan")) columns_ = static_cast<int>(number);
    if (name == QStringLiteral("rowspan")) rows_ = static_cast<int>(number);
    return qAbs(number) <= kMostOfAttribute;
  }
  bool StyleIsOurs(const QString& style) {
    // A text has few styles, and each of them many times.
    if (styles_.contains(style)) return true;
    const auto declarations = QStringView(style).split(u';');
    for (const QStringView declaration : declarations) {
      const qsizetype colon = declaration.indexOf(u':');
      if (declaration.trimmed().isEmpty()) continue;
      if (colon < 0 || !DeclarationIsOurs(declaration.left(colon).trimmed().toString(),
                                          declaration.mid(colon + 1).toString()))
        return false;
    }
    styles_.insert(style);
    return true;
  }
  bool DeclarationIsOurs(const QString& name, const QString& value) {
    static const QRegularExpression kValue(QStringLiteral(
        "^(?>\\s*(?:-?\\d{1,4}(?:\\.\\d{1,6})?(?:px|pt|%)?(?![\\w.])|#[0-9a-f]{3,8}|"
        "rgba?\\([\\d., ]*\\)|[a-z][a-z-]*|'[^'\"\\\\]*'|\"\\\\?[0-9a-z]*\"),?)++\\s*$"));
    static const QRegularExpression kNumber(
        QStringLiteral("(?<![\\w#.(',\"\\\\-])-?(\\d+(?:\\.\\d+)?)"));
    const auto property = Properties().constFind(name);
    if (property == Properties().constEnd() || !kValue.match(value).hasMatch()) return false;
    if (name.endsWith(QStringLiteral("color"))) return true;
    const auto number = kNumber.match(value);
    const double size = number.captured(1).toDouble();
    if (name != QStringLiteral("font-weight")) largest_ = std::max(largest_, size);
    return size <= property.value();
  }
  /// The sheet that the toolkit writes at the head of every text.
  bool PassSheet(qsizetype& at) {
    static const QRegularExpression kRule(QStringLiteral("\\s*[a-z][a-z.:, ]*\\{([^{}]*)\\}\\s*"));
    const qsizetype end = html_.indexOf(u'<', at);
    if (end < 0 || end - at > kLongestSheet) return false;
    for (const QString sheet = html_.mid(at, end - at); at < end;) {
      const auto rule =
          kRule.match(sheet, sheet.size() - (end - at), QRegularExpression::NormalMatch,
                      QRegularExpression::AnchorAtOffsetMatchOption);
      if (!rule.hasMatch() || !StyleIsOurs(rule.captured(1))) return false;
      at += rule.capturedLength();
    }
    return true;
  }

  const QString& html_;
  QString text_;  ///< what stands between the tags
  qsizetype paragraphs_ = 0;
  qsizetype elements_ = 0;
  QStringList open_;
  int columns_ = 1;  ///< of the cell that is being read
  int rows_ = 1;
  double largest_ = 0;  ///< of the numbers that a height may come from
  QList<Cells> tables_;
  QSet<QString> styles_;
};

bool IsPlainTooLarge(const QString& text) {
  return text.size() > kMostCharacters || text.count(u'\n') >= kMostParagraphs ||
         TextBox::WithoutEndlessMarks(text).size() < text.size();
}

bool HoldsEndlessWord(const QString& text) {
  qsizetype letters = 0;
  return std::any_of(text.begin(), text.end(), [&letters](QChar c) {
    letters = c.isSpace() ? 0 : letters + 1;
    return letters > kLongestWord;
  });
}

/// A picture within a text, of the formats that hold nothing but pixels.
QImage PictureOf(const QUrl& url, qint64& pixels_left) {
  const QString path = url.path();
  QByteArray bytes = QByteArray::fromBase64(path.mid(path.indexOf(u',') + 1).toLatin1());
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer);
  const QSize size = reader.size();
  if (!WordsOf("png jpeg gif bmp").contains(QString::fromLatin1(reader.format()))) return {};
  pixels_left -= qint64{size.width()} * size.height();
  return pixels_left < 0 ? QImage() : reader.read();
}

}  // namespace

TextKind KindOf(const QString& text) {
  if (Reader(text).IsOurs()) return TextKind::kRich;
  return IsPlainTooLarge(text) ? TextKind::kTooLarge : TextKind::kPlain;
}

bool SelfContainedDocument::Take(const QString& text) {
  const TextKind kind = KindOf(text);
  if (kind == TextKind::kTooLarge) return false;
  pixels_left_ = kMostPixels;
  clear();
  WrapFor(text);
  if (kind == TextKind::kRich) {
    setHtml(text);
  } else {
    setPlainText(text);
  }
  setModified(false);
  return true;
}

bool SelfContainedDocument::HasRoomFor(const QString& text) const {
  return KindOf(text) != TextKind::kTooLarge && characterCount() + text.size() <= kMostCharacters &&
         blockCount() + text.count(u'\n') <= kMostParagraphs;
}

void SelfContainedDocument::WrapFor(const QString& text) {
  QTextOption option = defaultTextOption();
  option.setWrapMode(HoldsEndlessWord(text) ? QTextOption::WrapAnywhere
                                            : QTextOption::WrapAtWordBoundaryOrAnywhere);
  setDefaultTextOption(option);
}

QVariant SelfContainedDocument::loadResource(int type, const QUrl& name) {
  QImage picture;
  if (type == ImageResource && name.scheme() == QStringLiteral("data"))
    picture = PictureOf(name, pixels_left_);
  // For want of a picture the toolkit looks for a file of that name.
  if (picture.isNull()) {
    picture = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
  }
  return type == ImageResource ? QVariant(picture) : QVariant(QByteArray());
}

bool RichTextBox::canInsertFromMimeData(const QMimeData* source) const {
  return source->hasText();
}

void RichTextBox::insertFromMimeData(const QMimeData* source) {
  if (isReadOnly()) return;
  const QString html = source->html();
  Q_EMIT Pasting(KindOf(html) == TextKind::kRich ? html : source->text());
}

}  // namespace kestrix
