#pragma once

#include <QString>
#include <optional>

#include "formkit/Form.h"
#include "shell/SessionState.h"
#include "store/Installation.h"

namespace kestrix {

class CommonDialog;
class Frame;
class Recordset;

/// The project that is in hand on the project form. A reading of it loads that form when it isn't
/// loaded. The project form implements it; whoever needs the project reads it at that moment.
class ProjectInHand {
 public:
  virtual ~ProjectInHand() = default;
  [[nodiscard]] virtual QString ESI_No() = 0;
  [[nodiscard]] virtual QString ProjectDescription() = 0;
};

/// The task that is in hand on the evaluation form: the current row of its tasks.
class TaskInHand {
 public:
  virtual ~TaskInHand() = default;
  [[nodiscard]] virtual Recordset& Tasks() = 0;
};

/// What the forms of a run share. Workbench owns all of it and hands it by reference.
struct Context {
  FormKit& kit;
  SessionState& session;
  const Installation& installation;
  Frame& frame;
  CommonDialog& dialog;  ///< dlgCommonDialog of the frame
  ProjectInHand& project;
  TaskInHand& task;
};

/// A form that works on the session. It also holds what the commands of all forms have in common
/// that delete records or edit lookup lists: their questions and their refusals.
class SessionForm : public Form {
  Q_OBJECT

 public:
  explicit SessionForm(Context& context);

  // For the parts of a form, too.
  [[nodiscard]] SessionState& session() const { return context_.session; }
  [[nodiscard]] Context& context() const { return context_; }
  using Form::Ask;
  using Form::FocusLater;
  using Form::Guarded;
  using Form::TakeFrontBack;
  using Form::Tell;
  using Form::TellFailure;
  /// Asks whether records are to be deleted, No being the default. The answer is kept in MsgAnswer.
  [[nodiscard]] bool IsDeletionWished(const QString& question, Icon icon = Icon::kInformation);
  /// True when `entry` is reserved in every list: the person was told that it can't be deleted.
  [[nodiscard]] bool RefusesReserved(const QString& entry);
  /// True when a list command can't go on with the text of `box`: the person was told to enter one,
  /// and the focus goes there. As every command has `kept` its text first, none is held back, and
  /// the table alone refuses an empty one.
  [[nodiscard]] bool LacksText(QWidget* box, const QString& text,
                               const std::optional<QString>& kept);

 protected:
  [[nodiscard]] const Installation& installation() const { return context_.installation; }
  [[nodiscard]] Frame& frame() const { return context_.frame; }
  [[nodiscard]] CommonDialog& dialog() const { return context_.dialog; }

 private:
  Context& context_;
};

}  // namespace kestrix
