#include "reports/Html.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <map>
#include <tuple>

#include "paper/Layout.h"

namespace kestrix::reports {
namespace {

using namespace paper;

// Dots of a drawing or picture to the millimetre: sharp on a screen of 150 dots per inch.
constexpr double kDotsOfAMm = 6;
constexpr double kDotsOfAMmOnScreen = 96 / 25.4;

constexpr auto kStyle =
    "body{font-family:sans-serif;font-size:10pt;color:#1c1c1c;background:#fff;max-width:60em;"
    "margin:2em auto;padding:0 1em}"
    "h1,h2{color:#0b4f8a}table{border-collapse:collapse;width:100%;margin:.5em 0}"
    "th,td{border:1px solid #9aa3af;padding:.25em .4em;text-align:left;vertical-align:top;"
    "overflow-wrap:anywhere}th{background:#eef1f5}.right{text-align:right}"
    ".mark{border-left:.5em solid}.small{font-size:8pt}.columns{display:flex;gap:1em}"
    ".columns>div{flex:1;min-width:0}img{max-width:100%}.missing{border:1px solid #9aa3af;"
    "padding:.5em;display:inline-block}"
    "@media print{.page{break-before:page}thead{display:table-header-group}tr{break-inside:avoid}"
    "h1,h2,h3{break-after:avoid}.together{break-inside:avoid}}";

/// What a text may hold in HTML: control characters have no place there.
QString Escaped(const QString& text) {
  QString escaped = text;
  for (QChar& c : escaped) {
    const bool is_control = c.unicode() < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
    if (is_control || c.unicode() == 0x7F) c = QChar::ReplacementCharacter;
  }
  return escaped.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"));
}

QString DataUrl(const QByteArray& bytes, const QString& type) {
  return QStringLiteral("data:%1;base64,%2").arg(type, QString::fromLatin1(bytes.toBase64()));
}

QString Url(const QImage& image, const char* format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format);
  return DataUrl(bytes, QStringLiteral("image/") + QString::fromLatin1(format).toLower());
}

class Html {
 public:
  void Add(const std::vector<Block>& blocks) {
    for (const Block& block : blocks) std::visit(*this, block.is);
  }

  void operator()(const Heading& heading) {
    const int level = std::clamp(heading.level, 1, 6);
    Say(QStringLiteral("<h%1 id=\"%2\">%3</h%1>\n")
            .arg(QString::number(level), Escaped(heading.anchor), Escaped(heading.text)));
  }
  void operator()(const Paragraph& paragraph) {
    switch (paragraph.style) {
      case Paragraph::Style::kTitle:
        return Element(QStringLiteral("h1"), {}, paragraph.text);
      case Paragraph::Style::kSmall:
        return Element(QStringLiteral("p"), QStringLiteral("small"), paragraph.text);
      case Paragraph::Style::kSubtitle:
      case Paragraph::Style::kBody:
        return Element(QStringLiteral("p"), {}, paragraph.text);
    }
  }
  void operator()(const Picture& picture) {
    QString why = picture.missing;
    QImage image;
    if (!picture.pixels.isEmpty() && picture.read) {
      image = ImageOf(picture, (picture.most * kDotsOfAMm).toSize(), why);
    }
    if (image.isNull()) {
      return Say(QStringLiteral("<p class=\"missing\">%1</p>\n").arg(Escaped(why)));
    }
    // A photograph stays one: it would be many times as large as PNG.
    Image(picture.is_photograph ? Url(image, "JPEG") : Url(image, "PNG"),
          (image.size().toSizeF() / kDotsOfAMm * kDotsOfAMmOnScreen).toSize(), picture.name);
  }
  void operator()(const Drawing& drawing) {
    QString& url =
        drawn_[{drawing.name, qRound(drawing.size.width()), qRound(drawing.size.height())}];
    if (url.isEmpty() || drawing.name.isEmpty()) {
      QImage image((drawing.size * kDotsOfAMm).toSize(), QImage::Format_RGB32);
      image.fill(Qt::white);
      QPainter painter(&image);
      painter.setRenderHint(QPainter::Antialiasing);
      drawing.paint(painter, image.rect());
      painter.end();
      // It has few colours, and stands in the file once for each task.
      url = Url(image.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither), "PNG");
    }
    Image(url, (drawing.size * kDotsOfAMmOnScreen).toSize(), drawing.told);
  }
  void operator()(const Table& table) {
    Say(table.small ? QStringLiteral("<table class=\"small\">\n") : QStringLiteral("<table>\n"));
    if (!table.head.empty()) {
      Say(QStringLiteral("<thead><tr>"));
      for (std::size_t column = 0; column < table.head.size(); ++column) {
        const bool right = !table.rows.empty() && table.rows.front()[column].right;
        Say(QStringLiteral("<th%1>%2</th>")
                .arg(right ? QStringLiteral(" class=\"right\"") : QString(),
                     Escaped(table.head[column])));
      }
      Say(QStringLiteral("</tr></thead>\n"));
    }
    Say(QStringLiteral("<tbody>\n"));
    for (const std::vector<Cell>& row : table.rows) {
      Say(QStringLiteral("<tr>"));
      for (std::size_t column = 0; column < row.size(); ++column) {
        AddCell(row[column], table.head.empty() && column == 0);
      }
      Say(QStringLiteral("</tr>\n"));
    }
    Say(QStringLiteral("</tbody></table>\n"));
  }
  void operator()(const Columns& columns) {
    Say(QStringLiteral("<div class=\"columns\">\n"));
    for (const std::vector<Block>& column : columns.columns) {
      Say(QStringLiteral("<div>\n"));
      Add(column);
      Say(QStringLiteral("</div>\n"));
    }
    Say(QStringLiteral("</div>\n"));
  }
  void operator()(const Together& together) {
    Say(QStringLiteral("<div class=\"together\">\n"));
    Add(together.blocks);
    Say(QStringLiteral("</div>\n"));
  }
  void operator()(const PageBreak& /*page_break*/) {
    // As word processors take it, too.
    Say(QStringLiteral("<p class=\"page\" style=\"page-break-before:always\"></p>\n"));
  }
  void operator()(const Rule& /*rule*/) { Say(QStringLiteral("<hr>\n")); }

