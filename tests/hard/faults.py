#!/usr/bin/env python3
"""Faults of files, streams and sizes, one row each: faults.py CITRANS SOURCE_TREE [--full]

Every row is a whole run in a new folder that holds `in.tab`, a part of the YbbR example. A row says
the status (a negative one is a signal), what standard error holds after the banner, and what became
of the summary pred.tab: `complete` as in a run without a fault, `cut` off, or `absent`. A run that
leaves neither a complete summary nor a message has failed, whatever its row says. Messages never
hold a control byte but line ends and tabs. Memory and time are bounded; under AddressSanitizer, which needs
more, memory is not. --full makes the large files ten times as large.
"""
import os
import resource
import signal
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

CITRANS, SOURCE = os.path.abspath(sys.argv[1]), Path(sys.argv[2]).resolve()
SANITIZED = b"__asan_init" in Path(CITRANS).read_bytes()
MB = 1 << 20
SECONDS = 120

SEED = (SOURCE / "fuzz/corpus/tables/ybbr-78-88.tab").read_bytes()
HEAD = "VARS RESID RESNAME ATOMNAME SHIFT{}\nFORMAT %4d %1s %4s %8.3f{}\n"
TABLE = "DATA SEQUENCE APA\n" + HEAD.format("", "") + "1 A CA 52\n"
ATOM = "ATOM      1  CA  ALA A   1       1.000   2.000   3.000  1.00"
OPEN, SAVE = "\tCan't open file {} for reading\n", "\tCan't save file {}\n"
LOST = "\tCan't write standard output\n"
NO_SEQUENCE = " A full amino acid sequence is required in the DATA SEQUENCE header, exit ...\n"
ABORT = "std::out_of_range"

failures = []


class Ended:
    """How one run ended; its messages without the banner, too few shifts and coverage counts."""

    def __init__(self, arguments, during=None, prefix=(), **popen):
        popen = {"stdout": subprocess.PIPE, "stdin": subprocess.DEVNULL, **popen}
        command = [*prefix, CITRANS, "-tabDir", SOURCE / "tab", "-inTitle", "T", *arguments]
        with subprocess.Popen(command, stderr=subprocess.PIPE, **popen) as run:
            watchdog = threading.Timer(SECONDS, run.kill)
            watchdog.start()
            if during:
                during(run)
            self.err = run.communicate()[1]
            watchdog.cancel()
        self.status = run.returncode
        self.messages = "".join(
            line for line in self.err.decode().rpartition("-*\n")[2].splitlines(keepends=True)
            if not line.startswith(("  Not enough ", "libgcov ")))


def limited(what, size):
    def prepare():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(what, (size, size))
    return {"preexec_fn": prepare}


def closed(*descriptors):
    return {"preexec_fn": lambda: [os.close(descriptor) for descriptor in descriptors]}


def no_reader():
    read, write = os.pipe()
    os.close(read)
    return write


def feed(run):
    """The input through a pipe, more than its first buffer holds, with a pause."""
    with open("fifo", "wb", buffering=0) as pipe:
        pipe.write(SEED[:500])
        time.sleep(0.05)
        pipe.write(SEED[500:] + b"\n" * 40_000)


def terminate(run):
    """While the run waits for somebody to write its input."""
    time.sleep(0.2)
    run.terminate()


def change_size(run):
    while run.poll() is None:
        os.truncate("large.tab", 3 * MB)
        os.truncate("large.tab", 9 * MB)


def in_tab(text):
    return lambda: Path("in.tab").write_bytes(text if isinstance(text, bytes) else text.encode())


def far_out():
    """So many outliers that their list does not fit the buffer of standard output."""
    rows = "".join(f"{i} A CA 150\n" for i in range(1, 301))
    in_tab("DATA SEQUENCE " + "A" * 300 + "\n" + HEAD.format("", "") + rows)()


def link(name, target):
    return lambda: os.symlink(target, name)


def small_disk():
    """A command that runs the rest on a tmpfs of one page for outputs, where that is allowed."""
    command = ["unshare", "-rm", "sh", "-c",
               'mount -t tmpfs -o size=4k none "$PWD/disk" && exec "$@"', "sh"]
    os.mkdir("disk")
    allowed = subprocess.run([*command, "true"], stderr=subprocess.DEVNULL).returncode == 0
    return command if allowed else None


