"""citrans-report as a user runs it.

usage: report_test.py CITRANS_REPORT CITRANS SOURCE_ROOT [CITRANS_IMPORT]
"""
import collections
import html.parser
import json
import math
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree
import zlib

REPORT, CITRANS, ROOT = (os.path.abspath(path) for path in sys.argv[1:4])
IMPORT = os.path.abspath(sys.argv[4]) if len(sys.argv) > 4 else None
TAB = os.path.join(ROOT, "tab")
ATOMS = ["N", "HA", "C", "CA", "CB", "HN"]
HOSTILE = "<script>alert('1')</script>&\"x"


def table(path):
    """Rows of a table file as dictionaries, and its sequence."""
    columns, rows, sequence = [], [], ""
    with open(path) as file:
        for line in file:
            words = line.split()
            if words[:1] == ["VARS"]:
                columns = words[1:]
            elif words[:2] == ["DATA", "SEQUENCE"]:
                sequence += "".join(words[2:])
            elif columns and len(words) == len(columns):
                rows.append(dict(zip(columns, words)))
    return rows, sequence


def likelihood(summary_row, shifts, sequence, clip):
    """ln(cis/trans) and P_CIS of one proline, worked out here from the tables alone."""
    statistics = {int(row["index"]): row for row in table(os.path.join(TAB, "Pro.cs.tab"))[0]}
    neighbours = {row["resname"]: row for row in table(os.path.join(TAB, "Pro.seq.tab"))[0]}
    limits = {row["RESNAME"]: row for row in table(os.path.join(TAB, "sslimit.tab"))[0]}
    proline = int(summary_row["RESID"])
    terms = {}
    for index in range(18):
        residue, atom = proline - 1 + index // 6, ATOMS[index % 6]
        if (residue, atom) in shifts:
            bounds = limits[sequence[residue - 1]]
            low, high = float(bounds[atom + "_MIN"]), float(bounds[atom + "_MAX"])
            value = shifts[residue, atom]
            terms[index] = min(max(value, low), high) if clip else value
    if float(summary_row["CG_SHIFT"]) < 999:
        terms[18] = float(summary_row["CG_SHIFT"])
    log_ratio = 0.0
    for index, value in terms.items():
        row = {key: float(text) for key, text in statistics[index].items()}
        log_ratio += (((value - row["avg_trans"]) / row["std_trans"]) ** 2
                      - ((value - row["avg_cis"]) / row["std_cis"]) ** 2) / 2
    before, after = (neighbours[sequence[proline + i]] for i in (-2, 0))
    log_ratio += math.log(float(before["cis_prev"]) / float(before["trans_prev"]))
    log_ratio += math.log(float(after["cis_next"]) / float(after["trans_next"]))
    return log_ratio, 1 / (1 + math.exp(-log_ratio))


