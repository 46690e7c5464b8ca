#pragma once

#include <QString>
#include <array>
#include <vector>

#include "checks/Finding.h"
#include "records/Computed.h"
#include "records/Source.h"
#include "reports/Options.h"

namespace kestrix::reports {

/// A task of the report with all that is told of it. Every writer tells it from here.
struct Entry {
  records::Task task;
  records::Computed computed;
  records::FileFacts picture_before;
  records::FileFacts picture_after;
  bool overdue = false;
};

struct Link {
  records::LinkedFile link;
  records::FileFacts facts;
};

/// How many tasks stand in each band, "Not estimated" first, and in each cell of the matrix.
struct Counts {
  static constexpr std::size_t kBins = 5;
  std::array<int, kBins> index_bands{};
  std::array<int, kBins> class_bands{};
  std::array<int, model::kMatrixCells.size()> cells{};  ///< in the order of the model's table
};
[[nodiscard]] constexpr std::size_t BinOf(records::Band band) {
  return static_cast<std::size_t>(static_cast<int>(band) + 1);
}

/// What a report says of one project: its tasks, filtered and in order, and what they add up to.
/// It is made once; the writers only tell it.
struct Report {
  Options options;
  records::Organisation organisation;
  records::Project head;  ///< without its tasks and links
  std::vector<Entry> entries;
  std::vector<Link> links;
  std::size_t all_tasks = 0;  ///< of the project, before the filter
  Counts before;
  Counts after;
  int open = 0;
  int overdue = 0;
  std::vector<checks::Finding> findings;
};

/// What a report looks at.
enum class Look {
  kAll,
  kRowsAlone  ///< neither pictures nor linked files, and no rule is asked: enough for the cover
};

/// Reads a project and makes its report. Fails as reading does, and with kFileNotFound where the
/// organisation has no project of that number.
[[nodiscard]] Report MakeReport(records::Source& source, const records::Organisation& organisation,
                                const QString& project, const Options& options,
                                Look look = Look::kAll);

/// Whether a task passes the filter.
[[nodiscard]] bool Passes(const records::Task& task, const records::Computed& computed, Only only);
/// What remains above "Low": the higher band of the stage that counts.
[[nodiscard]] bool IsResidual(const records::Computed& computed);

}  // namespace kestrix::reports
