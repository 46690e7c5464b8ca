#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

#include "formkit/ActiveForms.h"
#include "formkit/Controls.h"
#include "formkit/FocusEvents.h"
#include "formkit/Form.h"
#include "formkit/FormSlot.h"
#include "shell/CommonDialog.h"
#include "shell/Frame.h"
#include "shell/SessionForm.h"
#include "shell/SessionState.h"
#include "store/DataControl.h"
#include "store/Installation.h"
#include "support/FakePlatform.h"
#include "support/FormHands.h"
#include "support/TestInstallation.h"

namespace kestrix {

/// A frame that only takes note of what forms do to it. A switch that nobody touched has no value.
class FakeFrame : public Frame {
 public:
  void SetStatusText(const QString& text) override { status_texts.append(text); }
  void EnableData(bool enable) override { data_enabled = enable; }
  void EnableToolBar(bool enable) override { tool_bar_enabled = enable; }
  void MaximiseIfMinimised() override { ++maximised; }

  QStringList status_texts;
  std::optional<bool> data_enabled;
  std::optional<bool> tool_bar_enabled;
  int maximised = 0;
};

class FakeProject : public ProjectInHand {
 public:
  [[nodiscard]] QString ESI_No() override { return number; }
  [[nodiscard]] QString ProjectDescription() override { return description; }

  QString number;
  QString description;
};

/// The task in hand without the evaluation form: the current row of rows that the test opens.
class FakeTask : public TaskInHand {
 public:
  [[nodiscard]] Recordset& Tasks() override { return source.Recordset(); }

  DataControl source{QStringLiteral("dtsorce2")};
};

/// The desktop of a test with other files and another opener, and what a form on it is made from.
struct OtherDesktop {
  OtherDesktop(FakePlatform& desk, FileSystem& files, Shell& shell, const Context& like)
      : platform{desk.messages, files,         shell,          desk.windows, desk.settings,
                 desk.dialogs,  desk.printing, desk.clipboard, desk.clock,   desk.environment},
        kit{platform, like.kit.focus, like.kit.forms},
        context{kit,         like.session, like.installation, like.frame,
                like.dialog, like.project, like.task} {}
  OtherDesktop(const OtherDesktop&) = delete;
  OtherDesktop& operator=(const OtherDesktop&) = delete;

  Platform platform;
  FormKit kit;
  Context context;
};

/// What a test of a form starts from: an installation of its own, a desktop that is all fakes, and
/// the session that forms share. Its hands work the form in front.
///
///     class OrgfrmTest : public FormTest {};
///     TEST_F(OrgfrmTest, ...) {
///       auto& form = Open<Orgfrm>();          // made, loaded, shown and in front
///       TypeInto("orgnmecbotxt", "ACME");
///       desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN", "...");
///       Click("clsd");
///       EXPECT_EQ(RowsOf(installation.Register(), "orgtn"), ...);
///     }
class FormTest : public ::testing::Test, public FormHands {
 public:
  FormTest();
  ~FormTest() override;

 protected:
  /// Makes, loads and shows a form, and waits until it is in front, unless its load unloaded it.
  /// The test's end deletes it.
  template <class F>
  F& Open() {
    F& form = Make<F>();
    form.ShowForm();
    Settle();
    if (!form.IsUnloading()) LookAt(form);
    return form;
  }
  template <class F>
  F& OpenModal() {
    F& form = Make<F>();
    form.ShowFormModal();
    Settle();
    if (!form.IsUnloading()) LookAt(form);
    return form;
  }
  /// Makes and loads a form without showing it.
  template <class F>
  F& Make() {
    auto* form = new F(context);
    opened_.append(form);
    form->LoadForm();
    return *form;
  }

  /// Opens the tasks of a project as the evaluation form would, for forms that work on the task in
  /// hand.
  void GivenTaskInHand(int study, const QString& project_number);

  /// Brings the focus as Tab does, without the way there.
  void Focus(const QString& name) {
    Control<QWidget>(name).setFocus(Qt::TabFocusReason);
    Settle();
  }
  [[nodiscard]] QRgb BackOf(const QString& name) const {
    return BackColour(&Control<QWidget>(name)) & 0xFFFFFF;
  }
  [[nodiscard]] QString TipOf(const QString& name) const {
    return Control<QWidget>(name).toolTip();
  }
  [[nodiscard]] static QList<QStringList> Sql(const QString& file, const QString& query) {
    return TestInstallation::Sql(file, query);
  }
  [[nodiscard]] static QStringList Column(const QString& file, const QString& query) {
    return TestInstallation::Column(file, query);
  }
  [[nodiscard]] static QList<QStringList> RowsOf(const QString& file, const QString& table) {
    return TestInstallation::RowsOf(file, table);
  }
  static void Exec(const QString& file, const QString& sql) { TestInstallation::Exec(file, sql); }

 private:
  /// Made before all that live on it, and shared with the hands.
  struct Watch {
    FocusEvents focus;
    ActiveForms forms{focus};
  };
  explicit FormTest(std::unique_ptr<Watch> watch);

  QString folder_before_ = QDir::currentPath();
  std::unique_ptr<Watch> watch_;
  QList<QPointer<QWidget>> opened_;

 protected:
  TestInstallation installation;
  FakePlatform desk;
  FormKit kit;
  SessionState session;
  Installation paths;
  FakeFrame frame;
  CommonDialog dialog;
  FakeProject project;
  FakeTask task;
  Context context;
};

}  // namespace kestrix
