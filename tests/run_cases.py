#!/usr/bin/env python3
"""Run one whole-program case: run_cases.py CASE CITRANS

CITRANS may be several words, node and a program for it for instance.

A case is a folder of tests/cases. Its file `cmd` is the command line, with NAME=value before it for
the environment and {root} for the top of the source tree. The program runs in a new folder that
holds a copy of the case's `in` folder, and of tests/cases/tab as `tab`, the database. Then

  expected/status   is the exit status, or the name of the signal (0 without this file)
  expected/stdout   and
  expected/stderr   are the streams, empty without these files; after a signal, which adds words of
                    its own to standard error, that is not compared
  expected/NAME     is the written file NAME; no other file may have been written
  calls             lists "RESID cis" and "RESID trans", what the summary pred.tab must say

`derived` in place of `expected` means that tests/derive.py says what all of those are.

What differs from run to run or from release to release is replaced before the comparison: the
banner, the citation, the version, the running time and the place of the source tree.
"""
import difflib
import os
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

TESTS = Path(__file__).resolve().parent
ROOT = TESTS.parent


def normal(text):
    text = text.replace(str(ROOT), "{root}")
    text = re.sub(r"\A(\*-{64}\*)\n CITRANS: .*?\n\1\n", "<banner>\n", text, flags=re.S)
    text = re.sub(r"^(REMARK Reference:)\n(REMARK .*\n){3}REMARK \nREMARK  CITRANS version .*$",
                  r"\1 <citation and version>", text, flags=re.M)
    return re.sub(r"^ Running time: [0-9.e-]+ seconds$", " Running time: T seconds", text,
                  flags=re.M)


def run(program, arguments, environment, folder):
    """Status, streams and written files by name, as a case lists them."""
    before = set(os.listdir(folder))
    done = subprocess.run([*program, *arguments], cwd=folder, env=environment, timeout=120,
                          stdin=subprocess.DEVNULL, capture_output=True)
    status = str(done.returncode)
    if done.returncode < 0:
        status = signal.Signals(-done.returncode).name
    found = {"status": status, "stdout": done.stdout, "stderr": done.stderr}
    for name in set(os.listdir(folder)) - before:
        found[name] = (folder / name).read_bytes()
    return {name: normal(text if isinstance(text, str) else text.decode("latin-1"))
            for name, text in found.items()}


def expected_by(case, arguments, folder):
    if (case / "derived").exists():
        scratch = folder.with_suffix(".derived")
        shutil.copytree(folder, scratch)
        return run([sys.executable], [TESTS / "derive.py", *arguments], dict(os.environ), scratch)
    wanted = {"status": "0", "stdout": "", "stderr": "<banner>\n"}
    for path in (case / "expected").glob("*"):
        wanted[path.name] = path.read_bytes().decode("latin-1")
    wanted["status"] = wanted["status"].strip()
    return wanted


def wrong_calls(lines, summary):
    """The calls of the summary that are not those listed."""
    rows = [line.split() for line in summary.splitlines() if line[:4].strip().isdigit()]
    made = {row[0]: "cis" if float(row[8]) > 0.5 else "trans" for row in rows}
    return {} if made == dict(line.split() for line in lines) else made


def main():
    case = TESTS / "cases" / sys.argv[1]
    program = [*sys.argv[2:-1], os.path.abspath(sys.argv[-1])]
    words = [word.replace("{root}", str(ROOT)) for word in shlex.split((case / "cmd").read_text())]
    environment = {k: v for k, v in os.environ.items() if k != "CITRANS_DIR"}
    while words and re.match(r"\w+=", words[0]):
        name, value = words.pop(0).split("=", 1)
        environment[name] = value
    with tempfile.TemporaryDirectory() as scratch:
        folder = Path(scratch) / "run"
        shutil.copytree(case / "in", folder) if (case / "in").exists() else folder.mkdir()
        shutil.copytree(TESTS / "cases" / "tab", folder / "tab")
        wanted = expected_by(case, words, folder)
        found = run(program, words, environment, folder)
    failed = False
    if (case / "calls").exists():
        made = wrong_calls((case / "calls").read_text().splitlines(), found["pred.tab"])
        failed = found["status"] != "0" or bool(made)
        print(f"calls: {made}" if made else "")
    else:
        ignored = {"stderr"} if found["status"].startswith("SIG") else set()
        for name in sorted((wanted.keys() | found.keys()) - ignored):
            difference = list(difflib.unified_diff(
                wanted.get(name, "").splitlines(True), found.get(name, "").splitlines(True),
                f"{name} expected", f"{name} found"))
            failed = failed or bool(difference) or (name in wanted) != (name in found)
            sys.stdout.writelines(line.rstrip("\n") + "\n" for line in difference)
            if (name in wanted) != (name in found):
                print(f"{name}: {'not ' if name in wanted else ''}written")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
