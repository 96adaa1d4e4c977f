"""Inputs that tests make, and tables that they read."""

from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
NAMES = dict(zip("ARNDCQEGHILKMFPSTWYV", (
    "ALA ARG ASN ASP CYS GLN GLU GLY HIS ILE LEU LYS MET PHE PRO SER THR TRP TYR VAL").split()))


def rows(table):
    """The rows of a table's text, each a dict of texts."""
    columns, found = [], []
    for line in table.splitlines():
        words = line.split()
        if words[:1] == ["VARS"]:
            columns = words[1:]
        elif columns and len(words) == len(columns) and words[0] not in ("REMARK", "FORMAT"):
            found.append(dict(zip(columns, words)))
    return found


def body(table):
    """The lines of a table without its remarks, which name files."""
    return [line for line in table.splitlines() if not line.startswith("REMARK")]


def letters(table):
    """The sequence of a table's text."""
    lines = (line.split()[2:] for line in table.splitlines() if line.startswith("DATA SEQUENCE"))
    return "".join("".join(words) for words in lines)


def deposition(*proteins, first=1):
    """An NMR-STAR text with a molecule and a shift list for each (sequence, rows).

    A sequence that occurs again is the same molecule. `first` is what the authors call residue 1.
    """
    sequences = list(dict.fromkeys(sequence for sequence, _ in proteins))
    text = "data_1\n"
    for entity, sequence in enumerate(sequences, 1):
        text += (f"save_e{entity}\n_Entity.ID {entity}\nloop_\n_Entity_comp_index.ID\n"
                 "_Entity_comp_index.Auth_seq_ID\n_Entity_comp_index.Comp_ID\n"
                 "_Entity_comp_index.Entity_ID\n")
        text += "".join(f"{i} {i + first - 1} {NAMES[letter]} {entity}\n"
                        for i, letter in enumerate(sequence, 1)) + "stop_\nsave_\n"
    for number, (sequence, shifts) in enumerate(proteins, 1):
        text += (f"save_l{number}\n_Assigned_chem_shift_list.ID {number}\nloop_\n"
                 "_Atom_chem_shift.Entity_ID\n"
                 "_Atom_chem_shift.Comp_index_ID\n_Atom_chem_shift.Comp_ID\n"
                 "_Atom_chem_shift.Atom_ID\n_Atom_chem_shift.Val\n"
                 "_Atom_chem_shift.Assigned_chem_shift_list_ID\n")
        text += "".join(
            f"{sequences.index(sequence) + 1} {row['RESID']} {NAMES[row['RESNAME']]} "
            f"{'H' if row['ATOMNAME'] == 'HN' else row['ATOMNAME']} {row['SHIFT']} {number}\n"
            for row in shifts) + "stop_\nsave_\n"
    return text
