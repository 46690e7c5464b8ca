"""Random studies, and what the risk model makes of them, told independently of the program."""
import datetime
import os
import random
import re
import shutil
import sqlite3

NONE = "None."
UNSET = "N.A."
INDEX = {
    ("F1, F2", "O1, Low", UNSET): 0,
    ("F1, F2", "O1, Low", "A2, Impossible"): 2,
    ("F1, F2", "O2, Midium", "A1, Possible"): 0,
    ("F1, F2", "O2, Midium", "A2, Impossible"): 1,
    ("F1, F2", "O3, High", "A1, Possible"): 1,
    ("F1, F2", "O3, High", "A2, Impossible"): 2,
    ("F1, Seldom", "O1, Low", "A1, Possible"): 1,
    ("F1, Seldom", "O1, Low", "A2, Impossible"): 2,
    ("F1, Seldom", "O2, Midium", "A1, Possible"): 2,
    ("F1, Seldom", "O2, Midium", "A2, Impossible"): 3,
    ("F1, Seldom", "O3, High", "A1, Possible"): 3,
    ("F1, Seldom", "O3, High", "A2, Impossible"): 4,
    ("F2, Frequent", "O1, Low", "A1, Possible"): 3,
    ("F2, Frequent", "O1, Low", "A2, Impossible"): 4,
    ("F2, Frequent", "O2, Midium", "A1, Possible"): 4,
    ("F2, Frequent", "O2, Midium", "A2, Impossible"): 5,
    ("F2, Frequent", "O3, High", "A1, Possible"): 5,
    ("F2, Frequent", "O3, High", "A2, Impossible"): 6,
}
BANDS = ["No Risk", "Low Risk", "Low Risk", "Medium Risk", "Medium Risk", "High Risk", "High Risk"]
LOW, MEDIUM, HIGH = "Low Risk", "Medium Risk", "High Risk"
MATRIX = [  # by severity score, then by class: to 4, 7, 10, 13, 15
    [LOW, LOW, LOW, MEDIUM, HIGH],
    [LOW, LOW, MEDIUM, HIGH, HIGH],
    [LOW, MEDIUM, HIGH, HIGH, HIGH],
    [MEDIUM, MEDIUM, HIGH, HIGH, HIGH],
]
LEVELS = [
    [NONE, "S1, Slight", "S2, Serious", "Reset"],
    ["F1, F2", "F1, Seldom", "F2, Frequent", UNSET],
    ["O1, Low", "O2, Midium", "O3, High", UNSET],
    ["A1, Possible", "A2, Impossible", UNSET],
]
LEVEL_FIELDS = ["SevertyCbo", "ExposureCbo", "occurrenceCbo", "avoidanceCbo"]
NOT_ESTIMATED = "Not estimated"


class Stage:
    """What the model makes of a stage of a row."""

    def __init__(self, row, after):
        self.levels = [row[field + after] for field in LEVEL_FIELDS]
        self.scores = [row[f"{n}Chk_OptnSltd{after}"] for n in (1, 2, 3, 4)]
        self.stored = row["RiskIndex" + after]
        path = tuple(self.levels[1:])
        self.index = 0 if self.levels[0] == NONE and path == (UNSET,) * 3 else INDEX.get(path)
        self.estimated = self.index is not None and self.levels[0] != "Reset"
        self.index_band = BANDS[self.index] if self.estimated else NOT_ESTIMATED
        self.score = sum(self.scores[1:])
        if not any(self.scores):
            self.class_band = NOT_ESTIMATED
        elif self.scores[0] == 0 or self.score == 0:
            self.class_band = "No Risk"
        else:
            column = [self.score <= last for last in (4, 7, 10, 13, 15)].index(True)
            self.class_band = MATRIX[self.scores[0] - 1][column]

    def index_text(self):
        own = str(self.index) if self.estimated else NOT_ESTIMATED
        differs = self.stored != (self.index if self.estimated else 0)
        return f"{own} (stored: {self.stored})" if differs else own


def verdict(row):
    before, after = row["RiskIndex"], row["RiskIndexAftr"]
    if before == after:
        text = "No Risk" if before == 0 else "May require further risk reduction."
    else:
        text = "Yes" if before > after else "No"
    both = Stage(row, "").estimated and Stage(row, "Aftr").estimated
    return text if both else f"{text} (not estimated)"


def iso(text):
    match = re.fullmatch(r"(\d\d)/(\d\d)/(\d{4})", text)
    try:
        return datetime.date(int(match[3]), int(match[2]), int(match[1])) if match else None
    except ValueError:
        return None


WORDS = (
    "guard press λειτουργία χειριστής 压力机 操作员 危险 حماية المكبس خطر Gefährdung é 🛠 <b>bold</b> "
    "'quoted' \"double\" a,b _x0041_ _x005F_ \uffff \u0007 &amp; {} %1 %2 \u202e \u0301 =SUM(A1)"
).split(" ")
BEGINNINGS = ["", "", "", "=1+1 ", "+", "-", "@", "'=", "'+", "\t", "'", "=cmd|'/c calc'!A1 "]


