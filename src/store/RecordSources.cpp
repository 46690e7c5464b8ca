#include "store/RecordSources.h"

namespace kestrix::sources {
namespace {

QString Quoted(const QString& value) {
  return u'\'' + value + u'\'';
}

/// `from` ends where the value comes that is looked for, within parentheses.
Select Where(const QString& columns, const QString& from, const QString& value,
             const QString& order = {}) {
  return {columns, from + Quoted(value) + "))" + order};
}

// The spelling is that of its readers.
const QString kHazardTypeColumns =
    "hazardType.hazardoccurrence, hazardType.HazardTyp, hazardType.SrNo";

}  // namespace

Select ProjectSql(const QString& active_org_name) {
  return Where(
      "Project_details.Factory_Name, Project_details.Project_Number, "
      "Project_details.Project_phase, Project_details.Project_Description, "
      "Project_details.preparedBytxt",
      "FROM Project_details WHERE (((Project_details.Factory_Name)=", active_org_name);
}

Select RiskSql(const QString& project_number) {
  return Where(
      "Risk_records.Project_Number, Risk_records.dateOfRcd, "
      "Risk_records.FuntnTaskMachry, Risk_records.HazrdLoctn, Risk_records.PhaseMachn, "
      "Risk_records.Primary_Hazard, Risk_records.Hazard_type, Risk_records.RefNo, "
      "Risk_records.HzrdDscptnTXT, Risk_records.ReccdtnTxt, Risk_records.ReccdtnTypTxt, "
      "Risk_records.preparedBytxt, Risk_records.RIARtxt, Risk_records.RskRdsdtnY_N, "
      "Risk_records.ActnByCbo, Risk_records.actnDt, Risk_records.ActntkenOptnY_N, "
      "Risk_records.SevertyCbo, Risk_records.ExposureCbo, Risk_records.occurrenceCbo, "
      "Risk_records.avoidanceCbo, Risk_records.RiskIndex,"
      " Risk_records.Chk_OptnSe, Risk_records.Chk_OptnEx, Risk_records.Chk_OptnOc, "
      "Risk_records.Chk_OptnAv, Risk_records.SevertyCboAftr, Risk_records.ExposureCboAftr, "
      "Risk_records.occurrenceCboAftr, Risk_records.avoidanceCboAftr, "
      "Risk_records.RiskIndexAftr, Risk_records.Chk_OptnSeAftr, "
      "Risk_records.Chk_OptnExAftr, Risk_records.Chk_OptnOcAftr, "
      "Risk_records.Chk_OptnAvAftr, Risk_records.[1Chk_OptnSltd], "
      "Risk_records.[2Chk_OptnSltd], Risk_records.[3Chk_OptnSltd], "
      "Risk_records.[4Chk_OptnSltd], Risk_records.[5Chk_OptnSltd], "
      "Risk_records.[1Chk_OptnSltdAftr], Risk_records.[2Chk_OptnSltdAftr], "
      "Risk_records.[3Chk_OptnSltdAftr], Risk_records.[4Chk_OptnSltdAftr], "
      "Risk_records.[5Chk_OptnSltdAftr], Risk_records.nunberauto"
      ", Risk_records.PicBfrRcmdtn, Risk_records.PicAftrRcmdtn",
      "FROM Risk_records Where (((Risk_records.Project_Number)=", project_number,
      " ORDER BY Risk_records.nunberauto");
}

Select FileLinkSql(const QString& project_number) {
  return Where(
      "fileLink.Project_Number, fileLink.FilePath, fileLink.FileShrtDscrptn, fileLink.FileEmb",
      "FROM fileLink WHERE (((fileLink.Project_Number)=", project_number);
}

Select TasksOfPicture(QString name) {
  const QString value = Quoted(name.replace(u'\'', "''"));
  return {"Risk_records.nunberauto",
          "FROM Risk_records WHERE PicBfrRcmdtn=" + value + " OR PicAftrRcmdtn=" + value};
}

Select HazardTypesOf(const QString& primary_hazard) {
  return Where("HazardType.hazardoccurrence, HazardType.HazardTyp, HazardType.SrNo",
               "FROM HazardType WHERE(((hazardType.HazardTyp)=", primary_hazard);
}

Select HazardTypesForTask(const QString& primary_hazard) {
  return Where(kHazardTypeColumns,
               "FROM HazardType WHERE (((hazardType.HazardTyp)=", primary_hazard);
}

Select HazardTypesForClick(const QString& primary_hazard) {
  return Where(kHazardTypeColumns,
               "From HazardType WHERE (((hazardType.HazardTyp)=", primary_hazard);
}

}  // namespace kestrix::sources
