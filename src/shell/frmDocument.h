#pragma once

#include <QString>
#include <QWidget>
#include <memory>

namespace kestrix {

class Frame;
class Printing;
class SelfContainedDocument;
struct SessionState;

namespace Ui {
class frmDocument;
}

/// A child of the frame with one rich-text box, `rtfText`. While one exists, the way to the
/// organisations is open. Its caption is the name of its file, once it has one, and the only place
/// where that is kept. It never asks whether a changed text is to be saved.
class frmDocument : public QWidget {
  Q_OBJECT

 public:
  /// Made and loaded in one: opens the way to the organisations. The count of children is kept by
  /// whoever makes them, and goes down here when a child closes.
  frmDocument(SessionState& session, Frame& frame);
  ~frmDocument() override;

  [[nodiscard]] QString Caption() const { return windowTitle(); }
  void SetCaption(const QString& caption) { setWindowTitle(caption); }
  /// It is on its way out, and no child of the frame any more.
  [[nodiscard]] bool IsClosed() const { return closed_; }
  /// No file was ever put into it, and nobody has typed into it.
  [[nodiscard]] bool IsUntouched() const;

  void SetText(const QString& text);
  /// Fail as ReadDocument and WriteDocument do, LoadFile also for a text that is too large to be
  /// shown.
  void LoadFile(const QString& path);
  void SaveFile(const QString& path);

  [[nodiscard]] bool HasSelection() const;
  /// The selection as rich text.
  [[nodiscard]] QString SelRTF() const;
  /// Puts `text`, rich or plain, in place of the selection. Fails with kInvalidCall when there is
  /// no room for it.
  void SetSelRTF(const QString& text);
  void RemoveSelection();
  /// Prints the selection, or all of the text when there is none. Fails as Printing does.
  void SelPrint(Printing& printing) const;

 Q_SIGNALS:
  /// A text was pasted or dropped by hand; it is to go in by SetSelRTF.
  void Pasting(const QString& text);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void Form_Resize();
  void Form_Unload();

  SessionState& session_;
  Frame& frame_;
  std::unique_ptr<Ui::frmDocument> ui_;
  SelfContainedDocument* document_ = nullptr;  ///< of rtfText, which owns it
  bool closed_ = false;
};

}  // namespace kestrix