IN = ["-in", "in.tab"]
#  name, arguments, status, messages (all of them, or a part after "..."), summary, more
ROWS = [
    ("no fault", IN, 0, "", "complete", {}),
    # Inputs
    ("no such input", ["-in", "none.tab"], 0, OPEN.format("none.tab"), "absent", {}),
    ("input of a link to itself", ["-in", "loop"], 0, OPEN.format("loop"), "absent",
     {"before": link("loop", "loop")}),
    ("input is a directory", ["-in", "."], 255, NO_SEQUENCE, "absent", {}),
    ("input with a read error", ["-in", "/proc/self/mem"], 255, NO_SEQUENCE, "absent", {}),
    ("input is a pipe", ["-in", "fifo"], 0, "", "complete",
     {"before": lambda: os.mkfifo("fifo"), "during": feed}),
    ("input changes its size", ["-in", "large.tab"], 0, "...", "any",
     {"before": lambda: Path("large.tab").write_bytes(SEED + b"x\n" * 4 * MB),
      "during": change_size}),
    ("no such structure", IN + ["-ref", "none.pdb"], 0, OPEN.format("none.pdb"), "absent", {}),
    ("structure is a directory", IN + ["-ref", "."], 0, "", "any", {}),
    ("no such database", IN + ["-tabDir", "nowhere"], 0, OPEN.format("nowhere/randcoil.tab"),
     "absent", {}),
    # Outputs
    ("no such folder", IN + ["-sum", "none/p.tab"], 0,
     SAVE.format("none/pAdjCS.tab") + SAVE.format("none/p.tab"), "absent", {}),
    ("summary is a directory", IN, 0, SAVE.format("pred.tab"), "any",
     {"before": lambda: os.mkdir("pred.tab")}),
    ("summary on a full disk", IN, 0, SAVE.format("pred.tab"), "cut",
     {"before": link("pred.tab", "/dev/full")}),
    ("shifts on a full disk", IN, 0, SAVE.format("predAdjCS.tab"), "complete",
     {"before": link("predAdjCS.tab", "/dev/full")}),
    ("disk full after some bytes", IN, 0,
     SAVE.format("predAdjCS.tab") + SAVE.format("pred.tab"), "cut", limited(resource.RLIMIT_FSIZE, 512)),
    ("small disk", IN + ["-sum", "disk/p.tab"], 0, "..." + SAVE.format("disk/p.tab"), "absent",
     {"prefix": small_disk}),
    # Streams
    ("standard output on a full disk", IN, 0, LOST, "complete", {"stdout": lambda: open("/dev/full", "wb")}),
    ("check with standard output on a full disk", IN + ["-check"], 255, LOST, "absent",
     {"stdout": lambda: open("/dev/full", "wb")}),
    ("standard output closed", IN, 0, LOST, "complete", closed(1)),
    ("standard error closed", IN, 0, "", "complete", closed(2)),
    ("all streams closed", IN + ["-verb"], 0, "", "complete", closed(0, 1, 2)),
    ("reader gone", IN, -signal.SIGPIPE, "", "complete", {"stdout": no_reader}),
    ("reader gone early", IN + ["-verb"], -signal.SIGPIPE, "", "absent",
     {"before": far_out, "stdout": no_reader}),
    ("terminated", ["-in", "fifo"], -signal.SIGTERM, "", "absent",
     {"before": lambda: os.mkfifo("fifo"), "during": terminate}),
    # The abnormal ends
    ("lone REMARK", IN, -signal.SIGABRT, "..." + ABORT, "absent",
     {"before": in_tab(TABLE + "REMARK\n2 P CA 60\n")}),
    ("lone DATA", IN, -signal.SIGABRT, "..." + ABORT, "absent",
     {"before": in_tab("data \t \n" + TABLE)}),
    ("short ATOM line", IN + ["-ref", "short.pdb"], -signal.SIGABRT, "..." + ABORT, "absent",
     {"before": lambda: Path("short.pdb").write_text(ATOM[:59] + "\n")}),
    ("ATOM line just long enough", IN + ["-ref", "60.pdb"], 0, "", "any",
     {"before": lambda: Path("60.pdb").write_text(ATOM + "\n")}),
    # Numbers
    ("range beyond 64 bits", IN + ["-first", "9" * 30, "-last", "2147483648"], 0, "", "any", {}),
    ("numbering up to the largest integer", IN, 0, "", "any",
     {"before": in_tab("DATA FIRST_RESID 2147483640\nDATA SEQUENCE " + "AP" * 500 + "\n"
                       + HEAD.format("", "") + "2147483647 P CA 60\n-2147483648 P CA 1\n")}),
    # Hostile text
    ("hostile file name", ["-in", "\x1b[2J\bx\x7f\u009b"], 0,
     OPEN.format(r"\x1b[2J\x08x\x7f\xc2\x9b"), "absent", {}),
    ("hostile option", ["-\x1b]0;x\x07%n%s"], 0, " Invaid arg name -\\x1b]0;x\\x07%n%s\n", "absent",
     {}),
    ("hostile conversion", IN, 0, "\tBad format syntax '%4ld\\x1b[A\\x00'\n", "absent",
     {"before": in_tab("VARS A\nFORMAT %4ld\x1b[A\0\n")}),
    ("hostile residue name", IN, 0, "...header (A) and chemical shift table (\\x1b[1A\\x08)\n",
     "any", {"before": in_tab(TABLE.replace("1 A", "1 \x1b[1A\b"))}),
]

