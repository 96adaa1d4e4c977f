#!/usr/bin/env python3
"""citrans-derive as a user runs it, on made-up data: output, repetition, refusals, the report.

usage: derive_test.py CITRANS_DERIVE
"""
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.dom.minidom
from pathlib import Path

DERIVE = os.path.abspath(sys.argv[1])
LETTERS = "ACDEFGHIKLMNPQRSTVWY"
ATOMS = "N HN HA C CA CB".split()
COIL = dict(N=120, HN=8.2, HA=4.4, C=176, CA=56, CB=33)
TABLES = ["Pro.cs.tab", "Pro.seq.tab", "isoadj.tab", "randcoil.tab", "rcadj.tab", "rcnext.tab",
          "rcprev.tab", "sslimit.tab"]


def write(path, lines):
    with open(path, "w") as file:
        file.write("\n".join(lines) + "\n")


def write_published(folder):
    os.makedirs(folder)
    for name, shift in (("wishart1995_GGXAGG", 0), ("wishart1995_GGXPGG", -0.5)):
        rows = ["\t".join([x] + [str(COIL[a] + shift) for a in ATOMS]) for x in [*LETTERS, "C_ox"]]
        write(f"{folder}/{name}.tsv", ["# made up", "\t".join(["residue", *ATOMS]), *rows])
    write(f"{folder}/tamiola2010_neighbour_corrections.tsv",
          ["X\tatom\tX_at_i+1\tX_at_i-1", *(f"{x}\t{a}\t0.1\t0.2" for x in LETTERS for a in ATOMS)])
    write(f"{folder}/deuterium_isotope_shifts.tsv",
          ["residue\trule_CA\trule_CB\ttable_CA",
           *(f"{x}\t-0.5\t{'NA' if x == 'G' else -0.7}\t-0.4" for x in LETTERS)])
    write(f"{folder}/pdb_proline_neighbours.tsv",
          ["position\tresidue\tn_cis\tn_trans",
           *(f"{p}\t{x}\t{50 + i}\t{900 - i}" for p in ("-1", "+1") for i, x in enumerate(LETTERS))])
    write(f"{folder}/proline_cis_trans_shifts.tsv",
          ["isomer\tatom\tmean\tsd", "trans\tCB-CG\t4.51\t1.17", "cis\tCB-CG\t9.64\t1.27"])


def write_training(folder, proteins=20, length=60):
    """Proteins with a proline at every twelfth place, one in five of them cis by CB and CG."""
    rng = random.Random(1)
    sequences, shifts, prolines = [], [], []
    for number in range(proteins):
        entry = f"p{number}"
        letters = [rng.choice(LETTERS.replace("P", "")) for _ in range(length)]
        for place in range(5, length - 1, 12):
            letters[place] = "P"
        letters[2] = "P" if number < 3 else letters[2]  # disputed below
        sequences.append(f"{entry} {number} {''.join(letters)}")
        for place, letter in enumerate(letters, 1):
            labelled = letter == "P" and place != 3
            cis = labelled and rng.random() < 0.2
            value = {a: COIL[a] + rng.gauss(0, 1) * (0.2 if a[0] == "H" else 1.2) for a in ATOMS}
            cg = 24.5 if cis else 27.3
            if labelled:
                value["CB"] = (34.5 if cis else 32) + rng.gauss(0, 0.8)
                label = "cis" if cis else "trans"
                source = rng.choice(["both", "shifts", "structure"])
                prolines.append(f"{entry} {place} {label} {source} {value['CB'] - cg:.2f}")
            cells = [f"{value[a]:.2f}" for a in "N HA C CA CB HN".split()]
            cells += ["9999", "9999", f"{cg + rng.gauss(0, 0.5):.2f}" if labelled else "9999"]
            shifts.append(f"{entry} {place} {letter} {' '.join(cells)}")
    prolines += ["p0 3 disputed both 5.10", "p1 3 disputed both 9.20", "p2 3 disputed both 9999"]
    write(f"{folder}/training_sequences.tab",
          ["REMARK made up", "VARS ENTRY CLUSTER SEQUENCE", "FORMAT %s %d %s", *sequences])
    write(f"{folder}/training_shifts.tab",
          ["VARS ENTRY RESID RESNAME N HA C CA CB HN HA2 HA3 CG",
           "FORMAT %s %d %s" + " %8.3f" * 9, *shifts])
    write(f"{folder}/training_prolines.tab",
          ["VARS ENTRY RESID LABEL SOURCE DELTA", "FORMAT %s %d %s %s %f", *prolines])


