#pragma once

#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

#include "reports/Report.h"

namespace kestrix::reports {

/// What stands at the head of every report: name and value, in their order.
[[nodiscard]] std::vector<std::pair<QString, QString>> HeadLines(const Report& report);

/// The filter in words, as the cover and every page tell it; empty for all tasks.
[[nodiscard]] QString FilterText(Only only);

/// How index, class and verdict come about, with the clauses that they follow.
[[nodiscard]] QStringList MethodParagraphs();

}  // namespace kestrix::reports
