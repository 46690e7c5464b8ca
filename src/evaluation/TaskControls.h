#pragma once

#include <QString>
#include <vector>

class QLabel;
class QWidget;

namespace kestrix {

namespace Ui {
class RiskEvalFrm_1;
}
class DataControl;
class FieldBinding;
class Recordset;

/// The fields of a task and the controls that show them, once, in the order in which they are
/// saved. It reads and writes the current row and never commits it.
class TaskControls {
 public:
  /// Ties every control but the project number's label to its field. The label keeps the number
  /// while there is no task, so it follows the rows by ShowTask alone.
  TaskControls(const Ui::RiskEvalFrm_1& ui, DataControl& source);

  /// Shows the current row once more, its long texts from their beginning. Fails as
  /// Recordset::Text does.
  void ShowTask(const Recordset& rows) const;
  /// Saves what is shown, as it stands, unless no project is shown. Ends without a word at the
  /// first field that the row refuses; those before it stay written.
  void SaveTask(Recordset& rows) const;
  /// What a task holds before anything was entered: `today` in both dates, "0" as the reference
  /// number, no tick, "None." in all others. The project number's label stays as it is.
  void ShowUnset(const QString& today) const;
  /// Lets the text boxes be typed into or not. The dates always are: they have rules of their own.
  void AllowTyping(bool allow) const;
  /// Shows long texts from their beginning, except where somebody is typing.
  void ShowBeginnings() const;

 private:
  struct Bound {
    QWidget* control;
    FieldBinding* binding;
    QString unset;  ///< null for a date: it is the day's
  };
  QLabel* project_;
  std::vector<Bound> fields_;
};

}  // namespace kestrix
