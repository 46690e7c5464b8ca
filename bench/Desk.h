#pragma once

#include <QHash>
#include <QStringList>
#include <memory>
#include <optional>

#include "formkit/ActiveForms.h"
#include "formkit/FocusEvents.h"
#include "formkit/Form.h"
#include "platform/QtPlatform.h"
#include "shell/CommonDialog.h"
#include "shell/Frame.h"
#include "shell/SessionForm.h"
#include "shell/SessionState.h"
#include "store/Installation.h"
#include "store/Recordset.h"

namespace kestrix::bench {

/// Nobody sits in front of a measurement: every box is answered at once by its default button, and
/// kept, since a box that comes up means that something else was measured than was meant.
class NoMessages : public Messages {
 public:
  Button Show(const Message& message) override {
    if (answer) return *answer;
    shown += message.title + QStringLiteral(": ") + message.text;
    return message.default_button;
  }
  void Beep() override {}

  QStringList shown;
  std::optional<Button> answer;  ///< to a question that a measurement means to be asked
};

class BenchEnvironment : public QtEnvironment {
 public:
  explicit BenchEnvironment(QString folder) : folder_(std::move(folder)) {}
  [[nodiscard]] QString ApplicationFolder() const override { return folder_; }

 private:
  QString folder_;
};

/// A person's settings are neither read nor changed by a measurement.
class NoSettings : public SettingsStore {
 public:
  [[nodiscard]] QString Get(const QString& /*section*/, const QString& /*key*/,
                            const QString& default_value) const override {
    return default_value;
  }
  void Save(const QString& /*section*/, const QString& /*key*/, const QString& /*value*/) override {
  }
};

/// The surroundings of one form: the real services, a session, and the other forms as constants.
class Desk : private Frame, private ProjectInHand, private TaskInHand {
 public:
  explicit Desk(const QString& folder) : environment_(folder), installation_(folder) {}

  SessionState session;
  NoMessages messages;
  QString project_number;
  Recordset* tasks = nullptr;  ///< those of the task in hand

  [[nodiscard]] Context& context() { return context_; }
  [[nodiscard]] const Installation& installation() const { return installation_; }
  [[nodiscard]] ActiveForms& forms() { return active_; }

 private:
  void SetStatusText(const QString& /*text*/) override {}
  void EnableData(bool /*enable*/) override {}
  void EnableToolBar(bool /*enable*/) override {}
  void MaximiseIfMinimised() override {}
  QString ESI_No() override { return project_number; }
  QString ProjectDescription() override { return QStringLiteral("Press line 4"); }
  Recordset& Tasks() override {
    if (tasks != nullptr) return *tasks;
    throw Failure(failure::kObjectNotSet, QStringLiteral("There is no task form."));
  }

  QtPlatform qt_;
  NoSettings settings_;
  BenchEnvironment environment_;
  Platform platform_{messages,
                     qt_.platform().files,
                     qt_.platform().shell,
                     qt_.platform().windows,
                     settings_,
                     qt_.platform().dialogs,
                     qt_.platform().printing,
                     qt_.platform().clipboard,
                     qt_.platform().clock,
                     environment_};
  Installation installation_;
  FocusEvents focus_;
  ActiveForms active_{focus_};
  FormKit kit_{platform_, focus_, active_};
  CommonDialog dialog_{platform_};
  Context context_{kit_, session, installation_, *this, dialog_, *this, *this};
};

}  // namespace kestrix::bench
