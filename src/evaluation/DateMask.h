#pragma once

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
