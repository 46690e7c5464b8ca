#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "command/CommandLine.h"
#include "platform/Failure.h"

namespace kestrix::command {
namespace {

void TellOrganisation(QTextStream& out, const records::Organisation& organisation,
                      const std::vector<records::ProjectLine>& projects) {
  out << organisation.name << "  (study " << organisation.study << ")\n";
  for (const records::ProjectLine& project : projects) {
    out << "  " << project.number << "  " << project.stage << "  " << project.tasks
        << (project.tasks == 1 ? " task\n" : " tasks\n");
  }
}

QJsonObject ToJson(const records::Organisation& organisation,
                   const std::vector<records::ProjectLine>& projects) {
  QJsonArray lines;
  for (const records::ProjectLine& project : projects) {
    lines.append(QJsonObject{{QStringLiteral("number"), project.number},
                             {QStringLiteral("stage"), project.stage},
                             {QStringLiteral("tasks"), project.tasks}});
  }
  return {{QStringLiteral("name"), organisation.name},
          {QStringLiteral("study"), organisation.study},
          {QStringLiteral("projects"), lines}};
}

/// Goes on past a study that can't be read, and names it.
Status List(const Call& call) {
  Status status = kDone;
  QJsonArray organisations;
  for (const records::Organisation& organisation : call.source.ReadRegister().organisations) {
    std::vector<records::ProjectLine> projects;
    try {
      projects = call.source.ListProjects(organisation);
    } catch (const Failure& failure) {
      call.errors << "kestrix: " << organisation.name << ": " << failure.description() << '\n';
      status = kFailed;
    }
    if (call.Json()) {
      organisations.append(ToJson(organisation, projects));
    } else {
      TellOrganisation(call.out, organisation, projects);
    }
  }
  if (call.Json()) {
    call.out
        << QJsonDocument(QJsonObject{{QStringLiteral("organisations"), organisations}}).toJson();
  }
  return status;
}

}  // namespace

Command ListCommand() {
  return {QStringLiteral("list"),
          {},
          QStringLiteral("The organisations, their projects, and how many tasks each has."),
          0,
          0,
          {},
          List};
}

}  // namespace kestrix::command
