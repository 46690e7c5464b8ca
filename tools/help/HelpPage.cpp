#include "HelpPage.h"

namespace kestrix::help {
namespace {

using Kind = Block::Kind;

const char* const kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8"/>
<meta name="viewport" content="width=device-width, initial-scale=1"/>
<meta name="color-scheme" content="light dark"/>
<title>%1</title>
<style>
:root { color-scheme: light dark; --text: #1c1c1c; --paper: #ffffff; --soft: #f1f4f8;
  --line: #c3cad4; --lead: #0b4f8a; }
@media (prefers-color-scheme: dark) {
  :root { --text: #e6e6e6; --paper: #16181b; --soft: #22262b; --line: #454c55; --lead: #8fc4f4; }
}
body { margin: 0 auto; padding: 1.5rem; max-width: 60rem; font: 1rem/1.55 sans-serif;
  color: var(--text); background: var(--paper); }
h1, h2, h3 { line-height: 1.25; color: var(--lead); }
h2 { margin-top: 2.2rem; border-bottom: 1px solid var(--line); padding-bottom: 0.2rem; }
figure { margin: 1.2rem 0; }
img { max-width: 100%; height: auto; border: 1px solid var(--line); }
figcaption { font-size: 0.9rem; font-style: italic; }
li { margin: 0.3rem 0; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; margin: 1rem 0; }
th, td { border: 1px solid var(--line); padding: 0.35rem 0.6rem; text-align: left;
  vertical-align: top; }
th, dt { background: var(--soft); }
dt { margin-top: 0.9rem; padding: 0.3rem 0.6rem; border-left: 4px solid var(--lead);
  font-weight: bold; }
dt + dt { margin-top: 0; }
dd { margin: 0.3rem 0 0 0.9rem; }
code { font-size: 0.95em; }
a { color: var(--lead); }
nav ul { columns: 20rem; list-style: none; padding: 0; }
</style>
</head>
<body>
)";

QString Html(const Line& line) {
  QString html;
  for (const Run& run : line) {
    const QString text = run.text.toHtmlEscaped();
    switch (run.face) {
      case Run::Face::kPlain:
        html += text;
        break;
      case Run::Face::kCaption:
        html += QStringLiteral("<b>") + text + QStringLiteral("</b>");
        break;
      case Run::Face::kTyped:
        html += QStringLiteral("<code>") + text + QStringLiteral("</code>");
        break;
      case Run::Face::kVariable:
        html += QStringLiteral("<i>") + text + QStringLiteral("</i>");
        break;
      case Run::Face::kLink:
        html += QStringLiteral("<a href=\"#%1\">%2</a>").arg(run.target, text);
        break;
    }
  }
  return html;
}

QString Element(const char* name, const Line& line) {
  return QStringLiteral("<%1>%2</%1>\n").arg(QLatin1String(name), Html(line));
}

/// Writes the blocks one behind the other, and opens and closes the lists around them.
class Writer {
 public:
  explicit Writer(const Pictures& pictures) : pictures_(pictures) {}

  void Write(const Block& block) {
    Enter(block.kind);
    switch (block.kind) {
      case Kind::kChapter:
      case Kind::kSection:
        html_ +=
            QStringLiteral("<%1 id=\"%2\">%3</%1>\n")
                .arg(block.kind == Kind::kChapter ? QStringLiteral("h2") : QStringLiteral("h3"),
                     block.anchor, Html(block.line));
        break;
      case Kind::kParagraph:
        html_ += Element("p", block.line);
        break;
      case Kind::kBullet:
      case Kind::kStep:
        html_ += Element("li", block.line);
        break;
      case Kind::kMessage:
        for (const Line& message : block.messages) html_ += Element("dt", message);
        html_ += Element("dd", block.line);
        break;
      case Kind::kPicture:
        WritePicture(block);
        break;
      case Kind::kTable:
        WriteTable(block);
        break;
    }
  }

  [[nodiscard]] QString Close() {
    Enter(Kind::kParagraph);
    return std::move(html_);
  }

 private:
  void Enter(Kind kind) {
    const QLatin1String wanted = ListAround(kind);
    if (wanted == open_) return;
    if (!open_.isEmpty()) html_ += QStringLiteral("</%1>\n").arg(open_);
    if (!wanted.isEmpty()) html_ += QStringLiteral("<%1>\n").arg(wanted);
    open_ = wanted;
  }

  [[nodiscard]] static QLatin1String ListAround(Kind kind) {
    if (kind == Kind::kBullet) return QLatin1String("ul");
    if (kind == Kind::kStep) return QLatin1String("ol");
    if (kind == Kind::kMessage) return QLatin1String("dl");
    return QLatin1String("");
  }

  void WritePicture(const Block& block) {
    const QSize size = pictures_.Image(block.picture).size();
    const QString shows = help::PlainText(block.line).toHtmlEscaped();
    html_ += QStringLiteral("<figure><img alt=\"%1\" width=\"%2\" height=\"%3\" src=\"")
                 .arg(shows)
                 .arg(size.width())
                 .arg(size.height());
    html_ += QStringLiteral("data:image/png;base64,");
    html_ += QString::fromLatin1(pictures_.Bytes(block.picture).toBase64());
    html_ += QStringLiteral("\"/><figcaption>") + Html(block.line) +
             QStringLiteral("</figcaption></figure>\n");
  }

  void WriteTable(const Block& block) {
    html_ += QStringLiteral("<div class=\"scroll\"><table>\n<thead>\n");
    for (size_t row = 0; row < block.rows.size(); ++row) {
      html_ += QStringLiteral("<tr>\n");
      for (const Line& cell : block.rows[row]) html_ += Element(row == 0 ? "th" : "td", cell);
      html_ += QStringLiteral("</tr>\n");
      if (row == 0) html_ += QStringLiteral("</thead>\n<tbody>\n");
    }
    html_ += QStringLiteral("</tbody>\n</table></div>\n");
  }

  const Pictures& pictures_;
  QLatin1String open_{""};
  QString html_;
};

}  // namespace

QByteArray HelpPage(const Manual& manual, const Pictures& pictures) {
  Writer writer(pictures);
  QString contents;
  for (const Block& block : manual.blocks) {
    writer.Write(block);
    if (block.kind == Kind::kChapter)
      contents +=
          QStringLiteral("<li><a href=\"#%1\">%2</a></li>\n").arg(block.anchor, Html(block.line));
  }
  const QString title = manual.title.toHtmlEscaped();
  return (QString::fromLatin1(kHead).arg(title) +
          QStringLiteral("<h1>%1</h1>\n<nav><ul>\n%2</ul></nav>\n").arg(title, contents) +
          writer.Close() + QStringLiteral("</body>\n</html>\n"))
      .toUtf8();
}

}  // namespace kestrix::help
