#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <vector>

#include "platform/Services.h"
#include "records/FileSource.h"

namespace kestrix::command {

/// How a command ends.
enum Status {
  kDone = 0,      ///< done, and nothing to report
  kFound = 1,     ///< findings, or differences
  kWrongUse = 2,  ///< the words of the call
  kFailed = 3,    ///< one sentence on standard error says what couldn't be done, and why
};

/// What a command works with: the words of its call, where it reads from, and where it writes to.
struct Call {
  const QCommandLineParser& options;
  QStringList arguments;  ///< without the command's own name
  records::Source& source;
  QDate today;
  QTextStream& out;
  QTextStream& errors;
  bool on_terminal = false;  ///< somebody watches what goes to `errors`

  [[nodiscard]] bool Json() const { return options.isSet(QStringLiteral("json")); }
};

/// The call's words can't be used: one sentence says why. It ends with kWrongUse.
struct WrongUse {
  QString says;
};

/// One command of the program.
struct Command {
  QString name;
  QString arguments;  ///< as the help shows them
  QString summary;
  int least_arguments = 0;
  int most_arguments = 0;
  std::vector<QCommandLineOption> options;
  /// Fails with Failure (kFailed) and WrongUse.
  Status (*run)(const Call& call);
};

[[nodiscard]] Command ListCommand();
[[nodiscard]] Command ReportCommand();
[[nodiscard]] Command CheckCommand();

/// Where a call is made.
struct Desk {
  QString program_folder;
  const Clock& clock;
  QTextStream& out;
  QTextStream& errors;
  bool on_terminal = false;  ///< somebody watches what goes to `errors`
};

/// Carries out a call: `words` begin with the program's name. Nothing comes out of it but its
/// status; all it has to say goes to the desk's streams.
[[nodiscard]] Status Run(const QStringList& words, const Desk& desk);

/// The organisation of that name. Fails with kFileNotFound.
[[nodiscard]] records::Organisation OrganisationNamed(records::Source& source, const QString& name);

}  // namespace kestrix::command
