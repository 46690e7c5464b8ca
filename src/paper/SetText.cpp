#include "paper/SetText.h"

#include <QTextOption>
#include <utility>

#include "paper/Style.h"

namespace kestrix::paper {

SetText::SetText(QString text, Formats formats, QFont font, double width, bool right)
    : text_(std::move(text)),
      formats_(std::move(formats)),
      font_(std::move(font)),
      width_(width),
      right_(right) {
  const auto shaped = Shaped();
  lines_.reserve(static_cast<std::size_t>(shaped->lineCount()));
  for (int i = 0; i < shaped->lineCount(); ++i) {
    const QTextLine line = shaped->lineAt(i);
    lines_.push_back({line.textStart(), line.textLength(), line.y(), line.height() * kLeading});
  }
}

QString SetText::CharactersOf(int line) const {
  const Line& on = LineAt(line);
  return text_.mid(on.start, on.length);
}

std::unique_ptr<QTextLayout> SetText::Shaped() const {
  auto shaped = std::make_unique<QTextLayout>(text_, font_);
  QTextOption option(right_ ? Qt::AlignRight : Qt::AlignLeft);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  shaped->setTextOption(option);
  shaped->setFormats(formats_);
  shaped->setCacheEnabled(true);
  shaped->beginLayout();
  double y = 0;
  for (QTextLine line = shaped->createLine(); line.isValid(); line = shaped->createLine()) {
    line.setLineWidth(width_);
    line.setPosition({0, y});
    y += line.height() * kLeading;
  }
  shaped->endLayout();
  return shaped;
}

}  // namespace kestrix::paper
