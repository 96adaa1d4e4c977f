#!/usr/bin/env python3
"""Depositions of every shape that public files have, as small ones written here: where the sequence
stands, what is broken and not needed, values that cannot be, two shifts of one atom.

usage: deposition_test.py CITRANS_IMPORT CITRANS SOURCE_ROOT
"""
import gzip
import os
import subprocess
import sys
import unittest

from import_test import IMPORT, ImportCase, nef, rows_of, star21, star3


def loop(tags, rows, prefix="_Atom_chem_shift."):
    return ("loop_\n" + "".join(f" {prefix}{tag}\n" for tag in tags.split())
            + "".join(f" {row}\n" for row in rows) + "stop_\n")


def bare(rows, names="SER PRO GLY CYS ALA"):
    """A shift loop of NMR-STAR 3 with a sequence; `rows` are "INDEX RESIDUE ATOM VALUE"."""
    sequence = [f"{i} {name} 1" for i, name in enumerate(names.split(), 1)]
    return ("data_1\nsave_e\n _Entity.ID 1\n" + loop("ID Comp_ID Entity_ID", sequence, "_Entity_comp_index.")
            + "save_\nsave_l\n" + loop("Comp_index_ID Comp_ID Atom_ID Val", rows) + "save_\n")


def shifts21(rows, before=""):
    return (before + "loop_\n _Residue_seq_code\n _Residue_label\n _Atom_name\n _Chem_shift_value\n"
            + "".join(f" {row}\n" for row in rows) + "stop_\n")


