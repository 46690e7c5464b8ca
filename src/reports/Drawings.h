#pragma once

#include <QColor>
#include <QString>
#include <array>
#include <vector>

#include "estimation/drawing/RiskDrawing.h"
#include "paper/Document.h"
#include "reports/Report.h"

namespace kestrix::reports {

/// All bands in the order in which a page tells them, "Not estimated" first.
inline constexpr std::array kBins{records::Band::kNotEstimated, records::Band::kNoRisk,
                                  records::Band::kLow, records::Band::kMedium,
                                  records::Band::kHigh};

[[nodiscard]] QColor ColourOf(records::Band band);

/// The risk graph or matrix with these marks, in the letters of a page; `told` says the same in
/// words. `counts`, by the matrix's cells, stand beside the words of their bands.
[[nodiscard]] paper::Block Drawn(RiskDrawing::Part part, RiskMarks marks, const QString& told,
                                 const std::vector<int>& counts = {});

/// The matrix with the number of tasks in each cell, below its title.
[[nodiscard]] std::vector<paper::Block> CountMatrix(const QString& title, const Counts& counts);

/// The number of tasks in each band as bars, below their title.
[[nodiscard]] std::vector<paper::Block> BandBars(const QString& title,
                                                 const std::array<int, Counts::kBins>& bands);

}  // namespace kestrix::reports
