"""What the module gives is what the programs write."""

import math
import os
import pickle
import subprocess
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import citrans
import pytest
from support import body, rows

CASES = [
    # table, structure, arguments, options of the program
    ("ybbr.tab", "ybbr_2kpu.pdb", {}, []),
    ("ybbr.tab", None, {"isotope": True}, ["-iso"]),
    ("ubiquitin.tab", "ubiquitin_1ubq.pdb", {"clip": False}, ["-noclip"]),
    ("xcc2852.tab", None, {}, []),
    ("plastocyanin.tab", None, {}, []),
]


@pytest.mark.parametrize("table, structure, arguments, options", CASES)
def test_gives_what_the_program_writes(
    examples, program, tmp_path, table, structure, arguments, options
):
    reference = structure and examples / structure
    options = options + (["-ref", reference] if reference else [])
    program("citrans", "-in", examples / table, "-sum", "p.tab", *options)
    result = citrans.predict(examples / table, structure=reference, rereference=False, **arguments)

    written = (tmp_path / "p.tab").read_text()
    assert body(result.summary) == body(written)
    assert body(result.secondary_shifts) == body((tmp_path / "pAdjCS.tab").read_text())
    assert len(result) == len(rows(written))
    for proline, row in zip(result, rows(written)):
        assert str(proline.residue) == row["RESID"]
        assert [proline.before, proline.after] == [row["RESNAME_R1"], row["RESNAME_R3"]]
        assert [str(n) for n in proline.shift_counts] == [row[f"CS_CNT{i}"] for i in (1, 2, 3)]
        assert f"{9999 if proline.cg is None else proline.cg:.3f}" == row["CG_SHIFT"]
        assert f"{proline.p_cis:.3f}" == row["P_CIS"]
        assert f"{proline.p_cis_norm:.3f}" == row["P_CIS_NORM"]
        assert (proline.omega is not None) == bool(reference)
        if reference:
            assert f"{proline.omega:.3f}" == row["OMEGA_REF"]


def test_words_are_those_of_the_structures(examples):
    result = citrans.predict(examples / "ybbr.tab", structure=examples / "ybbr_2kpu.pdb")
    calls = {proline.author: proline.call for proline in result if proline.call != "trans"}
    assert calls == {"82": "cis"}
    assert all((proline.call == "cis") == (abs(proline.omega) < 90) for proline in result)
    # With protons alone nothing can be said, and each proline says why.
    silent = citrans.predict(examples / "plastocyanin.tab")
    assert len(silent) == 0 and len(silent.not_predicted) == silent.sequence.count("P") == 7
    assert all("shifts" in reason for reason in silent.not_predicted.values())


@pytest.mark.parametrize("table", ["ybbr.tab", "ubiquitin.tab", "xcc2852.tab"])
def test_terms_add_up_to_the_likelihood(examples, table):
    result = citrans.predict(examples / table, evidence=True)
    for proline in result:
        total = sum(term.ln_ratio for term in proline.evidence)
        # Shifts enter as the tables print them, to 3 decimals.
        assert 1 / (1 + math.exp(-total)) == pytest.approx(proline.p_cis, abs=0.005)
        shifts = [term for term in proline.evidence if term.kind == "shift"]
        for place, name in enumerate([proline.before, "P", proline.after], 1):
            shown = sum(term.place == place and term.shift is not None for term in shifts)
            # N and HN of a proline have no part in it, though they count.
            spare = 2 if name == "P" else 0
            assert 0 <= proline.shift_counts[place - 1] - shown <= spare
        for term in shifts:
            if term.state == "used":
                apart = (((term.used - term.trans) / term.trans_sd) ** 2
                         - ((term.used - term.cis) / term.cis_sd) ** 2) / 2
                assert term.ln_ratio == pytest.approx(apart, abs=1e-4)


