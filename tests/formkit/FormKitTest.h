#pragma once

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <functional>

#include "formkit/ActiveForms.h"
#include "formkit/FocusEvents.h"
#include "formkit/Form.h"
#include "formkit/FormSlot.h"
#include "support/FakePlatform.h"
#include "support/FormHands.h"
#include "support/XServer.h"

namespace kestrix {

/// What forms and their controls were told, in order.
using Log = QStringList;

/// A form with the controls that a test puts on it, which writes down what it is told.
class PlainForm : public Form {
  Q_OBJECT

 public:
  PlainForm(FormKit& kit, const QString& name, Log& log) : Form(kit), log_(log) {
    setObjectName(name);
    setWindowTitle(name);
    setCentralWidget(new QWidget(this));
    new QVBoxLayout(centralWidget());
    resize(400, 300);
  }

  template <class W>
  W& Add(const QString& name) {
    auto* control = new W(centralWidget());
    control->setObjectName(name);
    centralWidget()->layout()->addWidget(control);
    return *control;
  }
  QLineEdit& AddBox(const QString& name) {
    auto& box = Add<QLineEdit>(name);
    Watch(box);
    return box;
  }
  /// The button takes note of its clicks.
  QPushButton& AddButton(const QString& name, const QString& text = {}) {
    auto& button = Add<QPushButton>(name);
    button.setText(text.isEmpty() ? name : text);
    connect(&button, &QPushButton::clicked, this, [this, name] { log_ += name + " clicked"; });
    return button;
  }
  /// The control's focus is written down; `on_lost` and `on_got` run besides.
  void Watch(QWidget& control, std::function<void()> on_lost = {},
             std::function<void()> on_got = {}) {
    const QString name = control.objectName();
    kit().focus.OnLostFocus(&control, [this, name, on_lost] {
      Guarded([&] {
        log_ += name + " lost";
        if (on_lost) on_lost();
      });
    });
    kit().focus.OnGotFocus(&control, [this, name, on_got] {
      Guarded([&] {
        log_ += name + " got";
        if (on_got) on_got();
      });
    });
  }

  using Form::FocusLater;
  using Form::Guarded;
  using Form::On;
  using Form::TakeFrontBack;

  std::function<void()> on_load;
  std::function<void()> on_activate;
  std::function<void()> on_deactivate;
  std::function<void()> on_query_unload;
  std::function<void()> on_unload;

 protected:
  void Load() override { Note(QStringLiteral("load"), on_load); }
  void Activate() override { Note(QStringLiteral("active"), on_activate); }
  void Deactivate() override { Note(QStringLiteral("inactive"), on_deactivate); }
  void QueryUnload() override { Note(QStringLiteral("query"), on_query_unload); }
  void Unload() override { Note(QStringLiteral("unload"), on_unload); }

 private:
  void Note(const QString& what, const std::function<void()>& then) {
    log_ += objectName() + u' ' + what;
    if (then) then();
  }

  Log& log_;
};

struct FocusAndForms {
  FocusEvents focus;
  ActiveForms forms{focus};
};

/// Forms of the test's own on a desktop of fakes, worked by hand.
class FormKitTest : public ::testing::Test, private FocusAndForms, public FormHands {
 protected:
  FormKitTest() : FormHands(FocusAndForms::forms) {}
  ~FormKitTest() override {
    qDeleteAll(forms_made_);
    Settle();
  }

  PlainForm& MakeForm(const QString& name) {
    auto* form = new PlainForm(kit, name, log);
    forms_made_ += form;
    return *form;
  }
  /// Shows a form and waits until it is in front.
  void Show(Form& form) {
    form.ShowForm();
    ASSERT_TRUE(ComesForward(form));
  }
  void ShowModal(Form& form) {
    form.ShowFormModal();
    ASSERT_TRUE(ComesForward(form));
  }
  /// A message box over a form that is answered as soon as it stands.
  static void PassMessageBox(QWidget* over) {
    QMessageBox box(over);
    QTimer::singleShot(0, &box, &QDialog::accept);
    box.exec();
  }
  /// Waits until a form is active, and the keys are with it. The toolkit takes a window for active
  /// as soon as it asks for the front; a display gives it the keys later, and whoever asks for
  /// another one meanwhile sees the front go back and forth.
  [[nodiscard]] bool ComesForward(const Form& form) {
    const bool comes =
        WaitUntil([&] { return active() == &form && form.isActiveWindow() && HasKeys(form); });
    Settle();
    return comes;
  }
  [[nodiscard]] Form* active() const { return FocusAndForms::forms.active(); }
  [[nodiscard]] Log TakeLog() { return std::exchange(log, {}); }

  FakePlatform desk;
  FormKit kit{desk.platform(), FocusAndForms::focus, FocusAndForms::forms};
  Log log;

 private:
  [[nodiscard]] static bool HasKeys(const Form& form) {
    return QGuiApplication::platformName() != QStringLiteral("xcb") ||
           xlook::FocusedTitle() == form.windowTitle();
  }

  QList<QPointer<PlainForm>> forms_made_;
};

}  // namespace kestrix
