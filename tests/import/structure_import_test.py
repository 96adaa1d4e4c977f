#!/usr/bin/env python3
"""citrans-import --structure on a peptide built at known angles and written in the shapes in which
programs write structures, what is refused, and outputs that are inputs.

usage: structure_import_test.py CITRANS_IMPORT
"""
import gzip
import math
import os
import subprocess
import sys
import tempfile
import unittest

IMPORT = os.path.abspath(sys.argv[1])

NAMES = dict(A="ALA", C="CYS", D="ASP", E="GLU", G="GLY", H="HIS", K="LYS", L="LEU", P="PRO", S="SER")
SEQUENCE = "SPGCHAPKD"
CIS = {7}  # the other bonds are trans


def place(a, b, c, length, angle, torsion):
    """The point at a distance from c, an angle at c and a torsion about b-c."""
    def unit(v):
        size = math.sqrt(sum(x * x for x in v))
        return [x / size for x in v]

    def cross(u, v):
        return [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]]

    bc = unit([c[i] - b[i] for i in range(3)])
    n = unit(cross([b[i] - a[i] for i in range(3)], bc))
    m = cross(n, bc)
    angle, torsion = math.radians(angle), math.radians(torsion)
    local = (-length * math.cos(angle), length * math.sin(angle) * math.cos(torsion),
             length * math.sin(angle) * math.sin(torsion))
    return [c[i] + local[0] * bc[i] + local[1] * m[i] + local[2] * n[i] for i in range(3)]


