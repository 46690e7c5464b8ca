#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QIcon>
#include <QTextStream>

#include "formkit/FocusMark.h"
#include "platform/QtPagePrinter.h"
#include "platform/QtPlatform.h"
#include "preview/Front.h"
#include "preview/RiskBookRpts.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setStyle(new kestrix::FocusMark);
  QApplication::setApplicationName(QStringLiteral("RiskBookRpts"));
  QApplication::setApplicationVersion(QStringLiteral(KESTRIX_VERSION));

  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Shows the reports of an installation."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions(
      {{QStringLiteral("installation"),
        QStringLiteral("The installation's folder; by default the program's own."),
        QStringLiteral("DIR"), QApplication::applicationDirPath()},
       {QStringLiteral("organisation"), QStringLiteral("The organisation to show."),
        QStringLiteral("NAME")},
       {QStringLiteral("project"), QStringLiteral("Its project to show."),
        QStringLiteral("NUMBER")},
       {QStringLiteral("task"), QStringLiteral("The task to show first."), QStringLiteral("ID")}});
  parser.process(application);
  bool is_number = true;
  const QString task = parser.value(QStringLiteral("task"));
  const kestrix::preview::Request request{parser.value(QStringLiteral("organisation")),
                                          parser.value(QStringLiteral("project")),
                                          task.isEmpty() ? 0 : task.toLongLong(&is_number)};
  if (!is_number) {
    QTextStream(stderr) << "RiskBookRpts: --task takes a number, not " << task << ".\n";
    return 2;
  }

  const QString folder = QDir(parser.value(QStringLiteral("installation"))).absolutePath();
  kestrix::preview::Front front(folder);
  if (front.HandOver(request)) return 0;
  QApplication::setWindowIcon(
      QIcon(QApplication::applicationDirPath() + QStringLiteral("/kestrix.png")));

  kestrix::QtPlatform desktop;
  kestrix::QtPagePrinter printer;
  kestrix::preview::RiskBookRpts window(desktop.platform(), printer, kestrix::Installation(folder));
  front.Listen([&window](const kestrix::preview::Request& later) {
    window.Open(later);
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
  });
  window.show();
  window.Open(request);
  return QApplication::exec();
}
