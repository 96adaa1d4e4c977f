"""What the programs on the command line give for an input: the outputs of the page, by kind."""

import pathlib
import subprocess

TABLE_MARK = (b"VARS", b"FORMAT")


class Refused(Exception):
    """A program refused the input; the text is its line."""


def run(command, folder):
    done = subprocess.run([str(word) for word in command], cwd=folder, capture_output=True, check=False)
    if done.returncode != 0:
        raise Refused(done.stderr.decode(errors="replace").strip().splitlines()[-1])
    return done


def is_table(path: pathlib.Path) -> bool:
    data = path.read_bytes()
    return all(any(line.split()[:1] == [mark] for line in data.splitlines()) for mark in TABLE_MARK)


def stem(name: str) -> str:
    name = name.removesuffix(".gz")
    return name[:name.rfind(".")] if name.rfind(".") > 0 else name


class Programs:
    """The programs, and the folder of the tables that they read."""

    def __init__(self, build: pathlib.Path, source: pathlib.Path):
        self.build, self.tab = build, source / "tab"

    def outputs(self, settings, folder, shifts, structure=None):
        """All outputs by kind. Throws Refused with the program's line."""
        (folder / shifts.name).write_bytes(shifts.read_bytes())
        name = stem(shifts.name)
        table, pred = name + ".tab", name + ".pred.tab"
        found = {"map": b"", "structure": b""}
        report = ["--tab", self.tab]
        options = ["-iso"] if settings.get("isotope") else []
        if settings.get("noclip"):
            options.append("-noclip")
            report.append("--noclip")
        own = is_table(shifts)
        if not own or settings.get("rereference"):
            command = [self.build / "citrans-import", shifts.name, "-o", "imported"]
            command += [] if own else ["--map", name + ".map"]
            for key in ("entity", "list", "copy"):
                command += [f"--{key}", settings[key]] if key in settings else []
            command += ["--rereference", "--tab", self.tab] if settings.get("rereference") else []
            command += ["--iso"] if settings.get("rereference") and settings.get("isotope") else []
            run(command, folder)
            (folder / "imported").replace(folder / table)
        if not own:
            found["map"] = (folder / (name + ".map")).read_bytes()
            report += ["--map", name + ".map"]
        if structure:
            self.reference(settings, folder, table, structure, options)
            found["structure"] = (folder / options[-1]).read_bytes()
        done = run([self.build / "citrans", "-tabDir", self.tab, "-in", table, "-sum", pred] + options, folder)
        if not (folder / pred).exists():
            raise Refused(done.stderr.decode().strip().splitlines()[-1])
        run([self.build / "citrans-report", pred, *report, "-o", "html", "--tsv", "tsv", "--json", "json",
             "--svg", "overview.svg", "--chimerax", "chimerax", "--pymol", "pymol"], folder)
        files = {"html": "html", "tsv": "tsv", "json": "json", "svg": "overview.svg", "chimerax": "chimerax",
                 "pymol": "pymol", "table": table, "summary": pred, "secondary": name + ".predAdjCS.tab"}
        return found | {kind: (folder / file).read_bytes() for kind, file in files.items()}

    def reference(self, settings, folder, table, structure, options):
        (folder / structure.name).write_bytes(structure.read_bytes())
        reference = stem(structure.name) + ".ref.pdb"
        command = [self.build / "citrans-import", table, "--structure", structure.name, "-o", reference]
        command += ["--chain", settings["chain"]] if "chain" in settings else []
        run(command, folder)
        options += ["-ref", reference]
