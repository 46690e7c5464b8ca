#pragma once

#include <QString>

/// Every SQL text of the system, exact. Values are pasted between single quotes as they stand: an
/// apostrophe in an organisation's name or a project number makes the statement fail, and the form
/// that runs it says what follows.
namespace kestrix::sources {

[[nodiscard]] QString ProjectSql(const QString& active_org_name);
[[nodiscard]] QString RiskSql(const QString& project_number);
[[nodiscard]] QString FileLinkSql(const QString& project_number);
/// The links of all projects, the newest first.
inline const QString kNewestLinks =
    QStringLiteral("SELECT fileLink.FilePath FROM fileLink ORDER BY rowid DESC");
/// The tasks of all projects whose picture, before or after, is the file of this name. An
/// apostrophe in the name is a letter like any other here.
[[nodiscard]] QString TasksOfPicture(QString name);

inline const QString kPrjstage = QStringLiteral("SELECT Prjstage.hazopstage FROM Prjstage");
inline const QString kPhaseMachLife =
    QStringLiteral("SELECT PhaseMachLife.PhaseMachLife FROM PhaseMachLife");
inline const QString kPrimaryHazard =
    QStringLiteral("SELECT primaryhazard.hazardType, primaryhazard.srno FROM primaryhazard");
inline const QString kRecommTyp =
    QStringLiteral("SELECT RecommTyp.RecommendationTyp FROM RecommTyp");
inline const QString kActionBy = QStringLiteral("SELECT ActionBy.ActnBy FROM ActionBy");
inline const QString kOrgtn = QStringLiteral("SELECT orgtn.OrgName, Orgtn.sclenotxt FROM orgtn");
inline const QString kOrgtmp = QStringLiteral("SELECT Orgtmp.OrgNameTMP FROM Orgtmp");
/// The register as a data control names it at design time.
inline const QString kOrgtnTable = QStringLiteral("Orgtn");

/// The hazard types below `primary_hazard`, as the customization form reads them.
[[nodiscard]] QString HazardTypesOf(const QString& primary_hazard);
/// The same rows, as the delete of a primary hazard's types reads them.
[[nodiscard]] QString HazardTypesToDelete(const QString& primary_hazard);
/// The same rows, as the evaluation form fills its list.
[[nodiscard]] QString HazardTypesForTask(const QString& primary_hazard);
/// The same rows, as the evaluation form reads them on a click on the primary hazard.
[[nodiscard]] QString HazardTypesForClick(const QString& primary_hazard);

}  // namespace kestrix::sources
