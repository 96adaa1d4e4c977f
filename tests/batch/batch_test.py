#!/usr/bin/env python3
"""citrans-batch as a user runs it: entries of every fate, order, resumption, statuses.

usage: batch_test.py CITRANS_BATCH SOURCE_ROOT
"""
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

BATCH, ROOT = (os.path.abspath(path) for path in sys.argv[1:3])

# An importer that fails in every way, by the first word of the file.
IMPORTER = """#!/bin/sh
read -r word < "$1"
case $word in
  data_good) cp "$EXAMPLE" "$3"; printf 'resid\\tauthor\\tresname\\n82\\t182\\tP\\n' > "$5"
             echo "citrans-import: one chain of two" >&2 ;;
  data_bad) echo "citrans-import: x:3: no shifts" >&2; exit 65 ;;
  data_dies) kill -SEGV $$ ;;
  data_hangs) exec sleep 60 ;;
esac
"""

# file name, content, status in the output, and what its message holds
ENTRIES = [
    ("1 name with - hyphen.tab", None, "ok", ""),
    ("2.str", "data_good\n", "ok", "one chain of two"),
    ("3.str", "data_bad\n", "import", "x:3: no shifts"),
    ("4.str", "data_dies\n", "crashed", "signal 11"),
    ("5.tab", "VARS A\nFORMAT %s\n", "refused", "sequence is required"),
    ("6.tab", "VARS A\nFORMAT %s\nREMARK\n", "refused", "REMARK or DATA and nothing else"),
]


