#!/usr/bin/env python3
"""citrans-import on small depositions written here: one peptide in every format, what is warned of,
what is refused, and a structure built at known angles.

usage: import_test.py CITRANS_IMPORT CITRANS SOURCE_ROOT
"""
import gzip
import math
import os
import subprocess
import sys
import tempfile
import unittest

IMPORT, CITRANS, ROOT = (os.path.abspath(path) for path in sys.argv[1:4])

# residue, atom as the formats write it, atom in the table, shift
SHIFTS = [
    (1, "SER", "H", "HN", 8.31), (1, "SER", "CA", "CA", 58.3), (1, "SER", "HB2", None, 3.9),
    (2, "PRO", "HA", "HA", 4.42), (2, "PRO", "CB", "CB", 34.2), (2, "PRO", "CG", "CG", 24.6),
    (3, "GLY", "HA2", "HA2", 3.9), (3, "GLY", "HA3", "HA3", 4.1), (4, "CYS", "CB", "CB", 41.1),
]
NAMES = ["SER", "PRO", "GLY", "CYS"]


def star3(shifts=SHIFTS, offset=0, head="data_1\n", labelling=".", names=NAMES, entity="1"):
    sequence = "".join(f" {i} {i + offset} {name} {entity}\n" for i, name in enumerate(names, 1))
    rows = "".join(f" {entity} {i} {name} {atom} {value} 1 1\n" for i, name, atom, _, value in shifts)
    return (head + "save_e\n _Entity.ID " + entity + "\n _Entity.Label $e\n loop_\n"
            " _Entity_comp_index.ID\n _Entity_comp_index.Auth_seq_ID\n _Entity_comp_index.Comp_ID\n"
            " _Entity_comp_index.Entity_ID\n" + sequence + " stop_\nsave_\n"
            "save_s\n loop_\n _Sample_component.Isotopic_labeling\n '" + labelling + "'\n stop_\nsave_\n"
            "save_l\n loop_\n _Atom_chem_shift.Entity_ID\n _Atom_chem_shift.Comp_index_ID\n"
            " _Atom_chem_shift.Comp_ID\n _Atom_chem_shift.Atom_ID\n _Atom_chem_shift.Val\n"
            " _Atom_chem_shift.Ambiguity_code\n _Atom_chem_shift.Assigned_chem_shift_list_ID\n"
            + rows + " stop_\nsave_\n")


def star21(offset):
    sequence = "".join(f" {i} {i + offset} {name}" for i, name in enumerate(NAMES, 1))
    rows = "".join(f" {i + offset} {name} {atom} {value}\n" for i, name, atom, _, value in SHIFTS)
    return ("data_1\nsave_m\n _Mol_polymer_class protein\n _Details caf\u00e9\n loop_\n"
            " _Residue_seq_code\n _Residue_author_seq_code\n _Residue_label\n" + sequence +
            "\n stop_\nsave_\nsave_l\n loop_\n _Residue_seq_code\n _Residue_label\n _Atom_name\n"
            " _Chem_shift_value\n" + rows + " stop_\nsave_\n")


def nef():
    sequence = "".join(f" A {i + 7} {name}\n" for i, name in enumerate(NAMES, 1))
    atoms = {"HA2": "HAx", "HA3": "HAy"}
    rows = "".join(f" A {i + 7} {name} {atoms.get(atom, atom)} {value}\n"
                   for i, name, atom, _, value in SHIFTS)
    return ("data_1\nsave_m\n loop_\n _nef_sequence.chain_code\n _nef_sequence.sequence_code\n"
            " _nef_sequence.residue_name\n" + sequence + " stop_\nsave_\nsave_l\n loop_\n"
            " _nef_chemical_shift.chain_code\n _nef_chemical_shift.sequence_code\n"
            " _nef_chemical_shift.residue_name\n _nef_chemical_shift.atom_name\n"
            " _nef_chemical_shift.value\n" + rows + " A 9? GLY HAx 1.0\n stop_\nsave_\n")