# file, pattern in its text, replacement, what the line about it holds after "file:line: "
FAULTS = [
    ("training_shifts.tab", r"HA2 HA3 CG", "HA2 HA3 XX", 1, "no column CG"),
    ("training_shifts.tab", r"(?m)^(p0 1 \S+) \S+", r"\1 12.x", 3, "N is no number: '12.x'"),
    ("training_shifts.tab", r"(?m)^(p0 2 .*) \S+$", r"\1", 4, "11 cells in a table of 12 columns"),
    ("training_shifts.tab", r"(?m)^p0 3 ", "p0 61 ", 5, "residue 61 outside a sequence of 60"),
    ("training_shifts.tab", r"(?m)^p0 4 ", "q0 4 ", 6, "no sequence for entry q0"),
    ("training_prolines.tab", r"(?m)^p0 6 ", "p0 0 ", 3, "residue 0 outside a sequence of 60"),
    ("training_prolines.tab", r"(?m)^p0 6 ", "p0 7 ", 3, "residue 7 is no proline"),
    ("training_prolines.tab", r"(?m)^p0 6 \S+", "p0 6 both", 3, "LABEL is none of"),
    ("training_prolines.tab", r" cis ", " trans ", None, "no cis proline"),
    ("training_prolines.tab", r" trans ", " cis ", None, "no trans proline"),
    ("training_sequences.tab", r"(?m)^p1 1 ", "p0 1 ", 5, "entry p0 occurs twice"),
    ("training_sequences.tab", r"(?m)^p1 1 ", "p1 one ", 5, "CLUSTER is no integer: 'one'"),
    ("published/wishart1995_GGXAGG.tsv", r"\tCA\t", "\tCX\t", 2, "no column CA"),
    ("published/pdb_proline_neighbours.tsv", r"\+1\tA", "0\tA", 22, "unknown residue or position"),
]


