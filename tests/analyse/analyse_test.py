#!/usr/bin/env python3
"""The one way in gives what the programs give one after the other, byte for byte.

    analyse_test.py DRIVER BUILD SOURCE [FILE|FOLDER]...

More files, and those of folders, are compared too.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

from native import Programs, Refused

driver, build, source = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
examples = source / "examples"
corpus = source / "fuzz/corpus/deposition"
programs = Programs(build, source)
compared, refused, failures = 0, 0, []

CASES = [
    ({}, examples / "ybbr.tab", None),
    ({}, examples / "ybbr.tab", examples / "ybbr_2kpu.pdb"),
    ({"isotope": True}, examples / "xcc2852.tab", None),
    ({"rereference": True}, examples / "plastocyanin.tab", None),
    ({"rereference": True, "isotope": True}, examples / "xcc2852.tab", None),
    ({"noclip": True}, examples / "ubiquitin.tab", examples / "ubiquitin_1ubq.pdb"),
    ({"chain": "A"}, examples / "ubiquitin.tab", examples / "ubiquitin_1ubq.pdb"),
    ({"chain": "Q"}, examples / "ubiquitin.tab", examples / "ubiquitin_1ubq.pdb"),
    ({"entity": "7"}, corpus / "16570-81-83.str", None),
    ({}, examples / "ubiquitin_1ubq.pdb", None),
    ({}, examples / "ybbr.tab", examples / "xcc2852.tab"),
]


def compare(settings, shifts, structure):
    """One input, by both ways: the same bytes, or a refusal in the same words."""
    global compared, refused
    label = f"{shifts.name} {structure.name if structure else ''} {settings}"
    with tempfile.TemporaryDirectory() as one, tempfile.TemporaryDirectory() as other:
        done = subprocess.run([driver, json.dumps(settings), one, shifts] + ([structure] if structure else []),
                              capture_output=True, check=False)
        try:
            wanted = programs.outputs(settings, pathlib.Path(other), shifts, structure)
        except Refused as refusal:
            refused += 1
            line = done.stderr.decode(errors="replace").strip()
            # A line too short for its keyword ends the program with the words of the C++ library.
            same = str(refusal).endswith(line) or "basic_string" in str(refusal)
            if done.returncode != 1 or not line or not same:
                failures.append(f"{label}: refused by the programs with '{refusal}', here '{line}'")
            return
        if done.returncode != 0:
            failures.append(f"{label}: {done.stderr.decode(errors='replace').strip()}")
            return
        for kind, text in wanted.items():
            compared += 1
            if (pathlib.Path(one) / kind).read_bytes() != text:
                failures.append(f"{label}: {kind} differs")


def look_at_list(file, cis):
    """The list of a file and one without a report: links, cis prolines, and a message as text."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([driver, "{}", folder, file], check=True)
        page = (pathlib.Path(folder) / "index.html").read_text()
    rows = re.findall(r"<tr data-kinds=\"(.*?)\">(.*?)</tr>", page)
    wanted = [(f'<a href="its page.html">{file.name}</a>', f">{cis}</span>", "all cis"),
              ("<td>other</td>", "why &lt;not&gt;", "all failed")]
    for (kinds, row), (name, words, kind) in zip(rows, wanted):
        if name not in row or words not in row or kind != kinds:
            failures.append(f"list: {kinds}: {row}")
    if len(rows) != 2:
        failures.append(f"list: {len(rows)} rows")


for case in CASES:
    compare(*case)
look_at_list(examples / "ybbr.tab", "Pro82")
others = [path for name in sys.argv[4:] for path in
          (sorted(pathlib.Path(name).iterdir()) if pathlib.Path(name).is_dir() else [pathlib.Path(name)])]
for path in sorted(corpus.iterdir()) + others:
    compare({}, path, None)
    compare({"rereference": True}, path, None)

print(f"{compared} outputs compared, {refused} inputs refused by both")
for failure in failures:
    print(failure)
sys.exit(1 if failures or compared < 100 or refused < 3 else 0)
