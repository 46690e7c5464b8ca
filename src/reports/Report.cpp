#include "reports/Report.h"

#include <algorithm>
#include <tuple>

#include "checks/Checker.h"
#include "platform/Failure.h"
#include "store/ReferenceNumber.h"

namespace kestrix::reports {
namespace {

using records::Band;

/// A reference as it is ordered: numbers by their value, then all other texts as texts.
struct ReferenceKey {
  bool is_text = true;
  bool negative = false;
  QString digits;  ///< hundredths; of a text the text itself

  explicit ReferenceKey(const QString& reference) : digits(reference) {
    std::optional<QString> number = ReferenceNumber(reference);
    if (!number) return;
    is_text = false;
    negative = number->startsWith(u'-');
    digits = number->remove(u'-').remove(u'.');
  }

  friend bool operator<(const ReferenceKey& a, const ReferenceKey& b) {
    if (a.is_text != b.is_text) return b.is_text;
    if (a.is_text) return a.digits < b.digits;
    if (a.negative != b.negative) return a.negative;
    const auto size_then_digits = [](const ReferenceKey& key) {
      return std::tuple(key.digits.size(), key.digits);
    };
    return a.negative ? size_then_digits(b) < size_then_digits(a)
                      : size_then_digits(a) < size_then_digits(b);
  }
};

/// Ties stay in the order of `nunberauto`, in which the tasks come.
template <class Key>
void SortBy(std::vector<Entry>& entries, Key key) {
  std::vector<std::pair<decltype(key(entries.front())), std::size_t>> keys;
  keys.reserve(entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) keys.emplace_back(key(entries[i]), i);
  std::stable_sort(keys.begin(), keys.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<Entry> sorted;
  sorted.reserve(entries.size());
  for (const auto& [unused, place] : keys) sorted.push_back(std::move(entries[place]));
  entries = std::move(sorted);
}

void Sort(std::vector<Entry>& entries, Order order) {
  if (entries.empty()) return;
  switch (order) {
    case Order::kReference:
      return SortBy(entries, [](const Entry& e) { return ReferenceKey(e.task.reference); });
    case Order::kRisk:
      // The greatest first; what isn't estimated has no index to come first with.
      return SortBy(entries, [](const Entry& e) {
        const auto& before = e.computed.before;
        return std::tuple(-(before.estimated ? *before.index : -1), -before.class_score);
      });
    case Order::kPhase:
      return SortBy(entries, [](const Entry& e) { return e.task.phase; });
    case Order::kLocation:
      return SortBy(entries, [](const Entry& e) { return e.task.location; });
  }
}

void Count(const records::ComputedStage& stage, Counts& counts) {
  ++counts.index_bands[BinOf(IndexBandOf(stage))];
  ++counts.class_bands[BinOf(ClassBandOf(stage))];
  if (stage.cell != nullptr) {
    ++counts.cells[static_cast<std::size_t>(stage.cell - model::kMatrixCells.data())];
  }
}

}  // namespace

bool Passes(const records::Task& task, const records::Computed& computed, Only only) {
  const Band band = HigherBandOf(computed.Final());
  switch (only) {
    case Only::kAll:
      return true;
    case Only::kOpen:
      return IsOpen(task);
    case Only::kMedium:
      return band >= Band::kMedium;
    case Only::kHigh:
      return band >= Band::kHigh;
    case Only::kNotReduced:
      return !computed.reduced && (task.before.index != 0 || task.after.index != 0);
  }
  return true;
}

bool IsResidual(const records::Computed& computed) {
  return HigherBandOf(computed.Final()) > Band::kLow;
}

Report MakeReport(records::Source& source, const records::Organisation& organisation,
                  const QString& project, const Options& options, Look look) {
  std::optional<records::Project> read = source.ReadProject(organisation, project);
  if (!read) {
    throw Failure(
        failure::kFileNotFound,
        QStringLiteral("%1 has no project with the number %2.").arg(organisation.name, project));
  }
  Report report;
  report.options = options;
  report.organisation = organisation;
  report.all_tasks = read->tasks.size();
  const bool looks = look == Look::kAll;
  if (looks)
    report.findings = checks::Checker(source, options.date).CheckProject(organisation, *read);
  for (records::LinkedFile& link : read->links) {
    const records::FileFacts facts = looks ? source.LookAtFile(link.path) : records::FileFacts();
    report.links.push_back({std::move(link), facts});
  }
  for (records::Task& task : read->tasks) {
    records::Computed computed = Compute(task);
    if (!Passes(task, computed, options.only)) continue;
    Entry entry{std::move(task), std::move(computed), {}, {}, false};
    entry.overdue = IsOverdue(entry.task, options.date);
    if (looks) {
      entry.picture_before = source.LookAtPicture(organisation, entry.task.before.picture);
      entry.picture_after = source.LookAtPicture(organisation, entry.task.after.picture);
    }
    report.open += IsOpen(entry.task) ? 1 : 0;
    report.overdue += entry.overdue ? 1 : 0;
    Count(entry.computed.before, report.before);
    Count(entry.computed.after, report.after);
    report.entries.push_back(std::move(entry));
  }
  Sort(report.entries, options.order);
  read->tasks.clear();
  read->links.clear();
  report.head = std::move(*read);
  return report;
}

}  // namespace kestrix::reports
