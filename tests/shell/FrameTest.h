#pragma once

#include <QAction>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStatusBar>
#include <QTextEdit>
#include <QToolBar>

#include "shell/frmDocument.h"
#include "shell/frmMain.h"
#include "support/Files.h"
#include "support/FormTest.h"

namespace kestrix {

/// A test of the frame: makes it, reaches its hidden commands, and looks at its children.
class FrameTest : public FormTest {
 protected:
  frmMain& OpenFrame() {
    main_ = &Open<frmMain>();
    return *main_;
  }
  [[nodiscard]] frmMain& Main() const { return *main_; }

  /// Runs a command that may be hidden. One that is disabled fails the test.
  void Trigger(const QString& name) {
    auto& action = Control<QAction>(name);
    EXPECT_TRUE(action.isEnabled() || !action.isVisible()) << name.toStdString();
    action.trigger();
    Settle();
  }

  [[nodiscard]] QMdiArea& Area() const { return Control<QMdiArea>(QStringLiteral("mdiArea")); }
  [[nodiscard]] QList<QMdiSubWindow*> Windows() const {
    return Area().subWindowList(QMdiArea::CreationOrder);
  }
  [[nodiscard]] frmDocument& Child(int index) const {
    return *qobject_cast<frmDocument*>(Windows().at(index)->widget());
  }
  [[nodiscard]] QTextEdit& Box(int index) const {
    return *Child(index).findChild<QTextEdit*>(QStringLiteral("rtfText"));
  }
  void CloseChild(int index) {
    Windows().at(index)->close();
    Settle();
  }
  void CloseAllChildren() {
    while (!Windows().isEmpty()) CloseChild(0);
  }
  [[nodiscard]] QString StatusText() const { return TextOf(QStringLiteral("sbStatusBarPanel1")); }
  [[nodiscard]] QString Setting(const char* key) const {
    return desk.settings.Get(QStringLiteral("Settings"), QString::fromLatin1(key),
                             QStringLiteral("<none>"));
  }
  void GivenSetting(const char* key, const QString& value) {
    desk.settings.Save(QStringLiteral("Settings"), QString::fromLatin1(key), value);
  }

  /// Takes down what the frame asks for, in order.
  QStringList asked_;
  void Listen(frmMain& main) {
    const auto note = [this](const char* what) {
      return [this, what] { asked_.append(QString::fromLatin1(what)); };
    };
    QObject::connect(&main, &frmMain::OrganisationsRequested, &main, note("organisations"));
    QObject::connect(&main, &frmMain::CustomizationRequested, &main, note("customization"));
    QObject::connect(&main, &frmMain::BackupRequested, &main, note("backup"));
    QObject::connect(&main, &frmMain::RestoreRequested, &main, note("restore"));
    QObject::connect(&main, &frmMain::Closing, &main, note("closing"));
    QObject::connect(&main, &frmMain::Unloaded, &main, note("unloaded"));
    QObject::connect(&main, &frmMain::LoadFailed, &main, note("load failed"));
  }

 private:
  QPointer<frmMain> main_;
};

}  // namespace kestrix
