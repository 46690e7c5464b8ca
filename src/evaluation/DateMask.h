#pragma once

#include <QDate>
#include <QString>
#include <optional>

namespace kestrix {

/// The rules of a box that takes a date through the mask "__/__/____": which texts are a date, how
/// one is written, and where the next keystroke belongs. It knows no box: it answers with what the
/// box is to show and to select.
class DateMask {
 public:
  /// The mask before anything was typed.
  static inline const QString kEmpty = QStringLiteral("__/__/____");
  /// The places of the mask; a text may be longer than that.
  static constexpr int kPlaces = 10;

  /// The date that a day-first reader sees in `text`: 15/02/2013, 1/2/2013, 1-2-13, 1 Feb 2013.
  /// Years of two digits lie between 1930 and 2029. Nothing for any other text, a day that the
  /// calendar doesn't have included.
  [[nodiscard]] static std::optional<QDate> Read(const QString& text);
  [[nodiscard]] static bool IsDate(const QString& text) { return Read(text).has_value(); }
  /// "dd/mm/yyyy".
  [[nodiscard]] static QString Write(QDate date);

  /// What a box is to show and to select once its text changed.
  struct Outcome {
    QString text;
    int place = 0;            ///< of the cursor, or of the first selected character; from 0
    int selected_length = 0;  ///< 1 on a free place, 0 when none is left
  };
  /// How the box settles after its text became `text`. The first character into an empty box gets
  /// the mask behind it, an emptied box the whole mask, and the next free place is selected, so
  /// that a keystroke fills it and the slashes are stepped over. Nothing for a date: it stays as it
  /// is.
  [[nodiscard]] static std::optional<Outcome> Settle(const QString& text);
};

}  // namespace kestrix
