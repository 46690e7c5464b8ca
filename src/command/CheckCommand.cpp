#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

#include "checks/Checker.h"
#include "command/CommandLine.h"
#include "platform/Failure.h"

namespace kestrix::command {
namespace {

using checks::Finding;

template <class Value>
QJsonValue OrNull(const std::optional<Value>& value) {
  return value ? QJsonValue(*value) : QJsonValue();
}

QJsonObject ToJson(const Finding& finding) {
  return {
      {QStringLiteral("rule"), finding.rule},
      {QStringLiteral("severity"), TextOf(finding.severity)},
      {QStringLiteral("organisation"), OrNull(finding.organisation)},
      {QStringLiteral("project"), OrNull(finding.project)},
      {QStringLiteral("task"), OrNull(finding.task)},
      {QStringLiteral("id"), OrNull(finding.id)},
      {QStringLiteral("reference"), OrNull(finding.reference)},
      {QStringLiteral("field"), OrNull(finding.field)},
      {QStringLiteral("file"), OrNull(finding.file)},
      {QStringLiteral("says"), finding.says},
      {QStringLiteral("advice"), finding.advice},
  };
}

void TellFinding(QTextStream& out, const Finding& finding) {
  QStringList place;
  for (const auto& part :
       {finding.organisation, finding.project, finding.reference, finding.task}) {
    if (part) place += *part;
  }
  out << TextOf(finding.severity) << ": " << finding.rule << ": "
      << place.join(QStringLiteral(", ")) << (place.isEmpty() ? "" : ": ") << finding.says << ' '
      << finding.advice << '\n';
}

std::vector<Finding> FindingsOf(const Call& call) {
  if (call.arguments.isEmpty()) return checks::Checker(call.source, call.today).CheckAll();
  checks::Checker checker(call.source, call.today);
  const records::Organisation of = OrganisationNamed(call.source, call.arguments[0]);
  if (call.arguments.size() == 1) return checker.CheckOrganisation(of);
  const auto project = call.source.ReadProject(of, call.arguments[1]);
  if (project) return checker.CheckProject(of, *project);
  throw Failure(
      failure::kFileNotFound,
      QStringLiteral("%1 has no project with the number %2.").arg(of.name, call.arguments[1]));
}

Status Check(const Call& call) {
  const std::vector<Finding> findings = FindingsOf(call);
  QJsonArray told;
  for (const Finding& finding : findings) {
    if (call.Json()) {
      told.append(ToJson(finding));
    } else {
      TellFinding(call.out, finding);
    }
  }
  if (call.Json()) {
    call.out << QJsonDocument(QJsonObject{{QStringLiteral("findings"), told}}).toJson();
  }
  const bool notes_alone = std::ranges::all_of(
      findings, [](const Finding& finding) { return finding.severity == checks::Severity::kNote; });
  return notes_alone ? kDone : kFound;
}

}  // namespace

Command CheckCommand() {
  return {QStringLiteral("check"),
          QStringLiteral("[ORGANISATION [PROJECT]]"),
          QStringLiteral("What a finished assessment shouldn't have."),
          0,
          2,
          {},
          Check};
}

}  // namespace kestrix::command
