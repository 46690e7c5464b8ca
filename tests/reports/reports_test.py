#!/usr/bin/env python3
"""reports_test.py CASE: runs one case; the environment gives KESTRIX, PRISTINE and SCHEMA."""
import csv
import datetime
import hashlib
import html.parser
import io
import json
import os
import re
import shutil
import signal
import sqlite3
import stat
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ET
import zipfile

from study import Study, Stage, verdict, wanted_cells

SKIPPED = 77
DAY = "15/06/2026"


def expect(what, wanted, got):
    if wanted != got:
        sys.exit(f"FAILED: {what}: wanted {wanted!r}, got {got!r}")


def expect_true(what, holds):
    if not holds:
        sys.exit(f"FAILED: {what}")


def kestrix(study, *words, status=0):
    done = subprocess.run([os.environ["KESTRIX"], "--installation", study.folder, *words],
                          capture_output=True, text=True, check=False)
    expect(f"status of {words}: {done.stderr}", status, done.returncode)
    return done


def report(study, name, *options, status=0):
    """The file's bytes, and what stood on standard error."""
    path = os.path.join(os.path.dirname(study.folder), name)
    done = kestrix(study, "report", study.ORGANISATION, study.PROJECT, "-o", path,
                   "--date", DAY, *options, status=status)
    if status != 0:
        return done.stderr
    with open(path, "rb") as file:
        return file.read()


MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"


def unescaped(text):
    return re.sub(r"_x([0-9A-Fa-f]{4})_", lambda m: chr(int(m[1], 16)), text)


def sheets(workbook):
    """The cells of each sheet, row by row; texts as str, numbers as float. No formula may stand there."""
    archive = zipfile.ZipFile(io.BytesIO(workbook))
    shared = ["".join(t.text or "" for t in item.iter(MAIN + "t"))
              for item in ET.fromstring(archive.read("xl/sharedStrings.xml")).iter(MAIN + "si")]
    names = [sheet.get("name")
             for sheet in ET.fromstring(archive.read("xl/workbook.xml")).iter(MAIN + "sheet")]
    told = {}
    for number, name in enumerate(names, 1):
        root = ET.fromstring(archive.read(f"xl/worksheets/sheet{number}.xml"))
        expect(f"formulas of {name}", [], list(root.iter(MAIN + "f")))
        rows = []
        for row in root.iter(MAIN + "row"):
            cells = {}
            for cell in row.iter(MAIN + "c"):
                letters = re.match("[A-Z]+", cell.get("r"))[0]
                column = 0
                for letter in letters:
                    column = column * 26 + ord(letter) - ord("A") + 1
                value = cell.find(MAIN + "v")
                if value is not None:
                    is_text = cell.get("t") == "s"
                    cells[column - 1] = (unescaped(shared[int(value.text)]) if is_text
                                         else float(value.text))
            rows.append(cells)
        told[name] = rows
    return told


def as_csv_field(value):
    if isinstance(value, datetime.date):
        return value.isoformat()
    if isinstance(value, int):
        return str(value)
    return "'" + value if re.match("'?[=+\\-@\t\r\n]", value) else value


def as_cell(value):
    if isinstance(value, datetime.date):
        first = datetime.date(1899, 12, 30)
        if value >= datetime.date(1900, 3, 1):
            return float((value - first).days)
        return value.strftime("%d/%m/") + f"{value.year:04d}"
    return float(value) if isinstance(value, int) else value


def comparable(value):
    """XML and its readers know one line end, and no character that is none."""
    if not isinstance(value, str):
        return value
    return value.replace("\uffff", "\ufffd")


class Page(html.parser.HTMLParser):
    """The texts of the tables' rows under each heading of the second level."""

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.sections, self.heading, self.cell = {}, None, None
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        expect("no script", False, tag == "script" or any(name.startswith("on") for name, _ in attrs))
        for name, value in attrs:
            if name == "href":
                expect_true(f"link {value} leads within", value.startswith("#"))
        if tag == "h2":
            self.heading = ""
        if tag in ("td", "th"):
            self.cell = ""
        if tag == "tr" and self.sections:
            list(self.sections.values())[-1].append([])

    def handle_endtag(self, tag):
        if tag == "h2":
            self.sections[self.heading] = []
            self.heading = None
        if tag in ("td", "th"):
            if self.sections and self.sections[list(self.sections)[-1]]:
                self.sections[list(self.sections)[-1]][-1].append(self.cell)
            self.cell = None

    def handle_data(self, data):
        if self.heading is not None:
            self.heading += data
        if self.cell is not None:
            self.cell += data


