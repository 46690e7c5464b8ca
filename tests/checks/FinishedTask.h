#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

namespace kestrix::testing {

using Fields = QMap<QString, QVariant>;

/// A task that breaks no rule: estimated twice with all statements, reduced, and its action taken.
[[nodiscard]] inline Fields FinishedTask() {
  const auto stage = [](const QString& after, const QString& exposure, const QString& occurrence,
                        const QString& avoidance, int index) {
    return Fields{
        {QStringLiteral("SevertyCbo") + after, QStringLiteral("S2, Serious")},
        {QStringLiteral("ExposureCbo") + after, exposure},
        {QStringLiteral("occurrenceCbo") + after, occurrence},
        {QStringLiteral("avoidanceCbo") + after, avoidance},
        {QStringLiteral("RiskIndex") + after, index},
        {QStringLiteral("Chk_OptnSe") + after,
         QStringLiteral(" Scratches, bruises that are cured by first aid or similar")},
        {QStringLiteral("Chk_OptnEx") + after,
         QStringLiteral(" Interval between exposure is more than a year")},
        {QStringLiteral("Chk_OptnOc") + after,
         QStringLiteral(" Rarely: for example, it is unlikely this kind of component will fail so "
                        "that a hazardous event occurs. Human error is unlikely.")},
        {QStringLiteral("Chk_OptnAv") + after,
         QStringLiteral(" Impossible: for example, it is impossible to avoid a sudden appearance "
                        "of a powerful laser beam, or in case of an explosion.")},
        {QStringLiteral("1Chk_OptnSltd") + after, 1},
        {QStringLiteral("2Chk_OptnSltd") + after, 2},
        {QStringLiteral("3Chk_OptnSltd") + after, 2},
        {QStringLiteral("4Chk_OptnSltd") + after, 5},
    };
  };
  Fields task{
      {QStringLiteral("Project_Number"), QStringLiteral("P1")},
      {QStringLiteral("dateOfRcd"), QStringLiteral("01/02/2026")},
      {QStringLiteral("FuntnTaskMachry"), QStringLiteral("Load the press")},
      {QStringLiteral("RefNo"), QStringLiteral("01.00")},
      {QStringLiteral("ReccdtnTxt"), QStringLiteral("Fit a guard")},
      {QStringLiteral("ActnByCbo"), QStringLiteral("None.")},
      {QStringLiteral("actnDt"), QStringLiteral("01/03/2026")},
      {QStringLiteral("ActntkenOptnY_N"), 1},
      {QStringLiteral("RskRdsdtnY_N"), 1},
  };
  task.insert(stage({}, QStringLiteral("F2, Frequent"), QStringLiteral("O3, High"),
                    QStringLiteral("A2, Impossible"), 6));
  task.insert(stage(QStringLiteral("Aftr"), QStringLiteral("F1, Seldom"), QStringLiteral("O1, Low"),
                    QStringLiteral("A1, Possible"), 1));
  return task;
}

/// `task` with other values in some fields.
[[nodiscard]] inline Fields With(Fields task, const Fields& changes) {
  task.insert(changes);
  return task;
}

}  // namespace kestrix::testing