  [[nodiscard]] QByteArray Bytes() const { return html_; }
  void Say(const QString& html) { html_ += html.toUtf8(); }

 private:
  [[nodiscard]] static QString Runs(const Text& text) {
    QString html;
    for (const Run& run : text) {
      QString part = Escaped(run.text);
      if (run.face == Face::kBold) part = QStringLiteral("<b>%1</b>").arg(part);
      if (run.face == Face::kItalic) part = QStringLiteral("<i>%1</i>").arg(part);
      if (run.face == Face::kTyped) part = QStringLiteral("<code>%1</code>").arg(part);
      if (!run.link.isEmpty()) {
        part = QStringLiteral("<a href=\"#%1\">%2</a>").arg(Escaped(run.link), part);
      }
      html += part;
    }
    return html;
  }

  void Element(const QString& name, const QString& of_class, const Text& text) {
    const QString attribute =
        of_class.isEmpty() ? QString() : QStringLiteral(" class=\"%1\"").arg(of_class);
    Say(u'<' + name + attribute + u'>' + Runs(text) + QStringLiteral("</") + name +
        QStringLiteral(">\n"));
  }

  void AddCell(const Cell& cell, bool is_head) {
    QString classes;
    QString style;
    if (cell.right) classes = QStringLiteral(" class=\"right\"");
    if (cell.mark) {
      classes = QStringLiteral(" class=\"mark\"");
      style = QStringLiteral(" style=\"border-left-color:%1\"").arg(cell.mark->name());
    }
    const QString name = is_head ? QStringLiteral("th") : QStringLiteral("td");
    Say(u'<' + name + classes + style + u'>' + Runs(cell.text) + QStringLiteral("</") + name +
        u'>');
  }

  void Image(const QString& url, QSize shown, const QString& told) {
    Say(QStringLiteral("<p><img src=\"%1\" width=\"%2\" height=\"%3\" alt=\"%4\"></p>\n")
            .arg(url, QString::number(shown.width()), QString::number(shown.height()),
                 Escaped(told)));
  }

  QByteArray html_;
  std::map<std::tuple<QString, int, int>, QString> drawn_;  ///< by name, width and height
};

}  // namespace

QByteArray HtmlBytes(const Document& document) {
  Html html;
  html.Say(QStringLiteral("<!DOCTYPE html>\n<html lang=\"%1\">\n<head>\n<meta charset=\"utf-8\">\n"
                          "<meta name=\"author\" content=\"%2\">\n<title>%3</title>\n<style>%4"
                          "</style>\n</head>\n<body>\n")
               .arg(Escaped(document.language), Escaped(document.author), Escaped(document.title),
                    QLatin1String(kStyle)));
  html.Add(document.cover);
  html.Add(document.body);
  html.Say(QStringLiteral("<hr>\n<p class=\"small\">%1</p>\n</body>\n</html>\n")
               .arg(Escaped(document.foot)));
  return html.Bytes();
}

}  // namespace kestrix::reports
