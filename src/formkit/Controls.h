#pragma once

#include <QColor>
#include <QPalette>
#include <QRgb>
#include <QStringList>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QWidget;

namespace kestrix {

/// Shows the wait cursor while it lives. It may be put back early, once.
class WaitCursor {
 public:
  WaitCursor();
  ~WaitCursor();
  Q_DISABLE_COPY_MOVE(WaitCursor)
  void Restore();

 private:
  bool waiting_ = true;
};

/// Colours that the rules give as red-green-blue numbers.
namespace colour {
inline constexpr QRgb kWarning = 0xFFFFE0C0;     ///< a field that has to be mended
inline constexpr QRgb kPaleYellow = 0xFFFFFF80;  ///< a name, or the field in hand
}  // namespace colour

/// Paints the back of a label, a box or a frame, enabled or not, with a text colour that can be
/// read on it. SetSystemBack gives the colours of the desktop back. BackColour tells the colour in
/// force.
void SetBackColour(QWidget* control, QRgb colour);
void SetSystemBack(QWidget* control);
[[nodiscard]] QRgb BackColour(const QWidget* control);
/// How far apart two colours are to the eye: 1 for the same one, 21 for black and white.
[[nodiscard]] double Contrast(const QColor& one, const QColor& other);
/// The colour that a control that acts as a link is written in: the desktop's colour of links where
/// it stands out from the panel, the panel's own text colour where it doesn't.
[[nodiscard]] QPalette::ColorRole LinkRole(const QWidget* control);

/// How much larger the font of a control is than the one that the forms are designed with; at
/// least 1.
[[nodiscard]] qreal FontScale(const QWidget* control);

/// An editable combo box that takes exactly what is typed: nothing is completed, inserted or
/// changed by the wheel over it, and a text that nobody types shows its beginning. Form applies it
/// to every combo box that it holds.
void SettleCombo(QComboBox* combo);

/// Replaces the entries of a combo box, and takes its text away; none of them is chosen.
void FillCombo(QComboBox* combo, const QStringList& entries);

/// A text box, of one line or several, that takes no typing, and looks so; its text can be selected
/// and copied. Does nothing to any other control.
void SetLocked(QWidget* box, bool locked);

/// The line that is typed into: a box of one line itself, or that of a combo box; else null.
[[nodiscard]] QLineEdit* LineOf(QWidget* control);
/// The text of a tool tip that reads `text` as it is: a name with angle brackets is no markup.
[[nodiscard]] QString PlainTip(const QString& text);

/// What `box` shows of a stored text, and gives back as long as nobody changes it: no more than it
/// takes, and in several lines with one kind of line end.
[[nodiscard]] QString ShownIn(const QLineEdit* box, const QString& text);
[[nodiscard]] QString ShownIn(const QPlainTextEdit* box, const QString& text);
/// Shows a long text from its beginning, except where somebody is typing.
void ShowBeginning(QLineEdit* box);
/// Selects the whole text of a box that gets the focus, behind the press that brought it.
void SelectWhole(QLineEdit* box);
/// Ctrl+F and F3 lead to the find box of a form.
void GiveFindKeys(QLineEdit* box);
/// Selects the whole text of a text box or combo box that gets the focus with nothing but a
/// placeholder in it, so that typing replaces it.
void SelectPlaceholder(QWidget* control);

}  // namespace kestrix
