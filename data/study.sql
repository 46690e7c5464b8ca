-- An empty study: the template from which the study database of each organisation is copied.
-- A column that is given no value, or Null by another program, takes its default: the unset value
-- that the forms know. So no form ever meets a Null.
PRAGMA page_size = 4096;
PRAGMA journal_mode = DELETE;
PRAGMA application_id = 0x4B535458;
PRAGMA user_version = 1;

BEGIN;

CREATE TABLE Project_details (
  Factory_Name        VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(Factory_Name) <= 255),
  Project_Number      VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(Project_Number) <= 255),
  Project_phase       VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'None' CHECK(length(Project_phase) <= 255),
  Project_Description VARCHAR(65535) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(Project_Description) <= 65535),
  preparedBytxt       VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(preparedBytxt) <= 255)
);

-- One row is one task: a hazard situation, what is recommended against it, and its risk before and
-- after that. The order of the columns is the order in which the forms address them.
CREATE TABLE Risk_records (
  Project_Number      VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(Project_Number) <= 255),
  dateOfRcd           VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(dateOfRcd) <= 255),
  FuntnTaskMachry     VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'None.' CHECK(length(FuntnTaskMachry) <= 255),
  HazrdLoctn          VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'None.' CHECK(length(HazrdLoctn) <= 255),
  PhaseMachn          VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'None.' CHECK(length(PhaseMachn) <= 255),
  Primary_Hazard      VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'None.' CHECK(length(Primary_Hazard) <= 255),
  Hazard_type         VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'None.' CHECK(length(Hazard_type) <= 255),
  RefNo               VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '0' CHECK(length(RefNo) <= 255),
  HzrdDscptnTXT       VARCHAR(65535) NOT NULL ON CONFLICT REPLACE DEFAULT 'None.' CHECK(length(HzrdDscptnTXT) <= 65535),
  ReccdtnTxt          VARCHAR(65535) NOT NULL ON CONFLICT REPLACE DEFAULT 'None.' CHECK(length(ReccdtnTxt) <= 65535),
  ReccdtnTypTxt       VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'None.' CHECK(length(ReccdtnTypTxt) <= 255),
  preparedBytxt       VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(preparedBytxt) <= 255),
  RIARtxt             VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(RIARtxt) <= 255),
  RskRdsdtnY_N        BOOLEAN NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  ActnByCbo           VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'None.' CHECK(length(ActnByCbo) <= 255),
  actnDt              VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(actnDt) <= 255),
  ActntkenOptnY_N     BOOLEAN NOT NULL ON CONFLICT REPLACE DEFAULT 0,

  -- The path through the risk graph, and the index that it ends in.
  SevertyCbo          VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'Reset' CHECK(length(SevertyCbo) <= 255),
  ExposureCbo         VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(ExposureCbo) <= 255),
  occurrenceCbo       VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(occurrenceCbo) <= 255),
  avoidanceCbo        VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(avoidanceCbo) <= 255),
  RiskIndex           INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  -- The statements of the risk matrix.
  Chk_OptnSe          VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'Reset' CHECK(length(Chk_OptnSe) <= 255),
  Chk_OptnEx          VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(Chk_OptnEx) <= 255),
  Chk_OptnOc          VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(Chk_OptnOc) <= 255),
  Chk_OptnAv          VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(Chk_OptnAv) <= 255),

  -- The same after the recommendation.
  SevertyCboAftr      VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'Reset' CHECK(length(SevertyCboAftr) <= 255),
  ExposureCboAftr     VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(ExposureCboAftr) <= 255),
  occurrenceCboAftr   VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(occurrenceCboAftr) <= 255),
  avoidanceCboAftr    VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(avoidanceCboAftr) <= 255),
  RiskIndexAftr       INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  Chk_OptnSeAftr      VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'Reset' CHECK(length(Chk_OptnSeAftr) <= 255),
  Chk_OptnExAftr      VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(Chk_OptnExAftr) <= 255),
  Chk_OptnOcAftr      VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(Chk_OptnOcAftr) <= 255),
  Chk_OptnAvAftr      VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'N.A.' CHECK(length(Chk_OptnAvAftr) <= 255),

  -- The scores of the statements: severity, exposure, occurrence, avoidance, and one in reserve.
  "1Chk_OptnSltd"     INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "2Chk_OptnSltd"     INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "3Chk_OptnSltd"     INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "4Chk_OptnSltd"     INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "5Chk_OptnSltd"     INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "1Chk_OptnSltdAftr" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "2Chk_OptnSltdAftr" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "3Chk_OptnSltdAftr" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "4Chk_OptnSltdAftr" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "5Chk_OptnSltdAftr" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,

  -- A number is never given twice, so that a new task always comes last.
  nunberauto          INTEGER PRIMARY KEY AUTOINCREMENT,
  PicBfrRcmdtn        VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'NoPicSlted.jpg' CHECK(length(PicBfrRcmdtn) <= 255),
  PicAftrRcmdtn       VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT 'NoPicSlted.jpg' CHECK(length(PicAftrRcmdtn) <= 255)
);
CREATE INDEX Risk_records_of_project ON Risk_records (Project_Number, nunberauto);

-- Paths are longer than other texts: a folder as deep as the system allows, and a full file name.
CREATE TABLE fileLink (
  Project_Number  VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(Project_Number) <= 255),
  FilePath        VARCHAR(4096) NOT NULL DEFAULT '' CHECK(length(FilePath) BETWEEN 1 AND 4096),
  FileShrtDscrptn VARCHAR(255) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(FileShrtDscrptn) <= 255),
  FileEmb         VARCHAR(4096) NOT NULL ON CONFLICT REPLACE DEFAULT '' CHECK(length(FileEmb) <= 4096)
);
CREATE INDEX fileLink_of_project ON fileLink (Project_Number);

COMMIT;
