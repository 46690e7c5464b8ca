#include <QApplication>
#include <QIcon>

#include "app/Workbench.h"
#include "formkit/FocusMark.h"
#include "platform/QtPlatform.h"

namespace {

/// Catches, once, what no handler caught: the box tells it and the program goes on.
class Application : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    try {
      return QApplication::notify(receiver, event);
    } catch (const kestrix::Failure& failure) {
      if (messages != nullptr) {
        messages->Show(kestrix::Tell(kestrix::Icon::kCritical, kestrix::title::kProgram,
                                     failure.description()));
      }
      return true;
    }
  }

  kestrix::Messages* messages = nullptr;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication::setQuitOnLastWindowClosed(false);
  Application application(argc, argv);
  QApplication::setStyle(new kestrix::FocusMark);
  QApplication::setApplicationName(QStringLiteral("KestrixStudy"));
  QApplication::setApplicationVersion(QStringLiteral(KESTRIX_VERSION));

  // The windows' picture lies beside the program; without it they have the desktop's own.
  QApplication::setWindowIcon(
      QIcon(QApplication::applicationDirPath() + QStringLiteral("/kestrix.png")));
  kestrix::QtPlatform desktop;
  application.messages = &desktop.platform().messages;
  kestrix::Workbench workbench(desktop.platform());
  QObject::connect(&workbench, &kestrix::Workbench::Ended, &application, &QApplication::quit);
  workbench.Start();
  return QApplication::exec();
}
