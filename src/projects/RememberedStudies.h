#pragma once

#include <QString>
#include <array>

namespace kestrix {

/// What the project form remembers of the organisations that were worked on while it is loaded: for
/// up to three of them the study number that was shown last. Slots count from 1 to 3 and are given
/// in that order; a fourth organisation is not remembered. Names are the captions that the form
/// shows, compared exactly.
///
/// A slot that was never used has an empty name, so an empty caption finds it.
class RememberedStudies {
 public:
  static constexpr int kSlots = 3;

  /// The first slot of `organisation`; 0 when it has none.
  [[nodiscard]] int SlotOf(const QString& organisation) const;
  /// Whether `slot` has this name; false for a slot that doesn't exist.
  [[nodiscard]] bool IsNamed(int slot, const QString& organisation) const;
  /// Whether `slot` has this name and this number; false for a slot that doesn't exist.
  [[nodiscard]] bool Holds(int slot, const QString& organisation, qint16 study_no) const;

  /// Keeps `study_no` in the organisation's slot, or in the first free one. Gives the slot, or 0
  /// when all are taken by others; nothing is kept then.
  int Remember(const QString& organisation, qint16 study_no);
  /// Frees all slots. Their numbers stay.
  void ForgetNames();

 private:
  struct Slot {
    QString organisation;
    qint16 study_no = 0;
  };

  std::array<Slot, kSlots> slots_;
};

}  // namespace kestrix
