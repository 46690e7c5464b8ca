#include "reports/Register.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "store/StoredDate.h"

namespace kestrix::reports {
namespace {

using model::Parameter;
using records::ComputedStage;
using records::Stage;
using records::Task;

Cell Text(const QString& text) {
  return {text, {}, {}, {}};
}

Cell Number(qint64 number) {
  return {QString::number(number), static_cast<int>(number), {}, {}};
}

template <QString Task::*member>
Cell TextOfTask(const Entry& entry) {
  return Text(entry.task.*member);
}

template <QString Task::*member>
Cell DateOfTask(const Entry& entry) {
  const QString& text = entry.task.*member;
  return {text, {}, ReadDate(text), {}};
}

Cell BandCell(records::Band band) {
  return {TextOf(band), {}, {}, band};
}

Cell Taken(const Entry& entry) {
  return Text(entry.task.action_taken ? QStringLiteral("Yes") : QStringLiteral("No"));
}

Cell Verdict(const Entry& entry) {
  return Text(entry.computed.VerdictText());
}

template <Stage Task::*stage, Parameter parameter>
Cell Level(const Entry& entry) {
  return Text((entry.task.*stage).levels[model::IndexOf(parameter)]);
}

template <Stage Task::*stage>
const ComputedStage& ComputedOf(const Entry& entry) {
  return stage == &Task::before ? entry.computed.before : entry.computed.after;
}

template <Stage Task::*stage>
Cell Index(const Entry& entry) {
  return IndexCell(ComputedOf<stage>(entry), entry.task.*stage);
}

template <Stage Task::*stage>
Cell IndexBand(const Entry& entry) {
  return BandCell(IndexBandOf(ComputedOf<stage>(entry)));
}

template <Stage Task::*stage>
Cell Class(const Entry& entry) {
  return Number(ComputedOf<stage>(entry).class_score);
}

template <Stage Task::*stage>
Cell ClassBand(const Entry& entry) {
  return BandCell(ClassBandOf(ComputedOf<stage>(entry)));
}

constexpr std::array kColumns{
    Column{u"Reference", TextOfTask<&Task::reference>},
    Column{u"Task", TextOfTask<&Task::title>},
    Column{u"Location", TextOfTask<&Task::location>},
    Column{u"Phase", TextOfTask<&Task::phase>},
    Column{u"Primary hazard", TextOfTask<&Task::hazard>},
    Column{u"Hazard type", TextOfTask<&Task::hazard_type>},
    Column{u"Description", TextOfTask<&Task::description>},
    Column{u"Recommendation", TextOfTask<&Task::recommendation>},
    Column{u"Recommendation type", TextOfTask<&Task::recommendation_type>},
    Column{u"Action by", TextOfTask<&Task::action_by>},
    Column{u"Action date", DateOfTask<&Task::action_date>},
    Column{u"Taken", Taken},
    Column{u"Date", DateOfTask<&Task::date>},
    Column{u"Before: Severity", Level<&Task::before, Parameter::kSeverity>},
    Column{u"Before: Exposure", Level<&Task::before, Parameter::kExposure>},
    Column{u"Before: Occurrence", Level<&Task::before, Parameter::kOccurrence>},
    Column{u"Before: Avoidance", Level<&Task::before, Parameter::kAvoidance>},
    Column{u"Before: Index", Index<&Task::before>},
    Column{u"Before: Index band", IndexBand<&Task::before>},
    Column{u"Before: Class", Class<&Task::before>},
    Column{u"Before: Class band", ClassBand<&Task::before>},
    Column{u"After: Severity", Level<&Task::after, Parameter::kSeverity>},
    Column{u"After: Exposure", Level<&Task::after, Parameter::kExposure>},
    Column{u"After: Occurrence", Level<&Task::after, Parameter::kOccurrence>},
    Column{u"After: Avoidance", Level<&Task::after, Parameter::kAvoidance>},
    Column{u"After: Index", Index<&Task::after>},
    Column{u"After: Index band", IndexBand<&Task::after>},
    Column{u"After: Class", Class<&Task::after>},
    Column{u"After: Class band", ClassBand<&Task::after>},
    Column{u"Verdict", Verdict},
};

}  // namespace

Cell IndexCell(const ComputedStage& computed, const Stage& stored) {
  if (!computed.estimated) {
    const QString text = TextOf(records::Band::kNotEstimated);
    if (stored.index == 0) return Text(text);
    return Text(QStringLiteral("%1 (stored: %2)").arg(text).arg(stored.index));
  }
  if (*computed.index == stored.index) return Number(stored.index);
  return Text(QStringLiteral("%1 (stored: %2)").arg(*computed.index).arg(stored.index));
}

Cell ActionDate(const Entry& entry) {
  return DateOfTask<&Task::action_date>(entry);
}

std::vector<const Entry*> OpenActions(const Report& report) {
  std::vector<const Entry*> open;
  for (const Entry& entry : report.entries) {
    if (IsOpen(entry.task)) open.push_back(&entry);
  }
  const auto key = [](const Entry* entry) {
    const std::optional<QDate> date = ActionDate(*entry).date;
    return std::tuple(entry->task.action_by, !date.has_value(), date.value_or(QDate()));
  };
  std::stable_sort(open.begin(), open.end(),
                   [&key](const Entry* a, const Entry* b) { return key(a) < key(b); });
  return open;
}

std::span<const Column> RegisterColumns() {
  return kColumns;
}

}  // namespace kestrix::reports
