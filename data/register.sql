-- The register of an installation: its organisations, and which of them was opened last.
PRAGMA page_size = 4096;
PRAGMA journal_mode = DELETE;
PRAGMA application_id = 0x4B535458;
PRAGMA user_version = 1;

BEGIN;

-- The name is compared byte for byte: two names that differ only in capitals are two organisations.
-- A number of 0 means that the organisation was never opened and has no study database yet.
CREATE TABLE orgtn (
  OrgName   VARCHAR(255) NOT NULL UNIQUE DEFAULT '' CHECK(length(OrgName) BETWEEN 1 AND 255),
  sclenotxt INTEGER DEFAULT 0
);

-- One row: the study number of the organisation opened last.
CREATE TABLE Orgtmp (
  OrgNameTMP INTEGER DEFAULT 0
);
INSERT INTO Orgtmp (OrgNameTMP) VALUES (0);

COMMIT;
