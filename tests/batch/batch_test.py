#!/usr/bin/env python3
"""citrans-batch as a user runs it: entries of every fate, order, resumption, statuses.

usage: batch_test.py CITRANS_BATCH CITRANS SOURCE_ROOT
"""
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

BATCH, CITRANS, ROOT = (os.path.abspath(path) for path in sys.argv[1:4])

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
    ("6.tab", "VARS A\nFORMAT %s\nREMARK\n", "crashed", "signal 6"),
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
        return [BATCH, "--citrans", CITRANS, "--import", self.importer, "--quiet", *arguments]

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

    def test_a_signal_stops_the_batch_and_says_so(self):
        slow = self.write("slow.str", "data_hangs\n")
        batch = subprocess.Popen(self.command(slow, "--timeout", "5", "-o", self.path("out")),
                                 stderr=subprocess.PIPE, text=True)
        time.sleep(1)
        batch.send_signal(signal.SIGTERM)
        _, error = batch.communicate(timeout=60)
        self.assertEqual(batch.returncode, 128 + signal.SIGTERM)
        self.assertIn("go on with --resume", error)
        self.assertFalse(os.path.exists(self.path("out")))

    def test_statuses_and_one_line_errors(self):
        for arguments, status in [
            ([], 1),
            (["--bogus"], 1),
            (["-j", "0", self.inputs], 1),
            (["--list", self.path("nowhere")], 66),
            ([self.inputs, "-o", self.path("nowhere/out")], 73),
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
