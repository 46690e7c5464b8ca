#pragma once

#include <QString>
#include <array>

#include "store/RecordSources.h"
#include "ui_RiskEvalFrm_1.h"

namespace kestrix {

/// A lookup list of the evaluation form: its combo, its two buttons, and how it differs from the
/// other four.
struct TaskList {
  QComboBox* Ui::RiskEvalFrm_1::*combo;
  QPushButton* Ui::RiskEvalFrm_1::*add;
  QPushButton* Ui::RiskEvalFrm_1::*remove;
  const QString* sql;     ///< null for the list below the primary hazard in hand
  bool keeps_focus_text;  ///< a delete judges the text that the box had when it got the focus
};

inline constexpr TaskList kPhaseList{&Ui::RiskEvalFrm_1::PhaseMachn, &Ui::RiskEvalFrm_1::adddt,
                                     &Ui::RiskEvalFrm_1::dletedt, &sources::kPhaseMachLife, true};
inline constexpr TaskList kPrimaryHazardList{
    &Ui::RiskEvalFrm_1::PrimaryHazard, &Ui::RiskEvalFrm_1::adddt1, &Ui::RiskEvalFrm_1::dletedt1,
    &sources::kPrimaryHazard, false};
inline constexpr TaskList kHazardTypeList{&Ui::RiskEvalFrm_1::HazardType,
                                          &Ui::RiskEvalFrm_1::adddt2, &Ui::RiskEvalFrm_1::dletedt2,
                                          nullptr, false};
inline constexpr TaskList kRecommendationTypeList{
    &Ui::RiskEvalFrm_1::ReccdtnTypTxt, &Ui::RiskEvalFrm_1::adddt_2, &Ui::RiskEvalFrm_1::dletedt_2,
    &sources::kRecommTyp, true};
inline constexpr TaskList kActionByList{&Ui::RiskEvalFrm_1::ActnByCbo, &Ui::RiskEvalFrm_1::adddt_3,
                                        &Ui::RiskEvalFrm_1::dletedt_3, &sources::kActionBy, true};

inline constexpr std::array kTaskLists{kPhaseList, kPrimaryHazardList, kHazardTypeList,
                                       kRecommendationTypeList, kActionByList};

}  // namespace kestrix
