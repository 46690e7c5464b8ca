#!/usr/bin/env bash
# installation_test.sh <case>: runs one case; the environment gives CMAKE, BUILD and SQLITE3.
set -euo pipefail

scratch="$(mktemp -d)"
trap 'chmod -R u+w "$scratch"; rm -rf "$scratch"' EXIT
family="$scratch/the family's folder"
application="$family/KestrixStudy"
register="$application/RskAsmtFld/orgtn.mdb"
lists="$application/RskAsmtFld/RskAsmt_BkSup.mdb"
study="$application/risk_esmatn.mdb"

fail() {
  printf 'FAILED: %s\n' "$1" >&2
  exit 1
}

expect() { # <what> <wanted> <got>
  [ "$2" = "$3" ] || fail "$1: wanted [$2], got [$3]"
}

expect_file() {
  [ -f "$1" ] || fail "no file $1"
}

install_it() {
  "$CMAKE" --install "$BUILD" --prefix "$family" >"$scratch/log" 2>&1 || {
    cat "$scratch/log"
    fail "the installation failed"
  }
}

sql() { # <database> <text>
  "$SQLITE3" -batch -bail "$1" "$2"
}

refused() { # <database> <statement>: holds when the database refuses the statement
  ! sql "$1" "$2" 2>"$scratch/refusal" || fail "accepted: $2"
  grep -q constraint "$scratch/refusal" || fail "refused for another reason: $(cat "$scratch/refusal")"
}

EveryFileStandsInItsPlace() {
  install_it
  expect_file "$study"
  expect_file "$register"
  expect_file "$lists"
  expect_file "$application/RskAsmtFld/NoPicSlted.jpg"
  expect_file "$application/RskAsmtFld/errImgLoad.jpg"
  expect_file "$application/KestrixStudy.desktop"
  [ -d "$application/RskAsmtFld/Picfolder" ] || fail "no folder Picfolder"
  expect "Picfolder" "" "$(ls -A "$application/RskAsmtFld/Picfolder")"
  expect "family folder" "KestrixStudy" "$(ls -A "$family")"
  expect "half-copied files" "" "$(find "$family" -name '*.part')"
  local database
  for database in "$study" "$register" "$lists"; do
    expect "integrity of $database" "ok" "$(sql "$database" 'PRAGMA integrity_check')"
    expect "journal of $database" "delete" "$(sql "$database" 'PRAGMA journal_mode')"
    expect "page size of $database" "4096" "$(sql "$database" 'PRAGMA page_size')"
  done
  expect "versions" "2 1 1" "$(for database in "$study" "$register" "$lists"; do
    sql "$database" 'PRAGMA user_version'; done | xargs)"
}

PicturesAreRealPictures() {
  install_it
  local picture
  for picture in NoPicSlted.jpg errImgLoad.jpg; do
    expect "first bytes of $picture" "ffd8ff" \
      "$(head -c 3 "$application/RskAsmtFld/$picture" | od -An -tx1 | tr -d ' \n')"
    expect "last bytes of $picture" "ffd9" \
      "$(tail -c 2 "$application/RskAsmtFld/$picture" | od -An -tx1 | tr -d ' \n')"
  done
}

RegisterHoldsOneRowInOrgtmpAndNoOrganisation() {
  install_it
  expect "organisations" "0" "$(sql "$register" 'SELECT count(*) FROM orgtn')"
  expect "Orgtmp" "0" "$(sql "$register" 'SELECT Orgtmp.OrgNameTMP FROM Orgtmp')"
  expect "fields of orgtn" "OrgName,sclenotxt" \
    "$(sql "$register" "SELECT group_concat(name) FROM pragma_table_info('orgtn')")"
}