def mark(row):
    return re.search("t[0-9]{5}t", row["FuntnTaskMachry"])[0]


def pdf_text(study, *options):
    path = os.path.join(os.path.dirname(study.folder), "text.pdf")
    report(study, "text.pdf", *options)
    done = subprocess.run(["pdftotext", "-raw", path, "-"], capture_output=True, text=True, check=True)
    return done.stdout


def check_study(study):
    rows = {row["nunberauto"]: row for row in study.rows()}
    tasks = json.loads(report(study, "r.json"))["projects"][0]["tasks"]
    expect("tasks of the JSON", sorted(rows), sorted(task["nunberauto"] for task in tasks))
    for task in tasks:
        row = rows[task["nunberauto"]]
        for field, value in row.items():
            expect(field, bool(value) if field.endswith("Y_N") else value, task[field])
        for name, after in (("before", ""), ("after", "Aftr")):
            stage, computed = Stage(row, after), task["computed"][name]
            expect("index", stage.index, computed["index"])
            expect("class", stage.score, computed["class"])
            if stage.estimated:
                expect("index band", stage.index_band, computed["index_band"])
            expect("class band", stage.class_band if any(stage.scores) else None,
                   computed["class_band"])
        expect_true("verdict", verdict(row).startswith(task["computed"]["verdict"]))
        expect("reduced", row["RiskIndex"] > row["RiskIndexAftr"], task["computed"]["reduced"])
    order = [task["nunberauto"] for task in tasks]

    text = report(study, "r.csv").decode("utf-8-sig")
    lines = list(csv.reader(io.StringIO(text, newline="")))
    expect("lines of the CSV", len(rows) + 1, len(lines))
    expect("columns", 30, len(lines[0]))
    for number, line in zip(order, lines[1:]):
        expect(f"line of task {number}", [as_csv_field(v) for v in wanted_cells(rows[number])], line)

    register = sheets(report(study, "r.xlsx"))["Register"]
    expect("rows of the workbook", len(rows) + 1, len(register))
    for number, cells in zip(order, register[1:]):
        for column, value in enumerate(wanted_cells(rows[number])):
            wanted, got = as_cell(value), cells.get(column, "")
            if isinstance(wanted, str) and len(wanted.encode("utf-16-le")) > 2 * 30000:
                expect_true("cut text says so", got == wanted or got.endswith("characters: see PDF)"))
                expect_true("cut text", len(got) <= 32767 and wanted.startswith(got[:-60]))
                continue
            expect(f"cell {column} of task {number}", comparable(wanted), got)

    page = Page(report(study, "r.html", "--kind", "sheets").decode())
    expect("sheets of the page", len(rows), len(page.sections))
    for heading, table in page.sections.items():
        number = next(n for n in rows if mark(rows[n]) in heading)
        told = {row[0]: row[1] for row in table}
        for after, name in (("", "Risk index before"), ("Aftr", "Risk index after")):
            got = told.get(name, "nothing")
            expect_true(f"{name} on the sheet of {number}: {got}",
                        Stage(rows[number], after).index_text() in got)

    register_text = pdf_text(study, "--kind", "register")
    sheet_text = pdf_text(study, "--kind", "sheets")
    for row in rows.values():
        expect(f"{mark(row)} in the printed register", 1, register_text.count(mark(row)))
        # In the contents, and at the head of its sheet.
        expect(f"{mark(row)} in the printed sheets", 2, sheet_text.count(mark(row)))


def EveryTaskStandsOnceInEveryFormatWithTheModelsValues(folder):
    for seed, count in enumerate((0, 1, 7, 40, 500)):
        check_study(Study(folder, seed, count))


def TheSameDataGivesTheSameBytes(folder):
    study = Study(folder, 11, 20)
    for ending in ("pdf", "html", "xlsx", "csv", "json"):
        first = report(study, "one." + ending)
        time.sleep(2.1 if ending in ("pdf", "xlsx") else 0)  # a clock of two seconds must not show
        expect_true(f"{ending} twice", first == report(study, "two." + ending))


