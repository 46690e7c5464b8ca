#pragma once

#include <QDate>
#include <QString>
#include <QStringView>
#include <array>

#include "estimation/model/RiskLevels.h"

namespace kestrix::records {

/// One of the two estimations of a task, as it is stored: levels and statements by
/// model::Parameter, the scores of the four statements and the one in reserve.
struct Stage {
  std::array<QString, 4> levels;
  qint64 index = 0;
  std::array<QString, 4> statements;
  std::array<qint64, 5> scores{};
  QString picture;

  friend bool operator==(const Stage&, const Stage&) = default;
};

/// One task: a hazard situation of a machine, what is recommended against it, and its risk before
/// and after that. All values are the stored ones; what follows from them is in Computed.h.
struct Task {
  QString project;
  QString date;
  QString title;
  QString location;
  QString phase;
  QString hazard;
  QString hazard_type;
  QString reference;
  QString description;
  QString recommendation;
  QString recommendation_type;
  QString prepared_by;
  QString remark;  ///< a column that no form shows
  bool reduced = false;
  QString action_by;
  QString action_date;
  bool action_taken = false;
  Stage before;
  Stage after;
  qint64 id = 0;  ///< `nunberauto`, the key within its study

  friend bool operator==(const Task&, const Task&) = default;
};

/// Calls `visit` with the stored name and the value of each field, in the order of the table's
/// columns. Whatever goes through all fields (reading, writing, comparing) goes through here, so
/// that none is forgotten. `Any` is Task or const Task.
template <class Any, class Visit>
void VisitFields(Any& task, Visit&& visit) {
  using model::kStageFields;
  visit(QStringView(u"Project_Number"), task.project);
  visit(QStringView(u"dateOfRcd"), task.date);
  visit(QStringView(u"FuntnTaskMachry"), task.title);
  visit(QStringView(u"HazrdLoctn"), task.location);
  visit(QStringView(u"PhaseMachn"), task.phase);
  visit(QStringView(u"Primary_Hazard"), task.hazard);
  visit(QStringView(u"Hazard_type"), task.hazard_type);
  visit(QStringView(u"RefNo"), task.reference);
  visit(QStringView(u"HzrdDscptnTXT"), task.description);
  visit(QStringView(u"ReccdtnTxt"), task.recommendation);
  visit(QStringView(u"ReccdtnTypTxt"), task.recommendation_type);
  visit(QStringView(u"preparedBytxt"), task.prepared_by);
  visit(QStringView(u"RIARtxt"), task.remark);
  visit(QStringView(u"RskRdsdtnY_N"), task.reduced);
  visit(QStringView(u"ActnByCbo"), task.action_by);
  visit(QStringView(u"actnDt"), task.action_date);
  visit(QStringView(u"ActntkenOptnY_N"), task.action_taken);
  const auto path = [&visit](const model::StageFields& names, auto& stage) {
    for (std::size_t i = 0; i < 4; ++i) visit(names.level[i], stage.levels[i]);
    visit(names.risk_index, stage.index);
    for (std::size_t i = 0; i < 4; ++i) visit(names.statement[i], stage.statements[i]);
  };
  const auto scores = [&visit](const model::StageFields& names, auto& stage) {
    for (std::size_t i = 0; i < 4; ++i) visit(names.score[i], stage.scores[i]);
    visit(names.spare_score, stage.scores[4]);
  };
  path(kStageFields[0], task.before);
  path(kStageFields[1], task.after);
  scores(kStageFields[0], task.before);
  scores(kStageFields[1], task.after);
  visit(QStringView(u"nunberauto"), task.id);
  visit(kStageFields[0].picture, task.before.picture);
  visit(kStageFields[1].picture, task.after.picture);
}

[[nodiscard]] inline const Stage& StageOf(const Task& task, model::Stage stage) {
  return stage == model::Stage::kBefore ? task.before : task.after;
}

/// Texts that stand for no text: empty, "None." and "N.A.".
[[nodiscard]] bool IsNoText(QStringView text);
/// Entries that no list has to hold: those, and the "None" that a new project's stage begins with.
[[nodiscard]] inline bool IsPlaceholder(QStringView text) {
  return IsNoText(text) || text == u"None";
}
/// A recommendation that says something.
[[nodiscard]] inline bool HasRecommendation(const Task& task) {
  return !IsNoText(task.recommendation);
}
/// Open: something is recommended and the action isn't taken.
[[nodiscard]] inline bool IsOpen(const Task& task) {
  return HasRecommendation(task) && !task.action_taken;
}
/// Open, and due before `today`.
[[nodiscard]] bool IsOverdue(const Task& task, QDate today);

}  // namespace kestrix::records
