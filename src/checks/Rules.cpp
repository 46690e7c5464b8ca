#include "checks/Rules.h"

#include <algorithm>
#include <array>
#include <optional>

#include "estimation/model/RiskModel.h"
#include "store/ReferenceNumber.h"
#include "store/StoredDate.h"

namespace kestrix::checks {
namespace {

using model::Parameter;
using model::SameText;
using records::ComputedStage;
using records::HasRecommendation;
using records::IsNoText;
using records::IsOpen;
using records::IsOverdue;
using records::IsPlaceholder;
using records::Stage;

constexpr std::array kStages{model::Stage::kBefore, model::Stage::kAfter};
constexpr std::array kLevelItems{std::span<const QStringView>(model::kSeverityItems),
                                 std::span<const QStringView>(),
                                 std::span<const QStringView>(model::kOccurrenceItems),
                                 std::span<const QStringView>(model::kAvoidanceItems)};
constexpr std::array kExposureItems{model::kExposureAny, model::kExposureSeldom,
                                    model::kExposureFrequent};

QString FieldName(QStringView name) {
  return name.toString();
}

std::span<const QStringView> ItemsOf(Parameter parameter) {
  if (parameter == Parameter::kExposure) return kExposureItems;
  return kLevelItems[model::IndexOf(parameter)];
}

bool IsUnset(Parameter parameter, QStringView level) {
  return level.isEmpty() || SameText(level, model::UnsetWordOf(parameter));
}

bool IsKnownLevel(Parameter parameter, QStringView level) {
  const auto items = ItemsOf(parameter);
  return IsUnset(parameter, level) || std::ranges::find(items, level) != items.end();
}

/// Whether a level of this stage is a text that the model doesn't know; then nothing else can be
/// said of the stage.
bool IsSilent(const Stage& stage) {
  return std::ranges::any_of(model::kParameters, [&stage](Parameter parameter) {
    return !IsKnownLevel(parameter, stage.levels[model::IndexOf(parameter)]);
  });
}

bool IsClearedStatement(QStringView statement) {
  return statement.isEmpty() || statement == model::kUnsetSeverity ||
         statement == model::kUnsetLevel;
}

/// The score that a statement gives; 0 for a cleared one, nothing for an unknown text.
std::optional<qint64> ScoreOf(Parameter parameter, QStringView statement) {
  if (IsClearedStatement(statement)) return 0;
  const auto& boxes = model::StatementsOf(parameter);
  const auto found = std::ranges::find_if(boxes, [statement](const model::Statement& box) {
    return box.enabled && box.text == statement;
  });
  if (found == boxes.end()) return std::nullopt;
  return found - boxes.begin() + model::kFirstStatementBox;
}

const Stage& StoredStage(const TaskSubject& subject, model::Stage stage) {
  return records::StageOf(subject.task, stage);
}

const ComputedStage& ComputedOf(const TaskSubject& subject, model::Stage stage) {
  return stage == model::Stage::kBefore ? subject.computed.before : subject.computed.after;
}

/// Calls `work` with each parameter of each stage that something can be said of.
template <class Work>
void ForEachParameter(const TaskSubject& subject, Work&& work) {
  for (const model::Stage which : kStages) {
    const Stage& stage = StoredStage(subject, which);
    if (IsSilent(stage)) continue;
    for (const Parameter parameter : model::kParameters) {
      work(which, stage, parameter, model::IndexOf(parameter));
    }
  }
}

void NotEstimated(const TaskSubject& subject, model::Stage which, const Tell& tell) {
  if (IsSilent(StoredStage(subject, which)) || ComputedOf(subject, which).estimated) return;
  tell({FieldName(model::FieldsOf(which).LevelOf(Parameter::kSeverity)), {}, {}});
}

void NotEstimatedBefore(const TaskSubject& subject, const Tell& tell) {
  NotEstimated(subject, model::Stage::kBefore, tell);
}

void NotEstimatedAfter(const TaskSubject& subject, const Tell& tell) {
  if (HasRecommendation(subject.task)) NotEstimated(subject, model::Stage::kAfter, tell);
}

/// One finding a stage: what is missing is listed, and the field is the first of them.
void IncompleteClass(const TaskSubject& subject, model::Stage which, const Tell& tell) {
  static constexpr std::array kNames{u"severity", u"exposure", u"occurrence", u"avoidance"};
  const Stage& stage = StoredStage(subject, which);
  if (IsSilent(stage)) return;
  const bool needs_none = SameText(stage.levels[0], model::kSeverityNone);
  QString first;
  QStringList missing;
  for (const Parameter parameter : model::kParameters) {
    const std::size_t i = model::IndexOf(parameter);
    const bool level = !IsUnset(parameter, stage.levels[i]);
    const bool statement = !IsClearedStatement(stage.statements[i]);
    const bool lacks_statement = level && !statement && !needs_none;
    if (!lacks_statement && (level || !statement)) continue;
    const auto& names = model::FieldsOf(which);
    if (missing.isEmpty()) {
      first = FieldName(lacks_statement ? names.StatementOf(parameter) : names.LevelOf(parameter));
    }
    missing += QString::fromUtf16(kNames[i]) + (lacks_statement ? QStringLiteral(" (no statement)")
                                                                : QStringLiteral(" (no level)"));
  }
  if (!missing.isEmpty()) tell({first, {}, {missing.join(QStringLiteral(", "))}});
}

void IncompleteClassBefore(const TaskSubject& subject, const Tell& tell) {
  IncompleteClass(subject, model::Stage::kBefore, tell);
}

void IncompleteClassAfter(const TaskSubject& subject, const Tell& tell) {
  IncompleteClass(subject, model::Stage::kAfter, tell);
}

void UnknownLevel(const TaskSubject& subject, const Tell& tell) {
  for (const model::Stage which : kStages) {
    for (const Parameter parameter : model::kParameters) {
      const QString& level = StoredStage(subject, which).levels[model::IndexOf(parameter)];
      if (IsKnownLevel(parameter, level)) continue;
      tell({FieldName(model::FieldsOf(which).LevelOf(parameter)), {}, {level}});
    }
  }
}

void UnknownStatement(const TaskSubject& subject, const Tell& tell) {
  ForEachParameter(
      subject, [&](model::Stage which, const Stage& stage, Parameter parameter, std::size_t i) {
        if (ScoreOf(parameter, stage.statements[i])) return;
        tell({FieldName(model::FieldsOf(which).StatementOf(parameter)), {}, {stage.statements[i]}});
      });
}

void IndexDiffers(const TaskSubject& subject, const Tell& tell) {
  for (const model::Stage which : kStages) {
    const Stage& stage = StoredStage(subject, which);
    if (IsSilent(stage)) continue;
    const bool ends_at_once = IsUnset(Parameter::kSeverity, stage.levels[0]) ||
                              SameText(stage.levels[0], model::kSeverityNone);
    const std::optional<int> index = ends_at_once ? 0 : ComputedOf(subject, which).index;
    if (!index || *index == stage.index) continue;
    tell({FieldName(model::FieldsOf(which).risk_index),
          {},
          {QString::number(stage.index), QString::number(*index)}});
  }
}

void ClassDiffers(const TaskSubject& subject, const Tell& tell) {
  ForEachParameter(subject,
                   [&](model::Stage which, const Stage& stage, Parameter parameter, std::size_t i) {
                     const std::optional<qint64> score = ScoreOf(parameter, stage.statements[i]);
                     if (!score || *score == stage.scores[i]) return;
                     tell({FieldName(model::FieldsOf(which).ScoreOf(parameter)),
                           {},
                           {QString::number(stage.scores[i]), QString::number(*score)}});
                   });
}

void VerdictDiffers(const TaskSubject& subject, const Tell& tell) {
  if (subject.task.reduced == subject.computed.reduced) return;
  tell({QStringLiteral("RskRdsdtnY_N"),
        {},
        {subject.task.reduced ? QStringLiteral("ticked") : QStringLiteral("not ticked")}});
}

void RiskRose(const TaskSubject& subject, const Tell& tell) {
  const auto& [before, after] = std::pair(subject.task.before.index, subject.task.after.index);
  if (after <= before) return;
  tell({QStringLiteral("RiskIndexAftr"), {}, {QString::number(before), QString::number(after)}});
}

void NotReduced(const TaskSubject& subject, const Tell& tell) {
  if (subject.computed.verdict != model::kReducedUnclear) return;
  tell({QStringLiteral("RiskIndexAftr"), {}, {QString::number(subject.task.after.index)}});
}

void NoRecommendation(const TaskSubject& subject, const Tell& tell) {
  if (subject.task.before.index <= 0 || HasRecommendation(subject.task)) return;
  tell({QStringLiteral("ReccdtnTxt"), {}, {QString::number(subject.task.before.index)}});
}

void NoOwner(const TaskSubject& subject, const Tell& tell) {
  if (IsOpen(subject.task) && IsNoText(subject.task.action_by)) {
    tell({QStringLiteral("ActnByCbo"), {}, {}});
  }
}

void NoDate(const TaskSubject& subject, const Tell& tell) {
  if (IsOpen(subject.task) && IsNoText(subject.task.action_date)) {
    tell({QStringLiteral("actnDt"), {}, {}});
  }
}

void Overdue(const TaskSubject& subject, const Tell& tell) {
  if (IsOverdue(subject.task, subject.today)) {
    tell({QStringLiteral("actnDt"), {}, {subject.task.action_date}});
  }
}

void BadDate(const TaskSubject& subject, const Tell& tell) {
  const auto look = [&tell](const QString& field, const QString& text) {
    if (!IsNoText(text) && !ReadDate(text)) tell({field, {}, {text}});
  };
  look(QStringLiteral("dateOfRcd"), subject.task.date);
  look(QStringLiteral("actnDt"), subject.task.action_date);
}

void BadReference(const TaskSubject& subject, const Tell& tell) {
  const QString& reference = subject.task.reference;
  if (reference.isEmpty() || ReferenceNumber(reference)) return;
  tell({QStringLiteral("RefNo"), {}, {reference}});
}

void MissingPicture(const TaskSubject& subject, const Tell& tell) {
  for (const model::Stage which : kStages) {
    const QString& name = StoredStage(subject, which).picture;
    if (name.isEmpty() || name.endsWith(u"NoPicSlted.jpg")) continue;
    if (subject.source.HasPicture(subject.organisation, name)) continue;
    tell({FieldName(model::FieldsOf(which).picture), name, {name}});
  }
}

void NotInList(const TaskSubject& subject, const Tell& tell) {
  const auto& [task, lists] = std::tie(subject.task, subject.lists);
  const auto look = [&tell](QStringView field, const QString& text, const auto& entries) {
    if (IsPlaceholder(text) || entries.contains(text)) return;
    tell({FieldName(field), {}, {text}});
  };
  look(u"PhaseMachn", task.phase, lists.phases);
  look(u"Primary_Hazard", task.hazard, lists.hazards);
  look(u"Hazard_type", task.hazard_type, lists.hazards_of_type);
  look(u"ReccdtnTypTxt", task.recommendation_type, lists.recommendation_types);
  look(u"ActnByCbo", task.action_by, lists.people);
}

void WrongParent(const TaskSubject& subject, const Tell& tell) {
  const auto& [task, lists] = std::tie(subject.task, subject.lists);
  if (IsPlaceholder(task.hazard_type)) return;
  const QStringList parents = lists.hazards_of_type.value(task.hazard_type);
  if (parents.isEmpty() || parents.contains(task.hazard)) return;
  tell({QStringLiteral("Hazard_type"), {}, {task.hazard_type, parents.first()}});
}

constexpr std::array kTaskRules{
    TaskRule{{u"not-estimated-before", Severity::kWarning,
              u"The risk before the recommendations isn't estimated.",
              u"Choose the levels up to the end of the path."},
             NotEstimatedBefore},
    TaskRule{{u"not-estimated-after", Severity::kWarning,
              u"The risk after the recommendations isn't estimated.",
              u"Choose the levels up to the end of the path."},
             NotEstimatedAfter},
    TaskRule{{u"incomplete-class-before", Severity::kWarning,
              u"Before the recommendations, level and statement don't go together: %1.",
              u"Choose a level and tick a statement for each parameter."},
             IncompleteClassBefore},
    TaskRule{{u"incomplete-class-after", Severity::kWarning,
              u"After the recommendations, level and statement don't go together: %1.",
              u"Choose a level and tick a statement for each parameter."},
             IncompleteClassAfter},
    TaskRule{{u"unknown-level", Severity::kError, u"The level \"%1\" is none of the risk graph's.",
              u"Choose the level again."},
             UnknownLevel},
    TaskRule{{u"unknown-statement", Severity::kError,
              u"The statement \"%1\" is none of the risk matrix'.", u"Tick the statement again."},
             UnknownStatement},
    TaskRule{
        {u"index-differs", Severity::kError, u"The stored risk index is %1; its levels give %2.",
         u"Choose the last level of the path again."},
        IndexDiffers},
    TaskRule{{u"class-differs", Severity::kError,
              u"The stored score is %1; its statement gives %2.", u"Tick the statement again."},
             ClassDiffers},
    TaskRule{{u"verdict-differs", Severity::kError,
              u"\"Has the Risk been adequately reduced?\" is stored as %1, against the indexes.",
              u"Open the task and leave it again; the answer is then stored as it is shown."},
             VerdictDiffers},
    TaskRule{{u"risk-rose", Severity::kError, u"The risk index rises from %1 to %2.",
              u"Look at the recommendation, or estimate the risk after it again."},
             RiskRose},
    TaskRule{{u"not-reduced", Severity::kWarning, u"The risk index stays at %1.",
              u"Recommend what reduces the risk further."},
             NotReduced},
    TaskRule{{u"no-recommendation", Severity::kWarning,
              u"The risk index is %1 and nothing is recommended.", u"Write a recommendation."},
             NoRecommendation},
    TaskRule{{u"no-owner", Severity::kWarning, u"Nobody is named for the recommendation.",
              u"Say who acts."},
             NoOwner},
    TaskRule{{u"no-date", Severity::kWarning, u"The recommendation has no date.",
              u"Say by when it is carried out."},
             NoDate},
    TaskRule{{u"overdue", Severity::kWarning, u"The action was due on %1.",
              u"Take the action, or agree on a new date."},
             Overdue},
    TaskRule{{u"bad-date", Severity::kWarning, u"\"%1\" is no date.", u"Enter it as dd/mm/yyyy."},
             BadDate},
    TaskRule{{u"bad-reference", Severity::kWarning, u"The reference number \"%1\" is no number.",
              u"Enter a number."},
             BadReference},
    TaskRule{{u"missing-picture", Severity::kWarning, u"The picture %1 isn't there.",
              u"Select a picture again."},
             MissingPicture},
    TaskRule{{u"not-in-list", Severity::kNote, u"\"%1\" isn't in its list.",
              u"Pick a listed entry, or add this one to the list."},
             NotInList},
    TaskRule{{u"wrong-parent", Severity::kNote,
              u"The hazard type \"%1\" stands under \"%2\", not under this hazard.",
              u"Pick a hazard type of this hazard."},
             WrongParent},
};

}  // namespace

std::span<const TaskRule> TaskRules() {
  return kTaskRules;
}

QString TextOf(Severity severity) {
  static constexpr std::array kTexts{u"note", u"warning", u"error"};
  return QString::fromUtf16(kTexts[static_cast<std::size_t>(severity)]);
}

Finding Make(const RuleText& rule, const Occurrence& occurrence) {
  const auto some = [](const QString& text) {
    return text.isEmpty() ? std::nullopt : std::optional(text);
  };
  QString says = rule.sentence.toString();
  // All at once: a detail may hold what looks like a place for the next one.
  switch (occurrence.details.size()) {
    case 0:
      break;
    case 1:
      says = says.arg(occurrence.details[0]);
      break;
    default:
      says = says.arg(occurrence.details[0], occurrence.details[1]);
  }
  Finding finding;
  finding.rule = rule.name.toString();
  finding.severity = rule.severity;
  finding.says = says;
  finding.advice = rule.advice.toString();
  finding.field = some(occurrence.field);
  finding.file = some(occurrence.file);
  return finding;
}

}  // namespace kestrix::checks
