#pragma once

#include <QString>
#include <array>

class QWidget;

namespace kestrix {

namespace Ui {
class RiskEvalFrm_1;
}
class DataControl;
class Recordset;

/// The fields of a task and the controls that show them, once, in the order in which they are shown
/// and saved. It reads and writes the current row and never commits it.
class TaskControls {
 public:
  explicit TaskControls(const Ui::RiskEvalFrm_1& ui);

  /// Ties every control but the project number's label to its field. The label keeps the number
  /// while there is no task, so it follows the rows by Show alone.
  void Bind(DataControl& source) const;
  /// The fields of the current row into the controls. Fails as Recordset::Text does.
  void Show(Recordset& rows) const;
  /// The controls into the fields of the current row, as they stand; a field that is shown already
  /// keeps the line ends that another program gave it. Ends at the first field that
  /// the row refuses, with its failure; those before it stay written.
  void Save(Recordset& rows) const;
  /// Shows the task, its long texts from their beginning. Fails as Show does.
  void ShowTask(Recordset& rows) const;
  /// Saves the task unless no project is shown. What was written before a failing field stays;
  /// nobody is told.
  void SaveTask(Recordset& rows) const;
  /// What a task holds before anything was entered: `today` in both dates, "0" as the reference
  /// number, no tick, "None." in all others. The project number's label stays as it is.
  void ShowUnset(const QString& today) const;
  /// Lets the text boxes be typed into or not. The dates always are: they have rules of their own.
  void AllowTyping(bool allow) const;
  /// Shows long texts from their beginning, except where somebody is typing.
  void ShowBeginnings() const;

 private:
  struct TaskControl {
    int field;
    QString name;  ///< of the field, in the table
    QWidget* control;
  };
  std::array<TaskControl, 15> controls_;
};

}  // namespace kestrix
