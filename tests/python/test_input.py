"""What goes in: depositions, choices, and what is refused."""

import gzip
import os
import subprocess
import sys

import citrans
import pytest
from support import ROOT, deposition, letters, rows


def protein(path):
    """Sequence and rows of a table."""
    return letters(path.read_text()), rows(path.read_text())


def test_deposition_is_what_the_importer_makes_of_it(examples, program, tmp_path):
    text = deposition(protein(examples / "ybbr.tab"), first=101)
    (tmp_path / "d.str").write_text(text)
    program("citrans-import", "d.str", "-o", "d.tab", "--map", "d.map")
    imported = citrans.import_table(text, name="d.str")
    assert imported.table == str(imported) == (tmp_path / "d.tab").read_text()
    assert imported.map == (tmp_path / "d.map").read_text()
    result = citrans.predict(gzip.compress(text.encode()), structure=examples / "ybbr_2kpu.pdb")
    by_table = citrans.predict(examples / "ybbr.tab", structure=examples / "ybbr_2kpu.pdb")
    assert [proline.p_cis for proline in result] == [proline.p_cis for proline in by_table]
    assert [proline.omega for proline in result] == [proline.omega for proline in by_table]
    # Authors count from 101.
    assert [proline.author for proline in result] == [str(p.residue + 100) for p in by_table]


def test_choices(examples):
    """Two proteins; the second has a list more, with one shift fewer."""
    ybbr, ubiquitin = (protein(examples / f"{name}.tab") for name in ("ybbr", "ubiquitin"))
    text = deposition(ybbr, ubiquitin, (ubiquitin[0], ubiquitin[1][:-1]))
    for entity, length in {None: 96, 1: 96, "2": 76}.items():
        assert len(citrans.predict(text, entity=entity).sequence) == length
    counts = [len(rows(citrans.import_table(text, entity=2, shift_list=i).table)) for i in (2, 3)]
    assert counts == [len(ubiquitin[1]), len(ubiquitin[1]) - 1]


def test_advice_is_given_until_it_is_followed(examples):
    text = deposition(protein(examples / "xcc2852.tab")) + (
        "save_s\nloop_\n_Sample_component.Isotopic_labeling\n'[U-2H; U-15N]'\nstop_\nsave_\n")
    for isotope in (False, True):
        warnings = citrans.predict(text, isotope=isotope).warnings
        assert any("consider citrans -iso" in each for each in warnings) != isotope


REFUSED = [
    # source, arguments, words of the message
    (b"", {}, "shifts"),
    ("no table\nat all\n", {}, "shifts"),
    (b"\x1f\x8b\x08not gzip", {}, "shifts"),
    ("data_1\nloop_\n_Atom_chem_shift.Val\n1\n", {}, "shifts"),
    ("VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %d %s %s %f\n1 A CA 50\n", {}, "sequence"),
    ("@ybbr", {"structure": b"no structure\n"}, "structure"),
    ("@ybbr", {"structure": "@ubiquitin_1ubq.pdb"}, "ubiquitin_1ubq.pdb"),
    ("@ybbr", {"structure": "@ybbr_2kpu.pdb", "chain": "Z"}, "Z"),
    ("@deposition", {"entity": 7}, "7"),
    ("@deposition", {"shift_list": "none such"}, "none such"),
]


@pytest.mark.parametrize("source, arguments, words", REFUSED)
def test_refuses_with_the_programs_words(examples, capfd, source, arguments, words):
    known = {"@ybbr": (examples / "ybbr.tab").read_bytes(),
             "@deposition": deposition(protein(examples / "ybbr.tab"))}
    if str(arguments.get("structure", "")).startswith("@"):
        arguments = {**arguments, "structure": examples / arguments["structure"][1:]}
    with pytest.raises(citrans.InputError) as refusal:
        citrans.predict(known.get(source, source), **arguments)
    assert words in str(refusal.value) and "\n" not in str(refusal.value)
    assert isinstance(refusal.value, ValueError)
    assert capfd.readouterr() == ("", "")


def test_message_is_that_of_the_importer(program, tmp_path):
    (tmp_path / "d.str").write_text("data_1\nloop_\n_Atom_chem_shift.Val\n")
    with pytest.raises(citrans.InputError) as refusal:
        citrans.predict(tmp_path / "d.str")
    run = program("citrans-import", "d.str")
    assert (run.returncode, run.stderr) == (65, f"citrans-import: {refusal.value}\n")


def test_other_faults_are_pythons_own(tmp_path):
    with pytest.raises(FileNotFoundError):
        citrans.predict(tmp_path / "none.str")
    with pytest.raises(IsADirectoryError):
        citrans.import_table(tmp_path)
    with pytest.raises(TypeError):
        citrans.predict(42)


def test_names_of_any_kind(examples, tmp_path):
    """A path as name, one that is no UTF-8, and what os.scandir gives for bytes."""
    text = (examples / "ybbr.tab").read_text()
    for name, shown in [(tmp_path / "a.tab", "a.tab"), ("caf\udce9.tab", "caf?.tab")]:
        assert shown in citrans.predict(text, name=name).report_html()
    entry = next(entry for entry in os.scandir(os.fsencode(examples)) if entry.name == b"ybbr.tab")
    assert len(citrans.predict(entry)) == 8


def test_arguments_without_effect_are_refused(examples):
    result = citrans.predict(examples / "ybbr.tab")
    with pytest.raises(TypeError, match="isotope"):
        citrans.report_html(result, isotope=True)
    with pytest.raises(ValueError, match="evidence=True"):
        result.to_frame(evidence=True)


def test_hostile_input_is_refused_or_read(capfd):
    """Whatever the fuzzers have kept: an answer or InputError, and not a word."""
    answered = refused = 0
    table = ROOT / "examples" / "ybbr.tab"
    for seed in sorted((ROOT / "fuzz" / "corpus").glob("*/*")):
        for source, structure in ((seed, None), (table, seed)):
            try:
                citrans.predict(source, structure=structure, evidence=True).report_html()
                answered += 1
            except citrans.InputError as refusal:
                assert str(refusal)
                refused += 1
    assert answered > 10 and refused > 10
    assert capfd.readouterr() == ("", "")


def test_prints_nothing_and_needs_no_files(tmp_path, examples):
    """From another folder, with the database of the environment pointing nowhere."""
    script = ("import citrans, sys; r = citrans.predict(sys.stdin.read(), rereference=True); "
              "r.report_html(); r._repr_html_(); assert len(r) == 8")
    run = subprocess.run([sys.executable, "-c", script], cwd=tmp_path, capture_output=True,
                         input=(examples / "ybbr.tab").read_bytes(), check=False,
                         env={**os.environ, "CITRANS_DIR": "/nowhere"})
    assert (run.returncode, run.stdout, run.stderr) == (0, b"", b"")
    assert not list(tmp_path.iterdir())