EveryListBeginsWithItsReservedEntries() {
  install_it
  local list
  for list in Prjstage.hazopstage PhaseMachLife.PhaseMachLife primaryhazard.hazardType \
    HazardType.hazardoccurrence RecommTyp.RecommendationTyp ActionBy.ActnBy; do
    expect "first entries of $list" "None.,N.A." \
      "$(sql "$lists" "SELECT group_concat(entry) FROM (SELECT $list AS entry FROM ${list%.*} LIMIT 2)")"
    local total different
    read -r total different < <(sql "$lists" "SELECT count(*) || ' ' || count(DISTINCT $list) FROM ${list%.*}")
    [ "$total" -ge 12 ] || fail "$list has only $total rows"
    # One text may be a hazard type of two primary hazards; everywhere else an entry is there once.
    [ "$list" = HazardType.hazardoccurrence ] || expect "rows of $list" "$different" "$total"
    expect "apostrophes in $list" "0" \
      "$(sql "$lists" "SELECT count(*) FROM ${list%.*} WHERE instr($list, '''') > 0")"
  done
}

HazardTypesStandBelowPrimaryHazards() {
  install_it
  expect "primary hazards" "12" "$(sql "$lists" 'SELECT count(*) FROM primaryhazard')"
  expect "types without a primary hazard" "0" \
    "$(sql "$lists" 'SELECT count(*) FROM HazardType WHERE HazardTyp NOT IN (SELECT hazardType FROM primaryhazard)')"
  expect "primary hazards without a type" "0" \
    "$(sql "$lists" 'SELECT count(*) FROM primaryhazard WHERE hazardType NOT IN (SELECT HazardTyp FROM HazardType)')"
  expect "types that stand twice below one hazard" "0" \
    "$(sql "$lists" 'SELECT count(*) FROM (SELECT 1 FROM HazardType GROUP BY HazardTyp, hazardoccurrence HAVING count(*) > 1)')"
  [ "$(sql "$lists" 'SELECT count(*) FROM HazardType')" -ge 60 ] || fail "fewer than 60 hazard types"
  # The database gives the running number.
  sql "$lists" "INSERT INTO HazardType (hazardoccurrence, HazardTyp) VALUES ('New', 'Noise hazards')"
  expect "running number" "$(sql "$lists" 'SELECT count(*) FROM HazardType')" \
    "$(sql "$lists" "SELECT SrNo FROM HazardType WHERE hazardoccurrence = 'New'")"
}

StudyTemplateHoldsItsTablesEmpty() {
  install_it
  local table
  for table in Project_details Risk_records fileLink; do
    expect "rows of $table" "0" "$(sql "$study" "SELECT count(*) FROM $table")"
  done
  expect "tables" "Project_details,Risk_records,fileLink" \
    "$(sql "$study" "SELECT group_concat(name) FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%'")"
  expect "fields of Project_details" \
    "Factory_Name,Project_Number,Project_phase,Project_Description,preparedBytxt" \
    "$(sql "$study" "SELECT group_concat(name) FROM pragma_table_info('Project_details')")"
  expect "fields of fileLink" "Project_Number,FilePath,FileShrtDscrptn,FileEmb" \
    "$(sql "$study" "SELECT group_concat(name) FROM pragma_table_info('fileLink')")"
}

# The names of a task in the order in which the forms address them.
task_fields='Project_Number dateOfRcd FuntnTaskMachry HazrdLoctn PhaseMachn Primary_Hazard Hazard_type
RefNo HzrdDscptnTXT ReccdtnTxt ReccdtnTypTxt preparedBytxt RIARtxt RskRdsdtnY_N ActnByCbo actnDt
ActntkenOptnY_N SevertyCbo ExposureCbo occurrenceCbo avoidanceCbo RiskIndex Chk_OptnSe Chk_OptnEx
Chk_OptnOc Chk_OptnAv SevertyCboAftr ExposureCboAftr occurrenceCboAftr avoidanceCboAftr RiskIndexAftr
Chk_OptnSeAftr Chk_OptnExAftr Chk_OptnOcAftr Chk_OptnAvAftr 1Chk_OptnSltd 2Chk_OptnSltd 3Chk_OptnSltd
4Chk_OptnSltd 5Chk_OptnSltd 1Chk_OptnSltdAftr 2Chk_OptnSltdAftr 3Chk_OptnSltdAftr 4Chk_OptnSltdAftr
5Chk_OptnSltdAftr nunberauto PicBfrRcmdtn PicAftrRcmdtn'

EveryRecordSourceRunsOnItsDatabase() {
  install_it
  sql "$study" "SELECT Project_details.Factory_Name, Project_details.Project_Number, Project_details.Project_phase, Project_details.Project_Description, Project_details.preparedBytxt FROM Project_details WHERE (((Project_details.Factory_Name)='Press shop'))"
  sql "$study" "SELECT fileLink.Project_Number, fileLink.FilePath, fileLink.FileShrtDscrptn, fileLink.FileEmb FROM fileLink WHERE (((fileLink.Project_Number)='1'))"
  local fields="" field
  for field in $task_fields; do
    fields+="${fields:+, }Risk_records.[$field]"
  done
  sql "$study" "SELECT $fields FROM Risk_records Where (((Risk_records.Project_Number)='1')) ORDER BY Risk_records.nunberauto"
  sql "$lists" "SELECT HazardType.hazardoccurrence, HazardType.HazardTyp, HazardType.SrNo FROM HazardType WHERE(((hazardType.HazardTyp)='Noise hazards'))" >"$scratch/types"
  [ -s "$scratch/types" ] || fail "no hazard types below Noise hazards"
  sql "$register" "SELECT orgtn.OrgName, Orgtn.sclenotxt FROM orgtn"
  expect "order of the fields" "$(echo $task_fields | tr ' ' ',')" \
    "$(sql "$study" "SELECT group_concat(name) FROM pragma_table_info('Risk_records')")"
}

unset_task='P-1||None.|None.|None.|None.|None.|0|None.|None.|None.|||0|None.||0|Reset|N.A.|N.A.|N.A.|0|Reset|N.A.|N.A.|N.A.|Reset|N.A.|N.A.|N.A.|0|Reset|N.A.|N.A.|N.A.|0|0|0|0|0|0|0|0|0|0|1|NoPicSlted.jpg|NoPicSlted.jpg'

NewTaskTakesTheUnsetValues() {
  install_it
  sql "$study" "INSERT INTO Risk_records (Project_Number) VALUES ('P-1')"
  expect "new task" "$unset_task" "$(sql "$study" 'SELECT * FROM Risk_records')"
  # A number is never given twice.
  sql "$study" "DELETE FROM Risk_records; INSERT INTO Risk_records (Project_Number) VALUES ('P-1')"
  expect "number after a delete" "2" "$(sql "$study" 'SELECT nunberauto FROM Risk_records')"
}

NullTakesTheUnsetValuesToo() {
  install_it
  local values="'P-1'" i
  for ((i = 1; i < 48; i++)); do
    values+=", NULL"
  done
  sql "$study" "INSERT INTO Risk_records VALUES ($values)"
  expect "new task" "$unset_task" "$(sql "$study" 'SELECT * FROM Risk_records')"
}

TextsAreHeldToTheirLengths() {
  install_it
  local long255 long65535
  long255="replace(hex(zeroblob(255)), '00', 'é')"
  long65535="replace(hex(zeroblob(65535)), '00', 'é')"
  sql "$study" "INSERT INTO Risk_records (FuntnTaskMachry, HzrdDscptnTXT, ReccdtnTxt) VALUES ($long255, $long65535, $long65535)"
  refused "$study" "INSERT INTO Risk_records (FuntnTaskMachry) VALUES ($long255 || 'x')"
  refused "$study" "INSERT INTO Risk_records (HzrdDscptnTXT) VALUES ($long65535 || 'x')"
  sql "$study" "INSERT INTO Project_details (Project_Number, Project_Description) VALUES ($long255, $long65535)"
  refused "$study" "INSERT INTO Project_details (Project_Number) VALUES ($long255 || 'x')"
  sql "$study" "INSERT INTO fileLink (FilePath, FileShrtDscrptn, FileEmb) VALUES ('/folder/' || $long255, $long255, '/folder/' || $long255)"
  refused "$study" "INSERT INTO fileLink (FilePath) VALUES (replace(hex(zeroblob(4097)), '00', 'x'))"
  refused "$register" "INSERT INTO orgtn (OrgName) VALUES ($long255 || 'x')"
  refused "$lists" "INSERT INTO ActionBy (ActnBy) VALUES ($long255 || 'x')"
}

EmptyNamesAndPathsAreRefused() {
  install_it
  refused "$register" "INSERT INTO orgtn (OrgName) VALUES ('')"
  refused "$lists" "INSERT INTO Prjstage VALUES ('')"
  refused "$lists" "INSERT INTO PhaseMachLife VALUES ('')"
  refused "$lists" "INSERT INTO primaryhazard (hazardType) VALUES ('')"
  refused "$lists" "INSERT INTO HazardType (hazardoccurrence, HazardTyp) VALUES ('', 'Noise hazards')"
  refused "$lists" "INSERT INTO RecommTyp VALUES ('')"
  refused "$lists" "INSERT INTO ActionBy VALUES ('')"
  refused "$study" "INSERT INTO fileLink VALUES ('P-1', '', '', '')"
}

OrganisationNamesAreUniqueToTheLetter() {
  install_it
  sql "$register" "INSERT INTO orgtn (OrgName) VALUES ('Press shop'), ('press shop')"
  refused "$register" "INSERT INTO orgtn (OrgName) VALUES ('Press shop')"
  expect "numbers" "0,0" "$(sql "$register" 'SELECT group_concat(sclenotxt) FROM orgtn')"
}

RowsComeInTheOrderInWhichTheyWereAdded() {
  install_it
  sql "$register" "INSERT INTO orgtn (OrgName, sclenotxt) VALUES ('Paint shop', 1), ('Assembly', 2), ('Foundry', 3)"
  expect "organisations" "Paint shop,Assembly,Foundry" \
    "$(sql "$register" 'SELECT group_concat(OrgName) FROM (SELECT orgtn.OrgName, Orgtn.sclenotxt FROM orgtn)')"
  # Also where only keys are read, which an index alone could give in its own order.
  expect "keys" "1,2,3" "$(sql "$register" 'SELECT group_concat(key) FROM (SELECT _rowid_ AS key FROM orgtn)')"
  sql "$lists" "INSERT INTO HazardType (hazardoccurrence, HazardTyp) VALUES ('b', 'New'), ('a', 'New')"
  expect "hazard types" "b,a" \
    "$(sql "$lists" "SELECT group_concat(hazardoccurrence) FROM (SELECT hazardoccurrence FROM HazardType WHERE(((hazardType.HazardTyp)='New')))")"
  sql "$study" "INSERT INTO fileLink (Project_Number, FilePath) VALUES ('2', '/z'), ('1', '/y'), ('2', '/a')"
  expect "links" "/z,/a" \
    "$(sql "$study" "SELECT group_concat(FilePath) FROM (SELECT FilePath FROM fileLink WHERE (((fileLink.Project_Number)='2')))")"
}

WhatTheUserChangedStays() {
  install_it
  sql "$register" "INSERT INTO orgtn (OrgName, sclenotxt) VALUES ('Press shop', 1)"
  sql "$lists" "DELETE FROM ActionBy WHERE ActnBy = 'Supplier'"
  sql "$study" "INSERT INTO Project_details (Project_Number) VALUES ('template')"
  cp "$study" "$application/RskAsmtFld/risk_esmatn1.mdb"
  echo "our own picture" >"$application/RskAsmtFld/NoPicSlted.jpg"
  mkdir "$application/RskAsmtFld/Picfolder/Prj1"
  echo "photo" >"$application/RskAsmtFld/Picfolder/Prj1/1.jpg"
  (cd "$application" && find . -type f -not -name '*.desktop' -exec sha256sum {} + | sort) >"$scratch/before"
  install_it
  (cd "$application" && find . -type f -not -name '*.desktop' -exec sha256sum {} + | sort) >"$scratch/after"
  diff "$scratch/before" "$scratch/after" || fail "the second installation changed a file"
  expect "organisation" "Press shop|1" "$(sql "$register" 'SELECT * FROM orgtn')"
  expect "half-copied files" "" "$(find "$family" -name '*.part')"
}

WhatTheUserDeletedComesBack() {
  install_it
  sql "$lists" "DELETE FROM ActionBy"
  rm "$register" "$application/RskAsmtFld/errImgLoad.jpg"
  install_it
  expect "organisations" "0" "$(sql "$register" 'SELECT count(*) FROM orgtn')"
  expect_file "$application/RskAsmtFld/errImgLoad.jpg"
  expect "rows of the kept list" "0" "$(sql "$lists" 'SELECT count(*) FROM ActionBy')"
}

LinkThatLeadsNowhereIsKept() {
  install_it
  rm "$register"
  ln -s "$scratch/unplugged/orgtn.mdb" "$register"
  install_it
  expect "link" "$scratch/unplugged/orgtn.mdb" "$(readlink "$register")"
}

StagedInstallationGoesBelowItsRoot() {
  DESTDIR="$scratch/stage" "$CMAKE" --install "$BUILD" --prefix "$family" >/dev/null
  [ ! -e "$family" ] || fail "something lies outside of the stage"
  expect_file "$scratch/stage$register"
  grep -qF "Icon=$application/kestrix.png" "$scratch/stage$application/KestrixStudy.desktop" ||
    fail "the desktop entry doesn't name the final place"
}

# A desktop takes the escapes of the value away and then the quotes, as a shell does.
EntryStartsTheProgramWhateverTheFolderIsCalled() {
  local name entry
  cd "$scratch"
  for name in 'plain' "a \"b\" \$c \`d\` %f 'e' #g" 'with=sign' $'two\nlines and a\ttab' 'semi;colon [x]'; do
    "$CMAKE" --install "$BUILD" --prefix "$name" >"$scratch/log" 2>&1 || fail "no installation in $name"
    printf '#!/bin/sh\nprintf %%s "$0" >"%s/started"\n' "$scratch" >"$scratch/$name/KestrixStudy/KestrixStudy"
    chmod +x "$scratch/$name/KestrixStudy/KestrixStudy"
    entry="$scratch/$name/KestrixStudy/KestrixStudy.desktop"
    expect "lines of the entry" "8" "$(wc -l <"$entry")"
    local command
    command="$(printf %b "$(sed -n 's/^Exec=//p' "$entry")")"
    eval "set -- ${command//%%/%}"
    [ "$1" = sh ] || [ "${1#*=}" = "$1" ] || fail "the first word of the command holds \"=\": $1"
    (cd / && "$@")
    expect "program of the entry" "$scratch/$name/KestrixStudy/KestrixStudy" "$(cat "$scratch/started")"
    expect "picture of the entry" "$scratch/$name/KestrixStudy/kestrix.png" \
      "$(printf %b "$(sed -n 's/^Icon=//p' "$entry")")"
  done
}

FolderThatCannotBeMadeIsSaid() {
  mkdir -p "$family"
  echo "in the way" >"$application"
  if "$CMAKE" --install "$BUILD" --prefix "$family" >"$scratch/log" 2>&1; then
    fail "installed over a file that was in the way"
  fi
  # Long messages are wrapped at blanks.
  tr -s ' \n' ' ' <"$scratch/log" | grep -qF "$application" || fail "the message doesn't name the folder: $(cat "$scratch/log")"
  expect "file in the way" "in the way" "$(cat "$application")"
}

HelpStandsBesideTheProgram() {
  install_it
  expect "beginning of the manual" "%PDF-" "$(head -c 5 "$application/hlpAnnlyAdv.pdf")"
  expect "beginning of the help page" "<!DOCTYPE html>" "$(head -n 1 "$application/acci_alys_help.htm")"
  echo "older help" >"$application/acci_alys_help.htm"
  touch -d '2001-01-01' "$application/acci_alys_help.htm"
  install_it
  expect "renewed help page" "<!DOCTYPE html>" "$(head -n 1 "$application/acci_alys_help.htm")"
}

ProgramIsRenewed() {
  install_it
  local program="$application/KestrixStudy"
  [ -x "$program" ] || fail "no program file"
  echo "an older program" >"$program"
  touch -d '2001-01-01' "$program"
  install_it
  [ "$(head -c 4 "$program" | od -An -c | tr -d ' \n')" = '177ELF' ] || fail "the program wasn't renewed"
}

"$1"