def peptide(sequence=SEQUENCE, cis=CIS, chain="A", first=1, shift=0.0):
    """Atoms of a backbone with omega 0 before the residues of `cis`, else 180: dictionaries."""
    trace = [[0.0, 0.0, 0.0], [1.46, 0.0, 0.0], [2.0, 1.42, 0.0]]
    for i in range(2, len(sequence) + 1):
        omega = 5.0 if i in cis else 178.0
        for length, angle, torsion in ((1.33, 117, 140), (1.46, 122, omega), (1.52, 111, -70)):
            trace.append(place(*trace[-3:], length, angle, torsion))
    return [dict(atom=("N", "CA", "C")[i % 3], res=NAMES[sequence[i // 3]], chain=chain,
                 num=first + i // 3, xyz=[x + shift for x in xyz], alt="", model=1)
            for i, xyz in enumerate(trace)]


def line(atom, serial=1, end="  1.00  5.00           {e}  ", name="{:<3s} "):
    x, y, z = atom["xyz"]
    return ("ATOM  {:5d}  {:<3s}{:1s}{}{:1s}{:4d}    {:8.3f}{:8.3f}{:8.3f}".format(
        serial, atom["atom"], atom["alt"], name.format(atom["res"]), atom["chain"], atom["num"],
        x, y, z) + end.format(e=atom["atom"][0], n=serial) + "\n")


def pdb(atoms, **shape):
    return "".join(line(atom, serial, **shape) for serial, atom in enumerate(atoms, 1))


def cif(atoms, columns, head="data_s\n"):
    """A table of atoms with these columns, given as tag: value of an atom."""
    rows = "".join(" ".join(str(value(atom)) for value in columns.values()) + "\n" for atom in atoms)
    return head + "loop_\n" + "".join(f"_atom_site.{tag}\n" for tag in columns) + rows


def position(axis, form="{:.3f}"):
    return lambda atom: form.format(atom["xyz"][axis])


LABELS = {"group_PDB": lambda a: "ATOM", "label_atom_id": lambda a: a["atom"],
          "label_comp_id": lambda a: a["res"], "label_asym_id": lambda a: a["chain"],
          "label_seq_id": lambda a: a["num"]}
PLACES = {"Cartn_x": position(0), "Cartn_y": position(1), "Cartn_z": position(2)}
AUTHORS = {**LABELS, "label_seq_id": lambda a: a["num"] - 100, "label_asym_id": lambda a: "Q",
           "auth_seq_id": lambda a: a["num"], "auth_asym_id": lambda a: a["chain"], **PLACES}


def renamed(names, **more):
    """The peptide with other names for residues, by number."""
    return [dict(atom, res=names.get(atom["num"], atom["res"]), **more) for atom in peptide()]


def hydrogens(atoms):
    return [dict(a, atom="H", xyz=[x + 1 for x in a["xyz"]]) for a in atoms if a["atom"] == "N"]


OTHER = peptide("GLGLEELG", set(), shift=60)
BARE = peptide(chain="")
TWINS = BARE, [dict(a, xyz=[x + 40 for x in a["xyz"]]) for a in BARE]
ION = "HETATM  900 CA    CA A   4      50.000  50.000  50.000  1.00  5.00          CA  \n"
WATER = "ATOM    901  O   HOH A   1    **************999.999  1.00  0.00           O\n"

# what, file, options beside --structure
SHAPES = [
    ("plain", pdb(peptide()), []),
    ("numbers of the authors", pdb(peptide(first=-3)), []),
    ("entry and line number in columns 73 to 80", pdb(peptide(), end="  1.00 23.22      2TRX {n:3d}"), []),
    ("other text there", pdb(peptide(), end="  1.00 23.22      anytext!"), []),
    ("nothing after z", pdb(peptide(), end=""), []),
    ("chain in the segment", pdb(BARE, end="  1.00  5.00      SEGA"), ["--chain", "SEGA"]),
    ("no chain at all", pdb(BARE), []),
    ("MODEL and one blank", "MODEL 3\n" + pdb(peptide()) + "ENDMDL\n", ["--model", "3"]),
    ("AMBER names", pdb(renamed({1: "SER", 4: "CYX", 5: "HIE", 8: "LYN", 9: "ASH"})), []),
    ("AMBER ends", pdb(renamed({1: "NSER", 9: "CASP"}, chain=""), name="{:<4s}"), []),
    ("CYANA names", pdb(renamed({4: "CYSS", 5: "HIS+", 7: "cPRO", 8: "LYS+", 9: "ASP-"}),
                        name="{:<4s}"), []),
    ("CYANA names, no chain", pdb(renamed({5: "HIST", 7: "cPRO", 8: "LYS+"}, chain=""),
                                  name="{:<4s}"), []),
    ("carriage returns", pdb(peptide()).replace("\n", "\r\n"), []),
    ("carriage returns alone", pdb(peptide()).replace("\n", "\r"), []),
    ("byte-order mark", "\ufeff" + pdb(peptide()), []),
    ("six-digit serial numbers", pdb(peptide()).replace("ATOM      ", "ATOM  10000"), []),
    ("words without columns", "".join("ATOM {} {} {} A {} {:.3f} {:.3f} {:.3f} 0.1 1.5\n".format(
        n, a["atom"], a["res"], a["num"], *a["xyz"]) for n, a in enumerate(peptide(), 1)), []),
    ("words parted by tabs", "".join("ATOM\t{}\t{}\t{}\tA\t{}\t{:.3f}\t{:.3f}\t{:.3f}\n".format(
        n, a["atom"], a["res"], a["num"], *a["xyz"]) for n, a in enumerate(peptide(), 1)), []),
    ("small letters", pdb(renamed({}, chain="A")).lower().replace("atom  ", "ATOM  ").replace(" a ", " A "), ["--chain", "A"]),
    ("chain joined with the number", "".join("ATOM {} {} {} A{} {:.3f} {:.3f} {:.3f}\n".format(
        n, a["atom"], a["res"], a["num"] + 1000, *a["xyz"]) for n, a in enumerate(peptide(), 1)), []),
    ("copies without letters, parted", pdb(TWINS[0]) + "TER\n" + pdb(TWINS[1]), ["--chain", "2"]),
    ("copies without letters, not parted", pdb(TWINS[0]) + pdb(TWINS[1]), ["--chain", "2"]),
    ("copies of one letter", (pdb(peptide()) + "TER\n") * 2, ["--chain", "A-2"]),
    ("another protein of that letter", pdb(OTHER) + "TER\n" + pdb(peptide()), []),
    ("hydrogens after all others", pdb(BARE + hydrogens(BARE)), []),
    ("numbers that go back in a chain", pdb([dict(a, num=a["num"] + 200 * (a["num"] < 4)) for a in BARE]), []),
    ("an end mark within a chain", pdb(BARE[:12]) + "TER\n" + pdb(BARE[12:]), []),
    ("ion of calcium and water", pdb(peptide()) + "TER\n" + ION + WATER, []),
    ("alternate locations", pdb([dict(a, alt=alt, xyz=[x + 9 * (alt == "B") for x in a["xyz"]])
                                 for a in peptide() for alt in "AB"]), []),
    ("two residues at one place", pdb([dict(a, alt=alt, res=a["res"] if alt == "A" else "GLY")
                                       if a["num"] == 4 else a
                                       for a in peptide() for alt in "AB"[:2 if a["num"] == 4 else 1]]), []),
    ("mmCIF without occupancy and B", cif(peptide(), {**LABELS, **PLACES}), []),
    ("mmCIF of authors' numbers", cif(peptide(), AUTHORS), ["--chain", "A"]),
    ("mmCIF of unknown authors' numbers", cif(peptide(), {
        **LABELS, "auth_seq_id": lambda a: "?", "auth_asym_id": lambda a: ".", **PLACES}), ["--chain", "A"]),
    ("mmCIF with uncertainties", cif(peptide(), {
        **LABELS, **{tag: position(i, "{:.4f}(12)") for i, tag in enumerate(PLACES)}}), []),
    ("mmCIF in capitals, after a comment", "# made\n" + cif(peptide(), {**LABELS, **PLACES}).replace(
        "data_s", "DATA_S").replace("_atom_site", "_ATOM_SITE"), []),
    ("mmCIF with names of people", cif(peptide(), {**LABELS, **PLACES}, "data_s\n_a.b 'Å. Müller\x01'\n"), []),
    ("mmCIF with water of no number", cif(peptide() + [dict(peptide()[0], res="HOH", num="?")],
                                          {**LABELS, **PLACES}), []),
    ("mmCIF of models in turn", cif([dict(a, model=m) for a in peptide() for m in (1, 2)], {
        **LABELS, **PLACES, "pdbx_PDB_model_num": lambda a: a["model"]}), ["--model", "2"]),
]

TEXT = pdb(peptide())
TABLE = cif(peptide(), {**LABELS, **PLACES})
PACKED = gzip.compress(TEXT.encode())
FIRST = line(peptide()[0])
# what, file, options, what the one line says
REFUSED = [
    ("nothing", "", [], "the file is empty"),
    ("blanks", " \n\n", [], "the file is empty"),
    ("what a server says", "<html>\nnot found\n</html>", [], "this is a web page"),
    ("a bzip2 file", b"BZh91AY&SY", [], "this is a bzip2 file: unpack it first"),
    ("a text", "Dear Sir,\n", [], "not a PDB or mmCIF file"),
    ("an mmCIF without atoms", "data_empty\n_entry.id x\n", [], "no atoms in this file"),
    ("an mmCIF with headings alone", TABLE.split("ATOM")[0], [], "s: "),
    ("an mmCIF cut short", TABLE[:-30], [], "s:"),
    ("an mmCIF without names", TABLE.replace("label_atom_id", "x"), [], "lacks atom names"),
    ("a word for x in mmCIF", TABLE.replace("0.000 0.000 0.000", "0.0x0 0.000 0.000"), [], "in row 1 of"),
    ("not-a-number in mmCIF", TABLE.replace("0.000 0.000 0.000", "nan 0.000 0.000"), [], "in row 1 of"),
    ("a word for x", TEXT + FIRST.replace("   0.000", "   0.0x0"), [], "s:28: no residue number"),
    ("stars for x", TEXT + FIRST.replace("   0.000", "********", 1), [], "s:28: "),
    ("infinity for x", TEXT + FIRST.replace("   0.000", "     inf", 1), [], "s:28: "),
    ("no residue number", FIRST.replace("A   1", "A    ") + TEXT, [], "s:1: "),
    ("a last line cut in z", TEXT[:-len(FIRST) + 52], [], "s:27: the file is cut short"),
    ("gzip cut short", PACKED[:len(PACKED) // 2], [], "the gzip file is cut short"),
    ("gzip without its last byte", PACKED[:-1], [], "the gzip file is cut short"),
    ("gzip of two bytes", PACKED[:2], [], "the gzip file is cut short"),
    ("gzip with a wrong sum", PACKED[:-8] + b"0000" + PACKED[-4:], [], "a damaged gzip file"),
    ("gzip and more", PACKED + b"more", [], "goes on after its end"),
    ("water alone", WATER.replace("*" * 14 + "99", " " * 16), [], "no protein atoms"),
    ("no such chain", TEXT + pdb(OTHER).replace(" A ", " B "), ["--chain", "C"], "chain A, chain B"),
    ("no such model", TEXT, ["--model", "2"], "no model 2"),
    ("another protein", pdb(OTHER), [], "is another sequence"),
]


class StructureImport(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = scratch.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())
        return self.path(name)

    def content(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def run_import(self, *arguments, **more):
        return subprocess.run([IMPORT, *arguments], capture_output=True, text=True, timeout=120,
                              cwd=self.folder, **more)

    def table(self, sequence=SEQUENCE):
        return self.write("t.tab", f"DATA SEQUENCE {sequence}\n\nVARS RESID RESNAME ATOMNAME SHIFT\n"
                                   "FORMAT %4d %1s %4s %8.3f\n\n")

    def fit(self, content, *options, sequence=SEQUENCE):
        return self.run_import(self.table(sequence), "--structure", self.write("s", content),
                               "-o", self.path("o.pdb"), *options)

    def written(self):
        with open(self.path("o.pdb")) as file:
            return [(int(line[22:26]), line[17:20], line[12:16].strip(),
                     [float(line[at:at + 8]) for at in (30, 38, 46)])
                    for line in file if line.startswith("ATOM")]

    def test_every_shape_of_file_gives_the_same_chain(self):
        expected = [(i + 1, NAMES[letter], atom) for i, letter in enumerate(SEQUENCE)
                    for atom in ("N", "CA", "C")]
        for what, content, options in SHAPES:
            for packed in (False, True):
                with self.subTest(what, packed=packed):
                    done = self.fit(gzip.compress(content.encode()) if packed else content, *options)
                    self.assertEqual(done.returncode, 0, done.stderr)
                    atoms = [row[:3] for row in self.written() if row[2] != "H"]
                    self.assertEqual(atoms, expected)
                    self.assertRegex(done.stderr, r"proline 2 \(-?\d+ in the structure\): cis in 0 of ")
                    self.assertRegex(done.stderr, r"proline 7 \(-?\d+ in the structure\): cis in ([12]) of \1 ")

    def test_what_cannot_be_used_is_refused_in_one_line(self):
        for what, content, options, said in REFUSED:
            with self.subTest(what):
                done = self.fit(content, *options)
                self.assertEqual(done.returncode, 65, done.stderr)
                self.assertEqual(done.stderr.count("\n"), 1)
                self.assertIn(said, done.stderr)
                self.assertFalse(os.path.exists(self.path("o.pdb")))

    def test_models_are_counted_one_by_one(self):
        trans = pdb(peptide(cis=set()))
        lacking = pdb([atom for atom in peptide() if atom["num"] != 3])
        for what, parts in (("MODEL", ("MODEL        1\n", "ENDMDL\nMODEL        2\n", "ENDMDL\nMODEL        3\n")),
                            ("ENDMDL", ("", "ENDMDL\n", "ENDMDL\n")), ("END", ("", "END\n", "END\n")),
                            ("one number", ("MODEL 1\n", "MODEL 1\n", "MODEL 1\n"))):
            with self.subTest(what):
                done = self.fit(parts[0] + trans + parts[1] + TEXT + parts[2] + lacking)
                self.assertIn("proline 7 (7 in the structure): cis in 2 of 3 models", done.stderr)
                self.assertIn("proline 2 (2 in the structure): cis in 0 of 3 models", done.stderr)

    def test_no_angle_is_measured_across_a_gap(self):
        """The residue before the gap has the type of the one before the proline, and lies as if in cis."""
        sequence = "GASKASPGLE"
        near = peptide("GASPGLE", cis={4})  # bonded: the control
        far = [dict(a, xyz=[x + 3 * (a["num"] > 3) for x in a["xyz"]]) for a in near]
        numbered = [dict(a, num=a["num"] + 3 * (a["num"] > 3)) for a in far]
        for what, atoms, said in (
                ("numbers tell", numbered, "proline 7: it or the residue before it is not in the structure"),
                ("numbers do not tell", far, "proline 7"), ("bonded", near, "cis in 1 of 1 model")):
            with self.subTest(what):
                done = self.fit(pdb(atoms), sequence=sequence if what != "bonded" else "GASPGLE")
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertIn(said, done.stderr)
                if what != "bonded":
                    self.assertNotIn("cis in", done.stderr)
        self.fit(pdb(numbered), sequence=sequence)
        self.assertEqual(sorted({row[0] for row in self.written()}), [1, 2, 3, 7, 8, 9, 10])
        done = self.fit(pdb(far), sequence="GASPGLE")
        self.assertIn("proline 4 (4 in the structure): it is not bonded to the residue before it", done.stderr)
        self.assertIn("warning: proline 4 is not bonded", done.stderr)

    def test_residues_keep_the_distance_of_their_numbers_where_letters_leave_a_choice(self):
        sequence = "AAAAGAAAAAPAAAAA"
        atoms = [atom for atom in peptide(sequence, set()) if atom["num"] not in (3, 4, 8, 9, 16)]
        self.fit(pdb([dict(a, num=a["num"] + 50) for a in atoms]), sequence=sequence)
        self.assertEqual(sorted({row[0] for row in self.written()}), [1, 2, 5, 6, 7, 10, 11, 12, 13, 14, 15])

    def test_missing_atoms_and_oxidised_cysteines(self):
        done = self.fit(pdb([a for a in peptide() if a["atom"] == "CA"]))
        self.assertIn("proline 7 (7 in the structure): atoms are missing", done.stderr)
        done = self.fit(TEXT, sequence=SEQUENCE.replace("C", "c"))
        self.assertIn("9 of 9 residues agree", done.stderr)

    def test_selenomethionine_is_methionine(self):
        atoms = [dict(a, res="MSE") if a["num"] == 3 else a for a in peptide()]
        atoms.insert(9, dict(atoms[8], atom="SE", xyz=[20, 20, 20]))
        self.fit(pdb(atoms, end="  1.00  5.00          SE  "), sequence="SPMCHAPKD")
        self.assertIn((3, "MET", "SD", [20, 20, 20]), self.written())

    def test_what_is_left_out_is_a_warning_and_quiet_says_warnings_only(self):
        done = self.fit(TEXT + ION.replace("  50.000", "  ******", 1), "--quiet")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stderr.count("\n"), 1)
        self.assertIn("s:28: 1 atom line without residue number or coordinates", done.stderr)
        unplaced = dict(peptide()[0], atom="O", xyz=[9999] * 3)
        self.assertIn("s:28: 1 atom line without", self.fit(TEXT + line(unplaced), "--quiet").stderr)
        self.assertEqual(len(self.written()), 27)
        self.assertEqual(self.fit(TEXT, "--quiet").stderr, "")

    def test_either_file_may_come_from_standard_input(self):
        table, structure = self.table(), self.write("s", TEXT)
        for arguments, stream in (((table, "--structure", "-"), structure), (("-", "--structure", structure), table)):
            with open(stream) as file:
                done = self.run_import(*arguments, stdin=file)
            self.assertEqual(done.stdout.count("ATOM"), 27, done.stderr)
        self.assertEqual(self.run_import("-", "--structure", "-").returncode, 1)

    def test_an_output_that_is_an_input_or_another_output_is_refused(self):
        self.write("s", TEXT)
        self.table()
        os.mkdir(self.path("d"))
        os.symlink("t.tab", self.path("soft.tab"))
        os.symlink("d", self.path("e"))
        os.symlink("new.tab", self.path("soon.tab"))
        os.link(self.path("t.tab"), self.path("hard.tab"))
        held = self.content("t.tab"), self.content("s")
        for output in ("t.tab", "./t.tab", "d/../t.tab", self.path("t.tab"), "soft.tab", "hard.tab", "s"):
            with self.subTest(output):
                done = self.run_import("t.tab", "--structure", "s", "-o", output)
                self.assertEqual((done.returncode, done.stderr.count("\n")), (1, 1), done.stderr)
                self.assertIn("this output is the input", done.stderr)
        for one, other in (("new.tab", "new.tab"), ("new.tab", "d/../new.tab"), ("d/x", "e/x"),
                           ("new.tab", "soon.tab"), ("soft.tab", "hard.tab")):
            with self.subTest((one, other)):
                done = self.run_import("nothing.str", "-o", one, "--map", other)
                self.assertEqual((done.returncode, done.stderr.count("\n")), (1, 1), done.stderr)
                self.assertIn("the same file as the output", done.stderr)
        with open(self.path("t.tab")) as source, open(self.path("t.tab"), "a") as target:
            done = subprocess.run([IMPORT, "-", "--structure", "s"], stdin=source, stdout=target,
                                  stderr=subprocess.PIPE, cwd=self.folder, text=True, timeout=60)
        self.assertEqual(done.returncode, 1)
        self.assertEqual((self.content("t.tab"), self.content("s")), held)
        self.assertEqual(sorted(os.listdir(self.folder)),
                         ["d", "e", "hard.tab", "s", "soft.tab", "soon.tab", "t.tab"])
        for output in ("/dev/null", "copy.pdb"):
            self.assertEqual(self.run_import("t.tab", "--structure", "s", "-o", output).returncode, 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
