#pragma once

#include <QComboBox>
#include <QString>
#include <vector>

#include "shell/LookupBox.h"

class QPushButton;

namespace kestrix {

namespace Ui {
class RiskEvalFrm_1;
}

/// The five boxes of the evaluation form that are fed from lookup lists, with their "+" and "-".
/// They share one data control, which holds the rows of the list that was last in use, and only the
/// buttons of that list are enabled. What they keep stands in the session.
class TaskLists {
 public:
  /// One of the boxes, and how its list differs from those of the others.
  struct List {
    QComboBox* combo;
    QPushButton* add;
    QPushButton* remove;
    const Select* sql;      ///< null for the list below the primary hazard in hand
    bool keeps_focus_text;  ///< a delete judges the text that the box had when it got the focus
  };

  TaskLists(SessionForm& form, const Ui::RiskEvalFrm_1& ui, DataControl& source);

  [[nodiscard]] const std::vector<List>& All() const { return lists_; }
  void EnableCombos(bool enable) const;
  /// The boxes and all their buttons.
  void Disable() const;

  /// The box got the focus: its list is read afresh and its text stays.
  void Enter(const List& list);
  void Add(const List& list);
  void Delete(const List& list);
  /// A primary hazard was picked: counts its types, for a later delete.
  void CountHazardTypes();

 private:
  [[nodiscard]] LookupBox BoxOf(const List& list) const;
  [[nodiscard]] QString Hazard() const { return primary_.combo->currentText(); }
  void Open(const Select& sql);
  void DeletePrimaryHazard();
  void DeletePrimaryHazardWithTypes();

  SessionForm& form_;
  DataControl& source_;
  List primary_;
  List types_;
  std::vector<List> lists_;
};

}  // namespace kestrix
