#include "checks/Checker.h"

#include <QMap>
#include <QSet>

#include "checks/Rules.h"
#include "platform/Failure.h"
#include "store/ReferenceNumber.h"

namespace kestrix::checks {
namespace {

/// Collects the findings of one project or study, each with where it was found.
class Findings {
 public:
  Findings(std::vector<Finding>& into, const records::Organisation& of) : into_(into), of_(of) {}

  void Add(const RuleText& rule, const Occurrence& occurrence,
           const std::optional<QString>& project = {}, const records::Task* task = nullptr) {
    Finding finding = Make(rule, occurrence);
    finding.organisation = of_.name;
    finding.project = project;
    if (task != nullptr) {
      finding.task = task->title;
      finding.id = task->id;
      finding.reference = task->reference;
    }
    into_.push_back(std::move(finding));
  }

 private:
  std::vector<Finding>& into_;
  const records::Organisation& of_;
};

/// A reference as a number, so that 1, 01.00 and 1.0 are one; empty where it is none or 0.
QString ComparedReference(const QString& reference) {
  const std::optional<QString> number = ReferenceNumber(reference);
  return number && *number != u"00.00" ? *number : QString();
}

QString Counted(std::size_t count, const QString& one, const QString& many) {
  return count == 1 ? one : many.arg(count);
}

/// Whether a failed read means a file that isn't whole, rather than one that can't be read now.
bool IsDamage(const Failure& failure) {
  if (failure.description().contains(u"newer version")) return false;
  return failure.number() == failure::kNotADatabase || failure.number() == failure::kDeviceError;
}

}  // namespace

Checker::Checker(records::Source& source, QDate today)
    : source_(source), lists_(source.ReadLists()), today_(today) {}

std::vector<Finding> Checker::CheckProject(const records::Organisation& of,
                                           const records::Project& project) {
  std::vector<Finding> findings;
  Findings found(findings, of);
  if (!records::IsPlaceholder(project.stage) && !lists_.stages.contains(project.stage)) {
    found.Add(kStageNotInList, {QStringLiteral("Project_phase"), {}, {project.stage}},
              project.number);
  }
  QSet<QString> references;
  for (const records::Task& task : project.tasks) {
    const records::Computed computed = Compute(task);
    const TaskSubject subject{of, task, computed, lists_, today_, source_};
    for (const TaskRule& rule : TaskRules()) {
      rule.find(subject, [&](const Occurrence& occurrence) {
        found.Add(rule.text, occurrence, project.number, &task);
      });
    }
    const QString reference = ComparedReference(task.reference);
    if (reference.isEmpty()) continue;
    if (references.contains(reference)) {
      found.Add(kSameReference, {QStringLiteral("RefNo"), {}, {task.reference}}, project.number,
                &task);
    }
    references.insert(reference);
  }
  for (const records::LinkedFile& link : project.links) {
    if (link.path.endsWith(u"NoPicSlted.jpg") || source_.HasFile(link.path)) continue;
    found.Add(kMissingFile, {QStringLiteral("FilePath"), link.path, {link.path}}, project.number);
  }
  return findings;
}

std::vector<Finding> Checker::CheckOrganisation(const records::Organisation& of) {
  std::vector<Finding> findings;
  Findings found(findings, of);
  if (of.study == 0) return findings;
  if (!source_.HasStudy(of)) {
    found.Add(kNoStudy, {{}, source_.StudyPath(of), {QString::number(of.study)}});
    return findings;
  }
  records::Study study;
  try {
    source_.CheckWhole(of);
    study = source_.ReadStudy(of);
  } catch (const Failure& failure) {
    found.Add(IsDamage(failure) ? kDamaged : kUnreadable,
              {{}, source_.StudyPath(of), {failure.description()}});
    return findings;
  }
  for (const records::Project& project : study.projects) {
    std::vector<Finding> more = CheckProject(of, project);
    std::move(more.begin(), more.end(), std::back_inserter(findings));
  }
  const auto orphans = [&found](const RuleText& rule, const auto& rows, const QString& one,
                                const QString& many) {
    QMap<QString, std::size_t> counts;
    for (const auto& row : rows) ++counts[row.project];
    for (auto at = counts.begin(); at != counts.end(); ++at) {
      found.Add(rule, {{}, {}, {Counted(at.value(), one, many), at.key()}}, at.key());
    }
  };
  orphans(kOrphanTasks, study.orphan_tasks, QStringLiteral("1 task"), QStringLiteral("%1 tasks"));
  orphans(kOrphanLinks, study.orphan_links, QStringLiteral("1 link"), QStringLiteral("%1 links"));
  return findings;
}

std::vector<Finding> Checker::CheckAll() {
  std::vector<Finding> findings;
  const records::Register read = source_.ReadRegister();
  QMap<qint64, QString> owners;
  for (const records::Organisation& organisation : read.organisations) {
    std::vector<Finding> more = CheckOrganisation(organisation);
    std::move(more.begin(), more.end(), std::back_inserter(findings));
    if (organisation.study == 0) continue;
    if (owners.contains(organisation.study)) {
      Findings(findings, organisation)
          .Add(kSameStudy,
               {{}, {}, {owners[organisation.study], QString::number(organisation.study)}});
    } else {
      owners.insert(organisation.study, organisation.name);
    }
  }
  const auto strays = [&](const RuleText& rule, const QMap<qint64, QString>& files) {
    for (auto at = files.begin(); at != files.end(); ++at) {
      if (!owners.contains(at.key()))
        findings.push_back(Make(rule, {{}, at.value(), {at.value()}}));
    }
  };
  strays(kOrphanStudy, source_.StudyFiles());
  strays(kOrphanPictures, source_.PictureFolders());
  return findings;
}

}  // namespace kestrix::checks
