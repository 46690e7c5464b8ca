#include "shell/frmDocument.h"

#include <QCloseEvent>
#include <QTextDocumentFragment>
#include <algorithm>
#include <utility>

#include "platform/Failure.h"
#include "platform/Measures.h"
#include "platform/Services.h"
#include "shell/DocumentFile.h"
#include "shell/Frame.h"
#include "shell/RichText.h"
#include "shell/SessionState.h"
#include "ui_frmDocument.h"

namespace kestrix {
namespace {

// In twips.
constexpr int kMargin = 100;
constexpr int kMargins = 200;
constexpr int kRightMargin = 400;

int NearestPixel(int twips) {
  return (twips + kTwipsPerPixel / 2) / kTwipsPerPixel;
}

}  // namespace

frmDocument::frmDocument(SessionState& session, Frame& frame)
    : session_(session), frame_(frame), ui_(std::make_unique<Ui::frmDocument>()) {
  ui_->setupUi(this);
  document_ = new SelfContainedDocument(ui_->rtfText);
  ui_->rtfText->setDocument(document_);
  connect(ui_->rtfText, &RichTextBox::Pasting, this, &frmDocument::Pasting);
  Form_Resize();
  frame_.EnableData(true);
}

frmDocument::~frmDocument() = default;

void frmDocument::Form_Resize() {
  const int room = TwipsFromPixels(width()) - kMargins;
  const int height_room = TwipsFromPixels(height()) - kMargins;
  // A child too small for the margins leaves the box where it was.
  if (room >= 0 && height_room >= 0)
    ui_->rtfText->setGeometry(NearestPixel(kMargin), NearestPixel(kMargin), PixelsFromTwips(room),
                              PixelsFromTwips(height_room));
  const int right_margin = PixelsFromTwips(TwipsFromPixels(ui_->rtfText->width()) - kRightMargin);
  if (right_margin <= 0) return;
  ui_->rtfText->setLineWrapMode(QTextEdit::FixedPixelWidth);
  ui_->rtfText->setLineWrapColumnOrWidth(right_margin);
}

void frmDocument::Form_Unload() {
  --session_.DocumentCount;
  // The count follows the running number and may be above what is open.
  const auto children = window()->findChildren<frmDocument*>();
  const auto is_closed = [](const frmDocument* child) { return child->IsClosed(); };
  if (std::all_of(children.begin(), children.end(), is_closed)) frame_.EnableData(false);
  frame_.SetStatusText(Frame::kTitle);
}

void frmDocument::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Form_Resize();
}

void frmDocument::closeEvent(QCloseEvent* event) {
  event->accept();
  if (std::exchange(closed_, true)) return;
  Form_Unload();
}

bool frmDocument::IsUntouched() const {
  return Caption().isEmpty() && !document_->isModified();
}

void frmDocument::SetText(const QString& text) {
  ui_->rtfText->setPlainText(text);
  document_->setModified(false);
}

void frmDocument::LoadFile(const QString& path) {
  if (!document_->Take(ReadDocument(path)))
    throw Failure(failure::kInvalidCall,
                  QStringLiteral("Failed to open \"%1\": it is too large to be shown.").arg(path));
}

void frmDocument::SaveFile(const QString& path) {
  WriteDocument(path, document_->toHtml());
  document_->setModified(false);
}

bool frmDocument::HasSelection() const {
  return ui_->rtfText->textCursor().hasSelection();
}

QString frmDocument::SelRTF() const {
  return HasSelection() ? ui_->rtfText->textCursor().selection().toHtml() : QString();
}

void frmDocument::SetSelRTF(const QString& text) {
  if (!document_->HasRoomFor(text))
    throw Failure(failure::kInvalidCall,
                  QStringLiteral("Failed to paste: the text is too large to be shown."));
  QTextCursor cursor = ui_->rtfText->textCursor();
  if (KindOf(text) == TextKind::kRich) {
    cursor.insertHtml(text);
  } else {
    cursor.insertText(text);
  }
  ui_->rtfText->setTextCursor(cursor);
  ui_->rtfText->ensureCursorVisible();
}

void frmDocument::RemoveSelection() {
  ui_->rtfText->textCursor().removeSelectedText();
}

void frmDocument::SelPrint(Printing& printing) const {
  if (!HasSelection()) return printing.Print(*document_);
  SelfContainedDocument selection;
  selection.setDefaultFont(document_->defaultFont());
  QTextCursor(&selection).insertFragment(ui_->rtfText->textCursor().selection());
  printing.Print(selection);
}

}  // namespace kestrix