def test_offsets_are_found_and_taken_off(examples):
    """All carbons 2 ppm too high: the calls of the right shifts come back."""
    table = (examples / "ybbr.tab").read_text()
    moved = []
    for line in table.splitlines():
        words = line.split()
        if len(words) == 4 and words[0].isdigit() and words[2][0] == "C":
            line = f"{words[0]:>4} {words[1]} {words[2]:>4}  {float(words[3]) + 2:8.3f}"
        moved.append(line)
    moved = "\n".join(moved)
    right, wrong = citrans.predict(table), citrans.predict(moved)
    assert not any(offset.applied for offset in right.offsets.values())
    for nuclei in ("CA/CB", "C'"):
        assert wrong.offsets[nuclei].applied
        change = wrong.offsets[nuclei].offset - right.offsets[nuclei].offset
        assert change == pytest.approx(2, abs=0.01)
    assert [proline.call for proline in wrong] == [proline.call for proline in right]
    assert not citrans.predict(moved, rereference=False).offsets
    # The corrected table is what was predicted.
    assert citrans.predict(wrong.table, rereference=False).to_dicts() == wrong.to_dicts()


def test_path_text_and_bytes_are_one_input(examples, tmp_path):
    path = examples / "ybbr.tab"
    structure = examples / "ybbr_2kpu.pdb"
    expected = citrans.predict(path, structure=structure).to_dicts()
    for shifts, reference in [
        (str(path), structure.read_bytes()),
        (path.read_text(), structure.read_text()),
        (path.read_bytes(), str(structure)),
        (memoryview(path.read_bytes()), bytearray(structure.read_bytes())),
    ]:
        assert citrans.predict(shifts, structure=reference).to_dicts() == expected


def test_many_threads_give_what_one_gives(examples):
    tables = ["ybbr.tab", "ubiquitin.tab", "xcc2852.tab", "plastocyanin.tab"] * 25

    def work(number):
        table = examples / tables[number]
        return citrans.predict(table, clip=number % 3 > 0, evidence=True).to_dicts()

    alone = [work(number) for number in range(len(tables))]
    with ThreadPoolExecutor(8) as pool:
        assert list(pool.map(work, range(len(tables)))) == alone


def test_other_threads_run_meanwhile():
    """A long prediction does not hold the interpreter's lock."""
    residues = 6000
    letters = ("ACDEFGHIKLMNPQRSTVWY" * (residues // 20))[:residues]
    table = "".join(
        f"DATA SEQUENCE {letters[i:i + 50]}\n" for i in range(0, residues, 50)
    ) + "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n" + "".join(
        f"{i + 1} {letters[i]} {atom} {shift}\n" for i in range(residues)
        for atom, shift in (("CA", 56.1), ("CB", 32.2), ("HA", 4.4), ("C", 176.0))
    )
    entered = threading.Event()

    def work():
        entered.set()
        return len(citrans.predict(table))

    ticks = 0
    with ThreadPoolExecutor(1) as pool:
        running = pool.submit(work)
        entered.wait()
        while not running.done():
            time.sleep(0.001)
            ticks += 1
    assert running.result() > 250
    assert ticks > 10


def test_result_is_a_sequence_and_can_be_pickled(examples):
    result = citrans.predict(examples / "ybbr.tab", evidence=True)
    assert result[-1] is list(result)[-1] and result[1:3] == (result[1], result[2])
    assert repr(result) == "<citrans.Result of 96 residues: 1 cis, 7 trans>"
    copy = pickle.loads(pickle.dumps(result))
    assert copy.to_dicts() == result.to_dicts() and copy.offsets == result.offsets
    assert copy.report_html() == result.report_html() and copy._repr_html_() == result._repr_html_()


def test_locale_of_the_host_does_not_matter(examples, tmp_path):
    """A program that embeds Python may have set a decimal comma."""
    made = subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", tmp_path / "de_DE.UTF-8"],
                          capture_output=True, check=False)
    if made.returncode > 1:  # 1 is a warning
        pytest.skip("no sources of locales")
    script = """if True:
        import citrans, locale, sys
        first = citrans.predict(sys.argv[1], structure=sys.argv[2], evidence=True)
        locale.setlocale(locale.LC_ALL, "de_DE.UTF-8")
        assert locale.str(0.5) == "0,5"
        again = citrans.predict(sys.argv[1], structure=sys.argv[2], evidence=True)
        assert again.to_dicts() == first.to_dicts()
        assert again.report_html() == first.report_html() and again.summary == first.summary
        assert locale.str(0.5) == "0,5"
    """
    inputs = [examples / "ybbr.tab", examples / "ybbr_2kpu.pdb"]
    subprocess.run([sys.executable, "-c", script, *inputs],
                   env={**os.environ, "LOCPATH": str(tmp_path)}, check=True)
