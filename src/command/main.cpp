#include <unistd.h>

#include <QGuiApplication>
#include <cstdio>

#include "command/CommandLine.h"
#include "command/Interruption.h"
#include "platform/QtClock.h"

int main(int argc, char** argv) {
  using namespace kestrix;
  const command::Interruption interruption;
  // Standard error is for the sentences of this program; libraries talk of pictures and folders.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  // Pages have fonts, but nothing is shown: no display is asked for.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("kestrix"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KESTRIX_VERSION));
  QTextStream out(stdout);
  QTextStream errors(stderr);
  const QtClock clock;
  const command::Status status = command::Run(
      QCoreApplication::arguments(),
      {QCoreApplication::applicationDirPath(), clock, out, errors, isatty(STDERR_FILENO) == 1});
  command::Interruption::End();
  return status;
}
