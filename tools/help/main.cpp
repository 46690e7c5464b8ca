// Makes the help files of an installation from their one source and the pictures of the forms.
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSaveFile>
#include <cstdio>

#include "Book.h"
#include "HelpPage.h"
#include "Manual.h"
#include "Pictures.h"
#include "platform/Failure.h"

namespace kestrix::help {
namespace {

/// The file appears under its name only when it is whole.
void Write(const QString& path, const QByteArray& bytes) {
  QDir().mkpath(QFileInfo(path).absolutePath());
  QSaveFile file(path);
  if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) return;
  throw Failure(failure::kDeviceError,
                QStringLiteral("%1 can't be written: %2.").arg(path, file.errorString()));
}

struct Arguments {
  QString source;
  QString pictures;
  QString page;
  QString manual;
};

Arguments Read(const QCoreApplication& application) {
  const QCommandLineOption source(QStringLiteral("source"), QStringLiteral("The text of all help."),
                                  QStringLiteral("file"));
  const QCommandLineOption pictures(QStringLiteral("pictures"),
                                    QStringLiteral("The folder of the forms' pictures."),
                                    QStringLiteral("folder"));
  const QCommandLineOption page(QStringLiteral("page"), QStringLiteral("The help page to write."),
                                QStringLiteral("file.htm"));
  const QCommandLineOption manual(QStringLiteral("manual"), QStringLiteral("The manual to write."),
                                  QStringLiteral("file.pdf"));
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Makes the help page and the manual."));
  parser.addHelpOption();
  parser.addOptions({source, pictures, page, manual});
  parser.process(application);
  for (const QCommandLineOption& option : {source, pictures, page, manual}) {
    if (!parser.value(option).isEmpty()) continue;
    throw Failure(failure::kInvalidCall,
                  QStringLiteral("The option --%1 is missing.").arg(option.names().constFirst()));
  }
  return {parser.value(source), parser.value(pictures), parser.value(page), parser.value(manual)};
}

void Make(const Arguments& arguments) {
  const Manual manual = Manual::Load(arguments.source);
  const Pictures pictures(arguments.pictures);
  pictures.Require(manual.Pictures());
  const QByteArray page = HelpPage(manual, pictures);
  const QByteArray book = PrintedBook(manual, pictures);
  // Both or none, as far as it can be known before: nothing is written until both are made.
  Write(arguments.page, page);
  Write(arguments.manual, book);
}

}  // namespace
}  // namespace kestrix::help

int main(int argc, char** argv) {
  // Points and dots then don't depend on the screen of the machine that builds.
  QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
  const QGuiApplication application(argc, argv);
  try {
    kestrix::help::Make(kestrix::help::Read(application));
    return 0;
  } catch (const kestrix::Failure& failure) {
    std::fprintf(stderr, "kestrix_help: %s\n", failure.what());
    return 1;
  }
}