class Batch(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.inputs = os.path.join(self.folder, "in")
        os.mkdir(self.inputs)
        self.example = os.path.join(ROOT, "examples", "ybbr.tab")
        for name, content, _, _ in ENTRIES:
            if content is None:
                shutil.copy(self.example, os.path.join(self.inputs, name))
            else:
                self.write(os.path.join("in", name), content)
        self.importer = self.write("importer", IMPORTER)
        os.chmod(self.importer, 0o755)

    def tearDown(self):
        shutil.rmtree(self.folder)

    def write(self, name, content):
        path = os.path.join(self.folder, name)
        with open(path, "w") as file:
            file.write(content)
        return path

    def path(self, name):
        return os.path.join(self.folder, name)

    def command(self, *arguments):
        return [BATCH, "--import", self.importer, "--quiet", *arguments]

    def run_batch(self, *arguments):
        return subprocess.run(self.command(*arguments), cwd=ROOT, capture_output=True, text=True,
                              env=dict(os.environ, EXAMPLE=self.example), timeout=120)

    def read(self, name):
        with open(self.path(name)) as file:
            return file.read()

    def test_every_entry_has_its_status_and_the_rest_goes_on(self):
        done = self.run_batch(self.inputs, "--format", "jsonl")
        self.assertEqual(done.returncode, 0, done.stderr)
        rows = [json.loads(line) for line in done.stdout.splitlines()]
        entries = [row for row in rows if row["record"] == "entry"]
        for entry, (name, _, status, message) in zip(entries, ENTRIES, strict=True):
            self.assertEqual(entry["entry"], os.path.join(self.inputs, name))
            self.assertEqual(entry["status"], status, entry)
            self.assertIn(message, entry["message"] or "")
        # Both good entries are the YbbR domain: eight prolines, the one at 82 cis; the importer's
        # map gives that one another number.
        prolines = [row for row in rows if row["record"] == "proline"]
        self.assertEqual(len(prolines), 16)
        self.assertEqual([(row["resid"], row["author"]) for row in prolines if row["call"] == "cis"],
                         [(82, "82"), (82, "182")])

    def rows_of(self, change, *arguments):
        """The entry's row and those of its prolines by number, of the example after a change."""
        with open(self.example) as file:
            lines = [change(line) for line in file]
        table = self.write("changed.tab", "".join(lines))
        done = self.run_batch(table, "--format", "jsonl", *arguments)
        self.assertEqual(done.returncode, 0, done.stderr)
        entry, *prolines = [json.loads(line) for line in done.stdout.splitlines()]
        return entry, {row["resid"]: row for row in prolines}

    @staticmethod
    def shifted(line, by=2.7):
        cells = line.split()
        if len(cells) == 4 and cells[0].isdigit() and cells[2][0] == "C":
            cells[3] = f"{float(cells[3]) + by:.3f}"
            return " ".join(cells) + "\n"
        return line

    def test_wrong_referencing_is_corrected_and_said(self):
        entry, prolines = self.rows_of(self.shifted)
        self.assertAlmostEqual(entry["offset_ca"], 2.7, delta=0.4)
        self.assertAlmostEqual(entry["offset_c"], 2.7, delta=1)
        self.assertEqual(entry["offset_ha"], 0)
        cis = prolines[82]
        self.assertEqual((cis["call"], cis["changed"]), ("cis", "yes"))
        self.assertNotEqual(cis["call_raw"], "cis")
        self.assertGreater(cis["p_cis_norm"], 0.9)
        self.assertLess(cis["p_cis_norm_raw"], 0.5)
        self.assertAlmostEqual(cis["cg_shift"], 24.6 + 2.7 - entry["offset_ca"], delta=0.002)
        self.assertEqual([row["call"] for row in prolines.values()].count("trans"), 7)
        entry, prolines = self.rows_of(self.shifted, "--no-rereference")
        self.assertIsNone(entry["offset_ca"])
        self.assertEqual(prolines[82]["p_cis_norm"], cis["p_cis_norm_raw"])
        self.assertEqual((prolines[82]["call"], prolines[82]["changed"]), (cis["call_raw"], "no"))

    def test_a_proline_without_cb_and_cg_is_undecided(self):
        entry, prolines = self.rows_of(
            lambda line: "" if line.split()[2:3] in (["CB"], ["CG"]) else line)
        self.assertIsNone(entry["offset_ca"])  # no residue has CA and CB
        self.assertEqual((prolines[82]["has_cb"], prolines[82]["has_cg"]), ("no", "no"))
        self.assertEqual(prolines[82]["call"], "undecided")
        self.assertLess(prolines[82]["p_cis_norm"], 0.5)
        self.assertLess(abs(prolines[82]["evidence"]), 0.5)

    def test_output_does_not_depend_on_the_number_of_workers(self):
        for jobs in ("1", "5"):
            done = self.run_batch(self.inputs, "-j", jobs, "-o", self.path(jobs))
            self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.read("1"), self.read("5"))
        self.assertEqual(sorted(os.listdir(self.folder)), ["1", "5", "importer", "in"])

    def test_fail_fast_leaves_a_journal_that_resume_completes(self):
        out = self.path("out")
        self.run_batch(self.inputs, "-o", self.path("whole"))
        stopped = self.run_batch(self.inputs, "-o", out, "--fail-fast")
        self.assertEqual(stopped.returncode, 65)
        self.assertIn("3.str: import: x:3: no shifts", stopped.stderr)
        self.assertFalse(os.path.exists(out))
        with open(out + ".journal", "a") as journal:
            journal.write('{"path": "cut o')
        # A known entry is not run again: with its file's content gone but size and time the same
        # it would be another result.
        good = os.path.join(self.inputs, "2.str")
        times = os.stat(good)
        self.write(os.path.join("in", "2.str"), "data_bad2\n"[:len("data_good\n")])
        os.utime(good, ns=(times.st_atime_ns, times.st_mtime_ns))
        other = self.run_batch(self.inputs, "-o", out, "--resume", "--iso")
        self.assertEqual(other.returncode, 65)
        self.assertIn(":1: this journal was made with other options", other.stderr)
        resumed = self.run_batch(self.inputs, "-o", out, "--resume")
        self.assertEqual(resumed.returncode, 0, resumed.stderr)
        self.assertEqual(self.read("out"), self.read("whole"))
        self.assertFalse(os.path.exists(out + ".journal"))

    def test_an_output_that_is_an_input_is_refused_and_an_older_one_in_a_folder_is_no_entry(self):
        entry, out = os.path.join(self.inputs, "5.tab"), os.path.join(self.inputs, "out")
        link = self.path("link")
        os.symlink(entry, link)
        named = self.write("list", entry + "\n")
        for arguments in ([entry, "-o", link], ["--list", named, "-o", entry], ["--list", named, "-o", named],
                          [entry, "-o", self.path("new"), "--journal", self.path("in/../new")]):
            done = self.run_batch(*arguments)
            self.assertEqual((done.returncode, done.stderr.count("\n")), (1, 1), done.stderr)
            self.assertIn("this output is", done.stderr)
        with open(entry) as file:
            self.assertEqual(file.read(), ENTRIES[4][1])
        for _ in range(2):
            self.assertEqual(self.run_batch(self.inputs, "-o", out).returncode, 0)
            self.assertNotIn(out, self.read("in/out"))

    def test_pages_have_the_calls_of_the_table(self):
        """Also where only the count of shifts decides: that of Pro N, which the evidence lacks."""
        kept = {8: ("N", "CA", "CB"), 9: ("CA", "CB"), 10: ("N", "CA", "CB")}

        def change(line):
            cells = line.split()
            if len(cells) != 4 or not cells[0].isdigit() or int(cells[0]) not in kept:
                return line
            if cells[2] not in kept[int(cells[0])]:
                return ""
            return line + ("   9 P    N  136.000\n" if cells[0] + cells[2] == "9CA" else "")

        for without in ("", "  N 136"):
            _, rows = self.rows_of(lambda line: change(line).replace(
                "   9 P    N  136.000\n", "" if without else "   9 P    N  136.000\n"),
                "--report", self.path("r"))
            page, = (name for name in os.listdir(self.path("r/pages")) if name.endswith(".json"))
            with open(self.path("r/pages/" + page)) as file:
                report = json.load(file)
            self.assertEqual({p["resid"]: p["call"] for p in report["prolines"]},
                             {number: row["call"] for number, row in rows.items()})
            self.assertEqual(rows[9]["call"], "undecided" if without else "trans")

    def test_pages_and_their_list(self):
        twin = os.path.join(self.inputs, "sub")
        os.mkdir(twin)
        self.write(os.path.join("in", "sub", "2.str"), "data_good\n")
        hostile = "<b onclick=x>&.tab"
        shutil.copy(self.example, os.path.join(self.inputs, hostile))
        # The second time the pages of the first are in the folder of inputs.
        for resume in ([], ["--resume"]):
            done = self.run_batch(self.inputs, "--report", self.path("in/r"), "-o", self.path("out"),
                                  *resume)
            self.assertEqual(done.returncode, 0, done.stderr)
        pages = sorted(os.listdir(self.path("in/r/pages")))
        self.assertEqual(len(pages), 8)  # four good entries, a page and its data each
        index = self.read("in/r/index.html")
        links = re.findall(r'<td><a href="([^"]*)">', index)
        self.assertEqual(sorted("pages/" + name for name in pages if name.endswith(".html")),
                         sorted(links))
        self.assertEqual(index.count("<tr data-kinds"), 8)
        self.assertEqual(index.count('data-kinds="all failed"'), 4)
        self.assertIn("import: x:3: no shifts", index)
        self.assertNotIn("<b ", index)
        self.assertNotIn(self.folder, index)
        with open(self.path("in/r/" + next(link for link in links if "2.str" in link))) as page:
            self.assertIn(">Pro182<", page.read())
        self.write("blocked", "")
        blocked = self.run_batch(self.inputs, "--report", self.path("blocked"))
        self.assertEqual((blocked.returncode, blocked.stdout), (73, ""))

    def test_an_entry_that_hangs_is_ended(self):
        slow = self.write("slow.str", "data_hangs\n")
        done = self.run_batch(slow, "--timeout", "1", "-o", self.path("out"))
        self.assertEqual(done.returncode, 0)
        self.assertIn("crashed\tsignal 14", self.read("out"))

    def start_hanging(self, *arguments):
        """A batch whose first entry hangs: it, its worker and the program that hangs, once that runs."""
        slow = self.write("slow.str", "data_hangs\n")
        batch = subprocess.Popen(self.command(slow, *arguments, "-o", self.path("out")),
                                 stderr=subprocess.PIPE, text=True, cwd=ROOT)
        below = lambda pid: subprocess.run(["pgrep", "-P", str(pid)], capture_output=True,
                                           text=True).stdout.split()
        importers = []
        while batch.poll() is None and not importers:
            workers = below(batch.pid)
            importers = below(workers[0]) if workers else []
        return batch, int(workers[0]), int(importers[0])

    def test_a_signal_stops_the_batch_and_says_so(self):
        batch, _, _ = self.start_hanging("--timeout", "5")
        batch.send_signal(signal.SIGTERM)
        _, error = batch.communicate(timeout=60)
        self.assertEqual(batch.returncode, 128 + signal.SIGTERM)
        self.assertIn("go on with --resume", error)
        self.assertFalse(os.path.exists(self.path("out")))

    def test_a_worker_that_dies_costs_one_row(self):
        batch, worker, importer = self.start_hanging(self.example)
        os.kill(worker, signal.SIGKILL)
        os.kill(importer, signal.SIGKILL)
        _, error = batch.communicate(timeout=60)
        self.assertEqual((batch.returncode, error), (0, ""))
        rows = self.read("out").splitlines()[1:]
        self.assertIn("crashed\tsignal 9", rows[0])
        self.assertIn("\tok", rows[1])
        self.assertEqual(len(rows), 10)  # and a row for each of its eight prolines

    def test_statuses_and_one_line_errors(self):
        for arguments, status in [
            ([], 1),
            (["--bogus"], 1),
            (["-j", "0", self.inputs], 1),
            (["--list", self.path("nowhere")], 66),
            ([self.inputs, "-o", self.path("nowhere/out")], 73),
            ([self.inputs, "--tab", self.folder], 66),
            ([self.inputs, "-o", "/dev/full", "--journal", self.path("j")], 73),
        ]:
            with self.subTest(arguments):
                done = self.run_batch(*arguments)
                self.assertEqual(done.returncode, status, done.stderr)
                self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
                self.assertEqual(done.stdout, "")
        listed = self.run_batch("--list", self.write("list", "# two\n\nnowhere\n"))
        self.assertEqual(listed.returncode, 0)
        self.assertIn("entry\tnowhere\tmissing", listed.stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
