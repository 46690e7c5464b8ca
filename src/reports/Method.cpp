#include "reports/Method.h"

#include "store/StoredDate.h"

namespace kestrix::reports {

QString FilterText(Only only) {
  switch (only) {
    case Only::kAll:
      return {};
    case Only::kOpen:
      return QStringLiteral("only tasks with an open action");
    case Only::kMedium:
      return QStringLiteral("only tasks whose remaining risk is medium or high");
    case Only::kHigh:
      return QStringLiteral("only tasks whose remaining risk is high");
    case Only::kNotReduced:
      return QStringLiteral("only tasks whose risk index isn't reduced");
  }
  return {};
}

std::vector<std::pair<QString, QString>> HeadLines(const Report& report) {
  const QString all = QString::number(report.all_tasks);
  const QString filter = FilterText(report.options.only);
  const QString tasks =
      filter.isEmpty()
          ? all
          : QStringLiteral("%1 of %2 (%3)").arg(report.entries.size()).arg(all, filter);
  return {
      {QStringLiteral("Organisation"), report.organisation.name},
      {QStringLiteral("Project number"), report.head.number},
      {QStringLiteral("Project stage"), report.head.stage},
      {QStringLiteral("Description"), report.head.description},
      {QStringLiteral("Prepared by"), report.head.prepared_by},
      {QStringLiteral("Date"), WriteDate(report.options.date)},
      {QStringLiteral("Document number"), report.options.number},
      {QStringLiteral("Revision"), report.options.revision},
      {QStringLiteral("Tasks"), tasks},
  };
}

QStringList MethodParagraphs() {
  return {
      QStringLiteral(
          "Each task is one hazardous situation of the machine. Its risk is estimated twice, "
          "before "
          "and after the recommended measures, by two routes that don't depend on each other (risk "
          "estimation: ISO 12100:2010, 5.5; the tools: ISO/TR 14121-2:2012, clause 6)."),
      QStringLiteral(
          "Risk graph (ISO/TR 14121-2:2012, 6.3): the severity of harm, the frequency of exposure, "
          "the probability of the hazardous event and the possibility of avoidance lead along a "
          "path to the risk index, from 0 (no risk) to 6. 1 and 2 are low, 3 and 4 medium, 5 and 6 "
          "high."),
      QStringLiteral(
          "Risk matrix (ISO/TR 14121-2:2012, 6.5): for each parameter the statement that fits best "
          "is chosen, and its number is the score. The class is the sum of the scores of exposure, "
          "occurrence and avoidance (Cl = F + O + A); the severity score picks the row of the "
          "matrix, the class its column, and the cell tells the band."),
      QStringLiteral(
          "The verdict compares the two risk indexes (risk evaluation: ISO 12100:2010, 5.6): the "
          "risk is reduced where the index after is lower. Where both are equal and not 0, further "
          "reduction may be required."),
      QStringLiteral("\"Not estimated\" means that the path of the graph isn't at its end, or that "
                     "no statement "
                     "was chosen. It isn't a low risk: nothing is known of it yet."),
  };
}

}  // namespace kestrix::reports