class Depositions(ImportCase):
    def table(self, text, *arguments):
        done = self.run_import(self.write("in", text), *arguments)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done

    def sequence(self, done):
        return "".join("".join(line.split()[2:]) for line in done.stdout.splitlines()
                       if line.startswith("DATA SEQUENCE"))

    def test_the_sequence_is_read_where_it_stands(self):
        rows = ["2 PRO CA 63.1", "3 GLY CA 45.1"]
        assembly = [f"{copy} {i} {name} {author}" for copy, first in (("1", 11), ("2", 201))
                    for i, (name, author) in enumerate(zip("SER PRO GLY CYS".split(), range(first, 999)), 1)]
        copies = ("data_1\n" + loop("Entity_assembly_ID Comp_index_ID Comp_ID Auth_seq_ID", assembly,
                                    "_Chem_comp_assembly.")
                  + loop("Entity_assembly_ID Comp_index_ID Comp_ID Atom_ID Val",
                         ["1 2 PRO CA 63.1", "2 2 PRO CA 63.2", "2 3 GLY CA 45.2"]))
        for name, text, sequence, said in [
            ("2.1 without frames, letters beside the shifts",
             shifts21(rows, " _Mol_residue_sequence\n;\nSPGC\n;\n"), "SPGC", None),
            ("2.1 without frames, a list of residues beside the shifts",
             "save_x\n loop_ _Residue_seq_code _Residue_label 1 SER 2 PRO 3 GLY 4 CYS stop_\n"
             + shifts21(rows), "SPGC", None),
            ("another loop that names residues",
             star21(0).replace("save_l", "save_j\n loop_\n _Residue_seq_code\n _Residue_label\n"
                               " _Coupling\n 1 SER 7.2\n 2 PRO 6.1\nstop_\nsave_\nsave_l"), "SPGC", None),
            ("assembly", copies, "SPGC", "copy 2 of 2"),
            ("a broken list of residues, but letters", bare(rows).replace(" 2 PRO 1", " 2 PRO").replace(
                " _Entity.ID 1", " _Entity.ID 1\n _Entity.Polymer_seq_one_letter_code SPGC"), "SPGC", "not needed"),
            ("both loops of an entity", bare(rows, "SER PRO GLY CYS")
             + loop("Mon_ID Comp_index_ID Entity_ID", ["SER 1 1", "PRO 2 1", "GLY 3 1", "CYS 4 1"],
                    "_Entity_poly_seq."), "SPGC", None),
            ("a modified residue in letters",
             shifts21(["2 MSE CA 55", "3 GLY CA 45.1"], " _Mol_residue_sequence 'S(MSE)GC'\n"), "SMGC", None),
            ("a title before letters", shifts21(rows, " _Mol_residue_sequence\n;\n>X_HUMAN\nSPGC*\n;\n"), "SPGC", None),
            ("long names for letters", shifts21(rows, " _Mol_residue_sequence 'Ser-Pro-Gly-Cys'\n"), "SPGC", None),
            ("early name of the values", bare(rows).replace(".Val", ".Chem_shift_val"), "SPGCA", None),
            ("the sequence once more", bare(rows).replace(" 5 ALA 1\n", " 5 ALA 1\n 1 SER 1\n 2 PRO 1\n 3 GLY 1\n"),
             "SPGCA", "residues that are listed twice count once"),
            ("numbers sorted as text", bare(["9 SER CA 58", "10 PRO CA 63", "11 GLY CA 45"], "SER PRO GLY").replace(
                "1 SER 1\n", "10 PRO 1\n").replace(" 2 PRO 1\n", " 11 GLY 1\n").replace(" 3 GLY 1\n", " 9 SER 1\n"),
             "SPG", "molecule 1: its residues are listed out of order"),
            ("NEF sorted as text", nef().replace(" A 8 SER\n A 9 PRO\n A 10 GLY\n", " A 10 GLY\n A 8 SER\n A 9 PRO\n"),
             "SPGC", "molecule A: its residues are listed out of order"),
            ("states of residues", bare(["1 HIE CA 55", "2 cPRO CA 63", "3 CYSS CB 41", "4 LYS+ CA 56"],
                                        "HIS PRO CYS LYS"), "HPCK", None),
            ("nowhere", "data_1\n" + loop("Comp_index_ID Comp_ID Atom_ID Val",
                                          ["5 SER CA 58", "7 PRO CA 63"]), "SXP",
             "guessed from the shifts, from residue 5 to 7"),
            ("nowhere, two chains of one entity", "data_1\n" + loop(
                "Entity_ID Auth_asym_ID Comp_index_ID Comp_ID Atom_ID Val",
                ["1 A 1 SER CA 58", "1 B 1 SER CA 58", "1 B 2 PRO CA 63"]), "SP", "copy B of 2"),
            ("nowhere, two molecules", "data_1\n" + loop(
                "Entity_ID Comp_index_ID Comp_ID Atom_ID Val",
                ["1 1 DA H8 8.1", "1 2 DG H8 8", "1 3 DG H8 8", "2 1 PRO CA 63", "2 2 ALA CA 52"]), "PA",
             "guessed"),
        ]:
            with self.subTest(name):
                done = self.table(text)
                self.assertEqual(self.sequence(done), sequence)
                if said:
                    self.assertIn(said, done.stderr)
                else:
                    self.assertNotIn("guessed", done.stderr)
                    self.assertNotIn("moved", done.stderr)

    def test_residues_are_known_without_long_names_and_plain_numbers(self):
        long = bare(["1 SER CA 58", "2 PRO CB 32", "3 GLY HA2 3.9", "4 CYS CB 28", "5 ALA CB 19"])
        letters = {"SER": "S", "PRO": "P", "GLY": "G", "CYS": "C", "ALA": "A"}
        head, shifts = long.split("save_l")
        authors, short, both = shifts.replace("Comp_index_ID", "Auth_seq_ID"), shifts, long
        for name, letter in letters.items():
            short, both = short.replace(name, letter), both.replace(f" {name} ", f" {letter} ")
        nameless = "\n".join(line if line.startswith((" _", "l", "s")) else line[:2] + " ? " + line[7:]
                             for line in shifts.split("\n"))
        for name, text, said in [
            ("what the authors call them", head + "save_l" + authors.replace("Comp_ID", "Auth_comp_ID").replace(
                "Atom_ID", "Auth_atom_ID"), None),
            ("letters in the shifts", head + "save_l" + short, None),
            ("letters in sequence and shifts", both, None),
            ("zeros before numbers", head + "save_l" + shifts.replace("\n ", "\n 00").replace(" 00_", " _"), None),
            ("numbers of a program for tables", head + "save_l" + shifts.replace(" SER", ".0 SER").replace(
                " PRO", ".0 PRO").replace(" GLY", ".0 GLY"), None),
            ("no names", head + "save_l" + nameless, "the shifts name no residues"),
        ]:
            with self.subTest(name):
                done = self.table(text)
                self.assertEqual(self.sequence(done), "SPGCA")
                self.assertEqual(rows_of(done.stdout), rows_of(self.table(long).stdout))
                self.assertEqual("moved" in done.stderr, False)
                self.assertEqual("name no residues" in done.stderr, said is not None)
        for name, text in [
            ("no names, and a glycine with a CB", head + "save_l" + nameless.replace("3 ? HA2 3.9", "3 ? CB 19")),
            ("nucleotides", both.replace(" S ", " A ").replace(" P ", " U ")),
        ]:
            with self.subTest(name):
                done = self.run_import(self.write("in", text))
                self.assertEqual(done.returncode, 65, done.stdout)
                self.assertIn("no shifts of a protein", done.stderr)

    def test_authors_numbers_are_not_mixed_with_the_other(self):
        text = bare([]).split("save_l")[0] + loop("Comp_index_ID Auth_seq_ID Comp_ID Atom_ID Val", [
            "1 2 SER CA 58", "2 3 PRO CB 32", ". 1 SER CB 63"])
        done = self.table(text)
        self.assertEqual(rows_of(done.stdout), [("1", "S", "CA", "58.000"), ("2", "P", "CB", "32.000")])
        self.assertIn("1 shift of no certain residue left out", done.stderr)

    def test_each_copy_keeps_its_author_numbers(self):
        assembly = [f"{copy} {i} {name} {first + i}" for copy, first in (("A", 10), ("B", 200))
                    for i, name in enumerate(("PRO", "GLY", "ALA"), 1)]
        text = ("data_1\n" + loop("Auth_asym_ID Comp_index_ID Comp_ID Auth_seq_ID", assembly,
                                  "_Chem_comp_assembly.")
                + loop("Auth_asym_ID Comp_index_ID Comp_ID Atom_ID Val",
                       ["A 1 PRO CA 63.1", "B 1 PRO CA 64.2", "B 2 GLY CA 45"]))
        for arguments, authors, value in (([], ["201", "202", "203"], "64.200"),
                                          (["--copy", "A"], ["11", "12", "13"], "63.100")):
            done = self.table(text, "--map", self.path("map"), *arguments)
            with open(self.path("map")) as file:
                self.assertEqual([line.split("\t")[1] for line in file.read().splitlines()[1:]], authors)
            self.assertIn(("1", "P", "CA", value), rows_of(done.stdout))

    def test_shifts_of_no_copy_belong_to_each(self):
        text = bare([]).split("save_l")[0] + loop("Entity_assembly_ID Comp_index_ID Comp_ID Atom_ID Val", [
            ". 2 PRO CB 32", "1 2 PRO CG 27", "1 3 GLY CA 45", "2 2 PRO CG 24", ". 1 SER CA 58"])
        for arguments, value in (([], "27.000"), (["--copy", "2"], "24.000")):
            rows = rows_of(self.table(text, *arguments).stdout)
            self.assertIn(("2", "P", "CB", "32.000"), rows)
            self.assertIn(("2", "P", "CG", value), rows)
        self.assertIn("copies 1 (4 shifts), 2 (3 shifts)", self.table(text, "--list-contents").stdout)

    def test_what_does_not_matter_is_no_reason_to_refuse(self):
        good = bare(["1 SER CA 58", "2 PRO CB 32", "3 GLY CA 45", "4 CYS CA 57"])
        for name, text, said in [
            ("byte-order mark", "\ufeff" + good, None),
            ("heading", "Thu Dec 20 2012 ---- x.str\n______\nauthor's copy\n;x\n" + good, None),
            ("frames left open", good.replace("save_\n", ""), None),
            ("lines of old computers", good.replace("\n", "\r"), None),
            ("lines of other computers", good.replace("\n", "\r\n"), None),
            ("capitals", good.replace("loop_", "LOOP_").replace("stop_", "Stop_").replace("_Atom", "_ATOM"), None),
            ("early NEF", nef().replace("residue_name", "residue_type"), None),
            ("a broken loop", good + "save_p\n loop_\n _Peak.ID\n _Peak.Val\n 1 2\n 3\n stop_\nsave_\n",
             "line 32:2: a row of the loop of _peak.id has not as many values"),
            ("a loop in a loop", good + "loop_\n _a\n loop_\n _b\n 1 2 stop_ stop_\n", "a loop stands inside"),
            ("a stray value", good + "save_p\n stray\nsave_\n", "line 28:2: a value stands where a tag"),
            ("the end in a loop", good.rsplit("stop_", 1)[0], "may be cut short"),
            ("one misnamed residue", good.replace("3 GLY CA", "3 ALA CA"),
             "1 residue named otherwise by the shifts than by the sequence: ALA 3 is GLY in the sequence"),
            ("a residue too many", good.replace("4 CYS CA", "9 CYS CA"), "not in the sequence and left out: CYS 9"),
        ]:
            with self.subTest(name):
                done = self.table(text)
                if name != "early NEF":
                    self.assertEqual(self.sequence(done), "SPGCA")
                    self.assertEqual(len(rows_of(done.stdout)), 3 + (said is None or "left out" not in said))
                self.assertEqual(said is not None, "warning: line" in done.stderr or "esidue named" in done.stderr
                                 or "left out" in done.stderr.replace("no certain residue left out", ""))
                self.assertIn(said or "", done.stderr)

    def test_gzipped_files_are_read_and_damaged_ones_refused(self):
        for text in (star3(), nef()):
            packed = gzip.compress(text.encode())
            plain = self.run_import(self.write("in", text))
            done = self.run_import(self.write("in", packed))
            self.assertEqual(done.stdout, plain.stdout)
            piped = subprocess.run([IMPORT, "-"], input=packed, capture_output=True, check=True, timeout=60)
            self.assertEqual(rows_of(piped.stdout.decode()), rows_of(plain.stdout))
            cut = self.run_import(self.write("in", packed[:-9]))
            self.assertEqual((cut.returncode, cut.stdout), (65, ""))

    def test_refusals_say_what_the_file_is_and_where_it_is_broken(self):
        good = bare(["1 SER CA 58", "2 PRO CB 32"])
        table = self.table(good).stdout
        for name, text, arguments, said in [
            ("a table", table, [], "in: this is already a table"),
            ("nothing", " \n", [], "in: the file is empty"),
            ("what a server says", "<!DOCTYPE HTML>\n<html>\n_page = 1\n</html>", [], "in: this is a web page"),
            ("a zip file", b"PK\x03\x04\n_a b", [], "in: this is a zip file: unpack it first"),
            ("an editor's Unicode", good.encode("utf-16"), [], "in: this is text in UTF-16"),
            ("a cut file", good[:good.index("2 PRO CB")] + "2 PRO", [], "in:22:2: the file ends in this row of the loop"),
            ("a letter", "Dear Sir,\nplease find\n", [], "in: not an NMR-STAR or NEF file"),
            ("coordinates", "data_x\nloop_\n_atom_site.id\n_atom_site.x\n1 2\n", [], "in: this is a structure"),
            ("PDB", "HEADER x\nATOM      1  N   MET A   1\n", [], "in: this is a structure"),
            ("a value too few", good.replace("1 SER CA 58", "1 SER CA"), [], "in:21:2: a row of the loop of _atom"),
            ("a value too many", good.replace("2 PRO CB 32", "2 PRO CB 32 x"), [], "in:22:14: a row of the loop"),
            ("a sequence that cannot be read", good.replace(" 2 PRO 1", " 2 PRO"), [], "in:9:2: a row of the loop of _entity"),
            ("an open text", "data_1\n _a\n;text\n" + good, [], "in:3:1: the text field that begins here"),
            ("no such entity", good, ["--entity", "7"], "no shifts of entity 7; there are entity 1, list (l)"),
            ("no such chain", nef(), ["--entity", "X"], "no shifts of chain X; there are chain A"),
            ("no such copy", good, ["--copy", "9"], "no shifts of copy 9"),
        ]:
            with self.subTest(name):
                done = self.run_import(self.write("in", text), *arguments)
                self.assertEqual((done.returncode, done.stdout), (65, ""))
                self.assertIn(said, done.stderr)
                self.assertEqual(done.stderr.count("\n"), 1)

    def test_values_that_cannot_be_are_left_out_and_named(self):
        for atom, values in [("N", "0.000 8.3 -5"), ("H", "0.000 120"), ("HA", "0.000 57"),
                             ("C", "0.000 56 275"), ("CA", "0.000 8.4 176"), ("CB", "331 0 -3.2")]:
            for value in values.split():
                done = self.table(bare([f"5 ALA {atom} {value}", "1 SER CA 58"]))
                self.assertEqual(len(rows_of(done.stdout)), 1, (atom, value))
                self.assertIn("1 impossible value left out: ALA 5", done.stderr)
        for row in ("2 PRO CG 50.6", "2 PRO CB 63.2"):  # CD and CA in their place
            self.assertIn("left out: PRO 2", self.table(bare([row, "1 SER CA 58"])).stderr)
        # Far off, but there are such: a first residue's amine, a ring's neighbour, a shift of reference.
        for row in ("1 SER N 38.1", "3 GLY HA2 0.9", "2 PRO CB 25.5", "2 PRO CG 32.4", "4 CYS CB 47.9"):
            self.assertIn(float(row.split()[3]), [float(cells[3]) for cells in rows_of(self.table(bare([row])).stdout)])

    def test_prolines_and_their_neighbours_are_named_first(self):
        rows = [f"{i} {'PRO' if i == 22 else 'ALA'} C 0" for i in range(1, 24)]
        done = self.table(bare(rows + ["1 ALA CA 52"], "ALA " * 21 + "PRO ALA"))
        said = done.stderr.split("impossible values left out: ")[1].split("\n")[0]
        self.assertTrue(said.startswith("ALA 21 C 0, PRO 22 C 0, ALA 23 C 0, ALA 1 C 0"), said)
        self.assertTrue(said.endswith(" and 15 more"), said)

    def test_two_forms_of_a_proline_are_never_mixed(self):
        trans, cis = {"CA": 63.3, "CB": 31.8, "CG": 27.3}, {"CA": 62.6, "CB": 34.3, "CG": 24.4}

        def of(form, atoms):
            return [f"2 PRO {atom} {form[atom]}" for atom in atoms.split()]

        other = ["3 GLY CA 45"]
        for name, rows, expected in [
            ("one behind the other", of(trans, "CA CB CG") + of(cis, "CA CB CG"), trans),
            ("the second is fuller", of(trans, "CA CB") + of(cis, "CA CB CG"), cis),
            ("atom by atom", [row for atom in ("CA", "CB", "CG") for form in (trans, cis)
                              for row in of(form, atom)], trans),
            ("far apart", of(trans, "CA CB") + other + of(cis, "CA CB CG"), cis),
            ("CG told once", of(trans, "CA") + of(cis, "CA") + of(trans, "CB") + of(cis, "CB") + of(cis, "CG"),
             {"CA": 63.3, "CB": 31.8}),
        ]:
            with self.subTest(name):
                done = self.table(bare(rows + other))
                found = {cells[2]: float(cells[3]) for cells in rows_of(done.stdout) if cells[0] == "2"}
                self.assertEqual(found, expected)
                self.assertIn("several forms in the list, one is taken: PRO 2 CB", done.stderr)
        measured_twice = self.table(bare(of(trans, "CA CB CG") + ["2 PRO CB 31.9", "2 PRO HA 4.4"]))
        self.assertNotIn("forms", measured_twice.stderr)
        self.assertIn("PRO 2 CB 31.8 and 31.9", measured_twice.stderr)
        self.assertEqual(len(rows_of(measured_twice.stdout)), 4)

    def test_alpha_protons_of_glycine(self):
        for atoms, expected in [
            ("HA2=3.9 HA3=4.1", {"HA2": 3.9, "HA3": 4.1}),
            ("HA2=3.9 HA2=3.7 HA3=4.1", {"HA2": 3.9, "HA3": 4.1}),
            ("HA1=3.9 HA2=4.1", {"HA2": 3.9, "HA3": 4.1}),
            ("HA=3.9 HA=4.1", {"HA2": 3.9, "HA3": 4.1}),
            ("HA=3.9", {"HA2": 3.9}), ("QA=3.9", {"HA2": 3.9}),
            ("HA3=4.1", {"HA3": 4.1}), ("HAy=4.1 HAx=3.9", {"HA2": 3.9, "HA3": 4.1}),
            ("1HA=3.9 2HA=4.1", {"HA2": 3.9, "HA3": 4.1}), ("HAa=3.9 HAb=4.1", {"HA2": 3.9, "HA3": 4.1}),
            ("HA#=3.9 HA#=4.1", {"HA2": 3.9, "HA3": 4.1}), ("HA'=3.9 HA''=4.1", {"HA2": 3.9, "HA3": 4.1}),
        ]:
            rows = [f"3 GLY {atom.replace('=', ' ')}" for atom in atoms.split()]
            found = {cells[2]: float(cells[3]) for cells in rows_of(self.table(bare(rows)).stdout)}
            self.assertEqual(found, expected, atoms)

    def test_names_of_the_backbone(self):
        for name, atom, value in [("H", "HN", 8.3), ("HN", "HN", 8.3), ("hn", "HN", 8.3), ("C", "C", 176), ("C'", "C", 176),
                                  ("CO", "C", 176), ("Ca", "CA", 56), ("Ha", "HA", 4.2), ("HA2", None, 4.2)]:
            found = [cells[2] for cells in rows_of(self.table(bare([f"1 SER {name} {value}", "2 PRO CA 63"])).stdout)
                     if cells[0] == "1"]
            self.assertEqual(found, [atom] if atom else [], name)

    def test_words_on_thiols(self):
        text = bare(["4 CYS CB 41", "2 PRO CB 32"])
        for words, oxidised in [("disulfide bound", True), ("all disulfide bound", True), ("fully oxidized", True),
                                ("all oxidised", True), ("disulfide and free", False), ("all free", False),
                                ("1 disulfide bond", False), ("not disulfide bound", False),
                                ("all other bound", False), ("not reported", False), ("reduced", False)]:
            done = self.table(text.replace(" _Entity.ID 1", f" _Entity.ID 1\n _Entity.Thiol_state '{words}'"))
            self.assertEqual(self.sequence(done), "SPGcA" if oxidised else "SPGCA", words)
            self.assertEqual("see --oxidised-by-cb): CYS 4 CB 41" in done.stderr, not oxidised)
        self.assertEqual(self.sequence(self.table(text, "--oxidized-by-cb")), "SPGcA")
        self.assertNotIn("--oxidised-by-cb", self.table(text.replace("CB 41", "CB 28")).stderr)
        variant = nef().replace("residue_name\n", "residue_name\n _nef_sequence.residue_variant\n", 1)
        for name in ("SER", "PRO", "GLY", "CYS"):
            variant = variant.replace(f" {name}\n", f" {name} {'-HG' if name == 'CYS' else '.'}\n", 1)
        self.assertEqual(self.sequence(self.table(variant)), "SPGc")

    def test_the_list_of_contents_helps_to_choose(self):
        conditions = ("save_c\n _Sample_condition_list.ID 3\n" + loop(
            "Type Val Val_units", ["temperature 298 K", "pH 6.5 pH", "pressure 1 atm"],
            "_Sample_condition_variable.") + "save_\n")
        rows = ["1 2 PRO CB 32", "1 2 PRO CG 27", "2 2 PRO CB 32", "2 4 PRO CB 31", "2 1 SER CA 58"]
        text = bare([], "SER PRO GLY PRO").replace("save_l", conditions + "save_l\n"
                                                   " _Assigned_chem_shift_list.Sample_condition_list_ID 3")
        text = text.split("save_l")[0] + "save_l" + text.split("save_l")[1].split("loop_")[0] + loop(
            "Entity_assembly_ID Comp_index_ID Comp_ID Atom_ID Val", rows) + "save_\n"
        # A list without rows is none, and its conditions are nobody's.
        text += (conditions.replace("save_c", "save_d").replace("ID 3", "ID 4").replace("298", "310") + "save_m\n"
                 " _Assigned_chem_shift_list.Sample_condition_list_ID 4\n" + loop("Val", [])
                 + "save_\n")
        shown = self.table(text, "--list-contents").stdout.splitlines()
        self.assertEqual(shown[1].split("\t"), ["entity 1", "4 residues", "protein", "2 prolines", ""])
        self.assertEqual(shown[2].split("\t")[1:4], ["5 shifts", "entity 1: 5 shifts, copies 1 (2 shifts), "
                                                     "2 (3 shifts), 2 prolines, 2 with CB, 0 with CG", "298 K, pH 6.5"])

    def test_shifts_that_name_no_molecule_go_where_they_fit(self):
        names = {"one": "SER PRO GLY CYS ALA", "two": "VAL LYS PRO MET THR"}
        text = "data_1\n"
        for frame, sequence in names.items():
            cells = " ".join(f"{i} {name}" for i, name in enumerate(sequence.split(), 1))
            text += f"save_{frame}\n loop_ _Residue_seq_code _Residue_label {cells} stop_\nsave_\n"
        done = self.table(text + "save_l\n" + shifts21(["1 VAL CA 62", "2 LYS CA 56", "3 PRO CA 63"]))
        self.assertEqual(self.sequence(done), "VKPMT")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
