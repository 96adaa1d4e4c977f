"""The page and the pictures of an example, looked at in headless Chromium.

usage: rendered_test.py CITRANS_REPORT CITRANS SOURCE_ROOT
"""
import os
import pathlib
import subprocess
import sys
import tempfile

import render

REPORT, CITRANS, ROOT = (os.path.abspath(path) for path in sys.argv[1:4])


def make_pages(folder):
    """A page with a reference structure, hostile titles and an overlong sequence of numbers, and
    the picture files, which must stand alone."""
    summary = os.path.join(folder, "out.tab")
    long_name = "x" * 150 + "<script>throw 1</script>"
    subprocess.run([CITRANS, "-in", os.path.join(ROOT, "examples/ybbr.tab"), "-sum", summary,
                    "-ref", os.path.join(ROOT, "examples/ybbr_2kpu.pdb"), "-inTitle", long_name,
                    "-tabDir", os.path.join(ROOT, "tab")], check=True, capture_output=True)
    with open(os.path.join(folder, "map.tsv"), "w") as file:
        file.write("resid\tauthor\tresname\n")
        file.writelines(f"{i}\t{i + 1033}B\tX\n" for i in range(1, 97))
    subprocess.run([REPORT, summary, "--tab", os.path.join(ROOT, "tab"), "-o",
                    os.path.join(folder, "page.html"), "--svg", os.path.join(folder, "svg"),
                    "--map", os.path.join(folder, "map.tsv")], check=True)
    return [pathlib.Path(folder, "page.html")]


def broken_page(folder):
    """What the check itself must find."""
    path = pathlib.Path(folder, "broken.html")
    path.write_text("<!DOCTYPE html><title>x</title><p style='width:3000px;font-size:6px'>small</p>"
                    "<script>nowhere()</script><img src='missing.png'>")
    return path


def main():
    with tempfile.TemporaryDirectory() as folder:
        faults = render.check_pages(make_pages(folder))
        if faults is None:
            print("skipped: no Chromium (apt-get install chromium)")
            return 77
        found = " ".join(render.check_pages([broken_page(folder)]))
        for sign in ("px wide", "text of 6.00 px", "script error", "asked for"):
            if sign not in found:
                faults.append(f"the check itself misses: {sign}")
    print("\n".join(faults) or "no faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
