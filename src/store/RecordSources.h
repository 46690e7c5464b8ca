#pragma once

#include <QString>

namespace kestrix {

/// Which rows are read: columns of one table, and the rest of the statement.
struct Select {
  Select() = default;
  Select(const QString& of_table, const QString& from)
      : text(QStringLiteral("SELECT ") + of_table + u' ' + from), columns(of_table), tail(from) {}
  /// All of a table, as a data control names it at design time.
  explicit Select(const QString& table)
      : text(table), columns(QStringLiteral("*")), tail(QStringLiteral("FROM ") + table) {}

  QString text;  ///< the statement, or the name of the table
  QString columns;
  QString tail;  ///< from its FROM on
};

}  // namespace kestrix

/// Every SQL text of the system, exact. Values are pasted between single quotes as they stand: an
/// apostrophe in an organisation's name or a project number makes the statement fail, and the form
/// that runs it says what follows.
namespace kestrix::sources {

[[nodiscard]] Select ProjectSql(const QString& active_org_name);
[[nodiscard]] Select RiskSql(const QString& project_number);
[[nodiscard]] Select FileLinkSql(const QString& project_number);
/// The links of all projects, the newest first.
inline const Select kNewestLinks{"fileLink.FilePath", "FROM fileLink ORDER BY rowid DESC"};
/// The tasks of all projects whose picture, before or after, is the file of this name. An
/// apostrophe in the name is a letter like any other here.
[[nodiscard]] Select TasksOfPicture(QString name);

inline const Select kPrjstage{"Prjstage.hazopstage", "FROM Prjstage"};
inline const Select kPhaseMachLife{"PhaseMachLife.PhaseMachLife", "FROM PhaseMachLife"};
inline const Select kPrimaryHazard{"primaryhazard.hazardType, primaryhazard.srno",
                                   "FROM primaryhazard"};
inline const Select kRecommTyp{"RecommTyp.RecommendationTyp", "FROM RecommTyp"};
inline const Select kActionBy{"ActionBy.ActnBy", "FROM ActionBy"};
inline const Select kOrgtn{"orgtn.OrgName, Orgtn.sclenotxt", "FROM orgtn"};
inline const Select kOrgtmp{"Orgtmp.OrgNameTMP", "FROM Orgtmp"};
/// The register as a data control names it at design time.
inline const Select kOrgtnTable(QStringLiteral("Orgtn"));

/// The hazard types below `primary_hazard`, as the customization form reads them.
[[nodiscard]] Select HazardTypesOf(const QString& primary_hazard);
/// The same rows, as the evaluation form fills its list, and as they are read to be deleted.
[[nodiscard]] Select HazardTypesForTask(const QString& primary_hazard);
/// The same rows, as the evaluation form reads them on a click on the primary hazard.
[[nodiscard]] Select HazardTypesForClick(const QString& primary_hazard);

}  // namespace kestrix::sources