class Study:
    """An installation of one organisation with one project of random tasks."""

    ORGANISATION = "Press & shop <1>"
    PROJECT = "P-1/α"

    def __init__(self, folder, seed, count):
        self.chance = random.Random(seed)
        self.folder = os.path.join(folder, f"installation{seed}")
        shutil.copytree(os.path.join(os.environ["PRISTINE"]), self.folder)
        data = os.path.join(self.folder, "RskAsmtFld")
        self.file = os.path.join(data, "risk_esmatn1.mdb")
        shutil.copy(os.path.join(self.folder, "risk_esmatn.mdb"), self.file)
        self.pictures = os.path.join(data, "Picfolder", "Prj1")
        os.makedirs(self.pictures)
        shutil.copy(os.path.join(data, "NoPicSlted.jpg"), os.path.join(self.pictures, "there.jpg"))
        with open(os.path.join(self.pictures, "none.jpg"), "w", encoding="utf-8") as file:
            file.write("no picture")
        with sqlite3.connect(os.path.join(data, "orgtn.mdb")) as register:
            register.execute("INSERT INTO orgtn(OrgName,sclenotxt) VALUES(?,1)", [self.ORGANISATION])
        with sqlite3.connect(self.file) as study:
            study.execute(
                "INSERT INTO Project_details(Factory_Name,Project_Number,Project_phase,"
                "Project_Description,preparedBytxt) VALUES(?,?,?,?,?)",
                [self.ORGANISATION, self.PROJECT, "Design", self.text(20), "A. B."],
            )
            for path in (self.file, os.path.join(folder, "gone.pdf")):
                study.execute(
                    "INSERT INTO fileLink(Project_Number,FilePath,FileShrtDscrptn) VALUES(?,?,?)",
                    [self.PROJECT, path, os.path.basename(path)],
                )
            for number in range(count):
                row = self.row(number)
                names = ",".join(f'"{name}"' for name in row)
                study.execute(
                    f"INSERT INTO Risk_records({names}) VALUES({','.join('?' * len(row))})",
                    list(row.values()),
                )

    def text(self, most):
        words = [self.chance.choice(WORDS) for _ in range(self.chance.randint(0, most))]
        text = self.chance.choice(BEGINNINGS)
        for word in words:
            text += word + self.chance.choice([" ", " ", " ", "\n", "\r\n", "\t"])
        return text

    def row(self, number):
        chance = self.chance
        row = {
            "Project_Number": self.PROJECT,
            "dateOfRcd": self.date(),
            # A word of its own finds the task again in every format.
            "FuntnTaskMachry": f"{chance.choice(BEGINNINGS)}t{number:05d}t {self.text(4)}",
            "RefNo": chance.choice(["", "0", "abc", f"{chance.randint(0, 99):02d}.{number % 100:02d}"]),
            "HzrdDscptnTXT": self.text(2000 if chance.random() < 0.02 else 40),
            "ReccdtnTxt": chance.choice([NONE, self.text(30)]),
            "actnDt": self.date(),
            "ActntkenOptnY_N": chance.randint(0, 1),
            "RskRdsdtnY_N": chance.randint(0, 1),
        }
        if chance.random() < 0.01:
            row["HzrdDscptnTXT"] = "x_x0041_" * 5000
        for field in ("HazrdLoctn", "PhaseMachn", "Primary_Hazard", "Hazard_type",
                      "ReccdtnTypTxt", "ActnByCbo"):
            row[field] = chance.choice([NONE, self.text(3)])
        for after in ("", "Aftr"):
            for field, levels in zip(LEVEL_FIELDS, LEVELS):
                row[field + after] = chance.choice(levels)
            for score in (1, 2, 3, 4):
                row[f"{score}Chk_OptnSltd{after}"] = chance.randint(0, 4 if score == 1 else 5)
            stage_index = Stage({**row, "RiskIndex" + after: 0}, after).index
            row["RiskIndex" + after] = stage_index or 0
            if chance.random() < 0.1:
                row["RiskIndex" + after] = chance.randint(0, 6)
        for field in ("PicBfrRcmdtn", "PicAftrRcmdtn"):
            row[field] = chance.choice(
                ["", "NoPicSlted.jpg", "there.jpg", "gone.jpg", "none.jpg", "../../orgtn.mdb"])
        return row

    def date(self):
        return self.chance.choice(["", "31/02/2026", "soon", "01/02/1899", "15/06/2026",
                                   f"{self.chance.randint(1, 28):02d}/03/2027"])

    def rows(self):
        with sqlite3.connect(f"file:{self.file}?mode=ro", uri=True) as study:
            study.row_factory = sqlite3.Row
            return [dict(row) for row in
                    study.execute("SELECT * FROM Risk_records ORDER BY nunberauto")]


def wanted_cells(row):
    """The register's line of a task: text, number or date, in the order of the columns."""
    cells = [row[f] for f in ("RefNo", "FuntnTaskMachry", "HazrdLoctn", "PhaseMachn",
                              "Primary_Hazard", "Hazard_type", "HzrdDscptnTXT", "ReccdtnTxt",
                              "ReccdtnTypTxt", "ActnByCbo")]
    cells.append(iso(row["actnDt"]) or row["actnDt"])
    cells.append("Yes" if row["ActntkenOptnY_N"] else "No")
    cells.append(iso(row["dateOfRcd"]) or row["dateOfRcd"])
    for after in ("", "Aftr"):
        stage = Stage(row, after)
        text = stage.index_text()
        cells += stage.levels
        cells += [int(text) if text.isdigit() else text, stage.index_band, stage.score,
                  stage.class_band]
    return cells + [verdict(row)]
