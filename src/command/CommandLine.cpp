#include "command/CommandLine.h"

#include <QDir>
#include <algorithm>

#include "platform/Failure.h"

namespace kestrix::command {
namespace {

const QString kProgram = QStringLiteral("kestrix");

std::vector<QCommandLineOption> CommonOptions() {
  return {
      {QStringLiteral("installation"),
       QStringLiteral("The installation's folder; by default the one that the program lies in."),
       QStringLiteral("DIR")},
      {QStringLiteral("json"), QStringLiteral("Write the result as JSON.")},
      {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")},
      {QStringLiteral("version"), QStringLiteral("Show the version.")},
  };
}

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands{ListCommand(), ReportCommand(), CheckCommand()};
  return commands;
}

void Add(QCommandLineParser& parser, const std::vector<QCommandLineOption>& options) {
  for (const QCommandLineOption& option : options) parser.addOption(option);
}

/// The command that the words name. All options are known to this look, so that it sees which words
/// are values of options.
const Command* CommandOf(const QStringList& words, QString& named) {
  QCommandLineParser parser;
  Add(parser, CommonOptions());
  for (const Command& command : Commands()) Add(parser, command.options);
  parser.parse(words);
  named = parser.positionalArguments().value(0);
  const auto found = std::ranges::find(Commands(), named, &Command::name);
  return found == Commands().end() ? nullptr : &*found;
}

void TellOptions(QTextStream& out, const std::vector<QCommandLineOption>& options) {
  for (const QCommandLineOption& option : options) {
    QStringList names;
    for (const QString& name : option.names()) {
      names += (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
    }
    QString shown = names.join(QStringLiteral(", "));
    if (!option.valueName().isEmpty()) shown += u' ' + option.valueName();
    constexpr int kColumn = 28;
    out << "  " << shown.leftJustified(kColumn) << ' ' << option.description() << '\n';
  }
}

void TellProgram(QTextStream& out) {
  out << "Usage: kestrix [options] COMMAND ...\n\nCommands:\n";
  constexpr int kColumn = 40;
  for (const Command& command : Commands()) {
    const QString shown = command.name + u' ' + command.arguments;
    out << "  " << shown.leftJustified(kColumn) << ' ' << command.summary << '\n';
  }
  out << "\nOptions:\n";
  TellOptions(out, CommonOptions());
  out << "\nkestrix COMMAND --help tells the options of a command.\n"
         "It ends with 0 when all was done, 1 when there is something to report, 2 when the call's "
         "words can't be used,\n3 when it couldn't be done.\n";
}

void TellCommand(QTextStream& out, const Command& command) {
  out << "Usage: kestrix " << command.name << ' ' << command.arguments << "\n\n"
      << command.summary << "\n\nOptions:\n";
  TellOptions(out, command.options);
  TellOptions(out, CommonOptions());
}

Status RunCommand(const Command& command, const QStringList& words, const Desk& desk) {
  QCommandLineParser parser;
  Add(parser, CommonOptions());
  Add(parser, command.options);
  if (!parser.parse(words)) throw WrongUse{parser.errorText()};
  if (parser.isSet(QStringLiteral("help"))) {
    TellCommand(desk.out, command);
    return kDone;
  }
  const QStringList arguments = parser.positionalArguments().mid(1);
  if (arguments.size() < command.least_arguments || arguments.size() > command.most_arguments) {
    throw WrongUse{QStringLiteral("It takes: kestrix %1 %2").arg(command.name, command.arguments)};
  }
  const QString chosen = parser.value(QStringLiteral("installation"));
  records::FileSource source{
      Installation(chosen.isEmpty() ? desk.program_folder : QDir(chosen).absolutePath())};
  return command.run(
      {parser, arguments, source, desk.clock.Today(), desk.out, desk.errors, desk.on_terminal});
}

}  // namespace

Status Run(const QStringList& words, const Desk& desk) {
  QString named;
  const Command* command = CommandOf(words, named);
  try {
    if (command != nullptr) {
      return RunCommand(*command, words, desk);
    }
    QCommandLineParser parser;
    Add(parser, CommonOptions());
    if (!parser.parse(words)) throw WrongUse{parser.errorText()};
    if (parser.isSet(QStringLiteral("version"))) {
      desk.out << kProgram << ' ' << QCoreApplication::applicationVersion() << '\n';
      return kDone;
    }
    if (parser.isSet(QStringLiteral("help"))) {
      TellProgram(desk.out);
      return kDone;
    }
    if (!named.isEmpty()) throw WrongUse{QStringLiteral("There is no command %1.").arg(named)};
    TellProgram(desk.errors);
    return kWrongUse;
  } catch (const WrongUse& wrong) {
    desk.errors << "kestrix: " << wrong.says << " See kestrix --help.\n";
    return kWrongUse;
  } catch (const Failure& failure) {
    desk.errors << "kestrix: " << failure.description() << '\n';
    return kFailed;
  }
}

records::Organisation OrganisationNamed(records::Source& source, const QString& name) {
  const std::vector<records::Organisation> all = source.ReadRegister().organisations;
  const auto found = std::ranges::find(all, name, &records::Organisation::name);
  if (found != all.end()) return *found;
  throw Failure(failure::kFileNotFound,
                QStringLiteral("There is no organisation with the name %1.").arg(name));
}

}  // namespace kestrix::command
