# What the measurements work on; read by bench/run. All of it is made up here, from an installation
# that the build has laid out.

# make_study <template> <study> <number of tasks>: one project "P-1" of "ACME" with all the tasks.
make_study() {
  cp "$1" "$2"
  sqlite3 "$2" "PRAGMA synchronous=OFF; BEGIN;
    INSERT INTO Project_details(Factory_Name, Project_Number) VALUES('ACME', 'P-1');
    WITH RECURSIVE counted(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM counted LIMIT $3)
    INSERT INTO Risk_records(Project_Number, dateOfRcd, FuntnTaskMachry, HazrdLoctn, PhaseMachn,
      Primary_Hazard, Hazard_type, RefNo, HzrdDscptnTXT, ReccdtnTxt, ReccdtnTypTxt, ActnByCbo,
      actnDt, SevertyCbo, ExposureCbo, occurrenceCbo, avoidanceCbo, RiskIndex,
      RiskIndexAftr, RskRdsdtnY_N)
    SELECT 'P-1', '15/02/2013', 'Task ' || n || ': clear a jam at the infeed', 'Station ' || n % 40,
      'Operation', 'Mechanical hazards', 'Crushing', printf('%05.2f', n),
      'The hand reaches between the rolls while they turn; seen ' || n || ' times.',
      'An interlocked guard with a locking device, and a hold-to-run control for setting.',
      'Safeguarding', 'Designer', '01/03/2013', 'S2', 'F1', 'O2', 'A1', 2 + n % 5, 1, 1 FROM counted;
    COMMIT;"
}

# make_projects <template> <study> <number of projects of ACME>
make_projects() {
  cp "$1" "$2"
  sqlite3 "$2" "PRAGMA synchronous=OFF; BEGIN;
    WITH RECURSIVE counted(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM counted LIMIT $3)
    INSERT INTO Project_details(Factory_Name, Project_Number, Project_Description)
    SELECT 'ACME', 'P-' || n, 'Press line ' || n FROM counted; COMMIT;"
}

# make_list <lists> <number of entries>: the list of who acts.
make_list() {
  sqlite3 "$1" "BEGIN; DELETE FROM ActionBy;
    WITH RECURSIVE counted(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM counted LIMIT $2)
    INSERT INTO ActionBy SELECT 'Safety officer ' || n FROM counted; COMMIT;"
}