# Sizes: name, input, largest memory as a multiple of the file, over a base of 40 MB.
FULL = "--full" in sys.argv
TEXT = 200 * MB if FULL else 20 * MB
COUNT = 1_000_000 if FULL else 100_000
names = " ".join(f"V{i}" for i in range(COUNT))
SIZES = [
    ("long remark", lambda: "REMARK " + "x" * TEXT + "\n" + TABLE, 10),
    ("long cell", lambda: TABLE + "2 P CA 6" + "0" * TEXT, 3),
    ("line of many tokens", lambda: TABLE + "1 " * (TEXT // 2), 3),
    ("line of NUL bytes", lambda: "\0" * TEXT, 3),
    ("many columns", lambda: "DATA SEQUENCE APA\n" + HEAD.format(" " + names, " %d" * COUNT)
     + "1 A CA 52" + " 1" * COUNT + "\n", 80),
    ("many conversions", lambda: TABLE.replace("%4d", "%4d " * COUNT), 10),
    ("many rows", lambda: TABLE + "2 P CA 60.1\n" * COUNT, 20),
    ("rows after a long VARS line", lambda: "VARS " + names[:MB] + "\nVARS A\nFORMAT %d\n"
     + "1\n" * 50_000, 20),
    ("missing atoms in many columns", lambda: "DATA SEQUENCE " + "A" * 1000 + "\nVARS RESID " +
     names[:200_000] + "1 RESNAME ATOMNAME SHIFT\nFORMAT %d\n", 80),
    ("widths of ten digits", lambda: TABLE.replace("%8.3f", "%9999999999.9999999999f"), 3),
    ("many cysteines", None, 3),
]


def check(name, ended, row_fault):
    hidden = [c for c in ended.err if c < 32 and c not in b"\n\t" or c == 127]
    if row_fault or hidden:
        failures.append(name)
        print(f"FAILED  {name}: {row_fault or 'control bytes'}; status {ended.status}, "
              f"messages {ended.messages[:400]!r}")
    else:
        print(f"passed  {name}")


def summary_state(reference):
    path = Path("pred.tab")
    if not path.is_file():
        return "cut" if path.is_symlink() else "absent"
    return "complete" if path.read_bytes() == reference else "cut"


def row_fault(ended, status, messages, summary, state):
    if ended.status != status:
        return f"status is not {status}"
    part = messages.startswith("...")
    if messages[3:] not in ended.messages if part else ended.messages != messages:
        return f"messages are not {messages!r}"
    return summary not in ("any", state) and f"the summary is {state}, not {summary}"


def run_row(reference, name, arguments, status, messages, summary, more):
    Path("in.tab").write_bytes(SEED)
    more = dict(more)
    more.pop("before", lambda: None)()
    if "prefix" in more:
        more["prefix"] = more["prefix"]()
        if more["prefix"] is None:
            print(f"skipped {name}: not allowed here")
            return
    if callable(more.get("stdout")):
        more["stdout"] = more["stdout"]()
    ended = Ended(arguments, **more)
    check(name, ended, row_fault(ended, status, messages, summary, summary_state(reference)))


def run_size(name, text, multiple):
    if text is None:
        atoms = "".join(f"ATOM  {i:5d}  SG  CYS A{i:4d}    {i * 3:8d}{0:8d}{0:8d}  1.00  0.00\n"
                        for i in range(-999, 10000))
        Path("in.pdb").write_text(atoms)
        Path("in.tab").write_bytes(SEED)
        arguments = IN + ["-ref", "in.pdb"]
    else:
        Path("in.tab").write_bytes(text().encode("latin-1"))
        arguments = IN
    allowed = multiple * sum(path.stat().st_size for path in Path(".").iterdir()) + 40 * MB
    # A run that needs more ends with std::bad_alloc.
    ended = Ended(arguments, **({} if SANITIZED else limited(resource.RLIMIT_AS, allowed)))
    fault = ended.status not in (0, 255) and f"abnormal, perhaps for more than {allowed // MB} MB"
    check(name, ended, fault)


def main():
    os.environ.pop("CITRANS_DIR", None)
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    reference = None
    for row in ROWS + SIZES:
        with tempfile.TemporaryDirectory() as folder:
            os.chdir(folder)
            if row in SIZES:
                run_size(*row)
                continue
            if reference is None:
                Path("in.tab").write_bytes(SEED)
                Ended(IN)
                reference = Path("pred.tab").read_bytes()
            run_row(reference, *row)
    sys.exit(1 if failures else 0)


main()