def TheJsonFollowsItsSchema(folder):
    import jsonschema
    with open(os.environ["SCHEMA"], encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    for seed, count in ((21, 0), (22, 60)):
        told = json.loads(report(Study(folder, seed, count), "r.json"))
        expect("errors", [], [error.message for error in validator.iter_errors(told)])
    told["projects"][0]["tasks"][0]["RiskIndex"] = "six"
    expect_true("a wrong type is found", not validator.is_valid(told))


def NothingIsTakenForAFormula(folder):
    study = Study(folder, 31, 1)
    for text in ("=1+1", "+1", "-1", "@x", "\t=1", "\r=1", "\n=1", "'=1", "'-1"):
        with sqlite3.connect(study.file) as database:
            database.execute("UPDATE Risk_records SET HazrdLoctn=?", [text])
        lines = list(csv.reader(io.StringIO(report(study, "r.csv").decode("utf-8-sig"), newline="")))
        expect("CSV", "'" + text, lines[1][2])
        expect("XLSX", text, sheets(report(study, "r.xlsx"))["Register"][1][2])
    with sqlite3.connect(study.file) as database:
        database.execute("UPDATE Risk_records SET HazrdLoctn=?", ["<script>alert(1)</script>"])
    page = report(study, "r.html")
    expect_true("HTML is escaped", b"&lt;script&gt;" in page and b"<script" not in page)
    Page(page.decode())


def ThePdfIsWholeAndLeadsToItsHeadings(folder):
    study = Study(folder, 41, 12)
    bytes_of = report(study, "r.pdf", "--number", "D-1", "--revision", "C")
    path = os.path.join(folder, "r.pdf")
    checked = subprocess.run(["qpdf", "--check", path], capture_output=True, text=True, check=False)
    expect(f"qpdf: {checked.stdout}{checked.stderr}", (0, ""), (checked.returncode, checked.stderr))
    told = json.loads(subprocess.run(["qpdf", "--json", path], capture_output=True, check=True).stdout)
    titles = [entry["title"] for entry in told["outlines"]]
    expect("outline", ["Contents", "Summary", "Method", "Register", "Sheets", "Actions",
                       "Residual risks", "Files", "Sign-off"], titles)
    expect("sheets of the outline", 12, len(told["outlines"][4]["kids"]))
    expect("attachments", ["report.json"], list(told["attachments"]))
    attached = subprocess.run(["qpdf", path, "--show-attachment=report.json"],
                              capture_output=True, check=True).stdout
    expect_true("the attachment is the report's JSON", attached == report(study, "r.json"))
    text = subprocess.run(["pdftotext", "-layout", path, "-"], capture_output=True, text=True,
                          check=True).stdout
    pages = text.split("\f")[:-1]
    digest = hashlib.sha256(attached).hexdigest()[:12]
    for number, page in enumerate(pages, 1):
        for wanted in (f"Page {number} of {len(pages)}", digest, "Document D-1", "Revision C",
                       study.PROJECT):
            expect_true(f"{wanted} on page {number}", wanted in page)
    fonts = subprocess.run(["pdffonts", path], capture_output=True, text=True, check=True).stdout
    for line in fonts.splitlines()[2:]:
        expect(f"embedded: {line}", "yes", line.split()[-5])
    expect_true("the writer's bytes", bytes_of.startswith(b"%PDF-1."))


def everything_in(folder):
    return {(os.path.join(root, name), os.stat(os.path.join(root, name)).st_mtime_ns)
            for root, folders, files in os.walk(folder) for name in folders + files}


def NothingIsWrittenIntoTheInstallation(folder):
    study = Study(folder, 51, 5)
    before = everything_in(study.folder)
    for ending in ("pdf", "html", "xlsx", "csv", "json"):
        report(study, "r." + ending)
    kestrix(study, "list")
    subprocess.run([os.environ["KESTRIX"], "--installation", study.folder, "check"],
                   capture_output=True, check=False)
    expect("what lies there", before, everything_in(study.folder))


def one_sentence(what, errors, *words):
    expect_true(f"{what}: {errors!r}", errors.count("\n") == 1 and errors.startswith("kestrix: "))
    for word in words:
        expect_true(f"{what} names {word}: {errors}", word in errors)


def WhatCantBeReadOrWrittenIsOneSentence(folder):
    study = Study(folder, 61, 5)
    name = os.path.basename(study.file)
    good = report(study, "r.csv")
    expect("a file's rights", 0o666 & ~os.umask(os.umask(0o022)) & 0o777,
           os.stat(os.path.join(folder, "r.csv")).st_mode & 0o777)
    with open(study.file, "rb") as file:
        whole = file.read()

    def with_study(data):
        with open(study.file, "wb") as file:
            file.write(data)

    with_study(whole[:100])
    one_sentence("damaged", report(study, "r.csv", status=3), name)
    with_study(b"no database at all" * 100)
    one_sentence("not a database", report(study, "r.csv", status=3), name)
    with_study(whole)
    with sqlite3.connect(study.file) as database:
        database.execute("PRAGMA user_version=99")
    one_sentence("newer", report(study, "r.csv", status=3), name)
    with_study(whole)
    writer = sqlite3.connect(study.file, isolation_level=None)
    writer.execute("BEGIN EXCLUSIVE")
    one_sentence("locked", report(study, "r.csv", status=3), name)
    writer.close()
    os.rename(study.file, study.file + ".away")
    one_sentence("gone", report(study, "r.csv", status=3), name)
    os.rename(study.file + ".away", study.file)
    path = os.path.join(folder, "x.csv")
    for organisation, project in (("Nobody", study.PROJECT), (study.ORGANISATION, "P-9")):
        done = kestrix(study, "report", organisation, project, "-o", path, status=3)
        one_sentence("not there", done.stderr)
        expect("output", False, os.path.exists(path))
    one_sentence("no folder", report(study, "no/such/r.csv", status=3))
    os.mkdir(os.path.join(folder, "folder.csv"))
    one_sentence("a folder", report(study, "folder.csv", status=3), "folder.csv")
    pipe = os.path.join(folder, "pipe.csv")
    os.mkfifo(pipe)
    one_sentence("a pipe", report(study, "pipe.csv", status=3), "pipe.csv")
    expect_true("the pipe is still one", stat.S_ISFIFO(os.stat(pipe).st_mode))
    # Files may only grow to 4 kB: what a disk that is full does to the writer.
    path = os.path.join(folder, "r.csv")
    done = subprocess.run(
        ["bash", "-c", 'trap "" XFSZ; ulimit -f 4; exec "$@"', "-", os.environ["KESTRIX"],
         "--installation", study.folder, "report", study.ORGANISATION, study.PROJECT, "-o",
         path[:-3] + "json"], capture_output=True, text=True, check=False)
    expect("status with a full disk", 3, done.returncode)
    one_sentence("a full disk", done.stderr, "r.json")
    expect("what the full disk left", [], [n for n in os.listdir(folder) if "json" in n])
    with open(os.path.join(folder, "r.csv"), "rb") as file:
        expect_true("the older file stands", file.read() == good)


def ASignalLeavesNothing(folder):
    study = Study(folder, 71, 400)
    temporary = os.path.join(folder, "temporary")
    os.mkdir(temporary)
    target = os.path.join(folder, "out")
    os.mkdir(target)
    for number in (signal.SIGINT, signal.SIGTERM):
        for ending in ("pdf", "xlsx"):
            process = subprocess.Popen(
                [os.environ["KESTRIX"], "--installation", study.folder, "report",
                 study.ORGANISATION, study.PROJECT, "-o", os.path.join(target, "r." + ending)],
                env={**os.environ, "TMPDIR": temporary}, stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL)
            while not os.listdir(temporary) and process.poll() is None:
                pass
            process.send_signal(number)
            expect("status", -number, process.wait())
            expect("temporary files", [], os.listdir(temporary))
            expect("output", [], os.listdir(target))


def LibreOfficeOpensWorkbookAndPage(folder):
    office = shutil.which("soffice") or shutil.which("libreoffice")
    if office is None:
        print("LibreOffice isn't there, so nothing was opened with it.")
        sys.exit(SKIPPED)
    study = Study(folder, 81, 10)
    marks = [mark(row) for row in study.rows()]
    for ending, kind in (("xlsx", "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true,false,false,false,4"),
                         ("html", "txt:Text")):
        report(study, "office." + ending)
        subprocess.run([office, "--headless", f"-env:UserInstallation=file://{folder}/profile",
                        "--convert-to", kind, "--outdir", os.path.join(folder, ending),
                        os.path.join(folder, "office." + ending)], check=True, capture_output=True)
        told = ""
        for name in os.listdir(os.path.join(folder, ending)):
            with open(os.path.join(folder, ending, name), encoding="utf-8", errors="replace") as file:
                told += file.read()
        for wanted in marks:
            expect_true(f"{wanted} in what was made of the {ending}", wanted in told)


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as scratch:
        globals()[sys.argv[1]](scratch)