class Derive(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        cls.data = os.path.join(cls.folder, "data")
        write_published(os.path.join(cls.data, "published"))
        write_training(cls.data)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def run_derive(self, *arguments):
        return subprocess.run([DERIVE, *arguments], cwd=self.folder, capture_output=True,
                              text=True, timeout=250)

    def derive(self, out, data=None):
        return self.run_derive("tables", data or self.data, out)

    def both(self, label):
        return len(re.findall(rf"(?m) {label} both ",
                              Path(self.data, "training_prolines.tab").read_text()))

    def read(self, out):
        return {path.name: path.read_text() for path in Path(self.folder, out).iterdir()}

    def test_the_same_data_give_the_same_bytes(self):
        for out in ("first", "second"):
            done = self.derive(out)
            self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)
        tables = self.read("first")
        self.assertEqual(sorted(tables), sorted(TABLES))
        self.assertEqual(tables, self.read("second"))
        for name, text in tables.items():
            self.assertIn("REMARK Selection: 20 proteins with 100 labelled prolines", text, name)
            self.assertRegex(text, r"REMARK Made by citrans-derive \S+: citrans-derive tables DATA")
            self.assertNotRegex(text, r"\b(nan|inf)\b", name)

    def test_tables_of_the_companions(self):
        done = self.run_derive("companions", self.data, "companions")
        self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)
        tables = self.read("companions")
        self.assertEqual(sorted(tables), ["calls.tab", "reref.tab"])
        rows = {name: [line.split() for line in text.split("\nFORMAT")[1].splitlines()[1:] if line]
                for name, text in tables.items()}
        self.assertEqual([row[0] for row in rows["calls.tab"]], ["both", "CB", "CG", "neither"])
        for row in rows["calls.tab"]:
            cis, trans = float(row[1]), float(row[2])
            self.assertTrue(cis >= 1.3 and (trans <= 1.2 or trans == 9999), row)
        # CA of the made-up proteins scatters about random coil by 1.2 ppm, and so does CB.
        self.assertEqual([row[0] for row in rows["reref.tab"]], ["CA", "HA", "C"])
        for row, width in zip(rows["reref.tab"], (1.2 / 2 ** 0.5, 0.2, 1.2), strict=True):
            self.assertAlmostEqual(float(row[5]) / width, 1, delta=0.25)

    def test_rows_cover_every_code_and_name(self):
        self.derive("rows")
        tables = self.read("rows")
        codes = set("ABCDEFGHIJKLMNOPQRSTUVWYchp")
        names = {"ALA", "CYS", "cys", "HIS", "HIS+", "his", "LYS+", "ARG+", "PRO", "TYR"}
        for name in TABLES[1:]:
            rows = [line.split() for line in tables[name].split("\nFORMAT")[1].splitlines()[1:]]
            found = {row[0] for row in rows if row}
            needed = codes if name in ("sslimit.tab", "Pro.seq.tab") else (
                codes - set("BJOU")) | names
            self.assertLessEqual(needed, found, name)
        # What an atom does not have reads as missing: a shift of 9999 less any adjustment.
        coil = {line.split()[0]: line.split()[1:] for line in tables["randcoil.tab"].splitlines()
                if line[:4] in ("P   ", "G   ")}
        self.assertEqual([coil["P"][0], coil["P"][5]], ["9999.000", "9999.000"])
        self.assertRegex(tables["isoadj.tab"], r"(?m)^G +-0.400 9999.000$")
        # The effect of a next proline: -0.5 in both made-up peptides.
        self.assertRegex(tables["rcnext.tab"], r"(?m)^P( +-0\.500){6}$")

    def test_bad_input_is_one_line_and_leaves_the_tables(self):
        self.derive("kept")
        before = self.read("kept")
        for name, pattern, replacement, line, message in FAULTS:
            with self.subTest(message=message):
                data = os.path.join(self.folder, "bad")
                shutil.copytree(self.data, data)
                path = Path(data, name)
                text = path.read_text()
                changed = re.sub(pattern, replacement, text, count=0 if line is None else 1)
                self.assertNotEqual(text, changed)
                path.write_text(changed)
                done = self.derive("kept", data)
                shutil.rmtree(data)
                place = line or len(text.splitlines())
                self.assertEqual(done.returncode, 65)
                self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
                self.assertIn(f"{name}:{place}: {message}", done.stderr)
                self.assertEqual(self.read("kept"), before)

    def test_files_that_cannot_be_read_or_written(self):
        self.assertEqual(self.derive("none", "no-such-folder").returncode, 66)
        write(os.path.join(self.folder, "file"), ["not a folder"])
        done = self.derive("file")
        self.assertEqual(done.returncode, 73, done.stderr)
        self.assertEqual(Path(self.folder, "file").read_text(), "not a folder\n")
        # One table that cannot take its name: the others keep what they held, none stays beside.
        self.derive("half")
        path = os.path.join(self.folder, "half", "Pro.cs.tab")
        os.remove(path)
        os.makedirs(os.path.join(path, "in the way"))
        self.assertEqual(self.derive("half").returncode, 73)
        self.assertEqual(sorted(os.listdir(os.path.dirname(path))), sorted(TABLES))

    def test_command_line(self):
        self.assertEqual(self.run_derive().returncode, 1)
        self.assertEqual(self.run_derive("guess", self.data).returncode, 1)
        self.assertRegex(self.run_derive("--version").stdout, r"^citrans-derive \d")

    def test_the_report_agrees_with_itself(self):
        done = self.run_derive("accuracy", self.data, "docs")
        self.assertEqual(done.returncode, 0, done.stderr)
        files = self.read("docs")
        report = files.pop("accuracy.md")
        for name, text in files.items():
            self.assertIn(f"({name})", report)
            xml.dom.minidom.parseString(text)
        tables = re.findall(r"(?m)(?:^\|.*\n)+", report)
        for table in tables:
            self.assertEqual(len({line.count("|") for line in table.splitlines()}), 1, table)
        cells = [[cell.strip() for cell in line.strip("|\n").split("|")]
                 for line in re.findall(r"(?m)^\|.*\n", report)]
        hidden = [row for row in cells if row[0] == "all"][1]
        # Every proline called wrong with CG hidden is listed, and no other.
        listed = [row for row in cells if re.fullmatch(r"p\d+", row[0])]
        self.assertEqual(sum(map(int, hidden[9].split(", "))), len(listed))
        # The sources part the prolines.
        parts = [int(row[1]) for row in cells
                 if row[0] in ("both", "shifts", "structure") and row[1].isdigit()][3:6]
        self.assertEqual(sum(parts), int(hidden[1]))
        # What is now is the same in the table of gains as in that of the truths, and each fold chose.
        gains = {row[0]: row for row in cells}
        self.assertEqual(gains["CG hidden, all truths"][2::5], [hidden[6], hidden[7]])
        chosen = re.search(r"of 0, 1, 2, 5, 10, 20:((?: \d+ in \d+(?: folds)?,?)+)\.", report)
        self.assertEqual(sum(map(int, re.findall(r" in (\d+)", chosen[1]))), 10)
        # The strata of shift counts part the prolines, and so do aromatic residues and others.
        sizes = {row[0]: int(row[1]) for row in cells if len(row) == 9 and row[1].isdigit()
                 and not row[0].startswith("no CG,")}  # of the words, which leave out labels
        self.assertEqual(sum(n for name, n in sizes.items() if name.endswith(" shifts")),
                         int(hidden[1]))
        self.assertEqual(sizes["F, W or Y before"] + sizes["another before"], int(hidden[1]))
        # Of the disputed prolines one is cis and one trans by the structure, and one has no CB - CG.
        self.assertRegex(report, rf"contradicts 1 of {self.both('cis') + 1} cis \(\d+ %\) and\s1 of "
                                 rf"{self.both('trans') + 1} trans prolines")
        # The made-up frequencies of neighbours differ by less than the 19 that a call of cis takes.
        alone = next(row for row in cells if row[0] == "neighbours alone")
        self.assertEqual(alone[9].split(", ")[0], "0")
        # CB and CG were made to part the forms: the calls must follow them.
        given = [row for row in cells if row[0] == "all"][0]
        self.assertGreater(float(given[6]), 0.9)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
