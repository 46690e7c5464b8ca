#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <functional>
#include <span>

#include "checks/Finding.h"
#include "records/Computed.h"
#include "records/Source.h"

/// The rules that a finished assessment meets, a row each: name, severity, what is said, what to
/// do, and the function that finds it. Who asks and in which order is Checker's.
namespace kestrix::checks {

/// What a rule says: `sentence` takes the details of an occurrence as %1, %2.
struct RuleText {
  QStringView name;
  Severity severity;
  QStringView sentence;
  QStringView advice;
};

/// Tells one occurrence: the field or the file that it is about, and the details of the sentence.
struct Occurrence {
  QString field;
  QString file;
  QStringList details;
};
using Tell = std::function<void(const Occurrence&)>;

/// A task with what its rules look at.
struct TaskSubject {
  const records::Organisation& organisation;
  const records::Task& task;
  const records::Computed& computed;
  const records::Lists& lists;
  QDate today;
  records::Source& source;
};

struct TaskRule {
  RuleText text;
  void (*find)(const TaskSubject& subject, const Tell& tell);
};

/// The rules of a single task, in the order in which they are told.
[[nodiscard]] std::span<const TaskRule> TaskRules();

// The rules of what is more than a task.
inline constexpr RuleText kSameReference{
    u"same-reference", Severity::kWarning,
    u"The reference number %1 was given before in this project.",
    u"Give each task a number of its own."};
inline constexpr RuleText kMissingFile{u"missing-file", Severity::kWarning,
                                       u"The linked file %1 isn't there.",
                                       u"Bring the file back, or remove the link."};
inline constexpr RuleText kStageNotInList{u"not-in-list", Severity::kNote,
                                          u"The project's stage \"%1\" isn't in the list.",
                                          u"Pick a listed stage, or add this one to the list."};
inline constexpr RuleText kOrphanTasks{u"orphan-tasks", Severity::kError,
                                       u"%1 belong to the project %2, which isn't there.",
                                       u"Add a project of that number to see the tasks again."};
inline constexpr RuleText kOrphanLinks{u"orphan-links", Severity::kError,
                                       u"%1 belong to the project %2, which isn't there.",
                                       u"Add a project of that number to see the links again."};
inline constexpr RuleText kOrphanStudy{
    u"orphan-study", Severity::kError, u"The study %1 belongs to no organisation.",
    u"Find out whose it is; a new organisation can take it over."};
inline constexpr RuleText kOrphanPictures{
    u"orphan-pictures", Severity::kError, u"The picture folder %1 belongs to no organisation.",
    u"Find out whose pictures they are, then move or delete them."};
inline constexpr RuleText kNoStudy{u"no-study", Severity::kError,
                                   u"The study of this organisation, number %1, isn't there.",
                                   u"Restore it from a backup set."};
inline constexpr RuleText kSameStudy{u"same-study", Severity::kError,
                                     u"The organisation %1 has the same study, number %2.",
                                     u"Give one of them a study of its own, from a backup set."};
inline constexpr RuleText kUnreadable{
    u"unreadable", Severity::kError, u"%1",
    u"Close it elsewhere, ask for the right to read it, or update "
    u"this program."};
inline constexpr RuleText kDamaged{u"damaged", Severity::kError, u"%1",
                                   u"Restore it from a backup set."};

/// The finding that a rule makes of an occurrence; where it is found is the caller's to add.
[[nodiscard]] Finding Make(const RuleText& rule, const Occurrence& occurrence);

}  // namespace kestrix::checks
