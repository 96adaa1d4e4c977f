#!/usr/bin/env python3
"""Makes what the page has to give, with the native programs: a folder for each case, and "many" with
files and in its folder "pages" what citrans-batch makes of them.

    expected.py BUILD SOURCE FOLDER [FILE]...

More files of shifts are cases too; those that the programs refuse are left out, with a word.
"""

import json
import pathlib
import shutil
import sys
import tempfile

build, source, folder = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
sys.path.insert(0, str(source / "tests/analyse"))
from native import Programs, Refused, run  # noqa: E402

examples = source / "examples"
CASES = [
    ({}, [examples / "ybbr.tab", examples / "ybbr_2kpu.pdb"]),
    ({"rereference": True}, [examples / "plastocyanin.tab"]),
    ({"isotope": True}, [examples / "xcc2852.tab"]),
    ({"rereference": True}, [source / "fuzz/corpus/deposition/16570-81-83.str"]),
    ({}, [source / "fuzz/corpus/deposition/2kpu-81-83.nef"]),
] + [({}, [pathlib.Path(name).resolve()]) for name in sys.argv[4:]]

for number, (settings, files) in enumerate(CASES):
    with tempfile.TemporaryDirectory() as scratch:
        try:
            outputs = Programs(build, source).outputs(settings, pathlib.Path(scratch), *files)
        except Refused as refusal:
            print(f"{files[0].name}: left out: {refusal}")
            continue
    case = folder / f"{number:02}-{files[0].name}"
    case.mkdir(parents=True)
    (case / "case.json").write_text(json.dumps({"settings": settings, "files": [str(file) for file in files]}))
    for kind, text in outputs.items():
        (case / kind).write_bytes(text)

many = folder / "many"
many.mkdir(parents=True)
for file in [*sorted(examples.glob("*.tab")), *(source / "fuzz/corpus/deposition").glob("*-81-83.*")]:
    shutil.copy(file, many)
run([build / "citrans-batch", "--tab", source / "tab", "-o", folder / "many.tsv", "--report", "pages",
     *(file.name for file in sorted(many.iterdir()))], many)
