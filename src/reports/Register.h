#pragma once

#include <QDate>
#include <QString>
#include <optional>
#include <span>

#include "reports/Report.h"

namespace kestrix::reports {

/// What one field of the register tells: a text, and the number, date or band that it is where it
/// is one.
struct Cell {
  QString text;
  std::optional<int> number;
  std::optional<QDate> date;
  std::optional<records::Band> band;
};

/// One column of the register: its head, and what it tells of a task.
struct Column {
  QStringView head;
  Cell (*of)(const Entry& entry);
};

/// All columns, in the order in which every register has them. Texts are the stored ones.
[[nodiscard]] std::span<const Column> RegisterColumns();

/// The index of a stage as every page tells it: the number that its levels give, with the stored
/// one where that differs; "Not estimated" where they give none.
[[nodiscard]] Cell IndexCell(const records::ComputedStage& computed, const records::Stage& stored);

/// The date of a task's action.
[[nodiscard]] Cell ActionDate(const Entry& entry);
/// The tasks with an open action, by person and date; what has no date comes last.
[[nodiscard]] std::vector<const Entry*> OpenActions(const Report& report);

}  // namespace kestrix::reports