def rows_of(table):
    body = table.split("FORMAT", 1)[1].splitlines()[1:]
    return sorted(tuple(line.split()) for line in body if line.strip())


EXPECTED = sorted((str(i), dict(SER="S", PRO="P", GLY="G", CYS="C")[name], atom, f"{value:.3f}")
                  for i, name, _, atom, value in SHIFTS if atom)


class ImportCase(unittest.TestCase):
    """Runs the program in a folder of its own."""

    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory()
        self.addCleanup(self.scratch.cleanup)

    def path(self, name):
        return os.path.join(self.scratch.name, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())
        return self.path(name)

    def run_import(self, *arguments, stdin=None):
        return subprocess.run([IMPORT, *arguments], capture_output=True, text=True, input=stdin,
                              timeout=120)


class Import(ImportCase):
    def test_every_format_gives_the_same_table(self):
        for name, text, author in [
            ("NMR-STAR 3", star3(), 1),
            ("authors' numbers far away", star3(offset=80), 81),
            ("no data block", star3(head=""), 1),
            ("control characters", star3().replace(" _Entity.ID", "\v_Entity.ID\f"), 1),
            ("NMR-STAR 2.1 in authors' numbers", star21(8), 9),
            ("NEF", nef(), 8),
        ]:
            with self.subTest(name):
                done = self.run_import(self.write("in", text), "--map", self.path("map"))
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertIn("\nDATA SEQUENCE SPGC\n", done.stdout)
                self.assertEqual(rows_of(done.stdout), EXPECTED)
                with open(self.path("map")) as file:
                    self.assertEqual(file.read().split("\n")[1], f"1\t{author}\tS")

    def test_what_may_be_wrong_is_said(self):
        for name, text, said in [
            ("sentinel", star3(SHIFTS + [(3, "GLY", "CA", "", 999.99)]), "1 value that stands for no shift left out: GLY 3 CA 999.99"),
            ("twice", star3(SHIFTS + [(1, "SER", "CA", "", 57)]), "1 atom with two different shifts, the first taken: SER 1 CA 58.3 and 57"),
            ("outside", star3(SHIFTS + [(3, "GLY", "CA", "", 76.5)]), "outside of the usual range: GLY 3 CA 76.5"),
            ("word", star3(SHIFTS + [(3, "GLY", "CA", "", "n/a")]), "1 value that is no number left out: GLY 3 CA"),
            ("deuterated", star3(labelling="[U-2H; U-15N]"), "consider citrans -iso"),
            ("solvent", star3(labelling="[U-15N]"), None),
            ("tentative", nef(), "1 shift of no certain residue left out: GLY 9?"),
            ("missing", star3(), "no shifts at all of N, C"),
            ("blocks", "data_0 _a b\n" + star3() + star3(head="data_2\n"), "1 more data block holds"),
            ("copies", star3(SHIFTS + [(5, "PRO", "CB", "", 34.2), (5, "PRO", "CG", "", 24.6)],
                             names=NAMES + ["PRO"]), "2 prolines with the same CB 34.2"),
        ]:
            with self.subTest(name):
                done = self.run_import(self.write("in", text))
                self.assertEqual(done.returncode, 0, done.stderr)
                if said is None:
                    self.assertNotIn("-iso", done.stderr)
                else:
                    self.assertIn(said, done.stderr)
                    self.assertIn(said, done.stdout)  # as a remark

    def test_cysteines_are_oxidised_only_when_said(self):
        file = self.write("in", star3())
        self.assertIn("SPGC", self.run_import(file).stdout)
        self.assertIn("SPGc", self.run_import(file, "--oxidised-by-cb").stdout)
        said = star3().replace(" _Entity.Label", " _Entity.Thiol_state 'all disulfide bound'\n _E.x")
        self.assertIn("SPGc", self.run_import(self.write("in", said)).stdout)
        assembly = "save_a\n _Assembly.Thiol_state 'all disulfide bound'\nsave_\n"
        free = star3().replace(" _Entity.Label", " _Entity.Thiol_state 'all free'\n _E.x")
        for text, expected in ((star3(), "SPGc"), (said, "SPGc"), (free, "SPGC")):
            self.assertIn(expected, self.run_import(self.write("in", text + assembly)).stdout)

    def test_listed_disulfide_bonds_oxidise_their_cysteines_only(self):
        names = ["CYS", "PRO", "GLY", "CYS", "CYS"]
        shifts = [(1, "CYS", "CB", "CB", 41.1), (5, "CYS", "CB", "CB", 28.0)]
        ends = "".join(f" _Bond.{tag}_{end}\n" for tag in ("Entity_ID", "Comp_index_ID", "Atom_ID")
                       for end in (1, 2))
        for kind, atom, expected in (("disulfide", "SG", "cPGcC"), ("ester", "SG", "cPGcC"),
                                     ("amide", "N", "CPGCC")):
            bond = f"save_b\n loop_\n _Bond.ID\n _Bond.Type\n{ends} 1 {kind} 1 1 1 4 {atom} {atom}\n stop_\nsave_\n"
            done = self.run_import(self.write("in", star3(shifts, names=names) + bond))
            self.assertIn(f"DATA SEQUENCE {expected}\n", done.stdout, (kind, done.stderr))
        ends = "".join(f" _nef_covalent_links.{tag}_{end}\n"
                       for tag in ("chain_code", "sequence_code", "atom_name") for end in (1, 2))
        link = f"save_b\n loop_\n{ends} A A 11 11 SG SG\n stop_\nsave_\n"
        self.assertIn("SPGc", self.run_import(self.write("in", nef() + link)).stdout)

    def test_heavy_water_is_no_deuterated_protein(self):
        for pointers, deuterated in ((("1", "."), False), (("1", "1"), True), ((".", "."), True)):
            sample = ("save_x\n loop_\n _Sample_component.Entity_ID\n _Sample_component.Isotopic_labeling\n"
                      f" {pointers[0]} [U-15N]\n {pointers[1]} [U-2H]\n stop_\nsave_\n")
            done = self.run_import(self.write("in", star3() + sample))
            self.assertEqual("-iso" in done.stderr, deuterated, pointers)

    def test_one_copy_of_a_molecule_is_taken(self):
        rows = "".join(f" {copy} 1 {i} {NAMES[i - 1]} CA {50 + copy + i}\n"
                       for copy, last in ((1, 2), (2, 4)) for i in range(1, last + 1))
        text = star3([]).split("save_l")[0] + (
            "save_l\n loop_\n _Atom_chem_shift.Entity_assembly_ID\n _Atom_chem_shift.Entity_ID\n"
            " _Atom_chem_shift.Comp_index_ID\n _Atom_chem_shift.Comp_ID\n _Atom_chem_shift.Atom_ID\n"
            " _Atom_chem_shift.Val\n" + rows + " stop_\nsave_\n")
        file = self.write("in", text)
        for arguments, values in (([], ["53.000", "54.000", "55.000", "56.000"]),
                                  (["--copy", "1"], ["52.000", "53.000"])):
            done = self.run_import(file, *arguments)
            self.assertEqual([row[3] for row in rows_of(done.stdout)], values)
            self.assertIn("of 2 in the assembly", done.stderr)
            self.assertNotIn("two different shifts", done.stderr)
        self.assertEqual(self.run_import(file, "--copy", "3").returncode, 65)

    def test_author_numbers_that_jump_are_aligned_by_names(self):
        """Twenty residues, of which the authors call the last ten 31 to 40; two have no shifts."""
        names = [{"A": "ALA", "V": "VAL", "L": "LEU", "S": "SER", "K": "LYS", "P": "PRO", "G": "GLY"}[c]
                 for c in "AVLSKPGVLAKSSPLVGAKL"]
        numbers = [i if i <= 10 else i + 20 for i in range(1, 21)]
        sequence = "".join(f" {i} {name}" for i, name in enumerate(names, 1))
        rows = "".join(f" {number} {name} CA {50 + i}\n" for i, (number, name)
                       in enumerate(zip(numbers, names), 1) if i not in (1, 15))
        text = ("data_1\nsave_m\n _Mol_polymer_class protein\n loop_\n _Residue_seq_code\n _Residue_label\n"
                + sequence + "\n stop_\nsave_\nsave_l\n loop_\n _Residue_seq_code\n _Residue_label\n"
                " _Atom_name\n _Chem_shift_value\n" + rows + " stop_\nsave_\n")
        done = self.run_import(self.write("in", text), "--map", self.path("map"))
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual({int(row[0]): float(row[3]) for row in rows_of(done.stdout)},
                         {i: 50.0 + i for i in range(1, 21) if i not in (1, 15)})
        with open(self.path("map")) as file:
            authors = [int(line.split("\t")[1]) for line in file.read().splitlines()[1:]]
        self.assertEqual(authors, numbers)

    def test_choice_of_molecule_and_list(self):
        other = star3([(1, "DA", "H1'", None, 6.0)], head="", names=["DA"] * 4, entity="2")
        file = self.write("in", star3() + other.replace("save_e", "save_f").replace("save_l", "save_k"))
        shown = self.run_import(file, "--list-contents").stdout
        self.assertRegex(shown, r"entity 1\t4 residues\tprotein")
        self.assertRegex(shown, r"entity 2\t4 residues\tother")
        self.assertIn("SPGC", self.run_import(file).stdout)
        self.assertEqual(self.run_import(file, "--entity", "3").returncode, 65)
        self.assertEqual(self.run_import("-", stdin=star3()).returncode, 0)

    def test_referencing_is_corrected_in_tables_and_depositions(self):
        example = os.path.join(ROOT, "examples", "ybbr.tab")
        tab = os.path.join(ROOT, "tab")
        with open(example) as file:
            before = file.read().splitlines()
        off = self.run_import(example, "--shift-by", "C=2.7")
        self.assertEqual(off.returncode, 0, off.stderr)
        done = self.run_import("-", "--rereference", "--tab", tab, stdin=off.stdout)
        self.assertEqual(done.returncode, 0, done.stderr)
        after = [line for line in done.stdout.splitlines() if "referencing" not in line]
        self.assertEqual(len(after), len(before))
        for old, new in zip(before, after, strict=True):
            cells, others = old.split(), new.split()
            if len(cells) == 4 and cells[0].isdigit() and cells[2] in ("C", "CA", "CB", "CG"):
                self.assertEqual(others[:3], cells[:3])
                self.assertAlmostEqual(float(others[3]), float(cells[3]), delta=0.4)
            else:
                self.assertEqual(new, old)
        self.assertRegex(done.stderr, r"CA/CB: off by 2\.\d{3} \+/- 0\.\d\d ppm, \d+ points: taken off")
        # Three residues are too few to estimate from, and a deposition can be shifted all the same.
        path = self.write("few.str", star3())
        few = self.run_import(path, "--rereference", "--tab", tab)
        self.assertIn("REMARK referencing of CA/CB: not known", few.stdout)
        moved = self.run_import(path, "--shift-by", "CA=-1,HA=0.5")
        self.assertRegex(moved.stdout, r"(?m)^ +2 P +CG +23\.600$")
        self.assertRegex(moved.stdout, r"(?m)^ +3 G +HA2 +4\.400$")

    def test_refusals_are_one_line_with_a_status(self):
        good = self.write("good", star3())
        table = self.path("table")
        self.assertEqual(self.run_import(good, "-o", table).returncode, 0)
        cut = self.write("cut.cif.gz", gzip.compress(b"ATOM" * 99)[:-4] + b"\xff" * 4)  # a false size
        wrong = star3().replace(" 2 2 PRO 1", " 2 2 LEU 1").replace(" 1 1 SER 1", " 1 1 ALA 1")
        for arguments, status, said in [
            ([self.path("nowhere")], 66, "cannot read"),
            ([self.scratch.name], 66, "cannot read"),
            ([self.write("empty", "")], 65, "the file is empty"),
            ([self.write("binary", bytes(range(256)) * 100)], 65, "binary"),
            ([self.write("cut", star3()[:-40])], 65, "cut:"),
            ([self.write("open", "data_1\n_a\n;text\n")], 65, "open:"),
            ([self.write("wrong", wrong)], 65, "wrong:23: shifts and sequence do not fit"),
            ([self.write("long", "data_1 _a " + "x" * 5_000_000)], 65, "no assigned"),
            ([good, "-o", self.path("no/where")], 73, "cannot write"),
            ([good, "-o", self.path("no/where"), "--map", self.path("map")], 73, "cannot write"),
            ([good, "-o", self.path("new"), "--map", self.path("no/map")], 73, "cannot write"),
            ([good, "-o", self.path("new"), "--map", "/dev/full"], 73, "cannot write"),
            ([good, "--bogus"], 1, "bogus"),
            ([good, "--map", "-"], 1, "cannot both"),
            ([good, "--structure", good], 65, "no table"),
            ([table, "--structure", cut], 65, "cut.cif.gz"),
        ]:
            with self.subTest(arguments):
                done = self.run_import(*arguments)
                self.assertEqual(done.returncode, status, done.stderr)
                self.assertEqual(done.stderr.count("\n"), 1, done.stderr[:300])
                self.assertIn(said, done.stderr)
                self.assertEqual(done.stdout, "")
        self.assertEqual({"map", "new"} & set(os.listdir(self.scratch.name)), set())

    def test_structure_is_renumbered_and_its_prolines_counted(self):
        """Two models of S-P-G with omega 0 and 180 degrees, as residues 101 to 103 of chain B."""
        text = ""
        for model, omega in ((1, 0), (2, 180)):
            text += f"MODEL     {model:4d}\n"
            turn = math.radians(omega)
            atoms = [("CA", "SER", 101, (1, 0, -1)), ("C", "SER", 101, (0, 0, -1)),
                     ("N", "PRO", 102, (0, 0, 0)),
                     ("CA", "PRO", 102, (math.cos(turn), math.sin(turn), 0)),
                     ("CA", "GLY", 103, (5, 5, 5))]
            for serial, (atom, residue, number, (x, y, z)) in enumerate(atoms, 1):
                text += (f"ATOM  {serial:5d}  {atom:3s} {residue} B{number:4d}    "
                         f"{x:8.3f}{y:8.3f}{z:8.3f}  1.00  0.00           {atom[0]}\n")
            text += "ENDMDL\n"
        with gzip.open(self.path("s.pdb.gz"), "wt") as file:
            file.write(text + "END\n")
        table = self.path("t.tab")
        self.assertEqual(self.run_import(self.write("in", star3()), "-o", table).returncode, 0)
        done = self.run_import(table, "--structure", self.path("s.pdb.gz"), "-o", self.path("o.pdb"))
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("proline 2 (102 in the structure): cis in 1 of 2 models", done.stderr)
        cut = "".join(line for line in gzip.open(self.path("s.pdb.gz"), "rt") if " SER " not in line)
        gap = self.run_import(table, "--structure", self.write("gap.pdb", cut))
        self.assertIn("proline 2: it or the residue before it is not in the structure", gap.stderr)
        with open(self.path("o.pdb")) as file:
            numbers = [line[22:26].strip() for line in file if line.startswith("ATOM")]
        self.assertEqual(numbers, ["1", "1", "2", "2", "3"])
        run = subprocess.run([CITRANS, "-tabDir", os.path.join(ROOT, "tab"), "-in", table, "-ref",
                              self.path("o.pdb"), "-sum", self.path("p.tab")], capture_output=True,
                             text=True)
        self.assertEqual(run.returncode, 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
