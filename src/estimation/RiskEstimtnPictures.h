#pragma once

#include "estimation/RiskEstimtn.h"
#include "formkit/PictureView.h"

namespace kestrix {

/// One of the two pictures of a task: where it is shown, which field names it, and what of the file
/// dialog tells that one was chosen.
struct RiskEstimtn::PictureSlot {
  enum class ChosenBy { kTitle, kName };

  PictureSlot(QLabel* label, QStringView field_name, ChosenBy chosen)
      : view(label), field(field_name), chosen_by(chosen) {}

  PictureView view;
  QStringView field;
  ChosenBy chosen_by;
  bool chosen_anew = false;  ///< a person has been at it since the form came up
};

}  // namespace kestrix
