#include "shell/RichText.h"

#include <QRegularExpression>
#include <QTextOption>
#include <QUrl>
#include <QVariant>
#include <algorithm>

namespace kestrix {
namespace {

/// The time that a layout takes doubles with each table in a table, and the stack that it needs
/// grows with every level. What people write stays far below these.
constexpr int kMostTablesInTables = 8;
constexpr int kMostLevels = 300;
/// Every rule of a style sheet is held against every element and those around it: what that may
/// come to, in characters of style sheets by elements by levels. A page of an office program has a
/// few thousand characters of them and hardly ten levels.
constexpr qint64 kMostStyling = 400'000'000;
/// The time that it takes to find where a line may end grows with the square of a word's letters.
constexpr qsizetype kLongestWord = 2000;

const QRegularExpression& AnyTag() {
  static const QRegularExpression kAnyTag(QStringLiteral("<[^<>]*>"));
  return kAnyTag;
}

bool BeginsAs(const QString& text, QLatin1String begin) {
  return text.startsWith(begin, Qt::CaseInsensitive);
}

/// Elements that may stay open without a level of their own.
bool OpensLevel(const QString& name) {
  static const QStringList kLevelless = {
      QStringLiteral("p"),  QStringLiteral("br"), QStringLiteral("hr"),   QStringLiteral("img"),
      QStringLiteral("li"), QStringLiteral("dt"), QStringLiteral("dd"),   QStringLiteral("tr"),
      QStringLiteral("td"), QStringLiteral("th"), QStringLiteral("meta"), QStringLiteral("link")};
  return !kLevelless.contains(name);
}

/// The time that applying the style sheets takes, in the measure of kMostStyling.
class Styling {
 public:
  void TakeTag(const QRegularExpressionMatch& tag, const QString& name, int levels) {
    ++elements_;
    deepest_ = std::max<qint64>(deepest_, levels);
    if (name != QStringLiteral("style")) return;
    const bool opens = tag.capturedLength(1) == 0;
    if (opens && begin_ < 0) begin_ = tag.capturedEnd();
    if (opens || begin_ < 0) return;
    characters_ += tag.capturedStart() - begin_;
    begin_ = -1;
  }
  [[nodiscard]] bool IsTooMuch(qsizetype end) const {
    const qint64 characters = characters_ + (begin_ < 0 ? 0 : end - begin_);
    // Texts have at most some million characters, so that two factors never overflow.
    return characters * deepest_ > kMostStyling / std::max<qint64>(elements_, 1);
  }

 private:
  qint64 elements_ = 0;
  qint64 deepest_ = 1;
  qint64 characters_ = 0;
  qsizetype begin_ = -1;
};

bool CanBeLaidOut(const QString& html) {
  static const QRegularExpression kTag(QStringLiteral("<(/?)([A-Za-z][A-Za-z0-9]*)([^<>]*)>"));
  static const QRegularExpression kHugeSpan(QStringLiteral("span\\s*=\\s*[\"']?\\s*\\d{4}"),
                                            QRegularExpression::CaseInsensitiveOption);
  int tables = 0;
  int levels = 0;
  Styling styling;
  for (auto tags = kTag.globalMatch(html); tags.hasNext();) {
    const QRegularExpressionMatch tag = tags.next();
    const QString name = tag.captured(2).toLower();
    styling.TakeTag(tag, name, levels);
    if (tag.capturedView(3).endsWith(u'/') || !OpensLevel(name)) {
      if (tag.capturedView(3).contains(kHugeSpan)) return false;
      continue;
    }
    const int step = tag.capturedLength(1) == 0 ? 1 : -1;
    levels = std::max(levels + step, 0);
    if (name == QStringLiteral("table")) tables = std::max(tables + step, 0);
    if (levels > kMostLevels || tables > kMostTablesInTables) return false;
  }
  return !styling.IsTooMuch(html.size());
}

/// Whether anything stands between the tags of the body, or of all of it when no body begins.
bool HoldsText(const QString& html) {
  const qsizetype body = html.indexOf(QStringLiteral("<body"), 0, Qt::CaseInsensitive);
  QString text = html.sliced(std::max<qsizetype>(body, 0));
  return !text.remove(AnyTag()).trimmed().isEmpty();
}

bool HoldsEndlessWord(const QString& text) {
  qsizetype letters = 0;
  return std::any_of(text.begin(), text.end(), [&letters](QChar c) {
    letters = c.isSpace() ? 0 : letters + 1;
    return letters > kLongestWord;
  });
}

}  // namespace

bool IsRichText(const QString& text) {
  const auto begin =
      std::find_if_not(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
  const QString head(begin, std::min<qsizetype>(text.end() - begin, 16));
  if (!BeginsAs(head, QLatin1String("<!doctype html")) && !BeginsAs(head, QLatin1String("<html")))
    return false;
  return CanBeLaidOut(text);
}

void SelfContainedDocument::Take(const QString& text) {
  const bool rich = IsRichText(text);
  if (rich) {
    WrapFor(QString(text).remove(AnyTag()));
    setHtml(text);
  }
  // A damaged tag can swallow all that follows it. Then its letters are better than nothing.
  if (!rich || (isEmpty() && HoldsText(text))) {
    WrapFor(text);
    setPlainText(text);
  }
  setModified(false);
}

void SelfContainedDocument::WrapFor(const QString& text) {
  clear();
  QTextOption option = defaultTextOption();
  option.setWrapMode(HoldsEndlessWord(text) ? QTextOption::WrapAnywhere
                                            : QTextOption::WrapAtWordBoundaryOrAnywhere);
  setDefaultTextOption(option);
}

QVariant SelfContainedDocument::loadResource(int type, const QUrl& name) {
  // A picture that lies within the text itself.
  if (name.scheme() == QStringLiteral("data")) return QTextDocument::loadResource(type, name);
  return {};
}

}  // namespace kestrix