def unfiltered(data, width, height, channels):
    """The colours of a PNG's pixels; its lines are coded as differences."""
    stride, before = channels * width, bytes(channels * width)
    for y in range(height):
        kind, line = data[y * (stride + 1)], bytearray(data[y * (stride + 1) + 1:][:stride])
        for i in range(stride):
            left = line[i - channels] if i >= channels else 0
            up, corner = before[i], before[i - channels] if i >= channels else 0
            nearest = min((left, up, corner), key=lambda x: abs(left + up - corner - x))
            line[i] = (line[i] + (0, left, up, (left + up) // 2, nearest)[kind]) & 255
        before = bytes(line)
        yield from (line[i:i + 3].hex() for i in range(0, stride, channels))


class Page(html.parser.HTMLParser):
    """Elements, attributes and text of a page; an element left open is an error."""

    VOID = {"meta", "link", "br", "rect", "line", "path"}

    def __init__(self, text):
        super().__init__()
        self.open, self.tags, self.attributes, self.text = [], [], [], ""
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        self.tags.append(tag)
        self.attributes += attrs
        if tag not in self.VOID or self.get_starttag_text()[-2] != "/" and tag in {"rect", "path"}:
            self.open.append(tag)

    def handle_startendtag(self, tag, attrs):
        self.tags.append(tag)
        self.attributes += attrs

    def handle_endtag(self, tag):
        if self.open.pop() != tag:
            raise AssertionError(f"</{tag}> closes another element")

    def handle_data(self, data):
        self.text += data


class Report(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.summary = self.path("out.tab")

    def tearDown(self):
        shutil.rmtree(self.folder)

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, text):
        with open(self.path(name), "w") as file:
            file.write(text)
        return self.path(name)

    def read(self, name):
        with open(self.path(name)) as file:
            return file.read()

    def predict(self, *options, shifts=os.path.join(ROOT, "examples/ybbr.tab")):
        subprocess.run([CITRANS, "-in", shifts, "-sum", self.summary, "-tabDir", TAB, *options],
                       check=True, capture_output=True)

    def report(self, *options, status=0, summary=None, stdin=None):
        run = subprocess.run([REPORT, summary or self.summary, "--tab", TAB, *options],
                             capture_output=True, text=True, input=stdin, cwd=self.folder)
        self.assertEqual(run.returncode, status, run.stderr)
        return run

    def edit(self, name, old, new):
        text = self.read(name)
        self.assertIn(old, text)
        return self.write(name, text.replace(old, new, 1))

    def json(self, *options):
        return json.loads(self.report(*options, "--json", "-").stdout)

    def test_contributions_add_up_to_the_printed_score(self):
        with open(os.path.join(ROOT, "examples/ybbr.tab")) as file:
            odd = file.read().replace("25.6", "55.6")  # one outlier among the shifts
        stripped = self.write("few.tab", "".join(
            line + "\n" for line in odd.split("\n")
            if " CG " not in line and not (" CB " in line and " P " in line)))
        seen = clipped = 0
        for shifts in (os.path.join(ROOT, "examples/ybbr.tab"), stripped,
                       os.path.join(ROOT, "examples/ubiquitin.tab")):
            for options in ([], ["-noclip"], ["-offset"]):
                self.predict(*options, shifts=shifts)
                flags = ["--noclip"] if "-noclip" in options else []
                prolines = {row["resid"]: row for row in self.json(*flags)["prolines"]}
                rows, sequence = table(self.path("outAdjCS.tab"))
                values = {(int(row["RESID"]), row["ATOMNAME"]): float(row["SHIFT"]) for row in rows}
                for row in table(self.summary)[0]:
                    mine = prolines[int(row["RESID"])]
                    log_ratio, p_cis = likelihood(row, values, sequence, not flags)
                    total = sum(term["ln_ratio"] for term in mine["contributions"])
                    self.assertAlmostEqual(total, log_ratio, 4)  # statistics in single precision
                    self.assertAlmostEqual(mine["p_cis"], p_cis, delta=0.0006)
                    self.assertTrue(mine["sum_agrees"], row)
                    seen += 1
                    clipped += sum(t["state"] == "clipped" for t in mine["contributions"])
        self.assertGreater(seen, 30)

    def test_a_summary_of_another_run_is_noticed(self):
        self.predict()
        row = next(line for line in self.read("out.tab").split("\n") if line.startswith(" 82"))
        self.edit("out.tab", row, row.replace("1.000", "0.400", 1))
        run = self.report("--json", "out.json")
        self.assertIn("do not add up to the P_CIS of the summary: Pro82 1.000 against 0.400",
                      run.stderr)
        self.assertFalse(json.loads(self.read("out.json"))["prolines"][-1]["sum_agrees"])

    def test_every_text_from_files_is_escaped(self):
        self.predict("-inTitle", HOSTILE, "-ref", os.path.join(ROOT, "examples/ybbr_2kpu.pdb"),
                     "-refTitle", HOSTILE)
        self.write("map.tsv", f"resid\tauthor\tresname\n82\t{HOSTILE}\tP\n")
        self.edit("outAdjCS.tab", "VARS", f"REMARK {HOSTILE} referencing offset applied\nVARS")
        self.report("-o", "page.html", "--map", "map.tsv", "--svg", "svg", "--chimerax", "c.cxc",
                    "--pymol", "c.pml", "--tsv", "c.tsv")
        page = Page(self.read("page.html"))
        self.assertEqual(page.open, [])
        self.assertNotIn("script", page.tags)
        self.assertFalse([a for a in page.attributes if a[0].startswith("on") or a[0] == "src"])
        self.assertGreaterEqual(page.text.count(HOSTILE), 4)
        self.assertNotIn("<script", self.read("page.html"))
        for name in ("c.cxc", "c.pml"):
            self.assertNotIn("script", self.read(name))
        for name in os.listdir(self.path("svg")):
            root = xml.etree.ElementTree.parse(self.path("svg/" + name)).getroot()
            kinds = [child.tag.split("}")[1] for child in root]
            self.assertEqual(kinds[:2], ["title", "desc"], name)
        self.assertIn("P82-CG.svg", os.listdir(self.path("svg")))

    def test_bad_input_ends_with_its_status_file_and_line(self):
        cases = [
            # file, text, replaced by, status, what the message holds
            ("out.tab", " 82 S P R", " 8x S P R", 65, "RESID is not a whole number: 8x"),
            ("out.tab", " 82 S P R", " 83 S P R", 65, "residue 83 is no proline"),
            ("outAdjCS.tab", "FIRST_RESID 1", "FIRST_RESID 2147483566", 65, "is no proline"),
            ("out.tab", "1.000", "high ", 65, ":38: P_CIS_NORM is not a number: high"),
            ("out.tab", "P_CIS P_CIS_NORM", "P_CIS P_OTHER", 65, "no column P_CIS_NORM"),
            ("out.tab", "FORMAT", "FORMER", 65, "no table"),
            ("out.tab", "REMARK ", "REMARK\nREMARK ", 65, ":1: nothing after REMARK"),
            ("outAdjCS.tab", "DATA SEQUENCE", "DATA OTHER", 65, "is no proline in the sequence"),
            ("outAdjCS.tab", "   2 S   CA", "   2 S CA x", 0, "no rows and were not read|no row"),
            ("map.tsv", "resid", "number", 65, "map.tsv:1: no column resid"),
            ("map.tsv", "82\t", "82x\t", 65, "map.tsv:2: resid is not a whole number"),
            ("map.tsv", "\tP", "\tP\n82\t9\tP", 65, "map.tsv:3: resid given twice: 82"),
            ("map.tsv", "82\t182\tP", "82", 65, "map.tsv:2: too few columns"),
        ]
        for name, old, new, status, message in cases:
            with self.subTest(new):
                self.predict()
                self.write("map.tsv", "resid\tauthor\tresname\n82\t182\tP\n")
                text = self.read(name)
                last = text.rfind(old) if name == "out.tab" and old[0] in " 1" else text.find(old)
                self.assertGreaterEqual(last, 0)
                self.write(name, text[:last] + new + text[last + len(old):])
                run = self.report("-o", "page.html", "--map", "map.tsv", status=status)
                self.assertTrue(any(part in run.stderr for part in message.split("|")), run.stderr)
                self.assertEqual(run.stdout, "")
                if status:
                    self.assertEqual(run.stderr.count("\n"), 1, run.stderr)
                self.assertNotEqual(os.path.exists(self.path("page.html")), status != 0)
                if not status:
                    os.remove(self.path("page.html"))

    def test_statuses_and_streams(self):
        self.predict()
        cases = [
            (["--shifts", "none.tab"], 66, "none.tab: cannot read"),
            (["--shifts", "."], 66, ".: cannot read"),
            (["--tab", "nowhere"], 66, "nowhere/Pro.cs.tab: cannot read"),
            (["-o", "no/such/folder/page.html"], 73, "cannot write"),
            (["--svg", "out.tab"], 73, "out.tab: cannot make the folder"),
            (["--json", "-", "--tsv", "-"], 1, "only one output"),
            (["--shifts", "-", "--map", "-"], 1, "only one file"),
            (["--tsv", "x", "--json", "outAdjCS.tab"], 1, "is the input"),
            (["--tsv", "./overview.svg", "--svg", "."], 1, "the same file as the output"),
            (["--colour"], 1, "--colour"),
        ]
        for options, status, message in cases:
            with self.subTest(options):
                run = subprocess.run([REPORT, self.summary] + (
                    [] if "--tab" in options else ["--tab", TAB]) + options,
                    capture_output=True, text=True, cwd=self.folder, input="")
                self.assertEqual((run.returncode, run.stdout), (status, ""), run.stderr)
                self.assertIn(message, run.stderr)
        self.assertIn("--chimerax", self.report("--help").stdout)
        page = self.report().stdout
        self.assertTrue(page.startswith("<!DOCTYPE html>"))  # nothing of the shift check before it
        self.assertEqual(page, self.report("-o", "-", "--shifts", "outAdjCS.tab", summary="-",
                                           stdin=self.read("out.tab")).stdout)
        self.report(status=1, summary="-", stdin=self.read("out.tab"))
        self.assertEqual([name for name in os.listdir(self.folder) if ".part" in name], [])

    def test_shifts_give_what_the_programs_give_one_after_the_other(self):
        table, structure = (os.path.join(ROOT, "examples", name) for name in ("ybbr.tab", "ybbr_2kpu.pdb"))
        shutil.copy(structure, self.folder)
        importer = [os.path.join(os.path.dirname(REPORT), "citrans-import"), "--tab", TAB]
        for program, *options in ([table, "--rereference", "-o", "ybbr.tab"],
                                  ["ybbr.tab", "--structure", "ybbr_2kpu.pdb", "-o", "ybbr_2kpu.ref.pdb"]):
            subprocess.run([*importer, program, *options], check=True, cwd=self.folder,
                           capture_output=True)
        subprocess.run([CITRANS, "-tabDir", TAB, "-in", "ybbr.tab", "-ref", "ybbr_2kpu.ref.pdb", "-sum",
                        "ybbr.pred.tab"], check=True, cwd=self.folder, capture_output=True)
        outputs = ["-o", "-", "--bfactor", "b.pdb", "--structure"]
        by_hand = self.report(*outputs, "ybbr_2kpu.ref.pdb", summary="ybbr.pred.tab").stdout
        structure_by_hand = self.read("b.pdb")
        self.assertEqual(self.report(*outputs, structure, summary=table).stdout, by_hand)
        self.assertEqual(self.read("b.pdb"), structure_by_hand)

    def test_what_is_for_shifts_or_for_a_summary_is_refused_for_the_other(self):
        self.predict()
        table, structure = (os.path.join(ROOT, "examples", name) for name in ("ybbr.tab", "ybbr_2kpu.pdb"))
        for summary, options, status, message in [
            (None, ["--iso"], 1, "are for shifts"),
            (table, ["--map", "map.tsv"], 1, "are for a summary"),
            (table, ["--structure", table], 65, "ybbr.tab: "),
            (structure, [], 65, "no table (no VARS and FORMAT lines), NMR-STAR or NEF file"),
            (table, ["--no-rereference"], 0, ""),
        ]:
            with self.subTest(options):
                run = self.report("--tsv", "out.tsv", *options, summary=summary, status=status)
                self.assertIn(message, run.stderr)
                self.assertEqual(os.path.exists(self.path("out.tsv")), status == 0)

    def test_json_and_colours_carry_author_numbers(self):
        self.predict()
        self.write("map.tsv", "resid\tauthor\tresname\n" + "".join(
            f"{i}\t{i - 50}\tX\n" for i in range(1, 82)) + "82\t32A\tP\n")
        report = self.json("--map", "map.tsv")
        self.assertEqual([p["author"] for p in report["prolines"]],
                         ["-41", "-29", "-19", "-8", "10", "21", "23", "32A"])
        cis = report["prolines"][-1]
        self.assertEqual((cis["resid"], cis["call"], cis["settled"]), (82, "cis", True))
        self.assertEqual([(t["place"], t["atom"]) for t in cis["contributions"][:2]],
                         [(1, "type"), (1, "N")])
        run = self.report("--map", "map.tsv", "--chimerax", "c.cxc", "--pymol", "c.pml")
        self.assertEqual(run.stderr, "")
        self.assertIn("name citrans_trans :-41,-29,-19,-8,10,21,23 & :PRO\n", self.read("c.cxc"))
        self.assertIn("name citrans_cis :32A & :PRO\n", self.read("c.cxc"))
        self.edit("map.tsv", "32A", "23")
        self.assertIn("residues 73 and 82 of the table one number, 23",
                      self.report("--map", "map.tsv", "--tsv", "c.tsv").stderr)
        self.assertIn("resi \\-41+\\-29+\\-19+\\-8+10+21+23\n", self.read("c.pml"))

    def shifted(self, name, offset, without=(), more={}):
        """The example with an error in the referencing of all its carbons, and more of some."""
        lines = []
        with open(os.path.join(ROOT, "examples/ybbr.tab")) as file:
            for line in file:
                words = line.split()
                if len(words) == 4 and words[0].isdigit():
                    if words[2] in without:
                        continue
                    off = more.get(words[2][:2], 0) + (offset if words[2][0] == "C" else 0)
                    if off:
                        line = "%4s %1s %4s  %8.3f\n" % (*words[:3], float(words[3]) + off)
                lines.append(line)
        return self.write(name, "".join(lines))

    def test_misreferenced_carbons_are_said_once_with_the_calls_that_change(self):
        self.predict()
        right = {p["resid"]: p["call"] for p in self.json()["prolines"]}
        for without in ((), ("CG",)):
            with self.subTest(without=without):
                self.predict(shifts=self.shifted("shifted.tab", 2.7, without))
                report = self.json()
                offsets = {row["nuclei"][0]: row["offset"] for row in report["offsets"]}
                self.assertAlmostEqual(offsets["CA"], 2.7, delta=0.4)
                self.assertAlmostEqual(offsets["C"], 2.7, delta=0.4)
                for proline in report["prolines"]:
                    self.assertIn(proline["corrected"]["call"],
                                  (right[proline["resid"]], "undecided"))
                    self.assertEqual(proline["corrected"]["changes"],
                                     proline["corrected"]["call"] != proline["call"])
                changed = [p["resid"] for p in report["prolines"] if p["corrected"]["changes"]]
                self.assertTrue(changed)
                concerns = [c for c in report["attention"] if c["kind"] == "referencing"]
                self.assertEqual([c["residues"] for c in concerns], [changed])
                page = self.report().stdout
                self.assertEqual(page.count("look misreferenced"), 1)
                self.assertIn(f"{len(changed)} of 8 calls change", page)
                # With 2.7 ppm more, CB of many residues leaves its limits: said to be the offset's.
                explained = [row for row in report["outliers"] if row["by_offset"]]
                self.assertGreater(len(explained), len(report["outliers"]) / 2)
                self.assertTrue(all(row["atom"][0] == "C" for row in explained))

    @unittest.skipUnless(IMPORT, "no citrans-import here")
    def test_corrected_calls_are_those_of_the_table_that_the_importer_corrects(self):
        """Errors of all carbons, of C' and HA alone, with and without CG; also after -offset."""
        seen = 0
        for carbons, others, without in ((2.7, {}, ()), (-1.1, {}, ("CG",)),
                                         (0.6, {"HA": 0.4, "C": -2.0}, ()), (0, {"C": 2.2}, ()),
                                         (9.0, {}, ())):  # so far that there is no call
            with self.subTest(carbons=carbons, others=others):
                shifts = self.shifted("off.tab", carbons, without, others)
                subprocess.run([IMPORT, "--rereference", shifts, "-o", self.path("right.tab"),
                                "--tab", TAB], check=True, capture_output=True)
                self.predict(shifts=self.path("right.tab"))
                right = self.json()
                self.assertEqual(right["offsets"], [])
                self.assertTrue(any("taken off" in line for line in right["corrections"]))
                page = self.report().stdout
                self.assertIn("No offset worth correcting is left", page)
                self.assertEqual("CB, corrected" in page, carbons != 0)
                for options in ([], ["-offset"]):
                    self.predict(*options, shifts=shifts)
                    report = self.json()
                    self.assertEqual(any(p["call"] is None for p in report["prolines"]),
                                     carbons == 9)
                    for mine, wanted in zip(report["prolines"], right["prolines"]):
                        self.assertEqual(mine["corrected"]["call"], wanted["call"])
                        self.assertAlmostEqual(mine["corrected"]["p_cis_norm"],
                                               wanted["p_cis_norm"], delta=0.005)
                        if not options:  # and back again
                            self.assertEqual(wanted["as_given"]["call"], mine["call"])
                            self.assertEqual(wanted["as_given"]["changes"],
                                             mine["corrected"]["changes"])
                        seen += 1
        self.assertEqual(seen, 80)

    def test_cb_less_cg_does_not_depend_on_the_referencing_or_its_correction(self):
        # Deposited shifts: Pro82 34.2 and 24.6, the others 4.1 to 5.9 apart.
        seen = []
        for shifts, options in ((os.path.join(ROOT, "examples/ybbr.tab"), []),
                                (self.shifted("shifted.tab", 2.7), []),
                                (self.path("shifted.tab"), ["-offset"])):
            self.predict(*options, shifts=shifts)
            report = self.json()
            seen.append({p["resid"]: p["carbons"]["cb_minus_cg"] for p in report["prolines"]})
            self.assertEqual(any(c["kind"] == "cg_subtracted" for c in report["attention"]),
                             bool(options))
        for carbons in seen:
            self.assertAlmostEqual(carbons.pop(82), 9.6, delta=0.005)
            self.assertTrue(all(4.05 < value < 5.95 for value in carbons.values()), carbons)
        self.assertIn("CG after subtraction", self.report().stdout)

    def test_nothing_is_said_of_referencing_that_cannot_be_checked(self):
        self.predict(shifts=self.shifted("few.tab", 0, ("CA", "CB")))
        page = self.report().stdout
        self.assertNotIn("worth correcting.", page)
        self.assertIn("too few shifts to check CA and CB, HA and C′", page)
        report = self.json()
        self.assertEqual([each["nuclei"] for each in report["referencing_unchecked"]],
                         [["CA", "CB"], ["HA"], ["C"]])  # as the tables name the atoms
        self.assertEqual(report["referencing"], [])

    def test_a_reference_is_told_apart_from_one_of_other_numbering(self):
        reference = os.path.join(ROOT, "examples/ybbr_2kpu.pdb")
        self.predict("-ref", reference)
        report = self.json()
        self.assertEqual([p["reference"]["disagrees"] for p in report["prolines"]], [False] * 8)
        self.assertLess(abs(report["prolines"][-1]["reference"]["omega"]), 10)
        with open(reference) as file:
            moved = [line[:22] + "%4d" % (int(line[22:26]) + 1) + line[26:]
                     if line[:4] == "ATOM" else line for line in file]
        self.predict("-ref", self.write("moved.pdb", "".join(moved)))
        report = self.json()
        for proline in report["prolines"]:
            self.assertNotEqual(proline["reference"]["residue"], "P")
            self.assertIsNone(proline["reference"]["omega"])
        self.assertIn("no_proline_there", [c["kind"] for c in report["attention"]])
        self.assertIn("no proline there", self.report().stdout)

    def test_a_twisted_bond_is_called_by_the_form_that_the_call_is_compared_with(self):
        self.predict("-ref", os.path.join(ROOT, "examples/ybbr_2kpu.pdb"))
        row = next(line for line in self.read("out.tab").split("\n") if line.startswith(" 82"))
        angle = row.split()[-1]
        for omega, words, against in (("-60.000", "−60.0° cis, twisted", 0),
                                      ("149.000", "149.0° trans, twisted", 1),
                                      ("-151.000", "−151.0° trans", 1)):
            self.edit("out.tab", angle, omega)
            angle = omega
            page = self.report().stdout
            self.assertIn(words, page)
            self.assertEqual("trans, twisted" in page, words == "149.0° trans, twisted")
            self.assertEqual(page.count("≠ call"), against)

    def test_a_structure_that_disagrees_is_counted_and_marked(self):
        self.predict("-ref", os.path.join(ROOT, "examples/ybbr_2kpu.pdb"),
                     shifts=self.shifted("shifted.tab", 2.7))
        report = self.json()
        against = [p["resid"] for p in report["prolines"] if p["reference"]["disagrees"]]
        expected = [p["resid"] for p in report["prolines"]
                    if p["call"] == ("trans" if p["resid"] == 82 else "cis")]
        self.assertEqual(against, expected)
        self.assertIn(82, against)
        page = self.report().stdout
        self.assertIn(f"against the reference structure: {len(against)}", page)
        self.assertEqual(page.count("≠ call"), len(against))

    def test_the_page_carries_what_the_import_said(self):
        with open(os.path.join(ROOT, "examples/ybbr.tab")) as file:
            rows = "".join(line for line in file if not line.startswith("REMARK"))
        remarks = ("Chemical shifts of NMR-STAR 3 entry 99, from x.str",
                   "entity 1 (Some protein) of 1 with 96 residues, shift list 1 (a) of 1",
                   "Warning: 2 values left out, Ser2 CA among them")
        self.predict(shifts=self.write("in.tab", "".join(f"REMARK {r}\n" for r in remarks) + rows))
        report = self.json()
        self.assertEqual((report["protein"], report["entry"], report["source"]),
                         ("Some protein", "NMR-STAR 3 entry 99", "x.str"))
        self.assertEqual(report["import_warnings"], ["2 values left out, Ser2 CA among them"])
        self.assertEqual(report["shifts"]["CG"], 8)
        page = self.report().stdout
        self.assertIn("<title>Some protein: ", page)
        self.assertIn("The import warned: 2 values left out", page)
        self.assertNotIn(self.folder, json.dumps(report))

    def test_pictures_have_their_colours_in_other_programs(self):
        """What is drawn is cis orange and trans blue on white, not black; rsvg-convert tells."""
        if not shutil.which("rsvg-convert"):
            self.skipTest("no rsvg-convert (apt-get install librsvg2-bin)")
        self.predict()
        self.report("--svg", "svg")
        with open(os.path.join(ROOT, "tools/report/page/colours.css")) as file:
            sheet = file.read()
        colours = {name: sheet.split(f"--{name}: #")[1][:6]
                   for name in ("cis", "trans", "ink", "cis-soft")}
        for name, wanted in (("overview", ("cis", "trans")), ("P82", ("cis", "trans")),
                             ("P82-CB", ("cis", "ink")), ("P82-CB-CG", ("cis", "trans")),
                             ("secondary-shifts-81", ("cis-soft",))):
            self.assertNotIn("var(", self.read(f"svg/{name}.svg"))
            seen = self.pixels(f"svg/{name}.svg")
            self.assertGreater(seen.get("ffffff", 0), sum(seen.values()) / 4, name)
            for colour in wanted:
                self.assertGreater(seen.get(colours[colour], 0), 20, (name, colour))
            self.assertLess(seen.get("000000", 0), sum(seen.values()) / 100, name)

    def pixels(self, name):
        """How often each colour occurs in the rendered picture."""
        png = subprocess.run(["rsvg-convert", self.path(name)], check=True,
                             capture_output=True).stdout
        width, height = (int.from_bytes(png[at:at + 4], "big") for at in (16, 20))
        self.assertEqual(png[24:25], b"\x08")
        channels = {2: 3, 6: 4}[png[25]]  # with or without alpha
        data, at = b"", 8
        while at < len(png):
            length = int.from_bytes(png[at:at + 4], "big")
            if png[at + 4:at + 8] == b"IDAT":
                data += png[at + 8:at + 8 + length]
            at += length + 12
        return collections.Counter(unfiltered(zlib.decompress(data), width, height, channels))

    def test_viewer_files_name_chain_model_and_the_numbers_of_the_structure(self):
        self.predict()
        self.write("map.tsv", "resid\tauthor\n" + "".join(f"{i}\t{i}\n" for i in range(1, 97)))
        numbers = [9, 21, 31, 42, 60, 71, 73, 82]
        self.write("pdb.tsv", "resid\tauthor\n" + "".join(f"{i}\t{i + 100}\n" for i in numbers[1:]))
        run = self.report("--map", "map.tsv", "--structure-map", "pdb.tsv", "--chain", "B",
                          "--model", "1.2", "--chimerax", "c.cxc", "--pymol", "c.pml")
        self.assertEqual(run.stderr.count("left out"), 1)
        self.assertIn("left out of the files for viewers", run.stderr)
        self.assertIn("Pro9\n", run.stderr)
        self.assertIn("name citrans_cis #1.2/B:182 & :PRO\n", self.read("c.cxc"))
        self.assertIn("select citrans_cis, model 1.2 and chain B and resn PRO and resi 182\n",
                      self.read("c.pml"))
        self.report("--chain", "A; rm", "--pymol", "c.pml", status=1)

    def test_b_factors_of_a_pdb_file_are_the_likelihoods(self):
        self.predict()
        reference = os.path.join(ROOT, "examples/ybbr_2kpu.pdb")
        self.report("--structure", reference, "--bfactor", "b.pdb")
        rows, _ = table(self.summary)
        expected = {int(row["RESID"]): 100 * float(row["P_CIS_NORM"]) for row in rows}
        with open(reference) as file:
            before = [line for line in file if line[:4] == "ATOM"]
        after = [line for line in self.read("b.pdb").splitlines(True) if line[:4] == "ATOM"]
        self.assertEqual(len(before), len(after))
        for old, new in zip(before, after):
            self.assertEqual((old[:60], old[66:]), (new[:60], new[66:]))
            self.assertAlmostEqual(float(new[60:66]), expected.get(int(new[22:26]), -1), 4)
        for options, message in ((["--chain", "Z"], "none of the predicted prolines"),
                                 (["--structure-map", "z.tsv"], "none of the predicted prolines")):
            self.write("z.tsv", "resid\tauthor\n82\t999\n")
            run = self.report("--structure", reference, "--bfactor", "b.pdb", *options, status=65)
            self.assertIn(message, run.stderr)
        self.report("--structure", self.summary, "--bfactor", "b.pdb", status=65)
        self.report("--bfactor", "b.pdb", status=1)

    def test_prolines_without_a_row_say_why(self):
        with open(os.path.join(ROOT, "examples/ybbr.tab")) as file:
            text = file.read()
        text = text.replace("DATA SEQUENCE SSQTL", "DATA SEQUENCE PSQTL")
        text = text.replace("VTLQLE HHHHHH", "VTLQLE HHHHHP")
        text = "".join(line for line in text.splitlines(True)
                       if line.split()[:1] not in (["20"], ["22"]) or " HA " in line)
        self.predict(shifts=self.write("ends.tab", text))
        prolines = self.json()["prolines"]
        self.assertIn("first residue", prolines[0]["evidence"])
        self.assertIn("last residue", prolines[-1]["evidence"])
        self.assertIn("the table has 1 of Thr20, 4 of Pro21, 1 of Ala22", prolines[2]["evidence"])
        self.predict("-last", "50", shifts=self.path("ends.tab"))
        self.assertIn("outside the range", self.json()["prolines"][5]["evidence"])
        self.assertEqual((prolines[0]["call"], prolines[0]["predicted"]), (None, False))

    def test_prolines_that_first_resid_puts_out_of_reach_are_told_from_the_last(self):
        """citrans prepares the residues 1 to 96 of 96, whatever FIRST_RESID says."""
        with open(os.path.join(ROOT, "examples/ybbr.tab")) as file:
            shifts = self.write("from33.tab", "DATA FIRST_RESID 33\n" + "".join(
                f"{int(line[:4]) + 32:4}{line[4:]}" if line[:4].strip().isdigit() else line
                for line in file if "FIRST_RESID" not in line))
        self.predict(shifts=shifts)
        run = self.report("--json", "-", "--svg", "svg")
        self.assertIn("from 33 on (FIRST_RESID)", run.stderr)
        report = json.loads(run.stdout)
        self.assertEqual([(p["resid"], p["predicted"]) for p in report["prolines"]],
                         [(41, True), (53, True), (63, True), (74, True), (92, True),
                          (103, False), (105, False), (114, False)])
        for proline in report["prolines"][5:]:
            self.assertIn("residues 1 to 96", proline["evidence"])
        self.assertIn("from 33 on", " ".join(each["text"] for each in report["attention"]))
        self.assertEqual(sorted(name for name in os.listdir(self.path("svg")) if "shifts" in name),
                         ["secondary-shifts-113.svg", "secondary-shifts-33.svg"])

    def test_calls_of_runs_that_the_cross_validation_had_not_are_not_said_to_be_right(self):
        for options, flags, known in (([], [], True), (["-noclip"], ["--noclip"], False),
                                      (["-offset"], [], False)):
            self.predict(*options, shifts=self.shifted("shifted.tab", 2.7))
            self.assertEqual("such calls right" in self.report(*flags).stdout, known, options)
            for proline in self.json(*flags)["prolines"]:
                self.assertEqual(proline["such_calls"]["calls"] > 0, known)
                self.assertEqual(proline["such_calls"]["right"] is not None, known)

    def test_outliers_that_the_offset_does_not_explain_come_first(self):
        self.predict(shifts=self.shifted("shifted.tab", 2.7))
        others = [row for row in self.json()["outliers"] if not row["by_offset"]]
        self.assertTrue(0 < len(others) < 10)
        text = Page(self.report().stdout).text
        rows = text[text.index("secondary shifts lie outside"):].split("\nRemark")[-1]
        before = rows[:rows.index("by the offset")]
        for row in others:
            self.assertIn(f"{row['author']}{row['atom']}", before)
        self.predict()
        page = self.report().stdout  # neither far out nor explained: nothing to remark
        self.assertIn("secondary shifts lie outside", page)
        self.assertNotIn(">Remark<", page)

    def test_tracks_and_words_of_the_pictures(self):
        """Nuclei without shifts have no track; the mark of CB - CG crosses no word."""
        with open(os.path.join(ROOT, "examples/ybbr.tab")) as file:
            lines = [line.split() for line in file]
        wanted = {9: 1.2, 21: 2.4, 31: 3.6, 42: 5.0, 60: 9.0, 71: 11.9, 73: 12.4, 82: 20.0}
        cg = {int(w[0]): float(w[3]) for w in lines if w[1:3] == ["P", "CG"]}
        rows = [(int(w[0]), w[1], w[2], cg[int(w[0])] + wanted[int(w[0])]
                 if w[1:3] == ["P", "CB"] else float(w[3]))
                for w in lines if len(w) == 4 and w[0].isdigit() and w[2][:2] not in ("HA", "N")]
        head = [" ".join(w) for w in lines if w[:1] in (["DATA"], ["VARS"], ["FORMAT"])]
        self.predict(shifts=self.write("few.tab", "\n".join(head) + "\n" + "".join(
            "%4d %1s %4s %8.3f\n" % row for row in rows)))
        self.report("--svg", "svg")
        words = self.words("secondary-shifts-1")
        self.assertEqual([word for word, x, anchor in words if anchor == "end" and word[0] != "±"],
                         ["CA", "CB", "C′", "HN"])
        for residue, difference in wanted.items():
            name = f"P{residue}-CB-CG"
            mark = float(self.read(f"svg/{name}.svg").split('class="mark"')[0].split('x1="')[-1]
                         .split('"')[0])
            words = {word: (x, anchor) for word, x, anchor in self.words(name)}
            start, (end, anchor) = words["trans"][0], words["cis"]
            self.assertEqual(anchor, "end")
            self.assertFalse(start - 2 < mark < start + 32, (difference, mark, start))
            self.assertFalse(end - 20 < mark < end + 2, (difference, mark, end))

    def words(self, name):
        """The texts of a picture: content, x and anchor."""
        root = xml.etree.ElementTree.parse(self.path(f"svg/{name}.svg")).getroot()
        return [(text.text, float(text.get("x")), text.get("text-anchor", "start"))
                for text in root.iter("{http://www.w3.org/2000/svg}text")]

    def test_tables_are_found_beside_an_installed_program(self):
        self.predict()
        os.makedirs(self.path("root/bin"))
        shutil.copy(REPORT, self.path("root/bin/citrans-report"))
        shutil.copytree(TAB, self.path("root/share/citrans/tab"))
        bare = {key: text for key, text in os.environ.items() if key != "CITRANS_DIR"}
        for extra, status in (({}, 0), ({"CITRANS_DIR": "/nowhere/"}, 66)):
            run = subprocess.run([self.path("root/bin/citrans-report"), self.summary],
                                 capture_output=True, cwd=self.folder, env={**bare, **extra})
            self.assertEqual(run.returncode, status, run.stderr)

    def test_sequence_lines_of_55_letters_keep_the_sequence(self):
        # After each, citrans writes one without letters, which reads back as further letters.
        with open(os.path.join(ROOT, "examples/ybbr.tab")) as file:
            lines = file.read().split("\n")
        letters = "".join("".join(x.split()[2:]) for x in lines if x.startswith("DATA SEQ"))
        rows = [x.split() for x in lines if len(x.split()) == 4 and x.split()[0].isdigit()]
        for length, wanted in ((55, [9, 21, 31, 42]),
                               (192, [p + k for k in (0, 96)
                                      for p in (9, 21, 31, 42, 60, 71, 73, 82)])):
            text = "".join(f"DATA SEQUENCE {(2 * letters)[:length][at:at + 55]}\n"
                           for at in range(0, length, 55))
            text += "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n"
            text += "".join(f"{int(i) + k} {name} {atom} {x}\n" for k in (0, 96)
                            for i, name, atom, x in rows if int(i) + k <= length)
            self.predict(shifts=self.write("lines.tab", text))
            report = self.json()
            self.assertEqual(report["residues"], length)
            self.assertEqual([p["resid"] for p in report["prolines"]], wanted)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
